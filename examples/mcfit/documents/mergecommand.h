// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace mcfit {

/// `mcfit merge`: merges PMML files of models that were built on the parts of a split.
class MergeCommand : public Command {
public:
  explicit MergeCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  CLI::App* fpApp;
  std::string fOut;
  std::vector<std::string> fSplits;
  std::vector<std::string> fFiles;
};

}  // namespace mcfit
