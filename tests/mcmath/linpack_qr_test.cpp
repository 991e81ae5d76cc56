// SPDX-License-Identifier: Apache-2.0
// Orthogonal decompositions of rectangular matrices against LAPACK, and least squares with them.
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

const std::pair<int, int> kShapes[] = {{1, 1},  {1, 4},   {4, 1},   {2, 2},   {5, 3},   {3, 5},
                                       {7, 7},  {20, 6},  {6, 20},  {33, 32}, {32, 33}, {60, 60},
                                       {60, 9}, {60, 45}, {45, 60}, {13, 2},  {2, 13}};

/// A decomposition; with marks, it is one with exchanges of columns.
struct Decomposed {
  Columns x;
  Vector qraux;
  std::vector<int> jpvt;

  explicit Decomposed(const Columns& given) : x(WithGap(given, 2)), qraux(Junk(given.Cols())) {
    Linpack::Dqrdc(x.Data(), x.Ld(), x.Rows(), x.Cols(), qraux.data(), nullptr, nullptr, 0);
  }

  Decomposed(const Columns& given, std::vector<int> marks)
      : x(WithGap(given, 2)), qraux(Junk(given.Cols())), jpvt(std::move(marks)) {
    Vector work = Junk(given.Cols());
    Linpack::Dqrdc(x.Data(), x.Ld(), x.Rows(), x.Cols(), qraux.data(), jpvt.data(), work.data(), 1);
  }

  int Rank() const { return std::min(x.Rows(), x.Cols()); }
  Columns R() const { return UpperTriangle(x, Rank()); }

  /// Q y or Q'y, of the first k columns.
  Vector Apply(Vector y, bool transposed, int k) {
    int info = -1;
    double* const result = y.data();
    Linpack::Dqrsl(x.Data(), x.Ld(), x.Rows(), k, qraux.data(), y.data(),
                   transposed ? nullptr : result, transposed ? result : nullptr, nullptr, nullptr,
                   nullptr, transposed ? 1000 : 10000, &info);
    EXPECT_EQ(info, 0);
    return y;
  }

  /// All of Q, column by column.
  Columns Q() {
    Columns q(x.Rows(), x.Rows());
    for (int j = 0; j < x.Rows(); ++j) {
      Vector unit(static_cast<std::size_t>(x.Rows()));
      unit[static_cast<std::size_t>(j)] = 1.0;
      const Vector column = Apply(unit, false, Rank());
      for (int i = 0; i < x.Rows(); ++i) q(i, j) = column[static_cast<std::size_t>(i)];
    }
    return q;
  }
};

/// The first columns of Q times R.
Columns Reassembled(Decomposed& qr) {
  const Columns q = qr.Q();
  return Product(Leading(q, q.Rows(), qr.Rank()), qr.R());
}

/// R by LAPACK, which chooses the same signs.
Columns RByLapack(Columns x) {
  const int rank = std::min(x.Rows(), x.Cols());
  Vector tau(static_cast<std::size_t>(rank));
  LAPACKE_dgeqrf(LAPACK_COL_MAJOR, x.Rows(), x.Cols(), x.Data(), x.Ld(), tau.data());
  return UpperTriangle(x, rank);
}

TEST(LinpackQr, DecomposesAllShapes) {
  RandomColumns source(61);
  for (const auto& [n, p] : kShapes) {
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    const Columns x = source.Matrix(n, p);
    Decomposed qr(x);
    EXPECT_LT(Distance(Reassembled(qr), x), kThreshold);
    const Columns q = qr.Q();
    EXPECT_LT(Distance(Product(Transposed(q), q), Identity(n)), kThreshold);
    EXPECT_TRUE(qr.x.GapsAreUntouched());
    if (n >= p) {
      // R is as good as its condition, below a hundred, leaves it.
      EXPECT_LT(Distance(qr.R(), RByLapack(x)), 100 * kThreshold);
    }
  }
}

TEST(LinpackQr, TakesColumnsByTheirRemainingNorm) {
  RandomColumns source(62);
  for (const auto& [n, p] : kShapes) {
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    const Columns x = source.Matrix(n, p);
    Decomposed qr(x, std::vector<int>(static_cast<std::size_t>(p)));
    EXPECT_LT(Distance(Reassembled(qr), InOrder(x, qr.jpvt)), kThreshold);
    Columns copy = x;
    std::vector<int> expected(static_cast<std::size_t>(p));
    Vector tau(static_cast<std::size_t>(p));
    LAPACKE_dgeqp3(LAPACK_COL_MAJOR, n, p, copy.Data(), copy.Ld(), expected.data(), tau.data());
    for (int k = 0; k < qr.Rank(); ++k) {
      const auto place = static_cast<std::size_t>(k);
      // The order of the last columns hangs on the last digits where only one row is left.
      if (k + 1 < n) {
        EXPECT_EQ(qr.jpvt[place], expected[place]);
      }
      for (int j = k + 1; j < p; ++j) {
        double rest = 0.0;
        for (int i = k; i <= std::min(j, qr.Rank() - 1); ++i) rest += qr.x(i, j) * qr.x(i, j);
        // Norms are computed afresh when half of their digits are gone.
        EXPECT_LE(std::sqrt(rest), std::fabs(qr.x(k, k)) * (1 + 1e-7));
      }
    }
  }
}

TEST(LinpackQr, ShowsTheRankOfDependentColumns) {
  RandomColumns source(63);
  for (const int rank : {0, 1, 4, 9}) {
    SCOPED_TRACE(rank);
    const Columns x = Product(source.Matrix(30, rank), source.Matrix(rank, 12));
    Decomposed qr(x, std::vector<int>(12));
    for (int k = 0; k < 12; ++k) {
      if (k < rank) {
        EXPECT_GT(std::fabs(qr.x(k, k)), 1e-3);
      }
      if (k >= rank) {
        EXPECT_LT(std::fabs(qr.x(k, k)), 1e-13);
      }
    }
  }
}

TEST(LinpackQr, KeepsInitialAndFinalColumnsInTheirPlaces) {
  RandomColumns source(64);
  const Columns x = source.Matrix(15, 8);
  // Columns 3 and 7 first, 1 and 5 last.
  Decomposed qr(x, {-1, 0, 1, 0, -1, 0, 1, 0});
  EXPECT_LT(Distance(Reassembled(qr), InOrder(x, qr.jpvt)), kThreshold);
  EXPECT_EQ((std::vector<int>{qr.jpvt[0], qr.jpvt[1]}), (std::vector<int>{3, 7}));
  std::vector<int> last(qr.jpvt.begin() + 6, qr.jpvt.end());
  std::sort(last.begin(), last.end());
  EXPECT_EQ(last, (std::vector<int>{1, 5}));
  for (int k = 2; k < 6; ++k) {
    for (int j = k + 1; j < 6; ++j) {
      EXPECT_LE(std::fabs(qr.x(j, j)), std::fabs(qr.x(k, k)) * (1 + 1e-7));
    }
  }
}

TEST(LinpackQr, MarksOfAnyNumberAreReadBySign) {
  RandomColumns source(65);
  const Columns x = source.Matrix(6, 4);
  const Decomposed small(x, {0, -1, 1, 0});
  const Decomposed large(x, {0, -2147483647 - 1, 2147483647, 0});
  EXPECT_EQ(small.jpvt, large.jpvt);
  EXPECT_TRUE(small.x == large.x);
}

// Norms that shrink by nearly all that they were are computed afresh.
TEST(LinpackQr, ChoosesRightAfterNormsHaveCancelled) {
  Columns x(4, 3);
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 3; ++j) x(i, j) = 1e8;
  }
  x(0, 1) += 1.0;
  x(1, 2) += 64.0;
  x(2, 0) += 1024.0;
  const Decomposed qr(x, {0, 0, 0});
  EXPECT_EQ(qr.jpvt, (std::vector<int>{1, 3, 2}));
}

/// Least squares by LAPACK.
Vector CoefficientsByLapack(Columns x, Vector y) {
  const int p = x.Cols();
  LAPACKE_dgels(LAPACK_COL_MAJOR, 'N', x.Rows(), p, 1, x.Data(), x.Ld(), y.data(), x.Rows());
  y.resize(static_cast<std::size_t>(p));
  return y;
}

/// Of up to 60 entries near 1, to 60 eps times conditions that stay below 1000.
void ExpectNear(const Vector& actual, const Vector& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-11);
}

/// Fitted values of the first k columns.
Vector Fitted(const Columns& x, const Vector& b) {
  Vector all(static_cast<std::size_t>(x.Cols()));
  std::copy(b.begin(), b.end(), all.begin());
  return Product(x, all);
}

Vector Minus(Vector a, const Vector& b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] -= b[i];
  return a;
}

/// All that Dqrsl can make of y, each in an array of its own.
struct LeastSquares {
  Vector qy;
  Vector qty;
  Vector b;
  Vector rsd;
  Vector xb;
  int info = -1;

  LeastSquares(Decomposed& qr, const Vector& y, int k, int job)
      : qy(y.size(), 1e99), qty(qy), b(static_cast<std::size_t>(k), 1e99), rsd(qy), xb(qy) {
    Linpack::Dqrsl(qr.x.Data(), qr.x.Ld(), qr.x.Rows(), k, qr.qraux.data(), y.data(), qy.data(),
                   qty.data(), b.data(), rsd.data(), xb.data(), job, &info);
  }
};

TEST(LinpackQr, SolvesLeastSquares) {
  RandomColumns source(66);
  for (const auto& [n, p] : kShapes) {
    if (n < p) continue;
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    const Columns x = source.Matrix(n, p);
    Decomposed qr(x);
    const Decomposed before = qr;
    const Vector y = source.Entries(n);
    const LeastSquares all(qr, y, p, 11111);
    EXPECT_EQ(all.info, 0);
    EXPECT_TRUE(qr.x == before.x);
    EXPECT_EQ(qr.qraux, before.qraux);
    ExpectNear(all.b, CoefficientsByLapack(x, y));
    ExpectNear(all.xb, Fitted(x, all.b));
    ExpectNear(all.rsd, Minus(y, Fitted(x, all.b)));
    ExpectNear(Product(qr.Q(), y), all.qy);
    ExpectNear(Product(Transposed(qr.Q()), y), all.qty);
  }
}

TEST(LinpackQr, UsesTheFirstColumnsOnly) {
  RandomColumns source(67);
  const Columns x = source.Matrix(12, 5);
  Decomposed qr(x);
  const Vector y = source.Entries(12);
  for (int k = 1; k <= 5; ++k) {
    const Columns first = Leading(x, 12, k);
    const LeastSquares fit(qr, y, k, 111);
    ExpectNear(fit.b, CoefficientsByLapack(first, y));
    ExpectNear(fit.xb, Fitted(first, fit.b));
    ExpectNear(fit.rsd, Minus(y, fit.xb));
  }
}

TEST(LinpackQr, MakesWhatTheDigitsAskForAndNoMore) {
  RandomColumns source(68);
  Decomposed qr(source.Matrix(9, 4));
  const Vector y = source.Entries(9);
  const LeastSquares all(qr, y, 4, 11111);
  for (int digits = 0; digits < 32; ++digits) {
    const bool wanted[] = {(digits & 16) != 0, (digits & 8) != 0, (digits & 4) != 0,
                           (digits & 2) != 0, (digits & 1) != 0};
    int job = 0;
    for (const bool bit : wanted) job = 10 * job + (bit ? 1 : 0);
    SCOPED_TRACE(job);
    const LeastSquares some(qr, y, 4, job);
    const Vector junk = Junk(9);
    EXPECT_EQ(some.qy, wanted[0] ? all.qy : junk);
    EXPECT_EQ(some.qty, job % 10000 != 0 ? all.qty : junk);
    EXPECT_EQ(some.b, wanted[2] ? all.b : Junk(4));
    EXPECT_EQ(some.rsd, wanted[3] ? all.rsd : junk);
    EXPECT_EQ(some.xb, wanted[4] ? all.xb : junk);
  }
}

TEST(LinpackQr, OutputsMayShareTheArrayOfTheResponse) {
  RandomColumns source(69);
  Decomposed qr(source.Matrix(9, 4));
  const Vector y = source.Entries(9);
  const LeastSquares all(qr, y, 4, 11111);
  Columns& x = qr.x;
  const auto run = [&](Vector& shared, double* qy, double* qty, double* b, double* rsd, double* xb,
                       int job) {
    int info = -1;
    Linpack::Dqrsl(x.Data(), x.Ld(), 9, 4, qr.qraux.data(), shared.data(), qy, qty, b, rsd, xb, job,
                   &info);
    EXPECT_EQ(info, 0);
  };
  Vector b(4);
  Vector other(9);
  Vector shared = y;
  run(shared, nullptr, shared.data(), b.data(), shared.data(), nullptr, 110);
  EXPECT_EQ(shared, all.rsd);
  EXPECT_EQ(b, all.b);
  shared = y;
  run(shared, nullptr, shared.data(), b.data(), other.data(), shared.data(), 111);
  EXPECT_EQ(shared, all.xb);
  EXPECT_EQ(other, all.rsd);
  shared = y;
  run(shared, nullptr, shared.data(), shared.data(), nullptr, other.data(), 101);
  EXPECT_TRUE(std::equal(all.b.begin(), all.b.end(), shared.begin()));
  EXPECT_EQ(other, all.xb);
  shared = y;
  run(shared, shared.data(), other.data(), nullptr, other.data(), nullptr, 10010);
  EXPECT_EQ(shared, all.qy);
  EXPECT_EQ(other, all.rsd);
}

TEST(LinpackQr, ReportsASingularFactor) {
  Columns x(3, 2);
  x(0, 0) = 1.0;
  Decomposed qr(x);
  const LeastSquares fit(qr, {1.0, 2.0, 3.0}, 2, 100);
  EXPECT_EQ(fit.info, 2);
  Decomposed zero(Columns(1, 1));
  EXPECT_EQ(LeastSquares(zero, {1.0}, 1, 100).info, 1);
}

TEST(LinpackQr, DecomposesAtTheEndsOfTheRange) {
  RandomColumns source(70);
  const Columns x = source.Matrix(8, 5);
  const Decomposed expected(x);
  for (const double scale : {0x1p-1000, 0x1p+1000}) {
    const Columns r = Decomposed(Scaled(x, scale)).R();
    for (int j = 0; j < 5; ++j) {
      for (int i = 0; i <= j; ++i) EXPECT_NEAR(r(i, j) / scale, expected.x(i, j), 1e-14);
    }
  }
}

TEST(LinpackQr, NothingIsTouchedWithoutRowsOrColumns) {
  for (const auto& [n, p] : {std::pair{0, 0}, {-1, -1}}) {
    Linpack::Dqrdc(nullptr, 1, n, p, nullptr, nullptr, nullptr, 1);
  }
  int info = -1;
  Linpack::Dqrsl(nullptr, 1, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 11111, &info);
  EXPECT_EQ(info, 0);
}

}  // namespace
