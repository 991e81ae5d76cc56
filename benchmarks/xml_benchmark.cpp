// SPDX-License-Identifier: Apache-2.0
// What a document costs: a dictionary of 10,000 variables and an array of 1,000,000 numbers,
// written to a file. Bytes are those of the file.
#include "mcxml/writetree.h"
#include "mcxml/xmlelement.h"
#include "metadata/mcpmmlexporter.h"
#include "metadata/mcvarlist.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using MCCommonXML::XMLElement;

constexpr int kVariables = 10000;
constexpr int kNumbers = 1000000;
const char kFile[] = "xml_benchmark.xml";

std::unique_ptr<XMLElement> Dictionary() {
  MCVarList list;
  for (int i = 0; i < kVariables; ++i) {
    const std::string name = "variable " + std::to_string(i);
    if (i % 2 == 0) {
      list.AddContVar(name, "a < b & c", MC_ROLE_INPUT);
    } else {
      list.AddCatVar(name, "", std::vector<std::string>{"low", "middle", "high"}, MC_ROLE_INPUT);
    }
  }
  MCPMMLExporter exporter(nullptr);
  XMLElement* dictionary = nullptr;
  if (exporter.ExportDataDictionary(list, {}, dictionary).IsError()) std::abort();
  return std::unique_ptr<XMLElement>(dictionary);
}

std::unique_ptr<XMLElement> Statistics() {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> uniform(0.0, 1000.0);
  std::vector<double> frequencies(kNumbers);
  for (double& frequency : frequencies) frequency = uniform(engine);
  MCPMMLExporter exporter(nullptr);
  XMLElement* statistics = nullptr;
  const MCUniStats stats("x", 1e9, frequencies);
  if (exporter.ExportUniStats(stats, statistics).IsError()) std::abort();
  return std::unique_ptr<XMLElement>(statistics);
}

void WriteToFile(benchmark::State& state, const XMLElement& root) {
  std::int64_t bytes = 0;
  for (auto _ : state) {
    std::ofstream file(kFile, std::ios::binary);
    MCCommonXML::WriteTree(file, nullptr, &root, true);
    bytes += static_cast<std::int64_t>(file.tellp());
  }
  state.SetBytesProcessed(bytes);
  std::remove(kFile);
}

void WriteDictionary(benchmark::State& state) {
  WriteToFile(state, *Dictionary());
}

void WriteNumbers(benchmark::State& state) {
  WriteToFile(state, *Statistics());
}

/// The array made as well, each number put into text.
void ExportAndWriteNumbers(benchmark::State& state) {
  std::int64_t bytes = 0;
  for (auto _ : state) {
    const std::unique_ptr<XMLElement> root = Statistics();
    std::ofstream file(kFile, std::ios::binary);
    MCCommonXML::WriteTree(file, nullptr, root.get(), true);
    bytes += static_cast<std::int64_t>(file.tellp());
  }
  state.SetBytesProcessed(bytes);
  std::remove(kFile);
}

BENCHMARK(WriteDictionary)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportAndWriteNumbers)->Unit(benchmark::kMillisecond);

}  // namespace
