// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/interface/imcregcomponent.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/settings/mcregsettings.h"
#include "support/linearproblem.h"

#include <memory>
#include <vector>

namespace mctest {

/// A linear problem as a host hands it to the library. The settings' effects point into this
/// object, so it must outlive them and every component made from them.
class LibraryFit {
public:
  explicit LibraryFit(const LinearProblem& problem);

  MCRegSettings& Settings() { return fSettings; }

  /// Makes the component and builds it from the problem's rows, read once for each pass.
  MCCommon::MCStatus Build();

  IMCRegComponent& Component() { return *fComponent; }

  /// The results of a successful build.
  const IMCRegOutputStats& Results();

private:
  void AddEffect(const EffectTerms& terms);

  const LinearProblem& fProblem;
  std::vector<int> fVariables;
  MCRegSettings fSettings;
  std::unique_ptr<IMCRegComponent> fComponent;
};

}  // namespace mctest
