// SPDX-License-Identifier: Apache-2.0
//
// What each class writes, as whole texts, and what comes back of it; files that are damaged.
#include "metadata/mccatnumencoder.h"
#include "metadata/mcroundencoder.h"
#include "metadata/mcstringencoder.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/localeguard.h"
#include "support/savefile.h"
#include "support/splitmix64.h"

#include <climits>
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// Expects an object to write exactly this text, an empty one of its class to become the same by
// reading it, and both also under a locale with a decimal comma.
template <class Object>
void ExpectSavedAs(const std::string& text, const Object& object, const Object& empty) {
  for (const char* locale : {"C", "de_DE.UTF-8"}) {
    const mctest::LocaleGuard guard(locale);
    ASSERT_TRUE(guard.IsSet());
    EXPECT_EQ(mctest::Saved(object), text);
    Object read(empty);
    mctest::ReadWhatIsSaved(read, object);
    EXPECT_EQ(mctest::Saved(read), text);
  }
}

MCCatNumEncoder MakeNumeric() {
  MCCatNumEncoder encoder(Numbers{2.5, -1.0, 1e300});
  encoder.SetValueLabels({"two and a half", ""});
  encoder.AddDiscreteUserMissing(99.0, "refused");
  encoder.AddDiscreteUserMissing(98.5, "");
  return encoder;
}

MCStringEncoder MakeStrings() {
  MCStringEncoder encoder(Texts{"b", "a", ""});
  encoder.SetValueLabel(1, "first letter");
  encoder.AddDiscreteUserMissing(std::string("NA"), "not asked");
  return encoder;
}

const char kNumericText[] =
    "\n<Obj name=\"MCCatNumEncoder\">"
    "\n\t<Int value=\"3\"/>"
    "\n\t<Double value=\"2.5\"/>"
    "\n\t<Double value=\"-1\"/>"
    "\n\t<Double value=\"1e+300\"/>"
    "\n\t<Int value=\"2\"/>"
    "\n\t<String value=\"two and a half\"/>"
    "\n\t<String value=\"\"/>"
    "\n\t<Int value=\"0\"/>"
    "\n\t<Int value=\"2\"/>"
    "\n\t<Double value=\"99\"/>"
    "\n\t<Double value=\"98.5\"/>"
    "\n\t<String value=\"refused\"/>"
    "\n\t<String value=\"\"/>"
    "\n</Obj>\n";

TEST(SaveFormat, HoldsNumericCategories) {
  ExpectSavedAs(kNumericText, MakeNumeric(), MCCatNumEncoder(Numbers{7.0}));
}

TEST(SaveFormat, HoldsAnIntervalWhereThereIsOne) {
  MCCatNumEncoder encoder(0);
  encoder.SetMissingInterval(-0.5, 1000.25);
  MCCatNumEncoder before(Numbers{7.0});
  before.SetMissingInterval(1.0, 2.0);
  ExpectSavedAs(
      "\n<Obj name=\"MCCatNumEncoder\">"
      "\n\t<Int value=\"0\"/>"
      "\n\t<Int value=\"0\"/>"
      "\n\t<Int value=\"1\"/>"
      "\n\t<Double value=\"-0.5\"/>"
      "\n\t<Double value=\"1000.25\"/>"
      "\n\t<Int value=\"0\"/>"
      "\n</Obj>\n",
      encoder, before);
}

TEST(SaveFormat, HoldsStringCategories) {
  ExpectSavedAs(
      "\n<Obj name=\"MCStringEncoder\">"
      "\n\t<Int value=\"3\"/>"
      "\n\t<String value=\"b\"/>"
      "\n\t<String value=\"a\"/>"
      "\n\t<String value=\"\"/>"
      "\n\t<Int value=\"3\"/>"
      "\n\t<String value=\"\"/>"
      "\n\t<String value=\"first letter\"/>"
      "\n\t<String value=\"\"/>"
      "\n\t<Int value=\"1\"/>"
      "\n\t<String value=\"NA\"/>"
      "\n\t<String value=\"not asked\"/>"
      "\n</Obj>\n",
      MakeStrings(), MCStringEncoder(Texts{"old"}));
}

TEST(SaveFormat, HoldsTheNumberOfBinsOfAScale) {
  MCContEncoder encoder(0.0, 1.0, 4);
  encoder.AddDiscreteUserMissing(0.125, "eighth");
  ExpectSavedAs(
      "\n<Obj name=\"MCContEncoder\">"
      "\n\t<Int value=\"4\"/>"
      "\n\t<Int value=\"0\"/>"
      "\n\t<Int value=\"1\"/>"
      "\n\t<Double value=\"0.125\"/>"
      "\n\t<String value=\"eighth\"/>"
      "\n</Obj>\n",
      encoder, MCContEncoder(Numbers{1.0}));
}

TEST(SaveFormat, HoldsTheRoundingOfAWeight) {
  MCRoundEncoder encoder(MC_ROUND_NEAREST);
  encoder.SetMissingInterval(10.0, 20.0);
  ExpectSavedAs(
      "\n<Obj name=\"MCRoundEncoder\">"
      "\n\t<Int value=\"1\"/>"
      "\n\t<Int value=\"1\"/>"
      "\n\t<Double value=\"10\"/>"
      "\n\t<Double value=\"20\"/>"
      "\n\t<Int value=\"0\"/>"
      "\n</Obj>\n",
      encoder, MCRoundEncoder());
}

MCVarList MakeList() {
  MCVarList list;
  list.AddCatVar("region", "a label", Texts{"north"}, MC_ROLE_TARGET_RESPONSE);
  list.AddContVar("yield", "", 0.5, 1.5, MC_ROLE_TARGET, true, 3);
  list.AddCatVar("class", "", Numbers{1.5}, MC_ROLE_POSSIBLE_INPUT);
  list.SetWeightVar("w", "", MC_ROUND_TRUNCATE);
  list.GetVarAt(0)->SetVariableStorage(MC_STORAGE_STRING);
  list.SetMissingValueReplacement(0, "south");
  list.SetMissingValueReplacement(1, "");
  static_cast<MCCatVar*>(list.GetVarAt(2))->SetOrdinalFlag(true);
  return list;
}

const char kListText[] =
    "\n<Obj name=\"MCVarList\">"
    "\n\t<Int value=\"4\"/>"
    "\n\t<Int value=\"3\"/>"
    "\n\t<Obj name=\"MCCatVar\">"
    "\n\t\t<String value=\"region\"/>"
    "\n\t\t<String value=\"a label\"/>"
    "\n\t\t<Int value=\"2\"/>"  // role
    "\n\t\t<Int value=\"3\"/>"  // storage
    "\n\t\t<Int value=\"1\"/>"  // categories
    "\n\t\t<Int value=\"3\"/>"  // level
    "\n\t\t<Int value=\"0\"/>"  // ordinal
    "\n\t\t<Int value=\"1\"/>"  // has a replacement
    "\n\t\t<String value=\"south\"/>"
    "\n\t\t<Int value=\"3\"/>"  // type of encoder
    "\n\t\t<Obj name=\"MCStringEncoder\">"
    "\n\t\t\t<Int value=\"1\"/>"
    "\n\t\t\t<String value=\"north\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t</Obj>"
    "\n\t</Obj>"
    "\n\t<Int value=\"1\"/>"
    "\n\t<Obj name=\"MCContVar\">"
    "\n\t\t<String value=\"yield\"/>"
    "\n\t\t<String value=\"\"/>"
    "\n\t\t<Int value=\"3\"/>"  // bins
    "\n\t\t<Double value=\"0.5\"/>"
    "\n\t\t<Double value=\"1.5\"/>"
    "\n\t\t<Double value=\"Missing\"/>"  // mean
    "\n\t\t<Double value=\"Missing\"/>"  // deviation
    "\n\t\t<Int value=\"0\"/>"           // storage
    "\n\t\t<Int value=\"1\"/>"           // has a replacement
    "\n\t\t<String value=\"\"/>"
    "\n\t\t<Int value=\"1\"/>"  // type of encoder
    "\n\t\t<Obj name=\"MCContEncoder\">"
    "\n\t\t\t<Int value=\"3\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t</Obj>"
    "\n\t</Obj>"
    "\n\t<Int value=\"2\"/>"
    "\n\t<Obj name=\"MCCatVar\">"
    "\n\t\t<String value=\"class\"/>"
    "\n\t\t<String value=\"\"/>"
    "\n\t\t<Int value=\"5\"/>"
    "\n\t\t<Int value=\"0\"/>"
    "\n\t\t<Int value=\"1\"/>"
    "\n\t\t<Int value=\"2\"/>"
    "\n\t\t<Int value=\"1\"/>"
    "\n\t\t<Int value=\"0\"/>"
    "\n\t\t<Int value=\"2\"/>"
    "\n\t\t<Obj name=\"MCCatNumEncoder\">"
    "\n\t\t\t<Int value=\"1\"/>"
    "\n\t\t\t<Double value=\"1.5\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t</Obj>"
    "\n\t</Obj>"
    "\n\t<Int value=\"4\"/>"
    "\n\t<Obj name=\"MCWeightVar\">"
    "\n\t\t<String value=\"w\"/>"
    "\n\t\t<String value=\"\"/>"
    "\n\t\t<Int value=\"0\"/>"
    "\n\t\t<Obj name=\"MCRoundEncoder\">"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t\t<Int value=\"0\"/>"
    "\n\t\t</Obj>"
    "\n\t</Obj>"
    "\n\t<Int value=\"1\"/>"  // continuous
    "\n\t<Int value=\"2\"/>"  // categorical
    "\n\t<Int value=\"1\"/>"  // place of the target
    "\n\t<Int value=\"0\"/>"  // place of the target response
    "\n</Obj>\n";

TEST(SaveFormat, HoldsAListOfVariables) {
  ExpectSavedAs(kListText, MakeList(), MakeList());
}

TEST(SaveFormat, IndentsByTabs) {
  EXPECT_EQ(mctest::Saved(MCContEncoder(), 2),
            "\n\t\t<Obj name=\"MCContEncoder\">"
            "\n\t\t\t<Int value=\"0\"/>"
            "\n\t\t\t<Int value=\"0\"/>"
            "\n\t\t\t<Int value=\"0\"/>"
            "\n\t\t</Obj>\n");
}

TEST(SaveFormat, HoldsOneObjectBehindAnother) {
  mctest::TextFile file(mctest::Saved(MakeNumeric()) + mctest::Saved(MakeStrings()));
  MCCatNumEncoder numeric(0);
  MCStringEncoder strings(0);
  EXPECT_EQ(numeric.ReadObjectXML(file.Stream()), 15);
  EXPECT_EQ(strings.ReadObjectXML(file.Stream()), 13);
  EXPECT_EQ(mctest::Saved(strings), mctest::Saved(MakeStrings()));
  EXPECT_EQ(file.Rest(), "");
}

TEST(SaveFormat, NeedsALineEndAfterItsLastLine) {
  std::string text = kNumericText;
  text.pop_back();
  MCCatNumEncoder encoder(0);
  EXPECT_EQ(mctest::FailureOfReading(encoder, text), "Failure reading MCCatNumEncoder!\n");
  EXPECT_EQ(mctest::ReadSaved(encoder, text + "\nwhat follows"), 15);
}

// ---- What the format loses.

TEST(SaveFormat, KeepsFifteenDigits) {
  const double third = 1.0 / 3.0;
  MCContVar variable("x", "", third, DBL_MAX, MC_ROLE_INPUT, false, 0);
  MCContVar read("", "", MC_ROLE_INPUT);
  mctest::ReadWhatIsSaved(read, variable);
  EXPECT_EQ(read.GetMin(), 0.333333333333333);
  EXPECT_NE(read.GetMin(), third);
  // Printed with 15 digits the largest double is larger than it.
  EXPECT_EQ(read.GetMax(), DBL_MAX);
  variable.SetMinMax(-DBL_MAX, 0.0);
  mctest::ReadWhatIsSaved(read, variable);
  EXPECT_EQ(read.GetMin(), MCMV::gMissingValue);
}

TEST(SaveFormat, ReadsNaNAndInfinitiesAsZero) {
  MCContVar read("", "", MC_ROLE_INPUT);
  mctest::ReadWhatIsSaved(read,
                          MCContVar("x", "", std::nan(""), HUGE_VAL, MC_ROLE_INPUT, false, 0));
  EXPECT_EQ(read.GetMin(), 0.0);
  EXPECT_EQ(read.GetMax(), 0.0);
  mctest::ReadWhatIsSaved(read, MCContVar("x", "", -HUGE_VAL, 1.0, MC_ROLE_INPUT, false, 0));
  EXPECT_EQ(read.GetMin(), 0.0);
}

TEST(SaveFormat, CollapsesCategoriesThatItCannotTellApart) {
  MCCatNumEncoder encoder(Numbers{0.1, 0.1 + 1e-17 * 2, 0.0, HUGE_VAL, -HUGE_VAL, 7.0});
  ASSERT_EQ(encoder.GetNumberOfCategories(), 6);
  encoder.SetValueLabels({"a", "b", "c", "d", "e", "f"});
  MCCatNumEncoder read(0);
  mctest::ReadWhatIsSaved(read, encoder);
  ASSERT_EQ(read.GetNumberOfCategories(), 3);
  EXPECT_EQ(read.EncodeConst(0.1), 0.0);
  EXPECT_EQ(read.EncodeConst(0.0), 1.0);
  EXPECT_EQ(read.EncodeConst(7.0), 2.0);
  EXPECT_EQ((*read.GetValueLabels())[2], "c");
}

TEST(SaveFormat, UndoesNoEscaping) {
  MCStringEncoder read(0);
  mctest::ReadWhatIsSaved(read, MCStringEncoder(Texts{"a & b", "<\">", " x  y ", "t\tn\nr\r"}));
  EXPECT_EQ(read.Decode(0), "a &amp; b");
  EXPECT_EQ(read.Decode(1), "&lt;&quot;&gt;");
  EXPECT_EQ(read.Decode(2), "&#32;x &#32;y&#32;");
  EXPECT_EQ(read.Decode(3), "t&#9;n&#10;r&#13;");
}

TEST(SaveFormat, HoldsBytesBeyondASCIIAsTheyAre) {
  MCStringEncoder read(0);
  mctest::ReadWhatIsSaved(read, MCStringEncoder(Texts{"\xC3\xA9t\xC3\xA9", "\xE9"}));
  EXPECT_EQ(read.Decode(0), "\xC3\xA9t\xC3\xA9");
  EXPECT_EQ(read.Decode(1), "\xE9");
}

TEST(SaveFormat, CannotReadLinesOf256CharactersOrMore) {
  // One tab, "<String value=\"" and "\"/>" take 19 characters.
  MCStringEncoder read(0);
  const MCStringEncoder longest(Texts{std::string(236, 'x')});
  mctest::ReadWhatIsSaved(read, longest);
  EXPECT_EQ(read.Decode(0), longest.Decode(0));
  EXPECT_EQ(
      mctest::FailureOfReading(read, mctest::Saved(MCStringEncoder(Texts{std::string(237, 'x')}))),
      "Failure reading MCStringEncoder!\n");
  EXPECT_EQ(read.GetNumberOfCategories(), 0);
}

TEST(SaveFormat, KeepsEnumerationsWithoutNameAsTheyAre) {
  MCCatVar variable("v", "", 2, static_cast<MeasureLevel>(INT_MIN), static_cast<VariableRole>(99),
                    false);
  variable.SetVariableStorage(static_cast<VariableStorage>(INT_MAX));
  MCCatVar read("", "", 0, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT, true);
  mctest::ReadWhatIsSaved(read, variable);
  EXPECT_EQ(read.GetMeasureLevel(), INT_MIN);
  EXPECT_EQ(read.GetVariableRole(), 99);
  EXPECT_EQ(read.GetVariableStorage(), INT_MAX);
  EXPECT_EQ(mctest::Saved(read), mctest::Saved(variable));
}

TEST(SaveFormat, GivesNoCodeToAMissingValueThatAFileListsAsCategory) {
  std::string text = kNumericText;
  text.replace(text.find("\"-1\""), 4, "\"Missing\"");
  MCCatNumEncoder encoder(0);
  EXPECT_EQ(mctest::ReadSaved(encoder, text), 15);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.EncodeConst(1e300), 1.0);
}

TEST(SaveFormat, KeepsAnIntervalWithoutWidthThatAFileTells) {
  MCContEncoder encoder;
  const std::string text =
      "<Obj name=\"MCContEncoder\">\n<Int value=\"0\"/>\n<Int value=\"1\"/>\n"
      "<Double value=\"3\"/>\n<Double value=\"2\"/>\n<Int value=\"0\"/>\n</Obj>\n";
  EXPECT_EQ(mctest::ReadSaved(encoder, text), 7);
  double low = 0.0;
  double high = 0.0;
  EXPECT_TRUE(encoder.GetMissingInterval(low, high));
  EXPECT_EQ(low, 3.0);
  EXPECT_EQ(high, 2.0);
  EXPECT_FALSE(encoder.IsMissing(2.5));
  EXPECT_FALSE(encoder.SetMissingInterval(5.0, 6.0));
}

// ---- Random lists.

class RandomLists {
public:
  explicit RandomLists(std::uint64_t seed) : fBits(seed) {}

  MCVarList Next() {
    MCVarList list;
    const int n = Below(8);
    for (int i = 0; i < n; ++i) AddVariable(list);
    for (int i = 0; i < list.Size(); ++i) {
      if (Below(3) == 0) list.SetVariableRole(i, static_cast<VariableRole>(Below(9) - 1));
      if (Below(3) == 0) list.SetMissingValueReplacement(i, Text());
      list.GetVarAt(i)->SetVariableStorage(static_cast<VariableStorage>(Below(9) - 1));
      if (Below(2) == 0) DeclareMissing(*list.GetEncoderAt(i));
    }
    if (list.Size() > 0 && Below(4) == 0) list.RemoveVar(Below(list.Size()));
    return list;
  }

private:
  int Below(int n) { return static_cast<int>(fBits.Next() % static_cast<std::uint64_t>(n)); }

  double Number() {
    switch (Below(8)) {
      case 0:
        return std::nan("");
      case 1:
        return HUGE_VAL;
      case 2:
        return DBL_MAX;
      case 3:
        return MCMV::gMissingValue;
      case 4:
        return std::ldexp(static_cast<double>(fBits.Next()), Below(1800) - 1000);
      default:
        return 0.125 * (Below(2000) - 1000);
    }
  }

  std::string Text() {
    static const char kLetters[] = "abcxyz  &<>\"'\t\n\r=/\xC3\xA9";
    std::string text;
    for (int n = Below(12); n > 0; --n) text += kLetters[Below(sizeof kLetters - 1)];
    return text;
  }

  Texts TextList() {
    Texts texts;
    for (int n = Below(6); n > 0; --n) texts.push_back(Text());
    return texts;
  }

  Numbers NumberList() {
    Numbers numbers;
    for (int n = Below(6); n > 0; --n) numbers.push_back(Number());
    return numbers;
  }

  void AddVariable(MCVarList& list) {
    const std::string name = Text();
    const auto role = static_cast<VariableRole>(Below(7));
    switch (Below(6)) {
      case 0:
        list.AddCatVar(name, Text(), TextList(), TextList(), role);
        break;
      case 1:
        list.AddCatVar(name, Text(), NumberList(), TextList(), role);
        break;
      case 2:
        list.AddCatVar(name, Text(), Below(5),
                       Below(2) == 0 ? MC_LEVEL_CAT_NUM : MC_LEVEL_CAT_STRING, role);
        break;
      case 3:
        list.AddContVar(name, Text(), Number(), Number(), role, true, Below(5));
        break;
      case 4:
        list.AddContVar(name, Text(), NumberList(), true, role);
        break;
      default:
        list.SetWeightVar(name, Text(), static_cast<WRoundingOption>(Below(5) - 1));
    }
  }

  void DeclareMissing(IMCEncoder& encoder) {
    encoder.SetMissingInterval(Number(), Number());
    encoder.AddDiscreteUserMissing(Number(), Text());
    encoder.AddDiscreteUserMissing(Text(), Text());
  }

  mctest::SplitMix64 fBits;
};

// What is told to come back of a number: 15 digits of it, 0 where it isn't finite.
double Back(double value) {
  if (value == MCMV::gMissingValue) return value;
  if (!std::isfinite(value)) return 0.0;
  std::stringstream stream;
  stream.imbue(std::locale::classic());
  stream << std::setprecision(15) << value;
  double back = 0.0;
  stream >> back;  // of a number that is too large: the largest
  return back;
}

// What is told to come back of a text: its escapes.
std::string Back(const std::string& text) {
  std::string back;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isSecondOfTwo = text[i] == ' ' && !back.empty() && back.back() == ' ';
    switch (text[i]) {
      case '&':
        back += "&amp;";
        break;
      case '<':
        back += "&lt;";
        break;
      case '>':
        back += "&gt;";
        break;
      case '"':
        back += "&quot;";
        break;
      case '\t':
        back += "&#9;";
        break;
      case '\n':
        back += "&#10;";
        break;
      case '\r':
        back += "&#13;";
        break;
      default:
        back += isSecondOfTwo ? "&#32;" : std::string(1, text[i]);
    }
  }
  if (!back.empty() && back.front() == ' ') back.replace(0, 1, "&#32;");
  if (!back.empty() && back.back() == ' ') back.replace(back.size() - 1, 1, "&#32;");
  return back;
}

template <class Value>
std::vector<Value> Back(const std::vector<Value>* values) {
  std::vector<Value> back;
  for (const Value& value : *values) back.push_back(Back(value));
  return back;
}

template <class Value>
void ExpectListBack(const std::vector<Value>* saved, const std::vector<Value>* read) {
  ASSERT_EQ(saved == nullptr, read == nullptr);
  if (saved != nullptr) {
    EXPECT_EQ(Back(saved), *read);
  }
}

// Numeric categories that 15 digits don't tell apart collapse, those that aren't finite to 0.
Numbers CategoriesBack(const IMCEncoder& encoder) {
  Numbers back;
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    const double value = Back(encoder.DecodeNum(code));
    if (std::find(back.begin(), back.end(), value) == back.end()) back.push_back(value);
  }
  return back;
}

void ExpectCodesBack(const IMCEncoder& saved, const IMCEncoder& read) {
  if (saved.GetEncoderType() == MC_ENC_CAT_NUM) {
    const Numbers values = CategoriesBack(saved);
    ASSERT_EQ(read.GetNumberOfCategories(), static_cast<int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
      EXPECT_EQ(read.DecodeNum(static_cast<int>(i)), values[i]);
    }
    return;
  }
  ASSERT_EQ(read.GetNumberOfCategories(), saved.GetNumberOfCategories());
  for (int code = 0; code < saved.GetNumberOfCategories(); ++code) {
    EXPECT_EQ(read.Decode(code), Back(saved.Decode(code)));
  }
}

void ExpectEncoderBack(const IMCEncoder& saved, const IMCEncoder& read) {
  ASSERT_EQ(read.GetEncoderType(), saved.GetEncoderType());
  ExpectCodesBack(saved, read);
  ExpectListBack(saved.GetValueLabels(), read.GetValueLabels());
  ExpectListBack(saved.GetMissValueLabels(), read.GetMissValueLabels());
  ExpectListBack(saved.GetDiscreteMissValues(), read.GetDiscreteMissValues());
  ExpectListBack(saved.GetDiscreteMissValuesStr(), read.GetDiscreteMissValuesStr());
  double low = 0.0;
  double high = 0.0;
  double lowRead = 0.0;
  double highRead = 0.0;
  EXPECT_EQ(read.GetMissingInterval(lowRead, highRead), saved.GetMissingInterval(low, high));
  EXPECT_EQ(lowRead, Back(low));
  EXPECT_EQ(highRead, Back(high));
}

// What one of the classes of variables has beside the interface.
void ExpectOwnBack(const IMCVariable& saved, const IMCVariable& read) {
  if (const auto* cat = dynamic_cast<const MCCatVar*>(&saved)) {
    const auto& catRead = dynamic_cast<const MCCatVar&>(read);
    EXPECT_EQ(catRead.GetNumberOfCategories(), cat->GetNumberOfCategories());
    EXPECT_EQ(catRead.GetOrdinalFlag(), cat->GetOrdinalFlag());
    EXPECT_EQ(catRead.GetVariableRole(), cat->GetVariableRole());
  } else if (const auto* cont = dynamic_cast<const MCContVar*>(&saved)) {
    const auto& contRead = dynamic_cast<const MCContVar&>(read);
    EXPECT_EQ(contRead.GetNBins(), cont->GetNBins());
    EXPECT_EQ(contRead.GetMin(), Back(cont->GetMin()));
    EXPECT_EQ(contRead.GetMax(), Back(cont->GetMax()));
    EXPECT_EQ(contRead.GetVariableRole(), MC_ROLE_INPUT);
    const auto* encoder = dynamic_cast<const MCContEncoder*>(contRead.GetEncoder());
    EXPECT_EQ(encoder->GetBinningEncoder(), nullptr);
  } else {
    for (const double weight : {0.4, 2.5, 2.9}) {
      if (saved.GetEncoder()->IsMissing(weight)) continue;
      EXPECT_EQ(read.GetEncoder()->EncodeConst(weight), saved.GetEncoder()->EncodeConst(weight));
    }
  }
}

void ExpectVariableBack(const IMCVariable& saved, const IMCVariable& read) {
  EXPECT_EQ(read.GetVariableName(), Back(saved.GetVariableName()));
  EXPECT_EQ(read.GetVariableLabel(), Back(saved.GetVariableLabel()));
  EXPECT_EQ(read.GetMeasureLevel(), saved.GetMeasureLevel());
  EXPECT_EQ(read.GetVariableStorage(), saved.GetVariableStorage());
  const std::string* replacement = saved.GetMissingValueReplacement();
  const std::string* replacementRead = read.GetMissingValueReplacement();
  ASSERT_EQ(replacement == nullptr, replacementRead == nullptr);
  if (replacement != nullptr) {
    EXPECT_EQ(*replacementRead, Back(*replacement));
  }
  ExpectEncoderBack(*saved.GetEncoder(), *read.GetEncoder());
  ExpectOwnBack(saved, read);
}

// The last lines of a saved list: its counters and places.
std::string CountersOf(const MCVarList& list) {
  const std::string saved = mctest::Saved(list);
  std::size_t at = saved.size();
  for (int i = 0; i < 6; ++i) at = saved.rfind('\n', at - 1);
  return saved.substr(at);
}

std::string WeightOf(const MCVarList& list) {
  Texts names;
  std::string weight = "none";
  list.GetVarNames(names, weight);
  return weight;
}

void ExpectListsBack(std::uint64_t seed, int nLists) {
  RandomLists lists(seed);
  MCVarList read;
  for (int i = 0; i < nLists && !testing::Test::HasFailure(); ++i) {
    const MCVarList list = lists.Next();
    mctest::ReadWhatIsSaved(read, list);
    ASSERT_EQ(read.Size(), list.Size());
    EXPECT_EQ(CountersOf(read), CountersOf(list));
    EXPECT_EQ(WeightOf(read), Back(WeightOf(list)));
    for (int v = 0; v < list.Size(); ++v) ExpectVariableBack(*list.GetVarAt(v), *read.GetVarAt(v));
  }
}

TEST(SaveFormat, BringsBackRandomListsButForWhatItLoses) {
  ExpectListsBack(20261121, 1000);
}

TEST(SaveFormat, BringsBackRandomListsUnderADecimalComma) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  ExpectListsBack(7, 200);
}

// ---- Damaged files.

// An object that went through a failed read: it still does all that it can.
void ExpectUsable(MCVarList& list) {
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(list.AddCatVar("c", "", Texts{"a"}, MC_ROLE_TARGET), 0);
  EXPECT_EQ(list.SetWeightVar("w", "", MC_ROUND_AS_IS), 1);
  EXPECT_EQ(list.FindVariable("w"), 1);
  mctest::Saved(MCVarList(list));
  EXPECT_TRUE(list.RemoveVar("c"));
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

TEST(SaveFormat, RefusesAListCutAtAnyByte) {
  const std::string text = kListText;
  for (std::size_t size = 0; size < text.size(); ++size) {
    MCVarList list = MakeList();
    const std::string errors = mctest::FailureOfReading(list, text.substr(0, size));
    EXPECT_TRUE(EndsWith(errors, "Failure reading MCVarList!\n")) << size;
    if (list.Size() == 4) list = MCVarList();  // the first line wasn't read
    ExpectUsable(list);
  }
}

TEST(SaveFormat, RefusesEncodersAndVariablesCutAtAnyByte) {
  const std::string numeric = kNumericText;
  for (std::size_t size = 0; size < numeric.size(); ++size) {
    MCCatNumEncoder encoder = MakeNumeric();
    EXPECT_EQ(mctest::FailureOfReading(encoder, numeric.substr(0, size)),
              "Failure reading MCCatNumEncoder!\n");
    mctest::Saved(MCCatNumEncoder(encoder));
    encoder.Encode(77.0);
    EXPECT_EQ(encoder.DecodeNum(encoder.GetNumberOfCategories() - 1), 77.0);
  }
  const std::string strings = mctest::Saved(MakeStrings());
  for (std::size_t size = 0; size < strings.size(); ++size) {
    MCStringEncoder encoder = MakeStrings();
    EXPECT_EQ(mctest::FailureOfReading(encoder, strings.substr(0, size)),
              "Failure reading MCStringEncoder!\n");
    mctest::Saved(MCStringEncoder(encoder));
    encoder.Encode(std::string("new"));
    EXPECT_EQ(encoder.Decode(encoder.GetNumberOfCategories() - 1), "new");
  }
}

TEST(SaveFormat, RefusesAListInWhichAnyLineIsLeftOutRepeatedOrSpoilt) {
  Texts lines;
  std::istringstream text(kListText);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  const auto joined = [&lines](std::size_t without, std::size_t twice, std::size_t spoilt) {
    std::string all;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (i == without) continue;
      all += (i == spoilt ? "\t<Other value=\"1\"/>" : lines[i]) + "\n";
      if (i == twice) all += lines[i] + "\n";
    }
    return all;
  };
  for (std::size_t i = 1; i < lines.size(); ++i) {
    MCVarList list;
    EXPECT_NE(mctest::FailureOfReading(list, joined(i, SIZE_MAX, SIZE_MAX)), "");
    EXPECT_NE(mctest::FailureOfReading(list, joined(SIZE_MAX, SIZE_MAX, i)), "");
    if (i + 1 < lines.size()) {
      EXPECT_NE(mctest::FailureOfReading(list, joined(SIZE_MAX, i, SIZE_MAX)), "");
    }
    ExpectUsable(list);
  }
}

TEST(SaveFormat, SaysOfEveryObjectThatItFailedInnermostFirst) {
  std::string text = kListText;
  const std::string before = "\t\t\t<String value=\"north\"/>\n";
  text.erase(text.find(before), before.size());
  MCVarList list;
  EXPECT_EQ(mctest::FailureOfReading(list, text),
            "Failure reading MCStringEncoder!\n"
            "Failure reading MCCatVar!\n"
            "Failure reading MCVarList!\n");
  text = kListText;
  text.replace(text.find("MCRoundEncoder"), 14, "MCContEncoder!");
  EXPECT_EQ(mctest::FailureOfReading(list, text),
            "Failure reading MCRoundEncoder!\n"
            "Failure reading MCWeightVar!\n"
            "Failure reading MCVarList!\n");
  text = kListText;
  text.replace(text.find("MCVarList"), 9, "MCVarlist");
  EXPECT_EQ(mctest::FailureOfReading(list, text), "Failure reading MCVarList!\n");
}

// The number of allocations and the largest of them bound the memory that a read takes.
template <class Object>
void ExpectCountRefused(Object& object, const std::string& text) {
  const std::size_t before = mctest::AllocationCount();
  mctest::ResetLargestAllocation();
  mctest::FailureOfReading(object, text);
  EXPECT_LT(mctest::AllocationCount() - before, 1000U);
  EXPECT_LT(mctest::LargestAllocation(), 100000U);
}

// A text with one of its numbers, told by what stands around it, replaced.
std::string With(std::string text, const std::string& before, const std::string& number) {
  const std::size_t at = text.find(before) + before.size();
  return text.replace(at, text.find('"', at) - at, number);
}

TEST(SaveFormat, BelievesNoCount) {
  const std::string numericLabels = "<Double value=\"1e+300\"/>\n\t<Int value=\"";
  const std::string numericMissing = "<Int value=\"0\"/>\n\t<Int value=\"";
  for (const char* count : {"2000000000", "2147483647", "-1", "-2147483648", "4294967290"}) {
    MCCatNumEncoder numeric(0);
    const std::string name = "\n<Obj name=\"MCCatNumEncoder\">\n\t<Int value=\"";
    ExpectCountRefused(numeric, With(kNumericText, name, count));
    ExpectCountRefused(numeric, With(kNumericText, numericLabels, count));
    ExpectCountRefused(numeric, With(kNumericText, numericMissing, count));
    MCStringEncoder strings(0);
    const std::string saved = mctest::Saved(MakeStrings());
    ExpectCountRefused(strings,
                       With(saved, "\n<Obj name=\"MCStringEncoder\">\n\t<Int value=\"", count));
    ExpectCountRefused(strings, With(saved, "<String value=\"\"/>\n\t<Int value=\"", count));
    MCVarList list;
    ExpectCountRefused(list, With(kListText, "\n<Obj name=\"MCVarList\">\n\t<Int value=\"", count));
    ExpectUsable(list);
  }
}

TEST(SaveFormat, RefusesCountsThatAreOneTooManyOrTooFew) {
  for (const char* count : {"2", "4"}) {
    MCCatNumEncoder numeric(0);
    const std::string name = "\n<Obj name=\"MCCatNumEncoder\">\n\t<Int value=\"";
    EXPECT_EQ(mctest::FailureOfReading(numeric, With(kNumericText, name, count)),
              "Failure reading MCCatNumEncoder!\n");
  }
  for (const char* count : {"3", "5"}) {
    MCVarList list;
    const std::string name = "\n<Obj name=\"MCVarList\">\n\t<Int value=\"";
    EXPECT_NE(mctest::FailureOfReading(list, With(kListText, name, count)), "");
    ExpectUsable(list);
  }
}

TEST(SaveFormat, RefusesFlagsThatAreNeitherZeroNorOne) {
  for (const char* flag : {"2", "-1", "99"}) {
    MCContEncoder encoder;
    const std::string before = "MCContEncoder\">\n\t<Int value=\"0\"/>\n\t<Int value=\"";
    EXPECT_EQ(mctest::FailureOfReading(encoder, With(mctest::Saved(MCContEncoder()), before, flag)),
              "Failure reading MCContEncoder!\n");
  }
}

TEST(SaveFormat, RefusesAStreamThatIsNotOpen) {
  std::ifstream closed;
  MCVarList list = MakeList();
  const mctest::StreamCapture errors(std::cerr);
  EXPECT_THROW(list.ReadObjectXML(closed), IOException);
  EXPECT_EQ(errors.Text(), "Failure reading MCVarList!\n");
}

TEST(SaveFormat, SurvivesAnyByteThatIsChanged) {
  mctest::SplitMix64 bits(4);
  const std::string text = kListText;
  for (int i = 0; i < 3000; ++i) {
    std::string damaged = text;
    for (int k = 0; k < 1 + i % 3; ++k) {
      damaged[bits.Next() % damaged.size()] = static_cast<char>(bits.Next());
    }
    MCVarList list;
    mctest::TextFile file(damaged);
    const mctest::StreamCapture errors(std::cerr);
    const mctest::StreamCapture output(std::cout);
    try {
      list.ReadObjectXML(file.Stream());
    } catch (const IOException&) {
      ExpectUsable(list);
    }
    mctest::Saved(MCVarList(list));
  }
}

}  // namespace
