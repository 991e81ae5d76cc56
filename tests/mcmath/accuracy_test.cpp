// SPDX-License-Identifier: Apache-2.0
// Special functions and safe arithmetic against tables of 30 digits.
#include "mcmath/mcextremenum.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcpower.h"
#include "support/accuracytable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

namespace {
using MCCommonMath::MCExtremeNum;
using MCCommonMath::MCMathFun;
using MCCommonMath::MCPower;
using mctest::AccuracyTable;

const std::string kFolder = MCSTAT_TEST_DATA "/mcmath/";
const std::string kBounds = kFolder + "accuracybounds.csv";

// Measures `function`, which takes the arguments of a row as a vector.
template <class Function>
void Measure(AccuracyTable& table, const std::string& name, const std::string& file,
             Function function) {
  for (const mctest::ReferenceRow& row : mctest::ReadReference(kFolder + file)) {
    table.Add(name, row.fRegion, function(row.fArguments), row.fValues[0]);
  }
}

void Check(const AccuracyTable& table) {
  std::cout << table.Text(kBounds);
  EXPECT_EQ(table.Complaints(kBounds), "");
}

using Arguments = std::vector<double>;

TEST(Accuracy, OfDigammaAndTrigamma) {
  AccuracyTable table;
  Measure(table, "Digamma", "digamma.csv",
          [](const Arguments& x) { return MCMathFun::Digamma(x[0]); });
  Measure(table, "Trigamma", "trigamma.csv",
          [](const Arguments& x) { return MCMathFun::Trigamma(x[0]); });
  Check(table);
}

TEST(Accuracy, OfExponentsPowersAndProducts) {
  AccuracyTable table;
  Measure(table, "Exponent", "exponent.csv", [](const Arguments& x) {
    double out = 0.0;
    EXPECT_EQ(MCPower::Exponent(x[0], out), 0);
    return out;
  });
  Measure(table, "Power", "power.csv", [](const Arguments& x) {
    double out = 0.0;
    EXPECT_EQ(MCPower::Power(x[0], x[1], out), 0);
    return out;
  });
  Measure(table, "Multiply", "multiply.csv",
          [](const Arguments& x) { return MCPower::Multiply(x[0], x[1]); });
  Check(table);
}

TEST(Accuracy, OfRootsOfSums) {
  AccuracyTable table;
  Measure(table, "SumSqRoot", "sumsqroot.csv", [](const Arguments& x) {
    double out = 0.0;
    EXPECT_TRUE(MCExtremeNum::SumSqRoot(x[0], x[1], x[2], x[3], out));
    return out;
  });
  Check(table);
}

TEST(AccuracyTable, ComplainsAboutErrorsAboveTheirBoundAndAboutMissingPlaces) {
  AccuracyTable table;
  table.Add("Digamma", "1 to 2", 1.0, 1.0L + 1e-14L);
  table.Add("Digamma", "elsewhere", 1.0, 1.0L);
  const std::string complaints = table.Complaints(kBounds);
  EXPECT_NE(complaints.find("Digamma, 1 to 2: error 45.036 above 3.500\n"), std::string::npos)
      << complaints;
  EXPECT_NE(complaints.find("Digamma, elsewhere: no bound\n"), std::string::npos);
  EXPECT_NE(complaints.find("Digamma, 2 to 10: no values\n"), std::string::npos);
  EXPECT_EQ(complaints.find("Trigamma"), std::string::npos);
}

TEST(AccuracyTable, CountsUnitsOfTheLastPlace) {
  EXPECT_EQ(mctest::UlpError(1.0, 1.0L), 0.0);
  EXPECT_EQ(mctest::UlpError(1.0, 1.0L + 0x1p-53L), 0.5);
  EXPECT_EQ(mctest::UlpError(5e-324, 0.0L), 1.0);
  EXPECT_EQ(mctest::UlpError(HUGE_VAL, 1e400L), 0.0);
  EXPECT_EQ(mctest::UlpError(1.0, 1e400L), HUGE_VAL);
  EXPECT_EQ(mctest::UlpError(std::nan(""), 1.0L), HUGE_VAL);
}
}  // namespace
