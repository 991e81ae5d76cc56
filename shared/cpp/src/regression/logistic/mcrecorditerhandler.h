// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcregrecordvalidator.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/interface/imcdatahandler.h"

#include <cstdint>
#include <vector>

/// The data handler that keeps no rows: each iteration reads the source again from its start,
/// validates each row and gives it to the accumulator. For data that memory can't hold; otherwise
/// MCPatternTabulator is faster.
///
/// Unlike there the accumulator gets the code of a row's category as it stands, not its local
/// index. The two handlers therefore agree only where codes and local indices are the same: codes
/// from 0 to K - 1, all of them in the data, and the last one the reference. With another reference
/// the categories are mixed up, and a code of K or more is refused.
class MC_EXPORT MCRecordIterHandler : public IMCDataHandler {
public:
  /// Source, cancel info and validator are borrowed for the life of the handler. `dependentVar`,
  /// `freqWeightVar`, `regrWeightVar`: record positions, for a weight negative if there is none.
  MCRecordIterHandler(MCCommon::MultiPassRecordIter& source, MCCancelInfo& cancelInfo,
                      const MCRegRecordValidator& validator, int dependentVar, int freqWeightVar,
                      int regrWeightVar);
  ~MCRecordIterHandler() override;

  void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) override;
  void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) override;
  void CleanStatsModel() override;

  /// One pass over the source: NewPass(), then its rows until none is left, an error stands or a
  /// cancel is pending, asked before each row. Rows that aren't valid are skipped; a row with a
  /// combination of factor levels that was never seen counts as an empty one. An empty source is
  /// no error, and neither is a cancel here: the caller sees it by itself.
  ///
  /// Code 307 if NewPass() fails, 304 for a null record, 303 if the accumulator refuses a row or
  /// if there is no model or accumulator; 315 and 316 from the validation, 315 also for a record
  /// that ends before a position of dependent, weights or the model's variables. The answer is the
  /// standing status: once it is an error no pass reads a row.
  MCCommon::MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) override;

  /// Whether a cancel has ended any pass so far, so that its sums are those of a part of the rows.
  /// A cancel can be withdrawn before the caller asks.
  bool WasCancelled() const { return fbCancelled; }

  /// Empty: the handler raises no warning.
  const std::vector<MCCommon::MCStatus>& GetWarnings() const override;

  /// Writes nothing.
  void Display() const override;

private:
  bool IsValidRow(const MCCommon::Record& record);
  double GetWeight(const double* row) const;
  void ReadRows(bool likelihoodOnly);

  MCCommon::MCStatus fStatus;
  std::vector<MCCommon::MCStatus> fWarnings;
  MCCommon::MultiPassRecordIter* fSource;
  MCCancelInfo* fCancelInfo;
  const IMCRegModel* fModel = nullptr;
  IMCAccumStats* fAccumStats = nullptr;
  int fDependentVar;
  int fFreqWeightVar;
  int fRegrWeightVar;
  const MCRegRecordValidator* fValidator;

  bool fbCancelled = false;
  std::int64_t fRecordSize = 0;  // values that a record must have for handler and model
};
