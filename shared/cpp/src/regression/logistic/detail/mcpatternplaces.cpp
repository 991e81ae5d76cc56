// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatternplaces.h"

#include "regression/frame/detail/mcnumericcast.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace MCCommon {
namespace detail {

namespace {

std::vector<int> CountingTo(std::size_t n) {
  std::vector<int> numbers(n);
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

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

void MCPatternPlaces::BeginCounting(const MCFactorTables& tables) {
  std::vector<int> sizes;
  fCountedFactors.clear();
  for (std::size_t i = 0; i < fFactors.size(); ++i) {
    if (!IsInAnyEffect(fFactors[i], tables)) continue;
    fCountedFactors.push_back(fFactors[i]);
    sizes.push_back(fFactorSizes[i]);
  }
  fLevels.assign(sizes.size(), 0);
  fCounts = MCCellGrid<std::uint32_t>(CountingTo(sizes.size()), sizes);
}

std::uint32_t* MCPatternPlaces::FindCount(const double* row) {
  if (!fCounts.IsUsed()) return nullptr;
  std::transform(fCountedFactors.begin(), fCountedFactors.end(), fLevels.begin(),
                 [row](int factor) { return TruncateToInt(row[factor] + 0.5); });
  return fCounts.Find(fLevels.data());
}

void MCPatternPlaces::Count(const double* row) {
  std::uint32_t* count = FindCount(row);
  if (count != nullptr && *count < std::numeric_limits<std::uint32_t>::max()) ++*count;
}

std::size_t MCPatternPlaces::CountOf(const double* row) {
  const std::uint32_t* count = FindCount(row);
  return count == nullptr ? 0 : *count;
}

void MCPatternPlaces::BeginPatterns(const std::vector<int>& bounds) {
  fPatterns = MCCellGrid<MCRowPatterns*>(CountingTo(bounds.size()), bounds);
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
  fCounts = {};
  fPatterns = {};
  fNewPatterns.clear();
}

}  // namespace detail
}  // namespace MCCommon
