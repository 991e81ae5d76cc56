// SPDX-License-Identifier: Apache-2.0
// The generalised problem.
#include "mcmath/mceigenvalues.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::ExtendedMatrix;
using mctest::Packed;
using Vector = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

// n by r, of whole numbers, any r rows of which are independent: powers of different nodes.
MCRectMatrix Factor(int n, int r) {
  MCRectMatrix B(n, r);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < r; ++j) B.SetElem(i, j, std::pow(i % 2 == 0 ? i / 2 + 1 : -(i / 2 + 1), j));
  }
  return B;
}

MCSymMatrix OfRank(int n, int r) {
  MCSymMatrix E;
  E.ComputeRByRTrans(Factor(n, r));
  return E;
}

// The largest element of H x - lambda E x over the leading rows and columns of the matrices.
long double Residual(const MCSymMatrix& H, const MCSymMatrix& E, const Vector& values,
                     const MCRectMatrix& vectors, int nRows) {
  const ExtendedMatrix h = ExtendedMatrix(H).Part(0, 0, nRows, nRows);
  const ExtendedMatrix e = ExtendedMatrix(E).Part(0, 0, nRows, nRows);
  const ExtendedMatrix x = ExtendedMatrix(vectors).Part(0, 0, nRows, vectors.GetNCols());
  const ExtendedMatrix hx = h * x;
  ExtendedMatrix ex = e * x;
  for (std::size_t i = 0; i < ex.Rows(); ++i) {
    for (std::size_t k = 0; k < ex.Cols(); ++k) ex(i, k) *= values[k];
  }
  return hx.Difference(ex);
}

long double OrthogonalityError(const MCSymMatrix& E, const MCRectMatrix& vectors) {
  const ExtendedMatrix x(vectors);
  ExtendedMatrix identity(x.Cols(), x.Cols());
  for (std::size_t k = 0; k < x.Cols(); ++k) identity(k, k) = 1;
  return (x.Transposed() * (ExtendedMatrix(E) * x)).Difference(identity);
}

TEST(MCEigenValuesPair, ADiagonalPairHasTheQuotients) {
  MCEigenValues problem(Packed({6, 0, -8, 0, 0, 3}), Packed({2, 0, 4, 0, 0, 0.5}), 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  EXPECT_EQ(problem.GetSorted(values, vectors, true), 3);
  EXPECT_DOUBLE_EQ(values[0], 6.0);
  EXPECT_DOUBLE_EQ(values[1], 3.0);
  EXPECT_DOUBLE_EQ(values[2], -2.0);
  EXPECT_DOUBLE_EQ(std::abs(vectors.GetElem(2, 0)), std::sqrt(2.0));
  EXPECT_DOUBLE_EQ(std::abs(vectors.GetElem(0, 1)), std::sqrt(0.5));
  EXPECT_DOUBLE_EQ(std::abs(vectors.GetElem(1, 2)), 0.5);
}

TEST(MCEigenValuesPair, ADefinitePairIsSolved) {
  for (const int n : {1, 2, 3, 8, 9, 25, 60}) {
    const MCSymMatrix H = mctest::NoisySymmetric(n, 41);
    const MCSymMatrix E = mctest::NoisyDefinite(n, 42);
    MCEigenValues problem(H, E, 1e-12, 30);
    EXPECT_TRUE(problem.IsValidEMatrix());
    Vector values;
    MCRectMatrix vectors;
    ASSERT_EQ(problem.Compute(values, vectors), n);
    EXPECT_EQ(vectors.GetNRows(), n);
    EXPECT_EQ(vectors.GetNCols(), n);
    // Conditions below 100.
    EXPECT_LT(Residual(H, E, values, vectors, n), n * 1e-15L) << n;
    EXPECT_LT(OrthogonalityError(E, vectors), n * 1e-14L) << n;
  }
}

// The rows kept are the first r, as any r rows are independent.
TEST(MCEigenValuesPair, AnEOfEachRankGivesAsManyValues) {
  constexpr int n = 6;
  const MCSymMatrix H = mctest::NoisySymmetric(n, 43);
  for (int r = 0; r <= n; ++r) {
    const MCSymMatrix E = OfRank(n, r);
    MCEigenValues problem(H, E, 1e-10, 30);
    EXPECT_TRUE(problem.IsValidEMatrix()) << r;
    Vector values;
    MCRectMatrix vectors;
    ASSERT_EQ(problem.Compute(values, vectors), r);
    EXPECT_EQ(static_cast<int>(values.size()), r);
    EXPECT_EQ(vectors.GetNRows(), n);
    EXPECT_EQ(vectors.GetNCols(), r);
    // Elements of E up to 1e5, conditions up to 1e8.
    EXPECT_LT(Residual(H, E, values, vectors, r), 1e-8L) << r;
    EXPECT_LT(OrthogonalityError(E, vectors), 1e-8L) << r;
    for (int i = r; i < n; ++i) {
      for (int k = 0; k < r; ++k) EXPECT_EQ(vectors.GetElem(i, k), 0.0);
    }
    Vector sorted;
    EXPECT_EQ(problem.GetSorted(sorted, true), r);
    EXPECT_TRUE(std::is_sorted(sorted.rbegin(), sorted.rend()));
  }
}

TEST(MCEigenValuesPair, RedundantRowsInTheMiddleHaveZeros) {
  MCEigenValues problem(Packed({6, 9, 9, 0, 9, 8}), Packed({2, 0, 0, 0, 0, 4}), 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  EXPECT_EQ(problem.GetSorted(values, vectors, true), 2);
  EXPECT_DOUBLE_EQ(values[0], 3.0);
  EXPECT_DOUBLE_EQ(values[1], 2.0);
  EXPECT_EQ(vectors.GetElem(1, 0), 0.0);
  EXPECT_EQ(vectors.GetElem(1, 1), 0.0);
  EXPECT_DOUBLE_EQ(std::abs(vectors.GetElem(0, 0)), std::sqrt(0.5));
  EXPECT_DOUBLE_EQ(std::abs(vectors.GetElem(2, 1)), 0.5);
}

// det(H - lambda E) has the root 5/3 alone; the reduction leaves row 1 out and answers 2.
TEST(MCEigenValuesPair, WhereHLeavesTheRangeOfETheRestrictionIsSolved) {
  MCEigenValues problem(Packed({2, 1, 3}), Packed({1, 0, 0}), 1e-12, 30);
  Vector values;
  EXPECT_EQ(problem.Compute(values), 1);
  EXPECT_EQ(values, Vector{2});
}

// With H = B S B' and E = B B' the problem is that of S, and its vectors solve all rows.
TEST(MCEigenValuesPair, WithinTheRangeOfETheProblemItselfIsSolved) {
  constexpr int n = 7;
  constexpr int r = 3;
  const MCSymMatrix S = mctest::NoisySymmetric(r, 44);
  const MCRectMatrix B = Factor(n, r);
  MCSymMatrix H;
  ASSERT_TRUE(S.ComputeRSRTrans(B, H));
  const MCSymMatrix E = OfRank(n, r);
  MCEigenValues problem(H, E, 1e-10, 30);
  Vector values;
  MCRectMatrix vectors;
  ASSERT_EQ(problem.GetSorted(values, vectors, true), r);
  MCEigenValues plain(S, 1e-12, 30);
  Vector expected;
  ASSERT_EQ(plain.GetSorted(expected, true), r);
  for (std::size_t k = 0; k < expected.size(); ++k) EXPECT_NEAR(values[k], expected[k], 1e-11);
  EXPECT_LT(Residual(H, E, values, vectors, n), 1e-9L);
}

// What the first row leaves of the second is 1e-4 of its diagonal.
TEST(MCEigenValuesPair, TheToleranceDecidesAboutRowsOfE) {
  const MCSymMatrix E = Packed({1, 1, 1 / (1 - 1e-4)});
  const MCSymMatrix H = Packed({3, 1, 2});
  Vector values;
  EXPECT_EQ(MCEigenValues(H, E, 0.99e-4, 30).Compute(values), 2);
  EXPECT_EQ(MCEigenValues(H, E, 1.01e-4, 30).Compute(values), 1);
  EXPECT_EQ(values, Vector{3});
}

struct Solution {
  Vector values;
  MCRectMatrix vectors;
};

Solution Solved(const MCSymMatrix& H, const MCSymMatrix& E) {
  MCEigenValues problem(H, E, 1e-12, 30);
  EXPECT_TRUE(problem.IsValidEMatrix());
  Solution solution;
  EXPECT_EQ(problem.Compute(solution.values, solution.vectors), H.GetNRows());
  return solution;
}

// Row and column i multiplied by the power of two of exponents[i].
MCSymMatrix Multiplied(MCSymMatrix S, const std::vector<int>& exponents) {
  for (int i = 0; i < S.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j) {
      const int exponent =
          exponents[static_cast<std::size_t>(i)] + exponents[static_cast<std::size_t>(j)];
      S.SetElem(i, j, std::ldexp(S.GetElem(i, j), exponent));
    }
  }
  return S;
}

// That leaves the values as they are, to the bit, and divides row i of the vectors. The rows of the
// last case are further apart than the range of doubles is wide from 1 on.
TEST(MCEigenValuesPair, PowersOfTwoInTheRowsOfBothMatricesChangeNoDigit) {
  const MCSymMatrix H = mctest::NoisySymmetric(5, 45);
  const MCSymMatrix E = mctest::NoisyDefinite(5, 46);
  const Solution expected = Solved(H, E);
  const std::vector<int> cases[] = {std::vector<int>(5, -450),
                                    std::vector<int>(5, -200),
                                    std::vector<int>(5, 200),
                                    std::vector<int>(5, 450),
                                    {500, -480, 0, -490, 3}};
  for (const std::vector<int>& exponents : cases) {
    SCOPED_TRACE(testing::PrintToString(exponents));
    const Solution solution = Solved(Multiplied(H, exponents), Multiplied(E, exponents));
    EXPECT_EQ(solution.values, expected.values);
    for (int i = 0; i < 5; ++i) {
      for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(
            std::ldexp(solution.vectors.GetElem(i, k), exponents[static_cast<std::size_t>(i)]),
            expected.vectors.GetElem(i, k));
      }
    }
  }
}

// Quotients of both kinds: those that are near 1 and those that only H or only E makes large.
TEST(MCEigenValuesPair, ADiagonalPairOfAnyMagnitudesHasTheQuotients) {
  struct Case {
    double h[2];
    double e[2];
  };
  const Case cases[] = {{{1e160, 1e-160}, {1e160, 1e-160}}, {{3e300, 1e-300}, {1e300, 1e-300}},
                        {{2e-300, 1e300}, {1e-300, 1e300}}, {{3, 2}, {1e160, 1e-140}},
                        {{0, 0}, {1e160, 1e-160}},          {{5e-310, 0}, {1e-310, 1e300}}};
  for (const Case& c : cases) {
    Vector expected = {c.h[0] / c.e[0], c.h[1] / c.e[1]};
    std::sort(expected.begin(), expected.end());
    MCEigenValues problem(Packed({c.h[0], 0, c.h[1]}), Packed({c.e[0], 0, c.e[1]}), 1e-12, 30);
    Vector values;
    ASSERT_EQ(problem.GetSorted(values, false), 2) << c.e[0];
    // A root, a reciprocal and two products, beside the larger of both.
    const double tolerance = 4 * std::numeric_limits<double>::epsilon() * std::abs(expected[1]);
    EXPECT_NEAR(values[0], expected[0], tolerance) << c.e[0];
    EXPECT_NEAR(values[1], expected[1], tolerance) << c.e[0];
  }
}

// A zero on the diagonal of E, with something beside it or not, whatever the other rows are.
TEST(MCEigenValuesPair, AZeroBesideLargeRowsOfEIsNeverTakenForMore) {
  const double least = std::numeric_limits<double>::denorm_min();
  const MCSymMatrix H = Packed({3e300, 0, 2});
  Vector values;
  EXPECT_EQ(MCEigenValues(H, Packed({1e300, 0, 0}), 1e-12, 30).Compute(values), 1);
  EXPECT_DOUBLE_EQ(values.at(0), 3);
  EXPECT_FALSE(MCEigenValues(H, Packed({1e300, least, 0}), 1e-12, 30).IsValidEMatrix());
  EXPECT_FALSE(MCEigenValues(H, Packed({1, 1e-200, 0}), 1e-12, 30).IsValidEMatrix());
  EXPECT_FALSE(MCEigenValues(H, Packed({0, 1e-200, 1}), 1e-12, 30).IsValidEMatrix());
  EXPECT_FALSE(MCEigenValues(H, Packed({kLargest, 1e308, 0}), 1e-12, 30).IsValidEMatrix());
}

TEST(MCEigenValuesPair, OnlyAPositiveSemidefiniteEOfTheSizeOfHIsValid) {
  struct Case {
    MCSymMatrix E;
    bool isValid;
  };
  const Case cases[] = {
      {Packed({1, 0, 1}), true},     {Packed({1, 1, 1}), true},
      {Packed({0, 0, 1}), true},     {Packed({0, 0, 0}), true},
      {Packed({1, 2, 1}), false},    {Packed({1, 0, -1}), false},
      {Packed({-1, 0, 1}), false},   {Packed({0, 1, 0}), false},
      {Packed({0, 1, 5}), false},    {Packed({1, 0, -1e-9}), false},
      {Packed({1, kNaN, 1}), false}, {Packed({kInf, 0, 1}), false},
      {Packed({1}), false},          {Packed({1, 0, 1, 0, 0, 1}), false},
      {MCSymMatrix(), false},
  };
  for (const Case& c : cases) {
    MCEigenValues problem(Packed({3, 1, 2}), c.E, 1e-12, 30);
    EXPECT_EQ(problem.IsValidEMatrix(), c.isValid) << testing::PrintToString(c.E.AsVectorConst());
    Vector values = {9};
    MCRectMatrix vectors(1, 1);
    const int count = problem.Compute(values, vectors);
    EXPECT_EQ(count >= 0, c.isValid) << testing::PrintToString(c.E.AsVectorConst());
    EXPECT_EQ(static_cast<int>(values.size()), std::max(count, 0));
  }
}

// Rounding leaves diagonals of redundant rows on either side of zero.
TEST(MCEigenValuesPair, RoundingOfASingularEDoesNotSpoilIt) {
  for (int n = 2; n <= 40; ++n) {
    MCSymMatrix E;
    ASSERT_TRUE(E.ComputeRByRTrans(mctest::NoisyMatrix(n, (n + 1) / 2, 47)));
    for (const double tol : {1e-12, 1e-6}) {
      EXPECT_TRUE(MCEigenValues(MCSymMatrix(n), E, tol, 30).IsValidEMatrix()) << n << ' ' << tol;
    }
  }
}

}  // namespace
