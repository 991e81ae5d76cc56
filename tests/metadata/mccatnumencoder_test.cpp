// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccatnumencoder.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/localeguard.h"
#include "support/savefile.h"

#include <climits>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Values = std::vector<double>;
using Texts = std::vector<std::string>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(MCCatNumEncoder, GivesCodesInTheOrderOfValues) {
  MCCatNumEncoder encoder(2);
  EXPECT_EQ(encoder.Encode(5.0), 0.0);
  EXPECT_EQ(encoder.Encode(3.0), 1.0);
  EXPECT_EQ(encoder.Encode(5.0), 0.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.GetEncoderType(), 2);
}

TEST(MCCatNumEncoder, MadeOfAListKeepsTheFirstCodeOfARepeatedValue) {
  const MCCatNumEncoder encoder(Values{5.0, 3.0, 5.0, -0.0, 0.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  EXPECT_EQ(encoder.EncodeConst(5.0), 0.0);
  EXPECT_EQ(encoder.EncodeConst(3.0), 1.0);
  EXPECT_EQ(encoder.EncodeConst(0.0), 2.0);
}

TEST(MCCatNumEncoder, TakesAnyCapacityAsAHint) {
  for (const int capacity : {INT_MIN, -1, 0, 1, INT_MAX}) {
    MCCatNumEncoder encoder(capacity);
    EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
    EXPECT_EQ(encoder.Encode(1.0), 0.0);
  }
}

TEST(MCCatNumEncoder, GivesNoCodeToAnUnseenValueWhenConst) {
  const MCCatNumEncoder encoder(Values{5.0});
  EXPECT_EQ(encoder.EncodeConst(6.0), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
}

TEST(MCCatNumEncoder, SpendsNoCodeOnMissingValues) {
  MCCatNumEncoder encoder(0);
  ASSERT_TRUE(encoder.SetMissingInterval(10.0, 20.0));
  ASSERT_TRUE(encoder.AddDiscreteUserMissing(99.0, "refused"));
  for (const double value : {10.0, 15.0, 20.0, 99.0, MCMV::gMissingValue}) {
    EXPECT_TRUE(encoder.IsMissing(value)) << value;
    EXPECT_EQ(encoder.Encode(value), -1.0) << value;
    EXPECT_EQ(encoder.EncodeConst(value), -1.0) << value;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
  EXPECT_EQ(encoder.Encode(9.5), 0.0);
  EXPECT_EQ(encoder.Encode(20.5), 1.0);
}

TEST(MCCatNumEncoder, TakesCategoriesThatAreDeclaredMissingLaterAsMissing) {
  MCCatNumEncoder encoder(Values{1.0, 2.0});
  encoder.AddDiscreteUserMissing(1.0, "");
  EXPECT_EQ(encoder.Encode(1.0), -1.0);
  EXPECT_EQ(encoder.EncodeConst(1.0), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.DecodeNum(0), 1.0);
}

TEST(MCCatNumEncoder, GivesNoCodeToNaNThoughItIsNotMissing) {
  MCCatNumEncoder encoder(0);
  encoder.AddDiscreteUserMissing(kNaN, "");
  encoder.SetMissingInterval(-HUGE_VAL, HUGE_VAL);
  EXPECT_FALSE(encoder.IsMissing(kNaN));
  EXPECT_EQ(encoder.Encode(kNaN), -1.0);
  EXPECT_EQ(encoder.EncodeConst(kNaN), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
  MCCatNumEncoder open(Values{kNaN, 1.0, kNaN});
  EXPECT_EQ(open.GetNumberOfCategories(), 1);
  EXPECT_EQ(open.EncodeConst(kNaN), -1.0);
}

TEST(MCCatNumEncoder, HoldsOneIntervalThatHasAWidth) {
  MCCatNumEncoder encoder(0);
  double low = 0.0;
  double high = 0.0;
  EXPECT_FALSE(encoder.GetMissingInterval(low, high));
  EXPECT_EQ(low, MCMV::gMissingValue);
  EXPECT_EQ(high, MCMV::gMissingValue);
  EXPECT_FALSE(encoder.SetMissingInterval(2.0, 2.0));
  EXPECT_FALSE(encoder.SetMissingInterval(3.0, 2.0));
  EXPECT_FALSE(encoder.SetMissingInterval(kNaN, 2.0));
  EXPECT_FALSE(encoder.SetMissingInterval(2.0, kNaN));
  EXPECT_TRUE(encoder.SetMissingInterval(2.0, 3.0));
  EXPECT_FALSE(encoder.SetMissingInterval(4.0, 5.0));
  EXPECT_TRUE(encoder.GetMissingInterval(low, high));
  EXPECT_EQ(low, 2.0);
  EXPECT_EQ(high, 3.0);
}

TEST(MCCatNumEncoder, DecodesWithFifteenDigitsAndAPointInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  const MCCatNumEncoder encoder(Values{0.1, 1e300, 1.0 / 3.0, -HUGE_VAL, 1234567.0});
  EXPECT_EQ(encoder.Decode(0), "0.1");
  EXPECT_EQ(encoder.Decode(1), "1e+300");
  EXPECT_EQ(encoder.Decode(2), "0.333333333333333");
  EXPECT_EQ(encoder.Decode(3), "-inf");
  EXPECT_EQ(encoder.Decode(4), "1234567");
  EXPECT_EQ(encoder.DecodeNum(2), 1.0 / 3.0);
}

TEST(MCCatNumEncoder, DecodesNoCodeThatItDidNotGive) {
  const MCCatNumEncoder encoder(Values{1.0, 2.0});
  for (const int code : {INT_MIN, -1, 2, INT_MAX}) {
    EXPECT_EQ(encoder.Decode(code), "");
    EXPECT_EQ(encoder.DecodeNum(code), MCMV::gMissingValue);
  }
}

TEST(MCCatNumEncoder, KnowsNoStrings) {
  MCCatNumEncoder encoder(Values{1.0});
  EXPECT_EQ(encoder.Encode(std::string("1")), -1.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("1")), -1.0);
  EXPECT_TRUE(encoder.IsMissing(std::string("1")));
  EXPECT_FALSE(encoder.AddDiscreteUserMissing(std::string("1"), "label"));
  EXPECT_EQ(encoder.GetDiscreteMissValuesStr(), nullptr);
  EXPECT_TRUE(encoder.GetDiscreteMissValues()->empty());
  EXPECT_TRUE(encoder.GetMissValueLabels()->empty());
}

TEST(MCCatNumEncoder, KeepsMissingValuesWithTheirLabels) {
  MCCatNumEncoder encoder(0);
  EXPECT_TRUE(encoder.AddDiscreteUserMissing(9.0, "nine"));
  EXPECT_TRUE(encoder.AddDiscreteUserMissing(9.0, "again"));
  EXPECT_EQ(*encoder.GetDiscreteMissValues(), (Values{9.0, 9.0}));
  EXPECT_EQ(*encoder.GetMissValueLabels(), (Texts{"nine", "again"}));
}

TEST(MCCatNumEncoder, LabelsItsCodes) {
  MCCatNumEncoder encoder(Values{1.0, 2.0, 3.0});
  EXPECT_TRUE(encoder.GetValueLabels()->empty());
  encoder.SetValueLabel(1, "two");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"", "two", ""}));
  for (const int code : {INT_MIN, -1, 3, INT_MAX}) encoder.SetValueLabel(code, "x");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"", "two", ""}));
  encoder.SetValueLabels({"a", "b", "c", "d"});
  encoder.SetValueLabel(3, "no code");
  encoder.SetValueLabel(0, "A");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"A", "b", "c", "d"}));
  encoder.SetValueLabels({"only"});
  encoder.SetValueLabel(7, "grows the list");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"only", "", ""}));
}

TEST(MCCatNumEncoder, CopiesAreIndependentAndWhole) {
  MCCatNumEncoder encoder(Values{1.0, 2.0});
  encoder.SetValueLabels({"one", "two"});
  encoder.AddDiscreteUserMissing(9.0, "nine");
  encoder.SetMissingInterval(20.0, 30.0);
  const std::unique_ptr<IMCEncoder> clone(encoder.Clone());
  MCCatNumEncoder assigned(Values{7.0});
  assigned = encoder;
  assigned = *&assigned;
  encoder.Encode(3.0);
  EXPECT_EQ(mctest::Saved(*clone), mctest::Saved(assigned));
  EXPECT_EQ(clone->GetNumberOfCategories(), 2);
  EXPECT_EQ(clone->Encode(4.0), 2.0);
  EXPECT_EQ(assigned.EncodeConst(2.0), 1.0);
  EXPECT_EQ(assigned.EncodeConst(4.0), -1.0);
  EXPECT_TRUE(assigned.IsMissing(25.0));
}

TEST(MCCatNumEncoder, LeavesAWholeObjectWhereItIsMovedFrom) {
  MCCatNumEncoder encoder(Values{1.0, 2.0});
  const MCCatNumEncoder taken(std::move(encoder));
  EXPECT_EQ(taken.Decode(1), "2");
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    EXPECT_EQ(encoder.EncodeConst(encoder.DecodeNum(code)), code);
  }
}

TEST(MCCatNumEncoder, ShowsWhatItHolds) {
  MCCatNumEncoder encoder(Values{1.5});
  EXPECT_EQ(mctest::DisplayOf(encoder),
            "\n\tBNCatNumEncoder: "
            "\nLast code = 0"
            "\n\t\tNumeric values of categories: "
            "\nNumeric values of categories (size = 1)\n = 1.5"
            "\nDiscrete user missing values (size = 0)"
            "\n\t\tMissing Value Labels:");
  encoder.SetMissingInterval(2.5, 4.0);
  encoder.AddDiscreteUserMissing(9.0, "nine");
  EXPECT_EQ(mctest::DisplayOf(encoder),
            "\n\tBNCatNumEncoder: "
            "\nLast code = 0"
            "\n\t\tNumeric values of categories: "
            "\nNumeric values of categories (size = 1)\n = 1.5"
            "\nDiscrete user missing values (size = 1)\n = 9"
            "\n\t\tUser-missing interval for this encoder: "
            "\n\t\t[ 2.5, 4 ]"
            "\n\t\tMissing Value Labels:"
            "\n\t\tnine");
}

}  // namespace
