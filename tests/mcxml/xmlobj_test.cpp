// SPDX-License-Identifier: Apache-2.0
#include "mcxml/mcxml.h"
#include "support/localeguard.h"
#include "support/samebits.h"
#include "support/textfile.h"

#include <climits>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace {

using namespace MCCommonXML;
using mctest::TextFile;

template <class Value>
std::string SubElementOf(const Value& value) {
  std::ostringstream stream;
  EXPECT_EQ(XMLObj("x", 0).WriteSubElement(stream, value), 0);
  return stream.str();
}

TEST(XMLObj, KnowsItsNameAndPlace) {
  const XMLObj object("thing", 3);
  EXPECT_EQ(object.GetName(), "thing");
  EXPECT_EQ(object.GetNTabs(), 3);
}

TEST(XMLObj, WritesOneLineForEachValue) {
  std::ostringstream out;
  EXPECT_EQ(StartRoot(out, "(c) \"me\""), 0);
  const XMLObj object("a<b", 1);
  EXPECT_EQ(object.StartObj(out), 0);
  object.WriteSubElement(out, -1);
  object.WriteSubElement(out, 4294967295u);
  object.WriteSubElement(out, 7L);
  object.WriteSubElement(out, true);
  object.WriteSubElement(out, 0.1);
  object.WriteSubElement(out, "x & y");
  EXPECT_EQ(object.EndObj(out), 0);
  EXPECT_EQ(EndRoot(out), 0);
  EXPECT_EQ(out.str(),
            "<MCXMLRoot copyright=\"(c) &quot;me&quot;\">\n"
            "\t<Obj name=\"a<b\">\n"
            "\t\t<Int value=\"-1\"/>\n"
            "\t\t<Int value=\"4294967295\"/>\n"
            "\t\t<Long value=\"7\"/>\n"
            "\t\t<Int value=\"1\"/>\n"
            "\t\t<Double value=\"0.1\"/>\n"
            "\t\t<String value=\"x &amp; y\"/>\n"
            "\t</Obj>\n"
            "</MCXMLRoot>");
}

TEST(XMLObj, HasTwoNamesForItsRoot) {
  std::ostringstream root;
  std::ostringstream header;
  StartRoot(root, "c");
  EndRoot(root);
  EXPECT_EQ(WriteHeader(header, "c"), 0);
  EXPECT_EQ(EndHeader(header), 0);
  EXPECT_EQ(root.str(), header.str());
  EXPECT_EQ(XMLObj::SYSTEM_ID, "savexml.dtd");
}

TEST(XMLObj, WritesNumbersWithFifteenDigits) {
  EXPECT_EQ(SubElementOf(1234567890123456L), "\n\t<Long value=\"1.23456789012346e+15\"/>");
  EXPECT_EQ(SubElementOf(false), "\n\t<Int value=\"0\"/>");
  EXPECT_EQ(SubElementOf(INT_MIN), "\n\t<Int value=\"-2147483648\"/>");
  EXPECT_EQ(SubElementOf(MV::gMissingValue), "\n\t<Double value=\"Missing\"/>");
  EXPECT_EQ(SubElementOf(DBL_MAX), "\n\t<Double value=\"1.79769313486232e+308\"/>");
  EXPECT_EQ(SubElementOf(HUGE_VAL), "\n\t<Double value=\"inf\"/>");
  EXPECT_EQ(SubElementOf(std::string("a\tb")), "\n\t<String value=\"a&#9;b\"/>");
}

TEST(XMLObj, WritesTheSameInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  EXPECT_EQ(SubElementOf(1234.5), "\n\t<Double value=\"1234.5\"/>");
  EXPECT_EQ(SubElementOf(1234567890123456L), "\n\t<Long value=\"1.23456789012346e+15\"/>");
}

// What reading gives from one line: whether it is read, and the value, 77 if it is left alone.
template <class Value>
struct Parsed {
  bool isRead;
  Value value;
};

template <class Value>
Parsed<Value> Parse(const std::string& text, Value value) {
  TextFile file(text);
  const bool isRead = ParseValue(file.Stream(), value);
  return {isRead, value};
}

template <class Value>
void ExpectRead(const std::string& line, Value expected, Value before) {
  const Parsed<Value> parsed = Parse(line + "\n", before);
  EXPECT_TRUE(parsed.isRead) << line;
  EXPECT_EQ(parsed.value, expected) << line;
}

template <class Value>
void ExpectRefused(const std::string& text, Value before) {
  const Parsed<Value> parsed = Parse(text, before);
  EXPECT_FALSE(parsed.isRead) << text;
  EXPECT_EQ(parsed.value, before) << text;
}

TEST(ParseValue, ReadsIntegers) {
  ExpectRead("\t<Int value=\"-12\"/>", -12, 77);
  ExpectRead("Int value=12", 12, 77);
  ExpectRead("<Int value=\"12abc\"/>", 12, 77);
  ExpectRead("<Int value=\"1.9\"/>", 1, 77);
  ExpectRead("<Int value=\"4294967297\"/>", 1, 77);
  ExpectRead("<Int value=\"\"/>", 0, 77);
  ExpectRead("<Int value=\"x\"/>", 0, 77);
  ExpectRead("<Long value=\"-9000000000\"/>", -9000000000L, 77L);
  ExpectRead("<Long value=\"1.23456789012346e+15\"/>", 1L, 77L);
  ExpectRead("<Long value=\"99999999999999999999\"/>", LONG_MAX, 77L);
}

TEST(ParseValue, ReadsUnsignedIntegersInEveryForm) {
  ExpectRead("<Int value=\"4294967295\"/>", 4294967295u, 77u);
  ExpectRead("<Int value=\"4.29496729e+09\"/>", 4294967290u, 77u);
  ExpectRead("<Int value=\"-1\"/>", 4294967295u, 77u);
  ExpectRead("<Int value=\"1.9\"/>", 1u, 77u);
  ExpectRead("<Int value=\"1e300\"/>", 0u, 77u);
  ExpectRead("<Int value=\"-1e300\"/>", 0u, 77u);
  ExpectRead("<Int value=\"9223372036854775808\"/>", 0u, 77u);
  ExpectRead("<Int value=\"nan\"/>", 0u, 77u);
}

TEST(ParseValue, ReadsTruthAsZeroOrOne) {
  ExpectRead("<Int value=\"1\"/>", true, false);
  ExpectRead("<Int value=\"0\"/>", false, true);
  ExpectRefused("<Int value=\"2\"/>\n", true);
  ExpectRefused("<Int value=\"-1\"/>\n", true);
}

TEST(ParseValue, ReadsDoubles) {
  ExpectRead("<Double value=\"1234.5\"/>", 1234.5, 77.0);
  ExpectRead("<Double value=\"-1e-05\"/>", -1e-5, 77.0);
  ExpectRead("<Double value=\"+2\"/>", 2.0, 77.0);
  ExpectRead("<Double value=\"Missing\"/>", MV::gMissingValue, 77.0);
  ExpectRead("<Double value=\"Missingx\"/>", 0.0, 77.0);
  ExpectRead("<Double value=\"x\"/>", 0.0, 77.0);
  ExpectRead("<Double value=\"\"/>", 0.0, 77.0);
  ExpectRead("<Double value=\"nan\"/>", 0.0, 77.0);
  ExpectRead("<Double value=\"inf\"/>", 0.0, 77.0);
  ExpectRead("<Double value=\"1.79769313486232e+308\"/>", DBL_MAX, 77.0);
  ExpectRead("<Double value=\"-1.79769313486232e+308\"/>", -DBL_MAX, 77.0);
  ExpectRead("<Double value=\"5e-324\"/>", 5e-324, 77.0);
  ExpectRead("<Double value=\"-0\"/>", 0.0, 77.0);
}

TEST(ParseValue, ReadsTheSameInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  ExpectRead("<Double value=\"1234.5\"/>", 1234.5, 77.0);
  ExpectRead("<Double value=\"+1234.5\"/>", 1234.5, 77.0);
  ExpectRead("<Int value=\"4.29496729e+09\"/>", 4294967290u, 77u);
}

TEST(ParseValue, ReadsStringsWithTheirEscapes) {
  const std::string before = "before";
  ExpectRead("\t<String value=\"a b=c<d\"/>", std::string("a b=c<d"), before);
  ExpectRead("<String value=\"a &amp;&#32;b\"/>", std::string("a &amp;&#32;b"), before);
  ExpectRead("<String value=\"\"/>", std::string(), before);
  ExpectRead("<String value=\"\" />", std::string(), before);
  ExpectRead("<String value=\"", std::string(), before);
  ExpectRead("<String value=", std::string(), before);
  ExpectRead("<String value", std::string(), before);
  ExpectRead("<String value=\"cut", std::string("cut"), before);
  ExpectRead("<String value=\"cut\rx\"/>", std::string("cut"), before);
  ExpectRead("<String value=bare\"/>", std::string("bare"), before);
}

TEST(ParseValue, RefusesWhatIsAnotherThing) {
  for (const char* line : {"<Double value=\"1\"/>\n", "<Int valu=\"1\"/>\n", "<Int =\"1\"/>\n",
                           "<Int value=\n", "<Int\n", "\n", "<int value=\"1\"/>\n", ""}) {
    ExpectRefused(line, 77);
    ExpectRefused(line, 77u);
    ExpectRefused(line, true);
    ExpectRefused(line, 77L);
    ExpectRefused(line, std::string("before"));
  }
  ExpectRefused("<Int value=\"1\"/>\n", 77.0);
  ExpectRefused("<Double value=\n", 77.0);
}

TEST(ParseValue, NeedsTheEndOfTheLine) {
  ExpectRefused("<Int value=\"1\"/>", 77);
  ExpectRefused("<String value=\"1\"/>", std::string("before"));
}

TEST(ParseValue, ReadsLinesOf255Characters) {
  const std::string start = "<String value=\"";
  const std::string fitting(255 - start.size() - 1, 'x');
  ExpectRead(start + fitting + "\"", fitting, std::string());
  TextFile file(start + fitting + "x\"\n<Int value=\"1\"/>\n");
  std::string text;
  EXPECT_FALSE(ParseValue(file.Stream(), text));
  int value = 77;
  EXPECT_FALSE(ParseValue(file.Stream(), value));  // the stream has failed for good
}

TEST(ParseObj, ReadsWhatIsWritten) {
  std::ostringstream out;
  out << XMLUtil::FIRST_LINE << "\n<!DOCTYPE MCXMLRoot SYSTEM \"" << XMLObj::SYSTEM_ID << "\">\n";
  StartRoot(out, "c");
  const XMLObj object("MCThing x", 0);
  object.StartObj(out);
  object.WriteSubElement(out, 0.25);
  object.EndObj(out);
  EndRoot(out);
  TextFile file(out.str());
  double value = 0.0;
  EXPECT_TRUE(ParseStartXML(file.Stream()));
  EXPECT_TRUE(ParseStartObj(file.Stream(), "MCThing x"));
  EXPECT_TRUE(ParseValue(file.Stream(), value));
  EXPECT_EQ(value, 0.25);
  EXPECT_TRUE(ParseEndObj(file.Stream()));
  EXPECT_EQ(file.Rest(), "</MCXMLRoot>");
}

TEST(ParseObj, LooksAtTheFirstWordsOfAFile) {
  const struct {
    const char* text;
    bool isRead;
  } cases[] = {
      {"<?xml?>\n<!DOCTYPE\n<MCXMLRoot\n", false},
      {"<?xml \n<!DOCTYPE\n<MCXMLRoot\n", true},
      {"?xml\n !DOCTYPE x\n\"MCXMLRoot\"\n", true},
      {"<?xml \n<!DOCTYPE\n<MCXMLRoots\n", false},
      {"<?xml \n<MCXMLRoot\n<MCXMLRoot\n", false},
      {"<?xml \n<!DOCTYPE\n<MCXMLRoot", false},
      {"", false},
  };
  for (const auto& c : cases) {
    TextFile file(c.text);
    EXPECT_EQ(ParseStartXML(file.Stream()), c.isRead) << c.text;
  }
}

TEST(ParseObj, PassesOverOneEmptyLine) {
  const struct {
    const char* text;
    bool isRead;
  } cases[] = {
      {"<Obj name=\"x\">\n", true},
      {"\n<Obj name=\"x\">\n", true},
      {"\n\n<Obj name=\"x\">\n", false},
      {"\r\n<Obj name=\"x\">\n", false},
      {"<Obj name=\"y\">\n", false},
      {"<Obj nam=\"x\">\n", false},
      {"<Objs name=\"x\">\n", false},
      {"<Obj name=\"x\">", false},
      {"\n", false},
      {"", false},
      {"<Obj name\n", false},
      {"<Obj name=\"xx\">\n", false},
  };
  for (const auto& c : cases) {
    TextFile file(c.text);
    EXPECT_EQ(ParseStartObj(file.Stream(), "x"), c.isRead) << c.text;
  }
}

TEST(ParseObj, NeverReadsAnObjectWithoutName) {
  for (const char* text : {"<Obj name=\"\">\n", "<Obj name\n", "<Obj name=\n"}) {
    TextFile file(text);
    EXPECT_FALSE(ParseStartObj(file.Stream(), "")) << text;
  }
}

TEST(ParseObj, ReadsTheEnd) {
  const struct {
    const char* text;
    bool isRead;
  } cases[] = {
      {"\t</Obj>\n", true}, {"/Obj\n", true},     {"</ Obj>\n", false},
      {"<Obj>\n", false},   {"</Objs>\n", false}, {"</Obj>", false},
  };
  for (const auto& c : cases) {
    TextFile file(c.text);
    EXPECT_EQ(ParseEndObj(file.Stream()), c.isRead) << c.text;
  }
}

TEST(IOException, CarriesItsText) {
  try {
    throw MCCommonMetadata::IOException("why");
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "why");
  }
}

}  // namespace
