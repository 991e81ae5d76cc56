// SPDX-License-Identifier: Apache-2.0
//
// What of a pair of matrices becomes of one, and the road from there to the results.
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mceigenvalues.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MCCommonMath {

namespace {

using detail::DiagonalIndex;
using detail::RowStart;

bool AllFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); });
}

// A power of two by which a matrix is divided, so that squares and products of its elements are
// safe: 0 for one that is safe as it is.
int ScaleExponent(const std::vector<double>& elements) {
  double largest = 0.0;
  for (const double x : elements) largest = std::max(largest, std::abs(x));
  if (largest == 0.0 || (largest > 0x1p-300 && largest < 0x1p300)) return 0;
  return std::ilogb(largest);
}

void Scale(std::vector<double>& elements, int exponent) {
  if (exponent == 0) return;
  for (double& x : elements) x = std::ldexp(x, exponent);
}

// Whether a factorisation has left nothing that a positive semidefinite E can't have: for each
// redundant row i, no diagonal element below 0, and no element (k, i) behind it above the root of
// what the diagonal elements leave of (i, i) times (k, k). Both up to the tolerance and rounding.
bool IsRestSmall(const MCSymMatrix& E, const MCSymMatrix& factor, const MCBitSet& kept,
                 double tol) {
  const std::size_t n = static_cast<std::size_t>(E.GetNRows());
  const double bound = tol + 8.0 * static_cast<double>(n) * std::numeric_limits<double>::epsilon();
  const double* const e = E.AsVectorConst().data();
  const double* const l = factor.AsVectorConst().data();
  for (std::size_t i = 0; i < n; ++i) {
    if (kept.IsIn(static_cast<int>(i))) continue;
    const double diagonal = e[DiagonalIndex(i)];
    const double* const row = l + RowStart(i);
    if (!(diagonal - detail::Dot(row, row, i) >= -bound * diagonal)) return false;
    for (std::size_t k = i + 1; k < n; ++k) {
      const double rest = e[RowStart(k) + i] - detail::Dot(l + RowStart(k), row, i);
      const double most = std::sqrt(bound * diagonal) * std::sqrt(e[DiagonalIndex(k)]);
      if (!(std::abs(rest) <= most)) return false;
    }
  }
  return true;
}

// Factors a positive semidefinite E; false for another.
bool FactorSemidefinite(const MCSymMatrix& E, double tol, MCSymMatrix& factor, MCBitSet& kept) {
  if (!AllFinite(E.AsVectorConst())) return false;
  factor = E;
  if (!factor.IsValidMatrix()) return false;
  std::vector<double> scale;
  E.GetDiagonal(scale);
  factor.LTChol(scale, tol, kept, false);
  return IsRestSmall(E, factor, kept, tol);
}

// E divided by 4 to the power of `exponent`, which is chosen so that it is safe to work with.
MCSymMatrix ScaledByFours(const MCSymMatrix& E, int& exponent) {
  MCSymMatrix scaled(E);
  exponent = ScaleExponent(scaled.AsVectorConst()) / 2;
  Scale(scaled.AsVector(), -2 * exponent);
  return scaled;
}

}  // namespace

bool MCEigenValues::IsValidEMatrix() const {
  if (!fbEMatrix) return true;
  int exponent = 0;
  const MCSymMatrix E = ScaledByFours(fmE, exponent);
  MCSymMatrix factor;
  MCBitSet kept;
  return E.IsValidMatrix() && E.GetNRows() == fmH.GetNRows() &&
         FactorSemidefinite(E, fTol, factor, kept);
}

bool MCEigenValues::FactorE() {
  const MCSymMatrix E = ScaledByFours(fmE, fExponentE);
  MCBitSet kept;
  if (!E.IsValidMatrix() || E.GetNRows() != fmH.GetNRows()) return false;
  if (!FactorSemidefinite(E, fTol, fmCholGI, kept)) return false;
  E.GetDiagonal(fvEDiag);
  fmCholGI.LTDetInverse(nullptr, 10);
  for (int i = 0; i < E.GetNRows(); ++i) {
    if (kept.IsIn(i)) fvKeptRows.push_back(i);
  }
  fRankE = static_cast<int>(fvKeptRows.size());
  return true;
}

// Row i of V H V' takes what row i of V and the rows of H up to there give: of that product, times
// the rows of V up to i, no more is needed. 2 n^3 / 3 multiply-adds.
bool MCEigenValues::ReduceByE() {
  MCSymMatrix H;
  MCSymMatrix V;
  fmVHV.SetNRows(fRankE);
  if (!fmH.ExtractSubmatrix(fvKeptRows, H) || !fmCholGI.ExtractSubmatrix(fvKeptRows, V)) {
    return false;
  }
  if (!fmVHV.IsValidMatrix()) return false;
  const int exponent = ScaleExponent(H.AsVectorConst());
  Scale(H.AsVector(), -exponent);
  fExponent = exponent - 2 * fExponentE;

  const std::size_t n = static_cast<std::size_t>(fRankE);
  std::vector<double> product(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double* const rows = V.AsVectorConst().data();
    detail::TimesVector(H.AsVectorConst().data(), i + 1, rows + RowStart(i), product.data());
    double* const to = fmVHV.AsVector().data() + RowStart(i);
    for (std::size_t j = 0; j <= i; ++j) {
      to[j] = detail::Dot(product.data(), rows + RowStart(j), j + 1);
    }
  }
  return AllFinite(fmVHV.AsVectorConst());
}

bool MCEigenValues::TriDiag() {
  if (!fmH.IsValidMatrix() || !AllFinite(fmH.AsVectorConst())) return false;
  if (fbEMatrix && !(FactorE() && ReduceByE())) return false;
  fmOrthInfo = fbEMatrix ? fmVHV : fmH;
  if (!fmOrthInfo.IsValidMatrix()) return false;
  const int exponent = ScaleExponent(fmOrthInfo.AsVectorConst());
  Scale(fmOrthInfo.AsVector(), -exponent);
  fExponent += exponent;
  Tred3();
  return true;
}

bool MCEigenValues::Solve() {
  if (!TriDiag() || !EigenValuesTQLI()) return false;
  if (fbVectors && !BackTransVectors()) return false;
  Scale(fvEigenVal, fExponent);
  return AllFinite(fvEigenVal);
}

bool MCEigenValues::Run(bool withVectors) {
  Withdraw();
  fbVectors = withVectors;
  if (!Solve()) {
    Withdraw();
    return false;
  }
  fNEigenVal = static_cast<int>(fvEigenVal.size());
  fbComputed = true;
  return true;
}

}  // namespace MCCommonMath
