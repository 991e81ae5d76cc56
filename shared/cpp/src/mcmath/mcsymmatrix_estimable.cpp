// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <cstdint>
#include <utility>

namespace MCCommonMath {

namespace {

// Writes the unit structure of `count` columns from `col` on, which hold the rows of `keep` in
// from..to: in the rows of `keep` each column has 1.0 at its own row and zeros elsewhere.
void PutUnitRows(int n, int from, int to, const MCBitSet& keep, MCRectMatrix& H, int col,
                 int count) {
  int own = col;
  for (int i = 0; i < n; ++i) {
    if (!keep.IsIn(i)) continue;
    H.ZeroOutRowPart(i, col, col + count - 1);
    if (i >= from && i <= to) H.SetElem(i, own++, 1.0);
  }
}

}  // namespace

bool MCSymMatrix::ZeroOutRedundant(const MCBitSet& keep) {
  if (!IsValidMatrix() || fNRows > keep.Size()) return false;
  for (int i = 0; i < fNRows; ++i) {
    if (!keep.IsIn(i)) ZeroOut(i);
  }
  return true;
}

void MCSymMatrix::Expand(const MCBitSet& keep, MCSymMatrix& out) const {
  if (&out == this) {
    MCSymMatrix(*this).Expand(keep, out);
    return;
  }
  out.SetNRows(keep.Size());
  std::vector<int> positions;
  for (int i = 0; i < out.fNRows && positions.size() < Rows(); ++i) {
    if (!keep.IsIn(i)) continue;
    positions.push_back(i);
    const double* const row = fVec.data() + detail::RowStart(positions.size() - 1);
    for (std::size_t j = 0; j < positions.size(); ++j) out.SetElem(i, positions[j], row[j]);
  }
}

bool MCSymMatrix::ExtractH(int from, int to, const MCBitSet& keep, MCRectMatrix& H, int& col,
                           MCBitSet& used, int nRows) const {
  if (from < 0 || from > to || to >= fNRows || col < 0) return false;
  if (keep.Size() < fNRows || used.Size() < fNRows) return false;
  const int nCopied = nRows < 0 ? fNRows : nRows;
  const int count = keep.InRange(from, to);
  if (nCopied > H.GetNRows() || std::int64_t{col} + count > H.GetNCols()) return false;

  const int first = col;
  for (int r = from; r <= to; ++r) {
    if (!keep.IsIn(r)) continue;
    used.Set(r, true);
    CopyRowToRColumn(r, H, col++, nCopied);
  }
  if (count > 0) PutUnitRows(fNRows, from, to, keep, H, first, count);
  // As many columns as stand before `col`, though the walk begins at `first`: later columns that
  // are there already are cleaned along with the new ones.
  for (int c = 0; c < col && c < H.GetNCols() - first; ++c) {
    H.ColClean(first + c, fNRows * 10000.0);
  }
  return true;
}

bool MCSymMatrix::CheckGMG(const std::vector<double>& M, const MCBitSet& mask, MCSymMatrix& G,
                           MCBitSet& negative, bool& allGone, int& count) const {
  if (!IsValidMatrix() || fNRows > mask.Size()) return false;
  if (M.size() != detail::RowStart(Rows())) return false;
  if (fNRows < 1) return true;
  if (G.fNRows != fNRows) return false;

  MCBitSet negativeInM(fNRows);
  count = 0;
  for (int i = 0; i < fNRows; ++i) {
    if (!mask.IsIn(i) || !(M[detail::DiagonalIndex(static_cast<std::size_t>(i))] < 0.0)) continue;
    negativeInM.Set(i, true);
    G.ZeroOut(i);
    ++count;
  }
  for (int i = 0; i < fNRows; ++i) {
    if (!mask.IsIn(i) || negativeInM.IsIn(i) || !(G.GetElem(i, i) <= 0.0)) continue;
    G.ZeroOut(i);
    ++count;
  }
  allGone = count > 0 && count == mask.InRangeS(0, fNRows);
  negative = std::move(negativeInM);
  return true;
}

}  // namespace MCCommonMath
