// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/detail/mccellgrid.h"
#include "regression/design/mcfactortables.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/logistic/mcrowpatterns.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace MCCommon {
namespace detail {

/// What a tabulator remembers so that most rows need no key: grids in front of its pattern table.
/// One is by the levels of the factors that occur in effects: two rows are in the same cell of it
/// exactly if they are of the same pattern. The first pass counts the rows of each cell, so that
/// the second knows how many rows a pattern will have when it meets the first. The second keeps
/// each pattern at the place of its local parameter indices or, where interactions make these too
/// many, in its cell. Designs of many cells have no grid, and do without either.
class MCPatternPlaces {
public:
  /// Record positions and numbers of categories of the factors. The rows given below must reach to
  /// all of them.
  MCPatternPlaces(const std::vector<int>& factors, const std::vector<int>& factorSizes);

  /// Begins to count the rows of each cell.
  void BeginCounting(const MCFactorTables& tables);
  void Count(const double* row);

  /// Number of rows counted in the cell of this row; 0 where nothing is known.
  std::size_t CountOf(const double* row);

  /// Begins to keep patterns, by local parameter indices below `bounds`; none at first. Counts
  /// stay, if they are by the effects of `tables`.
  void BeginPatterns(const MCFactorTables& tables, const std::vector<int>& bounds);

  /// The pattern of these local parameter indices, which are those of the row; null if none is
  /// kept.
  MCRowPatterns* Find(const double* row, const std::vector<int>& localIndices) {
    if (localIndices.size() != fNLocalEffects) return nullptr;
    if (!fPatterns.IsUsed()) return FindInCell(row, localIndices);
    MCRowPatterns** pattern = fPatterns.Find(localIndices.data());
    return pattern == nullptr ? nullptr : *pattern;
  }

  /// Keeps a pattern that isn't kept yet.
  void Set(const double* row, const std::vector<int>& localIndices, MCRowPatterns* pattern);

  /// An empty pattern. They are made by the dozen, so that they lie side by side and not one by one
  /// between the values of others: each row looks at that of its pattern.
  std::unique_ptr<MCRowPatterns> TakeNewPattern();

  /// Forgets counts and patterns, when all rows are stored.
  void Clear();

private:
  struct Cell {
    MCRowPatterns* fPattern = nullptr;
    std::size_t fFirstIndex = 0;  // of its local indices in fLocalIndices
  };

  bool SetCellFactors(const MCFactorTables& tables);

  MCRowPatterns* FindInCell(const double* row, const std::vector<int>& localIndices);

  template <class Value>
  static Value* FindPlace(MCCellGrid<Value>& grid, const double* row) {
    return grid.FindWith(
        [row](std::size_t position) { return TruncateToInt(row[position] + 0.5); });
  }

  std::vector<int> fFactors;
  std::vector<int> fFactorSizes;
  std::vector<int> fCellFactors;  // record positions of the factors that occur in effects
  std::vector<int> fCellSizes;    // their numbers of categories
  MCCellGrid<std::uint32_t> fCounts;
  MCCellGrid<MCRowPatterns*> fPatterns;  // by local indices
  MCCellGrid<Cell> fCells;               // used where that isn't
  std::vector<int> fLocalIndices;
  std::size_t fNLocalEffects = 0;
  std::vector<std::unique_ptr<MCRowPatterns>> fNewPatterns;
};

}  // namespace detail
}  // namespace MCCommon
