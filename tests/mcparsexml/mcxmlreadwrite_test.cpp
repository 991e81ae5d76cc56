// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxmlreadwrite.h"

#include "mcparsexml/parseddocument.h"
#include "support/countingallocator.h"
#include "support/leaksallowed.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <streambuf>

using MCComXPrsUtil::MCXMLReadWrite;
using mctest::ParsedDocument;
using mctest::Repeat;
using mctest::TemporaryFolder;
using testing::HasSubstr;

namespace {

std::string Written(ParsedDocument& document) {
  const TemporaryFolder folder;
  EXPECT_TRUE(document.Reader().WriteFromDOM(folder.Path("a.xml"), nullptr).IsOK());
  return folder.Read("a.xml");
}

std::string UTF16(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::string Nested(std::size_t levels) {
  return Repeat("<a>", levels) + Repeat("</a>", levels);
}

}  // namespace

TEST(MCXMLReadWrite, StartsWithoutDocumentAndPlain) {
  const MCXMLReadWrite reader;
  EXPECT_TRUE(reader.GetInitStatus().IsOK());
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_FALSE(reader.IsStrict());
}

TEST(MCXMLReadWrite, ReadsAStreamFromWhereItStands) {
  MCXMLReadWrite reader;
  std::istringstream stream("before<a>x</a>");
  stream.seekg(6);
  EXPECT_TRUE(reader.ParseToDOM(stream).IsOK());
  const MCXMLReadWrite& same = reader;
  EXPECT_EQ(same.GetDocument(), reader.GetDocument());
  EXPECT_TRUE(MCComXPrsUtil::TagNameEquals(*reader.GetDocument()->getDocumentElement(), "a"));
}

TEST(MCXMLReadWrite, ReadsAFile) {
  const TemporaryFolder folder;
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM(folder.Write("a.xml", "<a><b/></a>")).IsOK());
  EXPECT_EQ(mctest::ChildTags(*reader.GetDocument()->getDocumentElement()), "b");
}

TEST(MCXMLReadWrite, ReadsWhatTheDeclarationSaysAndWritesItBackSo) {
  const std::string expected =
      "Gr\xC3\xB6\xC3\x9F"
      "e";
  const std::string latin1 =
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>Gr\xF6\xDF"
      "e</a>";
  const std::string texts[] = {
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>" + expected + "</a>",
      "<a>" + expected + "</a>",
      "\xEF\xBB\xBF<a>" + expected + "</a>",
      latin1,
      UTF16(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>Gr\u00F6\u00DFe</a>"),
  };
  for (const std::string& text : texts) {
    ParsedDocument document(text);
    EXPECT_EQ(document.Text(), expected) << text;
    ParsedDocument again(Written(document));
    EXPECT_EQ(again.Text(), expected) << text;
  }
  ParsedDocument document(latin1);
  EXPECT_NE(Written(document).find("Gr\xF6\xDF"
                                   "e"),
            std::string::npos);
}

TEST(MCXMLReadWrite, TakesWhatStandsBeforeAnErrorForTheDocument) {
  for (const auto& [text, content] :
       std::initializer_list<std::pair<const char*, const char*>>{{"", "no root"},
                                                                  {"no xml", "no root"},
                                                                  {"<a>x<b>y</a>", "xy"},
                                                                  {"<a><b>x", "x"},
                                                                  {"<a>x</a><b/>", "x"},
                                                                  {"<a>x&undeclared;y</a>", "x"}}) {
    ParsedDocument document(text);
    EXPECT_EQ(document.Code(), 0) << text;
    EXPECT_EQ(document.Message(), "") << text;
    EXPECT_EQ(document.Text(), content) << text;
  }
}

TEST(MCXMLReadWrite, RefusesFilesThatCannotBeRead) {
  const mctest::LeaksAllowed allowed;
  MCXMLReadWrite reader;
  const TemporaryFolder folder;
  const std::string missing = folder.Path("none.xml");
  for (const std::string& name : {missing, folder.Path(""), std::string()}) {
    const MCCommon::MCStatus status = reader.ParseToDOM(name);
    EXPECT_EQ(status, MCCommon::MCStatus(104, false)) << name;
    EXPECT_EQ(reader.GetDocument(), nullptr);
  }
  reader.SetStrict(true);
  EXPECT_EQ(reader.ParseToDOM(missing).GetErrorCode(), 104);
  EXPECT_EQ(reader.GetXercesMessage(), "unable to open primary document entity '" + missing + "'");
}

TEST(MCXMLReadWrite, EachReadReplacesTheDocumentAndAFailedOneLeavesNone) {
  MCXMLReadWrite reader;
  for (const bool isStrict : {false, true, false}) {
    reader.SetStrict(isStrict);
    std::istringstream first("<a/>");
    EXPECT_TRUE(reader.ParseToDOM(first).IsOK());
    EXPECT_NE(reader.GetDocument(), nullptr);
    std::istringstream cut("<a><b>");
    EXPECT_EQ(reader.ParseToDOM(cut).IsOK(), !isStrict);
    EXPECT_EQ(reader.GetDocument() == nullptr, isStrict);
    EXPECT_EQ(reader.GetXercesMessage().empty(), !isStrict);
    std::istringstream last("<a/>");
    EXPECT_TRUE(reader.ParseToDOM(last).IsOK());
    EXPECT_EQ(reader.GetXercesMessage(), "");
  }
}

TEST(MCXMLReadWrite, ReadsAStreamThatThrowsAtItsEnd) {
  MCXMLReadWrite reader;
  std::istringstream stream("<a/>");
  stream.exceptions(std::ios::failbit | std::ios::eofbit);
  EXPECT_TRUE(reader.ParseToDOM(stream).IsOK());
  EXPECT_NE(reader.GetDocument()->getDocumentElement(), nullptr);
}

TEST(MCXMLReadWrite, LetsTheExceptionsOfAHostsStreamPassAndGoesOn) {
  const mctest::LeaksAllowed allowed;
  struct Broken : std::streambuf {
    int_type underflow() override { throw std::runtime_error("broken"); }
  } buffer;
  std::istream stream(&buffer);
  stream.exceptions(std::ios::badbit);
  MCXMLReadWrite reader;
  EXPECT_THROW(static_cast<void>(reader.ParseToDOM(stream)), std::runtime_error);
  EXPECT_EQ(reader.GetDocument(), nullptr);
  std::istringstream good("<a/>");
  EXPECT_TRUE(reader.ParseToDOM(good).IsOK());
}

TEST(MCXMLReadWrite, WritesWhiteSpaceAsItStands) {
  const std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?><a>\n  <b c=\"1 &lt; 2\"/> "
      "x &amp; y\n\n</a>";
  ParsedDocument document(text);
  EXPECT_EQ(Written(document), text);
}

TEST(MCXMLReadWrite, WritesAnotherDocumentThanItsOwn) {
  ParsedDocument own("<a/>");
  ParsedDocument other("<b/>");
  const TemporaryFolder folder;
  EXPECT_TRUE(own.Reader().WriteFromDOM(folder.Path("b.xml"), &other.Document()).IsOK());
  EXPECT_THAT(folder.Read("b.xml"), HasSubstr("<b/>"));
  const MCXMLReadWrite without;
  EXPECT_TRUE(without.WriteFromDOM(folder.Path("a.xml"), &own.Document()).IsOK());
  EXPECT_THAT(folder.Read("a.xml"), HasSubstr("<a/>"));
}

TEST(MCXMLReadWrite, WritesNothingWithoutADocument) {
  const MCXMLReadWrite reader;
  const TemporaryFolder folder;
  EXPECT_EQ(reader.WriteFromDOM(folder.Path("a.xml"), nullptr), reader.GetInitStatus());
  EXPECT_FALSE(folder.Has("a.xml"));
}

TEST(MCXMLReadWrite, SaysWhyAFileCannotBeWritten) {
  ParsedDocument small("<a/>");
  ParsedDocument large("<a>" + std::string(100000, 'x') + "</a>");
  const TemporaryFolder place;
  const std::string folder = place.Path("no/such/folder");
  const struct {
    ParsedDocument& document;
    std::string name, message;
  } cases[] = {
      {small, folder, "unable to open file '" + folder + "'"},
      {small, "", "unable to open file ''"},
      {small, "/dev/full", "unable to close file"},
      {large, "/dev/full", "unable to write data to file"},
  };
  for (const auto& [document, name, message] : cases) {
    EXPECT_EQ(document.Reader().WriteFromDOM(name, nullptr), MCCommon::MCStatus(118, false));
    EXPECT_EQ(document.Message(), message);
    Written(document);
    EXPECT_EQ(document.Message(), "");
  }
}

TEST(MCXMLReadWrite, AnswersWhereMemoryRunsOutWhileAFileIsWritten) {
  const mctest::LeaksAllowed allowed;
  ParsedDocument document("<a/>");
  const TemporaryFolder folder;
  const std::string good = folder.Path("a.xml");
  for (const std::string& name : {good, folder.Path("none/a.xml")}) {
    bool hasFired = true;
    for (std::size_t k = 1; hasFired; ++k) {
      const mctest::FailAllocation failure(k);
      const MCCommon::MCStatus status = document.Reader().WriteFromDOM(name, nullptr);
      hasFired = failure.HasFired();
      const bool isWritten = name == good && !hasFired;
      EXPECT_EQ(status, isWritten ? MCCommon::MCStatus() : MCCommon::MCStatus(118, false)) << k;
    }
  }
  EXPECT_THAT(folder.Read("a.xml"), HasSubstr("<a/>"));
}

TEST(MCXMLReadWrite, ReadsAgainWhereMemoryRanOutInARead) {
  const mctest::LeaksAllowed allowed;  // Xerces loses what it was about to use
  MCXMLReadWrite reader;
  bool hasFired = true;
  for (std::size_t k = 1; hasFired; ++k) {
    std::istringstream stream("<!DOCTYPE a [<!ENTITY e 'x'>]><a b='1'>&e;</a>");
    const mctest::FailAllocation failure(k);
    try {
      const MCCommon::MCStatus status = reader.ParseToDOM(stream);
      if (!status.IsOK()) {
        EXPECT_THAT(status.GetErrorCode(), testing::AnyOf(103, 104));
        EXPECT_EQ(reader.GetDocument(), nullptr);
      }
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(reader.GetDocument(), nullptr);
    }
    hasFired = failure.HasFired();
  }
  EXPECT_NE(reader.GetDocument(), nullptr);
}

TEST(MCXMLReadWrite, WritesNothingInAnEncodingThatIsNoMore) {
  ParsedDocument document("<a/>");
  xercesc::DOMImplementation* implementation =
      xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
  xercesc::DOMDocument* made = implementation->createDocument();
  made->setXmlVersion(u"1.0");
  made->appendChild(made->createElement(u"a"));
  const TemporaryFolder folder;
  EXPECT_TRUE(document.Reader().WriteFromDOM(folder.Path("a.xml"), made).IsOK());
  EXPECT_THAT(folder.Read("a.xml"), HasSubstr("encoding=\"UTF-8\""));
  made->release();
}

TEST(MCXMLReadWrite, WritesTenThousandLevelsAndRefusesMore) {
  ParsedDocument atLimit(Nested(10000));
  EXPECT_NE(Written(atLimit).find(Repeat("<a>", 9999) + "<a/>" + Repeat("</a>", 9999)),
            std::string::npos);
  for (const std::size_t levels : {std::size_t{10001}, std::size_t{1000000}}) {
    ParsedDocument beyond(Nested(levels));
    EXPECT_EQ(beyond.Code(), 0);
    const TemporaryFolder folder;
    EXPECT_EQ(beyond.Reader().WriteFromDOM(folder.Path("a.xml"), nullptr),
              MCCommon::MCStatus(118, false));
    EXPECT_EQ(beyond.Message(), "elements stand more than 10000 deep");
    EXPECT_FALSE(folder.Has("a.xml"));
  }
}
