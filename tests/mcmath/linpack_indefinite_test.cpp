// SPDX-License-Identifier: Apache-2.0
// Symmetric indefinite matrices, full and packed, against LAPACK.
#include "mcmath/linpack.h"
#include "support/columns.h"
#include "support/lapackpeer.h"
#include "support/linpackchecks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::Linpack;
using namespace mctest;

using Inertia = std::array<int, 3>;

Inertia InertiaByLapack(const Columns& a) {
  Inertia result = {};
  for (const double value : EigenvaluesByLapack(a)) ++result[value > 0.0 ? 0 : 1];
  return result;
}

/// Symmetric with zeros on the diagonal, so that blocks of order 2 are needed.
Columns Hollow(RandomColumns& source, int n) {
  Columns a = source.Symmetric(n);
  for (int i = 0; n > 1 && i < n; ++i) a(i, i) = 0.0;
  return a;
}

struct Factored {
  Columns a;
  std::vector<int> kpvt;
  double rcond = -1.0;

  explicit Factored(const Columns& given)
      : a(WithGap(WithoutLower(given), 2)), kpvt(static_cast<std::size_t>(given.Rows())) {
    Vector z = Junk(given.Rows());
    Linpack::Dsico(a.Data(), a.Ld(), a.Rows(), kpvt.data(), &rcond, z.data());
  }
};

void ExpectSolution(const Columns& a, const Factored& factored, const Vector& b) {
  Vector x = b;
  Linpack::Dsisl(factored.a.Data(), factored.a.Ld(), a.Rows(), factored.kpvt.data(), x.data());
  EXPECT_LT(Residual(a, x, b), kThreshold);
  EXPECT_TRUE(factored.a.GapsAreUntouched());
  EXPECT_TRUE(WithoutLower(factored.a) == factored.a) << "the lower triangle was touched";
}

TEST(LinpackIndefinite, SolvesAndEstimatesInFullStorage) {
  RandomColumns source(31);
  for (int n = 1; n <= kMaxOrder; ++n) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Symmetric(n), Hollow(source, n), source.Definite(n),
                             ShrunkByDecades(source.Symmetric(n), 4.0)}) {
      const Factored factored(a);
      ExpectSolution(a, factored, source.Entries(n));
      ExpectEstimate(factored.rcond, a, 30.0);
    }
  }
}

TEST(LinpackIndefinite, FactorsAreThoseOfTheRoutinesThatEstimate) {
  RandomColumns source(32);
  const Columns a = Hollow(source, 20);
  const Factored expected(a);
  Columns full = WithGap(WithoutLower(a), 2);
  std::vector<int> kpvt(20);
  int info = -1;
  Linpack::Dsifa(full.Data(), full.Ld(), 20, kpvt.data(), &info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(kpvt, expected.kpvt);
  EXPECT_TRUE(full == expected.a);
  Vector packed = PackedUpper(a);
  kpvt.assign(20, 0);
  info = -1;
  Linpack::Dspfa(packed.data(), 20, kpvt.data(), &info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(kpvt, expected.kpvt);
  EXPECT_EQ(packed, PackedUpper(expected.a));
}

TEST(LinpackIndefinite, MarksBlocksAndExchangesInThePublishedWay) {
  const struct {
    Vector packed;
    std::vector<int> kpvt;
  } cases[] = {
      // The diagonal is large enough.
      {{5, 1, 5}, {1, 2}},
      // That of the other row is.
      {{5, 1, 0}, {1, 1}},
      // Neither is: a block of order 2.
      {{0, 1, 0}, {-1, -1}},
      // The larger element is in row 1, which changes places with row 2.
      {{0, 0.25, 3, 2, 1, 0}, {1, -1, -1}},
      {{3, 0.25, 0, 1, 2, 0}, {1, -2, -2}},
      // The last diagonal is smaller than its column, but large beside what row 1 would bring.
      {{1, 9, 1, 1, 0, 0.5}, {-1, -1, 3}},
  };
  for (const auto& item : cases) {
    Vector packed = item.packed;
    std::vector<int> kpvt(item.kpvt.size());
    int info = -1;
    Linpack::Dspfa(packed.data(), static_cast<int>(kpvt.size()), kpvt.data(), &info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(kpvt, item.kpvt) << testing::PrintToString(item.packed);
  }
}

TEST(LinpackIndefinite, CountsEigenvaluesBySign) {
  RandomColumns source(33);
  for (int n = 1; n <= kMaxOrder; n += 3) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Symmetric(n), Hollow(source, n), source.Definite(n)}) {
      Factored factored(a);
      Inertia inertia = {-1, -1, -1};
      const Columns factors = factored.a;
      Linpack::Dsidi(factored.a.Data(), factored.a.Ld(), n, factored.kpvt.data(), nullptr,
                     inertia.data(), nullptr, 100);
      EXPECT_EQ(inertia, InertiaByLapack(a));
      EXPECT_TRUE(factored.a == factors);
    }
  }
}

TEST(LinpackIndefinite, InvertsAndFindsDeterminants) {
  RandomColumns source(34);
  for (int n = 1; n <= kMaxOrder; n += 3) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Symmetric(n), Hollow(source, n), source.Definite(n)}) {
      if (ReciprocalCondition(a) < 1e-10) continue;
      Factored factored(a);
      Vector det(2);
      Inertia inertia = {};
      Vector work = Junk(n);
      Linpack::Dsidi(factored.a.Data(), factored.a.Ld(), n, factored.kpvt.data(), det.data(),
                     inertia.data(), work.data(), 111);
      ExpectDeterminant(det.data(), a);
      EXPECT_EQ(inertia, InertiaByLapack(a));
      ExpectInverse(FromUpper(factored.a), a);
      EXPECT_TRUE(WithoutLower(factored.a) == factored.a);
    }
  }
}

TEST(LinpackIndefinite, PackedStorageGivesTheBitsOfFullStorage) {
  RandomColumns source(35);
  for (int n = 1; n <= kMaxOrder; n += 2) {
    SCOPED_TRACE(n);
    for (const Columns& a : {source.Symmetric(n), Hollow(source, n)}) {
      Factored full(a);
      Vector packed = PackedUpper(a);
      std::vector<int> kpvt(static_cast<std::size_t>(n));
      Vector z = Junk(n);
      double rcond = -1.0;
      Linpack::Dspco(packed.data(), n, kpvt.data(), &rcond, z.data());
      EXPECT_EQ(packed, PackedUpper(full.a));
      EXPECT_EQ(kpvt, full.kpvt);
      EXPECT_EQ(rcond, full.rcond);
      const Vector b = source.Entries(n);
      Vector x = b;
      Linpack::Dspsl(packed.data(), n, kpvt.data(), x.data());
      EXPECT_LT(Residual(a, x, b), kThreshold);
      Vector dets(4);
      Inertia inertia = {};
      Vector work = Junk(n);
      Linpack::Dspdi(packed.data(), n, kpvt.data(), dets.data(), inertia.data(), work.data(), 111);
      Linpack::Dsidi(full.a.Data(), full.a.Ld(), n, kpvt.data(), dets.data() + 2, nullptr,
                     work.data(), 11);
      EXPECT_EQ(packed, PackedUpper(full.a));
      EXPECT_EQ(dets[0], dets[2]);
      EXPECT_EQ(dets[1], dets[3]);
      EXPECT_EQ(inertia, InertiaByLapack(a));
    }
  }
}

TEST(LinpackIndefinite, ReportsTheFirstZeroBlock) {
  RandomColumns source(36);
  for (const int zero : {1, 3, 6}) {
    Columns a = source.Symmetric(6);
    for (const int gone : {zero - 1, 5}) {
      for (int i = 0; i < 6; ++i) a(i, gone) = a(gone, i) = 0.0;
    }
    // With the last column zero as well, the other one stays where it is or goes further up.
    Vector packed = PackedUpper(a);
    std::vector<int> kpvt(6);
    int info = -1;
    Linpack::Dspfa(packed.data(), 6, kpvt.data(), &info);
    EXPECT_GE(info, 1);
    EXPECT_LE(info, zero);
    EXPECT_EQ(kpvt[5], 6);
    Inertia inertia = {};
    Linpack::Dspdi(packed.data(), 6, kpvt.data(), nullptr, inertia.data(), nullptr, 100);
    EXPECT_EQ(inertia[2], zero == 6 ? 1 : 2);
    EXPECT_EQ(Factored(a).rcond, 0.0);
  }
}

TEST(LinpackIndefinite, AZeroMatrixIsSingularFromItsFirstBlockOn) {
  Vector packed(10);
  std::vector<int> kpvt(4);
  int info = -1;
  Linpack::Dspfa(packed.data(), 4, kpvt.data(), &info);
  EXPECT_EQ(info, 1);
  EXPECT_EQ(kpvt, (std::vector<int>{1, 2, 3, 4}));
  Vector det(2);
  Inertia inertia = {};
  Linpack::Dspdi(packed.data(), 4, kpvt.data(), det.data(), inertia.data(), nullptr, 110);
  EXPECT_EQ(det[0], 0.0);
  EXPECT_EQ(inertia, (Inertia{0, 0, 4}));
}

TEST(LinpackIndefinite, TellsDependentRowsByTheEstimate) {
  RandomColumns source(37);
  for (int n = 2; n <= kMaxOrder; n += 7) {
    SCOPED_TRACE(n);
    const Columns half = source.Matrix(n - 1, n);
    const Columns inner = source.Symmetric(n - 1);
    const Columns a = Product(Transposed(half), Product(inner, half));
    EXPECT_LT(Factored(a).rcond, n * std::numeric_limits<double>::epsilon());
  }
}

TEST(LinpackIndefinite, EstimatesTheSameAtTheEndsOfTheRange) {
  RandomColumns source(38);
  const Columns a = Hollow(source, 9);
  const double expected = Factored(a).rcond;
  for (const double scale : {0x1p-900, 0x1p+900}) {
    // Apart from the rounding of the factors that keep the vector of the estimate in range.
    EXPECT_DOUBLE_EQ(Factored(Scaled(a, scale)).rcond, expected);
  }
}

TEST(LinpackIndefinite, NoEstimateOfAMatrixWithANaNPassesATolerance) {
  RandomColumns source(39);
  for (int j = 0; j < 6; ++j) {
    for (int i = 0; i <= j; ++i) {
      Columns a = source.Symmetric(6);
      a(i, j) = std::nan("");
      EXPECT_FALSE(Factored(a).rcond > 0.0) << i << ", " << j;
    }
  }
}

TEST(LinpackIndefinite, OnlyAnswersAreTouchedWithoutRows) {
  for (const int n : {0, -2}) {
    int info = -1;
    double rcond = -1.0;
    Vector det(2);
    Inertia inertia = {-1, -1, -1};
    Linpack::Dsifa(nullptr, 1, n, nullptr, &info);
    EXPECT_EQ(std::exchange(info, -1), 0);
    Linpack::Dspfa(nullptr, n, nullptr, &info);
    EXPECT_EQ(info, 0);
    Linpack::Dsico(nullptr, 1, n, nullptr, &rcond, nullptr);
    EXPECT_EQ(std::exchange(rcond, -1.0), 0.0);
    Linpack::Dspco(nullptr, n, nullptr, &rcond, nullptr);
    EXPECT_EQ(rcond, 0.0);
    Linpack::Dsisl(nullptr, 1, n, nullptr, nullptr);
    Linpack::Dspsl(nullptr, n, nullptr, nullptr);
    Linpack::Dsidi(nullptr, 1, n, nullptr, det.data(), inertia.data(), nullptr, 111);
    EXPECT_EQ(std::exchange(det, Vector(2)), (Vector{1.0, 0.0}));
    EXPECT_EQ(std::exchange(inertia, Inertia{-1, -1, -1}), (Inertia{0, 0, 0}));
    Linpack::Dspdi(nullptr, n, nullptr, det.data(), inertia.data(), nullptr, 111);
    EXPECT_EQ(det, (Vector{1.0, 0.0}));
    EXPECT_EQ(inertia, (Inertia{0, 0, 0}));
  }
}

}  // namespace
