// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/mcfactortables.h"
#include "regression/settings/mcregsettings.h"

#include <vector>

namespace MCCommon {
namespace detail {

/// Tells the tables, before the first row, the factors of each effect of the design, the intercept
/// (none) first if it is used, and the record positions of which to keep the means. Factors go to
/// the tables in the order of their nesting, which is that of a parameter's lists.
void PrepareTables(const MCRegSettings& settings, const std::vector<int>& averaged,
                   MCFactorTables& tables);

}  // namespace detail
}  // namespace MCCommon
