// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// Finds what belongs to a combination of levels without hashing: a grid with one place for each
/// possible combination. Where the grid would be large there is none, and the owner looks into its
/// hash table instead. A copyable value.
template <class Value>
class MCCellGrid {
public:
  /// Most places of a grid: 128 KB of pointers, so that the grids of a design stay in the cache.
  static constexpr std::size_t kMaxCells = 16384;

  /// No grid.
  MCCellGrid() = default;

  /// `factors`: for each factor of a combination its index in the levels given below, negative if
  /// there are none. `nCategories`: number of categories of each of these factors. No grid where
  /// any of them has none. Without factors there is one place.
  MCCellGrid(const std::vector<int>& factors, const std::vector<int>& nCategories) {
    std::size_t nCells = 1;
    for (std::size_t k = 0; k < factors.size(); ++k) {
      if (factors[k] < 0 || nCategories[k] <= 0) return;
      const auto n = static_cast<std::size_t>(nCategories[k]);
      if (n > kMaxCells / nCells) return;
      fTerms.push_back({static_cast<std::size_t>(factors[k]), n, nCells});
      nCells *= n;
    }
    fCells.assign(nCells, Value());
  }

  /// Whether there is a grid.
  bool IsUsed() const { return !fCells.empty(); }

  /// The place of a combination, with the level of factor i of the design being `levelOf(i)`; null
  /// if there is no grid or a level is out of range. It holds Value() until somebody sets it.
  template <class LevelOf>
  Value* FindWith(LevelOf levelOf) {
    const std::size_t cell = CellOf(levelOf);
    return cell < fCells.size() ? &fCells[cell] : nullptr;
  }

  /// The same with the levels of all factors of the design at `levels`.
  Value* Find(const int* levels) {
    return FindWith([levels](std::size_t factor) { return levels[factor]; });
  }
  const Value* Find(const int* levels) const {
    const std::size_t cell = CellOf([levels](std::size_t factor) { return levels[factor]; });
    return cell < fCells.size() ? &fCells[cell] : nullptr;
  }

private:
  struct Term {
    std::size_t fFactor;
    std::size_t fNCategories;
    std::size_t fStride;
  };

  template <class LevelOf>
  std::size_t CellOf(LevelOf levelOf) const {
    std::size_t cell = 0;
    for (const Term& term : fTerms) {
      // A negative level becomes a huge one.
      const auto level = static_cast<std::size_t>(levelOf(term.fFactor));
      if (level >= term.fNCategories) return fCells.size();
      cell += level * term.fStride;
    }
    return cell;
  }

  std::vector<Term> fTerms;
  std::vector<Value> fCells;
};

}  // namespace detail
}  // namespace MCCommon
