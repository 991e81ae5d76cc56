// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/detail/mccellgrid.h"
#include "regression/design/mcfactortables.h"
#include "regression/logistic/mcrowpatterns.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace MCCommon {
namespace detail {

/// What a tabulator remembers so that most rows need no key: grids in front of its pattern table.
/// The first pass counts the rows of each cell of the factors, so that the second knows how many
/// rows a pattern will have when it meets the first; the second keeps each pattern at the place of
/// its local parameter indices. Designs of many cells have no grid, and do without either.
class MCPatternPlaces {
public:
  /// Record positions and numbers of categories of the factors.
  MCPatternPlaces(const std::vector<int>& factors, const std::vector<int>& factorSizes);

  /// Begins to count, by the levels of the factors that occur in the tables' effects: two rows are
  /// in the same cell exactly if they are of the same pattern.
  void BeginCounting(const MCFactorTables& tables);

  /// Counts a row, which must reach to all factors.
  void Count(const double* row);

  /// Number of rows counted in the cell of this row; 0 where nothing is known.
  std::size_t CountOf(const double* row);

  /// Places for patterns by local parameter indices below `bounds`; all empty.
  void BeginPatterns(const std::vector<int>& bounds);

  /// The place of a pattern, null at first; null where there is none. `localIndices`: one for each
  /// bound.
  MCRowPatterns** Find(const std::vector<int>& localIndices) {
    return fPatterns.Find(localIndices.data());
  }

  /// An empty pattern. They are made by the dozen, so that they lie side by side and not one by one
  /// between the values of others: each row looks at that of its pattern.
  std::unique_ptr<MCRowPatterns> TakeNewPattern();

  /// Forgets counts and places, when all rows are stored.
  void Clear();

private:
  std::uint32_t* FindCount(const double* row);

  std::vector<int> fFactors;
  std::vector<int> fFactorSizes;
  std::vector<int> fCountedFactors;  // record positions
  std::vector<int> fLevels;          // of the current row
  MCCellGrid<std::uint32_t> fCounts;
  MCCellGrid<MCRowPatterns*> fPatterns;
  std::vector<std::unique_ptr<MCRowPatterns>> fNewPatterns;
};

}  // namespace detail
}  // namespace MCCommon
