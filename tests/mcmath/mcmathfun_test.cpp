// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcmathfun.h"

#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {
using MCCommonMath::MCMathFun;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kEpsilon = 0x1p-52;
constexpr int kSmallest = std::numeric_limits<int>::min();
constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kLadder[] = {0, 1, 2, 3, 5, 7, 8, 9, 13, 16, 21, 34, 55, 64, 89};

std::size_t Index(std::int64_t position) {
  return static_cast<std::size_t>(position);
}

Doubles RandomDoubles(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  Doubles x(Index(n));
  for (double& value : x) value = uniform(random);
  return x;
}

// A walk of n elements over a vector that has room for it, forwards or backwards.
struct Walk {
  int fPos, fInc;
};
constexpr Walk kWalks[] = {{0, 1}, {3, 1}, {2, 3}, {300, -1}, {299, -3}, {5, 0}};
constexpr int kRoom = 301;

std::int64_t At(const Walk& walk, int i) {
  return walk.fPos + std::int64_t{i} * walk.fInc;
}

// The eight lanes and their tree, written down plainly.
double LaneSum(const Doubles& terms) {
  double lane[8] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  for (std::size_t i = 0; i < terms.size(); ++i) lane[i % 8] += terms[i];
  double four[4];
  for (int i = 0; i < 4; ++i) four[i] = lane[i] + lane[i + 4];
  return (four[0] + four[2]) + (four[1] + four[3]);
}

TEST(MCMathFunStrided, SumsRunInEightLanes) {
  const Doubles x = RandomDoubles(kRoom, 1);
  const Doubles y = RandomDoubles(kRoom, 2);
  for (const int n : kLadder) {
    for (const Walk& walk : kWalks) {
      Doubles absolutes;
      for (int i = 0; i < n; ++i) absolutes.push_back(std::fabs(x[Index(At(walk, i))]));
      EXPECT_EQ(MCMathFun::DASum(n, x, walk.fPos, walk.fInc), LaneSum(absolutes)) << n;
      for (const Walk& other : kWalks) {
        Doubles products;
        for (int i = 0; i < n; ++i)
          products.push_back(x[Index(At(walk, i))] * y[Index(At(other, i))]);
        EXPECT_EQ(MCMathFun::DDot(n, x, walk.fPos, walk.fInc, y, other.fPos, other.fInc),
                  LaneSum(products))
            << n;
      }
    }
    EXPECT_EQ(MCMathFun::DSum(n, x, 7), LaneSum({x.begin() + 7, x.begin() + 7 + n})) << n;
  }
}

TEST(MCMathFunStrided, UpdatesTheWalkedElementsOnly) {
  const Doubles x = RandomDoubles(kRoom, 3);
  const Doubles before = RandomDoubles(kRoom, 4);
  for (const int n : kLadder) {
    for (const Walk& walk : kWalks) {
      Doubles filled = before;
      Doubles scaled = before;
      Doubles added = before;
      for (int i = 0; i < n; ++i) {
        filled[Index(At(walk, i))] = 2.5;
        scaled[Index(At(walk, i))] *= -3.0;
        added[Index(At(walk, i))] += 0.7 * x[Index(4 + 2 * i)];
      }
      Doubles y = before;
      MCMathFun::DLoad(n, 2.5, y, walk.fPos, walk.fInc);
      EXPECT_EQ(y, filled);
      y = before;
      MCMathFun::DScal(n, -3.0, y, walk.fPos, walk.fInc);
      EXPECT_EQ(y, scaled);
      y = before;
      MCMathFun::Daxpy(n, 0.7, x, 4, 2, y, walk.fPos, walk.fInc);
      EXPECT_EQ(y, added);
    }
  }
}

TEST(MCMathFunStrided, DaxpyOnOneVectorGoesElementByElement) {
  Doubles x = {1.0, 1.0, 1.0, 1.0};
  MCMathFun::Daxpy(3, 1.0, x, 0, 1, x, 1, 1);
  EXPECT_EQ(x, (Doubles{1.0, 2.0, 3.0, 4.0}));
}

TEST(MCMathFunStrided, ZeroesARange) {
  Doubles x = {1.0, 2.0, 3.0, 4.0};
  MCMathFun::LRZero(x, 1, 2);
  EXPECT_EQ(x, (Doubles{1.0, 0.0, 0.0, 4.0}));
}

TEST(MCMathFunStrided, TouchesNothingWithoutElements) {
  Doubles empty;
  for (const int n : {0, -1, kSmallest}) {
    EXPECT_EQ(MCMathFun::DASum(n, empty, 9, 2), 0.0);
    EXPECT_EQ(MCMathFun::DDot(n, empty, -5, 1, empty, 9, 1), 0.0);
    EXPECT_EQ(MCMathFun::DDot(n, empty, -5, 3, empty, 9, 1), 0.0);
    EXPECT_EQ(MCMathFun::DSum(n, empty, kLargest), 0.0);
    EXPECT_EQ(MCMathFun::DNrm2(n, empty, -1, 1), 0.0);
    EXPECT_EQ(MCMathFun::IIDot(n, empty, 4, 1, empty, 2, 1), 0.0);
    MCMathFun::Daxpy(n, 1.0, empty, 0, 1, empty, 3, 1);
    MCMathFun::DLoad(n, 1.0, empty, -4, 1);
    MCMathFun::DScal(n, 1.0, empty, 7, 1);
    MCMathFun::IIAxpy(n, 1.0, empty, 0, 1, empty, 9, 1);
    MCMathFun::IIInit(n, 1.0, empty, 0, 1);
    MCMathFun::IIScal(n, 1.0, empty, 0, 1);
    MCMathFun::LRZero(empty, 5, n);
    MCMathFun::LTGltl(n, empty);
  }
  EXPECT_TRUE(empty.empty());
}

struct NormCase {
  Doubles fX;
  double fNorm;
};

TEST(MCMathFunNorm, SurvivesExtremeElements) {
  const NormCase cases[] = {
      {{3.0, -4.0}, 5.0},
      {{3e200, 4e200}, 5e200},
      {{3e-200, 4e-200}, 5e-200},
      {{1e200, 1e-200}, 1e200},
      {{1e-200, 0.0, 0.0}, 1e-200},
      {{1e308, 1e308}, 1.4142135623730951e308},
      {{1.7e308, 1.7e308}, kInfinity},
      {{5e-324, 0.0}, 5e-324},
      {{1.5e-323, 2e-323}, 2.5e-323},  // 3, 4 and 5 times the smallest double
      {{0.0, -0.0}, 0.0},
      {{kInfinity, 1.0}, kInfinity},
      {{1.0, -kInfinity}, kInfinity},
  };
  for (const NormCase& c : cases) {
    const double norm = MCMathFun::DNrm2(static_cast<int>(c.fX.size()), c.fX, 0, 1);
    if (std::isinf(c.fNorm)) {
      EXPECT_EQ(norm, c.fNorm);
    } else {
      EXPECT_NEAR(norm, c.fNorm, 4.0 * kEpsilon * c.fNorm) << c.fX[0];
    }
  }
}

TEST(MCMathFunNorm, PassesNaNOnAlsoBesideAnInfinity) {
  EXPECT_TRUE(std::isnan(MCMathFun::DNrm2(2, {1.0, kNaN}, 0, 1)));
  EXPECT_TRUE(std::isnan(MCMathFun::DNrm2(2, {kNaN, kInfinity}, 0, 1)));
  EXPECT_TRUE(std::isnan(MCMathFun::DNrm2(3, {1e200, 1e200, kNaN}, 0, 1)));
}

TEST(MCMathFunNorm, AgreesWithExtendedPrecisionAtEveryScale) {
  const Doubles base = RandomDoubles(kRoom, 6);
  for (const int exponent : {-1070, -600, -500, 0, 500, 600, 1000}) {
    Doubles x = base;
    for (double& value : x) value = std::ldexp(value, exponent);
    for (const Walk& walk : kWalks) {
      // The exponents of a long double reach all squares.
      long double squares = 0.0L;
      for (int i = 0; i < 89; ++i) {
        const long double value = x[Index(At(walk, i))];
        squares += value * value;
      }
      const auto norm = static_cast<double>(std::sqrt(squares));
      // 89 squares in lanes of 12, summed with at most 15 roundings each; and the root halves.
      EXPECT_NEAR(MCMathFun::DNrm2(89, x, walk.fPos, walk.fInc), norm,
                  std::max(10.0 * kEpsilon * norm, std::numeric_limits<double>::denorm_min()))
          << exponent;
    }
  }
}

// Position of element (i, j) of a packed lower triangle.
std::int64_t Packed(std::int64_t i, std::int64_t j) {
  return i >= j ? i * (i + 1) / 2 + j : j * (j + 1) / 2 + i;
}

TEST(MCMathFunColumns, WalkDownTheColumnsOfATriangle) {
  constexpr int kRows = 12;
  const Doubles x = RandomDoubles(kRows * (kRows + 1) / 2, 8);
  const Doubles before = RandomDoubles(kRows * (kRows + 1) / 2, 9);
  for (int r = 0; r < kRows; ++r) {
    for (int j = 0; j <= r; ++j) {
      const int n = kRows - r;
      const int from = static_cast<int>(Packed(r, j));
      const int to = static_cast<int>(Packed(r, r));
      double dot = 0.0;
      Doubles filled = before;
      Doubles scaled = before;
      Doubles added = before;
      for (int i = r; i < kRows; ++i) {
        const std::size_t right = Index(Packed(i, r));
        dot += x[Index(Packed(i, j))] * before[right];
        filled[right] = 2.5;
        scaled[right] *= -3.0;
        added[right] += 0.7 * x[Index(Packed(i, j))];
      }
      EXPECT_EQ(MCMathFun::IIDot(n, x, from, r + 1, before, to, r + 1), dot);
      Doubles y = before;
      MCMathFun::IIInit(n, 2.5, y, to, r + 1);
      EXPECT_EQ(y, filled);
      y = before;
      MCMathFun::IIScal(n, -3.0, y, to, r + 1);
      EXPECT_EQ(y, scaled);
      y = before;
      MCMathFun::IIAxpy(n, 0.7, x, from, r + 1, y, to, r + 1);
      EXPECT_EQ(y, added);
    }
  }
}

TEST(MCMathFunColumns, StepsOfBothWalksAreIndependent) {
  // Positions 0, 1, 3, 6 (inc 1) against 2, 2, 3, 5 (inc 0).
  const Doubles x = {1.0, 2.0, 0.0, 3.0, 0.0, 0.0, 4.0};
  const Doubles y = {0.0, 0.0, 5.0, 6.0, 0.0, 7.0};
  EXPECT_EQ(MCMathFun::IIDot(4, x, 0, 1, y, 2, 0), 5.0 + 10.0 + 18.0 + 28.0);
}

TEST(MCMathFunColumns, LTGltlIsTheIIDotOfColumnsToTheBit) {
  for (const int n : kLadder) {
    Doubles lower = RandomDoubles(n * (n + 1) / 2, 10);
    if (n > 2) lower[Index(Packed(2, 1))] = -0.0;
    Doubles expected;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j <= i; ++j) {
        expected.push_back(MCMathFun::IIDot(n - i, lower, static_cast<int>(Packed(i, i)), i + 1,
                                            lower, static_cast<int>(Packed(i, j)), i + 1));
      }
    }
    MCMathFun::LTGltl(n, lower);
    EXPECT_EQ(lower, expected) << n;
  }
}

TEST(MCMathFunColumns, LTGltlOfASmallTriangle) {
  // L = (2 0 0; 3 5 0; 7 11 13), so L'L = (62 92 91; 92 146 143; 91 143 169).
  Doubles lower = {2.0, 3.0, 5.0, 7.0, 11.0, 13.0};
  MCMathFun::LTGltl(3, lower);
  EXPECT_EQ(lower, (Doubles{62.0, 92.0, 146.0, 91.0, 143.0, 169.0}));
}

TEST(MCMathFun, QLRepsNeedsAPositiveMeasure) {
  EXPECT_FALSE(MCMathFun::QLReps(0.0, 0.0));
  EXPECT_FALSE(MCMathFun::QLReps(0.0, -1.0));
  EXPECT_FALSE(MCMathFun::QLReps(0.0, kNaN));
  EXPECT_FALSE(MCMathFun::QLReps(kNaN, 1.0));
  EXPECT_TRUE(MCMathFun::QLReps(0.0, 1e-300));
  EXPECT_FALSE(MCMathFun::QLReps(kEpsilon, 1.0)) << "the comparison is strict";
  EXPECT_TRUE(MCMathFun::QLReps(0.99 * kEpsilon, 1.0));
  EXPECT_TRUE(MCMathFun::QLReps(-0.99 * kEpsilon, 1.0));
  EXPECT_FALSE(MCMathFun::QLReps(-1.01 * kEpsilon, 1.0));
}

TEST(MCMathFun, RVDMultipliesAWholeSymmetricRow) {
  for (const int n : {1, 2, 3, 8, 13}) {
    const Doubles S = RandomDoubles(n * (n + 1) / 2, 12);
    const Doubles v = RandomDoubles(3 * n, 13);
    for (int stride = 1; stride <= 3; ++stride) {
      for (int row = 0; row < n; ++row) {
        long double expected = 0.0L;
        for (int j = 0; j < n; ++j) {
          expected += static_cast<long double>(S[Index(Packed(row, j))]) * v[Index(j * stride)];
        }
        // Terms below 1, n roundings of sums below n.
        EXPECT_NEAR(MCMathFun::RVD(S, n, row, v, stride), static_cast<double>(expected),
                    n * n * kEpsilon);
      }
    }
  }
}

TEST(MCMathFun, RVDIsMissingForABadRow) {
  const Doubles S(6, 1.0);
  const Doubles v(3, 1.0);
  EXPECT_EQ(MCMathFun::RVD(S, 0, 0, v, 1), kMissing);
  EXPECT_EQ(MCMathFun::RVD(S, -1, 0, v, 1), kMissing);
  EXPECT_EQ(MCMathFun::RVD(S, 3, -1, v, 1), kMissing);
  EXPECT_EQ(MCMathFun::RVD(S, 3, 3, v, 1), kMissing);
  EXPECT_EQ(MCMathFun::RVD(S, 3, 2, v, 1), 3.0);
}

TEST(MCMathFun, VSVIsTheQuadraticForm) {
  EXPECT_EQ(MCMathFun::VSV({2.0, 3.0, 5.0}, 2, {7.0, 11.0}), 98.0 + 2.0 * 231.0 + 605.0);
  for (const int n : kLadder) {
    const Doubles S = RandomDoubles(n * (n + 1) / 2, 14);
    const Doubles v = RandomDoubles(n, 15);
    long double expected = 0.0L;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        expected += static_cast<long double>(v[Index(i)]) * S[Index(Packed(i, j))] * v[Index(j)];
      }
    }
    EXPECT_NEAR(MCMathFun::VSV(S, n, v), static_cast<double>(expected), n * n * kEpsilon) << n;
  }
}

TEST(MCMathFun, VSVIsZeroWithoutRowsAndMissingForShortArguments) {
  EXPECT_EQ(MCMathFun::VSV({}, 0, {}), 0.0);
  EXPECT_EQ(MCMathFun::VSV({1.0}, -1, {1.0}), kMissing);
  EXPECT_EQ(MCMathFun::VSV({1.0, 2.0}, 2, {1.0, 1.0}), kMissing);
  EXPECT_EQ(MCMathFun::VSV({1.0, 2.0, 3.0}, 2, {1.0}), kMissing);
  EXPECT_EQ(MCMathFun::VSV({1.0, 2.0, 3.0, 9.0}, 2, {1.0, 1.0, 9.0}), 8.0);
  EXPECT_EQ(MCMathFun::VSV({1.0}, 70000, Doubles(70000)), kMissing)
      << "n(n+1)/2 is beyond an int here";
}

struct DifferenceCase {
  Doubles a, b;
  double d, fRelative, fAbsolute;
};

TEST(MCMathFun, FindsTheLargestDifferences) {
  const DifferenceCase cases[] = {
      {{}, {}, 1.0, 0.0, 0.0},
      {{1.0}, {}, 1.0, 0.0, 0.0},
      {{3.0, 5.0}, {1.0, 9.0}, 1.0, 1.0, 4.0},
      {{3.0, 5.0, 99.0}, {1.0, 9.0}, 1.0, 1.0, 4.0},
      {{-3.0}, {-1.0, 99.0}, 3.0, 0.5, 2.0},
      {{1.0}, {0.0}, 0.0, 1.0 / 1e-06, 1.0},
      {{1.0}, {0.0}, -5.0, 1.0 / 1e-06, 1.0},
      {{1.0}, {0.0}, kNaN, 1.0 / 1e-06, 1.0},
      {{kNaN, 3.0, kNaN}, {1.0, 1.0, 1.0}, 1.0, 1.0, 2.0},
      {{kInfinity}, {1.0}, 1.0, kInfinity, kInfinity},
      {{kInfinity, 2.0}, {kInfinity, 1.0}, 1.0, 0.5, 1.0},
  };
  for (const DifferenceCase& c : cases) {
    EXPECT_EQ(MCMathFun::VMaxRelDiff(c.a, c.b, c.d), c.fRelative);
    EXPECT_EQ(MCMathFun::VNrm1Diff(c.a, c.b), c.fAbsolute);
  }
}

struct SearchCase {
  int fLo, fHi;
  int x;
  bool fbRight;
  int fExpected;
};

// Cutpoints 10, 20, 30, 40, 50 at positions 0 to 4.
constexpr SearchCase kSearches[] = {
    // Bad ranges.
    {0, 5, 10, false, -2},
    {3, 2, 10, false, -2},
    {-1, 2, 10, false, -2},
    {0, kLargest, 10, false, -2},
    {kSmallest, kSmallest, 10, false, -2},
    // The whole list.
    {0, 4, 5, false, 0},
    {0, 4, 10, false, 0},
    {0, 4, 10, true, 1},
    {0, 4, 11, false, 1},
    {0, 4, 30, false, 2},
    {0, 4, 30, true, 3},
    {0, 4, 35, true, 3},
    {0, 4, 50, false, 4},
    {0, 4, 50, true, -1},
    {0, 4, 51, false, -1},
    // A stretch with neighbours below.
    {2, 3, 20, false, -1},
    {2, 3, 20, true, 2},
    {2, 3, 19, true, -1},
    {2, 3, 25, false, 2},
    {2, 3, 30, false, 2},
    {2, 3, 30, true, 3},
    {2, 3, 40, false, 3},
    {2, 3, 40, true, -1},
    {2, 3, 45, false, -1},
    // A stretch of one.
    {2, 2, 25, false, 2},
    {2, 2, 30, false, 2},
    {2, 2, 30, true, -1},
    {0, 0, -5, true, 0},
};

TEST(MCMathFunBinSearch, FindsThePlaceAmongCutpoints) {
  const Doubles doubles = {10.0, 20.0, 30.0, 40.0, 50.0};
  const Ints ints = {10, 20, 30, 40, 50};
  for (const SearchCase& c : kSearches) {
    EXPECT_EQ(MCMathFun::BinSearch(doubles, c.fLo, c.fHi, static_cast<double>(c.x), c.fbRight),
              c.fExpected)
        << c.fLo << ' ' << c.fHi << ' ' << c.x << ' ' << c.fbRight;
    EXPECT_EQ(MCMathFun::BinSearch(ints, c.fLo, c.fHi, c.x, c.fbRight), c.fExpected)
        << c.fLo << ' ' << c.fHi << ' ' << c.x << ' ' << c.fbRight;
  }
  EXPECT_EQ(MCMathFun::BinSearch(Doubles(), 0, 0, 1.0, false), -2);
}

TEST(MCMathFunBinSearch, AgreesWithCountingFromTheLeft) {
  Ints v;
  for (int i = 0; i < 37; ++i) v.push_back(3 * i);
  for (const bool right : {false, true}) {
    for (int x = -1; x <= 108 - (right ? 1 : 0); ++x) {
      int place = 0;
      while (v[Index(place)] < x || (v[Index(place)] == x && right)) ++place;
      EXPECT_EQ(MCMathFun::BinSearch(v, 0, 36, x, right), place) << x;
    }
  }
}

TEST(MCMathFunBinSearch, FindsOneOfEqualNeighbours) {
  const Ints v = {1, 5, 5, 5, 9};
  const int left = MCMathFun::BinSearch(v, 0, 4, 5, false);
  EXPECT_GE(left, 1);
  EXPECT_LE(left, 3);
  const int right = MCMathFun::BinSearch(v, 0, 4, 5, true);
  EXPECT_GE(right, 2);
  EXPECT_LE(right, 4);
}

TEST(MCMathFunBinSearch, GivesNaNSomePlaceInTheStretch) {
  const Doubles v = {1.0, 2.0, 3.0, 4.0};
  for (const bool right : {false, true}) {
    const int place = MCMathFun::BinSearch(v, 1, 3, kNaN, right);
    EXPECT_GE(place, 1);
    EXPECT_LE(place, 3);
  }
}

TEST(MCMathFun, IsValidDoubleMeansFinite) {
  for (const double x : {0.0, -0.0, 5e-324, std::numeric_limits<double>::max(), kMissing}) {
    EXPECT_TRUE(MCMathFun::IsValidDouble(x)) << x;
  }
  for (const double x : {kNaN, -kNaN, kInfinity, -kInfinity}) {
    EXPECT_FALSE(MCMathFun::IsValidDouble(x)) << x;
  }
}

TEST(MCMathFunDigamma, IsMissingUnlessPositive) {
  for (const double x : {0.0, -0.0, -1.0, -0.5, -1e300, -kInfinity, kNaN}) {
    EXPECT_EQ(MCMathFun::Digamma(x), kMissing) << x;
    EXPECT_EQ(MCMathFun::Trigamma(x), kMissing) << x;
  }
}

TEST(MCMathFunDigamma, HasItsLimits) {
  EXPECT_EQ(MCMathFun::Digamma(kInfinity), kInfinity);
  EXPECT_EQ(MCMathFun::Trigamma(kInfinity), 0.0);
  EXPECT_EQ(MCMathFun::Digamma(5e-324), -kInfinity);
  EXPECT_EQ(MCMathFun::Trigamma(7e-155), kInfinity);
  EXPECT_LT(MCMathFun::Trigamma(7.6e-155), kInfinity);
  // log(1.797e308), and a reciprocal whose square is beyond all doubles.
  EXPECT_NEAR(MCMathFun::Digamma(std::numeric_limits<double>::max()), 709.782712893384, 1e-12);
  EXPECT_EQ(MCMathFun::Trigamma(1e300), 1e-300);
}

// Map from slopes and intercepts to those of other predictors, as a dense matrix in long double.
struct TransformCase {
  int fBlocks, fIntercepts;
  bool fbNegateShift, fbReciprocal;
};

std::vector<TransformCase> TransformCases() {
  std::vector<TransformCase> cases;
  for (const int blocks : {1, 2, 3}) {
    for (int intercepts = 0; intercepts <= (blocks == 1 ? 4 : 1); ++intercepts) {
      for (const bool negate : {false, true}) {
        for (const bool reciprocal : {false, true}) {
          cases.push_back({blocks, intercepts, negate, reciprocal});
        }
      }
    }
  }
  return cases;
}

const Doubles kShift = {3.0, -1.5, 0.25, 7.0};
const Doubles kScale = {2.0, 0.5, -4.0, 3.0};

Doubles TransformByHand(const Doubles& beta, const TransformCase& c) {
  const int p = 4;
  Doubles result = beta;
  for (int block = 0; block < c.fBlocks; ++block) {
    long double gain = 0.0L;
    for (int i = c.fIntercepts; i < p; ++i) {
      const long double shift = kShift[Index(i)];
      const long double scale = kScale[Index(i)];
      const long double slope = beta[Index(block * p + i)];
      const long double share = c.fbReciprocal ? shift : -shift / scale;
      gain += (c.fbNegateShift ? -share : share) * slope;
      result[Index(block * p + i)] =
          static_cast<double>(c.fbReciprocal ? slope * scale : slope / scale);
    }
    for (int l = 0; l < c.fIntercepts; ++l) {
      result[Index(block * p + l)] = static_cast<double>(beta[Index(block * p + l)] + gain);
    }
  }
  return result;
}

TEST(MCMathFunTransformParameters, RescalesSlopesAndMovesIntercepts) {
  for (const TransformCase& c : TransformCases()) {
    const Doubles before = RandomDoubles(4 * c.fBlocks, 21);
    Doubles beta = before;
    ASSERT_TRUE(MCMathFun::TransformParameters(beta, kShift, kScale, c.fBlocks, c.fIntercepts,
                                               c.fbNegateShift, c.fbReciprocal));
    const Doubles expected = TransformByHand(before, c);
    for (std::size_t i = 0; i < beta.size(); ++i) {
      // Sums of a few terms below 30.
      EXPECT_NEAR(beta[i], expected[i], 100.0 * kEpsilon) << i;
    }
  }
}

TEST(MCMathFunTransformParameters, LeavesPredictionsUnchanged) {
  // y = b0 + b1 (x - 5)/2 is y = (b0 - 5/2 b1) + b1/2 x.
  Doubles beta = {3.0, 4.0};
  ASSERT_TRUE(MCMathFun::TransformParameters(beta, {0.0, 5.0}, {1.0, 2.0}, 1, 1, false, false));
  EXPECT_EQ(beta, (Doubles{3.0 - 10.0, 2.0}));
  // And back, with y = c0 + c1 x: b1 = 2 c1 and b0 = c0 + 5 c1.
  ASSERT_TRUE(MCMathFun::TransformParameters(beta, {0.0, 5.0}, {1.0, 2.0}, 1, 1, false, true));
  EXPECT_EQ(beta, (Doubles{3.0, 4.0}));
}

TEST(MCMathFunTransformParameters, RefusesBadShapesUnchanged) {
  struct Case {
    std::size_t fBeta, fShift;
    Doubles fScale;
    int fBlocks, fIntercepts;
  };
  const Case cases[] = {
      {3, 2, {1.0, 2.0}, 1, 1},   // parameters are no multiple of p
      {4, 2, {1.0, 2.0}, 1, 1},   // or not of this many blocks
      {4, 3, {1.0, 2.0}, 2, 1},   // shift of another size
      {2, 2, {1.0, 2.0}, 0, 1},   // no block
      {2, 2, {1.0, 2.0}, -1, 1},  // fewer
      {2, 2, {1.0, 2.0}, 1, -1},  // fewer than no intercepts
      {2, 2, {1.0, 2.0}, 1, 3},   // more intercepts than parameters
      {4, 2, {1.0, 2.0}, 2, 2},   // several intercepts in several blocks
      {2, 2, {1.0, 0.0}, 1, 1},   // a zero scale
      {2, 2, {-0.0, 1.0}, 1, 1},  // also that of an intercept
      {0, 0, {}, 1, 1},           // an intercept without parameters
      {0, 2, {1.0, 2.0}, kSmallest, 1},
  };
  for (const Case& c : cases) {
    const Doubles before(c.fBeta, 1.5);
    Doubles beta = before;
    EXPECT_FALSE(MCMathFun::TransformParameters(beta, Doubles(c.fShift, 1.0), c.fScale, c.fBlocks,
                                                c.fIntercepts, false, false));
    EXPECT_EQ(beta, before);
  }
}

TEST(MCMathFunTransformParameters, AcceptsNoParametersAtAll) {
  Doubles beta;
  EXPECT_TRUE(MCMathFun::TransformParameters(beta, {}, {}, 3, 0, true, true));
}
}  // namespace
