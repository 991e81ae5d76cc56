// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/detail/mcdesigncolumns.h"

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// The design columns in which the rows of one pattern can be non-zero, and how their values are
/// formed from a stored row: what the rows of a pattern share, worked out once for all of them.
/// Redundant columns are left out.
struct MCPatternColumns {
  /// The position is one in a stored row.
  using Term = MCColumnTerm;

  std::size_t NColumns() const { return fIndices.size(); }

  /// Per column its index among the non-redundant basic parameters, ascending.
  std::vector<int> fIndices;

  /// Terms of column c: fTerms[fTermBegin[c]] up to, not including, fTerms[fTermBegin[c + 1]], from
  /// which ColumnValue() forms its value.
  std::vector<Term> fTerms;
  std::vector<std::size_t> fTermBegin{0};
};

/// Where a stored row holds what isn't a column: positions within it, a negative weight position
/// meaning that there is no such weight.
struct MCPatternLayout {
  std::size_t fStride;
  int fDependentOffset;
  int fFreqWeightOffset;
  int fRegrWeightOffset;
};

}  // namespace detail
}  // namespace MCCommon
