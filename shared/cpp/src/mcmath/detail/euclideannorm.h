// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/mcdot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace MCCommonMath {
namespace detail {

/// The norm of element(0) to element(n - 1), all divided by the power of two that brings the
/// largest to [0.5, 1).
template <class Element>
double ScaledNorm(std::size_t n, Element element) {
  double largest = 0.0;
  for (std::size_t i = 0; i < n; ++i) largest = std::max(largest, std::fabs(element(i)));
  if (largest == 0.0 || std::isinf(largest)) return largest;
  int exponent = 0;
  std::frexp(largest, &exponent);
  const double squares = SumInLanes(n, [element, exponent](std::size_t i) {
    const double scaled = std::ldexp(element(i), -exponent);
    return scaled * scaled;
  });
  return std::ldexp(std::sqrt(squares), exponent);
}

/// Euclidean norm by SumInLanes, scaled where squares leave the range of doubles. An infinite
/// element gives infinity, unless there is a NaN.
template <class Element>
double EuclideanNorm(std::size_t n, Element element) {
  // Below this sum, squares that underflowed could count.
  constexpr double kSafe =
      std::numeric_limits<double>::min() / std::numeric_limits<double>::epsilon();
  const double squares =
      SumInLanes(n, [element](std::size_t i) { return element(i) * element(i); });
  if (std::isnan(squares) || (squares >= kSafe && std::isfinite(squares))) {
    return std::sqrt(squares);
  }
  return ScaledNorm(n, element);
}

}  // namespace detail
}  // namespace MCCommonMath
