// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "fitrequest.h"

#include <CLI/CLI.hpp>

#include <string>

namespace mcfit {

/// `mcfit build`: fits the regression that a settings document asks for.
class BuildCommand : public Command {
public:
  explicit BuildCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  CLI::App* fpApp;
  std::string fSettings;
  FitRequest fFiles;  // of which the command line tells the files alone
};

}  // namespace mcfit
