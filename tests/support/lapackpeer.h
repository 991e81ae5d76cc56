// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/columns.h"

#include <lapacke.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace mctest {

/// inv(A) by LAPACK; A must be regular.
inline Columns InverseByLapack(Columns a) {
  const int n = a.Rows();
  std::vector<int> pivots(static_cast<std::size_t>(n));
  LAPACKE_dgetrf(LAPACK_COL_MAJOR, n, n, a.Data(), a.Ld(), pivots.data());
  LAPACKE_dgetri(LAPACK_COL_MAJOR, n, a.Data(), a.Ld(), pivots.data());
  return a;
}

/// 1 / (|A| |inv(A)|) in the 1-norm.
inline double ReciprocalCondition(const Columns& a) {
  return 1.0 / (Norm1(a) * Norm1(InverseByLapack(a)));
}

/// The determinant as sign and decimal logarithm of its magnitude.
struct LogDeterminant {
  double sign = 1.0;
  double log10 = 0.0;

  void Multiply(double factor) {
    sign = factor < 0.0 ? -sign : sign;
    log10 += std::log10(std::fabs(factor));
  }
};

inline LogDeterminant DeterminantByLapack(Columns a) {
  const int n = a.Rows();
  std::vector<int> pivots(static_cast<std::size_t>(n));
  LAPACKE_dgetrf(LAPACK_COL_MAJOR, n, n, a.Data(), a.Ld(), pivots.data());
  LogDeterminant result;
  for (int k = 0; k < n; ++k) {
    const bool bExchanged = pivots[static_cast<std::size_t>(k)] != k + 1;
    result.Multiply(bExchanged ? -a(k, k) : a(k, k));
  }
  return result;
}

/// Eigenvalues of a symmetric matrix, ascending.
inline Vector EigenvaluesByLapack(Columns a) {
  Vector values(static_cast<std::size_t>(a.Rows()));
  LAPACKE_dsyev(LAPACK_COL_MAJOR, 'N', 'U', a.Rows(), a.Data(), a.Ld(), values.data());
  return values;
}

/// Singular values, descending.
inline Vector SingularValuesByLapack(Columns a) {
  const int count = std::min(a.Rows(), a.Cols());
  Vector values(static_cast<std::size_t>(count));
  Vector superdiagonal(static_cast<std::size_t>(std::max(count, 1)));
  LAPACKE_dgesvd(LAPACK_COL_MAJOR, 'N', 'N', a.Rows(), a.Cols(), a.Data(), a.Ld(), values.data(),
                 nullptr, 1, nullptr, 1, superdiagonal.data());
  return values;
}

}  // namespace mctest
