// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcmissingvalues.h"

#include "mcxml/detail/objectxml.h"
#include "mcxml/xmltext.h"
#include "metadata/detail/appendboth.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <utility>

namespace MCCommonMetadata {

// By swaps, so that values and labels stay as many when memory runs out.
MCMissingValues& MCMissingValues::operator=(MCMissingValues other) {
  fValues.swap(other.fValues);
  fLabels.swap(other.fLabels);
  std::swap(fbHasInterval, other.fbHasInterval);
  std::swap(fLow, other.fLow);
  std::swap(fHigh, other.fHigh);
  return *this;
}

bool MCMissingValues::IsMissing(double value) const {
  if (value == MCMV::gMissingValue) return true;
  if (fbHasInterval && fLow <= value && value <= fHigh) return true;
  return std::find(fValues.begin(), fValues.end(), value) != fValues.end();
}

void MCMissingValues::Add(double value, const std::string& label) {
  detail::AppendBoth(fValues, value, fLabels, label);
}

bool MCMissingValues::SetInterval(double low, double high) {
  if (fbHasInterval || !(high > low)) return false;
  fbHasInterval = true;
  fLow = low;
  fHigh = high;
  return true;
}

bool MCMissingValues::GetInterval(double& low, double& high) const {
  low = fLow;
  high = fHigh;
  return fbHasInterval;
}

void MCMissingValues::Write(MCCommonXML::detail::ObjectWriter& writer) const {
  writer.Write(fbHasInterval);
  if (fbHasInterval) {
    writer.Write(fLow);
    writer.Write(fHigh);
  }
  writer.WriteList(fValues);
  writer.WriteValues(fLabels);
}

void MCMissingValues::Read(MCCommonXML::detail::ObjectReader& reader) {
  Clear();
  MCMissingValues read;
  read.fbHasInterval = reader.Read<bool>();
  if (read.fbHasInterval) {
    read.fLow = reader.Read<double>();
    read.fHigh = reader.Read<double>();
  }
  reader.ReadList(read.fValues);
  reader.ReadValues(static_cast<int>(read.fValues.size()), read.fLabels);
  *this = std::move(read);
}

void MCMissingValues::Display() const {
  using namespace MCComponentDisplay;
  DisplayDV("Discrete user missing values", fValues, true);
  if (fbHasInterval) {
    DisplayText(1, "\t\tUser-missing interval for this encoder: ");
    DisplayText(1, "\t\t[ " + MCCommonXML::ReplaceSep(fLow, nullptr) + ", " +
                       MCCommonXML::ReplaceSep(fHigh, nullptr) + " ]");
  }
  DisplayText(1, "\t\tMissing Value Labels:");
  for (const std::string& label : fLabels) DisplayText(1, "\t\t" + label);
}

}  // namespace MCCommonMetadata
