// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/parameterresults.h"

#include "regression/frame/mccomponentdisplay.h"

namespace MCCommon {
namespace detail {

double DegreesOfFreedom(const MCRegSettings& settings, double totalWeight,
                        std::size_t nParameters) {
  if (settings.GetDF() > 0.0) return settings.GetDF();
  return totalWeight - static_cast<double>(nParameters);
}

void FillParamStats(const std::vector<double>& estimates,
                    const std::vector<MCRegrParameter>& parameters,
                    const MCCommonMath::MCBitSet& kept, std::vector<MCRegrParameterStats>& stats,
                    MCCommonMath::MCBitSet& indicators) {
  for (int i = 0; i < indicators.Size(); ++i) {
    const auto position = static_cast<std::size_t>(i);
    MCRegrParameterStats& entry = stats[position];
    entry.fIndex = i;
    entry.fEstimate = estimates[position];
    entry.fRedundant = !kept.IsIn(i);
    entry.fEffectIndex = parameters[position].GetEffectIndex();
    indicators.Set(i, kept.IsIn(i));
  }
}

void DisplayParameters(const std::vector<MCRegrParameter>& parameters,
                       const std::vector<MCRegrParameterStats>& stats) {
  using namespace MCComponentDisplay;
  DisplayI("fParameters and fParamStats: total model parameters",
           static_cast<int>(parameters.size()));
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    parameters[i].Display();
    DisplayD("Parameter estimate", stats[i].fEstimate);
    DisplayB("Redundant", stats[i].fRedundant);
  }
}

}  // namespace detail
}  // namespace MCCommon
