// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcextremenum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
using MCCommonMath::MCExtremeNum;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kUntouched = 99.0;

struct Case {
  double a, b, c, d;
  bool fResult;
  double fOut;
};

class SumSqRoot : public testing::TestWithParam<Case> {};

TEST_P(SumSqRoot, AnswersByTheSignsAndTheLargerTerm) {
  const Case& c = GetParam();
  double out = kUntouched;
  EXPECT_EQ(MCExtremeNum::SumSqRoot(c.a, c.b, c.c, c.d, out), c.fResult);
  // Exact squares but for a last place: 4 units of it.
  if (std::isinf(c.fOut)) {
    EXPECT_EQ(out, c.fOut);
  } else {
    EXPECT_NEAR(out, c.fOut, 1e-15 * c.fOut);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Sums, SumSqRoot,
    testing::Values(Case{3.0, 1.0, 4.0, 1.0, true, 5.0}, Case{-3.0, 4.0, 2.0, 16.0, true, 10.0},
                    Case{2.0, 9.0, -6.0, 1.0, true, 6.0 * 1.4142135623730951},
                    Case{0.0, 0.0, 0.0, 0.0, true, 0.0}, Case{0.0, 5.0, 2.0, 9.0, true, 6.0},
                    Case{7.0, 1.0, 3.0, 0.0, true, 7.0}, Case{7.0, 1.0, 3.0, -0.0, true, 7.0},
                    Case{3e300, 1.0, 4e300, 1.0, true, 5e300},
                    Case{3e-300, 1.0, 4e-300, 1.0, true, 5e-300},
                    Case{3e200, 1e-200, 4e-200, 1e200, true, 3e100},
                    Case{1.7e308, 1.0, 1.7e308, 1.0, true, kInfinity}));

INSTANTIATE_TEST_SUITE_P(Differences, SumSqRoot,
                         testing::Values(Case{5.0, 1.0, 3.0, -1.0, true, 4.0},
                                         Case{3.0, -1.0, 5.0, 1.0, true, 4.0},
                                         Case{5e300, 1.0, 3e300, -1.0, true, 4e300},
                                         Case{3e-300, -1.0, 5e-300, 1.0, true, 4e-300},
                                         Case{3.0, 4.0, 6.0, -1.0, true, 0.0},
                                         Case{6.0, -1.0, 3.0, 4.0, true, 0.0},
                                         Case{3.0, 1.0, 5.0, -1.0, false, kUntouched},
                                         Case{5.0, -1.0, 3.0, 1.0, false, kUntouched}));

INSTANTIATE_TEST_SUITE_P(NoRoot, SumSqRoot,
                         testing::Values(Case{1.0, -1.0, 1.0, -1.0, false, kUntouched},
                                         Case{0.0, -1.0, 0.0, -1.0, false, kUntouched},
                                         Case{1.0, kNaN, 1.0, 1.0, false, kUntouched},
                                         Case{1.0, 1.0, 1.0, kNaN, false, kUntouched},
                                         Case{1.0, kNaN, 1.0, -1.0, false, kUntouched},
                                         Case{1.0, -1.0, 1.0, kNaN, false, kUntouched}));

INSTANTIATE_TEST_SUITE_P(Infinities, SumSqRoot,
                         testing::Values(Case{kInfinity, 1.0, kInfinity, 1.0, true, kInfinity},
                                         Case{kInfinity, 1.0, 1.0, 1.0, true, kInfinity},
                                         Case{1.0, 1.0, 1.0, kInfinity, true, kInfinity},
                                         Case{kInfinity, 1.0, 1.0, -1.0, true, kInfinity},
                                         Case{kInfinity, 1.0, kInfinity, -1.0, true, 0.0},
                                         Case{1e308, 100.0, 1e308, -4e4, true, 0.0}));

TEST(SumSqRoot, PassesOnNaNOfEitherTerm) {
  for (const double b : {1.0, -1.0}) {
    for (const double d : {1.0, -1.0}) {
      if (b < 0.0 && d < 0.0) continue;
      double out = kUntouched;
      EXPECT_TRUE(MCExtremeNum::SumSqRoot(kNaN, b, 2.0, d, out));
      EXPECT_TRUE(std::isnan(out)) << b << ' ' << d;
      out = kUntouched;
      EXPECT_TRUE(MCExtremeNum::SumSqRoot(2.0, b, kNaN, d, out));
      EXPECT_TRUE(std::isnan(out)) << b << ' ' << d;
    }
  }
}
}  // namespace
