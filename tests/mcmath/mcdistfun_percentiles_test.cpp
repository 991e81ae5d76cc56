// SPDX-License-Identifier: Apache-2.0
// Percentiles of weighted lists and confidence intervals for the median.
#include "mcmath/mcdistfun.h"
#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;
using Doubles = std::vector<double>;
constexpr double kMissing = MCMV::gMissingValue;
constexpr double kInf = std::numeric_limits<double>::infinity();
const Doubles kNone;

TEST(MCDistFunPercentiles, FollowTheNineDefinitions) {
  const Doubles values = {1.0, 2.0, 4.0, 8.0, 16.0, 32.0};
  // Of quantile(c(1, 2, 4, 8, 16, 32), p, type = 1:9) in R.
  struct {
    double fP;
    double fExpected[9];
  } const cases[] = {
      {0.1, {1.0, 1.0, 1.0, 1.0, 1.1, 1.0, 1.5, 1.0, 1.0}},
      {0.25, {2.0, 2.0, 2.0, 1.5, 2.0, 1.75, 2.5, 1.0 + 11.0 / 12.0, 1.9375}},
      {0.5, {4.0, 6.0, 4.0, 4.0, 6.0, 6.0, 6.0, 6.0, 6.0}},
      {0.75, {16.0, 16.0, 8.0, 12.0, 16.0, 20.0, 14.0, 17.0 + 1.0 / 3.0, 17.0}},
      {0.95, {32.0, 32.0, 32.0, 27.2, 32.0, 32.0, 28.0, 32.0, 32.0}},
      {0.0, {1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0}},
      {1.0, {32.0, 32.0, 32.0, 32.0, 32.0, 32.0, 32.0, 32.0, 32.0}},
  };
  for (const auto& c : cases) {
    for (long method = 1; method <= 9; ++method) {
      EXPECT_NEAR(D::GPTile(method, c.fP, values, kNone), c.fExpected[method - 1], 1e-13)
          << method << ' ' << c.fP;
    }
  }
}

TEST(MCDistFunPercentiles, TakeWholeWeightsAsRepetitions) {
  const Doubles values = {-3.0, 0.5, 0.75, 2.0, 9.0};
  const Doubles weights = {2.0, 1.0, 0.0, 4.0, 3.0};
  const Doubles repeated = {-3.0, -3.0, 0.5, 2.0, 2.0, 2.0, 2.0, 9.0, 9.0, 9.0};
  for (long method = 1; method <= 9; ++method) {
    for (int i = 0; i <= 40; ++i) {
      const double p = i / 40.0;
      EXPECT_EQ(D::GPTile(method, p, values, weights), D::GPTile(method, p, repeated, kNone))
          << method << ' ' << p;
    }
  }
}

TEST(MCDistFunPercentiles, TakeFractionsOfWeights) {
  const Doubles values = {1.0, 2.0, 3.0};
  const Doubles weights = {0.5, 0.25, 0.25};
  EXPECT_EQ(D::GPTile(1, 0.4, values, weights), 1.0);
  EXPECT_EQ(D::GPTile(2, 0.9, values, weights), 3.0);
}

TEST(MCDistFunPercentiles, KeepInfinitiesApartFromTheirNeighbours) {
  const Doubles values = {-kInf, 1.0, 2.0, kInf};
  EXPECT_EQ(D::GPTile(7, 0.5, values, kNone), 1.5);
  EXPECT_EQ(D::GPTile(7, 0.0, values, kNone), -kInf);
  EXPECT_EQ(D::GPTile(7, 1.0 / 3.0, values, kNone), 1.0);
  EXPECT_EQ(D::GPTile(7, 0.9, values, kNone), kInf);
}

TEST(MCDistFunPercentiles, AreMissingBetweenBothInfinities) {
  const Doubles values = {-kInf, -kInf, kInf, kInf};
  for (const long method : {2L, 5L, 6L, 7L, 8L, 9L}) {
    EXPECT_EQ(D::GPTile(method, 0.5, values, kNone), kMissing) << method;
  }
  EXPECT_EQ(D::GPTile(7, 0.5, {-kInf, kInf}, {1.0, 2.0}), kInf);
  // Definitions that take one of the two values, and ranks within a run of equal ones.
  EXPECT_EQ(D::GPTile(1, 0.5, values, kNone), -kInf);
  EXPECT_EQ(D::GPTile(3, 0.5, values, kNone), -kInf);
  EXPECT_EQ(D::GPTile(4, 0.5, values, kNone), -kInf);
  EXPECT_EQ(D::GPTile(7, 0.2, values, kNone), -kInf);
  EXPECT_EQ(D::GPTile(7, 0.8, values, kNone), kInf);
}

TEST(MCDistFunPercentiles, AreRefusedForBadArguments) {
  const double nan = std::nan("");
  const Doubles good = {1.0, 2.0};
  EXPECT_EQ(D::GPTile(0, 0.5, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(10, 0.5, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(std::numeric_limits<long>::min(), 0.5, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(std::numeric_limits<long>::max(), 0.5, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, kInf, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, -kInf, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, -0.1, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 1.1, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, nan, good, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, kNone, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, {2.0, 1.0}, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, {1.0, nan}, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, {nan}, kNone), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {1.0}), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {1.0, -1.0}), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {1.0, nan}), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {0.0, 0.0}), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {1.0, kInf}), kMissing);
  EXPECT_EQ(D::GPTile(7, 0.5, good, {1e308, 1e308}), kMissing);
}

Doubles Counted(int n) {
  Doubles values;
  for (int i = 1; i <= n; ++i) values.push_back(i);
  return values;
}

TEST(MCDistFunMedian, HasTheTabulatedIntervals) {
  // Largest r of confidence at least 0.95, and that confidence: David and Nagaraja, section 7.1;
  // W. J. Conover, Practical Nonparametric Statistics, table A3.
  struct {
    int fN;
    double fR;
    double fConfidence;
  } const cases[] = {{6, 1.0, 0.96875},
                     {10, 2.0, 0.978515625},
                     {15, 4.0, 0.96484375},
                     {20, 6.0, 0.9586105347},
                     {25, 8.0, 0.9567147493}};
  for (const auto& c : cases) {
    double lower = 0.0;
    double upper = 0.0;
    const double confidence = D::Mednci(1, 0.95, Counted(c.fN), lower, upper);
    EXPECT_EQ(lower, c.fR) << c.fN;
    EXPECT_EQ(upper, c.fN + 1 - c.fR) << c.fN;
    EXPECT_NEAR(confidence, c.fConfidence, 5e-11) << c.fN;
  }
}

TEST(MCDistFunMedian, IntervalReachesALevelThatIsExactlyAttained) {
  double lower = 0.0;
  double upper = 0.0;
  EXPECT_EQ(D::Mednci(1, 0.96875, Counted(6), lower, upper), 0.96875);
  EXPECT_EQ(lower, 1.0);
  EXPECT_EQ(upper, 6.0);
}

TEST(MCDistFunMedian, IsInterpolatedBetweenNeighbouringIntervals) {
  // n = 10: r = 2 has 0.978515625, r = 3 has 0.890625, so the share is 0.32444..., and the weight
  // 8 * share / (2 + 6 * share).
  const double share = (0.978515625 - 0.95) / (0.978515625 - 0.890625);
  const double weight = 8.0 * share / (2.0 + 6.0 * share);
  double lower = 0.0;
  double upper = 0.0;
  EXPECT_EQ(D::Mednci(2, 0.95, Counted(10), lower, upper), 0.95);
  EXPECT_NEAR(lower, 2.0 + weight, 1e-13);
  EXPECT_NEAR(upper, 9.0 - weight, 1e-13);
  // Nothing lies between the two middle values.
  EXPECT_EQ(D::Mednci(2, 0.3, Counted(2), lower, upper), 0.5);
  EXPECT_EQ(lower, 1.0);
  EXPECT_EQ(upper, 2.0);
}

// Interpolation begins between the ranks 2 and 3 of ten values, and between 8 and 9.
Doubles WithInfinities(int below, int above) {
  Doubles values = Counted(10);
  std::fill(values.begin(), values.begin() + below, -kInf);
  std::fill(values.end() - above, values.end(), kInf);
  return values;
}

TEST(MCDistFunMedian, EndNextToInfinityIsThatOfTheWiderInterval) {
  struct {
    int fBelow;
    int fAbove;
    double fLower;  // 0 where it is interpolated
    double fUpper;
  } const cases[] = {{1, 1, 0.0, 0.0},    {2, 2, -kInf, kInf},  {5, 5, -kInf, kInf},
                     {2, 8, -kInf, kInf}, {0, 8, 2.0, kInf},    {8, 0, -kInf, 9.0},
                     {8, 2, -kInf, kInf}, {10, 0, -kInf, -kInf}};
  double plainLower = 0.0;
  double plainUpper = 0.0;
  EXPECT_EQ(D::Mednci(2, 0.95, Counted(10), plainLower, plainUpper), 0.95);
  for (const auto& c : cases) {
    double lower = 0.0;
    double upper = 0.0;
    EXPECT_EQ(D::Mednci(2, 0.95, WithInfinities(c.fBelow, c.fAbove), lower, upper), 0.95);
    EXPECT_EQ(lower, c.fLower == 0.0 ? plainLower : c.fLower) << c.fBelow << ' ' << c.fAbove;
    EXPECT_EQ(upper, c.fUpper == 0.0 ? plainUpper : c.fUpper) << c.fBelow << ' ' << c.fAbove;
  }
}

TEST(MCDistFunMedian, IntervalIsRefusedWithoutAChangeForBadArguments) {
  double lower = -1.0;
  double upper = -2.0;
  const Doubles good = Counted(20);
  EXPECT_EQ(D::Mednci(0, 0.95, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(3, 0.95, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, 0.0, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, 1.0, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, std::nan(""), good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, -0.5, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, kInf, good, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, 0.3, {1.0, std::nan("")}, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, 0.95, kNone, lower, upper), kMissing);
  EXPECT_EQ(D::Mednci(1, 0.95, {3.0, 2.0}, lower, upper), kMissing);
  // Five values have 0.9375 between the ends.
  EXPECT_EQ(D::Mednci(1, 0.95, Counted(5), lower, upper), kMissing);
  EXPECT_EQ(lower, -1.0);
  EXPECT_EQ(upper, -2.0);
}
}  // namespace
