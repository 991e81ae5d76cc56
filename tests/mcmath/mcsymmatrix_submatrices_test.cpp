// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/productbounds.h"

#include <gtest/gtest.h>

namespace {

using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::Numbers;

constexpr int kSizes[] = {0, 1, 2, 3, 5, 8, 13, 21};

// Element (i, j) of S bordered by R beneath and R' to the right, with a zero corner.
double Bordered(const MCSymMatrix& S, const MCRectMatrix& R, int i, int j) {
  const int n = S.GetNRows();
  if (i < n && j < n) return S.GetElem(i, j);
  if (i >= n && j >= n) return 0.0;
  return i < n ? R.GetElem(j - n, i) : R.GetElem(i - n, j);
}

TEST(MCSymMatrixExpand, BordersTheMatrixWithRows) {
  for (const int n : kSizes) {
    for (int m = 0; m < 4; ++m) {
      Numbers numbers(static_cast<std::uint64_t>(10 * n + m));
      const MCSymMatrix S = numbers.Sym(n);
      const MCRectMatrix R = numbers.Rect(m, n);
      MCSymMatrix sym = numbers.Sym(n + m);
      MCRectMatrix rect = numbers.Rect(2, 3);
      EXPECT_TRUE(S.ExpandSym(R, sym));
      EXPECT_TRUE(S.ExpandSymToRect(R, rect));
      ASSERT_EQ(sym.GetNRows(), n + m);
      ASSERT_EQ(rect.GetNRows(), n + m);
      ASSERT_EQ(rect.GetNCols(), n + m);
      for (int i = 0; i < n + m; ++i) {
        for (int j = 0; j < n + m; ++j) {
          EXPECT_EQ(sym.GetElem(i, j), Bordered(S, R, i, j));
          EXPECT_EQ(rect.GetElem(i, j), Bordered(S, R, i, j));
        }
      }
    }
  }
}

TEST(MCSymMatrixExpand, TheOutputMayBeAnOperand) {
  Numbers numbers(1);
  const MCSymMatrix S = numbers.Sym(4);
  const MCRectMatrix R = numbers.Rect(2, 4);
  MCSymMatrix own(S);
  EXPECT_TRUE(own.ExpandSym(R, own));
  MCRectMatrix rect(R);
  EXPECT_TRUE(S.ExpandSymToRect(rect, rect));
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j) {
      EXPECT_EQ(own.GetElem(i, j), Bordered(S, R, i, j));
      EXPECT_EQ(rect.GetElem(i, j), Bordered(S, R, i, j));
    }
  }
}

TEST(MCSymMatrixExpand, AnotherNumberOfColumnsIsRefused) {
  const MCSymMatrix S(3);
  MCSymMatrix sym(1);
  MCRectMatrix rect(1, 1);
  for (const int columns : {0, 2, 4}) {
    EXPECT_FALSE(S.ExpandSym(MCRectMatrix(2, columns), sym));
    EXPECT_FALSE(S.ExpandSymToRect(MCRectMatrix(2, columns), rect));
  }
  EXPECT_EQ(sym.GetNRows(), 1);
  EXPECT_EQ(rect.GetNRows(), 1);
}

TEST(MCSymMatrixExpand, MoreRowsThanAMatrixHoldsGiveAnInvalidOutput) {
  MCSymMatrix out;
  EXPECT_FALSE(MCSymMatrix(1).ExpandSym(MCRectMatrix(65535, 1), out));
  EXPECT_FALSE(out.IsValidMatrix());
}

TEST(MCSymMatrixExtract, PicksRowsAndColumns) {
  Numbers numbers(2);
  const MCSymMatrix S = numbers.Sym(6);
  for (const std::vector<int>& idx :
       {std::vector<int>{0, 1, 2, 3, 4, 5}, {5}, {0}, {1, 3}, {0, 2, 5}, {}}) {
    MCSymMatrix out(2, 2);
    MCSymMatrix own(S);
    EXPECT_TRUE(S.ExtractSubmatrix(idx, out));
    EXPECT_TRUE(own.ExtractSubmatrix(idx, own));
    ASSERT_EQ(out.GetNRows(), static_cast<int>(idx.size()));
    EXPECT_EQ(out.GetNBlocks(), 1);
    EXPECT_EQ(own.AsVectorConst(), out.AsVectorConst());
    for (int a = 0; a < out.GetNRows(); ++a) {
      for (int b = 0; b < out.GetNRows(); ++b) {
        EXPECT_EQ(out.GetElem(a, b),
                  S.GetElem(idx[static_cast<std::size_t>(a)], idx[static_cast<std::size_t>(b)]));
      }
    }
  }
}

TEST(MCSymMatrixExtract, IndicesMustAscendStrictlyWithinTheMatrix) {
  const MCSymMatrix S(4);
  MCSymMatrix out(2);
  for (const std::vector<int>& idx :
       {std::vector<int>{1, 1}, {2, 1}, {0, 2, 1}, {-1}, {4}, {0, 4}, {-1, 0}, {0, 1, 1}}) {
    EXPECT_FALSE(S.ExtractSubmatrix(idx, out));
    EXPECT_EQ(out.GetNRows(), 2);
  }
}

}  // namespace
