// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/interface/imcregcomponent.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/logistic/mcconvergence.h"
#include "regression/settings/mclogregsettings.h"
#include "support/linearproblem.h"
#include "support/logisticproblem.h"

#include <memory>
#include <vector>

namespace mctest {

/// A regression as a host hands it to the library. The settings' effects point into this object,
/// so it must outlive them and every component made from them.
class LibraryFit {
public:
  explicit LibraryFit(const LinearProblem& problem);

  /// A logistic one; rows are tabulated into patterns unless the settings are told otherwise.
  explicit LibraryFit(const LogisticProblem& problem);

  MCRegSettings& Settings() { return *fSettings; }

  /// Of a logistic problem only.
  MCLogRegSettings& LogisticSettings() { return static_cast<MCLogRegSettings&>(*fSettings); }

  /// Makes the component and builds it from the problem's rows, read once for each pass.
  MCCommon::MCStatus Build();

  IMCRegComponent& Component() const { return *fComponent; }

  /// The results of a successful build.
  const IMCRegOutputStats& Results();

  /// How the estimation ended; of a logistic problem only.
  MCConvergence Convergence() const;

private:
  LibraryFit(const LinearProblem& problem, std::unique_ptr<MCRegSettings> settings);

  void AddEffect(const EffectTerms& terms);

  const LinearProblem& fProblem;
  std::vector<int> fVariables;
  std::unique_ptr<MCRegSettings> fSettings;
  std::unique_ptr<IMCRegComponent> fComponent;
};

}  // namespace mctest
