// SPDX-License-Identifier: Apache-2.0
// Singular values and vectors against LAPACK.
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

const std::pair<int, int> kShapes[] = {{1, 1},  {1, 2},   {1, 5},  {2, 1},  {5, 1},   {2, 2},
                                       {3, 2},  {2, 3},   {4, 4},  {4, 5},  {5, 4},   {9, 3},
                                       {3, 9},  {10, 11}, {20, 7}, {7, 20}, {30, 30}, {60, 60},
                                       {60, 5}, {5, 60},  {60, 41}};

/// Columns of left vectors that the digit asks for.
int LeftColumns(int n, int p, int digit) {
  return digit == 0 ? 0 : digit == 1 ? n : std::min(n, p);
}

struct Decomposed {
  Columns x;
  Vector s;
  Vector e;
  Columns u;
  Columns v;
  int info = -1;

  Decomposed(const Columns& given, int job)
      : x(WithGap(given, 2)),
        s(Junk(std::min(x.Rows() + 1, x.Cols()))),
        e(Junk(x.Cols())),
        u(x.Rows(), LeftColumns(x.Rows(), x.Cols(), job / 10), 1),
        v(job % 10 == 0 ? 0 : x.Cols(), job % 10 == 0 ? 0 : x.Cols(), 1) {
    Vector work = Junk(x.Rows());
    Linpack::Dsvdc(x.Data(), x.Ld(), x.Rows(), x.Cols(), s.data(), e.data(), u.Data(), u.Ld(),
                   v.Data(), v.Ld(), work.data(), job, &info);
  }
};

void ExpectValues(const Vector& s, const Columns& x) {
  const Vector expected = SingularValuesByLapack(x);
  const double unit = 2.3e-16 * std::max(x.Rows(), x.Cols()) * std::max(expected.front(), 1e-300);
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(s[i], expected[i], 10.0 * unit);
  for (std::size_t i = 1; i < s.size(); ++i) EXPECT_LE(s[i], s[i - 1]);
  EXPECT_GE(s.back(), 0.0);
}

void ExpectOrthonormal(const Columns& vectors) {
  const Columns products = Product(Transposed(vectors), vectors);
  EXPECT_LT(Distance(products, Identity(vectors.Cols())), kThreshold);
}

/// U diag(s) V' of the first min(n, p) vectors.
Columns Reassembled(const Decomposed& svd, int n, int p) {
  const int count = std::min(n, p);
  Columns scaled(n, count);
  Columns right(count, p);
  for (int k = 0; k < count; ++k) {
    for (int i = 0; i < n; ++i) scaled(i, k) = svd.u(i, k) * svd.s[static_cast<std::size_t>(k)];
    for (int j = 0; j < p; ++j) right(k, j) = svd.v(j, k);
  }
  return Product(scaled, right);
}

bool IsZero(double x) {
  return x == 0.0;
}

void ExpectDecomposition(const Columns& x) {
  const Decomposed values(x, 0);
  EXPECT_EQ(values.info, 0);
  ExpectValues(values.s, x);
  for (const int job : {1, 10, 11, 20, 21}) {
    SCOPED_TRACE(job);
    const Decomposed svd(x, job);
    EXPECT_EQ(svd.info, 0);
    EXPECT_EQ(svd.s, values.s) << "values don't depend on the vectors";
    EXPECT_TRUE(std::all_of(svd.e.begin(),
                            svd.e.begin() + static_cast<std::ptrdiff_t>(svd.s.size()), IsZero));
    if (job >= 10) ExpectOrthonormal(svd.u);
    if (job % 10 != 0) ExpectOrthonormal(svd.v);
    if (job == 11 || job == 21) {
      EXPECT_LT(Distance(Reassembled(svd, x.Rows(), x.Cols()), x), kThreshold);
    }
    EXPECT_TRUE(svd.x.GapsAreUntouched() && svd.u.GapsAreUntouched() && svd.v.GapsAreUntouched());
  }
}

TEST(LinpackSvd, DecomposesAllShapes) {
  RandomColumns source(71);
  for (const auto& [n, p] : kShapes) {
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    ExpectDecomposition(source.Matrix(n, p));
  }
}

TEST(LinpackSvd, DecomposesGradedMatrices) {
  RandomColumns source(72);
  for (const auto& [n, p] : {std::pair{12, 12}, {30, 11}, {11, 30}}) {
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    ExpectDecomposition(source.Graded(n, p));
    ExpectDecomposition(Transposed(source.Graded(p, n)));
  }
}

TEST(LinpackSvd, DecomposesMatricesOfLowRank) {
  RandomColumns source(73);
  for (const auto& [n, p] : {std::pair{10, 10}, {17, 6}, {6, 17}}) {
    for (const int rank : {0, 1, 3, 5}) {
      SCOPED_TRACE(testing::Message() << n << " by " << p << ", " << rank);
      const Columns x = Product(source.Matrix(n, rank), source.Matrix(rank, p));
      ExpectDecomposition(x);
      const Decomposed svd(x, 0);
      for (std::size_t i = static_cast<std::size_t>(rank); i < svd.s.size(); ++i) {
        EXPECT_LT(svd.s[i], 1e-14 * (1.0 + svd.s.front()));
      }
    }
  }
}

// Bidiagonal to begin with, so that zeros on the diagonal meet the splitting of blocks.
TEST(LinpackSvd, SplitsAtZerosOfTheDiagonal) {
  for (int zero = 0; zero < 6; ++zero) {
    Columns x(6, 6);
    for (int i = 0; i < 6; ++i) {
      x(i, i) = i == zero ? 0.0 : i + 1.0;
      if (i < 5) x(i, i + 1) = 1.0;
    }
    SCOPED_TRACE(zero);
    ExpectDecomposition(x);
    ExpectDecomposition(Transposed(x));
  }
}

TEST(LinpackSvd, DecomposesPermutationsAndDiagonals) {
  Columns x(5, 5);
  for (int i = 0; i < 5; ++i) x(i, (2 * i + 1) % 5) = i % 2 == 0 ? -1.0 : 1.0;
  ExpectDecomposition(x);
  Columns diagonal(4, 4);
  for (int i = 0; i < 4; ++i) diagonal(i, i) = i - 1.5;
  ExpectDecomposition(diagonal);
}

TEST(LinpackSvd, KeepsItsDigitsAtTheEndsOfTheRange) {
  RandomColumns source(74);
  const Columns x = source.Matrix(9, 6);
  const Decomposed expected(x, 11);
  for (const double scale : {0x1p-960, 0x1p+1000}) {
    const Decomposed svd(Scaled(x, scale), 11);
    EXPECT_EQ(svd.info, 0);
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(svd.s[i] / scale, expected.s[i], 1e-14);
  }
}

TEST(LinpackSvd, VectorsMayTakeThePlaceOfTheMatrix) {
  RandomColumns source(75);
  for (const auto& [n, p] : {std::pair{7, 7}, {9, 4}, {4, 9}}) {
    SCOPED_TRACE(testing::Message() << n << " by " << p);
    const Columns x = source.Matrix(n, p);
    const Decomposed expected(x, 21);
    Vector s = Junk(std::min(n + 1, p));
    Vector e = Junk(p);
    Vector work = Junk(n);
    int info = -1;
    Columns left = x;
    Linpack::Dsvdc(left.Data(), n, n, p, s.data(), e.data(), left.Data(), n, nullptr, 1,
                   work.data(), 20, &info);
    for (int j = 0; j < std::min(n, p); ++j) {
      for (int i = 0; i < n; ++i) EXPECT_EQ(left(i, j), expected.u(i, j));
    }
    if (p > n) continue;
    Columns right = x;
    Linpack::Dsvdc(right.Data(), n, n, p, s.data(), e.data(), nullptr, 1, right.Data(), n,
                   work.data(), 1, &info);
    for (int j = 0; j < p; ++j) {
      for (int i = 0; i < p; ++i) EXPECT_EQ(right(i, j), expected.v(i, j));
    }
  }
}

TEST(LinpackSvd, StopsAtWhatIsNotFinite) {
  RandomColumns source(76);
  for (const double bad : {std::nan(""), HUGE_VAL}) {
    for (const auto& [n, p] : {std::pair{5, 5}, {3, 6}, {6, 3}, {4, 5}}) {
      for (int place = 0; place < n * p; ++place) {
        Columns x = source.Matrix(n, p);
        x(place % n, place / n) = bad;
        for (const int job : {11, 21}) EXPECT_GT(Decomposed(x, job).info, 0);
      }
    }
  }
}

TEST(LinpackSvd, OnlyInfoIsSetWithoutRowsOrColumns) {
  for (const auto& [n, p] : {std::pair{0, 3}, {3, 0}, {-1, -1}}) {
    int info = -1;
    Linpack::Dsvdc(nullptr, 1, n, p, nullptr, nullptr, nullptr, 1, nullptr, 1, nullptr, 11, &info);
    EXPECT_EQ(info, 0);
  }
}

}  // namespace
