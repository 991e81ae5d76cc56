// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcparametergrid.h"
#include "regression/design/mcfactortables.h"
#include "regression/frame/mccomponentdisplay.h"

using namespace MCComponentDisplay;

void MCFactorTables::DisplayLocalEffects() const {
  DisplayText(1, "fHashKeys");
  for (const MCCommonMath::MCHashKey& key : fHashKeys) key.Display();
  for (std::size_t l = 0; l < fHashtables.size(); ++l) {
    fHashtables[l]->Display();
    std::vector<int> values;
    for (const auto* pair : fHashPairs[l]) values.push_back(*pair->fValue);
    DisplayIV("fHashPairs", values);
  }
}

void MCFactorTables::Display() const {
  DisplayText(1, "MCFactorTables display start");
  DisplayFields("Index of the frequency weight variable");
  DisplayI("Index of the regression weight variable", fRegrWeightVar);
  for (const std::vector<int>& factors : fModelEffectFactors) {
    DisplayIV("fModelEffectFactors", factors);
  }
  DisplayI("Total number of model effects", fNModelEffects);
  DisplayI("Number of model effects containing factors", fNEffects);
  DisplayIV("Concatenated list of factors for fNEffects effects", fEffectFactors);
  DisplayIV("Number of factors in effects ( fNEffects )", fEffectNFactors);
  DisplayIV("Cumulative number of factors up to effect ( fNEffects+1 )", fEffectCumFactors);
  DisplayLocalEffects();
  DisplayIV("Vector of local factor indices ( max factor index + 1 )", fLocalFactorIndices);
  DisplayIV("Factor values ( fNFactors )", fFactorValues);
  DisplayIV("Vector of parameter indices ( fNModelEffects )", fParameterIndices);
  DisplayIV("Vector of local parameter indices ( fNEffects )", fLocalParamIndices);
  DisplayIV("Vector of local effect indices ( fNModelEffects )", fLocalEffectIndices);
  DisplayIV("Vector of original model effect indices ( fNEffects )", fModelEffectIndices);
  DisplayIV("Vector of number of parameters for each effect ( fNEffects )", fNParameters);
  DisplayIV("Vector of parameter offsets for each effect ( fNModelEffects )", fParameterOffsets);
  DisplayIV("Vector of factor indices in the extracted record", fRowFactorIndices);
  DisplayIV(" Vector of covariate indices in the input record", fCovariateIndices);
  DisplayI("Number of covariate indices in the input record", fNCovariates);
  DisplayDV("Vector of covariate weighted mean", fCovariateMeans, false);
  DisplayB("True if covariate means computed", fMeansComputed);
  DisplayD("Total frequency weighted count", fTotalWeight);
  DisplayD("Total regression weighted count", fTotalRegrWeight);
  DisplayD("Sample size for all valid records", fSampleSize);
  DisplayText(1, "MCFactorTables display end");
}
