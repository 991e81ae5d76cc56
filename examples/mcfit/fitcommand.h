// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "fitrequest.h"
#include "regressionkind.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>

namespace mcfit {

/// Declares the options that say where a fit puts what it finds: `--predict`, `--out`, `--pmml`.
/// Both arguments must outlive the parsing.
void DeclareResultOptions(CLI::App& command, FitRequest& request);

/// A subcommand that takes a regression from the command line. Here stand the options of all
/// kinds; a kind adds its own.
class FitCommand : public Command {
public:
  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

protected:
  /// Declares the subcommand and the options of every fit to the parser, which must outlive this
  /// object.
  FitCommand(CLI::App& app, const char* name, const char* description);

  /// The subcommand, for further options.
  CLI::App& App() { return *fpApp; }

  /// The kind of regression with its options.
  virtual std::unique_ptr<RegressionKind> Kind() const = 0;

private:
  void DeclareModelOptions();
  void DeclareOtherOptions();
  FitRequest Request() const;

  CLI::App* fpApp;
  FitRequest fRequest;  // what needs no parsing
  std::string fFactors;
  std::string fCovariates;
  std::optional<std::string> fEffects;
  std::string fMissing;
  bool fbNoIntercept = false;
};

}  // namespace mcfit
