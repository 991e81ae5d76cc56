// SPDX-License-Identifier: Apache-2.0
#include "text.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

namespace mcfit {

namespace {

constexpr std::size_t kLongestQuote = 60;

bool IsControl(unsigned char c) {
  return c < 0x20 || c == 0x7f;
}

bool IsContinuationByte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Cuts at the border of a code point.
std::string_view Shortened(std::string_view text) {
  std::size_t end = kLongestQuote;
  while (end > 0 && IsContinuationByte(text[end])) --end;
  return text.substr(0, end);
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (IsControl(byte)) {
      out += fmt::format("\\x{:02X}", byte);
    } else {
      out += c;
    }
  }
  return out;
}

std::string Quoted(std::string_view text) {
  if (text.size() <= kLongestQuote) return "'" + Printable(text) + "'";
  return "'" + Printable(Shortened(text)) + "...'";
}

std::string QuotedList(const std::vector<std::string>& names) {
  std::string out;
  for (const std::string& name : names) out += (out.empty() ? "" : ", ") + Quoted(name);
  return out;
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  for (const char c : text)
    if (!IsContinuationByte(c)) ++width;
  return width;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::optional<double> ParseNumber(std::string_view text) {
  text = Trimmed(text);
  // from_chars doesn't know a plus sign; behind one no second sign may follow.
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return {};
  return value;
}

}  // namespace mcfit
