// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

/// How the estimation of a logistic regression ended. That it didn't converge is no error: a build
/// then ends well all the same, and a host asks here before it trusts the estimates. A host reads
/// the fields directly; their order is part of the contract.
///
///     const MCConvergence convergence = component.GetConvergence();
///     if (!convergence.IsConverged() && !convergence.fbScoreIsZero) Warn(convergence.fReason);
struct MC_EXPORT MCConvergence {
  /// MCConst::MC_CONV_NOT_RUN until an estimation has begun. It is convergence for finite estimates
  /// alone: MC_CONV_SINGULAR takes its place if one is infinite or NaN.
  int fReason = MCConst::MC_CONV_NOT_RUN;

  int fIterations = 0;

  /// Log-likelihoods at the first estimates and at the last accepted ones; the missing value while
  /// not known. Where no iteration ran the second one stays missing, and the first is the one that
  /// holds.
  double fInitialLL = MCMV::gMissingValue;
  double fFinalLL = MCMV::gMissingValue;

  /// Last changes that were held against the two criteria: absolute or relative, as the settings
  /// want it. Both 0.0 after exhausted halving.
  double fLLChange = 0.0;
  double fParamChange = 0.0;

  /// Log-likelihood that a further full step promises: g'H^- g / 2, g being the scores and H^- the
  /// generalised inverse of the information at the estimates; 0.0 where there is nothing to
  /// estimate. The missing value unless the estimation ended for a reason, without an error, and
  /// all estimates are finite.
  double fExpectedGain = MCMV::gMissingValue;

  /// Whether the scores are zero as far as the log-likelihood can tell:
  /// fExpectedGain <= sqrt(n) * DBL_EPSILON * |LL|, n being the rows that were summed and LL
  /// fFinalLL, or fInitialLL where no iteration ran. The right side is some four standard
  /// deviations of the rounding of the difference of two such sums, each being one of n terms with
  /// an error of up to DBL_EPSILON / 2 of the partial sum at each addition. A smaller gain can't
  /// be told from rounding: no step can be shown to be better, whatever the reason for stopping.
  /// False if a value isn't known, NaN or infinite.
  bool fbScoreIsZero = false;

  bool IsConverged() const { return IsConverged(fReason); }

  /// Whether a reason for stopping is convergence: MC_CONV_LL, MC_CONV_PARAM or MC_CONV_BOTH.
  static bool IsConverged(int reason) {
    return reason >= MCConst::MC_CONV_LL && reason <= MCConst::MC_CONV_BOTH;
  }
};
