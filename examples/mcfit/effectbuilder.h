// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "effectparser.h"
#include "recordlayout.h"
#include "regression/settings/mcmodeleffect.h"

#include <vector>

namespace mcfit {

/// Makes model effects of what the user wrote, against the factors and covariates of a layout.
/// The effects point into this object, which must outlive them and every component made of them.
class EffectBuilder {
public:
  explicit EffectBuilder(const RecordLayout& layout);
  EffectBuilder(const EffectBuilder&) = delete;
  EffectBuilder& operator=(const EffectBuilder&) = delete;

  /// The model effect. Throws InputError for a name that is neither factor nor covariate, a factor
  /// that occurs twice or has a power, a covariate inside parentheses, and for nesting of nothing.
  MCModelEffect Build(const EffectExpression& expression) const;

  /// All of them. Throws also for an effect that occurs twice.
  std::vector<MCModelEffect> BuildAll(const std::vector<EffectExpression>& expressions) const;

  /// One main effect per factor, then one per covariate.
  std::vector<MCModelEffect> MainEffects() const;

  /// Names of the factors and covariates that no effect uses.
  std::vector<std::string> Unused(const std::vector<MCModelEffect>& effects) const;

private:
  int PositionOf(const EffectTerm& term, const EffectExpression& expression) const;
  void AddLevel(MCModelEffect& effect, const EffectExpression& expression, std::size_t level) const;
  void AddFactor(MCModelEffect& effect, const EffectTerm& term, int position, bool nest,
                 const EffectExpression& expression) const;
  bool IsFactor(int position) const { return fLayout.At(position).role == Role::kFactor; }

  const RecordLayout& fLayout;
  int fNFactors;
  std::vector<int> fVariables;  // record positions: factors, then covariates
};

}  // namespace mcfit
