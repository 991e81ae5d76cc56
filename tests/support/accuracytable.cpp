// SPDX-License-Identifier: Apache-2.0
#include "support/accuracytable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <locale.h>
#include <sstream>
#include <stdexcept>

namespace mctest {

namespace {

std::vector<std::vector<std::string>> ReadCells(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("can't read " + path);
  std::vector<std::vector<std::string>> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream text(line);
    std::vector<std::string>& cells = lines.emplace_back();
    std::string cell;
    while (std::getline(text, cell, ',')) cells.push_back(cell);
  }
  return lines;
}

// While it lives, this thread reads and prints numbers with a point whatever the locale of the
// program. Values beyond doubles read as infinite or zero, which std::from_chars refuses.
class PointAsDecimal {
public:
  PointAsDecimal() : fLocale(newlocale(LC_ALL_MASK, "C", nullptr)), fBefore(uselocale(fLocale)) {}
  ~PointAsDecimal() {
    uselocale(fBefore);
    freelocale(fLocale);
  }
  PointAsDecimal(const PointAsDecimal&) = delete;
  PointAsDecimal& operator=(const PointAsDecimal&) = delete;

private:
  locale_t fLocale;
  locale_t fBefore;
};

template <class... Args>
std::string Format(const char* format, Args... args) {
  char text[192];
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

}  // namespace

std::vector<ReferenceRow> ReadReference(const std::string& path, std::size_t values) {
  const PointAsDecimal point;
  std::vector<ReferenceRow> rows;
  for (const auto& cells : ReadCells(path)) {
    ReferenceRow& row = rows.emplace_back();
    row.fRegion = cells.front();
    for (std::size_t i = 1; i + values < cells.size(); ++i) {
      row.fArguments.push_back(std::strtod(cells[i].c_str(), nullptr));
    }
    for (std::size_t i = cells.size() - values; i < cells.size(); ++i) {
      row.fValues.push_back(std::strtold(cells[i].c_str(), nullptr));
    }
  }
  return rows;
}

double UlpError(double actual, long double expected) {
  const double rounded = static_cast<double>(expected);
  if (!std::isfinite(actual) || !std::isfinite(rounded)) {
    return actual == rounded ? 0.0 : std::numeric_limits<double>::infinity();
  }
  // The smallest normal double has the spacing of all below it.
  const double magnitude = std::max(std::fabs(rounded), std::numeric_limits<double>::min());
  const long double ulp = std::ldexp(1.0L, std::ilogb(magnitude) - 52);
  return static_cast<double>(std::fabs(actual - expected) / ulp);
}

void AccuracyTable::Add(const std::string& function, const std::string& region, double actual,
                        long double expected) {
  const double error = UlpError(actual, expected);
  Errors& errors = fErrors[{function, region}];
  ++errors.fCount;
  errors.fLargest = std::max(errors.fLargest, error);
  errors.fSum += error;
}

std::map<AccuracyTable::Place, double> AccuracyTable::ReadBounds(const std::string& path) {
  const PointAsDecimal point;
  std::map<Place, double> bounds;
  for (const auto& cells : ReadCells(path)) {
    bounds[{cells.at(0), cells.at(1)}] = std::strtod(cells.at(2).c_str(), nullptr);
  }
  return bounds;
}

bool AccuracyTable::HasFunction(const std::string& function) const {
  return std::any_of(fErrors.begin(), fErrors.end(),
                     [&function](const auto& entry) { return entry.first.first == function; });
}

std::string AccuracyTable::Text(const std::string& path) const {
  const PointAsDecimal point;
  const std::map<Place, double> bounds = ReadBounds(path);
  std::string text = Format("%-12s %-24s %6s %8s %8s %8s\n", "function", "region", "values",
                            "mean ulp", "largest", "bound");
  for (const auto& [place, errors] : fErrors) {
    const auto bound = bounds.find(place);
    text += Format("%-12s %-24s %6d %8.2f %8.2f %8.2f\n", place.first.c_str(), place.second.c_str(),
                   errors.fCount, errors.fSum / errors.fCount, errors.fLargest,
                   bound == bounds.end() ? 0.0 : bound->second);
  }
  return text;
}

std::string AccuracyTable::Complaints(const std::string& path) const {
  const PointAsDecimal point;
  std::string text;
  const std::map<Place, double> bounds = ReadBounds(path);
  for (const auto& [place, errors] : fErrors) {
    const auto bound = bounds.find(place);
    const std::string name = place.first + ", " + place.second;
    if (bound == bounds.end()) {
      text += name + ": no bound\n";
    } else if (!(errors.fLargest <= bound->second)) {
      text += name + Format(": error %.3f above %.3f\n", errors.fLargest, bound->second);
    }
  }
  for (const auto& [place, bound] : bounds) {
    if (HasFunction(place.first) && fErrors.count(place) == 0) {
      text += place.first + ", " + place.second + ": no values\n";
    }
  }
  return text;
}

}  // namespace mctest
