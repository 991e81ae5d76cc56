// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"
#include "regression/frame/mcquerycancel.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/progresslistener.h"
#include "regression/interface/imcaccumstats.h"
#include "regression/interface/imcdatahandler.h"
#include "regression/interface/imcregmodel.h"
#include "regression/settings/mclogregsettings.h"

#include <atomic>
#include <memory>
#include <vector>

/// Finds the maximum likelihood estimates of a model. It knows nothing of rows: a data handler runs
/// the passes, and each gives the accumulator the log-likelihood l(b) at the estimates b, its
/// gradient, the scores s(b), and the information H(b), which is called the Hessian here though it
/// has the sign of minus the second derivatives.
///
/// The method is a damped Newton iteration. From b(0), the initial estimates, iteration k solves
///     H(b(k-1)) d = s(b(k-1))   by Cholesky factorisation, with d[i] = 0 for a redundant row i,
/// and takes
///     b(k) = b(k-1) + d / 2^h,   h = 0, 1, ..., most halvings (default 5, which is six trials),
/// with the first h for which l(b(k)) >= l(b(k-1)). Here 2 stands for twice the accumulator's step
/// adjustment factor. A trial is a pass for the likelihood alone; one full pass follows at b(k).
/// With the expected information in H this is Fisher scoring, with the observed one
/// Newton-Raphson, and hybrid begins with the first and goes on with the second. In a multinomial
/// logit model the two are one matrix, and so are the methods.
///
/// Row i of H is redundant where tolerance * H(i,i) is at least what the rows before it leave of
/// H(i,i) (the settings' tolerance, default 1e-12; a diagonal below the tolerance is judged against
/// 1). After each full pass the run stops with the first reason that holds:
///     7  MC_CONV_COMPLETE_SEP  the smallest and the largest probability of an observed category
///                              are at least 0.99
///     8  MC_CONV_QUASI_SEP     the smallest diagonal element of the Cholesky factor is at most
///                              0.000316, and the largest such probability is above 0.99 or the
///                              smallest of all probabilities below 0.001
///     4  MC_CONV_SINGULAR      that diagonal element is as small without such probabilities, or
///                              a row is redundant
///     3  MC_CONV_BOTH          both of the next
///     1  MC_CONV_LL            LL criterion > |l(b(k-1)) - l(b(k))|, divided by |l(b(k-1))| unless
///                              absolute (default: relative, 0.0, so never)
///     2  MC_CONV_PARAM         parameter criterion > the largest |b(k) - b(k-1)|, each divided by
///                              |b(k-1)| + 1e-6 unless absolute (default: relative, 1e-6)
///     6  MC_CONV_MAX_ITER      k is the iteration limit (default 100) or above
/// where 7, 8 and the first case of 4 are looked for from the starting iteration on (default 20, 0
/// for never). With 5, MC_CONV_HALVING, all halvings were refused: the next try would begin where
/// this one did. 9, MC_CONV_NOT_RUN, stands where there is nothing to iterate: no parameter, an
/// iteration limit of 0, or intercepts alone, which the initial estimates solve.
/// No reason is a status: Estimate() answers OK for all, and GetConverCrit() tells.
///
/// What a run leaves behind:
///     1 to 4, 6 to 8  estimates of the last iteration, their log-likelihood and changes, and the
///                     inverse of their Hessian (generalised: 0 in redundant rows), which is their
///                     covariance matrix. For 7 and 8 the maximum lies at infinity, and the
///                     estimates are a point on the way.
///     5               the same for the iteration before, with changes 0.0
///     9               the initial estimates and the inverse of their Hessian; the final
///                     log-likelihood stays missing
///     0 and OK        Cancel() came, or the query said yes but once: estimates of the last
///                     iteration that was accepted; the matrix isn't inverted
///     an error        nothing to rely on: estimates may be those of a trial, the matrix isn't
///                     inverted, and the reason may be any
///
/// Sources: McCullagh and Nelder, Generalized Linear Models, 2nd ed. 1989; separation: Albert and
/// Anderson, Biometrika 71 (1984).
class MC_EXPORT MCRegOptimizer {
public:
  /// Settings and model are borrowed for the life of the optimizer, which asks the settings for
  /// criteria, limits and cancel query now; handler and accumulator are borrowed until Estimate()
  /// has answered. `estimates` is borrowed until then, too, and for GetParEstimates() and
  /// Display(): it is resized to the model's number of non-redundant parameters (a negative one
  /// counts as 0), new entries 0.0, holds the initial estimates then and the current ones during
  /// the run. The accumulator is to read that vector. `listener` may be null; it gets a report on
  /// the initial estimates, one every `reportFrequency` iterations (every one, below 2) and one on
  /// the last iteration if that had none. `fisherIterations` is the most iterations of Fisher
  /// scoring under MC_EST_HYBRID; with 0 or less a hybrid run never switches.
  MCRegOptimizer(const MCLogRegSettings& settings, const IMCRegModel& model,
                 IMCDataHandler* dataHandler, IMCAccumStats* accumStats,
                 std::vector<double>& estimates, ProgressListener* listener, int reportFrequency,
                 MCConst::MCEstimationMethod method, int fisherIterations);
  MCRegOptimizer(const MCRegOptimizer&) = delete;
  MCRegOptimizer& operator=(const MCRegOptimizer&) = delete;

  /// Runs the iteration; to be called once. Errors of the handler are answered and end the run.
  /// Code 1 if the query asks to cancel; 303 if the accumulator's Hessian hasn't one row per
  /// parameter, and, with nothing done, without handler, accumulator or matrix. Scores that are too
  /// few for the matrix leave the step as it was. The answer is OK whatever the stopping reason.
  MCCommon::MCStatus Estimate();

  /// The vector that the constructor was given, which must still be there.
  const std::vector<double>& GetParEstimates() const { return fvBeta; }

  /// One row per parameter: zeros before Estimate(), the covariance matrix after a run that ended
  /// with a reason, otherwise what the run left of the Hessian. Null after ClearHessianGIMatrix().
  const MCCommonMath::MCSymMatrix* GetHessianGI() const { return fpHessianGI.get(); }
  void ClearHessianGIMatrix() { fpHessianGI.reset(); }

  /// The stopping reason, a value of MCConst::MCConvergenceCriterion. MC_CONV_NOT_RUN before
  /// Estimate(), MC_CONV_NONE for a run that was cut short.
  int GetConverCrit() const { return fConverCrit; }

  /// Iterations run, the log-likelihoods at the initial and at the last accepted estimates (the
  /// missing value until known), and the last changes of log-likelihood and estimates, measured as
  /// their criteria say.
  void GetEstStats(int& iterations, double& initialLL, double& finalLL, double& llChange,
                   double& paramChange) const;

  /// Iterations of Fisher scoring in a hybrid run; 0 for other methods and before an iteration.
  int GetFisherIterInHybrid() const;

  /// Whether a hybrid run whose current method is `current` goes over to Newton-Raphson: only from
  /// Fisher scoring, and if the run has converged, or has reached its budget without a reason to
  /// stop.
  bool HybridSwitch(MCConst::MCEstimationMethod current) const;

  /// The reason to stop after an iteration, or MC_CONV_NONE, by the tests of the class; measures
  /// both changes whatever the reason. `previous` and `previousLL` are the estimates and the
  /// log-likelihood before it; `redundant` is the number of redundant rows of the Hessian,
  /// `minDiag` the smallest diagonal element of its Cholesky factor. With `checkSeparation` the
  /// last pass must have kept the extremes of the probabilities. A NaN meets no criterion; among
  /// estimates it is passed over, so that it doesn't hinder the parameter criterion.
  int CheckForConvergence(const std::vector<double>& previous, double previousLL, int redundant,
                          double minDiag, bool checkSeparation);

  /// With L0 and L1 the initial and the final log-likelihood and W the total weight:
  ///     Cox and Snell  1 - exp(2 (L0 - L1) / W)
  ///     Nagelkerke     Cox and Snell / (1 - exp(2 L0 / W))
  ///     McFadden       1 - L1 / L0, and 0.0 where both are 0.0
  /// Each is the missing value where it can't be had: an exponent above 709, a divisor of 0.0. All
  /// are 0.0 without iterations, without a positive weight and while a log-likelihood is missing.
  /// False if any is missing.
  bool ComputeRSquares(double& coxSnell, double& nagelkerke, double& mcFadden) const;

  /// Stops the run before its next trial or iteration; may be called from any thread.
  void Cancel() { fbCancelled.store(true, std::memory_order_relaxed); }

  /// Writes results and criteria to the display stream.
  void Display() const;

private:
  struct Run;

  void BeginRun(Run& run);
  void TakeInitialEstimates(Run& run);
  bool IsNothingToIterate() const;
  bool MayIterate(const Run& run) const;
  void Iterate(Run& run);
  void BeginIteration(Run& run);
  void SearchAlongStep(Run& run);
  bool TryStep(const Run& run, double factor, double& newLL);
  void GiveUpStep(const Run& run);
  bool TakeEstimates(Run& run);
  bool SwitchToNewton(Run& run);
  void PrepareStep(Run& run) const;
  void InvertHessian(const Run& run);

  bool RunFullPass(MCConst::MCEstimationMethod method, bool checkSeparation);
  bool ReadHessian();
  void FactorHessian(Run& run);
  double ReadLL() const;
  void Report(Run& run, double logLik);
  void CountDownToReport(Run& run);
  void SendLastReport(Run& run);
  bool IsCancelled() const { return fbCancelled.load(std::memory_order_relaxed); }
  bool IsCancelQueried() const { return fpCancel != nullptr && fpCancel->WillCancel(); }
  void FailIfQueried();

  int FindSeparation(double minDiag) const;
  void MeasureLLChange(double previousLL);
  void MeasureParamChange(const std::vector<double>& previous);

  const MCLogRegSettings& fpSettings;
  const IMCRegModel& fpModel;
  IMCDataHandler* fpDataHandler;
  IMCAccumStats* fpAccumStats;
  int fNParams;
  int fNDepCategs;
  std::vector<double>& fvBeta;
  std::unique_ptr<MCCommonMath::MCSymMatrix> fpHessianGI;
  MCConst::MCEstimationMethod fEstMethod;
  int fNFisherIter;
  int fConverCrit = MCConst::MC_CONV_NOT_RUN;
  double fLLCriterion;
  double fParamCriterion;
  int fMaxIter;
  bool fbLLAbsolute;
  bool fbParamAbsolute;
  double fInitialLL = MCMV::gMissingValue;
  double fFinalLL = MCMV::gMissingValue;
  int fLastIter = 0;
  double fLLChange = 0.0;
  double fParamChange = 0.0;
  double fAccumWeight = 0.0;
  std::atomic<bool> fbCancelled{false};
  MCQueryCancel* fpCancel;
  ProgressListener* fpListener;
  int fReportFrequency;
  MCCommon::MCStatus fStatus;
};
