// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcregoptimizer.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/numbers.h"
#include "support/samebits.h"
#include "support/scriptedrun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::Displayed;
using mctest::DisplayOf;
using mctest::FailAllocation;
using mctest::SameBitsOrNaN;
using mctest::ScriptedRun;
using testing::HasSubstr;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMissing = MCMV::gMissingValue;

TEST(MCRegOptimizer, BeginsWithoutResults) {
  ScriptedRun run(2);
  run.fEstimates = {5.0};
  MCRegOptimizer& optimizer = run.Optimizer();
  EXPECT_EQ(run.fEstimates, (std::vector<double>{5.0, 0.0}));
  EXPECT_EQ(&optimizer.GetParEstimates(), &run.fEstimates);
  EXPECT_EQ(optimizer.GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
  ASSERT_NE(optimizer.GetHessianGI(), nullptr);
  EXPECT_EQ(optimizer.GetHessianGI()->AsVectorConst(), (std::vector<double>{0.0, 0.0, 0.0}));
  EXPECT_EQ(optimizer.GetFisherIterInHybrid(), 0);
  const ScriptedRun::Stats stats = run.EstStats();
  EXPECT_EQ(stats.fIterations, 0);
  EXPECT_EQ(stats.fInitialLL, kMissing);
  EXPECT_EQ(stats.fFinalLL, kMissing);
  EXPECT_EQ(stats.fLLChange, 0.0);
  EXPECT_EQ(stats.fParamChange, 0.0);
  EXPECT_TRUE(run.fLog.fWords.empty());
}

TEST(MCRegOptimizer, ShrinksEstimatesThatAreTooMany) {
  ScriptedRun run(1);
  run.fEstimates = {5.0, 6.0, 7.0};
  run.Optimizer();
  EXPECT_EQ(run.fEstimates, std::vector<double>{5.0});
}

TEST(MCRegOptimizer, ClearsItsMatrix) {
  ScriptedRun run;
  run.Optimizer().ClearHessianGIMatrix();
  EXPECT_EQ(run.Optimizer().GetHessianGI(), nullptr);
}

TEST(MCRegOptimizer, RefusesToRunWithoutHandlerAccumulatorOrMatrix) {
  const MCStatus badState(303, false);
  const MCLogRegSettings settings;
  ScriptedRun run;
  std::vector<double> estimates = {2.0};
  MCRegOptimizer noHandler(settings, run.fModel, nullptr, &run.fAccumStats, estimates,
                           &run.fListener, 1, MCConst::MC_EST_FISHER, 0);
  EXPECT_TRUE(noHandler.Estimate() == badState);
  MCRegOptimizer noStats(settings, run.fModel, &run.fHandler, nullptr, estimates, &run.fListener, 1,
                         MCConst::MC_EST_FISHER, 0);
  EXPECT_TRUE(noStats.Estimate() == badState);
  run.Optimizer().ClearHessianGIMatrix();
  EXPECT_TRUE(run.Estimate() == badState);
  EXPECT_TRUE(run.fLog.fWords.empty());
  EXPECT_EQ(estimates, std::vector<double>{2.0});
  EXPECT_EQ(noHandler.GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
}

TEST(MCRegOptimizer, AnswersAStandingErrorWithoutAnotherPass) {
  const MCStatus noData(307, false);
  ScriptedRun run;
  run.Script().fStatuses[0] = noData;
  EXPECT_TRUE(run.Estimate() == noData);
  run.fLog.fWords.clear();
  EXPECT_TRUE(run.Estimate() == noData);
  EXPECT_EQ(run.fLog.Text(), "Set Clean");
}

TEST(MCRegOptimizer, AnswersTheHandlersLastWarning) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.Script().fStatuses[0] = MCStatus(319, true);
  EXPECT_TRUE(run.Estimate().IsOK());
  ScriptedRun warned;
  warned.fSettings.SetMaxIterations(1);
  warned.Script().fStatuses[2] = MCStatus(319, true);
  EXPECT_TRUE(warned.Estimate() == MCStatus(319, true));
  EXPECT_EQ(warned.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
}

TEST(MCRegOptimizer, GivesUpAStepWithTheEstimatesBeforeIt) {
  ScriptedRun run;
  run.Script().fTrialLL = {-1.0, -2.0};
  run.Script().fFullLL = {-1.0, -0.5, -0.75};
  run.Script().fHessians = {{1.0}, {1.0}, {4.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_HALVING);
  EXPECT_EQ(run.fEstimates, std::vector<double>{1.0});
  EXPECT_EQ(run.EstStats().fIterations, 2);
  EXPECT_EQ(run.EstStats().fFinalLL, -0.75);
  EXPECT_EQ(run.EstStats().fLLChange, 0.0);
  EXPECT_EQ(run.EstStats().fParamChange, 0.0);
  EXPECT_EQ(run.Optimizer().GetHessianGI()->GetElem(0, 0), 0.25);
}

TEST(MCRegOptimizer, SolvesForItsStepByTheCholeskyFactor) {
  ScriptedRun run(2);
  run.fSettings.SetMaxIterations(1);
  run.fEstimates = {10.0, 20.0};
  // Of which the solution is (1, 2).
  run.Script().fHessians = {{4.0, 2.0, 5.0}};
  run.Script().fScores = {{8.0, 12.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fEstimates, (std::vector<double>{11.0, 22.0}));
  const std::vector<double>& inverse = run.Optimizer().GetHessianGI()->AsVectorConst();
  ASSERT_EQ(inverse.size(), 3u);
  EXPECT_DOUBLE_EQ(inverse[0], 5.0 / 16.0);
  EXPECT_DOUBLE_EQ(inverse[1], -2.0 / 16.0);
  EXPECT_DOUBLE_EQ(inverse[2], 4.0 / 16.0);
}

TEST(MCRegOptimizer, DividesARefusedStepByTwiceTheAdjustmentFactor) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.Script().fStepAdjustmentFactor = 2.0;
  run.Script().fTrialLL = {-2.0, -2.0, -1.0};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fEstimates, std::vector<double>{1.0 / 16.0});
}

struct AcceptanceCase {
  double fPreviousLL;
  double fNewLL;
  bool fIsAccepted;
};

const AcceptanceCase kAcceptanceCases[] = {
    {-1.0, -1.0, true},
    {-1.0, -0.5, true},
    {-1.0, -1.0000001, false},
    {-1.0, 5.0, true},
    {-1.0, kInf, true},
    {-1.0, -kInf, false},
    {-1.0, kNaN, false},
    {-1.0, kMissing, false},
    {-kInf, -kInf, true},
    {-kInf, -9.0, true},
    {-kInf, kMissing, false},
    {kNaN, -1.0, false},
    {kNaN, kNaN, false},
    {kMissing, -1.0, true},
    {kMissing, kMissing, false},
    {kMissing, kNaN, true},
    {kMissing, -kInf, true},
    {2.0, 0.0, true},
    {2.0, 1.0, true},
    {0.0, -4.9406564584124654e-324, false},
};

// A missing log-likelihood that becomes known is an improvement; a NaN isn't missing.
TEST(MCRegOptimizer, AcceptsAStepThatDoesNotLowerTheLogLikelihood) {
  for (const AcceptanceCase& c : kAcceptanceCases) {
    ScriptedRun run;
    run.fSettings.SetMaxIterations(1);
    run.Script().fFullLL = {c.fPreviousLL, -1.0};
    run.Script().fTrialLL = {c.fNewLL};
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.Optimizer().GetConverCrit(),
              c.fIsAccepted ? MCConst::MC_CONV_MAX_ITER : MCConst::MC_CONV_HALVING)
        << c.fPreviousLL << ' ' << c.fNewLL;
    EXPECT_EQ(run.fEstimates[0], c.fIsAccepted ? 1.0 : 0.0) << c.fPreviousLL << ' ' << c.fNewLL;
  }
}

TEST(MCRegOptimizer, TakesALogLikelihoodAbove0As0) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.Script().fTrialLL = {1e-12};
  run.Script().fFullLL = {3.0, 1e-9};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fInitialLL, 0.0);
  EXPECT_EQ(run.EstStats().fFinalLL, 0.0);
}

TEST(MCRegOptimizer, LetsANaNLogLikelihoodPass) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.fSettings.SetLLConCriterion(1e300);
  run.Script().fFullLL = {-1.0, kNaN};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_TRUE(std::isnan(run.EstStats().fFinalLL));
  EXPECT_TRUE(std::isnan(run.EstStats().fLLChange));
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_MAX_ITER);
}

TEST(MCRegOptimizer, KeepsTheStepWhereScoresAreTooFew) {
  // None at the start: no step. Then two, as told. Then one: the step before is taken again.
  ScriptedRun run(2);
  run.fSettings.SetMaxIterations(3);
  run.fSettings.SetParamEstConCriterion(0.0);
  run.Script().fHessians = {{1.0, 0.0, 1.0}};
  run.Script().fScores = {{}, {1.0, 2.0}, {7.0}};
  std::vector<std::vector<double>> tried;
  run.fHandler.fOnPass = [&run, &tried](bool likelihoodOnly) {
    if (likelihoodOnly) tried.push_back(run.fEstimates);
  };
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(tried, (std::vector<std::vector<double>>{{0.0, 0.0}, {1.0, 2.0}, {2.0, 4.0}}));
}

TEST(MCRegOptimizer, IgnoresScoresThatAreTooMany) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.Script().fScores = {{3.0, 4.0, 5.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fEstimates, std::vector<double>{3.0});
}

TEST(MCRegOptimizer, AddsTheStepToAsManyEstimatesAsThereAre) {
  ScriptedRun run(2);
  run.fSettings.SetMaxIterations(1);
  run.Script().fScores = {{1.0, 2.0}};
  run.Script().fHessians = {{1.0, 0.0, 1.0}};
  run.fHandler.fOnPass = [&run](bool likelihoodOnly) {
    if (likelihoodOnly) return;
    run.fEstimates.resize(1);
    run.fEstimates.shrink_to_fit();
  };
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fEstimates, std::vector<double>{1.0});
}

TEST(MCRegOptimizer, RefusesAHessianOfAnotherSize) {
  const MCStatus badState(303, false);
  const std::string begin = "Set ResetF Full LL Report LL Hessian";
  const std::string iteration = " Scores ? ? ResetF Trial LL ? ResetF Full LL Hessian";
  struct Case {
    std::vector<std::vector<double>> fHessians;
    std::string fExpected;
  };
  const Case cases[] = {
      {{{}}, begin + " Clean"},
      {{{1.0, 0.0, 1.0}}, begin + " Clean"},
      {{{1.0}, {1.0, 0.0, 1.0}}, begin + iteration + " Clean"},
      {{{1.0}, {1.0}, {}}, begin + iteration + " ResetN Full Hessian Clean"},
  };
  for (const Case& c : cases) {
    ScriptedRun run;
    run.fMethod = MCConst::MC_EST_HYBRID;
    run.fFisherIterations = 1;
    run.Script().fHessians = c.fHessians;
    EXPECT_TRUE(run.Estimate() == badState);
    EXPECT_EQ(run.fLog.Text(), c.fExpected);
  }
}

TEST(MCRegOptimizer, CountsFisherIterationsOfHybridRunsAlone) {
  for (const auto method : {MCConst::MC_EST_FISHER, MCConst::MC_EST_NEWTON}) {
    ScriptedRun run;
    run.fMethod = method;
    run.fFisherIterations = 3;
    run.fSettings.SetMaxIterations(2);
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_EQ(run.Optimizer().GetFisherIterInHybrid(), 0);
  }
  for (const int budget : {3, -3}) {
    ScriptedRun notRun;
    notRun.fMethod = MCConst::MC_EST_HYBRID;
    notRun.fFisherIterations = budget;
    EXPECT_EQ(notRun.Optimizer().GetFisherIterInHybrid(), 0);
  }
  // A run that ends before its budget is spent: all of its iterations.
  ScriptedRun hybrid;
  hybrid.fMethod = MCConst::MC_EST_HYBRID;
  hybrid.fFisherIterations = 30;
  hybrid.fSettings.SetMaxIterations(2);
  EXPECT_TRUE(hybrid.Estimate().IsOK());
  EXPECT_EQ(hybrid.Optimizer().GetFisherIterInHybrid(), 2);
}

TEST(MCRegOptimizer, ShowsReasonNoneWhereTheFirstPassFailed) {
  ScriptedRun run;
  run.Script().fStatuses[0] = MCStatus(304, false);
  EXPECT_TRUE(run.Estimate().IsError());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE);
  EXPECT_EQ(run.EstStats().fInitialLL, kMissing);
}

// Ways to estimates that aren't finite. An accumulator whose log-likelihood is NaN there never
// sees them accepted.
struct NotFiniteCase {
  const char* fName;
  std::vector<double> fInitial;
  std::vector<double> fScores;
  std::vector<double> fHessian;
  double fStepAdjustmentFactor;
  double fFirstTrialLL;
};

const NotFiniteCase kNotFiniteCases[] = {
    {"NaN score", {0.0, 0.0}, {kNaN, 1.0}, {1.0, 0.0, 1.0}, 1.0, kNaN},
    {"infinite score", {0.0, 0.0}, {kInf, 1.0}, {1.0, 0.0, 1.0}, 1.0, kNaN},
    {"overflowing step", {0.0, 0.0}, {1e308, 1.0}, {1e-10, 0.0, 1.0}, 1.0, kNaN},
    {"NaN off the diagonal", {0.0, 0.0}, {1.0, 1.0}, {1.0, kNaN, 1.0}, 1.0, kNaN},
    {"adjustment factor 0", {0.0, 0.0}, {1.0, 1.0}, {1.0, 0.0, 1.0}, 0.0, -2.0},
    {"adjustment factor NaN", {0.0, 0.0}, {1.0, 1.0}, {1.0, 0.0, 1.0}, kNaN, -2.0},
    {"overflowing sum", {1e308, 0.0}, {1.5e308, 1.0}, {1.0, 0.0, 1.0}, 1.0, kNaN},
};

TEST(MCRegOptimizer, DoesNotAcceptEstimatesWhoseLogLikelihoodIsNaN) {
  for (const NotFiniteCase& c : kNotFiniteCases) {
    ScriptedRun run(2);
    run.fEstimates = c.fInitial;
    run.Script().fScores = {c.fScores};
    run.Script().fHessians = {c.fHessian};
    run.Script().fStepAdjustmentFactor = c.fStepAdjustmentFactor;
    run.Script().fTrialLL = {c.fFirstTrialLL, kNaN};
    bool wereNotFinite = false;
    run.fHandler.fOnPass = [&run, &wereNotFinite](bool /*likelihoodOnly*/) {
      for (const double x : run.fEstimates) wereNotFinite = wereNotFinite || !std::isfinite(x);
    };
    EXPECT_TRUE(run.Estimate().IsOK());
    EXPECT_TRUE(wereNotFinite) << c.fName;
    EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_HALVING) << c.fName;
    EXPECT_EQ(run.fEstimates, c.fInitial) << c.fName;
  }
}

TEST(MCRegOptimizer, EndsAtOnceWhereInitialEstimatesAndTheirLikelihoodAreNaN) {
  ScriptedRun run;
  run.fEstimates = {kNaN};
  run.Script().fFullLL = {kNaN};
  run.Script().fTrialLL = {kNaN};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.EstStats().fIterations, 1);
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_HALVING);
}

// The accumulator answers for that: whoever claims a log-likelihood there is believed, and the
// change of a NaN is passed over.
TEST(MCRegOptimizer, BelievesAnAccumulatorThatHasALogLikelihoodAtNaN) {
  ScriptedRun run(2);
  run.Script().fScores = {{kNaN, 0.0}};
  run.Script().fHessians = {{1.0, 0.0, 1.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_TRUE(std::isnan(run.fEstimates[0]));
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
}

TEST(MCRegOptimizer, TakesANaNHessianForSingular) {
  ScriptedRun run;
  run.Script().fHessians = {{1.0}, {kNaN}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_SINGULAR);
  EXPECT_EQ(run.Optimizer().GetHessianGI()->GetElem(0, 0), 0.0);
}

// display_hessian of the process, put back at the end.
class ShowHessian {
public:
  ShowHessian() { display_hessian = true; }
  ~ShowHessian() { display_hessian = false; }
  ShowHessian(const ShowHessian&) = delete;
  ShowHessian& operator=(const ShowHessian&) = delete;
};

std::string MatrixText(const std::string& label, const std::string& element) {
  return "\n\n" + label +
         "\nMCSymMatrixData display start"
         "\nThe number of rows = 1"
         "\nThe number of blocks = 1"
         "\nThe block size = 1" +
         Displayed([&element] {
           MCComponentDisplay::DisplayDVTR("Lower triangular", {mctest::ToNumber(element)}, 1);
         }) +
         "\nMCSymMatrixData display end";
}

TEST(MCRegOptimizer, ShowsTrialsAndMatricesWhereAsked) {
  const ShowHessian show;
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.Script().fTrialLL = {-2.0, kMissing, -0.5};
  run.Script().fHessians = {{1.0}, {4.0}};
  const std::string shown = Displayed([&run] { EXPECT_TRUE(run.Estimate().IsOK()); });
  EXPECT_EQ(shown,
            "\nfLastIter = 1\nstepHalvingCnt = 0\nfvBeta (size = 1)\n 1\nnewLL = -2"
            "\nfLastIter = 1\nstepHalvingCnt = 1\nfvBeta (size = 1)\n 0.5\nnewLL = miss"
            "\nfLastIter = 1\nstepHalvingCnt = 2\nfvBeta (size = 1)\n 0.25\nnewLL = -0.5" +
                MatrixText("Computed Hessian:", "4") + "\nIn MCRegOptimizer::Estimate() ..." +
                MatrixText("Cholesky factor of the Hessian:", "2") +
                MatrixText("Inverse of Hessian for final parameter estimates:", "0.25"));
  EXPECT_EQ(run.fLog.Text(),
            "Set ResetF Full LL Report LL Hessian Scores ? ? ResetF Trial LL Factor ? ResetF Trial "
            "LL Factor ? ResetF Trial LL ? ResetF Full LL Hessian Report ? Clean Counts Display");
}

TEST(MCRegOptimizer, ShowsNothingUnlessAsked) {
  ScriptedRun run;
  EXPECT_EQ(Displayed([&run] { EXPECT_TRUE(run.Estimate().IsOK()); }), "");
  EXPECT_EQ(run.fLog.Count("Display"), 0u);
}

TEST(MCRegOptimizer, Displays) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(1);
  run.fSettings.SetLLFuncChange(true);
  run.Script().fWeight = 12.5;
  run.Script().fHessians = {{4.0}};
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(DisplayOf(run.Optimizer()),
            "\nMCRegOptimizer display start"
            "\nNumber of estimated parameters in the model = 1"
            "\nEstimated parameters (size = 1)"
            "\n 0.25" +
                MatrixText("Generalized inverse of the Hessian:", "0.25") +
                "\nLog-Likelihood Function Convergence Criterion = 0"
                "\nParameter Estimates Convergence Criterion = 1e-06"
                "\nMaximum number of Iteration = 1"
                "\nLog-Likelihood Function absolute change = true"
                "\nParameter Estimates absolute change = false"
                "\nLog-likelihood for initial parameter estimates = -1"
                "\nLog-likelihood for final parameter estimates = -1"
                "\nAccumulated weight = 12.5"
                "\nMCRegOptimizer display end");
}

TEST(MCRegOptimizer, DisplaysTheBudgetOfAHybridRunAndThatThereIsNoMatrix) {
  ScriptedRun run;
  run.fMethod = MCConst::MC_EST_HYBRID;
  run.fFisherIterations = 7;
  run.Optimizer().ClearHessianGIMatrix();
  const std::string text = DisplayOf(run.Optimizer());
  EXPECT_THAT(text, HasSubstr("\n 0\nGeneralized inverse of the Hessian pointer is 0"
                              "\nFisher iterations = 7"
                              "\nLog-Likelihood Function Convergence Criterion"));
  EXPECT_THAT(text, HasSubstr("initial parameter estimates = miss"));
}

// A handler that is left by an exception doesn't keep pointers to an accumulator that is about to
// go.
TEST(MCRegOptimizer, TakesTheAccumulatorBackWhereMemoryRunsOut) {
  bool fired = true;
  std::size_t nFailures = 0;
  for (std::size_t k = 1; fired; ++k) {
    ScriptedRun run(3);
    run.fLog.fWords.reserve(1000);
    run.Script().fTrialLL = {-2.0, -1.0};
    run.Script().fScores = {{1.0, 1.0, 1.0}};
    run.Script().fHessians = {{1.0, 0.0, 1.0, 0.0, 0.0, 1.0}};
    run.fSettings.SetMaxIterations(2);
    run.fbListens = false;
    run.Optimizer();
    MCStatus status;
    bool isThrown = false;
    {
      FailAllocation failure(k);
      try {
        status = run.Estimate();
      } catch (const std::bad_alloc&) {
        isThrown = true;
      }
      fired = failure.HasFired();
    }
    nFailures += fired ? 1 : 0;
    // Where sizing a matrix fails it has no rows, which is the wrong number.
    EXPECT_EQ(isThrown || status == MCStatus(303, false), fired) << k;
    EXPECT_EQ(run.fLog.Count("Clean"), run.fLog.Count("Set")) << k;
  }
  EXPECT_GT(nFailures, 5u);
}

TEST(MCRegOptimizer, LetsMemoryExhaustionLeaveItsConstructor) {
  const MCLogRegSettings settings;
  const mctest::CountedModel model(3, 2);
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    std::vector<double> estimates;
    FailAllocation failure(k);
    try {
      MCRegOptimizer optimizer(settings, model, nullptr, nullptr, estimates, nullptr, 1,
                               MCConst::MC_EST_FISHER, 0);
      // A matrix that could not be sized is made again by the accumulator.
      EXPECT_EQ(optimizer.GetHessianGI()->IsValidMatrix(), !failure.HasFired());
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFired());
    }
    fired = failure.HasFired();
  }
}

}  // namespace
