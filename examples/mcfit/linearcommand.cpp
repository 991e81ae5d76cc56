// SPDX-License-Identifier: Apache-2.0
#include "linearcommand.h"

namespace mcfit {

LinearCommand::LinearCommand(CLI::App& app)
    : FitCommand(app, "linear", "Fit a linear regression to the rows of a CSV file") {}

std::unique_ptr<RegressionKind> LinearCommand::Kind() const {
  return std::make_unique<LinearKind>();
}

}  // namespace mcfit
