// SPDX-License-Identifier: Apache-2.0
// Residuals, orthogonality and known spectra.
#include "mcmath/mceigenvalues.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/accuracytable.h"
#include "support/eigenproblem.h"
#include "support/extendedmatrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>

namespace {

using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using Vector = std::vector<double>;

constexpr double kEps = std::numeric_limits<double>::epsilon();

MCSymMatrix FromElements(int n, const std::function<double(int, int)>& element) {
  MCSymMatrix result(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) result.SetElem(i, j, element(i, j));
  }
  return result;
}

MCSymMatrix Tridiagonal(int n, const std::function<double(int)>& diagonal,
                        const std::function<double(int)>& below) {
  return FromElements(n, [&](int i, int j) {
    return i == j ? diagonal(i) : i == j + 1 ? below(i) : 0.0;
  });
}

MCSymMatrix Hilbert(int n) {
  return FromElements(n, [](int i, int j) { return 1.0 / (i + j + 1); });
}

// Of odd order; its values come in pairs that agree to many digits.
MCSymMatrix Wilkinson(int n) {
  return Tridiagonal(
      n, [n](int i) { return std::abs(i - n / 2); }, [](int) { return 1.0; });
}

// The diagonal matrix D seen from elsewhere: (I - 2 u u') D (I - 2 u u') for a noisy u of length 1.
MCSymMatrix Reflected(const Vector& D) {
  const int n = static_cast<int>(D.size());
  Vector u = mctest::NoisyMatrix(n, 1, 21).AsVectorConst();
  const long double square = mctest::DotOf(u.data(), u.data(), u.size());
  long double uDu = 0;
  for (std::size_t i = 0; i < u.size(); ++i) uDu += D[i] * u[i] * static_cast<long double>(u[i]);
  return FromElements(n, [&](int row, int col) {
    const auto i = static_cast<std::size_t>(row);
    const auto j = static_cast<std::size_t>(col);
    const long double product = static_cast<long double>(u[i]) * u[j];
    const long double element = product * (4 * uDu / square - 2 * D[i] - 2 * D[j]) / square;
    return static_cast<double>(element + (i == j ? D[i] : 0.0));
  });
}

Vector Clustered(int n) {
  Vector values;
  for (int i = 0; i < n; ++i) values.push_back(i % 3 == 0 ? 1.0 : i % 3 == 1 ? 1.0 + 1e-13 : -2.0);
  return values;
}

Vector Graded(int n) {
  Vector values;
  for (int i = 0; i < n; ++i) values.push_back(std::pow(10.0, -12.0 * i / n));
  return values;
}

struct Family {
  std::string name;
  std::function<MCSymMatrix(int)> make;
};

const Family kFamilies[] = {
    {"Wilkinson", Wilkinson},
    {"Hilbert", Hilbert},
    {"clustered", [](int n) { return Reflected(Clustered(n)); }},
    {"graded", [](int n) { return Reflected(Graded(n)); }},
    {"graded down the diagonal",
     [](int n) { return FromElements(n, [](int i, int j) { return std::pow(0.7, i + j); }); }},
    {"graded up the diagonal",
     [](int n) {
       return FromElements(n, [n](int i, int j) { return std::pow(0.7, 2 * n - i - j); });
     }},
    {"diagonal",
     [](int n) {
       return Tridiagonal(
           n, [](int i) { return (7 * i) % 11 - 5.25; }, [](int) { return 0.0; });
     }},
    {"identity",
     [](int n) {
       return Tridiagonal(
           n, [](int) { return 1.0; }, [](int) { return 0.0; });
     }},
    {"of rank one", [](int n) { return FromElements(n, [](int, int) { return 1.0; }); }},
    {"arrow",
     [](int n) {
       return FromElements(n, [](int i, int j) { return i == j || j == 0 ? 1.0 : 0.0; });
     }},
    {"random", [](int n) { return mctest::NoisySymmetric(n, 31); }},
};

// The backward error bound of the reduction and of the iteration is a modest multiple of n eps; in
// practice both errors grow slower than n. Shown on every run.
TEST(MCEigenValuesAccuracy, ResidualsAndOrthogonalityStayWithinAFewUnitsOfNEps) {
  std::printf("  in units of n eps           n   residual  orthogonality\n");
  for (const Family& family : kFamilies) {
    for (const int n : {1, 2, 3, 5, 8, 9, 17, 33, 64, 101, 300}) {
      const MCSymMatrix H = family.make(n);
      MCEigenValues problem(H, 1e-12, 30);
      Vector values;
      MCRectMatrix vectors;
      if (n == 1 && H.GetElem(0, 0) == 0.0) continue;
      ASSERT_EQ(problem.Compute(values, vectors), n) << family.name;
      const mctest::EigenErrors errors = mctest::ErrorsOf(H, values, vectors);
      EXPECT_LT(errors.fResidual, 4.0) << family.name << ' ' << n;
      EXPECT_LT(errors.fOrthogonality, 4.0) << family.name << ' ' << n;
      if (n == 300) {
        std::printf("  %-25s %3d %10.4f %14.4f\n", family.name.c_str(), n, errors.fResidual,
                    errors.fOrthogonality);
      }
    }
  }
}

// By the circles of Gershgorin with the rows scaled by the roots of their diagonal elements, where
// the couplings have 1e-16 at the most, each value agrees with a diagonal element to some eps.
TEST(MCEigenValuesAccuracy, SmallValuesOfAGradedMatrixKeepTheirDigits) {
  constexpr int n = 12;
  const auto diagonal = [](int i) { return std::pow(100.0, i - n); };
  const MCSymMatrix H = Tridiagonal(n, diagonal, [&](int i) { return 1e-17 * diagonal(i - 1); });
  MCEigenValues problem(H, 1e-12, 30);
  Vector values;
  ASSERT_EQ(problem.GetSorted(values, false), n);
  for (int k = 0; k < n; ++k) {
    EXPECT_NEAR(values[static_cast<std::size_t>(k)] / diagonal(k), 1.0, 4 * kEps) << k;
  }
}

TEST(MCEigenValuesAccuracy, ValuesAloneAreThoseThatComeWithVectors) {
  for (const Family& family : kFamilies) {
    MCEigenValues problem(family.make(40), 1e-12, 30);
    Vector alone;
    Vector values;
    MCRectMatrix vectors;
    ASSERT_EQ(problem.Compute(alone), 40);
    ASSERT_EQ(problem.Compute(values, vectors), 40);
    EXPECT_EQ(alone, values) << family.name;
  }
}

TEST(MCEigenValuesAccuracy, AZeroMatrixHasZerosAndTheUnitVectors) {
  for (const int n : {1, 2, 9, 40}) {
    MCEigenValues problem(MCSymMatrix(n), 1e-12, 0);
    Vector values;
    MCRectMatrix vectors;
    ASSERT_EQ(problem.Compute(values, vectors), n);
    EXPECT_EQ(values, Vector(static_cast<std::size_t>(n), 0.0));
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) EXPECT_EQ(vectors.GetElem(i, j), i == j ? 1.0 : 0.0);
    }
  }
}

// Sorted values beside those expected, relative to the largest: for symmetric matrices values move
// by no more than the norm of the backward error.
void ExpectSpectrum(const MCSymMatrix& H, Vector expected) {
  MCEigenValues problem(H, 1e-12, 30);
  Vector values;
  const int n = H.GetNRows();
  ASSERT_EQ(problem.GetSorted(values, false), n);
  std::sort(expected.begin(), expected.end());
  const double norm = std::max(std::abs(expected.front()), std::abs(expected.back()));
  for (std::size_t k = 0; k < values.size(); ++k) {
    EXPECT_NEAR(values[k], expected[k], n * kEps * norm) << k << " of " << n;
  }
}

const double kPi = 3.14159265358979323846;

TEST(MCEigenValuesAccuracy, SecondDifferencesHaveTheirClosedForm) {
  for (const int n : {2, 3, 10, 77, 300}) {
    Vector expected;
    for (int k = 1; k <= n; ++k) {
      const double root = 2.0 * std::sin(k * kPi / (2.0 * (n + 1)));
      expected.push_back(root * root);
    }
    ExpectSpectrum(Tridiagonal(
                       n, [](int) { return 2.0; }, [](int) { return -1.0; }),
                   expected);
  }
}

// Clement 1959: whole numbers, two apart.
TEST(MCEigenValuesAccuracy, ClementsMatrixHasWholeNumbers) {
  for (const int n : {2, 3, 10, 77, 200}) {
    Vector expected;
    for (int k = 0; k < n; ++k) expected.push_back(2.0 * k - (n - 1));
    ExpectSpectrum(Tridiagonal(
                       n, [](int) { return 0.0; },
                       [n](int i) { return std::sqrt(static_cast<double>(i) * (n - i)); }),
                   expected);
  }
}

// Dense; the Fourier transform of the first row.
TEST(MCEigenValuesAccuracy, ACirculantHasTheTransformOfItsFirstRow) {
  for (const int n : {3, 8, 31, 150}) {
    const auto element = [n](int distance) { return 1.0 / (1 + std::min(distance, n - distance)); };
    Vector expected;
    for (int k = 0; k < n; ++k) {
      long double sum = 0;
      for (int d = 0; d < n; ++d) sum += element(d) * std::cos(2.0L * kPi * ((k * d) % n) / n);
      expected.push_back(static_cast<double>(sum));
    }
    ExpectSpectrum(FromElements(n, [&](int i, int j) { return element(i - j); }), expected);
  }
}

TEST(MCEigenValuesAccuracy, ConstructedSpectraAreFound) {
  ExpectSpectrum(Reflected(Clustered(60)), Clustered(60));
  ExpectSpectrum(Reflected(Graded(60)), Graded(60));
  ExpectSpectrum(FromElements(50, [](int, int) { return 1.0; }), [] {
    Vector values(50, 0.0);
    values.back() = 50.0;
    return values;
  }());
}

// Values of 60 digits; alone, and as a pair with the matrix of min(i, j) + 1, whose condition is
// about 2 n^2.
TEST(MCEigenValuesAccuracy, HilbertMatricesHaveTheReferenceValues) {
  int count = 0;
  for (const mctest::ReferenceRow& row :
       mctest::ReadReference(std::string(MCSTAT_TEST_DATA) + "/mcmath/hilberteigenvalues.csv")) {
    const int n = static_cast<int>(row.fArguments[0]);
    MCEigenValues problem(Hilbert(n), 1e-12, 30);
    const bool isPair = row.fRegion == "pair";
    if (isPair) {
      problem.SetEMatrix(FromElements(n, [](int i, int j) { return std::min(i, j) + 1.0; }));
    }
    Vector values;
    ASSERT_EQ(problem.GetSorted(values, false), n);
    const double expected = static_cast<double>(row.fValues[0]);
    EXPECT_NEAR(values[static_cast<std::size_t>(row.fArguments[1])], expected, 2 * n * kEps)
        << row.fRegion << ' ' << n;
    ++count;
  }
  EXPECT_EQ(count, 100);
}

}  // namespace
