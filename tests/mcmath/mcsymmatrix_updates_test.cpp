// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"
#include "support/matrices.h"
#include "support/productbounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::Chain;
using mctest::ExpectSameBits;
using mctest::ExpectWithin;
using mctest::ExtendedMatrix;
using mctest::FromRows;
using mctest::Numbers;
using mctest::Packed;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kSizes[] = {0, 1, 2, 3, 5, 8, 13, 21};

using Triangle = std::vector<double>;

// The definition of the update, element by element: t = w x[i], then t x[j].
void AddOuterProduct(MCSymMatrix& matrix, const std::vector<double>& x, double w) {
  for (int i = 0; i < matrix.GetNRows(); ++i) {
    const double xi = x[static_cast<std::size_t>(i)];
    if (xi == 0.0) continue;
    const double t = w * xi;
    for (int j = 0; j <= i; ++j) {
      const double product = t * x[static_cast<std::size_t>(j)];
      matrix.SetElem(i, j, matrix.GetElem(i, j) + product);
    }
  }
}

TEST(MCSymMatrixUpdate, UpdateXXHasTheBitsOfItsDefinition) {
  for (const int n : kSizes) {
    Numbers numbers(static_cast<std::uint64_t>(n) + 1);
    MCSymMatrix got = numbers.Sym(n);
    MCSymMatrix want(got);
    for (int row = 0; row < 20; ++row) {
      const std::vector<double> x = numbers.Vector(n);
      const double w = std::fabs(numbers.Next()) + 0.1;
      EXPECT_TRUE(got.UpdateXX(x, w));
      AddOuterProduct(want, x, w);
    }
    ExpectSameBits(got.AsVectorConst(), want.AsVectorConst());
  }
}

TEST(MCSymMatrixUpdate, UpdateXXTakesTheWeightTimesTheRowFirst) {
  // (w x0) x0 with x0^2 beyond the largest double, and w x0^2 within it.
  MCSymMatrix matrix(1);
  EXPECT_TRUE(matrix.UpdateXX({1e200}, 1e-200));
  EXPECT_EQ(matrix.GetElem(0, 0), 1e-200 * 1e200 * 1e200);
}

TEST(MCSymMatrixUpdate, UpdateXXRefusesAWeightThatIsNotPositive) {
  for (const double w : {0.0, -0.0, -1.0, kNaN}) {
    MCSymMatrix matrix(2);
    EXPECT_FALSE(matrix.UpdateXX({1, 2}, w));
    EXPECT_EQ(matrix.AsVectorConst(), Triangle(3, 0.0));
  }
}

TEST(MCSymMatrixUpdate, UpdateXXPosNegWTakesAnyWeight) {
  MCSymMatrix matrix(2);
  EXPECT_TRUE(matrix.UpdateXXPosNegW({1, 2}, -3.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{-3, -6, -12}));
  EXPECT_TRUE(matrix.UpdateXXPosNegW({1, 2}, 0.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{-3, -6, -12}));
}

TEST(MCSymMatrixUpdate, RowsOfAnotherSizeAreRefused) {
  MCSymMatrix matrix(2);
  const MCBitSet mask(2);
  for (const std::vector<double>& x : {std::vector<double>{1}, {1, 2, 3}, {}}) {
    EXPECT_FALSE(matrix.UpdateXX(x, 1.0));
    EXPECT_FALSE(matrix.UpdateXXPosNegW(x, 1.0));
    EXPECT_FALSE(matrix.UpdateXXNonRedun(x, mask, 1.0));
  }
  EXPECT_EQ(matrix.AsVectorConst(), Triangle(3, 0.0));
  EXPECT_TRUE(MCSymMatrix().UpdateXX({}, 1.0));
}

TEST(MCSymMatrixUpdate, ARowWhoseMultiplierIsZeroIsSkippedWhole) {
  MCSymMatrix matrix(3);
  EXPECT_TRUE(matrix.UpdateXX({kInf, 0.0, 1.0}, 1.0));
  EXPECT_EQ(matrix.GetElem(0, 0), kInf);
  EXPECT_EQ(matrix.GetElem(1, 0), 0.0);  // 0 * infinity isn't formed
  EXPECT_EQ(matrix.GetElem(2, 0), kInf);
  EXPECT_EQ(matrix.GetElem(2, 1), 0.0);
}

TEST(MCSymMatrixUpdate, TheRelativesOfUpdateXXSkipThoseRowsToo) {
  MCBitSet all(2);
  all.Negate();
  MCSymMatrix masked(2);
  EXPECT_TRUE(masked.UpdateXXNonRedun({kInf, 0.0}, all, 1.0));
  EXPECT_EQ(masked.GetElem(1, 0), 0.0);
  MCSymMatrix joined(2);
  EXPECT_TRUE(joined.UpdateXXMat2(FromRows({{kInf}}), FromRows({{0.0}}), 1.0));
  EXPECT_EQ(joined.GetElem(1, 0), 0.0);
  MCSymMatrix crossProducts;
  EXPECT_TRUE(crossProducts.ComputeRTransByR(FromRows({{kInf, 0.0}})));
  EXPECT_EQ(crossProducts.GetElem(1, 0), 0.0);
}

TEST(MCSymMatrixUpdate, SparseRowsAndRowProductsSkipNoZeros) {
  MCSymMatrix sparse(2);
  EXPECT_TRUE(sparse.UpdateXXSparse(2, {0, 1}, {kInf, 0.0}, 1.0));
  EXPECT_TRUE(std::isnan(sparse.GetElem(1, 0)));
  MCSymMatrix rowProducts;
  EXPECT_TRUE(rowProducts.ComputeRByRTrans(FromRows({{kInf}, {0.0}})));
  EXPECT_TRUE(std::isnan(rowProducts.GetElem(1, 0)));
}

TEST(MCSymMatrixUpdate, ANaNIsNotSkippedAndMeetsZerosAsNaN) {
  MCSymMatrix matrix(3);
  EXPECT_TRUE(matrix.UpdateXX({0.0, kNaN, 0.0}, 1.0));
  EXPECT_EQ(matrix.GetElem(0, 0), 0.0);
  EXPECT_TRUE(std::isnan(matrix.GetElem(1, 0)));
  EXPECT_TRUE(std::isnan(matrix.GetElem(1, 1)));
  EXPECT_EQ(matrix.GetElem(2, 1), 0.0);  // row 2 is skipped
}

TEST(MCSymMatrixUpdate, UpdatesOfARowDoNotAllocate) {
  MCSymMatrix matrix(8);
  Numbers numbers(4);
  const std::vector<double> x = numbers.Vector(8);
  const std::vector<int> idx = {1, 4, 6};
  const std::vector<double> val = {0.5, 2.0, -1.0};
  MCBitSet mask(8);
  mask.Negate();
  const std::size_t before = mctest::AllocationCount();
  matrix.UpdateXX(x, 2.0);
  matrix.UpdateXXPosNegW(x, -2.0);
  matrix.UpdateXXNonRedun(x, mask, 2.0);
  matrix.UpdateXXSparse(3, idx, val, 2.0);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCSymMatrixUpdate, UpdateXXNonRedunTouchesPairsInTheMaskOnly) {
  for (const int n : kSizes) {
    Numbers numbers(static_cast<std::uint64_t>(n) + 100);
    const std::vector<double> x = numbers.Vector(n);
    MCBitSet mask(n);
    for (int i = 0; i < n; ++i) mask.Set(i, i % 3 != 1);
    std::vector<double> kept(x);
    for (int i = 0; i < n; ++i) {
      if (!mask.IsIn(i)) kept[static_cast<std::size_t>(i)] = 0.0;
    }
    MCSymMatrix got = numbers.Sym(n);
    MCSymMatrix want(got);
    EXPECT_TRUE(got.UpdateXXNonRedun(x, mask, -1.7));
    AddOuterProduct(want, kept, -1.7);
    EXPECT_EQ(got.AsVectorConst(), want.AsVectorConst());
  }
}

TEST(MCSymMatrixUpdate, UpdateXXNonRedunDoesNotFormProductsOutsideTheMask) {
  MCSymMatrix matrix(3);
  MCBitSet mask(3);
  mask.Set(0, true);
  mask.Set(2, true);
  EXPECT_TRUE(matrix.UpdateXXNonRedun({1.0, kNaN, 2.0}, mask, 1.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 0, 0, 2, 0, 4}));
}

TEST(MCSymMatrixUpdate, UpdateXXNonRedunTakesAPositionBeyondTheMaskAsOutside) {
  MCSymMatrix matrix(3);
  MCBitSet mask(2);
  mask.Negate();
  EXPECT_TRUE(matrix.UpdateXXNonRedun({1, 2, 3}, mask, 1.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 2, 4, 0, 0, 0}));
  MCBitSet longMask(5);
  longMask.Negate();
  EXPECT_TRUE(matrix.UpdateXXNonRedun({0, 0, 3}, longMask, 1.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 2, 4, 0, 0, 9}));
}

TEST(MCSymMatrixUpdate, UpdateXXSparseHasTheBitsOfTheDenseUpdate) {
  for (const int n : kSizes) {
    Numbers numbers(static_cast<std::uint64_t>(n) + 200);
    MCSymMatrix sparse = numbers.Sym(n);
    MCSymMatrix dense(sparse);
    for (int row = 0; row < 10; ++row) {
      const std::vector<double> x = numbers.Vector(n);
      std::vector<int> idx;
      std::vector<double> val;
      for (int i = 0; i < n; ++i) {
        if (x[static_cast<std::size_t>(i)] == 0.0) continue;
        idx.push_back(i);
        val.push_back(x[static_cast<std::size_t>(i)]);
      }
      EXPECT_TRUE(sparse.UpdateXXSparse(static_cast<int>(idx.size()), idx, val, 1.3));
      EXPECT_TRUE(dense.UpdateXX(x, 1.3));
    }
    ExpectSameBits(sparse.AsVectorConst(), dense.AsVectorConst());
  }
}

TEST(MCSymMatrixUpdate, UpdateXXSparsePassesOverForeignIndicesAndStopsAtTheFirstAbove) {
  const struct {
    int m;
    std::vector<int> idx;
    std::vector<double> val;
    Triangle want;
  } cases[] = {
      {2, {0, 2}, {2, 3}, {4, 0, 0, 6, 0, 9}},
      {1, {0, 2}, {2, 3}, {4, 0, 0, 0, 0, 0}},               // only the first m
      {4, {-1, 0, 2, 3}, {9, 2, 3, 9}, {4, 0, 0, 6, 0, 9}},  // outside 0..2
      {2, {1, 1}, {2, 3}, {0, 0, 25, 0, 0, 0}},              // a position told twice adds up
      {2, {2, 0}, {3, 2}, {0, 0, 0, 6, 0, 9}},               // descending: (0, 0) is lost
      {-1, {}, {}, {0, 0, 0, 0, 0, 0}},
      {0, {}, {}, {0, 0, 0, 0, 0, 0}},
  };
  for (const auto& row : cases) {
    MCSymMatrix matrix(3);
    EXPECT_TRUE(matrix.UpdateXXSparse(row.m, row.idx, row.val, 1.0));
    EXPECT_EQ(matrix.AsVectorConst(), row.want);
  }
}

TEST(MCSymMatrixUpdate, UpdateXXSparseRefusesShortListsAndWeightsThatAreNotPositive) {
  MCSymMatrix matrix(3);
  EXPECT_FALSE(matrix.UpdateXXSparse(2, {0}, {1, 2}, 1.0));
  EXPECT_FALSE(matrix.UpdateXXSparse(2, {0, 1}, {1}, 1.0));
  for (const double w : {0.0, -1.0, kNaN}) {
    EXPECT_FALSE(matrix.UpdateXXSparse(1, {0}, {1}, w));
    EXPECT_FALSE(matrix.UpdateXXSparse(-1, {0}, {1}, w));
  }
  EXPECT_EQ(matrix.AsVectorConst(), Triangle(6, 0.0));
}

TEST(MCSymMatrixUpdate, UpdateXXSparseReadsItsOwnTriangleAsItWas) {
  MCSymMatrix matrix = Packed({1, 2, 3});
  EXPECT_TRUE(matrix.UpdateXXSparse(2, {0, 1}, matrix.AsVectorConst(), 1.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{2, 4, 7}));
}

TEST(MCSymMatrixUpdate, UpdateXXMat2HasTheBitsOfUpdatesByTheJoinedRows) {
  for (const int n : kSizes) {
    for (int p = 0; p <= n; p += 2) {
      Numbers numbers(static_cast<std::uint64_t>(100 * n + p));
      const MCRectMatrix joined = numbers.Rect(7, n);
      MCRectMatrix A(7, p);
      MCRectMatrix B(7, n - p);
      MCSymMatrix got = numbers.Sym(n);
      MCSymMatrix want(got);
      for (int r = 0; r < 7; ++r) {
        for (int j = 0; j < p; ++j) A.SetElem(r, j, joined.GetElem(r, j));
        for (int j = p; j < n; ++j) B.SetElem(r, j - p, joined.GetElem(r, j));
      }
      for (int r = 0; r < 7 && n > 0; ++r) {
        AddOuterProduct(want, {joined.GetRowPtr(r), joined.GetRowPtr(r) + n}, 1.0);
      }
      EXPECT_TRUE(got.UpdateXXMat2(A, B, 1.0));
      ExpectSameBits(got.AsVectorConst(), want.AsVectorConst());
    }
  }
}

TEST(MCSymMatrixUpdate, UpdateXXMat2TestsItsWeightButDoesNotApplyIt) {
  const MCRectMatrix A = FromRows({{1}, {2}});
  const MCRectMatrix B = FromRows({{3}, {5}});
  for (const double w : {1.0, 2.0, 1e300}) {
    MCSymMatrix matrix(2);
    EXPECT_TRUE(matrix.UpdateXXMat2(A, B, w));
    EXPECT_EQ(matrix.AsVectorConst(), (Triangle{5, 13, 34}));
  }
  for (const double w : {0.0, -1.0, kNaN}) {
    MCSymMatrix matrix(2);
    EXPECT_FALSE(matrix.UpdateXXMat2(A, B, w));
    EXPECT_EQ(matrix.AsVectorConst(), Triangle(3, 0.0));
  }
}

TEST(MCSymMatrixUpdate, UpdateXXMat2RefusesShapesThatDoNotFit) {
  MCSymMatrix matrix(2);
  EXPECT_FALSE(matrix.UpdateXXMat2(MCRectMatrix(2, 1), MCRectMatrix(2, 2), 1.0));
  EXPECT_FALSE(matrix.UpdateXXMat2(MCRectMatrix(2, 1), MCRectMatrix(3, 1), 1.0));
  EXPECT_FALSE(matrix.UpdateXXMat2(MCRectMatrix(2, 0), MCRectMatrix(2, 1), 1.0));
  EXPECT_EQ(matrix.AsVectorConst(), Triangle(3, 0.0));
}

TEST(MCSymMatrixUpdate, ComputeRTransByRAndItsCounterpartAgreeWithTheOracle) {
  for (const int m : kSizes) {
    for (const int n : kSizes) {
      Numbers numbers(static_cast<std::uint64_t>(100 * m + n));
      const MCRectMatrix R = numbers.Rect(m, n);
      const ExtendedMatrix full(R);
      MCSymMatrix got(2, 2);
      EXPECT_TRUE(got.ComputeRTransByR(R));
      ExpectWithin(got, Chain({full.Transposed(), full}));
      EXPECT_EQ(got.GetNBlocks(), 1);
      EXPECT_EQ(got.GetBlockSize(), n);
      EXPECT_TRUE(got.ComputeRByRTrans(R));
      ExpectWithin(got, Chain({full, full.Transposed()}));
      EXPECT_EQ(got.GetNBlocks(), 1);
      EXPECT_EQ(got.GetBlockSize(), m);
    }
  }
}

TEST(MCSymMatrixUpdate, CrossProductsBeyondTheLargestMatrixAreInvalid) {
  MCSymMatrix matrix(1);
  EXPECT_FALSE(matrix.ComputeRTransByR(MCRectMatrix(1, 65536)));
  EXPECT_FALSE(matrix.IsValidMatrix());
  matrix.SetNRows(1);
  EXPECT_FALSE(matrix.ComputeRByRTrans(MCRectMatrix(65536, 1)));
  EXPECT_FALSE(matrix.IsValidMatrix());
}

}  // namespace
