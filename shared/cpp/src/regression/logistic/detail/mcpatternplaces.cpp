// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatternplaces.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace MCCommon {
namespace detail {

namespace {

bool IsInAnyEffect(int factor, const MCFactorTables& tables) {
  const auto& effects = tables.GetModelEffectFactors();
  return std::any_of(effects.begin(), effects.end(), [factor](const std::vector<int>& effect) {
    return std::find(effect.begin(), effect.end(), factor) != effect.end();
  });
}

}  // namespace

MCPatternPlaces::MCPatternPlaces(const std::vector<int>& factors,
                                 const std::vector<int>& factorSizes)
    : fFactors(factors), fFactorSizes(factorSizes) {}

// Whether the cells are now by other factors than before.
bool MCPatternPlaces::SetCellFactors(const MCFactorTables& tables) {
  const std::vector<int> before(std::move(fCellFactors));
  fCellFactors.clear();
  fCellSizes.clear();
  for (std::size_t i = 0; i < fFactors.size(); ++i) {
    if (!IsInAnyEffect(fFactors[i], tables)) continue;
    fCellFactors.push_back(fFactors[i]);
    fCellSizes.push_back(fFactorSizes[i]);
  }
  return fCellFactors != before;
}

void MCPatternPlaces::BeginCounting(const MCFactorTables& tables) {
  SetCellFactors(tables);
  fCounts = MCCellGrid<std::uint32_t>(fCellFactors, fCellSizes);
}

void MCPatternPlaces::Count(const double* row) {
  std::uint32_t* count = FindPlace(fCounts, row);
  if (count != nullptr && *count < std::numeric_limits<std::uint32_t>::max()) ++*count;
}

std::size_t MCPatternPlaces::CountOf(const double* row) {
  const std::uint32_t* count = FindPlace(fCounts, row);
  return count == nullptr ? 0 : *count;
}

void MCPatternPlaces::BeginPatterns(const MCFactorTables& tables, const std::vector<int>& bounds) {
  if (SetCellFactors(tables)) fCounts = MCCellGrid<std::uint32_t>();
  fNLocalEffects = bounds.size();
  std::vector<int> effects(fNLocalEffects);
  std::iota(effects.begin(), effects.end(), 0);
  fPatterns = MCCellGrid<MCRowPatterns*>(effects, bounds);
  fCells = fPatterns.IsUsed() ? MCCellGrid<Cell>() : MCCellGrid<Cell>(fCellFactors, fCellSizes);
  fLocalIndices.clear();
}

// A cell doesn't tell in which tables its row was looked up, so that the indices decide.
MCRowPatterns* MCPatternPlaces::FindInCell(const double* row,
                                           const std::vector<int>& localIndices) {
  const Cell* cell = FindPlace(fCells, row);
  if (cell == nullptr || cell->fPattern == nullptr) return nullptr;
  const int* indices = fLocalIndices.data() + cell->fFirstIndex;
  return std::equal(localIndices.begin(), localIndices.end(), indices) ? cell->fPattern : nullptr;
}

void MCPatternPlaces::Set(const double* row, const std::vector<int>& localIndices,
                          MCRowPatterns* pattern) {
  if (fPatterns.IsUsed()) {
    *fPatterns.Find(localIndices.data()) = pattern;
    return;
  }
  Cell* cell = FindPlace(fCells, row);
  if (cell == nullptr || cell->fPattern != nullptr) return;
  cell->fFirstIndex = fLocalIndices.size();
  fLocalIndices.insert(fLocalIndices.end(), localIndices.begin(), localIndices.end());
  cell->fPattern = pattern;
}

std::unique_ptr<MCRowPatterns> MCPatternPlaces::TakeNewPattern() {
  constexpr std::size_t kNTogether = 64;
  if (fNewPatterns.empty()) {
    fNewPatterns.reserve(kNTogether);
    while (fNewPatterns.size() < kNTogether) {
      fNewPatterns.push_back(std::make_unique<MCRowPatterns>());
    }
  }
  std::unique_ptr<MCRowPatterns> pattern = std::move(fNewPatterns.back());
  fNewPatterns.pop_back();
  return pattern;
}

void MCPatternPlaces::Clear() {
  fCounts = MCCellGrid<std::uint32_t>();
  fPatterns = MCCellGrid<MCRowPatterns*>();
  fCells = MCCellGrid<Cell>();
  fNewPatterns.clear();
  std::vector<int>().swap(fLocalIndices);
}

}  // namespace detail
}  // namespace MCCommon
