// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/parseddocument.h"
#include "support/leaksallowed.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <string>

using mctest::ParsedDocument;
using mctest::Repeat;

// What a document from a stranger can do, with the strict setting off and on.

namespace {

/// Writes what is nobody's business into the folder. The file's address.
std::string SecretFile(const mctest::TemporaryFolder& folder, const char* text) {
  return "file://" + folder.Write("secret.txt", text);
}

/// Each of `levels` entities is ten times the one before.
std::string Multiplying(int levels, const std::string& kind, const std::string& reference) {
  std::string text = "<!DOCTYPE a [<!ENTITY " + kind + "e0 '<!--x-->'>";
  for (int i = 1; i <= levels; ++i) {
    text += "<!ENTITY " + kind + "e" + std::to_string(i) + " '" +
            Repeat(reference + "e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  return text;
}

}  // namespace

TEST(StrictReading, NamesLineAndColumnOfTheFirstError) {
  for (const auto& [text, message] : std::initializer_list<std::pair<const char*, const char*>>{
           {"", "line 1, column 1: invalid document structure"},
           {"<a>\n <b>\n</a>", "line 3, column 3: expected end of tag 'b'"},
           {"<a>\n<b>x",
            "line 2, column 5: input ended before all started tags were ended; last "
            "tag started is 'b'"},
           {"<a/>\n<b/><c/>", "line 2, column 1: comment or processing instruction expected"},
           {"<a>&undeclared;</a>", "line 1, column 16: entity 'undeclared' not found"},
           {"<a b='1' b='2'/>",
            "line 1, column 12: attribute 'b' is already specified for element 'a'"},
           {"<a>\xC3\xB6</\xC3\xB6>", "line 1, column 7: expected end of tag 'a'"},
           {"<\xC3\xB6>",
            "line 1, column 4: input ended before all started tags were ended; last "
            "tag started is '\xC3\xB6'"}}) {
    ParsedDocument document(text, true);
    EXPECT_EQ(document.Code(), 104) << text;
    EXPECT_EQ(document.Message(), message) << text;
    EXPECT_EQ(document.Reader().GetDocument(), nullptr) << text;
  }
}

TEST(StrictReading, AcceptsWhatIsWellFormed) {
  for (const std::string& text :
       {std::string("<a>x</a>"), "<a>" + Repeat("&lt;", 1000) + Repeat("&#65;", 1000) + "</a>",
        std::string("<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a b CDATA #IMPLIED>]><a b='1'/>"),
        "<a b='" + std::string(1000000, 'x') + "'/>", Repeat("<a>", 10000) + Repeat("</a>", 10000),
        Repeat("<a>", 1000000) + Repeat("</a>", 1000000)}) {
    ParsedDocument document(text, true);
    EXPECT_EQ(document.Code(), 0) << text.substr(0, 80) << document.Message();
  }
}

TEST(PlainReading, PullsLocalFilesIntoADocumentAndStrictReadingRefuses) {
  const mctest::TemporaryFolder folder;
  const std::string secret = SecretFile(folder, "the secret");
  const std::string text = "<!DOCTYPE a [<!ENTITY e SYSTEM '" + secret + "'>]><a>&e;</a>";
  EXPECT_EQ(ParsedDocument(text).Text(), "the secret");
  ParsedDocument strict(text, true);
  EXPECT_EQ(strict.Code(), 104);
  EXPECT_NE(strict.Message().find("unable to open external entity '" + secret + "'"),
            std::string::npos)
      << strict.Message();
}

TEST(PlainReading, PullsLocalFilesIntoADocumentTypeAndStrictReadingRefuses) {
  const mctest::TemporaryFolder folder;
  const std::string secret = SecretFile(folder, "<!ENTITY secret 'the secret'>");
  const std::string text =
      "<!DOCTYPE a [<!ENTITY % e SYSTEM '" + secret + "'> %e;]><a>&secret;</a>";
  EXPECT_EQ(ParsedDocument(text).Text(), "the secret");
  EXPECT_EQ(ParsedDocument(text, true).Code(), 104);
}

TEST(StrictReading, DoesNotFetchAnExternalDocumentType) {
  const mctest::LeaksAllowed allowed;
  const mctest::TemporaryFolder folder;
  const std::string secret = SecretFile(folder, "<!ENTITY secret 'the secret'>");
  const std::string used = "<!DOCTYPE a SYSTEM '" + secret + "'><a>&secret;</a>";
  EXPECT_EQ(ParsedDocument(used).Text(), "the secret");
  EXPECT_EQ(ParsedDocument(used, true).Text(), "");
  // A document type that isn't there ends a plain read before the root.
  const std::string missing = "<!DOCTYPE a SYSTEM 'file:///no/such.dtd'><a>x</a>";
  EXPECT_EQ(ParsedDocument(missing).Text(), "no root");
  ParsedDocument strict(missing, true);
  EXPECT_EQ(strict.Code(), 0);
  EXPECT_EQ(strict.Text(), "x");
}

TEST(StrictReading, BoundsHowOftenEntitiesExpand) {
  const std::string declared = "<!DOCTYPE a [<!ENTITY e 'xyz'>]>";
  for (const auto& [before, after] : std::initializer_list<std::pair<const char*, const char*>>{
           {"<a>", "</a>"}, {"<a b='", "'/>"}}) {
    EXPECT_EQ(ParsedDocument(declared + before + Repeat("&e;", 100) + after, true).Code(), 0);
    const std::string beyond = declared + before + Repeat("&e;", 101) + after;
    EXPECT_EQ(ParsedDocument(beyond).Code(), 0);
    ParsedDocument strict(beyond, true);
    EXPECT_EQ(strict.Code(), 104);
    EXPECT_NE(strict.Message().find("more than '100' entity expansions"), std::string::npos);
  }
}

TEST(StrictReading, RefusesEntitiesThatMultiplyAtOnce) {
  // Read plainly, 24 levels would never end.
  for (const auto& [kind, reference] :
       std::initializer_list<std::pair<const char*, const char*>>{{"", "&"}, {"% ", "&#37;"}}) {
    const auto text = [&, k = kind, r = reference](int levels) {
      const std::string last = "e" + std::to_string(levels) + ";";
      const std::string head = Multiplying(levels, k, r);
      return *k == 0 ? head + "]><a>&" + last + "</a>" : head + "%" + last + "]><a/>";
    };
    EXPECT_EQ(ParsedDocument(text(3)).Code(), 0);
    EXPECT_EQ(ParsedDocument(text(3), true).Code(), 104);
    EXPECT_EQ(ParsedDocument(text(24), true).Code(), 104);
  }
}

TEST(StrictReading, RefusesWhatElseLetsAShortDocumentGrow) {
  for (const auto& [text, message] : std::initializer_list<std::pair<const char*, const char*>>{
           {"<!DOCTYPE a [\n<!ENTITY % e 'x'>]><a/>",
            "line 2, column 18: parameter entities are not accepted"},
           {"<!DOCTYPE a [\n<!ATTLIST a b CDATA 'x'>]><a/>",
            "line 2, column 24: default values of attributes are not accepted"},
           {"<!DOCTYPE a [\n<!ATTLIST a b CDATA #FIXED 'x'>]><a/>",
            "line 2, column 31: default values of attributes are not accepted"}}) {
    EXPECT_EQ(ParsedDocument(text).Code(), 0) << text;
    ParsedDocument strict(text, true);
    EXPECT_EQ(strict.Code(), 104) << text;
    EXPECT_EQ(strict.Message(), message) << text;
  }
}

TEST(AnyReading, SaysWhereTheTreeRefusesWhatTheScannerLetsThrough) {
  const std::string version =
      "implementation does not support the requested type of object or operation";
  const std::string name =
      "attempt is made to create or change an object in a way which is incorrect with respect to "
      "namespaces";
  for (const auto& [text, message] : std::initializer_list<std::pair<const char*, std::string>>{
           {"<?xml version='1.9'?><a/>", "line 1, column 22: " + version},
           {"\n<!DOCTYPE a:b:c><a/>", "line 2, column 17: " + name},
           {"<!DOCTYPE :a [<!ENTITY e 'x'>]><a/>", "line 1, column 14: " + name}}) {
    for (const bool isStrict : {false, true}) {
      ParsedDocument document(text, isStrict);
      EXPECT_EQ(document.Code(), 104) << text;
      EXPECT_EQ(document.Message(), message) << text;
    }
  }
}

TEST(AnyReading, RefusesAnEntityThatXercesWouldCopyPastTheEndOfTheStack) {
  const auto text = [](std::size_t levels) {
    return "<!DOCTYPE a [<!ENTITY e '" + Repeat("<b>", levels) + Repeat("</b>", levels) +
           "'>]><a>&e;&e;</a>";
  };
  for (const bool isStrict : {false, true}) {
    EXPECT_EQ(ParsedDocument(text(9999), isStrict).Code(), 0);
    for (const std::size_t levels : {std::size_t{10000}, std::size_t{1000000}}) {
      ParsedDocument beyond(text(levels), isStrict);
      EXPECT_EQ(beyond.Code(), 104);
      EXPECT_NE(beyond.Message().find("elements of an entity are nested too deep"),
                std::string::npos);
    }
  }
}
