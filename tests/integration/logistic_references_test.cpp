// SPDX-License-Identifier: Apache-2.0
//
// Multinomial logistic regressions of real data against values of 25 digits
// (tests/data/logistic/README.md): every estimate, element of the covariance, log-likelihood,
// R square and some probabilities, with rows tabulated and reread, keys packed and not.
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "support/libraryfit.h"
#include "support/logisticfile.h"
#include "support/logisticoracle.h"
#include "support/makerecord.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <ostream>
#include <string>

namespace {

using mctest::LibraryFit;
using mctest::LogisticProblem;
using mctest::LogisticReference;

// Rounding alone leaves nine digits (docs/accuracy.md); eight are held for nearly all. But a step
// is taken only where the log-likelihood doesn't fall, so one that gains less than the rounding of
// that sum is refused by luck, and with it what it would have mended: up to sqrt(2 gain) standard
// errors, with the gain that the fit states itself. That has cost more in two sets, where one digit
// below those measured is held.
struct DataSet {
  const char* name;
  double digits;

  friend void PrintTo(const DataSet& set, std::ostream* stream) { *stream << set.name; }
};

const DataSet kSets[] = {
    {"admissions", 8}, {"births", 8},  {"births_cells", 8}, {"cancer", 6.8},    {"feed", 8},
    {"glass", 8},      {"haireye", 8}, {"housing", 8},      {"infertility", 8}, {"kyphosis", 8},
    {"menarche", 8},   {"quine", 8},   {"school", 3.8},     {"veteran", 8},
};

// Log-likelihoods are sums of a few hundred terms of one sign, R squares differences of them that
// keep all but two digits. At the maximum neither depends on the estimates to first order.
constexpr double kSumDigits = 12.0;

// The smallest number of correct digits of a kind of value; a NaN has none. The error is taken
// relative to the expected value, or to `scale` where that is 0.
class Smallest {
public:
  void Add(double value, long double expected, long double scale = 1.0L) {
    if (expected != 0.0L) scale = std::fabs(expected);
    const double error = static_cast<double>(std::fabs(value - expected) / scale);
    const double digits = error < 1e-16 ? 16.0 : -std::log10(error);
    if (!(digits >= fDigits)) fDigits = std::isnan(digits) ? 0.0 : digits;
  }
  double Value() const { return fDigits; }

private:
  double fDigits = 16.0;
};

struct Measured {
  Smallest estimates;
  Smallest covariance;
  Smallest likelihoods;
  Smallest rSquares;
  Smallest probabilities;
};

void MeasureParameters(const IMCRegOutputStats& results, const LogisticReference& reference,
                       Measured& digits) {
  for (std::size_t i = 0; i < reference.estimates.size(); ++i) {
    if (reference.redundant[i]) continue;
    const long double error = std::sqrt(reference.covariance[i][i]);
    digits.estimates.Add((*results.GetParamEstimates())[i], reference.estimates[i], error);
    for (std::size_t j = 0; j <= i; ++j) {
      if (reference.redundant[j]) continue;
      const double element =
          results.GetCovarianceMatrix()->GetElem(static_cast<int>(i), static_cast<int>(j));
      digits.covariance.Add(element, reference.covariance[i][j],
                            error * std::sqrt(reference.covariance[j][j]));
    }
  }
}

// No estimate is further off than the fit says itself by the gain that it still expects, but for
// rounding. The factor is for what is left of second order.
void ExpectErrorsAsStated(LibraryFit& fit, const LogisticReference& reference) {
  constexpr long double kRounding = 1e-12L;
  const std::vector<double>& estimates = *fit.Results().GetParamEstimates();
  const long double stated = 1.1L * std::sqrt(2.0L * fit.Convergence().fExpectedGain);
  for (std::size_t i = 0; i < estimates.size(); ++i) {
    const long double error = std::sqrt(reference.covariance[i][i]);
    const long double bound =
        stated * error + kRounding * (error + std::fabs(reference.estimates[i]));
    EXPECT_LE(std::fabs(estimates[i] - reference.estimates[i]), bound) << "parameter " << i;
  }
}

void MeasureFit(LibraryFit& fit, const LogisticReference& reference, Measured& digits) {
  const IMCRegOutputStats& results = fit.Results();
  const MCConvergence convergence = fit.Convergence();
  digits.likelihoods.Add(convergence.fInitialLL, reference.initialLL);
  digits.likelihoods.Add(convergence.fFinalLL, reference.finalLL);
  digits.rSquares.Add(results.GetModelFitStat(MCConst::MC_FIT_COX_SNELL), reference.coxSnell);
  digits.rSquares.Add(results.GetModelFitStat(MCConst::MC_FIT_NAGELKERKE), reference.nagelkerke);
  digits.rSquares.Add(results.GetModelFitStat(MCConst::MC_FIT_MCFADDEN), reference.mcFadden);
}

// `places`: by category code of the stored data, its place among the probabilities.
void MeasureScores(const LibraryFit& fit, const LogisticProblem& problem,
                   const LogisticReference& reference, const std::vector<int>& places,
                   Measured& digits) {
  for (const LogisticReference::Probability& expected : reference.probabilities) {
    double category = -1.0;
    std::vector<double> probabilities;
    ASSERT_TRUE(fit.Component()
                    .Score(mctest::MakeRecord(problem.rows[expected.row]), category, probabilities)
                    .IsOK());
    const int place = places[static_cast<std::size_t>(expected.category)];
    digits.probabilities.Add(probabilities[static_cast<std::size_t>(place)], expected.value);
  }
}

// All categories of the sets occur: ascending, the reference last.
std::vector<int> PlacesOf(const LogisticProblem& problem) {
  const int last = problem.categories - 1;
  const int reference = problem.reference == -1   ? last
                        : problem.reference == -2 ? 0
                                                  : problem.reference;
  std::vector<int> places;
  for (int c = 0; c <= last; ++c) {
    places.push_back(c == reference ? last : c < reference ? c : c - 1);
  }
  return places;
}

void ExpectShape(LibraryFit& fit, const LogisticReference& reference) {
  const IMCRegOutputStats& results = fit.Results();
  ASSERT_EQ(results.GetParamEstimates()->size(), reference.estimates.size());
  ASSERT_EQ(results.GetParamStats().size(), reference.estimates.size());
  for (std::size_t i = 0; i < reference.estimates.size(); ++i) {
    SCOPED_TRACE("parameter " + std::to_string(i));
    const int k = static_cast<int>(i);
    EXPECT_EQ(results.GetRedundancyIndicators().IsIn(k), !reference.redundant[i]);
    EXPECT_EQ(results.GetParamStats()[i].fRedundant, reference.redundant[i]);
    if (!reference.redundant[i]) continue;
    EXPECT_EQ((*results.GetParamEstimates())[i], 0.0);
    EXPECT_EQ(results.GetCovarianceMatrix()->GetElem(k, k), 0.0);
  }
  EXPECT_EQ(results.GetNDegFreedom(), reference.degreesOfFreedom);
  EXPECT_EQ(results.GetTotalFreqWeight(), reference.totalWeight);
}

// One way to fit the data; the coding of the dependent may differ from the stored one.
void FitAndMeasure(const LogisticProblem& problem, bool usePatterns,
                   const LogisticReference& reference, const std::vector<int>& places,
                   Measured& digits) {
  LibraryFit fit(problem);
  fit.LogisticSettings().SetUsePatternTabulator(usePatterns);
  ASSERT_TRUE(fit.Build().IsOK());
  const int reason = fit.Convergence().fReason;
  EXPECT_TRUE(reason == MCConst::MC_CONV_PARAM || reason == MCConst::MC_CONV_HALVING) << reason;
  EXPECT_TRUE(fit.Convergence().fbScoreIsZero);
  ExpectShape(fit, reference);
  ExpectErrorsAsStated(fit, reference);
  MeasureParameters(fit.Results(), reference, digits);
  MeasureFit(fit, reference, digits);
  MeasureScores(fit, problem, reference, places, digits);
}

class RealData : public testing::TestWithParam<DataSet> {
protected:
  static void SetUpTestSuite() {
    std::printf("%-13s %10s %10s %10s %10s %10s %10s\n", "set", "estimates", "covariance",
                "log-lik.", "R squares", "probab.", "at least");
  }
};

TEST_P(RealData, ComesToTheValuesOfTwentyFiveDigitsOnEveryRoad) {
  const DataSet& set = GetParam();
  const LogisticProblem problem = mctest::ReadLogisticData(set.name);
  const LogisticReference reference = mctest::ReadLogisticReference(set.name);
  const std::vector<int> places = PlacesOf(problem);
  Measured digits;
  for (const bool packing : {true, false}) {
    SCOPED_TRACE(packing ? "packed keys" : "plain keys");
    const mctest::PackingSwitch choice(packing);
    FitAndMeasure(problem, true, reference, places, digits);
  }
  {
    // Only then do rereading and tabulating agree. The order of the parameters stays.
    SCOPED_TRACE("reread, the reference coded last");
    FitAndMeasure(mctest::WithReferenceLast(problem), false, reference, places, digits);
  }
  std::printf("%-13s %10.1f %10.1f %10.1f %10.1f %10.1f %10.1f\n", set.name,
              digits.estimates.Value(), digits.covariance.Value(), digits.likelihoods.Value(),
              digits.rSquares.Value(), digits.probabilities.Value(), set.digits);
  EXPECT_GE(digits.estimates.Value(), set.digits);
  EXPECT_GE(digits.covariance.Value(), set.digits);
  EXPECT_GE(digits.probabilities.Value(), set.digits);
  EXPECT_GE(digits.likelihoods.Value(), kSumDigits);
  EXPECT_GE(digits.rSquares.Value(), kSumDigits);
}

// The oracle of generated designs is held to the same values. Its 64 bits lose what the condition
// of the information matrix takes, with a factor for the sums of up to 250 rows.
TEST_P(RealData, IsWhatTheOracleComesToAsWell) {
  const LogisticReference reference = mctest::ReadLogisticReference(GetParam().name);
  const mctest::LogisticOracle oracle =
      mctest::FitLogistic(mctest::ReadLogisticData(GetParam().name));
  ASSERT_TRUE(oracle.converged);
  const long double bound = 100.0L * oracle.condition * std::numeric_limits<long double>::epsilon();
  std::printf("%-13s condition %.1e\n", GetParam().name, oracle.condition);
  ASSERT_LT(bound, 1e-10L);
  for (std::size_t i = 0; i < reference.estimates.size(); ++i) {
    EXPECT_EQ(oracle.redundant[i % oracle.redundant.size()], reference.redundant[i]);
    const long double error = std::sqrt(reference.covariance[i][i]);
    EXPECT_LE(std::fabs(oracle.estimates[i] - reference.estimates[i]),
              bound * (error + std::fabs(reference.estimates[i])));
    for (std::size_t j = 0; j <= i; ++j) {
      EXPECT_LE(std::fabs(oracle.covariance[i][j] - reference.covariance[i][j]),
                bound * error * std::sqrt(reference.covariance[j][j]));
    }
  }
  EXPECT_LE(std::fabs(oracle.initialLL / reference.initialLL - 1.0L), 1e-16L);
  EXPECT_LE(std::fabs(oracle.finalLL / reference.finalLL - 1.0L), 1e-16L);
  EXPECT_LE(std::fabs(oracle.coxSnell / reference.coxSnell - 1.0L), 1e-16L);
  EXPECT_LE(std::fabs(oracle.nagelkerke / reference.nagelkerke - 1.0L), 1e-16L);
  EXPECT_LE(std::fabs(oracle.mcFadden / reference.mcFadden - 1.0L), 1e-16L);
}

INSTANTIATE_TEST_SUITE_P(Sets, RealData, testing::ValuesIn(kSets),
                         [](const auto& set) { return std::string(set.param.name); });

}  // namespace
