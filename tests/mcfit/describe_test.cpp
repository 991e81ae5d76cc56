// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit describe` as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/goldentext.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/pmmlcheck.h"
#include "support/xmldocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>
#include <sstream>

namespace {
using testing::HasSubstr;
using testing::Not;

// Seven rows that stand for ten cases; the last has a weight that rounds to none. Of x, by hand:
// 1, 2.5, 2.5, 4 and -9, which is missing, with the weights 2, 1, 3, 1, 2: mean 2.28571 of 7 cases,
// squared distances 6.42857.
const char kShop[] =
    "shop,open,x,staff,n,note\n"
    "north,1,1,3,2,\n"
    "south,0,2.5,12,1,\n"
    "\"a & <b>\",1,2.5,30,3,\n"
    "north,1,4,14,1,\n"
    "north,,-9,15,2,\n"
    ",1,NA,16,1,\n"
    "south,7,5.5,17,0.4,\n";

const Arguments kChoices = {"--continuous", "staff", "--weight",  "n",         "--missing", "x=-9",
                            "--missing",    "x=NA",  "--missing", "shop=none", "--bins",    "x=3"};

std::string Described(const Arguments& arguments) {
  const ProgramResult run = RunMcfit(Arguments{"describe"} + arguments);
  EXPECT_EQ(run.status, 0) << run.err;
  return run.out;
}

TEST(Describe, TellsWhatColumnsAre) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("shop.csv", kShop);
  const std::string out = Described(Arguments{file} + kChoices);
  EXPECT_EQ(out, "Variables of " + file + R"(

Rows read            7
Rows without weight  1  left out below

Variable  Cases  Missing  Categories      Mean  Deviation  Minimum  Maximum
---------------------------------------------------------------------------
shop          9        1           3         .          .        .        .  texts, categories
open          8        2           3         .          .        .        .  whole numbers, categories
x             7        3           .  2.285714   1.035098        1        4  numbers, continuous in 3 bins
staff        10        0           .      16.8    10.2285        3       30  whole numbers, continuous
n             6        1           .  1.666667  0.8164966        1        3  numbers, frequency weight
note          0       10           .         .          .        .        .  no values, continuous
---------------------------------------------------------------------------
)");
}

TEST(Describe, WritesDictionaryAndStatistics) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("shop.csv", kShop);
  const std::string path = folder.Path("shop.xml");
  Described(Arguments{file, "--pmml", path} + kChoices);
  const std::string document = folder.Read("shop.xml");
  EXPECT_EQ(mctest::PmmlFaults(document), "");
  EXPECT_EQ(WithoutTimestamp(Replaced(document, file, "shop.csv")), Golden("describe.xml"));
}

TEST(Describe, SavesTheListOfVariables) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("shop.csv", kShop);
  const ProgramResult run =
      RunMcfit(Arguments{"describe", file, "--save", folder.Path("list.xml")} + kChoices);
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("escapes some of the texts"));
  EXPECT_EQ(folder.Read("list.xml"), Golden("list.xml"));
}

TEST(Describe, AListThatWasSavedIsReadBack) {
  const TemporaryFolder folder;
  for (const char* name : {"birthwt", "iris", "yields", "longley"}) {
    const std::string file = kData + name + ".csv";
    const std::string list = folder.Path("list.xml");
    const std::string again = folder.Path("again.xml");
    const std::string first = Described({file, "--save", list});
    EXPECT_EQ(Described({file, "--load", list, "--save", again}), first);
    EXPECT_EQ(folder.Read("again.xml"), folder.Read("list.xml"));
    Described({"--load", list, "--save", again});
    EXPECT_EQ(folder.Read("again.xml"), folder.Read("list.xml"));
  }
  EXPECT_EQ(Described({"--load", folder.Path("list.xml")}),
            "Variables in " + folder.Path("list.xml") + R"(

Variable    Categories  Minimum  Maximum
----------------------------------------
employed             .    60171    70551  whole numbers, continuous
deflator             .       83    116.9  numbers, continuous
gnp                  .   234289   554894  whole numbers, continuous
unemployed           .     1870     4806  whole numbers, continuous
forces               .     1456     3594  whole numbers, continuous
population           .   107608   130081  whole numbers, continuous
year                 .     1947     1962  whole numbers, continuous
----------------------------------------
)");
}

TEST(Describe, AListIsHeldAgainstOtherData) {
  const TemporaryFolder folder;
  const std::string list = folder.Path("list.xml");
  Described({folder.Write("a.csv", "g,k,x\np,1,1.5\nq,2,2\n"), "--missing", "g=?", "--missing",
             "k=9", "--save", list});
  const std::string other = folder.Write("b.csv", "x,more,k,g\n1,,1,p\n-10,z,9,?\n,,3,r\n2,,2,r\n");
  const std::string out =
      Described({other, "--load", list, "--missing", "x=2", "--save", folder.Path("more.xml")});
  EXPECT_THAT(out, HasSubstr("g             3        1           3 "));
  EXPECT_THAT(out, HasSubstr("k             3        1           3 "));
  EXPECT_THAT(out, HasSubstr("x             2        2           . "));
  EXPECT_THAT(Described({other, "--load", folder.Path("more.xml")}),
              HasSubstr("x             2        2 "));
}

TEST(Describe, DecidesByWhatColumnsHold) {
  std::string text = "digits,eleven,half,mixed,big,none\n";
  for (int i = 0; i < 11; ++i) {
    text += std::to_string(i % 10) + "," + std::to_string(i) + "," + std::to_string(i % 2) + ".5," +
            (i == 10 ? "x" : std::to_string(i)) + ",1e16,\n";
  }
  const TemporaryFolder folder;
  const std::string file = folder.Write("data.csv", text);
  const std::string decided = Described({file});
  EXPECT_THAT(decided,
              HasSubstr("10          .          .        .        .  whole numbers, categ"));
  EXPECT_THAT(decided, HasSubstr("        0       10  whole numbers, continuous\n"));
  EXPECT_THAT(decided, HasSubstr("      0.5      1.5  numbers, continuous\n"));
  EXPECT_THAT(decided,
              HasSubstr("11          .          .        .        .  texts, categories\n"));
  EXPECT_THAT(decided, HasSubstr("1e+16    1e+16  numbers, continuous, constant\n"));
  const std::string changed = Described(
      {file, "--continuous", "digits", "--categorical", "half,none", "--missing", "mixed=x"});
  EXPECT_THAT(changed, HasSubstr("        0        9  whole numbers, continuous\n"));
  EXPECT_THAT(changed,
              HasSubstr("2         .          .        .        .  numbers, categories\n"));
  EXPECT_THAT(changed,
              HasSubstr("0         .          .        .        .  no values, categories"));
}

TEST(Describe, ReadsTheStandardInput) {
  ChildProcess::Options options;
  options.input = "a\n1\n";
  const ProgramResult run = RunMcfit({"describe", "-"}, options);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("whole numbers, categories, constant"));
}

TEST(Describe, AFileWithoutRowsHasVariablesWithoutValues) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("none.xml");
  EXPECT_THAT(Described({folder.Write("none.csv", "a,b\n"), "--pmml", path}),
              HasSubstr("no values, continuous"));
  EXPECT_EQ(mctest::PmmlFaults(folder.Read("none.xml")), "");
}

// The different numbers of a long column aren't kept, and a word behind them is a mistake.
TEST(Describe, ColumnsWithManyDifferentNumbersAreDescribed) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "x\n";
  for (int i = 0; i <= 100001; ++i) text << i << ".25\n";
  const TemporaryFolder folder;
  EXPECT_THAT(Described({folder.Write("long.csv", text.str())}),
              HasSubstr("0.25  100001.2  numbers, continuous"));
  text << "word\n";
  const std::string file = folder.Write("word.csv", text.str());
  ExpectFailures(2,
                 {{{"describe", file}, "'word' is not a number, as more than 100000 different"}});
  EXPECT_THAT(Described({file, "--missing", "x=word"}), HasSubstr("100002        1 "));
  EXPECT_THAT(Described({file, "--categorical", "x"}), HasSubstr("100003        0      100003 "));
}

TEST(Describe, WhatCantBeUsedIsRefused) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", "a,b\n1,p\n2,q\n");
  const std::string twice = folder.Write("twice.csv", "a,a\n1,2\n");
  const std::string nameless = folder.Write("nameless.csv", "a,\n1,2\n");
  const std::string latin = folder.Write("latin.csv", "a\nK\xE4se\n");
  const std::string close = folder.Write("close.csv", "x\n1\n1.0000000000000002\n");
  const std::string far = folder.Write("far.csv", "x\n-1.7e308\n1.7e308\n");
  const std::string heavy = folder.Write("heavy.csv", "x,w\n1,1e15\n2,1\n");
  const std::string wide = folder.Write("wide.csv", "x\n" + std::string(300, 'y') + "\n");
  const std::string list = folder.Path("list.xml");
  const std::string out = folder.Path("out.xml");
  Described({data, "--save", list});
  ExpectFailures(
      2, {{{"describe"}, "describe needs a CSV file, or --load a list"},
          {{"describe", "--load", list, "--pmml", out}, "--pmml needs a CSV file"},
          {{"describe", data, "--load", list, "--weight", "a"}, "excludes"},
          {{"describe", data, "--load", folder.Path("nothing")},
           "cannot open '" + folder.Path("nothing") + "': No such file or directory"},
          {{"describe", data, "--load", folder.Path("")}, "Is a directory"},
          {{"describe", data, "--load", data}, "holds no list of variables"},
          {{"describe", latin, "--load", list}, "there is no column 'b'"},
          {{"describe", data, "--load", list, "--missing", "c=1"}, "the list has no variable 'c'"},
          {{"describe", data, "--save", data}, "would overwrite an input file"},
          {{"describe", data, "--load", list, "--save", data}, "would overwrite an input file"},
          {{"describe", data, "--save", out, "--pmml", out}, "would overwrite another result"},
          {{"describe", data, "--weight", "c"}, "there is no column 'c'"},
          {{"describe", data, "--categorical", "c"}, "there is no column 'c'"},
          {{"describe", data, "--continuous", "c"}, "there is no column 'c'"},
          {{"describe", data, "--continuous", "b"}, "'p' is not a finite number"},
          {{"describe", data, "--weight", "b"}, "'p' is not a finite number"},
          {{"describe", data, "--weight", "a", "--categorical", "a"}, "can be one of categorical"},
          {{"describe", data, "--bins", "a=2", "--categorical", "a"}, "can be one of categorical"},
          {{"describe", data, "--missing", "a"}, "write column=value"},
          {{"describe", data, "--missing", "=1"}, "write column=value"},
          {{"describe", data, "--missing", "c=1"}, "there is no column 'c'"},
          {{"describe", data, "--bins", "a=1"}, "'1' is no whole number from 2 to 10000"},
          {{"describe", data, "--bins", "a=2x"}, "'2x' is no whole number"},
          {{"describe", data, "--bins", "c=2"}, "there is no column 'c'"},
          {{"describe", twice}, "stands more than once"},
          {{"describe", nameless}, "a column has no name"},
          {{"describe", latin, "--pmml", out}, "XML can't hold the text"},
          {{"describe", close, "--bins", "x=9"}, "has no room for 9 bins"},
          {{"describe", far, "--bins", "x=3"}, "has no room for 3 bins"},
          {{"describe", heavy, "--weight", "w", "--pmml", out}, "the weights add up to more"},
          {{"describe", wide, "--save", out}, "the save format has no room"}});
  EXPECT_FALSE(folder.Has("out.xml"));
  EXPECT_FALSE(folder.Has("out.xml.part"));
}

// Whatever is left of a list, it is refused or is still one.
TEST(Describe, AListCutAnywhereIsRefused) {
  const TemporaryFolder folder;
  const std::string list = folder.Path("list.xml");
  Described({folder.Write("data.csv", "a,b\n1.5,p\n2,q\n"), "--save", list});
  const std::string text = folder.Read("list.xml");
  const std::size_t end = text.rfind("\n</MCXMLRoot>");
  for (std::size_t length = 0; length <= end; length += 37) {
    const std::string cut = folder.Write("cut.xml", text.substr(0, length));
    const ProgramResult run = RunMcfit({"describe", "--load", cut});
    EXPECT_EQ(run.status, 2) << length;
    EXPECT_THAT(run.err, HasSubstr("holds no list of variables")) << length;
  }
}

}  // namespace
