// SPDX-License-Identifier: Apache-2.0
#include "documents/buildsettings.h"

#include "documents/buildcolumns.h"
#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace mcfit {

namespace {

constexpr char kEffects[] = "effects";
constexpr char kModel[] = "model";

// A row of a matrix is a product: the names in it, one that occurs again as a power.
EffectExpression Product(const std::vector<std::string>& names) {
  EffectExpression expression;
  expression.levels.emplace_back();
  std::vector<EffectTerm>& terms = expression.levels.front();
  for (const std::string& name : names) {
    expression.text += (expression.text.empty() ? "" : "*") + EffectName(name);
    const auto known = std::find_if(terms.begin(), terms.end(),
                                    [&name](const EffectTerm& term) { return term.name == name; });
    if (known == terms.end()) {
      terms.push_back({name});
    } else {
      ++known->power;
    }
  }
  return expression;
}

std::optional<std::vector<EffectExpression>> ReadEffects(SettingsDocument& document) {
  const auto texts = document.All(kEffects);
  const auto rows = document.Rows(kEffects);
  if (texts && rows) {
    throw InputError(document.Names()(kEffects) + " is there as a matrix, too; write one of them");
  }
  if (!texts && !rows) return {};
  std::vector<EffectExpression> effects;
  for (const std::string& text : texts.value_or(std::vector<std::string>())) {
    const std::vector<EffectExpression> more = ParseEffects(text, document.Names()(kEffects));
    effects.insert(effects.end(), more.begin(), more.end());
  }
  if (rows) std::transform(rows->begin(), rows->end(), std::back_inserter(effects), Product);
  return effects;
}

bool IsLogistic(SettingsDocument& document, const ModelColumns& columns) {
  const bool hasCategories = HasCategoricalTarget(columns);
  const std::optional<std::string> model = document.One<std::string>(kModel);
  if (!model) return hasCategories;
  if (*model != "linear" && *model != "logistic") {
    throw InputError(
        fmt::format("{} is linear or logistic, not {}", document.Names()(kModel), Quoted(*model)));
  }
  const bool isLogistic = *model == "logistic";
  if (isLogistic != hasCategories) {
    throw InputError(fmt::format("{} is {}, but the dictionary calls the target {} {}",
                                 document.Names()(kModel), *model, Quoted(columns.dependent),
                                 hasCategories ? "categorical" : "continuous"));
  }
  return isLogistic;
}

std::unique_ptr<RegressionKind> ReadKind(SettingsDocument& document, const ModelColumns& columns) {
  if (!IsLogistic(document, columns)) return std::make_unique<LinearKind>();
  LogisticOptions options;
  options.reference = document.One<std::string>("reference").value_or(options.reference);
  LogisticControl& control = options.control;
  control.maxIterations = document.One<int>("max-iterations").value_or(control.maxIterations);
  control.reread = document.One<bool>("reread").value_or(control.reread);
  return std::make_unique<LogisticKind>(options);
}

}  // namespace

Build ReadBuild(SettingsDocument& document) {
  Build build;
  FitRequest& request = build.request;
  request.names = document.Names();
  request.settings = document.Path();
  request.columns = ReadColumns(document);
  build.kind = ReadKind(document, request.columns);
  request.effects = ReadEffects(document);
  request.hasIntercept = document.One<bool>("intercept").value_or(request.hasIntercept);
  request.tolerance = document.One<double>("tolerance").value_or(request.tolerance);
  request.missing.texts = document.All("missing").value_or(request.missing.texts);
  request.style.digits = document.One<int>("digits").value_or(request.style.digits);
  request.style.confidence = document.One<double>("confidence").value_or(request.style.confidence);
  document.NoteTheRest();
  return build;
}

}  // namespace mcfit
