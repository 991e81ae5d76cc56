// SPDX-License-Identifier: Apache-2.0
//
// Every way in which an estimation can end, reached by data through the whole library and read
// from the statement of convergence.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcmv.h"
#include "support/libraryfit.h"
#include "support/logisticfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <string>

namespace {

using mctest::LibraryFit;
using mctest::LogisticProblem;
using mctest::ReadLogisticData;

// y at 0, a factor of two levels at 1, its frequency at 2. `counts` by level, then by category.
LogisticProblem TwoByTwo(const std::vector<double>& counts) {
  LogisticProblem problem;
  problem.factors = {1};
  problem.factorSizes = {2};
  problem.freqWeight = 2;
  problem.effects = {{{{1, false}}, {}}};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    problem.rows.push_back({static_cast<double>(i % 2), static_cast<double>(i / 2), counts[i]});
  }
  return problem;
}

// A rare event but for one small group: the first Newton steps are far too long, as they go by a
// curvature that is some thousandth of that at the maximum.
LogisticProblem RareEvent() {
  return TwoByTwo({100000.0, 10.0, 2.0, 2.0});
}

LogisticProblem InterceptOnly() {
  LogisticProblem problem = TwoByTwo({5.0, 7.0, 11.0, 13.0});
  problem.effects.clear();
  return problem;
}

LogisticProblem WithoutColumnsLeft() {
  LogisticProblem problem = TwoByTwo({5.0, 7.0, 11.0, 13.0});
  problem.intercept = false;
  problem.factors.clear();
  problem.factorSizes.clear();
  problem.covariates = {1};
  problem.effects = {{{}, {1}}};
  for (auto& row : problem.rows) row[1] = 0.0;
  return problem;
}

// The spinal data with ages in units of nearly a million years instead of months.
LogisticProblem InSmallUnits() {
  LogisticProblem problem = ReadLogisticData("kyphosis");
  problem.effects = {{{}, {problem.covariates[0]}}};
  for (auto& row : problem.rows) row[static_cast<std::size_t>(problem.covariates[0])] /= 1e7;
  return problem;
}

struct Ending {
  const char* name;
  std::function<LogisticProblem()> problem;
  std::function<void(MCLogRegSettings&)> settings;
  int reason;
  bool scoreIsZero;

  friend void PrintTo(const Ending& ending, std::ostream* stream) { *stream << ending.name; }
};

void AsTheyAre(MCLogRegSettings&) {}

const Ending kEndings[] = {
    {"LikelihoodCriterion", [] { return ReadLogisticData("births"); },
     [](MCLogRegSettings& settings) {
       settings.SetLLConCriterion(1e-6);
       settings.SetParamEstConCriterion(0.0);
     },
     MCConst::MC_CONV_LL, false},
    {"ParameterCriterion", [] { return ReadLogisticData("births"); }, AsTheyAre,
     MCConst::MC_CONV_PARAM, true},
    {"BothCriteria", [] { return ReadLogisticData("births"); },
     [](MCLogRegSettings& settings) {
       settings.SetLLConCriterion(1e-3);
       settings.SetParamEstConCriterion(0.3);
     },
     MCConst::MC_CONV_BOTH, false},
    // First estimates that are the last ones: the groups don't differ.
    {"ConstantLikelihood",
     [] {
       return TwoByTwo({6.0, 2.0, 6.0, 2.0});
     },
     [](MCLogRegSettings& settings) { settings.SetLLConCriterion(1e-9); }, MCConst::MC_CONV_BOTH,
     true},
    {"ConstantLikelihoodWithoutItsCriterion",
     [] {
       return TwoByTwo({6.0, 2.0, 6.0, 2.0});
     },
     AsTheyAre, MCConst::MC_CONV_PARAM, true},
    // Nobody looks for separation: the group's curvature becomes 0 when its probabilities are
    // 0 and 1 to rounding.
    {"SingularHessian", [] { return ReadLogisticData("titanic"); },
     [](MCLogRegSettings& settings) { settings.SetStartingIteration(0); },
     MCConst::MC_CONV_SINGULAR, true},
    // Once separation is looked for, a small diagonal of the factor is taken for singular.
    {"SmallUnits", InSmallUnits,
     [](MCLogRegSettings& settings) { settings.SetStartingIteration(1); },
     MCConst::MC_CONV_SINGULAR, false},
    {"ExhaustedHalving", RareEvent, AsTheyAre, MCConst::MC_CONV_HALVING, false},
    {"ExhaustedHalvingOfRereading", RareEvent,
     [](MCLogRegSettings& settings) { settings.SetUsePatternTabulator(false); },
     MCConst::MC_CONV_HALVING, false},
    {"IterationLimit", [] { return ReadLogisticData("births"); },
     [](MCLogRegSettings& settings) { settings.SetMaxIterations(2); }, MCConst::MC_CONV_MAX_ITER,
     false},
    {"CompleteSeparation", [] { return ReadLogisticData("iris_two"); }, AsTheyAre,
     MCConst::MC_CONV_COMPLETE_SEP, false},
    {"QuasiCompleteSeparation", [] { return ReadLogisticData("titanic"); }, AsTheyAre,
     MCConst::MC_CONV_QUASI_SEP, false},
    {"OneOfThreeKindsSeparated", [] { return ReadLogisticData("iris"); }, AsTheyAre,
     MCConst::MC_CONV_QUASI_SEP, false},
    {"InterceptAlone", InterceptOnly, AsTheyAre, MCConst::MC_CONV_NOT_RUN, true},
    {"NoIterations", [] { return ReadLogisticData("births"); },
     [](MCLogRegSettings& settings) { settings.SetMaxIterations(0); }, MCConst::MC_CONV_NOT_RUN,
     false},
};

class EstimationEnds : public testing::TestWithParam<Ending> {};

TEST_P(EstimationEnds, ForTheStatedReason) {
  const Ending& ending = GetParam();
  const LogisticProblem problem = ending.problem();
  LibraryFit fit(problem);
  ending.settings(fit.LogisticSettings());
  ASSERT_TRUE(fit.Build().IsOK());
  const MCConvergence convergence = fit.Convergence();
  EXPECT_EQ(convergence.fReason, ending.reason);
  EXPECT_EQ(convergence.fbScoreIsZero, ending.scoreIsZero);
  for (const double estimate : *fit.Results().GetParamEstimates()) {
    EXPECT_TRUE(std::isfinite(estimate));
  }
  EXPECT_TRUE(std::isfinite(convergence.fInitialLL));
  const bool hasIterated = ending.reason != MCConst::MC_CONV_NOT_RUN;
  EXPECT_EQ(convergence.fFinalLL == MCMV::gMissingValue, !hasIterated);
  if (hasIterated) {
    EXPECT_GE(convergence.fFinalLL, convergence.fInitialLL);
    EXPECT_LE(convergence.fFinalLL, 0.0);
  }
}

INSTANTIATE_TEST_SUITE_P(Data, EstimationEnds, testing::ValuesIn(kEndings),
                         [](const auto& ending) { return std::string(ending.param.name); });

TEST(EstimationEnds, WithoutAStepWhereEveryColumnIsRedundant) {
  const LogisticProblem problem = WithoutColumnsLeft();
  for (const bool patterns : {true, false}) {
    LibraryFit fit(problem);
    fit.LogisticSettings().SetUsePatternTabulator(patterns);
    ASSERT_TRUE(fit.Build().IsOK());
    EXPECT_EQ(fit.Convergence().fReason, MCConst::MC_CONV_NOT_RUN);
    EXPECT_EQ(*fit.Results().GetParamEstimates(), std::vector<double>{0.0});
  }
}

// What a host can do about exhausted halving: allow for more.
TEST(EstimationEnds, AtTheMaximumWithMoreHalvings) {
  const LogisticProblem problem = RareEvent();
  LibraryFit fit(problem);
  fit.LogisticSettings().SetMaxStepHalvingValue(20);
  ASSERT_TRUE(fit.Build().IsOK());
  EXPECT_EQ(fit.Convergence().fReason, MCConst::MC_CONV_PARAM);
  // Log odds of category 0 within each group, exact for a saturated model.
  const std::vector<double>& estimates = *fit.Results().GetParamEstimates();
  EXPECT_NEAR(estimates[0], std::log(2.0 / 2.0), 1e-9);
  EXPECT_NEAR(estimates[1], std::log(100000.0 / 10.0), 1e-8);
}

TEST(EstimationEnds, WithFirstEstimatesUntouchedIfNoIterationIsAllowed) {
  const LogisticProblem problem = TwoByTwo({6.0, 2.0, 5.0, 3.0});
  LibraryFit fit(problem);
  fit.LogisticSettings().SetMaxIterations(0);
  ASSERT_TRUE(fit.Build().IsOK());
  EXPECT_EQ(*fit.Results().GetParamEstimates(),
            (std::vector<double>{std::log(11.0 / 5.0), 0.0, 0.0}));
  for (const auto stat :
       {MCConst::MC_FIT_COX_SNELL, MCConst::MC_FIT_NAGELKERKE, MCConst::MC_FIT_MCFADDEN}) {
    EXPECT_EQ(fit.Results().GetModelFitStat(stat), 0.0);
  }
}

// Small designs of what data can hold of trouble: few rows, separated cells, aliased columns,
// values and weights from one end of the range to the other, infinities and NaN.
class NastyDesign {
public:
  explicit NastyDesign(int number) : fRandom(static_cast<unsigned>(number)) {
    fProblem.categories = 2 + Below(4);
    fProblem.reference = Below(fProblem.categories + 2) - 2;
    fProblem.intercept = Below(4) != 0;
    fProblem.factors = {1, 2};
    fProblem.factorSizes = {3, 2};
    fProblem.covariates = {3, 4};
    if (Below(2) == 0) fProblem.freqWeight = 5;
    if (Below(2) == 0) fProblem.regrWeight = 6;
    fProblem.effects = {{{}, {3}}, {{{1, false}}, {}}};
    if (Below(2) == 0) fProblem.effects.push_back({{{1, false}, {2, false}}, {4}});
    if (Below(2) == 0) fProblem.effects.push_back({{}, {3, 3}});
    const int wildness = Below(4);
    const int rows = 2 + Below(30);
    for (int r = 0; r < rows; ++r) {
      fProblem.rows.push_back({1.0 * Below(fProblem.categories), 1.0 * Below(3), 1.0 * Below(2),
                               Value(wildness), Value(wildness), Weight(wildness),
                               Weight(wildness)});
    }
  }

  const LogisticProblem& Problem() const { return fProblem; }

private:
  int Below(int n) { return static_cast<int>(fRandom() % static_cast<unsigned>(n)); }

  double Value(int wildness) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    static const double kWild[] = {0.0,    1e9,    -1e9,   1e-9,  1e150,     -1e150,     1e300,
                                   -1e300, 1e-300, 5e-324, 1e308, kInfinity, -kInfinity, kNaN};
    // Without infinities and NaN in the milder designs.
    const int kinds = wildness == 3 ? 14 : wildness == 2 ? 11 : 5;
    if (wildness > 0 && Below(4) == 0) return kWild[Below(kinds)];
    return std::normal_distribution<double>()(fRandom);
  }

  double Weight(int wildness) {
    static const double kWild[] = {0.0, 1e-300, 1e300, 1e-9, 1e9, 1e150, 5e-324};
    if (wildness > 1 && Below(3) == 0) return kWild[Below(7)];
    return 1.0 + Below(3);
  }

  std::mt19937 fRandom;
  LogisticProblem fProblem;
};

bool AllFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); });
}

TEST(EstimationEnds, NeverInConvergenceWithEstimatesThatAreNotFinite) {
  int converged = 0;
  int built = 0;
  int notFinite = 0;
  for (int number = 0; number < 1500; ++number) {
    SCOPED_TRACE("design " + std::to_string(number));
    const NastyDesign design(number);
    LibraryFit fit(design.Problem());
    fit.LogisticSettings().SetUsePatternTabulator(number % 3 != 0);
    fit.LogisticSettings().SetLLConCriterion(number % 2 == 0 ? 1e-8 : 0.0);
    fit.LogisticSettings().SetStartingIteration(number % 5 == 0 ? 0 : 8);
    fit.LogisticSettings().SetMaxIterations(30);
    if (fit.Build().IsError() || !fit.Component().IsModelBuilt()) continue;
    ++built;
    const bool finite = AllFinite(*fit.Results().GetParamEstimates());
    if (!finite) ++notFinite;
    if (!fit.Convergence().IsConverged()) continue;
    ++converged;
    EXPECT_TRUE(finite);
    EXPECT_TRUE(std::isfinite(fit.Convergence().fFinalLL));
    EXPECT_LE(fit.Convergence().fFinalLL, 0.0);
  }
  // All kinds of endings are among them.
  EXPECT_GT(notFinite, 0);
  EXPECT_GT(built, 1000);
  EXPECT_GT(converged, 150);
  EXPECT_GT(built - converged, 150);
}

}  // namespace
