// SPDX-License-Identifier: Apache-2.0
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace mcfit {

namespace {

constexpr std::size_t kLongestQuote = 60;

bool IsContinuationByte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Bytes of the UTF-8 sequence with which the text begins; 0 if it begins with none, or with one
// longer than need be.
std::size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuationByte(text[i])) return 0;
  }
  const auto second = static_cast<unsigned char>(length > 2 ? text[1] : 0);
  const bool isTooLong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  return isTooLong ? 0 : length;
}

// Control characters, those from U+0080 to U+009F among them, be they UTF-8 or a single byte.
bool DrivesTerminal(std::string_view sequence) {
  const auto last = static_cast<unsigned char>(sequence.back());
  if (sequence.size() == 1) return last < 0x20 || (last >= 0x7F && last < 0xA0);
  return sequence[0] == '\xC2' && last < 0xA0;
}

// Surrogates, what is beyond Unicode, and the two noncharacters that XML rules out.
bool IsNoXmlCharacter(std::string_view sequence) {
  const auto second = static_cast<unsigned char>(sequence[1]);
  return (sequence[0] == '\xED' && second >= 0xA0) || (sequence[0] == '\xF4' && second >= 0x90) ||
         sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF";
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
  while (!text.empty()) {
    const std::string_view sequence =
        text.substr(0, std::max(SequenceLength(text), std::size_t{1}));
    if (DrivesTerminal(sequence)) {
      for (const char c : sequence) out += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
    } else {
      out += sequence;
    }
    text.remove_prefix(sequence.size());
  }
  return out;
}

std::string Quoted(std::string_view text) {
  if (text.size() <= kLongestQuote) return "'" + Printable(text) + "'";
  return "'" + Printable(Shortened(text)) + "...'";
}

bool IsXmlText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    if (length == 0) return false;
    if (length == 1 && text[0] < ' ' && text.find_first_of("\t\n\r") != 0) return false;
    if (length > 1 && IsNoXmlCharacter(text.substr(0, length))) return false;
    text.remove_prefix(length);
  }
  return true;
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
