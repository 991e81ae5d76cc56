// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// Finds the parameter of a combination of factor levels without hashing: a grid with one place
/// for each possible combination of one effect, beside the effect's hash table. A place points at
/// the value in the table, so that the two can't disagree. Effects whose grid would be large have
/// none, and are looked up in the table alone.
class MCCellIndex {
public:
  /// Most places of a grid: 128 KB, so that the grids of a design stay in the cache.
  static constexpr std::size_t kMaxCells = 16384;

  /// `factors`: for each factor of the effect its index in the levels given below, negative if
  /// there are none. `nCategories`: number of categories of each of these factors.
  MCCellIndex(const std::vector<int>& factors, const std::vector<int>& nCategories);

  /// Whether there is a grid.
  bool IsUsed() const { return !fCells.empty(); }

  /// The place of a combination, with the levels of all factors of the design at `levels`; null if
  /// a level is out of range. It holds null until somebody sets it.
  const int** Find(const int* levels) {
    const std::size_t cell = CellOf(levels);
    return cell < fCells.size() ? &fCells[cell] : nullptr;
  }
  const int* const* Find(const int* levels) const {
    const std::size_t cell = CellOf(levels);
    return cell < fCells.size() ? &fCells[cell] : nullptr;
  }

private:
  struct Term {
    std::size_t fFactor;
    std::size_t fNCategories;
    std::size_t fStride;
  };

  std::size_t CellOf(const int* levels) const {
    std::size_t cell = 0;
    for (const Term& term : fTerms) {
      // A negative level becomes a huge one.
      const auto level = static_cast<std::size_t>(levels[term.fFactor]);
      if (level >= term.fNCategories) return fCells.size();
      cell += level * term.fStride;
    }
    return cell;
  }

  std::vector<Term> fTerms;
  std::vector<const int*> fCells;
};

}  // namespace detail
}  // namespace MCCommon
