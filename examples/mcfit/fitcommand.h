// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "fittedmodel.h"
#include "recordlayout.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mcfit {

class EffectBuilder;

/// A subcommand that fits a regression to a CSV file, prints its report and may score a second
/// file. Here stands what all kinds share, their options first of all; a kind adds its own and
/// makes the model.
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

  int Digits() const { return fDigits; }

  /// Throws InputError for options that can't be used.
  virtual void CheckOptions() const;

  /// The columns that the options name.
  virtual ModelColumns Columns() const;

  /// Settles what depends on all rows, before the fit.
  virtual void Prepare(Dataset& data);

  /// Names of the columns of scores.
  virtual std::vector<std::string> ScoreColumns(const Dataset& data) const = 0;

  /// Fits the model. Arguments are borrowed; the data for as long as the model lives.
  virtual std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design,
                                           ProgressLine& progress) const = 0;

private:
  void DeclareModelOptions();
  void DeclareOtherOptions();
  void CheckFiles() const;
  ModelDesign Design(const EffectBuilder& builder) const;

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
  std::optional<std::string> fPmml;
  double fTolerance = 1e-12;
  int fDigits = 7;
  bool fbNoIntercept = false;
};

}  // namespace mcfit
