// SPDX-License-Identifier: Apache-2.0
// Symmetric indefinite matrices, full and packed: diagonal pivoting with blocks of order 1 and 2
// (J. R. Bunch and L. Kaufman, Mathematics of Computation 31 (1977), 163-179), from the last
// column to the first, so that a column of the stored triangle is read from its top.
#include "mcmath/detail/conditionvector.h"
#include "mcmath/detail/decimalproduct.h"
#include "mcmath/detail/matrixviews.h"
#include "mcmath/detail/triangles.h"
#include "mcmath/linpack.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace MCCommonMath {

namespace {

using detail::ConditionVector;
using detail::FullColumns;
using detail::Index;
using detail::PackedColumns;

/// The block of D that ends at column k before the elimination, and the row that changes places
/// with its first one.
struct Pivot {
  Index order;
  Index exchanged;
};

/// Largest magnitude beside the diagonal in row `row` of the leading block of columns 0 to k.
template <class View>
double LargestBeside(const View& view, Index row, Index k) {
  double largest = 0.0;
  for (Index j = row + 1; j <= k; ++j) largest = std::max(largest, std::fabs(*view.At(row, j)));
  if (row == 0) return largest;
  const double* const column = view.At(0, row);
  return std::max(largest, std::fabs(column[detail::LargestMagnitude(row, column)]));
}

/// Chooses the block so that the growth of elements is bounded. k >= 1.
template <class View>
Pivot ChoosePivot(const View& view, Index k) {
  // (1 + sqrt(17)) / 8 makes the bounds of both kinds of steps equal.
  constexpr double kAlpha = 0.6403882032022076;
  const double* const column = view.At(0, k);
  const Index row = detail::LargestMagnitude(k, column);
  const double diagonal = std::fabs(column[k]);
  const double beside = std::fabs(column[row]);
  if (diagonal >= kAlpha * beside) return {1, k};
  const double besideRow = LargestBeside(view, row, k);
  if (std::fabs(*view.At(row, row)) >= kAlpha * besideRow) return {1, row};
  if (diagonal >= kAlpha * beside * (beside / besideRow)) return {1, k};
  return {2, row};
}

/// Takes a block of order 1 at k out of the columns before it.
template <class View>
void EliminateOne(const View& view, Index k) {
  double* const column = view.At(0, k);
  for (Index j = k - 1; j >= 0; --j) {
    const double multiplier = -column[j] / column[k];
    detail::AddScaled(j + 1, multiplier, column, view.At(0, j));
    column[j] = multiplier;
  }
}

/// A block of order 2 of D, all but its size divided by its element beside the diagonal, which is
/// the largest or nearly so.
class Block {
public:
  /// The block at columns k - 1 and k.
  template <class View>
  Block(const View& view, Index k)
      : fBeside(*view.At(k - 1, k)),
        fFirst(*view.At(k - 1, k - 1) / fBeside),
        fSecond(*view.At(k, k) / fBeside),
        fDenominator(fFirst * fSecond - 1.0) {}

  /// (first, second) = inv(D) (first, second).
  void Solve(double& first, double& second) const {
    const double a = first / fBeside;
    const double b = second / fBeside;
    first = (fSecond * a - b) / fDenominator;
    second = (fFirst * b - a) / fDenominator;
  }

private:
  double fBeside;
  double fFirst;
  double fSecond;
  double fDenominator;
};

/// Takes a block of order 2 at k - 1 and k out of the columns before it.
template <class View>
void EliminateTwo(const View& view, Index k) {
  const Block block(view, k);
  double* const first = view.At(0, k - 1);
  double* const second = view.At(0, k);
  for (Index j = k - 2; j >= 0; --j) {
    double a = first[j];
    double b = second[j];
    block.Solve(a, b);
    detail::AddScaled(j + 1, -b, second, view.At(0, j));
    detail::AddScaled(j + 1, -a, first, view.At(0, j));
    first[j] = -a;
    second[j] = -b;
  }
}

/// Whether column k of the leading block, its diagonal included, is zero.
template <class View>
bool IsZeroColumn(const View& view, Index k) {
  const double* const column = view.At(0, k);
  return column[detail::LargestMagnitude(k + 1, column)] == 0.0;
}

/// Brings the pivot to its place, eliminates it and writes its mark.
template <class View>
void Eliminate(const View& view, Index k, const Pivot& pivot, int* kpvt) {
  const Index place = k + 1 - pivot.order;
  const int mark = static_cast<int>(pivot.exchanged + 1);
  if (pivot.exchanged != place) detail::ExchangeSymmetric(view, pivot.exchanged, place, k + 1);
  if (pivot.order == 1) {
    EliminateOne(view, k);
    kpvt[k] = mark;
  } else {
    EliminateTwo(view, k);
    kpvt[k] = kpvt[k - 1] = -mark;
  }
}

/// `info` of the published routines: the first singular block, from 1, or 0.
template <class View>
int Factor(const View& view, int* kpvt) {
  int info = 0;
  for (Index k = view.n - 1; k >= 0;) {
    Pivot pivot = {1, k};
    if (IsZeroColumn(view, k)) {
      info = static_cast<int>(k + 1);
      kpvt[k] = info;
    } else {
      if (k > 0) pivot = ChoosePivot(view, k);
      Eliminate(view, k, pivot, kpvt);
    }
    k -= pivot.order;
  }
  return info;
}

/// Order of the block whose last or only column, or first one, is k.
Index OrderAt(const int* kpvt, Index k) {
  return kpvt[k] < 0 ? 2 : 1;
}

/// Exchanges the first element of a block with the one that took its place.
void ExchangePivot(double* b, const int* kpvt, Index first) {
  std::swap(b[first], b[std::abs(Index{kpvt[first]}) - 1]);
}

/// Solves U D x = b in place. prepare(k, order) may change b before the elements of the block are
/// taken out of those above; divide(k) divides b[k] by a block of order 1.
template <class View, class Prepare, class Divide>
void SolveBlocks(const View& view, const int* kpvt, double* b, const Prepare& prepare,
                 const Divide& divide) {
  for (Index k = view.n - 1; k >= 0;) {
    const Index order = OrderAt(kpvt, k);
    const Index first = k + 1 - order;
    ExchangePivot(b, kpvt, first);
    for (Index j = k; j >= first; --j) {
      prepare(j);
      detail::AddScaled(first, b[j], view.At(0, j), b);
    }
    if (order == 1) {
      divide(k, *view.At(k, k));
    } else {
      Block(view, k).Solve(b[first], b[k]);
    }
    k -= order;
  }
}

/// Solves U'x = b in place.
template <class View>
void SolveTransposed(const View& view, const int* kpvt, double* b) {
  for (Index k = 0; k < view.n;) {
    const Index order = OrderAt(kpvt, k);
    for (Index j = k; j < k + order; ++j) b[j] += detail::DotProduct(k, view.At(0, j), b);
    ExchangePivot(b, kpvt, k);
    k += order;
  }
}

void NothingToPrepare(Index) {}

template <class View>
void Solve(const View& view, const int* kpvt, double* b) {
  SolveBlocks(view, kpvt, b, NothingToPrepare, [b](Index k, double pivot) { b[k] /= pivot; });
  SolveTransposed(view, kpvt, b);
}

template <class View>
double FactorAndEstimate(const View& view, int* kpvt, double* work) {
  if (view.n < 1) return 0.0;
  const double norm = detail::SymmetricNorm(view, view.n, work);
  Factor(view, kpvt);
  ConditionVector z(work, view.n);
  const auto divide = [&z](Index k, double pivot) { z.Divide(k, pivot); };
  SolveBlocks(
      view, kpvt, work, [&z](Index k) { z.AddUnit(k); }, divide);
  z.Normalise();
  SolveTransposed(view, kpvt, work);
  z.Restart();
  SolveBlocks(view, kpvt, work, NothingToPrepare, divide);
  z.Normalise();
  SolveTransposed(view, kpvt, work);
  z.Normalise();
  return z.Reciprocal(norm);
}

/// The two factors of the determinant of D at a block of order 2, of opposite signs: the element
/// beside the diagonal is the larger, and only the other one can lose digits.
template <class View>
std::pair<double, double> BlockFactors(const View& view, Index k) {
  const double beside = std::fabs(*view.At(k, k + 1));
  return {*view.At(k, k) / beside * *view.At(k + 1, k + 1) - beside, beside};
}

/// Calls visit(factor) for factors of the determinant, as many as eigenvalues and of their signs.
template <class View, class Visit>
void ForEachFactor(const View& view, const int* kpvt, const Visit& visit) {
  for (Index k = 0; k < view.n; k += OrderAt(kpvt, k)) {
    if (OrderAt(kpvt, k) == 1) {
      visit(*view.At(k, k));
    } else {
      const auto [first, second] = BlockFactors(view, k);
      visit(first);
      visit(second);
    }
  }
}

template <class View>
void Determinant(const View& view, const int* kpvt, double* det) {
  detail::DecimalProduct product(det);
  ForEachFactor(view, kpvt, [&product](double factor) { product.Multiply(factor); });
}

template <class View>
void Inertia(const View& view, const int* kpvt, int* inert) {
  std::fill_n(inert, 3, 0);
  ForEachFactor(view, kpvt, [inert](double factor) {
    if (factor > 0.0) ++inert[0];
    if (factor < 0.0) ++inert[1];
    if (factor == 0.0) ++inert[2];
  });
}

/// Multiplies the first m elements of a column by the leading block of order m, which is already
/// the inverse. Answers the product of the old elements and the new ones. `work`: m entries.
template <class View>
double MultiplyByLeading(const View& view, Index m, double* column, double* work) {
  detail::CopyTo(m, column, work);
  for (Index j = 0; j < m; ++j) {
    const double* const other = view.At(0, j);
    column[j] = detail::DotProduct(j + 1, other, work);
    detail::AddScaled(j, work[j], other, column);
  }
  return detail::DotProduct(m, work, column);
}

/// Inverts the block of order 2 at k and k + 1.
template <class View>
void InvertBlock(const View& view, Index k) {
  double& first = *view.At(k, k);
  double& second = *view.At(k + 1, k + 1);
  double& beside = *view.At(k, k + 1);
  const double t = std::fabs(beside);
  const double a = first / t;
  const double b = second / t;
  const double determinant = t * (a * b - 1.0);
  first = b / determinant;
  second = a / determinant;
  beside = -(beside / t) / determinant;
}

/// Replaces the factors by the inverse, block by block from the first.
template <class View>
void Invert(const View& view, const int* kpvt, double* work) {
  for (Index k = 0; k < view.n;) {
    const Index order = OrderAt(kpvt, k);
    double* const column = view.At(0, k);
    if (order == 1) {
      column[k] = 1.0 / column[k];
    } else {
      InvertBlock(view, k);
      double* const next = view.At(0, k + 1);
      next[k + 1] += MultiplyByLeading(view, k, next, work);
      next[k] += detail::DotProduct(k, column, next);
    }
    column[k] += MultiplyByLeading(view, k, column, work);
    const Index exchanged = std::abs(Index{kpvt[k]}) - 1;
    if (exchanged != k) detail::ExchangeSymmetric(view, exchanged, k, k + order);
    k += order;
  }
}

template <class View>
void DeterminantInertiaInverse(const View& view, const int* kpvt, double* det, int* inert,
                               double* work, int job) {
  if (job / 10 % 10 != 0) Determinant(view, kpvt, det);
  if (job / 100 % 10 != 0) Inertia(view, kpvt, inert);
  if (job % 10 != 0) Invert(view, kpvt, work);
}

}  // namespace

void Linpack::Dsifa(double* a, int lda, int n, int* kpvt, int* info) {
  *info = Factor(FullColumns<double>{a, lda, n}, kpvt);
}

void Linpack::Dsico(double* a, int lda, int n, int* kpvt, double* rcond, double* z) {
  *rcond = FactorAndEstimate(FullColumns<double>{a, lda, n}, kpvt, z);
}

void Linpack::Dsisl(const double* a, int lda, int n, const int* kpvt, double* b) {
  Solve(FullColumns<const double>{a, lda, n}, kpvt, b);
}

void Linpack::Dsidi(double* a, int lda, int n, const int* kpvt, double* det, int* inert,
                    double* work, int job) {
  DeterminantInertiaInverse(FullColumns<double>{a, lda, n}, kpvt, det, inert, work, job);
}

void Linpack::Dspfa(double* ap, int n, int* kpvt, int* info) {
  *info = Factor(PackedColumns<double>{ap, n}, kpvt);
}

void Linpack::Dspco(double* ap, int n, int* kpvt, double* rcond, double* z) {
  *rcond = FactorAndEstimate(PackedColumns<double>{ap, n}, kpvt, z);
}

void Linpack::Dspsl(const double* ap, int n, const int* kpvt, double* b) {
  Solve(PackedColumns<const double>{ap, n}, kpvt, b);
}

void Linpack::Dspdi(double* ap, int n, const int* kpvt, double* det, int* inert, double* work,
                    int job) {
  DeterminantInertiaInverse(PackedColumns<double>{ap, n}, kpvt, det, inert, work, job);
}

}  // namespace MCCommonMath
