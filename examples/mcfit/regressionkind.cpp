// SPDX-License-Identifier: Apache-2.0
#include "regressionkind.h"

#include "errors.h"
#include "linearmodel.h"
#include "logisticreport.h"

#include <fmt/format.h>

namespace mcfit {

std::vector<std::string> LinearKind::ScoreColumns(const Dataset& /*data*/) const {
  return {"predicted"};
}

std::unique_ptr<FittedModel> LinearKind::Fit(Dataset& data, const ModelDesign& design,
                                             int /*digits*/, ProgressLine& progress) const {
  return std::make_unique<LinearModel>(data, design, progress);
}

void LogisticKind::CheckOptions(const OptionNames& names) const {
  if (fOptions.control.maxIterations < 0) {
    throw InputError(names("max-iterations") + " must not be negative");
  }
}

void LogisticKind::Prepare(Dataset& data, const OptionNames& names) {
  fReferenceCode = data.OrderCategories(fOptions.reference, names("reference"));
}

std::vector<std::string> LogisticKind::ScoreColumns(const Dataset& data) const {
  const LabelTable& labels = data.LabelsAt(data.Layout().Position(Role::kDependent));
  std::vector<std::string> columns = {"predicted"};
  for (int code = 0; code < data.UsedCategories(); ++code) {
    columns.push_back(fmt::format("p({})", labels.Label(code)));
  }
  return columns;
}

std::unique_ptr<FittedModel> LogisticKind::Fit(Dataset& data, const ModelDesign& design, int digits,
                                               ProgressLine& progress) const {
  auto history = std::make_unique<IterationHistory>(LogisticHead(data, digits), digits, progress,
                                                    !fOptions.control.reread);
  return std::make_unique<LogisticModel>(data, fReferenceCode, design, fOptions.control,
                                         std::move(history), progress);
}

}  // namespace mcfit
