// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcrecordextractor.h"

#include "regression/frame/mccomponentdisplay.h"

#include <utility>

MCRecordExtractor::MCRecordExtractor(int dependent, const std::vector<int>& factors,
                                     const std::vector<int>& covariates, int freqWeight,
                                     int regrWeight) {
  SetRecordIndices(dependent, factors, covariates, freqWeight, regrWeight);
}

void MCRecordExtractor::SetRecordIndices(int dependent, const std::vector<int>& factors,
                                         const std::vector<int>& covariates, int freqWeight,
                                         int regrWeight) {
  MCRecordExtractor made;
  made.fDependentOffset = made.Append(dependent);
  for (const int factor : factors) made.fFactorOffsets.push_back(made.Append(factor));
  for (const int covariate : covariates) made.fCovariateOffsets.push_back(made.Append(covariate));
  if (freqWeight >= 0) made.fFreqWeightOffset = made.Append(freqWeight);
  if (regrWeight >= 0) made.fRegrWeightOffset = made.Append(regrWeight);
  *this = std::move(made);
}

void MCRecordExtractor::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCRecordExtractor display start");
  DisplayI("fExtractSize", fExtractSize);
  DisplayIV("fExtract", fExtract);
  DisplayI("fDependentOffset", fDependentOffset);
  DisplayIV("fFactorOffsets", fFactorOffsets);
  DisplayIV("fCovariateOffsets", fCovariateOffsets);
  DisplayI("fFreqWeightOffset", fFreqWeightOffset);
  DisplayI("fRegrWeightOffset", fRegrWeightOffset);
  DisplayText(1, "MCRecordExtractor display end");
}

int MCRecordExtractor::Append(int position) {
  fExtract.push_back(position);
  return fExtractSize++;
}
