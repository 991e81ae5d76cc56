// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/linear/mcglmmodel.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"
#include "support/tabulaterows.h"

#include <utility>
#include <vector>

namespace mctest {

/// A linear model with its factor tables, fed by hand with rows in memory, all of them valid.
class LinearModel {
public:
  explicit LinearModel(RegressionDesign design)
      : fDesign(std::move(design)),
        fCancel(Settings().GetCancelPointer()),
        fTables(Settings().GetFactors(), Settings().GetFactorSizes(),
                Settings().GetFrequencyWeightVar(), -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
        fModel(Settings(), fCancel) {}

  MCRegSettings& Settings() { return fDesign.Settings(); }

  /// Counts the rows and numbers the parameters.
  void Tabulate(const Rows& rows) {
    std::vector<int> averaged = Settings().GetCovariates();
    averaged.push_back(Settings().GetDependent());
    TabulateRows(Settings(), averaged, rows, fTables);
    fTables.CreateParameterIndices();
    fModel.SetOffsets(Settings().GetFactors(), Settings().GetCovariates(),
                      Settings().GetFrequencyWeightVar(), Settings().GetRegrWeightVar(),
                      Settings().GetDependent());
    fModel.SetDepMeanAndTotalW(fTables.GetCovariateMeans().back(), fTables.GetTotalWeight());
  }

  /// Everything up to the accumulated matrix.
  MCCommon::MCStatus Accumulate(const Rows& rows) {
    Tabulate(rows);
    const MCCommon::MCStatus status = fModel.CreateParameters(&fTables);
    for (const std::vector<double>& row : rows) fModel.UpdateZPrimeZ(row.data());
    return status;
  }

  /// The whole road; the answer is that of the last step that was reached.
  MCCommon::MCStatus Fit(const Rows& rows) {
    MCCommon::MCStatus status = Accumulate(rows);
    if (!status.IsError()) status = fModel.BuildModel();
    if (status.IsError()) return status;
    std::vector<double> products(fModel.GetParamEstimates().size());
    for (const std::vector<double>& row : rows) fModel.GetDResiduals(products, row.data());
    return fModel.FinishErrors();
  }

  /// Bits of the pivot set, one per parameter and one for the dependent.
  std::vector<bool> Swept() const {
    std::vector<bool> bits;
    for (int i = 0; i < fModel.GetRedundancyInfo().Size(); ++i) {
      bits.push_back(fModel.GetRedundancyInfo().IsIn(i));
    }
    return bits;
  }

  RegressionDesign fDesign;
  MCCancelInfo fCancel;
  MCFactorTables fTables;
  MCGLMModel fModel;
};

}  // namespace mctest
