// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcbuildstatus.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcrecordextractor.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/interface/imcdatahandler.h"
#include "regression/logistic/mcconvergence.h"
#include "regression/logistic/mclogmodel.h"
#include "regression/settings/mclogregsettings.h"

#include <cstdint>
#include <memory>
#include <vector>

class MCAccumStatsLogistic;
class MCPatternTabulator;
class MCRecordIterHandler;
class MCRegOptimizer;

/// Runs a multinomial logistic regression over a source of rows. The settings alone decide how it
/// is read: with patterns twice in all, rows being kept in memory for the iterations; without them
/// once for the factor tables, once for the redundancy of the design and once more for each pass
/// of the estimator.
///
///     algorithm.CreateParameters(source, parameters);  // first pass
///     algorithm.BuildModel(source);                    // all others
///     algorithm.Score(record, probabilities, category);
///
/// One standing status is the answer of the last step; once it is an error each later step answers
/// it and does nothing. A warning is overwritten by a later OK, but stays in GetWarnings(), and a
/// build that ends without error answers the last one there. What the source answers to NewPass()
/// is looked at by the rereading estimator alone (307): elsewhere a source that fails there shows
/// no rows.
///
/// Steps poll for a cancel before each row and at their ends and answer 1; one that left a loop
/// because of a cancel does so without asking again. *Between* the steps a cancel makes what
/// follows be skipped and raises nothing of its own: a build that was cancelled just there answers
/// OK, and counts as built if parameters were there.
class MC_EXPORT MCLogAlgorithm {
public:
  /// The settings are borrowed for the life of the driver and not to change. They should be valid:
  /// without a dependent no row is. Memory for all categories of factors and dependent is taken
  /// here; its exhaustion is thrown.
  explicit MCLogAlgorithm(const MCLogRegSettings& settings);
  MCLogAlgorithm(const MCLogAlgorithm&) = delete;
  MCLogAlgorithm& operator=(const MCLogAlgorithm&) = delete;
  ~MCLogAlgorithm();

  /// FillFactorTable(), then the categories of the dependent and the list of parameters, of which
  /// `parameters` becomes a copy. Codes of those steps; from the model 305, 318, warning 319. With
  /// a cancel pending at the start nothing is done and the standing status answered; with one that
  /// is withdrawn at the second asking, 309 or, on a built model, 310, both stored.
  MCCommon::MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                                      std::vector<MCRegrParameter>& parameters);

  /// The first pass, over the rows that `source` still has: factor tables and means of covariates.
  /// All errors are stored. Code 307 for a source without rows, 306 (which goes before it) if the
  /// pass was made already. With patterns, those of MCPatternTabulator::FillFactorTable(), 308
  /// among them. Without, 312 for a null row, 315 or 316 for a malformed one, 307 if none was
  /// valid (also when a cancel came first), 1 for a cancel; the source then begins a new pass.
  MCCommon::MCStatus FillFactorTable(MCCommon::MultiPassRecordIter& source);

  /// Fits the model. The standing status, with nothing done, before CreateParameters() has made a
  /// parameter; 310, not stored and nothing changed, if the model is built already.
  ///
  /// With patterns: the codes of MCPatternTabulator::CreateRowPatterns(), and 313 if a row didn't
  /// go into the design matrix. Without: 313 for a null row or such a one in that pass, 315 and
  /// 316 for a malformed one. Then those of the model's IdentifyRedundancy() (309 if there was no
  /// row), SetInitialEstimates() and UncompressEstimates(); 305 with discrete datum 0 the number
  /// of estimates if there is no memory for the sums; those of the data handler; 1 for a cancel,
  /// be it one that cut the estimation short and has been withdrawn since.
  ///
  /// An estimation that stops without convergence is no error, see GetConvergence(). With
  /// `compute_estimates` cleared there is none: the model counts as built with all estimates 0.0
  /// and without a covariance matrix.
  MCCommon::MCStatus BuildModel(MCCommon::MultiPassRecordIter& source);

  /// Sets `probabilities`, one per category that was seen in the order of the model, and the code
  /// of the predicted category; see MCLogModel::Score() for combinations of factor levels that
  /// were not seen. Code 1 while a cancel is pending, even over a standing error; 311 before the
  /// build. For a record that fails the validator the validator's status, or the standing one where
  /// it was turned down silently; 315 for one that ends before a factor or covariate. In all these
  /// cases both outputs stay as they were, and nothing is stored.
  MCCommon::MCStatus Score(const MCCommon::Record& record, std::vector<double>& probabilities,
                           int& category) const;

  /// Whether the record has a value at each position of the settings' factors and covariates.
  /// GetRecordValidator() goes by the roles of positions, which settings forget where memory runs
  /// out; this goes by the positions.
  bool ReachesPredictors(const MCCommon::Record& record) const {
    return record.Size() >= fScoringSize;
  }

  /// As MCBuildStatus::AddNewWarning(). The second form adds all, and tells whether each was
  /// added; true for an empty list.
  bool AddNewWarning(const MCCommon::MCStatus& status, bool keepError) {
    return fStatus.AddNewWarning(status, keepError);
  }
  bool AddNewWarnings(const std::vector<MCCommon::MCStatus>& statuses, bool keepError) {
    return fStatus.AddNewWarnings(statuses, keepError);
  }

  /// Cancels for good; may be called from any thread.
  void Cancel() { fCancelInfo.SetCancel(); }

  bool AreParamsCreated() const { return fbParamsCreated; }
  bool IsModelBuilt() const { return fbModelBuilt; }
  bool IsFactorTableFilled() const { return fbFactorTableFilled; }

  /// Means of the settings' covariates, weighted by the frequency weights; empty before
  /// FillFactorTable().
  const std::vector<double>& GetMeanValues() const { return fMeanValues; }

  /// The factor tables, seen as counts.
  const MCFactorCounts& GetFactorCounts() const { return fFactorTables; }
  const MCLogModel& GetModel() const { return fModel; }

  /// Null before the estimation. Afterwards it has its results, but no matrix: an estimation that
  /// ends without error hands that over to the model.
  const MCRegOptimizer* GetOptimizer() const { return fpOptimizer.get(); }

  /// Distinct warnings in order of arrival.
  const std::vector<MCCommon::MCStatus>& GetWarnings() const { return fStatus.GetWarnings(); }
  const MCRegRecordValidator& GetRecordValidator() const { return fRecordValidator; }

  /// Sum of the frequency weights of the valid rows. Both are the same: the regression weights
  /// take no part in the tables.
  double GetTotalWeight() const { return fFactorTables.GetTotalWeight(); }
  double GetTotalRegrWeight() const { return fFactorTables.GetTotalRegrWeight(); }

  /// How the estimation ended; a fresh one before it.
  const MCConvergence& GetConvergence() const { return fConvergence; }

  /// Writes the driver's parts, so far as there are any, to the display stream.
  void Display() const;

private:
  bool MayGoOn() const { return !fStatus.IsError() && !fCancelInfo.WillCancel(); }
  void FailIfCancelled(bool wasCancelled);

  bool ReadFactors(MCCommon::MultiPassRecordIter& source);
  void MakeParameters(std::vector<MCRegrParameter>& parameters);

  void CreatePatterns(MCCommon::MultiPassRecordIter& source);
  void FillDesignMatrix(MCCommon::MultiPassRecordIter& source);
  void ReadDesignMatrix(MCCommon::MultiPassRecordIter& source);
  void FitModel(MCCommon::MultiPassRecordIter& source);
  void MakeAccumulator();
  void MakeOptimizer(MCCommon::MultiPassRecordIter& source);
  IMCDataHandler* MakeDataHandler(MCCommon::MultiPassRecordIter& source);
  void Estimate();
  bool WasEstimationCut() const;
  void StateConvergence();
  void FreeWorkspace();

  const MCLogRegSettings* fSettings;
  MCRecordExtractor fPatternExtractor;
  MCFactorTables fFactorTables;
  MCRegRecordValidator fRecordValidator;
  std::unique_ptr<MCPatternTabulator> fpPatternTabulator;
  std::unique_ptr<MCRecordIterHandler> fpRecordHandler;
  std::vector<double> fMeanValues;
  MCCancelInfo fCancelInfo;
  MCLogModel fModel;
  std::vector<double> fEstimates;  // the optimizer refers to it
  std::unique_ptr<MCAccumStatsLogistic> fpAccumStats;
  std::unique_ptr<MCRegOptimizer> fpOptimizer;
  bool fbFactorTableFilled = false;
  bool fbParamsCreated = false;
  bool fbModelBuilt = false;
  MCBuildStatus fStatus;
  MCConvergence fConvergence;
  std::int64_t fScoringSize;  // values that a record must have to be scored
};
