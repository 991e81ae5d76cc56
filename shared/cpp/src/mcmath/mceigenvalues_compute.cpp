// SPDX-License-Identifier: Apache-2.0
//
// What of a pair of matrices becomes of one, and the road from there to the results.
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/setbits.h"
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

bool AllZero(const double* x, std::size_t n) {
  return std::all_of(x, x + n, [](double element) { return element == 0.0; });
}

// Whether squares and products of elements of this magnitude are safe.
bool IsSafe(double x) {
  return x == 0.0 || (std::abs(x) > 0x1p-300 && std::abs(x) < 0x1p300);
}

constexpr int kLargestSafeExponent = 299;

// A power of two by which a matrix is divided, so that its elements are safe: 0 for one that is
// safe as it is. One of large elements stays as large as may be, for the sake of small ones in it.
int ScaleExponent(const std::vector<double>& elements) {
  double largest = 0.0;
  for (const double x : elements) largest = std::max(largest, std::abs(x));
  if (IsSafe(largest)) return 0;
  const int exponent = std::ilogb(largest);
  return exponent < 0 ? exponent : exponent - kLargestSafeExponent;
}

void Scale(std::vector<double>& elements, int exponent) {
  if (exponent == 0) return;
  for (double& x : elements) x = std::ldexp(x, exponent);
}

// A power of two for each row of E. Rows and columns divided by it have a diagonal near 1; that
// changes neither which rows are redundant nor any digit. None if E is safe as it is.
std::vector<int> RowExponents(const MCSymMatrix& E) {
  std::vector<double> diagonal;
  E.GetDiagonal(diagonal);
  if (std::all_of(diagonal.begin(), diagonal.end(), IsSafe)) return {};
  std::vector<int> exponents(diagonal.size());
  // A zero gets the exponent of the least double: what stands beside it mustn't vanish.
  std::transform(diagonal.begin(), diagonal.end(), exponents.begin(),
                 [](double x) { return std::clamp(std::ilogb(x), -1074, 1023) / 2; });
  return exponents;
}

// Divides rows and columns by their powers of two, and all by that of `common`.
void ScaleRows(MCSymMatrix& S, const std::vector<int>& exponents, int common) {
  if (!S.IsValidMatrix()) return;
  double* x = S.AsVector().data();
  for (std::size_t i = 0; i < exponents.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j, ++x) {
      *x = std::ldexp(*x, -(exponents[i] + exponents[j] + common));
    }
  }
}

// Largest exponent that an element would have with rows and columns so divided.
int LargestExponent(const MCSymMatrix& S, const std::vector<int>& exponents) {
  int largest = std::numeric_limits<int>::min();
  const double* x = S.AsVectorConst().data();
  for (std::size_t i = 0; i < exponents.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j, ++x) {
      if (*x != 0.0) largest = std::max(largest, std::ilogb(*x) - exponents[i] - exponents[j]);
    }
  }
  return largest == std::numeric_limits<int>::min() ? 0 : largest;
}

// Makes H safe, its rows and columns being divided like those of E if there are exponents. Answers
// the power of two by which it is divided beside.
int ScaleLikeE(MCSymMatrix& H, const std::vector<int>& exponents) {
  if (exponents.empty()) {
    const int exponent = ScaleExponent(H.AsVectorConst());
    Scale(H.AsVector(), -exponent);
    return exponent;
  }
  const int common = LargestExponent(H, exponents);
  ScaleRows(H, exponents, common);
  return common;
}

// Whether a factorisation has left nothing that a positive semidefinite E can't have: for each
// redundant row i, nothing beside a diagonal of 0, no diagonal element below 0, and no element (k,
// i) behind it above the root of what the diagonal elements leave of (i, i) times (k, k). Both up
// to the tolerance and rounding.
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
    // Squares of what is there could underflow.
    if (diagonal == 0.0 && !AllZero(e + RowStart(i), i)) return false;
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

// E with rows and columns divided by the powers of two that make it safe.
MCSymMatrix Scaled(const MCSymMatrix& E, const std::vector<int>& exponents) {
  MCSymMatrix scaled(E);
  ScaleRows(scaled, exponents, 0);
  return scaled;
}

}  // namespace

bool MCEigenValues::IsValidEMatrix() const {
  if (!fbEMatrix) return true;
  const MCSymMatrix E = Scaled(fmE, RowExponents(fmE));
  MCSymMatrix factor;
  MCBitSet kept;
  return E.IsValidMatrix() && E.GetNRows() == fmH.GetNRows() &&
         FactorSemidefinite(E, fTol, factor, kept);
}

bool MCEigenValues::FactorE() {
  const std::vector<int> exponents = RowExponents(fmE);
  const MCSymMatrix E = Scaled(fmE, exponents);
  MCBitSet kept;
  if (!E.IsValidMatrix() || E.GetNRows() != fmH.GetNRows()) return false;
  if (!FactorSemidefinite(E, fTol, fmCholGI, kept)) return false;
  E.GetDiagonal(fvEDiag);
  fmCholGI.LTDetInverse(nullptr, 10);
  fvKeptRows = detail::SetBits(kept, E.GetNRows());
  fRankE = static_cast<int>(fvKeptRows.size());
  if (exponents.empty()) return true;
  for (const int i : fvKeptRows) fvExponentsE.push_back(exponents[static_cast<std::size_t>(i)]);
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
  fExponent = ScaleLikeE(H, fvExponentsE);

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
  return AllFinite(fvEigenVal) && AllFinite(fmEigenVectors.AsVectorConst());
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
