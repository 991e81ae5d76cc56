// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace mctest {

/// The symmetric matrix with these packed entries, which are n(n+1)/2.
inline MCCommonMath::MCSymMatrix Packed(const std::vector<double>& entries) {
  int n = 0;
  while (static_cast<std::size_t>(n) * (static_cast<std::size_t>(n) + 1) / 2 < entries.size()) ++n;
  MCCommonMath::MCSymMatrix result(n);
  result.AsVector() = entries;
  return result;
}

/// The rectangular matrix with these rows.
inline MCCommonMath::MCRectMatrix FromRows(const std::vector<std::vector<double>>& rows) {
  const std::size_t cols = rows.empty() ? 0 : rows.front().size();
  MCCommonMath::MCRectMatrix result(static_cast<int>(rows.size()), static_cast<int>(cols));
  auto to = result.AsVector().begin();
  for (const auto& row : rows) to = std::copy(row.begin(), row.end(), to);
  return result;
}

inline std::vector<double> DiagonalOf(const MCCommonMath::MCSymMatrix& S) {
  std::vector<double> diagonal;
  for (int i = 0; i < S.GetNRows(); ++i) diagonal.push_back(S.GetElem(i, i));
  return diagonal;
}

/// Three rows, the second twice the first: cross-products of the columns (1, 2, 1), twice that, and
/// (0, 1, 3).
inline MCCommonMath::MCSymMatrix WithDependentRow() {
  return Packed({6, 12, 24, 5, 10, 10});
}

inline MCCommonMath::MCBitSet Bits(const std::vector<bool>& bits) {
  MCCommonMath::MCBitSet result;
  for (const bool bit : bits) result.Append(bit);
  return result;
}

}  // namespace mctest
