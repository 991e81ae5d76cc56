// SPDX-License-Identifier: Apache-2.0
#include "metadata/enumdisplay.h"

#include "support/displaycapture.h"

#include <climits>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;

template <class Enumeration>
std::string Shown(int value) {
  return mctest::Displayed([value] { Display("it", static_cast<Enumeration>(value)); });
}

template <class Enumeration>
void ExpectWords(const std::vector<std::string>& words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(Shown<Enumeration>(static_cast<int>(i)), "\nit" + words[i]);
  }
}

template <class Enumeration>
void ExpectUnrecognizedBeyond(int nWords) {
  for (const int value : {INT_MIN, -1, nWords, INT_MAX}) {
    EXPECT_EQ(Shown<Enumeration>(value), "\nit = unrecognized");
  }
}

TEST(EnumDisplay, HasAWordForEachValue) {
  ExpectWords<VarStatus>({" = OK", " = Constant", " = Invalid"});
  ExpectWords<WRoundingOption>(
      {" = Truncate to smaller int", " = Round to closest int", " = As is - no change"});
  ExpectWords<EncoderType>(
      {" = Unknown", " = Binning of numeric values", " = Categorical with numeric category values",
       " = Categorical with string category values", " = ounding for frequency weights"});
  ExpectWords<MeasureLevel>({" = Unknown measure level", " = Continuous", " = Numeric Categorical",
                             " = String Categorical", " = Frequency weight"});
  ExpectWords<VariableRole>({" = Undefined variable role", " = Target", " = Target Response",
                             " = Frequency weight", " = Input", " = Possible Input",
                             " = Unused variable"});
  ExpectWords<VariableStorage>({" = Undefined variable storage", " = Integer", " = Real",
                                " = String", " = Date", " = Time", " = Timestamp"});
}

TEST(EnumDisplay, SaysOfOtherValuesThatTheyAreUnrecognized) {
  ExpectUnrecognizedBeyond<VarStatus>(3);
  ExpectUnrecognizedBeyond<WRoundingOption>(3);
  ExpectUnrecognizedBeyond<MeasureLevel>(5);
  ExpectUnrecognizedBeyond<VariableRole>(7);
  ExpectUnrecognizedBeyond<VariableStorage>(7);
}

TEST(EnumDisplay, TellsTheNumberOfAnEncoderThatItDoesNotKnow) {
  EXPECT_EQ(Shown<EncoderType>(5), "\nit = Encoder type 5");
  EXPECT_EQ(Shown<EncoderType>(-1), "\nit = Encoder type -1");
  EXPECT_EQ(Shown<EncoderType>(INT_MIN), "\nit = Encoder type -2147483648");
}

}  // namespace
