// SPDX-License-Identifier: Apache-2.0
// General and band matrices: elimination with partial pivoting, by columns. Both storages go
// through the same steps; a band only leaves out what must be 0.
#include "mcmath/detail/conditionvector.h"
#include "mcmath/detail/decimalproduct.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <algorithm>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::BandColumns;
using detail::ConditionVector;
using detail::FullColumns;
using detail::Index;

/// Number of multipliers below the diagonal of column k.
template <class View>
Index Below(const View& view, Index k) {
  return view.LastRow(k) - k;
}

/// Takes row k out of columns k + 1 to `last`, exchanging it with row `pivot` first.
template <class View>
void Eliminate(const View& view, Index k, Index pivot, Index last) {
  const Index below = Below(view, k);
  const double* const multipliers = view.At(k, k) + 1;
  for (Index j = k + 1; j <= last; ++j) {
    double* const column = view.At(k, j);
    const double t = column[pivot - k];
    column[pivot - k] = column[0];
    column[0] = t;
    detail::AddScaled(below, t, multipliers, column + 1);
  }
}

/// `info` of the published routines: the last zero pivot, from 1, or 0.
template <class View>
int Factor(const View& view, int* ipvt) {
  int info = 0;
  Index last = 0;
  for (Index k = 0; k < view.n; ++k) {
    double* const column = view.At(k, k);
    const Index below = Below(view, k);
    const Index distance = detail::LargestMagnitude(below + 1, column);
    ipvt[k] = static_cast<int>(k + distance + 1);
    // A row that was exchanged reaches further right than those it came to.
    last = std::max(last, view.LastColumn(k + distance));
    if (column[distance] == 0.0) {
      info = static_cast<int>(k + 1);
      continue;
    }
    std::swap(column[0], column[distance]);
    detail::DivideBy(below, -column[0], column + 1);
    Eliminate(view, k, k + distance, last);
  }
  return info;
}

/// Exchanges elements k and ipvt[k] - 1.
void ExchangePivot(double* b, const int* ipvt, Index k) {
  std::swap(b[k], b[Index{ipvt[k]} - 1]);
}

template <class View>
void Solve(const View& view, const int* ipvt, double* b) {
  for (Index k = 0; k < view.n; ++k) {
    ExchangePivot(b, ipvt, k);
    detail::AddScaled(Below(view, k), b[k], view.At(k, k) + 1, b + k + 1);
  }
  detail::SolveUpper(view, view.n, b);
}

template <class View>
void SolveTransposed(const View& view, const int* ipvt, double* b) {
  detail::SolveUpperTransposed(view, view.n, b);
  for (Index k = view.n - 1; k >= 0; --k) {
    b[k] += detail::DotProduct(Below(view, k), view.At(k, k) + 1, b + k + 1);
    ExchangePivot(b, ipvt, k);
  }
}

/// Largest column sum of the matrix given, before it is factored.
template <class View>
double NormOfGiven(const View& view) {
  double norm = 0.0;
  for (Index j = 0; j < view.n; ++j) {
    const Index first = view.FirstGiven(j);
    const Index count = view.LastRow(j) + 1 - first;
    norm = std::max(norm, detail::SumOfMagnitudes(count, view.At(first, j)));
  }
  return norm;
}

/// z = inv(A')e for the e of signs that makes it grow, from the factors.
template <class View>
void GrowTransposed(const View& view, const int* ipvt, ConditionVector& z) {
  Index last = 0;
  for (Index k = 0; k < view.n; ++k) {
    last = std::max(last, view.LastColumn(Index{ipvt[k]} - 1));
    z.Grow(k, *view.At(k, k), k + 1, last + 1, [&view, k](Index j) { return *view.At(k, j); });
  }
  z.Normalise();
  for (Index k = view.n - 1; k >= 0; --k) {
    z[k] += detail::DotProduct(Below(view, k), view.At(k, k) + 1, z.From(k + 1));
    z.Limit(k);
    ExchangePivot(z.From(0), ipvt, k);
  }
  z.Restart();
}

/// z = inv(A) z, from the factors.
template <class View>
void SolveScaled(const View& view, const int* ipvt, ConditionVector& z) {
  for (Index k = 0; k < view.n; ++k) {
    ExchangePivot(z.From(0), ipvt, k);
    detail::AddScaled(Below(view, k), z[k], view.At(k, k) + 1, z.From(k + 1));
    z.Limit(k);
  }
  z.Normalise();
  detail::SolveUpper(view, z);
}

template <class View>
double FactorAndEstimate(const View& view, int* ipvt, double* work) {
  if (view.n < 1) return 0.0;
  const double norm = NormOfGiven(view);
  Factor(view, ipvt);
  ConditionVector z(work, view.n);
  GrowTransposed(view, ipvt, z);
  SolveScaled(view, ipvt, z);
  return z.Reciprocal(norm);
}

template <class View>
void Determinant(const View& view, const int* ipvt, double* det) {
  detail::DecimalProduct product(det);
  for (Index k = 0; k < view.n; ++k) {
    const double pivot = *view.At(k, k);
    product.Multiply(ipvt[k] == k + 1 ? pivot : -pivot);
  }
}

/// inv(A) from inv(U), which stands above the multipliers: inv(A) L = inv(U), from the last column
/// on.
void InvertLower(const FullColumns<double>& view, const int* ipvt, double* work) {
  for (Index k = view.n - 2; k >= 0; --k) {
    double* const column = view.At(0, k);
    detail::CopyTo(view.n - k - 1, column + k + 1, work + k + 1);
    detail::SetToZero(view.n - k - 1, column + k + 1);
    for (Index j = k + 1; j < view.n; ++j) {
      detail::AddScaled(view.n, work[j], view.At(0, j), column);
    }
    const Index other = Index{ipvt[k]} - 1;
    if (other != k) detail::Exchange(view.n, column, view.At(0, other));
  }
}

/// Sets up a band with room for what the elimination fills in, and clears that room.
BandColumns<double> ClearedBand(double* abd, int lda, int n, int ml, int mu) {
  const BandColumns<double> view{abd, lda, n, ml, mu};
  for (Index j = 0; j < view.n; ++j) {
    const Index first = view.FirstRow(j);
    detail::SetToZero(view.FirstGiven(j) - first, view.At(first, j));
  }
  return view;
}

}  // namespace

void Linpack::Dgefa(double* a, int lda, int n, int* ipvt, int* info) {
  *info = Factor(FullColumns<double>{a, lda, n}, ipvt);
}

void Linpack::Dgeco(double* a, int lda, int n, int* ipvt, double* rcond, double* z) {
  *rcond = FactorAndEstimate(FullColumns<double>{a, lda, n}, ipvt, z);
}

void Linpack::Dgesl(const double* a, int lda, int n, const int* ipvt, double* b, int job) {
  const FullColumns<const double> view{a, lda, n};
  job == 0 ? Solve(view, ipvt, b) : SolveTransposed(view, ipvt, b);
}

void Linpack::Dgedi(double* a, int lda, int n, const int* ipvt, double* det, double* work,
                    int job) {
  const FullColumns<double> view{a, lda, n};
  if (job / 10 != 0) Determinant(view, ipvt, det);
  if (job % 10 == 0) return;
  detail::InvertUpper(view, n);
  InvertLower(view, ipvt, work);
}

void Linpack::Dgbfa(double* abd, int lda, int n, int ml, int mu, int* ipvt, int* info) {
  *info = Factor(ClearedBand(abd, lda, n, ml, mu), ipvt);
}

void Linpack::Dgbco(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* rcond,
                    double* z) {
  *rcond = FactorAndEstimate(ClearedBand(abd, lda, n, ml, mu), ipvt, z);
}

void Linpack::Dgbsl(const double* abd, int lda, int n, int ml, int mu, const int* ipvt, double* b,
                    int job) {
  const BandColumns<const double> view{abd, lda, n, ml, mu};
  job == 0 ? Solve(view, ipvt, b) : SolveTransposed(view, ipvt, b);
}

void Linpack::Dgbdi(const double* abd, int lda, int n, int ml, int mu, const int* ipvt,
                    double* det) {
  Determinant(BandColumns<const double>{abd, lda, n, ml, mu}, ipvt, det);
}

}  // namespace MCCommonMath
