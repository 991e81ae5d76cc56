// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcstringencoder.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/savefile.h"

#include <climits>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Texts = std::vector<std::string>;

// Every code decodes to a string that has this code.
void ExpectWhole(const MCStringEncoder& encoder, int nCategories) {
  ASSERT_EQ(encoder.GetNumberOfCategories(), nCategories);
  for (int code = 0; code < nCategories; ++code) {
    EXPECT_EQ(encoder.EncodeConst(encoder.Decode(code)), code);
  }
}

TEST(MCStringEncoder, GivesCodesInTheOrderOfValues) {
  MCStringEncoder encoder(2);
  EXPECT_EQ(encoder.Encode(std::string("b")), 0.0);
  EXPECT_EQ(encoder.Encode(std::string("a")), 1.0);
  EXPECT_EQ(encoder.Encode(std::string("b")), 0.0);
  EXPECT_EQ(encoder.Encode(std::string("")), 2.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("A")), -1.0);
  EXPECT_EQ(encoder.GetEncoderType(), 3);
  ExpectWhole(encoder, 3);
}

TEST(MCStringEncoder, TellsStringsApartByteByByte) {
  const std::string withNull("a\0b", 3);
  MCStringEncoder encoder(Texts{"a", "ab", withNull, "\xC3\xA9", "a"});
  EXPECT_EQ(encoder.EncodeConst(withNull), 2.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("\xC3\xA9")), 3.0);
  ExpectWhole(encoder, 4);
}

TEST(MCStringEncoder, TakesAnyCapacityAsAHint) {
  for (const int capacity : {INT_MIN, -1, 0, 1, INT_MAX}) {
    MCStringEncoder encoder(capacity);
    EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
    EXPECT_EQ(encoder.Encode(std::string("x")), 0.0);
  }
}

TEST(MCStringEncoder, KnowsNoNumbers) {
  MCStringEncoder encoder(Texts{"1"});
  for (const double value :
       {1.0, 0.0, MCMV::gMissingValue, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(encoder.IsMissing(value));
    EXPECT_EQ(encoder.Encode(value), -1.0);
    EXPECT_EQ(encoder.EncodeConst(value), -1.0);
  }
  EXPECT_FALSE(encoder.AddDiscreteUserMissing(1.0, "label"));
  EXPECT_FALSE(encoder.SetMissingInterval(1.0, 2.0));
  EXPECT_EQ(encoder.DecodeNum(0), MCMV::gMissingValue);
  EXPECT_EQ(encoder.GetDiscreteMissValues(), nullptr);
  double low = 1.0;
  double high = 1.0;
  EXPECT_FALSE(encoder.GetMissingInterval(low, high));
  EXPECT_EQ(low, MCMV::gMissingValue);
  EXPECT_EQ(high, MCMV::gMissingValue);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
}

TEST(MCStringEncoder, SpendsNoCodeOnMissingStrings) {
  MCStringEncoder encoder(0);
  EXPECT_TRUE(encoder.AddDiscreteUserMissing(std::string("NA"), "not asked"));
  EXPECT_TRUE(encoder.IsMissing(std::string("NA")));
  EXPECT_FALSE(encoder.IsMissing(std::string("na")));
  EXPECT_EQ(encoder.Encode(std::string("NA")), -1.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("NA")), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
  EXPECT_EQ(*encoder.GetDiscreteMissValuesStr(), Texts{"NA"});
  EXPECT_EQ(*encoder.GetMissValueLabels(), Texts{"not asked"});
}

TEST(MCStringEncoder, DecodesNoCodeThatItDidNotGive) {
  const MCStringEncoder encoder(Texts{"a", "b"});
  for (const int code : {INT_MIN, -1, 2, INT_MAX}) {
    EXPECT_EQ(encoder.Decode(code), "");
    EXPECT_EQ(encoder.DecodeNum(code), MCMV::gMissingValue);
  }
}

TEST(MCStringEncoder, LabelsItsCodes) {
  MCStringEncoder encoder(Texts{"a", "b"});
  encoder.SetValueLabel(1, "B");
  for (const int code : {INT_MIN, -1, 2, INT_MAX}) encoder.SetValueLabel(code, "x");
  EXPECT_EQ(*encoder.GetValueLabels(), (Texts{"", "B"}));
  encoder.SetValueLabels({"one"});
  EXPECT_EQ(*encoder.GetValueLabels(), Texts{"one"});
}

TEST(MCStringEncoder, CopiesLiveWithoutTheirOriginal) {
  auto encoder = std::make_unique<MCStringEncoder>(Texts{"z", "y"});
  encoder->AddDiscreteUserMissing(std::string("NA"), "none");
  encoder->SetValueLabels({"Z", "Y"});
  const std::string saved = mctest::Saved(*encoder);
  MCStringEncoder assigned(Texts{"gone"});
  assigned = *encoder;
  assigned = *&assigned;
  const std::unique_ptr<MCStringEncoder> clone(encoder->Clone());
  const MCStringEncoder copy(*encoder);
  encoder.reset();
  for (const MCStringEncoder* each : {&std::as_const(assigned), &std::as_const(*clone), &copy}) {
    ExpectWhole(*each, 2);
    EXPECT_EQ(mctest::Saved(*each), saved);
  }
  EXPECT_EQ(clone->Encode(std::string("x")), 2.0);
  ExpectWhole(*clone, 3);
  ExpectWhole(assigned, 2);
}

TEST(MCStringEncoder, LeavesAWholeObjectWhereItIsMovedFrom) {
  MCStringEncoder encoder(Texts{"a", "b"});
  const MCStringEncoder taken(std::move(encoder));
  ExpectWhole(taken, 2);
  ExpectWhole(encoder, encoder.GetNumberOfCategories());
}

TEST(MCStringEncoder, MakesItsListAnewFromItsCodes) {
  MCStringEncoder encoder(Texts{"a", "b"});
  encoder.CreateLinks();
  ExpectWhole(encoder, 2);
  MCStringEncoder none(0);
  none.CreateLinks();
  ExpectWhole(none, 0);
}

TEST(MCStringEncoder, ShowsWhatItHolds) {
  MCStringEncoder encoder(Texts{"b", "a"});
  encoder.AddDiscreteUserMissing(std::string("NA"), "none");
  EXPECT_EQ(mctest::DisplayOf(encoder),
            "\n\tBNStringEncoder object:"
            "\nLast code = 1"
            "\n\t\tb\n\t\ta"
            "\n\t\tMissing Values and their Labels: "
            "\n\t\tNA\tnone");
}

TEST(MCStringEncoder, HasNoStringForTheLaterCodeOfOneThatAFileRepeats) {
  MCStringEncoder encoder(Texts{"old"});
  const std::string text =
      "<Obj name=\"MCStringEncoder\">\n"
      "<Int value=\"3\"/>\n"
      "<String value=\"a\"/>\n<String value=\"a\"/>\n<String value=\"b\"/>\n"
      "<Int value=\"0\"/>\n"
      "<Int value=\"0\"/>\n"
      "</Obj>\n";
  EXPECT_EQ(mctest::ReadSaved(encoder, text), 8);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  EXPECT_EQ(encoder.EncodeConst(std::string("a")), 0.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("b")), 2.0);
  EXPECT_EQ(encoder.EncodeConst(std::string("old")), -1.0);
  EXPECT_EQ(encoder.Decode(1), "");
  EXPECT_EQ(encoder.Decode(2), "b");
  EXPECT_EQ(MCStringEncoder(encoder).Decode(1), "");
  EXPECT_NE(mctest::DisplayOf(encoder).find("\n\t\ta\n\t\tERROR\n\t\tb\n"), std::string::npos);
  EXPECT_NE(mctest::Saved(encoder).find("<Int value=\"3\"/>\n"
                                        "\t<String value=\"a\"/>\n"
                                        "\t<String value=\"\"/>\n"
                                        "\t<String value=\"b\"/>\n"),
            std::string::npos);
  EXPECT_EQ(encoder.Encode(std::string("c")), 3.0);
}

TEST(MCStringEncoder, HoldsWhatWasReadBeforeAReadFailed) {
  MCStringEncoder encoder(Texts{"old"});
  const std::string text =
      "<Obj name=\"MCStringEncoder\">\n<Int value=\"3\"/>\n<String value=\"a\"/>\n";
  EXPECT_EQ(mctest::FailureOfReading(encoder, text), "Failure reading MCStringEncoder!\n");
  ExpectWhole(encoder, 1);
  ExpectWhole(MCStringEncoder(encoder), 1);
  EXPECT_EQ(encoder.Encode(std::string("b")), 1.0);
}

}  // namespace
