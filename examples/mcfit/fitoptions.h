// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fitrequest.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

namespace mcfit {

/// The options by which a command line tells the data and the model of a fit, whatever its kind.
class FitOptions {
public:
  /// Declares them to the parser; they must outlive the parsing.
  explicit FitOptions(CLI::App& command);
  FitOptions(const FitOptions&) = delete;
  FitOptions& operator=(const FitOptions&) = delete;

  /// What was asked for. Throws InputError for lists that can't be read.
  FitRequest Request() const;

  /// What other options of the command set directly.
  FitRequest& Plain() { return fRequest; }

private:
  void DeclareModel(CLI::App& command);
  void DeclareOther(CLI::App& command);

  FitRequest fRequest;  // what needs no parsing
  std::string fFactors;
  std::string fCovariates;
  std::optional<std::string> fEffects;
  std::string fMissing;
  bool fbNoIntercept = false;
};

/// Declares the options that say where a fit puts what it finds: `--predict`, `--out`, `--pmml`.
/// Both arguments must outlive the parsing.
void DeclareResultOptions(CLI::App& command, FitRequest& request);

}  // namespace mcfit
