// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/settings/mcregsettings.h"

#include <memory>
#include <vector>

class MCGLMAlgorithm;

/// Results of a linear regression: a snapshot of the driver at construction. The covariance matrix
/// is the inverse of the weighted cross-products X'WX, W being frequency weight times regression
/// weight; multiplied by the variance of the errors it is the covariance of the estimates.
class MC_EXPORT MCGLMOutputStats : public IMCRegOutputStats {
public:
  /// `algorithm` is borrowed for the life of this object, as the row operations, Cancel() and
  /// GetRecordValidator() go through it; `settings` for the construction only. It should be built:
  /// otherwise estimates and indicators are empty and the rest is as the driver has it. Memory
  /// exhaustion is thrown.
  MCGLMOutputStats(const MCRegSettings& settings, MCGLMAlgorithm& algorithm);
  MCGLMOutputStats(const MCGLMOutputStats&) = delete;
  MCGLMOutputStats& operator=(const MCGLMOutputStats&) = delete;
  ~MCGLMOutputStats() override;

  int GetModelType() const override;
  const MCFactorCounts* GetFactorCounts() const override;
  const std::vector<double>* GetMeanValues() const override;
  const std::vector<double>* GetParamEstimates() const override;
  const std::vector<MCRegrParameter>* GetParameters() const override;
  double GetTotalFreqWeight() const override;
  double GetTotalRegrWeight() const override;
  double GetNDegFreedom() const override;

  /// MC_FIT_RMSE or MC_FIT_MULTIPLE_R2; the missing value for any other.
  double GetModelFitStat(MCConst::MCModelFitStat stat) const override;
  const MCCommonMath::MCSymMatrix* GetCovarianceMatrix() const override;
  const std::vector<MCRegrParameterStats>& GetParamStats() const override;
  const MCCommonMath::MCBitSet& GetRedundancyIndicators() const override;
  const MCRegRecordValidator& GetRecordValidator() const override;
  bool ExpandRow(const MCCommon::Record& record, std::vector<double>& row) const override;
  void Cancel() override;
  void Display() const override;

private:
  class MCGLMOutStatsImpl;
  std::unique_ptr<MCGLMOutStatsImpl> fpImpl;
};
