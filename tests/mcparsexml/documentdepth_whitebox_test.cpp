// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/documentdepth.h"
#include "mcparsexml/parseddocument.h"

#include <gtest/gtest.h>

#include <string>

using MCComXPrsUtil::detail::IsDeeperThan;
using mctest::ParsedDocument;
using mctest::Repeat;

namespace {

void ExpectDepth(const xercesc::DOMNode& node, int depth) {
  EXPECT_TRUE(IsDeeperThan(node, depth - 1));
  EXPECT_FALSE(IsDeeperThan(node, depth));
}

}  // namespace

TEST(DocumentDepth, CountsElementsAndReferences) {
  for (const auto& [text, depth] : std::initializer_list<std::pair<const char*, int>>{
           {"<a/>", 1},
           {"<a>x<!--y--></a>", 1},
           {"<a><b/>x<b><c/></b><b/></a>", 3},
           {"<a><b><c><d/></c></b><b><c/></b></a>", 4},
           {"<a><b/><b/><b/><b/></a>", 2},
           {"<!--x--><a/><?y z?>", 1},
           {"<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>", 3}}) {
    ParsedDocument document(text);
    ExpectDepth(document.Document(), depth);
    ExpectDepth(document.Root(), depth);
  }
}

TEST(DocumentDepth, LooksAtTheTreeOfTheNodeAlone) {
  ParsedDocument document("<a><b/><c><d><e/></d></c></a>");
  ExpectDepth(*MCComXPrsUtil::GetFirstChildElmt(document.Root(), "b"), 1);
  ExpectDepth(*MCComXPrsUtil::GetFirstChildElmt(document.Root(), "c"), 3);
  EXPECT_FALSE(IsDeeperThan(*ParsedDocument("<a>x</a>").Root().getFirstChild(), 0));
}

TEST(DocumentDepth, NeedsNoStack) {
  ParsedDocument document(Repeat("<a>", 1000000) + Repeat("</a>", 1000000));
  ExpectDepth(document.Document(), 1000000);
}
