// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/settings/mcregsettings.h"

#include <memory>
#include <vector>

namespace mctest {

struct FactorAt {
  int fPosition;
  int fSize;
};

/// Settings told in one expression, with the list of variables that their effects point to:
///
///     RegressionDesign(0, {{1, 2}}, {3}).Effect({1}).Effect({}, {3, 3})   // y = a + x*x
///
/// with y at position 0, factor a of two categories at 1, covariate x at 3.
class RegressionDesign {
public:
  RegressionDesign(int dependent, const std::vector<FactorAt>& factors,
                   const std::vector<int>& covariates)
      : fVariables(std::make_unique<std::vector<int>>()),
        fNFactors(static_cast<int>(factors.size())),
        fNCovariates(static_cast<int>(covariates.size())) {
    fSettings.SetDependent(dependent);
    for (const FactorAt& factor : factors) {
      fSettings.AddFactor(factor.fPosition, factor.fSize);
      fVariables->push_back(factor.fPosition);
    }
    for (const int covariate : covariates) {
      fSettings.AddCovariate(covariate);
      fVariables->push_back(covariate);
    }
  }

  /// A product of factors and covariates, each named as often as its power.
  RegressionDesign&& Effect(const std::vector<int>& factors,
                            const std::vector<int>& covariates = {}) && {
    return std::move(*this).Add(factors, covariates, false);
  }

  /// Each factor nested in those after it: the last named is added first.
  RegressionDesign&& Nested(const std::vector<int>& factors) && {
    return std::move(*this).Add({factors.rbegin(), factors.rend()}, {}, true);
  }

  RegressionDesign&& NoIntercept() && {
    fSettings.SetInterceptUse(false);
    return std::move(*this);
  }

  RegressionDesign&& FrequencyWeight(int position) && {
    fSettings.SetFrequencyWeightVar(position);
    return std::move(*this);
  }

  RegressionDesign&& RegressionWeight(int position) && {
    fSettings.SetRegrWeightVar(position);
    return std::move(*this);
  }

  RegressionDesign&& CancelledBy(MCQueryCancel& query) && {
    fSettings.SetCancelPointer(&query);
    return std::move(*this);
  }

  MCRegSettings& Settings() { return fSettings; }

private:
  RegressionDesign&& Add(const std::vector<int>& factors, const std::vector<int>& covariates,
                         bool nest) && {
    MCModelEffect effect(fNFactors, fNCovariates, fVariables.get());
    for (const int factor : factors) effect.AddNewFactor(factor, nest);
    for (const int covariate : covariates) effect.AddCovariate(covariate);
    fSettings.AddModelEffect(effect);
    return std::move(*this);
  }

  std::unique_ptr<std::vector<int>> fVariables;
  int fNFactors;
  int fNCovariates;
  MCRegSettings fSettings;
};

}  // namespace mctest
