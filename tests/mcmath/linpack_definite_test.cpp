// SPDX-License-Identifier: Apache-2.0
// Positive definite matrices, full, packed and banded, and tridiagonal systems, against LAPACK.
#include "mcmath/linpack.h"
#include "support/columns.h"
#include "support/lapackpeer.h"
#include "support/linpackchecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::Linpack;
using namespace mctest;

Columns FactorByLapack(Columns a) {
  LAPACKE_dpotrf(LAPACK_COL_MAJOR, 'U', a.Rows(), a.Data(), a.Ld());
  return UpperTriangle(a, a.Rows());
}

TEST(LinpackDefinite, FactorsSolvesAndEstimatesInFullStorage) {
  RandomColumns source(21);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Definite(n), ShrunkByDecades(source.Definite(n), 5.0)}) {
      Columns r = WithGap(WithoutLower(a), 2);
      Vector z = Junk(n);
      double rcond = -1.0;
      int info = -1;
      Linpack::Dpoco(r.Data(), r.Ld(), n, &rcond, z.data(), &info);
      EXPECT_EQ(info, 0);
      const Columns upper = UpperTriangle(r, n);
      EXPECT_LT(Distance(Product(Transposed(upper), upper), a), kThreshold);
      EXPECT_LT(Distance(upper, FactorByLapack(a)), kThreshold / rcond);
      ExpectEstimate(rcond, a, 20.0);
      const Vector b = source.Entries(n);
      Vector x = b;
      Linpack::Dposl(r.Data(), r.Ld(), n, x.data());
      EXPECT_LT(Residual(a, x, b), kThreshold);
      EXPECT_TRUE(WithoutLower(r) == r) << "the lower triangle was touched";
      EXPECT_TRUE(r.GapsAreUntouched());
    }
  }
}

TEST(LinpackDefinite, InvertsAndFindsDeterminantsInFullStorage) {
  RandomColumns source(22);
  for (int n = 1; n <= kMaxOrder; n += 5) {
    SCOPED_TRACE(n);
    const Columns a = source.Definite(n);
    Columns r = WithGap(WithoutLower(a), 2);
    int info = -1;
    Linpack::Dpofa(r.Data(), r.Ld(), n, &info);
    Vector det(2);
    const Columns factor = r;
    Linpack::Dpodi(r.Data(), r.Ld(), n, det.data(), 10);
    EXPECT_TRUE(r == factor);
    ExpectDeterminant(det.data(), a);
    det = {-5.0, -5.0};
    Linpack::Dpodi(r.Data(), r.Ld(), n, det.data(), 1);
    EXPECT_EQ(det, (Vector{-5.0, -5.0}));
    ExpectInverse(FromUpper(r), a);
    EXPECT_TRUE(WithoutLower(r) == r);
  }
}

TEST(LinpackDefinite, PackedStorageGivesTheBitsOfFullStorage) {
  RandomColumns source(23);
  for (int n = 1; n <= kMaxOrder; n += 4) {
    SCOPED_TRACE(n);
    const Columns a = source.Definite(n);
    Columns full = a;
    Vector packed = PackedUpper(a);
    Vector z = Junk(n);
    double fullRcond = -1.0;
    double packedRcond = -2.0;
    int info = -1;
    Linpack::Dpoco(full.Data(), n, n, &fullRcond, z.data(), &info);
    info = -1;
    Linpack::Dppco(packed.data(), n, &packedRcond, z.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(packed, PackedUpper(full));
    EXPECT_EQ(packedRcond, fullRcond);
    Vector factors = PackedUpper(a);
    Linpack::Dppfa(factors.data(), n, &info);
    EXPECT_EQ(factors, packed);
    const Vector b = source.Entries(n);
    Vector x = b;
    Linpack::Dppsl(packed.data(), n, x.data());
    EXPECT_LT(Residual(a, x, b), kThreshold);
    Vector det(2);
    Linpack::Dppdi(packed.data(), n, det.data(), 11);
    ExpectDeterminant(det.data(), a);
    ExpectInverse(FromPackedUpper(n, packed), a);
  }
}

TEST(LinpackDefinite, ReportsTheBlockThatIsNotPositiveDefinite) {
  RandomColumns source(24);
  for (const double bad : {0.0, -1.0, std::nan("")}) {
    for (const int order : {1, 4, 6}) {
      Columns a = source.Definite(6);
      // The columns before the bad one don't know of it.
      const Columns expected = FactorByLapack(a);
      a(order - 1, order - 1) = bad;
      Vector packed = PackedUpper(a);
      Columns full = a;
      Vector z(6);
      int info = -1;
      double rcond = -7.0;
      Linpack::Dpoco(full.Data(), 6, 6, &rcond, z.data(), &info);
      EXPECT_EQ(info, order);
      EXPECT_EQ(rcond, -7.0);
      info = -1;
      Linpack::Dppfa(packed.data(), 6, &info);
      EXPECT_EQ(info, order);
      for (int j = 0; j + 1 < order; ++j) {
        for (int i = 0; i <= j; ++i) EXPECT_NEAR(full(i, j), expected(i, j), 1e-13);
      }
    }
  }
}

/// A definite matrix of m diagonals beside the main one, and its band storage with junk where no
/// element stands.
struct Band {
  Columns full;
  Columns stored;

  Band(RandomColumns& source, int n, int m) : full(n, n), stored(m + 1, n, 1) {
    for (int j = 0; j < n; ++j) {
      for (int row = 0; row <= m; ++row) stored(row, j) = 1e99;
      for (int i = std::max(0, j - m); i <= j; ++i) {
        // Enough on the diagonal to outweigh the rest of its row.
        const double value = source.Next() + (i == j ? 2.0 * m + 1.5 : 0.0);
        full(i, j) = full(j, i) = stored(i - j + m, j) = value;
      }
    }
  }
};

TEST(LinpackDefinite, FactorsSolvesAndEstimatesBands) {
  RandomColumns source(25);
  for (int n = 1; n <= kMaxOrder; n += 3) {
    for (const int m : {0, 1, 2, 5, n - 1}) {
      if (m >= n) continue;
      SCOPED_TRACE(testing::Message() << n << ": " << m);
      const Band band(source, n, m);
      Columns r = band.stored;
      Vector z = Junk(n);
      double rcond = -1.0;
      int info = -1;
      Linpack::Dpbco(r.Data(), r.Ld(), n, m, &rcond, z.data(), &info);
      EXPECT_EQ(info, 0);
      ExpectEstimate(rcond, band.full, 10.0);
      EXPECT_TRUE(r.GapsAreUntouched());
      Columns factors = band.stored;
      info = -1;
      Linpack::Dpbfa(factors.Data(), factors.Ld(), n, m, &info);
      EXPECT_EQ(info, 0);
      EXPECT_TRUE(factors == r);
      const Vector b = source.Entries(n);
      Vector x = b;
      Linpack::Dpbsl(r.Data(), r.Ld(), n, m, x.data());
      EXPECT_LT(Residual(band.full, x, b), kThreshold);
      Vector det(2);
      Linpack::Dpbdi(r.Data(), r.Ld(), n, m, det.data());
      ExpectDeterminant(det.data(), band.full);
      const Columns expected = FactorByLapack(band.full);
      for (int j = 0; j < n; ++j) {
        for (int i = std::max(0, j - m); i <= j; ++i) {
          EXPECT_NEAR(r(i - j + m, j), expected(i, j), 1e-13 * (m + 2));
        }
        for (int row = 0; row < m - j; ++row) EXPECT_EQ(r(row, j), 1e99);
      }
    }
  }
}

TEST(LinpackDefinite, ReportsTheBlockOfABandThatIsNotPositiveDefinite) {
  RandomColumns source(26);
  Band band(source, 8, 2);
  band.stored(2, 4) = -1.0;
  int info = -1;
  Linpack::Dpbfa(band.stored.Data(), band.stored.Ld(), 8, 2, &info);
  EXPECT_EQ(info, 5);
}

TEST(LinpackDefinite, OnlyAnswersAreTouchedWithoutRows) {
  for (const int n : {0, -1}) {
    int info = -1;
    double rcond = -1.0;
    Vector det(2);
    Linpack::Dpoco(nullptr, 1, n, &rcond, nullptr, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    EXPECT_EQ(std::exchange(rcond, -1.0), 0.0);
    Linpack::Dppco(nullptr, n, &rcond, nullptr, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    EXPECT_EQ(std::exchange(rcond, -1.0), 0.0);
    Linpack::Dpbco(nullptr, 1, n, 0, &rcond, nullptr, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    EXPECT_EQ(rcond, 0.0);
    Linpack::Dpofa(nullptr, 1, n, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    Linpack::Dppfa(nullptr, n, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    Linpack::Dpbfa(nullptr, 1, n, 0, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    Linpack::Dposl(nullptr, 1, n, nullptr);
    Linpack::Dppsl(nullptr, n, nullptr);
    Linpack::Dpbsl(nullptr, 1, n, 0, nullptr);
    Linpack::Dpodi(nullptr, 1, n, det.data(), 11);
    EXPECT_EQ(std::exchange(det, Vector(2)), (Vector{1.0, 0.0}));
    Linpack::Dppdi(nullptr, n, det.data(), 11);
    EXPECT_EQ(std::exchange(det, Vector(2)), (Vector{1.0, 0.0}));
    Linpack::Dpbdi(nullptr, 1, n, 0, det.data());
    EXPECT_EQ(det, (Vector{1.0, 0.0}));
    Linpack::Dgtsl(n, nullptr, nullptr, nullptr, nullptr, &info);
    EXPECT_EQ(info, 0);
    Linpack::Dptsl(n, nullptr, nullptr, nullptr);
  }
}

Columns Tridiagonal(const Vector& lower, const Vector& diagonal, const Vector& upper) {
  const int n = static_cast<int>(diagonal.size());
  Columns a(n, n);
  for (int i = 0; i < n; ++i) {
    const auto place = static_cast<std::size_t>(i);
    a(i, i) = diagonal[place];
    if (i + 1 < n) {
      a(i + 1, i) = lower[place + 1];
      a(i, i + 1) = upper[place];
    }
  }
  return a;
}

TEST(LinpackTridiagonal, SolvesGeneralSystems) {
  RandomColumns source(27);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    Vector c = source.Entries(n);
    Vector d = source.Entries(n);
    Vector e = source.Entries(n);
    const Columns a = Tridiagonal(c, d, e);
    // What stands beside the subdiagonal and superdiagonal is of no meaning.
    c.front() = e.back() = 1e99;
    const Vector b = source.Entries(n);
    Vector x = b;
    int info = -1;
    Linpack::Dgtsl(n, c.data(), d.data(), e.data(), x.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_LT(Residual(a, x, b), kThreshold);
  }
}

TEST(LinpackTridiagonal, ReportsTheFirstZeroPivot) {
  for (const int zero : {1, 3, 4}) {
    Vector c = {0.0, 0.0, 0.0, 0.0};
    Vector d = {1.0, 1.0, 1.0, 1.0};
    Vector e = {0.5, 0.5, 0.5, 0.0};
    Vector b = {1.0, 1.0, 1.0, 1.0};
    d[static_cast<std::size_t>(zero) - 1] = 0.0;
    int info = -1;
    Linpack::Dgtsl(4, c.data(), d.data(), e.data(), b.data(), &info);
    EXPECT_EQ(info, zero);
  }
}

TEST(LinpackTridiagonal, SolvesDefiniteSystems) {
  RandomColumns source(28);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    Vector d = source.Entries(n);
    for (double& value : d) value += 3.5;
    const Vector e = source.Entries(n - 1);
    Vector lower(static_cast<std::size_t>(n));
    std::copy(e.begin(), e.end(), lower.begin() + 1);
    const Columns a = Tridiagonal(lower, d, e);
    const Vector b = source.Entries(n);
    Vector x = b;
    Linpack::Dptsl(n, d.data(), e.data(), x.data());
    EXPECT_LT(Residual(a, x, b), kThreshold);
  }
}

}  // namespace
