// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"
#include "support/invalidmatrices.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using mctest::Bits;
using mctest::ExtendedMatrix;
using mctest::FromRows;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

MCRectMatrix Transposed(MCRectMatrix R) {
  R.Transpose();
  return R;
}

// Column 1 is column 0 again, column 3 is the sum of 0 and 2.
MCRectMatrix WithDependentColumns() {
  return FromRows({{1, 1, 0, 1, 2}, {2, 2, 1, 3, 0}, {0, 0, 1, 1, 5}, {1, 1, 3, 4, 1}});
}

void ExpectSame(const MCRectMatrix& actual, const MCRectMatrix& expected) {
  EXPECT_EQ(actual.GetNRows(), expected.GetNRows());
  EXPECT_EQ(actual.GetNCols(), expected.GetNCols());
  EXPECT_EQ(actual.AsVectorConst(), expected.AsVectorConst());
}

TEST(MCRectMatrixRedundancy, OfTwoEqualColumnsTheSecondIsRedundant) {
  const MCRectMatrix equal = FromRows({{1, 1}, {3, 3}});
  MCBitSet kept;
  EXPECT_EQ(equal.FindRedundancies(1e-7, kept, false), 1);
  EXPECT_EQ(kept, Bits({true, false}));
}

TEST(MCRectMatrixRedundancy, DependentColumnsAndRowsAreFoundInTheirOrder) {
  MCBitSet kept;
  EXPECT_EQ(WithDependentColumns().FindRedundancies(1e-7, kept, false), 2);
  EXPECT_EQ(kept, Bits({true, false, true, false, true}));
  EXPECT_EQ(Transposed(WithDependentColumns()).FindRedundancies(1e-7, kept, true), 2);
  EXPECT_EQ(kept, Bits({true, false, true, false, true}));
  // The rows have rank three as well.
  EXPECT_EQ(WithDependentColumns().FindRedundancies(1e-7, kept, true), 1);
  EXPECT_EQ(kept, Bits({true, true, true, false, false})) << "the larger size stays";
}

TEST(MCRectMatrixRedundancy, WithToleranceZeroAColumnOfZerosIsStillRedundant) {
  const MCRectMatrix matrix = FromRows({{1, 0, 2}, {0, 0, 1}});
  MCBitSet kept;
  EXPECT_EQ(matrix.FindRedundancies(0.0, kept, false), 1);
  EXPECT_EQ(kept, Bits({true, false, true}));
}

// The second column has a part of 1e-3 of its own norm apart from the first.
TEST(MCRectMatrixRedundancy, TheToleranceIsRelativeToTheNormAndNotSquared) {
  for (const double size : {1e-3, 1.0, 1e4}) {
    const MCRectMatrix matrix = FromRows({{1, size}, {0, size * 1e-3}});
    MCBitSet kept;
    EXPECT_EQ(matrix.FindRedundancies(0.99e-3, kept, false), 0);
    EXPECT_EQ(matrix.FindRedundancies(1.01e-3, kept, false), 1);
    std::vector<int> indices;
    EXPECT_EQ(matrix.FindNonRedunIndices(0.99e-3, indices, false), 2);
    EXPECT_EQ(matrix.FindNonRedunIndices(1.01e-3, indices, false), 1);
  }
}

TEST(MCRectMatrixRedundancy, ABitSetOfALargerSizeKeepsItWithTheRestClear) {
  MCBitSet kept;
  kept.Resize(7, true);
  EXPECT_EQ(WithDependentColumns().FindRedundancies(1e-7, kept, false), 2);
  EXPECT_EQ(kept, Bits({true, false, true, false, true, false, false}));
}

TEST(MCRectMatrixRedundancy, ANegativeToleranceIsRefusedWithNothingChanged) {
  MCBitSet kept = Bits({true});
  std::vector<int> indices = {4};
  MCRectMatrix result = FromRows({{8}});
  const MCRectMatrix matrix = WithDependentColumns();
  EXPECT_EQ(matrix.FindRedundancies(-1e-9, kept, false), -1);
  EXPECT_EQ(matrix.FindNonRedunIndices(-1e-9, indices, false), -1);
  EXPECT_EQ(matrix.ExtractFullRank(-1e-9, result, indices, true), -1);
  EXPECT_EQ(kept, Bits({true}));
  EXPECT_EQ(indices, std::vector<int>{4});
  ExpectSame(result, FromRows({{8}}));
}

TEST(MCRectMatrixRedundancy, ANaNToleranceFindsAllRedundant) {
  MCBitSet kept;
  std::vector<int> indices;
  EXPECT_EQ(WithDependentColumns().FindRedundancies(kNaN, kept, false), 5);
  EXPECT_EQ(kept.InSet(), 0);
  EXPECT_EQ(WithDependentColumns().FindNonRedunIndices(kNaN, indices, false), 0);
}

TEST(MCRectMatrixRedundancy, AMatrixWithoutColumnsHasNoneRedundant) {
  MCBitSet kept = Bits({true});
  std::vector<int> indices = {1};
  EXPECT_EQ(MCRectMatrix(3, 0).FindRedundancies(0.1, kept, false), 0);
  EXPECT_EQ(MCRectMatrix(3, 0).FindNonRedunIndices(0.1, indices, false), 0);
  EXPECT_TRUE(indices.empty());
  EXPECT_EQ(MCRectMatrix(3, 0).FindRedundancies(0.1, kept, true), 3);
  EXPECT_EQ(MCRectMatrix().FindRedundancies(0.1, kept, true), 0);
}

TEST(MCRectMatrixRedundancy, AnInvalidMatrixIsRefusedEverywhere) {
  const MCRectMatrix invalid = mctest::InvalidRect();
  ASSERT_FALSE(invalid.IsValidMatrix());
  MCBitSet bits;
  std::vector<int> indices;
  MCRectMatrix matrix = FromRows({{1}});
  EXPECT_EQ(invalid.FindRedundancies(0.1, bits, true), -1);
  EXPECT_EQ(invalid.FindRedundancies(0.1, bits, false), -1);
  EXPECT_EQ(invalid.FindNonRedunIndices(0.1, indices, true), -1);
  EXPECT_EQ(invalid.ExtractFullRank(0.1, matrix, indices, true), -1);
  EXPECT_EQ(invalid.CheckAddColRedundancies(matrix, 0.0, 0.1, bits), -1);
  EXPECT_EQ(matrix.CheckAddColRedundancies(invalid, 0.0, 0.1, bits), -1);
  EXPECT_EQ(invalid.CheckAddColRedundancies(invalid, 0.0, 0.1, bits), -1);
  EXPECT_FALSE(matrix.ResidOfOrthProjection(invalid, 0.1, bits, bits));
  EXPECT_FALSE(MCRectMatrix(invalid).ResidOfOrthProjection(matrix, 0.1, bits, bits));
  EXPECT_FALSE(MCRectMatrix(invalid).ResidOfOrthProjection(invalid, 0.1, bits, bits));
  EXPECT_FALSE(invalid.IsEstimable(matrix, Bits({true, true, true}), 0.1));
  EXPECT_FALSE(matrix.IsEstimable(invalid, Bits({true}), 0.1));
  EXPECT_FALSE(invalid.ExtractRows({}, matrix));
  EXPECT_FALSE(invalid.ExtractColumns({}, matrix));
  ExpectSame(matrix, FromRows({{1}}));
}

TEST(MCRectMatrixExtract, RowsAndColumnsComeInTheOrderListed) {
  const MCRectMatrix matrix = FromRows({{1, 2, 3}, {4, 5, 6}});
  MCRectMatrix out;
  EXPECT_TRUE(matrix.ExtractRows({1, 0, 1}, out));
  ExpectSame(out, FromRows({{4, 5, 6}, {1, 2, 3}, {4, 5, 6}}));
  EXPECT_TRUE(matrix.ExtractColumns({2, 2, 0, 1}, out));
  ExpectSame(out, FromRows({{3, 3, 1, 2}, {6, 6, 4, 5}}));
  EXPECT_TRUE(matrix.ExtractRows({}, out));
  EXPECT_EQ(out.GetNRows(), 0);
  EXPECT_EQ(out.GetNCols(), 3);
  EXPECT_TRUE(matrix.ExtractColumns({}, out));
  EXPECT_EQ(out.GetNRows(), 2);
  EXPECT_EQ(out.GetNCols(), 0);
}

TEST(MCRectMatrixExtract, TheOutputMayBeTheMatrixItself) {
  MCRectMatrix matrix = FromRows({{1, 2, 3}, {4, 5, 6}});
  EXPECT_TRUE(matrix.ExtractColumns({2, 0}, matrix));
  ExpectSame(matrix, FromRows({{3, 1}, {6, 4}}));
  EXPECT_TRUE(matrix.ExtractRows({1}, matrix));
  ExpectSame(matrix, FromRows({{6, 4}}));
}

TEST(MCRectMatrixExtract, AnIndexOutOfRangeIsRefusedWithNothingChanged) {
  const MCRectMatrix matrix = FromRows({{1, 2, 3}, {4, 5, 6}});
  MCRectMatrix out = FromRows({{9}});
  for (const int bad : {-1, 3, std::numeric_limits<int>::min()}) {
    EXPECT_FALSE(matrix.ExtractRows({0, bad}, out));
    EXPECT_FALSE(matrix.ExtractColumns({0, bad}, out));
  }
  EXPECT_FALSE(matrix.ExtractRows({2}, out));
  ExpectSame(out, FromRows({{9}}));
}

TEST(MCRectMatrixExtract, FullRankKeepsTheRowsOrColumnsThatAreNotRedundant) {
  MCRectMatrix result;
  std::vector<int> indices;
  EXPECT_EQ(WithDependentColumns().ExtractFullRank(1e-7, result, indices, false), 3);
  EXPECT_EQ(indices, (std::vector<int>{0, 2, 4}));
  ExpectSame(result, FromRows({{1, 0, 2}, {2, 1, 0}, {0, 1, 5}, {1, 3, 1}}));
  MCRectMatrix rows = Transposed(WithDependentColumns());
  EXPECT_EQ(rows.ExtractFullRank(1e-7, rows, indices, true), 3) << "into itself";
  EXPECT_EQ(indices, (std::vector<int>{0, 2, 4}));
  ExpectSame(rows, Transposed(result));
}

TEST(MCRectMatrixExtract, WhereMemoryRunsOutNothingWrongComesOut) {
  const MCRectMatrix matrix = WithDependentColumns();
  bool wasExhausted = false;
  for (std::size_t k = 1;; ++k) {
    MCRectMatrix result;
    std::vector<int> indices;
    int count = -1;
    const mctest::FailAllocation fail(k);
    try {
      count = matrix.ExtractFullRank(1e-7, result, indices, false);
    } catch (const std::bad_alloc&) {
      count = -1;
    }
    if (!fail.HasFired()) break;
    wasExhausted = true;
    EXPECT_EQ(count, -1) << k;
  }
  EXPECT_TRUE(wasExhausted);
}

TEST(MCRectMatrixProjection, ResidualsAreOrthogonalToTheColumnsProjectedOn) {
  const MCRectMatrix Z = mctest::NoisyMatrix(30, 6, 1);
  const MCRectMatrix before = mctest::NoisyMatrix(30, 9, 2);
  MCRectMatrix after = before;
  MCBitSet zKept;
  MCBitSet kept;
  EXPECT_TRUE(after.ResidOfOrthProjection(Z, 1e-10, zKept, kept));
  EXPECT_EQ(zKept.InSet(), 6);
  EXPECT_EQ(kept.InSet(), 9);
  const ExtendedMatrix z(Z);
  const ExtendedMatrix y(before);
  const ExtendedMatrix solution = (z.Transposed() * z).Inverse() * (z.Transposed() * y);
  const ExtendedMatrix fitted = z * solution;
  ExtendedMatrix residual(30, 9);
  for (std::size_t i = 0; i < 30; ++i) {
    for (std::size_t j = 0; j < 9; ++j) residual(i, j) = y(i, j) - fitted(i, j);
  }
  // Cross-products of norm 10 with a condition below 100.
  EXPECT_LT(ExtendedMatrix(after).Difference(residual), 1e-14L);
  EXPECT_LT((z.Transposed() * ExtendedMatrix(after)).Largest(), 1e-13L);
}

TEST(MCRectMatrixProjection, AColumnInTheSpanLeavesItsBitClear) {
  const MCRectMatrix Z = FromRows({{1, 0}, {1, 1}, {1, 2}, {1, 3}});
  MCRectMatrix matrix = FromRows({{5, 1}, {7, 0}, {9, 0}, {11, 0}});
  MCBitSet zKept = Bits({true, true, true});
  MCBitSet kept = Bits({true});
  EXPECT_TRUE(matrix.ResidOfOrthProjection(Z, 1e-10, zKept, kept));
  EXPECT_EQ(zKept, Bits({true, true}));
  EXPECT_EQ(kept, Bits({false, true}));
  // Residuals of (1, 0, 0, 0) on a line, times ten.
  const double expected[] = {3, -4, -1, 2};
  for (int i = 0; i < 4; ++i) {
    EXPECT_NEAR(matrix.GetElem(i, 0), 0.0, 1e-13);
    EXPECT_NEAR(matrix.GetElem(i, 1), expected[i] / 10, 1e-15);
  }
}

TEST(MCRectMatrixProjection, ARedundantColumnOfZIsLeftOut) {
  const MCRectMatrix Z = FromRows({{1, 2, 0}, {1, 2, 0}, {0, 0, 3}});
  MCRectMatrix matrix = FromRows({{4}, {2}, {7}});
  MCBitSet zKept;
  MCBitSet kept;
  EXPECT_TRUE(matrix.ResidOfOrthProjection(Z, 1e-10, zKept, kept));
  EXPECT_EQ(zKept, Bits({true, false, true}));
  EXPECT_EQ(kept, Bits({true}));
  EXPECT_NEAR(matrix.GetElem(0, 0), 1.0, 1e-15);
  EXPECT_NEAR(matrix.GetElem(1, 0), -1.0, 1e-15);
  EXPECT_NEAR(matrix.GetElem(2, 0), 0.0, 1e-15);
}

TEST(MCRectMatrixProjection, OntoItselfNothingRemains) {
  MCRectMatrix matrix = FromRows({{1, 2}, {0, 1}, {3, 1}});
  MCBitSet zKept;
  MCBitSet kept;
  EXPECT_TRUE(matrix.ResidOfOrthProjection(matrix, 1e-10, zKept, kept));
  EXPECT_EQ(zKept, Bits({true, true}));
  EXPECT_EQ(kept, Bits({false, false}));
  for (const double x : matrix.AsVectorConst()) EXPECT_NEAR(x, 0.0, 1e-14);
}

// The second column has a share of 1e-3 of its squared norm apart from the first.
TEST(MCRectMatrixProjection, TheToleranceHoldsForSquaredNorms) {
  const MCRectMatrix Z = FromRows({{1}, {0}});
  for (const auto& [tol, isKept] : {std::pair{0.99e-3, true}, std::pair{1.01e-3, false}}) {
    MCRectMatrix matrix = FromRows({{std::sqrt(0.999)}, {std::sqrt(0.001)}});
    MCBitSet zKept;
    MCBitSet kept;
    EXPECT_TRUE(matrix.ResidOfOrthProjection(Z, tol, zKept, kept));
    EXPECT_EQ(kept, Bits({isKept})) << tol;
    MCRectMatrix other = FromRows({{1}, {0}});
    MCRectMatrix both = FromRows({{1, std::sqrt(0.999)}, {0, std::sqrt(0.001)}});
    EXPECT_TRUE(other.ResidOfOrthProjection(both, tol, zKept, kept));
    EXPECT_EQ(zKept, Bits({true, isKept})) << tol;
  }
}

TEST(MCRectMatrixProjection, RefusalsChangeNothing) {
  const MCRectMatrix Z = FromRows({{1}, {2}});
  MCRectMatrix matrix = FromRows({{1, 2}, {3, 4}});
  MCBitSet zKept = Bits({true, true, true});
  MCBitSet kept = zKept;
  for (const double tol : {0.0, -1.0, kNaN}) {
    EXPECT_FALSE(matrix.ResidOfOrthProjection(Z, tol, zKept, kept));
  }
  EXPECT_FALSE(matrix.ResidOfOrthProjection(FromRows({{1}, {2}, {3}}), 0.1, zKept, kept));
  EXPECT_FALSE(matrix.ResidOfOrthProjection(MCRectMatrix(2, 0), 0.1, zKept, kept));
  EXPECT_FALSE(MCRectMatrix(2, 0).ResidOfOrthProjection(Z, 0.1, zKept, kept));
  EXPECT_FALSE(MCRectMatrix(0, 1).ResidOfOrthProjection(MCRectMatrix(0, 1), 0.1, zKept, kept));
  ExpectSame(matrix, FromRows({{1, 2}, {3, 4}}));
  EXPECT_EQ(zKept, Bits({true, true, true}));
  EXPECT_EQ(kept, Bits({true, true, true}));
}

TEST(MCRectMatrixAddedColumns, ColumnsThatDependOnThoseBeforeAreCounted) {
  const MCRectMatrix own = FromRows({{1, 0}, {0, 1}, {0, 0}, {0, 0}});
  const MCRectMatrix added = FromRows({{3, 0, 0, 1}, {4, 0, 0, 1}, {0, 1, 2, 1}, {0, 0, 0, 1}});
  MCBitSet kept = Bits({true});
  EXPECT_EQ(own.CheckAddColRedundancies(added, 0.0, 1e-7, kept), 2);
  EXPECT_EQ(kept, Bits({false, true, false, true}));
  EXPECT_EQ(MCRectMatrix(4, 0).CheckAddColRedundancies(added, 0.0, 1e-7, kept), 1);
  EXPECT_EQ(kept, Bits({true, true, false, true}));
  EXPECT_EQ(own.CheckAddColRedundancies(own, 0.0, 1e-7, kept), 2) << "itself";
  EXPECT_EQ(own.CheckAddColRedundancies(MCRectMatrix(4, 0), 0.0, 1e-7, kept), 0);
  EXPECT_EQ(kept.Size(), 0);
}

// Neither the redundancies of this matrix count nor does one of its columns hide another.
TEST(MCRectMatrixAddedColumns, RedundantColumnsOfTheMatrixItselfDoNotCount) {
  const MCRectMatrix own = FromRows({{1, 2, 0}, {1, 2, 0}, {0, 0, 0}});
  MCBitSet kept;
  EXPECT_EQ(own.CheckAddColRedundancies(FromRows({{0, 5}, {0, 5}, {1, 0}}), 0.0, 1e-7, kept), 1);
  EXPECT_EQ(kept, Bits({true, false}));
}

TEST(MCRectMatrixAddedColumns, BothTolerancesAreOfNorms) {
  const MCRectMatrix own = FromRows({{1}, {0}});
  MCBitSet kept;
  const MCRectMatrix nearly = FromRows({{1}, {1e-3}});
  EXPECT_EQ(own.CheckAddColRedundancies(nearly, 0.0, 0.99e-3, kept), 0);
  EXPECT_EQ(own.CheckAddColRedundancies(nearly, 0.0, 1.01e-3, kept), 1);
  const MCRectMatrix small = FromRows({{0}, {0.25}});
  EXPECT_EQ(own.CheckAddColRedundancies(small, 0.25, 0.0, kept), 1) << "not above it";
  EXPECT_EQ(own.CheckAddColRedundancies(small, 0.24, 0.0, kept), 0);
  EXPECT_EQ(own.CheckAddColRedundancies(FromRows({{0}, {0}}), 0.0, 0.0, kept), 1);
}

TEST(MCRectMatrixAddedColumns, RefusalsChangeNothing) {
  const MCRectMatrix own = FromRows({{1}, {0}});
  MCBitSet kept = Bits({true, true, true});
  for (const double bad : {-1.0, kNaN}) {
    EXPECT_EQ(own.CheckAddColRedundancies(own, bad, 0.1, kept), -1);
    EXPECT_EQ(own.CheckAddColRedundancies(own, 0.1, bad, kept), -1);
  }
  EXPECT_EQ(own.CheckAddColRedundancies(FromRows({{1}}), 0.0, 0.1, kept), -1);
  EXPECT_EQ(kept, Bits({true, true, true}));
}

// Two groups: a mean, and an effect of each group, of which the second is redundant. What the
// parameters kept estimate: the mean that of the second group, the first effect the difference.
class EstimableFunctions : public testing::Test {
protected:
  static bool IsEstimable(const std::vector<std::vector<double>>& functions, double tol = 1e-8) {
    return FromRows(functions).IsEstimable(Generators(), Bits({true, true, false}), tol);
  }
  static MCRectMatrix Generators() { return FromRows({{1, 0}, {0, 1}, {1, -1}}); }
};

TEST_F(EstimableFunctions, FunctionsInTheSpanOfTheGeneratorsPass) {
  EXPECT_TRUE(IsEstimable({{1, 1, 0}}));
  EXPECT_TRUE(IsEstimable({{1, 0, 1}}));
  EXPECT_TRUE(IsEstimable({{0, 1, -1}, {2, 1, 1}}));
  EXPECT_FALSE(IsEstimable({{0, 1, 0}}));
  EXPECT_FALSE(IsEstimable({{1, 0, 0}}));
  EXPECT_FALSE(IsEstimable({{0, 0, 1}}));
  EXPECT_FALSE(IsEstimable({{1, 1, 0}, {0, 1, 0}})) << "one bad row is enough";
}

TEST_F(EstimableFunctions, ARowOfZerosPasses) {
  EXPECT_TRUE(IsEstimable({{0, 0, 0}}));
  EXPECT_FALSE(IsEstimable({{0, 0, 0}, {0, 1, 0}}));
}

TEST_F(EstimableFunctions, OfARowThatIsNotFiniteNothingIsSaid) {
  EXPECT_TRUE(IsEstimable({{kNaN, 1, 0}}));
  EXPECT_TRUE(IsEstimable({{kInf, 1, 0}}));
  EXPECT_FALSE(IsEstimable({{kNaN, 1, 0}, {0, 1, 0}}));
}

// The difference has 1e-3 of the norm of the function.
TEST_F(EstimableFunctions, TheToleranceIsRelativeToTheNormOfTheFunction) {
  for (const double size : {1e-200, 1.0, 1e200}) {
    const std::vector<double> function = {0.0, size, -size * (1 + std::sqrt(2.0) * 1e-3)};
    EXPECT_TRUE(IsEstimable({function}, 1.01e-3)) << size;
    EXPECT_FALSE(IsEstimable({function}, 0.99e-3)) << size;
  }
}

TEST_F(EstimableFunctions, BitsAtOrPastTheColumnsDoNotCount) {
  const MCBitSet mask = Bits({true, true, false, true, true});
  EXPECT_TRUE(FromRows({{1, 1, 0}}).IsEstimable(Generators(), mask, 1e-8));
  EXPECT_FALSE(FromRows({{0, 1, 0}}).IsEstimable(Generators(), mask, 1e-8));
}

TEST_F(EstimableFunctions, MoreColumnsOfTheGeneratorsThanBitsAreLeftAside) {
  const MCRectMatrix wide = FromRows({{1, 0, 7}, {0, 1, 7}, {1, -1, 7}});
  EXPECT_TRUE(FromRows({{1, 1, 0}}).IsEstimable(wide, Bits({true, true, false}), 1e-8));
}

TEST_F(EstimableFunctions, WithoutABitOnlyZeroIsEstimable) {
  const MCRectMatrix none(3, 0);
  EXPECT_FALSE(FromRows({{1, 1, 0}}).IsEstimable(none, MCBitSet(3), 1e-8));
  EXPECT_TRUE(FromRows({{0, 0, 0}}).IsEstimable(none, MCBitSet(3), 1e-8));
}

TEST_F(EstimableFunctions, ShapesThatDoNotFitAreRefused) {
  const MCRectMatrix good = FromRows({{1, 1, 0}});
  const MCBitSet mask = Bits({true, true, false});
  ASSERT_TRUE(good.IsEstimable(Generators(), mask, 1e-8));
  for (const double tol : {0.0, -1.0, kNaN}) {
    EXPECT_FALSE(good.IsEstimable(Generators(), mask, tol));
  }
  EXPECT_FALSE(good.IsEstimable(Generators(), Bits({true, true}), 1e-8)) << "short mask";
  EXPECT_FALSE(good.IsEstimable(FromRows({{1, 0}, {0, 1}}), mask, 1e-8)) << "rows of L";
  EXPECT_FALSE(good.IsEstimable(FromRows({{1}, {0}, {1}}), mask, 1e-8)) << "columns of L";
  EXPECT_FALSE(MCRectMatrix(0, 3).IsEstimable(Generators(), mask, 1e-8));
  EXPECT_FALSE(MCRectMatrix(1, 0).IsEstimable(MCRectMatrix(), mask, 1e-8));
}

}  // namespace
