// SPDX-License-Identifier: Apache-2.0
#include "logisticcommand.h"

namespace mcfit {

LogisticCommand::LogisticCommand(CLI::App& app)
    : FitCommand(app, "logistic",
                 "Fit a multinomial logistic regression to the rows of a CSV file") {
  App().add_option("--reference", fOptions.reference,
                   "Category that the others are compared with: its label, or first or last in "
                   "the order of labels; last by default");
  App().add_option("--max-iterations", fOptions.control.maxIterations,
                   "Most iterations; 100 by default");
  App().add_flag("--reread", fOptions.control.reread,
                 "Read the rows again at each iteration instead of keeping them in memory");
}

std::unique_ptr<RegressionKind> LogisticCommand::Kind() const {
  return std::make_unique<LogisticKind>(fOptions);
}

}  // namespace mcfit
