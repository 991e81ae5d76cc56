// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcpower.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

using detail::RowTimes;
using detail::StridedVector;

namespace {

using ConstRow = detail::PackedRow<const double>;

std::size_t NoneIfNegative(int count) {
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

// A vector divided by a number, entry by entry as it is read.
struct ScaledVector {
  const double* data;
  double divisor;
  double operator[](std::size_t j) const { return data[j] / divisor; }
};

// V'SW over the part of S with `nV` rows from `firstRow` on and `nW` columns from `firstColumn` on.
template <class VectorV, class VectorW>
double Form(const double* triangle, std::size_t firstRow, std::size_t firstColumn, const VectorV& V,
            std::size_t nV, const VectorW& W, std::size_t nW) {
  double sum = 0.0;
  for (std::size_t i = 0; i < nV; ++i) {
    sum += V[i] * RowTimes(ConstRow(triangle, firstRow + i, firstColumn), nW, W);
  }
  return sum;
}

}  // namespace

double MCSymMatrix::ComputeDotProduct2Rows(int i, int j) const {
  return ComputeRowDotProductS(i, fVec, j);
}

double MCSymMatrix::ComputeRowDotProductS(int i, const std::vector<double>& T, int j) const {
  if (!IsRow(i) || !IsRow(j) || T.size() != fVec.size()) return MCMV::gMissingValue;
  return RowTimes(ConstRow(fVec.data(), static_cast<std::size_t>(i)), Rows(),
                  ConstRow(T.data(), static_cast<std::size_t>(j)));
}

double MCSymMatrix::ComputeRowDotProductS(int i, const MCSymMatrix& T, int j) const {
  return ComputeRowDotProductS(i, T.fVec, j);
}

double MCSymMatrix::ComputeRVD(int i, const double* d, int stride) const {
  if (!IsRow(i)) return MCMV::gMissingValue;
  return RowTimes(ConstRow(fVec.data(), static_cast<std::size_t>(i)), Rows(),
                  StridedVector{d, stride});
}

double MCSymMatrix::ComputeRVD(int i, const std::vector<double>& d, int stride) const {
  if (stride < 1 || d.size() < static_cast<std::size_t>(stride) * Rows()) {
    return MCMV::gMissingValue;
  }
  return ComputeRVD(i, d.data(), stride);
}

double MCSymMatrix::ComputeVSW(const std::vector<double>& V, const std::vector<double>& W) const {
  if (!FitsRows(V) || !FitsRows(W)) return MCMV::gMissingValue;
  return Form(fVec.data(), 0, 0, V, Rows(), W, Rows());
}

double MCSymMatrix::ComputeVSV(const std::vector<double>& V) const {
  return ComputeVSW(V, V);
}

double MCSymMatrix::ComputeVSV(const MCRectMatrix& R, int row) const {
  if (row < 0 || row >= R.GetNRows() || R.GetNCols() != fNRows) return MCMV::gMissingValue;
  const double* v = R.GetRowPtr(row);
  return Form(fVec.data(), 0, 0, v, Rows(), v, Rows());
}

double MCSymMatrix::ComputeVSW(const double* v, int sv, const double* w, int sw) const {
  if (!IsValidMatrix()) return MCMV::gMissingValue;
  return Form(fVec.data(), 0, 0, StridedVector{v, sv}, Rows(), StridedVector{w, sw}, Rows());
}

double MCSymMatrix::ComputeVSW(const std::vector<double>& T, int n, int i, int j) const {
  if (n != fNRows || !IsRow(i) || !IsRow(j) || T.size() != fVec.size()) return MCMV::gMissingValue;
  const ConstRow rowJ(fVec.data(), static_cast<std::size_t>(j));
  ConstRow rowI(fVec.data(), static_cast<std::size_t>(i));
  double sum = 0.0;
  for (std::size_t r = 0; r < Rows(); ++r, ++rowI) {
    sum += *rowI * RowTimes(ConstRow(T.data(), r), Rows(), rowJ);
  }
  return sum;
}

double MCSymMatrix::ComputeVSWParts(const std::vector<double>& V, int nv,
                                    const std::vector<double>& W, int nw) const {
  if (V.size() < NoneIfNegative(std::min(fNRows, nv)) ||
      W.size() < NoneIfNegative(std::min(fNRows, nw))) {
    return MCMV::gMissingValue;
  }
  return ComputeVSWParts(V.data(), nv, W.data(), nw);
}

double MCSymMatrix::ComputeVSWParts(const double* V, int nv, const double* W, int nw) const {
  return Form(fVec.data(), 0, 0, V, NoneIfNegative(std::min(fNRows, nv)), W,
              NoneIfNegative(std::min(fNRows, nw)));
}

double MCSymMatrix::ComputeBlockVSW(int I, int J, const std::vector<double>& V,
                                    const std::vector<double>& W) const {
  if (!IsValidMatrix() || I < 0 || I >= fNBlocks || J < 0 || J >= fNBlocks) {
    return MCMV::gMissingValue;
  }
  const auto size = static_cast<std::size_t>(fBlockSize);
  if (V.size() != size || W.size() != size) return MCMV::gMissingValue;
  return Form(fVec.data(), static_cast<std::size_t>(I) * size, static_cast<std::size_t>(J) * size,
              V, size, W, size);
}

double MCSymMatrix::ComputeBlockVSV(int I, int J, const std::vector<double>& V) const {
  return ComputeBlockVSW(I, J, V, V);
}

// The form is bounded by n^2 times its largest |V[i]|^2 |S(i, i)| if S is semidefinite, so with V
// divided by s it is a double, and its root is multiplied by s.
double MCSymMatrix::SquareRootVSV(const std::vector<double>& V) const {
  if (!FitsRows(V)) return MCMV::gMissingValue;
  double largest = 0.0;
  for (std::size_t i = 0; i < Rows(); ++i) {
    const double magnitude =
        2.0 * std::log(std::fabs(V[i])) + std::log(std::fabs(fVec[detail::DiagonalIndex(i)]));
    if (magnitude > largest) largest = magnitude;
  }
  const double bound = 2.0 * std::log(static_cast<double>(fNRows)) + largest;
  double logScale = 0.0;
  if (bound > MCPower::gMachineMaxExp) {
    logScale = (bound - MCPower::gMachineMaxExp) / 2.0;
    if (logScale > MCPower::gMachineMaxExp) return MCMV::gMissingValue;
  } else if (bound < MCPower::gMachineMinExp) {
    logScale = bound / 2.0;
    if (logScale < MCPower::gMachineMinExp) return 0.0;
  }
  const double scale = std::exp(logScale);
  const ScaledVector scaled{V.data(), scale};
  const double form = Form(fVec.data(), 0, 0, scaled, Rows(), scaled, Rows());
  if (form == MCMV::gMissingValue) return MCMV::gMissingValue;
  if (!(form > 0.0)) return 0.0;
  const double root = std::sqrt(form);
  if (std::log(root) + std::log(scale) > MCPower::gMachineMaxExp) return MCMV::gMissingValue;
  return scale * root;
}

}  // namespace MCCommonMath
