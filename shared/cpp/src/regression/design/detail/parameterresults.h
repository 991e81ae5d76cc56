// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "regression/design/mcregrparameter.h"
#include "regression/design/mcregrparameterstats.h"
#include "regression/settings/mcregsettings.h"

#include <cstddef>
#include <vector>

namespace MCCommon {
namespace detail {

/// The settings' degrees of freedom if those are above 0, otherwise the weight less the number of
/// parameters.
double DegreesOfFreedom(const MCRegSettings& settings, double totalWeight, std::size_t nParameters);

/// Fills number, estimate, redundancy and effect of each record, of which there are as many as
/// `indicators` has bits, and sets those bits. `kept` has at least as many bits, set where a
/// parameter is not redundant.
void FillParamStats(const std::vector<double>& estimates,
                    const std::vector<MCRegrParameter>& parameters,
                    const MCCommonMath::MCBitSet& kept, std::vector<MCRegrParameterStats>& stats,
                    MCCommonMath::MCBitSet& indicators);

/// Writes the parameters, each with its results, to the display stream.
void DisplayParameters(const std::vector<MCRegrParameter>& parameters,
                       const std::vector<MCRegrParameterStats>& stats);

}  // namespace detail
}  // namespace MCCommon
