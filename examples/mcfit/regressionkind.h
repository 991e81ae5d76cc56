// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"
#include "logisticmodel.h"
#include "optionnames.h"

#include <memory>
#include <string>
#include <vector>

namespace mcfit {

/// A kind of regression with its own options: what the run of a fit needs to know beside a request
/// that looks the same for all kinds.
class RegressionKind {
public:
  virtual ~RegressionKind() = default;

  /// Whether the dependent holds categories and not numbers.
  virtual bool DependentHasLabels() const = 0;

  /// Throws InputError for options that can't be used.
  virtual void CheckOptions(const OptionNames& names) const = 0;

  /// Settles what depends on all rows, before the fit.
  virtual void Prepare(Dataset& data, const OptionNames& names) = 0;

  /// Names of the columns of scores.
  virtual std::vector<std::string> ScoreColumns(const Dataset& data) const = 0;

  /// Fits the model. Arguments are borrowed; the data for as long as the model lives. What is
  /// printed on the way has numbers of `digits` significant digits.
  virtual std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design, int digits,
                                           ProgressLine& progress) const = 0;
};

class LinearKind : public RegressionKind {
public:
  bool DependentHasLabels() const override { return false; }
  void CheckOptions(const OptionNames& /*names*/) const override {}
  void Prepare(Dataset& /*data*/, const OptionNames& /*names*/) override {}
  std::vector<std::string> ScoreColumns(const Dataset& data) const override;
  std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design, int digits,
                                   ProgressLine& progress) const override;
};

/// What a logistic regression is to do beside what all kinds do.
struct LogisticOptions {
  std::string reference = "last";
  LogisticControl control;
};

class LogisticKind : public RegressionKind {
public:
  explicit LogisticKind(LogisticOptions options) : fOptions(std::move(options)) {}

  bool DependentHasLabels() const override { return true; }
  void CheckOptions(const OptionNames& names) const override;
  void Prepare(Dataset& data, const OptionNames& names) override;
  std::vector<std::string> ScoreColumns(const Dataset& data) const override;
  std::unique_ptr<FittedModel> Fit(Dataset& data, const ModelDesign& design, int digits,
                                   ProgressLine& progress) const override;

private:
  LogisticOptions fOptions;
  int fReferenceCode = -1;
};

}  // namespace mcfit
