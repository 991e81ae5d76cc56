// SPDX-License-Identifier: Apache-2.0
#include "logisticcommand.h"

#include "errors.h"
#include "logisticreport.h"

#include <fmt/format.h>

namespace mcfit {

LogisticCommand::LogisticCommand(CLI::App& app)
    : FitCommand(app, "logistic",
                 "Fit a multinomial logistic regression to the rows of a CSV file") {
  App().add_option("--reference", fReference,
                   "Category that the others are compared with: its label, or first or last in "
                   "the order of labels; last by default");
  App().add_option("--max-iterations", fControl.maxIterations, "Most iterations; 100 by default");
  App().add_flag("--reread", fControl.reread,
                 "Read the rows again at each iteration instead of keeping them in memory");
}

void LogisticCommand::CheckOptions() const {
  FitCommand::CheckOptions();
  if (fControl.maxIterations < 0) throw InputError("--max-iterations must not be negative");
}

ModelColumns LogisticCommand::Columns() const {
  ModelColumns columns = FitCommand::Columns();
  columns.dependentHasLabels = true;
  return columns;
}

void LogisticCommand::Prepare(Dataset& data) {
  fReferenceCode = data.OrderCategories(fReference);
}

std::vector<std::string> LogisticCommand::ScoreColumns(const Dataset& data) const {
  const LabelTable& labels = data.LabelsAt(data.Layout().Position(Role::kDependent));
  std::vector<std::string> columns = {"predicted"};
  for (int code = 0; code < data.UsedCategories(); ++code) {
    columns.push_back(fmt::format("p({})", labels.Label(code)));
  }
  return columns;
}

std::unique_ptr<FittedModel> LogisticCommand::Fit(Dataset& data, const ModelDesign& design,
                                                  ProgressLine& progress) const {
  auto history = std::make_unique<IterationHistory>(LogisticHead(data, Digits()), Digits(),
                                                    progress, !fControl.reread);
  return std::make_unique<LogisticModel>(data, fReferenceCode, design, fControl, std::move(history),
                                         progress);
}

}  // namespace mcfit
