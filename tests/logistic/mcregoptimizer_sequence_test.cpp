// SPDX-License-Identifier: Apache-2.0
//
// The whole order of calls on handler and accumulator, of polls ("?") and of reports.
#include "regression/logistic/mcregoptimizer.h"
#include "support/scriptedrun.h"

#include <gtest/gtest.h>

#include <string>

namespace {
using MCCommon::MCStatus;
using mctest::ScriptedRun;

// A listener makes the log-likelihood be read once more, for the report on the initial estimates.
const std::string kBegin = "Set ResetF Full LL Report LL Hessian Scores";
const std::string kTrial = " ? ResetF Trial LL";
const std::string kRefused = kTrial + " Factor";
const std::string kTop = " ?";
const std::string kFullPass = " ? ResetF Full LL Hessian";
const std::string kNext = kTop + kTrial + kFullPass + " Scores Report";
const std::string kLast = kTop + kTrial + kFullPass + " Report";
const std::string kEnd = " ? Clean Counts";

// One more iteration after the first, which then changes nothing.
void ConvergeAtSecond(ScriptedRun& run) {
  run.Script().fScores = {{1.0}, {0.0}};
}

TEST(MCRegOptimizerSequence, AConvergentRun) {
  ScriptedRun run;
  ConvergeAtSecond(run);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kNext + kLast + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
  EXPECT_EQ(run.fHandler.fpGivenStats, &run.fAccumStats);
  EXPECT_EQ(run.fHandler.fpGivenModel, &run.fModel);
}

TEST(MCRegOptimizerSequence, ARunWithoutAListenerReadsTheFirstLogLikelihoodOnce) {
  ScriptedRun run;
  run.fbListens = false;
  ConvergeAtSecond(run);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), "Set ResetF Full LL Hessian Scores" + kTop + kTrial + kFullPass +
                                 " Scores" + kTop + kTrial + kFullPass + kEnd);
}

TEST(MCRegOptimizerSequence, ARunWithoutAQueryDoesNotPoll) {
  ScriptedRun run;
  run.fSettings.SetCancelPointer(nullptr);
  ConvergeAtSecond(run);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Count("?"), 0u);
  EXPECT_EQ(run.fLog.Count("Full"), 3u);
}

TEST(MCRegOptimizerSequence, PollsThreeTimesAnIterationAndOnceAtTheEnd) {
  for (int nIterations = 1; nIterations <= 4; ++nIterations) {
    ScriptedRun run;
    run.fSettings.SetMaxIterations(nIterations);
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fLog.Count("?"), 3u * static_cast<unsigned>(nIterations) + 1u);
    EXPECT_EQ(run.fLog.Count("IsCancel"), 0u);
  }
}

TEST(MCRegOptimizerSequence, ARefusedStepIsHalvedAndTriedAgain) {
  ScriptedRun run;
  ConvergeAtSecond(run);
  run.Script().fTrialLL = {-2.0, -1.5, -1.0};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kTop + kRefused + kRefused + kTrial + kFullPass +
                                 " Scores Report" + kLast + kEnd);
  EXPECT_EQ(run.fEstimates, std::vector<double>{0.25});
}

TEST(MCRegOptimizerSequence, ExhaustedHalvingStillMakesTheFullPass) {
  for (const int limit : {1, 2, 5}) {
    ScriptedRun run;
    run.fSettings.SetMaxStepHalvingValue(limit);
    run.Script().fTrialLL = {-2.0};
    std::vector<double> tried;
    run.fHandler.fOnPass = [&run, &tried](bool likelihoodOnly) {
      if (likelihoodOnly) tried.push_back(run.fEstimates[0]);
    };
    EXPECT_TRUE(run.Estimate().IsOK());
    std::string trials;
    std::vector<double> expected;
    for (int i = 0; i < limit; ++i) {
      trials += kRefused;
      expected.push_back(1.0 / (1 << i));
    }
    expected.push_back(1.0 / (1 << limit));
    EXPECT_EQ(run.fLog.Text(), kBegin + kTop + trials + kTrial + kFullPass + " Report" + kEnd);
    EXPECT_EQ(tried, expected);
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_HALVING);
  }
}

TEST(MCRegOptimizerSequence, AnErrorEndsTheRunWhereverItComes) {
  struct Case {
    int fPass;  // that fails, of all passes
    std::string fExpected;
  };
  const std::string atFirstTrial = kBegin + kTop + " ? ResetF Trial";
  const Case cases[] = {
      {0, "Set ResetF Full Clean"},
      {1, atFirstTrial + " Clean"},
      {2, kBegin + kTop + kRefused + " ? ResetF Trial Clean"},
      {3, kBegin + kTop + kRefused + kTrial + " ? ResetF Full Clean"},
      {4, kBegin + kTop + kRefused + kTrial + kFullPass + " Scores Report" + kTop +
              " ? ResetF Trial Clean"},
  };
  for (const Case& c : cases) {
    ScriptedRun run;
    run.Script().fTrialLL = {-2.0, -1.0};
    run.Script().fStatuses[c.fPass] = MCStatus(313, false);
    EXPECT_TRUE(run.Estimate() == MCStatus(313, false)) << c.fPass;
    EXPECT_EQ(run.fLog.Text(), c.fExpected) << c.fPass;
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE) << c.fPass;
  }
}

TEST(MCRegOptimizerSequence, HybridGoesOverToNewtonWhenFisherScoringHasConverged) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 10;
  run.Script().fScores = {{0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kTop + kTrial + kFullPass +
                                 " ResetN Full Hessian Scores Report" + kTop + kTrial +
                                 " ? ResetN Full LL Hessian Report" + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
  EXPECT_EQ(run.Optimizer().GetFisherIterInHybrid(), 1);
}

TEST(MCRegOptimizerSequence, HybridGoesOverToNewtonWhenItsBudgetIsSpent) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 2;
  run.fSettings.SetMaxIterations(3);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kNext + kTop + kTrial + kFullPass +
                                 " ResetN Full Hessian Scores Report" + kTop + kTrial +
                                 " ? ResetN Full LL Hessian Report" + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
  EXPECT_EQ(run.Optimizer().GetFisherIterInHybrid(), 2);
}

TEST(MCRegOptimizerSequence, HybridEndsWithASingularHessianOfNewton) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 1;
  run.Script().fHessians = {{1.0}, {1.0}, {0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(),
            kBegin + kTop + kTrial + kFullPass + " ResetN Full Hessian Report" + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_SINGULAR);
}

TEST(MCRegOptimizerSequence, AnErrorInThePassOfTheSwitchEndsTheRun) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 1;
  run.Script().fStatuses[3] = MCStatus(304, false);
  EXPECT_TRUE(run.Estimate() == MCStatus(304, false));
  EXPECT_EQ(run.fLog.Text(), kBegin + kTop + kTrial + kFullPass + " ResetN Full Clean");
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE);
}

TEST(MCRegOptimizerSequence, AFisherRunThatConvergesAtTheLimitGoesOnUnderNewton) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 10;
  run.fSettings.SetMaxIterations(1);
  run.Script().fScores = {{0.0}, {0.0}, {1.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fIterations, 2);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
}

TEST(MCRegOptimizerSequence, HybridWithoutABudgetNeverSwitches) {
  for (const int budget : {0, -3}) {
    ScriptedRun run;
    run.fMethod = MCConst::MC_EST_HYBRID;
    run.fFisherIterations = budget;
    run.Script().fScores = {{0.0}};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fLog.Text(), "Set ResetH Full LL Report LL Hessian Scores" + kTop + kTrial +
                                   " ? ResetH Full LL Hessian Report" + kEnd);
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
  }
}

TEST(MCRegOptimizerSequence, ASingularOrSeparatedFisherFitDoesNotSwitch) {
  for (const bool isSeparated : {false, true}) {
    ScriptedRun run;
    run.fMethod = MCConst::MC_EST_HYBRID;
    run.fFisherIterations = 1;
    run.fSettings.SetStartingIteration(1);
    if (isSeparated) {
      run.Script().fExtremes = {{0.999, 0.9999, 0.0}};
    } else {
      run.Script().fHessians = {{1.0}, {0.0}};
    }
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fLog.Count("ResetN"), 0u);
    EXPECT_EQ(run.Optimizer().GetConverCrit(),
              isSeparated ? MCConst::MC_CONV_COMPLETE_SEP : MCConst::MC_CONV_SINGULAR);
  }
}

TEST(MCRegOptimizerSequence, NewtonTriesItsStepsAsFisherScoringDoes) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_NEWTON;
  run.Script().fScores = {{0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), "Set ResetN Full LL Report LL Hessian Scores" + kTop + kTrial +
                                 " ? ResetN Full LL Hessian Report" + kEnd);
}

TEST(MCRegOptimizerSequence, SeparationIsCheckedFromTheStartingIterationAndInFullPassesAlone) {
  ScriptedRun run;
  run.fSettings.SetStartingIteration(2);
  run.fSettings.SetMaxIterations(3);
  EXPECT_TRUE(run.Estimate().IsOK());
  const std::string checked = " ? ResetF+ Full LL Hessian Extremes";
  EXPECT_EQ(run.fLog.Text(), kBegin + kNext + kTop + kTrial + checked + " Scores Report" + kTop +
                                 kTrial + checked + " Report" + kEnd);
}

TEST(MCRegOptimizerSequence, TheSwitchPassChecksSeparationWithTheIteration) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 1;
  run.fSettings.SetStartingIteration(1);
  run.Script().fHessians = {{1.0}, {1.0}, {0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kTop + kTrial +
                                 " ? ResetF+ Full LL Hessian Extremes ResetN+ Full Hessian Report" +
                                 kEnd);
}

TEST(MCRegOptimizerSequence, ByDefaultSeparationIsFirstCheckedAtIteration20) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(25);
  run.Script().fExtremes = {{0.999, 0.9999, 0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fIterations, 20);
  EXPECT_EQ(run.fLog.Count("Extremes"), 1u);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_COMPLETE_SEP);
}

TEST(MCRegOptimizerSequence, WithAStartingIterationOf0SeparationIsNeverChecked) {
  ScriptedRun run;
  run.fSettings.SetStartingIteration(0);
  run.fSettings.SetMaxIterations(30);
  run.Script().fExtremes = {{0.999, 0.9999, 0.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Count("Extremes"), 0u);
  EXPECT_EQ(run.fLog.Count("ResetF+"), 0u);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
}

TEST(MCRegOptimizerSequence, WithoutAParameterOnlyTheFirstPassIsRun) {
  for (const int nParams : {0, -2}) {
    ScriptedRun run(nParams);
    run.fSettings.SetInterceptUse(false);
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.fLog.Text(), "Set ResetF Full LL Report LL ? Clean");
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
    EXPECT_TRUE(run.fEstimates.empty());
  }
}

TEST(MCRegOptimizerSequence, InterceptsAloneAreNotIterated) {
  ScriptedRun run(1, 2);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
}

TEST(MCRegOptimizerSequence, AsManyParametersAsCategoriesAreIterated) {
  ScriptedRun run(1, 1);
  EXPECT_TRUE(run.fSettings.GetInterceptUse());
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_GT(run.EstStats().fIterations, 0);
}

TEST(MCRegOptimizerSequence, FewParametersWithoutAnInterceptAreIterated) {
  ScriptedRun run(1, 5);
  run.fSettings.SetInterceptUse(false);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_GT(run.EstStats().fIterations, 0);
}

TEST(MCRegOptimizerSequence, AnIterationLimitOf0LeavesTheInitialEstimates) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(0);
  run.fEstimates = {0.5};
  run.Script().fHessians = {{4.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), kBegin + kEnd);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
  EXPECT_EQ(run.fEstimates, std::vector<double>{0.5});
  EXPECT_EQ(run.Optimizer().GetHessianGI()->GetElem(0, 0), 0.25);
  EXPECT_EQ(run.EstStats().fFinalLL, MCMV::gMissingValue);
  EXPECT_EQ(run.EstStats().fInitialLL, -1.0);
}

}  // namespace
