// SPDX-License-Identifier: Apache-2.0
// Triangular matrices, lower and upper.
#include "mcmath/detail/conditionvector.h"
#include "mcmath/detail/decimalproduct.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <algorithm>

namespace MCCommonMath {

namespace {

using detail::ConditionVector;
using detail::FullColumns;
using detail::Index;

/// A full matrix of which one triangle counts.
template <class T>
struct Triangle {
  FullColumns<T> view;
  bool bUpper;

  /// Rows of column k beside the diagonal: from First(k) to End(k) - 1.
  Index First(Index k) const { return bUpper ? 0 : k + 1; }
  Index End(Index k) const { return bUpper ? k : view.n; }

  T& Diagonal(Index k) const { return *view.At(k, k); }

  /// x += t times column k beside the diagonal.
  void Add(Index k, double t, double* x) const {
    detail::AddScaled(End(k) - First(k), t, view.At(First(k), k), x + First(k));
  }

  double Dot(Index k, const double* x) const {
    return detail::DotProduct(End(k) - First(k), view.At(First(k), k), x + First(k));
  }

  /// Column at `step` of a walk that begins where a system with T (with T') is solved first.
  Index Forward(Index step) const { return bUpper ? view.n - 1 - step : step; }
  Index Backward(Index step) const { return bUpper ? step : view.n - 1 - step; }
};

/// Largest column sum.
double Norm(const Triangle<const double>& t) {
  double norm = 0.0;
  for (Index j = 0; j < t.view.n; ++j) {
    const Index first = t.bUpper ? 0 : j;
    const Index count = t.bUpper ? j + 1 : t.view.n - j;
    norm = std::max(norm, detail::SumOfMagnitudes(count, t.view.At(first, j)));
  }
  return norm;
}

double Estimate(const Triangle<const double>& t, double* work) {
  const Index n = t.view.n;
  if (n < 1) return 0.0;
  ConditionVector z(work, n);
  for (Index step = 0; step < n; ++step) {
    const Index k = t.Backward(step);
    const Index begin = t.bUpper ? k + 1 : 0;
    const Index end = t.bUpper ? n : k;
    z.Grow(k, t.Diagonal(k), begin, end, [&t, k](Index j) { return *t.view.At(k, j); });
  }
  z.Restart();
  for (Index step = 0; step < n; ++step) {
    const Index k = t.Forward(step);
    z.Divide(k, t.Diagonal(k));
    t.Add(k, -z[k], z.From(0));
  }
  z.Normalise();
  return z.Reciprocal(Norm(t));
}

/// Solves T x = b in place.
void Solve(const Triangle<const double>& t, double* b) {
  for (Index step = 0; step < t.view.n; ++step) {
    const Index k = t.Forward(step);
    b[k] /= t.Diagonal(k);
    t.Add(k, -b[k], b);
  }
}

/// Solves T'x = b in place.
void SolveTransposed(const Triangle<const double>& t, double* b) {
  for (Index step = 0; step < t.view.n; ++step) {
    const Index k = t.Backward(step);
    b[k] = (b[k] - t.Dot(k, b)) / t.Diagonal(k);
  }
}

/// Replaces a lower triangle by its inverse, from the last column on.
void InvertLower(const FullColumns<double>& view) {
  for (Index k = view.n - 1; k >= 0; --k) {
    double* const column = view.At(k, k);
    const Index below = view.n - 1 - k;
    column[0] = 1.0 / column[0];
    detail::MultiplyBy(below, -column[0], column + 1);
    for (Index j = 0; j < k; ++j) {
      double* const other = view.At(k, j);
      const double t = other[0];
      other[0] = 0.0;
      detail::AddScaled(below + 1, t, column, other);
    }
  }
}

}  // namespace

void Linpack::Dtrco(const double* t, int ldt, int n, double* rcond, double* z, int job) {
  *rcond = Estimate({{t, ldt, n}, job != 0}, z);
}

void Linpack::Dtrsl(const double* t, int ldt, int n, double* b, int job, int* info) {
  const Triangle<const double> triangle{{t, ldt, n}, job % 10 != 0};
  *info = 0;
  for (int k = 0; k < n; ++k) {
    if (triangle.Diagonal(k) == 0.0) {
      *info = k + 1;
      return;
    }
  }
  job / 10 % 10 == 0 ? Solve(triangle, b) : SolveTransposed(triangle, b);
}

void Linpack::Dtrdi(double* t, int ldt, int n, double* det, int job, int* info) {
  const Triangle<double> triangle{{t, ldt, n}, job % 10 != 0};
  *info = 0;
  if (job / 100 % 10 != 0) {
    detail::DecimalProduct product(det);
    for (int k = 0; k < n; ++k) product.Multiply(triangle.Diagonal(k));
  }
  if (job / 10 % 10 == 0) return;
  for (int step = 0; step < n; ++step) {
    const Index k = triangle.Backward(step);
    if (triangle.Diagonal(k) == 0.0) {
      *info = static_cast<int>(k + 1);
      return;
    }
  }
  triangle.bUpper ? detail::InvertUpper(triangle.view, n) : InvertLower(triangle.view);
}

}  // namespace MCCommonMath
