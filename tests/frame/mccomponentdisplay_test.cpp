// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mccomponentdisplay.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/localeguard.h"

#include <gtest/gtest.h>

#include <ctime>
#include <iostream>
#include <limits>
#include <sstream>
#include <streambuf>

namespace {
using namespace MCComponentDisplay;
using mctest::Displayed;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNearlyMissing = -1.7976931348623155e308;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Counts the flushes of the stream that it serves.
class CountingBuffer : public std::stringbuf {
public:
  int fSyncs = 0;

protected:
  int sync() override {
    ++fSyncs;
    return 0;
  }
};

TEST(DisplayStream, StartsAsTheStandardOutput) {
  EXPECT_EQ(&GetOutStream(), &std::cout);
}

TEST(DisplayStream, IsReplacedForAllLaterOutput) {
  std::ostringstream first;
  std::ostringstream second;
  SetOutStream(first);
  EXPECT_EQ(&GetOutStream(), &first);
  DisplayText(0, "one");
  SetOutStream(second);
  DisplayText(0, "two");
  SetOutStream(std::cout);
  EXPECT_EQ(first.str(), "one");
  EXPECT_EQ(second.str(), "two");
}

TEST(DisplayText, WritesTheLineEndsThenTheText) {
  EXPECT_EQ(Displayed([] { DisplayText(0, "text"); }), "text");
  EXPECT_EQ(Displayed([] { DisplayText(1, "text"); }), "\ntext");
  EXPECT_EQ(Displayed([] { DisplayText(3, std::string("text")); }), "\n\n\ntext");
  EXPECT_EQ(Displayed([] { DisplayText(2, ""); }), "\n\n");
}

TEST(DisplayText, ANegativeCountWritesNoLineEnds) {
  EXPECT_EQ(Displayed([] { DisplayText(-1, "text"); }), "text");
}

TEST(DisplayText, ANullTextWritesNothingAtAll) {
  EXPECT_EQ(Displayed([] { DisplayText(3, nullptr); }), "");
}

TEST(DisplayText, AStringIsWrittenWhole) {
  const std::string text("a\0b", 3);
  EXPECT_EQ(Displayed([&] { DisplayText(0, text); }), text);
}

TEST(DisplayText, FlushesEachTime) {
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  SetOutStream(stream);
  DisplayText(1, "text");
  EXPECT_EQ(buffer.fSyncs, 1);
  DisplayI("label", 1);
  EXPECT_EQ(buffer.fSyncs, 2);
  SetOutStream(std::cout);
}

TEST(DisplaySingleValues, ShowTheLabelAndTheValue) {
  EXPECT_EQ(Displayed([] { DisplayI("n", -12); }), "\nn = -12");
  EXPECT_EQ(Displayed([] { DisplayB("flag", true); }), "\nflag = true");
  EXPECT_EQ(Displayed([] { DisplayB("flag", false); }), "\nflag = false");
  EXPECT_EQ(Displayed([] { DisplayS("name", "a b"); }), "\nname = a b");
}

TEST(DisplayD, ShowsSixDigitsOrMiss) {
  EXPECT_EQ(Displayed([] { DisplayD("x", 1.0 / 3.0); }), "\nx = 0.333333");
  EXPECT_EQ(Displayed([] { DisplayD("x", 1e-12); }), "\nx = 1e-12");
  EXPECT_EQ(Displayed([] { DisplayD("x", kMissing); }), "\nx = miss");
  EXPECT_EQ(Displayed([] { DisplayD("x", kNearlyMissing); }), "\nx = -1.79769e+308");
  EXPECT_EQ(Displayed([] { DisplayD("x", kInfinity); }), "\nx = inf");
}

TEST(DisplayDF, ShowsSeventeenDigitsOrMiss) {
  EXPECT_EQ(Displayed([] { DisplayDF("x", 0.1); }), "\nx = 0.10000000000000001");
  EXPECT_EQ(Displayed([] { DisplayDF("x", kMissing); }), "\nx = miss");
  EXPECT_EQ(Displayed([] { DisplayDF("x", kNearlyMissing); }), "\nx = -1.7976931348623155e+308");
}

TEST(DisplayVectors, ShowTheSizeAndThenTheValuesOnOneLine) {
  EXPECT_EQ(Displayed([] { DisplayIV("v", {3, -1, 0}); }), "\nv (size = 3)\n 3 -1 0");
  EXPECT_EQ(Displayed([] { DisplayUV("v", {4294967295U, 0U}); }), "\nv (size = 2)\n 4294967295 0");
  EXPECT_EQ(Displayed([] { DisplayBV("v", {true, false}); }), "\nv (size = 2)\n true false");
  EXPECT_EQ(Displayed([] { DisplaySV("v", {"a", "b c"}); }), "\nv (size = 2)\n a b c");
  EXPECT_EQ(Displayed([] { DisplayIV("v", {}); }), "\nv (size = 0)\n");
  EXPECT_EQ(Displayed([] { DisplayBV("v", {}); }), "\nv (size = 0)\n");
}

TEST(DisplayDV, ShowsAllValuesOnOneLine) {
  EXPECT_EQ(Displayed([] {
              DisplayDV("v", {0.1, kMissing, 2.0}, false);
            }),
            "\nv (size = 3)\n 0.1 miss 2");
  EXPECT_EQ(Displayed([] { DisplayDV("v", {}, false); }), "\nv (size = 0)\n");
}

TEST(DisplayDV, InFullShowsOneValuePerLine) {
  EXPECT_EQ(Displayed([] {
              DisplayDV("v", {0.1, kMissing, 2.0}, true);
            }),
            "\nv (size = 3)\n = 0.10000000000000001\nmiss\n = 2");
  EXPECT_EQ(Displayed([] { DisplayDV("v", {}, true); }), "\nv (size = 0)");
}

TEST(DisplayPairs, ShowBothPartsInParentheses) {
  EXPECT_EQ(Displayed([] {
              DisplayVPD("v", {{0.5, kMissing}, {1.0, 2.0}});
            }),
            "\nv (size = 2)\n (0.5, miss) (1, 2)");
  EXPECT_EQ(Displayed([] { DisplayVPDI("v", {{0.5, 7}}); }), "\nv (size = 1)\n (0.5, 7)");
  EXPECT_EQ(Displayed([] {
              DisplayVPII("v", {{1, 2}, {3, 4}});
            }),
            "\nv (size = 2)\n (1, 2) (3, 4)");
}

TEST(DisplayMaps, ShowOneEntryPerLineInTheOrderOfTheKeys) {
  EXPECT_EQ(Displayed([] {
              DisplayIIM("m", {{5, 1}, {2, 0}});
            }),
            "\nm (map size = 2)\nMap key 2, Map value 0\nMap key 5, Map value 1");
  EXPECT_EQ(Displayed([] { DisplayIIM("m", {}); }), "\nm (map size = 0)");
  EXPECT_EQ(Displayed([] {
              DisplayIntVecIntMap("m", {{{1, 2}, 3}});
            }),
            "\nm (map size = 1)\nMap key  1 2, Map value 3");
  EXPECT_EQ(Displayed([] {
              DisplayIntVecDVecMap("m", {{{1, 2}, {0.5, kMissing}}});
            }),
            "\nm (map size = 1)\nMap key  1 2, Map value  0.5 miss");
  EXPECT_EQ(Displayed([] {
              DisplaySLDM("m", {{{"a", "b"}, 0.25}});
            }),
            "\nm (map size = 1)\nMap key  a b, Map value 0.25");
}

TEST(DisplayVIM, ShowsEachMapBehindItsIndex) {
  EXPECT_EQ(Displayed([] {
              DisplayVIM("v", {{{1, 2}}, {}});
            }),
            "\nv (size = 2)\nvec[0] (map size = 1)\nMap key 1, Map value 2\n"
            "vec[1] (map size = 0)");
}

TEST(DisplayMatrices, ShowTheirSizesBehindAnEmptyLineAndThenTheRows) {
  EXPECT_EQ(Displayed([] {
              DisplayDVV("m", {{1, 2, 3}, {4, kMissing, 6}});
            }),
            "\n\nm ( number of rows = 2, number of columns = 3)\nrow 0 1 2 3\nrow 1 4 miss 6");
  EXPECT_EQ(Displayed([] {
              DisplayBVV("m", {{true}, {false}});
            }),
            "\n\nm ( number of rows = 2, number of columns = 1)\nrow 0 true\nrow 1 false");
  EXPECT_EQ(Displayed([] {
              DisplaySVV("m", {{"a", "b"}});
            }),
            "\n\nm ( number of rows = 1, number of columns = 2)\nrow 0 a b");
  EXPECT_EQ(Displayed([] { DisplayDVV("m", {}); }),
            "\n\nm ( number of rows = 0, number of columns = 0)");
}

TEST(DisplayMatrices, OfRowsOfUnequalLengthShowTheNumberOfElements) {
  EXPECT_EQ(Displayed([] {
              DisplayDVV("m", {{1}, {}, {2, 3}});
            }),
            "\n\nm (number of elements = 3)\nrow 0 1\nrow 1\nrow 2 2 3");
}

TEST(DisplayVectors, HaveADecimalPointInEveryLocale) {
  const mctest::LocaleGuard german("de_DE.UTF-8");
  ASSERT_TRUE(german.IsSet());
  EXPECT_EQ(Displayed([] { DisplayVPDI("v", {{0.5, 7}}); }), "\nv (size = 1)\n (0.5, 7)");
}

TEST(DisplayDA, ShowsAnArrayAsAVector) {
  const double values[] = {1.5, kMissing};
  EXPECT_EQ(Displayed([&] { DisplayDA("a", values, 2); }), "\na (size = 2)\n 1.5 miss");
  EXPECT_EQ(Displayed([&] { DisplayDA("a", values, 0); }), "\na (size = 0)\n");
}

TEST(DisplayDA, ANullArrayAndANegativeSizeShowAsEmpty) {
  const double value = 1.0;
  EXPECT_EQ(Displayed([] { DisplayDA("a", nullptr, 2); }), "\na (size = 0)\n");
  EXPECT_EQ(Displayed([&] { DisplayDA("a", &value, -1); }), "\na (size = 0)\n");
}

TEST(DisplayDVTR, ShowsATriangleWithTheIndicesOfEachElement) {
  EXPECT_EQ(Displayed([] {
              DisplayDVTR("t", {1, 2, kMissing}, 2);
            }),
            "\n\nt (number of elements = 3)\n(0,0) 1 \n(1,0) 2 (1,1) miss ");
}

TEST(DisplayDVTR, LeavesOutWhatTheVectorIsTooShortFor) {
  EXPECT_EQ(Displayed([] {
              DisplayDVTR("t", {1, 2}, 5);
            }),
            "\n\nt (number of elements = 2)\n(0,0) 1 \n(1,0) 2 ");
  EXPECT_EQ(Displayed([] { DisplayDVTR("t", {1, 2}, -1); }), "\n\nt (number of elements = 2)");
  EXPECT_EQ(Displayed([] { DisplayDVTR("t", {}, 2147483647); }), "\n\nt (number of elements = 0)");
}

TEST(DisplayTimeStamp, ShowsTheLocalTime) {
  const std::time_t before = std::time(nullptr);
  const std::string text = Displayed([] { DisplayTimeStamp("made"); });
  const std::time_t after = std::time(nullptr);
  std::tm shown{};
  int matched = 0;
  ASSERT_EQ(
      std::sscanf(text.c_str(), "\nmade: %d-%2d-%2d-%2d-%2d-%2d%n", &shown.tm_year, &shown.tm_mon,
                  &shown.tm_mday, &shown.tm_hour, &shown.tm_min, &shown.tm_sec, &matched),
      6);
  EXPECT_EQ(static_cast<std::size_t>(matched), text.size());
  EXPECT_EQ(text.size(), std::string("\nmade: 2000-01-01-00-00-00").size());
  shown.tm_year -= 1900;
  shown.tm_mon -= 1;
  shown.tm_isdst = -1;
  const std::time_t moment = std::mktime(&shown);
  EXPECT_GE(moment, before);
  EXPECT_LE(moment, after);
}

}  // namespace
