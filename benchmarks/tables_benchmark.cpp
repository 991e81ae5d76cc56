// SPDX-License-Identifier: Apache-2.0
// What a row of factors costs: finding a cell's number, and tabulating a row of the design with
// factors A(20), B(50), C(10), effects A, B, C, A*C and five covariates.
#include "mcmath/mchashkey.h"
#include "mcmath/mchashtable.h"
#include "regression/design/mcfactortables.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/record.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

using MCCommonMath::MCHashKey;
using MCCommonMath::MCHashtable;

constexpr int kLevels[] = {20, 50, 10};
constexpr int kCovariates = 5;
constexpr std::size_t kRows = 4096;

std::vector<std::array<int, 2>> RandomCells() {
  std::mt19937_64 engine(1);
  std::vector<std::array<int, 2>> cells(kRows);
  for (auto& cell : cells) {
    cell = {static_cast<int>(engine() % 20), static_cast<int>(engine() % 10)};
  }
  return cells;
}

void CountItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}

/// Keys of two elements, 200 in the table; hashing included.
void LookupHashtable(benchmark::State& state) {
  MCHashtable<int> table;
  MCHashKey key(2);
  for (int a = 0; a < 20; ++a) {
    for (int c = 0; c < 10; ++c) {
      key.fData[0] = a;
      key.fData[1] = c;
      key.ComputeHash();
      auto owned = std::make_unique<MCHashKey>(key);
      auto number = std::make_unique<int>(10 * a + c);
      if (table.Put(owned.get(), number.get())) {
        static_cast<void>(owned.release());
        static_cast<void>(number.release());
      }
    }
  }
  const auto cells = RandomCells();
  for (auto _ : state) {
    long sum = 0;
    for (const auto& cell : cells) {
      key.fData[0] = cell[0];
      key.fData[1] = cell[1];
      key.ComputeHash();
      sum += *table.Get(&key)->fValue;
    }
    benchmark::DoNotOptimize(sum);
  }
  CountItems(state);
}

struct CellHash {
  std::size_t operator()(const std::array<int, 2>& cell) const {
    return static_cast<std::size_t>(cell[0]) * 31U + static_cast<std::size_t>(cell[1]);
  }
};

template <class Map>
void LookupPeer(benchmark::State& state) {
  Map map;
  for (int a = 0; a < 20; ++a) {
    for (int c = 0; c < 10; ++c) map[{a, c}] = 10 * a + c;
  }
  const auto cells = RandomCells();
  for (auto _ : state) {
    long sum = 0;
    for (const auto& cell : cells) sum += map.find(cell)->second;
    benchmark::DoNotOptimize(sum);
  }
  CountItems(state);
}

void LookupUnorderedMap(benchmark::State& state) {
  LookupPeer<std::unordered_map<std::array<int, 2>, int, CellHash>>(state);
}

void LookupMap(benchmark::State& state) {
  LookupPeer<std::map<std::array<int, 2>, int>>(state);
}

std::vector<MCCommon::Record> RandomRecords() {
  std::mt19937_64 engine(2);
  std::normal_distribution<double> normal;
  std::vector<MCCommon::Record> records(kRows, MCCommon::Record(3 + kCovariates + 1));
  for (MCCommon::Record& record : records) {
    for (int f = 0; f < 3; ++f) {
      record[f] = static_cast<double>(engine() % static_cast<unsigned>(kLevels[f]));
    }
    for (int i = 3; i < record.Size(); ++i) record[i] = normal(engine);
  }
  return records;
}

/// Tables of the design above; the dependent's mean is kept as that of one more covariate.
void SetUp(MCFactorTables& tables) {
  tables.SetModelEffectFactors({{}, {0}, {1}, {2}, {0, 2}}, {0, 1, 2});
  tables.SetCovariates({3, 4, 5, 6, 7, 8});
}

void RowUpdateAll(benchmark::State& state) {
  const std::vector<MCCommon::Record> records = RandomRecords();
  MCFactorTables tables({0, 1, 2}, {20, 50, 10}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  SetUp(tables);
  for (auto _ : state) {
    for (const MCCommon::Record& record : records) {
      benchmark::DoNotOptimize(tables.UpdateAll(record));
    }
  }
  CountItems(state);
}

void RowParameterIndices(benchmark::State& state) {
  const std::vector<MCCommon::Record> records = RandomRecords();
  MCFactorTables tables({0, 1, 2}, {20, 50, 10}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  SetUp(tables);
  for (const MCCommon::Record& record : records) tables.UpdateAll(record);
  tables.CreateParameterIndices();
  for (auto _ : state) {
    for (const MCCommon::Record& record : records) {
      bool found = false;
      benchmark::DoNotOptimize(tables.GetRowParameterIndices(record.GetAll(), found).data());
    }
  }
  CountItems(state);
}

/// The same tabulation by hand: counts of levels and cells in arrays, sums of the covariates.
void RowPlainCounts(benchmark::State& state) {
  const std::vector<MCCommon::Record> records = RandomRecords();
  std::vector<double> levels(20 + 50 + 10, 0.0);
  std::vector<int> cells(200, 0);
  std::vector<double> sums(kCovariates + 1, 0.0);
  for (auto _ : state) {
    for (const MCCommon::Record& record : records) {
      const auto a = static_cast<std::size_t>(record[0]);
      const auto b = static_cast<std::size_t>(record[1]);
      const auto c = static_cast<std::size_t>(record[2]);
      levels[a] += 1.0;
      levels[20 + b] += 1.0;
      levels[70 + c] += 1.0;
      ++cells[10 * a + c];
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += record[static_cast<int>(3 + i)];
    }
    benchmark::ClobberMemory();
  }
  CountItems(state);
}

BENCHMARK(LookupHashtable)->Unit(benchmark::kMicrosecond);
BENCHMARK(LookupUnorderedMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(LookupMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(RowUpdateAll)->Unit(benchmark::kMicrosecond);
BENCHMARK(RowParameterIndices)->Unit(benchmark::kMicrosecond);
BENCHMARK(RowPlainCounts)->Unit(benchmark::kMicrosecond);

}  // namespace
