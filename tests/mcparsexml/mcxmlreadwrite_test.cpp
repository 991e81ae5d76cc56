// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxmlreadwrite.h"

#include <gtest/gtest.h>

#include <sstream>

using MCComXPrsUtil::MCXMLReadWrite;

TEST(MCXMLReadWrite, HoldsTheDocumentThatItRead) {
  MCXMLReadWrite document;
  std::istringstream text("<a/>");
  EXPECT_TRUE(document.ParseToDOM(text).IsOK());
  EXPECT_NE(nullptr, document.GetDocument());
}
