// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

#include <string>
#include <vector>

namespace MCCommonXML {
namespace detail {
class ObjectReader;
class ObjectWriter;
}  // namespace detail
}  // namespace MCCommonXML

namespace MCCommonMetadata {

/// The numbers that a user declared as missing: single ones, each with a label, and one interval.
class MC_EXPORT MCMissingValues {
public:
  MCMissingValues() = default;
  MCMissingValues(const MCMissingValues&) = default;
  MCMissingValues(MCMissingValues&&) = default;
  MCMissingValues& operator=(MCMissingValues other);
  ~MCMissingValues() = default;

  /// Whether `value` is the missing value or one that was declared. A NaN isn't, as it is equal to
  /// nothing.
  bool IsMissing(double value) const;

  void Add(double value, const std::string& label);

  /// False, with nothing changed, unless high > low and there is no interval yet.
  bool SetInterval(double low, double high);

  /// Whether there is an interval, and its ends, which belong to it; the missing value without.
  bool GetInterval(double& low, double& high) const;

  const std::vector<double>& GetValues() const { return fValues; }
  const std::vector<std::string>& GetLabels() const { return fLabels; }

  void Clear() { *this = MCMissingValues(); }
  void Write(MCCommonXML::detail::ObjectWriter& writer) const;
  void Read(MCCommonXML::detail::ObjectReader& reader);
  void Display() const;

private:
  std::vector<double> fValues;
  std::vector<std::string> fLabels;
  bool fbHasInterval = false;
  double fLow = MCMV::gMissingValue;
  double fHigh = MCMV::gMissingValue;
};

}  // namespace MCCommonMetadata
