// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/columnoperations.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace MCCommonMath {
namespace detail {

// What the factorisations of Linpack do with an upper triangle, in any storage of matrixviews.h.
// Columns count from 0; a band is cut off where FirstRow says.

/// x'y of rows FirstRow(j) to j - 1 of column j of the upper triangle and a vector.
template <class View>
double DotAbove(const View& view, Index j, const double* x) {
  const Index first = view.FirstRow(j);
  return DotProduct(j - first, view.At(first, j), x + first);
}

/// x += t times rows FirstRow(j) to j - 1 of column j of the upper triangle.
template <class View>
void AddAbove(const View& view, Index j, double t, double* x) {
  const Index first = view.FirstRow(j);
  AddScaled(j - first, t, view.At(first, j), x + first);
}

/// Solves U x = b in place, from the last of n columns on.
template <class View>
void SolveUpper(const View& view, Index n, double* b) {
  for (Index k = n - 1; k >= 0; --k) {
    b[k] /= *view.At(k, k);
    AddAbove(view, k, -b[k], b);
  }
}

/// Solves U'x = b in place.
template <class View>
void SolveUpperTransposed(const View& view, Index n, double* b) {
  for (Index k = 0; k < n; ++k) b[k] = (b[k] - DotAbove(view, k, b)) / *view.At(k, k);
}

/// Replaces U of n columns, full or packed, by its inverse.
template <class View>
void InvertUpper(const View& view, Index n) {
  for (Index k = 0; k < n; ++k) {
    double* const column = view.At(0, k);
    column[k] = 1.0 / column[k];
    MultiplyBy(k, -column[k], column);
    for (Index j = k + 1; j < n; ++j) {
      double* const other = view.At(0, j);
      const double t = other[k];
      other[k] = 0.0;
      AddScaled(k + 1, t, column, other);
    }
  }
}

/// Exchanges rows and columns p < q of a symmetric matrix, of which the upper triangle of the first
/// `end` columns is stored, full or packed.
template <class View>
void ExchangeSymmetric(const View& view, Index p, Index q, Index end) {
  Exchange(p, view.At(0, p), view.At(0, q));
  std::swap(*view.At(p, p), *view.At(q, q));
  for (Index j = p + 1; j < q; ++j) std::swap(*view.At(p, j), *view.At(j, q));
  for (Index j = q + 1; j < end; ++j) std::swap(*view.At(p, j), *view.At(q, j));
}

/// 1-norm of a symmetric matrix whose upper triangle is stored. `sums`: n entries of work.
template <class View>
double SymmetricNorm(const View& view, Index n, double* sums) {
  SetToZero(n, sums);
  for (Index j = 0; j < n; ++j) {
    for (Index i = view.FirstRow(j); i < j; ++i) {
      const double magnitude = std::fabs(*view.At(i, j));
      sums[i] += magnitude;
      sums[j] += magnitude;
    }
    sums[j] += std::fabs(*view.At(j, j));
  }
  return n < 1 ? 0.0 : *std::max_element(sums, sums + n);
}

}  // namespace detail
}  // namespace MCCommonMath
