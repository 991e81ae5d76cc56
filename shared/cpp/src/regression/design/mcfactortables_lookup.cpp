// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcparametergrid.h"
#include "regression/design/mcfactortables.h"
#include "regression/frame/detail/mcnumericcast.h"

#include <algorithm>
#include <limits>

using MCCommonMath::MCHashKey;
using MCCommonMath::MCHashtable;

namespace {

// The nearest int. Where the level itself doesn't fit, the result is in no table either.
int SaturateLevel(std::int64_t level) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(level, Limits::min(), Limits::max()));
}

}  // namespace

// Fills the scratch key of an effect with the levels of its factors. False if the effect has a
// factor for which there is no level: one that is unknown (index -1), or beyond a short list.
bool MCFactorTables::FillKey(std::size_t localEffect, const std::vector<int>& factorValues) const {
  MCHashKey& key = fHashKeys[localEffect];
  const int* factor = fEffectFactors.data() + fEffectCumFactors[localEffect];
  for (std::size_t k = 0; k < static_cast<std::size_t>(key.fSize); ++k) {
    const auto i = static_cast<std::size_t>(factor[k]);
    if (i >= factorValues.size()) return false;
    key.fData[k] = factorValues[i];
  }
  return true;
}

int MCFactorTables::GetParameterIndex(const MCHashtable<int>* table, MCHashKey& key) {
  if (table == nullptr) return -1;
  key.ComputeHash();
  const auto* pair = table->Get(&key);
  return pair == nullptr ? -1 : *pair->fValue;
}

int MCFactorTables::FindLocalEffect(std::size_t localEffect,
                                    const std::vector<int>& factorValues) const {
  const MCCommon::detail::MCParameterGrid& cells = fCells[localEffect];
  if (cells.IsUsed() && factorValues.size() >= fFactorValues.size()) {
    const int* const* cell = cells.Find(factorValues.data());
    return cell == nullptr || *cell == nullptr ? -1 : **cell;
  }
  if (!FillKey(localEffect, factorValues)) return -1;
  return GetParameterIndex(fHashtables[localEffect].get(), fHashKeys[localEffect]);
}

const std::vector<int>& MCFactorTables::GetParameterIndices(const std::vector<int>& factorValues,
                                                            bool& allFound) const {
  allFound = true;
  for (std::size_t l = 0; l < fHashtables.size(); ++l) {
    const int index = FindLocalEffect(l, factorValues);
    fParameterIndices[static_cast<std::size_t>(fModelEffectIndices[l])] = index;
    if (index < 0) allFound = false;
  }
  return fParameterIndices;
}

int MCFactorTables::GetEffectParameterIndex(int effect,
                                            const std::vector<int>& factorValues) const {
  if (!IsModelEffect(effect)) return -1;
  const auto e = static_cast<std::size_t>(effect);
  const int localEffect = fLocalEffectIndices[e];
  if (localEffect < 0) return fParameterIndices[e];
  return FindLocalEffect(static_cast<std::size_t>(localEffect), factorValues);
}

void MCFactorTables::ReadFactorValues(const double* row) const {
  for (std::size_t i = 0; i < fRowFactorIndices.size(); ++i) {
    const int position = fRowFactorIndices[i];
    fFactorValues[i] =
        row == nullptr || position < 0
            ? kOutOfRange
            : SaturateLevel(MCCommon::detail::CategoryLevel(row[position], GetLowestCategory()));
  }
}

const std::vector<int>& MCFactorTables::GetRowParameterIndices(const double* row,
                                                               bool& allFound) const {
  ReadFactorValues(row);
  return GetParameterIndices(fFactorValues, allFound);
}

const std::vector<int>& MCFactorTables::GetRowLocalParamIndices(const double* row,
                                                                bool& allFound) const {
  const std::vector<int>& global = GetRowParameterIndices(row, allFound);
  if (!allFound) return fLocalParamIndices;
  for (std::size_t l = 0; l < fLocalParamIndices.size(); ++l) {
    const auto e = static_cast<std::size_t>(fModelEffectIndices[l]);
    fLocalParamIndices[l] = global[e] - fParameterOffsets[e];
  }
  return fLocalParamIndices;
}

int MCFactorTables::GetNEffectParameters(int effect) const {
  if (!IsModelEffect(effect)) return 0;
  const int localEffect = fLocalEffectIndices[static_cast<std::size_t>(effect)];
  return localEffect < 0 ? 1 : fNParameters[static_cast<std::size_t>(localEffect)];
}

bool MCFactorTables::GetParameterFactorValues(std::vector<int>& out, int effect,
                                              int localParam) const {
  if (!IsModelEffect(effect)) return false;
  const int localEffect = fLocalEffectIndices[static_cast<std::size_t>(effect)];
  if (localEffect < 0) {
    out.clear();
    return true;
  }
  const HashPairs& pairs = fHashPairs[static_cast<std::size_t>(localEffect)];
  if (localParam < 0 || static_cast<std::size_t>(localParam) >= pairs.size()) return false;
  const MCHashKey& key = *pairs[static_cast<std::size_t>(localParam)]->fKey;
  out.resize(static_cast<std::size_t>(key.fSize));
  // No overflow: the level came from a code that is an int.
  std::transform(key.fData.get(), key.fData.get() + key.fSize, out.begin(),
                 [this](int level) { return level + GetLowestCategory(); });
  return true;
}

int MCFactorTables::GetIncompleteEffectIndex() const {
  double best = 1.0;
  int incomplete = -1;
  for (int effect = 0; effect < fNModelEffects; ++effect) {
    const std::vector<int>& factors = fModelEffectFactors[static_cast<std::size_t>(effect)];
    if (factors.empty()) continue;
    double nCells = 1.0;
    for (const int position : factors) {
      // An unknown factor has no category, and 0 / 0 is below nothing.
      nCells *= std::max(GetNActiveCategories(GetLocalFactor(position)), 0);
    }
    const double ratio = GetNEffectParameters(effect) / nCells;
    if (ratio < best) {
      best = ratio;
      incomplete = effect;
    }
  }
  return incomplete;
}
