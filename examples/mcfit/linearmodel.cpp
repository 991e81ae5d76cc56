// SPDX-License-Identifier: Apache-2.0
#include "linearmodel.h"

#include "errors.h"
#include "recordsources.h"
#include "regression/component/mcregfactory.h"
#include "regression/frame/binaryrecorditerator.h"
#include "regression/frame/mcmv.h"
#include "statustext.h"

#include <algorithm>

namespace mcfit {

namespace {

// The library reads the rows to count categories, to add up cross-products and for residuals.
constexpr int kPassesOfABuild = 3;

}  // namespace

LinearModel::LinearModel(Dataset& data, const LinearDesign& design, ProgressLine& progress)
    : fData(data), fDesign(design) {
  MCRegSettings settings = Settings();
  MCRegFactory factory;
  fpComponent.reset(factory.CreateRegAlgorithm(settings));
  Check(factory.GetStatus());
  if (!fpComponent) throw ModelError("the library has no linear regression");
  Build(progress);
  Check(fpComponent->GetOutputStats(fpResults));
}

MCRegSettings LinearModel::Settings() {
  const RecordLayout& layout = Layout();
  MCRegSettings settings;
  settings.SetDependent(layout.Position(Role::kDependent));
  for (const int position : layout.Positions(Role::kFactor)) {
    const auto factor = static_cast<std::size_t>(layout.FactorNumber(position));
    // A factor that is missing in all rows has no labels; there must be room for one.
    settings.AddFactor(position, std::max(1, fData.Labels()[factor].Size()));
  }
  for (const int position : layout.Positions(Role::kCovariate)) settings.AddCovariate(position);
  const int frequency = layout.Position(Role::kFrequency);
  if (frequency >= 0) settings.SetFrequencyWeightVar(frequency);
  const int weight = layout.Position(Role::kWeight);
  if (weight >= 0) settings.SetRegrWeightVar(weight);
  for (const MCModelEffect& effect : fDesign.effects) settings.AddModelEffect(effect);
  settings.SetInterceptUse(fDesign.hasIntercept);
  settings.SetTolerance(fDesign.tolerance);
  settings.SetCancelPointer(&fInterrupt);
  return settings;
}

void LinearModel::Build(ProgressLine& progress) {
  MCCommon::BinaryRecordIterator file(fData.Rows().Rewind(), Layout().Width());
  RecodedRows recoded(file, Layout().Positions(Role::kFactor), fData.FinalCodes());
  WatchedRows watched(recoded, progress, fData.Counts().read, kPassesOfABuild);
  const MCCommon::MCStatus status = fpComponent->BuildModel(watched);
  progress.Erase();
  if (file.GetFailReason() == MCCommon::BinaryRecordIterator::kReadFailure) {
    throw InputError("the temporary row file could not be read back");
  }
  Check(status);
}

void LinearModel::Check(const MCCommon::MCStatus& status) const {
  if (!status.IsError()) return;
  if (status.GetErrorCode() == MCCommon::MCS_CANCELLED) throw Interrupted();
  std::string text = StatusText(status, Layout());
  if (status.GetErrorCode() == MCCommon::MCS_NO_DATA) {
    text += "\n" + DroppedRowsText(fData.Counts(), Layout());
  }
  throw ModelError(text);
}

std::vector<std::string> LinearModel::Warnings() const {
  std::vector<std::string> texts;
  for (const MCCommon::MCStatus& warning : fpComponent->GetWarnings()) {
    texts.push_back(StatusText(warning, Layout()));
  }
  return texts;
}

std::optional<double> LinearModel::Predict(const MCCommon::Record& record) const {
  double value = MCMV::gMissingValue;
  std::vector<double> unused;
  Check(fpComponent->Score(record, value, unused));
  if (value == MCMV::gMissingValue) return {};
  return value;
}

}  // namespace mcfit
