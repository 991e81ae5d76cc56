// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"

#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcrectmatrix.h"

#include <algorithm>
#include <cstdint>

namespace MCCommonMath {

using detail::PackedRow;

void MCSymMatrix::SetNRows(int n) {
  Resize(n);
  if (n < 0) fNBlocks = 0;
  Clear();
}

void MCSymMatrix::Resize(int n) {
  fNRows = std::max(n, 0);
  fNBlocks = 1;
  fBlockSize = fNRows;
  ResizeNRows(fVec, fNRows);
}

bool MCSymMatrix::SetNBlocks(int b) {
  if (b < 1 || fNRows < 1 || fNRows % b != 0) return false;
  fNBlocks = b;
  fBlockSize = fNRows / b;
  return true;
}

void MCSymMatrix::SetData(const MCSymMatrixData& data) {
  MCSymMatrixData::operator=(data);
}

void MCSymMatrix::Clear() {
  std::fill(fVec.begin(), fVec.end(), 0.0);
}

bool MCSymMatrix::SetElem(int i, int j, double x) {
  if (!IsRow(i) || !IsRow(j)) return false;
  fVec[detail::PackedIndex(static_cast<std::size_t>(i), static_cast<std::size_t>(j))] = x;
  return true;
}

bool MCSymMatrix::SetElem(int k, double x) {
  if (k < 0 || static_cast<std::size_t>(k) >= detail::RowStart(Rows())) return false;
  fVec[static_cast<std::size_t>(k)] = x;
  return true;
}

bool MCSymMatrix::PutRow(int i, const std::vector<double>& row) {
  if (!IsRow(i) || row.size() < Rows()) return false;
  if (&row == &fVec) return PutRow(i, std::vector<double>(row));
  PackedRow<double> to(fVec.data(), static_cast<std::size_t>(i));
  for (std::size_t j = 0; j < Rows(); ++j, ++to) *to = row[j];
  return true;
}

bool MCSymMatrix::GetPCol(int i, int from, int to, std::vector<double>& out, int step) const {
  if (!IsRow(i) || !IsRow(from) || !IsRow(to) || from > to || step == 0) return false;
  const auto last = static_cast<std::size_t>(to - from);
  const auto distance = static_cast<std::size_t>(step < 0 ? -std::int64_t{step} : step);
  if (out.size() <= last * distance) out.resize(last * distance + 1);
  PackedRow<const double> row(fVec.data(), static_cast<std::size_t>(i),
                              static_cast<std::size_t>(from));
  for (std::size_t j = 0; j <= last; ++j, ++row) out[(step < 0 ? last - j : j) * distance] = *row;
  return true;
}

bool MCSymMatrix::CopyRowToRColumn(int i, MCRectMatrix& R, int col, int nRows) const {
  if (!IsRow(i) || !R.IsValidMatrix() || col < 0 || col >= R.GetNCols()) return false;
  const int wanted = nRows < 0 ? fNRows : std::min(nRows, fNRows);
  const auto count = static_cast<std::size_t>(std::min(wanted, R.GetNRows()));
  const auto nCols = static_cast<std::size_t>(R.GetNCols());
  PackedRow<const double> row(fVec.data(), static_cast<std::size_t>(i));
  std::size_t to = static_cast<std::size_t>(col);
  for (std::size_t j = 0; j < count; ++j, ++row, to += nCols) R.AsVector()[to] = *row;
  return true;
}

}  // namespace MCCommonMath
