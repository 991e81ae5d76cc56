// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Number of partial sums of SumInLanes. One register of 512 bits, two of 256 or four of 128 hold
/// them, so kernels of all three widths can add in the same order.
constexpr std::size_t kLanes = 8;

/// The one order in which lanes are added: halves onto halves. Always inline, as it is compiled
/// for several processors and an instance made for the widest could serve all callers.
[[gnu::always_inline]] inline double AddLanes(const double (&lane)[kLanes]) {
  return ((lane[0] + lane[4]) + (lane[2] + lane[6])) + ((lane[1] + lane[5]) + (lane[3] + lane[7]));
}

/// Sum of term(0) to term(n - 1): lanes start at 0.0, term i goes to lane i % 8 in ascending
/// order, then AddLanes.
template <class Term>
inline double SumInLanes(std::size_t n, Term term) {
  double lane[kLanes] = {};
  std::size_t i = 0;
  for (; n - i >= kLanes; i += kLanes) {
    for (std::size_t k = 0; k < kLanes; ++k) lane[k] += term(i + k);
  }
  for (std::size_t k = 0; i + k < n; ++k) lane[k] += term(i + k);
  return AddLanes(lane);
}

/// Dot product of n contiguous elements by SumInLanes: the inner loop of the Cholesky
/// factorisation.
double Dot(const double* x, const double* y, std::size_t n);

}  // namespace detail
}  // namespace MCCommonMath
