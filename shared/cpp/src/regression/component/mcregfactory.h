// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/interface/imcregcomponent.h"
#include "regression/settings/mcregsettings.h"

/// Makes the component that fits what the settings describe.
class MC_EXPORT MCRegFactory {
public:
  /// A new component of the kind that `settings.GetModelType()` names, with a copy of the
  /// settings: MCGLMComponent or MCLogComponent. The caller owns it and deletes it. Null if the
  /// settings are invalid, with the reason (301 or 302) in GetStatus(); null with an OK status if
  /// there is no component of that kind, or for settings that call themselves logistic and aren't
  /// MCLogRegSettings. Memory exhaustion, which a variable of very many categories may mean, is
  /// thrown as std::bad_alloc.
  IMCRegComponent* CreateRegAlgorithm(MCRegSettings& settings);

  /// Result of the last creation; OK before the first.
  MCCommon::MCStatus GetStatus() const { return fStatus; }

private:
  MCCommon::MCStatus fStatus;
};
