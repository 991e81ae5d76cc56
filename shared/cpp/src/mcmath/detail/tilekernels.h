// SPDX-License-Identifier: Apache-2.0
#pragma once

// A few columns of many rows: turned from rows to columns and back, summed along the rows into
// linear predictors, and summed over the rows into bands of a triangle. A band holds
// TileShape::kRows rows of the triangle, each up to the last column of the band, so that whole
// vectors make it up; band b begins behind the bands before it.

#include "mcmath/detail/crossproductkernel.h"
#include "mcmath/detail/lanes.h"
#include "mcmath/detail/vectorkernels.h"

#include <utility>

namespace {

using MCCommonMath::detail::kProbabilityRows;
using MCCommonMath::detail::PredictorTerms;

/// Exchanges the off-diagonal halves of each square of 2H by 2H lanes. Lanes of the second operand
/// of a shuffle count from W.
template <std::size_t W, std::size_t H, std::size_t... kLane>
[[gnu::always_inline]] inline void ExchangeHalves(typename Lanes<W>::Vec (&square)[W],
                                                  std::index_sequence<kLane...> /*lanes*/) {
#pragma GCC unroll 8
  for (std::size_t r = 0; r < W; ++r) {
    if ((r & H) != 0) continue;
    const typename Lanes<W>::Vec top = square[r];
    const typename Lanes<W>::Vec bottom = square[r + H];
    square[r] = __builtin_shufflevector(top, bottom, ((kLane & H) != 0 ? W + kLane - H : kLane)...);
    square[r + H] =
        __builtin_shufflevector(top, bottom, ((kLane & H) != 0 ? W + kLane : kLane + H)...);
  }
}

/// Lane c of square[r] becomes lane r of square[c].
template <std::size_t W>
[[gnu::always_inline]] inline void TransposeLanes([[maybe_unused]]
                                                  typename Lanes<W>::Vec (&square)[W]) {
  [[maybe_unused]] const std::make_index_sequence<W> lanes;
  if constexpr (W >= 2) ExchangeHalves<W, 1>(square, lanes);
  if constexpr (W >= 4) ExchangeHalves<W, 2>(square, lanes);
  if constexpr (W >= 8) ExchangeHalves<W, 4>(square, lanes);
}

/// W columns of `count` rows, and the sum of their squares. Rows that don't fill the lanes go one
/// by one.
template <std::size_t W>
[[gnu::always_inline]] inline double LoadSomeColumns(const double* rows, std::size_t stride,
                                                     std::size_t count, double* columns,
                                                     std::size_t pitch) {
  typename Lanes<W>::Vec squares{};
  std::size_t row = 0;
  for (; row + W <= count; row += W, rows += W * stride) {
    typename Lanes<W>::Vec square[W];
#pragma GCC unroll 8
    for (std::size_t r = 0; r < W; ++r) {
      LoadLanes<W>(square[r], rows + r * stride);
      squares += square[r] * square[r];
    }
    TransposeLanes<W>(square);
#pragma GCC unroll 8
    for (std::size_t c = 0; c < W; ++c) StoreLanes<W>(columns + c * pitch + row, square[c]);
  }
  double sum = 0.0;
  for (; row < count; ++row, rows += stride) {
    for (std::size_t c = 0; c < W; ++c) {
      columns[c * pitch + row] = rows[c];
      sum += rows[c] * rows[c];
    }
  }
  if constexpr (W == 1) {
    return sum + squares;
  } else {
    for (std::size_t lane = 0; lane < W; ++lane) sum += squares[lane];
    return sum;
  }
}

template <std::size_t W>
double LoadColumns(const double* rows, std::size_t stride, std::size_t count, std::size_t nColumns,
                   double* columns, std::size_t pitch) {
  double squares = 0.0;
  std::size_t c = 0;
  for (; c + W <= nColumns; c += W) {
    squares += LoadSomeColumns<W>(rows + c, stride, count, columns + c * pitch, pitch);
  }
  if constexpr (W > 1) {
    if (c < nColumns) {
      squares +=
          LoadColumns<W / 2>(rows + c, stride, count, nColumns - c, columns + c * pitch, pitch);
    }
  }
  return squares;
}

/// Predictors j to j + N - 1 of W rows from `row` on: several at a time, as each is a chain of
/// additions.
template <std::size_t W, std::size_t N>
[[gnu::always_inline]] inline void SumPredictors(const PredictorTerms& terms, std::size_t j,
                                                 std::size_t row, double* eta) {
  typename Lanes<W>::Vec sums[N];
#pragma GCC unroll 4
  for (std::size_t k = 0; k < N; ++k) FillLanes<W>(sums[k], terms.starts[j + k]);
  const double* coefficients = terms.coefficients + j;
  for (std::size_t c = 0; c < terms.nColumns; ++c, coefficients += terms.m) {
    typename Lanes<W>::Vec column;
    LoadLanes<W>(column, terms.columns[c] + row);
#pragma GCC unroll 4
    for (std::size_t k = 0; k < N; ++k) sums[k] += coefficients[k] * column;
  }
#pragma GCC unroll 4
  for (std::size_t k = 0; k < N; ++k) StoreLanes<W>(eta + (j + k) * kProbabilityRows, sums[k]);
}

template <std::size_t W>
void Predictors(const PredictorTerms& terms, std::size_t row, double* eta) {
  for (std::size_t from = 0; from < kProbabilityRows; from += W) {
    std::size_t j = 0;
    for (; j + 3 <= terms.m; j += 3) SumPredictors<W, 3>(terms, j, row + from, eta + from);
    if (j + 2 <= terms.m) {
      SumPredictors<W, 2>(terms, j, row + from, eta + from);
      j += 2;
    }
    if (j < terms.m) SumPredictors<W, 1>(terms, j, row + from, eta + from);
  }
}

/// A square of W columns and rows at a time.
template <std::size_t W>
void FillPanels(const RowBlock& block, const double* const* columns, std::size_t count) {
  constexpr std::size_t kWidth = TileShape<W>::kColumns;
  const std::size_t stride = RowBlock::PanelStride(kWidth, block.capacity);
  for (std::size_t c = 0; c < block.nColumns; c += W) {
    double* panel = block.leftPanels + c / kWidth * stride + c % kWidth;
    for (std::size_t row = 0; row < count; row += W) {
      typename Lanes<W>::Vec square[W];
#pragma GCC unroll 8
      for (std::size_t i = 0; i < W; ++i) LoadLanes<W>(square[i], columns[c + i] + row);
      TransposeLanes<W>(square);
#pragma GCC unroll 8
      for (std::size_t r = 0; r < W; ++r) StoreLanes<W>(panel + (row + r) * kWidth, square[r]);
    }
  }
}

/// Adds factors[k * kRows + r] * columns[v][k * kWidth ...] to row r, vector v of a target.
template <std::size_t W, std::size_t V>
[[gnu::noinline]] void FoldVectors(double* target, std::size_t pitch, const double* factors,
                                   const double* const (&columns)[V], std::size_t count) {
  constexpr std::size_t kRows = TileShape<W>::kRows;
  constexpr std::size_t kWidth = TileShape<W>::kColumns;
  using Vec = typename Lanes<W>::Vec;
  Vec sums[kRows][V];
#pragma GCC unroll 8
  for (std::size_t r = 0; r < kRows; ++r) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < V; ++v) LoadLanes<W>(sums[r][v], target + r * pitch + v * W);
  }
  for (std::size_t k = 0; k < count; ++k) {
    Vec column[V];
#pragma GCC unroll 4
    for (std::size_t v = 0; v < V; ++v) {
      LoadLanes<W>(column[v], columns[v] + k * kWidth);
      PinLanes<W>(column[v]);
    }
#pragma GCC unroll 8
    for (std::size_t r = 0; r < kRows; ++r) {
      Vec factor;
      FillLanes<W>(factor, factors[k * kRows + r]);
#pragma GCC unroll 4
      for (std::size_t v = 0; v < V; ++v) sums[r][v] += factor * column[v];
    }
  }
#pragma GCC unroll 8
  for (std::size_t r = 0; r < kRows; ++r) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < V; ++v) StoreLanes<W>(target + r * pitch + v * W, sums[r][v]);
  }
}

/// `nVectors` vectors of each row of a target.
template <std::size_t W>
void FoldRows(const RowBlock& block, std::size_t count, const double* factors, std::size_t nVectors,
              double* target, std::size_t pitch) {
  constexpr std::size_t kWidth = TileShape<W>::kColumns;
  const std::size_t stride = RowBlock::PanelStride(kWidth, block.capacity);
  const auto panel = [&](std::size_t v) {
    return block.rightPanels + v * W / kWidth * stride + v * W % kWidth;
  };
  std::size_t v = 0;
  for (; nVectors - v > 4 || nVectors - v == 3; v += 3) {
    FoldVectors<W, 3>(target + v * W, pitch, factors, {panel(v), panel(v + 1), panel(v + 2)},
                      count);
  }
  for (; nVectors - v >= 2; v += 2) {
    FoldVectors<W, 2>(target + v * W, pitch, factors, {panel(v), panel(v + 1)}, count);
  }
  if (v < nVectors) FoldVectors<W, 1>(target + v * W, pitch, factors, {panel(v)}, count);
}

template <std::size_t W>
void AddScaledRows(const RowBlock& block, std::size_t count, const double* factors, double* target,
                   std::size_t pitch) {
  FoldRows<W>(block, count, factors, (block.nColumns + W - 1) / W, target, pitch);
}

/// The weighted columns of one band.
template <std::size_t W>
void WeightBand(const RowBlock& block, std::size_t count, std::size_t row) {
  constexpr std::size_t kRows = TileShape<W>::kRows;
  constexpr std::size_t kWidth = TileShape<W>::kColumns;
  constexpr std::size_t kLanes = kRows < W ? kRows : W;
  const double* columns = block.leftPanels +
                          row / kWidth * RowBlock::PanelStride(kWidth, block.capacity) +
                          row % kWidth;
  for (std::size_t k = 0; k < count; ++k) {
#pragma GCC unroll 4
    for (std::size_t r = 0; r < kRows; r += kLanes) {
      typename Lanes<kLanes>::Vec entries;
      LoadLanes<kLanes>(entries, columns + k * kWidth + r);
      entries *= block.weights[k];
      StoreLanes<kLanes>(block.scratch + k * kRows + r, entries);
    }
  }
}

template <std::size_t W>
void FoldBands(const RowBlock& block, std::size_t count, double* bands) {
  constexpr std::size_t kRows = TileShape<W>::kRows;
  for (std::size_t row = 0; row < block.nColumns; row += kRows) {
    const std::size_t pitch = row + kRows;
    WeightBand<W>(block, count, row);
    FoldRows<W>(block, count, block.scratch, pitch / W, bands, pitch);
    bands += kRows * pitch;
  }
}

}  // namespace
