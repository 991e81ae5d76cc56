// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactorcounts.h"
#include "regression/design/mcfactortables.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"

#include <gtest/gtest.h>

namespace {

using mctest::DisplayOf;
using mctest::MakeRecord;

TEST(MCFactorCountsDisplay, ShowsTheCountsOfEveryFactorAndOfTheDependent) {
  MCFactorCounts counts({1, 2}, {2, 1}, 0, 3, 2, 0, -1, 0.5, MCConst::MC_OFFSET_FIXED);
  counts.Update(MakeRecord({2.5, 1, 0, 1}));
  EXPECT_EQ(DisplayOf(counts), R"(
MCFactorCounts display start
Vector of factor indices (size = 2)
 1 2
Vector of factor numbers of categories (size = 2)
 2 1
The number of factors = 2
Index of the weight variable = 0
Index of the dependent categorical variable = 3
Number of categories for dependent variable = 2
fLowestCategory = 0
Factor number (starting from 0) = 0
Vector of weighted case counts for categories of this factor (size = 2)
 0 2.5
Vector of unweighted case counts for categories of this factor (size = 2)
 0 1
Factor number (starting from 0) = 1
Vector of weighted case counts for categories of this factor (size = 1)
 2.5
Vector of unweighted case counts for categories of this factor (size = 1)
 1
Vector of weighted case counts for categories of the dependent variable (size = 2)
 0 2.5
Vector of unweighted case counts for categories of the dependent variable (size = 2)
 0 1
fOffsetVar = -1
fOffsetValue = 0.5
fOffsetType = 2
MCFactorCounts display end)");
}

TEST(MCFactorCountsDisplay, SaysThatThereIsNoDependent) {
  const MCFactorCounts counts({}, {}, -1, -1, 0, 1, 4, 0.0, MCConst::MC_OFFSET_VARIABLE);
  EXPECT_EQ(DisplayOf(counts), R"(
MCFactorCounts display start
Vector of factor indices (size = 0)

Vector of factor numbers of categories (size = 0)

The number of factors = 0
Index of the weight variable = -1
Index of the dependent categorical variable = -1
Number of categories for dependent variable = 0
fLowestCategory = 1
Vector of case counts for categories of the dependent variable undefined
fOffsetVar = 4
fOffsetValue = 0
fOffsetType = 1
MCFactorCounts display end)");
}

class OffsetCounts : public MCFactorCounts {
public:
  OffsetCounts() : MCFactorCounts({}, {}, -1, 0, 1, 0, -1, 2.0, MCConst::MC_OFFSET_FIXED) {
    KeepOffsetSums();
  }
};

TEST(MCFactorCountsDisplay, ShowsTheSumsWithTheOffsetWhereTheyAreKept) {
  OffsetCounts counts;
  counts.Update(MakeRecord({0}));
  EXPECT_NE(DisplayOf(counts).find("\nfDepCountsWithOffset (size = 1)\n (2, 1)\nfOffsetVar"),
            std::string::npos);
}

TEST(MCFactorTablesDisplay, ShowsAllFields) {
  MCFactorTables tables({0, 1}, {2, 2}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetModelEffectFactors({{}, {1, 0}}, {0, 1});
  tables.SetCovariates({2});
  tables.UpdateAll(MakeRecord({1, 0, 0.5}));
  tables.UpdateAll(MakeRecord({0, 0, 1.5}));
  tables.CreateParameterIndices();
  EXPECT_EQ(DisplayOf(tables), R"(
MCFactorTables display start
Vector of factor indices (size = 2)
 0 1
Vector of factor numbers of categories (size = 2)
 2 2
The number of factors = 2
Index of the frequency weight variable = -1
Index of the dependent categorical variable = -1
Number of categories for dependent variable = 0
fLowestCategory = 0
Factor number (starting from 0) = 0
Vector of weighted case counts for categories of this factor (size = 2)
 1 1
Vector of unweighted case counts for categories of this factor (size = 2)
 1 1
Factor number (starting from 0) = 1
Vector of weighted case counts for categories of this factor (size = 2)
 2 0
Vector of unweighted case counts for categories of this factor (size = 2)
 2 0
Vector of case counts for categories of the dependent variable undefined
fOffsetVar = -1
fOffsetValue = 0
fOffsetType = 0
Index of the regression weight variable = -1
fModelEffectFactors (size = 0)

fModelEffectFactors (size = 2)
 1 0
Total number of model effects = 2
Number of model effects containing factors = 1
Concatenated list of factors for fNEffects effects (size = 2)
 1 0
Number of factors in effects ( fNEffects ) (size = 1)
 2
Cumulative number of factors up to effect ( fNEffects+1 ) (size = 2)
 0 2
fHashKeys
	 Key:   0  0
Start of Hashtable.

Bucket 0 :
	 Key:   0  0
	 Value: 1
Bucket 5 :
	 Key:   0  1
	 Value: 2
End of Hashtable.

fHashPairs (size = 2)
 1 2
Vector of local factor indices ( max factor index + 1 ) (size = 2)
 0 1
Factor values ( fNFactors ) (size = 2)
 0 0
Vector of parameter indices ( fNModelEffects ) (size = 2)
 0 0
Vector of local parameter indices ( fNEffects ) (size = 1)
 0
Vector of local effect indices ( fNModelEffects ) (size = 2)
 -1 0
Vector of original model effect indices ( fNEffects ) (size = 1)
 1
Vector of number of parameters for each effect ( fNEffects ) (size = 1)
 2
Vector of parameter offsets for each effect ( fNModelEffects ) (size = 2)
 0 1
Vector of factor indices in the extracted record (size = 2)
 0 1
 Vector of covariate indices in the input record (size = 1)
 2
Number of covariate indices in the input record = 1
Vector of covariate weighted mean (size = 1)
 1
True if covariate means computed = false
Total frequency weighted count = 2
Total regression weighted count = 2
Sample size for all valid records = 2
MCFactorTables display end)");
}

}  // namespace
