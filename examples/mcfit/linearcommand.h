// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitcommand.h"

namespace mcfit {

/// `mcfit linear`: fits a linear regression.
class LinearCommand : public FitCommand {
public:
  explicit LinearCommand(CLI::App& app);

protected:
  std::unique_ptr<RegressionKind> Kind() const override;
};

}  // namespace mcfit
