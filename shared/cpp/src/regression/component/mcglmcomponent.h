// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/interface/imcregcomponent.h"

#include <memory>
#include <vector>

class MCGLMAlgorithm;
class MCGLMOutputStats;

/// A linear regression as a host holds it: a shell around its own copy of the settings, a build
/// driver and, once asked for, the results. Beside what IMCRegComponent says: BuildModel() on a
/// built component stores code 310, so that IsModelBuilt() is false and 310 the answer to
/// everything from then on. The driver refers to the copy of the settings, so a component is
/// neither copied nor moved.
class MC_EXPORT MCGLMComponent : public IMCRegComponent {
public:
  /// Copies the settings. If they are invalid the component holds that error and has no driver.
  explicit MCGLMComponent(const MCRegSettings& settings);
  MCGLMComponent(const MCGLMComponent&) = delete;
  MCGLMComponent& operator=(const MCGLMComponent&) = delete;
  ~MCGLMComponent() override;

  int GetModelType() const override;
  MCCommon::MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                                      std::vector<MCRegrParameter>& parameters) override;
  MCCommon::MCStatus BuildModel(MCCommon::MultiPassRecordIter& source) override;
  bool IsModelBuilt() const override;
  MCCommon::MCStatus GetOutputStats(IMCRegOutputStats*& stats) override;
  const MCRegSettings& GetCompSettings() const override { return fCompSettings; }
  MCCommon::MCStatus Score(const MCCommon::Record& record, double& value,
                           std::vector<double>& probabilities) const override;
  void Cancel() override;
  MCCommon::MCStatus GetStatus() const override { return fStatus; }
  std::vector<MCCommon::MCStatus> GetWarnings() const override;
  void Display() const override;

private:
  MCRegSettings fCompSettings;
  std::unique_ptr<MCGLMAlgorithm> fpAlgorithm;
  std::unique_ptr<MCGLMOutputStats> fpOutputStats;
  MCCommon::MCStatus fStatus;
};
