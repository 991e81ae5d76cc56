// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/sweepsteps.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cassert>

namespace MCCommonMath {

namespace {

using detail::DiagonalIndex;
using detail::PackedIndex;
using detail::RowStart;

bool KeepsSweptRowsBounded(const std::vector<double>& triangle, std::size_t n, std::size_t k,
                           double tol, const std::vector<double>& scale, const MCBitSet& pivots) {
  const double pivot = triangle[DiagonalIndex(k)];
  for (std::size_t j = 0; j < n; ++j) {
    if (!pivots.IsIn(static_cast<int>(j))) continue;
    const double element = triangle[PackedIndex(j, k)];
    if (!detail::StaysBounded(triangle[DiagonalIndex(j)], element, pivot, tol, scale[j])) {
      return false;
    }
  }
  return true;
}

void AddMultiple(double a, const double* x, double* y, std::size_t n) {
  for (std::size_t j = 0; j < n; ++j) y[j] += a * x[j];
}

// Packed lower triangle, row i at i(i+1)/2. Takes pivot k in place, about n^2/2 multiply-adds and
// no scratch: a row uses the scaled column k only down to itself, and that part is ready.
void SweepPivot(double* triangle, std::size_t n, std::size_t k) {
  double* const pivotRow = triangle + RowStart(k);
  const double c = -1.0 / pivotRow[k];
  pivotRow[k] = c;
  for (std::size_t i = 0; i < k; ++i) {
    const double a = detail::ScalePivotColumn(pivotRow[i], c);
    AddMultiple(a, pivotRow, triangle + RowStart(i), i + 1);
  }
  const double* const column = triangle + k;
  for (std::size_t i = k + 1; i < n; ++i) {
    double* const row = triangle + RowStart(i);
    const double a = detail::ScalePivotColumn(row[k], c);
    AddMultiple(a, pivotRow, row, k);
    std::size_t start = RowStart(k + 1);
    for (std::size_t j = k + 1; j <= i; start += ++j) row[j] += a * column[start];
  }
}

}  // namespace

bool MCSymMatrix::Sweep(int k, double tol, const std::vector<double>& scale, MCBitSet& pivots,
                        bool check) {
  if (check) {
    if (!IsRow(k) || tol <= 0.0 || scale.size() < Rows() || pivots.Size() < fNRows) return false;
    if (std::any_of(scale.begin(), scale.end(), [](double x) { return x < 0.0; })) return false;
  }
  assert(IsRow(k));
  const std::size_t row = static_cast<std::size_t>(k);
  const bool wasSwept = pivots.IsIn(k);
  if (!wasSwept) {
    if (!detail::IsPivot(fVec[DiagonalIndex(row)], tol, scale[row])) return false;
    if (!KeepsSweptRowsBounded(fVec, Rows(), row, tol, scale, pivots)) return false;
  }
  SweepPivot(fVec.data(), Rows(), row);
  pivots.Set(k, !wasSwept);
  return true;
}

bool MCSymMatrix::GetRegCoeffs(std::vector<double>& b, const MCBitSet& pivots) const {
  const int nCoefficients = std::max(fNRows, 1) - 1;
  if (!IsValidMatrix() || nCoefficients > pivots.Size()) return false;
  b.resize(static_cast<std::size_t>(nCoefficients));
  for (int j = 0; j < nCoefficients; ++j) {
    b[static_cast<std::size_t>(j)] = pivots.IsIn(j) ? GetElem(nCoefficients, j) : 0.0;
  }
  return true;
}

}  // namespace MCCommonMath
