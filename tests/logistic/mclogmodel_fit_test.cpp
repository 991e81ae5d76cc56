// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"
#include "regression/logistic/mclogmodel.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/logisticmodel.h"
#include "support/samebits.h"
#include "support/scriptedcancel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using mctest::BitsOf;
using mctest::LogisticDesign;
using mctest::LogisticModel;
using mctest::Rows;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kEpsilon = 0x1p-52;
constexpr double kAboveTwo = 2.0 + 0x1p-51;

// Dependent of three categories at position 0, factor a of two at 1, covariate x at 2. Columns:
// intercept; a = 0, 1; x. The second level of a is redundant.
LogisticDesign Mixed() {
  return LogisticDesign(0, {{1, 2}}, {2}).Categories(3).Effect({1}).Effect({}, {2});
}

const Rows kRows = {{0, 0, 1}, {1, 1, 3}, {2, 0, 2}, {0, 1, 7}, {2, 1, 4}, {2, 0, 5}};

// --- Redundancy ---------------------------------------------------------------------------------

TEST(MCLogModelRedundancy, IsThatOfTheDesignInEveryBlock) {
  LogisticModel model(Mixed());
  EXPECT_TRUE(model.Identify(kRows).IsOK());
  EXPECT_EQ(BitsOf(model.fModel.GetBasicRedundInfo()),
            (std::vector<bool>{true, true, false, true}));
  EXPECT_EQ(BitsOf(model.fModel.GetRedundancyInfo()),
            (std::vector<bool>{true, true, false, true, true, true, false, true}));
  EXPECT_EQ(model.fModel.GetNBasicNonRed(), 3);
  EXPECT_EQ(model.fModel.GetNNonRedParams(), 6);
}

TEST(MCLogModelRedundancy, FallsOnTheLaterOfAliasedColumns) {
  LogisticModel model(LogisticDesign(0, {{1, 2}}, {2, 3})
                          .Categories(2)
                          .NoIntercept()
                          .Effect({1})
                          .Effect({}, {3})
                          .Effect({}, {2}));
  EXPECT_TRUE(model.Identify({{0, 0, 1, 2}, {1, 1, 2, 4}, {1, 0, 3, 6}, {0, 1, 5, 10}}).IsOK());
  EXPECT_EQ(BitsOf(model.fModel.GetBasicRedundInfo()),
            (std::vector<bool>{true, true, true, false}));
}

TEST(MCLogModelRedundancy, HasTheBitsOfOneSweepPerColumn) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Accumulate(kRows).IsOK());
  MCSymMatrix expected(*model.fModel.GetXPrimeX());
  std::vector<double> scale;
  expected.GetDiagonal(scale);
  MCBitSet pivots(4);
  for (int k = 0; k < 4; ++k) expected.Sweep(k, 1e-12, scale, pivots, true);
  ASSERT_TRUE(model.fModel.IdentifyRedundancy().IsOK());
  EXPECT_EQ(model.fModel.GetBasicRedundInfo(), pivots);
  EXPECT_TRUE(mctest::SameBits(expected, *model.fModel.GetXPrimeX()));
}

TEST(MCLogModelRedundancy, GoesByTheToleranceOfTheSettings) {
  LogisticDesign design = LogisticDesign(0, {}, {1}).Effect({}, {1});
  design.Settings().SetTolerance(0.9);
  LogisticModel model(std::move(design));
  EXPECT_TRUE(model.Identify({{0, 10}, {1, 11}, {1, 12}}).IsOK());
  EXPECT_EQ(BitsOf(model.fModel.GetBasicRedundInfo()), (std::vector<bool>{true, false}));
}

TEST(MCLogModelRedundancy, WithoutRowsOrMatrixIsNotProcessed) {
  LogisticModel fresh(Mixed());
  EXPECT_EQ(fresh.fModel.IdentifyRedundancy(), MCStatus(309, false));
  EXPECT_EQ(fresh.fModel.GetStatus(), MCStatus(309, false)) << "it is stored";
  LogisticModel empty(Mixed());
  ASSERT_TRUE(empty.Prepare(kRows).IsOK());
  EXPECT_EQ(empty.fModel.IdentifyRedundancy(), MCStatus(309, false));
  LogisticModel cleared(Mixed());
  ASSERT_TRUE(cleared.Accumulate(kRows).IsOK());
  cleared.fModel.ClearXPrimeXMatrix();
  EXPECT_EQ(cleared.fModel.IdentifyRedundancy(), MCStatus(309, false));
  EXPECT_EQ(cleared.fModel.GetRedundancyInfo().Size(), 0);
  std::vector<double> estimates = {7};
  EXPECT_EQ(cleared.fModel.SetInitialEstimates(estimates), MCStatus(309, false));
  EXPECT_THAT(estimates, ElementsAre(7));
}

TEST(MCLogModelRedundancy, IsRefusedWhenTheModelIsBuilt) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Estimate(kRows, {0, 0, 0, 0, 0, 0}).IsOK());
  std::vector<double> out;
  model.fModel.GetDResiduals(out, kRows[0].data());
  model.fModel.SetTotalWeight(6, 6);
  ASSERT_TRUE(model.fModel.FinishErrors().IsOK());
  const MCSymMatrix before(*model.fModel.GetXPrimeX());
  std::vector<double> estimates = {7};
  EXPECT_EQ(model.fModel.SetInitialEstimates(estimates), MCStatus(310, false));
  EXPECT_TRUE(model.fModel.GetStatus().IsOK()) << "that one isn't stored";
  EXPECT_THAT(estimates, ElementsAre(7));
  EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(310, false));
  EXPECT_EQ(model.fModel.GetStatus(), MCStatus(310, false));
  EXPECT_EQ(model.fModel.GetNNonRedParams(), 6);
  EXPECT_TRUE(mctest::SameBits(before, *model.fModel.GetXPrimeX()));
  model.fModel.ClearXPrimeXMatrix();
  EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(310, false)) << "and not for the matrix";
}

// Polls of IdentifyRedundancy(): at the start, before each of the four columns, at the end.
TEST(MCLogModelRedundancy, ThatACancelSkipsOrStopsIsAnErrorEvenIfTheQueryChangesItsMind) {
  ScriptedCancel counted;
  LogisticModel quiet(Mixed().CancelledBy(counted));
  ASSERT_TRUE(quiet.Accumulate(kRows).IsOK());
  const int before = counted.fPolls;
  ASSERT_TRUE(quiet.fModel.IdentifyRedundancy().IsOK());
  ASSERT_EQ(counted.fPolls, before + 6);
  const int nKept[] = {0, 0, 1, 2, 2, 3};
  for (int poll = 1; poll <= 6; ++poll) {
    for (const auto duration : {ScriptedCancel::kOnce, ScriptedCancel::kForGood}) {
      ScriptedCancel query(before + poll, duration);
      LogisticModel model(Mixed().CancelledBy(query));
      ASSERT_TRUE(model.Accumulate(kRows).IsOK());
      EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(1, false)) << poll;
      EXPECT_EQ(model.fModel.GetStatus(), MCStatus(1, false)) << poll << ": it is stored";
      EXPECT_EQ(model.fModel.GetNBasicNonRed(), nKept[poll - 1]) << poll;
      EXPECT_EQ(model.fModel.GetNNonRedParams(), 2 * nKept[poll - 1]) << poll;
      EXPECT_EQ(model.fModel.GetRedundancyInfo().Size(), 8) << poll;
    }
  }
}

TEST(MCLogModelRedundancy, BeforeAnyRowACancelIsNotProcessed) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Prepare(kRows).IsOK());
  model.fCancel.SetCancel();
  EXPECT_EQ(model.fModel.IdentifyRedundancy(), MCStatus(309, false));
}

TEST(MCLogModelRedundancy, AnswersTheWarningThatIsStored) {
  LogisticModel model(Mixed().Categories(4, 3));
  EXPECT_EQ(model.Identify(kRows), MCStatus(319, true));
  std::vector<double> estimates;
  EXPECT_EQ(model.fModel.SetInitialEstimates(estimates), MCStatus(319, true));
  EXPECT_EQ(estimates.size(), 6u);
}

TEST(MCLogModelRedundancy, CanBeIdentifiedAfterMemoryRanOut) {
  for (std::size_t k = 1;; ++k) {
    LogisticModel model(Mixed());
    ASSERT_TRUE(model.Accumulate(kRows).IsOK());
    bool fired = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        static_cast<void>(model.fModel.IdentifyRedundancy());
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(failure.HasFired());
      }
      fired = failure.HasFired();
    }
    if (!fired) break;
    EXPECT_EQ(model.fModel.GetNNonRedParams(), 0) << k;
    EXPECT_EQ(model.fModel.GetRedundancyInfo().Size(), 0) << k;
    EXPECT_TRUE(model.fModel.IdentifyRedundancy().IsOK()) << k;
    EXPECT_EQ(model.fModel.GetNNonRedParams(), 6) << k;
  }
}

// --- First estimates ----------------------------------------------------------------------------

TEST(MCLogModelInitialEstimates, AreTheLogOddsOfTheInterceptsAndZeroElsewhere) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  std::vector<double> estimates = {9, 9, 9};
  EXPECT_TRUE(model.fModel.SetInitialEstimates(estimates).IsOK());
  // Counts 2, 1, 3. ln(2/3) and ln(1/3) to 17 digits, correctly rounded.
  ASSERT_EQ(estimates.size(), 6u);
  EXPECT_DOUBLE_EQ(estimates[0], -0.40546510810816438);
  EXPECT_DOUBLE_EQ(estimates[3], -1.0986122886681098);
  for (const std::size_t i : {1u, 2u, 4u, 5u}) EXPECT_EQ(estimates[i], 0.0);
}

TEST(MCLogModelInitialEstimates, GoByTheFrequencyWeights) {
  LogisticModel model(LogisticDesign(0, {}, {}).FrequencyWeight(1));
  ASSERT_TRUE(model.Identify({{0, 1}, {0, 7}, {1, 2}}).IsOK());
  std::vector<double> estimates;
  EXPECT_TRUE(model.fModel.SetInitialEstimates(estimates).IsOK());
  ASSERT_EQ(estimates.size(), 1u);
  EXPECT_DOUBLE_EQ(estimates[0], 1.3862943611198906) << "ln 4";
}

TEST(MCLogModelInitialEstimates, AreZeroWithoutAnIntercept) {
  LogisticModel model(Mixed().NoIntercept());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  std::vector<double> estimates;
  EXPECT_TRUE(model.fModel.SetInitialEstimates(estimates).IsOK());
  EXPECT_EQ(estimates, std::vector<double>(6, 0.0));
}

TEST(MCLogModelInitialEstimates, AreNoneWhereAllIsRedundant) {
  LogisticModel model(LogisticDesign(0, {}, {}).RegressionWeight(1));
  ASSERT_TRUE(model.Identify({{0, 0.0}, {1, 0.0}}).IsOK());
  std::vector<double> estimates = {9};
  EXPECT_TRUE(model.fModel.SetInitialEstimates(estimates).IsOK());
  EXPECT_THAT(estimates, IsEmpty());
}

TEST(MCLogModelInitialEstimates, AreRefusedBeforeThereAreParameters) {
  LogisticModel model(Mixed());
  std::vector<double> estimates = {9};
  EXPECT_EQ(model.fModel.SetInitialEstimates(estimates), MCStatus(303, false));
  EXPECT_TRUE(model.fModel.GetStatus().IsOK()) << "and nothing is stored";
  EXPECT_THAT(estimates, ElementsAre(9));
}

TEST(MCLogModelInitialEstimates, AreLeftAloneByACancel) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fCancel.SetCancel();
  std::vector<double> estimates = {9};
  EXPECT_TRUE(model.fModel.SetInitialEstimates(estimates).IsOK()) << "the stored status";
  EXPECT_THAT(estimates, ElementsAre(9));
}

// --- Final estimates ----------------------------------------------------------------------------

TEST(MCLogModelUncompress, SpreadsEstimatesAndHessianOverAllParameters) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  MCSymMatrix hessian(6);
  for (std::size_t i = 0; i < 21; ++i) hessian.AsVector()[i] = static_cast<double>(i + 1);
  EXPECT_TRUE(model.fModel.UncompressEstimates({1, 2, 3, 4, 5, 6}, hessian).IsOK());
  EXPECT_THAT(model.fModel.GetParamEstimates(), ElementsAre(1, 2, 0, 3, 4, 5, 0, 6));
  const MCSymMatrix& inverse = *model.fModel.GetHessianGI();
  ASSERT_EQ(inverse.GetNRows(), 8);
  const int compact[] = {0, 1, -1, 2, 3, 4, -1, 5};
  for (int i = 0; i < 8; ++i) {
    for (int j = 0; j <= i; ++j) {
      const bool isKept = compact[i] >= 0 && compact[j] >= 0;
      EXPECT_EQ(inverse.GetElem(i, j), isKept ? hessian.GetElem(compact[i], compact[j]) : 0.0);
    }
  }
  model.fModel.ClearHessianGIMatrix();
  model.fModel.ClearHessianGIMatrix();
  EXPECT_EQ(model.fModel.GetHessianGI(), nullptr);
}

TEST(MCLogModelUncompress, NeedsAnEstimateForEachParameterThatIsNotRedundant) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Estimate(kRows, {1, 2, 3, 4, 5, 6, 7, 8}).IsOK()) << "further are left out";
  const std::vector<double> before = model.fModel.GetParamEstimates();
  EXPECT_THAT(before, ElementsAre(1, 2, 0, 3, 4, 5, 0, 6));
  const MCSymMatrix* hessian = model.fModel.GetHessianGI();
  EXPECT_EQ(model.fModel.UncompressEstimates({9, 9, 9, 9, 9}, MCSymMatrix(5)),
            MCStatus(303, false));
  EXPECT_EQ(model.fModel.GetParamEstimates(), before);
  EXPECT_EQ(model.fModel.GetHessianGI(), hessian);
  EXPECT_TRUE(model.fModel.GetStatus().IsOK());
}

TEST(MCLogModelUncompress, IsCancelledWithNothingChanged) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Identify(kRows).IsOK());
  model.fCancel.SetCancel();
  EXPECT_EQ(model.fModel.UncompressEstimates({1, 2, 3, 4, 5, 6}, MCSymMatrix(6)),
            MCStatus(1, false));
  EXPECT_EQ(model.fModel.GetStatus(), MCStatus(1, false));
  EXPECT_EQ(model.fModel.GetParamEstimates(), std::vector<double>(8));
  EXPECT_EQ(model.fModel.GetHessianGI(), nullptr);
}

TEST(MCLogModelUncompress, MayTakeItsOwnResults) {
  LogisticModel model(LogisticDesign(0, {}, {1}).Effect({}, {1}));
  ASSERT_TRUE(model.Estimate({{0, 1}, {1, 2}, {1, 4}}, {1, 2}).IsOK());
  EXPECT_TRUE(
      model.fModel
          .UncompressEstimates(model.fModel.GetParamEstimates(), *model.fModel.GetHessianGI())
          .IsOK());
  EXPECT_THAT(model.fModel.GetParamEstimates(), ElementsAre(1, 2));
  EXPECT_EQ(model.fModel.GetHessianGI()->GetNRows(), 2);
}

TEST(MCLogModelUncompress, BeforeThereAreParametersHasNothingToSpread) {
  LogisticModel model(Mixed());
  EXPECT_TRUE(model.fModel.UncompressEstimates({1, 2}, MCSymMatrix(2)).IsOK());
  EXPECT_THAT(model.fModel.GetParamEstimates(), IsEmpty());
}

TEST(MCLogModelUncompress, OutOfMemoryLeavesTheEstimatesOfBefore) {
  int nAbsorbed = 0;
  for (std::size_t k = 1;; ++k) {
    LogisticModel model(Mixed());
    ASSERT_TRUE(model.Identify(kRows).IsOK());
    const std::vector<double> estimates = {1, 2, 3, 4, 5, 6};
    const MCSymMatrix hessian(6);
    MCStatus status;
    bool fired = false;
    bool thrown = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        status = model.fModel.UncompressEstimates(estimates, hessian);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      fired = failure.HasFired();
    }
    if (!fired) {
      EXPECT_TRUE(status.IsOK());
      break;
    }
    EXPECT_EQ(model.fModel.GetParamEstimates(), std::vector<double>(8)) << k;
    EXPECT_EQ(model.fModel.GetHessianGI(), nullptr) << k;
    if (thrown) continue;
    ++nAbsorbed;
    MCStatus expected(305, false);
    expected.SetDiscreteDatum(0, 8);
    EXPECT_EQ(status, expected) << k;
  }
  EXPECT_GE(nAbsorbed, 1) << "the triangle of the matrix";
}

// --- Scores -------------------------------------------------------------------------------------

// An intercept for each category alone, so that the estimates are the predictors.
class Intercepts : public LogisticModel {
public:
  Intercepts(const Rows& rows, int nCategories, int reference = -1)
      : LogisticModel(
            LogisticDesign(0, {}, {}).FrequencyWeight(1).Categories(nCategories, reference)) {
    EXPECT_TRUE(Identify(rows).IsOK());
  }

  /// The probabilities, with the category in fPredicted.
  std::vector<double> Score(const std::vector<double>& predictors) {
    const MCSymMatrix hessian(static_cast<int>(predictors.size()));
    EXPECT_TRUE(fModel.UncompressEstimates(predictors, hessian).IsOK());
    std::vector<double> probabilities = {99};
    EXPECT_TRUE(fModel.Score(kRows[0].data(), probabilities, fPredicted).IsOK());
    return probabilities;
  }

  int Predict(const std::vector<double>& predictors) {
    Score(predictors);
    return fPredicted;
  }

  int fPredicted = -7;
};

// Codes 0, 1, 2, reference 2, with equal counts of either kind.
const Rows kEqual = {{0, 1}, {1, 1}, {2, 1}};

TEST(MCLogModelScore, GivesTheProbabilitiesOfTheModel) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Estimate(kRows, {0.5, -1, 0.25, 2, 1, -0.5}).IsOK());
  std::vector<double> probabilities;
  int predicted = -7;
  // a = 0, x = 2: predictors 0.5 - 1 + 0.5 = 0 and 2 + 1 - 1 = 2.
  EXPECT_TRUE(
      model.fModel.Score(std::vector<double>{9, 0, 2}.data(), probabilities, predicted).IsOK());
  const double sum = std::exp(-2.0) + 1.0 + std::exp(-2.0);
  ASSERT_EQ(probabilities.size(), 3u);
  EXPECT_DOUBLE_EQ(probabilities[0], std::exp(-2.0) / sum);
  EXPECT_DOUBLE_EQ(probabilities[1], 1.0 / sum);
  EXPECT_DOUBLE_EQ(probabilities[2], std::exp(-2.0) / sum);
  EXPECT_EQ(predicted, 1);
}

TEST(MCLogModelScore, OfARowWithAnUnseenLevelIsMissing) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Estimate(kRows, {0, 0, 0, 0, 0, 0}).IsOK());
  const std::vector<double> missing(3, MCMV::gMissingValue);
  const std::vector<double> rows[] = {{0, 2, 1}, {0, kNaN, 1}, {}};
  for (const std::vector<double>& row : rows) {
    std::vector<double> probabilities;
    int predicted = 7;
    EXPECT_TRUE(
        model.fModel.Score(row.empty() ? nullptr : row.data(), probabilities, predicted).IsOK());
    EXPECT_EQ(predicted, -1);
    EXPECT_EQ(probabilities, missing);
  }
  model.fCancel.SetCancel();
  std::vector<double> probabilities;
  int predicted = 7;
  EXPECT_TRUE(model.fModel.Score(kRows[0].data(), probabilities, predicted).IsOK());
  EXPECT_EQ(predicted, -1);
  EXPECT_EQ(probabilities, missing) << "so it is while a cancel is pending";
}

TEST(MCLogModelScore, PredictsTheReferenceWhereAllPredictorsAreBelowZero) {
  Intercepts model(kEqual, 3);
  EXPECT_EQ(model.Predict({-1, -2}), 2);
  EXPECT_EQ(model.Predict({-1e9, -1e-9}), 2);
}

TEST(MCLogModelScore, PredictsTheGreatestPredictor) {
  Intercepts model(kEqual, 3);
  EXPECT_EQ(model.Predict({1, 3}), 1);
  EXPECT_EQ(model.Predict({3, 1}), 0);
  EXPECT_EQ(model.Predict({-1, 2 * kEpsilon}), 1);
}

struct TieCase {
  const char* fName;
  Rows fRows;  // category and frequency weight
  std::vector<double> fPredictors;
  int fPredicted;
};

void PrintTo(const TieCase& c, std::ostream* out) {
  *out << c.fName;
}

const TieCase kTies[] = {
    {"allEqual", kEqual, {0, 0}, 0},
    {"withinEpsilon", kEqual, {-0.5 * kEpsilon, 0.5 * kEpsilon}, 0},
    {"exactlyEpsilonAboveTies", kEqual, {-1, kEpsilon}, 1},
    {"exactlyEpsilonBelowDoesNotTie", kEqual, {-kEpsilon, -kEpsilon}, 2},
    {"justAboveMinusEpsilonTies", kEqual, {-0.75 * kEpsilon, -1}, 0},
    {"weightedCountDecides", {{0, 1}, {1, 2}, {2, 1}}, {0, 0}, 1},
    {"weightedCountOfTheReference", {{0, 1}, {1, 1}, {2, 1.5}}, {0, 0}, 2},
    {"weightedCountComesBeforeTheUnweighted", {{0, 1}, {0, 1}, {1, 3}, {2, 1}}, {0, 0}, 1},
    {"unweightedCountDecidesNext", {{0, 2}, {1, 1}, {1, 1}, {2, 2}}, {0, 0}, 1},
    {"smallestCodeDecidesLast", {{0, 1}, {1, 2}, {2, 2}}, {0, 0}, 1},
    {"aNewBestDropsTheTiesBeforeIt", {{0, 9}, {1, 1}, {2, 9}}, {0, 0.5}, 1},
    {"aTieAfterTheBest", {{0, 1}, {1, 2}, {2, 9}}, {0.5, 0.5}, 1},
    {"aTieAfterTheBestThatHasLess", {{0, 2}, {1, 1}, {2, 9}}, {0.5, 0.5}, 0},
    // Doubles lie e apart below 2, 2 e below 4 and 4 e from there on; a half rounds to even.
    {"belowTwoEqualPredictorsTie", {{0, 1}, {1, 2}, {2, 9}}, {1.75, 1.75}, 1},
    {"atTwoEqualPredictorsTie", {{0, 1}, {1, 2}, {2, 9}}, {2.0, 2.0}, 1},
    {"aboveTwoAnOddOneTies", {{0, 1}, {1, 2}, {2, 9}}, {kAboveTwo, kAboveTwo}, 1},
    {"aboveTwoOfAnEvenOneTheFirstWins", {{0, 1}, {1, 2}, {2, 9}}, {3.0, 3.0}, 0},
    {"atFourTheFirstWins", {{0, 1}, {1, 2}, {2, 9}}, {4.0, 4.0}, 0},
    {"farAboveTheFirstWins", {{0, 1}, {1, 2}, {2, 9}}, {1e9, 1e9}, 0},
};

class MCLogModelTie : public testing::TestWithParam<TieCase> {};

TEST_P(MCLogModelTie, IsDecidedByCountsAndThenByCode) {
  Intercepts model(GetParam().fRows, 3);
  EXPECT_EQ(model.Predict(GetParam().fPredictors), GetParam().fPredicted);
}

INSTANTIATE_TEST_SUITE_P(Rules, MCLogModelTie, testing::ValuesIn(kTies),
                         [](const auto& test) { return std::string(test.param.fName); });

TEST(MCLogModelScore, OfATiePredictsTheSmallestCodeAndNotTheFirstCategory) {
  Intercepts model(kEqual, 3, 0);  // the categories are 1, 2, 0
  EXPECT_EQ(model.Predict({0, 0}), 0);
}

TEST(MCLogModelScore, StaysFiniteForPredictorsOfAnySize) {
  Intercepts model(kEqual, 3);
  EXPECT_THAT(model.Score({1e9, -1e9}), ElementsAre(1, 0, 0));
  EXPECT_THAT(model.Score({-1e9, -1e9}), ElementsAre(0, 0, 1));
  EXPECT_THAT(model.Score({-1e308, 1e308}), ElementsAre(0, 1, 0));
  const std::vector<double> deep = model.Score({-740, 0.0});
  EXPECT_GT(deep[0], 0.0) << "a subnormal probability";
  for (const double predictor : {kNaN, kInf, -kInf}) {
    EXPECT_EQ(model.Score({predictor, 1.0}).size(), 3u) << "no crash";
  }
}

// --- Residuals and the end of the fit -----------------------------------------------------------

TEST(MCLogModelResiduals, AreObservedLessPredictedTimesColumnTimesFrequency) {
  LogisticModel model(Mixed().FrequencyWeight(3).RegressionWeight(4));
  const Rows rows = {{0, 0, 1, 2, 9}, {1, 1, 3, 1, 9}, {2, 0, 2, 3, 9}, {2, 1, 5, 3, 9}};
  ASSERT_TRUE(model.Estimate(rows, {0.5, -1, 0.25, 2, 1, -0.5}).IsOK());
  std::vector<double> out = {99};
  for (const std::vector<double>& row : rows) {
    model.fModel.GetDResiduals(out, row.data());
    std::vector<double> probabilities;
    int predicted = -1;
    ASSERT_TRUE(model.fModel.Score(row.data(), probabilities, predicted).IsOK());
    std::vector<double> columns(4);
    ASSERT_TRUE(model.fModel.ExpandRow(columns, row.data()));
    std::vector<double> expected;
    for (std::size_t t = 0; t < 2; ++t) {
      for (const double column : columns) {
        const double indicator = row[0] == static_cast<double>(t) ? 1.0 : 0.0;
        expected.push_back((indicator - probabilities[t]) * column * row[3]);
      }
    }
    EXPECT_TRUE(mctest::SameBits(expected, out));
  }
}

TEST(MCLogModelResiduals, FillTheTableOfObservedAndPredictedCategories) {
  Intercepts model({{0, 1}, {1, 2}, {3, 4}}, 4, 1);  // the categories are 0, 3, 1
  model.Score({-1, 1});                              // 3 is predicted
  std::vector<double> out;
  model.fModel.GetDResiduals(out, std::vector<double>{0, 2}.data());
  model.fModel.GetDResiduals(out, std::vector<double>{1, 8}.data());
  model.fModel.GetDResiduals(out, std::vector<double>{1.4, 16}.data());
  model.fModel.GetDResiduals(out, std::vector<double>{3, 32}.data());
  const MCRectMatrix& table = *model.fModel.GetClassificationTable();
  EXPECT_EQ(table.AsVectorConst(), (std::vector<double>{0, 2, 0, 0, 32, 0, 0, 24, 0}));
}

TEST(MCLogModelResiduals, OfACategoryNeverSeenAddNothingToTheTable) {
  for (const double code : {2.0, 4.0, -3.0, 1e300, kNaN}) {
    Intercepts model({{0, 1}, {1, 2}, {3, 4}}, 4);
    model.Score({-1, 1});
    std::vector<double> out;
    model.fModel.GetDResiduals(out, std::vector<double>{code, 5}.data());
    EXPECT_EQ(model.fModel.GetClassificationTable()->AsVectorConst(), std::vector<double>(9));
    ASSERT_EQ(out.size(), 2u);
    EXPECT_LT(out[0], 0.0) << "it has the probabilities of the others against it";
    EXPECT_LT(out[1], 0.0);
  }
}

TEST(MCLogModelResiduals, OfARowThatCannotBePredictedLeaveAllAsItWas) {
  LogisticModel model(Mixed());
  ASSERT_TRUE(model.Estimate(kRows, {0, 0, 0, 0, 0, 0}).IsOK());
  std::vector<double> out = {99};
  model.fModel.GetDResiduals(out, std::vector<double>{0, 7, 1}.data());
  model.fModel.GetDResiduals(out, nullptr);
  EXPECT_THAT(out, ElementsAre(99));
  EXPECT_EQ(model.fModel.GetClassificationTable()->AsVectorConst(), std::vector<double>(9));
  model.fModel.SetTotalWeight(6, 6);
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(308, false)) << "no row has been counted";
}

TEST(MCLogModelResiduals, AreLeftAloneWhileThereIsNothingToCompare) {
  std::vector<double> out = {99};
  LogisticModel fresh(Mixed());
  fresh.fModel.GetDResiduals(out, kRows[0].data());
  LogisticModel cancelled(Mixed());
  ASSERT_TRUE(cancelled.Estimate(kRows, {0, 0, 0, 0, 0, 0}).IsOK());
  cancelled.fCancel.SetCancel();
  cancelled.fModel.GetDResiduals(out, kRows[0].data());
  LogisticModel nowhere(Mixed());
  ASSERT_TRUE(nowhere.Estimate(kRows, {0, 0, 0, 0, 0, 0}).IsOK());
  nowhere.fModel.SetOffsets({1}, {2}, -1, -1, -1);
  nowhere.fModel.GetDResiduals(out, kRows[0].data());
  EXPECT_THAT(out, ElementsAre(99));
}

struct FinishCase {
  const char* fName;
  double fRowWeight;
  double fSampleSize;
  double fTotalWeight;
  bool fBuilds;
};

TEST(MCLogModelFinish, BuildsTheModelIfThereIsUsableWeight) {
  const FinishCase cases[] = {
      {"all there", 1, 2, 2, true},        {"no weight", 0, 2, 2, false},
      {"no rows", 1, 0, 2, false},         {"no total", 1, 2, 0, false},
      {"negative total", 1, 2, -1, false}, {"undefined total", 1, 2, kNaN, false},
      {"odd sizes", -1, -3, 1e-300, true},
  };
  for (const FinishCase& c : cases) {
    Intercepts model({{0, 1}, {1, 2}}, 2);
    model.Score({0.5});
    std::vector<double> out;
    model.fModel.GetDResiduals(out, std::vector<double>{0, c.fRowWeight}.data());
    model.fModel.SetTotalWeight(c.fSampleSize, c.fTotalWeight);
    const MCStatus expected = c.fBuilds ? MCStatus() : MCStatus(308, false);
    EXPECT_EQ(model.fModel.FinishErrors(), expected) << c.fName;
    EXPECT_EQ(model.fModel.GetStatus(), expected) << c.fName;
    EXPECT_EQ(model.fModel.IsModelBuilt(), c.fBuilds) << c.fName;
  }
}

TEST(MCLogModelFinish, WithoutAnyRowThereIsNoWeight) {
  LogisticModel model(Mixed());
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(308, false));
  EXPECT_FALSE(model.fModel.IsModelBuilt());
}

TEST(MCLogModelFinish, DoesNotBuildOverAStoredError) {
  Intercepts model({{0, 1}, {1, 2}}, 2);
  model.Score({0.5});
  std::vector<double> out;
  model.fModel.GetDResiduals(out, kRows[0].data());
  model.fModel.GetDResiduals(out, std::vector<double>{0, 1}.data());
  model.fModel.SetTotalWeight(2, 2);
  model.fCancel.SetCancel();
  ASSERT_EQ(model.fModel.UncompressEstimates({1}, MCSymMatrix(1)), MCStatus(1, false));
  EXPECT_EQ(model.fModel.FinishErrors(), MCStatus(1, false));
  EXPECT_FALSE(model.fModel.IsModelBuilt());
}

}  // namespace
