// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcweightvar.h"

#include "mcxml/detail/objectxml.h"
#include "metadata/enumdisplay.h"
#include "regression/frame/mccomponentdisplay.h"

#include <utility>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCWeightVar";

}  // namespace

MCWeightVar::MCWeightVar(const std::string& name, const std::string& label, WRoundingOption option)
    : MCVariable(name, label, MC_ROLE_WEIGHT), fEncoder(option) {}

MCWeightVar& MCWeightVar::operator=(MCWeightVar other) {
  SwapCommon(other);
  fEncoder = std::move(other.fEncoder);
  return *this;
}

int MCWeightVar::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(Name());
  writer.Write(fLabel);
  writer.Write(static_cast<int>(fStorage));
  writer.WriteObject(fEncoder);
  return writer.Finish();
}

int MCWeightVar::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(in, kName,
                                         [this](MCCommonXML::detail::ObjectReader& reader) {
                                           fEncoder = MCRoundEncoder();
                                           fName = reader.Read<std::string>();
                                           fLabel = reader.Read<std::string>();
                                           fStorage = reader.ReadEnumeration<VariableStorage>();
                                           reader.ReadObject(fEncoder);
                                         });
}

void MCWeightVar::Display() const {
  using namespace MCComponentDisplay;
  DisplayS("Frequency weight variable: name", Name());
  DisplayS("Label", fLabel);
  MCCommonMetadata::Display("Variable storage", fStorage);
}

}  // namespace MCCommonMetadata
