// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "documents/splitmerge.h"
#include "documents/splitrows.h"
#include "fitoptions.h"
#include "regressionkind.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// `mcfit split`: fits one regression for each combination of values of some columns, and merges
/// the models into one document.
class SplitCommand : public Command {
public:
  explicit SplitCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  std::unique_ptr<RegressionKind> Kind() const;
  std::string MergedPath() const;
  void CheckOptions(const FitRequest& request, const std::vector<std::string>& names) const;
  std::string PartPath(const std::vector<std::string>& names, const SplitPart& part) const;
  void CheckPart(const FitRequest& request, const std::vector<std::string>& names,
                 const SplitPart& part) const;
  std::vector<SplitModel> FitParts(const FitRequest& request, const std::vector<std::string>& names,
                                   const SplitRows& rows) const;
  bool FitPart(FitRequest request, const std::string& combination, const SplitPart& part) const;

  CLI::App* fpApp;
  FitOptions fOptions;
  LogisticOptions fLogistic;
  std::vector<CLI::Option*> fvLogisticOptions;
  std::string fKind = "linear";
  std::string fBy;
  std::string fOutDir;
  std::optional<std::string> fMerged;
};

}  // namespace mcfit
