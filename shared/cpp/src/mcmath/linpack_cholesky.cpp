// SPDX-License-Identifier: Apache-2.0
// Cholesky factors: with pivoting, and after a row was added, taken out or columns were moved.
#include "mcmath/blas1.h"
#include "mcmath/detail/columnorder.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::FreeColumns;
using detail::FullColumns;
using detail::Index;

/// Position, from 0, of the largest diagonal element among k to end - 1.
Index LargestDiagonal(const FullColumns<double>& a, Index k, Index end) {
  Index largest = k;
  for (Index j = k + 1; j < end; ++j) {
    if (*a.At(j, j) > *a.At(largest, largest)) largest = j;
  }
  return largest;
}

/// Makes row k of the factor and takes it out of the rows behind. `work`: n entries.
void FactorRow(const FullColumns<double>& a, Index k, double* work) {
  double& diagonal = *a.At(k, k);
  diagonal = std::sqrt(diagonal);
  for (Index j = k + 1; j < a.n; ++j) {
    double& element = *a.At(k, j);
    element /= diagonal;
    work[j] = element;
    detail::AddScaled(j - k, -element, work + k + 1, a.At(k, j) + 1);
  }
}

/// sqrt(a^2 + b^2) for a, b >= 0, by way of a scale.
double Length(double a, double b) {
  const double scale = std::max(a, b);
  if (scale == 0.0) return 0.0;
  return scale * std::sqrt((a / scale) * (a / scale) + (b / scale) * (b / scale));
}

/// Rotates an extra element into the n of a column, from the top.
void RotateIn(Index n, double* column, double& extra, const double* c, const double* s) {
  for (Index i = 0; i < n; ++i) detail::Rotate(column[i], extra, c[i], s[i]);
}

/// Rotations that take the row inv(R')x out of R, from the last on, to c and s, which holds that
/// row. False if R'R - xx' isn't positive definite.
bool MakeDowndate(Index p, double* c, double* s) {
  const double norm = detail::NormOf(p, s);
  if (!(norm < 1.0)) return false;
  double rest = std::sqrt((1.0 - norm) * (1.0 + norm));
  for (Index i = p - 1; i >= 0; --i) {
    const double length = Length(rest, std::fabs(s[i]));
    c[i] = rest / length;
    s[i] /= length;
    rest = length;
  }
  return true;
}

/// Takes a response out of the p elements of a rotated right-hand side; answers what is left of it.
double RotateOut(Index p, double* z, double response, const double* c, const double* s) {
  for (Index i = 0; i < p; ++i) {
    z[i] = (z[i] - s[i] * response) / c[i];
    response = c[i] * response - s[i] * z[i];
  }
  return std::fabs(response);
}

/// Takes a response out of a norm of residuals; false if the norm would be imaginary.
bool ShrinkNorm(double response, double& rho) {
  if (!(response <= rho)) {
    rho = -1.0;
    return false;
  }
  if (rho > 0.0) rho *= std::sqrt((1.0 - response / rho) * (1.0 + response / rho));
  return true;
}

/// A shift of columns `first` to `last`, from 0, of R, and the rotations of neighbouring rows that
/// make it upper triangular again.
struct Shift {
  FullColumns<double> r;
  Index first;
  Index last;
  double* c;
  double* s;

  Index Rotations() const { return last - first; }

  void TurnRows(double* column, Index row, Index rotation) const {
    detail::Rotate(column[row], column[row + 1], c[rotation], s[rotation]);
  }
};

/// Rotations of a right shift, from `rotation` on, for a column: from the bottom up.
void RotateUpwards(const Shift& shift, Index rotation, double* column) {
  for (; rotation < shift.Rotations(); ++rotation) {
    shift.TurnRows(column, shift.last - 1 - rotation, rotation);
  }
}

/// Rotations of a left shift up to those of row `end`, for a column: from the top down.
void RotateDownwards(const Shift& shift, Index end, double* column) {
  for (Index row = shift.first; row < end; ++row) shift.TurnRows(column, row, row - shift.first);
}

/// Column `last` goes to `first`, those between one to the right.
void ShiftRight(const Shift& shift) {
  const auto& [r, first, last, c, s] = shift;
  for (Index i = 0; i <= last; ++i) s[i] = *r.At(last - i, last);
  for (Index j = last - 1; j >= first; --j) {
    detail::CopyTo(j + 1, r.At(0, j), r.At(0, j + 1));
    *r.At(j + 1, j + 1) = 0.0;
  }
  for (Index i = 0; i < first; ++i) *r.At(i, first) = s[last - i];
  // What the column has below its new diagonal is rotated into it, from the bottom.
  double t = s[0];
  for (Index i = 0; i < shift.Rotations(); ++i) {
    Blas1::DRotG(s + i + 1, &t, c + i, s + i);
    t = s[i + 1];
  }
  *r.At(first, first) = t;
  for (Index j = first + 1; j < r.n; ++j) {
    RotateUpwards(shift, std::max<Index>(0, last - j), r.At(0, j));
  }
}

/// Column `first` goes to `last`, those between one to the left.
void ShiftLeft(const Shift& shift) {
  const auto& [r, first, last, c, s] = shift;
  double* const moved = s + shift.Rotations();
  detail::CopyTo(first + 1, r.At(0, first), moved);
  for (Index j = first; j < last; ++j) {
    detail::CopyTo(j + 1, r.At(0, j + 1), r.At(0, j));
    s[j - first] = *r.At(j + 1, j + 1);
  }
  detail::CopyTo(first + 1, moved, r.At(0, last));
  detail::SetToZero(last - first, r.At(first, last) + 1);
  // Each column has one element below its diagonal, which waits in s for the rotation it gives.
  for (Index j = first; j < r.n; ++j) {
    RotateDownwards(shift, std::min(j, last), r.At(0, j));
    if (j >= last) continue;
    double below = s[j - first];
    Blas1::DRotG(r.At(j, j), &below, c + (j - first), s + (j - first));
  }
}

}  // namespace

void Linpack::Dchdc(double* a, int lda, int p, double* work, int* jpvt, int job, int* info) {
  const FullColumns<double> view{a, lda, p};
  FreeColumns free{0, 0};
  if (job != 0) {
    free = detail::ArrangeColumns(
        jpvt, p, [&view](Index i, Index j) { detail::ExchangeSymmetric(view, i, j, view.n); });
  }
  *info = 0;
  for (Index k = 0; k < view.n; ++k) {
    const Index largest = free.Contains(k) ? LargestDiagonal(view, k, free.end) : k;
    if (!(*view.At(largest, largest) > 0.0)) return;
    if (largest != k) {
      detail::ExchangeSymmetric(view, k, largest, view.n);
      std::swap(jpvt[k], jpvt[largest]);
    }
    FactorRow(view, k, work);
    ++*info;
  }
}

void Linpack::Dchud(double* r, int ldr, int p, const double* x, double* z, int ldz, int nz,
                    const double* y, double* rho, double* c, double* s) {
  const FullColumns<double> factor{r, ldr, p};
  for (Index j = 0; j < factor.n; ++j) {
    double extra = x[j];
    RotateIn(j, factor.At(0, j), extra, c, s);
    Blas1::DRotG(factor.At(j, j), &extra, c + j, s + j);
  }
  const FullColumns<double> responses{z, ldz, p};
  for (Index j = 0; j < (p < 1 ? 0 : nz); ++j) {
    double extra = y[j];
    RotateIn(p, responses.At(0, j), extra, c, s);
    if (rho[j] >= 0.0) rho[j] = Length(std::fabs(extra), rho[j]);
  }
}

void Linpack::Dchdd(double* r, int ldr, int p, const double* x, double* z, int ldz, int nz,
                    const double* y, double* rho, double* c, double* s, int* info) {
  *info = 0;
  if (p < 1) return;
  const FullColumns<double> factor{r, ldr, p};
  detail::CopyTo(p, x, s);
  detail::SolveUpperTransposed(factor, p, s);
  if (!MakeDowndate(p, c, s)) {
    *info = -1;
    return;
  }
  for (Index j = 0; j < factor.n; ++j) {
    double extra = 0.0;
    for (Index i = j; i >= 0; --i) detail::Rotate(extra, *factor.At(i, j), c[i], s[i]);
  }
  const FullColumns<double> responses{z, ldz, p};
  for (Index j = 0; j < nz; ++j) {
    const double response = RotateOut(p, responses.At(0, j), y[j], c, s);
    if (!ShrinkNorm(response, rho[j])) *info = 1;
  }
}

void Linpack::Dchex(double* r, int ldr, int p, int k, int l, double* z, int ldz, int nz, double* c,
                    double* s, int job) {
  if (k < 1 || k >= l || l > p) return;
  const Shift shift{{r, ldr, p}, Index{k} - 1, Index{l} - 1, c, s};
  const bool bRight = job == 1;
  bRight ? ShiftRight(shift) : ShiftLeft(shift);
  const FullColumns<double> responses{z, ldz, p};
  for (Index j = 0; j < nz; ++j) {
    double* const column = responses.At(0, j);
    bRight ? RotateUpwards(shift, 0, column) : RotateDownwards(shift, shift.last, column);
  }
}

}  // namespace MCCommonMath
