// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcpmmlparser.h"
#include "mcxml/writetree.h"
#include "metadata/mcpmmlexporter.h"
#include "readersupport.h"
#include "support/localeguard.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <memory>
#include <string>
#include <vector>

// Variables from a data dictionary, and their bins from a transformation dictionary.

namespace {

using namespace mctest;
using namespace MCCommonMetadata;
using MCComXPrsUtil::MCPMMLParser;
using std::string;
using std::vector;

struct Outcome {
  long code;
  string list;

  bool operator==(const Outcome& other) const { return code == other.code && list == other.list; }
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.code << "\n" << outcome.list;
}

Outcome ReadDocument(const string& document, const vector<string>& names = {}, bool bins = false) {
  MCPMMLParser parser;
  EXPECT_EQ(ParseText(parser, document), 0) << document;
  MCVarList list;
  const MCCommon::MCStatus status = parser.FillVarList(list, names, bins);
  EXPECT_EQ(status.IsOK(), status.GetErrorCode() == 0);
  EXPECT_FALSE(status.IsWarning());
  return {status.GetErrorCode(), ListText(list)};
}

Outcome Read(const string& fields, const vector<string>& names = {}) {
  return ReadDocument(DictionaryText(fields), names);
}

string Field(const string& kind, const string& children) {
  return "<DataField name=\"x\" " + kind + ">" + children + "</DataField>";
}

// What the children of a field of a kind come to.
Outcome ReadStrings(const string& children) {
  return Read(Field("optype=\"categorical\" dataType=\"string\"", children));
}
Outcome ReadNumbers(const string& children) {
  return Read(Field("optype=\"categorical\" dataType=\"double\"", children));
}
Outcome ReadContinuous(const string& children) {
  return Read(Field("optype=\"continuous\" dataType=\"double\"", children));
}

Outcome Good(const string& list) {
  return {0, list};
}

string Continuous(const string& name) {
  return "<DataField name=\"" + name + "\" optype=\"continuous\" dataType=\"float\"/>";
}

TEST(MCPMMLParserFields, EmptyDictionaryGivesNoVariables) {
  EXPECT_EQ(Read(""), Good(""));
  EXPECT_EQ(Read("<!-- none --> text <Value value=\"1\"/>"), Good(""));
}

TEST(MCPMMLParserFields, FieldsComeInTheirOrderAsInputs) {
  EXPECT_EQ(Read("<DataField name=\"b\" displayName=\"B b\" optype=\"continuous\" "
                 "dataType=\"double\"/> text <Other name=\"o\"/>"
                 "<DataField name=\"a\" optype=\"categorical\" dataType=\"string\"/>"
                 "<DataField name=\"c\" optype=\"categorical\" dataType=\"integer\"/>"),
            Good("b|B b cont (missing, max) missing {}\n"
                 "a| string {} missing {}\n"
                 "c| num {} missing {}"));
}

TEST(MCPMMLParserFields, VariablesAreAddedToThoseThatAreThere) {
  MCPMMLParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText(Continuous("x") + Continuous("y"))), 0);
  MCVarList list;
  list.AddContVar("first", "", MC_ROLE_TARGET);
  EXPECT_TRUE(parser.FillVarList(list, {}, false).IsOK());
  EXPECT_EQ(list.Size(), 3);
  EXPECT_EQ(list.FindVariable("y"), 2);
  EXPECT_EQ(parser.FillVarList(list, {}, false).GetErrorCode(), 111) << "both are there already";
  EXPECT_EQ(list.Size(), 3);
}

TEST(MCPMMLParserFields, NamesSelectFields) {
  const string fields = Continuous("a") + Continuous("b") + Continuous("c");
  const auto line = [](const string& name) { return name + "| cont (missing, max) missing {}"; };
  EXPECT_EQ(Read(fields, {"c", "a", "a", "unknown"}), Good(line("a") + "\n" + line("c")));
  EXPECT_EQ(Read(fields, {"B"}), Good(""));
  EXPECT_EQ(Read(fields, {""}), Good(""));
}

TEST(MCPMMLParserFields, OnlySelectedFieldsAreLookedAt) {
  const string fields = "<DataField name=\"bad\"/>" + Continuous("good");
  EXPECT_EQ(Read(fields, {"good"}), Good("good| cont (missing, max) missing {}"));
  EXPECT_EQ(Read(fields, {"bad"}), (Outcome{108, ""}));
  EXPECT_EQ(Read("<DataField/>" + fields, {"good"}), (Outcome{108, ""})) << "a name is required";
}

TEST(MCPMMLParserFields, EachRequiredAttributeIs108WhereItIsAbsent) {
  const string field =
      "<DataField name=\"x\" displayName=\"X\" dataType=\"double\" optype=\"continuous\"/>";
  for (const char* attribute : {"name", "dataType", "optype"}) {
    EXPECT_EQ(Read(Continuous("before") + Without(field, attribute) + Continuous("behind")),
              (Outcome{108, "before| cont (missing, max) missing {}"}))
        << attribute;
  }
  EXPECT_EQ(Read(Without(field, "displayName")), Good("x| cont (missing, max) missing {}"));
}

TEST(MCPMMLParserFields, DataTypesAreStringsOrNumbers) {
  const char* const numeric[] = {"double",
                                 "float",
                                 "integer",
                                 "date",
                                 "time",
                                 "dateTime",
                                 "timeSeconds",
                                 "dateDaysSince[0]",
                                 "dateDaysSince[1960]",
                                 "dateDaysSince[1970]",
                                 "dateDaysSince[1980]",
                                 "dateTimeSecondsSince[0]",
                                 "dateTimeSecondsSince[1960]",
                                 "dateTimeSecondsSince[1970]",
                                 "dateTimeSecondsSince[1980]"};
  const string value = "<Value value=\"1\"/>";
  const auto read = [&value](const string& type) {
    return Read(Field("optype=\"categorical\" dataType=\"" + type + "\"", value));
  };
  for (const char* type : numeric) EXPECT_EQ(read(type), Good("x| num {1} missing {}")) << type;
  EXPECT_EQ(read("string"), Good("x| string {1} missing {}"));
  for (const char* type : {"", "String", "int", "boolean", "dateDaysSince[1990]", "double ",
                           "dateDaysSince", "timeSeconds[0]"}) {
    EXPECT_EQ(read(type), (Outcome{109, ""})) << type;
  }
}

TEST(MCPMMLParserFields, TypeIsJudgedBeforeTheKind) {
  EXPECT_EQ(Read("<DataField name=\"x\" dataType=\"bad\"/>"), (Outcome{109, ""}));
}

TEST(MCPMMLParserFields, AllButContinuousFieldsAreCategoricalWithoutOrder) {
  for (const char* kind : {"categorical", "ordinal", "", "Continuous", "continuous "}) {
    EXPECT_EQ(
        Read(Field("dataType=\"string\" optype=\"" + string(kind) + "\"", "<Value value=\"a\"/>")),
        Good("x| string {a} missing {}"))
        << kind;
  }
}

TEST(MCPMMLParserFields, NamesThatTheListRefusesAre111) {
  EXPECT_EQ(Read(Continuous("x") + Continuous("x") + Continuous("y")),
            (Outcome{111, "x| cont (missing, max) missing {}"}));
  EXPECT_EQ(Read(Continuous("")), (Outcome{111, ""}));
  for (const char* type : {"string", "double"}) {
    EXPECT_EQ(
        Read(string("<DataField name=\"\" optype=\"categorical\" dataType=\"") + type + "\"/>"),
        (Outcome{111, ""}));
  }
}

TEST(MCPMMLParserFields, PropertySetsValidValuesApartFromMissingOnes) {
  const string values =
      "<Value value=\"1\"/>"
      "<Value value=\"2\" property=\"valid\"/>"
      "<Value value=\"3\" property=\"missing\"/>"
      "<Value value=\"4\" property=\"invalid\"/>"
      "<Value value=\"5\" property=\"\"/>"
      "<Value value=\"6\" property=\"Valid\"/>";
  EXPECT_EQ(ReadStrings(values), Good("x| string {1 2} missing {3 4 5 6}"));
  EXPECT_EQ(ReadNumbers(values), Good("x| num {1 2} missing {3 4 5 6}"));
  EXPECT_EQ(ReadContinuous(values), Good("x| cont (missing, max) missing {3 4 5 6}"));
}

TEST(MCPMMLParserFields, LabelsAreKeptIfThereAreAsManyAsValues) {
  EXPECT_EQ(ReadStrings("<Value value=\"a\" displayValue=\"A\"/>"
                        "<Value value=\"b\" displayValue=\"B\"/>"),
            Good("x| string {a=A b=B} missing {}"));
  EXPECT_EQ(ReadNumbers("<Value value=\"7\" displayValue=\"A\"/>"
                        "<Value value=\"5\" displayValue=\"\"/>"),
            Good("x| num {7=A 5} missing {}"));
  EXPECT_EQ(ReadStrings("<Value value=\"a\" displayValue=\"A\"/><Value value=\"b\"/>"),
            Good("x| string {a b} missing {}"));
  EXPECT_EQ(ReadNumbers("<Value value=\"1\"/><Value value=\"2\" displayValue=\"A\"/>"),
            Good("x| num {1 2} missing {}"));
}

TEST(MCPMMLParserFields, LabelOfAValueThatIsSkippedSlipsToTheNextOne) {
  EXPECT_EQ(ReadStrings("<Value displayValue=\"A\"/><Value value=\"b\"/>"),
            Good("x| string {b=A} missing {}"));
  EXPECT_EQ(ReadNumbers("<Value value=\"one\" displayValue=\"A\"/><Value value=\"2\"/>"
                        "<Value displayValue=\"M\" property=\"missing\"/>"
                        "<Value value=\"9\" property=\"missing\"/>"),
            Good("x| num {2=A} missing {9=M}"));
}

TEST(MCPMMLParserFields, MissingValuesTakeTheLabelOfTheirPlaceOrNone) {
  const string values =
      "<Value value=\"8\" property=\"missing\"/>"
      "<Value value=\"9\" property=\"missing\" displayValue=\"A\"/>";
  EXPECT_EQ(ReadStrings(values), Good("x| string {} missing {8=A 9}"));
  EXPECT_EQ(ReadNumbers(values), Good("x| num {} missing {8=A 9}"));
  EXPECT_EQ(ReadContinuous(values), Good("x| cont (missing, max) missing {8=A 9}"));
}

TEST(MCPMMLParserFields, ValuesAreElementsWithAttributesAmongTheChildren) {
  EXPECT_EQ(ReadStrings("text<Value/><!-- c --><?p i?><x><Value value=\"in\"/></x>"
                        "<Value other=\"1\"/><value value=\"no\"/><Value value=\"\"/>"
                        "<![CDATA[data]]><Value value=\"a\"/>"),
            Good("x| string {'' a} missing {}"));
}

TEST(MCPMMLParserFields, NumbersAreReadAsSuchOrLeftOut) {
  EXPECT_EQ(ReadNumbers("<Value value=\"-1.5e3\"/><Value value=\" 2 \"/><Value value=\"INF\"/>"
                        "<Value value=\"1,5\"/><Value value=\"\"/><Value value=\"0x10\"/>"
                        "<Value value=\"NaN\" property=\"missing\"/><Value value=\"nan\"/>"),
            Good("x| num {-1500 2} missing {missing}"));
}

TEST(MCPMMLParserFields, ValuesThatRepeatKeepTheirFirstCode) {
  EXPECT_EQ(ReadNumbers("<Value value=\"5\"/><Value value=\"3\"/><Value value=\"5.0\"/>"),
            Good("x| num {5 3} missing {}"));
  EXPECT_EQ(ReadStrings("<Value value=\"b\"/><Value value=\"a\"/><Value value=\"b\"/>"),
            Good("x| string {b a} missing {}"));
}

TEST(MCPMMLParserFields, ValuesMayBeValidAndMissing) {
  EXPECT_EQ(ReadStrings("<Value value=\"a\" property=\"missing\"/><Value value=\"a\"/>"),
            Good("x| string {a} missing {a}"));
}

string Lower(const string& value) {
  return "<Extension name=\"invalidRangeLower\" value=\"" + value + "\"/>";
}
string Upper(const string& value) {
  return "<Extension extender=\"any\" value=\"" + value + "\" name=\"invalidRangeUpper\"/>";
}

TEST(MCPMMLParserFields, ExtensionsTellTheMissingInterval) {
  const struct {
    string extensions;
    string interval;
  } cases[] = {{"", ""},
               {Lower("1") + Upper("2"), " [1, 2]"},
               {Upper("-2") + Lower("-7"), " [-7, -2]"},
               {Lower("90"), " [90, max]"},
               {Upper("-1"), " [missing, -1]"},
               {Lower("1") + Lower("5"), " [5, max]"},
               {Lower("x") + Upper(""), ""},
               {Lower("5") + Upper("5"), ""},
               {Lower("5") + Upper("4"), ""},
               {Lower("NaN"), ""},
               {Upper("NaN"), ""},
               {Lower("-1.7976931348623157e+308") + Upper("1.7976931348623157e+308"), ""},
               {"<Extension name=\"invalidRangeLower\"/><Extension value=\"3\"/>"
                "<Extension name=\"InvalidRangeLower\" value=\"3\"/>"
                "<x><Extension name=\"invalidRangeLower\" value=\"3\"/></x>",
                ""}};
  for (const auto& [extensions, interval] : cases) {
    EXPECT_EQ(ReadContinuous(extensions), Good("x| cont (missing, max) missing {}" + interval))
        << extensions;
    EXPECT_EQ(ReadNumbers(extensions), Good("x| num {} missing {}" + interval)) << extensions;
    EXPECT_EQ(ReadStrings(extensions), Good("x| string {} missing {}")) << extensions;
  }
}

TEST(MCPMMLParserFields, IntervalsOfAFieldTellNothing) {
  EXPECT_EQ(ReadContinuous("<Interval leftMargin=\"x\" rightMargin=\"0\"/>"),
            Good("x| cont (missing, max) missing {}"));
}

TEST(MCPMMLParserFields, ContinuousStringsKeepNoMissingValues) {
  EXPECT_EQ(Read(Field("optype=\"continuous\" dataType=\"string\"",
                       "<Value value=\"a\" property=\"missing\"/>" + Lower("1"))),
            Good("x| cont (missing, max) missing {}"));
}

// A field divided into bins: each of them an "Interval" with its margins, where "" is none.
string Derived(const string& field, const string& bins) {
  return "<DerivedField name=\"bins\"><Discretize field=\"" + field + "\">" + bins +
         "</Discretize></DerivedField>";
}

string Bin(const string& label, const string& left, const string& right) {
  const auto attribute = [](const char* name, const string& value) {
    return value == "none" ? string() : string(" ") + name + "=\"" + value + "\"";
  };
  return "<DiscretizeBin" + attribute("binValue", label) + "><Interval closure=\"openClosed\"" +
         attribute("leftMargin", left) + attribute("rightMargin", right) + "/></DiscretizeBin>";
}

Outcome ReadBins(const string& transformations, const string& fields = Continuous("x")) {
  return ReadDocument(DictionaryText(fields, "<TransformationDictionary>" + transformations +
                                                 "</TransformationDictionary>"),
                      {}, true);
}

TEST(MCPMMLParserBins, CutsBecomeEndsAndEdges) {
  const struct {
    string bins;
    string variable;
  } cases[] = {
      {Bin("0", "0", "1") + Bin("1", "1", "2"), "(0, 2) missing {} cuts 1"},
      {Bin("0", "none", "1") + Bin("1", "1", "2") + Bin("2", "2", "none"),
       "(missing, max) missing {} cuts 1 2"},
      {Bin("0", "x", "1") + Bin("1", "7", "y"), "(missing, max) missing {} cuts 1"},
      {Bin("0", "NaN", "3") + Bin("1", "none", "NaN"), "(missing, missing) missing {} cuts 3"},
      {"<DiscretizeBin binValue=\"0\"><Interval leftMargin=\"1\" rightMargin=\"2\"/>"
       "<Interval leftMargin=\"5\" rightMargin=\"6\"/></DiscretizeBin>",
       "(1, 6) missing {} cuts 2"},
      {"<DiscretizeBin/><x/>" + Bin("a", "4", "5") + "<DiscretizeBin binValue=\"b\"/>" +
           Bin("c", "5", "6"),
       "(4, 6) missing {} cuts 5"},
      {Bin("0", "0", "1"), "(missing, max) missing {}"},
      {"<DiscretizeBin binValue=\"0\"/>", "(missing, max) missing {}"},
      {"", "(missing, max) missing {}"}};
  for (const auto& [bins, variable] : cases) {
    EXPECT_EQ(ReadBins(Derived("x", bins)), Good("x| cont " + variable)) << bins;
  }
}

TEST(MCPMMLParserBins, BinsThatAreAskedForAndAbsentAre110) {
  EXPECT_EQ(ReadBins(""), (Outcome{110, ""}));
  EXPECT_EQ(ReadBins(Derived("other", Bin("0", "0", "1"))), (Outcome{110, ""}));
  EXPECT_EQ(ReadDocument(DictionaryText(Continuous("x")), {}, true), (Outcome{110, ""}));
  EXPECT_EQ(ReadBins("", "<DataField name=\"s\" optype=\"categorical\" dataType=\"string\"/>"),
            Good("s| string {} missing {}"));
}

TEST(MCPMMLParserBins, BinsThatAreNotAskedForAreLeftAlone) {
  EXPECT_EQ(ReadDocument(DictionaryText(Continuous("x"),
                                        "<TransformationDictionary>" +
                                            Derived("x", Bin("0", "0", "1") + Bin("1", "1", "2")) +
                                            "</TransformationDictionary>")),
            Good("x| cont (missing, max) missing {}"));
}

TEST(MCPMMLParserBins, BinnedFieldKeepsItsMissingValues) {
  EXPECT_EQ(ReadBins(Derived("x", Bin("0", "0", "1") + Bin("1", "1", "2")),
                     Field("optype=\"continuous\" dataType=\"float\"",
                           "<Value value=\"-1\" property=\"missing\" displayValue=\"none\"/>" +
                               Lower("90"))),
            Good("x| cont (0, 2) missing {-1=none} [90, max] cuts 1"));
  EXPECT_EQ(ReadBins(Derived("", Bin("0", "0", "1") + Bin("1", "1", "2")), Continuous("")),
            (Outcome{111, ""}));
}

// An encoder of bins keeps no labels, whatever the first one says.
TEST(MCPMMLParserBins, EncoderOfBinsHasNoLabels) {
  for (const char* first : {"0", "low"}) {
    MCPMMLParser parser;
    ASSERT_EQ(ParseText(parser, DictionaryText(
                                    Continuous("x"),
                                    "<TransformationDictionary>" +
                                        Derived("x", Bin(first, "0", "1") + Bin("high", "1", "2")) +
                                        "</TransformationDictionary>")),
              0);
    MCVarList list;
    EXPECT_TRUE(parser.FillVarList(list, {}, true).IsOK());
    EXPECT_EQ(list.GetEncoderAt(0)->GetValueLabels(), nullptr) << first;
    EXPECT_EQ(list.GetEncoderAt(0)->GetNumberOfCategories(), 2);
  }
}

TEST(MCPMMLParserBins, FirstDiscretizeOfTheFieldIsTaken) {
  MCPMMLParser parser;
  const string transformations =
      "<TransformationDictionary><DerivedField/>" + Derived("y", Bin("y", "8", "9")) +
      "<DerivedField><Discretize/><Discretize field=\"x\">" + Bin("first", "1", "2") +
      "</Discretize></DerivedField>" + Derived("x", Bin("second", "3", "4")) +
      "</TransformationDictionary><TransformationDictionary>" + Derived("z", "") +
      "</TransformationDictionary>";
  ASSERT_EQ(ParseText(parser, DictionaryText("", transformations)), 0);
  vector<double> cuts = {7.0};
  vector<string> labels = {"old"};
  EXPECT_TRUE(parser.SetBinsFrTransDict("x", cuts, labels));
  EXPECT_EQ(NumbersText(cuts), "1 2");
  EXPECT_EQ(TextsText(labels), "first");
  EXPECT_TRUE(parser.SetBinsFrTransDict("y", cuts, labels));
  EXPECT_EQ(NumbersText(cuts) + " " + TextsText(labels), "8 9 y");
  EXPECT_TRUE(parser.SetBinsFrTransDict("", cuts, labels)) << "no attribute is an empty one";
  EXPECT_EQ(NumbersText(cuts) + TextsText(labels), "0");
  EXPECT_FALSE(parser.SetBinsFrTransDict("z", cuts, labels)) << "only the first dictionary counts";
  EXPECT_TRUE(cuts.empty() && labels.empty());
}

// What MCPMMLExporter writes of a list.
string Exported(const MCVarList& list) {
  MCPMMLExporter exporter(nullptr);
  const std::unique_ptr<MCCommonXML::XMLElement> root(exporter.ExportPMMLElement());
  MCCommonXML::XMLElement* dictionary = nullptr;
  EXPECT_TRUE(exporter.ExportDataDictionary(list, {}, dictionary).IsOK());
  root->AddElement(dictionary);
  std::ostringstream text;
  MCCommonXML::WriteTree(text, nullptr, root.get(), true);
  return text.str();
}

TEST(MCPMMLParserFields, ExportedListComesBackButForWhatItLoses) {
  MCVarList list;
  int i = list.AddCatVar("region", "Where & when", vector<string>{"north", "s<o>uth", "\xC3\xA9"},
                         vector<string>{"N", "<S>", "E \"e\""}, MC_ROLE_INPUT);
  list.GetEncoderAt(i)->AddDiscreteUserMissing(string("?"), "not known");
  list.GetEncoderAt(i)->AddDiscreteUserMissing(string("-"), "refused");
  i = list.AddCatVar("grade", "", vector<double>{3.0, 1.5, -2.0}, MC_ROLE_INPUT);
  list.GetEncoderAt(i)->AddDiscreteUserMissing(9.0, "none");
  list.GetEncoderAt(i)->SetMissingInterval(90.0, 99.5);
  i = list.AddContVar("yield", "t/ha", MC_ROLE_INPUT);
  list.GetEncoderAt(i)->AddDiscreteUserMissing(-9.0, "");
  list.GetEncoderAt(i)->SetMissingInterval(1e300, DBL_MAX);
  const string before = ListText(list);
  EXPECT_EQ(ReadDocument(Exported(list)), Good(before));

  // Lost: role, storage, order, range and bins, all labels where one is empty; and a weight is a
  // continuous variable like others.
  list.SetVariableRole(0, MC_ROLE_TARGET);
  list.GetVarAt(1)->SetVariableStorage(MC_STORAGE_REAL);
  auto* ordinal = dynamic_cast<MCCatVar*>(list.GetVarAt(1));
  ASSERT_NE(ordinal, nullptr);
  ordinal->SetOrdinalFlag(true);
  EXPECT_EQ(ReadDocument(Exported(list)), Good(before));
  MCVarList more = list;
  more.AddCatVar("labels", "", vector<double>{1.0, 2.0}, vector<string>{"one", ""}, MC_ROLE_INPUT);
  more.AddContVar("binned", "", 0.0, 4.0, MC_ROLE_INPUT, true, 4);
  more.SetWeightVar("w", "", MC_ROUND_NEAREST);
  EXPECT_EQ(ReadDocument(Exported(more)),
            Good(before + "\nlabels| num {1 2} missing {}" +
                 "\nbinned| cont (missing, max) missing {}\nw| cont (missing, max) missing {}"));
}

TEST(MCPMMLParserFields, CommaOfALocaleChangesNoNumber) {
  const LocaleGuard locale("de_DE.UTF-8");
  ASSERT_TRUE(locale.IsSet());
  EXPECT_EQ(ReadNumbers("<Value value=\"1.25\"/>"), Good("x| num {1.25} missing {}"));
}

TEST(MCPMMLParserFields, ManyFieldsAreSelectedByManyNames) {
  string fields;
  vector<string> names;
  for (int i = 0; i < 20000; ++i) {
    fields += Continuous("v" + std::to_string(i));
    names.push_back("v" + std::to_string(2 * i));
  }
  MCPMMLParser parser;
  ASSERT_EQ(ParseText(parser, DictionaryText(fields)), 0);
  MCVarList list;
  EXPECT_TRUE(parser.FillVarList(list, names, false).IsOK());
  EXPECT_EQ(list.Size(), 10000);
}

}  // namespace
