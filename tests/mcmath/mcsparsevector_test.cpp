// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsparsevector.h"

#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "support/accuracytable.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCSparseVector;
using MCCommonMath::MCSymMatrix;
using MCMV::gMissingValue;

using Ints = std::vector<int>;
using Doubles = std::vector<double>;

constexpr int kHuge = std::numeric_limits<int>::max();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Positions 1, 3 and 4 of a row.
struct Row {
  const Ints indices = {1, 3, 4};
  const Doubles values = {2.0, -0.5, 0.1};
  const MCSparseVector view{indices, values};
};

TEST(MCSparseVector, ReadsItsFields) {
  const Row row;
  EXPECT_TRUE(row.view.IsValid());
  EXPECT_EQ(row.view.GetNElements(), 3);
  EXPECT_EQ(&row.view.GetIndices(), &row.indices);
  EXPECT_EQ(&row.view.GetValues(), &row.values);
  EXPECT_EQ(row.view.GetMinVecSize(), 5);
  EXPECT_EQ(row.view.GetIndex(1), 3);
  EXPECT_EQ(row.view.GetValue(1), -0.5);
  for (int i : {-1, 3, kHuge, -kHuge}) {
    EXPECT_EQ(row.view.GetIndex(i), -1);
    EXPECT_EQ(row.view.GetValue(i), gMissingValue);
  }
}

struct Invalid {
  const char* name;
  Ints indices;
  Doubles values;
  int minSize;
};

const std::vector<Invalid>& InvalidViews() {
  static const std::vector<Invalid> views = {
      {"equal positions", {2, 2}, {1.0, 1.0}, 3},
      {"falling positions", {3, 1}, {1.0, 1.0}, 2},
      {"last not largest", {1, 9, 2}, {1.0, 1.0, 1.0}, 3},
      {"negative first", {-1, 2}, {1.0, 1.0}, 3},
      {"fewer values", {0, 1}, {1.0}, 2},
      {"no values", {0, 1}, {}, 2},
      {"more values", {0}, {1.0, 1.0}, 1},
      {"empty", {}, {}, 0},
      {"no positions", {}, {1.0}, 0},
  };
  return views;
}

TEST(MCSparseVector, IsInvalidUnlessPositionsRiseAndSizesAgree) {
  for (const Invalid& c : InvalidViews()) {
    const MCSparseVector view(c.indices, c.values);
    EXPECT_FALSE(view.IsValid()) << c.name;
    EXPECT_EQ(view.GetNElements(), static_cast<int>(c.indices.size())) << c.name;
    EXPECT_EQ(view.GetMinVecSize(), c.minSize) << c.name;
  }
}

TEST(MCSparseVector, RefusesEverythingOfAnInvalidView) {
  for (const Invalid& c : InvalidViews()) {
    SCOPED_TRACE(c.name);
    const MCSparseVector view(c.indices, c.values);
    const Doubles before(20, 1.5);
    Doubles v = before;
    EXPECT_EQ(view.GetIndex(0), -1);
    EXPECT_EQ(view.GetValue(0), gMissingValue);
    EXPECT_FALSE(view.IncrementPart(v, 0, 1.0));
    EXPECT_EQ(view.InnerProductWithPart(v, 0), c.indices.empty() ? 0.0 : gMissingValue);
    EXPECT_EQ(view.ConvertToRegularVector(v), -1);
    Doubles probs = {0.25};
    double logLast = 7.0;
    EXPECT_FALSE(view.ComputeProbabilities(v, 2, 20, probs, logLast));
    EXPECT_EQ(probs, Doubles{0.25});
    EXPECT_EQ(logLast, 7.0);
    EXPECT_EQ(v, before);

    MCSymMatrix S(20);
    S.AddToDiagonal(3.0);
    const Doubles triangle = S.AsVectorConst();
    EXPECT_FALSE(view.IncrementRowPart(S, 0, 0, 1.0));
    EXPECT_FALSE(view.QuadraticOuterProductPartIncr(S, 0, 1.0));
    view.QuadraticOuterProduct(S);
    view.QuadraticOuterProductIncr(S, 1.0);
    EXPECT_EQ(S.AsVectorConst(), triangle);
    MCSymMatrix none;
    view.QuadraticOuterProductIncr(none, 1.0);
    EXPECT_EQ(none.GetNRows(), 0);
  }
}

TEST(MCSparseVector, FindsNothingInAnEmptyViewWhereThePartIsInTheVector) {
  const Ints indices;
  const Doubles values;
  const MCSparseVector view(indices, values);
  const Doubles v(2, 1.0);
  EXPECT_EQ(view.InnerProductWithPart(v, 2), 0.0);
  EXPECT_EQ(view.InnerProductWithPart({}, 0), 0.0);
  EXPECT_EQ(view.InnerProductWithPart(v, 3), gMissingValue);
  EXPECT_EQ(view.InnerProductWithPart(v, -1), gMissingValue);
}

TEST(MCSparseVector, TakesThePositionAtTheEndOfAnInt) {
  const Ints indices = {0, kHuge};
  const Doubles values = {1.0, 1.0};
  const MCSparseVector view(indices, values);
  EXPECT_TRUE(view.IsValid());
  EXPECT_EQ(view.GetMinVecSize(), kHuge);
  Doubles v(3, 1.0);
  EXPECT_FALSE(view.IncrementPart(v, 2, 1.0));
  EXPECT_FALSE(view.IncrementPart(v, kHuge, 1.0));
  EXPECT_EQ(view.InnerProductWithPart(v, kHuge), gMissingValue);
  Doubles probs;
  double logLast = 0.0;
  EXPECT_FALSE(view.ComputeProbabilities(v, 1, kHuge, probs, logLast));
  MCSymMatrix S(3);
  EXPECT_FALSE(view.IncrementRowPart(S, 0, kHuge, 1.0));
  EXPECT_FALSE(view.QuadraticOuterProductPartIncr(S, kHuge, 1.0));
  view.QuadraticOuterProductIncr(S, 1.0);
  EXPECT_FALSE(S.IsValidMatrix());
}

TEST(MCSparseVector, IncrementsAPartUpToTheEndOfTheVector) {
  const Row row;
  Doubles v(7, 1.0);
  EXPECT_TRUE(row.view.IncrementPart(v, 2, 3.0));
  EXPECT_EQ(v, (Doubles{1.0, 1.0, 1.0, 1.0 + 3.0 * 2.0, 1.0, 1.0 + 3.0 * -0.5, 1.0 + 3.0 * 0.1}));
  const Doubles before = v;
  for (int offset : {3, -1, kHuge}) {
    EXPECT_FALSE(row.view.IncrementPart(v, offset, 3.0));
    EXPECT_EQ(row.view.InnerProductWithPart(v, offset), gMissingValue);
  }
  EXPECT_EQ(v, before);
}

TEST(MCSparseVector, AddsAnInnerProductByAscendingElementFromZero) {
  const Ints indices = {0, 2, 3, 5};
  const Doubles values = {1e16, 1.0, -1e16, 1.0};
  const MCSparseVector view(indices, values);
  const Doubles v(7, 1.0);
  // 1e16 + 1 is 1e16, so one of both ones is lost; other orders give 2 or 0.
  EXPECT_EQ(view.InnerProductWithPart(v, 0), 1.0);
  EXPECT_EQ(view.InnerProductWithPart(v, 1), 1.0);
  const Ints one = {0};
  const Doubles negativeZero = {-0.0};
  EXPECT_FALSE(std::signbit(MCSparseVector(one, negativeZero).InnerProductWithPart(v, 0)));
}

TEST(MCSparseVector, MergesTwoSparseVectors) {
  const Ints a = {0, 2, 5, 9};
  const Doubles x = {1.0, 2.0, 3.0, 4.0};
  const Ints b = {2, 3, 9};
  const Doubles y = {10.0, 20.0, 30.0};
  const Ints c = {1, 3, 8, 11};
  const auto product = [&x, &a](const Ints& i, const Doubles& v, int n) {
    return MCSparseVector::InnerProduct(a.data(), x.data(), 4, i.data(), v.data(), n);
  };
  EXPECT_EQ(product(b, y, 3), 2.0 * 10.0 + 4.0 * 30.0);
  EXPECT_EQ(product(b, y, 2), 20.0);
  EXPECT_EQ(product(a, x, 4), 30.0);
  EXPECT_EQ(product(c, x, 4), 0.0);  // disjoint
  EXPECT_EQ(product(b, y, 0), 0.0);
  EXPECT_EQ(product(b, y, -1), gMissingValue);
  EXPECT_EQ(MCSparseVector::InnerProduct(a.data(), x.data(), -1, b.data(), y.data(), 3),
            gMissingValue);
  EXPECT_EQ(MCSparseVector::InnerProduct(a.data(), x.data(), 0, b.data(), y.data(), 3), 0.0);
}

TEST(MCSparseVector, AnswersMissingForANullPointerWhateverTheCounts) {
  const Ints i = {0};
  const Doubles v = {1.0};
  for (int n : {0, 1, -1}) {
    EXPECT_EQ(MCSparseVector::InnerProduct(nullptr, v.data(), n, i.data(), v.data(), 1),
              gMissingValue);
    EXPECT_EQ(MCSparseVector::InnerProduct(i.data(), nullptr, n, i.data(), v.data(), 1),
              gMissingValue);
    EXPECT_EQ(MCSparseVector::InnerProduct(i.data(), v.data(), 1, nullptr, v.data(), n),
              gMissingValue);
    EXPECT_EQ(MCSparseVector::InnerProduct(i.data(), v.data(), 1, i.data(), nullptr, n),
              gMissingValue);
  }
}

TEST(MCSparseVector, IncrementsARowOfASymmetricMatrixAcrossTheDiagonal) {
  const Row row;
  for (int target = 0; target < 7; ++target) {
    MCSymMatrix S(7);
    S.SetRowColToConst(target, 1.0);
    ASSERT_TRUE(row.view.IncrementRowPart(S, target, 2, 3.0));
    Doubles expected(7, 1.0);
    row.view.IncrementPart(expected, 2, 3.0);
    Doubles actual;
    S.GetRow(target, actual);
    EXPECT_EQ(actual, expected) << target;
  }
}

TEST(MCSparseVector, RefusesARowThatIsNotInTheMatrix) {
  const Row row;
  MCSymMatrix S(7);
  struct Case {
    int row;
    int offset;
  };
  for (const Case& c : {Case{-1, 0}, Case{7, 0}, Case{0, -1}, Case{0, 3}, Case{0, kHuge}}) {
    EXPECT_FALSE(row.view.IncrementRowPart(S, c.row, c.offset, 1.0));
  }
  EXPECT_EQ(S.AsVectorConst(), Doubles(28, 0.0));
  MCSymMatrix none;
  EXPECT_FALSE(row.view.IncrementRowPart(none, 0, 0, 1.0));
}

/// What the triangle of `start` becomes when (w x_d) x_e is added at offset, by the definition.
Doubles WithOuterProduct(const MCSymMatrix& start, const Row& row, int offset, double w) {
  MCSymMatrix S(start);
  for (std::size_t d = 0; d < row.values.size(); ++d) {
    for (std::size_t e = 0; e <= d; ++e) {
      const int i = offset + row.indices[d];
      const int j = offset + row.indices[e];
      const double factor = w * row.values[d];
      S.SetElem(i, j, S.GetElem(i, j) + factor * row.values[e]);
    }
  }
  return S.AsVectorConst();
}

MCSymMatrix Numbered(int n) {
  MCSymMatrix S(n);
  double x = 0.3;
  for (double& entry : S.AsVector()) entry = (x += 0.7);
  return S;
}

TEST(MCSparseVector, AddsAWeightedOuterProduct) {
  const Row row;
  for (int n : {5, 6, 9}) {
    for (double w : {1.0, 0.1, -3.7, 0.0}) {
      MCSymMatrix S = Numbered(n);
      row.view.QuadraticOuterProductIncr(S, w);
      EXPECT_EQ(S.AsVectorConst(), WithOuterProduct(Numbered(n), row, 0, w));
      EXPECT_EQ(S.GetNRows(), n);
    }
  }
}

TEST(MCSparseVector, GrowsAMatrixThatIsTooSmallAndLosesWhatItHeld) {
  const Row row;
  for (int n : {0, 1, 4}) {
    MCSymMatrix S = Numbered(n);
    row.view.QuadraticOuterProductIncr(S, 0.1);
    EXPECT_EQ(S.GetNRows(), 5);
    EXPECT_EQ(S.AsVectorConst(), WithOuterProduct(MCSymMatrix(5), row, 0, 0.1));
  }
}

TEST(MCSparseVector, SetsAMatrixToItsOuterProduct) {
  const Row row;
  for (int n : {0, 3, 5, 8}) {
    MCSymMatrix S = Numbered(n);
    row.view.QuadraticOuterProduct(S);
    EXPECT_EQ(S.GetNRows(), n < 5 ? 5 : n);
    EXPECT_EQ(S.AsVectorConst(), WithOuterProduct(MCSymMatrix(S.GetNRows()), row, 0, 1.0));
  }
}

TEST(MCSparseVector, AddsAnOuterProductAtAnOffsetThatFits) {
  const Row row;
  for (int offset : {0, 1, 2}) {
    MCSymMatrix S = Numbered(7);
    EXPECT_TRUE(row.view.QuadraticOuterProductPartIncr(S, offset, 0.3));
    EXPECT_EQ(S.AsVectorConst(), WithOuterProduct(Numbered(7), row, offset, 0.3));
  }
  MCSymMatrix S = Numbered(7);
  for (int offset : {-1, 3, kHuge}) {
    EXPECT_FALSE(row.view.QuadraticOuterProductPartIncr(S, offset, 0.3));
  }
  EXPECT_EQ(S.AsVectorConst(), Numbered(7).AsVectorConst());
}

TEST(MCSparseVector, LeavesAnInvalidMatrixWhereItCantBeAllocated) {
  const Row row;
  MCSymMatrix product;
  MCSymMatrix sum;
  {
    const mctest::FailAllocation failure(1);
    row.view.QuadraticOuterProduct(product);
  }
  {
    const mctest::FailAllocation failure(1);
    row.view.QuadraticOuterProductIncr(sum, 1.0);
  }
  EXPECT_FALSE(product.IsValidMatrix());
  EXPECT_FALSE(sum.IsValidMatrix());
}

TEST(MCSparseVector, WritesTheRowOut) {
  const Row row;
  Doubles v;
  EXPECT_EQ(row.view.ConvertToRegularVector(v), 5);
  EXPECT_EQ(v, (Doubles{0.0, 2.0, 0.0, -0.5, 0.1}));
  v.assign(7, 9.0);
  EXPECT_EQ(row.view.ConvertToRegularVector(v), 7);
  EXPECT_EQ(v, (Doubles{0.0, 2.0, 0.0, -0.5, 0.1, 0.0, 0.0}));
  v.assign(2, 9.0);
  EXPECT_EQ(row.view.ConvertToRegularVector(v), 5);
  EXPECT_EQ(v[0], 0.0);
}

TEST(MCSparseVector, AllocatesNothingForARow) {
  const Row row;
  Doubles v(10, 1.0);
  Doubles probs(4);
  MCSymMatrix S(5);
  double logLast = 0.0;
  const std::size_t before = mctest::AllocationCount();
  const MCSparseVector view(row.indices, row.values);
  view.IncrementPart(v, 0, 1.0);
  view.InnerProductWithPart(v, 0);
  view.QuadraticOuterProductIncr(S, 1.0);
  view.ComputeProbabilities(v, 3, 5, probs, logLast);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(MCSparseVector, DisplaysItsFields) {
  const Row row;
  EXPECT_EQ(mctest::DisplayOf(row.view),
            "\nMCSparseVector display start"
            "\nNumber of sparse vector elements = 3"
            "\nVector of indices (size = 3)\n 1 3 4"
            "\nVector of values (size = 3)\n 2 -0.5 0.1"
            "\nValidity indicator = true"
            "\nMCSparseVector display end");
}

// ---- Probabilities

struct Probabilities {
  Doubles probs;
  double logLast = -1.0;
};

/// Of predictors that a row with a single 1.0 takes from beta as they stand.
Probabilities Of(const Doubles& eta) {
  const Ints indices = {0};
  const Doubles values = {1.0};
  Probabilities p;
  EXPECT_TRUE(
      MCSparseVector(indices, values)
          .ComputeProbabilities(eta, static_cast<int>(eta.size()) + 1, 1, p.probs, p.logLast));
  EXPECT_EQ(p.probs.size(), eta.size() + 1);
  return p;
}

TEST(MCSparseVectorProbabilities, TakesTheBlockOfEachCategory) {
  const Row row;
  const Doubles beta = {9.0, 0.5, 9.0, 2.0, 1.0, 9.0, 9.0, 0.25, 9.0, 1.0, -2.0, 9.0, 9.0};
  Probabilities p;
  ASSERT_TRUE(row.view.ComputeProbabilities(beta, 3, 6, p.probs, p.logLast));
  const double eta0 = 2.0 * 0.5 - 0.5 * 2.0 + 0.1;
  const double eta1 = 2.0 * 0.25 - 0.5 * 1.0 - 0.2;
  const double total = std::exp(eta0) + std::exp(eta1) + 1.0;
  EXPECT_NEAR(p.probs[0], std::exp(eta0) / total, 1e-15);
  EXPECT_NEAR(p.probs[1], std::exp(eta1) / total, 1e-15);
  EXPECT_NEAR(p.probs[2], 1.0 / total, 1e-15);
  EXPECT_NEAR(p.logLast, -std::log(total), 1e-15);
}

TEST(MCSparseVectorProbabilities, RefusesSizesThatDontAgree) {
  const Row row;
  const Doubles beta(12, 1.0);
  Doubles probs = {0.25};
  double logLast = 7.0;
  struct Case {
    int nCat;
    int blockSize;
  };
  for (const Case& c : {Case{0, 5}, Case{-1, 5}, Case{3, 0}, Case{3, -5}, Case{3, 4}, Case{3, 7},
                        Case{4, 5}, Case{kHuge, kHuge}, Case{kHuge, 5}}) {
    EXPECT_FALSE(row.view.ComputeProbabilities(beta, c.nCat, c.blockSize, probs, logLast));
  }
  EXPECT_EQ(probs, Doubles{0.25});
  EXPECT_EQ(logLast, 7.0);
  EXPECT_TRUE(row.view.ComputeProbabilities(beta, 3, 6, probs, logLast));
  EXPECT_TRUE(row.view.ComputeProbabilities(beta, 1, kHuge, probs, logLast));
}

TEST(MCSparseVectorProbabilities, OfASingleCategoryAreCertain) {
  const Probabilities p = Of({});
  EXPECT_EQ(p.probs, Doubles{1.0});
  EXPECT_EQ(p.logLast, 0.0);
}

TEST(MCSparseVectorProbabilities, KeepEntriesBeyondTheCategories) {
  const Ints indices = {0};
  const Doubles values = {1.0};
  Doubles probs = {9.0, 9.0, 9.0, 9.0};
  double logLast = 0.0;
  ASSERT_TRUE(MCSparseVector(indices, values).ComputeProbabilities({0.0}, 2, 1, probs, logLast));
  EXPECT_EQ(probs, (Doubles{0.5, 0.5, 9.0, 9.0}));
}

TEST(MCSparseVectorProbabilities, AgreeWithExtendedPrecisionForPredictorsOfEverySize) {
  constexpr double kEpsilon = 0x1p-52;
  for (const auto& row : mctest::ReadReference(MCSTAT_TEST_DATA "/mcmath/probabilities.csv")) {
    const int category = static_cast<int>(row.fArguments[0]);
    const Doubles eta(row.fArguments.begin() + 1, row.fArguments.end());
    const Probabilities p = Of(eta);
    double largest = 0.0;
    for (const double x : eta) largest = std::max(largest, std::fabs(x));
    const auto expected = static_cast<double>(row.fValues[0]);
    // Exponents are kept to some 1420 in size by the shift; a few roundings of them enter.
    const double tolerance = (4.0 + 2.0 * std::min(largest, 1420.0)) * kEpsilon;
    const std::string where =
        row.fRegion + " " + testing::PrintToString(eta) + ", category " + std::to_string(category);
    if (category == -1) {
      EXPECT_NEAR(p.logLast, expected, tolerance + 2.0 * kEpsilon * std::fabs(expected)) << where;
    } else {
      // Around the guard a probability may count as 0, beyond both it must.
      const double actual = p.probs[static_cast<std::size_t>(category)];
      EXPECT_NEAR(actual, expected, tolerance * expected + std::exp(-708.38)) << where;
      if (expected < std::exp(-709.5)) {
        EXPECT_EQ(actual, 0.0) << where;
      }
    }
  }
}

TEST(MCSparseVectorProbabilities, OfEqualPredictorsAboveTheGuardAreSharedAmongTheOthers) {
  for (std::size_t m = 1; m <= 4; ++m) {
    const double n = static_cast<double>(m);
    for (const double hi : {709.25, 1000.0, 1e9, 1e300}) {
      const Probabilities p = Of(Doubles(m, hi));
      for (std::size_t j = 0; j < m; ++j) EXPECT_EQ(p.probs[j], 1.0 / n);
      EXPECT_EQ(p.probs[m], 0.0);
      EXPECT_NEAR(p.logLast, -hi - std::log(n), 4e-16 * hi);
    }
  }
}

TEST(MCSparseVectorProbabilities, OfEqualPredictorsAtTheGuardDontOverflow) {
  // Three times exp(709) is beyond the largest double.
  for (std::size_t m = 1; m <= 5; ++m) {
    const double n = static_cast<double>(m);
    const Probabilities p = Of(Doubles(m, 709.0));
    for (std::size_t j = 0; j < m; ++j) EXPECT_NEAR(p.probs[j], 1.0 / n, 2e-16);
    EXPECT_LT(p.probs[m], 1e-307);
    EXPECT_NEAR(p.logLast, -709.0 - std::log(n), 3e-13);
  }
}

TEST(MCSparseVectorProbabilities, OfPredictorsThatAreAllTooLowLeaveTheReferenceAlone) {
  for (const Doubles& eta : {Doubles{-708.5}, Doubles{-1e9, -1e9}, Doubles{-709.5, -710.0},
                             Doubles{-1000.0, -2000.0, -1500.0}, Doubles{-1e300, -1e9},
                             Doubles{-kInfinity}, Doubles{-kInfinity, -1000.0}}) {
    const Probabilities p = Of(eta);
    Doubles expected(eta.size() + 1, 0.0);
    expected.back() = 1.0;
    EXPECT_EQ(p.probs, expected) << testing::PrintToString(eta);
    EXPECT_EQ(p.logLast, 0.0);
  }
}

TEST(MCSparseVectorProbabilities, AreFiniteForAllFinitePredictors) {
  const Doubles values = {0.0,          1.0,   -1.0,  708.39, -708.39,
                          -708.4,       709.0, 709.5, -709.0, -709.5,
                          1e9,          -1e9,  1e300, -1e300, std::numeric_limits<double>::max(),
                          gMissingValue};
  for (const double a : values) {
    for (const double b : values) {
      for (const double c : values) {
        const Probabilities p = Of({a, b, c});
        double sum = 0.0;
        for (const double x : p.probs) {
          EXPECT_GE(x, 0.0);
          sum += x;
        }
        EXPECT_NEAR(sum, 1.0, 1e-12) << a << " " << b << " " << c;
        EXPECT_TRUE(std::isfinite(p.logLast)) << a << " " << b << " " << c;
        EXPECT_LE(p.logLast, 1e-12);
      }
    }
  }
}

TEST(MCSparseVectorProbabilities, ShiftByWholeNumbersBeyondAnInt) {
  const Probabilities p = Of({1e12, 1e12 - 1.0});
  EXPECT_NEAR(p.probs[0], 1.0 / (1.0 + std::exp(-1.0)), 1e-12);
  EXPECT_NEAR(p.probs[1], 1.0 / (1.0 + std::exp(1.0)), 1e-12);
  EXPECT_EQ(p.probs[2], 0.0);
  EXPECT_NEAR(p.logLast, -1e12, 1.0);
}

TEST(MCSparseVectorProbabilities, OfNothingButNaNFallToTheFirstCategory) {
  const Ints indices = {0};
  const Doubles values = {1.0};
  Doubles probs = {0.25, 0.25, 0.5};  // of the row before
  double logLast = -1.0;
  ASSERT_TRUE(
      MCSparseVector(indices, values).ComputeProbabilities({kNaN, kNaN}, 3, 1, probs, logLast));
  EXPECT_EQ(probs, (Doubles{1.0, 0.0, 0.0}));
  EXPECT_EQ(logLast, 0.0);
}

TEST(MCSparseVectorProbabilities, LeaveANaNOutOfTheComparisons) {
  const Probabilities different = Of({1.0, kNaN, 2.0});
  const Probabilities without = Of({1.0, 2.0});
  EXPECT_EQ(different.probs, (Doubles{without.probs[0], 0.0, without.probs[1], without.probs[2]}));
  EXPECT_EQ(different.logLast, without.logLast);
  // What is left is one value, so the predictors count as equal.
  EXPECT_EQ(Of({kNaN, 1.0}).probs, Of({1.0, 1.0}).probs);
}

TEST(MCSparseVectorProbabilities, SurviveInfinities) {
  const Probabilities low = Of({-kInfinity, 1.0});
  const double total = 1.0 + std::exp(1.0);
  EXPECT_EQ(low.probs[0], 0.0);
  EXPECT_NEAR(low.probs[1], std::exp(1.0) / total, 1e-12);
  EXPECT_NEAR(low.probs[2], 1.0 / total, 1e-12);
  for (const Doubles& eta :
       {Doubles{kInfinity}, Doubles{kInfinity, 1.0}, Doubles{kInfinity, -kInfinity}}) {
    for (const double x : Of(eta).probs) EXPECT_EQ(x, 0.0);
  }
}

}  // namespace
