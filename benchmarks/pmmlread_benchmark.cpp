// SPDX-License-Identifier: Apache-2.0
// What it costs to read a dictionary of many fields, or a field of many values, against a bare
// parse of the same file by Xerces; and what of that is ours.
#include "mcparsexml/mcpmmlparser.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace {

using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::MCPMMLParser;
using std::string;

// Every other field has categories, and all others are divided into bins.
string Fields(std::int64_t n) {
  string fields;
  string bins;
  for (std::int64_t i = 0; i < n; ++i) {
    const string name = "variable " + std::to_string(i);
    if (i % 2 == 0) {
      fields +=
          "\t\t<DataField name=\"" + name + "\" optype=\"categorical\" dataType=\"string\">\n";
      for (const char* value : {"low", "middle", "high"}) {
        fields += string("\t\t\t<Value value=\"") + value + "\" property=\"valid\"/>\n";
      }
      fields += "\t\t</DataField>\n";
    } else {
      fields += "\t\t<DataField name=\"" + name +
                "\" displayName=\"a &lt; b\" optype=\"continuous\" dataType=\"float\"/>\n";
      bins += "\t\t<DerivedField><Discretize field=\"" + name +
              "\"><DiscretizeBin binValue=\"0\"><Interval leftMargin=\"0\" rightMargin=\"1\"/>"
              "</DiscretizeBin><DiscretizeBin binValue=\"1\"><Interval leftMargin=\"1\" "
              "rightMargin=\"2\"/></DiscretizeBin></Discretize></DerivedField>\n";
    }
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML "
         "version=\"3.2\">\n\t<DataDictionary>\n" +
         fields + "\t</DataDictionary>\n\t<TransformationDictionary>\n" + bins +
         "\t</TransformationDictionary>\n</PMML>\n";
}

string Values(std::int64_t n, const char* type, const char* prefix) {
  string text = string(
                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"3.2\">\n"
                    "\t<DataDictionary>\n\t\t<DataField name=\"x\" optype=\"categorical\" "
                    "dataType=\"") +
                type + "\">\n";
  for (std::int64_t i = 0; i < n; ++i) {
    const string number = std::to_string(i);
    text += "\t\t\t<Value value=\"" + (prefix + number) + "\" displayValue=\"label " + number +
            "\" property=\"valid\"/>\n";
  }
  return text + "\t\t</DataField>\n\t</DataDictionary>\n</PMML>\n";
}

/// A file of the text, while it lives.
class Document {
public:
  explicit Document(const string& text) { std::ofstream(fName, std::ios::binary) << text; }
  ~Document() { std::remove(fName.c_str()); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const string& GetName() const { return fName; }

private:
  string fName = "pmmlread_benchmark.xml";
};

void Parse(MCPMMLParser& parser, const Document& document) {
  std::ifstream file(document.GetName(), std::ios::binary);
  if (!parser.ParseToDOM(file).IsOK()) std::abort();
}

void Fill(const MCPMMLParser& parser, const std::vector<string>& names, bool bins) {
  MCVarList list;
  if (!parser.FillVarList(list, names, bins).IsOK()) std::abort();
  benchmark::DoNotOptimize(list.Size());
}

void CountItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ReadOurs(benchmark::State& state, const string& text) {
  const Document document(text);
  for (auto _ : state) {
    MCPMMLParser parser;
    Parse(parser, document);
    Fill(parser, {}, false);
  }
  CountItems(state);
}

void ReadXerces(benchmark::State& state, const string& text) {
  const Document document(text);
  for (auto _ : state) {
    xercesc::XMLPlatformUtils::Initialize();
    {
      xercesc::XercesDOMParser parser;
      parser.parse(document.GetName().c_str());
      benchmark::DoNotOptimize(parser.getDocument());
    }
    xercesc::XMLPlatformUtils::Terminate();
  }
  CountItems(state);
}

void ReadFields(benchmark::State& state) {
  ReadOurs(state, Fields(state.range(0)));
}
void ReadFieldsPeerXerces(benchmark::State& state) {
  ReadXerces(state, Fields(state.range(0)));
}
void ReadTexts(benchmark::State& state) {
  ReadOurs(state, Values(state.range(0), "string", "category "));
}
void ReadTextsPeerXerces(benchmark::State& state) {
  ReadXerces(state, Values(state.range(0), "string", "category "));
}
void ReadNumbers(benchmark::State& state) {
  ReadOurs(state, Values(state.range(0), "double", "0.25"));
}
void ReadNumbersPeerXerces(benchmark::State& state) {
  ReadXerces(state, Values(state.range(0), "double", "0.25"));
}

/// The list alone, of a document that is held.
void FillFields(benchmark::State& state) {
  const Document document(Fields(state.range(0)));
  MCPMMLParser parser;
  Parse(parser, document);
  for (auto _ : state) Fill(parser, {}, false);
  CountItems(state);
}

/// The same with a name for every field, and the bins of every other one.
void FillNamedFieldsWithBins(benchmark::State& state) {
  const Document document(Fields(state.range(0)));
  MCPMMLParser parser;
  Parse(parser, document);
  std::vector<string> names;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    names.push_back("variable " + std::to_string(i));
  for (auto _ : state) Fill(parser, names, true);
  CountItems(state);
}

BENCHMARK(ReadFields)->Arg(1000)->Arg(10000)->Arg(40000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadFieldsPeerXerces)->Arg(1000)->Arg(10000)->Arg(40000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadTexts)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadTextsPeerXerces)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadNumbers)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadNumbersPeerXerces)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(FillFields)->Arg(1000)->Arg(10000)->Arg(40000)->Unit(benchmark::kMillisecond);
BENCHMARK(FillNamedFieldsWithBins)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(40000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
