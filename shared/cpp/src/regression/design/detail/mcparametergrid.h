// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/design/detail/mccellgrid.h"

namespace MCCommon {
namespace detail {

/// Beside the hash table of one effect: a place points at the parameter in the table, so that the
/// two can't disagree, and is null for a combination that isn't in it.
class MCParameterGrid : public MCCellGrid<const int*> {
public:
  using MCCellGrid<const int*>::MCCellGrid;
};

}  // namespace detail
}  // namespace MCCommon
