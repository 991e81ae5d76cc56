// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitcommand.h"

namespace mcfit {

/// `mcfit linear`: fits a linear regression.
class LinearCommand : public FitCommand {
public:
  explicit LinearCommand(CLI::App& app);

protected:
  std::vector<std::string> ScoreColumns(const Dataset& data) const override;
  std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design,
                                   ProgressLine& progress) const override;
};

}  // namespace mcfit
