// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mcmodeleffect.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstddef>

namespace {

// Entries of the variables that are not in an effect.
constexpr int kNoFactor = -1;
constexpr int kNoCovariate = 0;

std::vector<int> EmptyEntries(int nFactors, int nCovariates) {
  std::vector<int> entries;
  entries.reserve(static_cast<std::size_t>(nFactors) + static_cast<std::size_t>(nCovariates));
  entries.insert(entries.end(), static_cast<std::size_t>(nFactors), kNoFactor);
  entries.insert(entries.end(), static_cast<std::size_t>(nCovariates), kNoCovariate);
  return entries;
}

}  // namespace

MCModelEffect::MCModelEffect(int nFactors, int nCovariates, const std::vector<int>* vars) {
  Setup(nFactors, nCovariates, vars);
}

void MCModelEffect::Setup(int nFactors, int nCovariates, const std::vector<int>* vars) {
  nFactors = std::max(nFactors, 0);
  nCovariates = std::max(nCovariates, 0);
  fMainVector = EmptyEntries(nFactors, nCovariates);
  fNModelFactors = nFactors;
  fNModelCovariates = nCovariates;
  fpVarIndices = vars;
}

void MCModelEffect::Reset() {
  const auto covariates = fMainVector.begin() + fNModelFactors;
  std::fill(fMainVector.begin(), covariates, kNoFactor);
  std::fill(covariates, fMainVector.end(), kNoCovariate);
  fNFactors = 0;
  fNCovariates = 0;
  fNLevels = 0;
  fbFactorsInParens = false;
}

bool MCModelEffect::AddNewFactor(int var, bool nest) {
  const int position = FindFactor(var);
  if (position < 0) return false;
  int& entry = fMainVector[static_cast<std::size_t>(position)];
  if (entry != kNoFactor) return false;
  if (nest) {
    std::for_each(fMainVector.begin(), fMainVector.begin() + fNModelFactors, [](int& level) {
      if (level >= 0) ++level;
    });
    ++fNLevels;
  }
  entry = 0;
  if (fNFactors == 0) fNLevels = 1;
  ++fNFactors;
  return true;
}

int MCModelEffect::AddCovariate(int var) {
  const int position = FindCovariate(var);
  if (position < 0) return -1;
  const int power = ++fMainVector[static_cast<std::size_t>(position)];
  if (power == 1) ++fNCovariates;
  return power;
}

int MCModelEffect::ContainsFactor(int var) const {
  const int position = FindFactor(var);
  return position < 0 ? kNoFactor : fMainVector[static_cast<std::size_t>(position)];
}

int MCModelEffect::GetCovariateMult(int var) const {
  const int position = FindCovariate(var);
  return position < 0 ? -1 : fMainVector[static_cast<std::size_t>(position)];
}

int MCModelEffect::GetNCovariateMult() const {
  int sum = 0;
  for (auto power = fMainVector.begin() + fNModelFactors; power != fMainVector.end(); ++power) {
    sum += *power;
  }
  return sum;
}

std::vector<int> MCModelEffect::GetFactors() const {
  return CollectUsed(0, fNModelFactors, fpVarIndices);
}

std::vector<int> MCModelEffect::GetFactorLevels() const {
  return CollectUsed(0, fNModelFactors, &fMainVector);
}

std::vector<int> MCModelEffect::GetCovariates() const {
  return CollectUsed(fNModelFactors, fNModelCovariates, fpVarIndices);
}

std::vector<int> MCModelEffect::GetCovMultiplicities() const {
  return CollectUsed(fNModelFactors, fNModelCovariates, &fMainVector);
}

bool MCModelEffect::operator==(const MCModelEffect& other) const {
  return fNModelFactors == other.fNModelFactors && fNModelCovariates == other.fNModelCovariates &&
         fNFactors == other.fNFactors && fNCovariates == other.fNCovariates &&
         fNLevels == other.fNLevels && fpVarIndices == other.fpVarIndices &&
         fbFactorsInParens == other.fbFactorsInParens && fMainVector == other.fMainVector;
}

bool MCModelEffect::IsContainedIn(const MCModelEffect& other) const {
  if (fNFactors >= other.fNFactors || fNCovariates != other.fNCovariates ||
      fNModelFactors != other.fNModelFactors || fNModelCovariates != other.fNModelCovariates ||
      fpVarIndices != other.fpVarIndices) {
    return false;
  }
  const auto covariates = fMainVector.begin() + fNModelFactors;
  const auto otherCovariates = other.fMainVector.begin() + fNModelFactors;
  // Levels don't matter here: a factor nested in one effect may stand crossed in the other.
  const auto hasToo = [](int entry, int otherEntry) { return entry < 0 || otherEntry >= 0; };
  return std::equal(fMainVector.begin(), covariates, other.fMainVector.begin(), hasToo) &&
         std::equal(covariates, fMainVector.end(), otherCovariates);
}

bool MCModelEffect::ApplyMask(const std::vector<bool>& mask) {
  bool isUnused = true;
  // From the back, so that the positions still to be visited keep their meaning.
  for (std::size_t i = std::min(fMainVector.size(), mask.size()); i-- > 0;) {
    if (mask[i]) continue;
    if (Uses(i, fNModelFactors)) isUnused = false;
    --(i < static_cast<std::size_t>(fNModelFactors) ? fNModelFactors : fNModelCovariates);
    fMainVector.erase(fMainVector.begin() + static_cast<std::ptrdiff_t>(i));
  }
  return isUnused;
}

int MCModelEffect::FindInVector(const std::vector<int>& v, int start, int count, int value) const {
  if (start < 0 || count < 0) return -1;
  const std::size_t from = std::min(static_cast<std::size_t>(start), v.size());
  const std::size_t to = std::min(from + static_cast<std::size_t>(count), v.size());
  for (std::size_t i = from; i < to; ++i) {
    if (v[i] == value) return static_cast<int>(i);
  }
  return -1;
}

std::vector<bool> MCModelEffect::CheckVariableUse(const std::vector<MCModelEffect>& effects) {
  if (effects.empty()) return {};
  const MCModelEffect& model = effects.front();
  std::vector<bool> used(model.fMainVector.size(), false);
  for (const MCModelEffect& effect : effects) {
    for (std::size_t i = 0; i < used.size(); ++i) {
      if (effect.Uses(i, model.fNModelFactors)) used[i] = true;
    }
  }
  return used;
}

void MCModelEffect::GetUsedVariables(const std::vector<MCModelEffect>& effects,
                                     std::vector<int>& factors, std::vector<int>& covariates) {
  if (effects.empty()) return;
  factors.clear();
  covariates.clear();
  const MCModelEffect& model = effects.front();
  if (model.fpVarIndices == nullptr) return;
  const std::vector<int>& vars = *model.fpVarIndices;
  const std::size_t nVars = std::min(model.fMainVector.size(), vars.size());
  for (const MCModelEffect& effect : effects) {
    for (std::size_t i = 0; i < nVars; ++i) {
      if (!effect.Uses(i, model.fNModelFactors)) continue;
      const auto hit = std::find(factors.begin(), factors.end(), vars[i]);
      // The last factor counts as not found, and covariates are looked up among the factors:
      // callers rely on the duplicates which that leaves.
      const bool isKnown = hit != factors.end() && hit + 1 != factors.end();
      if (isKnown) continue;
      const bool isFactor = i < static_cast<std::size_t>(model.fNModelFactors);
      (isFactor ? factors : covariates).push_back(vars[i]);
    }
  }
}

void MCModelEffect::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "Begin MCModelEffect object display.");
  DisplayI("Factors in model", fNModelFactors);
  DisplayI("Factors in effect", fNFactors);
  DisplayI("Nesting levels", fNLevels);
  DisplayI("Covariates in model", fNModelCovariates);
  DisplayB("Factor after Covariates in ()?", fbFactorsInParens);
  DisplayI("Covariates in effect", fNCovariates);
  DisplayIV("The main vector", fMainVector);
  DisplayText(1, "End MCModelEffect object display.");
}

int MCModelEffect::FindFactor(int var) const {
  if (fpVarIndices == nullptr) return -1;
  return FindInVector(*fpVarIndices, 0, fNModelFactors, var);
}

int MCModelEffect::FindCovariate(int var) const {
  if (fpVarIndices == nullptr) return -1;
  return FindInVector(*fpVarIndices, fNModelFactors, fNModelCovariates, var);
}

bool MCModelEffect::Uses(std::size_t i, int nModelFactors) const {
  if (i >= fMainVector.size()) return false;
  const bool isFactor = i < static_cast<std::size_t>(nModelFactors);
  return fMainVector[i] > (isFactor ? kNoFactor : kNoCovariate);
}

std::vector<int> MCModelEffect::CollectUsed(int start, int count,
                                            const std::vector<int>* source) const {
  std::vector<int> collected;
  if (fpVarIndices == nullptr) return collected;
  const auto from = static_cast<std::size_t>(start);
  const std::size_t to = std::min(from + static_cast<std::size_t>(count), fpVarIndices->size());
  for (std::size_t i = from; i < to; ++i) {
    if (Uses(i, fNModelFactors)) collected.push_back((*source)[i]);
  }
  return collected;
}
