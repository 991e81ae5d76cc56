// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Doubles of a cache line.
constexpr std::size_t kLineDoubles = 8;

/// Rows of a triangle that are worked on together.
constexpr std::size_t kBandRows = 16;

/// A block of rows of n entries that wait to be folded into a triangle of n rows. It is stored in
/// panels of a few columns, panel q holding columns q*width to q*width + width - 1 of all its
/// rows, row after row. Columns beyond n are zero. Between panels lies a cache line of nothing,
/// as panels a power of two apart would compete for the same places in a cache.
struct RowBlock {
  std::size_t nColumns;
  std::size_t capacity;
  /// The panels; `capacity` weights; room for kBandRows * capacity doubles. Each begins a line.
  double* panels;
  double* weights;
  double* scratch;

  static constexpr std::size_t PanelStride(std::size_t width, std::size_t capacity) {
    return width * capacity + kLineDoubles;
  }

  /// Doubles that the panels take.
  static constexpr std::size_t PanelsSize(std::size_t width, std::size_t nColumns,
                                          std::size_t capacity) {
    return (nColumns + width - 1) / width * PanelStride(width, capacity);
  }
};

/// What is written once and compiled for each vector width.
struct VectorKernels {
  /// Width of the panels.
  std::size_t panelColumns;

  /// Writes a row of the block and its weight at `slot`. False, the slot to be written again, if
  /// an entry of the row times its weight isn't finite.
  bool (*stageRow)(const RowBlock& block, std::size_t slot, const double* x, double w);

  /// Folds the first `count` rows of a block into a packed lower triangle, in row order: element
  /// (i, j), j <= i, receives (w x[i]) x[j], each product rounded and then added. About
  /// count n^2/2 multiply-adds.
  void (*foldBlock)(const RowBlock& block, std::size_t count, double* triangle);
};

extern const VectorKernels kSse2Kernels;
extern const VectorKernels kAvx2Kernels;
extern const VectorKernels kAvx512Kernels;

}  // namespace detail
}  // namespace MCCommonMath
