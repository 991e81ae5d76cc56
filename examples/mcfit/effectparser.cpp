// SPDX-License-Identifier: Apache-2.0
#include "effectparser.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <charconv>
#include <utility>

namespace mcfit {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kNameEnds = " \t\r\n,*^()\"";

// Deeper nesting has no meaning: each level needs factors of its own.
constexpr std::size_t kMostLevels = 50;

/// Reads an expression from left to right.
class Scanner {
public:
  Scanner(std::string_view text, std::string_view option) : fText(text), fOption(option) {
    SkipBlanks();
  }

  bool AtEnd() const { return fPosition == fText.size(); }

  std::size_t Position() const { return fPosition; }

  std::string TextFrom(std::size_t begin) const {
    std::string_view text = fText.substr(begin, fPosition - begin);
    return std::string(text.substr(0, text.find_last_not_of(kBlanks) + 1));
  }

  bool Take(char c) {
    if (AtEnd() || fText[fPosition] != c) return false;
    ++fPosition;
    SkipBlanks();
    return true;
  }

  std::string TakeName() {
    std::string name;
    if (!AtEnd() && fText[fPosition] == '"') {
      name = QuotedName();
    } else {
      const std::size_t end = std::min(fText.find_first_of(kNameEnds, fPosition), fText.size());
      name = std::string(fText.substr(fPosition, end - fPosition));
      fPosition = end;
    }
    if (name.empty()) Fail("a column name is expected");
    SkipBlanks();
    return name;
  }

  int TakePower() {
    int power = 0;
    const char* begin = fText.data() + fPosition;
    const auto [end, error] = std::from_chars(begin, fText.data() + fText.size(), power);
    if (error != std::errc() || power < 1 || power > kHighestPower) {
      Fail(fmt::format("a power must be a whole number from 1 to {}", kHighestPower));
    }
    fPosition += static_cast<std::size_t>(end - begin);
    SkipBlanks();
    return power;
  }

  [[noreturn]] void Fail(const std::string& message) const {
    const std::string where =
        AtEnd() ? "at its end" : fmt::format("at {}", Quoted(fText.substr(fPosition)));
    throw InputError(fmt::format("{} {}, {}: {}", fOption, Quoted(fText), where, message));
  }

private:
  void SkipBlanks() {
    fPosition = std::min(fText.find_first_not_of(kBlanks, fPosition), fText.size());
  }

  std::string QuotedName() {
    std::string name;
    for (std::size_t i = fPosition + 1; i < fText.size(); ++i) {
      if (fText[i] != '"') {
        name += fText[i];
      } else if (i + 1 < fText.size() && fText[i + 1] == '"') {
        name += fText[i++];
      } else {
        fPosition = i + 1;
        return name;
      }
    }
    Fail("a quoted name is never closed");
  }

  std::string_view fText;
  std::string_view fOption;
  std::size_t fPosition = 0;
};

std::vector<EffectTerm> TakeProduct(Scanner& scanner) {
  std::vector<EffectTerm> product;
  do {
    EffectTerm term;
    term.name = scanner.TakeName();
    if (scanner.Take('^')) term.power = scanner.TakePower();
    product.push_back(std::move(term));
  } while (scanner.Take('*'));
  return product;
}

EffectExpression TakeEffect(Scanner& scanner) {
  EffectExpression effect;
  const std::size_t begin = scanner.Position();
  do {
    if (effect.levels.size() == kMostLevels) scanner.Fail("too many levels of nesting");
    effect.levels.push_back(TakeProduct(scanner));
  } while (scanner.Take('('));
  for (std::size_t open = effect.levels.size() - 1; open > 0; --open) {
    if (!scanner.Take(')')) scanner.Fail("')' is expected");
  }
  effect.text = scanner.TextFrom(begin);
  return effect;
}

// A list of what `take` reads, to the end of the text.
template <typename Take>
auto TakeList(Scanner& scanner, Take take) {
  std::vector<decltype(take(scanner))> list;
  if (scanner.AtEnd()) return list;
  do {
    list.push_back(take(scanner));
  } while (scanner.Take(','));
  if (!scanner.AtEnd()) scanner.Fail("a comma is expected");
  return list;
}

}  // namespace

std::vector<EffectExpression> ParseEffects(std::string_view text, std::string_view option) {
  Scanner scanner(text, option);
  return TakeList(scanner, TakeEffect);
}

std::vector<std::string> ParseNames(std::string_view text, std::string_view option) {
  Scanner scanner(text, option);
  return TakeList(scanner, [](Scanner& names) { return names.TakeName(); });
}

std::string EffectName(const std::string& name) {
  if (!name.empty() && name.find_first_of(kNameEnds) == std::string::npos) return name;
  std::string quoted = "\"";
  for (const char c : name) quoted += (c == '"') ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

}  // namespace mcfit
