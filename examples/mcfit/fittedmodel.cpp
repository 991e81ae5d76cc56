// SPDX-License-Identifier: Apache-2.0
#include "fittedmodel.h"

#include "errors.h"
#include "inference.h"
#include "recordsources.h"
#include "regression/component/mcregfactory.h"
#include "regression/frame/binaryrecorditerator.h"
#include "statustext.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

namespace {

/// The rows of a data set as the library is to see them, from the first one on.
class FinalRows {
public:
  explicit FinalRows(Dataset& data)
      : fFile(data.Rows().Rewind(), data.Layout().Width()),
        fRecoded(fFile, data.Layout().LabelledPositions(), data.FinalCodes()) {}

  MCCommon::MultiPassRecordIter& Rows() { return fRecoded; }

  /// Throws InputError if the rows ended because they could not be read.
  void Check() const {
    if (fFile.GetFailReason() == MCCommon::BinaryRecordIterator::kReadFailure) {
      throw InputError("the temporary row file could not be read back");
    }
  }

private:
  MCCommon::BinaryRecordIterator fFile;
  RecodedRows fRecoded;
};

}  // namespace

void FittedModel::Describe(MCRegSettings& settings) const {
  const RecordLayout& layout = Layout();
  settings.SetDependent(layout.Position(Role::kDependent));
  for (const int position : layout.Positions(Role::kFactor)) {
    // A factor that is missing in all rows has no labels; there must be room for one.
    settings.AddFactor(position, std::max(1, fData.LabelsAt(position).Size()));
  }
  for (const int position : layout.Positions(Role::kCovariate)) settings.AddCovariate(position);
  const int frequency = layout.Position(Role::kFrequency);
  if (frequency >= 0) settings.SetFrequencyWeightVar(frequency);
  const int weight = layout.Position(Role::kWeight);
  if (weight >= 0) settings.SetRegrWeightVar(weight);
  for (const MCModelEffect& effect : fDesign.effects) settings.AddModelEffect(effect);
  settings.SetInterceptUse(fDesign.hasIntercept);
  settings.SetTolerance(fDesign.tolerance);
}

void FittedModel::Build(MCRegSettings& settings, std::unique_ptr<InterruptQuery> interrupt,
                        int passes, ProgressLine& progress) {
  fpInterrupt = std::move(interrupt);
  settings.SetCancelPointer(fpInterrupt.get());
  MCRegFactory factory;
  fpComponent.reset(factory.CreateRegAlgorithm(settings));
  Check(factory.GetStatus());
  if (!fpComponent) throw ModelError("the library has no regression of this kind");

  FinalRows rows(fData);
  WatchedRows watched(rows.Rows(), progress, "fitting", fData.Counts().read, passes);
  const MCCommon::MCStatus status = fpComponent->BuildModel(watched);
  progress.Erase();
  // A cancel shows under several codes, of missing data among them, or under none.
  StopIfInterrupted();
  rows.Check();
  Check(status);
  Check(fpComponent->GetOutputStats(fpResults));
  fCondition = ConditionIndex(*fpResults);
}

void FittedModel::VisitUsedRows(const char* work, ProgressLine& progress,
                                const std::function<void(const MCCommon::Record&)>& visit) const {
  FinalRows rows(fData);
  WatchedRows watched(rows.Rows(), progress, work, fData.Counts().read, 1);
  const MCRegRecordValidator& validator = fpResults->GetRecordValidator();
  MCCommon::MCStatus status;
  while (watched.HasMore()) {
    StopIfInterrupted();
    const MCCommon::Record* record = watched.Next();
    if (record != nullptr && validator.IsValidRecord(*record, status)) visit(*record);
  }
  progress.Erase();
  rows.Check();
}

void FittedModel::Check(const MCCommon::MCStatus& status) const {
  if (!status.IsError()) return;
  if (status.GetErrorCode() == MCCommon::MCS_CANCELLED) throw Interrupted();
  std::string text = StatusText(status, Layout()) + Advice(status);
  if (status.GetErrorCode() == MCCommon::MCS_NO_DATA) {
    text += "\n" + DroppedRowsText(fData.Counts(), Layout());
  }
  throw ModelError(text);
}

std::string FittedModel::Advice(const MCCommon::MCStatus& /*status*/) const {
  return {};
}

std::vector<std::string> FittedModel::LibraryWarnings() const {
  std::vector<std::string> texts;
  for (const MCCommon::MCStatus& warning : fpComponent->GetWarnings()) {
    texts.push_back(StatusText(warning, Layout()));
  }
  return texts;
}

std::string FittedModel::ConditionWarning() const {
  if (!fCondition || *fCondition <= kHighCondition) return {};
  return fmt::format(
      "warning: the columns of the design are nearly collinear: their condition index is {:.4g}, "
      "above {:g}; standard errors are large and estimates hang on each other: centre and scale "
      "covariates, or leave some out",
      *fCondition, kHighCondition);
}

std::vector<std::string> FittedModel::Warnings() const {
  std::vector<std::string> texts = LibraryWarnings();
  if (const std::string warning = ConditionWarning(); !warning.empty()) texts.push_back(warning);
  return texts;
}

}  // namespace mcfit
