// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/logistic/mcconvergence.h"
#include "regression/settings/mcregsettings.h"

#include <memory>
#include <vector>

class MCLogAlgorithm;

/// Results of a multinomial logistic regression: pointers into the driver and its model, and the
/// numbers as they were at construction. Parameters come in one block for each category but the
/// reference, in the order of GetDependCategories(); each block has all columns of the design. The
/// covariance matrix is that of the estimates, over all blocks.
class MC_EXPORT MCLogOutputStats : public IMCRegOutputStats {
public:
  /// `algorithm` is borrowed for the life of this object; `settings` for the construction only. It
  /// should be built: otherwise records and indicators keep their defaults and the rest is as the
  /// driver has it. Memory exhaustion is thrown.
  MCLogOutputStats(const MCRegSettings& settings, MCLogAlgorithm& algorithm);
  MCLogOutputStats(const MCLogOutputStats&) = delete;
  MCLogOutputStats& operator=(const MCLogOutputStats&) = delete;
  ~MCLogOutputStats() override;

  int GetModelType() const override;
  const MCFactorCounts* GetFactorCounts() const override;
  const std::vector<double>* GetMeanValues() const override;
  const std::vector<double>* GetParamEstimates() const override;
  const std::vector<MCRegrParameter>* GetParameters() const override;
  double GetTotalFreqWeight() const override;

  /// The same as GetTotalFreqWeight(): regression weights enter the estimates alone.
  double GetTotalRegrWeight() const override;
  double GetNDegFreedom() const override;

  /// MC_FIT_COX_SNELL, MC_FIT_NAGELKERKE or MC_FIT_MCFADDEN, all 0.0 where no iteration ran; the
  /// missing value for any other.
  double GetModelFitStat(MCConst::MCModelFitStat stat) const override;
  const MCCommonMath::MCSymMatrix* GetCovarianceMatrix() const override;
  const std::vector<MCRegrParameterStats>& GetParamStats() const override;
  const MCCommonMath::MCBitSet& GetRedundancyIndicators() const override;
  const MCRegRecordValidator& GetRecordValidator() const override;

  /// As in the interface. The row is as long as GetParameters(), of which the columns of the
  /// design take the first part: the same for each category. The rest is 0.0. False, with `row`
  /// unchanged, for a record that ends before a factor or covariate; false with zeros if a
  /// combination of factor levels was not seen in the fit, or while a cancel is pending.
  bool ExpandRow(const MCCommon::Record& record, std::vector<double>& row) const override;
  void Cancel() override;
  void Display() const override;

  /// Codes of the categories of the dependent that were seen, the reference last.
  const std::vector<int>& GetDependCategories() const;

  /// The design row as one column and value for each model effect; the column counts from 0 within
  /// a block, and is negative with value 0.0 for an effect that has no column at all. False with
  /// the vectors unchanged where the other form is false.
  bool ExpandRow(const MCCommon::Record& record, std::vector<int>& indices,
                 std::vector<double>& values);

  /// How the estimation ended, as MCLogComponent::GetConvergence().
  const MCConvergence& GetConvergence() const;

private:
  class MCLogOutStatsImpl;
  std::unique_ptr<MCLogOutStatsImpl> fpImpl;
};
