// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"

#include <vector>

/// What one pass over the rows gives an iterative estimator: the log-likelihood, its gradient (the
/// scores) and the Hessian, summed at the current estimates in the order of the rows. A data
/// handler feeds it, the estimator reads it.
class MC_EXPORT IMCAccumStats {
public:
  virtual ~IMCAccumStats() = default;

  /// Begins a new pass. With `checkSeparation` the extremes of the fitted probabilities are kept.
  virtual void Reset(MCConst::MCEstimationMethod method, bool checkSeparation) = 0;

  /// Whether the current estimates are admissible.
  virtual bool CheckConstraints() = 0;

  /// Adds a row, given by its non-zero entries: `values[a]` of the non-redundant basic parameter
  /// `indices[a]`, ascending. `category` counts from 0, the reference last. With `likelihoodOnly`
  /// scores and Hessian are left alone. 0, or -1 if the row is refused, with all sums unchanged.
  virtual int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values,
                           int category, double weight, bool likelihoodOnly) = 0;

  virtual double GetLL() const = 0;

  /// One entry per non-redundant parameter, valid until the next row.
  virtual const std::vector<double>& GetScores() const = 0;

  /// Sets `hessian` to the sum so far, one row per non-redundant parameter.
  virtual void GetHessian(MCCommonMath::MCSymMatrix& hessian) const = 0;

  /// Rows added, rows whose probabilities could not be formed, and the sum of the weights.
  virtual void GetCounts(int& valid, int& invalid, double& weight) const = 0;

  /// Smallest and largest probability of an observed category, and smallest of any category. Only
  /// meaningful for a pass begun with the separation check.
  virtual void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                                      double& minComputed) const = 0;

  /// Half the factor by which a refused step is divided.
  virtual double GetStepAdjustmentFactor() const = 0;

  /// Writes the sums to the display stream, only the log-likelihood if `brief`.
  virtual void Display(bool brief) const = 0;
};
