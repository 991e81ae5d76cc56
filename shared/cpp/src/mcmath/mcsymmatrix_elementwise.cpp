// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MCCommonMath {

using detail::DiagonalIndex;
using detail::PackedRow;
using detail::RowStart;

namespace {

// The extremes of what it has seen. A NaN compares with nothing, so it is passed over.
struct Extremes {
  double max = std::numeric_limits<double>::lowest();
  double min = std::numeric_limits<double>::max();

  void See(double x) {
    if (x > max) max = x;
    if (x < min) min = x;
  }
};

}  // namespace

void MCSymMatrix::AddToDiagonal(double a) {
  for (std::size_t i = 0; i < Rows(); ++i) fVec[DiagonalIndex(i)] += a;
}

void MCSymMatrix::ChangeSign() {
  for (double& x : fVec) x = -x;
}

void MCSymMatrix::MultiplyByNumber(double a) {
  for (double& x : fVec) x *= a;
}

bool MCSymMatrix::ComputeAXpY(double a, const MCSymMatrix& X) {
  if (!IsValidMatrix() || fNRows != X.fNRows) return false;
  for (std::size_t k = 0; k < fVec.size(); ++k) fVec[k] += a * X.fVec[k];
  return true;
}

bool MCSymMatrix::SetRowColToConst(int i, double a) {
  if (!IsRow(i)) return false;
  PackedRow<double> row(fVec.data(), static_cast<std::size_t>(i));
  for (std::size_t j = 0; j < Rows(); ++j, ++row) *row = a;
  return true;
}

bool MCSymMatrix::ZeroOut(int i) {
  return SetRowColToConst(i, 0.0);
}

void MCSymMatrix::ZeroOutAllSmall(double tol) {
  if (!(tol > 0.0)) return;
  double largest = 0.0;
  for (std::size_t i = 0; i < Rows(); ++i) {
    const double d = std::fabs(fVec[DiagonalIndex(i)]);
    if (d > largest) largest = d;
  }
  const double bound = tol * largest;
  if (!(bound > 0.0)) return;
  for (double& x : fVec) {
    if (std::fabs(x) <= bound) x = 0.0;
  }
}

void MCSymMatrix::ZeroOutRowsForSmallDiag(double tol) {
  if (!(tol > 0.0)) return;
  double largest = 0.0;
  for (int i = 0; i < fNRows; ++i) {
    const double d = std::fabs(fVec[DiagonalIndex(static_cast<std::size_t>(i))]);
    if (d > largest) largest = d;
    if (largest == 0.0 ? !std::isnan(d) : d / largest < tol) ZeroOut(i);
  }
}

void MCSymMatrix::ZeroOutNonDiag(double tol) {
  if (!(tol > 0.0)) return;
  for (std::size_t i = 0; i < Rows(); ++i) {
    double* row = fVec.data() + RowStart(i);
    for (std::size_t j = 0; j < i; ++j) {
      const double scale = std::sqrt(std::fabs(fVec[DiagonalIndex(j)]) * std::fabs(row[i]));
      if (tol * scale >= std::fabs(row[j])) row[j] = 0.0;
    }
  }
}

bool MCSymMatrix::AdjustOffDiagCorr(double delta) {
  if (!(delta >= 0.0 && delta < 1.0)) return false;
  const double limit = 1.0 - delta;
  for (std::size_t i = 0; i < Rows(); ++i) {
    double* row = fVec.data() + RowStart(i);
    for (std::size_t j = 0; j < i; ++j) {
      if (row[j] >= 1.0) {
        row[j] = limit;
      } else if (row[j] <= -1.0) {
        row[j] = -limit;
      }
    }
  }
  return true;
}

bool MCSymMatrix::SetCovarZeros(MCSymMatrix& other) {
  if (!IsValidMatrix() || fNRows != other.fNRows) return false;
  for (int i = 0; i < fNRows; ++i) {
    const std::size_t diagonal = DiagonalIndex(static_cast<std::size_t>(i));
    if (fVec[diagonal] <= 0.0 || other.fVec[diagonal] <= 0.0) {
      ZeroOut(i);
      other.ZeroOut(i);
    }
  }
  return true;
}

bool MCSymMatrix::ReplaceFirstRows(const MCSymMatrix& X, int k) {
  if (k < 1 || k > fNRows || k > X.fNRows) return false;
  if (&X == this) return true;
  std::copy_n(X.fVec.begin(), RowStart(static_cast<std::size_t>(k)), fVec.begin());
  return true;
}

void MCSymMatrix::ExtractFirstNRows(MCSymMatrix& out) const {
  const int n = std::max(fNRows - 1, 0);
  if (&out == this) {
    out.Resize(n);
    return;
  }
  out.SetNRows(n);
  out.ReplaceFirstRows(*this, n);
}

double MCSymMatrix::Trace() const {
  double sum = 0.0;
  for (std::size_t i = 0; i < Rows(); ++i) sum += fVec[DiagonalIndex(i)];
  return sum;
}

void MCSymMatrix::MaxMinDiag(double& max, double& min) const {
  if (fNRows < 1) return;
  Extremes diagonal;
  for (std::size_t i = 0; i < Rows(); ++i) diagonal.See(fVec[DiagonalIndex(i)]);
  max = diagonal.max;
  min = diagonal.min;
}

void MCSymMatrix::MaxMinDiagOffDiag(double& maxD, double& minD, double& maxO, double& minO) const {
  if (fNRows < 1) return;
  MaxMinDiag(maxD, minD);
  Extremes below;
  for (std::size_t i = 1; i < Rows(); ++i) {
    for (std::size_t k = RowStart(i); k < DiagonalIndex(i); ++k) below.See(fVec[k]);
  }
  maxO = below.max;
  minO = below.min;
}

bool MCSymMatrix::IsZeroRow(int i, const MCBitSet& mask) const {
  const int length = std::min(fNRows, mask.Size());
  if (!IsRow(i) || length < 1) return false;
  PackedRow<const double> row(fVec.data(), static_cast<std::size_t>(i));
  for (int j = 0; j < length; ++j, ++row) {
    if (mask.IsIn(j) && *row != 0.0) return false;
  }
  return true;
}

void MCSymMatrix::GetNCheckDiagonal(std::vector<double>& d, double tol, double replacement) const {
  if (!IsValidMatrix()) return;
  GetDiagonal(d);
  for (double& x : d) {
    if (x < tol) x = replacement;
  }
}

}  // namespace MCCommonMath
