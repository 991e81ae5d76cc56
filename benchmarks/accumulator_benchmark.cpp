// SPDX-License-Identifier: Apache-2.0
//
// One pass of a logistic regression over stored rows: the rows of a pattern together, and one by
// one as the definition has it.
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/settings/mclogregsettings.h"
#include "support/splitmix64.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using MCCommon::detail::MCPatternColumns;
using MCCommon::detail::MCPatternLayout;

constexpr std::size_t kRows = 4096;

/// A pattern of `nConstants` columns of ones and `nCovariates` others, among the first and last of
/// `nParams`, and rows of noise.
class Pattern {
public:
  Pattern(int nParams, int nConstants, int nCovariates, int nCategs)
      : fAccumulator(fSettings, nParams, nCategs, fEstimates = MakeEstimates(nParams, nCategs)),
        fLayout{static_cast<std::size_t>(nCovariates) + 1, nCovariates, -1, -1} {
    for (int c = 0; c < nConstants + nCovariates; ++c) {
      const bool isCovariate = c >= nConstants;
      fColumns.fIndices.push_back(isCovariate ? nParams - nCovariates + c - nConstants : c);
      if (isCovariate) fColumns.fTerms.push_back({c - nConstants, 1});
      fColumns.fTermBegin.push_back(fColumns.fTerms.size());
    }
    for (std::size_t r = 0; r < kRows; ++r) {
      for (int i = 0; i < nCovariates; ++i) fRows.push_back(Noise());
      fRows.push_back(static_cast<double>(fBits.Next() % static_cast<unsigned>(nCategs)));
    }
  }

  void AddTogether(bool likelihoodOnly) {
    fAccumulator.UpdateForPattern(fColumns, fLayout, fRows.data(), kRows, fCancel, likelihoodOnly);
  }

  void AddOneByOne(bool likelihoodOnly) {
    for (std::size_t r = 0; r < kRows; ++r) {
      const double* row = fRows.data() + r * fLayout.fStride;
      fValues.clear();
      for (std::size_t c = 0; c < fColumns.NColumns(); ++c) {
        const std::size_t term = fColumns.fTermBegin[c];
        const bool isConstant = term == fColumns.fTermBegin[c + 1];
        fValues.push_back(isConstant ? 1.0 : row[fColumns.fTerms[term].fPosition]);
      }
      fAccumulator.UpdateForRow(fColumns.fIndices, fValues,
                                static_cast<int>(row[fLayout.fDependentOffset]), 1.0,
                                likelihoodOnly);
    }
  }

private:
  double Noise() { return static_cast<double>(fBits.Next() >> 11U) * 0x1p-52 - 1.0; }

  std::vector<double> MakeEstimates(int nParams, int nCategs) {
    std::vector<double> estimates;
    for (int i = 0; i < nParams * (nCategs - 1); ++i) estimates.push_back(Noise());
    return estimates;
  }

  mctest::SplitMix64 fBits{20261121};
  MCLogRegSettings fSettings;
  std::vector<double> fEstimates;
  MCAccumStatsLogistic fAccumulator;
  MCPatternColumns fColumns;
  MCPatternLayout fLayout;
  std::vector<double> fRows;
  std::vector<double> fValues;
  MCCancelInfo fCancel{nullptr};
};

/// The patterns of the whole builds that have the same names.
Pattern MakePattern(int design) {
  if (design == 3) return {21, 1, 20, 4};
  if (design == 4) return {34, 4, 2, 3};
  return {11, 1, 10, 2};
}

template <class Add>
void AccumulatePass(benchmark::State& state, int design, Add add) {
  Pattern pattern = MakePattern(design);
  for (auto _ : state) add(pattern);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}

void PassTogether(benchmark::State& state, int design) {
  AccumulatePass(state, design, [](Pattern& pattern) { pattern.AddTogether(false); });
}

void PassOneByOne(benchmark::State& state, int design) {
  AccumulatePass(state, design, [](Pattern& pattern) { pattern.AddOneByOne(false); });
}

void TrialTogether(benchmark::State& state, int design) {
  AccumulatePass(state, design, [](Pattern& pattern) { pattern.AddTogether(true); });
}

void TrialOneByOne(benchmark::State& state, int design) {
  AccumulatePass(state, design, [](Pattern& pattern) { pattern.AddOneByOne(true); });
}

BENCHMARK_CAPTURE(PassTogether, D3, 3);
BENCHMARK_CAPTURE(PassTogether, D4, 4);
BENCHMARK_CAPTURE(PassTogether, D6, 6);
BENCHMARK_CAPTURE(PassOneByOne, D3, 3);
BENCHMARK_CAPTURE(PassOneByOne, D4, 4);
BENCHMARK_CAPTURE(PassOneByOne, D6, 6);
BENCHMARK_CAPTURE(TrialTogether, D3, 3);
BENCHMARK_CAPTURE(TrialTogether, D4, 4);
BENCHMARK_CAPTURE(TrialTogether, D6, 6);
BENCHMARK_CAPTURE(TrialOneByOne, D3, 3);
BENCHMARK_CAPTURE(TrialOneByOne, D4, 4);
BENCHMARK_CAPTURE(TrialOneByOne, D6, 6);

}  // namespace
