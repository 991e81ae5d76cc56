// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitcommand.h"

namespace mcfit {

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
