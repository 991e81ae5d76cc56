// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxinputsource.h"

#include "mcparsexml/mcxmlreadwrite.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <xercesc/util/BinInputStream.hpp>

TEST(MCXInputSource, ReadsTheStreamAndTellsWhereItStands) {
  const MCComXPrsUtil::MCXMLReadWrite xerces;
  std::istringstream text("abcdefg");
  const MCComXPrsUtil::MCXInputSource source(text);
  EXPECT_EQ(source.getSystemId(), std::u16string(u"istream"));
  const std::unique_ptr<xercesc::BinInputStream> stream(source.makeStream());
  EXPECT_EQ(stream->getContentType(), nullptr);
  XMLByte buffer[5];
  EXPECT_EQ(stream->curPos(), 0U);
  EXPECT_EQ(stream->readBytes(buffer, 5), 5U);
  EXPECT_EQ(std::string(buffer, buffer + 5), "abcde");
  EXPECT_EQ(stream->curPos(), 5U);
  EXPECT_EQ(stream->readBytes(buffer, 5), 2U);
  EXPECT_EQ(std::string(buffer, buffer + 2), "fg");
  EXPECT_EQ(stream->readBytes(buffer, 5), 0U);
  // A stream at its end stands nowhere.
  EXPECT_EQ(stream->curPos(), static_cast<XMLFilePos>(-1));
}

TEST(MCXInputSource, TakesAStreamThatThrowsAtItsEndForAnyOther) {
  const MCComXPrsUtil::MCXMLReadWrite xerces;
  std::istringstream text("ab");
  text.exceptions(std::ios::failbit | std::ios::eofbit);
  const MCComXPrsUtil::MCXInputSource source(text);
  const std::unique_ptr<xercesc::BinInputStream> stream(source.makeStream());
  XMLByte buffer[5];
  EXPECT_EQ(stream->readBytes(buffer, 5), 2U);
  EXPECT_EQ(stream->readBytes(buffer, 5), 0U);
  EXPECT_EQ(stream->curPos(), static_cast<XMLFilePos>(-1));
}
