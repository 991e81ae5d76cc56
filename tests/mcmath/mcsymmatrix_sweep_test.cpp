// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"
#include "support/samebits.h"

#include <climits>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;
using mctest::ExtendedMatrix;
using mctest::NoisyDefinite;
using mctest::NoisyMatrix;
using mctest::NoisySymmetric;
using mctest::Packed;
using mctest::SameBits;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kLadder[] = {1, 2, 3, 5, 8, 13, 21, 34, 55};

MCBitSet AllBits(int n) {
  MCBitSet bits(n);
  bits.Negate();
  return bits;
}

// The sweep of one row as its definition says it, element by element.
void SweepByDefinition(MCSymMatrix& S, int k) {
  const int n = S.GetNRows();
  const double c = -1.0 / S.GetElem(k, k);
  S.SetElem(k, k, c);
  for (int i = 0; i < n; ++i) {
    if (i == k) continue;
    double a = S.GetElem(i, k);
    S.SetElem(i, k, std::fabs(c) * a);
    if (c < 0) a = -a;
    for (int j = 0; j <= i; ++j) {
      if (j != k) S.SetElem(i, j, S.GetElem(i, j) + a * S.GetElem(j, k));
    }
  }
}

// A matrix of cross-products [X y]'[X y].
MCSymMatrix CrossProducts(const MCRectMatrix& X) {
  MCSymMatrix result;
  result.ComputeRTransByR(X);
  return result;
}

TEST(MCSymMatrixSweep, FollowsItsDefinitionToTheBitInBothDirections) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    MCSymMatrix swept = NoisySymmetric(n, 7 + static_cast<unsigned>(n));
    MCSymMatrix expected = swept;
    MCBitSet pivots(n);
    const std::vector<double> scale(static_cast<std::size_t>(n), 1.0);
    for (const int k : {0, n - 1, n / 2, 0, n / 3, n - 1}) {
      pivots.Set(k, true);  // taking back tests nothing, whatever the pivot
      ASSERT_TRUE(swept.Sweep(k, 1e-12, scale, pivots, true));
      SweepByDefinition(expected, k);
      EXPECT_TRUE(SameBits(swept, expected)) << k;
      EXPECT_FALSE(pivots.IsIn(k));
    }
  }
}

TEST(MCSymMatrixSweep, SecondSweepOfARowRestoresTheMatrix) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix original = NoisyDefinite(n, 40 + static_cast<unsigned>(n));
    MCSymMatrix swept = original;
    const std::vector<double> scale = DiagonalOf(original);
    MCBitSet pivots(n);
    for (int k = 0; k < n; ++k) ASSERT_TRUE(swept.Sweep(k, 1e-12, scale, pivots, true));
    EXPECT_EQ(pivots.InSet(), n);
    for (int k = 0; k < n; ++k) ASSERT_TRUE(swept.Sweep(k, 1e-12, scale, pivots, true));
    EXPECT_EQ(pivots.InSet(), 0);
    // 2n sweeps round each element 2n times, magnified by a condition number below 100.
    const long double bound = 2 * n * 100 * 0x1p-53L * ExtendedMatrix(original).Largest();
    EXPECT_LE(ExtendedMatrix(swept).Difference(ExtendedMatrix(original)), bound);
  }
}

TEST(MCSymMatrixSweep, AllRowsSweptGiveTheNegativeInverse) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix original = NoisyDefinite(n, 80 + static_cast<unsigned>(n));
    MCSymMatrix swept = original;
    MCBitSet pivots(n);
    for (int k = 0; k < n; ++k) {
      ASSERT_TRUE(swept.Sweep(k, 1e-12, DiagonalOf(original), pivots, true));
    }
    swept.ChangeSign();
    const ExtendedMatrix inverse = ExtendedMatrix(original).Inverse();
    const long double bound = n * 100 * 0x1p-52L * inverse.Largest();
    EXPECT_LE(ExtendedMatrix(swept).Difference(inverse), bound);
  }
}

TEST(MCSymMatrixSweep, TheOrderOfRowsDoesNotMatterBeyondRounding) {
  const MCSymMatrix original = NoisyDefinite(6, 3);
  const std::vector<double> scale = DiagonalOf(original);
  MCSymMatrix up = original;
  MCSymMatrix mixed = original;
  MCBitSet pivots(6);
  for (const int k : {1, 3, 4}) up.Sweep(k, 1e-12, scale, pivots, true);
  pivots.Clear();
  for (const int k : {4, 0, 3, 1, 0}) mixed.Sweep(k, 1e-12, scale, pivots, true);
  EXPECT_LE(ExtendedMatrix(up).Difference(ExtendedMatrix(mixed)),
            600 * 0x1p-52L * ExtendedMatrix(original).Largest());
}

TEST(MCSymMatrixSweep, TheLastRowHoldsTheRegressionCoefficients) {
  for (const int p : {1, 2, 5, 13}) {
    SCOPED_TRACE(p);
    const MCRectMatrix X = NoisyMatrix(4 * p + 6, p + 1, 500 + static_cast<unsigned>(p));
    const MCSymMatrix products = CrossProducts(X);
    MCSymMatrix swept = products;
    MCBitSet pivots(p + 1);
    for (int k = 0; k < p; ++k) {
      ASSERT_TRUE(swept.Sweep(k, 1e-12, DiagonalOf(products), pivots, true));
    }
    std::vector<double> b(99);
    ASSERT_TRUE(swept.GetRegCoeffs(b, pivots));
    ASSERT_EQ(b.size(), static_cast<std::size_t>(p));

    // The normal equations in extended precision.
    const std::size_t q = static_cast<std::size_t>(p);
    ExtendedMatrix normal(q, q);
    ExtendedMatrix right(q, 1);
    for (int i = 0; i < p; ++i) {
      const auto at = static_cast<std::size_t>(i);
      for (int j = 0; j < p; ++j) {
        normal(at, static_cast<std::size_t>(j)) = products.GetElem(i, j);
      }
      right(at, 0) = products.GetElem(p, i);
    }
    const ExtendedMatrix exact = normal.Inverse() * right;
    for (std::size_t i = 0; i < q; ++i) {
      EXPECT_NEAR(b[i], static_cast<double>(exact(i, 0)), 100 * p * 0x1p-52);
    }
  }
}

TEST(MCSymMatrixSweep, ADuplicatedColumnIsRefusedAndGetsNoCoefficient) {
  MCRectMatrix X = NoisyMatrix(20, 4, 11);
  X.CopyColToCol(1, X, 0);
  const MCSymMatrix products = CrossProducts(X);
  const std::vector<double> scale = DiagonalOf(products);
  MCSymMatrix swept = products;
  MCBitSet pivots(4);
  EXPECT_TRUE(swept.Sweep(0, 1e-12, scale, pivots, true));
  const MCSymMatrix before = swept;
  EXPECT_FALSE(swept.Sweep(1, 1e-12, scale, pivots, true));
  EXPECT_TRUE(SameBits(swept, before));
  EXPECT_FALSE(pivots.IsIn(1));
  EXPECT_TRUE(swept.Sweep(2, 1e-12, scale, pivots, true));
  std::vector<double> b;
  EXPECT_TRUE(swept.GetRegCoeffs(b, pivots));
  EXPECT_NE(b[0], 0.0);
  EXPECT_EQ(b[1], 0.0);
  EXPECT_NE(b[2], 0.0);
}

TEST(MCSymMatrixSweep, APivotThatOnlyReachesTheToleranceIsRefused) {
  const struct {
    double pivot, tol, scale;
    bool answer;
  } cases[] = {
      {2.0, 0.5, 4.0, false},       {2.0, 0.5, 3.999, true},      {0.0, 0.5, 0.0, false},
      {-1.0, 0.5, 1.0, false},      {kNaN, 0.5, 1.0, true},       {kInfinity, 0.5, 1.0, true},
      {1.0, 0.5, kInfinity, false}, {1.0, kNaN, 1.0, true},       {5e-324, 0.5, 0.0, true},
      {1.0, 0.5, kNaN, true},       {-kInfinity, 0.5, 0.0, false}};
  for (const auto& c : cases) {
    MCSymMatrix matrix = Packed({c.pivot});
    MCBitSet pivots(1);
    EXPECT_EQ(matrix.Sweep(0, c.tol, {c.scale}, pivots, true), c.answer)
        << c.pivot << " " << c.tol << " " << c.scale;
    EXPECT_EQ(pivots.IsIn(0), c.answer);
  }
}

// With row 0 of (1; 1, 2) swept the matrix is (-1; 1, 1): a sweep of row 1 takes the diagonal of
// row 0 to -2.
TEST(MCSymMatrixSweep, APivotThatBlowsUpASweptRowIsRefused) {
  const struct {
    double tol, scaleOfSwept;
    bool answer;
  } cases[] = {{0.49, 1.0, true}, {0.5, 1.0, false}, {0.5, 0.99, true},
               {0.1, 5.0, false}, {0.1, 4.9, true},  {0.1, kNaN, false}};
  for (const auto& c : cases) {
    MCSymMatrix matrix = Packed({-1, 1, 1});
    const MCSymMatrix before = matrix;
    MCBitSet pivots(2);
    pivots.Set(0, true);
    EXPECT_EQ(matrix.Sweep(1, c.tol, {c.scaleOfSwept, 1.0}, pivots, true), c.answer) << c.tol;
    EXPECT_EQ(pivots.IsIn(1), c.answer);
    if (!c.answer) {
      EXPECT_TRUE(SameBits(matrix, before));
    }
  }
  MCSymMatrix notANumber = Packed({-1, kNaN, 1});
  MCBitSet pivots(2);
  pivots.Set(0, true);
  EXPECT_FALSE(notANumber.Sweep(1, 1e-12, {1, 1}, pivots, true));
}

TEST(MCSymMatrixSweep, RowsThatAreNotSweptDontCountForTheInflation) {
  MCSymMatrix matrix = Packed({-1, 1, 1});
  MCBitSet pivots(2);
  EXPECT_TRUE(matrix.Sweep(1, 0.5, {1.0, 1.0}, pivots, true));
}

TEST(MCSymMatrixSweep, TakingBackTestsNoTolerance) {
  MCSymMatrix matrix = Packed({4, 2, 3});
  const MCSymMatrix original = matrix;
  MCBitSet pivots(2);
  ASSERT_TRUE(matrix.Sweep(0, 1e-12, {4, 3}, pivots, true));
  EXPECT_EQ(matrix.GetElem(0, 0), -0.25);
  EXPECT_EQ(matrix.GetElem(1, 0), 0.5);
  EXPECT_EQ(matrix.GetElem(1, 1), 2.0);
  EXPECT_TRUE(matrix.Sweep(0, 1e300, {4, 3}, pivots, true));
  EXPECT_TRUE(SameBits(matrix, original));
  EXPECT_FALSE(pivots.IsIn(0));
}

TEST(MCSymMatrixSweep, CheckedMisuseIsRefused) {
  const MCSymMatrix original = Packed({4, 2, 3});
  const struct {
    const char* why;
    int k;
    double tol;
    std::vector<double> scale;
    int bits;
  } cases[] = {
      {"row below", -1, 1e-12, {4, 3}, 2},
      {"row above", 2, 1e-12, {4, 3}, 2},
      {"row far below", INT_MIN, 1e-12, {4, 3}, 2},
      {"tolerance 0", 0, 0.0, {4, 3}, 2},
      {"tolerance below 0", 0, -1e-12, {4, 3}, 2},
      {"short scale", 0, 1e-12, {4}, 2},
      {"short pivots", 0, 1e-12, {4, 3}, 1},
      {"negative scale of another row", 0, 1e-12, {4, -3}, 2},
      {"negative scale beyond the rows", 0, 1e-12, {4, 3, -1}, 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    MCSymMatrix matrix = original;
    MCBitSet pivots(c.bits);
    EXPECT_FALSE(matrix.Sweep(c.k, c.tol, c.scale, pivots, true));
    EXPECT_TRUE(SameBits(matrix, original));
    EXPECT_EQ(pivots.InSet(), 0);
  }
  MCBitSet pivots(2);
  MCSymMatrix empty;
  EXPECT_FALSE(empty.Sweep(0, 1e-12, {}, pivots, true));
}

TEST(MCSymMatrixSweep, WithoutCheckNothingIsValidated) {
  MCSymMatrix matrix = Packed({4, 2, 3});
  MCBitSet pivots(2);
  EXPECT_TRUE(matrix.Sweep(0, 1e-12, {4, -3}, pivots, false));
  EXPECT_TRUE(matrix.Sweep(0, -1.0, {4, -3}, pivots, false));
  EXPECT_TRUE(matrix.Sweep(0, 0.0, {4, 3}, pivots, false));
  EXPECT_TRUE(pivots.IsIn(0));
}

TEST(MCSymMatrixSweep, AdditionalBitsAndEntriesAreLeftAlone) {
  MCSymMatrix matrix = Packed({4, 2, 3});
  MCBitSet pivots(5);
  pivots.Set(4, true);
  EXPECT_TRUE(matrix.Sweep(1, 1e-12, {4, 3, 7, 8}, pivots, true));
  EXPECT_TRUE(pivots.IsIn(1));
  EXPECT_EQ(pivots.InSet(), 2);
}

TEST(MCSymMatrixSweep, InfinitiesAndNaNDoNoHarm) {
  for (const double odd : {kInfinity, -kInfinity, kNaN, MCMV::gMissingValue}) {
    for (std::size_t at = 0; at < 6; ++at) {
      MCSymMatrix matrix = Packed({2, 1, 2, 1, 1, 2});
      matrix.AsVector()[at] = odd;
      MCBitSet pivots(3);
      for (int k = 0; k < 3; ++k) matrix.Sweep(k, 1e-12, {2, 2, 2}, pivots, true);
      std::vector<double> b;
      EXPECT_TRUE(matrix.GetRegCoeffs(b, pivots));
      EXPECT_EQ(b.size(), 2U);
    }
  }
}

TEST(MCSymMatrixRegCoeffs, AreTheLastRowWhereBitsAreSet) {
  const MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  MCBitSet pivots(2);
  pivots.Set(1, true);
  std::vector<double> b;
  EXPECT_TRUE(matrix.GetRegCoeffs(b, pivots));
  EXPECT_EQ(b, (std::vector<double>{0, 5}));
  EXPECT_TRUE(matrix.GetRegCoeffs(b, AllBits(7)));
  EXPECT_EQ(b, (std::vector<double>{4, 5}));
}

TEST(MCSymMatrixRegCoeffs, OfOneRowOrNoneAreNone) {
  std::vector<double> b = {1, 2};
  EXPECT_TRUE(MCSymMatrix(1).GetRegCoeffs(b, MCBitSet()));
  EXPECT_TRUE(b.empty());
  b = {1, 2};
  EXPECT_TRUE(MCSymMatrix(0).GetRegCoeffs(b, MCBitSet()));
  EXPECT_TRUE(b.empty());
}

TEST(MCSymMatrixRegCoeffs, AreRefusedForTooFewBitsAndByAnInvalidMatrix) {
  std::vector<double> b = {9};
  EXPECT_FALSE(MCSymMatrix(70000).GetRegCoeffs(b, MCBitSet()));  // too large, so invalid
  EXPECT_FALSE(MCSymMatrix(3).GetRegCoeffs(b, MCBitSet(1)));
  EXPECT_EQ(b, std::vector<double>{9});
}

}  // namespace
