// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcmathfun.h"
#include "mcmath/mcrectmatrix.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace MCCommonMath {

namespace {

// Whether the `count` positions from `start` on lie in 0 to size - 1; in 64 bits, as start + count
// may not fit an int.
bool IsRange(int start, int count, int size) {
  return start >= 0 && count >= 0 && std::int64_t{start} + count <= size;
}

}  // namespace

bool MCRectMatrix::ColScale(int col, double a) {
  if (!IsCol(col)) return false;
  for (int i = 0; i < fNRows; ++i) Row(i)[col] *= a;
  return true;
}

bool MCRectMatrix::ZeroOutCol(int col) {
  if (!IsCol(col)) return false;
  for (int i = 0; i < fNRows; ++i) Row(i)[col] = 0.0;
  return true;
}

bool MCRectMatrix::ZeroOutRowPart(int row, int from, int to) {
  if (!IsRow(row) || !IsCol(from) || !IsCol(to) || from > to) return false;
  std::fill(Row(row) + from, Row(row) + to + 1, 0.0);
  return true;
}

bool MCRectMatrix::AddToColumn(int col, const MCRectMatrix& other, int otherCol, double a) {
  if (!IsCol(col) || !other.IsCol(otherCol) || fNRows != other.fNRows) return false;
  for (int i = 0; i < fNRows; ++i) Row(i)[col] += a * other.Row(i)[otherCol];
  return true;
}

bool MCRectMatrix::ZeroOutPivotRow(int row, double tol, int& pivot) {
  pivot = -1;
  if (!IsRow(row) || !(tol > 0.0)) return false;
  pivot = FindFirstNonZeroInRow(row, tol);
  if (pivot < 0) return false;
  for (int c = 0; c < fNCols; ++c) {
    if (c != pivot) AddToColumn(c, *this, pivot, GetElem(row, c));
  }
  return ZeroOutCol(pivot);
}

bool MCRectMatrix::ColClean(int col, double thr) {
  if (!IsCol(col)) return false;
  const double reach = thr * 10000.0;
  const double norm = ColNorm(col);
  if (MCMathFun::QLReps(norm, reach)) return ZeroOutCol(col);
  const double reciprocal = 1.0 / norm;
  if (!std::isfinite(reciprocal) || reciprocal == 0.0) return true;
  for (int i = 0; i < fNRows; ++i) {
    const double unit = Row(i)[col] * reciprocal;
    Row(i)[col] = MCMathFun::QLReps(unit, reach) ? 0.0 : unit * norm;
  }
  return true;
}

bool MCRectMatrix::CopyRowToRow(int row, const MCRectMatrix& from, int fromRow) {
  return CopyRows(row, from, fromRow, 1);
}

bool MCRectMatrix::CopyColToRow(int row, const MCRectMatrix& from, int fromCol) {
  if (!IsRow(row) || !from.IsCol(fromCol) || fNCols != from.fNRows) return false;
  std::vector<double> line(static_cast<std::size_t>(fNCols));
  for (int i = 0; i < fNCols; ++i) line[static_cast<std::size_t>(i)] = from.Row(i)[fromCol];
  std::copy(line.begin(), line.end(), Row(row));
  return true;
}

bool MCRectMatrix::CopyColToCol(int col, const MCRectMatrix& from, int fromCol) {
  return CopyColumns(col, from, fromCol, 1);
}

bool MCRectMatrix::CopyColumns(int col, const MCRectMatrix& from, int fromCol, int count) {
  if (!IsValidMatrix() || fNRows != from.fNRows) return false;
  if (!IsRange(col, count, fNCols) || !IsRange(fromCol, count, from.fNCols)) return false;
  PutPart(from, {0, fromCol, fNRows, count}, 0, col);
  return true;
}

bool MCRectMatrix::CopyRows(int row, const MCRectMatrix& from, int fromRow, int count) {
  if (!IsValidMatrix() || fNCols != from.fNCols) return false;
  if (!IsRange(row, count, fNRows) || !IsRange(fromRow, count, from.fNRows)) return false;
  PutPart(from, {fromRow, 0, count, fNCols}, row, 0);
  return true;
}

void MCRectMatrix::PutPart(const MCRectMatrix& from, const Part& part, int row, int col) {
  if (part.nCols == 0) return;
  const std::size_t bytes = static_cast<std::size_t>(part.nCols) * sizeof(double);
  for (int k = 0; k < part.nRows; ++k) {
    // Where rows of this matrix move down the last goes first, lest it be overwritten.
    const int i = row > part.row ? part.nRows - 1 - k : k;
    std::memmove(Row(row + i) + col, from.Row(part.row + i) + part.col, bytes);
  }
}

}  // namespace MCCommonMath
