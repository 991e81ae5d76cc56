// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstddef>
#include <vector>

namespace MCCommonMath {

/// Storage of a real symmetric matrix: its packed lower triangle. Element (i, j) with i >= j
/// lies at index i(i+1)/2 + j, that is, row by row, row i holding columns 0 to i; the element
/// (i, j) with i < j is that of (j, i). All indices count from 0.
///
/// An n-row matrix may be seen as B diagonal blocks of b rows, n = B*b. The blocks are a way of
/// addressing and change nothing in the storage.
///
/// Memory exhaustion while a matrix is sized doesn't throw: it leaves an invalid matrix, whose
/// row count is negative and whose triangle is empty. Test it with IsValidMatrix(). The same
/// holds beyond 65,535 rows, where a triangle index would pass 2^31. Operations on an invalid
/// matrix find no rows: they do nothing and answer false, -1, the missing value or, where they
/// count or add up over rows, 0.
class MC_EXPORT MCSymMatrixData {
public:
  /// 0 rows, 0 blocks, block size 0.
  MCSymMatrixData() = default;

  /// `n` rows of zeros in 1 block; a negative n counts as 0.
  explicit MCSymMatrixData(int n);

  /// nBlocks * blockSize rows of zeros. If either is below 1, rows, blocks and block size are 0.
  MCSymMatrixData(int nBlocks, int blockSize);

  /// A copy that can't be allocated is invalid.
  MCSymMatrixData(const MCSymMatrixData& other);
  MCSymMatrixData& operator=(const MCSymMatrixData& other);
  ~MCSymMatrixData() = default;

  /// Sizes `v` to the n(n+1)/2 entries of a triangle of n rows; entries in both sizes keep their
  /// values, new ones are 0. For n <= 0 the vector is emptied. If memory runs out, or if n exceeds
  /// 65,535, n becomes -1 and the vector is emptied. True if n >= 0 then.
  static bool ResizeNRows(std::vector<double>& v, int& n);

  /// False after a growth that failed.
  bool IsValidMatrix() const { return fNRows >= 0; }

  /// Number of rows, negative for an invalid matrix.
  int GetNRows() const { return fNRows; }

  /// Number of diagonal blocks, and rows in each. A growth that failed leaves both as they were
  /// asked for.
  int GetNBlocks() const { return fNBlocks; }
  int GetBlockSize() const { return fBlockSize; }

  /// The packed triangle, n(n+1)/2 entries, owned by the matrix; valid until the matrix is
  /// resized, assigned to or destroyed.
  const std::vector<double>& AsVectorConst() const { return fVec; }

  /// Element (i, j), the same as (j, i). The missing value if an index is out of range.
  double GetElem(int i, int j) const;

  /// Element (r, c) of the pair of blocks (I, J), that is, matrix element (I*b + r, J*b + c) with
  /// b the block size. Only that element must be in the matrix: r and c may pass b.
  double GetElem(int I, int J, int r, int c) const;

  /// Sizes `row` to n and fills it with the full symmetric row i. False, with row untouched, if i
  /// is out of range.
  bool GetRow(int i, std::vector<double>& row) const;

  /// Sizes `d` to n and fills it with the diagonal. Untouched by an invalid matrix.
  void GetDiagonal(std::vector<double>& d) const;

  /// Writes shape and triangle to the diagnostic display.
  void Display() const;

protected:
  /// Number of rows for loops: 0 for an invalid matrix.
  std::size_t Rows() const { return fNRows > 0 ? static_cast<std::size_t>(fNRows) : 0; }
  /// Whether `i` is a row.
  bool IsRow(int i) const { return i >= 0 && i < fNRows; }
  /// Whether a vector has one entry for each row; never true of an invalid matrix.
  bool FitsRows(const std::vector<double>& v) const {
    return IsValidMatrix() && v.size() == Rows();
  }

  int fNRows = 0;
  int fNBlocks = 0;
  int fBlockSize = 0;
  std::vector<double> fVec;
};

}  // namespace MCCommonMath
