// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// Columns of a panel: 64 bytes, a cache line, of each row.
constexpr std::size_t kPanelColumns = 8;
/// Rows of a block of the cross-product kernels.
constexpr std::size_t kBlockRows = 128;

/// Number of panels that hold n columns.
constexpr std::size_t PanelsOf(std::size_t n) {
  return (n + kPanelColumns - 1) / kPanelColumns;
}

/// What is written once and compiled for each vector width. A block is stored in panels: panel q
/// holds columns 8q to 8q+7 of all its kBlockRows rows, row after row, 64-byte aligned; columns
/// beyond n are zero.
struct VectorKernels {
  /// Writes a row of n entries, and w times it, as row `slot` of two blocks. False if an entry of
  /// the weighted row isn't finite.
  bool (*stageRow)(const double* x, double w, std::size_t n, std::size_t slot, double* rows,
                   double* weightedRows);

  /// Folds the first `count` rows of a block into the packed lower triangle of n rows, in row
  /// order: element (i, j), j <= i, receives weightedRows(k, i) * rows(k, j), each product rounded
  /// and then added. About count n^2/2 multiply-adds.
  void (*foldBlock)(double* triangle, std::size_t n, std::size_t count, const double* rows,
                    const double* weightedRows);
};

extern const VectorKernels kSse2Kernels;
extern const VectorKernels kAvx2Kernels;
extern const VectorKernels kAvx512Kernels;

}  // namespace detail
}  // namespace MCCommonMath
