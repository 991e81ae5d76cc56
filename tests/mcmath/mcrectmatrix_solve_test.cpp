// SPDX-License-Identifier: Apache-2.0
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

using MCCommonMath::MCRectMatrix;
using mctest::ExtendedMatrix;
using mctest::FromRows;
using Vector = std::vector<double>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

Vector NoisyVector(int n) {
  return mctest::NoisyMatrix(n, 1, 9).AsVectorConst();
}

TEST(MCRectMatrixSolve, ASquareSystemIsSolved) {
  for (const int n : {1, 2, 3, 5, 8, 13, 34}) {
    MCRectMatrix matrix = mctest::NoisyMatrix(n, n, 3);
    for (int i = 0; i < n; ++i) matrix.SetElem(i, i, matrix.GetElem(i, i) + n);  // regular
    const MCRectMatrix before = matrix;
    const Vector b = NoisyVector(n);
    Vector x = {7.0};
    ASSERT_TRUE(matrix.SolveLinearSquare(b, x, 1e-6)) << n;
    const ExtendedMatrix expected = ExtendedMatrix(matrix).Inverse() * ExtendedMatrix(b);
    EXPECT_LT(ExtendedMatrix(x).Difference(expected), 1e-14L) << n;
    EXPECT_EQ(matrix.AsVectorConst(), before.AsVectorConst());
  }
}

TEST(MCRectMatrixSolve, ALongerRightSideCountsWithItsFirstEntriesAndMayTakeTheSolution) {
  const MCRectMatrix matrix = FromRows({{0, 2}, {1, 0}});
  Vector b = {4, 3, 99};
  EXPECT_TRUE(matrix.SolveLinearSquare(b, b, 1e-3));
  EXPECT_EQ(b, (Vector{3, 2}));
}

TEST(MCRectMatrixSolve, AnEstimateEqualToTheToleranceIsRefused) {
  const MCRectMatrix identity = FromRows({{1, 0}, {0, 1}});
  Vector x = {8};
  EXPECT_FALSE(identity.SolveLinearSquare({1, 2}, x, 1.0));
  EXPECT_EQ(x, Vector{8});
  EXPECT_TRUE(identity.SolveLinearSquare({1, 2}, x, std::nextafter(1.0, 0.0)));
  EXPECT_EQ(x, (Vector{1, 2}));
}

// In the 1-norm the condition is 201 * 201; in the maximum norm, that of the transpose, 101 * 101.
TEST(MCRectMatrixSolve, TheConditionIsThatOfTheMatrixAndNotOfItsTranspose) {
  const MCRectMatrix matrix = FromRows({{1, 0, 0}, {100, 1, 0}, {100, 0, 1}});
  const MCRectMatrix transposed = FromRows({{1, 100, 100}, {0, 1, 0}, {0, 0, 1}});
  Vector x;
  EXPECT_FALSE(matrix.SolveLinearSquare({1, 1, 1}, x, 5e-5));
  EXPECT_TRUE(x.empty());
  EXPECT_TRUE(transposed.SolveLinearSquare({1, 1, 1}, x, 5e-5));
  EXPECT_EQ(x, (Vector{-199, 1, 1}));
  EXPECT_TRUE(matrix.SolveLinearSquare({1, 1, 1}, x, 1e-5));
  EXPECT_EQ(x, (Vector{1, -99, -99}));
}

TEST(MCRectMatrixSolve, WhatIsNotSquareOrTooShortOrSingularIsRefused) {
  Vector x = {8};
  const MCRectMatrix regular = FromRows({{2, 1}, {1, 2}});
  EXPECT_FALSE(regular.SolveLinearSquare({1}, x, 1e-9)) << "short";
  EXPECT_FALSE(regular.SolveLinearSquare({}, x, 1e-9)) << "short";
  EXPECT_FALSE(regular.SolveLinearSquare({1, 2}, x, -1e-9));
  EXPECT_FALSE(regular.SolveLinearSquare({1, 2}, x, kNaN));
  EXPECT_FALSE(FromRows({{1, 2}}).SolveLinearSquare({1, 2}, x, 1e-9));
  EXPECT_FALSE(MCRectMatrix().SolveLinearSquare({}, x, 1e-9));
  EXPECT_FALSE(FromRows({{1, 2}, {2, 4}}).SolveLinearSquare({1, 2}, x, 0.0)) << "singular";
  EXPECT_FALSE(FromRows({{0, 0}, {0, 0}}).SolveLinearSquare({1, 2}, x, 0.0)) << "singular";
  EXPECT_FALSE(FromRows({{kNaN, 1}, {1, 2}}).SolveLinearSquare({1, 2}, x, 0.0));
  EXPECT_FALSE(FromRows({{kInf, 1}, {1, kInf}}).SolveLinearSquare({1, 2}, x, 0.0));
  const MCRectMatrix invalid = mctest::InvalidRect();
  EXPECT_FALSE(invalid.SolveLinearSquare({1, 2, 3}, x, 0.0));
  EXPECT_EQ(invalid.EstimateLinearGI({1, 2, 3}, x, 0.1, 0.1), -1);
  EXPECT_EQ(x, Vector{8});
}

TEST(MCRectMatrixEstimate, ARegularSquareSystemIsSolvedAsSuch) {
  Vector x;
  EXPECT_EQ(FromRows({{0, 2}, {1, 0}}).EstimateLinearGI({4, 3}, x, 1e-9, 1e-9), 0);
  EXPECT_EQ(x, (Vector{3, 2}));
}

TEST(MCRectMatrixEstimate, MoreRowsThanColumnsGiveLeastSquares) {
  const MCRectMatrix X = mctest::NoisyMatrix(20, 4, 5);
  const Vector y = NoisyVector(20);
  Vector x;
  EXPECT_EQ(X.EstimateLinearGI(y, x, 1e-10, 1e-10), 0);
  const ExtendedMatrix R(X);
  const ExtendedMatrix expected =
      (R.Transposed() * R).Inverse() * (R.Transposed() * ExtendedMatrix(y));
  EXPECT_LT(ExtendedMatrix(x).Difference(expected), 1e-14L);
}

TEST(MCRectMatrixEstimate, RedundantColumnsAreCountedAndHaveZeros) {
  Vector x;
  EXPECT_EQ(FromRows({{1, 2}, {2, 4}}).EstimateLinearGI({1, 2}, x, 1e-9, 1e-9), 1);
  EXPECT_EQ(x, (Vector{1, 0}));
  EXPECT_EQ(FromRows({{3, 4, 5}}).EstimateLinearGI({6}, x, 1e-9, 1e-9), 2) << "fewer rows";
  EXPECT_EQ(x, (Vector{2, 0, 0}));
}

// With a condition of 3 the square solver refuses at 0.5 and the normal equations do not.
TEST(MCRectMatrixEstimate, EachToleranceGoesToItsOwnSolver) {
  const MCRectMatrix matrix = FromRows({{2, 1}, {1, 2}});
  Vector x;
  EXPECT_EQ(matrix.EstimateLinearGI({3, 3}, x, 0.1, 0.9), 0);
  EXPECT_NEAR(x[0], 1.0, 1e-15);
  EXPECT_NEAR(x[1], 1.0, 1e-15);
  // What the first column leaves of the second is 9 / 25 of it.
  EXPECT_EQ(matrix.EstimateLinearGI({3, 3}, x, 0.4, 0.9), 1);
  EXPECT_EQ(matrix.EstimateLinearGI({3, 3}, x, 0.4, 0.1), 0);
}

TEST(MCRectMatrixEstimate, RefusalsLeaveTheSolutionAlone) {
  const MCRectMatrix square = FromRows({{2, 1}, {1, 2}});
  const MCRectMatrix tall = FromRows({{1}, {2}});
  Vector x = {8};
  for (const double tol : {0.0, -1.0}) {
    EXPECT_EQ(square.EstimateLinearGI({1, 2}, x, tol, 1e-9), -1);
  }
  EXPECT_EQ(tall.EstimateLinearGI({1, 2}, x, kNaN, 1e-9), -1) << "by the normal equations";
  EXPECT_EQ(square.EstimateLinearGI({1}, x, 0.1, 0.1), -1) << "short";
  EXPECT_EQ(tall.EstimateLinearGI({1}, x, 0.1, 0.1), -1) << "short";
  EXPECT_EQ(MCRectMatrix(2, 0).EstimateLinearGI({1, 2}, x, 0.1, 0.1), -1);
  EXPECT_EQ(MCRectMatrix(0, 2).EstimateLinearGI({1, 2}, x, 0.1, 0.1), -1);
  EXPECT_EQ(x, Vector{8});
  EXPECT_EQ(square.EstimateLinearGI({2, 1}, x, kNaN, 1e-9), 0) << "no normal equations";
  EXPECT_EQ(x, (Vector{1, 0}));
}

TEST(MCRectMatrixEstimate, TheSolutionMayReplaceTheRightSide) {
  Vector b = {1, 2, 2};
  EXPECT_EQ(FromRows({{1}, {2}, {2}}).EstimateLinearGI(b, b, 1e-9, 1e-9), 0);
  ASSERT_EQ(b.size(), 1u);
  EXPECT_NEAR(b[0], 1.0, 1e-15);
}

TEST(MCRectMatrixEstimate, WhereMemoryRunsOutNothingWrongComesOut) {
  const MCRectMatrix singular = FromRows({{1, 2}, {2, 4}});
  bool wasExhausted = false;
  for (std::size_t k = 1;; ++k) {
    Vector x;
    int count = -1;
    const Vector b = {1, 2};
    const mctest::FailAllocation fail(k);
    try {
      count = singular.EstimateLinearGI(b, x, 1e-9, 1e-9);
    } catch (const std::bad_alloc&) {
      count = -1;
    }
    if (!fail.HasFired()) break;
    wasExhausted = true;
    // The square solver that can't have its copy gives way to the normal equations.
    EXPECT_TRUE(count == -1 || (count == 1 && x == (Vector{1, 0}))) << k;
  }
  EXPECT_TRUE(wasExhausted);
}

}  // namespace
