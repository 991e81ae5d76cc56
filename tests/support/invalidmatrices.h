// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/countingallocator.h"

namespace mctest {

/// Matrices that were to have three rows, and three columns, when memory ran out.
inline MCCommonMath::MCSymMatrix InvalidSym() {
  MCCommonMath::MCSymMatrix matrix;
  const FailAllocation fail(1);
  matrix.SetNRows(3);
  return matrix;
}
inline MCCommonMath::MCRectMatrix InvalidRect() {
  MCCommonMath::MCRectMatrix matrix;
  const FailAllocation fail(1);
  matrix.SetNRowsCols(3, 3);
  return matrix;
}

}  // namespace mctest
