// SPDX-License-Identifier: Apache-2.0
#include "textscanner.h"

#include "effectparser.h"
#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace mcfit {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

std::string TextScanner::TextFrom(std::size_t begin) const {
  const std::string_view text = fText.substr(begin, fPosition - begin);
  return std::string(text.substr(0, text.find_last_not_of(kBlanks) + 1));
}

bool TextScanner::Take(char c) {
  if (AtEnd() || fText[fPosition] != c) return false;
  ++fPosition;
  SkipBlanks();
  return true;
}

void TextScanner::Expect(char c) {
  if (!Take(c)) Fail(fmt::format("'{}' is expected", c));
}

std::string TextScanner::TakeText(std::string_view ends, std::string_view meaning) {
  std::string text;
  if (Next() == '"') {
    text = QuotedText();
  } else {
    const std::size_t begin = fPosition;
    fPosition = std::min(fText.find_first_of(ends, begin), fText.size());
    text = TextFrom(begin);
  }
  if (text.empty()) Fail(fmt::format("{} is expected", meaning));
  SkipBlanks();
  return text;
}

double TextScanner::TakeNumber() {
  const std::size_t end = std::min(fText.find_first_of(",:)", fPosition), fText.size());
  const std::string_view text = fText.substr(fPosition, end - fPosition);
  const std::optional<double> number = ParseNumber(text);
  if (!number) Fail("a number is expected");
  fPosition = end;
  return *number;
}

int TextScanner::TakePower() {
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

void TextScanner::Fail(const std::string& message) const {
  const std::string where =
      AtEnd() ? "at its end" : fmt::format("at {}", Quoted(fText.substr(fPosition)));
  throw InputError(fmt::format("{} {}, {}: {}", fOption, Quoted(fText), where, message));
}

void TextScanner::SkipBlanks() {
  fPosition = std::min(fText.find_first_not_of(kBlanks, fPosition), fText.size());
}

std::string TextScanner::QuotedText() {
  std::string text;
  for (std::size_t i = fPosition + 1; i < fText.size(); ++i) {
    if (fText[i] != '"') {
      text += fText[i];
    } else if (i + 1 < fText.size() && fText[i + 1] == '"') {
      text += fText[i++];
    } else {
      fPosition = i + 1;
      return text;
    }
  }
  Fail("a quoted name is never closed");
}

}  // namespace mcfit
