// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace MCCommonMath {

using detail::PackedRow;
using detail::RowStart;

namespace {

// A count that no int can hold becomes the largest int, which no matrix can have as its rows.
int BorderedRows(int n, const MCRectMatrix& border) {
  const std::int64_t rows = std::int64_t{n} + border.GetNRows();
  return static_cast<int>(std::min<std::int64_t>(rows, std::numeric_limits<int>::max()));
}

}  // namespace

bool MCSymMatrix::ExpandSym(const MCRectMatrix& R, MCSymMatrix& out) const {
  if (!IsValidMatrix() || !R.IsValidMatrix() || R.GetNCols() != fNRows) return false;
  if (&out == this) return MCSymMatrix(*this).ExpandSym(R, out);
  out.SetNRows(BorderedRows(fNRows, R));
  if (!out.IsValidMatrix()) return false;
  std::copy(fVec.begin(), fVec.end(), out.fVec.begin());
  for (int r = 0; r < R.GetNRows(); ++r) {
    const std::size_t to = RowStart(Rows() + static_cast<std::size_t>(r));
    std::copy_n(R.GetRowPtr(r), fNRows, out.fVec.data() + to);
  }
  return true;
}

bool MCSymMatrix::ExpandSymToRect(const MCRectMatrix& R, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !R.IsValidMatrix() || R.GetNCols() != fNRows) return false;
  if (&out == &R) return ExpandSymToRect(MCRectMatrix(R), out);
  const int size = BorderedRows(fNRows, R);
  if (!out.SetNRowsCols(size, size)) return false;
  double* to = out.AsVector().data();
  for (std::size_t i = 0; i < Rows(); ++i, to += size) {
    PackedRow<const double> row(fVec.data(), i);
    for (std::size_t j = 0; j < Rows(); ++j, ++row) to[j] = *row;
    for (int r = 0; r < R.GetNRows(); ++r) to[fNRows + r] = R.GetRowPtr(r)[i];
  }
  for (int r = 0; r < R.GetNRows(); ++r, to += size) std::copy_n(R.GetRowPtr(r), fNRows, to);
  return true;
}

bool MCSymMatrix::ExtractSubmatrix(const std::vector<int>& idx, MCSymMatrix& out) const {
  if (!IsValidMatrix()) return false;
  for (std::size_t a = 0; a < idx.size(); ++a) {
    if (!IsRow(idx[a]) || (a > 0 && idx[a] <= idx[a - 1])) return false;
  }
  if (&out == this) return MCSymMatrix(*this).ExtractSubmatrix(idx, out);
  out.SetNRows(static_cast<int>(idx.size()));
  if (!out.IsValidMatrix()) return false;
  double* element = out.fVec.data();
  for (std::size_t a = 0; a < idx.size(); ++a) {
    const double* row = fVec.data() + RowStart(static_cast<std::size_t>(idx[a]));
    for (std::size_t b = 0; b <= a; ++b) *element++ = row[idx[b]];
  }
  return true;
}

}  // namespace MCCommonMath
