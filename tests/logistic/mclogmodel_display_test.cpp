// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mclogmodel.h"
#include "support/displaycapture.h"
#include "support/logisticmodel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
using mctest::LogisticDesign;
using mctest::LogisticModel;

LogisticDesign Line() {
  return LogisticDesign(0, {}, {1}).Effect({}, {1});
}

TEST(MCLogModelDisplay, OfAFreshModelTellsWhatIsNotThere) {
  LogisticModel model(Line());
  EXPECT_EQ(mctest::DisplayOf(model.fModel), R"(
MCLogModel display start
Covariate pattern offsets: (size = 0)

fPatternCovariateLookup (size = 0)

fPatternFreqOffset = -1
fPatternRegrOffset = -1
fPatternDepOffset = -1
fPatternRowSize = 0
fRowSize = 0
fFactorOffsets (size = 0)

Covariate offsets: (size = 0)

fCovariateLookup (size = 0)

fFreqWeightOffset = -1
fRegrWeightOffset = -1
fDependentOffset = -1
Dependent categories in subpopulation, reference last (size = 0)

fDepCatLocalInds (size = 0)

fDependCatCounts (size = 0)

fDependCatNCases (size = 0)

Total number of model effects = 2
Factor Tables pointer is non-zero = false
XPrimeXMatrix pointer is 0
Records added to matrix = 0
Redundancy indicators for basic parameters
MCBitSet display start
fbVec (size = 0)

MCBitSet display end
Redundancy indicators for all parameters
MCBitSet display start
fbVec (size = 0)

MCBitSet display end
fpHessianGI pointer is 0
fParameters
fBasicParams
fNBasic = 0
fNBasicNonRed = 0
fNNonRed = 0
Vector of basic non-redundant parameter local indices (size = 0)

fParamsCreated = false
fModelBuilt = false
fParamEstimates (size = 0)

fBasicDesignRow (size = 0)

fPredProbs (size = 0)

fTotalWeight = 0
fSampleSize = 0
fNonZeroWeightRows = 0
Vector of first parameter indices (size = 0)

Vector of numbers of parameters for each effect (size = 0)

fpClassificationTable pointer is 0
MCLogModel display end)");
}

TEST(MCLogModelDisplay, ShowsMembersInTheirOrder) {
  LogisticModel model(Line());
  ASSERT_TRUE(model.Estimate({{0, 1}, {1, 2}, {1, 4}}, {1, 2}).IsOK());
  model.fModel.SetTotalWeight(3, 3);
  EXPECT_EQ(mctest::DisplayOf(model.fModel), R"(
MCLogModel display start
Covariate pattern offsets: (size = 1)
 1
fPatternCovariateLookup (size = 3)
 -1 1 -1
fPatternFreqOffset = -1
fPatternRegrOffset = -1
fPatternDepOffset = 0
fPatternRowSize = 3
fRowSize = 3
fFactorOffsets (size = 0)

Covariate offsets: (size = 1)
 1
fCovariateLookup (size = 3)
 -1 1 -1
fFreqWeightOffset = -1
fRegrWeightOffset = -1
fDependentOffset = 0
Dependent categories in subpopulation, reference last (size = 2)
 0 1
fDepCatLocalInds (size = 2)
 0 1
fDependCatCounts (size = 2)
 1 2
fDependCatNCases (size = 2)
 1 2
Total number of model effects = 2
Factor Tables pointer is non-zero = true

XPrimeXMatrix:
MCSymMatrixData display start
The number of rows = 2
The number of blocks = 1
The block size = 2

Lower triangular (number of elements = 3)
(0,0) -1.5 
(1,0) 0.5 (1,1) -0.214286 
MCSymMatrixData display end
Records added to matrix = 3
Redundancy indicators for basic parameters
MCBitSet display start
fbVec (size = 2)
 true true
MCBitSet display end
Redundancy indicators for all parameters
MCBitSet display start
fbVec (size = 2)
 true true
MCBitSet display end

fpHessianGI:
MCSymMatrixData display start
The number of rows = 2
The number of blocks = 1
The block size = 2

Lower triangular (number of elements = 3)
(0,0) 0 
(1,0) 0 (1,1) 0 
MCSymMatrixData display end
fParameters
Begin MCRegrParameter object display.
No factors are present.
No covariates are present.
Index of the effect = -1
Target category = 0
End MCRegrParameter object display.

Begin MCRegrParameter object display.
No factors are present.
Covariates: (size = 1)
 1
Covariate multiplicities: (size = 1)
 1
Index of the effect = 0
Target category = 0
End MCRegrParameter object display.

fBasicParams
Begin MCRegrParameter object display.
No factors are present.
No covariates are present.
Index of the effect = -1
Target category = 0
End MCRegrParameter object display.

Begin MCRegrParameter object display.
No factors are present.
Covariates: (size = 1)
 1
Covariate multiplicities: (size = 1)
 1
Index of the effect = 0
Target category = 0
End MCRegrParameter object display.

fNBasic = 2
fNBasicNonRed = 2
fNNonRed = 2
Vector of basic non-redundant parameter local indices (size = 2)
 0 1
fParamsCreated = true
fModelBuilt = false
fParamEstimates (size = 2)
 1 2
fBasicDesignRow (size = 2)
 0 0
fPredProbs (size = 2)
 0 0
fTotalWeight = 3
fSampleSize = 3
fNonZeroWeightRows = 0
Vector of first parameter indices (size = 1)
 1
Vector of numbers of parameters for each effect (size = 1)
 1

Misclassification matrix
fpClassificationTable:
MCRectMatrix display start
Number of rows = 2
Number of columns = 2

row 0 (size = 2)
 0 0
row 1 (size = 2)
 0 0
MCRectMatrix display end
MCLogModel display end)");
}

}  // namespace
