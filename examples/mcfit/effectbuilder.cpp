// SPDX-License-Identifier: Apache-2.0
#include "effectbuilder.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

namespace {

[[noreturn]] void Fail(const EffectExpression& expression, const std::string& message) {
  throw InputError(fmt::format("effect {}: {}", Quoted(expression.text), message));
}

}  // namespace

EffectBuilder::EffectBuilder(const RecordLayout& layout)
    : fLayout(layout), fVariables(layout.Positions(Role::kFactor)) {
  fNFactors = static_cast<int>(fVariables.size());
  const std::vector<int> covariates = layout.Positions(Role::kCovariate);
  fVariables.insert(fVariables.end(), covariates.begin(), covariates.end());
}

MCModelEffect EffectBuilder::Build(const EffectExpression& expression) const {
  const int nCovariates = static_cast<int>(fVariables.size()) - fNFactors;
  MCModelEffect effect(fNFactors, nCovariates, &fVariables);
  // Levels rise towards the factors that are added first, so the outermost comes first.
  for (std::size_t level = expression.levels.size(); level-- > 0;) {
    AddLevel(effect, expression, level);
  }
  // "x(a)": the product in front has covariates alone and so makes no level of its own.
  const auto nWritten = static_cast<int>(expression.levels.size());
  if (effect.GetNFactors() > 0 && effect.GetNLevels() < nWritten) effect.SetFactorsInParens();
  return effect;
}

void EffectBuilder::AddLevel(MCModelEffect& effect, const EffectExpression& expression,
                             std::size_t level) const {
  bool isFirstOfLevel = true;
  for (const EffectTerm& term : expression.levels[level]) {
    const int position = PositionOf(term, expression);
    if (IsFactor(position)) {
      AddFactor(effect, term, position, isFirstOfLevel, expression);
      isFirstOfLevel = false;
    } else if (level > 0) {
      Fail(expression, fmt::format("{} is a covariate; only factors can stand in parentheses",
                                   Quoted(term.name)));
    } else {
      for (int i = 0; i < term.power; ++i) effect.AddCovariate(position);
    }
  }
}

void EffectBuilder::AddFactor(MCModelEffect& effect, const EffectTerm& term, int position,
                              bool nest, const EffectExpression& expression) const {
  if (term.power != 1) {
    Fail(expression, fmt::format("{} is a factor, which has no powers", Quoted(term.name)));
  }
  if (!effect.AddNewFactor(position, nest)) {
    Fail(expression, fmt::format("factor {} occurs twice", Quoted(term.name)));
  }
}

int EffectBuilder::PositionOf(const EffectTerm& term, const EffectExpression& expression) const {
  const int position = fLayout.PositionOfPredictor(term.name);
  if (position < 0) {
    Fail(expression,
         fmt::format("{} is neither a factor nor a covariate of the model", Quoted(term.name)));
  }
  return position;
}

std::vector<MCModelEffect> EffectBuilder::BuildAll(
    const std::vector<EffectExpression>& expressions) const {
  std::vector<MCModelEffect> effects;
  for (const EffectExpression& expression : expressions) {
    const MCModelEffect effect = Build(expression);
    if (std::find(effects.begin(), effects.end(), effect) != effects.end()) {
      Fail(expression, "the effect occurs twice");
    }
    effects.push_back(effect);
  }
  return effects;
}

std::vector<std::string> EffectBuilder::Unused(const std::vector<MCModelEffect>& effects) const {
  std::vector<bool> used = MCModelEffect::CheckVariableUse(effects);
  used.resize(fVariables.size(), false);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < used.size(); ++i) {
    if (!used[i]) names.push_back(fLayout.At(fVariables[i]).name);
  }
  return names;
}

std::vector<MCModelEffect> EffectBuilder::MainEffects() const {
  std::vector<EffectExpression> expressions;
  for (const int position : fVariables) {
    const std::string& name = fLayout.At(position).name;
    expressions.push_back({EffectName(name), {{EffectTerm{name}}}});
  }
  return BuildAll(expressions);
}

}  // namespace mcfit
