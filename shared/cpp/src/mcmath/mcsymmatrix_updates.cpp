// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <limits>

namespace MCCommonMath {

using detail::RowStart;

namespace {

void AddMultiple(double* y, std::size_t n, double a, const double* x) {
  for (std::size_t j = 0; j < n; ++j) y[j] += a * x[j];
}

int ToRowCount(std::size_t size) {
  return static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max()));
}

}  // namespace

void MCSymMatrix::SetToVV(const std::vector<double>& v) {
  if (&v == &fVec) {
    SetToVV(std::vector<double>(v));
    return;
  }
  SetNRows(ToRowCount(v.size()));
  for (std::size_t i = 0; i < Rows(); ++i) {
    double* row = fVec.data() + RowStart(i);
    for (std::size_t j = 0; j <= i; ++j) row[j] = v[i] * v[j];
  }
}

bool MCSymMatrix::UpdateXX(const std::vector<double>& x, double w) {
  return w > 0.0 && UpdateXXPosNegW(x, w);
}

bool MCSymMatrix::UpdateXXPosNegW(const std::vector<double>& x, double w) {
  if (!FitsRows(x)) return false;
  detail::AddRankOne(fVec.data(), x.size(), x.data(), w);
  return true;
}

bool MCSymMatrix::UpdateXXNonRedun(const std::vector<double>& x, const MCBitSet& mask, double w) {
  if (!FitsRows(x)) return false;
  const int length = std::min(fNRows, mask.Size());
  for (int i = 0; i < length; ++i) {
    const double xi = x[static_cast<std::size_t>(i)];
    if (xi == 0.0 || !mask.IsIn(i)) continue;
    const double factor = w * xi;
    double* row = fVec.data() + RowStart(static_cast<std::size_t>(i));
    for (int j = 0; j <= i; ++j) {
      if (mask.IsIn(j)) row[j] += factor * x[static_cast<std::size_t>(j)];
    }
  }
  return true;
}

bool MCSymMatrix::UpdateXXSparse(int m, const std::vector<int>& idx, const std::vector<double>& val,
                                 double w) {
  const std::size_t count = m < 0 ? 0 : static_cast<std::size_t>(m);
  if (!IsValidMatrix() || count > idx.size() || count > val.size() || !(w > 0.0)) return false;
  if (&val == &fVec) return UpdateXXSparse(m, idx, std::vector<double>(val), w);
  for (std::size_t a = 0; a < count; ++a) {
    const int i = idx[a];
    if (!IsRow(i)) continue;
    const double factor = w * val[a];
    double* row = fVec.data() + RowStart(static_cast<std::size_t>(i));
    for (std::size_t b = 0; b < count; ++b) {
      if (!IsRow(idx[b])) continue;
      if (idx[b] > i) break;
      row[idx[b]] += factor * val[b];
    }
  }
  return true;
}

bool MCSymMatrix::UpdateXXMat2(const MCRectMatrix& A, const MCRectMatrix& B, double w) {
  if (!IsValidMatrix() || !A.IsValidMatrix() || A.GetNRows() != B.GetNRows()) return false;
  const auto p = static_cast<std::size_t>(A.GetNCols());
  const auto q = static_cast<std::size_t>(B.GetNCols());
  if (p + q != Rows() || !(w > 0.0)) return false;
  for (int r = 0; r < A.GetNRows(); ++r) {
    const double* a = A.GetRowPtr(r);
    const double* b = B.GetRowPtr(r);
    detail::AddRankOne(fVec.data(), p, a, 1.0);
    for (std::size_t k = 0; k < q; ++k) {
      if (b[k] == 0.0) continue;
      double* row = fVec.data() + RowStart(p + k);
      AddMultiple(row, p, b[k], a);
      AddMultiple(row + p, k + 1, b[k], b);
    }
  }
  return true;
}

bool MCSymMatrix::ComputeRTransByR(const MCRectMatrix& R) {
  if (!R.IsValidMatrix()) return false;
  SetNRows(R.GetNCols());
  if (!IsValidMatrix()) return false;
  for (int r = 0; r < R.GetNRows(); ++r) {
    detail::AddRankOne(fVec.data(), Rows(), R.GetRowPtr(r), 1.0);
  }
  return true;
}

bool MCSymMatrix::ComputeRByRTrans(const MCRectMatrix& R) {
  if (!R.IsValidMatrix()) return false;
  SetNRows(R.GetNRows());
  double* element = fVec.data();
  for (int i = 0; i < fNRows; ++i) {
    for (int j = 0; j <= i; ++j) *element++ = R.DotProductRows(i, j);
  }
  return IsValidMatrix();
}

}  // namespace MCCommonMath
