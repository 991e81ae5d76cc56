// SPDX-License-Identifier: Apache-2.0
#include "mcxml/mcxml.h"
#include "support/localeguard.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace {

using namespace MCCommonXML;

template <class Node>
std::string TextOf(const Node& node) {
  std::string text;
  ExportFormat format;
  EXPECT_EQ(node.ToString(text, format), 0);
  return text;
}

template <class Node>
std::string StreamedTextOf(const Node& node) {
  std::ostringstream stream;
  ExportFormat format;
  EXPECT_EQ(node.ToStream(stream, format, false), 0);
  return stream.str();
}

std::string DocumentOf(const XMLElement& root, bool format, const XMLDocType* docType = nullptr) {
  std::ostringstream stream;
  EXPECT_EQ(WriteTree(stream, docType, &root, format), 0);
  return stream.str();
}

std::string AttributeOf(const std::string& value) {
  const std::unique_ptr<XMLAttribute> attribute(XMLAttribute::Create("a", value));
  return TextOf(*attribute);
}

TEST(ExportFormat, StartsWithAllSwitchesOn) {
  ExportFormat format;
  EXPECT_TRUE(format.HasIndentation());
  EXPECT_TRUE(format.IsNewParagraph());
  EXPECT_EQ(format.GetDepth(), 0);
  format.SetIndentation(false);
  EXPECT_FALSE(format.HasIndentation());
  EXPECT_TRUE(format.IsNewParagraph());
  format.SetIsNewParagraph(false);
  format.SetIndentation(true);
  EXPECT_FALSE(format.IsNewParagraph());
  format.SetIsNewParagraph(true);
  format.SetFormat(false);
  EXPECT_FALSE(format.HasIndentation());
  EXPECT_FALSE(format.IsNewParagraph());
}

TEST(XMLAttribute, EscapesItsValue) {
  EXPECT_EQ(AttributeOf(""), "a=\"\"");
  EXPECT_EQ(AttributeOf("x"), "a=\"x\"");
  EXPECT_EQ(AttributeOf("&<>\""), "a=\"&amp;&lt;&gt;&quot;\"");
  EXPECT_EQ(AttributeOf("&lt;"), "a=\"&amp;lt;\"");
  EXPECT_EQ(AttributeOf("\t\n\r"), "a=\"&#9;&#10;&#13;\"");
  EXPECT_EQ(AttributeOf("'"), "a=\"'\"");
}

TEST(XMLAttribute, KeepsBlanksFromBeingNormalised) {
  EXPECT_EQ(AttributeOf(" "), "a=\"&#32;\"");
  EXPECT_EQ(AttributeOf("  "), "a=\"&#32;&#32;\"");
  EXPECT_EQ(AttributeOf("   "), "a=\"&#32;&#32;&#32;\"");
  EXPECT_EQ(AttributeOf("x y"), "a=\"x y\"");
  EXPECT_EQ(AttributeOf("x  y"), "a=\"x &#32;y\"");
  EXPECT_EQ(AttributeOf("x   y"), "a=\"x &#32; y\"");
  EXPECT_EQ(AttributeOf(" x "), "a=\"&#32;x&#32;\"");
}

TEST(XMLAttribute, PrintsTheSameTwice) {
  const std::unique_ptr<XMLAttribute> attribute(XMLAttribute::Create("a&b", "x&y"));
  EXPECT_EQ(TextOf(*attribute), "a&b=\"x&amp;y\"");
  EXPECT_EQ(TextOf(*attribute), "a&b=\"x&amp;y\"");
  EXPECT_EQ(StreamedTextOf(*attribute), "a&b=\"x&amp;y\"");
}

TEST(XMLAttribute, PrintsNumbersInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  const std::unique_ptr<XMLAttribute> attribute(XMLAttribute::Create("a", 1234567.5));
  EXPECT_EQ(TextOf(*attribute), "a=\"1234567.5\"");
}

TEST(XMLString, EscapesTwoCharacters) {
  const std::unique_ptr<XMLString> text(XMLString::Create("a<b>&\"\r ]]>"));
  EXPECT_EQ(TextOf(*text), "a&lt;b>&amp;\"\r ]]>");
  EXPECT_EQ(StreamedTextOf(*text), TextOf(*text));
}

TEST(XMLString, KeepsWhatFollowsOnItsLine) {
  const std::unique_ptr<XMLString> text(XMLString::Create("x"));
  ExportFormat format;
  std::string out;
  text->ToString(out, format);
  EXPECT_FALSE(format.IsNewParagraph());
  EXPECT_FALSE(format.HasIndentation());
}

TEST(XMLDocType, CarriesTheDeclaration) {
  const std::unique_ptr<XMLDocType> docType(XMLDocType::Create("list", "list.dtd", 7));
  EXPECT_EQ(TextOf(*docType),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!DOCTYPE list SYSTEM \"list.dtd\">\n");
  EXPECT_EQ(docType->AddExtension("<!ENTITY a \"b\">"), 16);
  EXPECT_EQ(docType->AddExtension("x"), 18);
  EXPECT_EQ(TextOf(*docType),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "<!DOCTYPE list SYSTEM \"list.dtd\"\n[\n<!ENTITY a \"b\">\nx\n]>\n");
  EXPECT_EQ(StreamedTextOf(*docType), TextOf(*docType));
}

TEST(XMLElement, ClosesItselfWithoutChildren) {
  const std::unique_ptr<XMLElement> element(XMLElement::Create("a"));
  EXPECT_EQ(DocumentOf(*element, false), "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<a/>");
  EXPECT_EQ(DocumentOf(*element, true), "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n\n<a/>");
}

std::unique_ptr<XMLElement> MakeTree() {
  std::unique_ptr<XMLElement> root(XMLElement::Create("root"));
  root->AddAttribute("a", "1");
  root->AddAttribute("b", 2.5);
  root->AddAttribute(XMLAttribute::Create("b", "again"));
  XMLElement* text = XMLElement::Create("text");
  EXPECT_EQ(text->AddElement(XMLString::Create("x & y")), 1);
  EXPECT_EQ(root->AddElement(text), 1);
  XMLElement* child = XMLElement::Create("child");
  XMLElement* grandchild = XMLElement::Create("grandchild");
  grandchild->AddAttribute("c", "");
  child->AddElement(grandchild);
  EXPECT_EQ(root->AddElement(child), 2);
  return root;
}

TEST(XMLElement, PrintsInLines) {
  EXPECT_EQ(DocumentOf(*MakeTree(), true),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "\n"
            "<root\n"
            "\ta=\"1\"\n"
            "\tb=\"2.5\"\n"
            "\tb=\"again\">\n"
            "\t<text>x &amp; y</text>\n"
            "\t<child>\n"
            "\t\t<grandchild\n"
            "\t\t\tc=\"\"/>\n"
            "\t</child>\n"
            "</root>");
}

TEST(XMLElement, PrintsOnOneLineUnformatted) {
  EXPECT_EQ(DocumentOf(*MakeTree(), false),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "<root a=\"1\" b=\"2.5\" b=\"again\"><text>x &amp; y</text><child>"
            "<grandchild c=\"\"/></child></root>");
}

TEST(XMLElement, PrintsTheSameToATextAndToAStream) {
  const std::unique_ptr<XMLElement> tree = MakeTree();
  std::string text = "before";
  ExportFormat format;
  tree->ToString(text, format);
  EXPECT_EQ(text, "before" + StreamedTextOf(*tree));
  EXPECT_EQ(format.GetDepth(), 0);
}

TEST(XMLElement, StandsAfterTheDocumentType) {
  const std::unique_ptr<XMLDocType> docType(XMLDocType::Create("root", "root.dtd", 0));
  const std::unique_ptr<XMLElement> root(XMLElement::Create("root"));
  EXPECT_EQ(DocumentOf(*root, true, docType.get()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!DOCTYPE root SYSTEM \"root.dtd\">\n"
            "\n<root/>");
}

// Text takes the line ends from what follows it, up to the end of the next element.
TEST(XMLElement, MixesTextAndElements) {
  const std::unique_ptr<XMLElement> root(XMLElement::Create("p"));
  root->AddElement(XMLString::Create("one "));
  XMLElement* bold = XMLElement::Create("b");
  bold->AddAttribute("k", "v");
  bold->AddElement(XMLString::Create("two"));
  root->AddElement(bold);
  root->AddElement(XMLElement::Create("br"));
  root->AddElement(XMLString::Create(" three"));
  EXPECT_EQ(TextOf(*root), "\n<p>one <b k=\"v\">two</b>\n\t<br/> three</p>");
}

// A print that begins without indentation gets it with the first element that ends.
TEST(XMLElement, SwitchesIndentationOnWhereItEnds) {
  const std::unique_ptr<XMLElement> root(XMLElement::Create("a"));
  root->AddElement(XMLElement::Create("b"));
  root->AddElement(XMLElement::Create("c"));
  ExportFormat format;
  format.SetIndentation(false);
  std::string text;
  root->ToString(text, format);
  EXPECT_EQ(text, "\n<a>\n<b/>\n\t<c/>\n</a>");
}

/// A host's own kind of element, which prints itself.
class Comment : public XMLElement {
public:
  Comment() : XMLElement("comment") {}
  int ToString(std::string& out, ExportFormat& format) const override {
    out += "<!--" + std::to_string(format.GetDepth()) + "-->";
    return 0;
  }
  int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const override {
    std::string text;
    ToString(text, format);
    return utf8 ? WriteUTF(out, text) : Write(out, text);
  }
};

TEST(XMLElement, LetsAHostsNodesPrintThemselves) {
  const std::unique_ptr<XMLElement> root(XMLElement::Create("a"));
  root->AddElement(new Comment);
  EXPECT_EQ(TextOf(*root), "\n<a><!--1-->\n</a>");
  EXPECT_EQ(StreamedTextOf(*root), TextOf(*root));
}

TEST(XMLElement, PrintsAndDiesHoweverDeep) {
  constexpr int kDepth = 200000;
  std::unique_ptr<XMLElement> root(XMLElement::Create("e"));
  XMLElement* last = root.get();
  for (int i = 1; i < kDepth; ++i) {
    XMLElement* next = XMLElement::Create("e");
    last->AddElement(XMLString::Create("t"));
    last->AddElement(next);
    last->AddElement(XMLElement::Create("f"));
    last = next;
  }
  const std::string document = DocumentOf(*root, false);
  EXPECT_EQ(document.substr(document.size() - 12), "</e><f/></e>");
  std::string text;
  ExportFormat format;
  format.SetFormat(false);
  root->ToString(text, format);
  EXPECT_EQ(document.size(), text.size() + 40);
}

TEST(XMLElement, ConvertsEveryPieceToUTF8) {
  const mctest::LocaleGuard latin("de_DE.ISO-8859-1");
  ASSERT_TRUE(latin.IsSet());
  const std::unique_ptr<XMLElement> root(XMLElement::Create("\xE4"));
  root->AddAttribute("\xF6", "\xFC");
  root->AddElement(XMLString::Create("\xDF"));
  const std::unique_ptr<XMLDocType> docType(XMLDocType::Create("\xE4", "d", 0));
  std::ostringstream stream;
  EXPECT_EQ(WriteTreeUTF8(stream, docType.get(), root.get(), false), 0);
  EXPECT_EQ(stream.str(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<!DOCTYPE \xC3\xA4 SYSTEM \"d\">\n"
            "<\xC3\xA4 \xC3\xB6=\"\xC3\xBC\">\xC3\x9F</\xC3\xA4>");
  stream.str("");
  EXPECT_EQ(WriteTreeUTF8(stream, nullptr, nullptr, true), 0);
  EXPECT_EQ(stream.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
}

TEST(XMLElementDeathTest, EndsTheProcessForWhatIsNotThere) {
  const std::unique_ptr<XMLElement> root(XMLElement::Create("a"));
  EXPECT_DEATH(root->AddElement(static_cast<XMLElement*>(nullptr)),
               "Assertion failed: element, mcxml/xmlelement");
  EXPECT_EQ(root->AddElement(static_cast<XMLString*>(nullptr)), 1);
  EXPECT_DEATH(TextOf(*root), "Assertion failed: element, mcxml/xmlelement");
  const std::unique_ptr<XMLElement> other(XMLElement::Create("b"));
  other->AddAttribute(nullptr);
  EXPECT_DEATH(StreamedTextOf(*other), "Assertion failed: attribute, mcxml/xmlelement");
}

}  // namespace
