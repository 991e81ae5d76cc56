// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccontvar.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/savefile.h"

#include <climits>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Values = std::vector<double>;

const MCBinningEncoder* BinningOf(const MCContVar& variable) {
  return static_cast<const MCContEncoder*>(variable.GetEncoder())->GetBinningEncoder();
}

TEST(MCContVar, BeginsWithEveryFiniteNumberInItsRange) {
  MCContVar variable("x", "label", MC_ROLE_POSSIBLE_INPUT);
  EXPECT_EQ(variable.GetVariableName(), "x");
  EXPECT_EQ(variable.GetVariableLabel(), "label");
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_POSSIBLE_INPUT);
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_UNDEFINED);
  EXPECT_EQ(variable.GetMeasureLevel(), MC_LEVEL_CONTINUOUS);
  EXPECT_EQ(variable.GetMin(), -DBL_MAX);
  EXPECT_EQ(variable.GetMax(), DBL_MAX);
  EXPECT_EQ(variable.GetNBins(), -1);
  EXPECT_EQ(variable.GetEncoder()->GetEncoderType(), MC_ENC_BINNING);
  EXPECT_EQ(variable.GetNumberOfCategories(), 0);
  EXPECT_EQ(variable.GetMissingValueReplacement(), nullptr);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
}

struct EqualBins {
  double min;
  double max;
  bool binned;
  int nBins;
  bool hasBins;
};

TEST(MCContVar, BinsItsRangeWhereThatCanBe) {
  const EqualBins cases[] = {{0.0, 1.0, true, 4, true},   {0.0, 1.0, true, 2, true},
                             {0.0, 1.0, true, 1, false},  {0.0, 1.0, true, -1, false},
                             {0.0, 1.0, false, 4, false}, {1.0, 1.0, true, 4, false},
                             {2.0, 1.0, true, 4, false},  {0.0, std::nan(""), true, 4, false}};
  for (const EqualBins& c : cases) {
    MCContVar variable("x", "", c.min, c.max, MC_ROLE_INPUT, c.binned, c.nBins);
    EXPECT_EQ(BinningOf(variable) != nullptr, c.hasBins);
    EXPECT_EQ(variable.GetNBins(), c.nBins);
    EXPECT_EQ(variable.GetNumberOfCategories(), c.hasBins ? c.nBins : 0);
    EXPECT_EQ(variable.UpdateNumberOfCategories(), c.hasBins ? c.nBins : 0);
    EXPECT_EQ(variable.GetMin(), c.min);
  }
}

TEST(MCContVar, BinsByCuts) {
  const MCContVar cut("x", "", Values{1.0, 2.0}, true, MC_ROLE_TARGET);
  EXPECT_EQ(cut.GetNBins(), 3);
  EXPECT_EQ(cut.GetNumberOfCategories(), 3);
  EXPECT_EQ(BinningOf(cut)->GetBinningCutpoints(), (Values{1.0, 2.0}));
  EXPECT_EQ(cut.GetMin(), -DBL_MAX);
  EXPECT_EQ(cut.GetMax(), DBL_MAX);
  EXPECT_EQ(cut.GetVariableRole(), MC_ROLE_TARGET);
  const MCContVar ranged("x", "", 0.0, 9.0, Values{1.0}, true, MC_ROLE_INPUT);
  EXPECT_EQ(ranged.GetNBins(), 2);
  EXPECT_EQ(ranged.GetMin(), 0.0);
  EXPECT_EQ(ranged.GetMax(), 9.0);
  EXPECT_EQ(BinningOf(ranged)->GetBinningCutpoints(), Values{1.0});
}

TEST(MCContVar, HasNoBinningWithoutCutsOrUnbinned) {
  const MCContVar none("x", "", Values{}, true, MC_ROLE_INPUT);
  EXPECT_EQ(none.GetNBins(), 1);
  EXPECT_EQ(BinningOf(none), nullptr);
  EXPECT_EQ(none.GetNumberOfCategories(), 0);
  const MCContVar unbinned("x", "", 0.0, 1.0, Values{0.5}, false, MC_ROLE_INPUT);
  EXPECT_EQ(unbinned.GetNBins(), 2);
  EXPECT_EQ(BinningOf(unbinned), nullptr);
}

TEST(MCContVar, TellsItsStatusByItsRange) {
  MCContVar variable("x", "", MC_ROLE_INPUT);
  variable.SetMinMax(1.0, 1.0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_CONSTANT);
  variable.SetMinMax(1.0, 0.5);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_INVALID);
  variable.SetMinMax(0.5, 1.0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
  EXPECT_EQ(variable.GetMin(), 0.5);
  EXPECT_EQ(variable.GetMax(), 1.0);
  variable.SetMinMax(std::nan(""), 1.0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
}

TEST(MCContVar, TakesWhatIsSet) {
  MCContVar variable("x", "", MC_ROLE_INPUT);
  variable.SetNBins(INT_MIN);
  variable.SetVariableRole(MC_ROLE_TARGET);
  variable.SetVariableStorage(MC_STORAGE_INTEGER);
  variable.SetVariableLabel("new");
  variable.SetMissingValueReplacement("0.5");
  EXPECT_EQ(variable.GetNBins(), INT_MIN);
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_TARGET);
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_INTEGER);
  EXPECT_EQ(variable.GetVariableLabel(), "new");
  EXPECT_EQ(*variable.GetMissingValueReplacement(), "0.5");
}

TEST(MCContVar, CopiesItsEncoder) {
  MCContVar variable("x", "", 0.0, 1.0, Values{0.5}, true, MC_ROLE_INPUT);
  const std::unique_ptr<MCContVar> clone(variable.Clone());
  MCContVar assigned("y", "", MC_ROLE_TARGET);
  assigned = variable;
  assigned = *&assigned;
  static_cast<MCContEncoder*>(variable.GetEncoder())->GetBinningEncoder()->SetBinningCutpoints({});
  EXPECT_EQ(BinningOf(*clone)->GetBinningCutpoints(), Values{0.5});
  EXPECT_EQ(BinningOf(assigned)->GetBinningCutpoints(), Values{0.5});
  EXPECT_EQ(assigned.GetVariableName(), "x");
  EXPECT_EQ(assigned.GetVariableRole(), MC_ROLE_INPUT);
  const MCContVar moved(std::move(assigned));
  EXPECT_EQ(moved.GetMax(), 1.0);
}

TEST(MCContVar, KeepsItsRoleWhenItIsRead) {
  MCContVar variable("x", "", MC_ROLE_TARGET);
  const MCContVar other("y", "why", 1.0, 2.0, MC_ROLE_INPUT, false, 7);
  mctest::ReadWhatIsSaved(variable, other);
  EXPECT_EQ(variable.GetVariableName(), "y");
  EXPECT_EQ(variable.GetVariableLabel(), "why");
  EXPECT_EQ(variable.GetNBins(), 7);
  EXPECT_EQ(variable.GetMin(), 1.0);
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_TARGET);
}

// With the type of encoder in place of the one that is saved, and the encoder left out on demand.
std::string SavedWithEncoder(const std::string& type, bool hasEncoder) {
  std::string text = mctest::Saved(MCContVar("x", "", MC_ROLE_INPUT));
  const std::string before = "<Int value=\"1\"/>\n\t<Obj";
  text.replace(text.find(before), before.size(), "<Int value=\"" + type + "\"/>\n\t<Obj");
  if (!hasEncoder) {
    const std::size_t at = text.find("\t<Obj");
    text.erase(at, text.find("\n</Obj>") + 1 - at);
  }
  return text;
}

TEST(MCContVar, DoesWithoutEncoderWhereAFileTellsNone) {
  MCContVar variable("x", "", MC_ROLE_INPUT);
  const std::string text = SavedWithEncoder("0", false);
  mctest::ReadSaved(variable, text);
  EXPECT_EQ(variable.GetEncoder(), nullptr);
  EXPECT_EQ(std::as_const(variable).GetEncoder(), nullptr);
  EXPECT_EQ(variable.GetNumberOfCategories(), 0);
  EXPECT_EQ(variable.UpdateNumberOfCategories(), 0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
  EXPECT_EQ(mctest::Saved(variable), text);
  EXPECT_EQ(mctest::Saved(MCContVar(variable)), text);
  const std::string shown = mctest::DisplayOf(variable);
  EXPECT_EQ(shown.substr(shown.rfind('\n')), "\nEncoder not set");
}

TEST(MCContVar, TellsOfAnEncoderOfAnotherKindOnStandardOutput) {
  for (const char* type : {"-1", "2", "3", "4", "5"}) {
    MCContVar variable("x", "", MC_ROLE_INPUT);
    const mctest::StreamCapture output(std::cout);
    EXPECT_EQ(mctest::FailureOfReading(variable, SavedWithEncoder(type, true)),
              "Failure reading MCContVar!\n");
    EXPECT_EQ(output.Text(), "Wrong encoder type in MCContVar!\n");
    EXPECT_EQ(variable.GetEncoder(), nullptr);
  }
}

TEST(MCContVar, ShowsWhatItHolds) {
  const MCContVar variable("x", "a label", 0.5, 1e9, MC_ROLE_INPUT, false, 3);
  EXPECT_EQ(mctest::DisplayOf(variable),
            "\nContinuous variable: name = x"
            "\nLabel = a label"
            "\nVariable role = Input"
            "\nVariable storage = Undefined variable storage"
            "\nNumber of bins = 3"
            "\nMin = 0.5"
            "\nMax = 1e+09"
            "\nMean = miss"
            "\nStandard deviation = miss"
            "\nMissing value replacement = "
            "\n\tMCContEncoder: "
            "\nnumber of bins = 0"
            "\nDiscrete user missing values (size = 0)"
            "\n\t\tMissing Value Labels:");
}

}  // namespace
