// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcrectmatrix.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

double StridedDot(int n, const double* x, int xStride, const double* y, int yStride) {
  const std::size_t xStep = static_cast<std::size_t>(xStride);
  const std::size_t yStep = static_cast<std::size_t>(yStride);
  return detail::SumInLanes(static_cast<std::size_t>(n),
                            [=](std::size_t i) { return x[i * xStep] * y[i * yStep]; });
}

}  // namespace

bool MCRectMatrix::IsColZero(int col) const {
  if (!IsCol(col) || fNRows == 0) return false;
  for (int i = 0; i < fNRows; ++i) {
    if (Row(i)[col] != 0.0) return false;
  }
  return true;
}

bool MCRectMatrix::IsRowZero(int row) const {
  if (!IsRow(row) || fNCols == 0) return false;
  return std::all_of(Row(row), Row(row) + fNCols, [](double x) { return x == 0.0; });
}

bool MCRectMatrix::IsRowZeroButOne(int row, const MCBitSet& mask, int& position) const {
  position = -1;
  if (!IsRow(row)) return false;
  int found = -1;
  for (int j = 0; j < fNCols; ++j) {
    if (mask.IsIn(j) || Row(row)[j] == 0.0) continue;
    if (found >= 0) return false;
    found = j;
  }
  position = found;
  return found >= 0;
}

int MCRectMatrix::FindFirstNonZeroInRow(int row, double tol) const {
  if (!IsRow(row)) return -1;
  for (int j = 0; j < fNCols; ++j) {
    if (std::abs(Row(row)[j]) > tol) return j;
  }
  return -1;
}

bool MCRectMatrix::IsERowMultipleOfAnother(int row, int other, double zeroTol, double ratioTol,
                                           double& factor) const {
  if (!(zeroTol >= 0.0) || !(ratioTol >= 0.0)) return false;
  const int lead = FindFirstNonZeroInRow(row, zeroTol);
  if (lead < 0 || lead != FindFirstNonZeroInRow(other, zeroTol)) return false;
  const double ratio = Row(row)[lead] / Row(other)[lead];
  const auto agree = [=](double x, double y) {
    if (std::abs(x) <= zeroTol && std::abs(y) <= zeroTol) return true;
    const double multiple = ratio * y;
    // As a quotient, so that an infinite difference, which is NaN here, doesn't agree.
    return std::abs(x - multiple) / std::max(std::abs(x), std::abs(multiple)) <= ratioTol;
  };
  if (!std::equal(Row(row), Row(row) + fNCols, Row(other), agree)) return false;
  factor = ratio;
  return true;
}

bool MCRectMatrix::CheckForOnes(double tol) const {
  if (fVec.empty()) return false;
  std::vector<int> inColumn(static_cast<std::size_t>(fNCols));
  for (int i = 0; i < fNRows; ++i) {
    int inRow = 0;
    for (int j = 0; j < fNCols; ++j) {
      if (!(std::abs(Row(i)[j] - 1.0) <= tol)) continue;
      ++inRow;
      ++inColumn[static_cast<std::size_t>(j)];
    }
    if (inRow != 1) return false;
  }
  return std::all_of(inColumn.begin(), inColumn.end(), [](int count) { return count == 1; });
}

double MCRectMatrix::DotProductCol(int col1, int col2) const {
  return DotProductColCol(col1, *this, col2);
}

double MCRectMatrix::DotProductRows(int row1, int row2) const {
  return DotProductRowRow(row1, *this, row2);
}

double MCRectMatrix::DotProductRowCol(int row, const MCRectMatrix& other, int col) const {
  if (!IsRow(row) || !other.IsCol(col) || fNCols != other.fNRows) return MCMV::gMissingValue;
  return StridedDot(fNCols, Row(row), 1, other.GetColPtr(col), other.fNCols);
}

double MCRectMatrix::DotProductColCol(int col, const MCRectMatrix& other, int otherCol) const {
  if (!IsCol(col) || !other.IsCol(otherCol) || fNRows != other.fNRows) return MCMV::gMissingValue;
  return StridedDot(fNRows, GetColPtr(col), fNCols, other.GetColPtr(otherCol), other.fNCols);
}

double MCRectMatrix::DotProductRowRow(int row, const MCRectMatrix& other, int otherRow) const {
  if (!IsRow(row) || !other.IsRow(otherRow) || fNCols != other.fNCols) return MCMV::gMissingValue;
  return detail::Dot(Row(row), other.Row(otherRow), static_cast<std::size_t>(fNCols));
}

double MCRectMatrix::RowNorm(int row) const {
  if (!IsRow(row)) return MCMV::gMissingValue;
  // A copy, as the position of a row in a large matrix may not fit the int that DNrm2 takes.
  return MCMathFun::DNrm2(fNCols, {Row(row), Row(row) + fNCols}, 0, 1);
}

double MCRectMatrix::ColNorm(int col) const {
  if (!IsCol(col)) return MCMV::gMissingValue;
  return MCMathFun::DNrm2(fNRows, fVec, col, fNCols);
}

}  // namespace MCCommonMath
