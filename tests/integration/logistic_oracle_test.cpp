// SPDX-License-Identifier: Apache-2.0
//
// Fifty generated multinomial designs, fitted by the library and by long double Newton steps on
// the explicit design matrix.
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcmv.h"
#include "support/libraryfit.h"
#include "support/logisticoracle.h"
#include "support/makerecord.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <random>

namespace {

using mctest::EffectTerms;
using mctest::LibraryFit;
using mctest::LogisticOracle;
using mctest::LogisticProblem;

// Positions in a generated row.
enum { kY, kA, kB, kC, kX, kZ, kFreq, kRegr, kWidth };

constexpr int kLevelsA = 3;
constexpr int kLevelsB = 2;
constexpr int kLevelsC = 5;

const std::vector<std::vector<EffectTerms>> kEffectLists = {
    {{{{kA, false}}, {}}},
    {{{{kA, false}}, {}}, {{{kB, false}}, {}}, {{{kA, false}, {kB, false}}, {}}},
    {{{}, {kX}}, {{}, {kX, kX}}, {{}, {kX, kX, kX}}},
    {{{{kB, false}}, {}}, {{{kB, false}}, {kX}}, {{}, {kZ}}},
    // C within A, then a slope in each cell.
    {{{{kA, false}}, {}}, {{{kA, false}, {kC, true}}, {}}, {{{kB, false}}, {kX, kZ}}},
    {{{{kC, false}}, {}}, {{{kB, false}, {kA, true}}, {}}, {{}, {kX, kZ}}},
    // The same interaction told in both orders, so that one of them is redundant.
    {{{{kA, false}, {kB, false}}, {}}, {{{kB, false}, {kA, true}}, {}}, {{}, {kX}}},
    {{{}, {kX}}, {{}, {kZ}}, {{}, {kX}}},
    {{{{kA, false}}, {}},
     {{{kB, false}}, {}},
     {{{kC, false}}, {}},
     {{{kB, false}, {kC, false}}, {}},
     {{}, {kX}},
     {{{kA, false}}, {kZ}}},
    {{{{kA, false}, {kB, false}, {kC, false}}, {}}},
};

// What differs from design to design beside the effects.
struct Options {
  int seen;                // categories that occur
  std::vector<int> codes;  // theirs
  bool codesAreIndices;    // both handlers agree
};

Options OptionsOf(int number, LogisticProblem& problem) {
  const int round = number / static_cast<int>(kEffectLists.size());
  Options options{2 + (number + round) % 4, {}, true};
  // Codes 0 to seen - 1, or with code 1 never used, or with the last two never used.
  const int gap = (number + 2 * round) % 3;
  for (int c = 0; c < options.seen; ++c) options.codes.push_back(gap == 1 && c > 0 ? c + 1 : c);
  problem.categories = options.seen + gap;
  const std::array<int, 3> references = {-1, -2, options.codes[1]};
  problem.reference = references[static_cast<std::size_t>(number * 7 / 5 + round) % 3];
  const bool isLast = problem.reference == -1 || problem.reference == options.codes.back();
  options.codesAreIndices = gap != 1 && isLast;
  problem.freqWeight = round % 2 == 1 ? kFreq : -1;
  problem.regrWeight = round >= 2 ? kRegr : -1;
  problem.intercept = round != 1 && round != 4;
  return options;
}

// Design number 0 to 49: its effects go round the list, its options with the rounds.
class Generator {
public:
  explicit Generator(int number)
      : fRandom(static_cast<unsigned>(2000 + number)), fOptions(OptionsOf(number, fProblem)) {
    fProblem.dependent = kY;
    fProblem.factors = {kA, kB, kC};
    fProblem.factorSizes = {kLevelsA, kLevelsB, kLevelsC};
    fProblem.covariates = {kX, kZ};
    fProblem.effects = kEffectLists[static_cast<std::size_t>(number) % kEffectLists.size()];
    for (int r = 0; r < 450; ++r) AddRow();
  }

  const LogisticProblem& Problem() const { return fProblem; }
  bool CodesAreIndices() const { return fOptions.codesAreIndices; }

private:
  static constexpr std::size_t kCompleteRows = 250;

  double Uniform() { return std::uniform_real_distribution<double>(-1.0, 1.0)(fRandom); }
  int Below(int n) { return static_cast<int>(fRandom() % static_cast<unsigned>(n)); }

  void AddRow() {
    std::vector<double> row(kWidth);
    row[kA] = Below(kLevelsA);
    row[kB] = Below(kLevelsB);
    row[kC] = Below(kLevelsC);
    // Gaps: level 2 of C never occurs, and some cells of A by B and A by C are empty.
    if (row[kC] == 2.0) row[kC] = 0.0;
    if (row[kA] == 1.0) row[kB] = 0.0;
    if (row[kA] == 2.0 && row[kC] > 3.0) row[kC] = 3.0;
    row[kX] = Uniform();
    row[kZ] = 3.0 * Uniform();
    row[kFreq] = 1.0 + Below(4);
    row[kRegr] = 1.0 + 0.5 * Uniform();
    row[kY] = fOptions.codes[static_cast<std::size_t>(Category(row))];
    if (fProblem.rows.size() > kCompleteRows) Spoil(row);
    fProblem.rows.push_back(std::move(row));
  }

  // Rows that must drop out: missing values in turn, weights that are not positive, a category one
  // above those that there are.
  void Spoil(std::vector<double>& row) {
    if (Below(10) == 0) row[static_cast<std::size_t>(Below(kFreq))] = MCMV::gMissingValue;
    if (Below(15) == 0) row[Below(2) == 0 ? kFreq : kRegr] = -Below(2);
    if (Below(20) == 0) row[kY] = fProblem.categories;
  }

  // Each cell has every category early on, so that there is a maximum; then slopes and levels
  // take part in the choice.
  int Category(const std::vector<double>& row) {
    int& visits = fVisits[{row[kA], row[kB], row[kC]}];
    if (visits < 2 * fOptions.seen) return visits++ % fOptions.seen;
    int best = 0;
    double highest = -1e9;
    for (int c = 0; c < fOptions.seen; ++c) {
      const double utility = c * (0.4 * row[kX] - 0.1 * row[kZ] + 0.1 * row[kA]) -
                             std::log(-std::log(0.5 + 0.4999 * Uniform()));
      if (utility > highest) {
        highest = utility;
        best = c;
      }
    }
    return best;
  }

  std::mt19937 fRandom;
  LogisticProblem fProblem;
  Options fOptions;
  std::map<std::array<double, 3>, int> fVisits;
};

// How far the library may be from the oracle.
struct Bounds {
  // A solution of the scaled equations is good to about their number times the condition times
  // the rounding of the n added rows.
  double rounding;
  // Newton's last step, in standard errors, that the log-likelihood was too coarse to tell from
  // none: 0.5 * step' * H * step is the gain that the fit still expects.
  double refused;
};

Bounds BoundsOf(const LogisticOracle& expected, const MCConvergence& convergence) {
  const double eps = std::numeric_limits<double>::epsilon();
  const double n = static_cast<double>(expected.rows.size());
  const double p = static_cast<double>(expected.estimates.size());
  return {8.0 * p * expected.condition * eps * std::sqrt(n),
          std::sqrt(2.0 * convergence.fExpectedGain)};
}

void ExpectSameEstimates(const IMCRegOutputStats& results, const LogisticOracle& expected,
                         const Bounds& bounds) {
  const std::vector<double>& estimates = *results.GetParamEstimates();
  const std::size_t n = expected.estimates.size();
  ASSERT_EQ(estimates.size(), n);
  long double largest = 0.0L;
  for (const long double b : expected.estimates) largest = std::max(largest, std::fabs(b));
  for (std::size_t i = 0; i < n; ++i) {
    SCOPED_TRACE("parameter " + std::to_string(i));
    const int k = static_cast<int>(i);
    const bool redundant = expected.redundant[i % expected.redundant.size()];
    EXPECT_EQ(results.GetRedundancyIndicators().IsIn(k), !redundant);
    if (redundant) {
      EXPECT_EQ(estimates[i], 0.0);
    }
    const long double error = std::sqrt(expected.covariance[i][i]);
    EXPECT_NEAR(estimates[i], static_cast<double>(expected.estimates[i]),
                static_cast<double>(bounds.rounding * largest + 1.1L * bounds.refused * error));
  }
}

// A relative change of the covariance is of the order of the shift of the estimates in standard
// errors, times the number of parameters that shift together.
void ExpectSameCovariance(const IMCRegOutputStats& results, const LogisticOracle& expected,
                          const Bounds& bounds) {
  const std::size_t n = expected.estimates.size();
  const double relative = bounds.rounding + static_cast<double>(n) * bounds.refused;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const double scale =
          static_cast<double>(std::sqrt(expected.covariance[i][i] * expected.covariance[j][j]));
      EXPECT_NEAR(results.GetCovarianceMatrix()->GetElem(static_cast<int>(i), static_cast<int>(j)),
                  static_cast<double>(expected.covariance[i][j]), relative * scale)
          << i << ", " << j;
    }
  }
}

// Sums of a few hundred terms without cancellation, flat at the maximum.
void ExpectSameLikelihood(LibraryFit& fit, const LogisticOracle& expected) {
  constexpr double kRelative = 1e-12;
  const auto near = [](double value, long double wanted) {
    EXPECT_NEAR(value, static_cast<double>(wanted),
                kRelative * static_cast<double>(std::fabs(wanted)));
  };
  near(fit.Convergence().fInitialLL, expected.initialLL);
  near(fit.Convergence().fFinalLL, expected.finalLL);
  near(fit.Results().GetTotalFreqWeight(), expected.totalFrequency);
  // Differences of likelihoods per weight, of the order of 1.
  const auto close = [&](MCConst::MCModelFitStat stat, long double wanted) {
    EXPECT_NEAR(fit.Results().GetModelFitStat(stat), static_cast<double>(wanted), 4 * kRelative);
  };
  close(MCConst::MC_FIT_COX_SNELL, expected.coxSnell);
  close(MCConst::MC_FIT_NAGELKERKE, expected.nagelkerke);
  close(MCConst::MC_FIT_MCFADDEN, expected.mcFadden);
}

void ExpectSameScores(const LibraryFit& fit, const LogisticProblem& problem,
                      const LogisticOracle& expected, const Bounds& bounds) {
  const double bound =
      bounds.rounding + static_cast<double>(expected.estimates.size()) * bounds.refused;
  for (std::size_t r = 0; r < expected.rows.size(); r += 20) {
    double category = -1.0;
    std::vector<double> probabilities;
    const MCCommon::Record record = mctest::MakeRecord(problem.rows[expected.rows[r]]);
    ASSERT_TRUE(fit.Component().Score(record, category, probabilities).IsOK());
    ASSERT_EQ(probabilities.size(), expected.categories.size());
    for (std::size_t t = 0; t < probabilities.size(); ++t) {
      EXPECT_NEAR(probabilities[t], static_cast<double>(expected.probabilities[r][t]), bound);
    }
    // Cells with equal counts tie, so the likeliest category may be one of several.
    const auto predicted = std::find(expected.categories.begin(), expected.categories.end(),
                                     static_cast<int>(category));
    ASSERT_NE(predicted, expected.categories.end());
    EXPECT_GE(probabilities[static_cast<std::size_t>(predicted - expected.categories.begin())],
              *std::max_element(probabilities.begin(), probabilities.end()) - bound);
  }
}

void ExpectAgreement(const LogisticProblem& problem, const LogisticOracle& expected,
                     bool usePatterns) {
  LibraryFit fit(problem);
  fit.LogisticSettings().SetUsePatternTabulator(usePatterns);
  // As tight as makes sense: beyond that the log-likelihood decides.
  fit.LogisticSettings().SetParamEstConCriterion(1e-10);
  ASSERT_FALSE(fit.Build().IsError());
  const MCConvergence convergence = fit.Convergence();
  ASSERT_TRUE(convergence.IsConverged() || convergence.fReason == MCConst::MC_CONV_HALVING);
  ASSERT_TRUE(convergence.fbScoreIsZero);
  const Bounds bounds = BoundsOf(expected, convergence);
  ASSERT_LT(bounds.rounding, 1e-7);
  ASSERT_LT(bounds.refused, 1e-5);
  ExpectSameEstimates(fit.Results(), expected, bounds);
  ExpectSameCovariance(fit.Results(), expected, bounds);
  ExpectSameLikelihood(fit, expected);
  ExpectSameScores(fit, problem, expected, bounds);
  EXPECT_EQ(fit.Results().GetNDegFreedom(),
            fit.Results().GetTotalRegrWeight() - static_cast<double>(expected.estimates.size()));
}

class GeneratedMultinomial : public testing::TestWithParam<int> {};

TEST_P(GeneratedMultinomial, AgreesWithNewtonStepsOnTheExplicitDesign) {
  const Generator generator(GetParam());
  const LogisticProblem& problem = generator.Problem();
  const LogisticOracle expected = mctest::FitLogistic(problem);
  ASSERT_TRUE(expected.converged);
  for (const bool packing : {true, false}) {
    SCOPED_TRACE(packing ? "packed keys" : "plain keys");
    const mctest::PackingSwitch choice(packing);
    ExpectAgreement(problem, expected, true);
  }
  if (!generator.CodesAreIndices()) return;
  SCOPED_TRACE("reread");
  LogisticProblem reread = problem;
  // The handler that rereads takes a code as it is, so one above them all would stop it.
  reread.rows.erase(std::remove_if(reread.rows.begin(), reread.rows.end(),
                                   [&](const auto& row) { return row[kY] == problem.categories; }),
                    reread.rows.end());
  LogisticOracle rereadExpected = mctest::FitLogistic(reread);
  ExpectAgreement(reread, rereadExpected, false);
}

INSTANTIATE_TEST_SUITE_P(Fifty, GeneratedMultinomial, testing::Range(0, 50));

}  // namespace
