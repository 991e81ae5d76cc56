// SPDX-License-Identifier: Apache-2.0
// Triangular matrices against LAPACK.
#include "mcmath/linpack.h"
#include "support/columns.h"
#include "support/lapackpeer.h"
#include "support/linpackchecks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using MCCommonMath::Linpack;
using namespace mctest;

/// One triangle of a matrix; the other one is zero, or junk where a routine is not to look at it.
Columns Triangle(const Columns& a, bool upper, double beyond) {
  Columns result = a;
  for (int j = 0; j < a.Cols(); ++j) {
    for (int i = 0; i < a.Rows(); ++i) {
      if (upper ? i > j : i < j) result(i, j) = beyond;
    }
  }
  return result;
}

/// Random with a diagonal away from 0, as random triangles are otherwise singular to working
/// precision from about 50 rows on.
Columns RandomSquare(RandomColumns& source, int n) {
  Columns a = source.Matrix(n, n, 2);
  for (int i = 0; i < n; ++i) a(i, i) += std::copysign(2.0, a(i, i));
  return a;
}

TEST(LinpackTriangular, SolvesBothTrianglesAndTheirTransposes) {
  RandomColumns source(41);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    const Columns square = RandomSquare(source, n);
    const Vector b = source.Entries(n);
    for (const int job : {0, 1, 10, 11}) {
      const bool upper = job % 10 == 1;
      const Columns given = Triangle(square, upper, std::nan(""));
      const Columns t = Triangle(square, upper, 0.0);
      Vector x = b;
      int info = -1;
      Linpack::Dtrsl(given.Data(), given.Ld(), n, x.data(), job, &info);
      EXPECT_EQ(info, 0);
      EXPECT_LT(Residual(job < 10 ? t : Transposed(t), x, b), kThreshold);
    }
  }
}

TEST(LinpackTriangular, EstimatesTheCondition) {
  RandomColumns source(42);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    const Columns square = RandomSquare(source, n);
    for (const int job : {0, 1}) {
      const Columns given = Triangle(square, job == 1, std::nan(""));
      Vector z = Junk(n);
      double rcond = -1.0;
      Linpack::Dtrco(given.Data(), given.Ld(), n, &rcond, z.data(), job);
      ExpectEstimate(rcond, Triangle(square, job == 1, 0.0), 10.0);
    }
  }
}

TEST(LinpackTriangular, EstimatesZeroForAZeroOnTheDiagonal) {
  RandomColumns source(43);
  for (int zero = 0; zero < 5; ++zero) {
    for (const int job : {0, 1}) {
      Columns t = RandomSquare(source, 5);
      t(zero, zero) = 0.0;
      Vector z(5);
      double rcond = -1.0;
      Linpack::Dtrco(t.Data(), t.Ld(), 5, &rcond, z.data(), job);
      EXPECT_EQ(rcond, 0.0);
    }
  }
}

// The vectors that show it grow by more than the range of doubles; the conditions are above 1e300.
TEST(LinpackTriangular, EstimatesNextToNothingForPivotsThatVanishBesideTheRest) {
  const double least = std::numeric_limits<double>::denorm_min();
  const struct {
    double first;
    double beside;
    double second;
  } cases[] = {{1.0, 1e300, 1e-300}, {1e-300, 1e300, 1.0}, {1.0, 1.0, least}, {least, 1.0, 1.0}};
  for (const auto& item : cases) {
    SCOPED_TRACE(testing::Message() << item.first << ", " << item.beside << ", " << item.second);
    Columns upper(2, 2);
    upper(0, 0) = item.first;
    upper(0, 1) = item.beside;
    upper(1, 1) = item.second;
    const Columns lower = Transposed(upper);
    Vector z(2);
    std::vector<int> ipvt(2);
    Vector estimates(4, -1.0);
    Linpack::Dtrco(upper.Data(), 2, 2, &estimates[0], z.data(), 1);
    Linpack::Dtrco(lower.Data(), 2, 2, &estimates[1], z.data(), 0);
    Columns factors = upper;
    Linpack::Dgeco(factors.Data(), 2, 2, ipvt.data(), &estimates[2], z.data());
    factors = lower;
    Linpack::Dgeco(factors.Data(), 2, 2, ipvt.data(), &estimates[3], z.data());
    for (const double estimate : estimates) {
      EXPECT_GE(estimate, 0.0);
      EXPECT_LT(estimate, 1e-300);
    }
  }
}

TEST(LinpackTriangular, InvertsAndFindsDeterminants) {
  RandomColumns source(44);
  for (int n = 1; n <= kMaxOrder; n += 4) {
    SCOPED_TRACE(n);
    const Columns square = RandomSquare(source, n);
    for (const int job : {100, 110, 111, 10, 11}) {
      const bool upper = job % 10 == 1;
      const Columns t = Triangle(square, upper, 0.0);
      Columns inverse = Triangle(square, upper, 1e99);
      Vector det = {-5.0, -5.0};
      int info = -1;
      Linpack::Dtrdi(inverse.Data(), inverse.Ld(), n, det.data(), job, &info);
      EXPECT_EQ(info, 0);
      if (job >= 100) {
        ExpectDeterminant(det.data(), t);
      } else {
        EXPECT_EQ(det, (Vector{-5.0, -5.0}));
      }
      EXPECT_TRUE(Triangle(inverse, upper, 1e99) == inverse);
      if (job == 100) {
        EXPECT_TRUE(Triangle(square, upper, 1e99) == inverse);
      } else {
        ExpectInverse(Triangle(inverse, upper, 0.0), t);
      }
    }
  }
}

TEST(LinpackTriangular, RefusesZerosOnTheDiagonalAndChangesNothing) {
  RandomColumns source(45);
  Columns t = RandomSquare(source, 6);
  t(2, 2) = t(4, 4) = 0.0;
  const Columns before = t;
  const Vector b = source.Entries(6);
  for (const int job : {0, 1, 10, 11}) {
    Vector x = b;
    int info = -1;
    Linpack::Dtrsl(t.Data(), t.Ld(), 6, x.data(), job, &info);
    EXPECT_EQ(info, 3);
    EXPECT_EQ(x, b);
  }
  for (const int job : {110, 111}) {
    Vector det = {-5.0, -5.0};
    int info = -1;
    Linpack::Dtrdi(t.Data(), t.Ld(), 6, det.data(), job, &info);
    EXPECT_EQ(info, job == 111 ? 3 : 5);
    EXPECT_EQ(det[0], 0.0);
    EXPECT_TRUE(t == before);
  }
}

TEST(LinpackTriangular, OnlyAnswersAreTouchedWithoutRows) {
  for (const int n : {0, -1}) {
    int info = -1;
    double rcond = -1.0;
    Vector det(2);
    Linpack::Dtrco(nullptr, 1, n, &rcond, nullptr, 0);
    EXPECT_EQ(rcond, 0.0);
    Linpack::Dtrsl(nullptr, 1, n, nullptr, 0, &info);
    EXPECT_EQ(info, 0);
    info = -1;
    Linpack::Dtrdi(nullptr, 1, n, det.data(), 111, &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(det, (Vector{1.0, 0.0}));
  }
}

}  // namespace
