// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcmissingvalues.h"

#include "mcxml/xmltext.h"
#include "metadata/detail/objectxml.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>

namespace MCCommonMetadata {

bool MCMissingValues::IsMissing(double value) const {
  if (value == MCMV::gMissingValue) return true;
  if (fbHasInterval && fLow <= value && value <= fHigh) return true;
  return std::find(fValues.begin(), fValues.end(), value) != fValues.end();
}

void MCMissingValues::Add(double value, const std::string& label) {
  fLabels.push_back(label);
  fValues.push_back(value);
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

void MCMissingValues::Write(detail::ObjectWriter& writer) const {
  writer.Write(fbHasInterval);
  if (fbHasInterval) {
    writer.Write(fLow);
    writer.Write(fHigh);
  }
  writer.WriteList(fValues);
  writer.WriteValues(fLabels);
}

void MCMissingValues::Read(detail::ObjectReader& reader) {
  Clear();
  if (reader.Read<bool>()) {
    fLow = reader.Read<double>();
    fHigh = reader.Read<double>();
    fbHasInterval = true;
  }
  std::vector<double> values;
  reader.ReadList(values);
  std::vector<std::string> labels;
  reader.ReadValues(static_cast<int>(values.size()), labels);
  fValues.swap(values);
  fLabels.swap(labels);
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
