// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

/// Results for one parameter, handed out by output statistics, whose fields callers read directly.
/// The library fills fIndex, fEstimate, fRedundant and fEffectIndex; the rest is the caller's and
/// keeps its default until a caller sets it. The order of the fields is part of the contract.
struct MC_EXPORT MCRegrParameterStats {
  int fIndex = -1;                         ///< position of the parameter in the model, from 0
  double fEstimate = MCMV::gMissingValue;  ///< the coefficient; 0 for a redundant parameter
  bool fRedundant = true;                  ///< whether the parameter is aliased
  double fStat1 = MCMV::gMissingValue;     ///< fStat1 to fStat7: statistics of the caller's choice
  double fStat2 = MCMV::gMissingValue;
  double fStat3 = MCMV::gMissingValue;
  double fStat4 = MCMV::gMissingValue;
  double fStat5 = 0.0;
  double fStat6 = MCMV::gMissingValue;
  double fDeff = MCMV::gMissingValue;  ///< design effect of the estimate
  int fEffectIndex = -1;               ///< number of the model effect, from 0
  double fStat7 = MCMV::gMissingValue;

  /// Square root of fDeff; the missing value if that is missing, negative or NaN.
  double GetSqrtDeff() const;
};
