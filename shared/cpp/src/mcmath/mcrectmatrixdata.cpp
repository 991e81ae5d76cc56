// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcrectmatrixdata.h"

#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace MCCommonMath {

MCRectMatrixData::MCRectMatrixData(int nRows, int nCols) {
  TakeShape(nRows, nCols);
}

MCRectMatrixData::MCRectMatrixData(const MCRectMatrixData& other) {
  *this = other;
}

MCRectMatrixData& MCRectMatrixData::operator=(const MCRectMatrixData& other) {
  if (this == &other) return *this;
  const bool valid = other.IsValidMatrix() && TakeShape(other.fNRows, other.fNCols);
  if (valid) {
    fVec = other.fVec;
  } else {
    fNRows = -1;
    fNCols = other.fNCols;
    fVec.clear();
  }
  return *this;
}

MCRectMatrixData::MCRectMatrixData(MCRectMatrixData&& other) noexcept {
  *this = std::move(other);
}

MCRectMatrixData& MCRectMatrixData::operator=(MCRectMatrixData&& other) noexcept {
  std::swap(fNRows, other.fNRows);
  std::swap(fNCols, other.fNCols);
  fVec.swap(other.fVec);
  return *this;
}

bool MCRectMatrixData::TakeShape(int nRows, int nCols) {
  const bool none = nRows < 0 || nCols < 0;
  fNRows = none ? 0 : nRows;
  fNCols = none ? 0 : nCols;
  try {
    fVec.resize(Index(fNRows, 0));
  } catch (const std::bad_alloc&) {
    fNRows = -1;
  } catch (const std::length_error&) {
    fNRows = -1;
  }
  if (!IsValidMatrix()) fVec.clear();
  return IsValidMatrix();
}

double MCRectMatrixData::GetElem(int i, int j) const {
  return IsRow(i) && IsCol(j) ? fVec[Index(i, j)] : MCMV::gMissingValue;
}

const double* MCRectMatrixData::GetRowPtr(int i) const {
  return IsRow(i) && fNCols > 0 ? fVec.data() + Index(i, 0) : nullptr;
}

const double* MCRectMatrixData::GetColPtr(int j) const {
  return IsCol(j) && fNRows > 0 ? fVec.data() + j : nullptr;
}

void MCRectMatrixData::Display() const {
  MCComponentDisplay::DisplayText(1, "MCRectMatrixData display start");
  DisplayShapeAndRows(false);
  MCComponentDisplay::DisplayText(1, "MCRectMatrixData display end");
}

void MCRectMatrixData::DisplayShapeAndRows(bool full) const {
  MCComponentDisplay::DisplayI("Number of rows", fNRows);
  MCComponentDisplay::DisplayI("Number of columns", fNCols);
  MCComponentDisplay::DisplayText(1, "");
  for (int i = 0; i < fNRows; ++i) {
    const auto row = fVec.begin() + static_cast<std::ptrdiff_t>(Index(i, 0));
    MCComponentDisplay::DisplayDV("row " + std::to_string(i), {row, row + fNCols}, full);
  }
}

}  // namespace MCCommonMath
