// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcpower.h"

#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
using MCCommonMath::MCPower;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kEpsilon = 0x1p-52;

TEST(MCPower, HasFixedGuards) {
  EXPECT_EQ(MCPower::gMachineMaxExp, 709.0);
  EXPECT_EQ(MCPower::gMachineMinExp, -708.39);
  EXPECT_EQ(MCPower::gMachineEpsilon, std::numeric_limits<double>::epsilon());
  // From it on, whole numbers have gaps.
  EXPECT_EQ(MCPower::gMachineMaxInt + 1.0, MCPower::gMachineMaxInt);
  EXPECT_EQ(MCPower::gMachineMaxInt - 1.0 + 1.0, MCPower::gMachineMaxInt);
}

struct AlmostEqualCase {
  double a, b, k;
  bool fExpected;
};

class MCPowerAlmostEqual : public testing::TestWithParam<AlmostEqualCase> {};

TEST_P(MCPowerAlmostEqual, ComparesRelativelyToTheLarger) {
  const AlmostEqualCase& c = GetParam();
  EXPECT_EQ(MCPower::AlmostEqual(c.a, c.b, c.k), c.fExpected) << c.a << ' ' << c.b;
  EXPECT_EQ(MCPower::AlmostEqual(c.b, c.a, c.k), c.fExpected) << "the other way round";
  EXPECT_EQ(MCPower::AlmostEqual(-c.a, -c.b, c.k), c.fExpected) << "with the signs changed";
}

INSTANTIATE_TEST_SUITE_P(
    Table, MCPowerAlmostEqual,
    testing::Values(
        AlmostEqualCase{0.0, 0.0, 0.0, true}, AlmostEqualCase{0.0, -0.0, 0.0, true},
        AlmostEqualCase{0.0, 5e-324, 1e10, false}, AlmostEqualCase{1.0, -1.0, 1e300, false},
        AlmostEqualCase{1.0, 1.0, 0.0, true},
        // The distance is 1 epsilon, relative to a larger value of 1 + epsilon.
        AlmostEqualCase{1.0, 1.0 + kEpsilon, 1.0, true},
        AlmostEqualCase{1.0, 1.0 + kEpsilon, 0.99, false},
        AlmostEqualCase{1.0, 1.0 + 33.0 * kEpsilon, 32.0, false},
        AlmostEqualCase{1.0, 1.0 + 32.0 * kEpsilon, 32.0, true},
        AlmostEqualCase{1e300, 1e300, 0.0, true}, AlmostEqualCase{1e300, 1.1e300, 32.0, false},
        AlmostEqualCase{kInfinity, kInfinity, 32.0, false},
        AlmostEqualCase{kInfinity, 1.0, 32.0, false}, AlmostEqualCase{kNaN, 1.0, 32.0, false},
        AlmostEqualCase{kNaN, 0.0, 32.0, false}, AlmostEqualCase{kNaN, kNaN, 32.0, false}));

TEST(MCPower, RecognisesReciprocalsOfOddAndEvenIntegers) {
  for (int n = 1; n <= 1001; ++n) {
    for (const double sign : {1.0, -1.0}) {
      const double x = sign / n;
      EXPECT_EQ(MCPower::IsOneOverOddInteger(x, 32.0), n % 2 != 0) << n;
      EXPECT_EQ(MCPower::IsOneOverEvenInteger(x, 32.0), n % 2 == 0) << n;
    }
  }
}

TEST(MCPower, TakesReciprocalsWithinTheToleranceOnly) {
  const double third = 1.0 / 3.0;
  EXPECT_TRUE(MCPower::IsOneOverOddInteger(third * (1.0 + 16.0 * kEpsilon), 32.0));
  EXPECT_FALSE(MCPower::IsOneOverOddInteger(third * (1.0 + 64.0 * kEpsilon), 32.0));
  EXPECT_TRUE(MCPower::IsOneOverOddInteger(third * (1.0 + 64.0 * kEpsilon), 80.0));
  EXPECT_FALSE(MCPower::IsOneOverEvenInteger(0.26, 32.0));
}

TEST(MCPower, FindsNoReciprocalInZeroInfinitiesAndNaN) {
  // 1/2.5 rounds to 0, which isn't counted.
  for (const double x : {0.0, -0.0, kNaN, kInfinity, -kInfinity, 2.5, 1e300, 0.4, 5e-324}) {
    EXPECT_FALSE(MCPower::IsOneOverOddInteger(x, 32.0)) << x;
    EXPECT_FALSE(MCPower::IsOneOverEvenInteger(x, 32.0)) << x;
  }
  EXPECT_TRUE(MCPower::IsOneOverEvenInteger(1e-300, 32.0)) << "all doubles beyond 2^53 are even";
}

struct ExponentCase {
  double x, fOut;
  int fStatus;
};

TEST(MCPower, ExponentTellsUnderflowAndOverflow) {
  const ExponentCase cases[] = {
      {0.0, 1.0, 0},
      {-708.39, std::exp(-708.39), 0},
      {std::nextafter(-708.39, -1000.0), 0.0, 1},
      {-1e300, 0.0, 1},
      {-kInfinity, 0.0, 1},
      {709.0, std::exp(709.0), 0},
      {std::nextafter(709.0, 1000.0), kMissing, 2},
      {710.0, kMissing, 2},
      {kInfinity, kMissing, 2},
  };
  for (const ExponentCase& c : cases) {
    double out = 99.0;
    EXPECT_EQ(MCPower::Exponent(c.x, out), c.fStatus) << c.x;
    EXPECT_EQ(out, c.fOut) << c.x;
  }
}

TEST(MCPower, ExponentPassesNaNOn) {
  double out = 99.0;
  EXPECT_EQ(MCPower::Exponent(kNaN, out), 0);
  EXPECT_TRUE(std::isnan(out));
}

TEST(MCPower, MultipliesWithTheSignOfTheProduct) {
  // Logarithms of 2 and 3 are within half a unit: a few units of the last place in all.
  EXPECT_NEAR(MCPower::Multiply(2.0, 3.0), 6.0, 4e-15);
  EXPECT_NEAR(MCPower::Multiply(-2.0, 3.0), -6.0, 4e-15);
  EXPECT_NEAR(MCPower::Multiply(2.0, -3.0), -6.0, 4e-15);
  EXPECT_NEAR(MCPower::Multiply(-2.0, -3.0), 6.0, 4e-15);
  EXPECT_NEAR(MCPower::Multiply(1e300, 1e-300), 1.0, 1e-12);
}

TEST(MCPower, MultipliesZeroWithAnything) {
  for (const double x : {0.0, 1.0, -3.0, kMissing, kInfinity, kNaN}) {
    EXPECT_EQ(MCPower::Multiply(0.0, x), 0.0);
    EXPECT_EQ(MCPower::Multiply(x, -0.0), 0.0);
  }
}

TEST(MCPower, AProductThatOverflowsIsMissingForEitherSign) {
  EXPECT_EQ(MCPower::Multiply(1e200, 1e200), kMissing);
  EXPECT_EQ(MCPower::Multiply(-1e200, 1e200), kMissing);
  EXPECT_EQ(MCPower::Multiply(kInfinity, -2.0), kMissing);
}

TEST(MCPower, AProductThatUnderflowsIsZero) {
  EXPECT_EQ(MCPower::Multiply(1e-200, -1e-200), 0.0);
  EXPECT_TRUE(std::isnan(MCPower::Multiply(kNaN, 2.0)));
}

struct PowerCase {
  double x, y, fOut;
  int fStatus;
};

class MCPowerPower : public testing::TestWithParam<PowerCase> {};

TEST_P(MCPowerPower, AnswersByTheSignOfBaseAndTheKindOfExponent) {
  const PowerCase& c = GetParam();
  double out = 99.0;
  EXPECT_EQ(MCPower::Power(c.x, c.y, out), c.fStatus) << c.x << " to the power " << c.y;
  // exp(t) with |t| up to 25: a relative error of 2^-52 |t| and a little.
  EXPECT_NEAR(out, c.fOut, 1e-14 * std::fabs(c.fOut)) << c.x << " to the power " << c.y;
}

constexpr double kMaxInt = MCPower::gMachineMaxInt;

INSTANTIATE_TEST_SUITE_P(ZeroBase, MCPowerPower,
                         testing::Values(PowerCase{0.0, 0.0, 1.0, 7}, PowerCase{-0.0, 0.0, 1.0, 7},
                                         PowerCase{0.0, 2.5, 0.0, 0},
                                         PowerCase{0.0, kInfinity, 0.0, 0},
                                         PowerCase{0.0, -1.0, kMissing, 6},
                                         PowerCase{0.0, kNaN, kMissing, 6}));

INSTANTIATE_TEST_SUITE_P(
    NegativeBase, MCPowerPower,
    testing::Values(PowerCase{-8.0, 0.0, 1.0, 5}, PowerCase{-kInfinity, 0.0, 1.0, 5},
                    PowerCase{-8.0, 2.0, 64.0, 0}, PowerCase{-8.0, -2.0, 1.0 / 64.0, 0},
                    PowerCase{-8.0, 3.0, -512.0, 0}, PowerCase{-8.0, -3.0, -1.0 / 512.0, 0},
                    PowerCase{-8.0, 1.0, -8.0, 0}, PowerCase{-8.0, -1.0, -0.125, 0},
                    PowerCase{-8.0, 1.0 / 3.0, -2.0, 0}, PowerCase{-8.0, -1.0 / 3.0, -0.5, 0},
                    PowerCase{-32.0, 0.2, -2.0, 0}, PowerCase{-8.0, 0.25, kMissing, 4},
                    PowerCase{-8.0, 0.5, kMissing, 4}, PowerCase{-8.0, 2.5, kMissing, 4},
                    PowerCase{-8.0, 2.0 / 3.0, kMissing, 4},
                    PowerCase{-8.0, kInfinity, kMissing, 4},
                    PowerCase{-8.0, -kInfinity, kMissing, 4}, PowerCase{-8.0, kNaN, kMissing, 4}));

INSTANTIATE_TEST_SUITE_P(
    NegativeBaseAtTheLimits, MCPowerPower,
    testing::Values(PowerCase{-10.0, 400.0, kMissing, 2}, PowerCase{-10.0, 401.0, kMissing, 3},
                    PowerCase{-10.0, -401.0, 0.0, 1}, PowerCase{-0.1, -401.0, kMissing, 2},
                    PowerCase{-0.1, -400.0, kMissing, 2}, PowerCase{-0.1, 400.0, 0.0, 1},
                    PowerCase{-kInfinity, 1.0 / 3.0, kMissing, 3}, PowerCase{-1.0, kMaxInt, 1.0, 0},
                    PowerCase{-1.0, -kMaxInt, 1.0, 0}, PowerCase{-1.0, kMaxInt - 1.0, -1.0, 0},
                    PowerCase{-1.0, 1.0 - kMaxInt, -1.0, 0},
                    PowerCase{-1.0, kMaxInt + 2.0, kMissing, 4},
                    PowerCase{-1.0, -kMaxInt - 2.0, kMissing, 4},
                    PowerCase{-1.0, 1e300, kMissing, 4}));

INSTANTIATE_TEST_SUITE_P(
    PositiveBase, MCPowerPower,
    testing::Values(PowerCase{8.0, 0.0, 1.0, 0}, PowerCase{kInfinity, 0.0, 1.0, 0},
                    PowerCase{8.0, 1.0 / 3.0, 2.0, 0}, PowerCase{4.0, 0.5, 2.0, 0},
                    PowerCase{8.0, -2.0, 1.0 / 64.0, 0}, PowerCase{10.0, 400.0, kMissing, 2},
                    PowerCase{10.0, -400.0, 0.0, 1}, PowerCase{2.0, kInfinity, kMissing, 2},
                    PowerCase{2.0, -kInfinity, 0.0, 1}));

INSTANTIATE_TEST_SUITE_P(NaNBase, MCPowerPower,
                         testing::Values(PowerCase{kNaN, 0.0, kMissing, 4},
                                         PowerCase{kNaN, 2.0, kMissing, 4},
                                         PowerCase{kNaN, kNaN, kMissing, 4}));

TEST(MCPower, APositiveBaseTurnsANaNExponentIntoNaN) {
  double out = 99.0;
  EXPECT_EQ(MCPower::Power(2.0, kNaN, out), 0);
  EXPECT_TRUE(std::isnan(out));
}
}  // namespace
