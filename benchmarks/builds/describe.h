// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dataset.h"
#include "regression/settings/mcregsettings.h"

#include <cstddef>
#include <vector>

/// The variables that may stand in effects of a data set.
inline std::vector<int> Variables(const Dataset& dataset) {
  std::vector<int> variables(static_cast<std::size_t>(dataset.NVariables() - 1));
  for (std::size_t i = 0; i < variables.size(); ++i) variables[i] = static_cast<int>(i);
  return variables;
}

/// Describes the regression of a data set: an intercept, the factor effects, then the covariates.
/// `variables` must outlive the settings.
inline void Describe(const Dataset& dataset, const std::vector<int>& variables,
                     MCRegSettings& settings) {
  const int nFactors = dataset.NFactors();
  for (int i = 0; i < nFactors; ++i) {
    settings.AddFactor(i, dataset.factorSizes[static_cast<std::size_t>(i)]);
  }
  for (int i = 0; i < dataset.nCovariates; ++i) settings.AddCovariate(nFactors + i);
  settings.SetDependent(dataset.NVariables() - 1);
  settings.SetInterceptUse(true);
  for (const std::vector<int>& factors : dataset.factorEffects) {
    MCModelEffect effect(nFactors, dataset.nCovariates, &variables);
    for (int factor : factors) effect.AddNewFactor(factor, 0);
    settings.AddModelEffect(effect);
  }
  for (int i = 0; i < dataset.nCovariates; ++i) {
    MCModelEffect effect(nFactors, dataset.nCovariates, &variables);
    effect.AddCovariate(nFactors + i);
    settings.AddModelEffect(effect);
  }
}
