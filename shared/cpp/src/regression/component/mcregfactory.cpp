// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mcregfactory.h"

#include "regression/component/mcglmcomponent.h"
#include "regression/frame/mcconst.h"

#include <memory>

IMCRegComponent* MCRegFactory::CreateRegAlgorithm(MCRegSettings& settings) {
  fStatus = settings.IsValidSettings();
  if (fStatus.IsError() || settings.GetModelType() != MCConst::MC_MODEL_LINEAR) return nullptr;
  return std::make_unique<MCGLMComponent>(settings).release();
}
