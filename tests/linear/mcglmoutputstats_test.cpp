// SPDX-License-Identifier: Apache-2.0
#include "regression/linear/mcglmoutputstats.h"

#include "regression/linear/mcglmalgorithm.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <vector>

namespace {
using MCCommon::Record;
using mctest::MakeRecord;
using mctest::RegressionDesign;
using mctest::Rows;
using mctest::RowSource;
using testing::ElementsAre;

constexpr double kTolerance = 1e-12;  // small well-conditioned designs

// y at 0, factor a of three categories at 1, covariate x at 2; columns 1, a = 0, a = 2, x.
RegressionDesign Design() {
  return RegressionDesign(0, {{1, 3}}, {2}).Effect({1}).Effect({}, {2});
}

const Rows kRows = {{1, 0, 0}, {3, 0, 1}, {4, 2, 0}, {8, 2, 2}};

// A build that ended well, and its results.
struct Built {
  explicit Built(RegressionDesign design, const Rows& rows = kRows)
      : fDesign(std::move(design)), fAlgorithm(fDesign.Settings()) {
    RowSource source(rows);
    std::vector<MCRegrParameter> parameters;
    EXPECT_TRUE(fAlgorithm.ProcessData(source).IsOK());
    EXPECT_TRUE(fAlgorithm.CreateParameters(parameters).IsOK());
    EXPECT_TRUE(fAlgorithm.BuildModel(source).IsOK());
    fStats = std::make_unique<MCGLMOutputStats>(fDesign.Settings(), fAlgorithm);
  }

  RegressionDesign fDesign;
  MCGLMAlgorithm fAlgorithm;
  std::unique_ptr<MCGLMOutputStats> fStats;
};

TEST(MCGLMOutputStats, HoldsWhatTheDriverHolds) {
  const Built built(Design());
  const MCGLMModel& model = built.fAlgorithm.GetModel();
  const IMCRegOutputStats& stats = *built.fStats;
  EXPECT_EQ(stats.GetModelType(), MCConst::MC_MODEL_LINEAR);
  EXPECT_EQ(*stats.GetMeanValues(), built.fAlgorithm.GetMeanValues());
  EXPECT_EQ(*stats.GetParamEstimates(), model.GetParamEstimates());
  EXPECT_TRUE(*stats.GetParameters() == model.GetParameters());
  EXPECT_EQ(stats.GetTotalFreqWeight(), 4.0);
  EXPECT_EQ(stats.GetTotalRegrWeight(), 4.0);
  EXPECT_EQ(stats.GetFactorCounts()->GetNFactors(), 1);
  EXPECT_EQ((*stats.GetFactorCounts()->GetCountsPtr(0))[2].first, 2.0);
  EXPECT_EQ(&stats.GetRecordValidator(), &built.fAlgorithm.GetRecordValidator());
}

TEST(MCGLMOutputStats, IsASnapshotApartFromTheDriver) {
  const Built built(Design());
  EXPECT_NE(built.fStats->GetParamEstimates(), &built.fAlgorithm.GetModel().GetParamEstimates());
  EXPECT_NE(built.fStats->GetFactorCounts(), &built.fAlgorithm.GetFactorCounts());
  EXPECT_NE(built.fStats->GetMeanValues(), &built.fAlgorithm.GetMeanValues());
}

TEST(MCGLMOutputStats, MarksAliasedParametersInRecordsAndIndicators) {
  const Built built(Design());
  const std::vector<bool> redundant = {false, false, true, false};
  const std::vector<int> effects = {-1, 0, 0, 1};
  const std::vector<double> estimates = {4, -3, 0, 2};
  const std::vector<MCRegrParameterStats>& stats = built.fStats->GetParamStats();
  ASSERT_EQ(stats.size(), 4u);
  EXPECT_EQ(built.fStats->GetRedundancyIndicators().Size(), 4) << "none for the dependent";
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(stats[i].fIndex, static_cast<int>(i));
    EXPECT_NEAR(stats[i].fEstimate, estimates[i], kTolerance);
    EXPECT_EQ(stats[i].fRedundant, redundant[i]);
    EXPECT_EQ(stats[i].fEffectIndex, effects[i]);
    EXPECT_EQ(built.fStats->GetRedundancyIndicators().IsIn(static_cast<int>(i)), !redundant[i]);
    EXPECT_EQ(stats[i].fStat1, MCMV::gMissingValue) << "the rest is the caller's";
    EXPECT_EQ(stats[i].fStat5, 0.0);
  }
  EXPECT_EQ(stats[2].fEstimate, 0.0);
}

TEST(MCGLMOutputStats, CovarianceIsTheInverseOfTheCrossProductsOfTheKeptColumns) {
  // n, sum of x, sum of x*x: 5, 15, 55, with determinant 50.
  const Built line(RegressionDesign(0, {}, {1}).Effect({}, {1}),
                   {{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}});
  const std::vector<double> expected = {1.1, -0.3, 0.1};
  const std::vector<double>& packed = line.fStats->GetCovarianceMatrix()->AsVectorConst();
  ASSERT_EQ(packed.size(), expected.size());
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(packed[i], expected[i], kTolerance);

  const Built aliased(Design());
  const MCCommonMath::MCSymMatrix& covariance = *aliased.fStats->GetCovarianceMatrix();
  ASSERT_EQ(covariance.GetNRows(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(covariance.GetElem(2, i), 0.0);
  EXPECT_GT(covariance.GetElem(3, 3), 0.0);
}

TEST(MCGLMOutputStats, CovarianceIsThatOfTheWeightedCrossProductsWhateverTheirTotal) {
  // Weights 2, 1, 1 and x = 1, 2, 3: the sums are 4, 7, 15, with determinant 11.
  const Built built(RegressionDesign(0, {}, {1}).FrequencyWeight(2).Effect({}, {1}),
                    {{2, 1, 2}, {3, 2, 1}, {7, 3, 1}});
  const std::vector<double> expected = {15.0 / 11.0, -7.0 / 11.0, 4.0 / 11.0};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(built.fStats->GetCovarianceMatrix()->AsVectorConst()[i], expected[i], kTolerance);
  }
}

TEST(MCGLMOutputStats, DegreesOfFreedomCountAliasedParametersToo) {
  Rows rows;
  for (int i = 0; i < 100; ++i) rows.push_back({i * 0.5, i % 2 * 2.0, i % 7 * 1.0});
  const Built computed(Design(), rows);
  ASSERT_EQ(computed.fStats->GetParameters()->size(), 4u);
  EXPECT_EQ(computed.fStats->GetNDegFreedom(), 96.0);

  RegressionDesign imposed = Design();
  imposed.Settings().SetDF(25.0);
  EXPECT_EQ(Built(std::move(imposed), rows).fStats->GetNDegFreedom(), 25.0);

  RegressionDesign dropped = Design();
  dropped.Settings().SetDF(0.0);
  EXPECT_EQ(Built(std::move(dropped), rows).fStats->GetNDegFreedom(), 96.0);
}

TEST(MCGLMOutputStats, DegreesOfFreedomAreCountedFromTheRegressionWeights) {
  const Built built(RegressionDesign(0, {}, {}).FrequencyWeight(1).RegressionWeight(2),
                    {{1, 2, 0.5}, {3, 3, 2}});
  EXPECT_EQ(built.fStats->GetTotalFreqWeight(), 5.0);
  EXPECT_EQ(built.fStats->GetTotalRegrWeight(), 7.0);
  EXPECT_EQ(built.fStats->GetNDegFreedom(), 6.0);
}

TEST(MCGLMOutputStats, KnowsTheTwoStatisticsOfALinearFit) {
  const Built built(RegressionDesign(0, {}, {1}).Effect({}, {1}),
                    {{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}});
  const MCGLMOutputStats& stats = *built.fStats;
  EXPECT_NEAR(stats.GetModelFitStat(MCConst::MC_FIT_RMSE), std::sqrt(0.48), kTolerance);
  EXPECT_NEAR(stats.GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2), 0.6, kTolerance);
  for (const auto other :
       {MCConst::MC_FIT_COX_SNELL, MCConst::MC_FIT_NAGELKERKE, MCConst::MC_FIT_MCFADDEN}) {
    EXPECT_EQ(stats.GetModelFitStat(other), MCMV::gMissingValue);
  }
}

TEST(MCGLMOutputStats, ExpandsARowWithoutDependent) {
  const Built built(Design());
  std::vector<double> row = {99};
  EXPECT_TRUE(built.fStats->ExpandRow(MakeRecord({MCMV::gMissingValue, 2, 7}), row));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 7));
}

TEST(MCGLMOutputStats, ARowThatCannotBeScoredLeavesTheVectorAlone) {
  const Built built(Design());
  const double missing = MCMV::gMissingValue;
  for (const std::vector<double>& values :
       Rows{{1, 2, missing}, {1, missing, 7}, {1, 0.5, 7}, {1, 4, 7}, {1, -1, 7}, {1, 2}, {}}) {
    std::vector<double> row = {99};
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), row));
    EXPECT_THAT(row, ElementsAre(99));
  }
}

// Where memory ran out when the dependent was set, the settings keep all positions and forget all
// roles, and the validator accepts records of any length.
TEST(MCGLMOutputStats, ARecordThatEndsBeforeAForgottenRoleCannotBeExpanded) {
  RegressionDesign design = RegressionDesign(-1, {{1, 3}}, {2}).Effect({1}).Effect({}, {2});
  {
    const mctest::FailAllocation failure(1);
    ASSERT_FALSE(design.Settings().SetDependent(3));
  }
  const Built built(std::move(design), {{9, 0, 0, 1}, {9, 0, 1, 3}, {9, 2, 0, 4}, {9, 2, 2, 8}});
  for (const std::vector<double>& values : Rows{{}, {9}, {9, 2}}) {
    std::vector<double> row = {99};
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), row));
    EXPECT_THAT(row, ElementsAre(99));
  }
  std::vector<double> row;
  EXPECT_TRUE(built.fStats->ExpandRow(MakeRecord({9, 2, 7}), row));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 7));
}

TEST(MCGLMOutputStats, AnUnseenLevelAnswersFalseWithTheOtherEffectsFilled) {
  const Built built(Design());
  for (const double level : {1.0, 3.0}) {  // 3 is one above the last category
    std::vector<double> row = {99};
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord({1, level, 7}), row));
    EXPECT_THAT(row, ElementsAre(1, 0, 0, 7));
  }
}

TEST(MCGLMOutputStats, CancelReachesTheDriver) {
  const Built built(Design());
  built.fStats->Cancel();
  double value = 99.0;
  EXPECT_EQ(built.fAlgorithm.Score(MakeRecord(kRows[0]), value), MCCommon::MCStatus(1, false));
}

TEST(MCGLMOutputStats, OfADriverThatIsNotBuiltIsEmpty) {
  RegressionDesign design = Design();
  MCGLMAlgorithm algorithm(design.Settings());
  const MCGLMOutputStats stats(design.Settings(), algorithm);
  EXPECT_TRUE(stats.GetParamEstimates()->empty());
  EXPECT_TRUE(stats.GetParamStats().empty());
  EXPECT_EQ(stats.GetRedundancyIndicators().Size(), 0);
  EXPECT_EQ(stats.GetCovarianceMatrix()->GetNRows(), 0);
}

TEST(MCGLMOutputStats, ADesignWithoutColumnsHasAnEmptyCovariance) {
  // The one effect has an unknown factor, so no combination was ever found.
  const std::vector<int> others = {7};
  MCModelEffect effect(1, 0, &others);
  effect.AddNewFactor(7, false);
  RegressionDesign design = RegressionDesign(0, {}, {}).NoIntercept();
  design.Settings().AddModelEffect(effect);
  const Built built(std::move(design), {{1}, {2}});
  EXPECT_EQ(built.fStats->GetCovarianceMatrix()->GetNRows(), 0);
  EXPECT_TRUE(built.fStats->GetParamStats().empty());
  EXPECT_NEAR(built.fStats->GetModelFitStat(MCConst::MC_FIT_RMSE), std::sqrt(2.5), kTolerance);
}

TEST(MCGLMOutputStats, ExhaustionIsThrownOrTheResultsAreComplete) {
  Built built(Design());
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    const mctest::FailAllocation failure(k);
    try {
      const MCGLMOutputStats stats(built.fDesign.Settings(), built.fAlgorithm);
      EXPECT_EQ(stats.GetCovarianceMatrix()->AsVectorConst(),
                built.fStats->GetCovarianceMatrix()->AsVectorConst())
          << k;
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFired());
    }
    fired = failure.HasFired();
  }
}

TEST(MCGLMOutputStatsDisplay, ShowsEachParameterWithItsResults) {
  const Built built(RegressionDesign(0, {{1, 2}}, {}).Effect({1}),
                    {{1, 0}, {3, 0}, {5, 1}, {9, 1}});
  const std::vector<MCRegrParameter>& parameters = *built.fStats->GetParameters();
  EXPECT_EQ(mctest::DisplayOf(*built.fStats),
            "\nMCGLMOutStatsImpl display start"
            "\nfMeanValues (size = 1)\n 4.5"
            "\nfFactorCounts:" +
                mctest::DisplayOf(*built.fStats->GetFactorCounts()) +
                "\nfParamEstimates (size = 3)\n 7 -5 0"
                "\nfParameters and fParamStats: total model parameters = 3" +
                mctest::DisplayOf(parameters[0]) + "\nParameter estimate = 7\nRedundant = false" +
                mctest::DisplayOf(parameters[1]) + "\nParameter estimate = -5\nRedundant = false" +
                mctest::DisplayOf(parameters[2]) +
                "\nParameter estimate = 0\nRedundant = true"
                "\nfTotalFreqWeight = 4"
                "\nfTotalRegrWeight = 4"
                "\nfNDegFreedom = 1"
                "\nRMSE = 1.58114"
                "\nMultiple R Square = 0.714286"
                "\n\nCovariance matrix:" +
                mctest::DisplayOf(*built.fStats->GetCovarianceMatrix()) +
                "\nMCGLMOutStatsImpl display end");
}

}  // namespace
