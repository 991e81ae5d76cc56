// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcsweeprows.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using MCCommonMath::detail::SweepRows;
using MCCommonMath::detail::VectorPath;

constexpr double kTolerance = 1e-12;

bool GoOn() {
  return false;
}

/// X'X of random rows; column j is twice column j - 1 wherever j % aliasedEach == aliasedEach - 1.
MCSymMatrix CrossProducts(int n, int aliasedEach, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.2, 1.0);
  MCSymMatrix matrix(n);
  std::vector<double> row(static_cast<std::size_t>(n));
  for (int k = 0; k < n + 5; ++k) {
    for (std::size_t j = 0; j < row.size(); ++j) {
      const bool isAliased =
          aliasedEach > 0 && static_cast<int>(j) % aliasedEach == aliasedEach - 1;
      row[j] = isAliased && j > 0 ? 2.0 * row[j - 1] : normal(engine);
    }
    matrix.UpdateXX(row, 1.0);
  }
  return matrix;
}

std::vector<double> Diagonal(const MCSymMatrix& matrix) {
  std::vector<double> scale;
  matrix.GetDiagonal(scale);
  return scale;
}

/// Equal to the bit, but that sign and payload of a NaN are the compiler's choice.
::testing::AssertionResult SameBits(const MCSymMatrix& expected, const MCSymMatrix& actual) {
  const std::vector<double>& a = expected.AsVectorConst();
  const std::vector<double>& b = actual.AsVectorConst();
  for (std::size_t k = 0; k < a.size(); ++k) {
    if (std::isnan(a[k]) && std::isnan(b[k])) continue;
    if (std::memcmp(&a[k], &b[k], sizeof(double)) != 0) {
      return ::testing::AssertionFailure()
             << "entry " << k << ": " << b[k] << " in place of " << a[k];
    }
  }
  return ::testing::AssertionSuccess();
}

std::vector<VectorPath> SupportedPaths() {
  std::vector<VectorPath> paths;
  for (VectorPath path : {VectorPath::kSse2, VectorPath::kAvx2, VectorPath::kAvx512}) {
    if (MCCommonMath::detail::IsSupported(path)) paths.push_back(path);
  }
  return paths;
}

/// A state of a sweep, and one row after the other swept on a copy.
struct OneByOne {
  MCSymMatrix matrix;
  MCBitSet pivots;

  OneByOne(const MCSymMatrix& start, const MCBitSet& bits, int count, double tol,
           const std::vector<double>& scale)
      : matrix(start), pivots(bits) {
    for (int k = 0; k < count; ++k) matrix.Sweep(k, tol, scale, pivots, true);
  }
};

void ExpectSameAsOneByOne(const MCSymMatrix& start, const MCBitSet& bits, int count, double tol,
                          const std::vector<double>& scale, const std::string& what) {
  const OneByOne expected(start, bits, count, tol, scale);
  for (VectorPath path : SupportedPaths()) {
    MCSymMatrix matrix = start;
    MCBitSet pivots = bits;
    EXPECT_EQ(SweepRows(matrix, count, tol, scale, pivots, GoOn, path), count);
    EXPECT_TRUE(SameBits(expected.matrix, matrix)) << what << ", path " << static_cast<int>(path);
    EXPECT_TRUE(expected.pivots == pivots) << what << ", path " << static_cast<int>(path);
  }
}

void ExpectSameAsOneByOne(const MCSymMatrix& start, int count, const std::string& what) {
  ExpectSameAsOneByOne(start, MCBitSet(start.GetNRows()), count, kTolerance, Diagonal(start), what);
}

TEST(SweepRows, HasTheBitsOfSweepsOneByOneAtEverySize) {
  for (int n = 1; n <= 70; ++n) {
    ExpectSameAsOneByOne(CrossProducts(n, 0, static_cast<unsigned>(n)), n, std::to_string(n));
  }
  for (int n : {101, 130, 400, 420}) {
    ExpectSameAsOneByOne(CrossProducts(n, 0, 2U), n - 1, std::to_string(n));
  }
}

TEST(SweepRows, RefusesTheRowsThatSingleSweepsRefuse) {
  for (int n : {2, 9, 17, 40, 130}) {
    for (int aliasedEach : {2, 3, 7}) {
      const MCSymMatrix start = CrossProducts(n, aliasedEach, 3U);
      ExpectSameAsOneByOne(start, n, std::to_string(n));
      MCSymMatrix matrix = start;
      MCBitSet pivots(n);
      SweepRows(matrix, n, kTolerance, Diagonal(start), pivots, GoOn);
      EXPECT_FALSE(pivots.IsIn(aliasedEach - 1));
      EXPECT_TRUE(pivots.IsIn(0));
    }
  }
}

TEST(SweepRows, RefusesAPivotThatWouldInflateASweptRow) {
  MCSymMatrix start(3);
  start.SetElem(0, 0, 1.0);
  start.SetElem(1, 0, 1.0);
  start.SetElem(1, 1, 1.0 + 1e-6);
  start.SetElem(2, 2, 1.0);
  const std::vector<double> scale = {1e7, 1.0, 1.0};
  const double tol = 1e-9;
  ExpectSameAsOneByOne(start, MCBitSet(3), 3, tol, {1.0, 1.0, 1.0}, "accepted");
  ExpectSameAsOneByOne(start, MCBitSet(3), 3, tol, scale, "inflated");
  MCSymMatrix matrix = start;
  MCBitSet pivots(3);
  SweepRows(matrix, 3, tol, scale, pivots, GoOn);
  EXPECT_TRUE(pivots.IsIn(0));
  EXPECT_FALSE(pivots.IsIn(1));
  EXPECT_TRUE(pivots.IsIn(2));
}

TEST(SweepRows, TakesBackTheRowsThatAreSweptAlready) {
  const MCSymMatrix start = CrossProducts(37, 0, 4U);
  const std::vector<double> scale = Diagonal(start);
  OneByOne half(start, MCBitSet(37), 20, kTolerance, scale);
  ExpectSameAsOneByOne(half.matrix, half.pivots, 37, kTolerance, scale, "half swept");
}

TEST(SweepRows, MeetsInfinitiesAndNaNAsSingleSweepsDo) {
  for (double special : {std::numeric_limits<double>::infinity(),
                         std::numeric_limits<double>::quiet_NaN(), 1e300, -0.0}) {
    for (int place : {0, 5, 12, 29}) {
      MCSymMatrix start = CrossProducts(30, 4, 5U);
      const std::vector<double> scale = Diagonal(start);
      start.SetElem(place, place / 2, special);
      ExpectSameAsOneByOne(start, MCBitSet(30), 30, kTolerance, scale, std::to_string(special));
    }
  }
}

TEST(SweepRows, StopsWhereItIsToldWithTheRowsDone) {
  const int n = 21;
  const MCSymMatrix start = CrossProducts(n, 5, 6U);
  const std::vector<double> scale = Diagonal(start);
  for (int last = 0; last <= n; ++last) {
    const OneByOne expected(start, MCBitSet(n), last, kTolerance, scale);
    MCSymMatrix matrix = start;
    MCBitSet pivots(n);
    int asked = 0;
    const int done =
        SweepRows(matrix, n, kTolerance, scale, pivots, [&] { return asked++ == last; });
    EXPECT_EQ(done, last);
    EXPECT_EQ(asked, last < n ? last + 1 : n);
    EXPECT_TRUE(SameBits(expected.matrix, matrix)) << last;
    EXPECT_TRUE(expected.pivots == pivots) << last;
  }
}

TEST(SweepRows, LeavesAllAloneForWhatACheckedSweepRefuses) {
  const MCSymMatrix start = CrossProducts(5, 0, 7U);
  std::vector<double> negative = Diagonal(start);
  negative[4] = -1.0;
  const std::vector<double> scale = Diagonal(start);
  const std::vector<double> shortScale(scale.begin(), scale.end() - 1);
  ExpectSameAsOneByOne(start, MCBitSet(5), 5, kTolerance, negative, "negative scale");
  ExpectSameAsOneByOne(start, MCBitSet(5), 5, kTolerance, shortScale, "short scale");
  ExpectSameAsOneByOne(start, MCBitSet(4), 4, kTolerance, scale, "few bits");
  ExpectSameAsOneByOne(start, MCBitSet(5), 5, 0.0, scale, "no tolerance");
  ExpectSameAsOneByOne(MCSymMatrix(), MCBitSet(0), 0, kTolerance, {}, "no rows");
  MCSymMatrix matrix = start;
  MCBitSet pivots(5);
  EXPECT_EQ(SweepRows(matrix, 5, 0.0, scale, pivots, [] { return true; }), 0);
}

}  // namespace
