// SPDX-License-Identifier: Apache-2.0
//
// Merged documents, as whole texts. The serialiser has an order of its own for attributes.
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "support/pmmlcheck.h"
#include "support/splitmodel.h"
#include "support/temporaryfolder.h"
#include "support/xmldocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using MCComXPrsUtil::MCXSplitPMMLCombiner;
using mctest::SplitModel;
using mctest::XmlNode;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

/// A file and the split values of its rows.
using Piece = std::pair<std::string, Texts>;

std::string Merged(const MCVarList& splitVars, const std::vector<Piece>& pieces) {
  const mctest::TemporaryFolder folder;
  MCXSplitPMMLCombiner combiner(splitVars);
  for (const auto& [text, values] : pieces) {
    const std::string file = folder.Write("model.xml", text);
    EXPECT_TRUE(combiner.AddModel(file, values).IsOK()) << combiner.GetXercesMessage();
  }
  EXPECT_EQ(combiner.GetNModels(), static_cast<int>(pieces.size()));
  EXPECT_TRUE(combiner.ExportMiningModel(folder.Path("merged.xml")).IsOK());
  return folder.Read("merged.xml");
}

MCVarList Region() {
  MCVarList list;
  list.AddCatVar("region", "Region of sale", Texts{"north", "south"}, MC_ROLE_INPUT);
  return list;
}

MCVarList RegionAndYear() {
  MCVarList list = Region();
  const int year = list.AddCatVar("year", "", std::vector<double>{2024.0, 2025.0}, MC_ROLE_INPUT);
  list.GetVarAt(year)->SetVariableStorage(MC_STORAGE_INTEGER);
  return list;
}

/// The lines of the text in one, without the blanks before each.
std::string Lines(const std::string& text) {
  std::istringstream lines(text);
  std::string joined;
  for (std::string line; std::getline(lines, line);) joined += line.substr(line.find('<'));
  return joined;
}

// A merged document as it is written, from what its tests differ in. The first of them has a whole
// one, as it stands.

/// An element of that tag and attributes.
std::string Element(const std::string& start, const std::string& content) {
  if (content.empty()) return "<" + start + "/>";
  return "<" + start + ">" + content + "</" + start.substr(0, start.find(' ')) + ">";
}

const std::string kY = R"(<DataField dataType="double" name="y" optype="continuous"/>)";
const std::string kRegion =
    R"(<DataField dataType="string" displayName="Region of sale" name="region" )"
    R"(optype="categorical"><Value value="north"/><Value value="south"/></DataField>)";
const std::string kMiningFields =
    R"(<MiningField name="y" usageType="predicted"/><MiningField name="kind"/>)";

std::string Kind(const std::string& newValues = "") {
  return Element(R"(DataField dataType="string" name="kind" optype="categorical")",
                 R"(<Value value="a"/><Value value="b"/>)" + newValues);
}

std::string Active(const std::string& field) {
  return "<MiningField name=\"" + field + "\" usageType=\"active\"/>";
}

std::string Equal(const std::string& field, const std::string& value) {
  return "<SimplePredicate field=\"" + field + "\" operator=\"equal\" value=\"" + value + "\"/>";
}

std::string Segment(const std::string& predicate, const std::string& schema,
                    const std::string& content = "") {
  return Element("Segment", predicate + Element(R"(RegressionModel functionName="regression")",
                                                Element("MiningSchema", schema) + content));
}

std::string Document(int nFields, const std::string& fields, const std::string& schema,
                     const std::string& segments) {
  const std::string dictionary =
      "DataDictionary numberOfFields=\"" + std::to_string(nFields) + "\"";
  const std::string model =
      Element(R"(MiningModel functionName="regression")",
              Element("MiningSchema", schema) +
                  Element(R"(Segmentation multipleModelMethod="selectFirst")", segments));
  return R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>)" +
         Element(R"(PMML version="4.1" xmlns="http://www.dmg.org/PMML-4_1")",
                 R"(<Header copyright="c"/>)" + Element(dictionary, fields) + model);
}

Texts Attributes(const XmlNode& parent, const std::string& child, const std::string& attribute) {
  Texts values;
  for (const XmlNode* node : parent.All(child)) values.push_back((*node)[attribute]);
  return values;
}

/// The dictionary and the mining schema of one split by region.
struct Common {
  explicit Common(const std::vector<Piece>& pieces)
      : root(mctest::ReadXml(Merged(Region(), pieces))),
        dictionary(root.Only("DataDictionary")),
        schema(root.Only("MiningModel").Only("MiningSchema")) {}

  Texts Fields() const { return Attributes(dictionary, "DataField", "name"); }
  Texts MiningFields() const { return Attributes(schema, "MiningField", "name"); }
  Texts ValuesOf(std::size_t field) const {
    return Attributes(*dictionary.All("DataField").at(field), "Value", "value");
  }

  XmlNode root;
  const XmlNode& dictionary;
  const XmlNode& schema;
};

TEST(MCXSplitPMMLCombinerMerge, OneSplitVariableGivesEachSegmentABarePredicate) {
  SplitModel south;
  south.header = R"(<Header copyright="of the second file"/>)";
  south.content = R"(<RegressionTable intercept="3"/>)";
  EXPECT_EQ(Merged(Region(), {{SplitModel().Text(), {"north"}}, {south.Text(), {"south"}}}),
            Lines(R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>
<PMML version="4.1" xmlns="http://www.dmg.org/PMML-4_1">
  <Header copyright="c"/>
  <DataDictionary numberOfFields="3">
    <DataField dataType="double" name="y" optype="continuous"/>
    <DataField dataType="string" name="kind" optype="categorical">
      <Value value="a"/>
      <Value value="b"/>
    </DataField>
    <DataField dataType="string" displayName="Region of sale" name="region" optype="categorical">
      <Value value="north"/>
      <Value value="south"/>
    </DataField>
  </DataDictionary>
  <MiningModel functionName="regression">
    <MiningSchema>
      <MiningField name="y" usageType="predicted"/>
      <MiningField name="kind"/>
      <MiningField name="region" usageType="active"/>
    </MiningSchema>
    <Segmentation multipleModelMethod="selectFirst">
      <Segment>
        <SimplePredicate field="region" operator="equal" value="north"/>
        <RegressionModel functionName="regression">
          <MiningSchema>
            <MiningField name="y" usageType="predicted"/>
            <MiningField name="kind"/>
          </MiningSchema>
          <RegressionTable intercept="1">
            <CategoricalPredictor coefficient="2" name="kind" value="a"/>
          </RegressionTable>
        </RegressionModel>
      </Segment>
      <Segment>
        <SimplePredicate field="region" operator="equal" value="south"/>
        <RegressionModel functionName="regression">
          <MiningSchema>
            <MiningField name="y" usageType="predicted"/>
            <MiningField name="kind"/>
          </MiningSchema>
          <RegressionTable intercept="3"/>
        </RegressionModel>
      </Segment>
    </Segmentation>
  </MiningModel>
</PMML>)"));
}

TEST(MCXSplitPMMLCombinerMerge, TwoSplitVariablesGiveACompoundPredicate) {
  SplitModel model;
  model.content = "";
  const std::string year =
      R"(<DataField dataType="integer" displayName="" name="year" optype="categorical">)"
      R"(<Value value="2024"/><Value value="2025"/></DataField>)";
  const std::string predicate = Element(R"(CompoundPredicate booleanOperator="and")",
                                        Equal("region", "north") + Equal("year", "2025"));
  EXPECT_EQ(
      Merged(RegionAndYear(), {{model.Text(), {"north", "2025"}}}),
      Document(4, kY + Kind() + kRegion + year, kMiningFields + Active("region") + Active("year"),
               Segment(predicate, kMiningFields)));
}

TEST(MCXSplitPMMLCombinerMerge, NewFieldsAndCategoriesAreAppendedInTheOrderOfTheFile) {
  SplitModel later;
  later.fields =
      R"(<DataField name="new" optype="continuous" dataType="double" displayName="N"/>)"
      R"(<DataField name="kind" optype="ordinal" dataType="integer">)"
      R"(<Value value="d" displayValue="D"/><Value value="b" property="missing"/>)"
      R"(<Value value="c"/><Value value="d"/></DataField>)"
      R"(<DataField name="new" optype="continuous" dataType="double"><Value value="-1"/>)"
      R"(</DataField>)";
  later.schema = R"(<MiningField name="new"/><MiningField name="kind" usageType="group"/>)";
  later.content = "";
  SplitModel first;
  first.content = "";
  const std::string kind = Kind(R"(<Value displayValue="D" value="d"/><Value value="c"/>)");
  const std::string added =
      R"(<DataField dataType="double" displayName="N" name="new" optype="continuous">)"
      R"(<Value value="-1"/></DataField>)";
  EXPECT_EQ(Merged(Region(), {{first.Text(), {"north"}}, {later.Text(), {"south"}}}),
            Document(4, kY + kind + kRegion + added,
                     kMiningFields + Active("region") + R"(<MiningField name="new"/>)",
                     Segment(Equal("region", "north"), kMiningFields) +
                         Segment(Equal("region", "south"), later.schema)));
}

TEST(MCXSplitPMMLCombinerMerge, TransformationsBecomeThoseOfTheModel) {
  SplitModel model;
  model.content = "<RegressionTable/>";
  model.transformations =
      R"(<TransformationDictionary><DefineFunction name="f"/><DerivedField name="z" )"
      R"(optype="continuous" dataType="double"><FieldRef field="y"/></DerivedField>)"
      R"(<DerivedField name="w"/></TransformationDictionary>)";
  SplitModel later = model;
  later.transformations = "<TransformationDictionary/>";
  const std::string local =
      R"(<LocalTransformations><DerivedField dataType="double" name="z" optype="continuous">)"
      R"(<FieldRef field="y"/></DerivedField><DerivedField name="w"/></LocalTransformations>)";
  EXPECT_EQ(Merged(Region(), {{model.Text(), {"north"}}, {later.Text(), {"south"}}}),
            Document(3, kY + Kind() + kRegion, kMiningFields + Active("region"),
                     Segment(Equal("region", "north"), kMiningFields, model.content + local) +
                         Segment(Equal("region", "south"), kMiningFields,
                                 model.content + "<LocalTransformations/>")));
}

TEST(MCXSplitPMMLCombinerMerge, SplitVariablesAreDescribedByLevelAndStorage) {
  MCVarList list;
  list.AddCatVar("text", "", Texts{"", "<"}, MC_ROLE_INPUT);
  list.AddCatVar("number", "A number", std::vector<double>{0.1, -3.0}, MC_ROLE_INPUT);
  list.AddContVar("continuous", "", 0.0, 1.0, MC_ROLE_INPUT, true, 4);
  const int whole = list.AddContVar("whole", "", MC_ROLE_INPUT);
  list.GetVarAt(whole)->SetVariableStorage(MC_STORAGE_INTEGER);
  list.SetWeightVar("weight", "", MC_ROUND_AS_IS);
  SplitModel model;
  model.fields = "";
  model.schema = "";
  model.content = "";
  const std::string fields =
      R"(<DataField dataType="string" displayName="" name="text" optype="categorical">)"
      R"(<Value value=""/><Value value="&lt;"/></DataField>)"
      R"(<DataField dataType="double" displayName="A number" name="number" optype="categorical">)"
      R"(<Value value="0.1"/><Value value="-3"/></DataField>)"
      R"(<DataField dataType="double" displayName="" name="continuous" optype="continuous"/>)"
      R"(<DataField dataType="integer" displayName="" name="whole" optype="continuous"/>)"
      R"(<DataField dataType="" displayName="" name="weight" optype=""/>)";
  const std::string predicate =
      Element(R"(CompoundPredicate booleanOperator="and")",
              Equal("text", "&lt;") + Equal("number", "0.1") + Equal("continuous", "0.5") +
                  Equal("whole", "2") + Equal("weight", "1"));
  EXPECT_EQ(Merged(list, {{model.Text(), {"<", "0.1", "0.5", "2", "1"}}}),
            Document(5, fields,
                     Active("text") + Active("number") + Active("continuous") + Active("whole") +
                         Active("weight"),
                     Segment(predicate, "")));
}

TEST(MCXSplitPMMLCombinerMerge, AFieldOfTheNameOfASplitVariableIsRepeated) {
  SplitModel model;
  model.fields = R"(<DataField name="region"><Value value="east"/></DataField>)";
  model.schema = R"(<MiningField name="region"/>)";
  SplitModel later = model;
  later.fields = R"(<DataField name="region"><Value value="south"/></DataField>)";
  const Common common({{model.Text(), {"north"}}, {later.Text(), {"south"}}});
  EXPECT_THAT(common.Fields(), ElementsAre("region", "region"));
  EXPECT_THAT(common.MiningFields(), ElementsAre("region", "region"));
  EXPECT_EQ(common.dictionary["numberOfFields"], "2");
  // The first of them is the one that later files add to.
  EXPECT_THAT(common.ValuesOf(0), ElementsAre("east", "south"));
  EXPECT_THAT(common.ValuesOf(1), ElementsAre("north", "south"));
}

TEST(MCXSplitPMMLCombinerMerge, MiningFieldsAreAddedOnlyIfTheirNameIsNew) {
  const struct {
    const char* schema;
    Texts expected;
  } cases[] = {
      {R"(<MiningField name="a"/><MiningField name="b"/><MiningField name="c"/>)",
       {"a", "b", "c", "region"}},
      {R"(<MiningField name="c"/><MiningField name="a"/>)", {"a", "b", "c", "region"}},
      {R"(<MiningField name="c"/><MiningField name="d"/><MiningField name="a"/>)",
       {"a", "b", "c", "region", "d"}},
      {R"(<MiningField name="d"/><MiningField name="d"/>)", {"a", "b", "c", "region", "d"}},
      {"", {"a", "b", "c", "region"}},
  };
  SplitModel first;
  first.schema = cases[0].schema;
  for (const auto& test : cases) {
    SplitModel later;
    later.schema = test.schema;
    const Common common({{first.Text(), {"north"}}, {later.Text(), {"south"}}});
    EXPECT_EQ(common.MiningFields(), test.expected) << test.schema;
  }
}

TEST(MCXSplitPMMLCombinerMerge, FieldsWithoutANameCountAsOneOfAnEmptyName) {
  SplitModel model;
  model.fields = R"(<DataField><Value/></DataField>)";
  model.schema = "<MiningField/>";
  SplitModel later = model;
  later.fields = R"(<DataField><Value/><Value value="1"/></DataField>)";
  const Common common({{model.Text(), {"north"}}, {later.Text(), {"south"}}});
  EXPECT_THAT(common.Fields(), ElementsAre("", "region"));
  EXPECT_THAT(common.MiningFields(), ElementsAre("", "region"));
  EXPECT_THAT(common.ValuesOf(0), ElementsAre("", "1"));
}

TEST(MCXSplitPMMLCombinerMerge, TheListOfModelsDecidesBetweenTwoOfAFile) {
  SplitModel model;
  model.model = R"(TreeModel functionName="regression")";
  std::string text = model.Text();
  const std::string second =
      R"(<AssociationModel functionName="other"><MiningSchema/></AssociationModel>)";
  text.insert(text.rfind("</PMML>"), second);
  const Common common({{text, {"north"}}});
  EXPECT_EQ(common.root.Only("MiningModel")["functionName"], "other");
  EXPECT_THAT(common.MiningFields(), ElementsAre("region"));
}

TEST(MCXSplitPMMLCombinerMerge, EveryModelOfTheStandardIsKnown) {
  for (const char* name :
       {"AssociationModel", "ClusteringModel", "GeneralRegressionModel", "NaiveBayesModel",
        "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
        "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"}) {
    SplitModel model;
    model.model = name + std::string(R"( functionName="regression")");
    const Common common({{model.Text(), {"north"}}});
    const XmlNode& miningModel = common.root.Only("MiningModel");
    EXPECT_EQ(miningModel.Only("Segmentation").Only("Segment").All(name).size(), 1U) << name;
  }
}

TEST(MCXSplitPMMLCombinerMerge, AnEmptyValueAndAVariableWithoutNameGuardNothing) {
  MCVarList list = Region();
  list.SetWeightVar("", "", MC_ROUND_AS_IS);
  const XmlNode root = mctest::ReadXml(
      Merged(list, {{SplitModel().Text(), {"north", "1"}}, {SplitModel().Text(), {"", "1"}}}));
  const auto segments = root.Only("MiningModel").Only("Segmentation").All("Segment");
  ASSERT_EQ(segments.size(), 2U);
  EXPECT_THAT(Attributes(segments[0]->Only("CompoundPredicate"), "SimplePredicate", "field"),
              ElementsAre("region"));
  EXPECT_THAT(segments[1]->Only("CompoundPredicate").children, IsEmpty());

  const XmlNode bare = mctest::ReadXml(Merged(Region(), {{SplitModel().Text(), {""}}}));
  const XmlNode& segment = bare.Only("MiningModel").Only("Segmentation").Only("Segment");
  EXPECT_THAT(segment.children, testing::SizeIs(1));
  EXPECT_EQ(segment.children[0].name, "RegressionModel");
}

TEST(MCXSplitPMMLCombinerMerge, TheFirstFileDecidesVersionAndRoot) {
  SplitModel first;
  first.root = R"(PMML version="3.2" xmlns="http://www.dmg.org/PMML-3_2" xmlns:x="urn:x")";
  const Common common({{first.Text(), {"north"}}, {SplitModel().Text(), {"south"}}});
  EXPECT_EQ(common.root["version"], "3.2");
  EXPECT_EQ(common.root["xmlns"], "http://www.dmg.org/PMML-3_2");
  EXPECT_EQ(common.root["xmlns:x"], "urn:x");
}

TEST(MCXSplitPMMLCombinerMerge, AMissingHeaderIsPassedOver) {
  SplitModel first;
  first.header = "";
  const Common common({{first.Text(), {"north"}}, {SplitModel().Text(), {"south"}}});
  EXPECT_THAT(common.root.All("Header"), IsEmpty());
}

TEST(MCXSplitPMMLCombinerMerge, ModelsAreTakenOverAsTheyStand) {
  SplitModel model;
  model.content = "\n  <!-- a > b --><?hint?><![CDATA[a < b & c]]>\n  K\u00e4se &lt;&#x20AC;";
  const std::string merged = Merged(Region(), {{model.Text(), {"north"}}});
  EXPECT_THAT(merged, testing::HasSubstr("\n  <!-- a > b --><?hint?><![CDATA[a < b & c]]>\n  "
                                         "K\u00e4se &lt;\u20ac</RegressionModel>"));
}

TEST(MCXSplitPMMLCombinerMerge, EntitiesAreReplacedByWhatTheyStandFor) {
  SplitModel model;
  model.content = R"(<Extension value="&inner;">&outer;.</Extension>)";
  const std::string type =
      "<!DOCTYPE PMML [<!ENTITY inner 'in'><!ENTITY outer '(&inner;<b>&inner;</b>&#38;lt;)'>]>";
  const std::string merged = Merged(Region(), {{type + model.Text(), {"north"}}});
  EXPECT_THAT(merged, testing::HasSubstr(
                          R"(<Extension value="in">(in<b>in</b>&lt;).</Extension></Regression)"));
}

TEST(MCXSplitPMMLCombinerMerge, AttributesThatOnlyTheDtdTellsAreWritten) {
  SplitModel model;
  model.root = "PMML";
  model.fields += R"(<DataField name="z"><Value/></DataField>)";
  model.model = "RegressionModel";
  model.content = R"(<Extension/><Extension value="told"/>)";
  const std::string type = R"(<!DOCTYPE PMML [<!ATTLIST PMML version CDATA "4.1">)"
                           R"(<!ATTLIST Value value CDATA "v">)"
                           R"(<!ATTLIST RegressionModel functionName CDATA "regression">)"
                           R"(<!ATTLIST Extension value CDATA "&#228;">]>)";
  const Common common({{type + model.Text(), {"north"}}, {type + model.Text(), {"south"}}});
  EXPECT_EQ(common.root["version"], "4.1");
  EXPECT_THAT(common.ValuesOf(2), ElementsAre("v"));
  const XmlNode& segmentation = common.root.Only("MiningModel").Only("Segmentation");
  for (const XmlNode* segment : segmentation.All("Segment")) {
    const XmlNode& copy = segment->Only("RegressionModel");
    EXPECT_EQ(copy["functionName"], "regression");
    EXPECT_THAT(Attributes(copy, "Extension", "value"), ElementsAre("\u00e4", "told"));
  }
}

TEST(MCXSplitPMMLCombinerMerge, AnotherEncodingBecomesUtf8) {
  SplitModel model;
  model.content = "<Extension value=\"K\xe4se\"/>";
  const std::string declaration = R"(<?xml version="1.0" encoding="ISO-8859-1"?>)";
  const std::string merged = Merged(Region(), {{declaration + model.Text(), {"north"}}});
  EXPECT_THAT(merged, testing::HasSubstr("encoding=\"UTF-8\""));
  EXPECT_THAT(merged, testing::HasSubstr("K\u00e4se"));
}

TEST(MCXSplitPMMLCombinerMerge, ValidFilesGiveAValidDocument) {
  SplitModel south;
  south.fields += R"(<DataField name="z" optype="continuous" dataType="double"/>)";
  south.schema += R"(<MiningField name="z"/>)";
  const std::string merged = Merged(RegionAndYear(), {{SplitModel().Text(), {"north", "2024"}},
                                                      {south.Text(), {"south", "2024"}},
                                                      {SplitModel().Text(), {"south", "2025"}}});
  EXPECT_EQ(mctest::PmmlSchemaFaults(SplitModel().Text(), "4-1"), "");
  EXPECT_EQ(mctest::PmmlSchemaFaults(merged, "4-1"), "");
}

}  // namespace
