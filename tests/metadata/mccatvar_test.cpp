// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccatvar.h"

#include "metadata/mccatnumencoder.h"
#include "metadata/mccontencoder.h"
#include "metadata/mcstringencoder.h"
#include "support/displaycapture.h"
#include "support/savefile.h"

#include <climits>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;

MCCatVar Numeric(int nCategories = 0) {
  return {"n", "label", nCategories, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT, false};
}

TEST(MCCatVar, BeginsAsItIsTold) {
  MCCatVar variable("region", "where", 3, MC_LEVEL_CAT_STRING, MC_ROLE_TARGET, true);
  EXPECT_EQ(variable.GetVariableName(), "region");
  EXPECT_EQ(variable.GetVariableLabel(), "where");
  EXPECT_EQ(variable.GetNumberOfCategories(), 3);
  EXPECT_EQ(variable.GetMeasureLevel(), MC_LEVEL_CAT_STRING);
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_TARGET);
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_UNDEFINED);
  EXPECT_TRUE(variable.GetOrdinalFlag());
  EXPECT_EQ(variable.GetMissingValueReplacement(), nullptr);
}

TEST(MCCatVar, TakesTheEncoderOfItsLevel) {
  for (const int level : {-1, 0, 1, 2, 3, 4, 5}) {
    const MCCatVar variable("v", "", 2, static_cast<MeasureLevel>(level), MC_ROLE_INPUT, false);
    EXPECT_EQ(variable.GetEncoder()->GetEncoderType(), level == 2 ? 2 : 3) << level;
    EXPECT_EQ(variable.GetMeasureLevel(), level);
  }
}

TEST(MCCatVar, TakesWhatIsSet) {
  MCCatVar variable = Numeric();
  variable.SetVariableLabel("new");
  variable.SetVariableRole(MC_ROLE_UNUSED);
  variable.SetVariableStorage(MC_STORAGE_DATE);
  variable.SetNumberOfCategories(-4);
  variable.SetOrdinalFlag(true);
  variable.SetMissingValueReplacement("");
  EXPECT_EQ(variable.GetVariableLabel(), "new");
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_UNUSED);
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_DATE);
  EXPECT_EQ(variable.GetNumberOfCategories(), -4);
  EXPECT_TRUE(variable.GetOrdinalFlag());
  ASSERT_NE(variable.GetMissingValueReplacement(), nullptr);
  EXPECT_EQ(*variable.GetMissingValueReplacement(), "");
}

TEST(MCCatVar, IsConstantWithOneCategoryAndInvalidWithNone) {
  MCCatVar variable = Numeric();
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_INVALID);
  variable.SetNumberOfCategories(INT_MIN);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_INVALID);
  variable.GetEncoder()->Encode(1.0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_CONSTANT);
  EXPECT_EQ(variable.GetNumberOfCategories(), 1);
  variable.GetEncoder()->Encode(2.0);
  EXPECT_EQ(variable.GetNumberOfCategories(), 1);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
  EXPECT_EQ(variable.GetNumberOfCategories(), 2);
}

TEST(MCCatVar, NeverLowersTheNumberOfItsCategories) {
  MCCatVar variable = Numeric(2);
  for (const double value : {1.0, 2.0, 3.0}) variable.GetEncoder()->Encode(value);
  EXPECT_EQ(variable.UpdateNumberOfCategories(), 3);
  *static_cast<MCCatNumEncoder*>(variable.GetEncoder()) = MCCatNumEncoder(0);
  EXPECT_EQ(variable.UpdateNumberOfCategories(), 3);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
}

TEST(MCCatVar, TakesAnotherEncoderWithItsNumberOfCategories) {
  MCCatVar variable = Numeric(9);
  auto* encoder = new MCStringEncoder(std::vector<std::string>{"a", "b"});
  EXPECT_EQ(variable.ChangeEncoder(encoder), 2);
  EXPECT_EQ(variable.GetEncoder(), encoder);
  EXPECT_EQ(variable.GetNumberOfCategories(), 2);
  EXPECT_EQ(variable.GetMeasureLevel(), MC_LEVEL_CAT_NUM);
}

TEST(MCCatVar, KeepsTheEncoderThatItIsGivenAgain) {
  MCCatVar variable = Numeric(9);
  variable.GetEncoder()->Encode(1.0);
  EXPECT_EQ(variable.ChangeEncoder(variable.GetEncoder()), 1);
  EXPECT_EQ(variable.GetNumberOfCategories(), 1);
  EXPECT_EQ(variable.GetEncoder()->EncodeConst(1.0), 0.0);
}

TEST(MCCatVar, DoesWithoutEncoderWhereItIsTakenAway) {
  MCCatVar variable = Numeric(9);
  EXPECT_EQ(variable.ChangeEncoder(nullptr), 0);
  EXPECT_EQ(variable.ChangeEncoder(nullptr), 0);
  EXPECT_EQ(variable.GetEncoder(), nullptr);
  EXPECT_EQ(variable.UpdateNumberOfCategories(), 0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_INVALID);
  const MCCatVar copy(variable);
  EXPECT_EQ(std::as_const(copy).GetEncoder(), nullptr);
  const std::string saved = mctest::Saved(variable);
  EXPECT_NE(saved.find("\n\t<Int value=\"0\"/>\n</Obj>\n"), std::string::npos);
  EXPECT_EQ(mctest::FailureOfReading(variable, saved), "Failure reading MCCatVar!\n");
  EXPECT_EQ(mctest::DisplayOf(variable).find("Encoder"), std::string::npos);
}

TEST(MCCatVar, CopiesItsEncoder) {
  MCCatVar variable = Numeric();
  variable.GetEncoder()->Encode(1.0);
  variable.SetMissingValueReplacement("1");
  variable.SetVariableStorage(MC_STORAGE_REAL);
  const std::string saved = mctest::Saved(variable);
  const std::unique_ptr<IMCVariable> clone(variable.Clone());
  MCCatVar assigned("x", "", 1, MC_LEVEL_CAT_STRING, MC_ROLE_TARGET, true);
  assigned = variable;
  assigned = *&assigned;
  variable.GetEncoder()->Encode(2.0);
  EXPECT_EQ(mctest::Saved(*clone), saved);
  EXPECT_EQ(mctest::Saved(assigned), saved);
  const MCCatVar moved(std::move(assigned));
  EXPECT_EQ(mctest::Saved(moved), saved);
}

TEST(MCCatVar, ReadsNothingButEncodersOfCategories) {
  const std::string saved = mctest::Saved(Numeric(2));
  const std::string before = "<Int value=\"2\"/>\n\t<Obj name=\"MCCatNumEncoder\">";
  const std::size_t at = saved.find(before);
  ASSERT_NE(at, std::string::npos);
  for (const char* type : {"-1", "0", "1", "3", "4", "5"}) {
    std::string text = saved;
    text.replace(at, before.size(),
                 std::string("<Int value=\"") + type + "\"/>\n\t<Obj name=\"MCCatNumEncoder\">");
    MCCatVar variable = Numeric();
    const std::string inner = *type == '3' ? "Failure reading MCStringEncoder!\n" : "";
    EXPECT_EQ(mctest::FailureOfReading(variable, text), inner + "Failure reading MCCatVar!\n");
    EXPECT_EQ(variable.GetEncoder(), nullptr);
    EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
  }
}

TEST(MCCatVar, CannotBeReadWithAnEncoderOfAnotherKind) {
  MCCatVar variable = Numeric();
  variable.ChangeEncoder(new MCContEncoder());
  const std::string saved = mctest::Saved(variable);
  EXPECT_NE(saved.find("<Int value=\"1\"/>\n\t<Obj name=\"MCContEncoder\">"), std::string::npos);
  EXPECT_EQ(mctest::FailureOfReading(variable, saved), "Failure reading MCCatVar!\n");
}

TEST(MCCatVar, ShowsWhatItHolds) {
  MCCatVar variable("v", "a label", 2, MC_LEVEL_CAT_STRING, MC_ROLE_TARGET, true);
  EXPECT_EQ(mctest::DisplayOf(variable),
            "\nCategorical variable: name = v"
            "\nLabel = a label"
            "\nVariable role = Target"
            "\nVariable storage = Undefined variable storage"
            "\nMeasurement Level = String Categorical"
            "\nNumber of categories = 2"
            "\nOrdinal variable indicator = true"
            "\nMissing value replacement = "
            "\n\tBNStringEncoder object:"
            "\nLast code = -1"
            "\n\t\tMissing Values and their Labels: ");
  variable.SetMissingValueReplacement("north");
  EXPECT_NE(mctest::DisplayOf(variable).find("\nMissing value replacement = north\n"),
            std::string::npos);
}

}  // namespace
