// SPDX-License-Identifier: Apache-2.0
#pragma once

// Sums over the entries of a row for several rows at a time, and sums over the rows of a block.

#include "mcmath/detail/crossproductkernel.h"
#include "mcmath/detail/lanes.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

using MCCommonMath::detail::kProbabilityRows;
using MCCommonMath::detail::PredictorTerms;

/// Predictors j to j + N - 1 of W rows from `row` on: several at a time, as each is a chain of
/// additions.
template <std::size_t W, std::size_t N>
void SumPredictors(const PredictorTerms& terms, std::size_t j, std::size_t row, double* eta) {
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
    for (; j + 2 <= terms.m; j += 2) SumPredictors<W, 2>(terms, j, row + from, eta + from);
    if (j < terms.m) SumPredictors<W, 1>(terms, j, row + from, eta + from);
  }
}

/// One panel of a block at a time, its sums in registers.
template <std::size_t W>
void AddScaledRows(const RowBlock& block, std::size_t count, const double* factors, double* sums) {
  using Vec = typename Lanes<W>::Vec;
  constexpr std::size_t kColumns = TileShape<W>::kColumns;
  const std::size_t stride = RowBlock::PanelStride(kColumns, block.capacity);
  const double* panel = block.rightPanels;
  for (std::size_t column = 0; column < block.nColumns; column += kColumns, panel += stride) {
    Vec low;
    Vec high;
    LoadLanes<W>(low, sums + column);
    LoadLanes<W>(high, sums + column + W);
    for (std::size_t k = 0; k < count; ++k) {
      Vec left;
      Vec right;
      LoadLanes<W>(left, panel + k * kColumns);
      LoadLanes<W>(right, panel + k * kColumns + W);
      low += factors[k] * left;
      high += factors[k] * right;
    }
    StoreLanes<W>(sums + column, low);
    StoreLanes<W>(sums + column + W, high);
  }
}

}  // namespace
