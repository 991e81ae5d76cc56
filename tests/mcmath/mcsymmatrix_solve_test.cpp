// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;
using mctest::ExtendedMatrix;
using mctest::Noise;
using mctest::NoisyDefinite;
using mctest::NoisySymmetric;
using mctest::Packed;
using mctest::WithDependentRow;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kLadder[] = {1, 2, 3, 5, 8, 13, 21, 34, 55};

std::vector<double> NoisyVector(int n, unsigned seed) {
  Noise noise(seed);
  std::vector<double> result(static_cast<std::size_t>(n));
  for (double& x : result) x = noise.Next();
  return result;
}

TEST(MCSymMatrixSubstitute, SolvesWithTheFactorInPlace) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix A = NoisyDefinite(n, 200 + static_cast<unsigned>(n));
    const std::vector<double> b = NoisyVector(n, 300 + static_cast<unsigned>(n));
    MCSymMatrix factor = A;
    ASSERT_EQ(factor.LTChol(DiagonalOf(A), 1e-12, true), 0);
    std::vector<double> x;
    EXPECT_EQ(factor.LTSubstitute(b, x), 0);
    const ExtendedMatrix exact = ExtendedMatrix(A).Inverse() * ExtendedMatrix(b);
    // Condition numbers below 100.
    EXPECT_LE(ExtendedMatrix(x).Difference(exact), n * 100 * 0x1p-52L * exact.Largest());
    std::vector<double> own = b;
    EXPECT_EQ(factor.LTSubstitute(own, own), 0);
    EXPECT_EQ(own, x);
  }
}

TEST(MCSymMatrixSubstitute, RedundantRowsGetZeroAndLongerVectorsAreCut) {
  MCSymMatrix factor = WithDependentRow();
  ASSERT_EQ(factor.LTChol({6, 24, 10}, 1e-12, true), 1);
  std::vector<double> x = {1, 2, 3, 4, 5};
  EXPECT_EQ(factor.LTSubstitute({11, 22, 15, 99}, x), 0);
  ASSERT_EQ(x.size(), 3U);
  EXPECT_NEAR(x[0], 1.0, 1e-14);
  EXPECT_EQ(x[1], 0.0);
  EXPECT_NEAR(x[2], 1.0, 1e-14);
  std::vector<double> own = {11, 22, 15, 99};
  EXPECT_EQ(factor.LTSubstitute(own, own), 0);
  EXPECT_EQ(own, x);
}

TEST(MCSymMatrixSubstitute, AShortRightSideIsRefused) {
  const MCSymMatrix factor = Packed({2, 1, 2});
  std::vector<double> x = {9};
  EXPECT_EQ(factor.LTSubstitute({1}, x), -1);
  EXPECT_EQ(x, std::vector<double>{9});
  EXPECT_EQ(MCSymMatrix().LTSubstitute({}, x), 0);
  EXPECT_TRUE(x.empty());
  EXPECT_EQ(MCSymMatrix(70000).LTSubstitute({}, x), -1);  // too large, so invalid
}

TEST(MCSymMatrixSubstitute, ANaNOnTheDiagonalDivides) {
  const MCSymMatrix factor = Packed({kNaN, 1, 2});
  std::vector<double> x;
  EXPECT_EQ(factor.LTSubstitute({1, 1}, x), 0);
  EXPECT_TRUE(std::isnan(x[0]));
  EXPECT_TRUE(std::isnan(x[1]));
}

TEST(MCSymMatrixSolve, FactorsAndSolves) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix A = NoisyDefinite(n, 400 + static_cast<unsigned>(n));
    const std::vector<double> b = NoisyVector(n, 500 + static_cast<unsigned>(n));
    MCSymMatrix work = A;
    std::vector<double> x;
    EXPECT_EQ(work.LTSolve(b, 1e-12, x), 0);
    const ExtendedMatrix exact = ExtendedMatrix(A).Inverse() * ExtendedMatrix(b);
    EXPECT_LE(ExtendedMatrix(x).Difference(exact), n * 100 * 0x1p-52L * exact.Largest());
    MCSymMatrix factor = A;
    factor.LTChol(DiagonalOf(A), 1e-12, true);
    EXPECT_EQ(work.AsVectorConst(), factor.AsVectorConst());
    work = A;
    std::vector<double> own = b;
    EXPECT_EQ(work.LTSolve(own, 1e-12, own), 0);
    EXPECT_EQ(own, x);
  }
}

TEST(MCSymMatrixSolve, RedundantRowsAreCountedAndGetZero) {
  MCSymMatrix work = WithDependentRow();
  std::vector<double> x;
  EXPECT_EQ(work.LTSolve({11, 22, 15}, 1e-12, x), 1);
  EXPECT_NEAR(x[0], 1.0, 1e-14);
  EXPECT_EQ(x[1], 0.0);
  EXPECT_NEAR(x[2], 1.0, 1e-14);
}

TEST(MCSymMatrixSolve, TheRightSideMayBeTheTriangleOfTheMatrix) {
  MCSymMatrix work = Packed({4});
  std::vector<double> x;
  EXPECT_EQ(work.LTSolve(work.AsVectorConst(), 1e-12, x), 0);
  EXPECT_EQ(x, std::vector<double>{1.0});
  EXPECT_EQ(work.GetElem(0, 0), 2.0);
}

TEST(MCSymMatrixSolve, MisuseIsRefusedWithEverythingUnchanged) {
  const struct {
    std::vector<double> packed, b;
    double tol;
  } cases[] = {{{4, 2, 3}, {1, 1}, 0.0},
               {{4, 2, 3}, {1, 1}, -1e-12},
               {{4, 2, 3}, {1, 1}, kNaN},
               {{4, 2, 3}, {1}, 1e-12},
               {{4, 2, -3}, {1, 1}, 1e-12}};
  for (const auto& c : cases) {
    MCSymMatrix work = Packed(c.packed);
    std::vector<double> x = {9};
    EXPECT_EQ(work.LTSolve(c.b, c.tol, x), -1);
    EXPECT_EQ(work.AsVectorConst(), c.packed);
    EXPECT_EQ(x, std::vector<double>{9});
  }
}

// Diagonals of both signs and a magnitude of n + 1 beside noise below 1: all eigenvalues lie
// between 2 and 2n in magnitude.
MCSymMatrix IndefiniteMatrix(int n, unsigned seed) {
  MCSymMatrix result = NoisySymmetric(n, seed);
  for (int i = 0; i < n; ++i) result.SetElem(i, i, i % 2 == 0 ? n + 1 : -(n + 1));
  return result;
}

TEST(MCSymMatrixSolveIndefiniteGI, SolvesMatricesThatAreNotDefinite) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    MCSymMatrix A = IndefiniteMatrix(n, 600 + static_cast<unsigned>(n));
    const MCSymMatrix before = A;
    const std::vector<double> b = NoisyVector(n, 700 + static_cast<unsigned>(n));
    std::vector<double> x;
    EXPECT_TRUE(A.SolveIndefiniteGI(1e-12, b, x));
    EXPECT_EQ(A.AsVectorConst(), before.AsVectorConst());
    const ExtendedMatrix exact = ExtendedMatrix(A).Inverse() * ExtendedMatrix(b);
    // The normal equations square a condition number below n.
    EXPECT_LE(ExtendedMatrix(x).Difference(exact), n * n * (n + 1) * 0x1p-52L * exact.Largest());
    std::vector<double> own = b;
    EXPECT_TRUE(A.SolveIndefiniteGI(1e-12, own, own));
    EXPECT_EQ(own, x);
  }
  MCSymMatrix exchange = Packed({0, 1, 0});
  std::vector<double> x;
  EXPECT_TRUE(exchange.SolveIndefiniteGI(1e-12, {3, 7, 99}, x));
  EXPECT_EQ(x, (std::vector<double>{7, 3}));
}

TEST(MCSymMatrixSolveIndefiniteGI, ADeficientMatrixIsSolvedOverTheKeptRows) {
  MCSymMatrix matrix = Packed({1, 1, 1});
  std::vector<double> x;
  EXPECT_TRUE(matrix.SolveIndefiniteGI(1e-12, {2, 2}, x));
  EXPECT_DOUBLE_EQ(x[0], 2.0);
  EXPECT_EQ(x[1], 0.0);
}

TEST(MCSymMatrixSolveIndefiniteGI, MisuseIsRefused) {
  MCSymMatrix matrix = Packed({0, 1, 0});
  std::vector<double> x = {9};
  for (const double tol : {0.0, -1.0, kNaN}) {
    EXPECT_FALSE(matrix.SolveIndefiniteGI(tol, {1, 2}, x));
  }
  EXPECT_FALSE(matrix.SolveIndefiniteGI(1e-12, {1}, x));
  EXPECT_FALSE(MCSymMatrix().SolveIndefiniteGI(1e-12, {}, x));
  EXPECT_FALSE(MCSymMatrix(70000).SolveIndefiniteGI(1e-12, {}, x));
  EXPECT_EQ(x, std::vector<double>{9});
  EXPECT_FALSE(MCSymMatrix(2).SolveIndefiniteGI(1e-12, {1, 2}, x));
  EXPECT_EQ(x, (std::vector<double>{0, 0}));
}

}  // namespace
