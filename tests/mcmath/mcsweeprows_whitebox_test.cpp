// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcsweeprows.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/matrices.h"
#include "support/randomcrossproducts.h"
#include "support/samebits.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using MCCommonMath::detail::SweepRows;
using MCCommonMath::detail::VectorPath;
using mctest::DiagonalOf;
using mctest::RandomCrossProducts;
using mctest::SameBitsOrNaN;
using mctest::SupportedPaths;

constexpr double kTolerance = 1e-12;

bool GoOn() {
  return false;
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
    EXPECT_TRUE(SameBitsOrNaN(expected.matrix, matrix))
        << what << ", path " << static_cast<int>(path);
    EXPECT_TRUE(expected.pivots == pivots) << what << ", path " << static_cast<int>(path);
  }
}

void ExpectSameAsOneByOne(const MCSymMatrix& start, int count, const std::string& what) {
  ExpectSameAsOneByOne(start, MCBitSet(start.GetNRows()), count, kTolerance, DiagonalOf(start),
                       what);
}

TEST(SweepRows, HasTheBitsOfSweepsOneByOneAtEverySize) {
  for (int n = 1; n <= 70; ++n) {
    ExpectSameAsOneByOne(RandomCrossProducts(n, n + 5, static_cast<unsigned>(n)), n,
                         std::to_string(n));
  }
  for (int n : {101, 130, 400, 420}) {
    ExpectSameAsOneByOne(RandomCrossProducts(n, n + 5, 2U), n - 1, std::to_string(n));
  }
}

TEST(SweepRows, RefusesTheRowsThatSingleSweepsRefuse) {
  for (int n : {2, 9, 17, 40, 130}) {
    for (int aliasedEach : {2, 3, 7}) {
      const MCSymMatrix start = RandomCrossProducts(n, n + 5, 3U, aliasedEach);
      ExpectSameAsOneByOne(start, n, std::to_string(n));
      MCSymMatrix matrix = start;
      MCBitSet pivots(n);
      SweepRows(matrix, n, kTolerance, DiagonalOf(start), pivots, GoOn);
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
  const MCSymMatrix start = RandomCrossProducts(37, 42, 4U);
  const std::vector<double> scale = DiagonalOf(start);
  OneByOne half(start, MCBitSet(37), 20, kTolerance, scale);
  ExpectSameAsOneByOne(half.matrix, half.pivots, 37, kTolerance, scale, "half swept");
}

TEST(SweepRows, MeetsInfinitiesAndNaNAsSingleSweepsDo) {
  for (double special : {std::numeric_limits<double>::infinity(),
                         std::numeric_limits<double>::quiet_NaN(), 1e300, -0.0}) {
    for (int place : {0, 5, 12, 29}) {
      MCSymMatrix start = RandomCrossProducts(30, 35, 5U, 4);
      const std::vector<double> scale = DiagonalOf(start);
      start.SetElem(place, place / 2, special);
      ExpectSameAsOneByOne(start, MCBitSet(30), 30, kTolerance, scale, std::to_string(special));
    }
  }
}

TEST(SweepRows, StopsWhereItIsToldWithTheRowsDone) {
  const int n = 21;
  const MCSymMatrix start = RandomCrossProducts(n, n + 5, 6U, 5);
  const std::vector<double> scale = DiagonalOf(start);
  for (int last = 0; last <= n; ++last) {
    const OneByOne expected(start, MCBitSet(n), last, kTolerance, scale);
    MCSymMatrix matrix = start;
    MCBitSet pivots(n);
    int asked = 0;
    const int done =
        SweepRows(matrix, n, kTolerance, scale, pivots, [&] { return asked++ == last; });
    EXPECT_EQ(done, last);
    EXPECT_EQ(asked, last < n ? last + 1 : n);
    EXPECT_TRUE(SameBitsOrNaN(expected.matrix, matrix)) << last;
    EXPECT_TRUE(expected.pivots == pivots) << last;
  }
}

TEST(SweepRows, LeavesAllAloneForWhatACheckedSweepRefuses) {
  const MCSymMatrix start = RandomCrossProducts(5, 10, 7U);
  std::vector<double> negative = DiagonalOf(start);
  negative[4] = -1.0;
  const std::vector<double> scale = DiagonalOf(start);
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
