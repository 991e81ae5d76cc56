// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcweightvar.h"

#include "support/displaycapture.h"
#include "support/savefile.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace MCCommonMetadata;

TEST(MCWeightVar, IsAWeightAndNothingElse) {
  MCWeightVar variable("w", "weight", MC_ROUND_NEAREST);
  EXPECT_EQ(variable.GetVariableName(), "w");
  EXPECT_EQ(variable.GetVariableLabel(), "weight");
  EXPECT_EQ(variable.GetMeasureLevel(), MC_LEVEL_WEIGHT);
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_WEIGHT);
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_UNDEFINED);
  EXPECT_EQ(variable.GetNumberOfCategories(), 0);
  EXPECT_EQ(variable.UpdateNumberOfCategories(), 0);
  EXPECT_EQ(variable.GetVarStatus(), MC_VAR_OK);
  EXPECT_EQ(variable.GetMissingValueReplacement(), nullptr);
  variable.SetVariableRole(MC_ROLE_TARGET);
  variable.SetMissingValueReplacement("1");
  variable.SetVariableLabel("new");
  variable.SetVariableStorage(MC_STORAGE_REAL);
  EXPECT_EQ(variable.GetVariableRole(), MC_ROLE_WEIGHT);
  EXPECT_EQ(variable.GetMissingValueReplacement(), nullptr);
  EXPECT_EQ(variable.GetVariableLabel(), "new");
  EXPECT_EQ(variable.GetVariableStorage(), MC_STORAGE_REAL);
}

TEST(MCWeightVar, RoundsAsItIsTold) {
  MCWeightVar variable("w", "", MC_ROUND_NEAREST);
  EXPECT_EQ(variable.GetEncoder()->GetEncoderType(), MC_ENC_ROUND);
  EXPECT_EQ(variable.GetEncoder()->Encode(2.5), 3.0);
}

TEST(MCWeightVar, CopiesItsEncoder) {
  MCWeightVar variable("w", "", MC_ROUND_TRUNCATE);
  const std::unique_ptr<IMCVariable> clone(variable.Clone());
  MCWeightVar assigned("x", "", MC_ROUND_AS_IS);
  assigned = variable;
  variable.GetEncoder()->AddDiscreteUserMissing(5.0, "five");
  EXPECT_FALSE(clone->GetEncoder()->IsMissing(5.0));
  EXPECT_FALSE(assigned.GetEncoder()->IsMissing(5.0));
  EXPECT_EQ(assigned.GetEncoder()->EncodeConst(2.9), 2.0);
  EXPECT_EQ(assigned.GetVariableName(), "w");
}

TEST(MCWeightVar, ShowsNothingOfItsEncoder) {
  EXPECT_EQ(mctest::DisplayOf(MCWeightVar("w", "weight", MC_ROUND_AS_IS)),
            "\nFrequency weight variable: name = w"
            "\nLabel = weight"
            "\nVariable storage = Undefined variable storage");
}

}  // namespace
