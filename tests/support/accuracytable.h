// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Accuracy of functions measured against tables of reference values, shown on every run and held
/// against stored bounds. A reference table is a CSV file below tests/data that a committed script
/// has written; lines that begin with # are comments.
namespace mctest {

/// One line "region,argument,...,value" of a reference table: arguments as hexadecimal doubles,
/// so exact, and the value, or several, to 22 decimal digits or more.
struct ReferenceRow {
  std::string fRegion;
  std::vector<double> fArguments;
  std::vector<long double> fValues;
};

/// All lines of the file, whose last `values` cells are values. Throws std::runtime_error if it
/// can't be read.
std::vector<ReferenceRow> ReadReference(const std::string& path, std::size_t values = 1);

/// Distance in units of the last place of the expected value as a double. The 64 bits of a long
/// double resolve 1/2048 of such a unit. Infinity where only one of both is finite.
double UlpError(double actual, long double expected);

/// Collects errors by function and region.
class AccuracyTable {
public:
  void Add(const std::string& function, const std::string& region, double actual,
           long double expected);

  /// The table as text: number of values, mean and largest error for each region, beside the
  /// bounds of the file `path`: lines "function,region,ulp".
  std::string Text(const std::string& path) const;

  /// What is wrong, a line each: a largest error above its bound, a region without a bound, and
  /// a bound of one of the measured functions whose region has no values.
  std::string Complaints(const std::string& path) const;

private:
  using Place = std::pair<std::string, std::string>;  // function and region
  struct Errors {
    int fCount = 0;
    double fLargest = 0.0;
    double fSum = 0.0;
  };

  bool HasFunction(const std::string& function) const;
  static std::map<Place, double> ReadBounds(const std::string& path);

  std::map<Place, Errors> fErrors;
};

}  // namespace mctest
