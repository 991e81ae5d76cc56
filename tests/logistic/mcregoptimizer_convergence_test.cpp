// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcregoptimizer.h"
#include "support/samebits.h"
#include "support/scriptedrun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {
using mctest::PassScript;
using mctest::ScriptedRun;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNearlySingular = 0.000316;

// Stops a run after its first iteration, without a reason: the estimate is 1.0, the final
// log-likelihood -1.0.
void StopAfterOneIteration(ScriptedRun& run) {
  run.fCancel.fYesAt = 4;
  EXPECT_TRUE(run.Estimate() == MCCommon::MCStatus(1, false));
  EXPECT_EQ(run.EstStats().fIterations, 1);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE);
}

struct SeparationCase {
  const char* fName;
  PassScript::Extremes fExtremes;
  double fMinDiag;
  int fRedundant;
  int fReason;
};

const SeparationCase kSeparationCases[] = {
    {"all observed are certain", {0.991, 0.999, 0.0}, 1.0, 0, MCConst::MC_CONV_COMPLETE_SEP},
    {"complete goes before singular", {0.991, 0.999, 0.0}, 0.0, 1, MCConst::MC_CONV_COMPLETE_SEP},
    {"just not certain", {0.9899, 0.999, 0.5}, 1.0, 0, MCConst::MC_CONV_NONE},
    {"0.99 is not certain as 1 - 0.99 is above 0.01 in doubles",
     {0.99, 0.999, 0.5},
     1.0,
     0,
     MCConst::MC_CONV_NONE},
    {"the largest below the smallest", {0.995, 0.9, 0.5}, 1.0, 0, MCConst::MC_CONV_NONE},
    {"a NaN is not certain", {kNaN, 0.999, 0.5}, 1.0, 0, MCConst::MC_CONV_NONE},
    {"nor is a largest that is NaN", {0.999, kNaN, 0.5}, 1.0, 0, MCConst::MC_CONV_NONE},
    {"quasi-complete by the largest", {0.2, 0.9901, 0.5}, 1e-4, 0, MCConst::MC_CONV_QUASI_SEP},
    {"quasi-complete by the smallest", {0.2, 0.5, 0.0009}, 1e-4, 0, MCConst::MC_CONV_QUASI_SEP},
    {"quasi-complete goes before singular", {0.2, 0.5, 0.0009}, 0.0, 2, MCConst::MC_CONV_QUASI_SEP},
    {"0.99 and 0.001 are no separation", {0.2, 0.99, 0.001}, 1e-4, 0, MCConst::MC_CONV_SINGULAR},
    {"NaN extremes leave nearly singular", {kNaN, kNaN, kNaN}, 1e-4, 0, MCConst::MC_CONV_SINGULAR},
    {"the limit is nearly singular",
     {0.2, 0.5, 0.5},
     kNearlySingular,
     0,
     MCConst::MC_CONV_SINGULAR},
    {"above the limit is not",
     {0.2, 0.9999, 0.0},
     std::nextafter(kNearlySingular, 1.0),
     0,
     MCConst::MC_CONV_NONE},
    {"above the limit, redundant",
     {0.2, 0.9999, 0.0},
     std::nextafter(kNearlySingular, 1.0),
     1,
     MCConst::MC_CONV_SINGULAR},
    {"a NaN is not nearly singular", {0.2, 0.9999, 0.0}, kNaN, 0, MCConst::MC_CONV_NONE},
    {"NaN, redundant", {0.2, 0.9999, 0.0}, kNaN, 1, MCConst::MC_CONV_SINGULAR},
    {"start values of the extremes", {kLargest, kMissing, kLargest}, 1.0, 0, MCConst::MC_CONV_NONE},
};

TEST(MCRegOptimizerConvergence, SeparationIsFoundInItsOrder) {
  for (const SeparationCase& c : kSeparationCases) {
    ScriptedRun run;
    run.Script().fExtremes = {c.fExtremes};
    StopAfterOneIteration(run);
    EXPECT_EQ(run.Optimizer().CheckForConvergence({0.5}, -2.0, c.fRedundant, c.fMinDiag, true),
              c.fReason)
        << c.fName;
    // Measured whatever the reason.
    EXPECT_EQ(run.EstStats().fLLChange, 0.5) << c.fName;
    EXPECT_EQ(run.EstStats().fParamChange, 0.5 / (0.5 + 1e-6)) << c.fName;
  }
}

TEST(MCRegOptimizerConvergence, WithoutTheCheckOnlyRedundancyCounts) {
  ScriptedRun run;
  run.Script().fExtremes = {{0.999, 0.9999, 0.0}};
  StopAfterOneIteration(run);
  EXPECT_EQ(run.Optimizer().CheckForConvergence({0.5}, -2.0, 0, 0.0, false), MCConst::MC_CONV_NONE);
  EXPECT_EQ(run.Optimizer().CheckForConvergence({0.5}, -2.0, 1, 1.0, false),
            MCConst::MC_CONV_SINGULAR);
  EXPECT_EQ(run.fLog.Count("Extremes"), 0u);
}

TEST(MCRegOptimizerConvergence, WithoutAnAccumulatorNoSeparationIsFound) {
  std::vector<double> estimates;
  const MCLogRegSettings settings;
  const mctest::CountedModel model(1, 2);
  MCRegOptimizer optimizer(settings, model, nullptr, nullptr, estimates, nullptr, 1,
                           MCConst::MC_EST_FISHER, 0);
  EXPECT_EQ(optimizer.CheckForConvergence({1.0}, -2.0, 0, 0.0, true), MCConst::MC_CONV_NONE);
}

TEST(MCRegOptimizerConvergence, WithoutParametersTheirCriterionIsNotMet) {
  ScriptedRun run(0);
  EXPECT_EQ(run.Optimizer().CheckForConvergence({}, -2.0, 0, 1.0, false), MCConst::MC_CONV_NONE);
  EXPECT_EQ(run.EstStats().fParamChange, 0.0);
}

struct CriterionCase {
  const char* fName;
  double fLLCriterion;
  double fParamCriterion;
  double fPreviousLL;  // the final one is -1.0
  double fPrevious;    // the estimate is 1.0
  int fReason;
};

// Changes are absolute here: |previousLL + 1| and |previous - 1|.
const CriterionCase kCriterionCases[] = {
    {"neither", 0.25, 0.25, -2.0, 2.0, MCConst::MC_CONV_NONE},
    {"likelihood", 1.5, 0.25, -2.0, 2.0, MCConst::MC_CONV_LL},
    {"estimates", 0.25, 1.5, -2.0, 2.0, MCConst::MC_CONV_PARAM},
    {"both", 1.5, 1.5, -2.0, 2.0, MCConst::MC_CONV_BOTH},
    {"a change equal to its criterion isn't below it", 1.0, 1.0, -2.0, 2.0, MCConst::MC_CONV_NONE},
    {"criteria of 0.0 are never met", 0.0, 0.0, -1.0, 1.0, MCConst::MC_CONV_NONE},
    {"a NaN likelihood meets nothing", 1.5, 0.25, kNaN, 2.0, MCConst::MC_CONV_NONE},
    {"a missing likelihood is far away", 1.5, 0.25, kMissing, 2.0, MCConst::MC_CONV_NONE},
    {"an infinite change of the estimates", 0.25, 1.5, -2.0, kInf, MCConst::MC_CONV_NONE},
    {"a NaN estimate is passed over", 0.25, 0.5, -2.0, kNaN, MCConst::MC_CONV_PARAM},
};

TEST(MCRegOptimizerConvergence, CriteriaAreStrict) {
  for (const CriterionCase& c : kCriterionCases) {
    ScriptedRun run;
    run.fSettings.SetLLConCriterion(0.0);
    run.fSettings.SetParamEstConCriterion(0.0);
    run.fSettings.SetLLFuncChange(true);
    run.fSettings.SetParamEstChange(true);
    EXPECT_TRUE(run.fSettings.SetLLConCriterion(c.fLLCriterion));
    EXPECT_TRUE(run.fSettings.SetParamEstConCriterion(c.fParamCriterion));
    // So that the run itself doesn't converge, its changes are large.
    run.Script().fFullLL = {-1e6, -1.0};
    run.Script().fTrialLL = {-1.0};
    run.Script().fScores = {{1e6}};
    run.fEstimates = {1.0 - 1e6};
    StopAfterOneIteration(run);
    ASSERT_EQ(run.fEstimates, std::vector<double>{1.0});
    EXPECT_EQ(run.Optimizer().CheckForConvergence({c.fPrevious}, c.fPreviousLL, 0, 1.0, false),
              c.fReason)
        << c.fName;
    // Any other reason stays.
    EXPECT_EQ(run.Optimizer().CheckForConvergence({c.fPrevious}, c.fPreviousLL, 1, 1.0, false),
              MCConst::MC_CONV_SINGULAR)
        << c.fName;
  }
}

TEST(MCRegOptimizerConvergence, RelativeChangesAreDividedByWhatWasBefore) {
  ScriptedRun run(2);
  run.Script().fScores = {{1.0, -3.0}};
  run.Script().fHessians = {{1.0, 0.0, 1.0}};
  StopAfterOneIteration(run);
  run.Optimizer().CheckForConvergence({0.5, -4.0}, -8.0, 0, 1.0, false);
  EXPECT_EQ(run.EstStats().fLLChange, 7.0 / 8.0);
  EXPECT_EQ(run.EstStats().fParamChange, 0.5 / (0.5 + 1e-6));
}

TEST(MCRegOptimizerConvergence, AbsoluteChangesAreNot) {
  ScriptedRun run(2);
  run.fSettings.SetLLFuncChange(true);
  run.fSettings.SetParamEstChange(true);
  run.Script().fScores = {{1.0, -3.0}};
  run.Script().fHessians = {{1.0, 0.0, 1.0}};
  StopAfterOneIteration(run);
  run.Optimizer().CheckForConvergence({0.5, -4.0}, -8.0, 0, 1.0, false);
  EXPECT_EQ(run.EstStats().fLLChange, 7.0);
  EXPECT_EQ(run.EstStats().fParamChange, 1.0);
}

TEST(MCRegOptimizerConvergence, ARelativeChangeFromALikelihoodOf0MeetsNoCriterion) {
  for (const double finalLL : {-1.0, 0.0}) {
    ScriptedRun run;
    run.fSettings.SetLLConCriterion(kLargest);
    run.fSettings.SetParamEstConCriterion(0.0);
    run.fSettings.SetMaxIterations(1);
    run.Script().fTrialLL = {0.0};
    run.Script().fFullLL = {0.0, finalLL};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
    EXPECT_FALSE(std::isfinite(run.EstStats().fLLChange));
  }
}

TEST(MCRegOptimizerConvergence, ConvergenceAtTheIterationLimitIsConvergence) {
  struct Case {
    double fLLCriterion;
    double fParamCriterion;
    int fReason;
  };
  const Case cases[] = {{1e-3, 0.0, MCConst::MC_CONV_LL},
                        {0.0, 1e-6, MCConst::MC_CONV_PARAM},
                        {1e-3, 1e-6, MCConst::MC_CONV_BOTH},
                        {0.0, 0.0, MCConst::MC_CONV_MAX_ITER}};
  for (const Case& c : cases) {
    ScriptedRun run;
    run.fSettings.SetLLConCriterion(c.fLLCriterion);
    run.fSettings.SetParamEstConCriterion(c.fParamCriterion);
    run.fSettings.SetMaxIterations(2);
    run.Script().fTrialLL = {-2.0, -2.0};
    run.Script().fFullLL = {-3.0, -2.0, -2.0};
    run.Script().fScores = {{1.0}, {0.0}};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.EstStats().fIterations, 2);
    EXPECT_EQ(run.Optimizer().GetConverCrit(), c.fReason);
  }
}

TEST(MCRegOptimizerConvergence, AConstantLikelihoodIsAcceptedFromTheFirstIterationOn) {
  ScriptedRun run;
  run.fSettings.SetLLConCriterion(1e-8);
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fIterations, 1);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_LL);
  EXPECT_EQ(run.EstStats().fLLChange, 0.0);
  EXPECT_EQ(run.fEstimates, std::vector<double>{1.0});
}

TEST(MCRegOptimizerConvergence, TheDefaultCriteriaGiveReason2AndNever1Or3) {
  ScriptedRun run;
  run.Script().fScores = {{1.0}, {1e-7}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fIterations, 2);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
}

TEST(MCRegOptimizerConvergence, DefaultsAreThoseThatTheClassTells) {
  const MCLogRegSettings settings;
  EXPECT_EQ(settings.GetMaxStepHalvingValue(), 5);
  EXPECT_EQ(settings.GetTolerance(), 1e-12);
  EXPECT_EQ(settings.GetLLConCriterion(), 0.0);
  EXPECT_FALSE(settings.GetLLFuncChange());
  EXPECT_EQ(settings.GetParamEstConCriterion(), 1e-6);
  EXPECT_FALSE(settings.GetParamEstChange());
  EXPECT_EQ(settings.GetMaxIterations(), 100);
  EXPECT_EQ(settings.GetStartingIteration(), 20);
}

TEST(MCRegOptimizerConvergence, ASingularHessianEndsTheRunWithAGeneralisedInverse) {
  ScriptedRun run(2);
  run.Script().fScores = {{1.0, 1.0}};
  run.Script().fHessians = {{4.0, 0.0, 1.0}, {4.0, 2.0, 1.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_SINGULAR);
  EXPECT_EQ(run.EstStats().fIterations, 1);
  EXPECT_EQ(run.fEstimates, (std::vector<double>{0.25, 1.0}));
  EXPECT_EQ(run.Optimizer().GetHessianGI()->AsVectorConst(), (std::vector<double>{0.25, 0.0, 0.0}));
}

// The answer of the factorisation before the first iteration isn't looked at: the redundant
// parameter just doesn't move.
TEST(MCRegOptimizerConvergence, ASingularHessianAtTheStartDoesNotStop) {
  ScriptedRun run(2);
  run.Script().fScores = {{1.0, 1.0}, {0.0, 0.0}};
  run.Script().fHessians = {{4.0, 2.0, 1.0}, {4.0, 0.0, 1.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
  EXPECT_EQ(run.fEstimates, (std::vector<double>{0.25, 0.0}));
}

TEST(MCRegOptimizerConvergence, SeparationEndsARun) {
  struct Case {
    PassScript::Extremes fExtremes;
    std::vector<double> fHessian;
    int fReason;
  };
  const Case cases[] = {
      {{0.995, 0.999, 0.001}, {1.0}, MCConst::MC_CONV_COMPLETE_SEP},
      {{0.1, 0.999, 0.0001}, {1e-8}, MCConst::MC_CONV_QUASI_SEP},
      {{0.1, 0.9, 0.1}, {1e-8}, MCConst::MC_CONV_SINGULAR},
  };
  for (const Case& c : cases) {
    ScriptedRun run;
    run.fSettings.SetStartingIteration(3);
    run.Script().fExtremes = {c.fExtremes};
    run.Script().fHessians = {c.fHessian};
    run.Script().fScores = {c.fHessian};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.EstStats().fIterations, 3);
    EXPECT_EQ(run.Optimizer().GetConverCrit(), c.fReason);
    EXPECT_EQ(run.fLog.Count("Counts"), 1u);
  }
}

TEST(MCRegOptimizerConvergence, TheSwitchOfAHybridRun) {
  using MCConst::MC_EST_FISHER;
  using MCConst::MC_EST_HYBRID;
  using MCConst::MC_EST_NEWTON;
  struct Case {
    MCConst::MCEstimationMethod fMethod;
    MCConst::MCEstimationMethod fCurrent;
    int fBudget;
    int fIterations;  // that the run makes before it is cut short, of 0 to 2
    bool fSwitches;
  };
  const Case cases[] = {
      {MC_EST_HYBRID, MC_EST_FISHER, 3, 2, false}, {MC_EST_HYBRID, MC_EST_FISHER, 0, 0, true},
      {MC_EST_HYBRID, MC_EST_NEWTON, 0, 0, false}, {MC_EST_HYBRID, MC_EST_HYBRID, 0, 0, false},
      {MC_EST_FISHER, MC_EST_FISHER, 0, 2, false}, {MC_EST_NEWTON, MC_EST_FISHER, 0, 2, false},
      {MC_EST_HYBRID, MC_EST_FISHER, -1, 2, true},
  };
  for (const Case& c : cases) {
    ScriptedRun run;
    run.fMethod = c.fMethod;
    run.fFisherIterations = c.fBudget;
    run.fCancel.fYesAt = 1 + 3 * c.fIterations;
    EXPECT_TRUE(run.Estimate().IsError());
    ASSERT_EQ(run.EstStats().fIterations, c.fIterations);
    EXPECT_EQ(run.Optimizer().HybridSwitch(c.fCurrent), c.fSwitches) << &c - cases;
  }
}

// Without a budget a hybrid run keeps its reason, so that every one can be asked about.
TEST(MCRegOptimizerConvergence, OnlyConvergedHybridRunsSwitchForTheirReason) {
  struct Case {
    int fReason;
    bool fSwitches;
  };
  const Case cases[] = {{MCConst::MC_CONV_LL, true},       {MCConst::MC_CONV_PARAM, true},
                        {MCConst::MC_CONV_BOTH, true},     {MCConst::MC_CONV_SINGULAR, false},
                        {MCConst::MC_CONV_HALVING, false}, {MCConst::MC_CONV_MAX_ITER, false},
                        {MCConst::MC_CONV_NOT_RUN, false}};
  for (const Case& c : cases) {
    ScriptedRun run;
    run.fMethod = MCConst::MC_EST_HYBRID;
    run.fSettings.SetMaxIterations(c.fReason == MCConst::MC_CONV_NOT_RUN ? 0 : 1);
    if (c.fReason == MCConst::MC_CONV_LL) run.fSettings.SetLLConCriterion(1e-3);
    if (c.fReason == MCConst::MC_CONV_BOTH) run.fSettings.SetLLConCriterion(1e-3);
    if (c.fReason != MCConst::MC_CONV_LL && c.fReason != MCConst::MC_CONV_MAX_ITER) {
      run.Script().fScores = {{0.0}};
    }
    if (c.fReason == MCConst::MC_CONV_SINGULAR) run.Script().fHessians = {{0.0}};
    if (c.fReason == MCConst::MC_CONV_HALVING) run.Script().fTrialLL = {-2.0};
    EXPECT_TRUE(run.Estimate().IsOK());
    ASSERT_EQ(run.Optimizer().GetConverCrit(), c.fReason);
    EXPECT_EQ(run.Optimizer().HybridSwitch(MCConst::MC_EST_FISHER), c.fSwitches) << c.fReason;
  }
}

}  // namespace
