// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"

namespace mcfit {

/// A linear regression fitted by the library.
class LinearModel : public FittedModel {
public:
  /// Fits the model to the rows of the data. Throws ModelError if the library answers an error,
  /// and Interrupted if the user stopped it. `data` is borrowed for as long as the model lives.
  LinearModel(Dataset& data, const ModelDesign& design, ProgressLine& progress);

  PmmlTerms InPmml() const override;
  std::string Report(const ReportStyle& style) const override;

  /// One cell: the predicted dependent.
  bool Score(const MCCommon::Record& record, std::vector<std::string>& cells) const override;
};

}  // namespace mcfit
