// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/vectorpath.h"

#include <functional>
#include <vector>

namespace MCCommonMath {

class MCBitSet;
class MCSymMatrix;

namespace detail {

/// Sweeps rows 0 to count - 1 of `matrix` in this order, with the bits that as many calls of
/// MCSymMatrix::Sweep() with check = true leave in matrix and pivots, refused rows included; but
/// it walks the triangle once for a group of rows, not once for each. `stop` is asked before each
/// row; at its first yes the matrix is that of the rows done. Answers how many that are.
/// `count`: 0 to n; `scale` and `pivots` as told there. Needs room for some 100 n doubles; if that
/// can't be had the exception leaves all as it was. `path` must be supported.
int SweepRows(MCSymMatrix& matrix, int count, double tol, const std::vector<double>& scale,
              MCBitSet& pivots, const std::function<bool()>& stop,
              VectorPath path = WidestVectorPath());

}  // namespace detail
}  // namespace MCCommonMath
