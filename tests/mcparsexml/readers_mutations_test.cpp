// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "mcparsexml/mcsettingsparser.h"
#include "readersupport.h"
#include "support/splitmix64.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

// Documents with random damage, through all that reads them: each operation answers a status, and
// what it fills can be used.

namespace {

using namespace mctest;
using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::GetNextSiblingElmt;
using MCComXPrsUtil::MCPMMLParser;
using MCComXPrsUtil::MCSettingsParser;
using std::string;
using std::vector;
using xercesc::DOMElement;

constexpr int kDocuments = 2000;

const char kDictionary[] =
    "<DataDictionary numberOfFields=\"3\">"
    "<DataField name=\"s\" displayName=\"S &amp; s\" optype=\"ordinal\" dataType=\"string\">"
    "<Value value=\"a\" displayValue=\"A\"/><Value value=\"b\" displayValue=\"B\"/>"
    "<Value value=\"?\" property=\"missing\" displayValue=\"none\"/></DataField>"
    "<DataField name=\"n\" optype=\"categorical\" dataType=\"integer\"><Value value=\"1\"/>"
    "<Value value=\"2e0\"/><Extension name=\"invalidRangeLower\" value=\"90\"/></DataField>"
    "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\">"
    "<Interval leftMargin=\"-1\" rightMargin=\"4.5\"/><Value value=\"NaN\" property=\"invalid\"/>"
    "</DataField></DataDictionary>\n<TransformationDictionary>"
    "<DerivedField name=\"b\" optype=\"continuous\" dataType=\"float\"><Discretize field=\"x\">"
    "<DiscretizeBin binValue=\"low\"><Interval leftMargin=\"0\" rightMargin=\"1\"/></DiscretizeBin>"
    "<DiscretizeBin binValue=\"high\"><Interval leftMargin=\"1\"/></DiscretizeBin></Discretize>"
    "<Extension><Interval rightMargin=\"7\"/></Extension></DerivedField>"
    "</TransformationDictionary>\n";

const char kModel[] =
    "<TreeModel><ModelStats><UnivariateStats field=\"s\"><Counts totalFreq=\"3\"/><DiscrStats>"
    "<Array type=\"int\">1 2</Array></DiscrStats></UnivariateStats><UnivariateStats field=\"x\">"
    "<Counts totalFreq=\"10\"/><NumericInfo minimum=\"1\" maximum=\"9\" mean=\"5\" "
    "standardDeviation=\"2\"/><ContStats><Interval rightMargin=\"5\" closure=\"openClosed\"/>"
    "<Interval leftMargin=\"5\" rightMargin=\"10\" closure=\"openClosed\"/>"
    "<Array type=\"real\">4.5 5.5</Array></ContStats></UnivariateStats></ModelStats></TreeModel>";

const char kTask[] =
    "<MiningBuildTask><Extension><Parameters>"
    "<Parameter name=\"p\" type=\"double\" value=\"0.5\"/><Parameter name=\"b\" value=\"true\"/>"
    "<Parameter name=\"l\" isList=\"true\"><ListValue><Value value=\"1\"/><Value value=\"2\"/>"
    "</ListValue></Parameter><ComplexParameter name=\"c\"><Parameter name=\"p\" value=\"7\"/>"
    "</ComplexParameter><MatrixParmeter name=\"m\"><ArrayParameter><Value value=\"1\"/>"
    "</ArrayParameter> <ArrayParameter/></MatrixParmeter>"
    "</Parameters></Extension></MiningBuildTask>";

/// Documents that each differ from one by a few cuts, copies, exchanges of words and wrong bytes.
class Mutator {
public:
  explicit Mutator(string document) : fDocument(std::move(document)) {}

  string Next() {
    string text = fDocument;
    for (std::uint64_t n = 1 + fBits.Next() % 4; n > 0; --n) Change(text);
    return text;
  }

private:
  std::size_t Below(std::size_t n) { return n == 0 ? 0 : fBits.Next() % n; }

  // Most damage leaves a document that is well-formed: values and names are exchanged.
  void Change(string& text) {
    const std::size_t place = Below(text.size());
    switch (fBits.Next() % 6) {
      case 0:
        text[place] = static_cast<char>(fBits.Next() % 256);
        break;
      case 1:
        text.erase(place, Below(40));
        break;
      case 2:
        text.insert(place, text.substr(Below(text.size()), Below(80)));
        break;
      case 3:
        EraseAttribute(text, place);
        break;
      default:
        ReplaceValue(text, place);
    }
  }

  void ReplaceValue(string& text, std::size_t from) {
    static const char* const kWords[] = {"",     "NaN",       "-1",         "1e999",      "INF",
                                         "0",    "9e307",     "x",          "s",          "string",
                                         "true", "&#x1D6FD;", "2147483648", "continuous", "1e-320"};
    const std::size_t quote = text.find('"', from);
    const std::size_t end = quote == string::npos ? quote : text.find('"', quote + 1);
    if (end != string::npos) {
      text.replace(quote + 1, end - quote - 1, kWords[Below(std::size(kWords))]);
    }
  }

  void EraseAttribute(string& text, std::size_t from) {
    const std::size_t blank = text.find(' ', from);
    const std::size_t quote = blank == string::npos ? blank : text.find('"', blank);
    const std::size_t end = quote == string::npos ? quote : text.find('"', quote + 1);
    if (end != string::npos) text.erase(blank, end + 1 - blank);
  }

  string fDocument;
  SplitMix64 fBits{1};
};

// Every answer has a code of its own exactly if it isn't OK.
bool IsSound(const MCCommon::MCStatus& status) {
  EXPECT_EQ(status.IsOK(), status.GetErrorCode() == 0);
  return status.IsOK();
}

int ReadVariables(const MCPMMLParser& parser) {
  int nVariables = 0;
  for (const bool bins : {false, true}) {
    MCVarList list;
    IsSound(parser.FillVarList(list, {}, bins));
    EXPECT_TRUE(list.Size() == 0 || !ListText(list).empty());
    nVariables += list.Size();
  }
  MCVarList selected;
  IsSound(parser.FillVarList(selected, {"x", "s"}, false));
  EXPECT_LE(selected.Size(), 2);
  return nVariables;
}

int ReadStatistics(MCPMMLParser& parser) {
  int nRead = 0;
  const DOMElement* root = parser.GetRootElement();
  const DOMElement* model = root == nullptr ? nullptr : GetFirstChildElmt(*root, nullptr);
  for (; model != nullptr; model = GetNextSiblingElmt(*model, nullptr)) {
    EXPECT_EQ(parser.SetModelElmt(*model), parser.GetStatus().IsOK());
    MCUniStats stats;
    const DOMElement* cursor = nullptr;
    while (IsSound(parser.FillUniStats(stats, cursor)) && cursor != nullptr) {
      EXPECT_TRUE(stats.IsValid());
      ++nRead;
    }
  }
  return nRead;
}

TEST(ReadersMutations, PmmlReaderStandsUpToDamage) {
  Mutator mutator(PmmlText(string(kDictionary) + kModel));
  MCPMMLParser parser;
  int nVariables = 0;
  int nStatistics = 0;
  for (int i = 0; i < kDocuments; ++i) {
    parser.SetStrict(i % 4 == 3);
    const string document = mutator.Next();
    ParseText(parser, document);
    nVariables += ReadVariables(parser);
    nStatistics += ReadStatistics(parser);
  }
  // Most documents are still of use, so that the damage was met all the way.
  EXPECT_GT(nVariables, 2 * kDocuments);
  EXPECT_GT(nStatistics, kDocuments / 3);
}

template <class Value>
int ReadParameter(const MCSettingsParser& parser, const char* name, void* scope) {
  Value value{};
  vector<Value> values;
  vector<vector<Value>> rows;
  int n = IsSound(parser.GetParameter(name, value, scope)) ? 1 : 0;
  if constexpr (!std::is_same_v<Value, bool>) {
    n += IsSound(parser.GetArray(name, values, scope)) ? 1 : 0;
    n += IsSound(parser.GetMatrix(name, rows, scope)) ? 1 : 0;
  }
  return n;
}

TEST(ReadersMutations, SettingsReaderStandsUpToDamage) {
  Mutator mutator(PmmlText(string(kDictionary) + kTask));
  MCSettingsParser parser;
  int nVariables = 0;
  int nParameters = 0;
  for (int i = 0; i < kDocuments; ++i) {
    parser.SetStrict(i % 4 == 3);
    const string document = mutator.Next();
    ParseText(parser, document);
    for (const bool bins : {false, true}) {
      MCVarList list;
      IsSound(parser.FillVarList(list, bins));
      IsSound(parser.FillTransDict(list));
      nVariables += list.Size();
    }
    for (void* scope : {static_cast<void*>(nullptr), parser.GetComplexParameter("c", nullptr)}) {
      for (const char* name : {"p", "b", "l", "m", "c"}) {
        EXPECT_LE(parser.GetParameterType(name, scope), 6);
        nParameters += ReadParameter<bool>(parser, name, scope);
        nParameters += ReadParameter<int>(parser, name, scope);
        nParameters += ReadParameter<double>(parser, name, scope);
        nParameters += ReadParameter<string>(parser, name, scope);
        vector<string> names;
        string one;
        nParameters += IsSound(parser.GetVariables(name, names)) ? 1 : 0;
        nParameters += IsSound(parser.GetVariables(name, one)) ? 1 : 0;
      }
    }
  }
  EXPECT_GT(nVariables, 2 * kDocuments);
  EXPECT_GT(nParameters, 5 * kDocuments);
}

}  // namespace
