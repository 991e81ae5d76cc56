// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/columnoperations.h"
#include "mcmath/detail/triangles.h"

#include <cmath>

namespace MCCommonMath {
namespace detail {

/// The vector that a condition estimate carries through its four triangular solves (Cline, Moler,
/// Stewart and Wilkinson 1979): scaled down wherever it would overflow, with the scale of what was
/// scaled along, that is of the right-hand side of the solves counted.
class ConditionVector {
public:
  /// `z`: n >= 1 entries of the caller, set to 0.
  ConditionVector(double* z, Index n) : fZ(z), fN(n) { SetToZero(n, z); }

  double& operator[](Index k) const { return fZ[k]; }
  double* From(Index k) const { return fZ + k; }

  void Scale(double factor) {
    MultiplyBy(fN, factor, fZ);
    fAlong *= factor;
    fUnit *= factor;
  }

  /// Brings the 1-norm to 1.
  void Normalise() { Scale(1.0 / SumOfMagnitudes(fN, fZ)); }

  /// Normalises and counts from here: the vector is now the right-hand side itself.
  void Restart() {
    Normalise();
    fAlong = 1.0;
  }

  /// Brings element k to 1 if it is larger.
  void Limit(Index k) {
    if (std::fabs(fZ[k]) > 1.0) Scale(1.0 / std::fabs(fZ[k]));
  }

  /// Divides element k by a pivot, the whole being scaled down first if the quotient would exceed
  /// 1; a pivot of 0, or one so small that nothing is left, makes it 1, a step towards the null
  /// vector.
  void Divide(Index k, double pivot) {
    const bool bScaled = ScaleTo(std::fabs(fZ[k]), pivot);
    const bool bNull = pivot == 0.0 || (bScaled && fZ[k] == 0.0);
    fZ[k] = bNull ? 1.0 : fZ[k] / pivot;
  }

  /// One step of solving T'w = e, T upper triangular with this pivot at k, where the sign of e[k]
  /// is chosen for growth of what follows. row(j), begin <= j < end, are the other elements of row
  /// k.
  template <class Row>
  void Grow(Index k, double pivot, Index begin, Index end, const Row& row);

  /// Adds to element k one of the right-hand side, of the sign that makes it grow.
  void AddUnit(Index k) {
    if (fZ[k] != 0.0) fUnit = std::copysign(fUnit, fZ[k]);
    fZ[k] += fUnit;
  }

  /// What the estimate is of a matrix of this 1-norm, after the last Normalise().
  double Reciprocal(double norm) const { return norm == 0.0 ? 0.0 : fAlong / norm; }

private:
  /// Scales what is of this size down to that of a pivot, if it is larger; whether it was.
  bool ScaleTo(double size, double pivot) {
    if (!(size > std::fabs(pivot))) return false;
    Scale(std::fabs(pivot) / size);
    return true;
  }

  /// Sum over the row of |z[j] + w row(j)|.
  template <class Row>
  double Ahead(double w, Index begin, Index end, const Row& row) const;

  double* fZ;
  Index fN;
  double fAlong = 1.0;
  /// The right-hand side's elements, up to their signs.
  double fUnit = 1.0;
};

template <class Row>
double ConditionVector::Ahead(double w, Index begin, Index end, const Row& row) const {
  double sum = 0.0;
  for (Index j = begin; j < end; ++j) sum += std::fabs(fZ[j] + w * row(j));
  return sum;
}

template <class Row>
void ConditionVector::Grow(Index k, double pivot, Index begin, Index end, const Row& row) {
  if (fZ[k] != 0.0) fUnit = std::copysign(fUnit, -fZ[k]);
  const bool bScaled = ScaleTo(std::fabs(fUnit - fZ[k]), pivot);
  double with = fUnit - fZ[k];
  double against = -fUnit - fZ[k];
  const double grownWith = std::fabs(with);
  const double grownAgainst = std::fabs(against);
  const bool bNull = pivot == 0.0 || (bScaled && with == 0.0);
  with = bNull ? 1.0 : with / pivot;
  against = bNull ? 1.0 : against / pivot;
  const bool bAgainst =
      grownWith + Ahead(with, begin, end, row) < grownAgainst + Ahead(against, begin, end, row);
  fZ[k] = bAgainst ? against : with;
  for (Index j = begin; j < end; ++j) fZ[j] += fZ[k] * row(j);
}

/// z = inv(U) z, U the upper triangle of a storage of matrixviews.h.
template <class View>
void SolveUpper(const View& view, ConditionVector& z) {
  for (Index k = view.n - 1; k >= 0; --k) {
    z.Divide(k, *view.At(k, k));
    AddAbove(view, k, -z[k], z.From(0));
  }
  z.Normalise();
}

}  // namespace detail
}  // namespace MCCommonMath
