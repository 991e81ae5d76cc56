// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcstringencoder.h"

#include "mcxml/detail/objectxml.h"
#include "metadata/detail/appendboth.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCStringEncoder";

}  // namespace

MCStringEncoder::MCStringEncoder(int capacity) {
  fLinks.reserve(static_cast<std::size_t>(std::clamp(capacity, 0, kMostReserved)));
}

MCStringEncoder::MCStringEncoder(const std::vector<std::string>& values) {
  for (const std::string& value : values) MCStringEncoder::Encode(value);
}

MCStringEncoder::MCStringEncoder(const MCStringEncoder& other)
    : MCCategoryEncoder(other),
      fCodes(other.fCodes),
      fDiscreteMiss(other.fDiscreteMiss),
      fMissLabels(other.fMissLabels) {
  CreateLinks();
}

MCStringEncoder& MCStringEncoder::operator=(MCStringEncoder other) {
  std::swap(fLastCode, other.fLastCode);
  fLabels.swap(other.fLabels);
  fCodes.swap(other.fCodes);  // entries stay where they are, so the links hold
  fLinks.swap(other.fLinks);
  fDiscreteMiss.swap(other.fDiscreteMiss);
  fMissLabels.swap(other.fMissLabels);
  return *this;
}

void MCStringEncoder::CreateLinks() {
  const int nCodes = fLastCode + 1;
  fLinks.assign(static_cast<std::size_t>(nCodes), nullptr);
  for (const auto& [value, code] : fCodes) fLinks[static_cast<std::size_t>(code)] = &value;
}

double MCStringEncoder::Encode(const std::string& value) {
  // Not by virtual dispatch: a constructor encodes, too.
  if (MCStringEncoder::IsMissing(value)) return -1.0;
  const auto [entry, isNew] = fCodes.try_emplace(value, fLastCode + 1);
  if (isNew) {
    try {
      fLinks.push_back(&entry->first);
    } catch (...) {
      fCodes.erase(entry);
      throw;
    }
    ++fLastCode;
  }
  return entry->second;
}

double MCStringEncoder::EncodeConst(const std::string& value) const {
  if (IsMissing(value)) return -1.0;
  const auto entry = fCodes.find(value);
  return entry == fCodes.end() ? -1.0 : entry->second;
}

bool MCStringEncoder::IsMissing(const std::string& value) const {
  return std::find(fDiscreteMiss.begin(), fDiscreteMiss.end(), value) != fDiscreteMiss.end();
}

std::string MCStringEncoder::Decode(int code) const {
  const std::string* link = IsCode(code) ? fLinks[static_cast<std::size_t>(code)] : nullptr;
  return link == nullptr ? "" : *link;
}

bool MCStringEncoder::AddDiscreteUserMissing(const std::string& value, const std::string& label) {
  detail::AppendBoth(fDiscreteMiss, value, fMissLabels, label);
  return true;
}

const std::vector<std::string>* MCStringEncoder::GetDiscreteMissValuesStr() const {
  return &fDiscreteMiss;
}

bool MCStringEncoder::GetMissingInterval(double& low, double& high) const {
  low = MCMV::gMissingValue;
  high = MCMV::gMissingValue;
  return false;
}

int MCStringEncoder::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(fLastCode + 1);
  for (int code = 0; code <= fLastCode; ++code) writer.Write(Decode(code));
  writer.WriteList(fLabels);
  writer.WriteList(fDiscreteMiss);
  writer.WriteValues(fMissLabels);
  return writer.Finish();
}

int MCStringEncoder::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(
      in, kName, [this](MCCommonXML::detail::ObjectReader& reader) {
        *this = MCStringEncoder(0);
        const int nValues = reader.ReadCount();
        for (int i = 0; i < nValues; ++i) {
          const std::string value = reader.Read<std::string>();
          fLinks.push_back(nullptr);
          fLastCode = i;
          const auto [entry, isNew] = fCodes.try_emplace(value, i);
          if (isNew) fLinks.back() = &entry->first;
        }
        reader.ReadList(fLabels);
        std::vector<std::string> missing;
        reader.ReadList(missing);
        std::vector<std::string> labels;
        reader.ReadValues(static_cast<int>(missing.size()), labels);
        fDiscreteMiss.swap(missing);
        fMissLabels.swap(labels);
      });
}

void MCStringEncoder::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "\tBNStringEncoder object:");
  DisplayI("Last code", fLastCode);
  for (const std::string* link : fLinks)
    DisplayText(1, link == nullptr ? "\t\tERROR" : "\t\t" + *link);
  DisplayText(1, "\t\tMissing Values and their Labels: ");
  for (std::size_t i = 0; i < fDiscreteMiss.size(); ++i) {
    DisplayText(1, "\t\t" + fDiscreteMiss[i] + "\t" + fMissLabels[i]);
  }
}

}  // namespace MCCommonMetadata
