// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/interface/imcregcomponent.h"
#include "regression/logistic/mcconvergence.h"
#include "regression/settings/mclogregsettings.h"

#include <memory>
#include <vector>

class MCLogAlgorithm;
class MCLogOutputStats;

/// A multinomial logistic regression as a host holds it: a shell around its own copy of the
/// settings, a build driver and, once asked for, the results. Beside what IMCRegComponent says:
/// what is refused because of the order of calls, that is BuildModel() on a built component and
/// GetOutputStats() before the build, answers 310 and is not stored; a second CreateParameters()
/// answers 306, is stored, and is the end of the component. The driver refers to the copy of the
/// settings, so a component is neither copied nor moved.
///
/// A cancel that falls between two steps of the build raises nothing of its own: BuildModel() may
/// then answer OK, with or without a model. A host that cancels doesn't look at the answer, as
/// Score() answers 1 in any case. And a model without a single column, such as one effect of a
/// factor that isn't one of the settings', answers OK to BuildModel() and isn't built.
class MC_EXPORT MCLogComponent : public IMCRegComponent {
public:
  /// Copies the settings. If they are invalid the component holds that error and has no driver.
  explicit MCLogComponent(const MCLogRegSettings& settings);
  MCLogComponent(const MCLogComponent&) = delete;
  MCLogComponent& operator=(const MCLogComponent&) = delete;
  ~MCLogComponent() override;

  int GetModelType() const override;
  MCCommon::MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                                      std::vector<MCRegrParameter>& parameters) override;
  MCCommon::MCStatus BuildModel(MCCommon::MultiPassRecordIter& source) override;
  bool IsModelBuilt() const override;

  /// Sets `stats` to null where the answer is an error.
  MCCommon::MCStatus GetOutputStats(IMCRegOutputStats*& stats) override;
  const MCLogRegSettings& GetCompSettings() const override { return fCompSettings; }

  /// `value`: the code of the predicted category, -1.0 if there is none, be it that the record
  /// can't be scored or that a combination of its factor levels was not seen in the fit.
  /// `probabilities`: one per category that was seen, the reference last; unchanged unless the
  /// record can be scored, the missing value for a combination that was not seen.
  MCCommon::MCStatus Score(const MCCommon::Record& record, double& value,
                           std::vector<double>& probabilities) const override;
  void Cancel() override;
  MCCommon::MCStatus GetStatus() const override { return fStatus; }
  std::vector<MCCommon::MCStatus> GetWarnings() const override;
  void Display() const override;

  /// How the estimation ended; a fresh MCConvergence before it. To be asked after a build: a build
  /// that didn't converge is no error. No virtual operation, so a host that holds an
  /// IMCRegComponent of model type MC_MODEL_LOGISTIC casts it down.
  MCConvergence GetConvergence() const;

private:
  MCLogRegSettings fCompSettings;
  std::unique_ptr<MCLogAlgorithm> fpAlgorithm;
  std::unique_ptr<MCLogOutputStats> fpOutputStats;
  MCCommon::MCStatus fStatus;
};
