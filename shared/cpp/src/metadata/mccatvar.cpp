// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccatvar.h"

#include "mcxml/detail/objectxml.h"
#include "metadata/enumdisplay.h"
#include "metadata/mccatnumencoder.h"
#include "metadata/mcstringencoder.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCCatVar";

std::unique_ptr<IMCEncoder> MakeEncoder(bool isNumeric, int capacity) {
  if (isNumeric) return std::make_unique<MCCatNumEncoder>(capacity);
  return std::make_unique<MCStringEncoder>(capacity);
}

std::unique_ptr<IMCEncoder> ReadEncoder(MCCommonXML::detail::ObjectReader& reader) {
  const auto type = reader.ReadEnumeration<EncoderType>();
  if (type != MC_ENC_CAT_NUM && type != MC_ENC_STRING) reader.Fail();
  std::unique_ptr<IMCEncoder> encoder = MakeEncoder(type == MC_ENC_CAT_NUM, 2);
  reader.ReadObject(*encoder);
  return encoder;
}

}  // namespace

MCCatVar::MCCatVar(const std::string& name, const std::string& label, int nCategories,
                   MeasureLevel level, VariableRole role, bool ordinal)
    : MCVariable(name, label, role),
      fbOrdinal(ordinal),
      fNCategories(nCategories),
      fLevel(level),
      fEncoder(MakeEncoder(level == MC_LEVEL_CAT_NUM, nCategories)) {}

MCCatVar::MCCatVar(const MCCatVar& other)
    : MCVariable(other),
      fbOrdinal(other.fbOrdinal),
      fNCategories(other.fNCategories),
      fLevel(other.fLevel),
      fEncoder(other.fEncoder == nullptr ? nullptr : other.fEncoder->Clone()) {}

MCCatVar& MCCatVar::operator=(MCCatVar other) {
  SwapCommon(other);
  fbOrdinal = other.fbOrdinal;
  fNCategories = other.fNCategories;
  fLevel = other.fLevel;
  fEncoder.swap(other.fEncoder);
  return *this;
}

int MCCatVar::UpdateNumberOfCategories() {
  if (fEncoder != nullptr) fNCategories = std::max(fNCategories, fEncoder->GetNumberOfCategories());
  return fNCategories;
}

VarStatus MCCatVar::GetVarStatus() {
  UpdateNumberOfCategories();
  if (fNCategories == 1) return MC_VAR_CONSTANT;
  return fNCategories < 1 ? MC_VAR_INVALID : MC_VAR_OK;
}

int MCCatVar::ChangeEncoder(IMCEncoder* encoder) {
  if (encoder != fEncoder.get()) fEncoder.reset(encoder);
  fNCategories = encoder == nullptr ? 0 : encoder->GetNumberOfCategories();
  return fNCategories;
}

int MCCatVar::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(Name());
  writer.Write(fLabel);
  writer.Write(static_cast<int>(fRole));
  writer.Write(static_cast<int>(fStorage));
  writer.Write(fNCategories);
  writer.Write(static_cast<int>(fLevel));
  writer.Write(fbOrdinal);
  writer.Write(fbHasReplacement);
  if (fbHasReplacement) writer.Write(fReplacement);
  writer.Write(static_cast<int>(fEncoder == nullptr ? MC_ENC_UNKNOWN : fEncoder->GetEncoderType()));
  if (fEncoder != nullptr) writer.WriteObject(*fEncoder);
  return writer.Finish();
}

int MCCatVar::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(
      in, kName, [this](MCCommonXML::detail::ObjectReader& reader) {
        fEncoder.reset();
        fName = reader.Read<std::string>();
        fLabel = reader.Read<std::string>();
        fRole = reader.ReadEnumeration<VariableRole>();
        fStorage = reader.ReadEnumeration<VariableStorage>();
        fNCategories = reader.Read<int>();
        fLevel = reader.ReadEnumeration<MeasureLevel>();
        fbOrdinal = reader.Read<bool>();
        fbHasReplacement = reader.Read<bool>();
        fReplacement = fbHasReplacement ? reader.Read<std::string>() : "";
        fEncoder = ReadEncoder(reader);
      });
}

void MCCatVar::Display() const {
  using namespace MCComponentDisplay;
  DisplayS("Categorical variable: name", Name());
  DisplayS("Label", fLabel);
  MCCommonMetadata::Display("Variable role", fRole);
  MCCommonMetadata::Display("Variable storage", fStorage);
  MCCommonMetadata::Display("Measurement Level", fLevel);
  DisplayI("Number of categories", fNCategories);
  DisplayB("Ordinal variable indicator", fbOrdinal);
  DisplayReplacement();
  if (fEncoder != nullptr) fEncoder->Display();
}

}  // namespace MCCommonMetadata
