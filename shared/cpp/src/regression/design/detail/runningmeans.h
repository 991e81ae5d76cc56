// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorpath.h"

#include <cstddef>

namespace MCCommon {
namespace detail {

/// Moves `n` running weighted means on by one row: mean m becomes (x - m) / total * weight + m for
/// its value x, in this order of operations, `total` being the sum of weights with that of the row
/// (West 1979). A result below 2 |m| 2^-52 is what rounding left of 0, and becomes 0. Arrays must
/// not overlap. `path` chooses the width of vectors and must be supported; the results are the
/// same to the bit.
void UpdateRunningMeans(const double* values, double* means, std::size_t n, double total,
                        double weight, MCCommonMath::detail::VectorPath path);

}  // namespace detail
}  // namespace MCCommon
