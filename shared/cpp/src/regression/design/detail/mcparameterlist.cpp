// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcparameterlist.h"

#include <cstddef>
#include <cstdint>

namespace MCCommon {
namespace detail {

namespace {

void ListEffect(const MCFactorTables& tables, int tableEffect, MCRegrParameter& parameter,
                MCParameterList& list) {
  const int n = tables.GetNEffectParameters(tableEffect);
  list.fFirstParamIndices.push_back(static_cast<int>(list.fParameters.size()));
  list.fNEffectParams.push_back(n);
  if (n == 1 && parameter.GetNFactors() == 0) {
    list.fParameters.push_back(parameter);
    return;
  }
  for (int i = 0; i < n; ++i) {
    tables.GetParameterFactorValues(parameter.GetCategories(), tableEffect, i);
    list.fParameters.push_back(parameter);
  }
}

std::int64_t CountNumbered(const MCFactorTables& tables) {
  std::int64_t numbered = 0;
  for (int e = 0; e < tables.GetNModelEffects(); ++e) numbered += tables.GetNEffectParameters(e);
  return numbered;
}

}  // namespace

bool ListParameters(bool useIntercept, const std::vector<MCModelEffect>& effects,
                    const MCFactorTables& tables, const MCCancelInfo& cancelInfo,
                    int targetCategory, MCParameterList& list) {
  MCRegrParameter blank;
  blank.SetTargetCategory(targetCategory);
  const bool intercept = useIntercept && !cancelInfo.WillCancel();
  if (intercept) list.fParameters.push_back(blank);
  const int shift = intercept ? 1 : 0;
  for (std::size_t e = 0; e < effects.size() && !cancelInfo.WillCancel(); ++e) {
    const int effect = static_cast<int>(e);
    MCRegrParameter parameter(blank);
    parameter.SetupFromEffect(effects[e], effect, 0);
    ListEffect(tables, effect + shift, parameter, list);
  }
  // Without the intercept that they count, all effects are out of step with the tables.
  return intercept == useIntercept &&
         static_cast<std::int64_t>(list.fParameters.size()) >= CountNumbered(tables);
}

bool FindEffectParams(bool intercept, const std::vector<int>& firstParamIndices,
                      const std::vector<int>& nEffectParams, int effect, int& first, int& count) {
  if (intercept && effect == 0) {
    first = 0;
    count = 1;
    return true;
  }
  const std::int64_t index = std::int64_t{effect} - (intercept ? 1 : 0);
  if (index < 0 || index >= static_cast<std::int64_t>(firstParamIndices.size())) return false;
  first = firstParamIndices[static_cast<std::size_t>(index)];
  count = nEffectParams[static_cast<std::size_t>(index)];
  return true;
}

}  // namespace detail
}  // namespace MCCommon
