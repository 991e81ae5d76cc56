// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogoutputstats.h"

#include "regression/logistic/mclogalgorithm.h"
#include "regression/logistic/mclogisticflags.h"
#include "support/contingencytable.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"
#include "support/rowsource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace {
using mctest::ContingencyTable;
using mctest::LogisticDesign;
using mctest::MakeRecord;
using mctest::Rows;
using mctest::RowSource;
using testing::Each;
using testing::ElementsAre;

constexpr double kTolerance = 1e-12;  // closed forms, a well-conditioned design

// A build and its results.
struct Built {
  explicit Built(LogisticDesign design, const Rows& rows = ContingencyTable::WeightedRows())
      : fDesign(std::move(design)), fAlgorithm(fDesign.Settings()) {
    RowSource source(rows);
    std::vector<MCRegrParameter> parameters;
    EXPECT_FALSE(fAlgorithm.CreateParameters(source, parameters).IsError());
    EXPECT_FALSE(fAlgorithm.BuildModel(source).IsError());
    fStats = std::make_unique<MCLogOutputStats>(fDesign.Settings(), fAlgorithm);
  }

  LogisticDesign fDesign;
  MCLogAlgorithm fAlgorithm;
  std::unique_ptr<MCLogOutputStats> fStats;
};

TEST(MCLogOutputStats, PointsToWhatTheDriverHolds) {
  const Built built(ContingencyTable::Design());
  const MCLogModel& model = built.fAlgorithm.GetModel();
  const IMCRegOutputStats& stats = *built.fStats;
  EXPECT_EQ(stats.GetModelType(), MCConst::MC_MODEL_LOGISTIC);
  EXPECT_EQ(stats.GetMeanValues(), &built.fAlgorithm.GetMeanValues());
  EXPECT_EQ(stats.GetFactorCounts(), &built.fAlgorithm.GetFactorCounts());
  EXPECT_EQ(stats.GetParameters(), &model.GetParameters());
  EXPECT_EQ(stats.GetParamEstimates(), &model.GetParamEstimates());
  EXPECT_EQ(stats.GetCovarianceMatrix(), model.GetHessianGI());
  EXPECT_EQ(&stats.GetRecordValidator(), &built.fAlgorithm.GetRecordValidator());
  EXPECT_EQ(&built.fStats->GetDependCategories(), &model.GetDependCategories());
  EXPECT_EQ(&built.fStats->GetConvergence(), &built.fAlgorithm.GetConvergence());
  EXPECT_THAT(built.fStats->GetDependCategories(), ElementsAre(0, 1, 2));
  EXPECT_EQ(stats.GetTotalFreqWeight(), ContingencyTable::Total());
  EXPECT_EQ(stats.GetTotalRegrWeight(), ContingencyTable::Total());
}

TEST(MCLogOutputStats, MarksAliasedParametersInRecordsAndIndicators) {
  const Built built(ContingencyTable::Design());
  const std::vector<double> estimates = ContingencyTable::Estimates();
  const std::vector<int> effects = {-1, 0, 0, -1, 0, 0};
  const std::vector<MCRegrParameterStats>& stats = built.fStats->GetParamStats();
  ASSERT_EQ(stats.size(), estimates.size());
  ASSERT_EQ(built.fStats->GetRedundancyIndicators().Size(), ContingencyTable::kNParameters);
  for (std::size_t i = 0; i < stats.size(); ++i) {
    const bool isRedundant = i % 3 == 2;
    EXPECT_EQ(stats[i].fIndex, static_cast<int>(i));
    EXPECT_NEAR(stats[i].fEstimate, estimates[i], kTolerance);
    EXPECT_EQ(stats[i].fRedundant, isRedundant);
    EXPECT_EQ(stats[i].fEffectIndex, effects[i]);
    EXPECT_NE(built.fStats->GetRedundancyIndicators().IsIn(static_cast<int>(i)), isRedundant);
    EXPECT_EQ(stats[i].fStat1, MCMV::gMissingValue) << "no standard errors are computed";
    EXPECT_EQ(stats[i].fStat5, 0.0);
    EXPECT_EQ(stats[i].fDeff, MCMV::gMissingValue);
  }
}

TEST(MCLogOutputStats, DegreesOfFreedomCountAliasedParametersToo) {
  EXPECT_EQ(Built(ContingencyTable::Design()).fStats->GetNDegFreedom(), 41.0 - 6.0);
  LogisticDesign imposed = ContingencyTable::Design();
  imposed.Settings().SetDF(25.0);
  EXPECT_EQ(Built(std::move(imposed)).fStats->GetNDegFreedom(), 25.0);
  LogisticDesign dropped = ContingencyTable::Design();
  dropped.Settings().SetDF(0.0);
  EXPECT_EQ(Built(std::move(dropped)).fStats->GetNDegFreedom(), 41.0 - 6.0);
}

TEST(MCLogOutputStats, AHundredCasesAndSevenParametersLeaveNinetyThree) {
  // Seven columns, of which the two last levels are redundant.
  Rows rows;
  for (int i = 0; i < 100; ++i)
    rows.push_back({1.0 * (i % 7 % 2), 1.0 * (i % 3), 1.0 * (i / 3 % 3)});
  const Built built(LogisticDesign(0, {{1, 3}, {2, 3}}, {}).Effect({1}).Effect({2}), rows);
  ASSERT_EQ(built.fStats->GetParameters()->size(), 7u);
  EXPECT_EQ(built.fStats->GetRedundancyIndicators().IsIn(3), false);
  EXPECT_EQ(built.fStats->GetRedundancyIndicators().IsIn(6), false);
  EXPECT_EQ(built.fStats->GetNDegFreedom(), 93.0);
}

TEST(MCLogOutputStats, KnowsTheThreeStatisticsOfALogisticFit) {
  const Built built(ContingencyTable::Design());
  const double l0 = ContingencyTable::InitialLogLik();
  const double l1 = ContingencyTable::LogLik();
  const double coxSnell = 1 - std::exp(2 * (l0 - l1) / ContingencyTable::Total());
  const double most = 1 - std::exp(2 * l0 / ContingencyTable::Total());
  const MCLogOutputStats& stats = *built.fStats;
  EXPECT_NEAR(stats.GetModelFitStat(MCConst::MC_FIT_COX_SNELL), coxSnell, kTolerance);
  EXPECT_NEAR(stats.GetModelFitStat(MCConst::MC_FIT_NAGELKERKE), coxSnell / most, kTolerance);
  EXPECT_NEAR(stats.GetModelFitStat(MCConst::MC_FIT_MCFADDEN), 1 - l1 / l0, kTolerance);
  for (const int other : {0, 1, 5, -1}) {
    EXPECT_EQ(stats.GetModelFitStat(static_cast<MCConst::MCModelFitStat>(other)),
              MCMV::gMissingValue);
  }
}

TEST(MCLogOutputStats, OfInterceptsAloneTheThreeAreZeroAndNotMissing) {
  const Built built(LogisticDesign(0, {}, {}).Categories(3).FrequencyWeight(2));
  for (const auto stat :
       {MCConst::MC_FIT_COX_SNELL, MCConst::MC_FIT_NAGELKERKE, MCConst::MC_FIT_MCFADDEN}) {
    EXPECT_EQ(built.fStats->GetModelFitStat(stat), 0.0);
  }
  EXPECT_NE(built.fStats->GetCovarianceMatrix(), nullptr);
}

TEST(MCLogOutputStats, WithoutAnEstimationThereIsNoCovariance) {
  compute_estimates = false;
  const Built built(ContingencyTable::Design());
  compute_estimates = true;
  EXPECT_EQ(built.fStats->GetCovarianceMatrix(), nullptr);
  EXPECT_THAT(*built.fStats->GetParamEstimates(), Each(0.0));
  EXPECT_EQ(built.fStats->GetModelFitStat(MCConst::MC_FIT_COX_SNELL), 0.0) << "of no iteration";
  EXPECT_TRUE(built.fStats->GetParamStats()[2].fRedundant);
  EXPECT_FALSE(built.fStats->GetParamStats()[1].fRedundant);
  EXPECT_THAT(mctest::DisplayOf(*built.fStats), testing::Not(testing::HasSubstr("Covariance")));
}

TEST(MCLogOutputStats, OfABuildCancelledBetweenItsStepsKeepsDefaults) {
  LogisticDesign design = ContingencyTable::Design();
  MCLogAlgorithm algorithm(design.Settings());
  RowSource source(ContingencyTable::WeightedRows());
  std::vector<MCRegrParameter> parameters;
  ASSERT_TRUE(algorithm.CreateParameters(source, parameters).IsOK());
  algorithm.Cancel();
  ASSERT_TRUE(algorithm.BuildModel(source).IsOK());
  const MCLogOutputStats stats(design.Settings(), algorithm);
  ASSERT_EQ(stats.GetParamStats().size(), parameters.size());
  ASSERT_EQ(stats.GetRedundancyIndicators().Size(), ContingencyTable::kNParameters);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    EXPECT_EQ(stats.GetParamStats()[i].fIndex, -1);
    EXPECT_EQ(stats.GetParamStats()[i].fEstimate, MCMV::gMissingValue);
    EXPECT_FALSE(stats.GetRedundancyIndicators().IsIn(static_cast<int>(i)));
  }
  EXPECT_EQ(stats.GetModelFitStat(MCConst::MC_FIT_MCFADDEN), MCMV::gMissingValue);
  EXPECT_EQ(stats.GetCovarianceMatrix(), nullptr);
}

TEST(MCLogOutputStats, OfAFreshDriverIsEmpty) {
  LogisticDesign design = ContingencyTable::Design();
  MCLogAlgorithm algorithm(design.Settings());
  const MCLogOutputStats stats(design.Settings(), algorithm);
  EXPECT_TRUE(stats.GetParamEstimates()->empty());
  EXPECT_TRUE(stats.GetParamStats().empty());
  EXPECT_EQ(stats.GetRedundancyIndicators().Size(), 0);
  EXPECT_EQ(stats.GetCovarianceMatrix(), nullptr);
  EXPECT_EQ(stats.GetConvergence().fReason, MCConst::MC_CONV_NOT_RUN);
}

// --- Rows ---------------------------------------------------------------------------------------

TEST(MCLogOutputStats, ExpandsARowIntoTheColumnsOfTheDesignAndZerosBehindThem) {
  const Built built(ContingencyTable::Design());
  std::vector<double> row = {99};
  EXPECT_TRUE(built.fStats->ExpandRow(MakeRecord({MCMV::gMissingValue, 1, 0}), row));
  EXPECT_THAT(row, ElementsAre(1, 0, 1, 0, 0, 0));
}

TEST(MCLogOutputStats, ExpandsARowIntoOneColumnOfEachEffect) {
  const Built built(LogisticDesign(0, {{1, 2}}, {2}).Effect({1}).Effect({}, {2}),
                    {{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {1, 1, 2}, {1, 0, 1.5}});
  std::vector<int> indices = {99, 98, 97, 96};
  std::vector<double> values = {99};
  EXPECT_TRUE(built.fStats->ExpandRow(MakeRecord({0, 1, 7}), indices, values));
  EXPECT_THAT(indices, ElementsAre(0, 2, 3));
  EXPECT_THAT(values, ElementsAre(1, 1, 7));
}

TEST(MCLogOutputStats, ARowThatCannotBeScoredLeavesTheVectorsAlone) {
  const Built built(ContingencyTable::Design());
  const double missing = MCMV::gMissingValue;
  for (const std::vector<double>& values :
       Rows{{1, missing, 1}, {1, 0.5, 1}, {1, 3, 1}, {1, -1, 1}, {1}, {}}) {
    std::vector<double> row = {99};
    std::vector<int> indices = {98};
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), row));
    EXPECT_THAT(row, ElementsAre(99));
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), indices, row));
    EXPECT_THAT(row, ElementsAre(99));
    EXPECT_THAT(indices, ElementsAre(98));
  }
}

// Where memory ran out when the dependent was set, the settings keep all positions and forget all
// roles, and the validator accepts records of any length.
TEST(MCLogOutputStats, ARecordThatEndsBeforeAForgottenRoleCannotBeExpanded) {
  LogisticDesign design = LogisticDesign(-1, {{1, 2}}, {}).Categories(3).Effect({1});
  {
    const mctest::FailAllocation failure(1);
    ASSERT_FALSE(design.Settings().SetDependent(2));
  }
  Rows rows;
  for (const std::vector<double>& row : ContingencyTable::RepeatedRows()) {
    rows.push_back({9, row[1], row[0]});
  }
  const Built built(std::move(design), rows);
  for (const std::vector<double>& values : Rows{{}, {9}}) {
    std::vector<double> row = {99};
    std::vector<int> indices;
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), row));
    EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord(values), indices, row));
    EXPECT_THAT(row, ElementsAre(99));
  }
  std::vector<double> row;
  EXPECT_TRUE(built.fStats->ExpandRow(MakeRecord({9, 0}), row));
  EXPECT_THAT(row, ElementsAre(1, 1, 0, 0, 0, 0));
}

TEST(MCLogOutputStats, ALevelThatWasNotSeenAnswersFalseWithZeros) {
  const Built built(ContingencyTable::Design());
  std::vector<double> row = {99};
  EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord({1, 2, 1}), row));  // one above the last
  EXPECT_EQ(row, std::vector<double>(6, 0.0));
}

TEST(MCLogOutputStats, CancelReachesTheDriverAndEndsExpansion) {
  Built built(ContingencyTable::Design());
  built.fStats->Cancel();
  std::vector<double> probabilities;
  int category = 99;
  EXPECT_EQ(built.fAlgorithm.Score(MakeRecord({0, 1, 1}), probabilities, category),
            MCCommon::MCStatus(1, false));
  std::vector<double> row;
  EXPECT_FALSE(built.fStats->ExpandRow(MakeRecord({0, 1, 1}), row));
}

// --- Memory, display ----------------------------------------------------------------------------

TEST(MCLogOutputStats, ExhaustionIsThrownOrTheResultsAreComplete) {
  Built built(ContingencyTable::Design());
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    const mctest::FailAllocation failure(k);
    try {
      const MCLogOutputStats stats(built.fDesign.Settings(), built.fAlgorithm);
      EXPECT_EQ(stats.GetParamStats().back().fIndex, 5) << k;
      EXPECT_TRUE(stats.GetRedundancyIndicators().IsIn(4)) << k;
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFired());
    }
    fired = failure.HasFired();
  }
}

TEST(MCLogOutputStatsDisplay, ShowsEachParameterWithItsResults) {
  // Three of four against one of four.
  const Built built(LogisticDesign(0, {}, {1}).Effect({}, {1}),
                    {{0, 1}, {0, 1}, {0, 1}, {1, 1}, {0, 2}, {1, 2}, {1, 2}, {1, 2}});
  const std::vector<MCRegrParameter>& parameters = *built.fStats->GetParameters();
  const double l0 = 8 * std::log(0.5);
  const double l1 = 6 * std::log(0.75) + 2 * std::log(0.25);
  const double coxSnell = 1 - std::exp((l0 - l1) / 4);
  const auto line = [](const char* label, double value) {
    return mctest::Displayed([&] { MCComponentDisplay::DisplayD(label, value); });
  };
  EXPECT_EQ(
      mctest::DisplayOf(*built.fStats),
      "\nMCLogOutStatsImpl display start"
      "\nfMeanValues (size = 1)\n 1.5"
      "\nfFactorCounts:" +
          mctest::DisplayOf(*built.fStats->GetFactorCounts()) +
          "\nfParamEstimates (size = 2)\n 3.29584 -2.19722"
          "\nfParameters and fParamStats: total model parameters = 2" +
          mctest::DisplayOf(parameters[0]) + "\nParameter estimate = 3.29584\nRedundant = false" +
          mctest::DisplayOf(parameters[1]) + "\nParameter estimate = -2.19722\nRedundant = false" +
          "\nfTotalFreqWeight = 8"
          "\nfTotalRegrWeight = 8"
          "\nfNDegFreedom = 6" +
          line("Cox and Snell R Square", coxSnell) +
          line("Nagelkerke R Square", coxSnell / (1 - std::exp(l0 / 4))) +
          line("McFadden R Square", 1 - l1 / l0) +
          "\n\nCovariance matrix:" + mctest::DisplayOf(*built.fStats->GetCovarianceMatrix()) +
          "\nMCLogOutStatsImpl display end");
}

}  // namespace
