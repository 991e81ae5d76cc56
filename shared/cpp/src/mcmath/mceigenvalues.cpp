// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mceigenvalues.h"

namespace MCCommonMath {

MCEigenValues::MCEigenValues(double tol, int maxIter) {
  SetTolerance(tol);
  SetMaxIter(maxIter);
}

bool MCEigenValues::SetTolerance(double tol) {
  if (!(tol >= 0.0)) return false;
  fTol = tol;
  return true;
}

bool MCEigenValues::SetMaxIter(int maxIter) {
  if (maxIter < 0) return false;
  fMaxIter = maxIter;
  return true;
}

}  // namespace MCCommonMath
