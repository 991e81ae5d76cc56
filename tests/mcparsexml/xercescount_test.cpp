// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcpmmlparser.h"
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxtranscoder.h"
#include "support/countingallocator.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <xercesc/util/PlatformUtils.hpp>

using MCComXPrsUtil::MCPMMLParser;
using MCComXPrsUtil::MCXMLReadWrite;
using xercesc::XMLPlatformUtils;

namespace {

/// What exits here runs in a process of its own, where nothing else holds Xerces.
class XercesCountDeathTest : public testing::Test {
protected:
  XercesCountDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

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

/// In a process of its own, since Xerces can't be started any more after that.
template <class Reader, class Status>
[[noreturn]] void FailToStart(const Status& status) {
  const mctest::FailAllocation failure(10);  // of some 180 that Xerces starts with
  Reader reader;
  std::istringstream text("<PMML><DataDictionary/></PMML>");
  const MCCommon::MCStatus expected(103, false);
  Exit(failure.HasFired() && status(reader) == expected && reader.ParseToDOM(text) == expected &&
       status(reader) == expected && reader.GetXercesMessage().empty());
}

}  // namespace

TEST_F(XercesCountDeathTest, WhatCouldNotStartXercesAnswers103) {
  const auto ofReader = [](const MCXMLReadWrite& reader) { return reader.GetInitStatus(); };
  EXPECT_EXIT(FailToStart<MCXMLReadWrite>(ofReader), testing::ExitedWithCode(0), "");
  const auto ofParser = [](const MCPMMLParser& parser) { return parser.GetStatus(); };
  EXPECT_EXIT(FailToStart<MCPMMLParser>(ofParser), testing::ExitedWithCode(0), "");
}

TEST_F(XercesCountDeathTest, OursComeAndGoWhileTheHostHoldsXerces) {
  EXPECT_EXIT(RunOursInsideTheHosts(), testing::ExitedWithCode(0), "");
}

TEST_F(XercesCountDeathTest, TheHostComesAndGoesWhileOursHoldXerces) {
  EXPECT_EXIT(RunTheHostsInsideOurs(), testing::ExitedWithCode(0), "");
}

TEST_F(XercesCountDeathTest, AnyOrderEndsWithXercesDownAndReadyToStart) {
  EXPECT_EXIT(RunOverlapping(), testing::ExitedWithCode(0), "");
}

TEST_F(XercesCountDeathTest, ATranscoderIsInvalidWhileXercesIsDown) {
  EXPECT_EXIT(MakeATranscoderWithoutXerces(), testing::ExitedWithCode(0), "");
}
