// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcregrparameterstats.h"

#include <cmath>

double MCRegrParameterStats::GetSqrtDeff() const {
  // The missing value is negative, and a NaN fails the comparison too.
  return fDeff >= 0.0 ? std::sqrt(fDeff) : MCMV::gMissingValue;
}
