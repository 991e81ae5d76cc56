// SPDX-License-Identifier: Apache-2.0
//
// The order in which stored rows are walked fixes the rounding of every sum: here it is worked out
// by a plain table of chains and compared, for few patterns and for so many that the table grows.
#include "regression/logistic/mcpatterntabulator.h"
#include "support/splitmix64.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

using mctest::Rows;
using mctest::TabulatedDesign;
using mctest::Tabulation;
using Ints = std::vector<int>;

// Chains of keys with the numbers of their rows, by the rules of the pattern table.
class ChainOracle {
public:
  void Add(const Ints& key, int row) {
    for (auto& [k, rows] : Chain(key)) {
      if (k == key) return rows.push_back(row);
    }
    if (fCount >= fThreshold) Grow();
    Chain(key).push_front({key, {row}});
    ++fCount;
  }
  Ints Order() const {
    Ints order;
    for (const auto& chain : fChains) {
      for (const auto& entry : chain) {
        order.insert(order.end(), entry.second.begin(), entry.second.end());
      }
    }
    return order;
  }

private:
  using Entries = std::list<std::pair<Ints, Ints>>;

  static unsigned Hash(const Ints& key) {
    constexpr unsigned kPrimes[] = {3, 5, 7, 11, 13};
    unsigned hash = 0;
    for (std::size_t i = 0; i < key.size(); ++i) hash ^= static_cast<unsigned>(key[i]) * kPrimes[i];
    return hash;
  }
  Entries& Chain(const Ints& key) { return fChains[Hash(key) % fChains.size()]; }
  void Grow() {
    const std::vector<Entries> old(std::move(fChains));
    fChains.assign(2 * old.size() + 1, {});
    fThreshold = static_cast<int>(0.75F * static_cast<float>(fChains.size()));
    for (const auto& chain : old) {
      for (const auto& entry : chain) Chain(entry.first).push_front(entry);
    }
  }

  std::vector<Entries> fChains{89};
  int fThreshold = 66;
  int fCount = 0;
};

struct OrderCase {
  const char* name;
  Ints sizes;  // of the factors, at positions 1, 2, ...; each is an effect
  bool packing;
  bool ownFirstPass;  // whether the tabulator has counted the rows of the patterns
};

void PrintTo(const OrderCase& c, std::ostream* out) {
  *out << c.name;
}

class WalkOrder : public testing::TestWithParam<OrderCase> {};

TEST_P(WalkOrder, IsThatOfThePatternTable) {
  const Ints& sizes = GetParam().sizes;
  TabulatedDesign design;
  for (std::size_t f = 0; f < sizes.size(); ++f) {
    const int position = static_cast<int>(f) + 1;
    design.factors.emplace_back(position, sizes[f]);
    design.effects.push_back({position});
  }
  const int covariate = static_cast<int>(sizes.size()) + 1;
  design.covariates = {covariate};
  // All levels first, so that a level is its local index; then 2000 rows, told by their covariate.
  Rows seen;
  Rows rows;
  for (int level = 0; level < *std::max_element(sizes.begin(), sizes.end()); ++level) {
    seen.push_back({0});
    for (const int size : sizes) seen.back().push_back(std::min(level, size - 1));
    seen.back().push_back(0);
  }
  mctest::SplitMix64 random(5);
  ChainOracle oracle;
  for (int row = 0; row < 2000; ++row) {
    Ints levels;
    for (const int size : sizes) {
      levels.push_back(static_cast<int>(random.Next() % static_cast<unsigned>(size)));
    }
    rows.push_back({0});
    rows.back().insert(rows.back().end(), levels.begin(), levels.end());
    rows.back().push_back(row);
    int packed = 0;
    for (std::size_t f = sizes.size(); f-- > 0;) packed = packed * sizes[f] + levels[f];
    oracle.Add(GetParam().packing ? Ints{packed} : levels, row);
  }
  const mctest::PackingSwitch packing(GetParam().packing);
  Tabulation tabulation(design);
  if (GetParam().ownFirstPass) {
    mctest::RowSource source(seen);
    mctest::RowSource all(rows);
    ASSERT_TRUE(tabulation.fTabulator.FillFactorTable(source, tabulation.fTables).IsOK());
    ASSERT_TRUE(tabulation.FirstPass(all).IsOK());
  } else {
    for (const auto& row : seen) {
      MCCommon::Record record(static_cast<int>(row.size()));
      std::copy(row.begin(), row.end(), record.GetAll());
      tabulation.fTables.UpdateAll(record);
    }
    tabulation.fTables.CreateParameterIndices();
  }
  mctest::RowSource source(rows);
  ASSERT_TRUE(tabulation.SecondPass(source).IsOK());
  tabulation.fModel.fValueAt = covariate;
  ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
  Ints walked;
  for (const auto& row : tabulation.fAccumulator.fRows) {
    walked.push_back(static_cast<int>(row.fValues[0]));
  }
  EXPECT_EQ(walked, oracle.Order());
  ASSERT_TRUE(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel).IsOK());
  EXPECT_TRUE(tabulation.fModel.fDesignRows == tabulation.fModel.fExpandedRows);
}

INSTANTIATE_TEST_SUITE_P(
    MCPatternTabulator, WalkOrder,
    testing::Values(OrderCase{"few patterns", {3, 2}, true, true},
                    OrderCase{"few patterns, not packed", {3, 2}, false, true},
                    OrderCase{"one factor", {40}, true, true},
                    OrderCase{"one factor, not packed", {40}, false, true},
                    OrderCase{"the table grows", {10, 20, 5}, true, true},
                    OrderCase{"the table grows, not packed", {10, 20, 5}, false, true},
                    OrderCase{"the table grows, nothing counted", {10, 20, 5}, true, false},
                    OrderCase{"too many cells for a grid", {30, 30, 30}, true, true},
                    OrderCase{"too many cells for a grid, not packed", {30, 30, 30}, false, true}));

}  // namespace
