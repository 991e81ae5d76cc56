// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/matrices.h"
#include "support/productbounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using MCMV::gMissingValue;
using mctest::Chain;
using mctest::ExpectSameBits;
using mctest::ExpectWithin;
using mctest::ExtendedMatrix;
using mctest::Numbers;
using mctest::Packed;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kSizes[] = {0, 1, 2, 3, 5, 8, 13, 21};

using Triangle = std::vector<double>;

// What two operands of one size give for every size of the ladder.
class ProductsOfSize : public testing::TestWithParam<int> {
protected:
  const int n = GetParam();
  Numbers numbers{static_cast<std::uint64_t>(n) + 17};
  const MCSymMatrix S = numbers.Sym(n);
  const MCSymMatrix T = numbers.Sym(n);
  const MCSymMatrix U = numbers.Sym(n);
  const std::vector<double> V = numbers.Vector(n);
  const std::vector<double> W = numbers.Vector(n);
  const ExtendedMatrix s{S};
  const ExtendedMatrix t{T};
  const ExtendedMatrix v{V};
  const ExtendedMatrix w{W};
};

INSTANTIATE_TEST_SUITE_P(Ladder, ProductsOfSize, testing::ValuesIn(kSizes));

TEST_P(ProductsOfSize, RowProducts) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      const ExtendedMatrix row = s.Part(i, 0, 1, n);
      ExpectWithin(S.ComputeDotProduct2Rows(i, j), Chain({row, s.Part(0, j, n, 1)}));
      ExpectWithin(S.ComputeRowDotProductS(i, T, j), Chain({row, t.Part(0, j, n, 1)}));
      ExpectSameBits(S.ComputeRowDotProductS(i, T.AsVectorConst(), j),
                     S.ComputeRowDotProductS(i, T, j));
    }
  }
}

TEST_P(ProductsOfSize, RowTimesStridedVector) {
  const std::vector<double> d = numbers.Vector(3 * n);
  for (int stride = 1; stride <= 3; ++stride) {
    std::vector<double> picked;
    for (int j = 0; j < n; ++j) picked.push_back(d[static_cast<std::size_t>(j * stride)]);
    for (int i = 0; i < n; ++i) {
      ExpectWithin(S.ComputeRVD(i, d, stride), Chain({s.Part(i, 0, 1, n), ExtendedMatrix(picked)}));
      ExpectSameBits(S.ComputeRVD(i, d.data(), stride), S.ComputeRVD(i, d, stride));
    }
  }
}

TEST_P(ProductsOfSize, MatrixTimesVector) {
  std::vector<double> out(3, 9.0);
  EXPECT_TRUE(S.ComputeSV(V, out));
  ExpectWithin(out, Chain({s, v}));
  EXPECT_TRUE(S.ComputeLV(V, out));
  ExpectWithin(out, Chain({s.LowerTriangle(), v}));
  EXPECT_TRUE(S.ComputeLTransV(V, out));
  ExpectWithin(out, Chain({s.LowerTriangle().Transposed(), v}));
}

TEST_P(ProductsOfSize, MatrixTimesVectorHasTheBitsOfTheRowProducts) {
  std::vector<double> out;
  EXPECT_TRUE(S.ComputeSV(V, out));
  for (int i = 0; i < n; ++i) {
    ExpectSameBits(out[static_cast<std::size_t>(i)], S.ComputeRVD(i, V, 1));
  }
}

TEST_P(ProductsOfSize, LeadingPartTimesVector) {
  for (int m = 0; m <= n; ++m) {
    std::vector<double> out(2, 9.0);
    EXPECT_TRUE(S.ComputeSV(m, V, out));
    ASSERT_EQ(out.size(), static_cast<std::size_t>(std::max(m, 2)));
    for (int i = m; i < 2; ++i) EXPECT_EQ(out[static_cast<std::size_t>(i)], 9.0);
    out.resize(static_cast<std::size_t>(m));
    ExpectWithin(out, Chain({s.Part(0, 0, m, m), v.Part(0, 0, m, 1)}));
  }
}

TEST_P(ProductsOfSize, Forms) {
  const double form = S.ComputeVSW(V, W);
  ExpectWithin(form, Chain({v.Transposed(), s, w}));
  ExpectWithin(S.ComputeVSV(V), Chain({v.Transposed(), s, v}));
  std::vector<double> interleaved;
  for (std::size_t i = 0; i < V.size(); ++i) interleaved.insert(interleaved.end(), {V[i], 0, W[i]});
  ExpectSameBits(S.ComputeVSW(interleaved.data(), 3, W.data(), 1), form);
  if (n > 0) ExpectSameBits(S.ComputeVSW(V.data(), 1, interleaved.data() + 2, 3), form);
}

TEST_P(ProductsOfSize, FormAddsEntriesTimesRowProductsInOrder) {
  double want = 0.0;
  for (int i = 0; i < n; ++i) want += V[static_cast<std::size_t>(i)] * S.ComputeRVD(i, W, 1);
  ExpectSameBits(S.ComputeVSW(V, W), want);
}

TEST_P(ProductsOfSize, FormOfARowOfARectangularMatrix) {
  const MCRectMatrix R = numbers.Rect(3, n);
  for (int r = 0; r < 3; ++r) {
    const ExtendedMatrix row = ExtendedMatrix(R).Part(r, 0, 1, n);
    ExpectWithin(S.ComputeVSV(R, r), Chain({row, s, row.Transposed()}));
  }
}

TEST_P(ProductsOfSize, FormOfTwoRowsOverAPackedMatrix) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      ExpectWithin(S.ComputeVSW(T.AsVectorConst(), n, i, j),
                   Chain({s.Part(i, 0, 1, n), t, s.Part(0, j, n, 1)}));
    }
  }
}

TEST_P(ProductsOfSize, FormOverLeadingParts) {
  for (int nv = 0; nv <= n; ++nv) {
    for (int nw = 0; nw <= n; ++nw) {
      const double form = S.ComputeVSWParts(V, nv, W, nw);
      ExpectWithin(form, Chain({v.Part(0, 0, nv, 1).Transposed(), s.Part(0, 0, nv, nw),
                                w.Part(0, 0, nw, 1)}));
      ExpectSameBits(S.ComputeVSWParts(V.data(), nv, W.data(), nw), form);
    }
  }
  ExpectSameBits(S.ComputeVSWParts(V, kHuge, W, kHuge), S.ComputeVSW(V, W));
}

TEST_P(ProductsOfSize, Traces) {
  const auto trace = [](const ExtendedMatrix& a) {
    ExtendedMatrix sum(1, 1);
    for (std::size_t i = 0; i < a.Rows(); ++i) sum(0, 0) += a(i, i);
    return sum;
  };
  const mctest::Reference two = Chain({s, t});
  ExpectWithin(S.TraceOfProduct(T), {trace(two.value), trace(two.bound)});
  const mctest::Reference three = Chain({s, t, ExtendedMatrix(U)});
  ExpectWithin(S.TraceOfProductOfThree(T, U), {trace(three.value), trace(three.bound)});
}

TEST_P(ProductsOfSize, SquareProducts) {
  MCSymMatrix sym(2, 2);
  EXPECT_TRUE(S.ComputeSTransS(sym));
  ExpectWithin(sym, Chain({s, s}));
  MCRectMatrix rect;
  EXPECT_TRUE(S.ComputeSS(T, rect));
  ExpectWithin(rect, Chain({s, t}));
  EXPECT_TRUE(S.ComputeLSLTrans(T, sym));
  ExpectWithin(sym, Chain({t.LowerTriangle(), s, t.LowerTriangle().Transposed()}));
}

TEST_P(ProductsOfSize, LSLTransHasTheBitsOfItsForms) {
  MCSymMatrix out;
  EXPECT_TRUE(S.ComputeLSLTrans(T, out));
  const double* L = T.AsVectorConst().data();
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c <= r; ++c) {
      ExpectSameBits(out.GetElem(r, c),
                     S.ComputeVSWParts(L + c * (c + 1) / 2, c + 1, L + r * (r + 1) / 2, r + 1));
    }
  }
}

TEST_P(ProductsOfSize, ProductsWithRectangularMatrices) {
  for (const int m : kSizes) {
    const MCRectMatrix R = numbers.Rect(m, n);
    const MCRectMatrix Q = numbers.Rect(n, m);
    const ExtendedMatrix r(R);
    const ExtendedMatrix q(Q);
    MCRectMatrix rect;
    MCSymMatrix sym;
    EXPECT_TRUE(S.ComputeRS(R, rect));
    ExpectWithin(rect, Chain({r, s}));
    EXPECT_TRUE(S.ComputeRSRTrans(R, sym));
    ExpectWithin(sym, Chain({r, s, r.Transposed()}));
    EXPECT_TRUE(S.ComputeRTransSR(Q, sym));
    ExpectWithin(sym, Chain({q.Transposed(), s, q}));
  }
}

TEST_P(ProductsOfSize, ElementsOfSandwichesHaveTheBitsOfForms) {
  const MCRectMatrix R = numbers.Rect(4, n);
  MCSymMatrix out;
  EXPECT_TRUE(S.ComputeRSRTrans(R, out));
  for (int r = 0; r < 4; ++r) ExpectSameBits(out.GetElem(r, r), S.ComputeVSV(R, r));
  MCSymMatrix gmg;
  EXPECT_TRUE(S.ComputeGMG(T.AsVectorConst(), gmg));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      ExpectSameBits(gmg.GetElem(i, j), S.ComputeVSW(T.AsVectorConst(), n, j, i));
    }
  }
}

TEST_P(ProductsOfSize, AddedProductsStartFromAnOutputOfTheRightSize) {
  const MCRectMatrix R = numbers.Rect(n, n);
  const ExtendedMatrix r(R);
  const ExtendedMatrix start(U);
  MCSymMatrix out(U);
  EXPECT_TRUE(S.ComputeRSRTrans(R, out));
  ExpectWithin(out, Chain(start, {r, s, r.Transposed()}));
  out = U;
  EXPECT_TRUE(S.ComputeGMG(T.AsVectorConst(), out));
  ExpectWithin(out, Chain(start, {s, t, s}));
  out = U;
  EXPECT_TRUE(S.ComputeRTransSR(R, out));
  ExpectWithin(out, Chain({r.Transposed(), s, r}));
  out = U;
  EXPECT_TRUE(S.ComputeSTransS(out));
  ExpectWithin(out, Chain({s, s}));
  out = U;
  EXPECT_TRUE(S.ComputeLSLTrans(T, out));
  ExpectWithin(out, Chain({t.LowerTriangle(), s, t.LowerTriangle().Transposed()}));
}

TEST_P(ProductsOfSize, AddedProductsStartFromZeroInAnOutputOfAnotherSize) {
  const MCRectMatrix R = numbers.Rect(n, n);
  const ExtendedMatrix r(R);
  MCSymMatrix out = numbers.Sym(n + 1);
  EXPECT_TRUE(S.ComputeRSRTrans(R, out));
  ExpectWithin(out, Chain({r, s, r.Transposed()}));
  out = numbers.Sym(n + 2);
  EXPECT_TRUE(S.ComputeGMG(T.AsVectorConst(), out));
  ExpectWithin(out, Chain({s, t, s}));
}

TEST_P(ProductsOfSize, OutputsMayBeOperands) {
  std::vector<double> out(V);
  EXPECT_TRUE(S.ComputeSV(out, out));
  ExpectWithin(out, Chain({s, v}));
  out = V;
  EXPECT_TRUE(S.ComputeSV(n, out, out));
  ExpectWithin(out, Chain({s, v}));
  out = V;
  EXPECT_TRUE(S.ComputeLV(out, out));
  ExpectWithin(out, Chain({s.LowerTriangle(), v}));
  out = V;
  EXPECT_TRUE(S.ComputeLTransV(out, out));
  ExpectWithin(out, Chain({s.LowerTriangle().Transposed(), v}));
}

TEST_P(ProductsOfSize, OutputMatricesMayBeOperands) {
  const MCRectMatrix square = numbers.Rect(n, n);
  const ExtendedMatrix r(square);
  MCSymMatrix own(S);
  EXPECT_TRUE(own.ComputeSTransS(own));
  ExpectWithin(own, Chain({s, s}));
  own = S;
  EXPECT_TRUE(own.ComputeRSRTrans(square, own));
  ExpectWithin(own, Chain(s, {r, s, r.Transposed()}));
  own = S;
  EXPECT_TRUE(own.ComputeRTransSR(square, own));
  ExpectWithin(own, Chain({r.Transposed(), s, r}));
  own = S;
  EXPECT_TRUE(own.ComputeGMG(own.AsVectorConst(), own));
  ExpectWithin(own, Chain(s, {s, s, s}));
  own = S;
  EXPECT_TRUE(own.ComputeLSLTrans(T, own));
  ExpectWithin(own, Chain({t.LowerTriangle(), s, t.LowerTriangle().Transposed()}));
  own = T;
  EXPECT_TRUE(S.ComputeLSLTrans(own, own));
  ExpectWithin(own, Chain({t.LowerTriangle(), s, t.LowerTriangle().Transposed()}));
  own = T;
  EXPECT_TRUE(S.ComputeGMG(own.AsVectorConst(), own));
  ExpectWithin(own, Chain(t, {s, t, s}));
  MCRectMatrix rect(square);
  EXPECT_TRUE(S.ComputeRS(rect, rect));
  ExpectWithin(rect, Chain({r, s}));
}

TEST_P(ProductsOfSize, RefuseWhatDoesNotFit) {
  const std::vector<double> longV(static_cast<std::size_t>(n) + 1, 1.0);
  const std::vector<double> kept(2, 9.0);
  const MCSymMatrix other(n + 1);
  const MCRectMatrix wide(2, n + 1);
  const MCRectMatrix tall(n + 1, 2);
  std::vector<double> out(kept);
  EXPECT_FALSE(S.ComputeSV(longV, out));
  EXPECT_FALSE(S.ComputeSV(-1, V, out));
  EXPECT_FALSE(S.ComputeSV(n + 1, longV, out));
  EXPECT_FALSE(S.ComputeLV(longV, out));
  EXPECT_FALSE(S.ComputeLTransV(longV, out));
  if (n > 0) {
    EXPECT_FALSE(S.ComputeSV(n, std::vector<double>(V.begin() + 1, V.end()), out));
  }
  EXPECT_EQ(out, kept);
  MCSymMatrix sym = Packed({1, 2, 3});
  EXPECT_FALSE(S.ComputeRSRTrans(wide, sym));
  EXPECT_FALSE(S.ComputeRTransSR(tall, sym));
  EXPECT_FALSE(S.ComputeLSLTrans(other, sym));
  EXPECT_EQ(sym.AsVectorConst(), (Triangle{1, 2, 3}));
  MCRectMatrix rect(1, 1);
  EXPECT_FALSE(S.ComputeSS(other, rect));
  EXPECT_FALSE(S.ComputeRS(wide, rect));
  EXPECT_EQ(rect.GetNCols(), 1);
}

TEST_P(ProductsOfSize, AreMissingForWhatDoesNotFit) {
  const std::vector<double> longV(static_cast<std::size_t>(n) + 1, 1.0);
  const MCSymMatrix other(n + 1);
  for (const double form : {S.ComputeVSW(longV, W),
                            S.ComputeVSW(V, longV),
                            S.ComputeVSV(longV),
                            S.ComputeVSV(MCRectMatrix(2, n + 1), 0),
                            S.ComputeVSV(MCRectMatrix(2, n), 2),
                            S.ComputeVSV(MCRectMatrix(2, n), -1),
                            S.SquareRootVSV(longV),
                            S.TraceOfProduct(other),
                            S.TraceOfProductOfThree(other, T),
                            S.TraceOfProductOfThree(T, other),
                            S.ComputeRowDotProductS(0, other, 0),
                            S.ComputeRowDotProductS(-1, T, 0),
                            S.ComputeRowDotProductS(0, T, n),
                            S.ComputeDotProduct2Rows(n, 0),
                            S.ComputeRVD(n, V, 1),
                            S.ComputeRVD(-1, V.data(), 1),
                            S.ComputeVSW(T.AsVectorConst(), n, -1, 0),
                            S.ComputeVSW(T.AsVectorConst(), n, 0, n),
                            S.ComputeVSW(T.AsVectorConst(), n + 1, 0, 0),
                            S.ComputeVSW(other.AsVectorConst(), n, 0, 0)}) {
    EXPECT_EQ(form, gMissingValue);
  }
}

TEST(MCSymMatrixProducts, RVDOverAVectorChecksStrideTimesRows) {
  const MCSymMatrix S = Packed({1, 2, 3});
  const struct {
    std::size_t size;
    int stride;
    bool computed;
  } cases[] = {{2, 1, true},  {1, 1, false},  {4, 2, true},      {3, 2, false},
               {4, 0, false}, {4, -1, false}, {4, kHuge, false}, {4, -kHuge - 1, false}};
  for (const auto& row : cases) {
    const std::vector<double> d(row.size, 1.0);
    EXPECT_EQ(S.ComputeRVD(0, d, row.stride), row.computed ? 3.0 : gMissingValue);
  }
}

TEST(MCSymMatrixProducts, RVDOverAVectorIsSafeFromAnOverflowOfStrideTimesRows) {
  constexpr int kStride = 1 << 30;  // times 4 rows it is 0 in 32 bits
  EXPECT_EQ(MCSymMatrix(4).ComputeRVD(0, std::vector<double>(4), kStride), gMissingValue);
}

TEST(MCSymMatrixProducts, RVDOverAnArrayTakesANegativeStride) {
  const double d[] = {1, 10, 100};
  EXPECT_EQ(Packed({1, 2, 3, 4, 5, 6}).ComputeRVD(0, d + 2, -1), 124.0);
}

TEST(MCSymMatrixProducts, IncrVecByRowAddsAMultipleOfALeadingRow) {
  const MCSymMatrix S = Packed({1, 2, 3, 4, 5, 6});
  std::vector<double> v = {10, 20, 30, 40, 50};
  EXPECT_TRUE(S.IncrVecByRow(0, v, 2, 3, 2.0, true));
  EXPECT_EQ(v, (std::vector<double>{10, 20, 32, 44, 58}));
  EXPECT_TRUE(S.IncrVecByRow(2, v, 0, 1, -1.0, false));
  EXPECT_EQ(v, (std::vector<double>{6, 20, 32, 44, 58}));
}

TEST(MCSymMatrixProducts, IncrVecByRowChecksOnDemand) {
  const MCSymMatrix S = Packed({1, 2, 3, 4, 5, 6});
  const int cases[][3] = {{-1, 0, 1}, {3, 0, 1}, {0, 0, 0}, {0, 0, -1},    {0, 0, 4},
                          {0, -1, 1}, {0, 5, 1}, {0, 3, 3}, {0, kHuge, 3}, {0, 0, kHuge}};
  for (const auto& at : cases) {
    std::vector<double> v(5, 1.0);
    EXPECT_FALSE(S.IncrVecByRow(at[0], v, at[1], at[2], 1.0, true));
    EXPECT_EQ(v, std::vector<double>(5, 1.0));
  }
}

TEST(MCSymMatrixProducts, FormsWithoutRowsAreZero) {
  const MCSymMatrix none;
  EXPECT_EQ(none.ComputeVSW(std::vector<double>(), std::vector<double>()), 0.0);
  EXPECT_EQ(none.ComputeVSV(std::vector<double>()), 0.0);
  EXPECT_EQ(none.ComputeVSW(nullptr, 1, nullptr, 1), 0.0);
  EXPECT_EQ(none.TraceOfProduct(none), 0.0);
  EXPECT_EQ(none.TraceOfProductOfThree(none, none), 0.0);
  EXPECT_EQ(none.SquareRootVSV({}), 0.0);
}

TEST(MCSymMatrixProducts, PartsLongerThanTheirVectorAreMissing) {
  const MCSymMatrix S = Packed({1, 2, 3, 4, 5, 6});
  const std::vector<double> two = {1, 1};
  const std::vector<double> three = {1, 1, 1};
  EXPECT_EQ(S.ComputeVSWParts(two, 3, three, 3), gMissingValue);
  EXPECT_EQ(S.ComputeVSWParts(three, 3, two, kHuge), gMissingValue);
  EXPECT_EQ(S.ComputeVSWParts(two, 2, two, 2), 8.0);
  EXPECT_EQ(S.ComputeVSWParts(two, -1, three, 3), 0.0);
  EXPECT_EQ(S.ComputeVSWParts(three, 3, two, -kHuge), 0.0);
}

TEST(MCSymMatrixProducts, BlockForms) {
  Numbers numbers(3);
  MCSymMatrix S = numbers.Sym(6);
  ASSERT_TRUE(S.SetNBlocks(3));
  const ExtendedMatrix s(S);
  const std::vector<double> V = numbers.Vector(2);
  const std::vector<double> W = numbers.Vector(2);
  for (int I = 0; I < 3; ++I) {
    for (int J = 0; J < 3; ++J) {
      const ExtendedMatrix block = s.Part(2 * I, 2 * J, 2, 2);
      ExpectWithin(S.ComputeBlockVSW(I, J, V, W),
                   Chain({ExtendedMatrix(V).Transposed(), block, ExtendedMatrix(W)}));
      ExpectSameBits(S.ComputeBlockVSV(I, J, V), S.ComputeBlockVSW(I, J, V, V));
    }
  }
  const std::vector<double> three(3, 1.0);
  const int cases[][2] = {{-1, 0}, {0, -1}, {3, 0}, {0, 3}, {kHuge, kHuge}};
  for (const auto& at : cases) EXPECT_EQ(S.ComputeBlockVSW(at[0], at[1], V, W), gMissingValue);
  EXPECT_EQ(S.ComputeBlockVSW(0, 0, three, W), gMissingValue);
  EXPECT_EQ(S.ComputeBlockVSW(0, 0, V, three), gMissingValue);
  EXPECT_EQ(S.ComputeBlockVSV(0, 0, three), gMissingValue);
}

TEST(MCSymMatrixProducts, FormsOfVectorsDoNotAllocate) {
  Numbers numbers(5);
  const MCSymMatrix S = numbers.Sym(6);
  const std::vector<double> V = numbers.Vector(6);
  std::vector<double> out(6);
  const std::size_t before = mctest::AllocationCount();
  S.ComputeVSV(V);
  S.ComputeVSW(S.AsVectorConst(), 6, 1, 2);
  S.ComputeVSWParts(V, 3, V, 4);
  S.SquareRootVSV(V);
  S.ComputeDotProduct2Rows(1, 2);
  S.ComputeSV(V, out);
  S.ComputeSV(4, V, out);
  S.ComputeLV(out, out);
  S.ComputeLTransV(out, out);
  S.IncrVecByRow(1, out, 0, 6, 2.0, true);
  S.GetRow(2, out);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCSymMatrixSquareRoot, OfAnOrdinaryFormIsItsRoot) {
  const MCSymMatrix S = Packed({4, 1, 9});
  EXPECT_EQ(S.SquareRootVSV({1, 1}), std::sqrt(15.0));
  EXPECT_EQ(S.SquareRootVSV({0, 0}), 0.0);
}

TEST(MCSymMatrixSquareRoot, OfAFormThatIsNotPositiveIsZero) {
  EXPECT_EQ(Packed({-4}).SquareRootVSV({1}), 0.0);
  EXPECT_EQ(Packed({0, 0, 0}).SquareRootVSV({1, 2}), 0.0);
  EXPECT_EQ(Packed({kNaN}).SquareRootVSV({1}), 0.0);
  EXPECT_EQ(Packed({1}).SquareRootVSV({kNaN}), 0.0);
}

TEST(MCSymMatrixSquareRoot, SurvivesAFormBeyondTheLargestDouble) {
  // The scale exp(c) has the relative error of an exponent of up to 709, 709 eps, in it; it is
  // taken out again, and the division and products round a few times.
  constexpr double kTolerance = 1e-13;
  const struct {
    double v, s, want;
  } cases[] = {{1e200, 1.0, 1e200},
               {1e150, 1e100, 1e200},
               {1e300, 1e10, 1e305},
               {3e250, 4.0, 6e250},
               {1.0, 1e308, 1e154}};
  for (const auto& row : cases) {
    const double got = Packed({row.s}).SquareRootVSV({row.v});
    EXPECT_NEAR(got / row.want, 1.0, kTolerance) << row.want;
  }
  const MCSymMatrix S = Packed({2e200, 1e200, 2e200});
  EXPECT_NEAR(S.SquareRootVSV({1e100, 1e100}) / (std::sqrt(6.0) * 1e200), 1.0, kTolerance);
}

TEST(MCSymMatrixSquareRoot, BeyondTheLargestDoubleIsMissing) {
  EXPECT_EQ(Packed({1e300}).SquareRootVSV({1e300}), gMissingValue);
  EXPECT_EQ(Packed({1e10}).SquareRootVSV({1.7e308}), gMissingValue);
  EXPECT_EQ(Packed({kInf}).SquareRootVSV({1}), gMissingValue);
  EXPECT_EQ(Packed({1}).SquareRootVSV({kInf}), gMissingValue);
}

TEST(MCSymMatrixSquareRoot, OfAFormThatUnderflowsIsZero) {
  // The bound of the form starts at 1, so small forms are taken as they come.
  EXPECT_EQ(Packed({1}).SquareRootVSV({1e-200}), 0.0);
  EXPECT_EQ(Packed({1}).SquareRootVSV({1e-100}), 1e-100);
}

TEST(MCSymMatrixSquareRoot, OfAMissingFormIsMissing) {
  // An off-diagonal element that makes the form the sentinel itself.
  const double half = gMissingValue / 2.0;
  EXPECT_EQ(Packed({0, half, 0}).SquareRootVSV({1, 1}), gMissingValue);
}

TEST(MCSymMatrixGMG, AnotherSizeOfMAddsTheMissingValueToEachElement) {
  const MCSymMatrix S = Packed({1, 2, 3});
  const struct {
    std::size_t size;
    bool want;
  } cases[] = {{0, true}, {2, true}, {4, false}};
  for (const auto& row : cases) {
    MCSymMatrix out(3);
    EXPECT_EQ(S.ComputeGMG(std::vector<double>(row.size, 1.0), out), row.want);
    EXPECT_EQ(out.AsVectorConst(), Triangle(3, gMissingValue));
    EXPECT_EQ(S.ComputeGMG(std::vector<double>(row.size, 1.0), out), row.want);
    EXPECT_EQ(out.AsVectorConst(), Triangle(3, -kInf));
  }
}

TEST(MCSymMatrixGMG, WithoutRowsTheOutputHasNone) {
  MCSymMatrix out(3);
  EXPECT_TRUE(MCSymMatrix().ComputeGMG({}, out));
  EXPECT_EQ(out.GetNRows(), 0);
  out.SetNRows(3);
  EXPECT_FALSE(MCSymMatrix().ComputeGMG({1.0}, out));
  EXPECT_EQ(out.GetNRows(), 0);
}

TEST(MCSymMatrixProducts, AnOutputOfTheRightSizeKeepsItsBlocks) {
  const MCSymMatrix S(4);
  MCSymMatrix out(2, 2);
  EXPECT_TRUE(S.ComputeSTransS(out));
  EXPECT_TRUE(S.ComputeRSRTrans(MCRectMatrix(4, 4), out));
  EXPECT_TRUE(S.ComputeGMG(std::vector<double>(10), out));
  EXPECT_EQ(out.GetNBlocks(), 2);
  EXPECT_TRUE(S.ComputeRTransSR(MCRectMatrix(4, 4), out));
  EXPECT_EQ(out.GetNBlocks(), 1);
}

}  // namespace
