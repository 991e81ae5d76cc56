// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrix.h"

#include "mcmath/mcbitset.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"

#include <climits>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCRectMatrixData;
using mctest::Bits;
using mctest::ExtendedMatrix;
using mctest::FailAllocation;
using mctest::FromRows;
using mctest::NoisyMatrix;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kMissing = MCMV::gMissingValue;

MCRectMatrix InvalidMatrix() {
  return {INT_MAX, INT_MAX};
}

bool Same(const MCRectMatrixData& a, const MCRectMatrixData& b) {
  return a.GetNRows() == b.GetNRows() && a.GetNCols() == b.GetNCols() &&
         a.AsVectorConst() == b.AsVectorConst();
}

// ---- shape ----

TEST(MCRectMatrix, AFreshMatrixIsEmptyAndValid) {
  const MCRectMatrix matrix;
  EXPECT_TRUE(matrix.IsValidMatrix());
  EXPECT_EQ(matrix.GetNRows(), 0);
  EXPECT_EQ(matrix.GetNCols(), 0);
  EXPECT_TRUE(matrix.AsVectorConst().empty());
}

TEST(MCRectMatrix, AShapeIsTakenWithZerosAndANegativeCountGivesNoRowsAndNoColumns) {
  const struct {
    int rows, cols, gotRows, gotCols;
  } cases[] = {{2, 3, 2, 3}, {3, 0, 3, 0}, {0, 4, 0, 4}, {-1, 5, 0, 0}, {5, -1, 0, 0}};
  for (const auto& c : cases) {
    MCRectMatrix changed = FromRows({{1, 2}, {3, 4}});
    EXPECT_TRUE(changed.SetNRowsCols(c.rows, c.cols));
    for (const MCRectMatrixData& matrix :
         {MCRectMatrixData(c.rows, c.cols), MCRectMatrixData(MCRectMatrix(c.rows, c.cols)),
          MCRectMatrixData(changed)}) {
      EXPECT_EQ(matrix.GetNRows(), c.gotRows);
      EXPECT_EQ(matrix.GetNCols(), c.gotCols);
      EXPECT_EQ(matrix.AsVectorConst(),
                std::vector<double>(static_cast<std::size_t>(c.gotRows * c.gotCols)));
    }
  }
}

TEST(MCRectMatrix, ElementsStandRowByRow) {
  const MCRectMatrix matrix = FromRows({{1, 2, 3}, {4, 5, 6}});
  EXPECT_EQ(matrix.GetElem(1, 0), 4);
  EXPECT_EQ(matrix.GetRowPtr(1), matrix.AsVectorConst().data() + 3);
  EXPECT_EQ(matrix.GetColPtr(2), matrix.AsVectorConst().data() + 2);
}

TEST(MCRectMatrix, IndicesOutOfRangeGiveTheMissingValueOrNull) {
  MCRectMatrix matrix(2, 3);
  for (const auto& [i, j] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 3}, {INT_MIN, INT_MAX}}) {
    EXPECT_EQ(matrix.GetElem(i, j), kMissing);
    EXPECT_FALSE(matrix.SetElem(i, j, 1.0));
  }
  EXPECT_EQ(matrix.GetRowPtr(2), nullptr);
  EXPECT_EQ(matrix.GetRowPtr(-1), nullptr);
  EXPECT_EQ(matrix.GetColPtr(3), nullptr);
  EXPECT_EQ(matrix.GetColPtr(-1), nullptr);
  EXPECT_EQ(MCRectMatrix(3, 0).GetRowPtr(1), nullptr);
  EXPECT_EQ(MCRectMatrix(0, 3).GetColPtr(1), nullptr);
  EXPECT_EQ(matrix.AsVectorConst(), std::vector<double>(6));
}

TEST(MCRectMatrix, ResizeKeepsPlacesInTheVector) {
  MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}, {5, 6}});
  EXPECT_TRUE(matrix.Resize(2, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2}, {3, 4}})));
  EXPECT_TRUE(matrix.Resize(2, 3));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3}, {4, 0, 0}})));
  EXPECT_TRUE(matrix.Resize(-2, 3));
  EXPECT_TRUE(Same(matrix, MCRectMatrix(0, 0)));
}

TEST(MCRectMatrix, RowsAndColumnsAreAppendedAsZeros) {
  MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  EXPECT_TRUE(matrix.AddColumn());
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 0}, {3, 4, 0}})));
  EXPECT_TRUE(matrix.AddRow());
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 0}, {3, 4, 0}, {0, 0, 0}})));
  MCRectMatrix empty;
  EXPECT_TRUE(empty.AddRow());
  EXPECT_TRUE(empty.AddRow());
  EXPECT_TRUE(empty.AddColumn());
  EXPECT_TRUE(Same(empty, MCRectMatrix(2, 1)));
}

TEST(MCRectMatrix, TheLargestCountCannotGrow) {
  MCRectMatrix tall(INT_MAX, 0);
  EXPECT_FALSE(tall.AddRow());
  EXPECT_EQ(tall.GetNRows(), INT_MAX);
  MCRectMatrix wide(0, INT_MAX);
  EXPECT_FALSE(wide.AddColumn());
  EXPECT_EQ(wide.GetNCols(), INT_MAX);
}

TEST(MCRectMatrix, TransposeSwapsIndices) {
  MCRectMatrix matrix = FromRows({{1, 2, 3}, {4, 5, 6}});
  matrix.Transpose();
  EXPECT_TRUE(Same(matrix, FromRows({{1, 4}, {2, 5}, {3, 6}})));
  matrix.Transpose();
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3}, {4, 5, 6}})));
}

TEST(MCRectMatrix, ClearZeroesAndSetElemWrites) {
  MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  matrix.Clear();
  EXPECT_TRUE(Same(matrix, MCRectMatrix(2, 2)));
  EXPECT_TRUE(matrix.SetElem(1, 0, 7.0));
  EXPECT_TRUE(Same(matrix, FromRows({{0, 0}, {7, 0}})));
}

TEST(MCRectMatrix, CopiesAreIndependentAndMovesExchange) {
  const MCRectMatrix original = FromRows({{1, 2}, {3, 4}});
  MCRectMatrix copy(original);
  copy.SetElem(0, 0, 9.0);
  EXPECT_EQ(original.GetElem(0, 0), 1.0);
  copy = original;
  EXPECT_TRUE(Same(copy, original));
  const MCRectMatrix& self = copy;
  copy = self;
  EXPECT_TRUE(Same(copy, original));

  MCRectMatrix target(1, 1);
  target = std::move(copy);
  EXPECT_TRUE(Same(target, original));
  EXPECT_TRUE(Same(copy, MCRectMatrix(1, 1)));  // NOLINT(bugprone-use-after-move): it is told
  const MCRectMatrix constructed(std::move(target));
  EXPECT_TRUE(Same(constructed, original));
  EXPECT_TRUE(Same(target, MCRectMatrix()));  // NOLINT(bugprone-use-after-move)
}

// ---- memory exhaustion and invalid matrices ----

TEST(MCRectMatrix, MemoryExhaustionWhileSizingGivesAnInvalidMatrix) {
  const MCRectMatrix original = FromRows({{1, 2}, {3, 4}});
  const std::function<MCRectMatrix()> makers[] = {
      [] { return MCRectMatrix(2, 2); },
      [&original] { return MCRectMatrix(original); },
      [&original] {
        MCRectMatrix target;
        target = original;
        return target;
      },
      [] {
        MCRectMatrix target;
        EXPECT_FALSE(target.SetNRowsCols(2, 2));
        return target;
      },
      [] {
        MCRectMatrix target;
        EXPECT_FALSE(target.Resize(2, 2));
        return target;
      },
  };
  for (const auto& make : makers) {
    const FailAllocation failure(1);
    const MCRectMatrix matrix = make();
    EXPECT_TRUE(failure.HasFired());
    EXPECT_FALSE(matrix.IsValidMatrix());
    EXPECT_LT(matrix.GetNRows(), 0);
    EXPECT_TRUE(matrix.AsVectorConst().empty());
  }
}

TEST(MCRectMatrix, GrowthThatFailsMakesTheMatrixInvalid) {
  for (const auto grow : {&MCRectMatrix::AddRow, &MCRectMatrix::AddColumn}) {
    MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
    matrix.AsVector().shrink_to_fit();
    const FailAllocation failure(1);
    EXPECT_FALSE((matrix.*grow)());
    EXPECT_FALSE(matrix.IsValidMatrix());
  }
}

TEST(MCRectMatrix, AResultThatCannotBeAllocatedIsInvalid) {
  const MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  const MCBitSet bits = Bits({true, true});
  const std::function<bool(MCRectMatrix&)> operations[] = {
      [&](MCRectMatrix& out) { return matrix.ShiftRows(1, out); },
      [&](MCRectMatrix& out) { return matrix.ShiftColumns(1, out); },
      [&](MCRectMatrix& out) { return matrix.CreateBlockDiagonal(2, out); },
      [&](MCRectMatrix& out) { return matrix.ExpandSquare(matrix, out); },
      [&](MCRectMatrix& out) { return matrix.Expand(bits, true, out); },
      [&](MCRectMatrix& out) { return matrix.ComputeMatrixProduct(matrix, out); },
  };
  for (const auto& operation : operations) {
    MCRectMatrix out(1, 1);
    const FailAllocation failure(1);
    EXPECT_FALSE(operation(out));
    EXPECT_FALSE(out.IsValidMatrix());
  }
}

TEST(MCRectMatrix, ScratchThatCannotBeAllocatedThrowsAndChangesNothing) {
  const MCRectMatrix original = FromRows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
  const std::function<void(MCRectMatrix&)> operations[] = {
      [](MCRectMatrix& matrix) { matrix.Transpose(); },
      [&](MCRectMatrix& matrix) { matrix.CopyColToRow(0, original, 1); },
      [](MCRectMatrix& matrix) { matrix.RowNorm(0); },
      [](MCRectMatrix& matrix) { matrix.CheckForOnes(0.0); },
  };
  for (const auto& operation : operations) {
    MCRectMatrix matrix = original;
    const FailAllocation failure(1);
    EXPECT_THROW(operation(matrix), std::bad_alloc);
    EXPECT_TRUE(Same(matrix, original));
  }
}

TEST(MCRectMatrix, AProductIsFormedInFullOrNotAtAll) {
  const MCRectMatrix original = FromRows({{1, 2}, {3, 4}});
  bool ended = false;
  for (std::size_t k = 1; !ended; ++k) {
    MCRectMatrix out = original;
    bool answer = false;
    bool hasThrown = false;
    const FailAllocation failure(k);
    try {
      answer = original.ComputeProductMatrixTrans(original, out);
    } catch (const std::bad_alloc&) {
      hasThrown = true;
    }
    ended = !failure.HasFired();
    EXPECT_EQ(answer, ended);
    // What can't be allocated is a copy of an operand, scratch, or the result.
    EXPECT_TRUE(ended || Same(out, original) || (!hasThrown && !out.IsValidMatrix()));
  }
}

TEST(MCRectMatrix, ASizeBeyondTheAddressSpaceIsInvalid) {
  EXPECT_FALSE(InvalidMatrix().IsValidMatrix());
}

TEST(MCRectMatrix, AnInvalidMatrixRefusesEverythingButAShape) {
  MCRectMatrix bad = InvalidMatrix();
  const MCRectMatrix good(1, 1);
  const MCRectMatrix expected = FromRows({{5}});
  MCRectMatrix out = expected;
  const MCBitSet bits = Bits({true});
  int position = 7;
  double factor = 7.0;
  EXPECT_EQ(bad.GetElem(0, 0), kMissing);
  EXPECT_EQ(bad.GetRowPtr(0), nullptr);
  EXPECT_EQ(bad.GetColPtr(0), nullptr);
  EXPECT_FALSE(bad.AddRow());
  EXPECT_FALSE(bad.AddColumn());
  bad.Transpose();
  bad.Clear();
  EXPECT_FALSE(bad.SetElem(0, 0, 1.0));
  EXPECT_FALSE(bad.IsColZero(0));
  EXPECT_FALSE(bad.IsRowZero(0));
  EXPECT_FALSE(bad.IsRowZeroButOne(0, bits, position));
  EXPECT_EQ(bad.FindFirstNonZeroInRow(0, 0.0), -1);
  EXPECT_FALSE(bad.IsERowMultipleOfAnother(0, 0, 0.0, 0.0, factor));
  EXPECT_FALSE(bad.CheckForOnes(0.0));
  EXPECT_EQ(bad.DotProductCol(0, 0), kMissing);
  EXPECT_EQ(bad.DotProductRows(0, 0), kMissing);
  EXPECT_EQ(bad.RowNorm(0), kMissing);
  EXPECT_EQ(bad.ColNorm(0), kMissing);
  EXPECT_FALSE(bad.ColScale(0, 2.0));
  EXPECT_FALSE(bad.ZeroOutCol(0));
  EXPECT_FALSE(bad.ZeroOutRowPart(0, 0, 0));
  EXPECT_FALSE(bad.AddToColumn(0, good, 0, 1.0));
  EXPECT_FALSE(bad.ZeroOutPivotRow(0, 1.0, position));
  EXPECT_FALSE(bad.ColClean(0, 1.0));
  EXPECT_FALSE(bad.CopyRows(0, bad, 0, 0));
  EXPECT_FALSE(bad.CopyColumns(0, bad, 0, 0));
  EXPECT_FALSE(bad.CopyColToRow(0, good, 0));
  EXPECT_FALSE(bad.ShiftRows(0, out));
  EXPECT_FALSE(bad.ShiftColumns(0, out));
  EXPECT_FALSE(bad.CreateBlockDiagonal(1, out));
  EXPECT_FALSE(bad.ExpandSquare(good, out));
  EXPECT_FALSE(good.ExpandSquare(bad, out));
  EXPECT_FALSE(bad.Expand(bits, true, out));
  EXPECT_FALSE(bad.ComputeMatrixProduct(good, out));
  EXPECT_FALSE(good.ComputeMatrixProduct(bad, out));
  EXPECT_FALSE(good.ComputeProductMatrixTrans(bad, out));
  EXPECT_TRUE(Same(out, expected));
  EXPECT_FALSE(MCRectMatrix(bad).IsValidMatrix());
  out = bad;
  EXPECT_FALSE(out.IsValidMatrix());
  EXPECT_TRUE(bad.SetNRowsCols(1, 2));
  EXPECT_TRUE(Same(bad, MCRectMatrix(1, 2)));
}

// ---- tests of rows and columns ----

TEST(MCRectMatrix, ZeroRowsAndColumnsAreExactZerosOnly) {
  const MCRectMatrix matrix = FromRows({{0, -0.0, 0}, {0, 1e-300, kNaN}, {0, 0, 0}});
  EXPECT_TRUE(matrix.IsRowZero(0));
  EXPECT_FALSE(matrix.IsRowZero(1));
  EXPECT_FALSE(matrix.IsRowZero(3));
  EXPECT_FALSE(matrix.IsRowZero(-1));
  EXPECT_TRUE(matrix.IsColZero(0));
  EXPECT_FALSE(matrix.IsColZero(1));
  EXPECT_FALSE(matrix.IsColZero(2));
  EXPECT_FALSE(matrix.IsColZero(3));
  EXPECT_FALSE(matrix.IsColZero(-1));
  EXPECT_FALSE(MCRectMatrix(0, 1).IsColZero(0));
  EXPECT_FALSE(MCRectMatrix(1, 0).IsRowZero(0));
}

TEST(MCRectMatrix, TheSingleNonZeroEntryOutsideAMaskIsFound) {
  const MCRectMatrix matrix = FromRows({{5, 0, 3, 0}});
  const struct {
    std::vector<bool> mask;
    bool answer;
    int position;
  } cases[] = {
      {{true, false, false, false}, true, 2},
      {{false, false, true, false}, true, 0},
      {{false, false, false, false}, false, -1},
      {{true, false, true, false}, false, -1},
      // Positions beyond the mask are outside it.
      {{true}, true, 2},
      {{true, true, true}, false, -1},
      {{}, false, -1},
  };
  for (const auto& c : cases) {
    int position = 99;
    EXPECT_EQ(matrix.IsRowZeroButOne(0, Bits(c.mask), position), c.answer);
    EXPECT_EQ(position, c.position);
  }
  int position = 99;
  EXPECT_FALSE(matrix.IsRowZeroButOne(1, MCBitSet(), position));
  EXPECT_EQ(position, -1);
  EXPECT_TRUE(FromRows({{kNaN, 0}}).IsRowZeroButOne(0, MCBitSet(), position));
  EXPECT_EQ(position, 0);
}

TEST(MCRectMatrix, TheFirstNonZeroEntryExceedsTheToleranceStrictly) {
  const MCRectMatrix matrix = FromRows({{0.0, kNaN, -0.5, 2.0}});
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, 0.0), 2);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, 0.4), 2);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, 0.5), 3);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, 2.0), -1);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, kNaN), -1);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(0, -1.0), 0);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(1, 0.0), -1);
  EXPECT_EQ(matrix.FindFirstNonZeroInRow(-1, 0.0), -1);
}

TEST(MCRectMatrix, ARowIsAMultipleOfAnotherWithinBothTolerances) {
  const struct {
    std::vector<double> row, other;
    double zeroTol, ratioTol;
    bool answer;
    double factor;
  } cases[] = {
      {{2, -4, 0}, {1, -2, 0}, 0.0, 0.0, true, 2.0},
      {{0, -1, 0.5}, {0, 2, -1}, 0.0, 0.0, true, -0.5},
      {{2, 4.001, 0}, {1, 2, 0}, 0.0, 1e-4, false, 0.0},
      {{2, 4.001, 0}, {1, 2, 0}, 0.0, 1e-3, true, 2.0},
      {{1e-9, 2, 4}, {0, 1, 2}, 1e-8, 0.0, true, 2.0},
      {{1e-9, 2, 4}, {0, 1, 2}, 0.0, 1e-3, false, 0.0},
      {{1, 2, 0}, {1, 2, 1e-9}, 0.0, 1e-3, false, 0.0},
      {{1, 0, 3}, {0, 1, 3}, 0.0, 0.5, false, 0.0},
      {{0, 0, 0}, {1, 2, 3}, 0.0, 0.5, false, 0.0},
      {{1, 2, 3}, {0, 0, 0}, 0.0, 0.5, false, 0.0},
      {{1, 2, kNaN}, {1, 2, kNaN}, 0.0, 0.5, false, 0.0},
      {{1, 2, kInfinity}, {1, 2, 3}, 0.0, 0.5, false, 0.0},
      {{1, 2, kInfinity}, {1, 2, kInfinity}, 0.0, 0.5, false, 0.0},
      {{1e300, 2, 3}, {1e-300, 2, 3}, 0.0, 0.5, false, 0.0},
      {{1, 2, 3}, {1, 2, 3}, -1.0, 0.5, false, 0.0},
      {{1, 2, 3}, {1, 2, 3}, 0.0, kNaN, false, 0.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.row) + " and " + testing::PrintToString(c.other));
    double factor = 99.0;
    EXPECT_EQ(
        FromRows({c.row, c.other}).IsERowMultipleOfAnother(0, 1, c.zeroTol, c.ratioTol, factor),
        c.answer);
    EXPECT_EQ(factor, c.answer ? c.factor : 99.0);
  }
  double factor = 99.0;
  const MCRectMatrix matrix = FromRows({{1, 2}});
  EXPECT_TRUE(matrix.IsERowMultipleOfAnother(0, 0, 0.0, 0.0, factor));
  EXPECT_EQ(factor, 1.0);
  EXPECT_FALSE(matrix.IsERowMultipleOfAnother(0, 1, 0.0, 0.0, factor));
  EXPECT_FALSE(matrix.IsERowMultipleOfAnother(-1, 0, 0.0, 0.0, factor));
}

TEST(MCRectMatrix, OnesAreCheckedForOneInEachRowAndColumn) {
  EXPECT_TRUE(FromRows({{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}).CheckForOnes(0.0));
  EXPECT_TRUE(FromRows({{5, 1}, {1, -3}}).CheckForOnes(0.0));
  EXPECT_FALSE(FromRows({{1, 1}, {1, 0}}).CheckForOnes(0.0));
  EXPECT_FALSE(FromRows({{1, 0}, {1, 0}}).CheckForOnes(0.0));
  EXPECT_FALSE(FromRows({{1, 0}}).CheckForOnes(0.0));
  EXPECT_FALSE(FromRows({{1}, {0}}).CheckForOnes(0.0));
  EXPECT_FALSE(FromRows({{1.01, 0}, {0, 0.99}}).CheckForOnes(0.001));
  EXPECT_TRUE(FromRows({{1.01, 0}, {0, 0.99}}).CheckForOnes(0.02));
  EXPECT_FALSE(FromRows({{1}}).CheckForOnes(kNaN));
  EXPECT_FALSE(FromRows({{kNaN}}).CheckForOnes(0.0));
  EXPECT_FALSE(MCRectMatrix(0, 0).CheckForOnes(0.0));
  EXPECT_FALSE(MCRectMatrix(2, 0).CheckForOnes(0.0));
}

// ---- dot products and norms ----

TEST(MCRectMatrix, DotProductsPairTheNamedRowsAndColumns) {
  const MCRectMatrix A = FromRows({{1, 2, 3}, {4, 5, 6}});
  const MCRectMatrix B = FromRows({{1, -1}, {2, -2}, {3, 10}});
  EXPECT_EQ(A.DotProductCol(0, 2), 1 * 3 + 4 * 6);
  EXPECT_EQ(A.DotProductRows(0, 1), 4 + 10 + 18);
  EXPECT_EQ(A.DotProductRowCol(1, B, 1), -4 - 10 + 60);
  EXPECT_EQ(A.DotProductColCol(1, FromRows({{7}, {8}}), 0), 2 * 7 + 5 * 8);
  EXPECT_EQ(A.DotProductRowRow(0, FromRows({{0, 0, 0}, {1, 1, 2}}), 1), 9);
  EXPECT_EQ(MCRectMatrix(0, 2).DotProductCol(0, 1), 0.0);
  EXPECT_EQ(MCRectMatrix(2, 0).DotProductRows(0, 1), 0.0);
}

TEST(MCRectMatrix, LongDotProductsAgreeWithExtendedPrecision) {
  const MCRectMatrix A = NoisyMatrix(101, 7, 1);
  long double exact = 0;
  for (int i = 0; i < 101; ++i)
    exact += static_cast<long double>(A.GetElem(i, 2)) * A.GetElem(i, 5);
  // 101 terms below 1, each product and sum rounded: 101 * 101 * 2^-53 at the very worst.
  EXPECT_NEAR(A.DotProductCol(2, 5), static_cast<double>(exact), 2e-12);
}

TEST(MCRectMatrix, DotProductsOfBadIndicesOrUnequalLengthsAreMissing) {
  const MCRectMatrix A(2, 3);
  const MCRectMatrix B(4, 5);
  for (const int bad : {-1, 3}) {
    EXPECT_EQ(A.DotProductCol(0, bad), kMissing);
    EXPECT_EQ(A.DotProductCol(bad, 0), kMissing);
    EXPECT_EQ(A.DotProductRows(0, bad), kMissing);
    EXPECT_EQ(A.DotProductRows(bad, 0), kMissing);
    EXPECT_EQ(A.ColNorm(bad), kMissing);
    EXPECT_EQ(A.RowNorm(bad), kMissing);
  }
  EXPECT_EQ(A.DotProductRowCol(0, B, 0), kMissing);
  EXPECT_EQ(A.DotProductColCol(0, B, 0), kMissing);
  EXPECT_EQ(A.DotProductRowRow(0, B, 0), kMissing);
  EXPECT_EQ(A.DotProductRowCol(2, MCRectMatrix(3, 1), 0), kMissing);
  EXPECT_EQ(A.DotProductRowCol(0, MCRectMatrix(3, 1), 1), kMissing);
}

TEST(MCRectMatrix, NormsSurviveSquaresBeyondAllDoubles) {
  const MCRectMatrix matrix = FromRows({{3e200, 4e200}, {3e-200, 4e-200}, {0, 0}, {3, 4}});
  EXPECT_DOUBLE_EQ(matrix.RowNorm(0), 5e200);
  EXPECT_DOUBLE_EQ(matrix.RowNorm(1), 5e-200);
  EXPECT_EQ(matrix.RowNorm(2), 0.0);
  EXPECT_EQ(matrix.RowNorm(3), 5.0);
  EXPECT_DOUBLE_EQ(matrix.ColNorm(0), 3e200);
  EXPECT_EQ(MCRectMatrix(0, 1).ColNorm(0), 0.0);
  EXPECT_EQ(MCRectMatrix(1, 0).RowNorm(0), 0.0);
}

// ---- changes ----

TEST(MCRectMatrix, ColumnsAreScaledZeroedAndAdded) {
  MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  EXPECT_TRUE(matrix.ColScale(0, -2.0));
  EXPECT_TRUE(Same(matrix, FromRows({{-2, 2}, {-6, 4}})));
  EXPECT_TRUE(matrix.AddToColumn(1, FromRows({{9, 1}, {9, 10}}), 1, 0.5));
  EXPECT_TRUE(Same(matrix, FromRows({{-2, 2.5}, {-6, 9}})));
  EXPECT_TRUE(matrix.AddToColumn(0, matrix, 0, 1.0));
  EXPECT_TRUE(Same(matrix, FromRows({{-4, 2.5}, {-12, 9}})));
  EXPECT_TRUE(matrix.ZeroOutCol(1));
  EXPECT_TRUE(Same(matrix, FromRows({{-4, 0}, {-12, 0}})));
}

TEST(MCRectMatrix, APartOfARowIsZeroedWithBothEnds) {
  MCRectMatrix matrix = FromRows({{1, 2, 3, 4}, {5, 6, 7, 8}});
  EXPECT_TRUE(matrix.ZeroOutRowPart(1, 1, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3, 4}, {5, 0, 0, 8}})));
  EXPECT_TRUE(matrix.ZeroOutRowPart(0, 3, 3));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3, 0}, {5, 0, 0, 8}})));
}

TEST(MCRectMatrix, ChangesWithBadArgumentsAreRefused) {
  const MCRectMatrix original = FromRows({{1, 2}, {3, 4}});
  MCRectMatrix matrix = original;
  for (const int bad : {-1, 2}) {
    EXPECT_FALSE(matrix.ColScale(bad, 2.0));
    EXPECT_FALSE(matrix.ZeroOutCol(bad));
    EXPECT_FALSE(matrix.ZeroOutRowPart(bad, 0, 1));
    EXPECT_FALSE(matrix.ZeroOutRowPart(0, bad, 1));
    EXPECT_FALSE(matrix.ZeroOutRowPart(0, 0, bad));
    EXPECT_FALSE(matrix.AddToColumn(bad, original, 0, 1.0));
    EXPECT_FALSE(matrix.AddToColumn(0, original, bad, 1.0));
    EXPECT_FALSE(matrix.ColClean(bad, 1.0));
  }
  EXPECT_FALSE(matrix.ZeroOutRowPart(0, 1, 0));
  EXPECT_FALSE(matrix.AddToColumn(0, MCRectMatrix(3, 2), 0, 1.0));
  EXPECT_TRUE(Same(matrix, original));
}

TEST(MCRectMatrix, APivotOfMinusOneClearsItsRow) {
  MCRectMatrix matrix = FromRows({{0, -1, 3}, {5, 2, 7}});
  int pivot = 99;
  EXPECT_TRUE(matrix.ZeroOutPivotRow(0, 0.5, pivot));
  EXPECT_EQ(pivot, 1);
  EXPECT_TRUE(Same(matrix, FromRows({{0, 0, 0}, {5, 0, 13}})));
}

TEST(MCRectMatrix, AnotherPivotLeavesTheMultiplierAsItStands) {
  MCRectMatrix matrix = FromRows({{2, 3, 0.1}, {1, 10, 20}});
  int pivot = 99;
  EXPECT_TRUE(matrix.ZeroOutPivotRow(0, 0.5, pivot));
  EXPECT_EQ(pivot, 0);
  EXPECT_TRUE(
      Same(matrix, FromRows({{0, 3 + 3 * 2.0, 0.1 + 0.1 * 2}, {0, 10 + 3 * 1.0, 20 + 0.1}})));
}

TEST(MCRectMatrix, ARowWithoutPivotIsRefused) {
  const MCRectMatrix original = FromRows({{0, 0}, {0.5, 0}});
  const struct {
    int row;
    double tol;
  } cases[] = {{0, 1e-9}, {1, 0.5}, {1, 0.0}, {1, -1.0}, {1, kNaN}, {2, 1e-9}, {-1, 1e-9}};
  for (const auto& c : cases) {
    MCRectMatrix matrix = original;
    int pivot = 99;
    EXPECT_FALSE(matrix.ZeroOutPivotRow(c.row, c.tol, pivot));
    EXPECT_EQ(pivot, -1);
    EXPECT_TRUE(Same(matrix, original));
  }
}

// With thr = 1 the threshold is 10000 * 2^-52 = 2.22e-12.
TEST(MCRectMatrix, CleaningRemovesEntriesThatAreNoiseBesideTheNorm) {
  MCRectMatrix matrix = FromRows({{3e10, 1}, {0.01, 1}, {0.2, 1}, {4e10, 1}});
  EXPECT_TRUE(matrix.ColClean(0, 1.0));
  EXPECT_DOUBLE_EQ(matrix.GetElem(0, 0), 3e10);
  EXPECT_EQ(matrix.GetElem(1, 0), 0.0);
  EXPECT_DOUBLE_EQ(matrix.GetElem(2, 0), 0.2);
  EXPECT_DOUBLE_EQ(matrix.GetElem(3, 0), 4e10);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(matrix.GetElem(i, 1), 1.0);
}

TEST(MCRectMatrix, CleaningZeroesAColumnWhoseNormIsNoise) {
  MCRectMatrix matrix = FromRows({{1e-12, 3e-12}, {-1e-12, 0}});
  EXPECT_TRUE(matrix.ColClean(0, 1.0));
  EXPECT_TRUE(matrix.IsColZero(0));
  EXPECT_TRUE(matrix.ColClean(1, 1.0));
  EXPECT_DOUBLE_EQ(matrix.GetElem(0, 1), 3e-12);
}

TEST(MCRectMatrix, CleaningNeverTurnsNumbersIntoNaN) {
  const std::vector<std::vector<double>> columns = {
      {0, 0}, {1.7e308, 1.7e308}, {1e-320, 0}, {kInfinity, 1}};
  for (const double thr : {0.0, -1.0, kNaN}) {
    for (const auto& column : columns) {
      MCRectMatrix matrix = FromRows({{column[0]}, {column[1]}});
      EXPECT_TRUE(matrix.ColClean(0, thr));
      EXPECT_EQ(matrix.AsVectorConst(), column);
    }
    MCRectMatrix matrix = FromRows({{3}, {4}});
    EXPECT_TRUE(matrix.ColClean(0, thr));
    EXPECT_DOUBLE_EQ(matrix.GetElem(0, 0), 3.0);
    EXPECT_DOUBLE_EQ(matrix.GetElem(1, 0), 4.0);
  }
  MCRectMatrix huge = FromRows({{1e200}, {1e-200}, {1e200}});
  EXPECT_TRUE(huge.ColClean(0, 1.0));
  EXPECT_DOUBLE_EQ(huge.GetElem(0, 0), 1e200);
  EXPECT_EQ(huge.GetElem(1, 0), 0.0);
}

// ---- copies ----

TEST(MCRectMatrix, CopiesGoFromTheSecondToTheFirst) {
  const MCRectMatrix from = FromRows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
  MCRectMatrix matrix(3, 3);
  EXPECT_TRUE(matrix.CopyRowToRow(2, from, 0));
  EXPECT_TRUE(Same(matrix, FromRows({{0, 0, 0}, {0, 0, 0}, {1, 2, 3}})));
  EXPECT_TRUE(matrix.CopyColToRow(0, from, 1));
  EXPECT_TRUE(Same(matrix, FromRows({{2, 5, 8}, {0, 0, 0}, {1, 2, 3}})));
  EXPECT_TRUE(matrix.CopyColToCol(2, from, 0));
  EXPECT_TRUE(Same(matrix, FromRows({{2, 5, 1}, {0, 0, 4}, {1, 2, 7}})));
  EXPECT_TRUE(matrix.CopyColumns(0, from, 1, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{2, 3, 1}, {5, 6, 4}, {8, 9, 7}})));
  EXPECT_TRUE(matrix.CopyRows(1, from, 0, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{2, 3, 1}, {1, 2, 3}, {4, 5, 6}})));
  EXPECT_TRUE(matrix.CopyRows(3, from, 0, 0));
  EXPECT_TRUE(matrix.CopyColumns(3, from, 3, 0));
}

TEST(MCRectMatrix, AMatrixIsCopiedWithinItself) {
  const MCRectMatrix original = FromRows({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
  MCRectMatrix matrix = original;
  EXPECT_TRUE(matrix.CopyRows(1, matrix, 0, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3}, {1, 2, 3}, {4, 5, 6}})));
  matrix = original;
  EXPECT_TRUE(matrix.CopyRows(0, matrix, 1, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{4, 5, 6}, {7, 8, 9}, {7, 8, 9}})));
  matrix = original;
  EXPECT_TRUE(matrix.CopyColumns(1, matrix, 0, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 1, 2}, {4, 4, 5}, {7, 7, 8}})));
  matrix = original;
  EXPECT_TRUE(matrix.CopyColumns(0, matrix, 1, 2));
  EXPECT_TRUE(Same(matrix, FromRows({{2, 3, 3}, {5, 6, 6}, {8, 9, 9}})));
  matrix = original;
  EXPECT_TRUE(matrix.CopyColToRow(2, matrix, 0));
  EXPECT_TRUE(Same(matrix, FromRows({{1, 2, 3}, {4, 5, 6}, {1, 4, 7}})));
}

TEST(MCRectMatrix, CopiesWithBadArgumentsAreRefused) {
  const MCRectMatrix original = FromRows({{1, 2, 3}, {4, 5, 6}});
  const MCRectMatrix square(3, 3);
  MCRectMatrix matrix = original;
  EXPECT_FALSE(matrix.CopyRowToRow(2, square, 0));
  EXPECT_FALSE(matrix.CopyRowToRow(0, square, 3));
  EXPECT_FALSE(matrix.CopyRowToRow(-1, square, 0));
  EXPECT_FALSE(matrix.CopyRowToRow(0, MCRectMatrix(3, 2), 0));
  EXPECT_FALSE(matrix.CopyColToRow(2, square, 0));
  EXPECT_FALSE(matrix.CopyColToRow(0, square, 3));
  EXPECT_FALSE(matrix.CopyColToRow(0, original, 0));
  EXPECT_FALSE(matrix.CopyColToCol(3, original, 0));
  EXPECT_FALSE(matrix.CopyColToCol(0, square, 0));
  EXPECT_FALSE(matrix.CopyColumns(2, original, 0, 2));
  EXPECT_FALSE(matrix.CopyColumns(0, original, 2, 2));
  EXPECT_FALSE(matrix.CopyColumns(0, original, 0, -1));
  EXPECT_FALSE(matrix.CopyColumns(-1, original, 0, 1));
  EXPECT_FALSE(matrix.CopyColumns(1, original, 1, INT_MAX));
  EXPECT_FALSE(matrix.CopyRows(1, square, 0, 2));
  EXPECT_FALSE(matrix.CopyRows(0, square, 2, 2));
  EXPECT_FALSE(matrix.CopyRows(1, square, 1, INT_MAX));
  EXPECT_FALSE(matrix.CopyRows(INT_MAX, square, 0, 1));
  EXPECT_TRUE(Same(matrix, original));
}

// ---- matrices made of one ----

TEST(MCRectMatrix, ShiftsMoveRowsAndColumnsAndFillWithZeros) {
  const MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}, {5, 6}});
  const struct {
    int count;
    MCRectMatrix rows, cols;
  } cases[] = {
      {0, matrix, matrix},
      {1, FromRows({{0, 0}, {1, 2}, {3, 4}}), FromRows({{0, 1}, {0, 3}, {0, 5}})},
      {-1, FromRows({{3, 4}, {5, 6}, {0, 0}}), FromRows({{2, 0}, {4, 0}, {6, 0}})},
      {2, FromRows({{0, 0}, {0, 0}, {1, 2}}), MCRectMatrix(3, 2)},
      {-2, FromRows({{5, 6}, {0, 0}, {0, 0}}), MCRectMatrix(3, 2)},
      {3, MCRectMatrix(3, 2), MCRectMatrix(3, 2)},
      {INT_MAX, MCRectMatrix(3, 2), MCRectMatrix(3, 2)},
      {INT_MIN, MCRectMatrix(3, 2), MCRectMatrix(3, 2)},
  };
  for (const auto& c : cases) {
    MCRectMatrix out;
    EXPECT_TRUE(matrix.ShiftRows(c.count, out));
    EXPECT_TRUE(Same(out, c.rows)) << c.count;
    EXPECT_TRUE(matrix.ShiftColumns(c.count, out));
    EXPECT_TRUE(Same(out, c.cols)) << c.count;
  }
  MCRectMatrix own = matrix;
  EXPECT_TRUE(own.ShiftRows(1, own));
  EXPECT_TRUE(Same(own, cases[1].rows));
}

TEST(MCRectMatrix, BlocksStandAlongTheDiagonal) {
  const MCRectMatrix matrix = FromRows({{1, 2}});
  MCRectMatrix out;
  EXPECT_TRUE(matrix.CreateBlockDiagonal(1, out));
  EXPECT_TRUE(Same(out, matrix));
  EXPECT_TRUE(matrix.CreateBlockDiagonal(3, out));
  EXPECT_TRUE(Same(out, FromRows({{1, 2, 0, 0, 0, 0}, {0, 0, 1, 2, 0, 0}, {0, 0, 0, 0, 1, 2}})));
  EXPECT_TRUE(matrix.ExpandSquare(FromRows({{3}, {4}}), out));
  EXPECT_TRUE(Same(out, FromRows({{1, 2, 0}, {0, 0, 3}, {0, 0, 4}})));
  MCRectMatrix own = matrix;
  EXPECT_TRUE(own.ExpandSquare(own, own));
  EXPECT_TRUE(Same(own, FromRows({{1, 2, 0, 0}, {0, 0, 1, 2}})));
}

TEST(MCRectMatrix, NoBlocksAreWalkedWhereThereIsNothingToPlace) {
  MCRectMatrix out = FromRows({{5}});
  EXPECT_TRUE(MCRectMatrix(1, 0).CreateBlockDiagonal(INT_MAX, out));
  EXPECT_EQ(out.GetNRows(), INT_MAX);
  EXPECT_EQ(out.GetNCols(), 0);
}

TEST(MCRectMatrix, BlocksBeyondTheLargestCountAreRefused) {
  const MCRectMatrix original = FromRows({{5}});
  MCRectMatrix out = original;
  EXPECT_FALSE(out.CreateBlockDiagonal(0, out));
  EXPECT_FALSE(out.CreateBlockDiagonal(-1, out));
  EXPECT_FALSE(MCRectMatrix(2, 0).CreateBlockDiagonal(INT_MAX, out));
  EXPECT_FALSE(MCRectMatrix(0, INT_MAX).ExpandSquare(original, out));
  EXPECT_FALSE(MCRectMatrix(INT_MAX, 0).ExpandSquare(original, out));
  EXPECT_TRUE(Same(out, original));
}

TEST(MCRectMatrix, ExpansionScattersToSetPositions) {
  const MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  MCRectMatrix out;
  EXPECT_TRUE(matrix.Expand(Bits({false, true, false, true}), true, out));
  EXPECT_TRUE(Same(out, FromRows({{0, 0}, {1, 2}, {0, 0}, {3, 4}})));
  EXPECT_TRUE(matrix.Expand(Bits({true, false, true}), false, out));
  EXPECT_TRUE(Same(out, FromRows({{1, 0, 2}, {3, 0, 4}})));
  // A set bit that remains gets zeros.
  EXPECT_TRUE(matrix.Expand(Bits({true, true, true}), true, out));
  EXPECT_TRUE(Same(out, FromRows({{1, 2}, {3, 4}, {0, 0}})));
  const MCRectMatrix before = out;
  EXPECT_FALSE(matrix.Expand(Bits({true, false, false}), true, out));
  EXPECT_TRUE(Same(out, before));
  EXPECT_TRUE(out.Expand(Bits({false, true, true, true}), true, out));
  EXPECT_TRUE(Same(out, FromRows({{0, 0}, {1, 2}, {3, 4}, {0, 0}})));
}

// ---- products ----

TEST(MCRectMatrix, ProductsAgreeWithExtendedPrecisionOnALadderOfSizes) {
  const int ladder[] = {1, 2, 3, 5, 8, 13, 21, 34, 55};
  std::uint64_t seed = 100;
  for (const int n : ladder) {
    SCOPED_TRACE(n);
    const MCRectMatrix A = NoisyMatrix(n, n + 2, ++seed);
    const MCRectMatrix B = NoisyMatrix(n + 2, n + 1, ++seed);
    const MCRectMatrix C = NoisyMatrix(n + 3, n + 2, ++seed);
    MCRectMatrix out;
    // n + 2 terms below 1 with two roundings each.
    const long double bound = (n + 2) * (n + 2) * 0x1p-53L;
    ASSERT_TRUE(A.ComputeMatrixProduct(B, out));
    ExtendedMatrix exact = ExtendedMatrix(A) * ExtendedMatrix(B);
    EXPECT_LE(ExtendedMatrix(out).Difference(exact), bound);
    ASSERT_TRUE(A.ComputeProductMatrixTrans(C, out));
    exact = ExtendedMatrix(A) * ExtendedMatrix(C).Transposed();
    EXPECT_EQ(out.GetNCols(), n + 3);
    EXPECT_LE(ExtendedMatrix(out).Difference(exact), bound);
  }
}

TEST(MCRectMatrix, AProductMayReplaceAnOperand) {
  const MCRectMatrix A = FromRows({{1, 2}, {3, 4}});
  const MCRectMatrix squared = FromRows({{7, 10}, {15, 22}});
  MCRectMatrix own = A;
  EXPECT_TRUE(own.ComputeMatrixProduct(own, own));
  EXPECT_TRUE(Same(own, squared));
  own = A;
  EXPECT_TRUE(A.ComputeMatrixProduct(own, own));
  EXPECT_TRUE(Same(own, squared));
  own = A;
  EXPECT_TRUE(own.ComputeProductMatrixTrans(own, own));
  EXPECT_TRUE(Same(own, FromRows({{5, 11}, {11, 25}})));
}

TEST(MCRectMatrix, AZeroMeetsInfinityInProducts) {
  MCRectMatrix out;
  EXPECT_TRUE(FromRows({{0, 1}}).ComputeMatrixProduct(FromRows({{kInfinity}, {1}}), out));
  EXPECT_TRUE(std::isnan(out.GetElem(0, 0)));
}

TEST(MCRectMatrix, ProductsOfUnfittingShapesAreRefused) {
  const MCRectMatrix A(2, 3);
  const MCRectMatrix original = FromRows({{5}});
  MCRectMatrix out = original;
  EXPECT_FALSE(A.ComputeMatrixProduct(A, out));
  EXPECT_FALSE(A.ComputeProductMatrixTrans(MCRectMatrix(3, 2), out));
  EXPECT_TRUE(Same(out, original));
  EXPECT_TRUE(MCRectMatrix(2, 0).ComputeMatrixProduct(MCRectMatrix(0, 2), out));
  EXPECT_TRUE(Same(out, MCRectMatrix(2, 2)));
}

// ---- display ----

TEST(MCRectMatrix, DisplayShowsShapeAndRows) {
  const MCRectMatrix matrix = FromRows({{1.5, kMissing}});
  EXPECT_EQ(mctest::DisplayOf(matrix),
            "\nMCRectMatrix display start"
            "\nNumber of rows = 1"
            "\nNumber of columns = 2"
            "\n\nrow 0 (size = 2)"
            "\n 1.5 miss"
            "\nMCRectMatrix display end");
  EXPECT_EQ(mctest::DisplayOf(MCRectMatrixData(matrix)),
            "\nMCRectMatrixData display start"
            "\nNumber of rows = 1"
            "\nNumber of columns = 2"
            "\n\nrow 0 (size = 2)"
            "\n 1.5 miss"
            "\nMCRectMatrixData display end");
}

TEST(MCRectMatrix, FullDisplayShowsAllDigits) {
  const MCRectMatrix matrix = FromRows({{0.1}, {2}});
  EXPECT_EQ(mctest::Displayed([&matrix] { matrix.DisplayF(); }),
            "\nMCRectMatrix display start"
            "\nNumber of rows = 2"
            "\nNumber of columns = 1"
            "\n\nrow 0 (size = 1)"
            "\n = 0.10000000000000001"
            "\nrow 1 (size = 1)"
            "\n = 2"
            "\nMCRectMatrix display end");
}

}  // namespace
