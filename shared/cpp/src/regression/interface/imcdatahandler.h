// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/interface/imcaccumstats.h"
#include "regression/interface/imcregmodel.h"

#include <vector>

/// Runs an iterative estimator's passes over the data: each pass hands the rows, one after the
/// other, to the accumulator.
class MC_EXPORT IMCDataHandler {
public:
  virtual ~IMCDataHandler() = default;

  /// Both are borrowed until CleanStatsModel().
  virtual void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) = 0;

  /// Begins a pass: resets the accumulator, if there is one.
  virtual void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) = 0;

  /// Lets go of accumulator and model.
  virtual void CleanStatsModel() = 0;

  /// Hands all rows to the accumulator, with `likelihoodOnly` for their likelihood alone.
  virtual MCCommon::MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) = 0;

  virtual const std::vector<MCCommon::MCStatus>& GetWarnings() const = 0;

  /// Writes the handler to the display stream.
  virtual void Display() const = 0;
};
