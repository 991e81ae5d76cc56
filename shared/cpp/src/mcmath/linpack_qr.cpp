// SPDX-License-Identifier: Apache-2.0
// Decomposition of rectangular matrices by Householder reflections, and least squares with it.
#include "mcmath/detail/columnorder.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/reflector.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::FreeColumns;
using detail::FullColumns;
using detail::Index;

/// X of n rows and p columns while it is decomposed.
struct Decomposition {
  FullColumns<double> x;
  Index n;
  Index p;
  /// Norms of what remains of the columns to come; heads of the reflections of those done.
  double* qraux;
};

/// Column with the largest remaining norm among k to end - 1.
Index LargestRemaining(const double* norms, Index k, Index end) {
  return k + detail::LargestMagnitude(end - k, norms + k);
}

/// Brings the largest remaining column to k. `work` holds the norms that were last computed afresh.
void BringLargest(const Decomposition& qr, Index k, Index end, int* jpvt, double* work) {
  const Index largest = LargestRemaining(qr.qraux, k, end);
  if (largest == k) return;
  detail::Exchange(qr.n, qr.x.At(0, k), qr.x.At(0, largest));
  qr.qraux[largest] = qr.qraux[k];
  work[largest] = work[k];
  std::swap(jpvt[k], jpvt[largest]);
}

/// Takes row k out of the norm of column j, and computes the norm afresh once too little is left
/// of what it was to be right.
void ReduceNorm(const Decomposition& qr, Index k, Index j, double* work) {
  double& norm = qr.qraux[j];
  if (norm == 0.0) return;
  const double share = std::fabs(*qr.x.At(k, j)) / norm;
  const double rest = std::max(1.0 - share * share, 0.0);
  const double shrunk = norm / work[j];
  if (1.0 + 0.05 * rest * shrunk * shrunk != 1.0) {
    norm *= std::sqrt(rest);
  } else {
    norm = work[j] = detail::NormOf(qr.n - k - 1, qr.x.At(k, j) + 1);
  }
}

/// Reflects the columns behind k so that k becomes zero below its diagonal.
void ReflectAt(const Decomposition& qr, const FreeColumns& free, Index k, double* work) {
  qr.qraux[k] = 0.0;
  if (k == qr.n - 1) return;
  double* const column = qr.x.At(k, k);
  const double diagonal = detail::MakeReflector(qr.n - k, column);
  if (diagonal == 0.0) return;
  for (Index j = k + 1; j < qr.p; ++j) {
    detail::Reflect(qr.n - k, column, qr.x.At(k, j));
    if (free.Contains(j)) ReduceNorm(qr, k, j, work);
  }
  qr.qraux[k] = column[0];
  column[0] = diagonal;
}

/// Applies reflection j of a decomposition to the vectors given, null ones left out. The head of
/// the reflection stands in x for that time.
void ApplyAt(const FullColumns<double>& x, Index n, double* qraux, Index j,
             std::initializer_list<double*> vectors) {
  if (qraux[j] == 0.0) return;
  double* const column = x.At(j, j);
  std::swap(column[0], qraux[j]);
  for (double* const vector : vectors) {
    if (vector != nullptr) detail::Reflect(n - j, column, vector + j);
  }
  std::swap(column[0], qraux[j]);
}

/// Parts Q'y in what the k columns reach and what they don't; either may be null or qty itself.
void Project(const double* qty, Index n, Index k, double* outside, double* inside) {
  if (inside != nullptr) detail::CopyTo(k, qty, inside);
  if (outside != nullptr) {
    detail::CopyTo(n - k, qty + k, outside + k);
    detail::SetToZero(k, outside);
  }
  if (inside != nullptr) detail::SetToZero(n - k, inside + k);
}

/// Solves R b = b for the leading k columns; answers `info`.
int SolveForCoefficients(const FullColumns<double>& x, Index k, double* b) {
  for (Index j = k - 1; j >= 0; --j) {
    if (*x.At(j, j) == 0.0) return static_cast<int>(j + 1);
    b[j] /= *x.At(j, j);
    detail::AddAbove(x, j, -b[j], b);
  }
  return 0;
}

}  // namespace

void Linpack::Dqrdc(double* x, int ldx, int n, int p, double* qraux, int* jpvt, double* work,
                    int job) {
  const Decomposition qr{{x, ldx, n}, n, p, qraux};
  FreeColumns free{0, 0};
  if (job != 0) {
    free = detail::ArrangeColumns(
        jpvt, p, [&qr](Index i, Index j) { detail::Exchange(qr.n, qr.x.At(0, i), qr.x.At(0, j)); });
  }
  for (Index j = free.first; j < free.end; ++j) {
    qraux[j] = work[j] = detail::NormOf(n, qr.x.At(0, j));
  }
  for (Index k = 0; k < std::min(qr.n, qr.p); ++k) {
    if (free.Contains(k)) BringLargest(qr, k, free.end, jpvt, work);
    ReflectAt(qr, free, k, work);
  }
}

void Linpack::Dqrsl(double* x, int ldx, int n, int k, double* qraux, const double* y, double* qy,
                    double* qty, double* b, double* rsd, double* xb, int job, int* info) {
  *info = 0;
  if (n < 1) return;
  const FullColumns<double> view{x, ldx, n};
  const Index reflections = std::min(k, n - 1);
  const Index rows = n;
  const bool bCoefficients = job / 100 % 10 != 0;
  double* const residuals = job / 10 % 10 != 0 ? rsd : nullptr;
  double* const fitted = job % 10 != 0 ? xb : nullptr;
  // Both copies come first, as one of them may be y itself.
  if (job / 10000 != 0) detail::CopyTo(rows, y, qy);
  if (job % 10000 != 0) detail::CopyTo(rows, y, qty);
  if (job / 10000 != 0) {
    for (Index j = reflections - 1; j >= 0; --j) ApplyAt(view, rows, qraux, j, {qy});
  }
  if (job % 10000 == 0) return;
  for (Index j = 0; j < reflections; ++j) ApplyAt(view, rows, qraux, j, {qty});
  if (bCoefficients) detail::CopyTo(k, qty, b);
  Project(qty, rows, k, residuals, fitted);
  if (bCoefficients) *info = SolveForCoefficients(view, k, b);
  for (Index j = reflections - 1; j >= 0; --j) {
    ApplyAt(view, rows, qraux, j, {residuals, fitted});
  }
}

}  // namespace MCCommonMath
