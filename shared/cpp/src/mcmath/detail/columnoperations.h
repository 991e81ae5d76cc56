// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/euclideannorm.h"
#include "mcmath/detail/mcdot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Positions in arrays: products of two ints fit, and differences may be negative.
using Index = std::ptrdiff_t;

// What is done to contiguous stretches of n elements, n < 1 meaning none. The loops are plain so
// that the compiler makes vectors of them.

/// y += t x.
inline void AddScaled(Index n, double t, const double* x, double* y) {
  for (Index i = 0; i < n; ++i) y[i] += t * x[i];
}

/// x'y, added in the lanes of SumInLanes.
inline double DotProduct(Index n, const double* x, const double* y) {
  if (n < 1) return 0.0;
  return SumInLanes(static_cast<std::size_t>(n), [x, y](std::size_t i) { return x[i] * y[i]; });
}

/// Sum of magnitudes, added in lanes.
inline double SumOfMagnitudes(Index n, const double* x) {
  if (n < 1) return 0.0;
  return SumInLanes(static_cast<std::size_t>(n), [x](std::size_t i) { return std::fabs(x[i]); });
}

/// Euclidean norm, see EuclideanNorm.
inline double NormOf(Index n, const double* x) {
  if (n < 1) return 0.0;
  return EuclideanNorm(static_cast<std::size_t>(n), [x](std::size_t i) { return x[i]; });
}

inline void MultiplyBy(Index n, double t, double* x) {
  for (Index i = 0; i < n; ++i) x[i] *= t;
}

/// The quotients themselves: the reciprocal of a denormal number is infinite.
inline void DivideBy(Index n, double t, double* x) {
  for (Index i = 0; i < n; ++i) x[i] /= t;
}

inline void Exchange(Index n, double* x, double* y) {
  std::swap_ranges(x, x + std::max<Index>(n, 0), y);
}

/// y = x; both may be one array.
inline void CopyTo(Index n, const double* x, double* y) {
  if (x != y) std::copy_n(x, std::max<Index>(n, 0), y);
}

inline void SetToZero(Index n, double* x) {
  std::fill_n(x, std::max<Index>(n, 0), 0.0);
}

/// x = c x + s y and y = c y - s x.
inline void Rotate(double& x, double& y, double c, double s) {
  const double turned = c * x + s * y;
  y = c * y - s * x;
  x = turned;
}

inline void Rotate(Index n, double* x, double* y, double c, double s) {
  for (Index i = 0; i < n; ++i) Rotate(x[i], y[i], c, s);
}

/// Position, from 0, of the first element of the largest magnitude; n >= 1. Those of a vector with
/// an increment lie `inc` apart.
inline Index LargestMagnitude(Index n, const double* x, Index inc = 1) {
  Index largest = 0;
  double magnitude = std::fabs(x[0]);
  for (Index i = 1; i < n; ++i) {
    const double candidate = std::fabs(x[i * inc]);
    if (candidate > magnitude) {
      largest = i;
      magnitude = candidate;
    }
  }
  return largest;
}

}  // namespace detail
}  // namespace MCCommonMath
