// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"

#include <climits>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCMathFun;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;
using mctest::ExtendedMatrix;
using mctest::NoisyDefinite;
using mctest::NoisyMatrix;
using mctest::NoisySymmetric;
using mctest::Packed;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kMissing = MCMV::gMissingValue;
constexpr int kLadder[] = {1, 2, 3, 5, 8, 13, 21, 34, 55};

std::size_t Index(int i) {
  return static_cast<std::size_t>(i);
}

// A lower triangle of noise with diagonals from 1 to 2, or 0 at every row in `zeros`.
MCSymMatrix NoisyFactor(int n, unsigned seed, const std::vector<int>& zeros = {}) {
  MCSymMatrix factor = NoisySymmetric(n, seed);
  for (int i = 0; i < n; ++i) factor.SetElem(i, i, 1.0 + std::fabs(factor.GetElem(i, i)));
  for (const int i : zeros) factor.SetElem(i, i, 0.0);
  return factor;
}

// The inverse of a factor column by column, as LINPACK has it, on the packed triangle.
void InvertByColumns(MCSymMatrix& factor) {
  std::vector<double>& x = factor.AsVector();
  const auto at = [](int i, int j) { return i * (i + 1) / 2 + j; };
  const int n = factor.GetNRows();
  for (int k = n - 1; k >= 0; --k) {
    if (x[Index(at(k, k))] == 0.0) {
      factor.ZeroOut(k);
      continue;
    }
    const double t = 1.0 / x[Index(at(k, k))];
    x[Index(at(k, k))] = t;
    if (k + 1 < n) MCMathFun::IIScal(n - k - 1, -t, x, at(k + 1, k), k + 2);
    for (int j = 0; j < k; ++j) {
      const double u = x[Index(at(k, j))];
      x[Index(at(k, j))] = 0.0;
      MCMathFun::IIAxpy(n - k, u, x, at(k, k), k + 1, x, at(k, j), k + 1);
    }
  }
}

// The Gram matrix of noise of which column c is a copy of column c - 1 for c in `copies`.
MCSymMatrix GramWithCopies(int n, const std::vector<int>& copies, unsigned seed) {
  MCRectMatrix X = NoisyMatrix(3 * n + 5, n, seed);
  for (const int c : copies) X.CopyColToCol(c, X, c - 1);
  MCSymMatrix gram;
  gram.ComputeRTransByR(X);
  return gram;
}

// ---- determinant and inverse of a factor ----

TEST(MCSymMatrixLTDetInverse, TheJobSaysWhatIsDone) {
  const struct {
    int job;
    bool determinant, inverse;
  } cases[] = {{0, false, false},  {1, true, false},  {9, true, false},      {10, false, true},
               {11, true, true},   {-1, true, false}, {-9, true, false},     {-10, false, true},
               {-11, true, true},  {20, false, true}, {INT_MAX, true, true}, {INT_MIN, true, true},
               {2000, false, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.job);
    MCSymMatrix factor = Packed({2, 1, 4});
    double det[2] = {99, 98};
    EXPECT_EQ(factor.LTDetInverse(det, c.job), 0);
    EXPECT_EQ(det[0], c.determinant ? 8.0 : 99.0);
    EXPECT_EQ(det[1], c.determinant ? 0.0 : 98.0);
    const std::vector<double> inverse = {0.5, -0.125, 0.25};
    EXPECT_EQ(factor.AsVectorConst(), c.inverse ? inverse : (std::vector<double>{2, 1, 4}));
  }
}

TEST(MCSymMatrixLTDetInverse, NoDeterminantNeedsNoPlaceForIt) {
  MCSymMatrix factor = Packed({2, 1, 4});
  EXPECT_EQ(factor.LTDetInverse(nullptr, 0), 0);
  EXPECT_EQ(factor.LTDetInverse(nullptr, 10), 0);
  EXPECT_EQ(factor.AsVectorConst(), (std::vector<double>{0.5, -0.125, 0.25}));
}

TEST(MCSymMatrixLTDetInverse, ADeterminantHasAMantissaFromOneToTen) {
  const struct {
    std::vector<double> diagonal;
    double mantissa, exponent;
  } cases[] = {
      {{}, 1, 0},
      {{5}, 5, 0},
      {{-5}, -5, 0},
      {{10}, 1, 1},
      {{0.1}, 1, -1},
      {{2, 5}, 1, 1},
      {{-20, 0.5, 30}, -3, 2},
      {{3, 0, 5}, 0, 0},
      {{3, -0.0}, 0, 0},
      {{kInfinity}, kInfinity, 0},
      {{2, -kInfinity, 3}, -kInfinity, 0},
  };
  for (const auto& c : cases) {
    MCSymMatrix factor(static_cast<int>(c.diagonal.size()));
    for (std::size_t i = 0; i < c.diagonal.size(); ++i) {
      factor.SetElem(static_cast<int>(i), static_cast<int>(i), c.diagonal[i]);
    }
    double det[2] = {99, 98};
    factor.LTDetInverse(det, 1);
    EXPECT_DOUBLE_EQ(det[0], c.mantissa) << testing::PrintToString(c.diagonal);
    EXPECT_EQ(det[1], c.exponent) << testing::PrintToString(c.diagonal);
  }
  MCSymMatrix factor = Packed({3, 0, kNaN});
  double det[2] = {99, 98};
  factor.LTDetInverse(det, 1);
  EXPECT_TRUE(std::isnan(det[0]));
}

TEST(MCSymMatrixLTDetInverse, ProductsBeyondAllDoublesKeepTheirExponent) {
  const struct {
    double first, second, mantissa, exponent;
  } cases[] = {{5, 1.7e308, 8.5, 308},
               {1.7e308, 1.7e308, 2.89, 616},
               {1e-300, 1e-300, 1, -600},
               {1e300, 1e-300, 1, 0},
               {5e-324, 5e-324, 2.441008624005281, -647}};  // the square of 4.9406564584124654e-324
  for (const auto& c : cases) {
    MCSymMatrix factor = Packed({c.first, 0, c.second});
    double det[2] = {0, 0};
    factor.LTDetInverse(det, 1);
    // Up to 324 divisions or multiplications by ten for each factor, each with a rounding error.
    const double value = det[0] * std::pow(10.0, det[1] - c.exponent);
    EXPECT_NEAR(value, c.mantissa, 1e-12) << c.first;
    EXPECT_GE(std::fabs(det[0]), 1.0);
    EXPECT_LT(std::fabs(det[0]), 10.0);
  }
}

TEST(MCSymMatrixLTDetInverse, TheInverseHasTheNumbersOfTheColumnForm) {
  for (const int n : kLadder) {
    for (const bool isDeficient : {false, true}) {
      SCOPED_TRACE(n);
      const std::vector<int> zeros = isDeficient ? std::vector<int>{n / 2} : std::vector<int>{};
      MCSymMatrix factor = NoisyFactor(n, 60 + static_cast<unsigned>(n), zeros);
      MCSymMatrix expected = factor;
      InvertByColumns(expected);
      EXPECT_EQ(factor.LTDetInverse(nullptr, 10), isDeficient ? 1 : 0);
      EXPECT_EQ(factor.AsVectorConst(), expected.AsVectorConst());
    }
  }
}

TEST(MCSymMatrixLTDetInverse, ZeroDiagonalsGiveZeroRowsAndColumns) {
  MCSymMatrix factor = NoisyFactor(6, 5, {0, 3, 5});
  EXPECT_EQ(factor.LTDetInverse(nullptr, 10), 3);
  for (const int zero : {0, 3, 5}) {
    for (int j = 0; j < 6; ++j) EXPECT_EQ(factor.GetElem(zero, j), 0.0);
  }
  EXPECT_NE(factor.GetElem(4, 1), 0.0);
}

TEST(MCSymMatrixLTDetInverse, InfinitiesAndNaNDoNoHarm) {
  for (const double odd : {kInfinity, -kInfinity, kNaN, 5e-324}) {
    for (std::size_t at = 0; at < 6; ++at) {
      MCSymMatrix factor = Packed({2, 1, 2, 1, 1, 2});
      factor.AsVector()[at] = odd;
      double det[2];
      EXPECT_EQ(factor.LTDetInverse(det, 11), 0);
      factor.LTInverse();
    }
  }
}

// ---- inverse of the product ----

TEST(MCSymMatrixLTInverse, InvertsTheFactoredMatrix) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix original = NoisyDefinite(n, 90 + static_cast<unsigned>(n));
    MCSymMatrix work = original;
    ASSERT_EQ(work.LTChol(DiagonalOf(original), 1e-12, true), 0);
    work.LTInverse();
    const ExtendedMatrix inverse = ExtendedMatrix(original).Inverse();
    // Condition numbers below 100.
    EXPECT_LE(ExtendedMatrix(work).Difference(inverse), n * 100 * 0x1p-52L * inverse.Largest());
  }
}

TEST(MCSymMatrixLTInverse, AZeroDiagonalGivesAnExactZeroRowAndColumn) {
  MCSymMatrix factor = NoisyFactor(5, 8, {2});
  factor.LTInverse();
  for (int j = 0; j < 5; ++j) EXPECT_EQ(factor.GetElem(2, j), 0.0);
  EXPECT_GT(factor.GetElem(1, 1), 0.0);
}

TEST(MCSymMatrixLTProducts, AgreeWithExtendedPrecision) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix factor = NoisyFactor(n, 70 + static_cast<unsigned>(n));
    const ExtendedMatrix L = ExtendedMatrix(factor).LowerTriangle();
    // n terms of at most 4, each with two roundings.
    const long double bound = 8.0L * n * n * 0x1p-53L;
    MCSymMatrix work = factor;
    work.LTLLTrans();
    EXPECT_LE(ExtendedMatrix(work).Difference(L * L.Transposed()), bound);
    work = factor;
    work.LTLTransL();
    EXPECT_LE(ExtendedMatrix(work).Difference(L.Transposed() * L), bound);
  }
}

TEST(MCSymMatrixLTProducts, ALowerTriangleOfOnesGivesCounts) {
  MCSymMatrix ones(4);
  for (double& x : ones.AsVector()) x = 1;
  MCSymMatrix work = ones;
  work.LTLLTrans();
  EXPECT_EQ(work.AsVectorConst(), (std::vector<double>{1, 1, 2, 1, 2, 3, 1, 2, 3, 4}));
  work = ones;
  work.LTLTransL();
  EXPECT_EQ(work.AsVectorConst(), (std::vector<double>{4, 3, 3, 2, 2, 2, 1, 1, 1, 1}));
}

TEST(MCSymMatrixLTProducts, AMatrixWithoutRowsHasNothingToDo) {
  for (MCSymMatrix work : {MCSymMatrix(), MCSymMatrix(70000)}) {
    double det[2] = {9, 9};
    EXPECT_EQ(work.LTDetInverse(det, 11), 0);
    EXPECT_EQ(det[0], 1.0);
    EXPECT_EQ(det[1], 0.0);
    work.LTInverse();
    work.LTLTransL();
    work.LTLLTrans();
    EXPECT_TRUE(work.AsVectorConst().empty());
  }
}

// ---- inverse in a second matrix ----

TEST(MCSymMatrixCholInverse, TheThreeFormsGiveTheSameInverse) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix original = NoisyDefinite(n, 20 + static_cast<unsigned>(n));
    const std::vector<double> scale = DiagonalOf(original);
    MCSymMatrix plain, withMinimum, marking;
    double minDiag = -1;
    MCBitSet kept;
    EXPECT_EQ(original.CholInverse(scale, 1e-12, plain), n);
    EXPECT_EQ(original.CholInverse(scale, 1e-12, withMinimum, minDiag), n);
    EXPECT_EQ(original.CholInverse(scale, 1e-12, marking, kept), n);
    const ExtendedMatrix inverse = ExtendedMatrix(original).Inverse();
    EXPECT_LE(ExtendedMatrix(plain).Difference(inverse), n * 100 * 0x1p-52L * inverse.Largest());
    EXPECT_EQ(plain.AsVectorConst(), withMinimum.AsVectorConst());
    EXPECT_EQ(plain.AsVectorConst(), marking.AsVectorConst());
    EXPECT_EQ(kept.InSet(), n);
    MCSymMatrix factor = original;
    double expected = 0;
    factor.LTChol(1e-12, expected, true);
    EXPECT_EQ(minDiag, expected);
  }
}

TEST(MCSymMatrixCholInverse, ADeficientMatrixGivesAGeneralisedInverse) {
  for (const int n : {2, 3, 5, 8, 13, 21}) {
    SCOPED_TRACE(n);
    const std::vector<int> copies = n > 4 ? std::vector<int>{1, n - 1} : std::vector<int>{1};
    const MCSymMatrix A = GramWithCopies(n, copies, 30 + static_cast<unsigned>(n));
    MCSymMatrix inverse;
    MCBitSet kept;
    const int rank = n - static_cast<int>(copies.size());
    ASSERT_EQ(A.CholInverse(DiagonalOf(A), 1e-10, inverse, kept), rank);
    EXPECT_EQ(kept.InSet(), rank);
    for (const int c : copies) {
      EXPECT_FALSE(kept.IsIn(c));
      for (int j = 0; j < n; ++j) EXPECT_EQ(inverse.GetElem(c, j), 0.0);
    }
    const ExtendedMatrix a(A);
    const ExtendedMatrix g(inverse);
    const long double bound = n * 1000 * 0x1p-52L;
    EXPECT_LE((a * g * a).Difference(a), bound * a.Largest());
    EXPECT_LE((g * a * g).Difference(g), bound * g.Largest());
    double minDiag = -1;
    EXPECT_EQ(A.CholInverse(DiagonalOf(A), 1e-10, inverse, minDiag), rank);
    EXPECT_EQ(minDiag, 0.0);
  }
}

TEST(MCSymMatrixCholInverse, TheInverseMayReplaceTheMatrix) {
  const MCSymMatrix original = NoisyDefinite(5, 77);
  const std::vector<double> scale = DiagonalOf(original);
  MCSymMatrix expected;
  original.CholInverse(scale, 1e-12, expected);
  MCSymMatrix own = original;
  EXPECT_EQ(own.CholInverse(scale, 1e-12, own), 5);
  EXPECT_EQ(own.AsVectorConst(), expected.AsVectorConst());
}

TEST(MCSymMatrixCholInverse, AShortScaleIsRefusedWithEverythingUnchanged) {
  const MCSymMatrix matrix = Packed({4, 2, 3});
  MCSymMatrix inverse = Packed({7});
  double minDiag = 5;
  MCBitSet kept(1);
  kept.Set(0, true);
  EXPECT_EQ(matrix.CholInverse({4}, 1e-12, inverse), -1);
  EXPECT_EQ(matrix.CholInverse({4}, 1e-12, inverse, minDiag), -1);
  EXPECT_EQ(matrix.CholInverse({4}, 1e-12, inverse, kept), -1);
  EXPECT_EQ(inverse.AsVectorConst(), std::vector<double>{7});
  EXPECT_EQ(minDiag, 5.0);
  EXPECT_EQ(kept.Size(), 1);
  EXPECT_TRUE(kept.IsIn(0));
}

TEST(MCSymMatrixCholInverse, NothingIsCheckedButTheLengthOfTheScale) {
  const MCSymMatrix matrix = Packed({4, 2, 3});
  MCSymMatrix inverse;
  EXPECT_EQ(matrix.CholInverse({-4, 3}, 1e-12, inverse), 2);
  EXPECT_EQ(matrix.CholInverse({4, 3}, -1.0, inverse), 2);
}

TEST(MCSymMatrixCholInverse, NoRowsHaveRankZeroAndNoSmallestDiagonal) {
  MCSymMatrix inverse = Packed({7});
  double minDiag = 5;
  EXPECT_EQ(MCSymMatrix().CholInverse({}, 1e-12, inverse, minDiag), 0);
  EXPECT_EQ(inverse.GetNRows(), 0);
  EXPECT_EQ(minDiag, kMissing);
}

TEST(MCSymMatrixCholInverse, MemoryExhaustionIsTold) {
  const MCSymMatrix matrix = Packed({4, 2, 3});
  const std::vector<double> scale = {4, 3};
  MCSymMatrix inverse;
  const mctest::FailAllocation failure(1);
  EXPECT_EQ(matrix.CholInverse(scale, 1e-12, inverse), -1);
  EXPECT_FALSE(inverse.IsValidMatrix());
}

// ---- matrices with inverses and determinants known exactly ----

MCSymMatrix Hilbert(int n) {
  MCSymMatrix matrix(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) matrix.SetElem(i, j, 1.0 / (i + j + 1));
  }
  return matrix;
}

long double Binomial(int n, int k) {
  long double result = 1;
  for (int i = 1; i <= k; ++i) result = result * (n - k + i) / i;
  return std::round(result);
}

// Determinants 1/1, 1/12, 1/2160, ... of the Hilbert matrices: OEIS A005249; 2-norm condition
// numbers: Higham, Accuracy and Stability of Numerical Algorithms, table 28.1.
const struct {
  int n;
  double reciprocalDeterminant, condition;
} kHilbert[] = {{1, 1, 1},
                {2, 12, 1.93e1},
                {3, 2160, 5.24e2},
                {4, 6048000, 1.55e4},
                {5, 266716800000, 4.77e5},
                {6, 186313420339200000, 1.50e7}};

TEST(MCSymMatrixKnownInverses, HilbertMatrices) {
  for (const auto& c : kHilbert) {
    SCOPED_TRACE(c.n);
    const MCSymMatrix matrix = Hilbert(c.n);
    MCSymMatrix inverse;
    ASSERT_EQ(matrix.CholInverse(DiagonalOf(matrix), 1e-15, inverse), c.n);
    // The elements in closed form: Savage and Lukacs 1954.
    ExtendedMatrix exact(Index(c.n), Index(c.n));
    for (int i = 1; i <= c.n; ++i) {
      for (int j = 1; j <= c.n; ++j) {
        const long double middle = Binomial(i + j - 2, i - 1);
        exact(Index(i - 1), Index(j - 1)) = ((i + j) % 2 == 0 ? 1 : -1) * (i + j - 1) *
                                            Binomial(c.n + i - 1, c.n - j) *
                                            Binomial(c.n + j - 1, c.n - i) * middle * middle;
      }
    }
    // The elements of the matrix are rounded to doubles: condition times unit roundoff, and n more
    // such errors from the factorisation.
    const long double relative = 2 * (c.n + 1) * c.condition * 0x1p-53L;
    EXPECT_LE(ExtendedMatrix(inverse).Difference(exact), relative * exact.Largest());
    double det[2];
    ASSERT_TRUE(matrix.ComputeDeterminant(1e-15, det));
    EXPECT_NEAR(det[0] * std::pow(10.0, det[1]) * c.reciprocalDeterminant, 1.0,
                static_cast<double>(c.n * relative));
    EXPECT_GE(det[0], 1.0);
    EXPECT_LT(det[0], 10.0);
  }
}

// min(i, j) / max(i, j), whose inverse is tridiagonal; n <= condition <= 4 n^2 (Newman and Todd
// 1958); the determinant is (2n)! / (2^n n!^3).
TEST(MCSymMatrixKnownInverses, LehmerMatrices) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    MCSymMatrix matrix(n);
    ExtendedMatrix exact(Index(n), Index(n));
    long double determinant = 1;
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= i; ++j) matrix.SetElem(i - 1, j - 1, static_cast<double>(j) / i);
      const long double k = i;
      exact(Index(i - 1), Index(i - 1)) =
          i < n ? 4 * k * k * k / (4 * k * k - 1) : k * k / (2 * k - 1);
      if (i < n) {
        exact(Index(i - 1), Index(i)) = exact(Index(i), Index(i - 1)) = -k * (k + 1) / (2 * k + 1);
      }
      determinant *= (2 * k - 1) / (k * k);
    }
    MCSymMatrix inverse;
    ASSERT_EQ(matrix.CholInverse(DiagonalOf(matrix), 1e-12, inverse), n);
    const long double relative = 4.0L * n * n * (n + 1) * 0x1p-53L;
    EXPECT_LE(ExtendedMatrix(inverse).Difference(exact), relative * exact.Largest());
    double det[2];
    ASSERT_TRUE(matrix.ComputeDeterminant(1e-12, det));
    const long double computed = det[0] * std::pow(10.0L, static_cast<long double>(det[1]));
    EXPECT_NEAR(static_cast<double>(computed / determinant), 1.0,
                static_cast<double>(n * relative));
  }
}

// C(i+j, i), whose inverse is integer and whose determinant is 1 (Higham, section 28.4). Up to 12
// rows all intermediate numbers are integers below 2^53, so not a bit is lost.
TEST(MCSymMatrixKnownInverses, PascalMatrices) {
  for (int n = 1; n <= 12; ++n) {
    SCOPED_TRACE(n);
    MCSymMatrix matrix(n);
    MCSymMatrix exact(n);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j <= i; ++j) {
        matrix.SetElem(i, j, static_cast<double>(Binomial(i + j, i)));
        long double sum = 0;
        for (int k = i; k < n; ++k) sum += Binomial(k, i) * Binomial(k, j);
        exact.SetElem(i, j, static_cast<double>((i + j) % 2 == 0 ? sum : -sum));
      }
    }
    MCSymMatrix inverse;
    // The tolerance is tiny, as a pivot of 1 stands beside a diagonal of up to 705432.
    ASSERT_EQ(matrix.CholInverse(DiagonalOf(matrix), 1e-12, inverse), n);
    EXPECT_EQ(inverse.AsVectorConst(), exact.AsVectorConst());
    double det[2];
    ASSERT_TRUE(matrix.ComputeDeterminant(1e-12, det));
    EXPECT_EQ(det[0], 1.0);
    EXPECT_EQ(det[1], 0.0);
  }
}

// ---- determinant of a symmetric matrix ----

TEST(MCSymMatrixDeterminant, SingularMatricesHaveZero) {
  const MCSymMatrix matrices[] = {Packed({1, 1, 1}),  Packed({0}),  Packed({4, 0, 0, 0, 0, 5}),
                                  Packed({1, 2, 1}),  Packed({-1}), Packed({kNaN}),
                                  Packed({kInfinity})};
  for (const MCSymMatrix& matrix : matrices) {
    double det[2] = {9, 9};
    EXPECT_TRUE(matrix.ComputeDeterminant(1e-12, det));
    EXPECT_EQ(det[0], 0.0);
    EXPECT_EQ(det[1], 0.0);
  }
}

TEST(MCSymMatrixDeterminant, IsTheSquareOfThatOfTheFactor) {
  double det[2];
  EXPECT_TRUE(Packed({4, 2, 3}).ComputeDeterminant(1e-12, det));
  EXPECT_DOUBLE_EQ(det[0], 8.0);
  EXPECT_EQ(det[1], 0.0);
  const MCSymMatrix large = Packed({1e300, 0, 4e300});
  EXPECT_TRUE(large.ComputeDeterminant(1e-12, det));
  EXPECT_NEAR(det[0], 4.0, 1e-12);
  EXPECT_EQ(det[1], 600.0);
  EXPECT_EQ(large.GetElem(0, 0), 1e300);
}

TEST(MCSymMatrixDeterminant, MisuseIsRefused) {
  double det[2] = {9, 8};
  EXPECT_FALSE(MCSymMatrix().ComputeDeterminant(1e-12, det));
  EXPECT_FALSE(MCSymMatrix(70000).ComputeDeterminant(1e-12, det));
  EXPECT_FALSE(Packed({4}).ComputeDeterminant(-1e-12, det));
  const MCSymMatrix matrix = Packed({4});
  const mctest::FailAllocation failure(1);
  EXPECT_FALSE(matrix.ComputeDeterminant(1e-12, det));
  EXPECT_EQ(det[0], 9.0);
  EXPECT_EQ(det[1], 8.0);
}

}  // namespace
