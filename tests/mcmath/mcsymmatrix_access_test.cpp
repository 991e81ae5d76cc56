// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/productbounds.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using MCMV::gMissingValue;

constexpr int kHuge = std::numeric_limits<int>::max();

// Element (i, j) is 10 max(i, j) + min(i, j), so each tells its place.
MCSymMatrix Labelled(int n) {
  MCSymMatrix matrix(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) matrix.SetElem(i, j, 10.0 * i + j);
  }
  return matrix;
}

double Label(int i, int j) {
  return i >= j ? 10.0 * i + j : 10.0 * j + i;
}

TEST(MCSymMatrixAccess, TheTriangleIsStoredRowByRow) {
  EXPECT_EQ(Labelled(3).AsVectorConst(), (std::vector<double>{0, 10, 11, 20, 21, 22}));
}

TEST(MCSymMatrixAccess, GetElemIsSymmetricAtEveryPair) {
  const MCSymMatrix matrix = Labelled(5);
  for (int i = 0; i < 5; ++i) {
    for (int j = 0; j < 5; ++j) EXPECT_EQ(matrix.GetElem(i, j), Label(i, j));
  }
}

TEST(MCSymMatrixAccess, AnIndexOutOfRangeIsMissing) {
  const MCSymMatrix matrix = Labelled(3);
  const int cases[][2] = {{-1, 0}, {0, -1}, {3, 0}, {0, 3}, {kHuge, 0}, {-kHuge - 1, 1}};
  for (const auto& at : cases) EXPECT_EQ(matrix.GetElem(at[0], at[1]), gMissingValue);
  EXPECT_EQ(MCSymMatrix().GetElem(0, 0), gMissingValue);
}

TEST(MCSymMatrixAccess, ABlockElementIsTheMatrixElementBehindIt) {
  MCSymMatrix matrix = Labelled(6);
  ASSERT_TRUE(matrix.SetNBlocks(3));
  for (int I = 0; I < 3; ++I) {
    for (int J = 0; J < 3; ++J) {
      for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 2; ++c) {
          EXPECT_EQ(matrix.GetElem(I, J, r, c), Label(2 * I + r, 2 * J + c));
        }
      }
    }
  }
}

TEST(MCSymMatrixAccess, ABlockElementNeedsOnlyTheMatrixElement) {
  MCSymMatrix matrix = Labelled(6);
  ASSERT_TRUE(matrix.SetNBlocks(3));
  EXPECT_EQ(matrix.GetElem(0, 0, 2, 0), Label(2, 0));
  EXPECT_EQ(matrix.GetElem(2, 0, -1, 0), Label(3, 0));
  EXPECT_EQ(matrix.GetElem(0, 0, 6, 0), gMissingValue);
  EXPECT_EQ(matrix.GetElem(0, 0, -1, 0), gMissingValue);
  EXPECT_EQ(matrix.GetElem(0, -1, 0, 0), gMissingValue);
}

TEST(MCSymMatrixAccess, BlockIndicesThatOverflowAnIntAreMissing) {
  MCSymMatrix matrix = Labelled(6);
  EXPECT_EQ(matrix.GetElem(kHuge, 0, kHuge, 0), gMissingValue);
  EXPECT_EQ(matrix.GetElem(0, kHuge, 0, 0), gMissingValue);
  EXPECT_EQ(matrix.GetElem(715827883, 0, 0, 0), gMissingValue);  // 6 of it wrap to 2 in 32 bits
  EXPECT_EQ(matrix.GetElem(-kHuge - 1, 0, 0, 0), gMissingValue);
  EXPECT_EQ(MCSymMatrix(kHuge).GetElem(2, 2, 0, 0), gMissingValue);
}

TEST(MCSymMatrixAccess, GetRowGivesTheFullRow) {
  const MCSymMatrix matrix = Labelled(4);
  for (int i = 0; i < 4; ++i) {
    std::vector<double> row(9, -1.0);
    ASSERT_TRUE(matrix.GetRow(i, row));
    ASSERT_EQ(row.size(), 4U);
    for (int j = 0; j < 4; ++j) EXPECT_EQ(row[static_cast<std::size_t>(j)], Label(i, j));
  }
}

TEST(MCSymMatrixAccess, GetRowOutOfRangeLeavesTheVector) {
  const MCSymMatrix matrix = Labelled(4);
  for (const int i : {-1, 4, kHuge}) {
    std::vector<double> row(2, -1.0);
    EXPECT_FALSE(matrix.GetRow(i, row));
    EXPECT_EQ(row, std::vector<double>(2, -1.0));
  }
}

TEST(MCSymMatrixAccess, GetDiagonalSizesItsVector) {
  std::vector<double> d(7, -1.0);
  Labelled(3).GetDiagonal(d);
  EXPECT_EQ(d, (std::vector<double>{0, 11, 22}));
  MCSymMatrix(0).GetDiagonal(d);
  EXPECT_TRUE(d.empty());
}

TEST(MCSymMatrixAccess, SetElemWritesBothPlacesOfAPair) {
  MCSymMatrix matrix(3);
  EXPECT_TRUE(matrix.SetElem(0, 2, 5.0));
  EXPECT_EQ(matrix.GetElem(2, 0), 5.0);
  EXPECT_TRUE(matrix.SetElem(2, 1, 6.0));
  EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{0, 0, 0, 5, 6, 0}));
  const int cases[][2] = {{-1, 0}, {0, -1}, {3, 0}, {0, 3}, {kHuge, kHuge}};
  for (const auto& at : cases) EXPECT_FALSE(matrix.SetElem(at[0], at[1], 9.0));
  EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{0, 0, 0, 5, 6, 0}));
}

TEST(MCSymMatrixAccess, SetElemByPackedIndexEndsWithTheTriangle) {
  MCSymMatrix matrix(3);
  EXPECT_TRUE(matrix.SetElem(0, 1.0));
  EXPECT_TRUE(matrix.SetElem(5, 2.0));
  EXPECT_FALSE(matrix.SetElem(6, 3.0));
  EXPECT_FALSE(matrix.SetElem(-1, 3.0));
  EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{1, 0, 0, 0, 0, 2}));
  EXPECT_FALSE(MCSymMatrix().SetElem(0, 1.0));
}

TEST(MCSymMatrixAccess, PutRowWritesRowAndColumn) {
  MCSymMatrix matrix = Labelled(4);
  ASSERT_TRUE(matrix.PutRow(1, {-1, -2, -3, -4, -5}));
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j <= i; ++j) {
      const double want = i == 1 ? -1.0 - j : j == 1 ? -1.0 - i : Label(i, j);
      EXPECT_EQ(matrix.GetElem(i, j), want);
    }
  }
}

TEST(MCSymMatrixAccess, PutRowRefusesAShortVectorAndAForeignRow) {
  MCSymMatrix matrix = Labelled(3);
  EXPECT_FALSE(matrix.PutRow(0, {1, 2}));
  EXPECT_FALSE(matrix.PutRow(-1, {1, 2, 3}));
  EXPECT_FALSE(matrix.PutRow(3, {1, 2, 3}));
  EXPECT_EQ(matrix.AsVectorConst(), Labelled(3).AsVectorConst());
}

TEST(MCSymMatrixAccess, PutRowReadsItsOwnTriangleAsItWas) {
  MCSymMatrix matrix = Labelled(3);
  const std::vector<double> before = matrix.AsVectorConst();
  ASSERT_TRUE(matrix.PutRow(1, matrix.AsVectorConst()));
  MCSymMatrix want = Labelled(3);
  ASSERT_TRUE(want.PutRow(1, before));
  EXPECT_EQ(matrix.AsVectorConst(), want.AsVectorConst());
}

TEST(MCSymMatrixAccess, GetPColCopiesAtAStrideOfEitherSign) {
  const MCSymMatrix matrix = Labelled(4);
  const double s = -1.0;  // what stood in the vector before
  const struct {
    int from, to, step;
    std::vector<double> want;
  } cases[] = {{0, 3, 1, {10, 11, 21, 31, s, s}},     {1, 3, 2, {11, s, 21, s, 31, s}},
               {0, 3, -1, {31, 21, 11, 10, s, s}},    {1, 3, -2, {31, s, 21, s, 11, s}},
               {2, 2, 5, {21, s, s, s, s, s}},        {2, 3, 7, {21, s, s, s, s, s, 0, 31}},
               {2, 3, -7, {31, s, s, s, s, s, 0, 21}}};
  for (const auto& row : cases) {
    std::vector<double> out(6, s);
    EXPECT_TRUE(matrix.GetPCol(1, row.from, row.to, out, row.step));
    EXPECT_EQ(out, row.want) << row.from << ".." << row.to << " step " << row.step;
  }
}

TEST(MCSymMatrixAccess, GetPColRefusesBadRangesAndStepZero) {
  const MCSymMatrix matrix = Labelled(4);
  const int cases[][4] = {{-1, 0, 1, 1}, {4, 0, 1, 1}, {0, -1, 1, 1}, {0, 0, 4, 1},
                          {0, 4, 4, 1},  {0, 2, 1, 1}, {0, 0, -1, 1}, {0, 0, 1, 0}};
  for (const auto& at : cases) {
    std::vector<double> out(1, -1.0);
    EXPECT_FALSE(matrix.GetPCol(at[0], at[1], at[2], out, at[3]));
    EXPECT_EQ(out, std::vector<double>(1, -1.0));
  }
}

TEST(MCSymMatrixAccess, GetPColTakesTheSmallestIntAsAStepForOneColumn) {
  std::vector<double> out;
  EXPECT_TRUE(Labelled(3).GetPCol(2, 1, 1, out, -kHuge - 1));
  EXPECT_EQ(out, std::vector<double>{21});
}

TEST(MCSymMatrixAccess, CopyRowToRColumnStopsAtTheShorterSide) {
  const MCSymMatrix matrix = Labelled(3);
  const double s = -1.0;
  const struct {
    int nRowsOfR, nRows;
    std::vector<double> want;
  } cases[] = {{3, -1, {10, 11, 21}},   {5, -1, {10, 11, 21, s, s}},
               {2, -1, {10, 11}},       {5, 2, {10, 11, s, s, s}},
               {5, 0, {s, s, s, s, s}}, {5, 4, {10, 11, 21, s, s}},
               {2, kHuge, {10, 11}},    {5, -kHuge, {10, 11, 21, s, s}}};
  for (const auto& row : cases) {
    MCRectMatrix R(row.nRowsOfR, 3);
    for (double& x : R.AsVector()) x = s;
    EXPECT_TRUE(matrix.CopyRowToRColumn(1, R, 1, row.nRows));
    for (int i = 0; i < row.nRowsOfR; ++i) {
      EXPECT_EQ(R.GetElem(i, 0), s);
      EXPECT_EQ(R.GetElem(i, 1), row.want[static_cast<std::size_t>(i)]);
      EXPECT_EQ(R.GetElem(i, 2), s);
    }
  }
}

TEST(MCSymMatrixAccess, CopyRowToRColumnRefusesForeignRowsAndColumns) {
  const MCSymMatrix matrix = Labelled(3);
  MCRectMatrix R(3, 2);
  const int cases[][2] = {{-1, 0}, {3, 0}, {0, -1}, {0, 2}};
  for (const auto& at : cases) EXPECT_FALSE(matrix.CopyRowToRColumn(at[0], R, at[1], -1));
  EXPECT_EQ(R.AsVectorConst(), std::vector<double>(6, 0.0));
}

}  // namespace
