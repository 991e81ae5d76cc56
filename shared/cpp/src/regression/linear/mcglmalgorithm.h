// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcbuildstatus.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/linear/mcglmmodel.h"
#include "regression/settings/mcregsettings.h"

#include <cstdint>
#include <vector>

/// Runs a linear regression over a source of rows in three passes: one to tabulate factors, means
/// and weights, one to accumulate cross-products, one for residuals. Each pass asks HasMore() and
/// polls for a cancel before each Next(). Rows are read at the settings' record positions.
///
///     algorithm.ProcessData(source);           // first pass
///     algorithm.CreateParameters(parameters);
///     algorithm.BuildModel(source);            // second and third pass
///     algorithm.Score(record, value);          // as often as wanted
///
/// One standing status is read and written by every step: once it is an error each later step
/// answers it and does nothing. A record with fewer values than a position of the settings asks
/// for is refused with code 315, which stops the pass, as does code 316 for a malformed category;
/// other rows that the validator turns down are skipped. What the source answers to NewPass() is
/// not looked at: a source that fails there shows no rows.
class MC_EXPORT MCGLMAlgorithm {
public:
  /// The settings are borrowed for the life of the driver and not to change. They should be valid:
  /// without a dependent no row is.
  explicit MCGLMAlgorithm(const MCRegSettings& settings);
  MCGLMAlgorithm(const MCGLMAlgorithm&) = delete;
  MCGLMAlgorithm& operator=(const MCGLMAlgorithm&) = delete;

  /// Prepares the factor tables and makes the first pass: NewPass(), then ProcessSource(). Code
  /// 307 for a source without rows, 306 (which goes before it) if the data are processed already.
  MCCommon::MCStatus ProcessData(MCCommon::MultiPassRecordIter& source);

  /// Tabulates the rows that `source` still has, without a new pass. Code 312 for a null row, 307
  /// if no row was valid (also when a cancel came first), 1 for a cancel.
  MCCommon::MCStatus ProcessSource(MCCommon::MultiPassRecordIter& source);

  /// Numbers the parameters and makes the model's matrix; the codes are those of
  /// MCGLMModel::CreateParameters(). `parameters` is not touched: the list is in GetModel().
  MCCommon::MCStatus CreateParameters(std::vector<MCRegrParameter>& parameters);

  /// Fits the model: FillDesignMatrix(), the model's BuildModel(), ComputeResiduals(). Code 309 if
  /// parameters are not created, 310 (which goes before it) if the model is built already. The
  /// last warning, if any, is the answer of a build without error.
  MCCommon::MCStatus BuildModel(MCCommon::MultiPassRecordIter& source);

  /// The second pass. Code 313 if the data are not processed, for a null row and for a row that
  /// the model refuses; 1 for a cancel.
  MCCommon::MCStatus FillDesignMatrix(MCCommon::MultiPassRecordIter& source);

  /// The third pass, and the close of the sums of squares. Code 303 if the model isn't fitted, 313
  /// for a null row, 308 if no row had a weight; 1 for a cancel, before 308 if no row was read at
  /// all and behind it otherwise.
  MCCommon::MCStatus ComputeResiduals(MCCommon::MultiPassRecordIter& source);

  /// Sets `value` to the predicted dependent, or to the missing value where a combination of
  /// factor levels was not seen in the fit. The record isn't validated otherwise, see
  /// GetRecordValidator(). Code 1 while a cancel is pending and 311 before the build, both with
  /// `value` unchanged; 315 and the missing value for a record that ends before a factor or
  /// covariate. None of these is stored.
  MCCommon::MCStatus Score(const MCCommon::Record& record, double& value) const;

  /// Whether the record has a value at each position of the settings' factors and covariates.
  /// GetRecordValidator() goes by the roles of positions, which settings forget where memory runs
  /// out; this goes by the positions.
  bool ReachesPredictors(const MCCommon::Record& record) const {
    return record.Size() >= fScoringSize;
  }

  bool IsDataProcessed() const { return fbDataProcessed; }
  bool IsModelBuilt() const { return fbModelBuilt; }
  bool AreParamsCreated() const { return fModel.AreParamsCreated(); }

  /// Weighted means of the settings' covariates, and of the dependent last; empty before
  /// ProcessData().
  const std::vector<double>& GetMeanValues() const { return fMeanValues; }

  /// The factor tables, seen as counts.
  const MCFactorCounts& GetFactorCounts() const { return fFactorTables; }
  const MCGLMModel& GetModel() const { return fModel; }
  const MCRegRecordValidator& GetRecordValidator() const { return fRecordValidator; }

  /// Distinct warnings in order of arrival.
  const std::vector<MCCommon::MCStatus>& GetWarnings() const { return fStatus.GetWarnings(); }

  /// Sum of the frequency weights, and of frequency weight times regression weight, of the valid
  /// rows.
  double GetTotalFreqWeight() const { return fFactorTables.GetTotalWeight(); }
  double GetTotalRegrWeight() const { return fFactorTables.GetTotalRegrWeight(); }

  /// Cancels for good; may be called from any thread.
  void Cancel() { fCancel.SetCancel(); }

  /// Writes the driver's parts to the display stream.
  void Display() const;

private:
  void FailIfCancelled();

  const MCRegSettings* fSettings;
  MCCancelInfo fCancel;
  MCRegRecordValidator fRecordValidator;
  MCFactorTables fFactorTables;
  std::vector<double> fMeanValues;
  MCGLMModel fModel;
  bool fbDataProcessed = false;
  bool fbModelBuilt = false;
  int fRecordCount = 0;
  int fValidCount = 0;
  MCBuildStatus fStatus;

  std::int64_t fScoringSize;  // values that a record must have to be scored
};
