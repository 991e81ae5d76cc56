// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrixdata.h"

#include "mcmath/detail/packedtriangle.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

namespace MCCommonMath {

namespace {

// Beyond it, the index of the last element would not fit 31 bits.
constexpr int kMaxRows = 65535;

int ClampToInt(std::int64_t n) {
  return static_cast<int>(std::min<std::int64_t>(n, std::numeric_limits<int>::max()));
}

}  // namespace

MCSymMatrixData::MCSymMatrixData(int n) : fNRows(std::max(n, 0)), fNBlocks(1), fBlockSize(fNRows) {
  ResizeNRows(fVec, fNRows);
}

MCSymMatrixData::MCSymMatrixData(int nBlocks, int blockSize) {
  if (nBlocks < 1 || blockSize < 1) return;
  fNBlocks = nBlocks;
  fBlockSize = blockSize;
  fNRows = ClampToInt(std::int64_t{nBlocks} * blockSize);
  ResizeNRows(fVec, fNRows);
}

MCSymMatrixData::MCSymMatrixData(const MCSymMatrixData& other) {
  *this = other;
}

MCSymMatrixData& MCSymMatrixData::operator=(const MCSymMatrixData& other) {
  if (this == &other) return *this;
  fNRows = other.fNRows;
  fNBlocks = other.fNBlocks;
  fBlockSize = other.fBlockSize;
  if (ResizeNRows(fVec, fNRows)) std::copy(other.fVec.begin(), other.fVec.end(), fVec.begin());
  return *this;
}

bool MCSymMatrixData::ResizeNRows(std::vector<double>& v, int& n) {
  if (n > kMaxRows) n = -1;
  if (n <= 0) {
    v.clear();
    return n >= 0;
  }
  const std::size_t size = detail::RowStart(static_cast<std::size_t>(n));
  try {
    v.reserve(size);  // resize alone may take twice the memory
    v.resize(size);
  } catch (const std::bad_alloc&) {
    v.clear();
    n = -1;
  }
  return n >= 0;
}

double MCSymMatrixData::GetElem(int i, int j) const {
  if (!IsRow(i) || !IsRow(j)) return MCMV::gMissingValue;
  return fVec[detail::PackedIndex(static_cast<std::size_t>(i), static_cast<std::size_t>(j))];
}

double MCSymMatrixData::GetElem(int I, int J, int r, int c) const {
  const std::int64_t i = std::int64_t{I} * fBlockSize + r;
  const std::int64_t j = std::int64_t{J} * fBlockSize + c;
  if (i < 0 || j < 0) return MCMV::gMissingValue;
  return GetElem(ClampToInt(i), ClampToInt(j));
}

bool MCSymMatrixData::GetRow(int i, std::vector<double>& row) const {
  if (!IsRow(i)) return false;
  row.resize(Rows());
  detail::PackedRow<const double> from(fVec.data(), static_cast<std::size_t>(i));
  for (double& x : row) {
    x = *from;
    ++from;
  }
  return true;
}

void MCSymMatrixData::GetDiagonal(std::vector<double>& d) const {
  if (!IsValidMatrix()) return;
  d.resize(Rows());
  for (std::size_t i = 0; i < d.size(); ++i) d[i] = fVec[detail::DiagonalIndex(i)];
}

void MCSymMatrixData::Display() const {
  MCComponentDisplay::DisplayText(1, "MCSymMatrixData display start");
  MCComponentDisplay::DisplayI("The number of rows", fNRows);
  MCComponentDisplay::DisplayI("The number of blocks", fNBlocks);
  MCComponentDisplay::DisplayI("The block size", fBlockSize);
  MCComponentDisplay::DisplayDVTR("Lower triangular", fVec, fNRows);
  MCComponentDisplay::DisplayText(1, "MCSymMatrixData display end");
}

}  // namespace MCCommonMath
