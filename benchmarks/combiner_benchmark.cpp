// SPDX-License-Identifier: Apache-2.0
// What it costs to merge the models of a split: 25 and 200 files of 1 MB each, all with the same
// dictionary but for categories of their own, merged and written. Bytes are those of the
// files; the peer is Xerces's own parse of each file, and nothing else.
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxsplitpmmlcombiner.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

using MCComXPrsUtil::MCXMLReadWrite;
using MCComXPrsUtil::MCXSplitPMMLCombiner;

constexpr std::size_t kModelSize = 1000000;
constexpr int kFields = 100;
constexpr int kCategories = 50;  // of each field, a fifth of them the model's own

std::string ModelText(int model) {
  std::string text = "<PMML version=\"4.1\"><Header/><DataDictionary>";
  for (int field = 0; field < kFields; ++field) {
    text += "<DataField name=\"f" + std::to_string(field) + "\" optype=\"categorical\">";
    for (int value = 0; value < kCategories; ++value) {
      const int owner = value % 5 == 0 ? model : 0;
      text += "<Value value=\"" + std::to_string(owner * kCategories + value) + "\"/>";
    }
    text += "</DataField>";
  }
  text += "</DataDictionary><RegressionModel functionName=\"regression\"><MiningSchema>";
  for (int field = 0; field < kFields; ++field) {
    text += "<MiningField name=\"f" + std::to_string(field) + "\"/>";
  }
  text += "</MiningSchema><RegressionTable>";
  while (text.size() < kModelSize) {
    text += "<CategoricalPredictor name=\"f1\" value=\"" + std::to_string(text.size()) +
            "\" coefficient=\"0.125\"/>\n";
  }
  return text + "</RegressionTable></RegressionModel></PMML>";
}

/// The files, there for as long as this lives.
class ModelFiles {
public:
  explicit ModelFiles(int n) {
    for (int i = 0; i < n; ++i) {
      fNames.push_back("combiner_benchmark_" + std::to_string(i) + ".xml");
      std::ofstream(fNames.back(), std::ios::binary) << ModelText(i);
    }
  }
  ~ModelFiles() {
    for (const std::string& name : fNames) std::remove(name.c_str());
  }
  ModelFiles(const ModelFiles&) = delete;
  ModelFiles& operator=(const ModelFiles&) = delete;

  const std::vector<std::string>& Names() const { return fNames; }

private:
  std::vector<std::string> fNames;
};

void Report(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0) *
                          static_cast<std::int64_t>(kModelSize));
}

/// Once each: it takes half a minute.
void Plan(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(25)->Arg(200)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);
}

void MergeModels(benchmark::State& state) {
  const ModelFiles files(static_cast<int>(state.range(0)));
  MCCommonMetadata::MCVarList splitVars;
  splitVars.AddCatVar("region", "", std::vector<std::string>{"1"}, MCCommonMetadata::MC_ROLE_INPUT);
  for (auto _ : state) {
    MCXSplitPMMLCombiner combiner(splitVars);
    for (const std::string& name : files.Names()) {
      if (!combiner.AddModel(name, {"1"}).IsOK()) std::abort();
    }
    if (!combiner.ExportMiningModel("combiner_benchmark.xml").IsOK()) std::abort();
  }
  std::remove("combiner_benchmark.xml");
  Report(state);
}

void MergeModelsPeerXerces(benchmark::State& state) {
  const ModelFiles files(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    for (const std::string& name : files.Names()) {
      MCXMLReadWrite reader;
      if (!reader.ParseToDOM(name).IsOK()) std::abort();
    }
  }
  Report(state);
}

BENCHMARK(MergeModels)->Apply(Plan);
BENCHMARK(MergeModelsPeerXerces)->Apply(Plan);

}  // namespace
