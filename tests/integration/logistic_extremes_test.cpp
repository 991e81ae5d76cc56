// SPDX-License-Identifier: Apache-2.0
//
// Whole logistic builds at the ends of the range of doubles, and what a frequency weight means.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "support/libraryfit.h"
#include "support/logisticfile.h"
#include "support/makerecord.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

namespace {

using mctest::LibraryFit;
using mctest::LogisticProblem;

enum { kY, kX, kFreq, kRegr };

// Three categories whose odds follow x, with a frequency and a regression weight of 1.
LogisticProblem Sloped() {
  LogisticProblem problem;
  problem.categories = 3;
  problem.dependent = kY;
  problem.covariates = {kX};
  problem.freqWeight = kFreq;
  problem.regrWeight = kRegr;
  problem.effects = {{{}, {kX}}};
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  for (int r = 0; r < 60; ++r) {
    const double x = normal(random);
    const double y = std::fmin(2.0, std::fmax(0.0, std::round(1.0 + x + normal(random))));
    problem.rows.push_back({y, x, 1.0, 1.0});
  }
  return problem;
}

void ExpectProbabilities(const std::vector<double>& probabilities) {
  ASSERT_EQ(probabilities.size(), 3u);
  for (const double p : probabilities) {
    EXPECT_GE(p, 0.0);
    EXPECT_LE(p, 1.0);
  }
  EXPECT_NEAR(std::accumulate(probabilities.begin(), probabilities.end(), 0.0), 1.0, 1e-12);
}

void ExpectNumbers(LibraryFit& fit) {
  for (const double b : *fit.Results().GetParamEstimates()) EXPECT_TRUE(std::isfinite(b));
  for (const double c : fit.Results().GetCovarianceMatrix()->AsVectorConst()) {
    EXPECT_TRUE(std::isfinite(c));
  }
  EXPECT_TRUE(std::isfinite(fit.Convergence().fInitialLL));
  EXPECT_TRUE(std::isfinite(fit.Convergence().fFinalLL));
}

// A row far outside. The first Newton steps follow it, so that linear predictors of up to some
// 1e9 are met on the way, of the category that it has and of the others.
TEST(ExtremeLogistic, PredictorsOfABillionOnTheWayGiveNumbers) {
  for (const bool patterns : {true, false}) {
    for (const double outlier : {1e9, -1e9, 1e12, -1e12}) {
      for (const double category : {0.0, 1.0, 2.0}) {
        SCOPED_TRACE(testing::Message() << outlier << " in " << category);
        LogisticProblem problem = Sloped();
        problem.rows.push_back({category, outlier, 1.0, 1.0});
        LibraryFit fit(problem);
        fit.LogisticSettings().SetUsePatternTabulator(patterns);
        fit.LogisticSettings().SetMaxStepHalvingValue(60);
        ASSERT_TRUE(fit.Build().IsOK());
        ExpectNumbers(fit);
      }
    }
  }
}

TEST(ExtremeLogistic, ScoresOfPredictorsOfABillionAndFarBeyondAreProbabilities) {
  const LogisticProblem problem = Sloped();
  LibraryFit fit(problem);
  ASSERT_TRUE(fit.Build().IsOK());
  for (const double x : {1e3, 1e9, 1e12, 1e200, 1e307}) {
    for (const double sign : {1.0, -1.0}) {
      SCOPED_TRACE(sign * x);
      double category = -1.0;
      std::vector<double> probabilities;
      const auto record = mctest::MakeRecord({0.0, sign * x, 1.0, 1.0});
      ASSERT_TRUE(fit.Component().Score(record, category, probabilities).IsOK());
      ExpectProbabilities(probabilities);
      // The odds rise with x by construction.
      EXPECT_EQ(category, sign > 0.0 ? 2.0 : 0.0);
      EXPECT_EQ(probabilities[static_cast<std::size_t>(category)], 1.0);
    }
  }
}

// Weights times a power of two: likelihood, scores and information scale by it without rounding,
// steps don't scale at all.
TEST(ExtremeLogistic, WeightsTimesAPowerOfTwoLeaveTheEstimatesToTheBit) {
  const LogisticProblem problem = Sloped();
  LibraryFit plain(problem);
  ASSERT_TRUE(plain.Build().IsOK());
  for (const bool patterns : {true, false}) {
    for (const int exponent : {-30, -2, 2, 500, 800}) {
      for (const int position : {kFreq, kRegr}) {
        SCOPED_TRACE(testing::Message() << "2^" << exponent << " at " << position);
        LogisticProblem scaled = problem;
        for (auto& row : scaled.rows) {
          row[static_cast<std::size_t>(position)] = std::ldexp(1.0, exponent);
        }
        LibraryFit fit(scaled);
        fit.LogisticSettings().SetUsePatternTabulator(patterns);
        ASSERT_TRUE(fit.Build().IsOK());
        EXPECT_EQ(*fit.Results().GetParamEstimates(), *plain.Results().GetParamEstimates());
        EXPECT_EQ(fit.Convergence().fFinalLL, std::ldexp(plain.Convergence().fFinalLL, exponent));
        EXPECT_EQ(fit.Results().GetCovarianceMatrix()->GetElem(1, 0),
                  std::ldexp(plain.Results().GetCovarianceMatrix()->GetElem(1, 0), -exponent));
        EXPECT_EQ(fit.Results().GetModelFitStat(MCConst::MC_FIT_MCFADDEN),
                  plain.Results().GetModelFitStat(MCConst::MC_FIT_MCFADDEN));
      }
    }
  }
}

// The one limit that isn't relative: an information of at most the singularity tolerance, 1e-12,
// counts as none, so that such weights leave the first estimates as they are.
TEST(ExtremeLogistic, WeightsThatLeaveNoInformationAboveTheToleranceEndAsSingular) {
  for (const double weight : {1e-16, 1e-300}) {
    LogisticProblem problem = Sloped();
    for (auto& row : problem.rows) row[kFreq] = weight;
    LibraryFit fit(problem);
    ASSERT_TRUE(fit.Build().IsOK());
    EXPECT_EQ(fit.Convergence().fReason, MCConst::MC_CONV_SINGULAR);
    EXPECT_EQ((*fit.Results().GetParamEstimates())[1], 0.0);
    // A larger unit of weight is all it takes.
    for (auto& row : problem.rows) row[kFreq] = 1.0;
    LibraryFit again(problem);
    ASSERT_TRUE(again.Build().IsOK());
    EXPECT_EQ(again.Convergence().fReason, MCConst::MC_CONV_PARAM);
  }
}

// Weights of both ends in the same rows and of one end throughout.
TEST(ExtremeLogistic, WeightsFromOneEndOfTheRangeToTheOtherGiveNumbers) {
  const double ends[] = {1e-300, 1e-150, 1.0, 1e150, 1e300};
  for (const bool patterns : {true, false}) {
    for (const int position : {kFreq, kRegr}) {
      for (std::size_t kind = 0; kind < 6; ++kind) {
        SCOPED_TRACE(testing::Message() << "kind " << kind << " at " << position);
        LogisticProblem problem = Sloped();
        for (std::size_t r = 0; r < problem.rows.size(); ++r) {
          problem.rows[r][static_cast<std::size_t>(position)] = ends[kind < 5 ? kind : r % 5];
        }
        LibraryFit fit(problem);
        fit.LogisticSettings().SetUsePatternTabulator(patterns);
        ASSERT_TRUE(fit.Build().IsOK());
        for (const double b : *fit.Results().GetParamEstimates()) EXPECT_FALSE(std::isnan(b));
        EXPECT_TRUE(std::isfinite(fit.Convergence().fInitialLL));
        EXPECT_TRUE(std::isfinite(fit.Convergence().fFinalLL));
        double category = -1.0;
        std::vector<double> probabilities;
        ASSERT_TRUE(fit.Component()
                        .Score(mctest::MakeRecord(problem.rows[0]), category, probabilities)
                        .IsOK());
        ExpectProbabilities(probabilities);
      }
    }
  }
}

class RepeatedRows : public testing::TestWithParam<const char*> {};

// Up to rounding: the sums are the same, in other pieces.
TEST_P(RepeatedRows, AreOneRowOfThatFrequency) {
  constexpr double kRounding = 1e-10;
  LogisticProblem weighted = mctest::WithReferenceLast(mctest::ReadLogisticData(GetParam()));
  if (weighted.freqWeight < 0) {
    weighted.freqWeight = static_cast<int>(weighted.rows.front().size());
    double next = 0.0;
    for (auto& row : weighted.rows) row.push_back(1.0 + std::fmod(next += 1.0, 4.0));
  }
  LogisticProblem repeated = weighted;
  repeated.freqWeight = -1;
  repeated.rows.clear();
  for (const auto& row : weighted.rows) {
    const double times = row[static_cast<std::size_t>(weighted.freqWeight)];
    repeated.rows.insert(repeated.rows.end(), static_cast<std::size_t>(times), row);
  }
  for (const bool patterns : {true, false}) {
    SCOPED_TRACE(patterns ? "patterns" : "reread");
    LibraryFit one(weighted);
    LibraryFit many(repeated);
    one.LogisticSettings().SetUsePatternTabulator(patterns);
    many.LogisticSettings().SetUsePatternTabulator(patterns);
    ASSERT_TRUE(one.Build().IsOK());
    ASSERT_TRUE(many.Build().IsOK());
    const std::vector<double>& a = *one.Results().GetParamEstimates();
    const std::vector<double>& b = *many.Results().GetParamEstimates();
    ASSERT_EQ(a.size(), b.size());
    // What the log-likelihood was too coarse to mend in either fit, in standard errors.
    const double refused = 1.1 * (std::sqrt(2.0 * one.Convergence().fExpectedGain) +
                                  std::sqrt(2.0 * many.Convergence().fExpectedGain));
    for (std::size_t i = 0; i < a.size(); ++i) {
      const int k = static_cast<int>(i);
      const double variance = one.Results().GetCovarianceMatrix()->GetElem(k, k);
      EXPECT_NEAR(a[i], b[i], kRounding * std::fabs(a[i]) + refused * std::sqrt(variance));
      EXPECT_NEAR(many.Results().GetCovarianceMatrix()->GetElem(k, k), variance,
                  (kRounding + static_cast<double>(a.size()) * refused) * variance);
    }
    EXPECT_NEAR(one.Convergence().fFinalLL, many.Convergence().fFinalLL,
                kRounding * std::fabs(one.Convergence().fFinalLL));
    EXPECT_EQ(one.Results().GetTotalFreqWeight(), many.Results().GetTotalFreqWeight());
    EXPECT_EQ(one.Results().GetNDegFreedom(), many.Results().GetNDegFreedom());
    for (const auto stat :
         {MCConst::MC_FIT_COX_SNELL, MCConst::MC_FIT_NAGELKERKE, MCConst::MC_FIT_MCFADDEN}) {
      EXPECT_NEAR(one.Results().GetModelFitStat(stat), many.Results().GetModelFitStat(stat),
                  kRounding);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sets, RepeatedRows,
                         testing::Values("housing", "haireye", "admissions", "school", "births",
                                         "quine", "veteran", "cancer"),
                         [](const auto& set) { return std::string(set.param); });

}  // namespace
