// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactortables.h"

#include "regression/design/detail/mcfactorcounts_rows.h"
#include "regression/design/detail/mcparametergrid.h"
#include "regression/design/detail/runningmeans.h"
#include "regression/frame/mcmv.h"

#include <algorithm>

using MCCommonMath::MCHashKey;
using MCCommonMath::MCHashPairPointerLess;
using MCCommonMath::MCHashtable;

namespace {

// Makes room for one more entry, growing geometrically as push_back does.
void ReserveOneMore(MCFactorTables::HashPairs& pairs) {
  if (pairs.size() == pairs.capacity()) pairs.reserve(2 * pairs.capacity() + 1);
}

}  // namespace

MCFactorTables::MCFactorTables(const std::vector<int>& factors, const std::vector<int>& factorSizes,
                               int weightVar, int dependentVar, int nDepCategories,
                               int lowestCategory, int offsetVar, double offsetValue,
                               MCConst::MCOffsetType offsetType)
    : MCFactorCounts(factors, factorSizes, weightVar, dependentVar, nDepCategories, lowestCategory,
                     offsetVar, offsetValue, offsetType),
      fFactorValues(factors.size(), 0),
      fSizeToUpdate(SizeToCount()) {}

MCFactorTables::~MCFactorTables() = default;

void MCFactorTables::SetRegrWeightVar(int regrWeightVar) {
  fRegrWeightVar = regrWeightVar;
  ComputeSizeToUpdate();
}

void MCFactorTables::SetCovariates(const std::vector<int>& covariateIndices) {
  std::vector<int> indices(covariateIndices);
  std::vector<double> means(indices.size(), 0.0);
  std::vector<double> values(indices.size(), 0.0);
  fCovariateIndices.swap(indices);
  fCovariateMeans.swap(means);
  fCovariateValues.swap(values);
  fNCovariates = static_cast<int>(fCovariateIndices.size());
  fMeansComputed = false;
  ComputeSizeToUpdate();
}

void MCFactorTables::ComputeSizeToUpdate() {
  fSizeToUpdate = SizeToCount();
  if (fRegrWeightVar >= 0) fSizeToUpdate = std::max(fSizeToUpdate, SizeToRead(fRegrWeightVar));
  for (const int position : fCovariateIndices) {
    fSizeToUpdate = std::max(fSizeToUpdate, SizeToRead(position));
  }
}

void MCFactorTables::SetModelEffectFactors(const std::vector<std::vector<int>>& modelEffectFactors,
                                           const std::vector<int>& rowFactorIndices) {
  std::vector<std::vector<int>> effects(modelEffectFactors);
  std::vector<int> rowFactors(rowFactorIndices);
  rowFactors.resize(fFactorValues.size(), -1);
  fModelEffectFactors.swap(effects);
  fRowFactorIndices.swap(rowFactors);
  SetFactorTables();
}

void MCFactorTables::ClearTables() {
  fNModelEffects = 0;
  fNEffects = 0;
  for (std::vector<int>* perEffect :
       {&fEffectFactors, &fEffectNFactors, &fEffectCumFactors, &fLocalFactorIndices,
        &fParameterIndices, &fLocalParamIndices, &fLocalEffectIndices, &fModelEffectIndices,
        &fNParameters, &fParameterOffsets}) {
    perEffect->clear();
  }
  fCells.clear();
  fHashKeys.clear();
  fHashPairs.clear();
  fHashtables.clear();
}

void MCFactorTables::SetFactorTables() {
  ClearTables();
  try {
    MakeTables();
  } catch (...) {
    ClearTables();
    fModelEffectFactors.clear();
    throw;
  }
}

void MCFactorTables::MakeTables() {
  const std::vector<int>& factors = GetFactorIndices();
  for (std::size_t i = 0; i < factors.size(); ++i) {
    if (factors[i] < 0) continue;
    const auto position = static_cast<std::size_t>(factors[i]);
    if (position >= fLocalFactorIndices.size()) fLocalFactorIndices.resize(position + 1, 0);
    fLocalFactorIndices[position] = static_cast<int>(i);
  }
  const std::size_t nModelEffects = fModelEffectFactors.size();
  fParameterIndices.assign(nModelEffects, 0);
  fParameterOffsets.assign(nModelEffects, 0);
  fLocalEffectIndices.assign(nModelEffects, -1);
  fNModelEffects = static_cast<int>(nModelEffects);
  fEffectCumFactors.push_back(0);
  for (int effect = 0; effect < fNModelEffects; ++effect) AddLocalEffect(effect);
  fLocalParamIndices.assign(fHashtables.size(), 0);
  fNParameters.assign(fHashtables.size(), 0);
}

void MCFactorTables::AddLocalEffect(int effect) {
  const auto e = static_cast<std::size_t>(effect);
  const std::vector<int>& factors = fModelEffectFactors[e];
  if (factors.empty()) return;
  const auto nFactors = static_cast<int>(factors.size());
  fEffectNFactors.push_back(nFactors);
  fEffectCumFactors.push_back(fEffectCumFactors.back() + nFactors);
  fHashKeys.emplace_back(nFactors);
  fHashtables.push_back(std::make_unique<MCHashtable<int>>());
  fHashPairs.emplace_back();
  std::vector<int> localFactors;
  std::vector<int> nCategories;
  for (const int position : factors) {
    localFactors.push_back(GetLocalFactor(position));
    nCategories.push_back(GetNCategories(localFactors.back()));
  }
  fEffectFactors.insert(fEffectFactors.end(), localFactors.begin(), localFactors.end());
  fCells.emplace_back(localFactors, nCategories);
  fLocalEffectIndices[e] = fNEffects;
  fModelEffectIndices.push_back(effect);
  ++fNEffects;
}

// Index of the factor at a record position, -1 if there is none. The entries of positions that
// are no factor's are zeros, like that of the first factor, hence the look back.
int MCFactorTables::GetLocalFactor(int position) const {
  const auto p = static_cast<std::size_t>(position);
  if (position < 0 || p >= fLocalFactorIndices.size()) return -1;
  const int factor = fLocalFactorIndices[p];
  return GetFactorIndices()[static_cast<std::size_t>(factor)] == position ? factor : -1;
}

bool MCFactorTables::UpdateAll(const MCCommon::Record& record) {
  if (record.Size() < fSizeToUpdate) return false;
  const double* row = record.GetAll();
  double weight = GetFrequencyWeight(row);
  if (!CountLevels(row, weight)) return false;
  const bool recorded = UpdateLocalEffects();
  fTotalWeight += weight;
  fSampleSize += 1.0;
  if (fRegrWeightVar >= 0) weight *= row[fRegrWeightVar];
  fTotalRegrWeight += weight;
  if (fTotalRegrWeight > 0.0) UpdateCovariateMeans(row, weight);
  return recorded;
}

bool MCFactorTables::CountLevels(const double* row, double weight) {
  bool inRange = true;
  for (int i = 0; i < GetNFactors(); ++i) {
    const int level = CountFactor(i, row, weight);
    if (level == kOutOfRange) {
      inRange = false;
    } else {
      fFactorValues[static_cast<std::size_t>(i)] = level;
    }
  }
  return inRange && CountDependent(row, weight) != kOutOfRange;
}

bool MCFactorTables::UpdateLocalEffects() {
  bool recorded = true;
  for (std::size_t l = 0; l < fHashtables.size(); ++l) {
    const int** cell = fCells[l].Find(fFactorValues.data());
    if (cell != nullptr && *cell != nullptr) continue;
    const bool done = FillKey(l, fFactorValues) &&
                      UpdateHashtable(fHashtables[l].get(), &fHashPairs[l], fHashKeys[l]);
    if (done && cell != nullptr) *cell = fHashtables[l]->Get(&fHashKeys[l])->fValue;
    recorded = recorded && done;
  }
  return recorded;
}

void MCFactorTables::UpdateCovariateMeans(const double* row, double weight) {
  const std::size_t n = fCovariateIndices.size();
  for (std::size_t i = 0; i < n; ++i) fCovariateValues[i] = row[fCovariateIndices[i]];
  MCCommon::detail::UpdateRunningMeans(fCovariateValues.data(), fCovariateMeans.data(), n,
                                       fTotalRegrWeight, weight,
                                       MCCommonMath::detail::WidestVectorPath());
}

bool MCFactorTables::UpdateHashtable(MCHashtable<int>* table, HashPairs* pairs, MCHashKey& key) {
  if (table == nullptr || pairs == nullptr) return false;
  key.ComputeHash();
  if (table->Get(&key) != nullptr) return true;
  // Room first: the list must not fail when the table has the entry.
  ReserveOneMore(*pairs);
  auto ownKey = std::make_unique<MCHashKey>(key);
  auto value = std::make_unique<int>(0);
  if (!table->Put(ownKey.get(), value.get())) return false;
  static_cast<void>(ownKey.release());
  static_cast<void>(value.release());
  pairs->push_back(table->Get(&key));
  return true;
}

int MCFactorTables::CreateParameterIndices() {
  std::fill(fParameterIndices.begin(), fParameterIndices.end(), 0);
  int next = 0;
  for (std::size_t e = 0; e < fModelEffectFactors.size(); ++e) {
    fParameterOffsets[e] = next;
    if (fLocalEffectIndices[e] < 0) {
      fParameterIndices[e] = next++;
      continue;
    }
    const auto l = static_cast<std::size_t>(fLocalEffectIndices[e]);
    HashPairs& pairs = fHashPairs[l];
    std::sort(pairs.begin(), pairs.end(), MCHashPairPointerLess<int>());
    for (const auto* pair : pairs) *pair->fValue = next++;
    fNParameters[l] = static_cast<int>(pairs.size());
  }
  return next;
}

const std::vector<double>& MCFactorTables::GetCovariateMeans() {
  if (!fMeansComputed && !(fTotalWeight > 0.0)) {
    std::fill(fCovariateMeans.begin(), fCovariateMeans.end(), MCMV::gMissingValue);
  }
  fMeansComputed = true;
  return fCovariateMeans;
}
