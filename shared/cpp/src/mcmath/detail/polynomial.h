// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// The polynomial with these ascending coefficients, without the first of them: what is added to
/// it last, with the one rounding error that counts. Even and odd powers are summed beside each
/// other, each by Horner's scheme.
template <std::size_t N>
inline double PolynomialRest(const double (&coefficients)[N], double x) {
  const double square = x * x;
  double even = 0.0;
  double odd = 0.0;
  for (std::size_t i = (N + 1) / 2; i-- > 0;) {
    if (2 * i + 1 < N) odd = odd * square + coefficients[2 * i + 1];
    if (i > 0) even = even * square + coefficients[2 * i];
  }
  return x * odd + square * even;
}

/// The whole polynomial.
template <std::size_t N>
inline double Polynomial(const double (&coefficients)[N], double x) {
  return coefficients[0] + PolynomialRest(coefficients, x);
}

}  // namespace detail
}  // namespace MCCommonMath
