// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcaccumstatslogistic.h"

#include "mcmath/mcsymblockmatrix.h"
#include "regression/settings/mclogregsettings.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/extendedmatrix.h"
#include "support/samebits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::MCSymMatrix;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Row {
  std::vector<int> indices;
  std::vector<double> values;
  int category;
  double weight;
};

/// An accumulator that comes with its estimates.
class Accumulator {
public:
  Accumulator(int nParams, int nCategs, std::vector<double> estimates, bool checkSeparation = false)
      : fEstimates(std::move(estimates)), fStats(fSettings, nParams, nCategs, fEstimates) {
    fStats.Reset(MCConst::MC_EST_NEWTON, checkSeparation);
  }

  int Add(const Row& row, bool likelihoodOnly = false) {
    return fStats.UpdateForRow(row.indices, row.values, row.category, row.weight, likelihoodOnly);
  }

  MCAccumStatsLogistic* operator->() { return &fStats; }
  std::vector<double>& Estimates() { return fEstimates; }

  MCSymMatrix Hessian() const {
    MCSymMatrix hessian;
    fStats.GetHessian(hessian);
    return hessian;
  }

  /// All sums, counts and extremes, for comparisons.
  std::vector<double> Everything() const {
    int valid = 0;
    int invalid = 0;
    std::vector<double> all(5);
    all[0] = fStats.GetLL();
    fStats.GetCounts(valid, invalid, all[1]);
    fStats.GetMinMaxProbabilities(all[2], all[3], all[4]);
    all.push_back(valid);
    all.push_back(invalid);
    const MCSymMatrix hessian = Hessian();
    all.insert(all.end(), fStats.GetScores().begin(), fStats.GetScores().end());
    all.insert(all.end(), hessian.AsVectorConst().begin(), hessian.AsVectorConst().end());
    return all;
  }

private:
  MCLogRegSettings fSettings;
  std::vector<double> fEstimates;
  MCAccumStatsLogistic fStats;
};

/// The sums by their definitions in long double, the probabilities by way of the largest predictor.
struct Oracle {
  std::size_t P;
  std::size_t K;
  std::vector<double> estimates;
  long double logLikelihood = 0;
  std::vector<long double> scores;
  mctest::ExtendedMatrix hessian;
  long double minObserved = HUGE_VALL;
  long double maxObserved = 0;
  long double minComputed = HUGE_VALL;

  Oracle(int nParams, int nCategs, const std::vector<double>& beta)
      : P(static_cast<std::size_t>(nParams)),
        K(static_cast<std::size_t>(nCategs)),
        estimates(beta),
        scores((K - 1) * P),
        hessian((K - 1) * P, (K - 1) * P) {}

  void Add(const Row& row) {
    std::vector<long double> x(P);
    for (std::size_t e = 0; e < row.indices.size(); ++e) {
      x[static_cast<std::size_t>(row.indices[e])] = row.values[e];
    }
    std::vector<long double> eta(K);
    for (std::size_t c = 0; c + 1 < K; ++c) {
      for (std::size_t i = 0; i < P; ++i) eta[c] += x[i] * estimates[c * P + i];
    }
    const long double highest = *std::max_element(eta.begin(), eta.end());
    long double total = 0;
    for (const long double e : eta) total += std::exp(e - highest);
    std::vector<long double> p;
    for (const long double e : eta) p.push_back(std::exp(e - highest) / total);
    const std::size_t y = static_cast<std::size_t>(row.category);
    logLikelihood += row.weight * (eta[y] - highest - std::log(total));
    minObserved = std::min(minObserved, p[y]);
    maxObserved = std::max(maxObserved, p[y]);
    minComputed = std::min(minComputed, *std::min_element(p.begin(), p.end()));
    for (std::size_t c = 0; c + 1 < K; ++c) {
      for (std::size_t i = 0; i < P; ++i) {
        scores[c * P + i] += row.weight * ((c == y ? 1 : 0) - p[c]) * x[i];
        for (std::size_t d = 0; d + 1 < K; ++d) {
          for (std::size_t j = 0; j < P; ++j) {
            hessian(c * P + i, d * P + j) +=
                row.weight * p[c] * ((c == d ? 1 : 0) - p[d]) * x[i] * x[j];
          }
        }
      }
    }
  }
};

std::vector<Row> NoisyRows(int nParams, int nCategs, std::size_t count, std::uint64_t seed) {
  mctest::Noise noise(seed);
  std::vector<Row> rows;
  for (std::size_t r = 0; r < count; ++r) {
    Row row{{}, {}, static_cast<int>((noise.Next() + 1.0) / 2 * nCategs), 1.5 + noise.Next()};
    for (int i = 0; i < nParams; ++i) {
      if (i > 0 && noise.Next() < 0.0) continue;
      row.indices.push_back(i);
      row.values.push_back(i == 0 ? 1.0 : 2.0 * noise.Next());
    }
    rows.push_back(row);
  }
  return rows;
}

std::vector<double> NoisyEstimates(int n, std::uint64_t seed) {
  mctest::Noise noise(seed);
  std::vector<double> estimates;
  for (int i = 0; i < n; ++i) estimates.push_back(noise.Next());
  return estimates;
}

// Each sum has at most a few hundred terms of magnitude 10, each with an error of some units of the
// last place.
TEST(MCAccumStatsLogistic, SumsAreThoseOfTheModelInHigherPrecision) {
  for (const int nParams : {1, 2, 5, 9}) {
    for (const int nCategs : {2, 3, 4, 6}) {
      SCOPED_TRACE(testing::Message() << nParams << " parameters, " << nCategs << " categories");
      const auto beta = NoisyEstimates(nParams * (nCategs - 1), 7);
      Accumulator accumulator(nParams, nCategs, beta, true);
      Oracle oracle(nParams, nCategs, beta);
      for (const Row& row : NoisyRows(nParams, nCategs, 50, 11)) {
        ASSERT_EQ(accumulator.Add(row), 0);
        oracle.Add(row);
      }
      EXPECT_NEAR(accumulator->GetLL(), static_cast<double>(oracle.logLikelihood), 1e-12);
      for (std::size_t i = 0; i < oracle.scores.size(); ++i) {
        EXPECT_NEAR(accumulator->GetScores()[i], static_cast<double>(oracle.scores[i]), 1e-12);
      }
      const mctest::ExtendedMatrix hessian(accumulator.Hessian());
      EXPECT_LT(hessian.Difference(oracle.hessian), 1e-12L);
      double minObserved = 0;
      double maxObserved = 0;
      double minComputed = 0;
      accumulator->GetMinMaxProbabilities(minObserved, maxObserved, minComputed);
      EXPECT_NEAR(minObserved, static_cast<double>(oracle.minObserved), 1e-15);
      EXPECT_NEAR(maxObserved, static_cast<double>(oracle.maxObserved), 1e-15);
      EXPECT_NEAR(minComputed, static_cast<double>(oracle.minComputed), 1e-15);
    }
  }
}

TEST(MCAccumStatsLogistic, WithoutParametersAllCategoriesHaveTheSameShare) {
  Accumulator accumulator(0, 3, {}, true);
  ASSERT_TRUE(accumulator->IsValid());
  EXPECT_EQ(accumulator.Add({{}, {}, 1, 2.0}), 0);
  // Two units of the last place: the logarithm is the library's own.
  EXPECT_NEAR(accumulator->GetLL(), 2.0 * std::log(1.0 / 3.0), 5e-16);
  EXPECT_TRUE(accumulator->GetScores().empty());
  EXPECT_EQ(accumulator.Hessian().GetNRows(), 0);
  double minObserved = 0;
  double maxObserved = 0;
  double minComputed = 0;
  accumulator->GetMinMaxProbabilities(minObserved, maxObserved, minComputed);
  EXPECT_EQ(minObserved, 1.0 / 3.0);
  EXPECT_EQ(maxObserved, 1.0 / 3.0);
  EXPECT_EQ(minComputed, 1.0 / 3.0);
  EXPECT_EQ(accumulator.Add({{}, {}, 3, 2.0}), -1);
  EXPECT_EQ(accumulator.Add({{}, {}, 0, 0.0}), -1);
}

// The predictors are 0: each category has a third.
TEST(MCAccumStatsLogistic, BlocksOfTheHessianStandByCategory) {
  Accumulator accumulator(2, 3, {0, 0, 0, 0});
  ASSERT_EQ(accumulator.Add({{0, 1}, {1.0, 3.0}, 1, 2.0}), 0);
  const MCSymMatrix hessian = accumulator.Hessian();
  ASSERT_EQ(hessian.GetNRows(), 4);
  const double x[2] = {1.0, 3.0};
  for (int c = 0; c < 2; ++c) {
    const double residual = (c == 1 ? 1.0 : 0.0) - 1.0 / 3.0;
    for (int i = 0; i < 2; ++i) {
      const auto place = static_cast<std::size_t>(2 * c + i);
      EXPECT_DOUBLE_EQ(accumulator->GetScores()[place], 2.0 * residual * x[i]);
      for (int d = 0; d < 2; ++d) {
        const double scale = 2.0 * (c == d ? 2.0 / 9.0 : -1.0 / 9.0);
        for (int j = 0; j < 2; ++j) {
          EXPECT_NEAR(hessian.GetElem(2 * c + i, 2 * d + j), scale * x[i] * x[j], 4e-15);
        }
      }
    }
  }
}

// exp(ln 3) / (1 + exp(ln 3)) = 3/4.
TEST(MCAccumStatsLogistic, TwoCategoriesHaveOneBlock) {
  Accumulator accumulator(1, 2, {std::log(3.0)});
  ASSERT_EQ(accumulator.Add({{0}, {1.0}, 0, 4.0}), 0);
  const MCSymMatrix hessian = accumulator.Hessian();
  ASSERT_EQ(hessian.GetNRows(), 1);
  EXPECT_NEAR(hessian.GetElem(0, 0), 4.0 * 0.75 * 0.25, 1e-15);
  EXPECT_NEAR(accumulator->GetScores()[0], 4.0 * 0.25, 1e-15);
  EXPECT_NEAR(accumulator->GetLL(), 4.0 * std::log(0.75), 1e-15);
}

TEST(MCAccumStatsLogistic, RowOfTheReferenceAddsTheLogOfItsProbabilityAlone) {
  Accumulator accumulator(1, 2, {std::log(3.0)});
  ASSERT_EQ(accumulator.Add({{0}, {1.0}, 1, 4.0}), 0);
  EXPECT_NEAR(accumulator->GetLL(), 4.0 * std::log(0.25), 4e-15);
  EXPECT_NEAR(accumulator->GetScores()[0], 4.0 * -0.75, 1e-15);
}

struct Refusal {
  const char* what;
  Row row;
  bool counts;
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
  *out << refusal.what;
}

class RefusedRows : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedRows, LeaveAllSumsAsTheyAre) {
  Accumulator accumulator(3, 3, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6}, true);
  ASSERT_EQ(accumulator.Add({{0, 2}, {1.0, -2.0}, 1, 1.5}), 0);
  std::vector<double> expected = accumulator.Everything();
  for (const bool likelihoodOnly : {false, true}) {
    EXPECT_EQ(accumulator.Add(GetParam().row, likelihoodOnly), -1);
    if (GetParam().counts) expected[6] += 1.0;
    EXPECT_TRUE(mctest::SameBits(expected, accumulator.Everything()));
  }
}

INSTANTIATE_TEST_SUITE_P(
    MCAccumStatsLogistic, RefusedRows,
    testing::Values(Refusal{"no entry", {{}, {}, 0, 1.0}, false},
                    Refusal{"fewer values", {{0, 1}, {1.0}, 0, 1.0}, false},
                    Refusal{"descending", {{1, 0}, {1.0, 1.0}, 0, 1.0}, false},
                    Refusal{"repeated", {{1, 1}, {1.0, 1.0}, 0, 1.0}, false},
                    Refusal{"negative index", {{-1}, {1.0}, 0, 1.0}, false},
                    Refusal{"negative category", {{0}, {1.0}, -1, 1.0}, false},
                    Refusal{"category K", {{0}, {1.0}, 3, 1.0}, false},
                    Refusal{"weight 0", {{0}, {1.0}, 0, 0.0}, false},
                    Refusal{"weight -0", {{0}, {1.0}, 0, -0.0}, false},
                    Refusal{"negative weight", {{0}, {1.0}, 0, -1.0}, false},
                    Refusal{"weight minus infinity", {{0}, {1.0}, 0, -kInfinity}, false},
                    Refusal{"index beyond the parameters", {{3}, {1.0}, 0, 1.0}, true}));

TEST(MCAccumStatsLogistic, LetsAWeightPassThatIsNotANumber) {
  Accumulator accumulator(1, 2, {0.5});
  EXPECT_EQ(accumulator.Add({{0}, {1.0}, 0, kNaN}), 0);
  EXPECT_TRUE(std::isnan(accumulator->GetLL()));
  int valid = 0;
  int invalid = 0;
  double weight = 0;
  accumulator->GetCounts(valid, invalid, weight);
  EXPECT_EQ(valid, 1);
  EXPECT_TRUE(std::isnan(weight));
}

TEST(MCAccumStatsLogistic, CountsRowsAndTheirWeights) {
  Accumulator accumulator(1, 2, {0.5});
  accumulator.Add({{0}, {1.0}, 0, 2.0});
  accumulator.Add({{0}, {1.0}, 1, 0.5}, true);
  accumulator.Add({{0}, {1.0}, 1, 0.0});
  accumulator.Add({{1}, {1.0}, 1, 1.0});
  int valid = 0;
  int invalid = 0;
  double weight = 0;
  accumulator->GetCounts(valid, invalid, weight);
  EXPECT_EQ(valid, 2);
  EXPECT_EQ(invalid, 1);
  EXPECT_EQ(weight, 2.5);
}

TEST(MCAccumStatsLogistic, ForTheLikelihoodAloneScoresAndHessianStay) {
  const auto beta = NoisyEstimates(6, 3);
  Accumulator whole(3, 3, beta);
  Accumulator trial(3, 3, beta);
  for (const Row& row : NoisyRows(3, 3, 20, 5)) {
    whole.Add(row);
    trial.Add(row, true);
  }
  EXPECT_EQ(whole->GetLL(), trial->GetLL());
  EXPECT_EQ(trial->GetScores(), std::vector<double>(6, 0.0));
  EXPECT_TRUE(mctest::SameBits(MCSymMatrix(6), trial.Hessian()));
}

TEST(MCAccumStatsLogistic, ResetBringsBackTheStart) {
  Accumulator accumulator(2, 3, {0.1, 0.2, 0.3, 0.4});
  const std::vector<double> start = accumulator.Everything();
  EXPECT_EQ(start[2], kLargest);
  EXPECT_EQ(start[3], -kLargest);
  EXPECT_EQ(start[4], kLargest);
  accumulator->Reset(MCConst::MC_EST_FISHER, true);
  accumulator.Add({{0, 1}, {1.0, 2.0}, 0, 1.0});
  accumulator.Add({{2}, {1.0}, 0, 1.0});
  for (int k = 0; k < 2; ++k) {
    accumulator->Reset(MCConst::MC_EST_HYBRID, false);
    EXPECT_TRUE(mctest::SameBits(start, accumulator.Everything()));
    EXPECT_TRUE(accumulator->IsValid());
  }
}

TEST(MCAccumStatsLogistic, WithoutTheCheckTheExtremesKeepTheirStart) {
  Accumulator accumulator(1, 2, {0.5}, false);
  accumulator.Add({{0}, {1.0}, 0, 1.0});
  double minObserved = 0;
  double maxObserved = 0;
  double minComputed = 0;
  accumulator->GetMinMaxProbabilities(minObserved, maxObserved, minComputed);
  EXPECT_EQ(minObserved, kLargest);
  EXPECT_EQ(maxObserved, -kLargest);
  EXPECT_EQ(minComputed, kLargest);
}

TEST(MCAccumStatsLogistic, FollowsTheEstimatesByItself) {
  Accumulator accumulator(1, 2, {0.0});
  accumulator.Add({{0}, {1.0}, 0, 1.0});
  EXPECT_NEAR(accumulator->GetScores()[0], 0.5, 1e-15);
  accumulator.Estimates()[0] = std::log(3.0);
  accumulator->Reset(MCConst::MC_EST_FISHER, false);
  accumulator.Add({{0}, {1.0}, 0, 1.0});
  EXPECT_NEAR(accumulator->GetScores()[0], 0.25, 1e-15);
}

TEST(MCAccumStatsLogistic, RefusesAndCountsRowsOnceTheEstimatesHaveShrunk) {
  Accumulator accumulator(2, 3, {0.1, 0.2, 0.3, 0.4});
  accumulator.Estimates().pop_back();
  EXPECT_EQ(accumulator.Add({{0}, {1.0}, 0, 1.0}), -1);
  int valid = 0;
  int invalid = 0;
  double weight = 0;
  accumulator->GetCounts(valid, invalid, weight);
  EXPECT_EQ(valid, 0);
  EXPECT_EQ(invalid, 1);
  EXPECT_EQ(weight, 0.0);
}

struct Construction {
  int nParams;
  int nCategs;
  std::size_t nEstimates;
  bool isValid;
};

// In 32 bits, 65536 * 65536 is 0 and 49999 * 50000 is negative.
TEST(MCAccumStatsLogistic, IsValidOnlyIfItFitsTheEstimates) {
  const MCLogRegSettings settings;
  for (const Construction& with :
       {Construction{2, 3, 4, true}, Construction{2, 3, 9, true}, Construction{0, 2, 0, true},
        Construction{2, 3, 3, false}, Construction{-1, 3, 9, false}, Construction{2, 1, 9, false},
        Construction{2, 0, 9, false}, Construction{2, -5, 9, false}, Construction{0, 1, 0, false},
        Construction{65536, 65537, 9, false}, Construction{50000, 50000, 9, false},
        Construction{std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 9, false}}) {
    SCOPED_TRACE(testing::Message() << with.nParams << " by " << with.nCategs);
    const std::vector<double> estimates(with.nEstimates, 0.25);
    MCAccumStatsLogistic accumulator(settings, with.nParams, with.nCategs, estimates);
    EXPECT_EQ(accumulator.IsValid(), with.isValid);
    if (with.isValid) continue;
    EXPECT_TRUE(accumulator.GetScores().empty());
    EXPECT_EQ(accumulator.UpdateForRow({0}, {1.0}, 0, 1.0, false), -1);
    accumulator.Reset(MCConst::MC_EST_FISHER, true);
    EXPECT_FALSE(accumulator.IsValid());
    EXPECT_EQ(accumulator.GetLL(), 0.0);
  }
}

TEST(MCAccumStatsLogistic, IsInvalidOrThrowsWhereMemoryRunsOut) {
  const MCLogRegSettings settings;
  const std::vector<double> estimates(6, 0.25);
  bool hasSucceeded = false;
  int nInvalid = 0;
  for (std::size_t k = 1; !hasSucceeded; ++k) {
    std::unique_ptr<MCAccumStatsLogistic> accumulator;
    bool hasFired = false;
    try {
      const mctest::FailAllocation fail(k);
      accumulator = std::make_unique<MCAccumStatsLogistic>(settings, 3, 3, estimates);
      hasFired = fail.HasFired();
    } catch (const std::bad_alloc&) {
      continue;
    }
    hasSucceeded = !hasFired;
    EXPECT_EQ(accumulator->IsValid(), hasSucceeded);
    if (!accumulator->IsValid()) ++nInvalid;
    EXPECT_EQ(accumulator->UpdateForRow({0}, {1.0}, 0, 1.0, false), hasSucceeded ? 0 : -1);
  }
  EXPECT_GT(nInvalid, 0);
}

TEST(MCAccumStatsLogistic, AllocatesNothingForARow) {
  Accumulator accumulator(4, 4, NoisyEstimates(12, 1), true);
  const std::vector<Row> rows = NoisyRows(4, 4, 10, 2);
  const std::size_t before = mctest::AllocationCount();
  for (const Row& row : rows) accumulator.Add(row);
  EXPECT_EQ(mctest::AllocationCount(), before);
}

// Predictors far beyond what exp can take, of either sign: the observed category's probability is 0
// or 1, its logarithm is not taken.
TEST(MCAccumStatsLogistic, PredictorsOfAnySizeDoNotOverflow) {
  for (const double size : {7.0e2, 1.0e4, 1.0e9, 1.0e150}) {
    for (const double sign : {-1.0, 1.0}) {
      for (int category = 0; category < 3; ++category) {
        SCOPED_TRACE(testing::Message() << sign * size << " category " << category);
        const std::vector<double> beta{sign * size, 0.5 * sign * size};
        Accumulator accumulator(1, 3, beta, true);
        ASSERT_EQ(accumulator.Add({{0}, {1.0}, category, 3.0}), 0);
        const double highest = std::max(0.0, sign * size);
        const double own = category == 2 ? 0.0 : beta[static_cast<std::size_t>(category)];
        EXPECT_NEAR(accumulator->GetLL(), 3.0 * (own - highest), 1e-14 * size);
        for (const double x : accumulator.Everything()) EXPECT_TRUE(std::isfinite(x));
      }
    }
  }
}

TEST(MCAccumStatsLogistic, WeightsOfAnySizeScaleTheSums) {
  Accumulator unit(2, 3, {0.1, 0.2, 0.3, 0.4});
  unit.Add({{0, 1}, {1.0, 2.0}, 0, 1.0});
  for (const double weight : {1e-300, 1e-100, 1e100, 1e300}) {
    Accumulator accumulator(2, 3, {0.1, 0.2, 0.3, 0.4});
    ASSERT_EQ(accumulator.Add({{0, 1}, {1.0, 2.0}, 0, weight}), 0);
    EXPECT_DOUBLE_EQ(accumulator->GetLL() / weight, unit->GetLL());
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_DOUBLE_EQ(accumulator->GetScores()[i] / weight, unit->GetScores()[i]);
    }
    EXPECT_NEAR(accumulator.Hessian().GetElem(3, 2) / weight, unit.Hessian().GetElem(3, 2), 1e-15);
  }
}

TEST(MCAccumStatsLogistic, AWeightEqualsAsManyRows) {
  Accumulator weighted(3, 3, NoisyEstimates(6, 3));
  Accumulator repeated(3, 3, NoisyEstimates(6, 3));
  for (Row row : NoisyRows(3, 3, 20, 5)) {
    row.weight = 3.0;
    weighted.Add(row);
    row.weight = 1.0;
    for (int k = 0; k < 3; ++k) repeated.Add(row);
  }
  EXPECT_NEAR(weighted->GetLL(), repeated->GetLL(), 1e-12);
  const MCSymMatrix expected = repeated.Hessian();
  const MCSymMatrix actual = weighted.Hessian();
  for (std::size_t k = 0; k < expected.AsVectorConst().size(); ++k) {
    EXPECT_NEAR(actual.AsVectorConst()[k], expected.AsVectorConst()[k], 1e-12);
  }
}

TEST(MCAccumStatsLogistic, AdmitsAllEstimatesAndHalvesSteps) {
  Accumulator accumulator(1, 2, {0.5});
  EXPECT_TRUE(accumulator->CheckConstraints());
  EXPECT_EQ(accumulator->GetStepAdjustmentFactor(), 1.0);
}

// With a predictor of 0 and a column of 2, the score is 2 * 0.5 and the Hessian 4 * 0.25.
TEST(MCAccumStatsLogistic, DisplaysItsSums) {
  Accumulator accumulator(1, 2, {0.0}, true);
  accumulator.Add({{0}, {2.0}, 0, 1.0});
  EXPECT_EQ(mctest::Displayed([&] { accumulator->Display(true); }),
            "\nAccumulated log-likelihood = -0.693147");
  MCCommonMath::MCSymBlockMatrix hessian(1, 1);
  hessian.GetElemSSRef(0, 0).SetElem(0, 0, 1.0);
  EXPECT_EQ(mctest::Displayed([&] { accumulator->Display(false); }),
            "\nMCAccumStatsLogistic display start"
            "\nNumber of estimated parameters in the model = 1"
            "\nNumber of response categories of the dependent variable = 2"
            "\nAccumulated log-likelihood = -0.693147"
            "\nAccumulated vector of scores (size = 1)\n 1"
            "\n\nAccumulated Hessian:" +
                mctest::DisplayOf(hessian) +
                "\nNumber of valid rows processed = 1"
                "\nNumber of invalid calls to UpdateForRow() = 0"
                "\nAccumulated weight = 1"
                "\nSeparation check = true"
                "\nMinimum probability of the observed response = 0.5"
                "\nMaximum probability of the observed response = 0.5"
                "\nMinimum computed probability = 0.5"
                "\nValidity indicator = true"
                "\nMCAccumStatsLogistic display end");
}

}  // namespace
