// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcroundencoder.h"

#include "mcxml/detail/objectxml.h"
#include "metadata/enumdisplay.h"

#include <cmath>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCRoundEncoder";

}  // namespace

bool MCRoundEncoder::IsMissing(double value) const {
  return value <= 0.0 || fMissing.IsMissing(value);
}

double MCRoundEncoder::Rounded(double value) const {
  if (fOption == MC_ROUND_TRUNCATE) return std::floor(value);
  if (fOption == MC_ROUND_NEAREST) return std::floor(value + 0.5);
  return value;
}

double MCRoundEncoder::EncodeConst(double value) const {
  if (IsMissing(value)) return MCMV::gMissingValue;
  const double rounded = Rounded(value);
  return rounded <= 0.0 ? MCMV::gMissingValue : rounded;
}

int MCRoundEncoder::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(static_cast<int>(fOption));
  fMissing.Write(writer);
  return writer.Finish();
}

int MCRoundEncoder::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(in, kName,
                                         [this](MCCommonXML::detail::ObjectReader& reader) {
                                           *this = MCRoundEncoder();
                                           fOption = reader.ReadEnumeration<WRoundingOption>();
                                           fMissing.Read(reader);
                                         });
}

void MCRoundEncoder::Display() const {
  MCCommonMetadata::Display("MCRoundEncoder: option", fOption);
}

}  // namespace MCCommonMetadata
