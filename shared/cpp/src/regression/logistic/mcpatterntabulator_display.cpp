// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/rolename.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/logistic/mcpatterntabulator.h"

#include <string>

namespace {

void DisplayBorrowed(const std::string& label, const std::vector<int>* values) {
  if (values == nullptr) {
    MCComponentDisplay::DisplayText(1, label + " undefined");
  } else {
    MCComponentDisplay::DisplayIV(label, *values);
  }
}

}  // namespace

void MCPatternTabulator::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCPatternTabulator display start");
  DisplayEffects();
  DisplayVariables();
  if (fpRowPatternTable) {
    DisplayText(1, "fpRowPatternTable in MCPatternTabulator:");
    fpRowPatternTable->Display();
  } else {
    DisplayText(1, "fpRowPatternTable is undefined");
  }
  if (fpKey) {
    DisplayText(1, "fpKey");
    fpKey->Display();
  } else {
    DisplayText(1, "fpKey is undefined");
  }
  DisplayI("fRecordCount", fRecordCount);
  DisplayI("fValidCount", fValidCount);
  DisplayI("fStoredRows", fStoredRows);
  DisplayB("fbFactorTableFilled", fbFactorTableFilled);
  DisplayB("fbRowPatternsCreated", fbRowPatternsCreated);
  DisplayText(1, "fPacker");
  fPacker.Display();
  DisplayText(1, "fValidator");
  fValidator.Display();
  DisplayText(1, "MCPatternTabulator display end");
}

void MCPatternTabulator::DisplayEffects() const {
  using namespace MCComponentDisplay;
  DisplayI("fNFactorEffects", fNFactorEffects);
  DisplayI("fNAllEffects", fNAllEffects);
  DisplayBorrowed("List of original indices for model effects with factors", fModelEffectIndices);
  DisplayBorrowed("Vector of indices for local effects", fLocalEffectIndices);
  DisplayBorrowed("Vector of parameter offsets for model effects", fParameterOffsets);
  DisplayIV("Vector of bounds for regression parameter indices", fBounds);
  DisplayIV("Vector of packed bounds", fPackedBounds);
  DisplayI("fNPackedKey", fNPackedKey);
  DisplayIV("Dependent categories in data, reference last", fDependCategories);
  DisplayIV("Local indices of the dependent categories in consecutive numeration",
            fDepCatLocalInds);
}

void MCPatternTabulator::DisplayVariables() const {
  using namespace MCComponentDisplay;
  DisplayI("fDependVar", fDependVar);
  DisplayText(1, "fVariableType in MCPatternTabulator");
  int position = 0;
  for (const MCConst::MCVariableType role : *fVariableType) {
    DisplayI("  Variable index", position++);
    DisplayText(1,
                std::string("    Type = ") + MCCommon::detail::RoleName(role, "Frequency Weight"));
  }
  DisplayI("fFreqWeightVar", fFreqWeightVar);
  DisplayI("fRegrWeightVar", fRegrWeightVar);
  DisplayI("fFreqWeightOffset", fFreqWeightOffset);
  DisplayI("fRegrWeightOffset", fRegrWeightOffset);
  DisplayI("fNAnalysVars", fNAnalysVars);
  DisplayText(1, "fExtractor");
  fExtractor->Display();
}
