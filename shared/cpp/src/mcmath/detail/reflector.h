// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/columnoperations.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

/// Turns the n >= 1 elements of x into the vector u of the Householder reflection I - uu'/u[0] that
/// takes them to (result, 0, ..., 0). u[0] is within 1 and 2. Answers -0.0, and leaves x alone, if
/// it is zero.
inline double MakeReflector(Index n, double* x) {
  double norm = NormOf(n, x);
  if (norm == 0.0) return -norm;
  norm = x[0] == 0.0 ? norm : std::copysign(norm, x[0]);
  DivideBy(n, norm, x);
  x[0] += 1.0;
  return -norm;
}

/// Reflects y, of n elements, by u.
inline void Reflect(Index n, const double* u, double* y) {
  AddScaled(n, -DotProduct(n, u, y) / u[0], u, y);
}

}  // namespace detail
}  // namespace MCCommonMath
