// SPDX-License-Identifier: Apache-2.0
// Names every operation on redundancy, and every solver beside it, with its exact type: one that is
// missing or has another type doesn't compile.
#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"

#include <gtest/gtest.h>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using Rect = MCRectMatrix;
using Sym = MCSymMatrix;
using Other = const MCRectMatrix&;
using Bits = const MCBitSet&;
using Vector = const std::vector<double>&;
using Result = std::vector<double>&;
using Indices = std::vector<int>&;

[[maybe_unused]] void Surface() {
  [[maybe_unused]] int (Rect::*find)(double, MCBitSet&, bool) const = &Rect::FindRedundancies;
  [[maybe_unused]] int (Rect::*indices)(double, Indices, bool) const = &Rect::FindNonRedunIndices;
  [[maybe_unused]] int (Rect::*fullRank)(double, Rect&, Indices, bool) const =
      &Rect::ExtractFullRank;
  [[maybe_unused]] bool (Rect::*extract[])(const std::vector<int>&, Rect&)
      const = {&Rect::ExtractRows, &Rect::ExtractColumns};
  [[maybe_unused]] bool (Rect::*residuals)(Other, double, MCBitSet&, MCBitSet&) =
      &Rect::ResidOfOrthProjection;
  [[maybe_unused]] bool (Rect::*estimable)(Other, Bits, double) const = &Rect::IsEstimable;
  [[maybe_unused]] int (Rect::*added)(Other, double, double, MCBitSet&) const =
      &Rect::CheckAddColRedundancies;
  [[maybe_unused]] bool (Rect::*solve)(Vector, Result, double) const = &Rect::SolveLinearSquare;
  [[maybe_unused]] int (Rect::*estimate)(Vector, Result, double, double) const =
      &Rect::EstimateLinearGI;
  [[maybe_unused]] bool (Sym::*indefinite)(double, Vector, Result) const = &Sym::SolveIndefinite;
  [[maybe_unused]] bool (Sym::*indefiniteRows)(Bits, Vector, Result) const = &Sym::SolveIndefinite;
}

TEST(SurfaceRedundancy, OperationsAreReachableThroughTheSharedLibrary) {
  Surface();
}
}  // namespace
