// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "mcmath/detail/mcsweeprows.h"
#include "regression/linear/mcglmmodel.h"

#include <algorithm>
#include <cmath>
#include <utility>

using MCCommon::MCStatus;

MCStatus MCGLMModel::BuildModel() {
  if (fStatus.IsError()) return fStatus;
  const bool hasRows = fModelBuilt || (fRecordsAdded > 0 && fZPrimeZ != nullptr);
  if (!hasRows) return Fail(MCCommon::MCS_NOT_PROCESSED);
  if (fModelBuilt) return Fail(MCCommon::MCS_ALREADY_BUILT);
  if (fCancelInfo->WillCancel()) return Fail(MCCommon::MCS_CANCELLED);

  // Room first: where memory runs out the model is as before, and can be built again.
  fParamEstimates.reserve(fParameters.size());
  fpPendingRows->Flush();
  SweepColumns();
  fpPendingRows.reset();
  fpShownMatrix.reset();
  fZPrimeZ->GetRegCoeffs(fParamEstimates, fRedundancy);
  fbFiniteEstimates = std::all_of(fParamEstimates.begin(), fParamEstimates.end(),
                                  [](double estimate) { return std::isfinite(estimate); });
  fZPrimeZ->ZeroOutRedundant(fRedundancy);
  fZPrimeZ->MultiplyByNumber(fUnitWeight);  // the inverse, freed of what the rows came with
  fModelBuilt = true;
  fSumSquaredResiduals = 0.0;
  fSumSquaredTotal = 0.0;
  if (fCancelInfo->WillCancel()) return Fail(MCCommon::MCS_CANCELLED);
  return fStatus;
}

void MCGLMModel::SweepColumns() {
  std::vector<double> scale;
  fZPrimeZ->GetDiagonal(scale);
  MCCommonMath::MCBitSet pivots(GetNParameters() + 1);
  MCCommonMath::detail::SweepRows(*fZPrimeZ, GetNParameters(), fSettings->GetTolerance(), scale,
                                  pivots, [this] { return fCancelInfo->WillCancel(); });
  fRedundancy = std::move(pivots);
}

MCStatus MCGLMModel::FinishErrors() {
  TakeHeldRows();
  const bool hasWeight = fTotalWeight > 0.0;
  if (hasWeight) fRootMeanSquareError = std::sqrt(fSumSquaredResiduals);
  if (fSumSquaredTotal > 0.0) {
    const bool isBetter = fSumSquaredTotal > fSumSquaredResiduals;
    fMultipleRSquare = isBetter ? 1.0 - fSumSquaredResiduals / fSumSquaredTotal : 0.0;
  }
  if (fNonZeroWeightRows == 0 || !hasWeight) return Fail(MCCommon::MCS_NO_WEIGHT);
  return fStatus;
}
