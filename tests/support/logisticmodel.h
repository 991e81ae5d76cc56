// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/logistic/mclogmodel.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"
#include "support/tabulaterows.h"

#include <utility>
#include <vector>

namespace mctest {

/// A logistic model with its factor tables, fed by hand with rows in memory, all of them valid.
/// Pattern rows are the records themselves unless the model is told otherwise.
class LogisticModel {
public:
  explicit LogisticModel(LogisticDesign design)
      : fDesign(std::move(design)),
        fCancel(Settings().GetCancelPointer()),
        fTables(Settings().GetFactors(), Settings().GetFactorSizes(),
                Settings().GetFrequencyWeightVar(), Settings().GetDependent(),
                Settings().GetDependentNCategs(), 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
        fModel(Settings(), fCancel) {}

  MCLogRegSettings& Settings() { return fDesign.Settings(); }

  void Tabulate(const Rows& rows) {
    TabulateRows(Settings(), Settings().GetCovariates(), rows, fTables);
  }

  /// Everything up to the parameters; the answer is that of the last step that was reached.
  MCCommon::MCStatus Prepare(const Rows& rows) {
    Tabulate(rows);
    const MCRegSettings& settings = Settings();
    fModel.SetOffsets(settings.GetFactors(), settings.GetCovariates(),
                      settings.GetFrequencyWeightVar(), settings.GetRegrWeightVar(),
                      settings.GetDependent());
    fModel.SetPatternOffsets(settings.GetCovariates(), settings.GetFrequencyWeightVar(),
                             settings.GetRegrWeightVar(), settings.GetDependent());
    const MCCommon::MCStatus status = fModel.SetDepCatInfo(&fTables);
    return status.IsError() ? status : fModel.CreateParameters();
  }

  /// The same with the rows in the matrix.
  MCCommon::MCStatus Accumulate(const Rows& rows) {
    const MCCommon::MCStatus status = Prepare(rows);
    for (const std::vector<double>& row : rows) fModel.UpdateXPrimeX(row.data());
    return status;
  }

  /// Everything up to the redundancy of the parameters.
  MCCommon::MCStatus Identify(const Rows& rows) {
    const MCCommon::MCStatus status = Accumulate(rows);
    return status.IsError() ? status : fModel.IdentifyRedundancy();
  }

  /// The same with the estimates of the non-redundant parameters, and a Hessian of zeros.
  MCCommon::MCStatus Estimate(const Rows& rows, const std::vector<double>& estimates) {
    const MCCommon::MCStatus status = Identify(rows);
    const MCCommonMath::MCSymMatrix hessian(fModel.GetNNonRedParams());
    return status.IsError() ? status : fModel.UncompressEstimates(estimates, hessian);
  }

  LogisticDesign fDesign;
  MCCancelInfo fCancel;
  MCFactorTables fTables;
  MCLogModel fModel;
};

/// The bits of a set in order.
inline std::vector<bool> BitsOf(const MCCommonMath::MCBitSet& set) {
  std::vector<bool> bits;
  for (int i = 0; i < set.Size(); ++i) bits.push_back(set.IsIn(i));
  return bits;
}

}  // namespace mctest
