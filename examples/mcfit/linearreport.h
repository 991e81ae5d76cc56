// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "linearmodel.h"

#include <optional>
#include <string>

namespace mcfit {

/// Figures of a fit that the library leaves to its host. A figure without a value isn't defined.
struct LinearFit {
  explicit LinearFit(const IMCRegOutputStats& results);

  /// Standard error of a parameter that isn't redundant: the square root of its diagonal element
  /// of the covariance matrix times the residual variance.
  std::optional<double> StandardError(const IMCRegOutputStats& results, int parameter) const;

  int rank = 0;                            ///< parameters that aren't redundant
  double frequency = 0.0;                  ///< sum of the frequency weights: the number of cases
  double squaredSum = 0.0;                 ///< weighted sum of the squared residuals
  double freedom = 0.0;                    ///< residual degrees of freedom: frequency - rank
  std::optional<double> residualVariance;  ///< squaredSum / freedom
  std::optional<double> rmse;              ///< square root of squaredSum / frequency
  std::optional<double> rSquare;
};

/// The whole report on a fit: rows, the table of parameters, the tests of effects, the figures of
/// fit.
std::string LinearReport(const LinearModel& model, const ReportStyle& style);

}  // namespace mcfit
