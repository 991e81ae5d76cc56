// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "documents/settingsdocument.h"
#include "recordlayout.h"

namespace mcfit {

/// The columns that a settings document names, with their declarations. What a predictor of the
/// parameter "inputs" is, the dictionary tells; "CatPredictors" may name a field of numbers that
/// has bins. Throws InputError unless each name is a field that fits its parameter, has one role,
/// and one is the target.
ModelColumns ReadColumns(SettingsDocument& document);

/// Whether the target is a field of categories.
bool HasCategoricalTarget(const ModelColumns& columns);

}  // namespace mcfit
