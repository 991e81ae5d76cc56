// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitcommand.h"
#include "logisticmodel.h"

#include <string>

namespace mcfit {

/// `mcfit logistic`: fits a multinomial logistic regression.
class LogisticCommand : public FitCommand {
public:
  explicit LogisticCommand(CLI::App& app);

protected:
  void CheckOptions() const override;
  ModelColumns Columns() const override;
  void Prepare(Dataset& data) override;
  std::vector<std::string> ScoreColumns(const Dataset& data) const override;
  std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design,
                                   ProgressLine& progress) const override;

private:
  std::string fReference = "last";
  LogisticControl fControl;
  int fReferenceCode = -1;
};

}  // namespace mcfit
