// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcmathfun.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/logistic/mciterationreporter.h"
#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcregoptimizer.h"

#include <algorithm>
#include <cstdint>
#include <ctime>

using MCCommon::MCStatus;
using MCCommonMath::MCSymMatrix;
using MCConst::MCEstimationMethod;

namespace {

// Lends accumulator and model to the handler, and takes them back also where memory runs out.
class StatsModelLoan {
public:
  StatsModelLoan(IMCDataHandler& dataHandler, IMCAccumStats* accumStats, const IMCRegModel* model)
      : fpDataHandler(&dataHandler) {
    dataHandler.SetStatsModel(accumStats, model);
  }
  ~StatsModelLoan() { End(); }
  StatsModelLoan(const StatsModelLoan&) = delete;
  StatsModelLoan& operator=(const StatsModelLoan&) = delete;

  void End() {
    if (fpDataHandler != nullptr) fpDataHandler->CleanStatsModel();
    fpDataHandler = nullptr;
  }

private:
  IMCDataHandler* fpDataHandler;
};

// A log-likelihood that may have become known is an improvement on a missing one; a NaN is no
// improvement on any that is known.
bool IsNoWorse(double newLL, double previousLL) {
  if (newLL == MCMV::gMissingValue) return false;
  return previousLL == MCMV::gMissingValue || newLL >= previousLL;
}

void DisplayMatrix(const char* label, const MCSymMatrix& matrix) {
  MCComponentDisplay::DisplayText(2, label);
  matrix.Display();
}

}  // namespace

// What one call of Estimate() remembers from step to step.
struct MCRegOptimizer::Run {
  MCIterationReporter fReporter;
  std::clock_t fStart = std::clock();
  std::int64_t fCountdown = 0;  // iterations to the next report
  double fTolerance = 0.0;
  int fMaxHalvings = 0;
  int fStartingIter = 0;
  MCEstimationMethod fMethod = MCConst::MC_EST_FISHER;  // the current one
  std::vector<double> fvStep;
  std::vector<double> fvPrevious;
  double fPreviousLL = MCMV::gMissingValue;
  int fNHalvings = 0;
  int fNRedundant = 0;
  double fMinDiag = MCMV::gMissingValue;
  bool fbCheckSeparation = false;
  bool fbInterrupted = false;  // a cancel came before a step was accepted
  bool fbFinished = false;
};

MCStatus MCRegOptimizer::Estimate() {
  if (fpDataHandler == nullptr || fpAccumStats == nullptr || fpHessianGI == nullptr) {
    fStatus = MCStatus(MCCommon::MCS_BAD_STATE, false);
    return fStatus;
  }
  Run run;
  BeginRun(run);
  StatsModelLoan loan(*fpDataHandler, fpAccumStats, &fpModel);
  TakeInitialEstimates(run);
  while (MayIterate(run)) Iterate(run);
  FailIfQueried();
  loan.End();
  InvertHessian(run);
  SendLastReport(run);
  return fStatus;
}

void MCRegOptimizer::BeginRun(Run& run) {
  run.fCountdown = fReportFrequency;
  run.fTolerance = fpSettings.GetTolerance();
  run.fMaxHalvings = fpSettings.GetMaxStepHalvingValue();
  run.fStartingIter = fpSettings.GetStartingIteration();
  const bool isSwitching = fEstMethod == MCConst::MC_EST_HYBRID && fNFisherIter > 0;
  run.fMethod = isSwitching ? MCConst::MC_EST_FISHER : fEstMethod;
  fLastIter = 0;
  run.fvStep.assign(fvBeta.size(), 0.0);
  run.fvPrevious.assign(fvBeta.size(), 0.0);
}

// The pass at the initial estimates; it makes the first step.
void MCRegOptimizer::TakeInitialEstimates(Run& run) {
  if (!fStatus.IsError() && RunFullPass(run.fMethod, false)) {
    if (fpListener != nullptr) Report(run, ReadLL());
    run.fPreviousLL = fInitialLL = ReadLL();
    if (fNParams > 0 && ReadHessian()) {
      FactorHessian(run);
      PrepareStep(run);
    }
  }
  run.fbFinished = IsNothingToIterate();
  fConverCrit = run.fbFinished ? MCConst::MC_CONV_NOT_RUN : MCConst::MC_CONV_NONE;
}

// With as few parameters as equations, or fewer, and an intercept among them, there are only
// intercepts, and the initial estimates are their solution.
bool MCRegOptimizer::IsNothingToIterate() const {
  const bool isOnlyIntercepts = fpSettings.GetInterceptUse() && fNParams < fNDepCategs;
  return isOnlyIntercepts || fNParams == 0 || fMaxIter == 0;
}

bool MCRegOptimizer::MayIterate(const Run& run) const {
  return !fStatus.IsError() && !run.fbFinished && !run.fbInterrupted && !IsCancelled() &&
         !IsCancelQueried();
}

void MCRegOptimizer::Iterate(Run& run) {
  BeginIteration(run);
  SearchAlongStep(run);
  FailIfQueried();
  if (fStatus.IsError() || run.fbInterrupted || !TakeEstimates(run)) return;
  if (fConverCrit == MCConst::MC_CONV_NONE) {
    fConverCrit = CheckForConvergence(run.fvPrevious, run.fPreviousLL, run.fNRedundant,
                                      run.fMinDiag, run.fbCheckSeparation);
  }
  if (HybridSwitch(run.fMethod) && !SwitchToNewton(run)) return;
  run.fbFinished = fConverCrit != MCConst::MC_CONV_NONE;
  if (!run.fbFinished) PrepareStep(run);
  CountDownToReport(run);
  run.fPreviousLL = fFinalLL;
}

void MCRegOptimizer::BeginIteration(Run& run) {
  ++fLastIter;
  run.fvPrevious = fvBeta;
  run.fNHalvings = 0;
  run.fbCheckSeparation = run.fStartingIter > 0 && run.fStartingIter <= fLastIter;
}

void MCRegOptimizer::SearchAlongStep(Run& run) {
  double factor = 1.0;
  double newLL = MCMV::gMissingValue;
  while (true) {
    run.fbInterrupted = IsCancelled() || IsCancelQueried();
    if (run.fbInterrupted || !TryStep(run, factor, newLL)) return;
    if (IsNoWorse(newLL, run.fPreviousLL)) return;
    if (run.fNHalvings >= run.fMaxHalvings) break;
    factor /= 2.0 * fpAccumStats->GetStepAdjustmentFactor();
    ++run.fNHalvings;
    fvBeta = run.fvPrevious;
  }
  GiveUpStep(run);
}

// A pass for the likelihood alone, at the estimates that lie `factor` times the step away.
bool MCRegOptimizer::TryStep(const Run& run, double factor, double& newLL) {
  fpDataHandler->ResetAccumStats(MCConst::MC_EST_FISHER, false);
  const std::size_t length = std::min(run.fvStep.size(), fvBeta.size());
  MCCommonMath::MCMathFun::Daxpy(static_cast<int>(length), factor, run.fvStep, 0, 1, fvBeta, 0, 1);
  fStatus = fpDataHandler->ComputeStatsForOptimizer(true);
  if (fStatus.IsError()) return false;
  newLL = ReadLL();
  if (display_hessian) {
    MCComponentDisplay::DisplayI("fLastIter", fLastIter);
    MCComponentDisplay::DisplayI("stepHalvingCnt", run.fNHalvings);
    MCComponentDisplay::DisplayDV("fvBeta", fvBeta, false);
    MCComponentDisplay::DisplayD("newLL", newLL);
  }
  return true;
}

void MCRegOptimizer::GiveUpStep(const Run& run) {
  fConverCrit = MCConst::MC_CONV_HALVING;
  fvBeta = run.fvPrevious;
  fLLChange = 0.0;
  fParamChange = 0.0;
}

// The full pass at the accepted estimates, or, after exhausted halving, at those before.
bool MCRegOptimizer::TakeEstimates(Run& run) {
  if (!RunFullPass(run.fMethod, run.fbCheckSeparation)) return false;
  fFinalLL = ReadLL();
  if (!ReadHessian()) return false;
  if (display_hessian) DisplayMatrix("Computed Hessian:", *fpHessianGI);
  FactorHessian(run);
  return true;
}

// Convergence of Fisher scoring isn't final, so Newton-Raphson goes on from its estimates.
bool MCRegOptimizer::SwitchToNewton(Run& run) {
  fNFisherIter = fLastIter;
  fConverCrit = MCConst::MC_CONV_NONE;
  if (!RunFullPass(MCConst::MC_EST_NEWTON, run.fbCheckSeparation) || !ReadHessian()) return false;
  FactorHessian(run);
  run.fMethod = MCConst::MC_EST_NEWTON;
  if (run.fNRedundant > 0) fConverCrit = MCConst::MC_CONV_SINGULAR;
  return true;
}

void MCRegOptimizer::PrepareStep(Run& run) const {
  fpHessianGI->LTSubstitute(fpAccumStats->GetScores(), run.fvStep);
}

// Only a run that came to an end of its own has a covariance matrix.
void MCRegOptimizer::InvertHessian(const Run& run) {
  if (fStatus.IsError() || !run.fbFinished || fNParams == 0) return;
  if (display_hessian) {
    MCComponentDisplay::DisplayText(1, "In MCRegOptimizer::Estimate() ...");
    DisplayMatrix("Cholesky factor of the Hessian:", *fpHessianGI);
  }
  fpHessianGI->LTInverse();
  int nValid = 0;
  int nInvalid = 0;
  fpAccumStats->GetCounts(nValid, nInvalid, fAccumWeight);
  if (display_hessian) {
    DisplayMatrix("Inverse of Hessian for final parameter estimates:", *fpHessianGI);
    fpAccumStats->Display(false);
  }
}

bool MCRegOptimizer::RunFullPass(MCEstimationMethod method, bool checkSeparation) {
  fpDataHandler->ResetAccumStats(method, checkSeparation);
  fStatus = fpDataHandler->ComputeStatsForOptimizer(false);
  return !fStatus.IsError();
}

bool MCRegOptimizer::ReadHessian() {
  fpAccumStats->GetHessian(*fpHessianGI);
  if (fpHessianGI->GetNRows() == fNParams) return true;
  fStatus = MCStatus(MCCommon::MCS_BAD_STATE, false);
  return false;
}

void MCRegOptimizer::FactorHessian(Run& run) {
  run.fNRedundant = fpHessianGI->LTChol(run.fTolerance, run.fMinDiag, false);
}

// Rounding may make a log-likelihood positive; a NaN passes.
double MCRegOptimizer::ReadLL() const {
  const double logLik = fpAccumStats->GetLL();
  return logLik > 0.0 ? 0.0 : logLik;
}

void MCRegOptimizer::Report(Run& run, double logLik) {
  const double seconds = static_cast<double>(std::clock() - run.fStart) / CLOCKS_PER_SEC;
  run.fReporter.SetInfo(&fvBeta, fLastIter, run.fNHalvings, logLik, seconds);
  fpListener->ReportProgress(&run.fReporter);
}

void MCRegOptimizer::CountDownToReport(Run& run) {
  if (fpListener == nullptr || --run.fCountdown > 0) return;
  Report(run, fFinalLL);
  run.fCountdown = fReportFrequency;
}

// A host always sees the last iteration, but not twice.
void MCRegOptimizer::SendLastReport(Run& run) {
  if (fpListener == nullptr || fStatus.IsError() || run.fCountdown == fReportFrequency) return;
  Report(run, fFinalLL);
}

void MCRegOptimizer::FailIfQueried() {
  if (fStatus.IsError() || !IsCancelQueried()) return;
  Cancel();
  fStatus = MCStatus(MCCommon::MCS_CANCELLED, false);
}
