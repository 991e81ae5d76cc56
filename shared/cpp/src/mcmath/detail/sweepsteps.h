// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

namespace MCCommonMath {
namespace detail {

/// Whether a row may be swept for the first time: its pivot exceeds what the tolerance leaves.
inline bool IsPivot(double pivot, double tol, double scale) {
  return !(tol * scale >= pivot);
}

/// Whether a row that is swept already keeps its diagonal above -1 / (tol * scale) when `pivot` is
/// swept; `element` stands in its row and the pivot's column. Swept rows hold negative diagonals.
/// A NaN is refused.
inline bool StaysBounded(double diagonal, double element, double pivot, double tol, double scale) {
  return (diagonal - element * element / pivot) * tol * scale > -1.0;
}

/// Multiplies an element of the pivot column by |c| and answers the multiplier of its row. The
/// magnitude is what makes a sweep and its taking back differ in signs on one path.
inline double ScalePivotColumn(double& element, double c) {
  const double a = element;
  element = std::abs(c) * a;
  return c < 0.0 ? -a : a;
}

}  // namespace detail
}  // namespace MCCommonMath
