// SPDX-License-Identifier: Apache-2.0
#include "logisticcommand.h"

namespace mcfit {

std::vector<CLI::Option*> DeclareLogisticOptions(CLI::App& command, LogisticOptions& options) {
  return {
      command.add_option(
          "--reference", options.reference,
          "Category that the others are compared with: its label, or first or last in "
          "the order of labels; last by default"),
      command.add_option("--max-iterations", options.control.maxIterations,
                         "Most iterations; 100 by default"),
      command.add_flag("--reread", options.control.reread,
                       "Read the rows again at each iteration instead of keeping them in memory")};
}

LogisticCommand::LogisticCommand(CLI::App& app)
    : FitCommand(app, "logistic",
                 "Fit a multinomial logistic regression to the rows of a CSV file") {
  DeclareLogisticOptions(App(), fOptions);
}

std::unique_ptr<RegressionKind> LogisticCommand::Kind() const {
  return std::make_unique<LogisticKind>(fOptions);
}

}  // namespace mcfit
