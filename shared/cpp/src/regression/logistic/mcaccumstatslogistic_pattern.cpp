// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatterntile.h"
#include "regression/logistic/mcaccumstatslogistic.h"

#include <algorithm>
#include <limits>

using MCCommon::detail::MCPatternTile;

struct MCAccumStatsLogistic::StoredRows {
  const MCCommon::detail::MCPatternColumns& columns;
  const MCCommon::detail::MCPatternLayout& layout;
  const double* first;
  std::size_t count;

  const double* Row(std::size_t i) const { return first + i * layout.fStride; }
  StoredRows From(std::size_t i, std::size_t n) const { return {columns, layout, Row(i), n}; }
};

int MCAccumStatsLogistic::UpdateForPattern(const MCCommon::detail::MCPatternColumns& columns,
                                           const MCCommon::detail::MCPatternLayout& layout,
                                           const double* rows, std::size_t nRows,
                                           const MCCancelInfo& cancel, bool likelihoodOnly) {
  const StoredRows stored{columns, layout, rows, nRows};
  if (!fpTile) fpTile = std::make_unique<MCPatternTile>();
  fIndices.reserve(columns.NColumns());
  fValues.reserve(columns.NColumns());
  const MCPatternTile::Shape shape{static_cast<std::size_t>(std::max(fNParams, 0)),
                                   static_cast<std::size_t>(std::max(fNCategs, 0))};
  const bool isTogether = fbValid && fpTile->Begin(columns, layout, shape, *fpBeta, nRows);
  return isTogether ? UpdateTogether(stored, cancel, likelihoodOnly)
                    : UpdateOneByOne(stored, cancel, likelihoodOnly);
}

// From a row that isn't ordinary on, as many as a tile holds go one by one.
int MCAccumStatsLogistic::UpdateTogether(const StoredRows& stored, const MCCancelInfo& cancel,
                                         bool likelihoodOnly) {
  std::size_t row = 0;
  for (;;) {
    int answer = 0;
    row += AddTiles(stored.From(row, stored.count - row), cancel, likelihoodOnly, answer);
    if (answer != 0 || row == stored.count) return answer;
    const std::size_t count = std::min(stored.count - row, fpTile->Capacity());
    answer = UpdateOneByOne(stored.From(row, count), cancel, likelihoodOnly);
    if (answer != 0) return answer;
    row += count;
  }
}

// The rows are tested before they are polled for, so that there is one poll for each row up to the
// one that ends the loop.
std::size_t MCAccumStatsLogistic::AddTiles(const StoredRows& stored, const MCCancelInfo& cancel,
                                           bool likelihoodOnly, int& answer) {
  const MCPatternTile::Sums sums{fScores, fHessian};
  if (!likelihoodOnly) fpTile->Gather(sums);
  std::size_t row = 0;
  bool goesOn = true;
  while (goesOn && row < stored.count) {
    const std::size_t wanted = std::min(stored.count - row, fpTile->Capacity());
    const std::size_t loaded = fpTile->Load(stored.Row(row), wanted);
    std::size_t taken = 0;
    while (taken < loaded && !cancel.WillCancel()) ++taken;
    if (taken < loaded) answer = 1;
    goesOn = taken == wanted;
    AddTile(taken);
    if (!likelihoodOnly) fpTile->Add(sums);
    row += taken;
  }
  if (!likelihoodOnly) fpTile->Scatter(sums);
  return row;
}

int MCAccumStatsLogistic::UpdateOneByOne(const StoredRows& stored, const MCCancelInfo& cancel,
                                         bool likelihoodOnly) {
  for (std::size_t row = 0; row < stored.count; ++row) {
    if (cancel.WillCancel()) return 1;
    ExpandRow(stored, row);
    const int category = StoredCategory(stored.layout, stored.Row(row));
    const double weight = StoredWeight(stored.layout, stored.Row(row));
    if (UpdateForRow(fIndices, fValues, category, weight, likelihoodOnly) < 0) return -1;
  }
  return 0;
}

void MCAccumStatsLogistic::ExpandRow(const StoredRows& stored, std::size_t row) {
  fIndices.clear();
  fValues.clear();
  for (std::size_t c = 0; c < stored.columns.NColumns(); ++c) {
    const double value = StoredValue(stored.columns, c, stored.Row(row));
    if (value == 0.0) continue;
    fIndices.push_back(stored.columns.fIndices[c]);
    fValues.push_back(value);
  }
}

void MCAccumStatsLogistic::AddTile(std::size_t count) {
  MCPatternTile& tile = *fpTile;
  tile.ComputeProbabilities(count);
  double logLikelihood = fLL;
  double weight = fTotalWeight;
  for (std::size_t r = 0; r < count; ++r) {
    weight += tile.Weight(r);
    logLikelihood += tile.LogLikelihood(r);
  }
  fLL = logLikelihood;
  fTotalWeight = weight;
  fNValid += static_cast<int>(
      std::min(count, static_cast<std::size_t>(std::numeric_limits<int>::max() - fNValid)));
  for (std::size_t r = 0; fbCheckSeparation && r < count; ++r) {
    TrackProbabilities(tile.Probabilities(r), MCPatternTile::kStride, tile.Category(r));
  }
}
