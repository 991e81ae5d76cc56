// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcpatterntabulator.h"
#include "support/displaycapture.h"
#include "support/tabulation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using mctest::DisplayOf;
using mctest::TabulatedDesign;
using mctest::Tabulation;
using testing::HasSubstr;
using testing::Not;

TabulatedDesign AllRoles() {
  TabulatedDesign design;
  design.dependent = 1;
  design.factors = {{0, 3}, {5, 2}};
  design.covariates = {2};
  design.freqWeight = 3;
  design.regrWeight = 6;
  design.effects = {{}, {0}, {5}};
  return design;
}

// Whether the text holds these lines, in this order.
void ExpectLines(const std::string& text, const std::vector<std::string>& lines) {
  std::size_t from = 0;
  for (const std::string& line : lines) {
    const std::size_t found = text.find("\n" + line, from);
    EXPECT_NE(found, std::string::npos) << line << "\nin\n" << text;
    if (found != std::string::npos) from = found + 1;
  }
}

TEST(MCPatternTabulatorDisplay, TellsWhatIsAbsent) {
  const Tabulation tabulation(AllRoles());
  const std::string text = DisplayOf(tabulation.fTabulator);
  ExpectLines(text, {"MCPatternTabulator display start", "fNFactorEffects = 0", "fNAllEffects = 0",
                     "List of original indices for model effects with factors undefined",
                     "Vector of indices for local effects undefined",
                     "Vector of parameter offsets for model effects undefined",
                     "fpRowPatternTable is undefined", "fpKey is undefined",
                     "MCPatternTabulator display end"});
  EXPECT_THAT(text, Not(HasSubstr("fpRowPatternTable in MCPatternTabulator:")));
}

TEST(MCPatternTabulatorDisplay, WritesTheRoles) {
  const Tabulation tabulation(AllRoles());
  ExpectLines(DisplayOf(tabulation.fTabulator),
              {"fDependVar = 1",        "fVariableType in MCPatternTabulator",
               "  Variable index = 0",  "    Type = Factor",
               "  Variable index = 1",  "    Type = Dependent",
               "  Variable index = 2",  "    Type = Covariate",
               "  Variable index = 3",  "    Type = Frequency Weight",
               "  Variable index = 4",  "    Type = Unspecified",
               "  Variable index = 5",  "    Type = Factor",
               "  Variable index = 6",  "    Type = Regression Weight",
               "fFreqWeightVar = 3",    "fRegrWeightVar = 6",
               "fFreqWeightOffset = 4", "fRegrWeightOffset = 5",
               "fNAnalysVars = 6"});
}

TEST(MCPatternTabulatorDisplay, WritesThePatterns) {
  Tabulation tabulation(AllRoles());
  ASSERT_TRUE(tabulation.BothPasses({{2, 1, 0.5, 1, 9, 1, 2}, {0, 0, 1.5, 3, 9, 0, 4}}).IsOK());
  ExpectLines(
      DisplayOf(tabulation.fTabulator),
      {"fNFactorEffects = 2",
       "fNAllEffects = 3",
       "List of original indices for model effects with factors (size = 2)\n 1 2",
       "Vector of indices for local effects (size = 3)\n -1 0 1",
       "Vector of parameter offsets for model effects (size = 3)\n 0 1 3",
       "Vector of bounds for regression parameter indices (size = 2)\n 2 2",
       "Vector of packed bounds (size = 1)\n 6",
       "fNPackedKey = 1",
       "Dependent categories in data, reference last (size = 3)\n 0 1 2",
       "Local indices of the dependent categories in consecutive numeration (size = 3)\n 0 1 2",
       "fpRowPatternTable in MCPatternTabulator:",
       "Bucket 0 :",
       "\t Key:   0",
       "fRecordData (size = 6)\n 0 0 0 1.5 3 4",
       "Bucket 9 :",
       "\t Key:   3",
       "fRecordData (size = 6)\n 1 2 1 0.5 1 2",
       "fpKey",
       "\t Key:   0",
       "fRecordCount = 2",
       "fValidCount = 2",
       "fStoredRows = 2",
       "fbFactorTableFilled",
       "fbRowPatternsCreated",
       "fPacker",
       "fValidator",
       "MCPatternTabulator display end"});
}

TEST(MCPatternTabulatorDisplay, WritesKeysThatAreNotPacked) {
  const mctest::PackingSwitch unpacked(false);
  Tabulation tabulation(AllRoles());
  ASSERT_TRUE(tabulation.BothPasses({{2, 1, 0.5, 1, 9, 1, 2}, {0, 0, 1.5, 3, 9, 0, 4}}).IsOK());
  ExpectLines(DisplayOf(tabulation.fTabulator),
              {"Vector of packed bounds (size = 2)\n 2 2", "fNPackedKey = 2", "\t Key:   0  0",
               "\t Key:   1  1"});
}

}  // namespace
