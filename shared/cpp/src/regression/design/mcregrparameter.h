// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/settings/mcmodeleffect.h"

#include <vector>

/// One column of the design: factors at given categories, times covariates at given powers, of one
/// model effect and, in a logistic model, of one category of the dependent. A plain value: models
/// keep vectors of them in the order of their columns, and output statistics copy those. Variables
/// are record positions; a parameter with neither factor nor covariate is the intercept.
class MC_EXPORT MCRegrParameter {
public:
  /// The factors, and in the same order their nesting levels, never descending, and their category
  /// codes. A caller may write codes through the non-const form but keeps their number.
  const std::vector<int>& GetFactors() const { return fFactors; }
  const std::vector<int>& GetFactorNestLevels() const { return fFactorNestLevels; }
  const std::vector<int>& GetCategories() const { return fCategories; }
  std::vector<int>& GetCategories() { return fCategories; }

  /// The covariates, each once, and in the same order their powers, each at least 1.
  const std::vector<int>& GetCovariates() const { return fCovariates; }
  const std::vector<int>& GetCovariateMultiplicities() const { return fCovariateMultiplicities; }

  int GetNFactors() const { return static_cast<int>(fFactors.size()); }
  int GetNCovariates() const { return static_cast<int>(fCovariates.size()); }

  /// Category of the factor, or `notFound` if the parameter doesn't have that factor.
  int ContainsFactor(int factor, int notFound) const;

  /// Power of the covariate, 0 if the parameter doesn't have it.
  int GetCovariateMult(int covariate) const;

  /// Degree of the covariate term: the sum of the powers, the largest int where that is exceeded.
  int GetNCovariateMult() const;

  bool IsIntercept() const { return fFactors.empty() && fCovariates.empty(); }

  /// Number of the model effect from 0, -1 at first. A negative argument is ignored.
  int GetEffectIndex() const { return fEffectIndex; }
  void SetEffectIndex(int index);

  /// Category of the dependent that a logistic parameter belongs to (a basic one: that of the first
  /// block); -1 at first, and for linear parameters. Any value is stored.
  int GetTargetCategory() const { return fTargetCategory; }
  void SetTargetCategory(int category) { fTargetCategory = category; }

  /// Inserts the factor behind all those of its own and lower nesting levels. False, and nothing
  /// changed, if factor or nestLevel is negative or the factor is there already.
  bool AddFactor(int factor, int category, int nestLevel);

  /// Adds `multiplicity` to the covariate's power and answers the new one. 0, and nothing changed,
  /// if covariate is negative, multiplicity is below 1 or the power would exceed the largest int.
  int AddCovariate(int covariate, int multiplicity);

  /// Takes over factors, in the order of their nesting, and covariates of the effect, and its
  /// number `effectIndex`; each factor gets `category`, and the target category stays. False, and
  /// nothing changed, for an intercept or a negative index.
  bool SetupFromEffect(const MCModelEffect& effect, int effectIndex, int category);

  /// Equal indices and lists.
  bool operator==(const MCRegrParameter& other) const;

  /// Writes the parameter to the display stream.
  void Display() const;

private:
  std::vector<int> fFactors;
  std::vector<int> fCategories;
  std::vector<int> fFactorNestLevels;
  std::vector<int> fCovariates;
  std::vector<int> fCovariateMultiplicities;
  int fEffectIndex = -1;
  int fTargetCategory = -1;
};
