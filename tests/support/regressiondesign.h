// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/settings/mclogregsettings.h"
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
template <class SettingsType>
class DesignOf {
public:
  DesignOf(int dependent, const std::vector<FactorAt>& factors, const std::vector<int>& covariates)
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
  DesignOf&& Effect(const std::vector<int>& factors, const std::vector<int>& covariates = {}) && {
    return std::move(*this).Add(factors, covariates, false);
  }

  /// Each factor nested in those after it: the last named is added first.
  DesignOf&& Nested(const std::vector<int>& factors) && {
    return std::move(*this).Add({factors.rbegin(), factors.rend()}, {}, true);
  }

  DesignOf&& NoIntercept() && {
    fSettings.SetInterceptUse(false);
    return std::move(*this);
  }

  DesignOf&& FrequencyWeight(int position) && {
    fSettings.SetFrequencyWeightVar(position);
    return std::move(*this);
  }

  DesignOf&& RegressionWeight(int position) && {
    fSettings.SetRegrWeightVar(position);
    return std::move(*this);
  }

  DesignOf&& CancelledBy(MCQueryCancel& query) && {
    fSettings.SetCancelPointer(&query);
    return std::move(*this);
  }

  /// Of a logistic design: categories of the dependent, and the one asked for as reference.
  DesignOf&& Categories(int nCategories, int reference = -1) && {
    fSettings.SetDependentRefCat(reference, nCategories);
    return std::move(*this);
  }

  /// Of a logistic design: rows are read again at each iteration.
  DesignOf&& Rereading(bool rereading = true) && {
    fSettings.SetUsePatternTabulator(!rereading);
    return std::move(*this);
  }

  SettingsType& Settings() { return fSettings; }

private:
  DesignOf&& Add(const std::vector<int>& factors, const std::vector<int>& covariates,
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
  SettingsType fSettings;
};

using RegressionDesign = DesignOf<MCRegSettings>;
using LogisticDesign = DesignOf<MCLogRegSettings>;

}  // namespace mctest
