// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mccellindex.h"

namespace MCCommon {
namespace detail {

MCCellIndex::MCCellIndex(const std::vector<int>& factors, const std::vector<int>& nCategories) {
  std::size_t nCells = 1;
  for (std::size_t k = 0; k < factors.size(); ++k) {
    if (factors[k] < 0 || nCategories[k] <= 0) return;
    const auto n = static_cast<std::size_t>(nCategories[k]);
    if (n > kMaxCells / nCells) return;
    fTerms.push_back({static_cast<std::size_t>(factors[k]), n, nCells});
    nCells *= n;
  }
  fCells.assign(nCells, nullptr);
}

}  // namespace detail
}  // namespace MCCommon
