// SPDX-License-Identifier: Apache-2.0
#include "support/factororacle.h"

#include <climits>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace mctest {

namespace {

template <class Vector>
auto& At(Vector& values, long long i) {
  return values.at(static_cast<std::size_t>(i));
}

}  // namespace

std::unique_ptr<MCFactorTables> TablesOf(const FactorDesign& design) {
  auto tables = std::make_unique<MCFactorTables>(
      design.factors, design.sizes, design.weightVar, design.dependentVar, design.nDepCategories,
      design.lowestCategory, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables->SetRegrWeightVar(design.regrWeightVar);
  tables->SetModelEffectFactors(design.effects, design.factors);
  tables->SetCovariates(design.covariates);
  return tables;
}

FactorOracle::FactorOracle(const FactorDesign& design)
    : fDesign(design), fCells(design.effects.size()), fSums(design.covariates.size(), 0.0L) {
  for (const int size : design.sizes) fCounts.emplace_back(static_cast<std::size_t>(size));
  if (design.dependentVar >= 0) fDepCounts.resize(static_cast<std::size_t>(design.nDepCategories));
}

long long FactorOracle::Level(double code) const {
  const double rounded = code + 0.5;
  const bool fits = rounded > -2147483649.0 && rounded < 2147483648.0;  // false for NaN
  const long long truncated = fits ? std::llround(std::trunc(rounded)) : INT_MIN;
  return truncated - fDesign.lowestCategory;
}

std::vector<int> FactorOracle::EffectLevels(const std::vector<int>& effect,
                                            const std::vector<double>& row) const {
  std::vector<int> levels;
  for (const int position : effect) {
    const long long level = Level(At(row, position));
    levels.push_back(level < 0 || level > INT_MAX ? -1 : static_cast<int>(level));
  }
  return levels;
}

bool FactorOracle::Add(const std::vector<double>& row) {
  double w = fDesign.weightVar < 0 ? 1.0 : At(row, fDesign.weightVar);
  bool inRange = true;
  for (std::size_t i = 0; i < fDesign.factors.size(); ++i) {
    const long long level = Level(At(row, fDesign.factors[i]));
    if (level < 0 || level >= fDesign.sizes[i]) {
      inRange = false;
      continue;
    }
    At(fCounts[i], level).first += w;
    At(fCounts[i], level).second += 1;
  }
  if (!inRange) return false;
  if (!fDepCounts.empty()) {
    const long long level = Level(At(row, fDesign.dependentVar));
    if (level < 0 || level >= fDesign.nDepCategories) return false;
    At(fDepCounts, level).first += w;
    At(fDepCounts, level).second += 1;
  }
  for (std::size_t e = 0; e < fCells.size(); ++e)
    fCells[e][EffectLevels(fDesign.effects[e], row)] = 0;
  fTotalWeight += w;
  fSampleSize += 1;
  if (fDesign.regrWeightVar >= 0) w *= At(row, fDesign.regrWeightVar);
  fTotalRegrWeight += w;
  for (std::size_t k = 0; k < fSums.size(); ++k) {
    fSums[k] += static_cast<long double>(w) * At(row, fDesign.covariates[k]);
  }
  return true;
}

int FactorOracle::Number() {
  int next = 0;
  for (std::size_t e = 0; e < fCells.size(); ++e) {
    // An effect without factors has the one cell of no levels, whether or not a row came.
    if (fDesign.effects[e].empty()) fCells[e][{}] = 0;
    fOffsets.push_back(next);
    for (auto& cell : fCells[e]) cell.second = next++;
    fNParameters.push_back(next - fOffsets.back());
  }
  return next;
}

std::vector<int> FactorOracle::Indices(const std::vector<double>& row) const {
  std::vector<int> indices;
  for (std::size_t e = 0; e < fCells.size(); ++e) {
    const auto found = fCells[e].find(EffectLevels(fDesign.effects[e], row));
    indices.push_back(found == fCells[e].end() ? -1 : found->second);
  }
  return indices;
}

std::vector<int> FactorOracle::Levels(int effect, int local) const {
  return std::next(At(fCells, effect).begin(), local)->first;
}

int FactorOracle::IncompleteEffect() const {
  int result = -1;
  double best = 1.0;
  for (std::size_t e = 0; e < fCells.size(); ++e) {
    if (fDesign.effects[e].empty()) continue;
    double possible = 1;
    for (const int position : fDesign.effects[e]) {
      const auto i = std::find(fDesign.factors.begin(), fDesign.factors.end(), position) -
                     fDesign.factors.begin();
      double active = 0;
      for (const auto& count : At(fCounts, i)) active += count.first > 0 ? 1 : 0;
      possible *= active;
    }
    const double share = static_cast<double>(fCells[e].size()) / possible;
    if (share < best) {
      best = share;
      result = static_cast<int>(e);
    }
  }
  return result;
}

std::vector<long double> FactorOracle::Means() const {
  std::vector<long double> means(fSums);
  for (long double& mean : means) mean /= fTotalRegrWeight;
  return means;
}

}  // namespace mctest
