// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccontvar.h"

#include "mcxml/detail/objectxml.h"
#include "metadata/enumdisplay.h"
#include "regression/frame/mccomponentdisplay.h"

#include <iostream>
#include <limits>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCContVar";
constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kLargest = std::numeric_limits<double>::max();

std::unique_ptr<MCContEncoder> ReadEncoder(MCCommonXML::detail::ObjectReader& reader) {
  const auto type = reader.ReadEnumeration<EncoderType>();
  if (type == MC_ENC_UNKNOWN) return nullptr;
  if (type != MC_ENC_BINNING) {
    std::cout << "Wrong encoder type in MCContVar!\n";
    reader.Fail();
  }
  auto encoder = std::make_unique<MCContEncoder>();
  reader.ReadObject(*encoder);
  return encoder;
}

}  // namespace

MCContVar::MCContVar(const std::string& name, const std::string& label, VariableRole role)
    : MCContVar(name, label, kLowest, kLargest, role, false, -1) {}

MCContVar::MCContVar(const std::string& name, const std::string& label, double min, double max,
                     VariableRole role, bool binned, int nBins)
    : MCVariable(name, label, role),
      fMin(min),
      fMax(max),
      fNBins(nBins),
      fEncoder(binned && max > min && nBins >= 2 ? std::make_unique<MCContEncoder>(min, max, nBins)
                                                 : std::make_unique<MCContEncoder>()) {}

MCContVar::MCContVar(const std::string& name, const std::string& label,
                     const std::vector<double>& cutpoints, bool binned, VariableRole role)
    : MCContVar(name, label, kLowest, kLargest, cutpoints, binned, role) {}

MCContVar::MCContVar(const std::string& name, const std::string& label, double min, double max,
                     const std::vector<double>& cutpoints, bool binned, VariableRole role)
    : MCVariable(name, label, role),
      fMin(min),
      fMax(max),
      fNBins(static_cast<int>(cutpoints.size()) + 1),
      fCutpoints(cutpoints),
      fEncoder(binned && fNBins >= 2 ? std::make_unique<MCContEncoder>(cutpoints)
                                     : std::make_unique<MCContEncoder>()) {}

MCContVar::MCContVar(const MCContVar& other)
    : MCVariable(other),
      fMin(other.fMin),
      fMax(other.fMax),
      fNBins(other.fNBins),
      fMean(other.fMean),
      fStdDev(other.fStdDev),
      fCutpoints(other.fCutpoints),
      fEncoder(other.fEncoder == nullptr ? nullptr : other.fEncoder->Clone()) {}

MCContVar& MCContVar::operator=(MCContVar other) {
  SwapCommon(other);
  fMin = other.fMin;
  fMax = other.fMax;
  fNBins = other.fNBins;
  fMean = other.fMean;
  fStdDev = other.fStdDev;
  fCutpoints.swap(other.fCutpoints);
  fEncoder.swap(other.fEncoder);
  return *this;
}

int MCContVar::GetNumberOfCategories() const {
  return fEncoder == nullptr ? 0 : fEncoder->GetNumberOfCategories();
}

void MCContVar::SetMinMax(double min, double max) {
  fMin = min;
  fMax = max;
}

VarStatus MCContVar::GetVarStatus() {
  if (fMin > fMax) return MC_VAR_INVALID;
  return fMin == fMax ? MC_VAR_CONSTANT : MC_VAR_OK;
}

int MCContVar::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(Name());
  writer.Write(fLabel);
  writer.Write(fNBins);
  writer.Write(fMin);
  writer.Write(fMax);
  writer.Write(fMean);
  writer.Write(fStdDev);
  writer.Write(static_cast<int>(fStorage));
  writer.Write(fbHasReplacement);
  if (fbHasReplacement) writer.Write(fReplacement);
  writer.Write(static_cast<int>(fEncoder == nullptr ? MC_ENC_UNKNOWN : fEncoder->GetEncoderType()));
  if (fEncoder != nullptr) writer.WriteObject(*fEncoder);
  return writer.Finish();
}

int MCContVar::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(
      in, kName, [this](MCCommonXML::detail::ObjectReader& reader) {
        fEncoder.reset();
        fName = reader.Read<std::string>();
        fLabel = reader.Read<std::string>();
        fNBins = reader.Read<int>();
        fMin = reader.Read<double>();
        fMax = reader.Read<double>();
        fMean = reader.Read<double>();
        fStdDev = reader.Read<double>();
        fStorage = reader.ReadEnumeration<VariableStorage>();
        fbHasReplacement = reader.Read<bool>();
        fReplacement = fbHasReplacement ? reader.Read<std::string>() : "";
        fEncoder = ReadEncoder(reader);
      });
}

void MCContVar::Display() const {
  using namespace MCComponentDisplay;
  DisplayS("Continuous variable: name", Name());
  DisplayS("Label", fLabel);
  MCCommonMetadata::Display("Variable role", fRole);
  MCCommonMetadata::Display("Variable storage", fStorage);
  DisplayI("Number of bins", fNBins);
  DisplayD("Min", fMin);
  DisplayD("Max", fMax);
  DisplayD("Mean", fMean);
  DisplayD("Standard deviation", fStdDev);
  DisplayReplacement();
  if (fEncoder != nullptr) {
    fEncoder->Display();
  } else {
    DisplayText(1, "Encoder not set");
  }
}

}  // namespace MCCommonMetadata
