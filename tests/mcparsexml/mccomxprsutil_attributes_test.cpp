// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/parseddocument.h"
#include "regression/frame/mcmv.h"
#include "support/localeguard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <vector>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLException.hpp>

using namespace MCComXPrsUtil;
using mctest::ParsedDocument;
using mctest::Repeat;

namespace {

using Units16 = std::vector<unsigned short>;

constexpr double kUntouched = 12.5;
const double kMissing = MCMV::gMissingValue;

/// An element whose attribute "v" is that text, and its reading.
class Attribute {
public:
  explicit Attribute(const std::string& text) : fDocument("<a/>") {
    EXPECT_TRUE(SetAttribute(fDocument.Root(), "v", text.c_str()));
  }
  int AsDouble(double& value) { return GetDoubleAttribute(fDocument.Root(), "v", value); }
  int AsInt(int sign, int& value) { return GetIntAttribute(fDocument.Root(), "v", sign, value); }

private:
  ParsedDocument fDocument;
};

struct DoubleCase {
  const char* text;
  int answer;
  double value;
};

const DoubleCase gDoubles[] = {
    {"NaN", 0, kMissing},
    {" NaN\n", 0, kMissing},
    {"INF", 1, kUntouched},
    {"-INF", 1, kUntouched},
    {"+INF", 1, kUntouched},
    {"abc", 1, kUntouched},
    {"", 1, kUntouched},
    {"  ", 1, kUntouched},
    {"nan", 1, kUntouched},
    {"inf", 1, kUntouched},
    {"infinity", 1, kUntouched},
    {"0x10", 1, kUntouched},
    {"1,5", 1, kUntouched},
    {"1 2", 1, kUntouched},
    {"1.2.3", 1, kUntouched},
    {"--1", 1, kUntouched},
    {"+-1", 1, kUntouched},
    {"-", 1, kUntouched},
    {".", 1, kUntouched},
    {"e5", 1, kUntouched},
    {"1e", 1, kUntouched},
    {"1e+", 1, kUntouched},
    {"1e400", 1, kUntouched},  // beyond doubles: an infinity
    {"-1e400", 1, kUntouched},
    {"1e-400", 0, 0.0},  // as is what is too small
    {"1e-310", 0, 0.0},
    {"2.2250738585072014e-308", 0, std::numeric_limits<double>::min()},
    {"1.7976931348623157e308", 0, std::numeric_limits<double>::max()},
    {"-1.7976931348623157e+308", 0, kMissing},
    {"0", 0, 0.0},
    {"0.0", 0, 0.0},
    {"000", 0, 0.0},
    {"0e5", 0, 0.0},
    {"1", 0, 1.0},
    {"+1.5", 0, 1.5},
    {"-1.5", 0, -1.5},
    {"1.", 0, 1.0},
    {".5", 0, 0.5},
    {" \t\r\n 2.5 \t\r\n ", 0, 2.5},
    {"12345678901234567890", 0, 12345678901234567890.0},
    {"0.1", 0, 0.1},
    {"1e23", 0, 1e23},
    {"9007199254740993", 0, 9007199254740992.0},
    {"0.1000000000000000055511151231257827021181583404541015625", 0, 0.1},
};

struct IntCase {
  const char* text;
  int negative, zero, positive;  // the answers for each demand on the sign
  int value;
};

constexpr int kNoInt = -77;

const IntCase gInts[] = {
    {"5", 0, 0, 0, 5},
    {"0", 0, 0, 1, 0},
    {"-0", 0, 0, 1, 0},
    {"-5", 0, 1, 1, -5},
    {"+7", 0, 0, 0, 7},
    {"007", 0, 0, 0, 7},
    {" \t8\r\n", 0, 0, 0, 8},
    {"2147483647", 0, 0, 0, 2147483647},
    {"-2147483648", 0, 1, 1, std::numeric_limits<int>::min()},
    {"", 1, 1, 1, kNoInt},
    {"  ", 1, 1, 1, kNoInt},
    {"+", 1, 1, 1, kNoInt},
    {"-", 1, 1, 1, kNoInt},
    {"1.0", 1, 1, 1, kNoInt},
    {"1e3", 1, 1, 1, kNoInt},
    {"1 2", 1, 1, 1, kNoInt},
    {"x", 1, 1, 1, kNoInt},
    {"--5", 1, 1, 1, kNoInt},
    {"NaN", 1, 1, 1, kNoInt},
    // Xerces would keep 32 bits of these.
    {"2147483648", 1, 1, 1, kNoInt},
    {"-2147483649", 1, 1, 1, kNoInt},
    {"4294967297", 1, 1, 1, kNoInt},
    {"99999999999999999999999999", 1, 1, 1, kNoInt},
};

std::string Shown(const std::vector<double>& values) {
  std::string text;
  for (const double value : values) {
    text += value == kMissing ? "missing " : std::to_string(static_cast<int>(value)) + " ";
  }
  return text;
}

}  // namespace

TEST(AttributesOfAnElement, AreNullIfThereAreNone) {
  ParsedDocument document("<a b='1' c='' d='&#233;&amp;'>x</a>");
  const xercesc::DOMElement& root = document.Root();
  const xercesc::DOMNode& node = root;
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(root, "b"), "1"));
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(node, "d"), "\xC3\xA9&"));
  ASSERT_NE(GetAttribute(root, "c"), nullptr);
  EXPECT_EQ(GetAttribute(root, "c")[0], 0);
  EXPECT_EQ(GetAttribute(root, "e"), nullptr);
  EXPECT_EQ(GetAttribute(node, "e"), nullptr);
  EXPECT_EQ(GetAttribute(root, nullptr), nullptr);
  EXPECT_EQ(GetAttribute(*root.getFirstChild(), "b"), nullptr);
  const xercesc::DOMNode& whole = document.Document();
  EXPECT_EQ(GetAttribute(whole, "b"), nullptr);
}

TEST(AttributesOfAnElement, HaveNamesOfAnyLengthAndAlphabet) {
  const std::string names[] = {"b",
                               std::string(31, 'c'),
                               std::string(32, 'd'),
                               std::string(400, 'e'),
                               "\xC3\xA9",
                               std::string(40, 'f') + "\xC3\xA9"};
  std::string text = "<a";
  for (const std::string& name : names) text += " " + name + "='" + name + "'";
  ParsedDocument document(text + "/>");
  for (const std::string& name : names) {
    EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(document.Root(), name.c_str()), name.c_str()));
    EXPECT_EQ(GetAttribute(document.Root(), (name + "x").c_str()), nullptr);
  }
}

TEST(AttributesOfAnElement, AreReadAsDoubles) {
  for (const DoubleCase& test : gDoubles) {
    double value = kUntouched;
    EXPECT_EQ(Attribute(test.text).AsDouble(value), test.answer) << test.text;
    EXPECT_EQ(value, test.value) << test.text;
  }
  double value = kUntouched;
  EXPECT_EQ(GetDoubleAttribute(ParsedDocument("<a/>").Root(), "v", value), -1);
  EXPECT_EQ(value, kUntouched);
  EXPECT_EQ(Attribute("-0.0").AsDouble(value), 0);
  EXPECT_TRUE(value == 0.0 && std::signbit(value));
}

TEST(AttributesOfAnElement, AreReadAsXercesReadsThem) {
  const MCXMLReadWrite xerces;
  struct Opened : xercesc::XMLDouble {
    using XMLDouble::getType;
    using XMLDouble::getValue;
    using XMLDouble::XMLDouble;
  };
  for (const DoubleCase& test : gDoubles) {
    const Units16 text = ToUTF16(test.text);
    const std::u16string units(text.begin(), text.end() - 1);
    int answer = 1;
    double expected = kUntouched;
    try {
      const Opened literal(units.c_str());
      if (literal.getType() == Opened::Normal) {
        answer = 0;
        expected = literal.getValue();
      }
      if (literal.getType() == Opened::NaN) {
        answer = 0;
        expected = kMissing;
      }
    } catch (const xercesc::XMLException&) {
    }
    EXPECT_EQ(answer, test.answer) << test.text;
    EXPECT_EQ(expected, test.value) << test.text;
  }
}

TEST(AttributesOfAnElement, AreReadAsIntsOfAWantedSign) {
  for (const IntCase& test : gInts) {
    for (const auto& [sign, answer] : {std::pair{-1, test.negative},
                                       {-9, test.negative},
                                       {0, test.zero},
                                       {1, test.positive},
                                       {9, test.positive}}) {
      int value = kNoInt;
      EXPECT_EQ(Attribute(test.text).AsInt(sign, value), answer) << test.text << " " << sign;
      EXPECT_EQ(value, test.value) << test.text << " " << sign;
    }
  }
  int value = kNoInt;
  EXPECT_EQ(GetIntAttribute(ParsedDocument("<a/>").Root(), "v", 0, value), -1);
  EXPECT_EQ(value, kNoInt);
}

TEST(AttributesOfAnElement, AreIntsWhereXercesReadsIntsThatFit) {
  const MCXMLReadWrite xerces;
  for (const IntCase& test : gInts) {
    const std::string text = test.text;
    if (test.value == kNoInt && text.size() >= 10) continue;  // too large for an int
    const Units16 units = ToUTF16(test.text);
    int expected = kNoInt;
    try {
      expected =
          xercesc::XMLBigInteger(std::u16string(units.begin(), units.end() - 1).c_str()).intValue();
    } catch (const xercesc::XMLException&) {
    }
    EXPECT_EQ(expected, test.value) << text;
  }
}

TEST(ListsOfDoubles, AreReadFromOneText) {
  const struct {
    const char* document;
    bool answer;
    const char* list;
  } cases[] = {
      {"<a>1 NaN 3</a>", true, "1 missing 3 "},
      {"<a/>", true, ""},
      {"<a></a>", true, ""},
      {"<a> \t\n </a>", true, ""},
      {"<a>\n1\t2\r\n 3  </a>", true, "1 2 3 "},
      {"<a>7</a>", true, "7 "},
      {"<a>&#49;&#32;&#50;</a>", true, "1 2 "},
      {"<a>1\xC2\xA0"
       "2</a>",
       false, ""},  // no white space in XML
      {"<a>1,2</a>", false, ""},
      {"<a>1 x 3</a>", false, ""},
      {"<a>1 INF</a>", false, ""},
      {"<a>1<!--c-->2</a>", false, "8 9 "},
      {"<a>1<!--c--></a>", false, "8 9 "},
      {"<a><!--c--></a>", false, "8 9 "},
      {"<a><b/></a>", false, "8 9 "},
      {"<a><![CDATA[1 2]]></a>", false, "8 9 "},
      {"<!DOCTYPE a [<!ENTITY e '1 2'>]><a>&e;</a>", false, "8 9 "},
  };
  for (const auto& [text, answer, expected] : cases) {
    ParsedDocument document(text);
    std::vector<double> list = {8.0, 9.0};
    EXPECT_EQ(AssembleDoublesList(document.Root(), list), answer) << text;
    EXPECT_EQ(Shown(list), expected) << text;
  }
}

TEST(ListsOfDoubles, AreReadInTimeLinearInTheText) {
  // Quadratic time, as that of Xerces's tokenizer, is minutes for these.
  ParsedDocument document("<a>" + Repeat("0.12345 ", 1000000) + "</a>");
  std::vector<double> list;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(AssembleDoublesList(document.Root(), list));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
  EXPECT_EQ(list, std::vector<double>(1000000, 0.12345));
}

TEST(AttributesOfAnElement, AreReadAndSetWithADecimalPointInEveryLocale) {
  const mctest::LocaleGuard locale("de_DE.UTF-8");
  ASSERT_TRUE(locale.IsSet());
  double value = 0.0;
  EXPECT_EQ(Attribute("1.5").AsDouble(value), 0);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(Attribute("+1.5").AsDouble(value), 0);  // on the longer road
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(Attribute("1,5").AsDouble(value), 1);
  ParsedDocument document("<a>1.5 2.5</a>");
  std::vector<double> list;
  EXPECT_TRUE(AssembleDoublesList(document.Root(), list));
  EXPECT_EQ(list, (std::vector<double>{1.5, 2.5}));
  EXPECT_TRUE(SetAttribute(document.Root(), "v", 0.1));
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(document.Root(), "v"), "0.1"));
}

TEST(AttributesOfAnElement, AreSetInPlaceOfTheSame) {
  ParsedDocument document("<a v='1'/>");
  xercesc::DOMElement& root = document.Root();
  const auto shown = [&root](const char* name) { return ToUTF8(GetAttribute(root, name)); };
  EXPECT_TRUE(SetAttribute(root, "v", "<\xC3\xA9>"));
  EXPECT_EQ(shown("v"), "<\xC3\xA9>");
  EXPECT_TRUE(SetAttribute(root, "v", static_cast<const char*>(nullptr)));
  EXPECT_EQ(shown("v"), "");
  EXPECT_TRUE(SetAttribute(root, "w", "2"));
  EXPECT_EQ(root.getAttributes()->getLength(), 2U);
  // 15 significant digits.
  for (const auto& [value, text] : {std::pair{0.1 + 0.2, "0.3"},
                                    {1e100, "1e+100"},
                                    {-1234567.0, "-1234567"},
                                    {kMissing, "-1.79769313486232e+308"}}) {
    EXPECT_TRUE(SetAttribute(root, "v", value));
    EXPECT_EQ(shown("v"), text);
  }
}

TEST(AttributesOfAnElement, AreNotSetWhereTheyCannotBe) {
  ParsedDocument document("<!DOCTYPE a [<!ENTITY e '<b v=\"1\"/>'>]><a>&e;</a>");
  for (const char* name : {"", "1", "a b", "<"}) {
    EXPECT_FALSE(SetAttribute(document.Root(), name, "x")) << name;
    EXPECT_FALSE(SetAttribute(document.Root(), name, 1.0)) << name;
  }
  EXPECT_EQ(document.Root().getAttributes()->getLength(), 0U);
  // What an entity expands to can't be changed.
  xercesc::DOMElement* fixed = GetFirstChildElmt(*document.Root().getFirstChild(), "b");
  ASSERT_NE(fixed, nullptr);
  EXPECT_FALSE(SetAttribute(*fixed, "v", "2"));
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(*fixed, "v"), "1"));
}
