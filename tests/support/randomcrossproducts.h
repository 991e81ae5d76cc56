// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrix.h"

#include <cstddef>
#include <random>
#include <vector>

namespace mctest {

/// X'X of `nRows` rows of `n` normal numbers. Where `aliasedEach` is positive, column j is twice
/// column j - 1 wherever j % aliasedEach == aliasedEach - 1.
inline MCCommonMath::MCSymMatrix RandomCrossProducts(int n, int nRows, unsigned seed,
                                                     int aliasedEach = 0) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.2, 1.0);
  MCCommonMath::MCSymMatrix matrix(n);
  std::vector<double> row(static_cast<std::size_t>(n));
  for (int k = 0; k < nRows; ++k) {
    for (std::size_t j = 0; j < row.size(); ++j) {
      const bool isAliased =
          aliasedEach > 0 && static_cast<int>(j) % aliasedEach == aliasedEach - 1;
      row[j] = isAliased && j > 0 ? 2.0 * row[j - 1] : normal(engine);
    }
    matrix.UpdateXX(row, 1.0);
  }
  return matrix;
}

}  // namespace mctest
