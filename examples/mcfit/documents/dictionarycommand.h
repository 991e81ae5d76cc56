// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"

#include <CLI/CLI.hpp>

#include <string>

namespace mcfit {

/// `mcfit dictionary`: prints the variables and the statistics of a PMML file of any producer.
class DictionaryCommand : public Command {
public:
  explicit DictionaryCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  CLI::App* fpApp;
  std::string fPath;
};

}  // namespace mcfit
