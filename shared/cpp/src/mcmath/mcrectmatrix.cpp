// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrix.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace MCCommonMath {

namespace {
constexpr int kLargestCount = std::numeric_limits<int>::max();
}

bool MCRectMatrix::SetNRowsCols(int nRows, int nCols) {
  const bool valid = TakeShape(nRows, nCols);
  Clear();
  return valid;
}

bool MCRectMatrix::Resize(int nRows, int nCols) {
  return TakeShape(nRows, nCols);
}

bool MCRectMatrix::AddRow() {
  if (!IsValidMatrix() || fNRows == kLargestCount) return false;
  return TakeShape(fNRows + 1, fNCols);
}

bool MCRectMatrix::AddColumn() {
  if (!IsValidMatrix() || fNCols == kLargestCount) return false;
  const std::size_t width = static_cast<std::size_t>(fNCols);
  if (!TakeShape(fNRows, fNCols + 1)) return false;
  // From the last row upward, as each row moves to places that rows above it leave last.
  for (int i = fNRows - 1; i >= 0; --i) {
    const double* const old = fVec.data() + static_cast<std::size_t>(i) * width;
    if (i > 0) std::copy_backward(old, old + width, Row(i) + width);
    Row(i)[width] = 0.0;
  }
  return true;
}

void MCRectMatrix::Transpose() {
  if (!IsValidMatrix()) return;
  std::vector<double> transposed(fVec.size());
  double* out = transposed.data();
  for (int j = 0; j < fNCols; ++j) {
    for (int i = 0; i < fNRows; ++i) *out++ = fVec[Index(i, j)];
  }
  fVec.swap(transposed);
  std::swap(fNRows, fNCols);
}

void MCRectMatrix::Clear() {
  std::fill(fVec.begin(), fVec.end(), 0.0);
}

bool MCRectMatrix::SetElem(int i, int j, double x) {
  if (!IsRow(i) || !IsCol(j)) return false;
  fVec[Index(i, j)] = x;
  return true;
}

void MCRectMatrix::Display() const {
  MCComponentDisplay::DisplayText(1, "MCRectMatrix display start");
  DisplayShapeAndRows(false);
  MCComponentDisplay::DisplayText(1, "MCRectMatrix display end");
}

void MCRectMatrix::DisplayF() const {
  MCComponentDisplay::DisplayText(1, "MCRectMatrix display start");
  DisplayShapeAndRows(true);
  MCComponentDisplay::DisplayText(1, "MCRectMatrix display end");
}

}  // namespace MCCommonMath
