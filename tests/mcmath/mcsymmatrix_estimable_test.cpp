// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/extendedmatrix.h"
#include "support/matrices.h"

#include <climits>
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::Bits;
using mctest::FromRows;
using mctest::Packed;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const MCSymMatrix kThree = Packed({11, 21, 22, 31, 32, 33});

// ---- zeroing and scattering ----

TEST(MCSymMatrixZeroOutRedundant, ZeroesRowsAndColumnsOutsideTheSet) {
  MCSymMatrix matrix = kThree;
  EXPECT_TRUE(matrix.ZeroOutRedundant(Bits({true, false, true, false})));
  EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{11, 0, 0, 31, 0, 33}));
  matrix = kThree;
  EXPECT_FALSE(matrix.ZeroOutRedundant(Bits({true, false})));
  EXPECT_EQ(matrix.AsVectorConst(), kThree.AsVectorConst());
  EXPECT_TRUE(MCSymMatrix().ZeroOutRedundant(MCBitSet()));
}

TEST(MCSymMatrixExpand, ScattersToSetPositions) {
  const MCSymMatrix compact = Packed({1, 2, 3});
  const struct {
    std::vector<bool> keep;
    std::vector<double> expected;
  } cases[] = {
      {{true, true}, {1, 2, 3}},
      {{true, false, true}, {1, 0, 0, 2, 0, 3}},
      {{false, true, true}, {0, 0, 1, 0, 2, 3}},
      // Set bits that remain, and rows that remain.
      {{true, true, true}, {1, 2, 3, 0, 0, 0}},
      {{false, true}, {0, 0, 1}},
      {{false, false}, {0, 0, 0}},
      {{}, {}},
  };
  for (const auto& c : cases) {
    MCSymMatrix out(2, 3);
    compact.Expand(Bits(c.keep), out);
    EXPECT_EQ(out.AsVectorConst(), c.expected);
    EXPECT_EQ(out.GetNRows(), static_cast<int>(c.keep.size()));
    EXPECT_EQ(out.GetNBlocks(), 1);
    MCSymMatrix own = compact;
    own.Expand(Bits(c.keep), own);
    EXPECT_EQ(own.AsVectorConst(), c.expected);
  }
}

// ---- estimable functions ----

TEST(MCSymMatrixExtractH, KeptRowsBecomeColumnsWithUnitRows) {
  MCRectMatrix H(3, 3);
  for (double& x : H.AsVector()) x = 7;
  int col = 0;
  MCBitSet used(3);
  ASSERT_TRUE(kThree.ExtractH(0, 2, Bits({true, false, true}), H, col, used, -1));
  EXPECT_EQ(col, 2);
  EXPECT_EQ(used, Bits({true, false, true}));
  const MCRectMatrix expected = FromRows({{1, 0, 7}, {21, 32, 7}, {0, 1, 7}});
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_DOUBLE_EQ(H.GetElem(i, j), expected.GetElem(i, j));
  }
}

TEST(MCSymMatrixExtractH, KeptRowsOutsideTheRangeAreOnlyCleared) {
  MCRectMatrix H(3, 1);
  int col = 0;
  MCBitSet used = Bits({true, false, false, false});
  ASSERT_TRUE(kThree.ExtractH(1, 1, Bits({true, true, false}), H, col, used, -1));
  EXPECT_EQ(col, 1);
  EXPECT_EQ(used, Bits({true, true, false, false}));
  EXPECT_EQ(H.GetElem(0, 0), 0.0);
  EXPECT_DOUBLE_EQ(H.GetElem(1, 0), 1.0);
  EXPECT_DOUBLE_EQ(H.GetElem(2, 0), 32.0);
}

TEST(MCSymMatrixExtractH, UnitsAreWrittenAlsoInRowsThatWereNotCopied) {
  const MCBitSet keep = Bits({false, false, true});
  MCRectMatrix H(3, 1);
  for (double& x : H.AsVector()) x = 7;
  int col = 0;
  MCBitSet used(3);
  ASSERT_TRUE(kThree.ExtractH(0, 2, keep, H, col, used, 1));
  EXPECT_DOUBLE_EQ(H.GetElem(0, 0), 31.0);
  EXPECT_DOUBLE_EQ(H.GetElem(1, 0), 7.0);
  EXPECT_DOUBLE_EQ(H.GetElem(2, 0), 1.0);
  // Where H hasn't these rows, nothing is.
  MCRectMatrix shorter(1, 1);
  col = 0;
  ASSERT_TRUE(kThree.ExtractH(0, 2, keep, shorter, col, used, 1));
  EXPECT_DOUBLE_EQ(shorter.GetElem(0, 0), 31.0);
}

// Entries below 30000 * 10000 * 2^-52 = 6.7e-8 of a column's norm are noise.
TEST(MCSymMatrixExtractH, CleansAsManyColumnsAsStandBeforeTheNewEnd) {
  const MCSymMatrix noisy = Packed({1, 1e-9, 1, 5, 1e-9, 1});
  const MCRectMatrix start = FromRows({{1, 0, 1, 1}, {1e-9, 0, 1e-9, 1e-9}, {0, 0, 0, 0}});
  const struct {
    int col;
    std::vector<double> secondRow;
  } cases[] = {
      {0, {0, 0, 1e-9, 1e-9}},  // end 1: the written column
      {1, {1e-9, 0, 0, 1e-9}},  // end 2: the written one and one more
      {2, {1e-9, 0, 0, 0}},     // end 3: of three, H has two
      {3, {1e-9, 0, 1e-9, 0}},  // end 4: of four, H has one
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.col);
    MCRectMatrix H = start;
    int col = c.col;
    MCBitSet used(3);
    ASSERT_TRUE(noisy.ExtractH(0, 0, Bits({true, false, false}), H, col, used, -1));
    EXPECT_EQ(col, c.col + 1);
    for (int j = 0; j < 4; ++j) {
      EXPECT_DOUBLE_EQ(H.GetElem(1, j), c.secondRow[static_cast<std::size_t>(j)]) << j;
    }
    EXPECT_DOUBLE_EQ(H.GetElem(2, c.col), 5.0);
  }
}

TEST(MCSymMatrixExtractH, NoKeptRowWritesNothingYetCleans) {
  MCRectMatrix H = FromRows({{1, 1, 1}, {1e-9, 1e-9, 1e-9}, {0, 0, 0}});
  int col = 1;
  MCBitSet used(3);
  ASSERT_TRUE(kThree.ExtractH(0, 2, MCBitSet(3), H, col, used, -1));
  EXPECT_EQ(col, 1);
  EXPECT_EQ(used.InSet(), 0);
  EXPECT_EQ(H.GetElem(1, 0), 1e-9);
  EXPECT_EQ(H.GetElem(1, 1), 0.0);
  EXPECT_EQ(H.GetElem(1, 2), 1e-9);
}

TEST(MCSymMatrixExtractH, MisuseIsRefusedWithNothingChanged) {
  const struct {
    const char* why;
    int from, to, keepBits, cols, col, usedBits, nRows;
  } cases[] = {
      {"from below", -1, 2, 3, 3, 0, 3, -1},
      {"from above to", 2, 1, 3, 3, 0, 3, -1},
      {"to above", 0, 3, 4, 4, 0, 4, -1},
      {"short keep", 0, 2, 2, 3, 0, 3, -1},
      {"short used", 0, 2, 3, 3, 0, 2, -1},
      {"more rows than H", 0, 2, 3, 3, 0, 3, 4},
      {"columns don't fit", 0, 2, 3, 3, 1, 3, -1},
      {"negative column", 0, 2, 3, 3, -1, 3, -1},
      {"column far above", 0, 2, 3, 3, INT_MAX, 3, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    MCBitSet keep(c.keepBits);
    keep.Negate();
    MCRectMatrix H(3, c.cols);
    for (double& x : H.AsVector()) x = 7;
    const std::vector<double> before = H.AsVectorConst();
    int col = c.col;
    MCBitSet used(c.usedBits);
    EXPECT_FALSE(kThree.ExtractH(c.from, c.to, keep, H, col, used, c.nRows));
    EXPECT_EQ(H.AsVectorConst(), before);
    EXPECT_EQ(col, c.col);
    EXPECT_EQ(used.InSet(), 0);
  }
  MCRectMatrix H(3, 3);
  int col = 0;
  MCBitSet used;
  EXPECT_FALSE(MCSymMatrix().ExtractH(0, 0, MCBitSet(), H, col, used, -1));
}

TEST(MCSymMatrixExtractH, TheLastColumnMayBeTheOneBehind) {
  MCRectMatrix H(3, 3);
  int col = 3;
  MCBitSet used(3);
  EXPECT_TRUE(kThree.ExtractH(0, 2, MCBitSet(3), H, col, used, -1));
  EXPECT_EQ(col, 3);
}

// ---- screening of variances ----

TEST(MCSymMatrixCheckGMG, BadVariancesAreZeroedAndCounted) {
  const struct {
    const char* why;
    std::vector<double> diagonalM, diagonalG;
    std::vector<bool> mask, negative, zeroed;
    bool allGone;
    int count;
  } cases[] = {
      {"all good", {1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {0, 0, 0}, {0, 0, 0}, false, 0},
      {"negative in M", {1, -1, 1}, {1, 1, 1}, {1, 1, 1}, {0, 1, 0}, {0, 1, 0}, false, 1},
      {"not above 0 in G", {1, 1, 1}, {0, 1, -2}, {1, 1, 1}, {0, 0, 0}, {1, 0, 1}, false, 2},
      {"both counts once", {-1, 1, 1}, {-1, 1, 1}, {1, 1, 1}, {1, 0, 0}, {1, 0, 0}, false, 1},
      {"outside the mask", {-1, 1, 1}, {1, -1, 1}, {0, 0, 1}, {0, 0, 0}, {0, 0, 0}, false, 0},
      {"all gone", {-1, 1, 1}, {1, 0, 1}, {1, 1, 0}, {1, 0, 0}, {1, 1, 0}, true, 2},
      {"bits beyond", {-1, 1, 1}, {1, 1, 1}, {1, 0, 0, 1}, {1, 0, 0}, {1, 0, 0}, true, 1},
      {"empty mask", {-1, -1, -1}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, false, 0},
      {"NaN", {kNaN, 1, 1}, {1, kNaN, 1}, {1, 1, 1}, {0, 0, 0}, {0, 0, 0}, false, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    MCSymMatrix M(3);
    MCSymMatrix G(3);
    for (double& x : G.AsVector()) x = 5;
    for (int i = 0; i < 3; ++i) {
      M.SetElem(i, i, c.diagonalM[static_cast<std::size_t>(i)]);
      G.SetElem(i, i, c.diagonalG[static_cast<std::size_t>(i)]);
    }
    MCBitSet negative(7);
    negative.Negate();
    bool allGone = !c.allGone;
    int count = 99;
    EXPECT_TRUE(kThree.CheckGMG(M.AsVectorConst(), Bits(c.mask), G, negative, allGone, count));
    EXPECT_EQ(negative, Bits(c.negative));
    EXPECT_EQ(allGone, c.allGone);
    EXPECT_EQ(count, c.count);
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_EQ(G.GetElem(static_cast<int>(i), static_cast<int>(j)),
                  c.zeroed[i] || c.zeroed[j] ? 0.0 : 5.0);
      }
    }
  }
}

TEST(MCSymMatrixCheckGMG, TheMaskMayReceiveTheNegativeRows) {
  MCSymMatrix G = kThree;
  MCBitSet bits(3);
  bits.Negate();
  bool allGone = false;
  int count = 0;
  EXPECT_TRUE(kThree.CheckGMG({-1, 0, 1, 0, 0, 1}, bits, G, bits, allGone, count));
  EXPECT_EQ(bits, Bits({true, false, false}));
  EXPECT_EQ(count, 1);
}

TEST(MCSymMatrixCheckGMG, MemoryExhaustionChangesNothing) {
  const std::vector<double> M = {-1, 0, 1, 0, 0, 1};
  MCBitSet mask(3);
  mask.Negate();
  bool ended = false;
  for (std::size_t k = 1; !ended; ++k) {
    MCSymMatrix G = kThree;
    MCBitSet negative;
    bool allGone = true;
    int count = 99;
    try {
      const mctest::FailAllocation failure(k);
      ended = kThree.CheckGMG(M, mask, G, negative, allGone, count);
    } catch (const std::bad_alloc&) {
    }
    EXPECT_EQ(count, ended ? 1 : 99);
    EXPECT_EQ(negative.Size(), ended ? 3 : 0);
    EXPECT_EQ(G.AsVectorConst() == kThree.AsVectorConst(), !ended);
  }
}

TEST(MCSymMatrixCheckGMG, MisuseIsRefusedWithNothingChanged) {
  const struct {
    std::size_t entries;
    int bits, rowsOfG;
  } cases[] = {{5, 3, 3}, {7, 3, 3}, {6, 2, 3}, {6, 3, 2}, {6, 3, 4}};
  for (const auto& c : cases) {
    MCSymMatrix G(c.rowsOfG);
    for (double& x : G.AsVector()) x = -1;
    const std::vector<double> before = G.AsVectorConst();
    MCBitSet mask(c.bits);
    mask.Negate();
    MCBitSet negative(9);
    bool allGone = true;
    int count = 99;
    EXPECT_FALSE(
        kThree.CheckGMG(std::vector<double>(c.entries, -1.0), mask, G, negative, allGone, count));
    EXPECT_EQ(G.AsVectorConst(), before);
    EXPECT_EQ(negative.Size(), 9);
    EXPECT_TRUE(allGone);
    EXPECT_EQ(count, 99);
  }
}

TEST(MCSymMatrixCheckGMG, NoRowsAreFineAndNothingIsTouched) {
  MCSymMatrix G(2);
  MCBitSet negative(9);
  bool allGone = true;
  int count = 99;
  EXPECT_TRUE(MCSymMatrix().CheckGMG({}, MCBitSet(), G, negative, allGone, count));
  EXPECT_EQ(negative.Size(), 9);
  EXPECT_TRUE(allGone);
  EXPECT_EQ(count, 99);
  EXPECT_FALSE(MCSymMatrix().CheckGMG({1}, MCBitSet(), G, negative, allGone, count));
}

}  // namespace
