// SPDX-License-Identifier: Apache-2.0
// Encoding of a million values, against a hash table of the standard library, and lists of many
// variables or categories.
#include "metadata/mccatnumencoder.h"
#include "metadata/mcstringencoder.h"
#include "metadata/mcvarlist.h"
#include "support/splitmix64.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace MCCommonMetadata;

constexpr std::size_t kValues = 1000000;

// Values of so many categories, in random order, each category under `make`.
template <class Value, class Make>
std::vector<Value> RandomValues(std::size_t nCategories, Make make) {
  mctest::SplitMix64 bits(1);
  std::vector<Value> values;
  values.reserve(kValues);
  for (std::size_t i = 0; i < kValues; ++i) values.push_back(make(bits.Next() % nCategories));
  return values;
}

std::vector<double> Numbers(benchmark::State& state) {
  return RandomValues<double>(static_cast<std::size_t>(state.range(0)),
                              [](std::uint64_t i) { return 0.5 * static_cast<double>(i) - 7.0; });
}

std::vector<std::string> Strings(benchmark::State& state) {
  return RandomValues<std::string>(static_cast<std::size_t>(state.range(0)), [](std::uint64_t i) {
    return "category " + std::to_string(i * 7919U % 1000000U);
  });
}

template <class Encoder, class Value>
void EncodeAll(benchmark::State& state, const std::vector<Value>& values) {
  for (auto _ : state) {
    Encoder encoder(0);
    double sum = 0.0;
    for (const Value& value : values) sum += encoder.Encode(value);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}

template <class Value>
void HashAll(benchmark::State& state, const std::vector<Value>& values) {
  for (auto _ : state) {
    std::unordered_map<Value, int> codes;
    double sum = 0.0;
    for (const Value& value : values) {
      sum += codes.try_emplace(value, static_cast<int>(codes.size())).first->second;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}

void EncodeNumbers(benchmark::State& state) {
  EncodeAll<MCCatNumEncoder>(state, Numbers(state));
}
void EncodeNumbersPeerHash(benchmark::State& state) {
  HashAll(state, Numbers(state));
}
void EncodeStrings(benchmark::State& state) {
  EncodeAll<MCStringEncoder>(state, Strings(state));
}
void EncodeStringsPeerHash(benchmark::State& state) {
  HashAll(state, Strings(state));
}

std::string Name(int i) {
  return "variable " + std::to_string(i);
}

// A list with one variable of so many categories, in a file.
class SavedList {
public:
  explicit SavedList(int nCategories) {
    std::vector<std::string> values;
    for (int i = 0; i < nCategories; ++i) values.push_back("category " + std::to_string(i));
    MCVarList list;
    list.AddCatVar("v", "", values, MC_ROLE_INPUT);
    std::ofstream out(fName);
    list.WriteObjectXML(out, 0);
    out << '\n';
  }
  ~SavedList() { std::remove(fName.c_str()); }
  SavedList(const SavedList&) = delete;
  SavedList& operator=(const SavedList&) = delete;

  const std::string& GetName() const { return fName; }

private:
  std::string fName = "metadata_benchmark.xml";
};

void ReadList(benchmark::State& state) {
  const SavedList saved(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    MCVarList list;
    std::ifstream in(saved.GetName());
    benchmark::DoNotOptimize(list.ReadObjectXML(in));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void AddVariables(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    MCVarList list;
    for (int i = 0; i < n; ++i) list.AddContVar(Name(i), "", MC_ROLE_INPUT);
    benchmark::DoNotOptimize(list.Size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(EncodeNumbers)->Arg(50)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeNumbersPeerHash)->Arg(50)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeStrings)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeStringsPeerHash)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadList)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(AddVariables)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
