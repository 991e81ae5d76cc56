// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mceigenvalues.h"

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/extendedmatrix.h"
#include "support/invalidmatrices.h"
#include "support/matrices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <new>

namespace {

using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::InvalidSym;
using mctest::Packed;
using testing::ElementsAre;
using testing::IsEmpty;
using Vector = std::vector<double>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

// Values 1 and 3.
MCSymMatrix TwoByTwo() {
  return Packed({2, 1, 2});
}

Vector Sorted(MCEigenValues problem) {
  Vector values;
  EXPECT_GE(problem.GetSorted(values, false), 0);
  return values;
}

TEST(MCEigenValues, AFreshObjectHasTheDefaultsAndNoRows) {
  MCEigenValues problem;
  EXPECT_EQ(problem.GetTolerance(), 1e-12);
  EXPECT_EQ(problem.GetMaxIter(), 30);
  EXPECT_TRUE(problem.IsValidEMatrix());
  Vector values = {1};
  MCRectMatrix vectors(2, 2);
  EXPECT_EQ(problem.Compute(values, vectors), 0);
  EXPECT_THAT(values, IsEmpty());
  EXPECT_EQ(vectors.GetNRows(), 0);
  EXPECT_EQ(vectors.GetNCols(), 0);
}

TEST(MCEigenValues, TheSettersKeepWhatTheyAreGivenAndRefuseTheRest) {
  MCEigenValues problem(1e-5, 7);
  EXPECT_EQ(problem.GetTolerance(), 1e-5);
  EXPECT_EQ(problem.GetMaxIter(), 7);
  for (const double bad : {-1e-300, kNaN, kInf}) EXPECT_FALSE(problem.SetTolerance(bad));
  EXPECT_FALSE(problem.SetMaxIter(-1));
  EXPECT_FALSE(problem.SetHMatrix(InvalidSym()));
  EXPECT_FALSE(problem.SetEMatrix(InvalidSym()));
  EXPECT_EQ(problem.GetTolerance(), 1e-5);
  EXPECT_EQ(problem.GetMaxIter(), 7);
  EXPECT_TRUE(problem.IsValidEMatrix());
  EXPECT_TRUE(problem.SetTolerance(0.0));
  EXPECT_TRUE(problem.SetMaxIter(0));
  EXPECT_EQ(problem.GetTolerance(), 0.0);
  EXPECT_EQ(problem.GetMaxIter(), 0);
}

TEST(MCEigenValues, WhatAConstructorCannotTakeLeavesTheDefaults) {
  const MCEigenValues problem(-1.0, -1);
  EXPECT_EQ(problem.GetTolerance(), 1e-12);
  EXPECT_EQ(problem.GetMaxIter(), 30);
}

TEST(MCEigenValues, AnInvalidMatrixIsNeverTakenForTheIdentity) {
  Vector values;
  EXPECT_EQ(MCEigenValues(InvalidSym(), 1e-12, 30).Compute(values), -1);
  MCEigenValues pair(TwoByTwo(), InvalidSym(), 1e-12, 30);
  EXPECT_FALSE(pair.IsValidEMatrix());
  EXPECT_EQ(pair.Compute(values), -1);
}

TEST(MCEigenValues, ValuesAndVectorsOfATwoByTwoMatrix) {
  MCEigenValues problem(TwoByTwo(), 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  EXPECT_EQ(problem.GetSorted(values, vectors, true), 2);
  EXPECT_DOUBLE_EQ(values[0], 3.0);
  EXPECT_DOUBLE_EQ(values[1], 1.0);
  EXPECT_NEAR(vectors.GetElem(0, 0), vectors.GetElem(1, 0), 1e-15);
  EXPECT_NEAR(vectors.GetElem(0, 1), -vectors.GetElem(1, 1), 1e-15);
  EXPECT_NEAR(std::abs(vectors.GetElem(0, 0)), std::sqrt(0.5), 1e-15);
}

TEST(MCEigenValues, BothDirectionsAndBothFormsAgree) {
  const MCSymMatrix H = mctest::NoisySymmetric(9, 4);
  MCEigenValues problem(H, 1e-12, 30);
  Vector unsorted;
  EXPECT_EQ(problem.Compute(unsorted), 9);
  Vector descending;
  Vector ascending;
  EXPECT_EQ(problem.GetSorted(descending, true), 9);
  EXPECT_EQ(problem.GetSorted(ascending, false), 9);
  EXPECT_TRUE(std::is_sorted(ascending.begin(), ascending.end()));
  std::reverse(ascending.begin(), ascending.end());
  EXPECT_EQ(descending, ascending);
  std::sort(unsorted.rbegin(), unsorted.rend());
  EXPECT_EQ(descending, unsorted);
  Vector values;
  MCRectMatrix down;
  MCRectMatrix up;
  EXPECT_EQ(problem.GetSorted(values, down, true), 9);
  EXPECT_EQ(values, descending);
  EXPECT_EQ(problem.GetSorted(values, up, false), 9);
  for (int k = 0; k < 9; ++k) EXPECT_EQ(up.GetElem(3, k), down.GetElem(3, 8 - k));
}

// A diagonal matrix needs no rotation, so that each vector shows where its value came from.
TEST(MCEigenValues, EqualValuesKeepTheirOrder) {
  MCEigenValues problem(Packed({2, 0, 5, 0, 0, 2, 0, 0, 0, 5}), 1e-12, 30);
  for (const bool descending : {true, false}) {
    Vector values;
    MCRectMatrix vectors;
    EXPECT_EQ(problem.GetSorted(values, vectors, descending), 4);
    const int fives = descending ? 0 : 2;
    EXPECT_EQ(std::abs(vectors.GetElem(1, fives)), 1.0);
    EXPECT_EQ(std::abs(vectors.GetElem(3, fives + 1)), 1.0);
    EXPECT_EQ(std::abs(vectors.GetElem(0, 2 - fives)), 1.0);
    EXPECT_EQ(std::abs(vectors.GetElem(2, 3 - fives)), 1.0);
  }
}

TEST(MCEigenValues, ZerosOfBothSignsKeepTheirOrder) {
  MCSymMatrix H(40);
  for (int i = 1; i < 40; i += 2) H.SetElem(i, i, -0.0);
  MCEigenValues problem(H, 1e-12, 30);
  Vector values;
  EXPECT_EQ(problem.GetSorted(values, true), 40);
  for (std::size_t i = 0; i < 40; ++i) EXPECT_EQ(std::signbit(values[i]), i % 2 == 1) << i;
}

TEST(MCEigenValues, TheComparisonsLookAtValuesAlone) {
  using Pair = std::pair<double, int>;
  EXPECT_TRUE(MCEigenValues::CompareD(2, 1));
  EXPECT_FALSE(MCEigenValues::CompareD(1, 2));
  EXPECT_FALSE(MCEigenValues::CompareD(1, 1));
  EXPECT_TRUE(MCEigenValues::CompareA(1, 2));
  EXPECT_FALSE(MCEigenValues::CompareA(2, 1));
  EXPECT_FALSE(MCEigenValues::CompareA(1, 1));
  EXPECT_TRUE(MCEigenValues::PCompareD(Pair(2, 9), Pair(1, 0)));
  EXPECT_FALSE(MCEigenValues::PCompareD(Pair(1, 0), Pair(1, 9)));
  EXPECT_FALSE(MCEigenValues::PCompareD(Pair(1, 9), Pair(1, 0)));
  EXPECT_TRUE(MCEigenValues::PCompareA(Pair(1, 9), Pair(2, 0)));
  EXPECT_FALSE(MCEigenValues::PCompareA(Pair(1, 0), Pair(1, 9)));
  EXPECT_FALSE(MCEigenValues::PCompareA(Pair(1, 9), Pair(1, 0)));
}

TEST(MCEigenValues, WhatIsSetAnewIsComputedAnew) {
  MCEigenValues problem(TwoByTwo(), 1e-12, 30);
  Vector values;
  EXPECT_EQ(problem.GetSorted(values, true), 2);
  EXPECT_TRUE(problem.SetHMatrix(Packed({7})));
  EXPECT_EQ(problem.GetSorted(values, true), 1);
  EXPECT_THAT(values, ElementsAre(7.0));
  EXPECT_TRUE(problem.SetEMatrix(Packed({2})));
  EXPECT_EQ(problem.GetSorted(values, true), 1);
  EXPECT_THAT(values, ElementsAre(testing::DoubleEq(3.5)));
  EXPECT_TRUE(problem.SetTolerance(2.0));
  EXPECT_EQ(problem.GetSorted(values, true), 0) << "no row of E passes";
  EXPECT_THAT(values, IsEmpty());
}

TEST(MCEigenValues, SortedVectorsComeAlsoAfterValuesAlone) {
  MCEigenValues problem(TwoByTwo(), 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  EXPECT_EQ(problem.Compute(values), 2);
  EXPECT_EQ(problem.GetSorted(values, vectors, true), 2);
  EXPECT_EQ(vectors.GetNCols(), 2);
}

TEST(MCEigenValues, TheObjectKeepsItsOwnCopies) {
  MCSymMatrix H = TwoByTwo();
  MCEigenValues problem(H, 1e-12, 30);
  H.Clear();
  Vector values;
  EXPECT_EQ(problem.GetSorted(values, false), 2);
  EXPECT_DOUBLE_EQ(values[0], 1.0);
  const MCEigenValues copy(problem);
  EXPECT_EQ(Sorted(copy), values);
}

TEST(MCEigenValues, AtTheIterationLimitTheAnswerIsMinusOneAndAllIsEmpty) {
  const MCSymMatrix H = mctest::NoisySymmetric(12, 5);
  Vector values = {1, 2};
  MCRectMatrix vectors(2, 2);
  const auto expectNone = [&values, &vectors](int answer) {
    EXPECT_EQ(answer, -1);
    EXPECT_THAT(values, IsEmpty());
    EXPECT_EQ(vectors.GetNRows(), 0);
    values = {1, 2};
    vectors.SetNRowsCols(2, 2);
  };
  for (const int limit : {0, 1}) {
    MCEigenValues problem(H, 1e-12, limit);
    expectNone(problem.Compute(values, vectors));
    expectNone(problem.GetSorted(values, vectors, true));
    EXPECT_EQ(problem.Compute(values), -1);
    EXPECT_THAT(values, IsEmpty());
    EXPECT_EQ(problem.GetSorted(values, true), -1);
    EXPECT_TRUE(problem.SetMaxIter(30));
    EXPECT_EQ(problem.Compute(values, vectors), 12) << "the object lives on";
  }
  EXPECT_EQ(MCEigenValues(Packed({1, 0, 2, 0, 0, 3}), 1e-12, 0).Compute(values), 3)
      << "a diagonal matrix needs no iteration";
}

TEST(MCEigenValues, AnElementThatIsNotFiniteGivesNoValues) {
  for (const double bad : {kNaN, kInf, -kInf}) {
    for (int place = 0; place < 6; ++place) {
      MCSymMatrix H = Packed({4, 1, 5, 2, 1, 6});
      H.SetElem(place, bad);
      Vector values = {1};
      MCRectMatrix vectors(1, 1);
      MCEigenValues problem(H, 1e-12, 30);
      EXPECT_EQ(problem.Compute(values, vectors), -1);
      EXPECT_THAT(values, IsEmpty());
      EXPECT_EQ(vectors.GetNRows(), 0);
      EXPECT_EQ(problem.GetSorted(values, true), -1);
    }
  }
}

TEST(MCEigenValues, AValueBeyondTheDoublesGivesNoValues) {
  Vector values;
  EXPECT_EQ(MCEigenValues(Packed({kLargest, kLargest, kLargest}), 1e-12, 30).Compute(values), -1);
  EXPECT_THAT(values, IsEmpty());
  EXPECT_EQ(MCEigenValues(Packed({kLargest, 0, -kLargest}), 1e-12, 30).Compute(values), 2);
  EXPECT_EQ(values, (Vector{kLargest, -kLargest}));
  EXPECT_EQ(MCEigenValues(Packed({1e200}), Packed({1e-200}), 1e-12, 30).Compute(values), -1);
}

// Powers of two change nothing but the exponents.
TEST(MCEigenValues, MatricesAtTheEndsOfTheDoublesAreSolvedAsOthers) {
  const MCSymMatrix H = mctest::NoisySymmetric(11, 6);
  MCEigenValues problem(H, 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  ASSERT_EQ(problem.Compute(values, vectors), 11);
  for (const int exponent : {-900, -400, 400, 1000, 1020}) {
    MCSymMatrix scaled = H;
    for (double& x : scaled.AsVector()) x = std::ldexp(x, exponent);
    MCEigenValues scaledProblem(scaled, 1e-12, 30);
    Vector scaledValues;
    MCRectMatrix scaledVectors;
    ASSERT_EQ(scaledProblem.Compute(scaledValues, scaledVectors), 11);
    for (double& x : scaledValues) x = std::ldexp(x, -exponent);
    EXPECT_EQ(scaledValues, values) << exponent;
    EXPECT_EQ(scaledVectors.AsVectorConst(), vectors.AsVectorConst()) << exponent;
  }
}

TEST(MCEigenValues, SubnormalElementsGiveTheirValues) {
  const double unit = std::numeric_limits<double>::denorm_min();
  EXPECT_THAT(Sorted(MCEigenValues(Packed({2 * unit, unit, 2 * unit}), 1e-12, 30)),
              ElementsAre(unit, 3 * unit));
  EXPECT_THAT(Sorted(MCEigenValues(Packed({0, unit, 0}), 1e-12, 30)), ElementsAre(-unit, unit));
}

// Elements whose squares underflow beside the largest.
TEST(MCEigenValues, SmallElementsBesideLargeOnesKeepTheVectorsOrthogonal) {
  for (const double small : {1e-140, 1e-160, 1e-200, 1e-300}) {
    MCSymMatrix H = Packed({small, small, 2 * small, small, -small, 3 * small, 0, 0, 0, 1});
    MCEigenValues problem(H, 1e-12, 30);
    Vector values;
    MCRectMatrix vectors;
    ASSERT_EQ(problem.Compute(values, vectors), 4) << small;
    for (int k = 0; k < 4; ++k) {
      for (int l = 0; l <= k; ++l) {
        EXPECT_NEAR(vectors.DotProductCol(k, l), k == l ? 1.0 : 0.0, 1e-14) << small;
      }
    }
  }
}

TEST(MCEigenValues, SmallElementsOutliveTheScalingOfLargeOnes) {
  EXPECT_THAT(Sorted(MCEigenValues(Packed({1e160, 0, 1e-160}), 1e-12, 30)),
              ElementsAre(1e-160, 1e160));
}

// A QL step meets a new coupling of exactly 0 while its bulge underflows, and ends there. The last
// two rows have the values 49 and -16, beside which the others are 0.
TEST(MCEigenValues, AStepWhoseBulgeVanishesEndsWell) {
  const double unit = 0x1p-304;
  const double small = 0x1p-797;
  MCEigenValues problem(Packed({0, small, 0, 0, small, 0, 0, 0, 28 * unit, 33 * unit}), 1e-12, 30);
  Vector values;
  MCRectMatrix vectors;
  ASSERT_EQ(problem.GetSorted(values, vectors, true), 4);
  EXPECT_NEAR(values[0] / unit, 49, 1e-13);
  EXPECT_NEAR(values[1] / unit, 0, 1e-13);
  EXPECT_NEAR(values[2] / unit, 0, 1e-13);
  EXPECT_NEAR(values[3] / unit, -16, 1e-13);
  // (28, 49) and (28, -16) are vectors of the block [0 28; 28 33].
  EXPECT_NEAR(vectors.GetElem(3, 0) / vectors.GetElem(2, 0), 49.0 / 28, 1e-14);
  EXPECT_NEAR(vectors.GetElem(3, 3) / vectors.GetElem(2, 3), -16.0 / 28, 1e-14);
  for (int k = 0; k < 4; ++k) {
    for (int l = 0; l <= k; ++l) {
      EXPECT_NEAR(vectors.DotProductCol(k, l), k == l ? 1.0 : 0.0, 1e-15);
    }
  }
}

TEST(MCEigenValues, WhereMemoryRunsOutNothingWrongComesOut) {
  const MCSymMatrix H = Packed({2, 1, 3, 0, 1, 4});
  const MCSymMatrix E = Packed({1, 0, 2, 0, 0, 0});
  using Call = std::function<int(MCEigenValues&, Vector&, MCRectMatrix&)>;
  const Call calls[] = {
      [](MCEigenValues& p, Vector& values, MCRectMatrix&) { return p.Compute(values); },
      [](MCEigenValues& p, Vector& values, MCRectMatrix& Z) { return p.Compute(values, Z); },
      [](MCEigenValues& p, Vector& values, MCRectMatrix& Z) {
        return p.GetSorted(values, Z, true);
      }};
  for (const Call& call : calls) {
    Vector expected;
    MCRectMatrix expectedVectors;
    MCEigenValues reference(H, E, 1e-12, 30);
    ASSERT_EQ(call(reference, expected, expectedVectors), 2);
    bool wasExhausted = false;
    for (std::size_t k = 1;; ++k) {
      MCEigenValues problem(H, E, 1e-12, 30);
      Vector values;
      MCRectMatrix vectors;
      int answer = -1;
      bool hasFired = false;
      {
        const mctest::FailAllocation fail(k);
        try {
          answer = call(problem, values, vectors);
        } catch (const std::bad_alloc&) {
          values.clear();
        }
        hasFired = fail.HasFired();
      }
      if (!hasFired) break;
      wasExhausted = true;
      if (answer == 2) {  // a sort can do without
        EXPECT_EQ(values, expected) << k;
      } else {
        EXPECT_EQ(answer, -1) << k;
        EXPECT_THAT(values, IsEmpty()) << k;
      }
      EXPECT_EQ(call(problem, values, vectors), 2) << "the object lives on";
      EXPECT_EQ(values, expected) << k;
    }
    EXPECT_TRUE(wasExhausted);
  }
}

TEST(MCEigenValues, AMatrixThatCannotBeCopiedIsNotTaken) {
  const MCSymMatrix H = TwoByTwo();
  MCEigenValues problem;
  {
    const mctest::FailAllocation fail(1);
    EXPECT_FALSE(problem.SetHMatrix(H));
  }
  Vector values;
  EXPECT_EQ(problem.Compute(values), -1);
  EXPECT_TRUE(problem.SetHMatrix(H));
  {
    const mctest::FailAllocation fail(1);
    EXPECT_FALSE(problem.SetEMatrix(H));
  }
  EXPECT_EQ(problem.Compute(values), -1) << "not the identity instead";
  EXPECT_TRUE(problem.SetEMatrix(H));
  EXPECT_EQ(problem.Compute(values), 2);
}

// The labels in their order, and nothing between them but values.
void ExpectLabels(const std::string& text, const std::vector<std::string>& labels) {
  std::size_t from = 0;
  for (const std::string& label : labels) {
    const std::size_t place = text.find("\n" + label, from);
    ASSERT_NE(place, std::string::npos) << label << " in\n" << text;
    from = place + label.size();
  }
}

TEST(MCEigenValuesDisplay, ShowsTheStateUnderItsLabels) {
  MCEigenValues problem(TwoByTwo(), Packed({1, 0, 4}), 1e-9, 25);
  Vector values;
  MCRectMatrix vectors;
  ASSERT_EQ(problem.GetSorted(values, vectors, true), 2);
  const std::string text = mctest::DisplayOf(problem);
  ExpectLabels(text, {"MCEigenValues display start", "Number of rows", "Tolerance",
                      "Maximum number of iterations", "Compute eigenvectors indicator",
                      "Matrix H:", "Matrix E:", "fvEDiag",
                      "Gen.Inverse of Chol(E):", "fmVHV:", "Rank of the E matrix",
                      "fmOrthInfo:", "fvDiag3", "fvSubdiag3", "Number of computed eigenvalues",
                      "fvEigenVal", "fmEigenVectors:", "fvEigPairs", "MCEigenValues display end"});
  EXPECT_EQ(text.find("Matrix E is identity"), std::string::npos);
  EXPECT_THAT(text, testing::HasSubstr("fvEDiag (size = 2)"));
}

TEST(MCEigenValuesDisplay, WithoutEAOneLineReplacesAllOnIt) {
  const std::string text = mctest::DisplayOf(MCEigenValues(TwoByTwo(), 1e-9, 25));
  ExpectLabels(text,
               {"Matrix H:", "Matrix E is identity", "fmOrthInfo:", "fvDiag3", "fvSubdiag3",
                "Number of computed eigenvalues", "fvEigenVal", "fmEigenVectors:", "fvEigPairs"});
  for (const char* label : {"Matrix E:", "fvEDiag", "Gen.Inverse", "fmVHV", "Rank of"}) {
    EXPECT_EQ(text.find(label), std::string::npos) << label;
  }
}

}  // namespace
