// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/columnoperations.h"

#include <utility>

namespace MCCommonMath {
namespace detail {

/// The columns, from 0, that pivoting is free to choose from: first to end - 1.
struct FreeColumns {
  Index first;
  Index end;

  bool Contains(Index j) const { return first <= j && j < end; }
};

/// Moves the columns marked initial (jpvt > 0) to the front and those marked final (jpvt < 0) to
/// the end, by exchange(i, j) of columns i < j, and makes of the p marks the order, from 1.
template <class ExchangeColumns>
FreeColumns ArrangeColumns(int* jpvt, Index p, const ExchangeColumns& exchange) {
  FreeColumns free{0, p};
  for (Index j = 0; j < p; ++j) {
    const int mark = jpvt[j];
    const int column = static_cast<int>(j + 1);
    jpvt[j] = mark < 0 ? -column : column;
    if (mark <= 0) continue;
    if (j != free.first) exchange(free.first, j);
    std::swap(jpvt[free.first], jpvt[j]);
    ++free.first;
  }
  for (Index j = p - 1; j >= free.first; --j) {
    if (jpvt[j] > 0) continue;
    jpvt[j] = -jpvt[j];
    --free.end;
    if (j != free.end) exchange(j, free.end);
    std::swap(jpvt[j], jpvt[free.end]);
  }
  return free;
}

}  // namespace detail
}  // namespace MCCommonMath
