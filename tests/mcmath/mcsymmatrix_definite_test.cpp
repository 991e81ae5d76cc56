// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace {
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;
using mctest::NoisyDefinite;
using mctest::NoisySymmetric;
using mctest::Packed;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(MCSymMatrixTransformToPositiveDefinite, ADefiniteMatrixTakesOneFactorisation) {
  for (const int n : {2, 3, 8}) {
    const MCSymMatrix original = NoisyDefinite(n, 5);
    MCSymMatrix matrix = original;
    bool changed = true;
    double added = 9;
    EXPECT_EQ(matrix.TransformToPositiveDefinite(1e-9, changed, added), 1);
    EXPECT_FALSE(changed);
    EXPECT_EQ(added, 0.0);
    EXPECT_EQ(matrix.AsVectorConst(), original.AsVectorConst());
  }
}

// A zero matrix has scale 1, so that a ridge suffices as soon as it exceeds tol = 0.25.
TEST(MCSymMatrixTransformToPositiveDefinite, AZeroMatrixIsRepairedStepByStep) {
  const struct {
    int n;
    double ridge;
    int count;
  } cases[] = {
      // Step 1 (count 2); 0.5 suffices (3); half the width of 0 to 0.5 is within tol.
      {2, 0.5, 3},
      // Step 3 (2); 1.5, relative half width 1, suffices (3), 0.75 (4) and 0.375 (5) too.
      {5, 0.375, 5},
  };
  for (const auto& c : cases) {
    MCSymMatrix matrix(c.n);
    bool changed = false;
    double added = 0;
    EXPECT_EQ(matrix.TransformToPositiveDefinite(0.25, changed, added), c.count);
    EXPECT_TRUE(changed);
    const double total = c.ridge + 0.01 * c.ridge;
    EXPECT_DOUBLE_EQ(added, total);
    for (int i = 0; i < c.n; ++i) {
      for (int j = 0; j <= i; ++j) {
        EXPECT_DOUBLE_EQ(matrix.GetElem(i, j), i == j ? total / (total + 1.0) : 0.0);
      }
    }
  }
}

// Of (a; b, a) with a ridge r the second remainder is a + r - b^2 / (a + r). The search is played
// with that formula.
TEST(MCSymMatrixTransformToPositiveDefinite, TwoRowsFollowTheFormulaOfTheirRemainder) {
  const struct {
    double a, b, tol;
  } cases[] = {{1, 2, 1e-3}, {1, -2, 1e-9}, {-3, 0.5, 1e-6}, {0.25, 0.5, 1e-4}, {100, 300, 1e-3}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.a);
    const double scale = c.a < 1e-6 ? 1.0 : c.a;
    const auto suffices = [&](double r) {
      const double d = c.a + r;
      return d > c.tol * scale && d - c.b * c.b / d > c.tol * scale;
    };
    int count = 1;
    double high = 0;
    const double step = std::max({std::fabs(c.a), std::fabs(c.b), 1.0});
    do {
      high += step;
      ++count;
    } while (!suffices(high));
    double low = 0;
    for (;;) {
      const double middle = (low + high) / 2;
      const double width = (middle > 1 ? (high - low) / middle : high - low) * 0.5;
      if (!(width > c.tol)) break;
      (suffices(middle) ? high : low) = middle;
      ++count;
    }
    const double margin = 0.01 * (c.a + high);
    const double divisor = high + margin + scale;

    MCSymMatrix matrix = Packed({c.a, c.b, c.a});
    bool changed = false;
    double added = 0;
    EXPECT_EQ(matrix.TransformToPositiveDefinite(c.tol, changed, added), count);
    EXPECT_GT(count, 1);
    EXPECT_TRUE(changed);
    EXPECT_DOUBLE_EQ(added, high + margin);
    EXPECT_DOUBLE_EQ(matrix.GetElem(0, 0), (c.a + high + margin) / divisor);
    EXPECT_DOUBLE_EQ(matrix.GetElem(1, 0), c.b / divisor);
    MCSymMatrix factor = matrix;
    EXPECT_EQ(factor.LTChol(DiagonalOf(matrix), 0.0, true), 0);
  }
}

TEST(MCSymMatrixTransformToPositiveDefinite, NoiseBecomesDefiniteAtEverySize) {
  for (const int n : {2, 3, 5, 8, 13, 21, 34, 55}) {
    SCOPED_TRACE(n);
    MCSymMatrix matrix = NoisySymmetric(n, 900 + static_cast<unsigned>(n));
    for (int i = 0; i < n; ++i) matrix.SetElem(i, i, 0.0);
    bool changed = false;
    double added = 0;
    // Steps of at least 1, of which about n are enough, and halvings from n down to 1e-6.
    const int count = matrix.TransformToPositiveDefinite(1e-6, changed, added);
    EXPECT_GT(count, 1);
    EXPECT_LT(count, n + 40);
    EXPECT_TRUE(changed);
    EXPECT_GT(added, 0.0);
    EXPECT_EQ(matrix.LTChol(DiagonalOf(matrix), 1e-9, true), 0);
  }
}

TEST(MCSymMatrixTransformToPositiveDefinite, MisuseChangesNothing) {
  const struct {
    std::vector<double> packed;
    double tol;
    int answer;
  } cases[] = {
      {{}, 1e-6, -1},
      {{-1}, 1e-6, -1},
      {{-1}, -1.0, -1},
      {{1, 2, 1}, 0.0, -2},
      {{1, 2, 1}, -1e-6, -2},
      {{1, 2, 1}, kNaN, -2},
      {{1, 2, 1}, kInfinity, -2},
      {{1, 2, 1}, 1e300, -2},
      {{1, 2, kInfinity}, 1e-6, -2},
      {{1, -kInfinity, 1}, 1e-6, -2},
      {{1, kInfinity, 1}, 1e-6, -2},
      // Sums beyond all doubles.
      {{1e308, 1.7e308, 1e308}, 1e-6, -2},
      {{1e308, 1.7e308, 1e308, 1.7e308, 1.7e308, 1e308}, 1e-6, -2},
      {{-8.94e307, 0, 8.96e307}, 1e-6, -2},
      {{8.97e307, -8.96e307, 8.97e307, -8.96e307, -8.96e307, 8.97e307}, 1e-6, -2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.packed) + testing::PrintToString(c.tol));
    MCSymMatrix matrix = Packed(c.packed);
    bool changed = true;
    double added = 9;
    EXPECT_EQ(matrix.TransformToPositiveDefinite(c.tol, changed, added), c.answer);
    EXPECT_FALSE(changed);
    EXPECT_EQ(added, 0.0);
    EXPECT_EQ(matrix.AsVectorConst(), c.packed);
  }
  MCSymMatrix matrix = Packed({1, kNaN, 1});
  bool changed = true;
  double added = 9;
  EXPECT_EQ(matrix.TransformToPositiveDefinite(1e-6, changed, added), -2);
  EXPECT_FALSE(changed);
}

TEST(MCSymMatrixTransformToPositiveDefinite, ATinyToleranceEndsWhereDoublesEnd) {
  for (const double tol : {1e-20, 1e-300, 5e-324}) {
    MCSymMatrix matrix = Packed({1, 2, 1});
    bool changed = false;
    double added = 0;
    const int count = matrix.TransformToPositiveDefinite(tol, changed, added);
    EXPECT_GT(count, 50);
    EXPECT_LT(count, 1200);
    EXPECT_TRUE(changed);
    EXPECT_NEAR(added, 1.02, 1e-12);
  }
}

TEST(MCSymMatrixTransformToPositiveDefinite, ALargeToleranceTakesItsSteps) {
  MCSymMatrix matrix = Packed({1, 2, 1});
  bool changed = false;
  double added = 0;
  EXPECT_GT(matrix.TransformToPositiveDefinite(1e6, changed, added), 400000);
  EXPECT_TRUE(changed);
}

TEST(MCSymMatrixTransformToPositiveDefinite, MemoryExhaustionChangesNothing) {
  const MCSymMatrix original = Packed({1, 2, 1});
  bool ended = false;
  for (std::size_t k = 1; !ended; ++k) {
    MCSymMatrix matrix = original;
    bool changed = false;
    double added = 0;
    const mctest::FailAllocation failure(k);
    try {
      const int answer = matrix.TransformToPositiveDefinite(1e-3, changed, added);
      ended = !failure.HasFired();
      EXPECT_EQ(answer > 1, ended);
      EXPECT_TRUE(ended || answer == -2);
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFired());
    }
    EXPECT_EQ(changed, ended);
    EXPECT_EQ(matrix.AsVectorConst() == original.AsVectorConst(), !ended);
  }
}

}  // namespace
