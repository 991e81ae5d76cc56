// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"

#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// Wald test that some parameters are all 0: b' C^-1 b for their estimates b and the covariance C
/// that the library answers. For a linear regression, whose C lacks the variance of the errors,
/// that statistic divided by this variance and by `freedom` is F.
struct WaldTest {
  double statistic = 0.0;
  int freedom = 0;  ///< rank of C: at most the number of parameters, and not 0
};

/// The test of these parameters, redundant ones passed over. None without covariance or without a
/// parameter that can be tested.
std::optional<WaldTest> TestParameters(const IMCRegOutputStats& results,
                                       const std::vector<int>& parameters);

/// The test of all parameters of an effect, those against every category taken together.
struct EffectTest {
  std::string name;
  std::optional<WaldTest> test;
};

/// One test for each effect that has parameters, in the order of the model.
std::vector<EffectTest> TestEffects(const FittedModel& model);

/// The parameters that aren't redundant, without intercepts or with them.
std::vector<int> EstimatedParameters(const IMCRegOutputStats& results, bool withIntercepts);

/// Condition index of the design: the largest singular value of its columns, weighted as in the
/// fit and scaled to length 1, divided by the smallest (Belsley, Kuh and Welsch 1980). That of a
/// logistic regression is of the columns as its information weighs them (Lesaffre and Marx 1993).
/// Redundant columns don't count. Infinity where it is too large to be known. None without
/// covariance, and for more columns than it is worth the time.
std::optional<double> ConditionIndex(const IMCRegOutputStats& results);

/// A condition index from which on standard errors suffer, as Belsley, Kuh and Welsch have it.
inline constexpr double kHighCondition = 30.0;

}  // namespace mcfit
