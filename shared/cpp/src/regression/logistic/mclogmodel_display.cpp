// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mccomponentdisplay.h"
#include "regression/logistic/mclogmodel.h"

using namespace MCComponentDisplay;
using MCCommonMath::MCBitSet;

namespace {

void DisplayBits(const char* label, const MCBitSet& bits) {
  DisplayText(1, label);
  bits.Display();
}

template <class Matrix>
void DisplayMatrix(const char* label, const char* missing, const Matrix* matrix) {
  if (matrix == nullptr) {
    DisplayText(1, missing);
    return;
  }
  DisplayText(2, label);
  matrix->Display();
}

void DisplayParameters(const char* label, const std::vector<MCRegrParameter>& parameters) {
  DisplayText(1, label);
  for (const MCRegrParameter& parameter : parameters) parameter.Display();
}

}  // namespace

void MCLogModel::Display() const {
  DisplayText(1, "MCLogModel display start");
  DisplayLayouts();
  DisplayCategories();
  DisplayDesign();
  DisplayResults();
  DisplayText(1, "MCLogModel display end");
}

void MCLogModel::DisplayLayouts() const {
  DisplayIV("Covariate pattern offsets:", fPatternCovariateOffsets);
  DisplayIV("fPatternCovariateLookup", fPatternCovariateLookup);
  DisplayI("fPatternFreqOffset", fPatternFreqOffset);
  DisplayI("fPatternRegrOffset", fPatternRegrOffset);
  DisplayI("fPatternDepOffset", fPatternDepOffset);
  DisplayI("fPatternRowSize", fPatternRowSize);
  DisplayI("fRowSize", fRowSize);
  DisplayIV("fFactorOffsets", fFactorOffsets);
  DisplayIV("Covariate offsets:", fCovariateOffsets);
  DisplayIV("fCovariateLookup", fCovariateLookup);
  DisplayI("fFreqWeightOffset", fFreqWeightOffset);
  DisplayI("fRegrWeightOffset", fRegrWeightOffset);
  DisplayI("fDependentOffset", fDependentOffset);
}

void MCLogModel::DisplayCategories() const {
  DisplayIV("Dependent categories in subpopulation, reference last", fDependCategories);
  DisplayIV("fDepCatLocalInds", fDepCatLocalInds);
  DisplayDV("fDependCatCounts", fDependCatCounts, false);
  DisplayDV("fDependCatNCases", fDependCatNCases, false);
}

void MCLogModel::DisplayDesign() const {
  DisplayI("Total number of model effects", fNModelEffects);
  DisplayB("Factor Tables pointer is non-zero", fFactorTables != nullptr);
  DisplayMatrix("XPrimeXMatrix:", "XPrimeXMatrix pointer is 0", GetXPrimeX());
  DisplayI("Records added to matrix", fRecordsAdded);
  DisplayBits("Redundancy indicators for basic parameters", fBasicRedundancy);
  DisplayBits("Redundancy indicators for all parameters", fRedundancy);
  DisplayMatrix("fpHessianGI:", "fpHessianGI pointer is 0", fHessianGI.get());
  DisplayParameters("fParameters", fParameters);
  DisplayParameters("fBasicParams", fBasicParams);
  DisplayI("fNBasic", fNBasic);
  DisplayI("fNBasicNonRed", fNBasicNonRed);
  DisplayI("fNNonRed", fNNonRed);
  DisplayIV("Vector of basic non-redundant parameter local indices", fBasicNonRedIndices);
}

void MCLogModel::DisplayResults() const {
  DisplayB("fParamsCreated", fParamsCreated);
  DisplayB("fModelBuilt", fModelBuilt);
  DisplayDV("fParamEstimates", fParamEstimates, false);
  DisplayDV("fBasicDesignRow", fBasicDesignRow, false);
  DisplayDV("fPredProbs", fPredProbs, false);
  DisplayD("fTotalWeight", fTotalWeight);
  DisplayD("fSampleSize", fSampleSize);
  DisplayI("fNonZeroWeightRows", fNonZeroWeightRows);
  DisplayIV("Vector of first parameter indices", fFirstParamIndices);
  DisplayIV("Vector of numbers of parameters for each effect", fNEffectParams);
  DisplayMatrix("Misclassification matrix\nfpClassificationTable:",
                "fpClassificationTable pointer is 0", fClassificationTable.get());
}
