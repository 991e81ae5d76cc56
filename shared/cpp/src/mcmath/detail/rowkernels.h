// SPDX-License-Identifier: Apache-2.0
#pragma once

// Rows times scalars and rows times rows: the inner loops of the sweep of a group of pivots and
// of the Cholesky factorisation.

#include "mcmath/detail/lanes.h"
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

using MCCommonMath::detail::kDotRows;
using MCCommonMath::detail::kLineDoubles;

template <std::size_t W>
void AddOuter(double* rows, std::size_t nRows, const double* factors, const double* x,
              std::size_t width) {
  for (std::size_t i = 0; i < nRows; ++i, rows += width) {
    typename Lanes<W>::Vec factor;
    FillLanes<W>(factor, factors[i]);
    for (std::size_t j = 0; j < width; j += W) {
      typename Lanes<W>::Vec row;
      typename Lanes<W>::Vec entries;
      LoadLanes<W>(row, rows + j);
      LoadLanes<W>(entries, x + j);
      row += factor * entries;
      StoreLanes<W>(rows + j, row);
    }
  }
}

/// The lanes of R dot products, each in kLineDoubles / W vectors.
template <std::size_t W, std::size_t R>
class DotLanes {
public:
  /// Adds the products of eight elements from each row on.
  void Add(const double* const* rows, std::size_t from, const double* other) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectors; ++v) {
      typename Lanes<W>::Vec right;
      LoadLanes<W>(right, other + v * W);
#pragma GCC unroll 4
      for (std::size_t r = 0; r < R; ++r) {
        typename Lanes<W>::Vec left;
        LoadLanes<W>(left, rows[r] + from + v * W);
        fSums[r][v] += left * right;
      }
    }
  }

  void Finish(double* dots) const {
    for (std::size_t r = 0; r < R; ++r) {
      double lanes[kLineDoubles];
      for (std::size_t v = 0; v < kVectors; ++v) StoreLanes<W>(lanes + v * W, fSums[r][v]);
      dots[r] = MCCommonMath::detail::AddLanes(lanes);
    }
  }

private:
  static constexpr std::size_t kVectors = kLineDoubles / W;
  typename Lanes<W>::Vec fSums[R][kVectors] = {};
};

/// R of the dot products. The last elements are filled up by zeros: a lane is never -0.0, so
/// adding 0.0 leaves it as it is.
template <std::size_t W, std::size_t R>
void DotSomeRows(const double* const* rows, const double* other, std::size_t n, double* dots) {
  DotLanes<W, R> lanes;
  std::size_t i = 0;
  for (; i + kLineDoubles <= n; i += kLineDoubles) lanes.Add(rows, i, other + i);
  if (i < n) {
    double rest[R][kLineDoubles] = {};
    double otherRest[kLineDoubles] = {};
    const double* restRows[R];
    for (std::size_t r = 0; r < R; ++r) restRows[r] = rest[r];
    for (std::size_t c = 0; i + c < n; ++c) {
      otherRest[c] = other[i + c];
      for (std::size_t r = 0; r < R; ++r) rest[r][c] = rows[r][i + c];
    }
    lanes.Add(restRows, 0, otherRest);
  }
  lanes.Finish(dots);
}

/// As many at a time as the registers hold sums of.
template <std::size_t W>
void DotRows(const double* const* rows, const double* other, std::size_t n, double* dots) {
  constexpr std::size_t kAtOnce = W == 2 ? 2 : kDotRows;
  for (std::size_t r = 0; r < kDotRows; r += kAtOnce) {
    DotSomeRows<W, kAtOnce>(rows + r, other, n, dots + r);
  }
}

}  // namespace
