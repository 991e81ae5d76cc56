// SPDX-License-Identifier: Apache-2.0
//
// What a combiner refuses, what it is then, and how it goes from one document to the next.
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "support/countingallocator.h"
#include "support/leaksallowed.h"
#include "support/memoryexhaustion.h"
#include "support/splitmodel.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

namespace {

using namespace MCCommonMetadata;
using MCCommon::MCStatus;
using MCComXPrsUtil::MCXSplitPMMLCombiner;
using mctest::Nested;
using mctest::SplitModel;
using testing::HasSubstr;
using testing::StartsWith;
using Texts = std::vector<std::string>;

MCVarList Region() {
  MCVarList list;
  list.AddCatVar("region", "", Texts{"north", "south"}, MC_ROLE_INPUT);
  return list;
}

bool IsError(const MCStatus& status, long code) {
  return status == MCStatus(code, false);
}

/// A combiner of models by region, and a folder for its files.
class Fixture {
public:
  explicit Fixture(const MCVarList& splitVars = Region()) : combiner(splitVars) {}

  MCStatus Add(const std::string& text, const Texts& values = {"north"}) {
    const MCStatus status = combiner.AddModel(folder.Write("model.xml", text), values);
    EXPECT_EQ(combiner.GetStatus(), status);
    return status;
  }

  std::string Export() {
    EXPECT_TRUE(combiner.ExportMiningModel(folder.Path("merged.xml")).IsOK());
    return folder.Read("merged.xml");
  }

  mctest::TemporaryFolder folder;
  MCXSplitPMMLCombiner combiner;
};

std::string Without(std::string text, const std::string& piece) {
  const std::size_t place = text.find(piece);
  EXPECT_NE(place, std::string::npos) << piece;
  return text.erase(place, piece.size());
}

/// A model whose function, fields, categories and mining fields are new but for the y, so that any
/// change of the common document would be seen.
SplitModel Other() {
  SplitModel model;
  model.fields += R"(<DataField name="y"><Value value="7"/></DataField><DataField name="other"/>)"
                  R"(<DataField name="other"><Value value="8"/></DataField>)";
  model.schema += R"(<MiningField name="other"/>)";
  return model;
}

struct Refusal {
  const char* what;
  std::string text;
  long code;
};

std::vector<Refusal> RefusedAlways() {
  const std::string good = Other().Text();
  SplitModel mining = Other();
  mining.model = R"(MiningModel functionName="regression")";
  SplitModel unknown = Other();
  unknown.model = R"(UnknownModel functionName="regression")";
  SplitModel prefixed = Other();
  prefixed.root = R"(p:PMML xmlns:p="urn:p")";
  SplitModel deepModel = Other();
  deepModel.content = Nested(9996);
  SplitModel deepDictionary = Other();
  deepDictionary.fields += Nested(9999);
  SplitModel deepHeader = Other();
  deepHeader.header = "<Header>" + Nested(9999) + "</Header>";
  SplitModel deepTransformations = Other();
  deepTransformations.transformations = "<TransformationDictionary><DerivedField>" + Nested(9994) +
                                        "</DerivedField></TransformationDictionary>";
  SplitModel deepest = Other();
  deepest.content = Nested(1000000);
  return {
      {"nothing", "", 108},
      {"no XML", "y,region\n1,north\n", 108},
      {"another root", "<html/>", 108},
      {"a root with a prefix", prefixed.Text(), 108},
      {"no model", R"(<PMML version="4.1"/>)", 108},
      {"no model of the standard", unknown.Text(), 108},
      {"a merged model", mining.Text(), 125},
      {"a merged model without function", R"(<PMML><MiningModel/></PMML>)", 125},
      {"no function", Without(good, R"( functionName="regression")"), 108},
      {"no dictionary", Without(good, "<DataDictionary>" + Other().fields + "</DataDictionary>"),
       108},
      {"no mining schema", Without(good, "<MiningSchema>" + Other().schema + "</MiningSchema>"),
       108},
      {"cut in the dictionary", good.substr(0, good.find("kind")), 108},
      {"cut before the model", good.substr(0, good.find("<Reg")), 108},
      {"a model that is too deep", deepModel.Text(), 104},
      {"a dictionary that is too deep", deepDictionary.Text(), 104},
      {"a header that is too deep", deepHeader.Text(), 104},
      {"transformations that are too deep", deepTransformations.Text(), 104},
      {"a million levels", deepest.Text(), 104},
  };
}

/// Files that say XML 1.1 and hold a control character, which no document of ours can.
std::vector<Refusal> Unwritable() {
  const std::string start = R"(<?xml version="1.1"?>)";
  std::vector<Refusal> refusals;
  const auto add = [&](const char* where, const SplitModel& model) {
    refusals.push_back({where, start + model.Text(), 104});
  };
  SplitModel content = Other();
  content.content = "<a>b<c><d>&#1;</d>e</c></a>";
  add("content", content);
  SplitModel attribute = Other();
  attribute.content = R"(<a b="&#1;"/>)";
  add("attribute", attribute);
  SplitModel value = Other();
  value.fields += R"(<DataField name="kind"><Value value="new"/><Value value="&#1;"/></DataField>)";
  add("value", value);
  SplitModel field = Other();
  field.fields += R"(<DataField name="&#1;"/>)";
  add("field", field);
  SplitModel schema = Other();
  schema.schema += R"(<MiningField name="&#1;"/>)";
  add("schema", schema);
  SplitModel transformations = Other();
  transformations.transformations =
      R"(<TransformationDictionary><DerivedField name="&#1;"/></TransformationDictionary>)";
  add("transformations", transformations);
  return refusals;
}

TEST(MCXSplitPMMLCombinerState, BeginsEmpty) {
  const Fixture fixture;
  EXPECT_TRUE(fixture.combiner.GetStatus().IsOK());
  EXPECT_EQ(fixture.combiner.GetNModels(), 0);
  EXPECT_FALSE(fixture.combiner.IsStrict());
  EXPECT_EQ(fixture.combiner.GetXercesMessage(), "");
  std::ostringstream out;
  fixture.combiner.Display(out);
  EXPECT_EQ(out.str(), "");
}

TEST(MCXSplitPMMLCombinerState, ARefusedFirstFileLeavesItsPlaceToTheNext) {
  Fixture reference;
  reference.Add(SplitModel().Text());
  const std::string expected = reference.Export();
  std::vector<Refusal> refusals = RefusedAlways();
  for (Refusal& refusal : Unwritable()) refusals.push_back(std::move(refusal));
  for (const Refusal& refusal : refusals) {
    Fixture fixture;
    EXPECT_TRUE(IsError(fixture.Add(refusal.text), refusal.code)) << refusal.what;
    EXPECT_EQ(fixture.combiner.GetNModels(), 0) << refusal.what;
    EXPECT_TRUE(IsError(fixture.combiner.ExportMiningModel(fixture.folder.Path("merged.xml")),
                        refusal.code));
    EXPECT_FALSE(fixture.folder.Has("merged.xml")) << refusal.what;
    EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK()) << refusal.what;
    EXPECT_EQ(fixture.Export(), expected) << refusal.what;
  }
}

TEST(MCXSplitPMMLCombinerState, ARefusedLaterFileLeavesNoTrace) {
  Fixture reference;
  reference.Add(SplitModel().Text());
  reference.Add(Other().Text(), {"south"});
  const std::string expected = reference.Export();
  std::vector<Refusal> refusals = RefusedAlways();
  for (Refusal& refusal : Unwritable()) refusals.push_back(std::move(refusal));
  SplitModel function = Other();
  function.model = R"(RegressionModel functionName="classification")";
  refusals.push_back({"another function", function.Text(), 124});
  const std::string schema = "<MiningSchema>" + function.schema + "</MiningSchema>";
  refusals.push_back({"another function and no schema", Without(function.Text(), schema), 124});

  Fixture fixture;
  EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  for (const Refusal& refusal : refusals) {
    EXPECT_TRUE(IsError(fixture.Add(refusal.text), refusal.code)) << refusal.what;
    EXPECT_EQ(fixture.combiner.GetNModels(), 1) << refusal.what;
  }
  EXPECT_TRUE(fixture.Add(Other().Text(), {"south"}).IsOK());
  EXPECT_EQ(fixture.Export(), expected);
}

TEST(MCXSplitPMMLCombinerState, PiecesAsDeepAsCanBeWrittenAreMerged) {
  SplitModel model;
  model.header = "<Header>" + Nested(9998) + "</Header>";
  model.fields += Nested(9998);
  model.content = Nested(9995);
  model.transformations = "<TransformationDictionary><DerivedField>" + Nested(9993) +
                          "</DerivedField></TransformationDictionary>";
  Fixture fixture;
  EXPECT_TRUE(fixture.Add(model.Text()).IsOK());
  EXPECT_TRUE(fixture.Add(model.Text()).IsOK());
  SplitModel tooDeep = model;
  tooDeep.content = Nested(9996);
  EXPECT_TRUE(IsError(fixture.Add(tooDeep.Text()), 104));
  EXPECT_THAT(fixture.combiner.GetXercesMessage(), HasSubstr("elements too deep"));
  EXPECT_THAT(fixture.Export(), HasSubstr(Nested(9994, "").substr(0, 11 * 9994)));
}

TEST(MCXSplitPMMLCombinerState, AFileThatIsNotThereIsRefused) {
  Fixture fixture;
  EXPECT_TRUE(IsError(fixture.combiner.AddModel(fixture.folder.Path("none.xml"), {"north"}), 104));
  fixture.combiner.SetStrict(true);
  EXPECT_TRUE(IsError(fixture.combiner.AddModel(fixture.folder.Path("none.xml"), {"north"}), 104));
  EXPECT_THAT(fixture.combiner.GetXercesMessage(), HasSubstr("none.xml"));
  EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  EXPECT_EQ(fixture.combiner.GetXercesMessage(), "");
}

TEST(MCXSplitPMMLCombinerState, EachFileNeedsAValueForEachSplitVariable) {
  MCVarList list = Region();
  list.AddCatVar("year", "", std::vector<double>{2024.0}, MC_ROLE_INPUT);
  Fixture fixture(list);
  EXPECT_TRUE(IsError(fixture.Add(SplitModel().Text(), {"north"}), 126));
  EXPECT_TRUE(IsError(fixture.Add(SplitModel().Text(), {"north", "2024", ""}), 126));
  EXPECT_EQ(fixture.combiner.GetNModels(), 0);
  // Before the file is looked at.
  EXPECT_TRUE(IsError(fixture.combiner.AddModel("/none", {"north"}), 126));
  EXPECT_EQ(fixture.combiner.GetXercesMessage(), "");
  EXPECT_TRUE(fixture.Add(SplitModel().Text(), {"north", "2024"}).IsOK());

  Fixture unsplit{MCVarList()};
  EXPECT_TRUE(IsError(unsplit.Add(SplitModel().Text(), {"north"}), 126));
}

TEST(MCXSplitPMMLCombinerState, WithoutFileOrValuesTheOldStatusStands) {
  Fixture fixture;
  EXPECT_TRUE(fixture.combiner.AddModel("", {"north"}).IsOK());
  EXPECT_TRUE(fixture.combiner.AddModel("model.xml", {}).IsOK());
  fixture.Add("<html/>");
  EXPECT_TRUE(IsError(fixture.combiner.AddModel("", {"north"}), 108));
  EXPECT_TRUE(IsError(fixture.combiner.AddModel("model.xml", {}), 108));
  EXPECT_EQ(fixture.combiner.GetNModels(), 0);
}

TEST(MCXSplitPMMLCombinerState, CountsModelsAndNotRefusals) {
  Fixture fixture;
  for (const char* text : {"good", "good", "bad", "good"}) {
    fixture.Add(text == std::string("good") ? SplitModel().Text() : "<html/>");
  }
  EXPECT_EQ(fixture.combiner.GetNModels(), 3);
}

TEST(MCXSplitPMMLCombinerState, AnExportWithoutModelsWritesNothing) {
  Fixture fixture;
  const std::string path = fixture.folder.Path("merged.xml");
  EXPECT_TRUE(fixture.combiner.ExportMiningModel(path).IsOK());
  EXPECT_FALSE(fixture.folder.Has("merged.xml"));
}

TEST(MCXSplitPMMLCombinerState, AFileAfterAnExportStartsAnew) {
  Fixture reference;
  reference.Add(Other().Text(), {"south"});
  reference.Add(SplitModel().Text());
  const std::string expected = reference.Export();

  Fixture fixture;
  SplitModel first;
  first.model = R"(RegressionModel functionName="classification")";
  fixture.Add(first.Text());
  fixture.Export();
  EXPECT_TRUE(fixture.Add(Other().Text(), {"south"}).IsOK());
  EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  EXPECT_EQ(fixture.combiner.GetNModels(), 3);
  EXPECT_EQ(fixture.Export(), expected);
}

TEST(MCXSplitPMMLCombinerState, ASecondExportDoesNothing) {
  Fixture fixture;
  fixture.Add(SplitModel().Text());
  fixture.Export();
  EXPECT_TRUE(fixture.combiner.ExportMiningModel(fixture.folder.Path("second.xml")).IsOK());
  EXPECT_FALSE(fixture.folder.Has("second.xml"));
}

TEST(MCXSplitPMMLCombinerState, AnExportWithoutNameLetsGoOfTheDocument) {
  Fixture fixture;
  fixture.Add(SplitModel().Text());
  fixture.Add("<html/>");
  EXPECT_TRUE(fixture.combiner.ExportMiningModel("").IsOK());
  EXPECT_TRUE(fixture.combiner.GetStatus().IsOK());
  EXPECT_TRUE(fixture.combiner.ExportMiningModel(fixture.folder.Path("merged.xml")).IsOK());
  EXPECT_FALSE(fixture.folder.Has("merged.xml"));
}

TEST(MCXSplitPMMLCombinerState, AnExportThatFailsLetsGoOfTheDocument) {
  Fixture fixture;
  fixture.Add(SplitModel().Text());
  EXPECT_TRUE(IsError(fixture.combiner.ExportMiningModel("/nonexistent/merged.xml"), 118));
  EXPECT_TRUE(IsError(fixture.combiner.GetStatus(), 118));
  EXPECT_THAT(fixture.combiner.GetXercesMessage(), HasSubstr("/nonexistent/merged.xml"));
  EXPECT_TRUE(IsError(fixture.combiner.ExportMiningModel(fixture.folder.Path("m.xml")), 118));
  EXPECT_FALSE(fixture.folder.Has("m.xml"));
  EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  EXPECT_THAT(fixture.Export(), HasSubstr("<Segment>"));
}

TEST(MCXSplitPMMLCombinerState, ValuesAreThoseOfAnySplitVariable) {
  MCVarList list = Region();
  list.AddCatVar("year", "", std::vector<double>{2024.0, 0.5}, MC_ROLE_INPUT);
  list.AddContVar("x", "", 0.0, 1.0, MC_ROLE_INPUT, true, 3);
  const MCXSplitPMMLCombiner combiner(list);
  EXPECT_TRUE(combiner.IsEqualValues({}).IsOK());
  EXPECT_TRUE(combiner.IsEqualValues({"0.5", "north", "0.5"}).IsOK());
  for (const char* value : {"", "North", "2024.0", "0"}) {
    EXPECT_TRUE(IsError(combiner.IsEqualValues({"north", value}), 126)) << value;
  }
  EXPECT_TRUE(combiner.GetStatus().IsOK());
}

TEST(MCXSplitPMMLCombinerState, TheListOfSplitVariablesIsNotKept) {
  MCVarList list = Region();
  Fixture fixture(list);
  while (list.RemoveVar(0)) {
  }
  EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  EXPECT_THAT(fixture.Export(), HasSubstr(R"(field="region")"));
}

TEST(MCXSplitPMMLCombinerState, ADocumentCutInItsModelIsReadUpToThereUnlessStrictly) {
  SplitModel model;
  model.content = "<a/><b/>";
  const std::string text = model.Text();
  const std::string cut = text.substr(0, text.find("<b/>"));
  Fixture fixture;
  EXPECT_TRUE(fixture.Add(cut).IsOK());
  fixture.combiner.SetStrict(true);
  EXPECT_TRUE(fixture.combiner.IsStrict());
  EXPECT_TRUE(IsError(fixture.Add(cut), 104));
  EXPECT_THAT(fixture.combiner.GetXercesMessage(), StartsWith("line 1, column "));
  EXPECT_TRUE(fixture.Add(text).IsOK());
  const std::string merged = fixture.Export();
  EXPECT_THAT(merged, HasSubstr("</MiningSchema><a/></RegressionModel>"));
  EXPECT_THAT(merged, HasSubstr("</MiningSchema><a/><b/></RegressionModel>"));
}

TEST(MCXSplitPMMLCombinerState, LeavesXercesToAHostThatUsesItToo) {
  {
    Fixture fixture;
    fixture.Add(SplitModel().Text());
    xercesc::XMLPlatformUtils::Initialize();
    xercesc::XMLPlatformUtils::Terminate();
    EXPECT_THAT(fixture.Export(), HasSubstr("<Segment>"));
  }
  xercesc::XMLPlatformUtils::Initialize();
  {
    Fixture fixture;
    EXPECT_TRUE(fixture.Add(SplitModel().Text()).IsOK());
  }
  EXPECT_TRUE(Fixture().Add(SplitModel().Text()).IsOK());
  xercesc::XMLPlatformUtils::Terminate();
}

TEST(MCXSplitPMMLCombinerState, SplitValuesThatXmlCannotHoldAreRefused) {
  const std::string good = SplitModel().Text();
  Fixture reference;
  reference.Add(good);
  reference.Add(Other().Text(), {"south"});
  const std::string expected = reference.Export();

  Fixture fixture;
  const std::string badTexts[] = {
      "\x01", "a\x1f", "\xff", "\xc3", std::string("a\0b", 3), "\xef\xbf\xbf", "\xed\xa0\x80"};
  for (const std::string& text : badTexts) EXPECT_TRUE(IsError(fixture.Add(good, {text}), 104));
  EXPECT_TRUE(fixture.Add(good).IsOK());
  for (const std::string& text : badTexts) {
    EXPECT_TRUE(IsError(fixture.Add(Other().Text(), {text}), 104));
    EXPECT_THAT(fixture.combiner.GetXercesMessage(), HasSubstr("split values"));
  }
  EXPECT_TRUE(fixture.Add(Other().Text(), {"south"}).IsOK());
  EXPECT_EQ(fixture.Export(), expected);
}

TEST(MCXSplitPMMLCombinerState, SplitVariablesThatXmlCannotHoldAreRefusedWithEachFile) {
  const char* const texts[][3] = {{"\x01", "", ""}, {"name", "\xff", ""}, {"name", "", "\x02"}};
  for (const auto& [name, label, category] : texts) {
    MCVarList list;
    list.AddCatVar(name, label, Texts{"good", category}, MC_ROLE_INPUT);
    Fixture fixture(list);
    EXPECT_TRUE(IsError(fixture.Add(SplitModel().Text(), {"good"}), 104));
    EXPECT_EQ(fixture.combiner.GetNModels(), 0);
  }
}

/// Whether a run with that failure ends without it. Exhaustion ends an operation by std::bad_alloc
/// or, inside Xerces, by a status; then the combiner can be deleted.
template <class Failure>
bool MergesDespite(std::size_t k, const std::string& first, const std::string& second,
                   const std::string& out) {
  const MCVarList list = Region();
  const Failure failure(k);
  try {
    MCXSplitPMMLCombiner combiner(list);
    (void)combiner.AddModel(first, {"north"});
    (void)combiner.AddModel(second, {"south"});
    (void)combiner.ExportMiningModel(out);
  } catch (const std::bad_alloc&) {
  }
  return !failure.HasFired();
}

template <class Failure>
void TryEachAllocation() {
  const mctest::TemporaryFolder folder;
  // Xerces allocates by the block: enough to need new ones.
  SplitModel model = Other();
  for (int i = 0; i < 300; ++i) model.content += "<a b='" + std::to_string(i) + "'>text</a>";
  const std::string first = folder.Write("first.xml", model.Text());
  model.fields += "<DataField name='last'>" + model.content + "</DataField>";
  const std::string second = folder.Write("second.xml", model.Text());
  const std::string out = folder.Path("merged.xml");
  // Xerces stays up, so that what is tested is the combiner and not the start of Xerces.
  const MCComXPrsUtil::MCXMLReadWrite xerces;
  const mctest::LeaksAllowed leaks;  // Xerces loses what its scanner was about to use
  std::size_t k = 1;
  while (!MergesDespite<Failure>(k, first, second, out)) ++k;
  EXPECT_GT(k, 100U);
  EXPECT_THAT(folder.Read("merged.xml"), HasSubstr(R"(value="south"/>)"));
}

TEST(MCXSplitPMMLCombinerState, MemoryExhaustionAnywhereDoesNoHarm) {
  TryEachAllocation<mctest::FailAllocation>();
}

TEST(MCXSplitPMMLCombinerState, MemoryExhaustionThatLastsDoesNoHarm) {
  TryEachAllocation<mctest::MemoryExhaustion>();
}

}  // namespace
