// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/parseddocument.h"
#include "support/countingallocator.h"
#include "support/memoryexhaustion.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

using namespace MCComXPrsUtil;
using mctest::ChildTags;
using mctest::ParsedDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

/// The attribute "i" of an element, "none" of no element.
std::string Mark(const DOMElement* element) {
  return element == nullptr ? "none" : ToUTF8(GetAttribute(*element, "i"));
}

const std::string gOurs = " extender='mcstat.example'";

/// A document, and another of which nothing can stand in it.
struct TwoDocuments {
  ParsedDocument document{"<a><b/><c><d/></c></a>"};
  ParsedDocument other{"<z/>"};
  DOMElement& root = document.Root();
  DOMElement* b = GetFirstChildElmt(root, "b");
  DOMElement* c = GetFirstChildElmt(root, "c");
  DOMElement* d = GetFirstChildElmt(*c, "d");

  bool AreUnchanged() const { return ChildTags(root) == "b c" && ChildTags(*c) == "d"; }
};

/// How often no extension was made, each allocation failing in turn, until one was.
template <class Failure>
int ExtensionsRefused() {
  ParsedDocument document("<a/>");
  const std::string name(100000, 'x');  // so long that the document needs memory for it
  int nRefused = 0;
  for (std::size_t k = 1;; ++k) {
    try {
      const Failure failure(k);
      const DOMElement* made = CreateExtension(document.Document(), name.c_str());
      if (made == nullptr) ++nRefused;
      if (!failure.HasFired()) return nRefused;
    } catch (const std::bad_alloc&) {
      continue;
    }
  }
}

}  // namespace

TEST(ElementsOfADocument, AreFoundByTagAmongOtherNodes) {
  ParsedDocument document("<a>x<!--y--><b i='1'/><?p q?><c i='2'/><![CDATA[z]]><b i='3'/>w</a>");
  const DOMElement& root = document.Root();
  const DOMElement* first = GetFirstChildElmt(root, nullptr);
  EXPECT_EQ(Mark(first), "1");
  EXPECT_EQ(Mark(GetFirstChildElmt(root, "b")), "1");
  EXPECT_EQ(Mark(GetFirstChildElmt(root, "c")), "2");
  EXPECT_EQ(Mark(GetFirstChildElmt(root, "d")), "none");
  EXPECT_EQ(Mark(GetFirstChildElmt(root, "")), "none");
  EXPECT_EQ(Mark(GetNextSiblingElmt(*first, nullptr)), "2");
  EXPECT_EQ(Mark(GetNextSiblingElmt(*first, "b")), "3");
  EXPECT_EQ(Mark(GetNextSiblingElmt(*first, "d")), "none");
  EXPECT_EQ(Mark(GetFirstChildElmt(*first, nullptr)), "none");
  EXPECT_EQ(Mark(GetNextSiblingElmt(*GetNextSiblingElmt(*first, "b"), nullptr)), "none");
  // From a node that is no element, too.
  EXPECT_EQ(Mark(GetNextSiblingElmt(*root.getFirstChild(), nullptr)), "1");
}

TEST(ElementsOfADocument, AreToldFromOtherNodes) {
  ParsedDocument document("<p:a xmlns:p='urn:x' b='1'>x</p:a>");
  DOMElement& root = document.Root();
  const DOMNode& constNode = root;
  DOMNode& node = root;
  EXPECT_TRUE(TagNameEquals(root, "p:a"));
  EXPECT_FALSE(TagNameEquals(root, "a"));
  EXPECT_EQ(AsElement(node, nullptr), &root);
  EXPECT_EQ(AsElement(constNode, "p:a"), &root);
  EXPECT_EQ(AsElement(node, "a"), nullptr);
  EXPECT_EQ(AsElement(*root.getFirstChild(), nullptr), nullptr);
  EXPECT_EQ(AsElement(*root.getAttributeNode(u"b"), "b"), nullptr);
  EXPECT_EQ(AsElement(document.Document(), nullptr), nullptr);
}

TEST(ElementsOfADocument, AreFoundInTheOrderOfATable) {
  ParsedDocument document("<a><B i='1'/><A i='2'/><A i='3'/></a>");
  const std::pair<unsigned int, const char*> table[] = {{4, "Z"}, {8, "A"}, {6, "B"}, {0, nullptr}};
  unsigned long index = 99;
  EXPECT_EQ(Mark(GetFirstChildElmt(document.Root(), table, index)), "2");
  EXPECT_EQ(index, 1U);
  EXPECT_EQ(Mark(GetFirstChildElmt(document.Root(), table + 1, index)), "2");
  EXPECT_EQ(index, 0U);
  index = 99;
  EXPECT_EQ(Mark(GetFirstChildElmt(document.Root(), table + 3, index)), "none");
  EXPECT_EQ(index, 0U);
  const std::pair<unsigned int, const char*> others[] = {{0, "C"}, {1, "D"}, {0, nullptr}};
  index = 99;
  EXPECT_EQ(Mark(GetFirstChildElmt(document.Root(), others, index)), "none");
  EXPECT_EQ(index, 0U);
}

TEST(ExtensionsOfADocument, AreOursOrPassedOver) {
  ParsedDocument document("<a><Extension i='1' extender='other' name='x'/><b/><Extension i='2'/>" +
                          std::string("<Extension i='3' name='y'") + gOurs + "/><Extension i='4'" +
                          gOurs + "/><Extension i='5' name='x'" + gOurs +
                          "/><Extension i='6' name='x' extender=''/><Extension i='7' name='x'" +
                          gOurs + "/></a>");
  const DOMElement& root = document.Root();
  EXPECT_EQ(Mark(GetFirstChildExtension(root, nullptr)), "3");
  EXPECT_EQ(Mark(GetFirstChildExtension(root, "x")), "5");
  EXPECT_EQ(Mark(GetFirstChildExtension(root, "z")), "none");
  const DOMElement& third = *GetFirstChildExtension(root, "y");
  EXPECT_EQ(Mark(GetNextSiblingExtension(third, nullptr)), "4");
  EXPECT_EQ(Mark(GetNextSiblingExtension(third, "y")), "none");
  const DOMElement& fifth = *GetNextSiblingExtension(third, "x");
  EXPECT_EQ(Mark(&fifth), "5");
  EXPECT_EQ(Mark(GetNextSiblingExtension(fifth, "x")), "7");
  EXPECT_EQ(Mark(GetFirstChildExtension(third, nullptr)), "none");
}

TEST(ElementsOfADocument, AreMadeWithoutAParent) {
  ParsedDocument document("<a/>");
  const DOMElement* made = CreateElement(document.Document(), "b");
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(TagNameEquals(*made, "b"));
  EXPECT_EQ(made->getParentNode(), nullptr);
  for (const char* name : {"", "1", "a b", "<", "\xFF"}) {
    EXPECT_EQ(CreateElement(document.Document(), name), nullptr) << name;
  }
  EXPECT_EQ(CreateElement(document.Document(), nullptr), nullptr);
}

TEST(ExtensionsOfADocument, AreMadeWithOurExtender) {
  ParsedDocument document("<a/>");
  DOMElement* made = CreateExtension(document.Document(), "n\xC3\xA9");
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(TagNameEquals(*made, "Extension"));
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(*made, "extender"), "mcstat.example"));
  EXPECT_TRUE(XStrEqualsUTF8Str(GetAttribute(*made, "name"), "n\xC3\xA9"));
  EXPECT_EQ(made->getAttributes()->getLength(), 2U);
  EXPECT_TRUE(InsertElement(document.Root(), made, nullptr));
  EXPECT_EQ(GetFirstChildExtension(document.Root(), "n\xC3\xA9"), made);
}

TEST(ExtensionsOfADocument, AreNotMadeWhereMemoryRunsOut) {
  EXPECT_GT(ExtensionsRefused<mctest::FailAllocation>(), 0);
  EXPECT_GT(ExtensionsRefused<mctest::MemoryExhaustion>(), 0);
}

TEST(ElementsOfADocument, AreInsertedBeforeOneOrAtTheEnd) {
  ParsedDocument document("<a><b/><c><d/></c></a>");
  DOMElement& root = document.Root();
  DOMElement* b = GetFirstChildElmt(root, "b");
  DOMElement* c = GetFirstChildElmt(root, "c");
  DOMElement* d = GetFirstChildElmt(*c, "d");
  EXPECT_TRUE(InsertElement(root, CreateElement(document.Document(), "x"), b));
  EXPECT_TRUE(InsertElement(root, CreateElement(document.Document(), "y"), nullptr));
  EXPECT_EQ(ChildTags(root), "x b c y");
  EXPECT_TRUE(InsertElement(root, d, c));  // it leaves where it was
  EXPECT_EQ(ChildTags(root), "x b d c y");
  EXPECT_EQ(ChildTags(*c), "");
  EXPECT_TRUE(InsertElement(root, b, b));  // where it is
  EXPECT_EQ(ChildTags(root), "x b d c y");
}

TEST(ElementsOfADocument, AreNotInsertedWhereTheyCannotStand) {
  TwoDocuments two;
  EXPECT_FALSE(InsertElement(two.root, nullptr, two.b));
  EXPECT_FALSE(InsertElement(two.root, two.b, two.d));  // no child of the root
  EXPECT_FALSE(InsertElement(two.root, two.d, two.d));
  EXPECT_FALSE(InsertElement(*two.d, two.c, nullptr));  // it holds d
  EXPECT_FALSE(InsertElement(*two.d, &two.root, nullptr));
  EXPECT_FALSE(InsertElement(*two.c, two.c, nullptr));
  EXPECT_FALSE(InsertElement(two.root, &two.other.Root(), nullptr));
  EXPECT_TRUE(two.AreUnchanged());
}

TEST(ElementsOfADocument, AreReplaced) {
  ParsedDocument document("<a><b/><c/><d/></a>");
  DOMElement& root = document.Root();
  DOMElement* b = GetFirstChildElmt(root, "b");
  DOMElement* c = GetFirstChildElmt(root, "c");
  EXPECT_TRUE(ReplaceElement(root, CreateElement(document.Document(), "x"), c));
  EXPECT_EQ(ChildTags(root), "b x d");
  EXPECT_EQ(c->getParentNode(), nullptr);
  EXPECT_TRUE(ReplaceElement(root, b, GetFirstChildElmt(root, "d")));
  EXPECT_EQ(ChildTags(root), "x b");
  EXPECT_TRUE(ReplaceElement(root, b, b));
  EXPECT_EQ(ChildTags(root), "x b");
}

TEST(ElementsOfADocument, AreNotReplacedByWhatCannotStandThere) {
  TwoDocuments two;
  EXPECT_FALSE(ReplaceElement(two.root, nullptr, two.b));
  EXPECT_FALSE(ReplaceElement(two.root, two.b, nullptr));
  EXPECT_FALSE(ReplaceElement(two.root, two.b, two.d));
  EXPECT_FALSE(ReplaceElement(two.root, two.d, two.d));
  EXPECT_FALSE(ReplaceElement(*two.c, two.c, two.d));
  EXPECT_FALSE(ReplaceElement(*two.c, &two.root, two.d));
  EXPECT_FALSE(ReplaceElement(two.root, &two.other.Root(), two.b));
  EXPECT_TRUE(two.AreUnchanged());
}
