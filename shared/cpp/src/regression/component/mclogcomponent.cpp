// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mclogcomponent.h"

#include "regression/component/detail/displaycomponent.h"
#include "regression/logistic/mclogalgorithm.h"
#include "regression/logistic/mclogoutputstats.h"

using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;

MCLogComponent::MCLogComponent(const MCLogRegSettings& settings)
    : fCompSettings(settings), fStatus(fCompSettings.IsValidSettings()) {
  if (!fStatus.IsError()) fpAlgorithm = std::make_unique<MCLogAlgorithm>(fCompSettings);
}

// The driver goes before the results, whose pointers into it are not looked at any more.
MCLogComponent::~MCLogComponent() {
  fpAlgorithm.reset();
}

int MCLogComponent::GetModelType() const {
  return MCConst::MC_MODEL_LOGISTIC;
}

MCStatus MCLogComponent::CreateParameters(MultiPassRecordIter& source,
                                          std::vector<MCRegrParameter>& parameters) {
  if (!fStatus.IsError()) fStatus = fpAlgorithm->CreateParameters(source, parameters);
  return fStatus;
}

MCStatus MCLogComponent::BuildModel(MultiPassRecordIter& source) {
  MCStatus answer = fStatus;
  if (!fStatus.IsError() && !fpAlgorithm->AreParamsCreated()) {
    std::vector<MCRegrParameter> scratch;
    // A failure here stands in the driver too, which answers it below.
    static_cast<void>(CreateParameters(source, scratch));
  }
  if (!answer.IsError() && IsModelBuilt()) answer = MCStatus(MCCommon::MCS_ALREADY_BUILT, false);
  if (answer.IsError()) return answer;
  answer = fpAlgorithm->BuildModel(source);
  if (!answer.IsOK()) fStatus = answer;
  return answer;
}

bool MCLogComponent::IsModelBuilt() const {
  return !fStatus.IsError() && fpAlgorithm->IsModelBuilt();
}

MCStatus MCLogComponent::GetOutputStats(IMCRegOutputStats*& stats) {
  stats = nullptr;
  if (fStatus.IsError()) return fStatus;
  if (!IsModelBuilt()) return MCStatus(MCCommon::MCS_ALREADY_BUILT, false);
  if (fpOutputStats == nullptr) {
    fpOutputStats = std::make_unique<MCLogOutputStats>(fCompSettings, *fpAlgorithm);
  }
  stats = fpOutputStats.get();
  return fStatus;
}

MCStatus MCLogComponent::Score(const MCCommon::Record& record, double& value,
                               std::vector<double>& probabilities) const {
  if (!IsModelBuilt()) return fStatus;
  int category = -1;
  const MCStatus answer = fpAlgorithm->Score(record, probabilities, category);
  value = category;
  return answer;
}

// Not through the results, too, which the building thread may be about to make: they would only
// cancel the same driver.
void MCLogComponent::Cancel() {
  if (fpAlgorithm != nullptr) fpAlgorithm->Cancel();
}

std::vector<MCStatus> MCLogComponent::GetWarnings() const {
  return fpAlgorithm != nullptr ? fpAlgorithm->GetWarnings() : std::vector<MCStatus>();
}

void MCLogComponent::Display() const {
  MCCommon::detail::DisplayComponent("MCLogComponent", fCompSettings, fpAlgorithm.get(),
                                     fpOutputStats.get());
}

MCConvergence MCLogComponent::GetConvergence() const {
  return fpAlgorithm != nullptr ? fpAlgorithm->GetConvergence() : MCConvergence();
}
