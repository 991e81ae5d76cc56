// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrparameter.h"
#include "regression/settings/mcregsettings.h"
#include "support/makerecord.h"
#include "support/rowsource.h"

#include <vector>

namespace mctest {

/// Tells the tables the settings' effects, the positions whose means they are to keep, and all
/// rows, each of them valid. The rows given to their lookups are records.
inline void TabulateRows(const MCRegSettings& settings, const std::vector<int>& averaged,
                         const Rows& rows, MCFactorTables& tables) {
  if (settings.GetRegrWeightVar() >= 0) tables.SetRegrWeightVar(settings.GetRegrWeightVar());
  std::vector<std::vector<int>> effects;
  if (settings.GetInterceptUse()) effects.emplace_back();
  for (const MCModelEffect& effect : settings.GetModelEffects()) {
    MCRegrParameter parameter;
    parameter.SetupFromEffect(effect, 0, 0);
    effects.push_back(parameter.GetFactors());
  }
  tables.SetModelEffectFactors(effects, settings.GetFactors());
  tables.SetCovariates(averaged);
  for (const std::vector<double>& row : rows) tables.UpdateAll(MakeRecord(row));
}

}  // namespace mctest
