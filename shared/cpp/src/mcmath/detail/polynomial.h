// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// The polynomial with these ascending coefficients. Even and odd powers are summed beside each
/// other, each by Horner's scheme.
template <std::size_t N>
inline double Polynomial(const double (&coefficients)[N], double x) {
  const double square = x * x;
  double even = 0.0;
  double odd = 0.0;
  for (std::size_t i = (N + 1) / 2; i-- > 0;) {
    even = even * square + coefficients[2 * i];
    if (2 * i + 1 < N) odd = odd * square + coefficients[2 * i + 1];
  }
  return even + x * odd;
}

}  // namespace detail
}  // namespace MCCommonMath
