// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "linearmodel.h"
#include "recordlayout.h"
#include "rowencoder.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace mcfit {

class EffectBuilder;

/// `mcfit linear`: fits a linear regression, prints its tables and may score a second file.
class LinearCommand : public Command {
public:
  /// Declares the subcommand and its options to the parser, which must outlive this object.
  explicit LinearCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  void DeclareModelOptions();
  void DeclareOtherOptions();
  void CheckOptions() const;
  ModelColumns Columns() const;
  LinearDesign Design(const EffectBuilder& builder) const;

  CLI::App* fpApp;
  std::string fData;
  std::string fDependent;
  std::string fFactors;
  std::string fCovariates;
  std::optional<std::string> fEffects;
  std::optional<std::string> fFrequency;
  std::optional<std::string> fWeight;
  std::string fMissing;
  std::optional<std::string> fPredict;
  std::optional<std::string> fOut;
  double fTolerance = 1e-12;
  int fDigits = 7;
  bool fbNoIntercept = false;
};

}  // namespace mcfit
