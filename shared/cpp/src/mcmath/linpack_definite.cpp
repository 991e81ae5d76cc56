// SPDX-License-Identifier: Apache-2.0
// Positive definite matrices, full, packed and banded: A = R'R by columns of R. All storages go
// through the same steps.
#include "mcmath/detail/conditionvector.h"
#include "mcmath/detail/decimalproduct.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <cmath>

namespace MCCommonMath {

namespace {

using detail::ConditionVector;
using detail::FullColumns;
using detail::Index;
using detail::PackedColumns;
using detail::SymmetricBandColumns;

/// Computes column j of R above its diagonal in place; answers the sum of its squares.
template <class View>
double FactorColumn(const View& view, Index j) {
  const Index first = view.FirstRow(j);
  double squares = 0.0;
  for (Index k = first; k < j; ++k) {
    // Both columns are stored from `first` on, as bands begin further down from column to column.
    double& element = *view.At(k, j);
    element -= detail::DotProduct(k - first, view.At(first, k), view.At(first, j));
    element /= *view.At(k, k);
    squares += element * element;
  }
  return squares;
}

/// `info` of the published routines: the order, from 1, of the first block that isn't positive
/// definite, or 0.
template <class View>
int Factor(const View& view) {
  for (Index j = 0; j < view.n; ++j) {
    double& diagonal = *view.At(j, j);
    const double rest = diagonal - FactorColumn(view, j);
    if (!(rest > 0.0)) return static_cast<int>(j + 1);
    diagonal = std::sqrt(rest);
  }
  return 0;
}

template <class View>
void Solve(const View& view, double* b) {
  detail::SolveUpperTransposed(view, view.n, b);
  detail::SolveUpper(view, view.n, b);
}

/// z = inv(R') z.
template <class View>
void SolveTransposedScaled(const View& view, ConditionVector& z) {
  for (Index k = 0; k < view.n; ++k) {
    z[k] -= detail::DotAbove(view, k, z.From(0));
    z.Divide(k, *view.At(k, k));
  }
  z.Normalise();
}

template <class View>
void FactorAndEstimate(const View& view, double* rcond, double* work, int* info) {
  *info = 0;
  if (view.n < 1) {
    *rcond = 0.0;
    return;
  }
  const double norm = detail::SymmetricNorm(view, view.n, work);
  *info = Factor(view);
  if (*info != 0) return;
  ConditionVector z(work, view.n);
  for (Index k = 0; k < view.n; ++k) {
    z.Grow(k, *view.At(k, k), k + 1, view.LastColumn(k) + 1,
           [&view, k](Index j) { return *view.At(k, j); });
  }
  z.Normalise();
  detail::SolveUpper(view, z);
  z.Restart();
  SolveTransposedScaled(view, z);
  detail::SolveUpper(view, z);
  *rcond = z.Reciprocal(norm);
}

template <class View>
void Determinant(const View& view, double* det) {
  detail::DecimalProduct product(det);
  for (Index k = 0; k < view.n; ++k) {
    product.Multiply(*view.At(k, k));
    product.Multiply(*view.At(k, k));
  }
}

/// R becomes the upper triangle of inv(R) inv(R)'.
template <class View>
void Invert(const View& view) {
  detail::InvertUpper(view, view.n);
  for (Index j = 0; j < view.n; ++j) {
    double* const column = view.At(0, j);
    for (Index k = 0; k < j; ++k) detail::AddScaled(k + 1, column[k], column, view.At(0, k));
    detail::MultiplyBy(j + 1, column[j], column);
  }
}

template <class View>
void DeterminantAndInverse(const View& view, double* det, int job) {
  if (job / 10 != 0) Determinant(view, det);
  if (job % 10 != 0) Invert(view);
}

}  // namespace

void Linpack::Dpofa(double* a, int lda, int n, int* info) {
  *info = Factor(FullColumns<double>{a, lda, n});
}

void Linpack::Dpoco(double* a, int lda, int n, double* rcond, double* z, int* info) {
  FactorAndEstimate(FullColumns<double>{a, lda, n}, rcond, z, info);
}

void Linpack::Dposl(const double* a, int lda, int n, double* b) {
  Solve(FullColumns<const double>{a, lda, n}, b);
}

void Linpack::Dpodi(double* a, int lda, int n, double* det, int job) {
  DeterminantAndInverse(FullColumns<double>{a, lda, n}, det, job);
}

void Linpack::Dppfa(double* ap, int n, int* info) {
  *info = Factor(PackedColumns<double>{ap, n});
}

void Linpack::Dppco(double* ap, int n, double* rcond, double* z, int* info) {
  FactorAndEstimate(PackedColumns<double>{ap, n}, rcond, z, info);
}

void Linpack::Dppsl(const double* ap, int n, double* b) {
  Solve(PackedColumns<const double>{ap, n}, b);
}

void Linpack::Dppdi(double* ap, int n, double* det, int job) {
  DeterminantAndInverse(PackedColumns<double>{ap, n}, det, job);
}

void Linpack::Dpbfa(double* abd, int lda, int n, int m, int* info) {
  *info = Factor(SymmetricBandColumns<double>{abd, lda, n, m});
}

void Linpack::Dpbco(double* abd, int lda, int n, int m, double* rcond, double* z, int* info) {
  FactorAndEstimate(SymmetricBandColumns<double>{abd, lda, n, m}, rcond, z, info);
}

void Linpack::Dpbsl(const double* abd, int lda, int n, int m, double* b) {
  Solve(SymmetricBandColumns<const double>{abd, lda, n, m}, b);
}

void Linpack::Dpbdi(const double* abd, int lda, int n, int m, double* det) {
  Determinant(SymmetricBandColumns<const double>{abd, lda, n, m}, det);
}

}  // namespace MCCommonMath
