// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "metadata/mcvarlist.h"
#include "variablelist.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// `mcfit describe`: decides what the columns of a CSV file are, describes them, and keeps what it
/// decided as a list of variables.
class DescribeCommand : public Command {
public:
  explicit DescribeCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  void CheckOptions() const;
  ColumnChoices Choices() const;
  void DescribeData(std::optional<MCCommonMetadata::MCVarList> variables);
  void Save(const MCCommonMetadata::MCVarList& variables);

  CLI::App* fpApp;
  std::optional<std::string> fData;
  std::optional<std::string> fPmml;
  std::optional<std::string> fSave;
  std::optional<std::string> fLoad;
  std::string fCategorical;
  std::string fContinuous;
  std::optional<std::string> fWeight;
  std::vector<std::string> fMissing;
  std::vector<std::string> fBins;
};

}  // namespace mcfit
