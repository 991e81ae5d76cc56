// SPDX-License-Identifier: Apache-2.0
#include "fitcommand.h"

#include "fitrun.h"

namespace mcfit {

FitCommand::FitCommand(CLI::App& app, const char* name, const char* description)
    : fpApp(app.add_subcommand(name, description)), fOptions(*fpApp) {
  DeclareResultOptions(*fpApp, fOptions.Plain());
}

void FitCommand::Run() {
  const std::unique_ptr<RegressionKind> kind = Kind();
  RunFit(fOptions.Request(), *kind);
}

}  // namespace mcfit
