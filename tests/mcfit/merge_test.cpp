// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit merge` as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/pmmlcheck.h"
#include "support/splitmodel.h"
#include "support/xmldocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using mctest::SplitModel;
using mctest::XmlNode;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> Values(const XmlNode& merged, const std::string& field) {
  std::vector<std::string> values;
  for (const XmlNode* node : merged.Only("DataDictionary").All("DataField")) {
    if ((*node)["name"] != field) continue;
    for (const XmlNode* value : node->All("Value")) values.push_back((*value)["value"]);
  }
  return values;
}

TEST(Merge, MergesFilesInTheirOrder) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("model.xml", SplitModel().Text());
  const std::string out = folder.Path("merged.xml");
  const ProgramResult run = RunMcfit({"merge", out, "--split", "region=north,year=2025", file,
                                      "--split", "year=2024,region=south", file});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "2 models merged in " + out + "\n");
  const std::string document = folder.Read("merged.xml");
  EXPECT_EQ(mctest::PmmlSchemaFaults(document, "4-1"), "");
  const XmlNode merged = mctest::ReadXml(document);
  EXPECT_THAT(Values(merged, "region"), ElementsAre("north", "south"));
  EXPECT_THAT(Values(merged, "year"), ElementsAre("2024", "2025"));
  std::vector<std::string> predicates;
  const XmlNode& segmentation = merged.Only("MiningModel").Only("Segmentation");
  for (const XmlNode* segment : segmentation.All("Segment")) {
    for (const XmlNode* node : segment->Only("CompoundPredicate").All("SimplePredicate")) {
      predicates.push_back((*node)["field"] + "=" + (*node)["value"]);
    }
  }
  EXPECT_THAT(predicates, ElementsAre("region=north", "year=2025", "region=south", "year=2024"));
}

TEST(Merge, TakesFilesBehindAllSplitsToo) {
  const TemporaryFolder folder;
  SplitModel other;
  other.content = "<RegressionTable intercept=\"7\"/>";
  const std::string north = folder.Write("north.xml", SplitModel().Text());
  const std::string south = folder.Write("south.xml", other.Text());
  const ProgramResult run = RunMcfit({"merge", "--split", "\"region=north, or so\"", "--split",
                                      "region=a=b", folder.Path("merged.xml"), north, south});
  EXPECT_EQ(run.status, 0) << run.err;
  const XmlNode merged = mctest::ReadXml(folder.Read("merged.xml"));
  EXPECT_THAT(Values(merged, "region"), ElementsAre("a=b", "north, or so"));
  const auto segments = merged.Only("MiningModel").Only("Segmentation").All("Segment");
  EXPECT_EQ(segments.at(1)->Only("RegressionModel").Only("RegressionTable")["intercept"], "7");
}

TEST(Merge, NamesTheFileThatCannotBeMerged) {
  const TemporaryFolder folder;
  const auto write = [&folder](const char* name, const std::string& text) {
    return folder.Write(name, text);
  };
  SplitModel other;
  other.model = "RegressionModel functionName=\"classification\"";
  SplitModel merged;
  merged.model = "MiningModel functionName=\"regression\"";
  SplitModel deep;
  deep.content = mctest::Nested(20000);
  const std::string good = write("good.xml", SplitModel().Text());
  const std::string cut = SplitModel().Text().substr(0, SplitModel().Text().size() - 5);
  const struct {
    const char* file;
    std::string text;
    const char* message;
  } cases[] = {
      {"other.xml", other.Text(), "other.xml: error 124 (MCS_SPLIT_FUNCTION)"},
      {"merged.xml", merged.Text(), "merged.xml: error 125 (MCS_SPLIT_MINING_MODEL)"},
      {"html.xml", "<html/>", "html.xml: error 108 (MCS_DOC_MISSING_ITEM)"},
      {"cut.xml", cut, "cut.xml: line 1, column "},
      {"text.xml", "y,x\n1,2\n", "text.xml: line 1, column 1: "},
      {"deep.xml", deep.Text(), "deep.xml: the file or its split values can't be written again"},
  };
  for (const auto& test : cases) {
    const std::string file = write(test.file, test.text);
    const ProgramResult run =
        RunMcfit({"merge", folder.Path("out.xml"), "--split", "a=1", good, "--split", "a=2", file});
    EXPECT_EQ(run.status, 2) << test.file;
    EXPECT_THAT(run.err, HasSubstr("mcfit: " + folder.Path(test.message)));
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(folder.Has("out.xml"));
    EXPECT_FALSE(folder.Has("out.xml.part"));
  }
}

TEST(Merge, RefusesWhatItCannotDo) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("model.xml", SplitModel().Text());
  const std::string out = folder.Path("out.xml");
  const auto merge = [&](const Arguments& splits) {
    Arguments arguments = {"merge", out};
    for (const std::string& split : splits) {
      arguments.insert(arguments.end(), {"--split", split, file});
    }
    return arguments;
  };
  const char kForm[] = "write column=value, with commas between several";
  ExpectFailures(
      2, {{{"merge"}, "required"},
          {{"merge", out, file}, "--split is required"},
          {{"merge", out, "--split", "a=1", file, file},
           "there are 2 files and 1 --split: each file needs one"},
          {merge({"a"}), kForm},
          {merge({"=1"}), kForm},
          {merge({"a="}), kForm},
          {merge({""}), kForm},
          {merge({"a=1,,b=2"}), "--split 'a=1,,b=2'"},
          {merge({"a=1,a=2"}), "column 'a' stands more than once"},
          {merge({"a=1", "b=1"}), "--split 'b=1': the first --split names 'a', and each has to"},
          {merge({"a=1", "a=1,b=2"}), "the first --split names 'a', and each has to"},
          {merge({"a=1", ""}), "the first --split names 'a', and each has to"},
          {merge({"a=1,b=2", "b=2,a=1"}), "--split 'b=2,a=1': an earlier file has these values"},
          {merge({"a=\x01"}), "XML can't hold the split value"},
          {{"merge", file, "--split", "a=1", file}, "would overwrite an input file"},
          {{"merge", out, "--split", "a=1", folder.Path("none.xml")},
           "cannot open '" + folder.Path("none.xml") + "'"},
          {{"merge", folder.Path("none/out.xml"), "--split", "a=1", file}, "cannot write"}});
}

}  // namespace
