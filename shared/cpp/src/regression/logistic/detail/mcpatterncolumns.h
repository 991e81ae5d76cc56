// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// The design columns in which the rows of one pattern can be non-zero, and how their values are
/// formed from a stored row: what the rows of a pattern share, worked out once for all of them.
/// Redundant columns are left out.
struct MCPatternColumns {
  /// One factor of a column's value: a position in the stored row, negative if it is nowhere (the
  /// column is then 0.0), and how often it is multiplied.
  struct Term {
    int fPosition;
    int fPower;
  };

  std::size_t NColumns() const { return fIndices.size(); }

  /// Per column its index among the non-redundant basic parameters, ascending.
  std::vector<int> fIndices;

  /// Terms of column c: fTerms[fTermBegin[c]] up to, not including, fTerms[fTermBegin[c + 1]]. A
  /// column without terms is 1.0, any other 1.0 times its terms in order.
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
