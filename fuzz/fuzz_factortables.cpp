// SPDX-License-Identifier: Apache-2.0
// Designs and rows of any bytes: the factor tables must agree with plain maps where every effect
// is made of the design's factors, and survive where not.
#include "regression/design/mcfactortables.h"
#include "require.h"
#include "support/factororacle.h"
#include "support/makerecord.h"

#include <algorithm>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <memory>
#include <vector>

namespace {

using mctest::FactorDesign;
using mctest::FactorOracle;

constexpr int kNValues = 6;  // values of a row

FactorDesign TakeDesign(FuzzedDataProvider& data, bool knownFactors) {
  FactorDesign design;
  const int nFactors = data.ConsumeIntegralInRange(0, 4);
  for (int i = 0; i < nFactors; ++i) {
    design.factors.push_back(i);
    design.sizes.push_back(data.ConsumeIntegralInRange(0, 300));
  }
  design.weightVar = data.ConsumeIntegralInRange(-1, kNValues - 1);
  design.regrWeightVar = data.ConsumeIntegralInRange(-1, kNValues - 1);
  design.dependentVar = data.ConsumeIntegralInRange(-1, kNValues - 1);
  design.nDepCategories = data.ConsumeIntegralInRange(0, 5);
  design.lowestCategory = data.ConsumeBool() ? 0 : data.ConsumeIntegral<int>();
  design.covariates = {kNValues - 1, 0};
  design.effects.resize(data.ConsumeIntegralInRange<std::size_t>(0, 5));
  const int lowest = knownFactors ? 0 : -1;
  const int highest = knownFactors ? nFactors - 1 : kNValues;
  for (std::vector<int>& effect : design.effects) {
    if (highest < lowest) break;
    effect.resize(data.ConsumeIntegralInRange<std::size_t>(0, 3));
    for (int& factor : effect) factor = data.ConsumeIntegralInRange(lowest, highest);
  }
  return design;
}

std::vector<double> TakeRow(FuzzedDataProvider& data) {
  std::vector<double> row(kNValues);
  for (double& value : row) {
    value = data.ConsumeBool() ? data.ConsumeIntegralInRange(-2, 9)
                               : data.ConsumeFloatingPoint<double>();
  }
  return row;
}

void Lookup(const MCFactorTables& tables, const FactorOracle& oracle, bool compare,
            const std::vector<double>& row) {
  bool allFound = false;
  const std::vector<int>& indices = tables.GetRowParameterIndices(row.data(), allFound);
  Require(allFound == (std::count(indices.begin(), indices.end(), -1) == 0));
  if (compare) Require(indices == oracle.Indices(row));
  tables.GetRowLocalParamIndices(row.data(), allFound);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool compare = data.ConsumeBool();
  const FactorDesign design = TakeDesign(data, compare);
  const std::unique_ptr<MCFactorTables> owned = mctest::TablesOf(design);
  MCFactorTables& tables = *owned;
  FactorOracle oracle(design);

  std::vector<std::vector<double>> rows;
  while (data.remaining_bytes() > 0 && rows.size() < 200) {
    rows.push_back(TakeRow(data));
    const bool counted = tables.UpdateAll(mctest::MakeRecord(rows.back()));
    if (compare) Require(counted == oracle.Add(rows.back()));
    std::vector<double> part(rows.back());
    part.pop_back();
    Require(!tables.UpdateAll(mctest::MakeRecord(part)));
  }
  const int nParameters = tables.CreateParameterIndices();
  if (compare) {
    Require(nParameters == oracle.Number());
    Require(tables.GetParameterOffsets() == oracle.fOffsets);
    Require(tables.GetSampleSize() == oracle.fSampleSize);
  }
  for (const auto& row : rows) Lookup(tables, oracle, compare, row);
  Require(static_cast<int>(tables.GetCovariateMeans().size()) == tables.GetNCovariates());
  Require(tables.GetIncompleteEffectIndex() < tables.GetNModelEffects());
  return 0;
}
