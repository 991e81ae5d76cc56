// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/aligned.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"

#include <algorithm>
#include <cstddef>

namespace MCCommonMath {
namespace detail {

/// A matrix cut into panels of a few columns, each of which stands row after row from a cache line
/// on: the form in which the kernels rotate and reflect rows. The last panel is filled up by
/// columns of zeros.
class VectorPanels {
public:
  VectorPanels(std::size_t nRows, std::size_t nColumns)
      : fKernels(KernelsOf(WidestVectorPath())), fNRows(nRows), fNColumns(nColumns) {
    fData.Grow(Count() * PanelSize());
  }

  const VectorKernels& Kernels() const { return fKernels; }
  std::size_t Width() const { return fKernels.vectorColumns; }
  std::size_t Count() const { return (fNColumns + Width() - 1) / Width(); }
  double* Panel(std::size_t p) { return fData.Data() + p * PanelSize(); }
  double* Row(std::size_t p, std::size_t i) { return Panel(p) + i * Width(); }
  /// Columns of panel p that belong to the matrix.
  std::size_t ColumnsOf(std::size_t p) const { return std::min(Width(), fNColumns - p * Width()); }
  double& Element(std::size_t i, std::size_t j) { return Row(j / Width(), i)[j % Width()]; }

  /// Copies row i from or to nColumns contiguous doubles.
  void LoadRow(std::size_t i, const double* from) {
    for (std::size_t p = 0; p < Count(); ++p) {
      std::copy_n(from + p * Width(), ColumnsOf(p), Row(p, i));
    }
  }
  void StoreRow(std::size_t i, double* to) {
    for (std::size_t p = 0; p < Count(); ++p) {
      std::copy_n(Row(p, i), ColumnsOf(p), to + p * Width());
    }
  }

private:
  std::size_t PanelSize() const { return fNRows * Width(); }

  const VectorKernels& fKernels;
  std::size_t fNRows;
  std::size_t fNColumns;
  LineBuffer fData;
};

}  // namespace detail
}  // namespace MCCommonMath
