// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/settings/mcmodeleffect.h"

#include <vector>

namespace MCCommon {
namespace detail {

/// The parameters of a design in the order of its columns: the intercept, if there is one,
/// and then effect after effect those that the tables have numbered.
struct MCParameterList {
  std::vector<MCRegrParameter> fParameters;

  /// Per model effect, not counting the intercept, its first parameter and the number of its
  /// parameters.
  std::vector<int> fFirstParamIndices;
  std::vector<int> fNEffectParams;
};

/// Fills the list, whose vectors are empty, with parameters of the target category given. The
/// tables have numbered all effects, the intercept being their first. False if a cancel, which is
/// asked for before the intercept and before each effect, cut the list short: a row would then
/// select parameters that aren't there, should the query change its mind.
bool ListParameters(bool useIntercept, const std::vector<MCModelEffect>& effects,
                    const MCFactorTables& tables, const MCCancelInfo& cancelInfo,
                    int targetCategory, MCParameterList& list);

/// First parameter and number of parameters of an effect, where the intercept, if there is one, is
/// effect 0. False, with both unchanged, for an effect out of range.
bool FindEffectParams(bool intercept, const std::vector<int>& firstParamIndices,
                      const std::vector<int>& nEffectParams, int effect, int& first, int& count);

}  // namespace detail
}  // namespace MCCommon
