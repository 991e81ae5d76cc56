// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactortables.h"
#include "support/factororacle.h"
#include "support/makerecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace {

using mctest::FactorDesign;
using mctest::FactorOracle;
using Rows = std::vector<std::vector<double>>;

// Positions: two covariates, two weights, a dependent, then the factors.
constexpr int kFactorsBegin = 5;

class Generator {
public:
  explicit Generator(unsigned seed) : fEngine(seed) {}

  int Below(int n) { return static_cast<int>(fEngine() % static_cast<unsigned>(n)); }
  bool OneIn(int n) { return Below(n) == 0; }

  FactorDesign Design() {
    FactorDesign design;
    const int nFactors = Below(5);
    for (int i = 0; i < nFactors; ++i) {
      design.factors.push_back(kFactorsBegin + i);
      // Some sizes are so large that their effects have more cells than a grid takes.
      design.sizes.push_back(OneIn(4) ? 300 + Below(20000) : 1 + Below(6));
    }
    std::shuffle(design.factors.begin(), design.factors.end(), fEngine);
    if (OneIn(2)) design.weightVar = 2;
    if (OneIn(2)) design.regrWeightVar = 3;
    if (OneIn(2)) design.dependentVar = 4;
    design.nDepCategories = 2;
    design.lowestCategory = Below(3) - 1;
    for (int e = Below(6); e >= 0; --e) design.effects.push_back(Effect(design.factors));
    design.covariates = {1, 0};
    return design;
  }

  std::vector<double> Row(const FactorDesign& design, bool anything) {
    std::vector<double> row = {Uniform(-1, 1), Uniform(900, 1000), 1.0 + Below(3), Uniform(0.1, 2),
                               Code(2, design, anything)};
    row.resize(kFactorsBegin + design.factors.size());
    for (std::size_t i = 0; i < design.factors.size(); ++i) {
      row[static_cast<std::size_t>(design.factors[i])] = Code(design.sizes[i], design, anything);
    }
    return row;
  }

private:
  double Uniform(double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(fEngine);
  }

  // Mains, nestings and interactions in any order; none is an intercept.
  std::vector<int> Effect(std::vector<int> factors) {
    std::shuffle(factors.begin(), factors.end(), fEngine);
    factors.resize(std::min(factors.size(), static_cast<std::size_t>(Below(4))));
    return factors;
  }

  // Only some of the categories occur, so there are gaps and empty cells.
  double Code(int size, const FactorDesign& design, bool anything) {
    if (anything && OneIn(6)) {
      constexpr double kOdd[] = {-1.5,
                                 -0.6,
                                 1e10,
                                 -1e300,
                                 std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN(),
                                 2147483647.0,
                                 25000.0};
      return kOdd[Below(8)];
    }
    const int level = size > 6 ? Below(12) * (size / 12) : Below(size);
    const double jitter = anything ? Uniform(-0.49, 0.49) : 0.0;
    return design.lowestCategory + (level == 1 && size > 2 ? 0 : level) + jitter;
  }

  std::mt19937 fEngine;
};

void ExpectSameCounts(const MCFactorTables& tables, const FactorOracle& oracle) {
  for (std::size_t i = 0; i < oracle.fCounts.size(); ++i) {
    EXPECT_EQ(*tables.GetCountsPtr(static_cast<int>(i)), oracle.fCounts[i]);
  }
  if (!oracle.fDepCounts.empty()) {
    EXPECT_EQ(*tables.GetDependCountsPtr(), oracle.fDepCounts);
  }
}

// Sums of up to 400 terms of one sign, or of magnitude 1, in double: 1e-13 relative to the
// largest magnitude is a hundred times the worst rounding.
void ExpectSameMeans(MCFactorTables& tables, const FactorOracle& oracle) {
  EXPECT_EQ(tables.GetSampleSize(), oracle.fSampleSize);
  EXPECT_NEAR(tables.GetTotalWeight(), static_cast<double>(oracle.fTotalWeight), 1e-10);
  EXPECT_NEAR(tables.GetTotalRegrWeight(), static_cast<double>(oracle.fTotalRegrWeight), 1e-10);
  if (oracle.fSampleSize == 0) return;
  const std::vector<long double> means = oracle.Means();
  EXPECT_NEAR(tables.GetCovariateMeans()[0], static_cast<double>(means[0]), 1e-10);
  EXPECT_NEAR(tables.GetCovariateMeans()[1], static_cast<double>(means[1]), 1e-13);
}

void ExpectSameNumbering(const MCFactorTables& tables, const FactorOracle& oracle,
                         const FactorDesign& design) {
  EXPECT_EQ(tables.GetParameterOffsets(), oracle.fOffsets);
  for (int e = 0; e < tables.GetNModelEffects(); ++e) {
    const auto i = static_cast<std::size_t>(e);
    ASSERT_EQ(tables.GetNEffectParameters(e), oracle.fNParameters[i]);
    for (int local = 0; local < oracle.fNParameters[i]; ++local) {
      std::vector<int> codes;
      ASSERT_TRUE(tables.GetParameterFactorValues(codes, e, local));
      std::vector<int> expected = oracle.Levels(e, local);
      for (int& code : expected) code += design.lowestCategory;
      EXPECT_EQ(codes, expected);
    }
  }
}

void ExpectSameLookups(const MCFactorTables& tables, const FactorOracle& oracle,
                       const std::vector<double>& row) {
  const std::vector<int> expected = oracle.Indices(row);
  const bool expectedFound = std::count(expected.begin(), expected.end(), -1) == 0;
  bool allFound = !expectedFound;
  EXPECT_EQ(tables.GetRowParameterIndices(row.data(), allFound), expected);
  EXPECT_EQ(allFound, expectedFound);
  const std::vector<int>& local = tables.GetRowLocalParamIndices(row.data(), allFound);
  if (!expectedFound) return;
  for (std::size_t l = 0; l < local.size(); ++l) {
    const auto e = static_cast<std::size_t>(tables.GetModelEffectIndices()[l]);
    EXPECT_EQ(local[l] + oracle.fOffsets[e], expected[e]);
  }
}

TEST(MCFactorTablesOracle, GeneratedDesignsAreTabulatedAsByMaps) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(seed);
    Generator generator(seed);
    const FactorDesign design = generator.Design();
    const std::unique_ptr<MCFactorTables> owned = mctest::TablesOf(design);
    MCFactorTables& tables = *owned;
    FactorOracle oracle(design);

    for (int r = generator.Below(400); r >= 0; --r) {
      std::vector<double> row = generator.Row(design, true);
      ASSERT_EQ(tables.UpdateAll(mctest::MakeRecord(row)), oracle.Add(row));
      row.pop_back();  // the last factor or the dependent
      if (!design.factors.empty() || design.dependentVar >= 0) {
        ASSERT_FALSE(tables.UpdateAll(mctest::MakeRecord(row)));
      }
    }
    ASSERT_EQ(tables.CreateParameterIndices(), oracle.Number());

    ExpectSameCounts(tables, oracle);
    ExpectSameMeans(tables, oracle);
    ExpectSameNumbering(tables, oracle, design);
    EXPECT_EQ(tables.GetIncompleteEffectIndex(), oracle.IncompleteEffect());
    for (int r = 0; r < 50; ++r) {
      ExpectSameLookups(tables, oracle, generator.Row(design, r % 2 == 0));
    }
  }
}

TEST(MCFactorTablesOracle, TheNumberingDoesNotDependOnTheOrderOfRows) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    Generator generator(seed);
    FactorDesign design = generator.Design();
    design.lowestCategory = 0;  // so that rounding leaves every code in range
    Rows rows;
    for (int r = 0; r < 100; ++r) rows.push_back(generator.Row(design, false));
    std::vector<std::vector<int>> first;
    for (int order = 0; order < 2; ++order) {
      MCFactorTables tables(design.factors, design.sizes, -1, -1, 0, design.lowestCategory, -1, 0.0,
                            MCConst::MC_OFFSET_NONE);
      tables.SetModelEffectFactors(design.effects, design.factors);
      for (const auto& row : rows) tables.UpdateAll(mctest::MakeRecord(row));
      tables.CreateParameterIndices();
      std::sort(rows.begin(), rows.end());
      std::vector<std::vector<int>> indices;
      for (const auto& row : rows) {
        bool allFound = false;
        indices.push_back(tables.GetRowParameterIndices(row.data(), allFound));
        EXPECT_TRUE(allFound);
      }
      if (order == 0) first = indices;
      EXPECT_EQ(indices, first);
    }
  }
}

}  // namespace
