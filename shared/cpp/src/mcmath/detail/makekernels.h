// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/detail/crossproductkernel.h"
#include "mcmath/detail/eigenkernels.h"
#include "mcmath/detail/multinomiallanes.h"
#include "mcmath/detail/rowkernels.h"
#include "mcmath/detail/tilekernels.h"
#include "mcmath/detail/vectorkernels.h"

namespace {

/// The kernels for vectors of W doubles.
template <std::size_t W>
constexpr MCCommonMath::detail::VectorKernels MakeKernels() {
  return {TileShape<W>::kColumns,
          StageRow<W>,
          FoldBlock<W>,
          AddOuter<W>,
          DotRows<W>,
          MultinomialRows<W>,
          Predictors<W>,
          LoadColumns<W>,
          FillPanels<W>,
          TileShape<W>::kRows,
          FoldBands<W>,
          AddScaledRows<W>,
          UpdateBands<W>,
          kPanelVectors * W,
          RotateRows<W>,
          ReflectRows<W>};
}

}  // namespace
