// SPDX-License-Identifier: Apache-2.0
// Singular values: Householder reduction to bidiagonal form, then QR steps with implicit shifts
// (G. H. Golub and C. Reinsch, Numerische Mathematik 14 (1970), 403-420).
#include "mcmath/blas1.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/reflector.h"
#include "mcmath/linpack.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::FullColumns;
using detail::Index;

/// Vectors that take rotations of pairs of their columns, or none at all.
struct Vectors {
  FullColumns<double> columns;
  Index nRows;
  Index nColumns;

  bool Has(Index j) const { return j < nColumns; }

  void Rotate(Index i, Index j, double c, double s) const {
    if (!Has(i) || !Has(j)) return;
    detail::Rotate(nRows, columns.At(0, i), columns.At(0, j), c, s);
  }

  void Exchange(Index i, Index j) const {
    if (Has(i) && Has(j)) detail::Exchange(nRows, columns.At(0, i), columns.At(0, j));
  }

  void Negate(Index j) const {
    if (Has(j)) detail::MultiplyBy(nRows, -1.0, columns.At(0, j));
  }

  void SetToUnit(Index j) const {
    detail::SetToZero(nRows, columns.At(0, j));
    *columns.At(j, j) = 1.0;
  }
};

/// X of n rows and p columns on its way to s, e, u and v.
struct Bidiagonal {
  FullColumns<double> x;
  Index n;
  Index p;
  double* s;
  double* e;
  Vectors u;
  Vectors v;

  /// Columns and rows that need a reflection, and order of the bidiagonal matrix.
  Index ColumnSteps() const { return std::min(n - 1, p); }
  Index RowSteps() const { return std::max<Index>(0, std::min(p - 2, n)); }
  Index Order() const { return std::min(p, n + 1); }
};

/// Reflects column l below the diagonal away, and gathers row l right of it in e.
void ReduceColumn(const Bidiagonal& svd, Index l) {
  const bool bReflect = l < svd.ColumnSteps();
  const Index rows = svd.n - l;
  double* const column = svd.x.At(l, l);
  if (bReflect) svd.s[l] = detail::MakeReflector(rows, column);
  for (Index j = l + 1; j < svd.p; ++j) {
    double* const other = svd.x.At(l, j);
    if (bReflect && svd.s[l] != 0.0) detail::Reflect(rows, column, other);
    svd.e[j] = other[0];
  }
  if (bReflect && svd.u.Has(l)) detail::CopyTo(rows, column, svd.u.columns.At(l, l));
}

/// Reflects row l, which stands in e, away right of the superdiagonal. `work`: n entries.
void ReduceRow(const Bidiagonal& svd, Index l, double* work) {
  const Index columns = svd.p - l - 1;
  double* const row = svd.e + l + 1;
  svd.e[l] = detail::MakeReflector(columns, row);
  const Index below = svd.n - l - 1;
  if (below > 0 && svd.e[l] != 0.0) {
    detail::SetToZero(below, work);
    for (Index j = 0; j < columns; ++j) {
      detail::AddScaled(below, row[j], svd.x.At(l + 1, l + 1 + j), work);
    }
    for (Index j = 0; j < columns; ++j) {
      detail::AddScaled(below, -row[j] / row[0], work, svd.x.At(l + 1, l + 1 + j));
    }
  }
  if (svd.v.Has(l)) detail::CopyTo(columns, row, svd.v.columns.At(l + 1, l));
}

/// Leaves the bidiagonal matrix in s and e, the reflections in u and v.
void Reduce(const Bidiagonal& svd, double* work) {
  const Index columnSteps = svd.ColumnSteps();
  const Index rowSteps = svd.RowSteps();
  const Index order = svd.Order();
  for (Index l = 0; l < std::max(columnSteps, rowSteps); ++l) {
    ReduceColumn(svd, l);
    if (l < rowSteps) ReduceRow(svd, l, work);
  }
  if (columnSteps < svd.p) svd.s[columnSteps] = *svd.x.At(columnSteps, columnSteps);
  if (svd.n < order) svd.s[order - 1] = 0.0;
  if (rowSteps + 1 < order) svd.e[rowSteps] = *svd.x.At(rowSteps, order - 1);
  svd.e[order - 1] = 0.0;
}

/// Multiplies the reflections of the columns out, the last one first.
void MakeLeftVectors(const Bidiagonal& svd) {
  const Vectors& u = svd.u;
  const Index steps = svd.ColumnSteps();
  for (Index j = steps; j < u.nColumns; ++j) u.SetToUnit(j);
  for (Index l = std::min(steps, u.nColumns) - 1; l >= 0; --l) {
    if (svd.s[l] == 0.0) {
      u.SetToUnit(l);
      continue;
    }
    double* const column = u.columns.At(l, l);
    const Index rows = svd.n - l;
    for (Index j = l + 1; j < u.nColumns; ++j) detail::Reflect(rows, column, u.columns.At(l, j));
    detail::MultiplyBy(rows, -1.0, column);
    column[0] += 1.0;
    detail::SetToZero(l, u.columns.At(0, l));
  }
}

/// The same for the rows.
void MakeRightVectors(const Bidiagonal& svd) {
  const Vectors& v = svd.v;
  for (Index l = v.nColumns - 1; l >= 0; --l) {
    if (l < svd.RowSteps() && svd.e[l] != 0.0) {
      const double* const column = v.columns.At(l + 1, l);
      for (Index j = l + 1; j < svd.p; ++j) {
        detail::Reflect(svd.p - l - 1, column, v.columns.At(l + 1, j));
      }
    }
    v.SetToUnit(l);
  }
}

/// Whether x is nothing beside size.
bool IsNegligible(double x, double size) {
  return size + std::fabs(x) == size;
}

/// First row of the block that ends at `last` and has no negligible superdiagonal; cuts it off.
Index FirstOfBlock(const Bidiagonal& svd, Index last) {
  Index first = last;
  for (; first > 0; --first) {
    const double size = std::fabs(svd.s[first - 1]) + std::fabs(svd.s[first]);
    if (!IsNegligible(svd.e[first - 1], size)) continue;
    svd.e[first - 1] = 0.0;
    break;
  }
  return first;
}

/// Last row of the block whose diagonal is negligible, which becomes 0; first - 1 if there is none.
Index NegligibleDiagonal(const Bidiagonal& svd, Index first, Index last) {
  Index k = last;
  for (; k >= first; --k) {
    double size = 0.0;
    if (k != last) size += std::fabs(svd.e[k]);
    if (k != first) size += std::fabs(svd.e[k - 1]);
    if (!IsNegligible(svd.s[k], size)) continue;
    svd.s[k] = 0.0;
    break;
  }
  return k;
}

/// The last diagonal is 0: rotates the superdiagonal above it away.
void DeflateLast(const Bidiagonal& svd, Index first, Index last) {
  double c = 0.0;
  double s = 0.0;
  double f = std::exchange(svd.e[last - 1], 0.0);
  for (Index k = last - 1; k >= first; --k) {
    Blas1::DRotG(svd.s + k, &f, &c, &s);
    if (k != first) {
      f = -s * svd.e[k - 1];
      svd.e[k - 1] *= c;
    }
    svd.v.Rotate(k, last, c, s);
  }
}

/// Diagonal `zero` is 0: rotates the superdiagonal beside it away.
void SplitBehind(const Bidiagonal& svd, Index zero, Index last) {
  double c = 0.0;
  double s = 0.0;
  double f = std::exchange(svd.e[zero], 0.0);
  for (Index k = zero + 1; k <= last; ++k) {
    Blas1::DRotG(svd.s + k, &f, &c, &s);
    f = -s * svd.e[k];
    svd.e[k] *= c;
    svd.u.Rotate(k, zero, c, s);
  }
}

/// First column of B'B less the eigenvalue nearest to its end, over the square of a scale.
std::pair<double, double> ShiftedColumn(const Bidiagonal& svd, Index first, Index last) {
  const double scale =
      std::max({std::fabs(svd.s[last]), std::fabs(svd.s[last - 1]), std::fabs(svd.e[last - 1]),
                std::fabs(svd.s[first]), std::fabs(svd.e[first])});
  const double end = svd.s[last] / scale;
  const double before = svd.s[last - 1] / scale;
  const double beside = svd.e[last - 1] / scale;
  const double start = svd.s[first] / scale;
  const double b = ((before + end) * (before - end) + beside * beside) / 2.0;
  const double c = (end * beside) * (end * beside);
  double shift = 0.0;
  if (b != 0.0 || c != 0.0) shift = c / (b + std::copysign(std::sqrt(b * b + c), b));
  return {(start + end) * (start - end) + shift, start * (svd.e[first] / scale)};
}

/// One QR step on the block.
void ChaseBulge(const Bidiagonal& svd, Index first, Index last) {
  double c = 0.0;
  double s = 0.0;
  auto [f, g] = ShiftedColumn(svd, first, last);
  for (Index k = first; k < last; ++k) {
    double& diagonal = svd.s[k];
    double& next = svd.s[k + 1];
    double& beside = svd.e[k];
    Blas1::DRotG(&f, &g, &c, &s);
    if (k != first) svd.e[k - 1] = f;
    detail::Rotate(diagonal, beside, c, s);
    f = diagonal;
    g = s * next;
    next *= c;
    svd.v.Rotate(k, k + 1, c, s);
    Blas1::DRotG(&f, &g, &c, &s);
    diagonal = f;
    detail::Rotate(beside, next, c, s);
    f = beside;
    g = s * svd.e[k + 1];
    svd.e[k + 1] *= c;
    svd.u.Rotate(k, k + 1, c, s);
  }
  svd.e[last - 1] = f;
}

/// Value `k` has settled: makes it positive and brings it to its place among those behind it.
void Settle(const Bidiagonal& svd, Index k) {
  double* const s = svd.s;
  if (s[k] < 0.0) {
    s[k] = -s[k];
    svd.v.Negate(k);
  }
  for (; k + 1 < svd.Order() && s[k] < s[k + 1]; ++k) {
    std::swap(s[k], s[k + 1]);
    svd.v.Exchange(k, k + 1);
    svd.u.Exchange(k, k + 1);
  }
}

/// Splits the block, or brings its last superdiagonal closer to 0.
void Improve(const Bidiagonal& svd, Index first, Index last) {
  const Index zero = NegligibleDiagonal(svd, first, last);
  if (zero == last) {
    DeflateLast(svd, first, last);
  } else if (zero >= first) {
    SplitBehind(svd, zero, last);
  } else {
    ChaseBulge(svd, first, last);
  }
}

/// `info` of the published routine.
int Iterate(const Bidiagonal& svd) {
  constexpr int kMaxSteps = 30;
  int steps = 0;
  for (Index last = svd.Order() - 1; last >= 0;) {
    const Index first = FirstOfBlock(svd, last);
    if (first == last) {
      Settle(svd, last);
      --last;
      steps = 0;
    } else if (steps++ < kMaxSteps) {
      Improve(svd, first, last);
    } else {
      return static_cast<int>(last + 1);
    }
  }
  return 0;
}

}  // namespace

void Linpack::Dsvdc(double* x, int ldx, int n, int p, double* s, double* e, double* u, int ldu,
                    double* v, int ldv, double* work, int job, int* info) {
  *info = 0;
  if (n < 1 || p < 1) return;
  const int left = job / 10 % 10;
  const Index leftColumns = left == 0 ? 0 : left == 1 ? n : std::min(n, p);
  const Index rightColumns = job % 10 == 0 ? 0 : p;
  const Bidiagonal svd{
      {x, ldx, n}, n, p, s, e, {{u, ldu, n}, n, leftColumns}, {{v, ldv, p}, p, rightColumns}};
  Reduce(svd, work);
  MakeLeftVectors(svd);
  MakeRightVectors(svd);
  *info = Iterate(svd);
}

}  // namespace MCCommonMath
