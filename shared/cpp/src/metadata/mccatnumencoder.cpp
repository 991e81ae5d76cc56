// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccatnumencoder.h"

#include "mcxml/detail/objectxml.h"
#include "mcxml/xmltext.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCCatNumEncoder";

}  // namespace

MCCatNumEncoder::MCCatNumEncoder(int capacity) {
  fValues.reserve(static_cast<std::size_t>(std::clamp(capacity, 0, kMostReserved)));
}

MCCatNumEncoder::MCCatNumEncoder(const std::vector<double>& values) {
  for (const double value : values) MCCatNumEncoder::Encode(value);
}

// By swaps, so that codes and categories stay as many when memory runs out.
MCCatNumEncoder& MCCatNumEncoder::operator=(MCCatNumEncoder other) {
  std::swap(fLastCode, other.fLastCode);
  fLabels.swap(other.fLabels);
  fCodes.swap(other.fCodes);
  fValues.swap(other.fValues);
  fMissing = std::move(other.fMissing);
  return *this;
}

double MCCatNumEncoder::Encode(double value) {
  // A NaN would be in no order with the keys of the map.
  if (std::isnan(value) || fMissing.IsMissing(value)) return -1.0;
  const auto [entry, isNew] = fCodes.try_emplace(value, fLastCode + 1);
  if (isNew) {
    try {
      fValues.push_back(value);
    } catch (...) {
      fCodes.erase(entry);
      throw;
    }
    ++fLastCode;
  }
  return entry->second;
}

double MCCatNumEncoder::EncodeConst(double value) const {
  if (std::isnan(value) || fMissing.IsMissing(value)) return -1.0;
  const auto entry = fCodes.find(value);
  return entry == fCodes.end() ? -1.0 : entry->second;
}

std::string MCCatNumEncoder::Decode(int code) const {
  if (!IsCode(code)) return "";
  return MCCommonXML::ReplaceSep(fValues[static_cast<std::size_t>(code)], nullptr);
}

double MCCatNumEncoder::DecodeNum(int code) const {
  return IsCode(code) ? fValues[static_cast<std::size_t>(code)] : MCMV::gMissingValue;
}

bool MCCatNumEncoder::AddDiscreteUserMissing(double value, const std::string& label) {
  fMissing.Add(value, label);
  return true;
}

bool MCCatNumEncoder::SetMissingInterval(double low, double high) {
  return fMissing.SetInterval(low, high);
}

const std::vector<double>* MCCatNumEncoder::GetDiscreteMissValues() const {
  return &fMissing.GetValues();
}

const std::vector<std::string>* MCCatNumEncoder::GetMissValueLabels() const {
  return &fMissing.GetLabels();
}

bool MCCatNumEncoder::GetMissingInterval(double& low, double& high) const {
  return fMissing.GetInterval(low, high);
}

int MCCatNumEncoder::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.WriteList(fValues);
  writer.WriteList(fLabels);
  fMissing.Write(writer);
  return writer.Finish();
}

int MCCatNumEncoder::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(in, kName,
                                         [this](MCCommonXML::detail::ObjectReader& reader) {
                                           *this = MCCatNumEncoder(0);
                                           const int nValues = reader.ReadCount();
                                           for (int i = 0; i < nValues; ++i)
                                             Encode(reader.Read<double>());
                                           reader.ReadList(fLabels);
                                           fMissing.Read(reader);
                                         });
}

void MCCatNumEncoder::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "\tBNCatNumEncoder: ");
  DisplayText(1, "Last code = " + std::to_string(fLastCode));
  DisplayText(1, "\t\tNumeric values of categories: ");
  DisplayDV("Numeric values of categories", fValues, true);
  fMissing.Display();
}

}  // namespace MCCommonMetadata
