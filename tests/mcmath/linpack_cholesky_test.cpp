// SPDX-License-Identifier: Apache-2.0
// Cholesky factors with pivoting, and their updates against factoring afresh.
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

/// Rows and columns of a symmetric matrix in another order.
Columns Permuted(const Columns& a, const std::vector<int>& order) {
  return InOrder(Transposed(InOrder(a, order)), order);
}

struct Factored {
  Columns a;
  std::vector<int> jpvt;
  int info = -1;

  Factored(const Columns& given, std::vector<int> marks, int job)
      : a(WithGap(WithoutLower(given), 2)), jpvt(std::move(marks)) {
    Vector work = Junk(given.Cols());
    Linpack::Dchdc(a.Data(), a.Ld(), a.Cols(), work.data(), jpvt.data(), job, &info);
  }

  Columns R() const { return UpperTriangle(a, a.Rows()); }
};

Columns Squared(const Columns& r) {
  return Product(Transposed(r), r);
}

TEST(LinpackDchdc, FactorsWithAndWithoutExchanges) {
  RandomColumns source(81);
  for (int p = 1; p <= kMaxOrder; p += 2) {
    SCOPED_TRACE(p);
    const Columns a = source.Definite(p);
    const Factored plain(a, {}, 0);
    EXPECT_EQ(plain.info, p);
    EXPECT_LT(Distance(Squared(plain.R()), a), kThreshold);
    const Factored pivoted(a, std::vector<int>(static_cast<std::size_t>(p)), 1);
    EXPECT_EQ(pivoted.info, p);
    EXPECT_LT(Distance(Squared(pivoted.R()), Permuted(a, pivoted.jpvt)), kThreshold);
    for (int k = 1; k < p; ++k) EXPECT_LE(pivoted.a(k, k), pivoted.a(k - 1, k - 1));
    EXPECT_TRUE(pivoted.a.GapsAreUntouched());
    EXPECT_TRUE(WithoutLower(pivoted.a) == pivoted.a);
  }
}

TEST(LinpackDchdc, ChoosesThePivotsOfLapack) {
  RandomColumns source(82);
  Columns a = source.Definite(20);
  const Factored pivoted(a, std::vector<int>(20), 1);
  std::vector<int> expected(20);
  int rank = 0;
  LAPACKE_dpstrf(LAPACK_COL_MAJOR, 'U', 20, a.Data(), 20, expected.data(), &rank, -1.0);
  EXPECT_EQ(pivoted.jpvt, expected);
}

TEST(LinpackDchdc, KeepsInitialAndFinalRowsInTheirPlaces) {
  RandomColumns source(83);
  const Columns a = source.Definite(7);
  const Factored factored(a, {0, -3, 0, 2, 0, -1, 5}, 1);
  EXPECT_EQ(factored.info, 7);
  EXPECT_LT(Distance(Squared(factored.R()), Permuted(a, factored.jpvt)), kThreshold);
  EXPECT_EQ((std::vector<int>{factored.jpvt[0], factored.jpvt[1]}), (std::vector<int>{4, 7}));
  std::vector<int> last = {factored.jpvt[5], factored.jpvt[6]};
  std::sort(last.begin(), last.end());
  EXPECT_EQ(last, (std::vector<int>{2, 6}));
}

TEST(LinpackDchdc, CountsTheRowsThatItCouldMake) {
  // Of whole numbers, so that nothing is left but zeros.
  Columns a(4, 4);
  for (int j = 0; j < 4; ++j) {
    for (int i = 0; i < 4; ++i) a(i, j) = 4.0 * (i < 2) * (j < 2) + 9.0 * (i >= 2) * (j >= 2);
  }
  const Factored pivoted(a, {0, 0, 0, 0}, 1);
  EXPECT_EQ(pivoted.info, 2);
  EXPECT_EQ(pivoted.a(0, 0), 3.0);
  EXPECT_EQ(pivoted.a(1, 1), 2.0);
  EXPECT_EQ(Factored(a, {}, 0).info, 1);
  a(0, 0) = std::nan("");
  EXPECT_EQ(Factored(a, {}, 0).info, 0);
  EXPECT_EQ(Factored(Columns(0, 0), {}, 1).info, 0);
}

/// Rows of a least squares problem with two responses, and what is kept of it.
struct Problem {
  Columns x;
  Columns y;
  Columns r;
  Columns z;
  Vector rho;

  Problem(const Columns& design, const Columns& responses)
      : x(design), y(responses), r(x.Cols(), x.Cols(), 2), z(x.Cols(), y.Cols(), 1) {
    const int p = x.Cols();
    Columns crossProducts = Squared(x);
    LAPACKE_dpotrf(LAPACK_COL_MAJOR, 'U', p, crossProducts.Data(), p);
    r = WithGap(WithoutLower(crossProducts), 2);
    for (int j = 0; j < y.Cols(); ++j) {
      // z = inv(R')X'y; what is left of y'y is the square of rho.
      Vector rest(static_cast<std::size_t>(p));
      double squares = 0.0;
      for (int i = 0; i < x.Rows(); ++i) {
        squares += y(i, j) * y(i, j);
        for (int k = 0; k < p; ++k) rest[static_cast<std::size_t>(k)] += x(i, k) * y(i, j);
      }
      LAPACKE_dtrtrs(LAPACK_COL_MAJOR, 'U', 'T', 'N', p, 1, crossProducts.Data(), p, rest.data(),
                     p);
      for (int k = 0; k < p; ++k) {
        z(k, j) = rest[static_cast<std::size_t>(k)];
        squares -= z(k, j) * z(k, j);
      }
      rho.push_back(std::sqrt(std::max(squares, 0.0)));
    }
  }

  Vector Row(const Columns& from, int i) const {
    Vector row;
    for (int j = 0; j < from.Cols(); ++j) row.push_back(from(i, j));
    return row;
  }
};

Columns WithoutLastRow(const Columns& a) {
  return Leading(a, a.Rows() - 1, a.Cols());
}

/// Row signs of a factor are free: those of `actual` are brought to a positive diagonal. With
/// twice as many rows as columns, cross-products have conditions well below a hundred; rho, a
/// difference of squares, has a digit less.
void ExpectSame(const Problem& actual, const Problem& expected) {
  for (int i = 0; i < actual.r.Rows(); ++i) {
    const double sign = actual.r(i, i) < 0.0 ? -1.0 : 1.0;
    for (int j = i; j < actual.r.Cols(); ++j) {
      EXPECT_NEAR(sign * actual.r(i, j), expected.r(i, j), 1e-12);
    }
    for (int j = 0; j < actual.z.Cols(); ++j) {
      EXPECT_NEAR(sign * actual.z(i, j), expected.z(i, j), 1e-12);
    }
  }
  for (std::size_t j = 0; j < expected.rho.size(); ++j) {
    EXPECT_NEAR(actual.rho[j], expected.rho[j], 1e-11);
  }
  EXPECT_TRUE(actual.r.GapsAreUntouched() && actual.z.GapsAreUntouched());
  EXPECT_TRUE(WithoutLower(actual.r) == actual.r) << "the lower triangle was touched";
}

TEST(LinpackUpdates, AddARowAndTakeItOutAgain) {
  RandomColumns source(84);
  for (const int p : {1, 2, 3, 10, 40}) {
    for (const int nz : {0, 1, 2}) {
      SCOPED_TRACE(testing::Message() << p << ", " << nz);
      const Problem full(source.Matrix(3 * p + 2, p), source.Matrix(3 * p + 2, nz));
      const Problem less(WithoutLastRow(full.x), WithoutLastRow(full.y));
      const Vector x = full.Row(full.x, full.x.Rows() - 1);
      const Vector y = full.Row(full.y, full.x.Rows() - 1);
      Vector c = Junk(p);
      Vector s = Junk(p);
      Problem changed = less;
      Linpack::Dchud(changed.r.Data(), changed.r.Ld(), p, x.data(), changed.z.Data(),
                     changed.z.Ld(), nz, y.data(), changed.rho.data(), c.data(), s.data());
      ExpectSame(changed, full);
      int info = -1;
      Linpack::Dchdd(changed.r.Data(), changed.r.Ld(), p, x.data(), changed.z.Data(),
                     changed.z.Ld(), nz, y.data(), changed.rho.data(), c.data(), s.data(), &info);
      EXPECT_EQ(info, 0);
      ExpectSame(changed, less);
    }
  }
}

TEST(LinpackUpdates, RefuseToTakeOutWhatIsNotThere) {
  Columns r = Identity(2);
  Columns z(2, 1);
  z(0, 0) = 5.0;
  for (const Vector& x : {Vector{2.0, 0.0}, Vector{1.0, 0.0}, Vector{std::nan(""), 0.0}}) {
    const double y = 1.0;
    double rho = 3.0;
    Vector c(2);
    Vector s(2);
    int info = 0;
    Linpack::Dchdd(r.Data(), 2, 2, x.data(), z.Data(), 2, 1, &y, &rho, c.data(), s.data(), &info);
    EXPECT_EQ(info, -1);
    EXPECT_TRUE(r == Identity(2));
    EXPECT_EQ(z(0, 0), 5.0);
    EXPECT_EQ(rho, 3.0);
  }
}

TEST(LinpackUpdates, MarkNormsThatWouldBeImaginary) {
  Columns r = Identity(1);
  const double x = 0.0;
  const Vector y = {1.0, 0.5, 0.0};
  Vector rho = {0.5, 0.5, 0.0};
  Columns z(1, 3);
  double c = 0.0;
  double s = 0.0;
  int info = 0;
  Linpack::Dchdd(r.Data(), 1, 1, &x, z.Data(), 1, 3, y.data(), rho.data(), &c, &s, &info);
  EXPECT_EQ(info, 1);
  EXPECT_EQ(rho, (Vector{-1.0, 0.0, 0.0}));
}

TEST(LinpackUpdates, LeaveNegativeNormsAlone) {
  Columns r = Identity(1);
  const double x = 1.0;
  const double y = 2.0;
  double rho = -1.0;
  Columns z(1, 1);
  double c = 0.0;
  double s = 0.0;
  Linpack::Dchud(r.Data(), 1, 1, &x, z.Data(), 1, 1, &y, &rho, &c, &s);
  EXPECT_EQ(rho, -1.0);
  EXPECT_DOUBLE_EQ(z(0, 0), std::sqrt(2.0));
}

std::vector<int> ShiftedOrder(int p, int k, int l, int job) {
  std::vector<int> order;
  for (int j = 1; j <= p; ++j) order.push_back(j);
  const auto first = order.begin() + (k - 1);
  const auto end = order.begin() + l;
  std::rotate(first, job == 1 ? end - 1 : first + 1, end);
  return order;
}

TEST(LinpackUpdates, ShiftColumns) {
  RandomColumns source(85);
  for (const int p : {2, 3, 5, 12}) {
    const Problem start(source.Matrix(2 * p + 3, p), source.Matrix(2 * p + 3, 2));
    for (int k = 1; k < p; ++k) {
      for (int l = k + 1; l <= p; ++l) {
        for (const int job : {1, 2}) {
          SCOPED_TRACE(testing::Message() << p << ": " << k << " to " << l << ", " << job);
          const Columns moved = InOrder(start.x, ShiftedOrder(p, k, l, job));
          Problem changed = start;
          changed.r = WithGap(UpperTriangle(start.r, p), 2);
          Vector c = Junk(p);
          Vector s = Junk(p);
          Linpack::Dchex(changed.r.Data(), changed.r.Ld(), p, k, l, changed.z.Data(),
                         changed.z.Ld(), 2, c.data(), s.data(), job);
          EXPECT_TRUE(WithGap(UpperTriangle(changed.r, p), 2) == changed.r);
          changed.r = WithGap(WithoutLower(changed.r), 2);
          ExpectSame(changed, Problem(moved, start.y));
        }
      }
    }
  }
}

TEST(LinpackUpdates, ShiftNothingBetweenWrongColumns) {
  for (const auto& [k, l] : {std::pair{2, 2}, {3, 2}, {0, 2}, {1, 4}}) {
    for (const int job : {1, 2}) {
      Columns r = Identity(3);
      Vector c(3);
      Linpack::Dchex(r.Data(), 3, 3, k, l, nullptr, 1, 0, c.data(), c.data(), job);
      EXPECT_TRUE(r == Identity(3));
    }
  }
}

TEST(LinpackUpdates, NothingIsTouchedWithoutColumns) {
  int info = -1;
  Linpack::Dchud(nullptr, 1, 0, nullptr, nullptr, 1, 2, nullptr, nullptr, nullptr, nullptr);
  Linpack::Dchdd(nullptr, 1, 0, nullptr, nullptr, 1, 2, nullptr, nullptr, nullptr, nullptr, &info);
  EXPECT_EQ(info, 0);
}

}  // namespace
