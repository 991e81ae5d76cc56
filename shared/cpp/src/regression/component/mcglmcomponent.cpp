// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mcglmcomponent.h"

#include "regression/component/detail/displaycomponent.h"
#include "regression/linear/mcglmalgorithm.h"
#include "regression/linear/mcglmoutputstats.h"

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;

MCGLMComponent::MCGLMComponent(const MCRegSettings& settings)
    : fCompSettings(settings), fStatus(fCompSettings.IsValidSettings()) {
  if (!fStatus.IsError()) fpAlgorithm = std::make_unique<MCGLMAlgorithm>(fCompSettings);
}

// The driver goes before the results, which don't look at it any more.
MCGLMComponent::~MCGLMComponent() {
  fpAlgorithm.reset();
}

int MCGLMComponent::GetModelType() const {
  return MCConst::MC_MODEL_LINEAR;
}

MCStatus MCGLMComponent::CreateParameters(MultiPassRecordIter& source,
                                          std::vector<MCRegrParameter>& parameters) {
  if (!fStatus.IsError()) fStatus = fpAlgorithm->ProcessData(source);
  if (!fStatus.IsError()) fStatus = fpAlgorithm->CreateParameters(parameters);
  return fStatus;
}

MCStatus MCGLMComponent::BuildModel(MultiPassRecordIter& source) {
  if (!fStatus.IsError() && !fpAlgorithm->AreParamsCreated()) {
    std::vector<MCRegrParameter> scratch;
    static_cast<void>(CreateParameters(source, scratch));  // the answer is in fStatus
  }
  if (!fStatus.IsError() && IsModelBuilt()) {
    fStatus = MCStatus(MCCommon::MCS_ALREADY_BUILT, false);
  }
  if (!fStatus.IsError()) fStatus = fpAlgorithm->BuildModel(source);
  return fStatus;
}

bool MCGLMComponent::IsModelBuilt() const {
  return !fStatus.IsError() && fpAlgorithm->IsModelBuilt();
}

MCStatus MCGLMComponent::GetOutputStats(IMCRegOutputStats*& stats) {
  if (fStatus.IsError()) return fStatus;
  if (!IsModelBuilt()) return MCStatus(MCCommon::MCS_NOT_BUILT, false);
  if (fpOutputStats == nullptr) {
    fpOutputStats = std::make_unique<MCGLMOutputStats>(fCompSettings, *fpAlgorithm);
  }
  stats = fpOutputStats.get();
  return fStatus;
}

MCStatus MCGLMComponent::Score(const MCCommon::Record& record, double& value,
                               std::vector<double>& /*probabilities*/) const {
  return IsModelBuilt() ? fpAlgorithm->Score(record, value) : fStatus;
}

void MCGLMComponent::Cancel() {
  if (fpAlgorithm != nullptr) fpAlgorithm->Cancel();
}

std::vector<MCStatus> MCGLMComponent::GetWarnings() const {
  return fpAlgorithm != nullptr ? fpAlgorithm->GetWarnings() : std::vector<MCStatus>();
}

void MCGLMComponent::Display() const {
  MCCommon::detail::DisplayComponent("MCGLMComponent", fCompSettings, fpAlgorithm.get(),
                                     fpOutputStats.get());
}
