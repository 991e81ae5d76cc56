// SPDX-License-Identifier: Apache-2.0
#include "convergencetext.h"

#include <fmt/format.h>

namespace mcfit {

namespace {

std::string Iterations(const MCConvergence& convergence) {
  return fmt::format("{} {}", convergence.fIterations,
                     convergence.fIterations == 1 ? "iteration" : "iterations");
}

const char* ReasonText(const MCConvergence& convergence) {
  switch (convergence.fReason) {
    case MCConst::MC_CONV_LL:
      return "the log-likelihood no longer changes";
    case MCConst::MC_CONV_PARAM:
      return "the estimates no longer change";
    case MCConst::MC_CONV_BOTH:
      return "neither log-likelihood nor estimates change any more";
    case MCConst::MC_CONV_SINGULAR:
      return "the Hessian is singular";
    case MCConst::MC_CONV_HALVING:
      return convergence.fbScoreIsZero
                 ? "no step raises the log-likelihood, as the score is zero to rounding already"
                 : "no step that was tried raises the log-likelihood, though the score is not zero";
    case MCConst::MC_CONV_MAX_ITER:
      return "that is the limit";
    case MCConst::MC_CONV_COMPLETE_SEP:
      return "the data are completely separated";
    case MCConst::MC_CONV_QUASI_SEP:
      return "the data are quasi-completely separated";
    default:
      return "the reason is not known";
  }
}

// Exhausted halving where nothing is left to gain is as good as convergence.
bool IsAsGoodAsConverged(const MCConvergence& convergence) {
  return convergence.IsConverged() ||
         (convergence.fReason == MCConst::MC_CONV_HALVING && convergence.fbScoreIsZero);
}

}  // namespace

std::string StoppingText(const MCConvergence& convergence) {
  if (convergence.fReason == MCConst::MC_CONV_NOT_RUN) {
    return convergence.fbScoreIsZero
               ? "No iteration was run: the first estimates are the solution"
               : "No iteration was run: the first estimates stand, which are not the solution";
  }
  return fmt::format("{} after {}: {}",
                     IsAsGoodAsConverged(convergence) ? "Converged" : "Not converged: stopped",
                     Iterations(convergence), ReasonText(convergence));
}

std::string ConvergenceWarning(const MCConvergence& convergence) {
  if (IsAsGoodAsConverged(convergence)) return {};
  switch (convergence.fReason) {
    case MCConst::MC_CONV_NOT_RUN:
      if (convergence.fbScoreIsZero) return {};
      return "warning: the estimates are the first ones and not the solution: either no iteration "
             "is allowed, or intercepts alone stand beside weights, which they do not account for";
    case MCConst::MC_CONV_MAX_ITER:
      return "warning: not converged; allow more with --max-iterations";
    case MCConst::MC_CONV_COMPLETE_SEP:
      return "warning: complete separation: the predictors tell the categories apart without "
             "error, so the likelihood has no maximum; estimates and standard errors grow with "
             "each iteration and mean nothing. Leave out the predictors that separate";
    case MCConst::MC_CONV_QUASI_SEP:
      return "warning: quasi-complete separation: some rows are predicted without error, so part "
             "of the estimates grow with each iteration; those with huge standard errors mean "
             "nothing. Leave out or merge the labels and predictors that they belong to";
    case MCConst::MC_CONV_SINGULAR:
      return "warning: singular Hessian: the data do not settle all parameters, or some grow "
             "without bound (separation); a standard error that is a dot isn't known. Leave out "
             "effects, and centre and scale covariates";
    case MCConst::MC_CONV_HALVING:
      return "warning: step halving is exhausted: the estimates are those of the last step that "
             "helped and may be far from the maximum. Centre and scale covariates";
    default:
      return "warning: the estimates are not known to be a solution";
  }
}

}  // namespace mcfit
