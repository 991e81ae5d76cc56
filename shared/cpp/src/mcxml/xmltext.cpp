// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmltext.h"

#include "mcxml/mbtoutf8.h"

#include <charconv>
#include <clocale>
#include <cstdio>

namespace MCCommonXML {

namespace {

constexpr char kDefaultFormat[] = "%.15g";
constexpr int kDigits = 15;

// The format is the caller's, and so is its being one for a double.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string Printed(const char* format, double value) {
  const int length = std::snprintf(nullptr, 0, format, value);
  if (length <= 0) return "";
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), format, value);
  text.pop_back();
  return text;
}
#pragma GCC diagnostic pop

}  // namespace

std::string GetDefaultNumericFormat() {
  return kDefaultFormat;
}

std::string GetListSeparator() {
  return ";";
}

std::string GetDecimalCharacter() {
  return std::localeconv()->decimal_point;
}

std::string Format(double value, bool useFormat, const char* format) {
  if (!useFormat) return ReplaceSep(value, format);
  return Printed(format == nullptr ? kDefaultFormat : format, value);
}

std::string Format(long value) {
  return Format(static_cast<double>(value), true, nullptr);
}

std::string ReplaceSep(double value, const char*) {
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits).ptr;
  return std::string(text, end);
}

int Write(std::ostream& out, const std::string& text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  return 0;
}

int WriteUTF(std::ostream& out, const std::string& text) {
  return Write(out, MbToUTF8(text));
}

int WriteText(std::ostream& out, const std::string& text, bool utf8) {
  return utf8 ? WriteUTF(out, text) : Write(out, text);
}

}  // namespace MCCommonXML
