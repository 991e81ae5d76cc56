// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/detail/variates.h"
#include "support/csvrows.h"
#include "support/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using MCCommonMath::detail::FactorialCorrection;
using MCCommonMath::detail::LogBinomialRatio;
using mctest::ToNumber;

TEST(BinomialVariates, KnowTheRatioOfTheirProbabilities) {
  // The table is exact to 25 digits. Up to n = 10^9 the terms, of size (k - m)^2/m, lose at most a
  // dozen units of rounding each; at n = 2^53 those of size |k - m| = 2e8 cancel.
  for (const auto& row : mctest::CsvRows("random/binomialratio.csv")) {
    const double n = ToNumber(row[0]);
    const double actual = LogBinomialRatio(n, ToNumber(row[1]), ToNumber(row[2]), ToNumber(row[3]));
    const double tolerance = n <= 1e9 ? 1e-10 : 1e-6;
    EXPECT_NEAR(actual, ToNumber(row[4]), tolerance) << row[0] << ' ' << row[1] << ' ' << row[2];
  }
}

TEST(BinomialVariates, CorrectFactorials) {
  // The series is alternating: its first left out term at k = 10 is 1/(1680 * 11^7) = 3e-11.
  for (int k = 0; k < 60; ++k) {
    const long double n = k + 1.0L;
    const long double rough = 0.5L * std::log(2.0L * std::acos(-1.0L)) + (k + 0.5L) * std::log(n);
    const long double expected = std::lgamma(n) - (rough - n);
    EXPECT_NEAR(FactorialCorrection(k), static_cast<double>(expected), k < 10 ? 1e-15 : 4e-11) << k;
  }
}

TEST(BinomialVariates, AreRejectedWhereTheirProbabilityVanishes) {
  // p / (1 - p) is so small that the odds of the last number of successes round to 0.
  EXPECT_LT(LogBinomialRatio(9007199254740992.0, 1e-14, 9007199254740992.0, 90.0), -1e15);
}

}  // namespace
