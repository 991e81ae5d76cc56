// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcsettingsparser.h"
#include "readersupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The settings document that docs/formats.md shows to hosts.

namespace {

using namespace mctest;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCSettingsParser;
using std::string;
using std::vector;

string Sample() {
  std::ifstream page(MCSTAT_SOURCE_DIR "/docs/formats.md");
  const string text{std::istreambuf_iterator<char>(page), std::istreambuf_iterator<char>()};
  const string fence = "```";
  const std::size_t begin = text.find(fence + "xml\n", text.find("## Settings document"));
  EXPECT_NE(begin, string::npos);
  if (begin == string::npos) return "";
  const std::size_t first = begin + fence.size() + 4;
  return text.substr(first, text.find(fence, first) - first);
}

class MCSettingsParserSample : public testing::Test {
protected:
  MCSettingsParserSample() {
    fParser.SetStrict(true);
    EXPECT_EQ(ParseText(fParser, Sample()), 0) << fParser.GetXercesMessage();
  }

  MCSettingsParser fParser;
};

TEST_F(MCSettingsParserSample, TellsItsVariables) {
  MCVarList list;
  EXPECT_TRUE(fParser.FillVarList(list, false).IsOK());
  EXPECT_TRUE(fParser.FillTransDict(list).IsOK());
  EXPECT_EQ(ListText(list),
            "yield| cont storage 2 (0, 25) missing {}\n"
            "region|Region string storage 3 {n=North s=South} missing {?=Not known}\n"
            "rain| cont storage 1 (missing, max) missing {} [9000, max]\n"
            "rain group| cont storage 1 (0, 1) missing {}");
}

TEST_F(MCSettingsParserSample, TellsItsParameters) {
  vector<string> names;
  EXPECT_TRUE(fParser.GetTargetVars(names).IsOK());
  EXPECT_EQ(TextsText(names), "yield");
  EXPECT_TRUE(fParser.GetCatPredictors(names).IsOK());
  EXPECT_EQ(TextsText(names), "region");
  EXPECT_TRUE(fParser.GetContPredictors(names).IsOK());
  EXPECT_EQ(TextsText(names), "rain");

  double confidence = 0.0;
  EXPECT_TRUE(fParser.GetParameter("confidence", confidence, nullptr).IsOK());
  EXPECT_EQ(confidence, 0.95);
  bool intercept = false;
  EXPECT_TRUE(fParser.GetParameter("intercept", intercept, nullptr).IsOK());
  EXPECT_TRUE(intercept);
  int iterations = 0;
  void* estimation = fParser.GetComplexParameter("estimation", nullptr);
  EXPECT_TRUE(fParser.GetParameter("iterations", iterations, estimation).IsOK());
  EXPECT_EQ(iterations, 20);
  vector<vector<double>> rows;
  EXPECT_TRUE(fParser.GetMatrix("contrasts", rows, nullptr).IsOK());
  EXPECT_EQ(rows, (vector<vector<double>>{{}, {}, {}, {1.0, -1.0}}));
}

}  // namespace
