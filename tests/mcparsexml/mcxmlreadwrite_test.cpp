// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxmlreadwrite.h"

#include "mcparsexml/parseddocument.h"
#include "support/countingallocator.h"
#include "support/leaksallowed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <new>
#include <stdexcept>
#include <streambuf>
#include <sys/stat.h>

using MCComXPrsUtil::MCXMLReadWrite;
using mctest::ParsedDocument;
using mctest::Repeat;

namespace {

/// The name of a file of this test, which is gone at the end.
class ScratchFile {
public:
  ScratchFile()
      : fName(testing::TempDir() + "mcstat_" +
              testing::UnitTest::GetInstance()->current_test_info()->name() + ".xml") {
    std::remove(fName.c_str());
  }
  explicit ScratchFile(const std::string& text) : ScratchFile() {
    std::ofstream(fName, std::ios::binary) << text;
  }
  ~ScratchFile() { std::remove(fName.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& Name() const { return fName; }

  bool Exists() const {
    struct stat about = {};
    return stat(fName.c_str(), &about) == 0;
  }

  std::string Text() const {
    std::ifstream in(fName, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

private:
  std::string fName;
};

std::string Written(ParsedDocument& document) {
  const ScratchFile file;
  EXPECT_TRUE(document.Reader().WriteFromDOM(file.Name(), nullptr).IsOK());
  return file.Text();
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
  const ScratchFile file("<a><b/></a>");
  MCXMLReadWrite reader;
  EXPECT_TRUE(reader.ParseToDOM(file.Name()).IsOK());
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
  const std::string missing = testing::TempDir() + "mcstat_no_such_file.xml";
  for (const std::string& name : {missing, testing::TempDir(), std::string()}) {
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
  const ScratchFile file;
  EXPECT_TRUE(own.Reader().WriteFromDOM(file.Name(), &other.Document()).IsOK());
  EXPECT_NE(file.Text().find("<b/>"), std::string::npos);
  const MCXMLReadWrite without;
  EXPECT_TRUE(without.WriteFromDOM(file.Name(), &own.Document()).IsOK());
  EXPECT_NE(file.Text().find("<a/>"), std::string::npos);
}

TEST(MCXMLReadWrite, WritesNothingWithoutADocument) {
  const MCXMLReadWrite reader;
  const ScratchFile file;
  EXPECT_EQ(reader.WriteFromDOM(file.Name(), nullptr), reader.GetInitStatus());
  EXPECT_FALSE(file.Exists());
}

TEST(MCXMLReadWrite, SaysWhyAFileCannotBeWritten) {
  ParsedDocument small("<a/>");
  ParsedDocument large("<a>" + std::string(100000, 'x') + "</a>");
  const std::string folder = testing::TempDir() + "no/such/folder";
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
  const ScratchFile file;
  const std::string folder = testing::TempDir() + "no/such/folder";
  for (const std::string& name : {file.Name(), folder}) {
    bool hasFired = true;
    for (std::size_t k = 1; hasFired; ++k) {
      const mctest::FailAllocation failure(k);
      const MCCommon::MCStatus status = document.Reader().WriteFromDOM(name, nullptr);
      hasFired = failure.HasFired();
      const bool isWritten = name == file.Name() && !hasFired;
      EXPECT_EQ(status, isWritten ? MCCommon::MCStatus() : MCCommon::MCStatus(118, false)) << k;
    }
  }
  EXPECT_NE(file.Text().find("<a/>"), std::string::npos);
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
  const ScratchFile file;
  EXPECT_TRUE(document.Reader().WriteFromDOM(file.Name(), made).IsOK());
  EXPECT_NE(file.Text().find("encoding=\"UTF-8\""), std::string::npos);
  made->release();
}

TEST(MCXMLReadWrite, WritesTenThousandLevelsAndRefusesMore) {
  ParsedDocument atLimit(Nested(10000));
  EXPECT_NE(Written(atLimit).find(Repeat("<a>", 9999) + "<a/>" + Repeat("</a>", 9999)),
            std::string::npos);
  for (const std::size_t levels : {std::size_t{10001}, std::size_t{1000000}}) {
    ParsedDocument beyond(Nested(levels));
    EXPECT_EQ(beyond.Code(), 0);
    const ScratchFile file;
    EXPECT_EQ(beyond.Reader().WriteFromDOM(file.Name(), nullptr), MCCommon::MCStatus(118, false));
    EXPECT_EQ(beyond.Message(), "elements stand more than 10000 deep");
    EXPECT_FALSE(file.Exists());
  }
}
