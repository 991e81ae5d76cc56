// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace MCCommonMath {

namespace {

// Lets `fill` write into a matrix of zeros and hands that to `out` only then, as `out` may be an
// operand.
template <class Fill>
bool MakeMatrix(std::int64_t nRows, std::int64_t nCols, MCRectMatrix& out, Fill fill) {
  constexpr int kLargestCount = std::numeric_limits<int>::max();
  if (nRows > kLargestCount || nCols > kLargestCount) return false;
  MCRectMatrix result(static_cast<int>(nRows), static_cast<int>(nCols));
  if (result.IsValidMatrix()) fill(result);
  out = std::move(result);
  return out.IsValidMatrix();
}

}  // namespace

bool MCRectMatrix::ShiftRows(int count, MCRectMatrix& out) const {
  if (!IsValidMatrix()) return false;
  const int shift = std::clamp(count, -fNRows, fNRows);
  const Part stays{std::max(-shift, 0), 0, fNRows - std::abs(shift), fNCols};
  return MakeMatrix(fNRows, fNCols, out, [&](MCRectMatrix& result) {
    result.PutPart(*this, stays, std::max(shift, 0), 0);
  });
}

bool MCRectMatrix::ShiftColumns(int count, MCRectMatrix& out) const {
  if (!IsValidMatrix()) return false;
  const int shift = std::clamp(count, -fNCols, fNCols);
  const Part stays{0, std::max(-shift, 0), fNRows, fNCols - std::abs(shift)};
  return MakeMatrix(fNRows, fNCols, out, [&](MCRectMatrix& result) {
    result.PutPart(*this, stays, 0, std::max(shift, 0));
  });
}

bool MCRectMatrix::CreateBlockDiagonal(int count, MCRectMatrix& out) const {
  if (!IsValidMatrix() || count < 1) return false;
  const std::int64_t blocks = count;
  return MakeMatrix(blocks * fNRows, blocks * fNCols, out, [&](MCRectMatrix& result) {
    if (fVec.empty()) return;
    for (int b = 0; b < count; ++b) {
      result.PutPart(*this, {0, 0, fNRows, fNCols}, b * fNRows, b * fNCols);
    }
  });
}

bool MCRectMatrix::ExpandSquare(const MCRectMatrix& A, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !A.IsValidMatrix()) return false;
  const std::int64_t nRows = fNRows;
  const std::int64_t nCols = fNCols;
  return MakeMatrix(nRows + A.fNRows, nCols + A.fNCols, out, [&](MCRectMatrix& result) {
    result.PutPart(*this, {0, 0, fNRows, fNCols}, 0, 0);
    result.PutPart(A, {0, 0, A.fNRows, A.fNCols}, fNRows, fNCols);
  });
}

bool MCRectMatrix::Expand(const MCBitSet& bits, bool byRows, MCRectMatrix& out) const {
  const int placed = byRows ? fNRows : fNCols;
  if (!IsValidMatrix() || bits.InSet() < placed) return false;
  const int nRows = byRows ? bits.Size() : fNRows;
  const int nCols = byRows ? fNCols : bits.Size();
  return MakeMatrix(nRows, nCols, out, [&](MCRectMatrix& result) {
    for (int next = 0, position = 0; next < placed; ++position) {
      if (!bits.IsIn(position)) continue;
      const Part line = byRows ? Part{next, 0, 1, fNCols} : Part{0, next, fNRows, 1};
      result.PutPart(*this, line, byRows ? position : 0, byRows ? 0 : position);
      ++next;
    }
  });
}

bool MCRectMatrix::ComputeMatrixProduct(const MCRectMatrix& B, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !B.IsValidMatrix() || fNCols != B.fNRows) return false;
  return MakeMatrix(fNRows, B.fNCols, out, [&](MCRectMatrix& result) {
    // A row of the result gathers multiples of the rows of B, so that all walks are contiguous and
    // each element still takes its terms in ascending order.
    for (int i = 0; i < fNRows; ++i) {
      for (int k = 0; k < fNCols; ++k) {
        const double multiplier = Row(i)[k];
        std::transform(B.Row(k), B.Row(k) + B.fNCols, result.Row(i), result.Row(i),
                       [multiplier](double b, double sum) { return sum + multiplier * b; });
      }
    }
  });
}

bool MCRectMatrix::ComputeProductMatrixTrans(const MCRectMatrix& B, MCRectMatrix& out) const {
  MCRectMatrix transposed(B);
  transposed.Transpose();
  return ComputeMatrixProduct(transposed, out);
}

}  // namespace MCCommonMath
