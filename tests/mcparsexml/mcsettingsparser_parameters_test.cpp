// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcsettingsparser.h"
#include "readersupport.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

// Parameters of a settings document.

namespace {

using namespace mctest;
using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCSettingsParser;
using std::string;
using std::vector;
using Names = vector<string>;

string TaskText(const string& parameters) {
  return "<MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask>";
}

/// A parser of settings with these parameters.
class Settings {
public:
  explicit Settings(const string& parameters) {
    EXPECT_EQ(ParseText(fParser, DictionaryText("", TaskText(parameters))), 0) << parameters;
  }

  MCSettingsParser* operator->() { return &fParser; }

private:
  MCSettingsParser fParser;
};

string Parameter(const string& name, const string& rest) {
  return "<Parameter name=\"" + name + "\" " + rest + "</Parameter>";
}

string Value(const string& value) {
  return "<Value value=\"" + value + "\"/>";
}

string ListOf(const Names& values) {
  string text = "<ListValue>";
  for (const string& value : values) text += Value(value);
  return text + "</ListValue>";
}

const MCStatus kWarning120(120, true);
const MCStatus kWarning123(123, true);

MCStatus Error(long code) {
  return MCStatus(code, false);
}

TEST(MCSettingsParser, ParametersAreRequired) {
  const struct {
    string document;
    long code;
  } cases[] = {{PmmlText("<DataDictionary/>" + TaskText("")), 0},
               {PmmlText(TaskText("")), 106},
               {Replaced(PmmlText("<DataDictionary/>" + TaskText("")), "<PMML", "<x/><PMML"), 105},
               {PmmlText("<DataDictionary/>"), 119},
               {PmmlText("<DataDictionary/><MiningBuildTask/>"), 119},
               {PmmlText("<DataDictionary/><MiningBuildTask><Parameters/></MiningBuildTask>"), 119},
               {PmmlText("<DataDictionary/><MiningBuildTask><Extension/></MiningBuildTask>"), 119},
               // Only the first of each is looked at.
               {PmmlText("<DataDictionary/><MiningBuildTask/>" + TaskText("")), 119},
               {PmmlText("<DataDictionary/><MiningBuildTask><Extension/><Extension><Parameters/>"
                         "</Extension></MiningBuildTask>"),
                119},
               {PmmlText("<DataDictionary/><MiningBuildTask><x/><Extension><x/><Parameters/>"
                         "<Parameters/></Extension></MiningBuildTask>"),
                0}};
  for (const auto& [document, code] : cases) {
    MCSettingsParser parser;
    EXPECT_EQ(ParseText(parser, document), code) << document;
    EXPECT_EQ(parser.GetStatus().GetErrorCode(), code) << document;
    EXPECT_FALSE(parser.GetStatus().IsWarning());
  }
}

// What each operation answers, of any name.
vector<MCStatus> AllAnswers(MCSettingsParser& parser) {
  bool flag = false;
  double number = 0.0;
  int count = 0;
  string text;
  vector<int> ints;
  vector<double> numbers;
  Names texts;
  vector<vector<int>> intRows;
  vector<vector<double>> rows;
  vector<Names> textRows;
  MCVarList list;
  return {parser.GetParameter("x", flag, nullptr),
          parser.GetParameter("x", number, nullptr),
          parser.GetParameter("x", count, nullptr),
          parser.GetParameter("x", text, nullptr),
          parser.GetArray("x", ints, nullptr),
          parser.GetArray("x", numbers, nullptr),
          parser.GetArray("x", texts, nullptr),
          parser.GetMatrix("x", intRows, nullptr),
          parser.GetMatrix("x", rows, nullptr),
          parser.GetMatrix("x", textRows, nullptr),
          parser.GetVariables("x", texts),
          parser.GetVariables("x", text),
          parser.GetPredictors(texts),
          parser.GetTargetVars(texts),
          parser.GetContPredictors(texts),
          parser.GetCatPredictors(texts),
          parser.GetContResponseVars(texts),
          parser.GetCatResponseVars(texts),
          parser.GetFrequencyWeight(text),
          parser.FillVarList(list, false),
          parser.FillVarList(list, true),
          parser.FillTransDict(list)};
}

TEST(MCSettingsParser, BadStateIsTheAnswerOfEveryOperation) {
  const struct {
    const char* document;
    long code;
  } cases[] = {{nullptr, 107},
               {"<x/>", 105},
               {"<PMML/>", 106},
               {"<PMML><DataDictionary/><TransformationDictionary/></PMML>", 119}};
  for (const auto& [document, code] : cases) {
    MCSettingsParser parser;
    if (document != nullptr) {
      EXPECT_EQ(ParseText(parser, document), code);
    }
    for (const MCStatus& answer : AllAnswers(parser)) EXPECT_EQ(answer, Error(code));
    EXPECT_EQ(parser.GetParameterType("x", nullptr), 6);
    EXPECT_EQ(parser.GetComplexParameter("x", nullptr), nullptr);
  }
}

TEST(MCSettingsParser, FailedParseForgetsTheParametersOfTheLastDocument) {
  MCSettingsParser parser;
  const string good = DictionaryText("", TaskText(Parameter("a", "type=\"double\" value=\"1\">")));
  ASSERT_EQ(ParseText(parser, good), 0);
  EXPECT_EQ(parser.GetParameterType("a", nullptr), 1);
  ASSERT_EQ(ParseText(parser, DictionaryText("")), 119);
  EXPECT_EQ(parser.GetParameterType("a", nullptr), 6);
  ASSERT_EQ(ParseText(parser, good), 0);
  EXPECT_EQ(parser.GetParameterType("a", nullptr), 1);
}

// By its full name the base's own operation can be called, which knows of no parameters.
TEST(MCSettingsParser, ParametersAreThoseOfADocumentThatTheBaseRead) {
  const auto read = [](MCSettingsParser& parser, const string& document) {
    std::istringstream stream(document);
    return parser.MCPMMLParser::ParseToDOM(stream).GetErrorCode();
  };
  const auto holding = [](const char* value) {
    return DictionaryText("", TaskText(Parameter("a", "value=\"" + string(value) + "\">")));
  };
  MCSettingsParser parser;
  int value = 0;
  ASSERT_EQ(ParseText(parser, holding("1")), 0);
  ASSERT_EQ(read(parser, holding("2")), 0);
  EXPECT_TRUE(parser.GetParameter("a", value, nullptr).IsOK());
  EXPECT_EQ(value, 2);

  ASSERT_EQ(read(parser, DictionaryText("")), 0);
  EXPECT_EQ(parser.GetParameter("a", value, nullptr), Error(119));
  EXPECT_EQ(parser.GetComplexParameter("a", nullptr), nullptr);
}

TEST(MCSettingsParser, TypesHaveCodes) {
  const std::pair<const char*, int> types[] = {
      {"string", 0},    {"double", 1}, {"integer", 2}, {"boolean", 3}, {"enum", 4},
      {"fieldName", 5}, {"", 6},       {"Double", 6},  {"int", 6},     {"float", 6}};
  for (const auto& [word, code] : types) {
    Settings settings(Parameter("p", "type=\"" + string(word) + "\">"));
    EXPECT_EQ(settings->GetParameterType("p", nullptr), code) << word;
    EXPECT_EQ(settings->GetParameterType("q", nullptr), 6);
  }
  EXPECT_EQ(Settings(Parameter("p", ">"))->GetParameterType("p", nullptr), 6);
}

TEST(MCSettingsParser, ParameterThatIsAbsentIsAWarningAndLeavesTheDefault) {
  Settings settings(Parameter("other", "value=\"1\">") + "<parameter name=\"p\" value=\"1\"/>");
  bool flag = true;
  double number = 2.5;
  int count = 3;
  string text = "four";
  vector<int> ints = {5};
  vector<double> numbers = {6.0};
  Names texts = {"seven"};
  vector<vector<double>> rows = {{8.0}};
  EXPECT_EQ(settings->GetParameter("p", flag, nullptr), kWarning120);
  EXPECT_EQ(settings->GetParameter("p", number, nullptr), kWarning120);
  EXPECT_EQ(settings->GetParameter("p", count, nullptr), kWarning120);
  EXPECT_EQ(settings->GetParameter("p", text, nullptr), kWarning120);
  EXPECT_EQ(settings->GetArray("p", ints, nullptr), kWarning120);
  EXPECT_EQ(settings->GetArray("p", numbers, nullptr), kWarning120);
  EXPECT_EQ(settings->GetArray("p", texts, nullptr), kWarning120);
  EXPECT_EQ(settings->GetMatrix("p", rows, nullptr), kWarning120);
  EXPECT_EQ(settings->GetVariables("p", texts), kWarning120);
  EXPECT_EQ(settings->GetVariables("p", text), kWarning120);
  EXPECT_TRUE(flag && number == 2.5 && count == 3 && text == "four");
  EXPECT_TRUE(ints == vector<int>{5} && numbers == vector<double>{6.0});
  EXPECT_TRUE(texts == Names{"seven"} && rows == vector<vector<double>>{{8.0}});
}

string ValueText(bool value) {
  return value ? "true" : "false";
}

string ValueText(double value) {
  return NumberText(value);
}

string ValueText(int value) {
  return std::to_string(value);
}

// The value if the parameter was read, else its code; the output must be untouched then.
template <class Type>
string One(const string& parameter, Type before) {
  Type value = before;
  const MCStatus status = Settings(parameter)->GetParameter("p", value, nullptr);
  EXPECT_TRUE(status.IsOK() || value == before) << parameter;
  return status.IsOK() ? ValueText(value) : std::to_string(status.GetErrorCode());
}

TEST(MCSettingsParser, OneValueOfEachType) {
  const auto p = [](const string& value) { return Parameter("p", "value=\"" + value + "\">"); };
  const struct {
    const char* value;
    const char* asBool;
    const char* asDouble;
    const char* asInt;
  } cases[] = {{"true", "true", "109", "109"},
               {"false", "false", "109", "109"},
               {"1", "109", "1", "1"},
               {"0", "109", "0", "0"},
               {"-1", "109", "-1", "109"},
               {"TRUE", "109", "109", "109"},
               {" true", "109", "109", "109"},
               {"", "109", "109", "109"},
               {"1.5", "109", "1.5", "109"},
               {"1e3", "109", "1000", "109"},
               {"NaN", "109", "missing", "109"},
               {"INF", "109", "109", "109"},
               {"2147483647", "109", "2147483647", "2147483647"},
               {"2147483648", "109", "2147483648", "109"},
               {"99999999999999999999", "109", "1e+20", "109"}};
  for (const auto& [value, asBool, asDouble, asInt] : cases) {
    EXPECT_EQ(One(p(value), true), asBool) << value;
    EXPECT_EQ(One(p(value), false), asBool) << value;
    EXPECT_EQ(One(p(value), 77.0), asDouble) << value;
    EXPECT_EQ(One(p(value), 77), asInt) << value;
    string text;
    EXPECT_TRUE(Settings(p(value))->GetParameter("p", text, nullptr).IsOK());
    EXPECT_EQ(text, value) << "as it stands";
  }
}

TEST(MCSettingsParser, OneValueOfAListIs121AndOfNothing123) {
  const string list = Parameter("p", ">" + ListOf({"1"}));
  const string nothing = Parameter("p", "type=\"double\"><Value value=\"1\"/>");
  for (const auto& [parameter, code, isWarning] :
       {std::tuple<string, long, bool>(list, 121, false), {nothing, 123, true}}) {
    const MCStatus expected(code, isWarning);
    Settings settings(parameter);
    bool flag = true;
    double number = 2.5;
    int count = 3;
    string text = "four";
    EXPECT_EQ(settings->GetParameter("p", flag, nullptr), expected);
    EXPECT_EQ(settings->GetParameter("p", number, nullptr), expected);
    EXPECT_EQ(settings->GetParameter("p", count, nullptr), expected);
    EXPECT_EQ(settings->GetParameter("p", text, nullptr), expected);
    EXPECT_TRUE(flag && number == 2.5 && count == 3 && text == "four");
  }
  EXPECT_EQ(One(Parameter("p", "value=\"5\">" + ListOf({"1"})), 0.0), "5") << "a value is one";
}

// The values read, then the code unless that is OK: "1 2 -> 109".
template <class T>
string All(const string& parameter) {
  vector<T> values(3);
  const MCStatus status = Settings(parameter)->GetArray("p", values, nullptr);
  string text;
  if constexpr (std::is_same_v<T, string>) {
    text = TextsText(values);
  } else {
    text = NumbersText(vector<double>(values.begin(), values.end()));
  }
  if (status.IsOK()) return text;
  EXPECT_EQ(status.IsWarning(), status.GetErrorCode() == 123);
  return text + " -> " + std::to_string(status.GetErrorCode());
}

TEST(MCSettingsParser, ArraysAreReadUpToTheFirstValueThatIsNone) {
  const auto list = [](const Names& values) { return Parameter("p", ">" + ListOf(values)); };
  const struct {
    string parameter;
    const char* ints;
    const char* doubles;
    const char* strings;
  } cases[] = {{list({"1", "2", "30"}), "1 2 30", "1 2 30", "1 2 30"},
               {list({"1", "-2", "3"}), "1 -> 109", "1 -2 3", "1 -2 3"},
               {list({"1", "2.5", "x", "4"}), "1 -> 109", "1 2.5 -> 109", "1 2.5 x 4"},
               {list({"NaN"}), " -> 109", "missing", "NaN"},
               {list({}), " -> 123", " -> 123", " -> 123"},
               {Parameter("p", "><ListValue><x/><Parameter name=\"p\" value=\"1\"/></ListValue>"),
                " -> 123", " -> 123", " -> 123"},
               {Parameter("p", "><ListValue>" + Value("1") + " text <x value=\"9\"/><Value/>" +
                                   Value("2") + "</ListValue>"),
                "1 -> 123", "1 -> 123", "1 -> 123"},
               {Parameter("p", "value=\"7\">" + ListOf({"1"})), "1", "1", "1"},
               {Parameter("p", "value=\"7\">"), "7", "7", "7"},
               {Parameter("p", "value=\"-7\">"), " -> 109", "-7", "-7"},
               {Parameter("p", "value=\"\">"), " -> 109", " -> 109", ""},
               {Parameter("p", "isList=\"true\">"), " -> 123", " -> 123", " -> 123"},
               {Parameter("p", ">" + ListOf({"1", "2"}) + ListOf({"3"})), "1 2", "1 2", "1 2"}};
  for (const auto& [parameter, ints, doubles, strings] : cases) {
    EXPECT_EQ(All<int>(parameter), ints) << parameter;
    EXPECT_EQ(All<double>(parameter), doubles) << parameter;
    EXPECT_EQ(All<string>(parameter), strings) << parameter;
  }
}

// Rows in brackets.
template <class T>
string Rows(const string& parameter) {
  vector<vector<T>> rows = {{T()}, {T()}};
  const MCStatus status = Settings(parameter)->GetMatrix("p", rows, nullptr);
  if (!status.IsOK()) return std::to_string(status.GetErrorCode());
  return ListText(rows, [](const vector<T>& row) {
    if constexpr (std::is_same_v<T, string>) {
      return "[" + TextsText(row) + "]";
    } else {
      return "[" + NumbersText(vector<double>(row.begin(), row.end())) + "]";
    }
  });
}

TEST(MCSettingsParser, MatrixHasItsRowsBehindAnEmptyOneForEachChildNode) {
  const auto matrix = [](const string& inside) {
    return "<MatrixParmeter name=\"p\">" + inside + "</MatrixParmeter>";
  };
  const auto row = [](const Names& values) {
    string text = "<ArrayParameter>";
    for (const string& value : values) text += Value(value);
    return text + "</ArrayParameter>";
  };
  const struct {
    string parameter;
    const char* ints;
    const char* doubles;
    const char* strings;
  } cases[] = {
      {matrix(row({"1", "2"}) + row({"3"})), "[] [] [1 2] [3]", "[] [] [1 2] [3]",
       "[] [] [1 2] [3]"},
      {matrix("\n" + row({"1"}) + "\n" + row({"2"}) + "\n"), "[] [] [] [] [] [1] [2]",
       "[] [] [] [] [] [1] [2]", "[] [] [] [] [] [1] [2]"},
      {matrix(""), "", "", ""},
      {matrix(row({})), "[] []", "[] []", "[] []"},
      {matrix("<!-- c --><x>" + row({"9"}) + "</x>" + Value("8")), "[] [] []", "[] [] []",
       "[] [] []"},
      {matrix(row({"1", "-2", "x", "3.5", "NaN"})), "[] [1]", "[] [1 -2 3.5 missing]",
       "[] [1 -2 x 3.5 NaN]"},
      {matrix("<ArrayParameter><Value/><Value other=\"1\"/> text <x value=\"1\"/>" + Value("4") +
              "</ArrayParameter>"),
       "[] [4]", "[] [4]", "[] [4]"},
      {"<MatrixParameter name=\"p\">" + row({"1"}) + "</MatrixParameter>", "120", "120", "120"},
      {matrix(row({"1"})) + matrix(row({"2"})), "[] [1]", "[] [1]", "[] [1]"}};
  for (const auto& [parameter, ints, doubles, strings] : cases) {
    EXPECT_EQ(Rows<int>(parameter), ints) << parameter;
    EXPECT_EQ(Rows<double>(parameter), doubles) << parameter;
    EXPECT_EQ(Rows<string>(parameter), strings) << parameter;
  }
}

string Group(const string& name, const string& inside) {
  return "<ComplexParameter name=\"" + name + "\">" + inside + "</ComplexParameter>";
}

TEST(MCSettingsParser, GroupsAreScopesOfTheirOwn) {
  Settings settings(Group("outer", Parameter("p", "type=\"enum\" value=\"1\">") +
                                       Group("inner", Parameter("p", "value=\"2\">") +
                                                          "<MatrixParmeter name=\"m\"/>")) +
                    Parameter("q", "value=\"3\">") + Group("outer", ""));
  double value = 0.0;
  EXPECT_EQ(settings->GetParameter("p", value, nullptr), kWarning120);
  EXPECT_EQ(settings->GetComplexParameter("inner", nullptr), nullptr);
  EXPECT_EQ(settings->GetComplexParameter("q", nullptr), nullptr);

  void* outer = settings->GetComplexParameter("outer", nullptr);
  ASSERT_NE(outer, nullptr);
  EXPECT_TRUE(settings->GetParameter("p", value, outer).IsOK());
  EXPECT_EQ(value, 1.0);
  EXPECT_EQ(settings->GetParameterType("p", outer), 4);
  EXPECT_EQ(settings->GetParameter("q", value, outer), kWarning120);

  void* inner = settings->GetComplexParameter("inner", outer);
  ASSERT_NE(inner, nullptr);
  int count = 0;
  EXPECT_TRUE(settings->GetParameter("p", count, inner).IsOK());
  EXPECT_EQ(count, 2);
  vector<vector<string>> rows(5);
  EXPECT_TRUE(settings->GetMatrix("m", rows, inner).IsOK());
  EXPECT_TRUE(rows.empty());
  Names names;
  EXPECT_TRUE(settings->GetArray("p", names, inner).IsOK());
  EXPECT_EQ(names, Names{"2"});
  EXPECT_EQ(settings->GetVariables("p", names), kWarning120) << "always in the top scope";
}

TEST(MCSettingsParser, FirstOfAName) {
  Settings settings(Parameter("p", "value=\"1\">") + Parameter("p", "value=\"2\">") +
                    Parameter("", "value=\"3\">") + "<Parameter value=\"4\"/>");
  int value = 0;
  EXPECT_TRUE(settings->GetParameter("p", value, nullptr).IsOK());
  EXPECT_EQ(value, 1);
  EXPECT_TRUE(settings->GetParameter(nullptr, value, nullptr).IsOK()) << "a null name is empty";
  EXPECT_EQ(value, 3);
  EXPECT_EQ(settings->GetParameter("P", value, nullptr), kWarning120) << "case counts";
}

TEST(MCSettingsParser, NamesBeyondAsciiAreFound) {
  Settings settings(
      Parameter("gr\xC3\xB6\xC3\x9F"
                "e \xF0\x9D\x9B\xBC",
                "value=\"\xC3\xA9\">"));
  string value;
  EXPECT_TRUE(settings
                  ->GetParameter("gr\xC3\xB6\xC3\x9F"
                                 "e \xF0\x9D\x9B\xBC",
                                 value, nullptr)
                  .IsOK());
  EXPECT_EQ(value, "\xC3\xA9");
}

// The names read, then the code unless that is OK.
string Variables(const string& parameter) {
  Names names = {"before"};
  const MCStatus status = Settings(parameter)->GetVariables("p", names);
  return TextsText(names) + (status.IsOK() ? "" : " -> " + std::to_string(status.GetErrorCode()));
}

TEST(MCSettingsParser, VariablesInTheFormOfAList) {
  EXPECT_EQ(Variables(Parameter("p", "isList=\"true\">" + ListOf({"a", "", "b"}))), "a b");
  EXPECT_EQ(Variables(Parameter("p", "isList=\"true\">" + ListOf({}))), "");
  EXPECT_EQ(Variables(Parameter("p", "isList=\"true\" value=\"v\">")), " -> 122");
  EXPECT_EQ(Variables(Parameter("p", "isList=\"true\"><ListValue>" + Value("a") + "<Value/>" +
                                         Value("b") + "</ListValue>")),
            "a -> 108");
  EXPECT_EQ(Variables(Parameter("p", "isList=\"true\" value=\"v\">" + ListOf({"a"}))), "a");
  for (const char* word : {"TRUE", "True", "1", "false", ""}) {
    EXPECT_EQ(Variables(Parameter(
                  "p", "isList=\"" + string(word) + "\" value=\"v\">" + ListOf({"a", "b"}))),
              "v")
        << word;
  }
  EXPECT_EQ(Variables(Parameter("p", ">" + ListOf({"a"}))), " -> 108");
  EXPECT_EQ(Variables(Parameter("p", "value=\"\">")), "");
}

TEST(MCSettingsParser, VariableInTheSingleForm) {
  const struct {
    string rest;
    MCStatus status;
    const char* value;
  } cases[] = {{"value=\"v\">", MCStatus(), "v"},
               {"value=\"\">", MCStatus(), ""},
               {"isList=\"true\" value=\"v\">", MCStatus(), "v"},
               {"isList=\"true\">" + ListOf({"a"}), Error(121), "before"},
               {"isList=\"yes\">" + ListOf({"a"}), Error(108), "before"},
               {">", Error(108), "before"}};
  for (const auto& [rest, status, value] : cases) {
    string read = "before";
    EXPECT_EQ(Settings(Parameter("p", rest))->GetVariables("p", read), status) << rest;
    EXPECT_EQ(read, value) << rest;
  }
}

TEST(MCSettingsParser, BuiltInNames) {
  using Operation = MCStatus (MCSettingsParser::*)(Names&) const;
  const std::pair<const char*, Operation> operations[] = {
      {"inputs", &MCSettingsParser::GetPredictors},
      {"target", &MCSettingsParser::GetTargetVars},
      {"ContPredictors", &MCSettingsParser::GetContPredictors},
      {"CatPredictors", &MCSettingsParser::GetCatPredictors},
      {"ContResponses", &MCSettingsParser::GetContResponseVars},
      {"CatResponses", &MCSettingsParser::GetCatResponseVars}};
  for (const auto& [name, operation] : operations) {
    Settings settings(Parameter(name, "isList=\"true\">" + ListOf({"a", "b"})));
    for (const auto& [otherName, other] : operations) {
      Names names;
      const MCStatus status = (settings.operator->()->*other)(names);
      if (name == otherName) {
        EXPECT_TRUE(status.IsOK()) << name;
        EXPECT_EQ(names, (Names{"a", "b"})) << name;
      } else {
        EXPECT_EQ(status, kWarning120) << name << " " << otherName;
      }
    }
  }
}

// The first two read as arrays do: a list needs no "isList", and an empty one is a warning.
TEST(MCSettingsParser, InputsAndTargetsAreArrays) {
  Settings settings(Parameter("inputs", ">" + ListOf({"a", ""})) +
                    Parameter("target", "isList=\"true\">" + ListOf({})) +
                    Parameter("CatPredictors", "isList=\"true\">" + ListOf({})));
  Names names;
  EXPECT_TRUE(settings->GetPredictors(names).IsOK());
  EXPECT_EQ(names, (Names{"a", ""}));
  EXPECT_EQ(settings->GetTargetVars(names), kWarning123);
  EXPECT_TRUE(settings->GetCatPredictors(names).IsOK());
}

TEST(MCSettingsParser, WeightIsOneName) {
  string name = "before";
  EXPECT_EQ(Settings("")->GetFrequencyWeight(name), kWarning120) << "a build without weights";
  EXPECT_EQ(name, "before");
  EXPECT_TRUE(
      Settings(Parameter("FrequencyWeightVar", "value=\"w\">"))->GetFrequencyWeight(name).IsOK());
  EXPECT_EQ(name, "w");
}

}  // namespace
