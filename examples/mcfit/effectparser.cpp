// SPDX-License-Identifier: Apache-2.0
#include "effectparser.h"

#include "textscanner.h"

#include <utility>

namespace mcfit {

namespace {

// Deeper nesting has no meaning: each level needs factors of its own.
constexpr std::size_t kMostLevels = 50;

std::vector<EffectTerm> TakeProduct(TextScanner& scanner) {
  std::vector<EffectTerm> product;
  do {
    EffectTerm term;
    term.name = scanner.TakeName();
    if (scanner.Take('^')) term.power = scanner.TakePower();
    product.push_back(std::move(term));
  } while (scanner.Take('*'));
  return product;
}

EffectExpression TakeEffect(TextScanner& scanner) {
  EffectExpression effect;
  const std::size_t begin = scanner.Position();
  do {
    if (effect.levels.size() == kMostLevels) scanner.Fail("too many levels of nesting");
    effect.levels.push_back(TakeProduct(scanner));
  } while (scanner.Take('('));
  for (std::size_t open = effect.levels.size() - 1; open > 0; --open) scanner.Expect(')');
  effect.text = scanner.TextFrom(begin);
  return effect;
}

}  // namespace

std::vector<EffectExpression> ParseEffects(std::string_view text, std::string_view option) {
  TextScanner scanner(text, option);
  return TakeList(scanner, TakeEffect);
}

std::vector<std::string> ParseNames(std::string_view text, std::string_view option) {
  TextScanner scanner(text, option);
  return TakeList(scanner, [](TextScanner& names) { return names.TakeName(); });
}

std::string EffectName(const std::string& name) {
  if (!name.empty() && name.find_first_of(TextScanner::kNameEnds) == std::string::npos) return name;
  std::string quoted = "\"";
  for (const char c : name) quoted += (c == '"') ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

}  // namespace mcfit
