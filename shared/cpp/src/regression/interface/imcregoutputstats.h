// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcfactorcounts.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/design/mcregrparameter.h"
#include "regression/design/mcregrparameterstats.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/record.h"

#include <vector>

/// What a host reads after a build: parameters, estimates, their covariance and fit statistics.
/// An object of this kind is made by IMCRegComponent::GetOutputStats(), belongs to the component
/// and dies with it, as does all that it hands out. "Parameter" means a column of the design;
/// every list below that goes by parameter has the order of GetParameters().
class MC_EXPORT IMCRegOutputStats {
public:
  virtual ~IMCRegOutputStats() = default;

  /// MCConst::MC_MODEL_LINEAR or MCConst::MC_MODEL_LOGISTIC.
  virtual int GetModelType() const = 0;

  /// Counts of the factors' categories over the rows that entered the fit.
  virtual const MCFactorCounts* GetFactorCounts() const = 0;

  /// Means of the settings' covariates over those rows, weighted by frequency weight times
  /// regression weight. A linear model appends the mean of the dependent.
  virtual const std::vector<double>* GetMeanValues() const = 0;

  /// One coefficient per parameter, 0.0 for a redundant one.
  virtual const std::vector<double>* GetParamEstimates() const = 0;

  /// The parameters: the intercept first if there is one, then those of each model effect.
  virtual const std::vector<MCRegrParameter>* GetParameters() const = 0;

  /// Sum of the frequency weights, and of frequency weight times regression weight, of the rows
  /// that entered the fit; a weight that the settings don't name counts as 1.
  virtual double GetTotalFreqWeight() const = 0;
  virtual double GetTotalRegrWeight() const = 0;

  /// The settings' degrees of freedom if those are above 0; otherwise GetTotalRegrWeight() less
  /// the number of all parameters, redundant ones included.
  virtual double GetNDegFreedom() const = 0;

  /// One fit statistic; the missing value for one of another kind of model, or an unknown one.
  virtual double GetModelFitStat(MCConst::MCModelFitStat stat) const = 0;

  /// Covariance of the estimates, one row per parameter, rows and columns of redundant parameters
  /// 0.0; of a linear model before it is multiplied by the variance of the errors. Null if there
  /// is none.
  virtual const MCCommonMath::MCSymMatrix* GetCovarianceMatrix() const = 0;

  /// One record per parameter, of which number, estimate, redundancy and effect are filled.
  virtual const std::vector<MCRegrParameterStats>& GetParamStats() const = 0;

  /// One bit per parameter, set if the parameter is *not* redundant.
  virtual const MCCommonMath::MCBitSet& GetRedundancyIndicators() const = 0;

  /// The test that decides which records entered the fit and which can be scored.
  virtual const MCRegRecordValidator& GetRecordValidator() const = 0;

  /// Sets `row` to the design row of a record, one entry per parameter. The record needs neither
  /// dependent nor weights. False with `row` unchanged if the record can't be scored; false with
  /// the columns of the other effects filled if a combination of factor levels was not seen in
  /// the fit.
  virtual bool ExpandRow(const MCCommon::Record& record, std::vector<double>& row) const = 0;

  /// Cancels the component, for good.
  virtual void Cancel() = 0;

  /// Writes the results to the display stream.
  virtual void Display() const = 0;
};
