// SPDX-License-Identifier: Apache-2.0
//
// Fits of an accumulator made by hand, and R squares, against values to 30 digits.
#include "regression/frame/mcmv.h"
#include "regression/logistic/mcregoptimizer.h"
#include "support/numbers.h"
#include "support/scriptedrun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::CountedModel;
using mctest::ScriptedRun;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMissing = MCMV::gMissingValue;

// The numbers of each line that isn't a comment.
std::vector<std::vector<double>> ReadNumbers(const std::string& name) {
  std::ifstream file(MCSTAT_TEST_DATA "/logistic/" + name);
  std::vector<std::vector<double>> lines;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    lines.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) {
      lines.back().push_back(mctest::ToNumber(field));
    }
  }
  return lines;
}

// P(y = 1) = 1 / (1 + exp(-b x)) with one parameter b: likelihood, score and information in closed
// form, over rows of x and y.
class OneParameterLogit : public IMCAccumStats, public IMCDataHandler {
public:
  OneParameterLogit(std::vector<std::pair<double, int>> rows, const std::vector<double>& estimates)
      : fRows(std::move(rows)), fpEstimates(&estimates) {}

  MCStatus ComputeStatsForOptimizer(bool /*likelihoodOnly*/) override {
    fLogLik = fScores[0] = fInformation = 0.0;
    for (const auto& [x, y] : fRows) AddRow(x, y);
    return {};
  }
  void SetStatsModel(IMCAccumStats* /*accumStats*/, const IMCRegModel* /*model*/) override {}
  void ResetAccumStats(MCConst::MCEstimationMethod /*method*/, bool /*check*/) override {
    fMinObserved = 1.0;
    fMaxObserved = 0.0;
    fMinComputed = 1.0;
  }
  void CleanStatsModel() override {}
  const std::vector<MCStatus>& GetWarnings() const override { return fWarnings; }
  void Display() const override {}

  void Reset(MCConst::MCEstimationMethod /*method*/, bool /*check*/) override {}
  bool CheckConstraints() override { return true; }
  int UpdateForRow(const std::vector<int>& /*indices*/, const std::vector<double>& /*values*/,
                   int /*category*/, double /*weight*/, bool /*likelihoodOnly*/) override {
    return -1;
  }
  double GetLL() const override { return fLogLik; }
  const std::vector<double>& GetScores() const override { return fScores; }
  void GetHessian(MCCommonMath::MCSymMatrix& hessian) const override {
    hessian.SetNRows(1);
    hessian.SetElem(0, 0, fInformation);
  }
  void GetCounts(int& valid, int& invalid, double& weight) const override {
    valid = static_cast<int>(fRows.size());
    invalid = 0;
    weight = static_cast<double>(fRows.size());
  }
  void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                              double& minComputed) const override {
    minObserved = fMinObserved;
    maxObserved = fMaxObserved;
    minComputed = fMinComputed;
  }
  double GetStepAdjustmentFactor() const override { return 1.0; }
  void Display(bool /*brief*/) const override {}

private:
  void AddRow(double x, int y) {
    const double p = 1.0 / (1.0 + std::exp(-(*fpEstimates)[0] * x));
    const double observed = y == 1 ? p : 1.0 - p;
    fLogLik += std::log(observed);
    fScores[0] += x * (y - p);
    fInformation += x * x * p * (1.0 - p);
    fMinObserved = std::fmin(fMinObserved, observed);
    fMaxObserved = std::fmax(fMaxObserved, observed);
    fMinComputed = std::fmin(fMinComputed, std::fmin(p, 1.0 - p));
  }

  std::vector<std::pair<double, int>> fRows;
  const std::vector<double>* fpEstimates;
  double fLogLik = 0.0;
  std::vector<double> fScores{0.0};
  double fInformation = 0.0;
  double fMinObserved = 1.0;
  double fMaxObserved = 0.0;
  double fMinComputed = 1.0;
  std::vector<MCStatus> fWarnings;
};

struct LogitFit {
  explicit LogitFit(std::vector<std::pair<double, int>> rows)
      : fLogit(std::move(rows), fEstimates) {
    fSettings.SetInterceptUse(false);
  }

  MCStatus Estimate() { return Make().Estimate(); }
  MCRegOptimizer& Make() {
    if (fpOptimizer == nullptr) {
      fpOptimizer = std::make_unique<MCRegOptimizer>(fSettings, fModel, &fLogit, &fLogit,
                                                     fEstimates, &fListener, 1, fMethod, 2);
    }
    return *fpOptimizer;
  }

  MCLogRegSettings fSettings;
  CountedModel fModel{1, 2};
  std::vector<double> fEstimates;
  OneParameterLogit fLogit;
  MCConst::MCEstimationMethod fMethod = MCConst::MC_EST_FISHER;
  mctest::CallLog fLog;
  mctest::RecordingListener fListener{fLog};
  std::unique_ptr<MCRegOptimizer> fpOptimizer;
};

const std::vector<std::pair<double, int>> kRows = {{0.5, 1}, {1.0, 0},   {-1.5, 0}, {2.0, 1},
                                                   {3.0, 1}, {-0.25, 1}, {1.75, 0}, {2.5, 1}};

// The rows are those of the committed script. At convergence to 1e-6 the error of the last step is
// its square; eight rows leave a few roundings of 1e-16.
TEST(MCRegOptimizerFit, FindsTheMaximumOfALogit) {
  const std::vector<std::vector<double>> lines = ReadNumbers("oneparameterlogit.csv");
  ASSERT_EQ(lines.size(), 1u);
  const std::vector<double>& expected = lines[0];
  for (const auto method :
       {MCConst::MC_EST_FISHER, MCConst::MC_EST_NEWTON, MCConst::MC_EST_HYBRID}) {
    LogitFit fit(kRows);
    fit.fMethod = method;
    EXPECT_TRUE(fit.Estimate().IsOK());
    EXPECT_EQ(fit.Make().GetConverCrit(), MCConst::MC_CONV_PARAM);
    EXPECT_NEAR(fit.fEstimates[0], expected[0], 1e-12 * std::fabs(expected[0]));
    EXPECT_NEAR(fit.Make().GetHessianGI()->GetElem(0, 0), expected[1], 1e-11 * expected[1]);
    int iterations = 0;
    double initialLL = 0.0;
    double finalLL = 0.0;
    double llChange = 0.0;
    double paramChange = 0.0;
    fit.Make().GetEstStats(iterations, initialLL, finalLL, llChange, paramChange);
    EXPECT_NEAR(initialLL, 8.0 * std::log(0.5), 1e-14);
    EXPECT_NEAR(finalLL, expected[2], 1e-14 * std::fabs(expected[2]));
    EXPECT_LT(paramChange, 1e-6);
  }
}

TEST(MCRegOptimizerFit, HalvesItsWayBackFromAStartFarAway) {
  const std::vector<double> expected = ReadNumbers("oneparameterlogit.csv").at(0);
  LogitFit fit(kRows);
  fit.fSettings.SetMaxStepHalvingValue(30);
  fit.fEstimates = {4.0};
  EXPECT_TRUE(fit.Estimate().IsOK());
  EXPECT_EQ(fit.Make().GetConverCrit(), MCConst::MC_CONV_PARAM);
  EXPECT_NEAR(fit.fEstimates[0], expected[0], 1e-12 * std::fabs(expected[0]));
  EXPECT_GT(fit.fListener.fEntries.at(1).fHalvings, 0);
  double before = -std::numeric_limits<double>::infinity();
  for (const auto& entry : fit.fListener.fEntries) {
    EXPECT_GE(entry.fLogLik, before);
    before = entry.fLogLik;
  }
}

TEST(MCRegOptimizerFit, TellsCompleteSeparation) {
  LogitFit fit({{1.0, 1}, {2.0, 1}, {-1.0, 0}, {-0.5, 0}});
  fit.fSettings.SetStartingIteration(1);
  EXPECT_TRUE(fit.Estimate().IsOK());
  EXPECT_EQ(fit.Make().GetConverCrit(), MCConst::MC_CONV_COMPLETE_SEP);
  EXPECT_TRUE(std::isfinite(fit.fEstimates[0]));
}

// Without the check the estimate walks away until the information is lost in the tolerance, or
// the limit of iterations is reached.
TEST(MCRegOptimizerFit, RunsIntoAnotherReasonWhereSeparationIsNotChecked) {
  LogitFit fit({{1.0, 1}, {2.0, 1}, {-1.0, 0}, {-0.5, 0}});
  fit.fSettings.SetStartingIteration(0);
  EXPECT_TRUE(fit.Estimate().IsOK());
  EXPECT_EQ(fit.Make().GetConverCrit(), MCConst::MC_CONV_SINGULAR);
  EXPECT_TRUE(std::isfinite(fit.fEstimates[0]));
}

// A run of one iteration with these log-likelihoods and this weight.
struct RSquares {
  RSquares(double initialLL, double finalLL, double weight) {
    fRun.fSettings.SetMaxIterations(1);
    fRun.Script().fFullLL = {initialLL, finalLL};
    fRun.Script().fTrialLL = {0.0};
    fRun.Script().fWeight = weight;
    EXPECT_TRUE(fRun.Estimate().IsOK());
    fbComplete = fRun.Optimizer().ComputeRSquares(fCoxSnell, fNagelkerke, fMcFadden);
  }

  ScriptedRun fRun;
  double fCoxSnell = 7.0;
  double fNagelkerke = 7.0;
  double fMcFadden = 7.0;
  bool fbComplete = false;
};

// 1 - exp(x) and 1 - L1 / L0 lose what they cancel: a rounding of 1 beside the result, and for the
// quotient of two such beside the smaller divisor.
TEST(MCRegOptimizerFit, RSquaresAreThoseOfTheirFormulas) {
  constexpr double kRounding = 4.0 * std::numeric_limits<double>::epsilon();
  const std::vector<std::vector<double>> lines = ReadNumbers("rsquares.csv");
  ASSERT_EQ(lines.size(), 8u);
  for (const std::vector<double>& line : lines) {
    const RSquares rSquares(line[0], line[1], line[2]);
    const double largest = line[3] / line[4];
    EXPECT_TRUE(rSquares.fbComplete);
    EXPECT_NEAR(rSquares.fCoxSnell, line[3], kRounding * (1.0 + std::fabs(line[3])));
    EXPECT_NEAR(rSquares.fNagelkerke, line[4], kRounding * (1.0 + std::fabs(line[4])) / largest);
    EXPECT_NEAR(rSquares.fMcFadden, line[5], kRounding * (1.0 + std::fabs(line[5])));
  }
}

struct RSquareCase {
  const char* fName;
  double fInitialLL;
  double fFinalLL;
  double fWeight;
  double fCoxSnell;
  double fNagelkerke;
  double fMcFadden;
  bool fbComplete;
};

const double kLog2 = std::log(2.0);

const RSquareCase kRSquareCases[] = {
    {"no weight", -4, -2, 0.0, 0, 0, 0, true},
    {"negative weight", -4, -2, -1.0, 0, 0, 0, true},
    {"NaN weight", -4, -2, kNaN, 0, 0, 0, true},
    {"initial missing", kMissing, -2, 4.0, 0, 0, 0, true},
    {"final missing", -4, kMissing, 4.0, 0, 0, 0, true},
    {"both 0", 0, 0, 4.0, 0, kMissing, 0, false},
    {"initial 0", 0, -2 * kLog2, 4.0, -1, kMissing, kMissing, false},
    {"exponent of 709 and more", -1, -356, 1.0, kMissing, kMissing, -355, false},
    {"too small a weight", -4, -2, 1e-300, 1, 1, 0.5, true},
    {"perfect fit", -2 * kLog2, 0, 4.0, 0.5, 1, 1, true},
    {"no gain", -3, -3, 4.0, 0, 0, 0, true},
};

// The missing value is one rounding away from infinity, and not to be taken for it.
void ExpectValue(double value, double expected, const char* name) {
  if (expected == kMissing) {
    EXPECT_EQ(value, expected) << name;
  } else {
    EXPECT_DOUBLE_EQ(value, expected) << name;
  }
}

TEST(MCRegOptimizerFit, RSquaresAtTheirEdges) {
  for (const RSquareCase& c : kRSquareCases) {
    const RSquares rSquares(c.fInitialLL, c.fFinalLL, c.fWeight);
    ExpectValue(rSquares.fCoxSnell, c.fCoxSnell, c.fName);
    ExpectValue(rSquares.fNagelkerke, c.fNagelkerke, c.fName);
    ExpectValue(rSquares.fMcFadden, c.fMcFadden, c.fName);
    EXPECT_EQ(rSquares.fbComplete, c.fbComplete) << c.fName;
  }
}

TEST(MCRegOptimizerFit, RSquaresOfANaNLogLikelihoodAreNaN) {
  const RSquares rSquares(-4.0, kNaN, 4.0);
  EXPECT_TRUE(rSquares.fbComplete);
  EXPECT_TRUE(std::isnan(rSquares.fCoxSnell));
  EXPECT_TRUE(std::isnan(rSquares.fNagelkerke));
  EXPECT_TRUE(std::isnan(rSquares.fMcFadden));
}

TEST(MCRegOptimizerFit, RSquaresWithoutIterationsAre0) {
  ScriptedRun run(1, 2);  // an intercept alone
  run.Script().fWeight = 4.0;
  double coxSnell = 7.0;
  double nagelkerke = 7.0;
  double mcFadden = 7.0;
  EXPECT_TRUE(run.Optimizer().ComputeRSquares(coxSnell, nagelkerke, mcFadden));
  EXPECT_EQ(coxSnell + nagelkerke + mcFadden, 0.0);
  EXPECT_TRUE(run.Estimate().IsOK());
  coxSnell = nagelkerke = mcFadden = 7.0;
  EXPECT_TRUE(run.Optimizer().ComputeRSquares(coxSnell, nagelkerke, mcFadden));
  EXPECT_EQ(coxSnell, 0.0);
  EXPECT_EQ(nagelkerke, 0.0);
  EXPECT_EQ(mcFadden, 0.0);
}

}  // namespace
