// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcregrparameter.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();

// Position of the value, or the number of values.
std::size_t Find(const std::vector<int>& values, int value) {
  return static_cast<std::size_t>(std::find(values.begin(), values.end(), value) - values.begin());
}

void InsertAt(std::vector<int>& values, std::size_t position, int value) {
  values.insert(values.begin() + static_cast<std::ptrdiff_t>(position), value);
}

}  // namespace

int MCRegrParameter::ContainsFactor(int factor, int notFound) const {
  const std::size_t position = Find(fFactors, factor);
  return position < fFactors.size() ? fCategories[position] : notFound;
}

int MCRegrParameter::GetCovariateMult(int covariate) const {
  const std::size_t position = Find(fCovariates, covariate);
  return position < fCovariates.size() ? fCovariateMultiplicities[position] : 0;
}

int MCRegrParameter::GetNCovariateMult() const {
  std::int64_t sum = 0;
  for (const int multiplicity : fCovariateMultiplicities) sum += multiplicity;
  return static_cast<int>(std::min<std::int64_t>(sum, kMaxInt));
}

void MCRegrParameter::SetEffectIndex(int index) {
  if (index >= 0) fEffectIndex = index;
}

bool MCRegrParameter::AddFactor(int factor, int category, int nestLevel) {
  if (factor < 0 || nestLevel < 0 || Find(fFactors, factor) < fFactors.size()) return false;
  // Room first: the three lists stay parallel where memory runs out.
  for (auto* list : {&fFactors, &fCategories, &fFactorNestLevels}) list->reserve(list->size() + 1);
  const auto place =
      std::upper_bound(fFactorNestLevels.begin(), fFactorNestLevels.end(), nestLevel);
  const auto position = static_cast<std::size_t>(place - fFactorNestLevels.begin());
  InsertAt(fFactors, position, factor);
  InsertAt(fCategories, position, category);
  InsertAt(fFactorNestLevels, position, nestLevel);
  return true;
}

int MCRegrParameter::AddCovariate(int covariate, int multiplicity) {
  if (covariate < 0 || multiplicity < 1) return 0;
  const std::size_t position = Find(fCovariates, covariate);
  if (position < fCovariates.size()) {
    int& present = fCovariateMultiplicities[position];
    if (multiplicity > kMaxInt - present) return 0;
    present += multiplicity;
    return present;
  }
  fCovariates.reserve(fCovariates.size() + 1);
  fCovariateMultiplicities.push_back(multiplicity);
  fCovariates.push_back(covariate);
  return multiplicity;
}

bool MCRegrParameter::SetupFromEffect(const MCModelEffect& effect, int effectIndex, int category) {
  if (effect.IsIntercept() || effectIndex < 0) return false;
  // Made aside: where memory runs out this parameter is the one of before.
  MCRegrParameter made;
  made.fEffectIndex = effectIndex;
  made.fTargetCategory = fTargetCategory;
  const std::vector<int> factors = effect.GetFactors();
  const std::vector<int> levels = effect.GetFactorLevels();
  for (std::size_t i = 0; i < factors.size(); ++i) made.AddFactor(factors[i], category, levels[i]);
  made.fCovariates = effect.GetCovariates();
  made.fCovariateMultiplicities = effect.GetCovMultiplicities();
  *this = std::move(made);
  return true;
}

bool MCRegrParameter::operator==(const MCRegrParameter& other) const {
  return fEffectIndex == other.fEffectIndex && fFactors == other.fFactors &&
         fCategories == other.fCategories && fFactorNestLevels == other.fFactorNestLevels &&
         fCovariates == other.fCovariates &&
         fCovariateMultiplicities == other.fCovariateMultiplicities &&
         fTargetCategory == other.fTargetCategory;
}

void MCRegrParameter::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "Begin MCRegrParameter object display.");
  if (fFactors.empty()) {
    DisplayText(1, "No factors are present.");
  } else {
    DisplayIV("The factors:", fFactors);
    DisplayIV("Categories:", fCategories);
    DisplayIV("Factor nesting levels:", fFactorNestLevels);
  }
  if (fCovariates.empty()) {
    DisplayText(1, "No covariates are present.");
  } else {
    DisplayIV("Covariates:", fCovariates);
    DisplayIV("Covariate multiplicities:", fCovariateMultiplicities);
  }
  DisplayI("Index of the effect", fEffectIndex);
  DisplayI("Target category", fTargetCategory);
  DisplayText(1, "End MCRegrParameter object display.\n");
}
