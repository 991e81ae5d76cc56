// SPDX-License-Identifier: Apache-2.0
// Tridiagonal systems, solved in one go.
#include "mcmath/detail/columnoperations.h"
#include "mcmath/linpack.h"

#include <cmath>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::Index;

/// A general tridiagonal system while it is eliminated: row k of what is eliminated holds its
/// diagonal in c[k] and the two elements right of it in d[k] and e[k].
struct Tridiagonal {
  Index n;
  double* c;
  double* d;
  double* e;
  double* b;

  void ExchangeWithNext(Index k) const {
    for (double* const array : {c, d, e, b}) std::swap(array[k], array[k + 1]);
  }

  /// Takes row k out of the row below it.
  void Eliminate(Index k) const {
    const double t = -c[k + 1] / c[k];
    c[k + 1] = d[k + 1] + t * d[k];
    d[k + 1] = e[k + 1] + t * e[k];
    e[k + 1] = 0.0;
    b[k + 1] += t * b[k];
  }

  void SolveBack() const {
    for (Index k = n - 1; k >= 0; --k) {
      if (k + 1 < n) b[k] -= d[k] * b[k + 1];
      if (k + 2 < n) b[k] -= e[k] * b[k + 2];
      b[k] /= c[k];
    }
  }
};

/// Takes a row out of its neighbour, whose diagonal and right-hand side change; `beside` is the
/// element that both have.
void TakeOut(double diagonal, double response, double beside, double& neighbour, double& b) {
  const double t = beside / diagonal;
  neighbour -= t * beside;
  b -= t * response;
}

}  // namespace

void Linpack::Dgtsl(int n, double* c, double* d, double* e, double* b, int* info) {
  *info = 0;
  if (n < 1) return;
  const Tridiagonal rows{n, c, d, e, b};
  // From here on the arrays hold rows: diagonal, next, next but one.
  c[0] = d[0];
  if (n > 1) d[0] = e[0];
  e[0] = e[n - 1] = 0.0;
  for (Index k = 0; k < rows.n; ++k) {
    if (k + 1 < rows.n && std::fabs(c[k + 1]) >= std::fabs(c[k])) rows.ExchangeWithNext(k);
    if (c[k] == 0.0) {
      *info = static_cast<int>(k + 1);
      return;
    }
    if (k + 1 < rows.n) rows.Eliminate(k);
  }
  rows.SolveBack();
}

void Linpack::Dptsl(int n, double* d, const double* e, double* b) {
  if (n < 1) return;
  // Rows are taken out from both ends, so that two divisions run side by side.
  Index top = 0;
  Index bottom = Index{n} - 1;
  for (; top + 1 < bottom; ++top, --bottom) {
    TakeOut(d[top], b[top], e[top], d[top + 1], b[top + 1]);
    TakeOut(d[bottom], b[bottom], e[bottom - 1], d[bottom - 1], b[bottom - 1]);
  }
  if (top < bottom) TakeOut(d[top], b[top], e[top], d[bottom], b[bottom]);
  b[bottom] /= d[bottom];
  if (top < bottom) b[top] = (b[top] - e[top] * b[bottom]) / d[top];
  for (--top, ++bottom; top >= 0; --top, ++bottom) {
    b[top] = (b[top] - e[top] * b[top + 1]) / d[top];
    b[bottom] = (b[bottom] - e[bottom - 1] * b[bottom - 1]) / d[bottom];
  }
}

}  // namespace MCCommonMath
