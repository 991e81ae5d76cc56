// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "classification.h"
#include "fittedmodel.h"
#include "iterationhistory.h"
#include "regression/logistic/mcconvergence.h"

#include <memory>
#include <string>
#include <vector>

namespace mcfit {

/// How a logistic fit is to be carried out.
struct LogisticControl {
  int maxIterations = 100;
  bool reread = false;  ///< read the rows again at each iteration and keep nothing in memory
};

/// A multinomial logistic regression fitted by the library. The categories of its dependent have
/// the codes of Dataset::OrderCategories(), with which both ways of keeping rows agree: where rows
/// are read again, the library takes codes for places in its list of categories.
class LogisticModel : public FittedModel {
public:
  /// Fits the model to the rows of the data, whose categories are in order with this code of the
  /// reference. Throws ModelError if the library answers an error, and Interrupted if the user
  /// stopped it. `data` and `progress` are borrowed for as long as the model lives.
  LogisticModel(Dataset& data, int reference, const ModelDesign& design,
                const LogisticControl& control, std::unique_ptr<IterationHistory> history,
                ProgressLine& progress);

  const LogisticControl& Control() const { return fControl; }

  /// How the estimation ended.
  const MCConvergence& Convergence() const { return fConvergence; }

  /// The label of a category.
  const std::string& Category(int code) const {
    return Data().LabelsAt(Layout().Position(Role::kDependent)).Label(code);
  }

  /// The library has the table only where it is asked for; a host makes it from scores.
  const Classification& Classified() const { return fClassification; }

  std::vector<std::string> Warnings() const override;
  PmmlTerms InPmml() const override;
  std::string Report(const ReportStyle& style) const override;

  /// The label of the predicted category, then the probability of each category by its code.
  bool Score(const MCCommon::Record& record, std::vector<std::string>& cells) const override;

protected:
  std::string Advice(const MCCommon::MCStatus& status) const override;

private:
  int Predict(const MCCommon::Record& record, std::vector<double>& probabilities) const;
  void Classify(ProgressLine& progress);

  LogisticControl fControl;
  MCConvergence fConvergence;
  Classification fClassification;
};

}  // namespace mcfit
