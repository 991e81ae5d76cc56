// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace mctest {

/// What the definition of eigenvectors leaves, in units of n eps: of H x - lambda x relative to the
/// norm of H, and of the vectors' cross-products from the identity. Sums in long double.
struct EigenErrors {
  double fResidual = 0.0;
  double fOrthogonality = 0.0;
};

/// The full square matrix, row by row.
inline std::vector<double> FullSquare(const MCCommonMath::MCSymMatrix& S) {
  std::vector<double> full;
  std::vector<double> row;
  for (int i = 0; S.GetRow(i, row); ++i) full.insert(full.end(), row.begin(), row.end());
  return full;
}

inline long double DotOf(const double* x, const double* y, std::size_t n) {
  long double sum = 0;
  for (std::size_t i = 0; i < n; ++i) sum += static_cast<long double>(x[i]) * y[i];
  return sum;
}

/// For n values and n vectors in columns. The norm is the largest value, which must be above 0.
inline EigenErrors ErrorsOf(const MCCommonMath::MCSymMatrix& H, const std::vector<double>& values,
                            const MCCommonMath::MCRectMatrix& vectors) {
  const std::size_t n = values.size();
  const std::vector<double> full = FullSquare(H);
  MCCommonMath::MCRectMatrix rows(vectors);
  rows.Transpose();
  long double norm = 0;
  for (const long double value : values) norm = std::max(norm, std::abs(value));
  long double residual = 0;
  long double orthogonality = 0;
  for (std::size_t k = 0; k < n; ++k) {
    const double* const x = rows.AsVectorConst().data() + k * n;
    for (std::size_t i = 0; i < n; ++i) {
      const long double product = DotOf(full.data() + i * n, x, n);
      const long double rest = product - static_cast<long double>(values[k]) * x[i];
      residual = std::max(residual, std::abs(rest));
    }
    for (std::size_t l = 0; l <= k; ++l) {
      const long double product = DotOf(x, rows.AsVectorConst().data() + l * n, n);
      orthogonality = std::max(orthogonality, std::abs(product - (l == k ? 1 : 0)));
    }
  }
  const long double unit = static_cast<long double>(n) * std::numeric_limits<double>::epsilon();
  return {static_cast<double>(residual / norm / unit), static_cast<double>(orthogonality / unit)};
}

}  // namespace mctest
