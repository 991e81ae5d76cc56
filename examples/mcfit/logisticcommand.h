// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitcommand.h"

#include <vector>

namespace mcfit {

/// Declares the options of logistic regressions to the parser and answers them. Both arguments must
/// outlive the parsing.
std::vector<CLI::Option*> DeclareLogisticOptions(CLI::App& command, LogisticOptions& options);

/// `mcfit logistic`: fits a multinomial logistic regression.
class LogisticCommand : public FitCommand {
public:
  explicit LogisticCommand(CLI::App& app);

protected:
  std::unique_ptr<RegressionKind> Kind() const override;

private:
  LogisticOptions fOptions;
};

}  // namespace mcfit
