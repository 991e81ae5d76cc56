// SPDX-License-Identifier: Apache-2.0
#include "linearcommand.h"

#include "linearmodel.h"

namespace mcfit {

LinearCommand::LinearCommand(CLI::App& app)
    : FitCommand(app, "linear", "Fit a linear regression to the rows of a CSV file") {}

std::vector<std::string> LinearCommand::ScoreColumns(const Dataset& /*data*/) const {
  return {"predicted"};
}

std::unique_ptr<FittedModel> LinearCommand::Fit(Dataset& data, const ModelDesign& design,
                                                ProgressLine& progress) const {
  return std::make_unique<LinearModel>(data, design, progress);
}

}  // namespace mcfit
