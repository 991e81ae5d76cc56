// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"
#include "support/invalidmatrices.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::Bits;
using mctest::ExtendedMatrix;
using mctest::Packed;
using Vector = std::vector<double>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(MCSymMatrixIndefinite, ASystemThatIsNotDefiniteIsSolved) {
  Vector x;
  EXPECT_TRUE(Packed({0, 1, 0}).SolveIndefinite(1e-9, {3, 4}, x));
  EXPECT_EQ(x, (Vector{4, 3}));
  for (const int n : {1, 2, 3, 5, 8, 13, 34}) {
    const MCSymMatrix S = mctest::NoisySymmetric(n, 11);
    const Vector b = mctest::NoisyMatrix(n, 1, 12).AsVectorConst();
    ASSERT_TRUE(S.SolveIndefinite(1e-14, b, x)) << n;
    // Conditions up to some hundreds.
    EXPECT_LT((ExtendedMatrix(S) * ExtendedMatrix(x)).Difference(ExtendedMatrix(b)), 1e-13L) << n;
  }
}

// Row 2 is the sum of the rows before it, but that is what the screening of S'S has to find out.
TEST(MCSymMatrixIndefinite, ADependentRowIsLeftOutWithAZero) {
  const MCSymMatrix S = Packed({0, 1, 0, 1, 1, 2});
  Vector x;
  EXPECT_TRUE(S.SolveIndefinite(1e-12, {3, 4, 7}, x));
  EXPECT_EQ(x, (Vector{4, 3, 0}));
}

TEST(MCSymMatrixIndefinite, RowsLeftOutInTheMiddleAreScattered) {
  const MCSymMatrix S = Packed({2, 0, 0, 0, 0, -4});
  Vector x;
  EXPECT_TRUE(S.SolveIndefinite(1e-12, {2, 5, 8}, x));
  EXPECT_EQ(x, (Vector{1, 0, -2}));
}

// What row 0 leaves of row 1 in S'S is 0.005 of 2.21.
TEST(MCSymMatrixIndefinite, TwiceTheToleranceHoldsForTheSquaredMatrix) {
  const MCSymMatrix S = Packed({1, 1, 1.1});
  Vector x;
  EXPECT_TRUE(S.SolveIndefinite(0.00112, {1, 1.1}, x));
  EXPECT_NEAR(x[0], 0.0, 1e-14);
  EXPECT_NEAR(x[1], 1.0, 1e-14);
  EXPECT_TRUE(S.SolveIndefinite(0.00115, {1, 1.1}, x));
  EXPECT_EQ(x, (Vector{1, 0}));
}

TEST(MCSymMatrixIndefinite, TheRowsOfASetAreTakenUntested) {
  const MCSymMatrix S = Packed({5, 1, 0, 7, 2, -3});
  Vector x;
  EXPECT_TRUE(S.SolveIndefinite(Bits({true, false, false}), {10, 1, 1}, x));
  EXPECT_EQ(x, (Vector{2, 0, 0}));
  EXPECT_TRUE(S.SolveIndefinite(Bits({false, true, true, true}), {1, 4, 1}, x)) << "a bit beyond";
  EXPECT_DOUBLE_EQ(x[1], 3.5);
  EXPECT_DOUBLE_EQ(x[2], 2.0);
  EXPECT_EQ(x[0], 0.0);
  const Vector b = {1, 2, 3};
  Vector all;
  EXPECT_TRUE(S.SolveIndefinite(Bits({true, true, true}), b, all));
  EXPECT_TRUE(S.SolveIndefinite(1e-12, b, x));
  EXPECT_EQ(x, all);
}

TEST(MCSymMatrixIndefinite, WhatCannotBeSolvedIsRefusedWithNothingChanged) {
  const MCSymMatrix S = Packed({0, 1, 0});
  Vector x = {8};
  for (const double tol : {-1e-9, kNaN}) EXPECT_FALSE(S.SolveIndefinite(tol, {1, 2}, x));
  EXPECT_FALSE(S.SolveIndefinite(1e-9, {1}, x)) << "short";
  EXPECT_FALSE(MCSymMatrix().SolveIndefinite(1e-9, {}, x));
  EXPECT_FALSE(MCSymMatrix(2).SolveIndefinite(0.0, {1, 2}, x)) << "no row kept";
  EXPECT_FALSE(Packed({kNaN, 1, kNaN}).SolveIndefinite(0.0, {1, 2}, x));
  EXPECT_FALSE(Packed({kNaN, 1, 2}).SolveIndefinite(Bits({true, true}), {1, 2}, x));
  EXPECT_FALSE(S.SolveIndefinite(MCBitSet(2), {1, 2}, x)) << "no bit set";
  EXPECT_FALSE(S.SolveIndefinite(Bits({true}), {1, 2}, x)) << "short set";
  EXPECT_FALSE(S.SolveIndefinite(Bits({true, true}), {1}, x)) << "short";
  EXPECT_FALSE(S.SolveIndefinite(Bits({true, false}), {1, 2}, x)) << "a singular part";
  EXPECT_FALSE(MCSymMatrix().SolveIndefinite(MCBitSet(), {}, x));
  const MCSymMatrix invalid = mctest::InvalidSym();
  EXPECT_FALSE(invalid.SolveIndefinite(0.0, {1, 2, 3}, x));
  EXPECT_FALSE(invalid.SolveIndefinite(Bits({true, true, true}), {1, 2, 3}, x));
  EXPECT_EQ(x, Vector{8});
}

TEST(MCSymMatrixIndefinite, ARowOfNaNIsRedundantLikeOthers) {
  Vector x;
  EXPECT_TRUE(Packed({kNaN, 1, 2}).SolveIndefinite(0.0, {1, 2}, x));
  EXPECT_EQ(x, (Vector{0, 1}));
}

TEST(MCSymMatrixIndefinite, TheSolutionMayReplaceTheRightSide) {
  Vector b = {3, 4, 99};
  EXPECT_TRUE(Packed({0, 1, 0}).SolveIndefinite(1e-9, b, b));
  EXPECT_EQ(b, (Vector{4, 3}));
  EXPECT_TRUE(Packed({0, 1, 0}).SolveIndefinite(Bits({true, true}), b, b));
  EXPECT_EQ(b, (Vector{3, 4}));
}

TEST(MCSymMatrixIndefinite, WhereMemoryRunsOutNothingWrongComesOut) {
  const MCSymMatrix S = Packed({0, 1, 0});
  bool wasExhausted = false;
  for (std::size_t k = 1;; ++k) {
    const Vector b = {3, 4};
    Vector x;
    bool isSolved = false;
    const mctest::FailAllocation fail(k);
    try {
      isSolved = S.SolveIndefinite(1e-9, b, x);
    } catch (const std::bad_alloc&) {
      isSolved = false;
    }
    if (!fail.HasFired()) break;
    wasExhausted = true;
    EXPECT_FALSE(isSolved) << k;
    EXPECT_TRUE(x.empty()) << k;
  }
  EXPECT_TRUE(wasExhausted);
}

}  // namespace
