// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcpmmlparser.h"
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxtranscoder.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <xercesc/util/PlatformUtils.hpp>

using MCComXPrsUtil::MCPMMLParser;
using MCComXPrsUtil::MCXMLReadWrite;
using xercesc::XMLPlatformUtils;

// Each test runs in a process of its own, where nothing else holds Xerces.

namespace {

bool IsXercesUp() {
  return XMLPlatformUtils::fgTransService != nullptr;
}

bool CanRead(MCXMLReadWrite& reader) {
  std::istringstream text("<a/>");
  return reader.ParseToDOM(text).IsOK();
}

[[noreturn]] void Exit(bool isGood) {
  std::_Exit(isGood ? 0 : 1);
}

[[noreturn]] void RunOursInsideTheHosts() {
  XMLPlatformUtils::Initialize();
  bool isGood = true;
  for (int i = 0; i < 3; ++i) {
    MCXMLReadWrite reader;
    const MCPMMLParser parser;
    isGood = isGood && CanRead(reader) && parser.GetStatus().IsOK();
  }
  isGood = isGood && IsXercesUp();
  XMLPlatformUtils::Terminate();
  Exit(isGood && !IsXercesUp());
}

[[noreturn]] void RunTheHostsInsideOurs() {
  bool isGood = !IsXercesUp();
  {
    MCXMLReadWrite reader;
    for (int i = 0; i < 3; ++i) {
      XMLPlatformUtils::Initialize();
      isGood = isGood && CanRead(reader);
      XMLPlatformUtils::Terminate();
      isGood = isGood && CanRead(reader);
    }
  }
  Exit(isGood && !IsXercesUp());
}

[[noreturn]] void RunOverlapping() {
  auto first = std::make_unique<MCXMLReadWrite>();
  XMLPlatformUtils::Initialize();
  auto second = std::make_unique<MCXMLReadWrite>();
  first.reset();
  bool isGood = CanRead(*second);
  XMLPlatformUtils::Terminate();
  isGood = isGood && CanRead(*second) && IsXercesUp();
  second.reset();
  isGood = isGood && !IsXercesUp();
  MCXMLReadWrite again;
  Exit(isGood && CanRead(again));
}

[[noreturn]] void MakeATranscoderWithoutXerces() {
  const MCComXPrsUtil::MCXTranscoder transcoder(nullptr);
  Exit(!transcoder.isValid() && transcoder.TranscodeTo(u"a").empty());
}

}  // namespace

TEST(XercesCountDeathTest, OursComeAndGoWhileTheHostHoldsXerces) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(RunOursInsideTheHosts(), testing::ExitedWithCode(0), "");
}

TEST(XercesCountDeathTest, TheHostComesAndGoesWhileOursHoldXerces) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(RunTheHostsInsideOurs(), testing::ExitedWithCode(0), "");
}

TEST(XercesCountDeathTest, AnyOrderEndsWithXercesDownAndReadyToStart) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(RunOverlapping(), testing::ExitedWithCode(0), "");
}

TEST(XercesCountDeathTest, ATranscoderIsInvalidWhileXercesIsDown) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(MakeATranscoderWithoutXerces(), testing::ExitedWithCode(0), "");
}
