// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "fitoptions.h"
#include "regressionkind.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace mcfit {

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
  CLI::App* fpApp;
  FitOptions fOptions;
};

}  // namespace mcfit
