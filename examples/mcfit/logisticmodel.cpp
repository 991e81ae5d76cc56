// SPDX-License-Identifier: Apache-2.0
#include "logisticmodel.h"

#include "convergencetext.h"
#include "logisticreport.h"
#include "regression/logistic/mclogoutputstats.h"
#include "regression/settings/mclogregsettings.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

namespace {

// To tabulate the rows, the library reads them to count categories and once more.
constexpr int kPassesOfATabulation = 2;

}  // namespace

LogisticModel::LogisticModel(Dataset& data, int reference, const ModelDesign& design,
                             const LogisticControl& control,
                             std::unique_ptr<IterationHistory> history, ProgressLine& progress)
    : FittedModel(data, design), fControl(control), fClassification(data.UsedCategories()) {
  MCLogRegSettings settings;
  Describe(settings);
  // A dependent with fewer categories than two is the library's to refuse.
  settings.SetDependentRefCat(
      reference, std::max(2, data.LabelsAt(Layout().Position(Role::kDependent)).Size()));
  settings.SetMaxIterations(control.maxIterations);
  settings.SetUsePatternTabulator(!control.reread);
  settings.SetProgressListener(history.get());
  IterationHistory& printed = *history;
  Build(settings, std::move(history), control.reread ? 0 : kPassesOfATabulation, progress);
  printed.Finish();
  fConvergence = static_cast<const MCLogOutputStats&>(Results()).GetConvergence();
  Classify(progress);
}

void LogisticModel::Classify(ProgressLine& progress) {
  const int dependent = Layout().Position(Role::kDependent);
  const int frequency = Layout().Position(Role::kFrequency);
  std::vector<double> probabilities;
  VisitUsedRows("classifying", progress, [&](const MCCommon::Record& record) {
    fClassification.Add(static_cast<int>(record[dependent]), Predict(record, probabilities),
                        frequency >= 0 ? record[frequency] : 1.0);
  });
}

int LogisticModel::Predict(const MCCommon::Record& record,
                           std::vector<double>& probabilities) const {
  double category = -1.0;
  Check(Component().Score(record, category, probabilities));
  return static_cast<int>(category);
}

PmmlTerms LogisticModel::InPmml() const {
  PmmlTerms terms;
  terms.description = "Multinomial logistic regression";
  terms.modelType = "multinomialLogistic";
  terms.functionName = "classification";
  terms.categories = static_cast<const MCLogOutputStats&>(Results()).GetDependCategories();
  terms.covarianceScale = 1.0;
  return terms;
}

bool LogisticModel::Score(const MCCommon::Record& record, std::vector<std::string>& cells) const {
  std::vector<double> probabilities;
  const int category = Predict(record, probabilities);
  if (category < 0) return false;
  cells = {Category(category)};
  for (const double probability : probabilities) cells.push_back(fmt::format("{}", probability));
  return true;
}

std::vector<std::string> LogisticModel::Warnings() const {
  std::vector<std::string> texts = LibraryWarnings();
  std::string warning = ConvergenceWarning(fConvergence);
  // Where there is no solution, the information says nothing of the columns.
  if (warning.empty()) warning = ConditionWarning();
  if (!warning.empty()) texts.push_back(warning);
  return texts;
}

std::string LogisticModel::Report(const ReportStyle& style) const {
  return LogisticReport(*this, style);
}

std::string LogisticModel::Advice(const MCCommon::MCStatus& status) const {
  const bool isRefusedRow = status.GetErrorCode() == MCCommon::MCS_BAD_STATE ||
                            status.GetErrorCode() == MCCommon::MCS_NOT_READY;
  if (!isRefusedRow || Design().hasIntercept) return {};
  return "\na row without a single column that isn't 0 can't be fitted: use an intercept";
}

}  // namespace mcfit
