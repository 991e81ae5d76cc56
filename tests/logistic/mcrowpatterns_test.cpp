// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcrowpatterns.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MCRowPatterns, KeepsRowsOneAfterAnother) {
  MCRowPatterns pattern;
  EXPECT_THAT(pattern.GetAllRecords(), IsEmpty());
  pattern.AddRow({1, 2});
  pattern.AddRow({3, 4});
  EXPECT_THAT(pattern.GetAllRecords(), ElementsAre(1, 2, 3, 4));
}

TEST(MCRowPatterns, LeavesNoMoreThanASixteenthOrARowUnused) {
  MCRowPatterns pattern;
  const std::vector<double> row(7, 1.0);
  for (int r = 0; r < 2000; ++r) {
    pattern.AddRow(row);
    const std::size_t size = pattern.GetAllRecords().size();
    EXPECT_LE(pattern.GetAllRecords().capacity(), size + std::max(row.size(), size / 16));
  }
}

TEST(MCRowPatterns, DoesNotMoveRowsForWhichThereIsRoom) {
  MCRowPatterns pattern;
  pattern.Reserve(600);
  EXPECT_EQ(pattern.GetAllRecords().capacity(), 600U);
  pattern.AddRow({1, 2, 3});
  const double* first = pattern.GetAllRecords().data();
  for (int r = 1; r < 200; ++r) pattern.AddRow({1, 2, 3});
  EXPECT_EQ(pattern.GetAllRecords().data(), first);
}

TEST(MCRowPatterns, StaysAsItIsWhereMemoryRunsOut) {
  MCRowPatterns pattern;
  const std::vector<double> row = {1, 2};
  pattern.AddRow(row);
  const mctest::FailAllocation failure(1);
  EXPECT_THROW(pattern.AddRow(row), std::bad_alloc);
  EXPECT_THAT(pattern.GetAllRecords(), ElementsAre(1, 2));
  pattern.AddRow(row);
  EXPECT_THAT(pattern.GetAllRecords(), ElementsAre(1, 2, 1, 2));
}

TEST(MCRowPatterns, DisplaysItsValues) {
  MCRowPatterns pattern;
  pattern.AddRow({1.5, 2});
  EXPECT_EQ(mctest::DisplayOf(pattern),
            "\nMCRowPatterns display start\nfRecordData (size = 2)\n 1.5 2\n"
            "MCRowPatterns display end");
}

}  // namespace
