// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace MCCommonMath {

namespace {

using detail::DiagonalIndex;
using detail::RowStart;

// Moves powers of ten between mantissa and exponent until 1 <= |mantissa| < 10. No power of ten
// brings 0, an infinity or a NaN there; they stay.
void Normalise(double& mantissa, double& exponent) {
  if (mantissa == 0.0 || !std::isfinite(mantissa)) return;
  for (; std::abs(mantissa) < 1.0; mantissa *= 10.0) exponent -= 1.0;
  for (; std::abs(mantissa) >= 10.0; mantissa /= 10.0) exponent += 1.0;
}

// Multiplies det[0] * 10^det[1] by x, whose own power of ten is split off first: the product of
// two mantissas can't overflow.
void MultiplyIn(double* det, double x) {
  Normalise(x, det[1]);
  det[0] *= x;
  Normalise(det[0], det[1]);
}

void Determinant(const std::vector<double>& triangle, std::size_t n, bool isSingular, double* det) {
  det[0] = isSingular ? 0.0 : 1.0;
  det[1] = 0.0;
  if (isSingular) return;
  for (std::size_t i = 0; i < n; ++i) MultiplyIn(det, triangle[DiagonalIndex(i)]);
}

// Packed lower triangle, row i at i(i+1)/2. Turns row i of L into row i of the inverse, for which
// it needs the rows up to i of L only. Entry j takes the products X(i, k) L(k, j), k descending
// from i to j + 1, as soon as X(i, k) is known, and is divided by -L(j, j) then.
void InvertRow(double* triangle, std::size_t i) {
  double* const row = triangle + RowStart(i);
  if (row[i] == 0.0) {
    std::fill(row, row + i, 0.0);
    return;
  }
  row[i] = 1.0 / row[i];
  for (std::size_t j = 0; j < i; ++j) row[j] *= row[i];
  for (std::size_t k = i; k-- > 0;) {
    const double* const above = triangle + RowStart(k);
    if (above[k] == 0.0) {
      row[k] = 0.0;
      continue;
    }
    row[k] *= -(1.0 / above[k]);
    for (std::size_t j = 0; j < k; ++j) row[j] += row[k] * above[j];
  }
}

// From the last row upward, so that the rows still needed are those of L. n^3/6.
void InvertTriangle(std::vector<double>& triangle, std::size_t n) {
  for (std::size_t i = n; i-- > 0;) InvertRow(triangle.data(), i);
}

// Turns a factor into the inverse and answers the rank.
int InvertFactored(MCSymMatrix& factor, int nRedundant) {
  if (nRedundant < 0) return nRedundant;
  factor.LTInverse();
  return factor.GetNRows() - nRedundant;
}

}  // namespace

int MCSymMatrix::LTDetInverse(double* det, int job) {
  int nZeros = 0;
  for (std::size_t i = 0; i < Rows(); ++i) nZeros += fVec[DiagonalIndex(i)] == 0.0 ? 1 : 0;
  if (job % 10 != 0) Determinant(fVec, Rows(), nZeros > 0, det);
  if (job >= 10 || job <= -10) InvertTriangle(fVec, Rows());
  return nZeros;
}

void MCSymMatrix::LTInverse() {
  LTDetInverse(nullptr, 10);
  LTLTransL();
}

void MCSymMatrix::LTLTransL() {
  MCMathFun::LTGltl(fNRows, fVec);
}

void MCSymMatrix::LTLLTrans() {
  // Row i takes from rows up to i of L, and its entry j from its own entries up to j.
  for (std::size_t i = Rows(); i-- > 0;) {
    double* const row = fVec.data() + RowStart(i);
    for (std::size_t j = i + 1; j-- > 0;) {
      row[j] = detail::Dot(row, fVec.data() + RowStart(j), j + 1);
    }
  }
}

int MCSymMatrix::CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv) const {
  if (scale.size() < Rows()) return -1;
  inv = *this;
  return InvertFactored(inv, inv.LTChol(scale, tol, false));
}

int MCSymMatrix::CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv,
                             double& minDiag) const {
  if (scale.size() < Rows()) return -1;
  inv = *this;
  const int nRedundant = inv.LTChol(scale, tol, false);
  double maxDiag = 0.0;
  minDiag = MCMV::gMissingValue;
  inv.MaxMinDiag(maxDiag, minDiag);
  return InvertFactored(inv, nRedundant);
}

int MCSymMatrix::CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv,
                             MCBitSet& nonRedundant) const {
  if (scale.size() < Rows()) return -1;
  inv = *this;
  return InvertFactored(inv, inv.LTChol(scale, tol, nonRedundant, false));
}

bool MCSymMatrix::ComputeDeterminant(double tol, double* det) const {
  if (fNRows < 1) return false;
  MCSymMatrix factor(*this);
  double minDiag = 0.0;
  if (!factor.IsValidMatrix() || factor.LTChol(tol, minDiag, true) < 0) return false;
  factor.LTDetInverse(det, 1);
  det[0] *= det[0];
  det[1] *= 2.0;
  Normalise(det[0], det[1]);
  return true;
}

}  // namespace MCCommonMath
