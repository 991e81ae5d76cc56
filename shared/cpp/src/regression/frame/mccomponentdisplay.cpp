// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mccomponentdisplay.h"

#include "regression/frame/mcmv.h"

#include <charconv>
#include <cstdio>
#include <ctime>
#include <iostream>

namespace MCComponentDisplay {

namespace {

// Unchanged before main() runs, whatever the order of static initialisers.
std::ostream* gOutStream = nullptr;

// Enough for the longest line head: its fixed words and two counts of 20 digits.
template <class... Args>
std::string Format(const char* format, Args... args) {
  char buffer[128];
  std::snprintf(buffer, sizeof buffer, format, args...);
  return buffer;
}

constexpr int kShort = 6;
constexpr int kFull = 17;

// With a decimal point in every locale, unlike the C library.
std::string Number(double value, int digits) {
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits).ptr;
  return std::string(text, end);
}

std::string Show(int value) {
  return Format("%d", value);
}
std::string Show(unsigned value) {
  return Format("%u", value);
}
std::string Show(bool value) {
  return value ? "true" : "false";
}
std::string Show(double value) {
  return value == MCMV::gMissingValue ? "miss" : Number(value, kShort);
}
std::string Show(const std::string& value) {
  return value;
}

template <class A, class B>
std::string Show(const std::pair<A, B>& value) {
  return "(" + Show(value.first) + ", " + Show(value.second) + ")";
}

// The values of a range on one line, each behind a blank.
template <class Range>
std::string ShowAll(const Range& values) {
  std::string text;
  for (const auto& value : values) text += " " + Show(value);
  return text;
}

std::string Show(const std::vector<int>& values) {
  return ShowAll(values);
}
std::string Show(const std::vector<double>& values) {
  return ShowAll(values);
}
std::string Show(const std::list<std::string>& values) {
  return ShowAll(values);
}

std::string SizeOf(std::size_t n) {
  return Format(" (size = %zu)", n);
}

template <class T>
void DisplayVector(std::string&& label, const std::vector<T>& values) {
  DisplayText(1, std::move(label) + SizeOf(values.size()));
  DisplayText(1, ShowAll(values));
}

template <class T>
void DisplayMatrix(std::string&& label, const std::vector<std::vector<T>>& rows) {
  bool even = true;
  std::size_t elements = 0;
  for (const auto& row : rows) {
    even = even && row.size() == rows.front().size();
    elements += row.size();
  }
  const std::size_t columns = rows.empty() ? 0 : rows.front().size();
  DisplayText(2,
              std::move(label) + (even ? Format(" ( number of rows = %zu, number of columns = %zu)",
                                                rows.size(), columns)
                                       : Format(" (number of elements = %zu)", elements)));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    DisplayText(1, Format("row %zu", i) + ShowAll(rows[i]));
  }
}

template <class Map>
void DisplayEntries(const Map& values) {
  for (const auto& [key, value] : values) {
    DisplayText(1, "Map key " + Show(key) + ", Map value " + Show(value));
  }
}

template <class Map>
void DisplayMap(std::string&& label, const Map& values) {
  DisplayText(1, std::move(label) + Format(" (map size = %zu)", values.size()));
  DisplayEntries(values);
}

}  // namespace

void SetOutStream(std::ostream& stream) {
  gOutStream = &stream;
}

std::ostream& GetOutStream() {
  return gOutStream != nullptr ? *gOutStream : std::cout;
}

void DisplayText(const long& newlines, const char* text) {
  if (text != nullptr) DisplayText(newlines, std::string(text));
}

void DisplayText(const long& newlines, const std::string& text) {
  std::ostream& out = GetOutStream();
  for (long i = 0; i < newlines; ++i) out << '\n';
  out << text << std::flush;
}

void DisplayI(std::string label, int value) {
  DisplayText(1, std::move(label) + " = " + Show(value));
}

void DisplayD(std::string label, double value) {
  DisplayText(1, std::move(label) + " = " + Show(value));
}

void DisplayDF(std::string label, double value) {
  DisplayText(
      1, std::move(label) + " = " + (value == MCMV::gMissingValue ? "miss" : Number(value, kFull)));
}

void DisplayB(std::string label, bool value) {
  DisplayText(1, std::move(label) + " = " + Show(value));
}

void DisplayS(std::string label, const std::string& value) {
  DisplayText(1, std::move(label) + " = " + value);
}

void DisplayDV(std::string label, const std::vector<double>& values, bool full) {
  if (!full) {
    DisplayVector(std::move(label), values);
    return;
  }
  DisplayText(1, std::move(label) + SizeOf(values.size()));
  for (const double value : values) {
    DisplayText(1, value == MCMV::gMissingValue ? "miss" : " = " + Number(value, kFull));
  }
}

void DisplayBV(std::string label, const std::vector<bool>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayIV(std::string label, const std::vector<int>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayUV(std::string label, const std::vector<unsigned>& values) {
  DisplayVector(std::move(label), values);
}

void DisplaySV(std::string label, const std::vector<std::string>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayVPD(std::string label, const std::vector<std::pair<double, double>>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayVPDI(std::string label, const std::vector<std::pair<double, int>>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayVPII(std::string label, const std::vector<std::pair<int, int>>& values) {
  DisplayVector(std::move(label), values);
}

void DisplayIIM(std::string label, const std::map<int, int>& values) {
  DisplayMap(std::move(label), values);
}

void DisplayIntVecIntMap(std::string label, const std::map<std::vector<int>, int>& values) {
  DisplayMap(std::move(label), values);
}

void DisplayIntVecDVecMap(std::string label,
                          const std::map<std::vector<int>, std::vector<double>>& values) {
  DisplayMap(std::move(label), values);
}

void DisplaySLDM(std::string label, const std::map<std::list<std::string>, double>& values) {
  DisplayMap(std::move(label), values);
}

void DisplayVIM(std::string label, const std::vector<std::map<int, int>>& values) {
  DisplayText(1, std::move(label) + SizeOf(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    DisplayText(1, Format("vec[%zu]", i) + Format(" (map size = %zu)", values[i].size()));
    DisplayEntries(values[i]);
  }
}

void DisplaySVV(std::string label, const std::vector<std::vector<std::string>>& values) {
  DisplayMatrix(std::move(label), values);
}

void DisplayBVV(std::string label, const std::vector<std::vector<bool>>& values) {
  DisplayMatrix(std::move(label), values);
}

void DisplayDVV(std::string label, const std::vector<std::vector<double>>& values) {
  DisplayMatrix(std::move(label), values);
}

void DisplayDA(std::string label, const double* values, int n) {
  const std::ptrdiff_t size = values == nullptr || n < 0 ? 0 : n;
  DisplayVector(std::move(label), std::vector<double>(values, values + size));
}

void DisplayDVTR(std::string label, const std::vector<double>& values, int n) {
  DisplayText(2, std::move(label) + Format(" (number of elements = %zu)", values.size()));
  std::size_t k = 0;
  for (int i = 0; i < n; ++i) {
    std::string line;
    for (int j = 0; j <= i && k < values.size(); ++j, ++k) {
      line += Format("(%d,%d) ", i, j) + Show(values[k]) + " ";
    }
    if (line.empty()) return;
    DisplayText(1, line);
  }
}

void DisplayTimeStamp(std::string label) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  DisplayText(1, std::move(label) + ": " +
                     Format("%d-%02d-%02d-%02d-%02d-%02d", local.tm_year + 1900, local.tm_mon + 1,
                            local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec));
}

}  // namespace MCComponentDisplay
