// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/preparetables.h"

#include "regression/design/mcregrparameter.h"

namespace MCCommon {
namespace detail {

void PrepareTables(const MCRegSettings& settings, const std::vector<int>& averaged,
                   MCFactorTables& tables) {
  std::vector<std::vector<int>> effectFactors;
  if (settings.GetInterceptUse()) effectFactors.emplace_back();
  for (const MCModelEffect& effect : settings.GetModelEffects()) {
    MCRegrParameter parameter;
    parameter.SetupFromEffect(effect, 0, 0);
    effectFactors.push_back(parameter.GetFactors());
  }
  tables.SetModelEffectFactors(effectFactors, settings.GetFactors());
  tables.SetCovariates(averaged);
}

}  // namespace detail
}  // namespace MCCommon
