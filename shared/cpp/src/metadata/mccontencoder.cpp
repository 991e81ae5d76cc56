// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccontencoder.h"

#include "mcxml/detail/objectxml.h"
#include "regression/frame/mccomponentdisplay.h"

#include <utility>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCContEncoder";

}  // namespace

MCContEncoder::MCContEncoder(double low, double high, int nBins)
    : fBinning(std::make_unique<MCBinningEncoder>(low, high, nBins)) {
  fNBins = fBinning->GetNumberOfCategories();
}

MCContEncoder::MCContEncoder(const std::vector<double>& cutpoints)
    : fBinning(std::make_unique<MCBinningEncoder>(cutpoints)) {
  fNBins = fBinning->GetNumberOfCategories();
}

MCContEncoder::MCContEncoder(const MCContEncoder& other)
    : MCScaleEncoder(other),
      fNBins(other.fNBins),
      fBinning(other.fBinning == nullptr ? nullptr : other.fBinning->Clone()) {}

MCContEncoder& MCContEncoder::operator=(MCContEncoder other) {
  std::swap(fMissing, other.fMissing);
  std::swap(fNBins, other.fNBins);
  fBinning.swap(other.fBinning);
  return *this;
}

int MCContEncoder::GetNumberOfCategories() const {
  return fBinning == nullptr ? fNBins : fBinning->GetNumberOfCategories();
}

double MCContEncoder::EncodeConst(double value) const {
  return IsMissing(value) ? MCMV::gMissingValue : value;
}

int MCContEncoder::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(fNBins);
  fMissing.Write(writer);
  return writer.Finish();
}

int MCContEncoder::ReadObjectXML(std::ifstream& in) {
  return MCCommonXML::detail::ReadObject(in, kName,
                                         [this](MCCommonXML::detail::ObjectReader& reader) {
                                           *this = MCContEncoder();
                                           fNBins = reader.Read<int>();
                                           fMissing.Read(reader);
                                         });
}

void MCContEncoder::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "\tMCContEncoder: ");
  DisplayI("number of bins", fNBins);
  fMissing.Display();
}

}  // namespace MCCommonMetadata
