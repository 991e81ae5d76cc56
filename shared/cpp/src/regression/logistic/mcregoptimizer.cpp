// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcregoptimizer.h"

#include "mcmath/detail/mcexplog.h"
#include "mcmath/mcpower.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>

using MCConst::MCEstimationMethod;

MCRegOptimizer::MCRegOptimizer(const MCLogRegSettings& settings, const IMCRegModel& model,
                               IMCDataHandler* dataHandler, IMCAccumStats* accumStats,
                               std::vector<double>& estimates, ProgressListener* listener,
                               int reportFrequency, MCEstimationMethod method, int fisherIterations)
    : fpSettings(settings),
      fpModel(model),
      fpDataHandler(dataHandler),
      fpAccumStats(accumStats),
      fNParams(std::max(model.GetNNonRedParams(), 0)),
      fNDepCategs(model.GetDependentNCategs()),
      fvBeta(estimates),
      fpHessianGI(std::make_unique<MCCommonMath::MCSymMatrix>(fNParams)),
      fEstMethod(method),
      fNFisherIter(fisherIterations),
      fLLCriterion(settings.GetLLConCriterion()),
      fParamCriterion(settings.GetParamEstConCriterion()),
      fMaxIter(settings.GetMaxIterations()),
      fbLLAbsolute(settings.GetLLFuncChange()),
      fbParamAbsolute(settings.GetParamEstChange()),
      fpCancel(settings.GetCancelPointer()),
      fpListener(listener),
      fReportFrequency(reportFrequency) {
  fvBeta.resize(static_cast<std::size_t>(fNParams), 0.0);
}

void MCRegOptimizer::GetEstStats(int& iterations, double& initialLL, double& finalLL,
                                 double& llChange, double& paramChange) const {
  iterations = fLastIter;
  initialLL = fInitialLL;
  finalLL = fFinalLL;
  llChange = fLLChange;
  paramChange = fParamChange;
}

int MCRegOptimizer::GetFisherIterInHybrid() const {
  if (fEstMethod != MCConst::MC_EST_HYBRID || fLastIter <= 0) return 0;
  return std::min(fNFisherIter, fLastIter);
}

bool MCRegOptimizer::ComputeRSquares(double& coxSnell, double& nagelkerke, double& mcFadden) const {
  constexpr double missing = MCMV::gMissingValue;
  constexpr double maxExponent = MCCommonMath::MCPower::gMachineMaxExp;
  coxSnell = nagelkerke = mcFadden = 0.0;
  if (fLastIter == 0 || !(fAccumWeight > 0.0) || fInitialLL == missing || fFinalLL == missing) {
    return true;
  }
  coxSnell = nagelkerke = mcFadden = missing;
  // Both limits are written so that a NaN passes and shows in the result.
  const double ratio = (2.0 * fInitialLL - 2.0 * fFinalLL) / fAccumWeight;
  if (!(ratio > maxExponent)) coxSnell = 1.0 - MCCommonMath::detail::Exp(ratio);
  const double nullRatio = 2.0 * fInitialLL / fAccumWeight;
  const double largest = nullRatio > maxExponent ? 0.0 : 1.0 - MCCommonMath::detail::Exp(nullRatio);
  if (coxSnell != missing && largest != 0.0) nagelkerke = coxSnell / largest;
  if (fInitialLL != 0.0) {
    mcFadden = 1.0 - fFinalLL / fInitialLL;
  } else if (fFinalLL == 0.0) {
    mcFadden = 0.0;
  }
  return coxSnell != missing && nagelkerke != missing && mcFadden != missing;
}

void MCRegOptimizer::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCRegOptimizer display start");
  DisplayI("Number of estimated parameters in the model", fNParams);
  DisplayDV("Estimated parameters", fvBeta, false);
  if (fpHessianGI != nullptr) {
    DisplayText(2, "Generalized inverse of the Hessian:");
    fpHessianGI->Display();
  } else {
    DisplayText(1, "Generalized inverse of the Hessian pointer is 0");
  }
  if (fEstMethod == MCConst::MC_EST_HYBRID) DisplayI("Fisher iterations", fNFisherIter);
  DisplayD("Log-Likelihood Function Convergence Criterion", fLLCriterion);
  DisplayD("Parameter Estimates Convergence Criterion", fParamCriterion);
  DisplayI("Maximum number of Iteration", fMaxIter);
  DisplayB("Log-Likelihood Function absolute change", fbLLAbsolute);
  DisplayB("Parameter Estimates absolute change", fbParamAbsolute);
  DisplayD("Log-likelihood for initial parameter estimates", fInitialLL);
  DisplayD("Log-likelihood for final parameter estimates", fFinalLL);
  DisplayD("Accumulated weight", fAccumWeight);
  DisplayText(1, "MCRegOptimizer display end");
}
