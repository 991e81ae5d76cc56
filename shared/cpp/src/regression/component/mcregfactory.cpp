// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mcregfactory.h"

#include "regression/component/mcglmcomponent.h"
#include "regression/component/mclogcomponent.h"
#include "regression/frame/mcconst.h"
#include "regression/settings/mclogregsettings.h"

#include <memory>

IMCRegComponent* MCRegFactory::CreateRegAlgorithm(MCRegSettings& settings) {
  fStatus = settings.IsValidSettings();
  if (fStatus.IsError()) return nullptr;
  const int modelType = settings.GetModelType();
  if (modelType == MCConst::MC_MODEL_LINEAR) {
    return std::make_unique<MCGLMComponent>(settings).release();
  }
  const auto* logistic = dynamic_cast<const MCLogRegSettings*>(&settings);
  if (modelType != MCConst::MC_MODEL_LOGISTIC || logistic == nullptr) return nullptr;
  return std::make_unique<MCLogComponent>(*logistic).release();
}
