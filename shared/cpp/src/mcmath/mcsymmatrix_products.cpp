// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"

#include <algorithm>

namespace MCCommonMath {

using detail::PackedRow;
using detail::RowStart;
using detail::StridedVector;
using detail::TimesVector;

namespace {

// Gives `out` that many rows, zeroed if it had another number; false where memory runs out.
bool TakeRows(MCSymMatrix& out, int n) {
  if (out.GetNRows() != n) out.SetNRows(n);
  return out.IsValidMatrix();
}

bool TakeZeroRows(MCSymMatrix& out, int n) {
  out.SetNRows(n);
  return out.IsValidMatrix();
}

double DotProduct(const double* x, const double* y, std::size_t n) {
  double sum = 0.0;
  for (std::size_t j = 0; j < n; ++j) sum += x[j] * y[j];
  return sum;
}

// The triangle of S M S, for packed M and product of as many rows as S.
void ComputeSMS(const MCSymMatrix& S, const double* M, double* product) {
  std::vector<double> row;
  std::vector<double> half;
  for (int r = 0; S.GetRow(r, row); ++r) {
    half.resize(row.size());
    TimesVector(M, row.size(), row, half.data());
    TimesVector(S.AsVectorConst().data(), row.size(), half, row.data());
    product = std::copy_n(row.data(), r + 1, product);
  }
}

}  // namespace

bool MCSymMatrix::IncrVecByRow(int i, std::vector<double>& v, int pos, int m, double a,
                               bool check) const {
  if (fNRows < 1) return false;
  if (check) {
    if (!IsRow(i) || m < 1 || m > fNRows || pos < 0) return false;
    if (static_cast<std::size_t>(pos) + static_cast<std::size_t>(m) > v.size()) return false;
  }
  PackedRow<const double> row(fVec.data(), static_cast<std::size_t>(i));
  double* to = v.data() + pos;
  for (int j = 0; j < m; ++j, ++row) to[j] += a * *row;
  return true;
}

bool MCSymMatrix::ComputeSV(const std::vector<double>& v, std::vector<double>& out) const {
  if (!FitsRows(v)) return false;
  if (&out == &v) return ComputeSV(std::vector<double>(v), out);
  out.resize(Rows());
  TimesVector(fVec.data(), Rows(), v, out.data());
  return true;
}

bool MCSymMatrix::ComputeSV(int m, const std::vector<double>& v, std::vector<double>& out) const {
  if (m < 0 || m > fNRows || static_cast<std::size_t>(m) > v.size()) return false;
  if (&out == &v) return ComputeSV(m, std::vector<double>(v), out);
  const auto count = static_cast<std::size_t>(m);
  if (out.size() < count) out.resize(count);
  TimesVector(fVec.data(), count, v, out.data());
  return true;
}

// From the last row up, so that out may be v: row i needs v[0] to v[i] only.
bool MCSymMatrix::ComputeLV(const std::vector<double>& v, std::vector<double>& out) const {
  if (!FitsRows(v)) return false;
  out.resize(Rows());
  for (std::size_t i = Rows(); i-- > 0;) {
    out[i] = DotProduct(fVec.data() + RowStart(i), v.data(), i + 1);
  }
  return true;
}

// Row i of L adds to out[0] to out[i], and v[i] is still there when its turn comes.
bool MCSymMatrix::ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const {
  if (!FitsRows(v)) return false;
  out.resize(Rows());
  const double* row = fVec.data();
  for (std::size_t i = 0; i < Rows(); ++i) {
    const double vi = v[i];
    for (std::size_t j = 0; j < i; ++j) out[j] += row[j] * vi;
    out[i] = 0.0 + row[i] * vi;
    row += i + 1;
  }
  return true;
}

bool MCSymMatrix::ComputeSTransS(MCSymMatrix& out) const {
  if (!IsValidMatrix()) return false;
  if (&out == this) return MCSymMatrix(*this).ComputeSTransS(out);
  if (!TakeRows(out, fNRows)) return false;
  out.Clear();
  std::vector<double> row;
  for (int r = 0; r < fNRows; ++r) {
    GetRow(r, row);
    detail::AddRankOne(out.fVec.data(), Rows(), row.data(), 1.0);
  }
  return true;
}

bool MCSymMatrix::ComputeSS(const MCSymMatrix& T, MCRectMatrix& out) const {
  if (!IsValidMatrix() || T.fNRows != fNRows || !out.SetNRowsCols(fNRows, fNRows)) return false;
  std::vector<double> row;
  double* to = out.AsVector().data();
  for (int i = 0; i < fNRows; ++i, to += fNRows) {
    GetRow(i, row);
    TimesVector(T.fVec.data(), Rows(), row, to);
  }
  return true;
}

bool MCSymMatrix::ComputeRS(const MCRectMatrix& R, MCRectMatrix& out) const {
  if (!IsValidMatrix() || !R.IsValidMatrix() || R.GetNCols() != fNRows) return false;
  if (&out == &R) return ComputeRS(MCRectMatrix(R), out);
  if (!out.SetNRowsCols(R.GetNRows(), fNRows)) return false;
  double* to = out.AsVector().data();
  for (int r = 0; r < R.GetNRows(); ++r, to += fNRows) {
    TimesVector(fVec.data(), Rows(), R.GetRowPtr(r), to);
  }
  return true;
}

bool MCSymMatrix::ComputeRSRTrans(const MCRectMatrix& R, MCSymMatrix& out) const {
  if (!IsValidMatrix() || !R.IsValidMatrix() || R.GetNCols() != fNRows) return false;
  if (&out == this) return MCSymMatrix(*this).ComputeRSRTrans(R, out);
  if (!TakeRows(out, R.GetNRows())) return false;
  std::vector<double> product(Rows());
  double* element = out.fVec.data();
  for (int r = 0; r < R.GetNRows(); ++r) {
    TimesVector(fVec.data(), Rows(), R.GetRowPtr(r), product.data());
    for (int c = 0; c <= r; ++c) *element++ += DotProduct(R.GetRowPtr(c), product.data(), Rows());
  }
  return true;
}

bool MCSymMatrix::ComputeRTransSR(const MCRectMatrix& R, MCSymMatrix& out) const {
  if (!IsValidMatrix() || R.GetNRows() != fNRows) return false;
  if (&out == this) return MCSymMatrix(*this).ComputeRTransSR(R, out);
  if (!TakeZeroRows(out, R.GetNCols())) return false;
  std::vector<double> product(Rows());
  const double* elements = R.AsVectorConst().data();
  const std::size_t nCols = out.Rows();
  for (std::size_t c = 0; c < nCols; ++c) {
    const StridedVector column{R.GetColPtr(static_cast<int>(c)), R.GetNCols()};
    TimesVector(fVec.data(), Rows(), column, product.data());
    double* row = out.fVec.data() + RowStart(c);
    for (std::size_t i = 0; i < Rows(); ++i) {
      for (std::size_t j = 0; j <= c; ++j) row[j] += elements[i * nCols + j] * product[i];
    }
  }
  return true;
}

// The product is formed apart, as M, out and this matrix may share their elements.
bool MCSymMatrix::ComputeGMG(const std::vector<double>& M, MCSymMatrix& out) const {
  MCSymMatrix product(fNRows);
  if (!product.IsValidMatrix()) return false;
  const bool fits = M.size() <= fVec.size();
  if (M.size() == fVec.size()) {
    ComputeSMS(*this, M.data(), product.fVec.data());
  } else {
    std::fill(product.fVec.begin(), product.fVec.end(), MCMV::gMissingValue);
  }
  return TakeRows(out, product.fNRows) && out.ComputeAXpY(1.0, product) && fits;
}

bool MCSymMatrix::ComputeLSLTrans(const MCSymMatrix& L, MCSymMatrix& out) const {
  if (!IsValidMatrix() || L.fNRows != fNRows) return false;
  if (&out == this || &out == &L) {
    return MCSymMatrix(*this).ComputeLSLTrans(MCSymMatrix(L), out);
  }
  if (!TakeZeroRows(out, fNRows)) return false;
  std::vector<double> product(Rows());
  double* element = out.fVec.data();
  for (std::size_t r = 0; r < Rows(); ++r) {
    TimesVector(fVec.data(), r + 1, L.fVec.data() + RowStart(r), product.data());
    for (std::size_t c = 0; c <= r; ++c) {
      *element++ = DotProduct(L.fVec.data() + RowStart(c), product.data(), c + 1);
    }
  }
  return true;
}

double MCSymMatrix::TraceOfProduct(const MCSymMatrix& T) const {
  if (!IsValidMatrix() || T.fNRows != fNRows) return MCMV::gMissingValue;
  double sum = 0.0;
  for (std::size_t i = 0; i < Rows(); ++i) {
    const double* s = fVec.data() + RowStart(i);
    const double* t = T.fVec.data() + RowStart(i);
    sum += 2.0 * DotProduct(s, t, i) + s[i] * t[i];
  }
  return sum;
}

double MCSymMatrix::TraceOfProductOfThree(const MCSymMatrix& T, const MCSymMatrix& U) const {
  if (!IsValidMatrix() || T.fNRows != fNRows || U.fNRows != fNRows) return MCMV::gMissingValue;
  std::vector<double> row;
  std::vector<double> product(Rows());
  double sum = 0.0;
  for (int i = 0; i < fNRows; ++i) {
    GetRow(i, row);
    TimesVector(T.fVec.data(), Rows(), row, product.data());
    sum += U.ComputeRVD(i, product, 1);
  }
  return sum;
}

}  // namespace MCCommonMath
