// SPDX-License-Identifier: Apache-2.0
//
// Files from strangers: whatever they hold, what is merged can be read again, and time stays in
// proportion to their size.
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "support/mutation.h"
#include "support/splitmodel.h"
#include "support/temporaryfolder.h"
#include "support/xmldocument.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

namespace {

using MCComXPrsUtil::MCXMLReadWrite;
using MCComXPrsUtil::MCXSplitPMMLCombiner;
using mctest::Nested;
using mctest::SplitModel;
using Texts = std::vector<std::string>;

MCCommonMetadata::MCVarList Region() {
  MCCommonMetadata::MCVarList list;
  list.AddCatVar("region", "", Texts{"north", "south"}, MCCommonMetadata::MC_ROLE_INPUT);
  return list;
}

SplitModel Rich() {
  SplitModel model;
  model.content +=
      "<!-- c --><?p d?><![CDATA[<>]]><Extension name='n' value='&#169;'>&e;&lt;</Extension>";
  model.transformations =
      R"(<TransformationDictionary><DerivedField name="z"><FieldRef field="y"/></DerivedField>)"
      R"(</TransformationDictionary>)";
  return model;
}

TEST(MCXSplitPMMLCombinerHostile, WhateverIsMergedOfMutatedFilesCanBeReadAgain) {
  const std::string type = "<!DOCTYPE PMML [<!ENTITY i 'i'><!ENTITY e '<b>&i;</b>'>]>";
  const std::string seeds[] = {type + Rich().Text(),
                               R"(<?xml version="1.1"?>)" + type + Rich().Text()};
  const mctest::TemporaryFolder folder;
  std::mt19937_64 engine(7);
  MCXSplitPMMLCombiner combiner(Region());
  MCXMLReadWrite reader;
  reader.SetStrict(true);
  int nMerged = 0;
  int nDocuments = 0;
  for (int i = 0; i < 2000; ++i) {
    const std::string text = mctest::Mutated(seeds[i % 2], engine);
    if (combiner.AddModel(folder.Write("model.xml", text), {"north"}).IsOK()) ++nMerged;
    ASSERT_EQ(combiner.GetNModels(), nMerged);
    if (i % 4 != 3 || combiner.GetNModels() == 0) continue;
    if (combiner.ExportMiningModel(folder.Path("merged.xml")).IsOK()) ++nDocuments;
    ASSERT_TRUE(reader.ParseToDOM(folder.Path("merged.xml")).IsOK())
        << reader.GetXercesMessage() << "\n"
        << text << "\n"
        << folder.Read("merged.xml");
  }
  // The changes are such that many files pass.
  EXPECT_GT(nMerged, 300);
  EXPECT_LT(nMerged, 1900);
  EXPECT_GT(nDocuments, 200);
}

double Seconds(const SplitModel& first, const SplitModel& second) {
  const mctest::TemporaryFolder folder;
  MCXSplitPMMLCombiner combiner(Region());
  const std::string files[] = {folder.Write("1.xml", first.Text()),
                               folder.Write("2.xml", second.Text())};
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(combiner.AddModel(files[0], {"north"}).IsOK());
  EXPECT_TRUE(combiner.AddModel(files[1], {"south"}).IsOK());
  EXPECT_TRUE(combiner.ExportMiningModel(folder.Path("merged.xml")).IsOK());
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string Repeated(int n, const std::string& text) {
  std::string all;
  for (int i = 0; i < n; ++i) all += text;
  return all;
}

std::string Numbered(int n, const std::string& before, const std::string& after) {
  std::string all;
  for (int i = 0; i < n; ++i) all += before + std::to_string(i) + after;
  return all;
}

// A walk in the square of the size would take minutes: the limit leaves room for a slow machine and
// for sanitizers.
constexpr double kLongest = 60.0;

TEST(MCXSplitPMMLCombinerHostile, ManyCategoriesOfOneFieldTakeLinearTime) {
  SplitModel first;
  SplitModel second;
  const auto field = [](const std::string& values) {
    return R"(<DataField name="many">)" + values + "</DataField>";
  };
  first.fields += field(Numbered(50000, R"(<Value value="a)", R"("/>)"));
  second.fields += field(Numbered(50000, R"(<Value value="b)", R"("/>)"));
  EXPECT_LT(Seconds(first, second), kLongest);
}

TEST(MCXSplitPMMLCombinerHostile, ManyFieldsTakeLinearTime) {
  SplitModel first;
  SplitModel second;
  first.fields += Numbered(30000, R"(<DataField name="a)", R"("/>)");
  second.fields += Numbered(30000, R"(<DataField name="b)", R"("/>)");
  first.schema += Numbered(30000, R"(<MiningField name="a)", R"("/>)");
  second.schema += Numbered(30000, R"(<MiningField name="b)", R"("/>)");
  EXPECT_LT(Seconds(first, second), kLongest);
}

// A search for one list in the other would begin again at each of the repeated names.
TEST(MCXSplitPMMLCombinerHostile, RepeatedMiningFieldsTakeLinearTime) {
  SplitModel first;
  SplitModel second;
  first.schema = Repeated(60000, R"(<MiningField name="a"/>)");
  second.schema = Repeated(30000, R"(<MiningField name="a"/>)") + R"(<MiningField name="b"/>)";
  EXPECT_LT(Seconds(first, second), kLongest);
}

TEST(MCXSplitPMMLCombinerHostile, ManyElementsFarDownTakeLinearTime) {
  SplitModel model;
  model.content = Nested(9990, Repeated(50000, "<a/>"));
  EXPECT_LT(Seconds(model, model), kLongest);
}

TEST(MCXSplitPMMLCombinerHostile, EntitiesInEntitiesTakeTheTimeOfWhatTheyStandFor) {
  std::string type = "<!DOCTYPE PMML [<!ENTITY e0 'x'>";
  for (int i = 1; i <= 3000; ++i) {
    const std::string number = std::to_string(i);
    type += "<!ENTITY e" + number + " '<a/>&e" + std::to_string(i - 1) + ";'>";
  }
  SplitModel model;
  model.content = "&e3000;";
  const mctest::TemporaryFolder folder;
  MCXSplitPMMLCombiner combiner(Region());
  const std::string file = folder.Write("model.xml", type + "]>" + model.Text());
  EXPECT_TRUE(combiner.AddModel(file, {"north"}).IsOK());
  EXPECT_TRUE(combiner.ExportMiningModel(folder.Path("merged.xml")).IsOK());
  const mctest::XmlNode root = mctest::ReadXml(folder.Read("merged.xml"));
  const mctest::XmlNode& segment = root.Only("MiningModel").Only("Segmentation").Only("Segment");
  EXPECT_EQ(segment.Only("RegressionModel").All("a").size(), 3000U);
  EXPECT_EQ(segment.Only("RegressionModel").text, "x");
}

}  // namespace
