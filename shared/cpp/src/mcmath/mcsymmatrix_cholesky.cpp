// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

using detail::RowStart;

// Element j of a row of L, from what is left of the row's own element. A row j that is redundant,
// with L(j, j) = 0, contributes nothing.
double DivideByDiagonal(double left, double diagonal) {
  return diagonal != 0.0 ? left / diagonal : 0.0;
}

// Packed lower triangle, row i at i(i+1)/2. Turns row i into that of L, given the rows above it and
// its own first `from` columns, and answers whether it isn't redundant: whether what is left of
// its diagonal exceeds `floor`.
bool FactorRow(double* triangle, std::size_t i, std::size_t from, double floor) {
  double* const row = triangle + RowStart(i);
  for (std::size_t j = from; j < i; ++j) {
    const double* const above = triangle + RowStart(j);
    row[j] = DivideByDiagonal(row[j] - detail::Dot(row, above, j), above[j]);
  }
  const double s = row[i] - detail::Dot(row, row, i);
  const bool isKept = s > floor;
  row[i] = isKept ? std::sqrt(s) : 0.0;
  return isKept;
}

// The columns before column i of rows i to i + kDotRows - 1, which have nothing to do with each
// other: so each row above is read once for all of them.
void FactorLeftColumns(double* triangle, std::size_t i, const detail::VectorKernels& kernels) {
  double* rows[detail::kDotRows];
  for (std::size_t r = 0; r < detail::kDotRows; ++r) rows[r] = triangle + RowStart(i + r);
  for (std::size_t j = 0; j < i; ++j) {
    const double* const above = triangle + RowStart(j);
    double dots[detail::kDotRows];
    kernels.dotRows(rows, above, j, dots);
    for (std::size_t r = 0; r < detail::kDotRows; ++r) {
      rows[r][j] = DivideByDiagonal(rows[r][j] - dots[r], above[j]);
    }
  }
}

// Factors all rows, tells `mark` which of them are kept and answers how many are not. n^3/6.
template <class Mark>
int FactorRows(std::vector<double>& triangle, std::size_t n, const std::vector<double>& scale,
               double tol, Mark mark) {
  const detail::VectorKernels& kernels = detail::KernelsOf(detail::WidestVectorPath());
  int nRedundant = 0;
  std::size_t from = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (i % detail::kDotRows == 0 && i + detail::kDotRows <= n) {
      FactorLeftColumns(triangle.data(), i, kernels);
      from = i;
    } else if (i % detail::kDotRows == 0) {
      from = 0;
    }
    if (FactorRow(triangle.data(), i, from, tol * scale[i])) {
      mark(static_cast<int>(i));
    } else {
      ++nRedundant;
    }
  }
  return nRedundant;
}

bool IsScale(const std::vector<double>& scale, std::size_t n, double tol, bool check) {
  if (scale.size() < n) return false;
  if (!check) return true;
  const auto end = scale.begin() + static_cast<std::ptrdiff_t>(n);
  return !(tol < 0.0) && std::none_of(scale.begin(), end, [](double x) { return x < 0.0; });
}

}  // namespace

int MCSymMatrix::LTChol(const std::vector<double>& scale, double tol, bool check) {
  if (!IsScale(scale, Rows(), tol, check)) return -1;
  return FactorRows(fVec, Rows(), scale, tol, [](int) {});
}

int MCSymMatrix::LTChol(const std::vector<double>& scale, double tol, MCBitSet& nonRedundant,
                        bool check) {
  if (nonRedundant.Size() < fNRows) {
    nonRedundant.Resize(fNRows, false);
  } else {
    nonRedundant.Clear();
  }
  if (!IsScale(scale, Rows(), tol, check)) return -1;
  return FactorRows(fVec, Rows(), scale, tol,
                    [&nonRedundant](int i) { nonRedundant.Set(i, true); });
}

int MCSymMatrix::LTChol(double tol, double& minDiag, bool check) {
  minDiag = MCMV::gMissingValue;
  std::vector<double> scale;
  GetNCheckDiagonal(scale, tol, 1.0);
  const int nRedundant = LTChol(scale, tol, check);
  double maxDiag = 0.0;
  if (nRedundant >= 0) MaxMinDiag(maxDiag, minDiag);
  return nRedundant;
}

int MCSymMatrix::CholIndNonRed(int maxCount, double tol, std::vector<int>& indices) {
  indices.clear();
  if (tol < 0.0) return 0;
  const std::size_t limit =
      maxCount < 1 ? Rows() : std::min(Rows(), static_cast<std::size_t>(maxCount));
  std::vector<double> factor(fVec);
  for (std::size_t i = 0; i < Rows() && indices.size() < limit; ++i) {
    const double floor = tol * fVec[detail::DiagonalIndex(i)];
    if (FactorRow(factor.data(), i, 0, floor)) indices.push_back(static_cast<int>(i));
  }
  return static_cast<int>(indices.size());
}

int MCSymMatrix::CheckMDependent(int m, const std::vector<double>& packed, const MCBitSet& mask,
                                 double tol) {
  if (m < 0 || m > mask.Size()) return -1;
  const std::size_t nRows = static_cast<std::size_t>(m);
  if (packed.size() < RowStart(nRows)) return -1;
  if (m < 1) return 0;
  if (&packed == &fVec) return CheckMDependent(m, std::vector<double>(packed), mask, tol);

  SetNRows(mask.InRangeS(0, m));
  if (!IsValidMatrix()) return -2;
  double* next = fVec.data();
  for (int i = 0; i < m; ++i) {
    if (!mask.IsIn(i)) continue;
    const double* const row = packed.data() + RowStart(static_cast<std::size_t>(i));
    for (int j = 0; j <= i; ++j) {
      if (mask.IsIn(j)) *next++ = row[j];
    }
  }
  std::vector<double> scale;
  GetNCheckDiagonal(scale, tol, 1.0);
  return LTChol(scale, tol, false);
}

}  // namespace MCCommonMath
