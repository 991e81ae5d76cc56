// SPDX-License-Identifier: Apache-2.0
#include "mcxml/parseobj.h"

#include "mcxml/xmlobj.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <locale>
#include <optional>
#include <sstream>
#include <string_view>

namespace MCCommonXML {

namespace {

constexpr std::string_view kStartDelimiters = " \t\r\n<>=\"";
constexpr std::string_view kEndDelimiters = " \t\r\n<>";
constexpr std::string_view kValueDelimiters = " \t\r\n=<\"";
constexpr std::string_view kAttributeDelimiters = "=\"";

/// A line, and the words in it: each ends before one of the delimiters that its reader names, and
/// swallows that one.
class Line {
public:
  /// False at the end of the file, also if that ends the line, and for a line that is too long.
  bool Read(std::ifstream& in) {
    in.getline(fBuffer, sizeof fBuffer);
    fRest = fBuffer;
    return !in.fail() && !in.eof();
  }

  bool IsEmpty() const { return fRest.empty(); }

  /// The next word, empty if there is none.
  std::string_view Next(std::string_view delimiters) {
    const std::size_t begin = fRest.find_first_not_of(delimiters);
    fRest.remove_prefix(begin == std::string_view::npos ? fRest.size() : begin);
    const std::size_t length = std::min(fRest.find_first_of(delimiters), fRest.size());
    const std::string_view word = fRest.substr(0, length);
    fRest.remove_prefix(std::min(length + 1, fRest.size()));
    return word;
  }

  std::string_view Rest() const { return fRest; }

private:
  char fBuffer[256] = "";
  std::string_view fRest;
};

bool ReadWord(std::ifstream& in, std::string_view delimiters, std::string_view word) {
  Line line;
  return line.Read(in) && line.Next(delimiters) == word;
}

// Reads a line up to the value that it holds.
bool ReadValueLine(std::ifstream& in, Line& line, std::string_view element) {
  return line.Read(in) && line.Next(kValueDelimiters) == element &&
         line.Next(kAttributeDelimiters) == XMLObj::VALUE;
}

// The text of a number; nothing where there is none.
std::optional<std::string> ReadNumber(std::ifstream& in, std::string_view element) {
  Line line;
  if (!ReadValueLine(in, line, element)) return std::nullopt;
  const std::string_view number = line.Next(kValueDelimiters);
  if (number.empty()) return std::nullopt;
  return std::string(number);
}

std::optional<long> ReadLong(std::ifstream& in, std::string_view element) {
  const std::optional<std::string> text = ReadNumber(in, element);
  if (!text) return std::nullopt;
  return std::strtol(text->c_str(), nullptr, 10);
}

// What a stream of the classic locale makes of a text: 0 of one that isn't a number, the largest
// double of one that is too large.
double StreamedDouble(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  double value = 0.0;
  stream >> value;
  return value;
}

// The same, without a stream for texts that leave no doubt.
double ToDouble(const std::string& text) {
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  const bool isPlain = result.ec == std::errc() && result.ptr == end && std::isfinite(value);
  return isPlain ? value : StreamedDouble(text);
}

unsigned int LowerBits(double value) {
  constexpr double kBeyond = 9223372036854775808.0;
  if (!(value >= -kBeyond && value < kBeyond)) return 0;
  return static_cast<unsigned int>(static_cast<std::uint64_t>(static_cast<std::int64_t>(value)));
}

}  // namespace

bool ParseStartXML(std::ifstream& in) {
  return ReadWord(in, kStartDelimiters, "?xml") && ReadWord(in, kStartDelimiters, "!DOCTYPE") &&
         ReadWord(in, kStartDelimiters, XMLObj::ROOT);
}

bool ParseStartObj(std::ifstream& in, const std::string& name) {
  Line line;
  if (!line.Read(in)) return false;
  if (line.IsEmpty() && !line.Read(in)) return false;
  return !name.empty() && line.Next(kValueDelimiters) == XMLObj::OBJECT &&
         line.Next(kValueDelimiters) == XMLObj::NAME && line.Next("\"") == name;
}

bool ParseEndObj(std::ifstream& in) {
  return ReadWord(in, kEndDelimiters, "/Obj");
}

bool ParseValue(std::ifstream& in, bool& value) {
  const std::optional<long> number = ReadLong(in, XMLObj::INT);
  if (!number || *number < 0 || *number > 1) return false;
  value = *number == 1;
  return true;
}

bool ParseValue(std::ifstream& in, int& value) {
  const std::optional<long> number = ReadLong(in, XMLObj::INT);
  if (number) value = static_cast<int>(*number);
  return number.has_value();
}

bool ParseValue(std::ifstream& in, long& value) {
  const std::optional<long> number = ReadLong(in, XMLObj::LONG);
  value = number.value_or(value);
  return number.has_value();
}

bool ParseValue(std::ifstream& in, unsigned int& value) {
  const std::optional<std::string> text = ReadNumber(in, XMLObj::INT);
  if (text) value = LowerBits(ToDouble(*text));
  return text.has_value();
}

bool ParseValue(std::ifstream& in, double& value) {
  const std::optional<std::string> text = ReadNumber(in, XMLObj::DOUBLE);
  if (text) value = *text == XMLObj::MISSING ? MV::gMissingValue : ToDouble(*text);
  return text.has_value();
}

bool ParseValue(std::ifstream& in, std::string& value) {
  Line line;
  if (!ReadValueLine(in, line, XMLObj::STRING)) return false;
  std::string_view text = line.Rest();
  if (!text.empty() && text.front() == '"') text.remove_prefix(1);
  value = text.substr(0, text.find_first_of("\"\r\n"));
  return true;
}

}  // namespace MCCommonXML
