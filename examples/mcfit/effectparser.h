// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mcfit {

/// A variable to a power, as written in an effect.
struct EffectTerm {
  std::string name;
  int power = 1;
};

/// One effect as written: the product in front, then what it is nested in, level by level:
/// "c(b(a))" is {{c}, {b}, {a}}, "x1^2*b(a)" is {{x1^2, b}, {a}}.
struct EffectExpression {
  std::string text;
  std::vector<std::vector<EffectTerm>> levels;
};

/// The highest power that may be written.
inline constexpr int kHighestPower = 100;

/// Parses effects with commas between them:
///
///     effects = effect { "," effect } .
///     effect  = product [ "(" effect ")" ] .
///     product = term { "*" term } .
///     term    = name [ "^" whole number from 1 ] .
///
/// A name is any text without blanks and , * ^ ( ) " or any text in double quotes, where a doubled
/// quote stands for one. Blanks between the parts don't count. An empty or blank text is no
/// effects. Throws InputError, with the place where reading stopped, for all else; `option` is what
/// it names the text by.
std::vector<EffectExpression> ParseEffects(std::string_view text,
                                           std::string_view option = "--effects");

/// Parses names with commas between them, for the option that messages are to name.
std::vector<std::string> ParseNames(std::string_view text, std::string_view option);

/// The name as it must be written in an effect, quoted only if need be.
std::string EffectName(const std::string& name);

}  // namespace mcfit
