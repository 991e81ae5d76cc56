// SPDX-License-Identifier: Apache-2.0
#include "classification.h"

#include <gtest/gtest.h>

namespace {

TEST(McfitClassification, CasesAreCountedByObservedAndPredictedCategory) {
  mcfit::Classification table(3);
  table.Add(0, 0, 2.0);
  table.Add(0, 2, 1.5);
  table.Add(2, 2, 4.0);
  table.Add(0, 0, 1.0);
  EXPECT_EQ(table.Categories(), 3);
  EXPECT_EQ(table.Cases(0, 0), 3.0);
  EXPECT_EQ(table.Cases(0, 1), 0.0);
  EXPECT_EQ(table.Cases(0, 2), 1.5);
  EXPECT_EQ(table.Cases(0), 4.5);
  EXPECT_EQ(table.Cases(1), 0.0);
  EXPECT_EQ(table.Cases(), 8.5);
  EXPECT_EQ(table.Correct(), 7.0);
}

}  // namespace
