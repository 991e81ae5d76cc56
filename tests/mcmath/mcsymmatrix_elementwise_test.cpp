// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::Bits;
using mctest::Packed;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

using Triangle = std::vector<double>;

TEST(MCSymMatrixElementwise, AddToDiagonalLeavesTheRest) {
  MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  matrix.AddToDiagonal(0.5);
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1.5, 2, 3.5, 4, 5, 6.5}));
}

TEST(MCSymMatrixElementwise, ChangeSignAndMultiplyReachEveryElement) {
  MCSymMatrix matrix = Packed({1, -2, 3});
  matrix.ChangeSign();
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{-1, 2, -3}));
  matrix.MultiplyByNumber(-0.5);
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{0.5, -1, 1.5}));
}

TEST(MCSymMatrixElementwise, ComputeAXpYAddsAMultiple) {
  MCSymMatrix matrix = Packed({1, 2, 3});
  EXPECT_TRUE(matrix.ComputeAXpY(2.0, Packed({10, 20, 30})));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{21, 42, 63}));
  EXPECT_TRUE(matrix.ComputeAXpY(1.0, matrix));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{42, 84, 126}));
  EXPECT_FALSE(matrix.ComputeAXpY(1.0, MCSymMatrix(3)));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{42, 84, 126}));
  EXPECT_TRUE(MCSymMatrix().ComputeAXpY(1.0, MCSymMatrix()));
}

TEST(MCSymMatrixElementwise, SetRowColToConstAndZeroOutReachRowAndColumn) {
  MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  EXPECT_TRUE(matrix.SetRowColToConst(1, 9.0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 9, 9, 4, 9, 6}));
  EXPECT_TRUE(matrix.ZeroOut(0));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{0, 0, 9, 0, 9, 6}));
  for (const int i : {-1, 3}) {
    EXPECT_FALSE(matrix.SetRowColToConst(i, 1.0));
    EXPECT_FALSE(matrix.ZeroOut(i));
  }
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{0, 0, 9, 0, 9, 6}));
}

TEST(MCSymMatrixElementwise, ZeroOutAllSmallComparesWithTheLargestDiagonal) {
  const struct {
    Triangle before;
    double tol;
    Triangle after;
  } cases[] = {
      {{-8, 1, 0.5, 2, -1, 4}, 0.125, {-8, 0, 0, 2, 0, 4}},   // the bound itself goes
      {{-8, 1, 0.5, 2, -1, 4}, 0.0, {-8, 1, 0.5, 2, -1, 4}},  // tol must be positive
      {{-8, 1, 0.5, 2, -1, 4}, -1.0, {-8, 1, 0.5, 2, -1, 4}},
      {{-8, 1, 0.5, 2, -1, 4}, kNaN, {-8, 1, 0.5, 2, -1, 4}},
      {{0, 1, 0, 2, 3, 0}, 0.5, {0, 1, 0, 2, 3, 0}},     // bound 0 does nothing
      {{8, 1, kInf, 2, 3, 4}, 0.5, {0, 0, 0, 0, 0, 0}},  // nothing is above infinity
  };
  for (const auto& row : cases) {
    MCSymMatrix matrix = Packed(row.before);
    matrix.ZeroOutAllSmall(row.tol);
    EXPECT_EQ(matrix.AsVectorConst(), row.after);
  }
}

TEST(MCSymMatrixElementwise, ZeroOutAllSmallPassesOverNaN) {
  MCSymMatrix matrix = Packed({kNaN, kNaN, 4});
  matrix.ZeroOutAllSmall(1.0);
  EXPECT_TRUE(std::isnan(matrix.GetElem(0, 0)));
  EXPECT_TRUE(std::isnan(matrix.GetElem(1, 0)));
  EXPECT_EQ(matrix.GetElem(1, 1), 0.0);
}

TEST(MCSymMatrixElementwise, ZeroOutAllSmallLeavesNegativeZerosBesideAZeroDiagonal) {
  MCSymMatrix matrix = Packed({0, -0.0, 0});
  matrix.ZeroOutAllSmall(1.0);
  EXPECT_TRUE(std::signbit(matrix.GetElem(1, 0)));
}

TEST(MCSymMatrixElementwise, ZeroOutRowsForSmallDiagJudgesARowAgainstThoseBeforeIt) {
  const struct {
    Triangle before;
    double tol;
    Triangle after;
  } cases[] = {
      // Row 0 is tiny beside row 2 and stays.
      {{1, 5, 1e-12, 6, 7, 1e12}, 1e-8, {1, 0, 0, 6, 0, 1e12}},
      // A zero diagonal at the front goes, as nothing stands before it.
      {{0, 5, 1, 6, 7, 1}, 1e-8, {0, 0, 1, 0, 7, 1}},
      // The maximum is of magnitudes, and a ratio equal to tol stays.
      {{-4, 5, 1, 6, 7, -0.5}, 0.25, {-4, 5, 1, 0, 0, 0}},
      {{4, 5, 1, 6, 7, 0.5}, 0.0, {4, 5, 1, 6, 7, 0.5}},
      {{4, 5, 1, 6, 7, 0.5}, kNaN, {4, 5, 1, 6, 7, 0.5}},
      // Beyond 1 every row is below its own share.
      {{4, 5, 1, 6, 7, 0.5}, 2.0, {0, 0, 0, 0, 0, 0}},
  };
  for (const auto& row : cases) {
    MCSymMatrix matrix = Packed(row.before);
    matrix.ZeroOutRowsForSmallDiag(row.tol);
    EXPECT_EQ(matrix.AsVectorConst(), row.after);
  }
}

TEST(MCSymMatrixElementwise, ZeroOutRowsForSmallDiagKeepsARowWithANaNDiagonal) {
  MCSymMatrix first = Packed({kNaN, 5, 1});
  first.ZeroOutRowsForSmallDiag(0.5);
  EXPECT_TRUE(std::isnan(first.GetElem(0, 0)));
  EXPECT_EQ(first.GetElem(1, 0), 5.0);
  EXPECT_EQ(first.GetElem(1, 1), 1.0);
  MCSymMatrix later = Packed({4, 5, kNaN, 6, 7, 1});
  later.ZeroOutRowsForSmallDiag(0.5);
  EXPECT_EQ(later.GetElem(1, 0), 5.0);
  EXPECT_EQ(later.GetElem(2, 2), 0.0);  // still judged against the 4
}

TEST(MCSymMatrixElementwise, ZeroOutNonDiagComparesWithTheGeometricMeanOfTheDiagonals) {
  const struct {
    Triangle before;
    double tol;
    Triangle after;
  } cases[] = {
      {{4, 3, 9, 3.1, 1, 16}, 0.5, {4, 0, 9, 0, 0, 16}},
      {{4, 3.5, -9, -5, 1, 16}, 0.5, {4, 3.5, -9, -5, 0, 16}},
      {{4, 3, 9, 1, 1, 16}, 0.0, {4, 3, 9, 1, 1, 16}},
      {{4, 3, 9, 1, 1, 16}, -0.5, {4, 3, 9, 1, 1, 16}},
      {{4, 3, 9, 1, 1, 16}, kNaN, {4, 3, 9, 1, 1, 16}},
      {{0, 0, 9, 1, 1, 16}, 0.5, {0, 0, 9, 1, 0, 16}},
  };
  for (const auto& row : cases) {
    MCSymMatrix matrix = Packed(row.before);
    matrix.ZeroOutNonDiag(row.tol);
    EXPECT_EQ(matrix.AsVectorConst(), row.after);
  }
}

TEST(MCSymMatrixElementwise, ZeroOutNonDiagKeepsNaN) {
  MCSymMatrix matrix = Packed({4, kNaN, 9});
  matrix.ZeroOutNonDiag(1.0);
  EXPECT_TRUE(std::isnan(matrix.GetElem(1, 0)));
}

TEST(MCSymMatrixElementwise, AdjustOffDiagCorrBringsCorrelationsInside) {
  MCSymMatrix matrix = Packed({5, 1, 5, -1, 0.5, 5, 1.25, -7, -0.999, 5});
  EXPECT_TRUE(matrix.AdjustOffDiagCorr(0.25));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{5, 0.75, 5, -0.75, 0.5, 5, 0.75, -0.75, -0.999, 5}));
}

TEST(MCSymMatrixElementwise, AdjustOffDiagCorrTakesDeltaFromZeroToBelowOne) {
  for (const double delta : {-0.1, 1.0, kNaN, kInf}) {
    MCSymMatrix matrix = Packed({1, 2, 1});
    EXPECT_FALSE(matrix.AdjustOffDiagCorr(delta));
    EXPECT_EQ(matrix.GetElem(1, 0), 2.0);
  }
  MCSymMatrix matrix = Packed({1, 2, 1});
  EXPECT_TRUE(matrix.AdjustOffDiagCorr(0.0));
  EXPECT_EQ(matrix.GetElem(1, 0), 1.0);
  MCSymMatrix single = Packed({7});
  EXPECT_TRUE(single.AdjustOffDiagCorr(0.5));
  EXPECT_EQ(single.GetElem(0, 0), 7.0);
  EXPECT_TRUE(MCSymMatrix().AdjustOffDiagCorr(0.5));
}

TEST(MCSymMatrixElementwise, SetCovarZerosLooksAtBothMatricesAndZeroesInBoth) {
  const struct {
    Triangle a, b, wantA, wantB;
  } cases[] = {
      {{1, 2, -3, 4, 5, 6}, {1, 2, 3, 4, 5, 0}, {1, 0, 0, 0, 0, 0}, {1, 0, 0, 0, 0, 0}},
      {{1, 2, 0, 4, 5, 6}, {1, 2, 3, 4, 5, 6}, {1, 0, 0, 4, 0, 6}, {1, 0, 0, 4, 0, 6}},
      {{1, 2, 3, 4, 5, 6}, {-1, 2, 3, 4, 5, 6}, {0, 0, 3, 0, 5, 6}, {0, 0, 3, 0, 5, 6}},
  };
  for (const auto& row : cases) {
    MCSymMatrix first = Packed(row.a);
    MCSymMatrix second = Packed(row.b);
    EXPECT_TRUE(first.SetCovarZeros(second));
    EXPECT_EQ(first.AsVectorConst(), row.wantA);
    EXPECT_EQ(second.AsVectorConst(), row.wantB);
  }
  MCSymMatrix a(3);
  MCSymMatrix other(2);
  EXPECT_FALSE(a.SetCovarZeros(other));
  MCSymMatrix nan = Packed({kNaN});
  EXPECT_TRUE(nan.SetCovarZeros(nan));
  EXPECT_TRUE(std::isnan(nan.GetElem(0, 0)));
}

TEST(MCSymMatrixElementwise, SetToVVFormsTheOuterProduct) {
  MCSymMatrix matrix(2, 3);
  matrix.SetToVV({2, 0, -3});
  EXPECT_EQ(matrix.GetNRows(), 3);
  EXPECT_EQ(matrix.GetNBlocks(), 1);
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{4, 0, 0, -6, 0, 9}));
  matrix.SetToVV({});
  EXPECT_EQ(matrix.GetNRows(), 0);
}

TEST(MCSymMatrixElementwise, SetToVVOfItsOwnTriangle) {
  MCSymMatrix matrix = Packed({1, 2, 3});
  matrix.SetToVV(matrix.AsVector());
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 2, 4, 3, 6, 9}));
}

TEST(MCSymMatrixElementwise, SetToVVOfTooManyEntriesIsInvalid) {
  MCSymMatrix matrix(2);
  matrix.SetToVV(std::vector<double>(65536, 1.0));
  EXPECT_FALSE(matrix.IsValidMatrix());
}

TEST(MCSymMatrixElementwise, ReplaceFirstRowsMovesTheLeadingTriangle) {
  MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  const MCSymMatrix X = Packed({10, 20, 30});
  EXPECT_TRUE(matrix.ReplaceFirstRows(X, 1));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{10, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(matrix.ReplaceFirstRows(X, 2));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{10, 20, 30, 4, 5, 6}));
  EXPECT_TRUE(matrix.ReplaceFirstRows(matrix, 3));
  for (const int k : {0, -1, 3, 4}) EXPECT_FALSE(matrix.ReplaceFirstRows(X, k));
  MCSymMatrix small(1);
  EXPECT_FALSE(small.ReplaceFirstRows(X, 2));
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{10, 20, 30, 4, 5, 6}));
}

TEST(MCSymMatrixElementwise, ExtractFirstNRowsDropsTheLastRow) {
  const MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  MCSymMatrix out(2, 4);
  matrix.ExtractFirstNRows(out);
  EXPECT_EQ(out.AsVectorConst(), (Triangle{1, 2, 3}));
  EXPECT_EQ(out.GetNBlocks(), 1);
  EXPECT_EQ(out.GetBlockSize(), 2);
  Packed({7}).ExtractFirstNRows(out);
  EXPECT_EQ(out.GetNRows(), 0);
  out.SetNRows(3);
  MCSymMatrix().ExtractFirstNRows(out);
  EXPECT_EQ(out.GetNRows(), 0);
}

TEST(MCSymMatrixElementwise, ExtractFirstNRowsOfItself) {
  MCSymMatrix matrix = Packed({1, 2, 3, 4, 5, 6});
  matrix.ExtractFirstNRows(matrix);
  EXPECT_EQ(matrix.AsVectorConst(), (Triangle{1, 2, 3}));
}

TEST(MCSymMatrixReductions, TraceAddsTheDiagonal) {
  EXPECT_EQ(Packed({1, 2, 3, 4, 5, 6}).Trace(), 10.0);
  EXPECT_EQ(MCSymMatrix().Trace(), 0.0);
}

TEST(MCSymMatrixReductions, ExtremesOfDiagonalAndRest) {
  const struct {
    Triangle triangle;
    double maxD, minD, maxO, minO;
  } cases[] = {
      {{1, -9, -2, 8, 5, 3}, 3, -2, 8, -9},
      {{-5}, -5, -5, -kLargest, kLargest},
      {{kNaN, kNaN, 2}, 2, 2, -kLargest, kLargest},
      {{kNaN}, -kLargest, kLargest, -kLargest, kLargest},
  };
  for (const auto& row : cases) {
    const MCSymMatrix matrix = Packed(row.triangle);
    double max = 0, min = 0, maxD = 0, minD = 0, maxO = 0, minO = 0;
    matrix.MaxMinDiag(max, min);
    EXPECT_EQ(max, row.maxD);
    EXPECT_EQ(min, row.minD);
    matrix.MaxMinDiagOffDiag(maxD, minD, maxO, minO);
    EXPECT_EQ(maxD, row.maxD);
    EXPECT_EQ(minD, row.minD);
    EXPECT_EQ(maxO, row.maxO);
    EXPECT_EQ(minO, row.minO);
  }
}

TEST(MCSymMatrixReductions, WithoutRowsTheExtremesAreLeftAlone) {
  double maxD = 1, minD = 2, maxO = 3, minO = 4;
  MCSymMatrix().MaxMinDiag(maxD, minD);
  MCSymMatrix().MaxMinDiagOffDiag(maxD, minD, maxO, minO);
  EXPECT_EQ(maxD, 1);
  EXPECT_EQ(minD, 2);
  EXPECT_EQ(maxO, 3);
  EXPECT_EQ(minO, 4);
}

TEST(MCSymMatrixReductions, IsZeroRowLooksAtTheColumnsInTheMask) {
  const MCSymMatrix matrix = Packed({7, 0, -0.0, 1, 0, kNaN});
  const struct {
    int row;
    std::vector<bool> mask;
    bool want;
  } cases[] = {
      {1, {1, 1, 1}, true}, {0, {1, 1, 1}, false},  {0, {0, 1, 0}, true},  {0, {0, 1, 1}, false},
      {0, {0, 1}, true},    {2, {0, 1, 0}, true},   {2, {0, 0, 1}, false}, {2, {0, 0, 0, 1}, true},
      {1, {}, false},       {-1, {1, 1, 1}, false}, {3, {1, 1, 1}, false}, {0, {0, 0, 0}, true},
  };
  for (const auto& row : cases) EXPECT_EQ(matrix.IsZeroRow(row.row, Bits(row.mask)), row.want);
  EXPECT_FALSE(MCSymMatrix().IsZeroRow(0, Bits({true})));
}

TEST(MCSymMatrixReductions, GetNCheckDiagonalReplacesWhatIsBelowTol) {
  std::vector<double> d(9, -1.0);
  Packed({1, 2, 0.5, 4, 5, 0.25, 7, 8, 9, kNaN}).GetNCheckDiagonal(d, 0.5, 3.0);
  ASSERT_EQ(d.size(), 4U);
  EXPECT_EQ(d[0], 1.0);
  EXPECT_EQ(d[1], 0.5);  // equal isn't below
  EXPECT_EQ(d[2], 3.0);
  EXPECT_TRUE(std::isnan(d[3]));
  MCSymMatrix().GetNCheckDiagonal(d, 0.5, 3.0);
  EXPECT_TRUE(d.empty());
}

}  // namespace
