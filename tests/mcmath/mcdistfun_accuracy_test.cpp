// SPDX-License-Identifier: Apache-2.0
// Distribution functions against tables of 22 digits, made with 60.
#include "support/accuracytable.h"
#include "support/distributiontables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>

namespace {
using mctest::AccuracyTable;

const std::string kFolder = MCSTAT_TEST_DATA "/mcmath/";
const std::string kBounds = kFolder + "distributionbounds.csv";

TEST(MCDistFunAccuracy, StaysWithinTheBoundsInEveryRegion) {
  AccuracyTable table;
  std::size_t count = 0;
  for (const mctest::MeasuredFunction& function : mctest::MeasuredDistributions()) {
    const auto rows = mctest::ReadReference(kFolder + function.fTable + ".csv", function.fNValues);
    EXPECT_GE(rows.size(), 2000U) << function.fTable;
    for (const mctest::ReferenceRow& row : rows) {
      const long double expected = row.fValues[function.fValue];
      // Next to the least value the answer may be 0.
      if (std::fabs(expected) < 3.4e-308L) continue;
      table.Add(function.fName, row.fRegion, function.fFunction(row.fArguments), expected);
      ++count;
    }
  }
  std::cout << table.Text(kBounds);
  EXPECT_EQ(table.Complaints(kBounds), "");
  EXPECT_GT(count, 40000U);
}
}  // namespace
