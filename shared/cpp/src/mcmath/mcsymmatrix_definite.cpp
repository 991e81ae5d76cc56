// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"

#include <algorithm>
#include <cmath>

namespace MCCommonMath {

namespace {

// Looks for the smallest number on the diagonal that makes a matrix positive definite, and counts
// the factorisations that it takes.
class RidgeSearch {
public:
  RidgeSearch(const MCSymMatrix& matrix, double tol) : fMatrix(matrix), fTrial(matrix), fTol(tol) {
    matrix.GetNCheckDiagonal(fScale, 1e-6, 1.0);
  }

  // False where memory ran out. Trials don't allocate any more.
  bool IsReady() const { return fTrial.IsValidMatrix(); }
  int Count() const { return fCount; }
  double FirstScale() const { return fScale.front(); }

  bool IsDefinite(double ridge) {
    fTrial = fMatrix;
    fTrial.AddToDiagonal(ridge);
    ++fCount;
    return fTrial.LTChol(fScale, fTol, false) == 0;
  }

  // The first sufficient multiple of `step`. Sums of it beyond all doubles are infinite, and then
  // suffice or not, but end the search.
  double StepUp(double step) {
    double ridge = 0.0;
    do {
      ridge += step;
    } while (std::isfinite(ridge) && !IsDefinite(ridge));
    return ridge;
  }

  // Halves the interval from 0 to the sufficient `high` down to the tolerance, which is relative
  // above 1, or until doubles don't resolve it any more. Answers its upper end.
  double Bisect(double high) {
    double low = 0.0;
    double middle = (low + high) / 2.0;
    while (HalfWidth(low, high, middle) > fTol && middle != low && middle != high) {
      (IsDefinite(middle) ? high : low) = middle;
      middle = (low + high) / 2.0;
    }
    return high;
  }

private:
  static double HalfWidth(double low, double high, double middle) {
    return (middle > 1.0 ? (high - low) / middle : high - low) * 0.5;
  }

  const MCSymMatrix& fMatrix;
  MCSymMatrix fTrial;
  std::vector<double> fScale;
  double fTol;
  int fCount = 0;
};

// The magnitude of the largest element, but not less than n - 2, nor than 1.
double RidgeStep(const MCSymMatrix& matrix) {
  double maxDiag = 0.0;
  double minDiag = 0.0;
  double maxOffDiag = 0.0;
  double minOffDiag = 0.0;
  matrix.MaxMinDiagOffDiag(maxDiag, minDiag, maxOffDiag, minOffDiag);
  const double n = matrix.GetNRows();
  return std::max({std::abs(maxDiag), std::abs(minDiag), std::abs(maxOffDiag), std::abs(minOffDiag),
                   n - 2.0, 1.0});
}

}  // namespace

int MCSymMatrix::TransformToPositiveDefinite(double tol, bool& changed, double& added) {
  // A remaining diagonal exceeds tol * scale after about n + tol steps.
  constexpr double kLargestTolerance = 1e6;
  changed = false;
  added = 0.0;
  if (fNRows < 2) return -1;
  if (!(tol > 0.0 && tol <= kLargestTolerance)) return -2;
  const auto isFinite = [](double x) { return std::isfinite(x); };
  if (!std::all_of(fVec.begin(), fVec.end(), isFinite)) return -2;
  RidgeSearch search(*this, tol);
  if (!search.IsReady()) return -2;
  if (search.IsDefinite(0.0)) return search.Count();

  const double sufficient = search.StepUp(RidgeStep(*this));
  if (!std::isfinite(2.0 * sufficient)) return -2;
  const double ridge = search.Bisect(sufficient);
  double maxDiag = 0.0;
  double minDiag = 0.0;
  MaxMinDiag(maxDiag, minDiag);
  const double raised = maxDiag + ridge;
  const double margin = 0.01 * raised;
  const double divisor = ridge + margin + search.FirstScale();
  if (!std::isfinite(raised + margin) || !std::isfinite(divisor)) return -2;
  AddToDiagonal(ridge);
  AddToDiagonal(margin);
  MultiplyByNumber(1.0 / divisor);
  changed = true;
  added = ridge + margin;
  return search.Count();
}

}  // namespace MCCommonMath
