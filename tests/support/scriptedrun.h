// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/logistic/mcregoptimizer.h"
#include "support/recordingdoubles.h"

#include <memory>
#include <vector>

namespace mctest {

/// An optimizer among recording doubles: one parameter, starting at 0.0, unless told otherwise.
/// With the script as it is made the log-likelihood stays at -1.0 and each step is 1.0.
class ScriptedRun {
public:
  explicit ScriptedRun(int nParams = 1, int nCategs = 1) : fModel(nParams, nCategs) {
    fSettings.SetCancelPointer(&fCancel);
  }

  /// The optimizer, made from the members as they are at the first call.
  MCRegOptimizer& Optimizer() {
    if (fpOptimizer == nullptr) {
      fpOptimizer = std::make_unique<MCRegOptimizer>(fSettings, fModel, &fHandler, &fAccumStats,
                                                     fEstimates, fbListens ? &fListener : nullptr,
                                                     fReportFrequency, fMethod, fFisherIterations);
    }
    return *fpOptimizer;
  }

  MCCommon::MCStatus Estimate() { return Optimizer().Estimate(); }
  PassScript& Script() { return fAccumStats.fScript; }

  struct Stats {
    int fIterations;
    double fInitialLL;
    double fFinalLL;
    double fLLChange;
    double fParamChange;
  };
  Stats EstStats() {
    Stats stats{};
    Optimizer().GetEstStats(stats.fIterations, stats.fInitialLL, stats.fFinalLL, stats.fLLChange,
                            stats.fParamChange);
    return stats;
  }

  CallLog fLog;
  MCLogRegSettings fSettings;
  CountedModel fModel;
  RecordingAccumStats fAccumStats{fLog};
  RecordingDataHandler fHandler{fLog, fAccumStats};
  RecordingCancel fCancel{fLog};
  RecordingListener fListener{fLog};
  bool fbListens = true;
  int fReportFrequency = 1;
  MCConst::MCEstimationMethod fMethod = MCConst::MC_EST_FISHER;
  int fFisherIterations = 0;
  std::vector<double> fEstimates;

private:
  std::unique_ptr<MCRegOptimizer> fpOptimizer;
};

}  // namespace mctest
