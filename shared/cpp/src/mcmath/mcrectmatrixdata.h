// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {

/// Storage of a dense rectangular matrix, row by row: element (i, j) stands at i * columns + j of
/// a vector of rows * columns doubles, indices from 0. MCRectMatrix adds the operations.
///
/// Where memory runs out while a matrix takes its size, it becomes invalid: its row count is
/// negative, it holds no elements, and every operation but those that set its shape refuses it.
class MC_EXPORT MCRectMatrixData {
public:
  /// No rows, no columns.
  MCRectMatrixData() = default;

  /// `nRows` by `nCols` zeros. If either is negative, both count as 0.
  MCRectMatrixData(int nRows, int nCols);

  /// A deep copy; invalid where memory runs out. Assignment to itself does nothing.
  MCRectMatrixData(const MCRectMatrixData& other);
  MCRectMatrixData& operator=(const MCRectMatrixData& other);

  /// Exchanges the contents with those of `other`.
  MCRectMatrixData(MCRectMatrixData&& other) noexcept;
  MCRectMatrixData& operator=(MCRectMatrixData&& other) noexcept;
  ~MCRectMatrixData() = default;

  /// False after memory ran out while the matrix took its size.
  bool IsValidMatrix() const { return fNRows >= 0; }

  /// Number of rows, negative for an invalid matrix.
  int GetNRows() const { return fNRows; }
  int GetNCols() const { return fNCols; }

  /// Element (i, j), or the missing value for an index out of range.
  double GetElem(int i, int j) const;

  /// First element of row `i`, the row's elements following one by one; null for an index out of
  /// range or a matrix without elements. Valid until the shape changes.
  const double* GetRowPtr(int i) const;

  /// First element of column `j`, the column's elements following at a stride of GetNCols(); null
  /// for an index out of range or a matrix without elements. Valid until the shape changes.
  const double* GetColPtr(int j) const;

  /// All elements, row by row.
  const std::vector<double>& AsVectorConst() const { return fVec; }

  /// Shows shape and elements to 6 digits on the diagnostic stream.
  void Display() const;

protected:
  bool IsRow(int i) const { return i >= 0 && i < fNRows; }
  bool IsCol(int j) const { return j >= 0 && j < fNCols && IsValidMatrix(); }

  std::size_t Index(int i, int j) const {
    return static_cast<std::size_t>(i) * static_cast<std::size_t>(fNCols) +
           static_cast<std::size_t>(j);
  }

  // Takes the shape, negative counts as 0 and 0, without clearing what the vector holds. False,
  // with the matrix invalid, where memory runs out.
  bool TakeShape(int nRows, int nCols);

  // One "row i" for each row, with 17 digits if `full`.
  void DisplayShapeAndRows(bool full) const;

  int fNRows = 0;
  int fNCols = 0;
  std::vector<double> fVec;
};

}  // namespace MCCommonMath
