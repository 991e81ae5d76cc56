// SPDX-License-Identifier: Apache-2.0
// Designs and rows of any bytes: every row that a tabulator stores comes back once, with the
// parameters that the tables find for it, whether keys are packed or not.
#include "regression/logistic/mclogisticflags.h"
#include "require.h"
#include "support/makerecord.h"
#include "support/tabulation.h"

#include <algorithm>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <utility>
#include <vector>

namespace {

using mctest::Rows;
using mctest::TabulatedDesign;
using mctest::Tabulation;

constexpr int kNValues = 6;  // dependent, up to four factors, covariate

TabulatedDesign TakeDesign(FuzzedDataProvider& data) {
  TabulatedDesign design;
  const int nFactors = data.ConsumeIntegralInRange(0, 4);
  for (int i = 1; i <= nFactors; ++i) {
    design.factors.emplace_back(i, data.ConsumeIntegralInRange(1, 300));
  }
  design.nCategories = data.ConsumeIntegralInRange(2, 5);
  design.covariates = {kNValues - 1};
  design.effects.resize(data.ConsumeIntegralInRange<std::size_t>(0, 5));
  for (std::vector<int>& effect : design.effects) {
    if (nFactors == 0) break;
    effect.resize(data.ConsumeIntegralInRange<std::size_t>(0, 3));
    for (int& factor : effect) factor = data.ConsumeIntegralInRange(1, nFactors);
  }
  return design;
}

// Codes up to the number of categories, which passes the validation and is dropped later; -1 does
// not pass it, and half a code ends the pass.
Rows TakeRows(FuzzedDataProvider& data, const TabulatedDesign& design) {
  Rows rows;
  while (data.remaining_bytes() > 0 && rows.size() < 300) {
    std::vector<double> row(kNValues);
    row[0] = data.ConsumeIntegralInRange(-1, design.nCategories);
    for (const auto& [position, nLevels] : design.factors) {
      row[static_cast<std::size_t>(position)] = data.ConsumeIntegralInRange(-1, nLevels);
    }
    row.back() = data.ConsumeIntegral<std::int16_t>();
    if (data.ConsumeIntegral<std::uint8_t>() == 255) row[1] = 0.5;
    rows.push_back(row);
  }
  return rows;
}

// The rows that come back, ascending; each with the parameters of its factors.
std::vector<std::vector<double>> StoredRows(Tabulation& tabulation) {
  std::vector<std::vector<double>> stored;
  Require(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel).IsOK());
  for (const auto& row : tabulation.fModel.fDesignRows) {
    // An extract has the layout of these records, but that unused factors are left out.
    std::vector<double> record(kNValues, 0.0);
    std::copy(row.fValues.begin(), row.fValues.end() - 1, record.begin());
    record.back() = row.fValues.back();
    bool allFound = false;
    Require(tabulation.fTables.GetRowParameterIndices(record.data(), allFound) == row.fIndices);
    Require(allFound);
    stored.push_back(std::move(record));
  }
  std::sort(stored.begin(), stored.end());
  return stored;
}

// How many rows are valid and of known categories and cells. A factor that no effect names may have
// any valid code.
std::size_t CountKnown(const Rows& rows, const TabulatedDesign& design,
                       const MCFactorTables& tables) {
  const auto isKnown = [&](const std::vector<double>& row) {
    if (row[0] < 0 || row[0] >= design.nCategories) return false;
    for (const auto& factor : design.factors) {
      if (row[static_cast<std::size_t>(factor.first)] < 0) return false;
    }
    bool allFound = false;
    tables.GetRowParameterIndices(row.data(), allFound);
    return allFound;
  };
  return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), isKnown));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool packing = data.ConsumeBool();
  const TabulatedDesign design = TakeDesign(data);
  const Rows rows = TakeRows(data, design);
  std::vector<std::vector<double>> stored[2];
  for (const bool first : {true, false}) {
    const mctest::PackingSwitch packed(first == packing);
    Tabulation tabulation(design);
    if (!tabulation.BothPasses(rows).IsOK()) return 0;
    stored[first ? 0 : 1] = StoredRows(tabulation);
    Require(stored[first ? 0 : 1].size() == CountKnown(rows, design, tabulation.fTables));
  }
  Require(stored[0] == stored[1]);
  return 0;
}
