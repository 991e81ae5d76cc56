// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"

#include <climits>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;
using mctest::ExtendedMatrix;
using mctest::NoisyDefinite;
using mctest::Packed;
using mctest::WithDependentRow;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kMissing = MCMV::gMissingValue;
constexpr int kLadder[] = {1, 2, 3, 5, 8, 13, 21, 34, 55};

std::vector<double> Ones(int n) {
  return std::vector<double>(static_cast<std::size_t>(n), 1.0);
}

MCSymMatrix TooLarge() {
  return MCSymMatrix(70000);
}

TEST(MCSymMatrixCholesky, TheFactorTimesItsTransposeIsTheMatrix) {
  for (const int n : kLadder) {
    SCOPED_TRACE(n);
    const MCSymMatrix original = NoisyDefinite(n, 10 + static_cast<unsigned>(n));
    MCSymMatrix factor = original;
    EXPECT_EQ(factor.LTChol(DiagonalOf(original), 1e-12, true), 0);
    const ExtendedMatrix L = ExtendedMatrix(factor).LowerTriangle();
    // Backward error of the factorisation, (n + 1) 2^-53 |L||L'| (Higham, Accuracy and Stability,
    // Theorem 10.3); no element of |L||L'| exceeds the largest diagonal element.
    const long double bound = 2 * (n + 1) * 0x1p-53L * ExtendedMatrix(original).Largest();
    EXPECT_LE((L * L.Transposed()).Difference(ExtendedMatrix(original)), bound);
  }
}

// The symmetric Pascal matrix C(i+j, i) has the binomial triangle C(i, j) as its factor (Higham,
// Accuracy and Stability, section 28.4). All numbers are integers that doubles hold.
TEST(MCSymMatrixCholesky, ThePascalMatrixFactorsIntoTheBinomialTriangle) {
  constexpr int n = 20;
  std::vector<std::vector<double>> binomial(2 * n, std::vector<double>(2 * n));
  for (std::size_t i = 0; i < 2 * n; ++i) {
    binomial[i][0] = 1;
    for (std::size_t j = 1; j <= i; ++j)
      binomial[i][j] = binomial[i - 1][j - 1] + binomial[i - 1][j];
  }
  MCSymMatrix matrix(n);
  MCSymMatrix expected(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      const auto row = static_cast<std::size_t>(i);
      matrix.SetElem(i, j, binomial[static_cast<std::size_t>(i + j)][row]);
      expected.SetElem(i, j, binomial[row][static_cast<std::size_t>(j)]);
    }
  }
  EXPECT_EQ(matrix.LTChol(Ones(n), 1e-12, true), 0);
  EXPECT_EQ(matrix.AsVectorConst(), expected.AsVectorConst());
}

// min(i, j), from 1, has a factor of ones.
TEST(MCSymMatrixCholesky, TheMatrixOfMinimaFactorsIntoOnes) {
  for (const int n : kLadder) {
    MCSymMatrix matrix(n);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j <= i; ++j) matrix.SetElem(i, j, j + 1);
    }
    EXPECT_EQ(matrix.LTChol(Ones(n), 1e-12, true), 0);
    EXPECT_EQ(matrix.AsVectorConst(), std::vector<double>(matrix.AsVectorConst().size(), 1.0));
  }
}

TEST(MCSymMatrixCholesky, ADependentRowIsCountedAndKeepsItsOffDiagonalEntries) {
  MCSymMatrix matrix = WithDependentRow();
  MCBitSet kept;
  EXPECT_EQ(matrix.LTChol({6, 24, 10}, 1e-12, kept, true), 1);
  EXPECT_DOUBLE_EQ(matrix.GetElem(0, 0), std::sqrt(6.0));
  EXPECT_DOUBLE_EQ(matrix.GetElem(1, 0), 12 / std::sqrt(6.0));
  EXPECT_EQ(matrix.GetElem(1, 1), 0.0);
  EXPECT_DOUBLE_EQ(matrix.GetElem(2, 0), 5 / std::sqrt(6.0));
  EXPECT_EQ(matrix.GetElem(2, 1), 0.0);
  EXPECT_DOUBLE_EQ(matrix.GetElem(2, 2), std::sqrt(10 - 25.0 / 6));
  EXPECT_EQ(kept.Size(), 3);
  EXPECT_TRUE(kept.IsIn(0));
  EXPECT_FALSE(kept.IsIn(1));
  EXPECT_TRUE(kept.IsIn(2));
}

TEST(MCSymMatrixCholesky, ARemainderEqualToTheToleranceIsRedundant) {
  const struct {
    double diagonal, scale, tol;
    int redundant;
  } cases[] = {{4, 2, 2, 1},      {4, 2, 1.999, 0},      {0, 0, 0, 1},         {5e-324, 0, 0, 0},
               {-1, 1, 0.1, 1},   {kNaN, 1, 0, 1},       {kInfinity, 1, 0, 0}, {1, 1, kNaN, 1},
               {1, kNaN, 0.1, 1}, {1, kInfinity, 0.1, 1}};
  for (const auto& c : cases) {
    MCSymMatrix matrix = Packed({c.diagonal});
    EXPECT_EQ(matrix.LTChol({c.scale}, c.tol, true), c.redundant) << c.diagonal << " " << c.tol;
  }
}

TEST(MCSymMatrixCholesky, AZeroRowIsRedundantUnderAZeroTolerance) {
  MCSymMatrix matrix = Packed({1, 0, 0, 0, 0, 1});
  EXPECT_EQ(matrix.LTChol({0, 0, 0}, 0.0, true), 1);
}

TEST(MCSymMatrixCholesky, UncheckedNegativeTolerancesLetZeroAndNegativeRemaindersPass) {
  MCSymMatrix zero = Packed({0});
  MCBitSet kept;
  EXPECT_EQ(zero.LTChol({1}, -1.0, kept, false), 0);
  EXPECT_EQ(zero.GetElem(0, 0), 0.0);
  EXPECT_TRUE(kept.IsIn(0));

  // The root of the first row is NaN, by which the second one is divided.
  MCSymMatrix negative = Packed({-1, 1, 1});
  EXPECT_EQ(negative.LTChol({1, 1}, -2.0, kept, false), 1);
  EXPECT_TRUE(std::isnan(negative.GetElem(0, 0)));
  EXPECT_TRUE(std::isnan(negative.GetElem(1, 0)));
  EXPECT_EQ(negative.GetElem(1, 1), 0.0);
}

TEST(MCSymMatrixCholesky, MisuseIsRefusedWithTheMatrixUnchanged) {
  const MCSymMatrix original = Packed({4, 2, 3});
  const struct {
    std::vector<double> scale;
    double tol;
    bool check;
    int answer;
  } cases[] = {
      {{4, 3}, -1e-300, true, -1}, {{4, -3}, 1e-12, true, -1},   {{4}, 1e-12, true, -1},
      {{4}, 1e-12, false, -1},     {{4, 3, -1}, 1e-12, true, 0}, {{4, -3}, 1e-12, false, 0},
      {{4, 3}, -1e-300, false, 0},
  };
  for (const auto& c : cases) {
    MCSymMatrix matrix = original;
    EXPECT_EQ(matrix.LTChol(c.scale, c.tol, c.check), c.answer);
    EXPECT_EQ(matrix.AsVectorConst() == original.AsVectorConst(), c.answer < 0);
    matrix = original;
    MCBitSet kept(1);
    kept.Set(0, true);
    EXPECT_EQ(matrix.LTChol(c.scale, c.tol, kept, c.check), c.answer);
    EXPECT_EQ(matrix.AsVectorConst() == original.AsVectorConst(), c.answer < 0);
    // The set is sized and cleared first of all.
    EXPECT_EQ(kept.Size(), 2);
    EXPECT_EQ(kept.InSet(), c.answer < 0 ? 0 : 2);
  }
}

TEST(MCSymMatrixCholesky, ALargerSetKeepsItsSizeAndIsCleared) {
  MCSymMatrix matrix = Packed({4, 2, 3});
  MCBitSet kept(5);
  kept.Negate();
  EXPECT_EQ(matrix.LTChol({4, 3}, 1e-12, kept, true), 0);
  EXPECT_EQ(kept.Size(), 5);
  EXPECT_EQ(kept.InSet(), 2);
}

TEST(MCSymMatrixCholesky, NoRowsGiveNoRedundantOnes) {
  for (MCSymMatrix matrix : {MCSymMatrix(), TooLarge()}) {
    MCBitSet kept;
    double minDiag = 5;
    EXPECT_EQ(matrix.LTChol({}, 1e-12, true), 0);
    EXPECT_EQ(matrix.LTChol({}, -1.0, true), -1);
    EXPECT_EQ(matrix.LTChol({}, 1e-12, kept, true), 0);
    EXPECT_EQ(matrix.LTChol(1e-12, minDiag, true), 0);
    EXPECT_EQ(minDiag, kMissing);
  }
}

TEST(MCSymMatrixCholesky, TheSmallestDiagonalIsReported) {
  MCSymMatrix matrix = Packed({16, 0, 9, 0, 0, 25});
  double minDiag = 0;
  EXPECT_EQ(matrix.LTChol(1e-12, minDiag, true), 0);
  EXPECT_EQ(minDiag, 3.0);
  matrix = WithDependentRow();
  EXPECT_EQ(matrix.LTChol(1e-12, minDiag, true), 1);
  EXPECT_EQ(minDiag, 0.0);
  matrix = Packed({4});
  EXPECT_EQ(matrix.LTChol(-1.0, minDiag, true), -1);
  EXPECT_EQ(minDiag, kMissing);
  EXPECT_EQ(matrix.GetElem(0, 0), 4.0);
}

TEST(MCSymMatrixCholesky, ADiagonalBelowTheToleranceIsJudgedAgainstOne) {
  // 1e-9 beside a tolerance of 1e-8: against itself it would stay, against 1 it is redundant.
  MCSymMatrix matrix = Packed({1, 0, 1e-9});
  double minDiag = 0;
  EXPECT_EQ(matrix.LTChol(1e-8, minDiag, true), 1);
  MCSymMatrix kept = Packed({1, 0, 1e-9});
  EXPECT_EQ(kept.LTChol({1, 1e-9}, 1e-8, true), 0);
}

// ---- lists of independent rows ----

TEST(MCSymMatrixCholIndNonRed, ListsTheRowsAndLeavesTheMatrixAlone) {
  const struct {
    int maxCount;
    double tol;
    std::vector<int> indices;
  } cases[] = {{0, 1e-12, {0, 2}},  {-5, 1e-12, {0, 2}}, {1, 1e-12, {0}}, {2, 1e-12, {0, 2}},
               {99, 1e-12, {0, 2}}, {0, -1e-12, {}},     {0, kNaN, {}},   {0, 2.0, {}}};
  for (const auto& c : cases) {
    MCSymMatrix matrix = WithDependentRow();
    std::vector<int> indices = {7, 8};
    EXPECT_EQ(matrix.CholIndNonRed(c.maxCount, c.tol, indices), static_cast<int>(c.indices.size()));
    EXPECT_EQ(indices, c.indices);
    EXPECT_EQ(matrix.AsVectorConst(), WithDependentRow().AsVectorConst());
  }
  std::vector<int> indices = {7};
  EXPECT_EQ(MCSymMatrix().CholIndNonRed(0, 1e-12, indices), 0);
  EXPECT_TRUE(indices.empty());
}

TEST(MCSymMatrixCholIndNonRed, StopsBeforeItReadsBeyondTheLimit) {
  MCSymMatrix matrix = Packed({1, 0, 1, kNaN, kNaN, kNaN});
  std::vector<int> indices;
  EXPECT_EQ(matrix.CholIndNonRed(2, 1e-12, indices), 2);
  EXPECT_EQ(indices, (std::vector<int>{0, 1}));
}

// ---- dependence among masked rows ----

MCBitSet Mask(const std::vector<bool>& bits) {
  MCBitSet mask;
  for (const bool bit : bits) mask.Append(bit);
  return mask;
}

TEST(MCSymMatrixCheckMDependent, CountsDependentRowsAmongTheMaskedOnly) {
  const std::vector<double> packed = WithDependentRow().AsVectorConst();
  const struct {
    std::vector<bool> mask;
    int rows, answer;
  } cases[] = {{{true, true, true}, 3, 1},    {{true, false, true}, 2, 0},
               {{false, true, true}, 2, 0},   {{true, true, false}, 2, 1},
               {{false, false, false}, 0, 0}, {{true, true, true, true}, 3, 1}};
  for (const auto& c : cases) {
    MCSymMatrix work(4, 2);
    EXPECT_EQ(work.CheckMDependent(3, packed, Mask(c.mask), 1e-12), c.answer);
    EXPECT_EQ(work.GetNRows(), c.rows);
    EXPECT_EQ(work.GetNBlocks(), 1);
  }
  MCSymMatrix work;
  EXPECT_EQ(work.CheckMDependent(3, packed, Mask({true, false, true}), 1e-12), 0);
  EXPECT_DOUBLE_EQ(work.GetElem(0, 0), std::sqrt(6.0));
  EXPECT_DOUBLE_EQ(work.GetElem(1, 0), 5 / std::sqrt(6.0));
}

TEST(MCSymMatrixCheckMDependent, MisuseIsRefusedWithTheMatrixUnchanged) {
  const struct {
    int m;
    std::size_t entries;
    int bits, answer;
  } cases[] = {{-1, 6, 3, -1},        {3, 5, 3, -1},      {3, 6, 2, -1},
               {0, 0, 0, 0},          {46341, 6, 3, -1},  {46341, 6, 46341, -1},
               {65536, 0, 65536, -1}, {INT_MAX, 6, 3, -1}};
  for (const auto& c : cases) {
    MCSymMatrix work = Packed({1, 2, 3});
    EXPECT_EQ(work.CheckMDependent(c.m, std::vector<double>(c.entries), MCBitSet(c.bits), 1e-12),
              c.answer);
    EXPECT_EQ(work.AsVectorConst(), (std::vector<double>{1, 2, 3}));
  }
}

TEST(MCSymMatrixCheckMDependent, WorksOnTheTriangleOfTheMatrixItself) {
  MCSymMatrix work = WithDependentRow();
  EXPECT_EQ(work.CheckMDependent(3, work.AsVectorConst(), Mask({false, true, true}), 1e-12), 0);
  EXPECT_DOUBLE_EQ(work.GetElem(0, 0), std::sqrt(24.0));
  EXPECT_DOUBLE_EQ(work.GetElem(1, 0), 10 / std::sqrt(24.0));
}

TEST(MCSymMatrixCheckMDependent, MemoryExhaustionWhileSizingIsTold) {
  MCSymMatrix work;
  const std::vector<double> packed = WithDependentRow().AsVectorConst();
  const MCBitSet mask = Mask({true, true, true});
  const mctest::FailAllocation failure(1);
  EXPECT_EQ(work.CheckMDependent(3, packed, mask, 1e-12), -2);
  EXPECT_FALSE(work.IsValidMatrix());
}

}  // namespace
