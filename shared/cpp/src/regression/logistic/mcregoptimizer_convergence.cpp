// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcmathfun.h"
#include "regression/logistic/mcregoptimizer.h"

#include <cmath>

namespace {

// An observed category whose probability lies this near to 1 counts as certain.
constexpr double kCertain = 0.01;
// Smallest diagonal element of a factor that isn't nearly singular: about the root of 1e-7.
constexpr double kNearlySingular = 0.000316;
constexpr double kLikely = 0.99;
constexpr double kUnlikely = 0.001;
constexpr double kAddedToEstimate = 1e-6;

}  // namespace

bool MCRegOptimizer::HybridSwitch(MCConst::MCEstimationMethod current) const {
  if (fEstMethod != MCConst::MC_EST_HYBRID || current != MCConst::MC_EST_FISHER) return false;
  switch (fConverCrit) {
    case MCConst::MC_CONV_LL:
    case MCConst::MC_CONV_PARAM:
    case MCConst::MC_CONV_BOTH:
      return true;
    case MCConst::MC_CONV_NONE:
      return fLastIter >= fNFisherIter;
    default:
      return false;
  }
}

int MCRegOptimizer::CheckForConvergence(const std::vector<double>& previous, double previousLL,
                                        int redundant, double minDiag, bool checkSeparation) {
  int reason = checkSeparation ? FindSeparation(minDiag) : MCConst::MC_CONV_NONE;
  if (reason == MCConst::MC_CONV_NONE && redundant > 0) reason = MCConst::MC_CONV_SINGULAR;
  MeasureLLChange(previousLL);
  MeasureParamChange(previous);
  const bool isLLMet = fLLCriterion > fLLChange;
  const bool isParamMet = fNParams > 0 && fParamCriterion > fParamChange;
  if (reason != MCConst::MC_CONV_NONE) return reason;
  if (isLLMet && isParamMet) return MCConst::MC_CONV_BOTH;
  if (isLLMet) return MCConst::MC_CONV_LL;
  if (isParamMet) return MCConst::MC_CONV_PARAM;
  return fLastIter >= fMaxIter ? MCConst::MC_CONV_MAX_ITER : MCConst::MC_CONV_NONE;
}

// The directions of the comparisons decide for a NaN: it is no separation.
int MCRegOptimizer::FindSeparation(double minDiag) const {
  if (fpAccumStats == nullptr) return MCConst::MC_CONV_NONE;
  double minObserved = 0.0;
  double maxObserved = 0.0;
  double minComputed = 0.0;
  fpAccumStats->GetMinMaxProbabilities(minObserved, maxObserved, minComputed);
  if (1.0 - minObserved <= kCertain && kCertain >= 1.0 - maxObserved) {
    return MCConst::MC_CONV_COMPLETE_SEP;
  }
  if (!(minDiag <= kNearlySingular)) return MCConst::MC_CONV_NONE;
  const bool isSeparated = maxObserved > kLikely || minComputed < kUnlikely;
  return isSeparated ? MCConst::MC_CONV_QUASI_SEP : MCConst::MC_CONV_SINGULAR;
}

// A log-likelihood of 0.0 before gives an infinite or NaN relative change, which meets no
// criterion.
void MCRegOptimizer::MeasureLLChange(double previousLL) {
  fLLChange = std::fabs(previousLL - fFinalLL);
  if (!fbLLAbsolute) fLLChange /= std::fabs(previousLL);
}

void MCRegOptimizer::MeasureParamChange(const std::vector<double>& previous) {
  if (fNParams <= 0) return;
  fParamChange = fbParamAbsolute
                     ? MCCommonMath::MCMathFun::VNrm1Diff(fvBeta, previous)
                     : MCCommonMath::MCMathFun::VMaxRelDiff(fvBeta, previous, kAddedToEstimate);
}
