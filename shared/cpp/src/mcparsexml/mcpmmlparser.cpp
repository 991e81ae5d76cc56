// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcpmmlparser.h"

#include "mcparsexml/detail/documentparser.h"
#include "mcparsexml/detail/mcbinindex.h"
#include "mcparsexml/detail/mcfieldreader.h"
#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace MCComXPrsUtil {

using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using xercesc::DOMElement;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

constexpr auto kNoStorage = MCCommonMetadata::MC_STORAGE_UNDEFINED;

// The types of PMML, which tell no storage here.
const std::vector<detail::DataType>& PMMLTypes() {
  static const std::vector<detail::DataType> types = {
      {Word::kString, true, kNoStorage},
      {Word::kDouble, false, kNoStorage},
      {Word::kFloat, false, kNoStorage},
      {Word::kInteger, false, kNoStorage},
      {Word::kDate, false, kNoStorage},
      {Word::kTime, false, kNoStorage},
      {Word::kDateTime, false, kNoStorage},
      {"timeSeconds", false, kNoStorage},
      {"dateDaysSince[0]", false, kNoStorage},
      {"dateDaysSince[1960]", false, kNoStorage},
      {"dateDaysSince[1970]", false, kNoStorage},
      {"dateDaysSince[1980]", false, kNoStorage},
      {"dateTimeSecondsSince[0]", false, kNoStorage},
      {"dateTimeSecondsSince[1960]", false, kNoStorage},
      {"dateTimeSecondsSince[1970]", false, kNoStorage},
      {"dateTimeSecondsSince[1980]", false, kNoStorage}};
  return types;
}

}  // namespace

MCPMMLParser::MCPMMLParser() : fStatus(detail::StartXerces()) {
  if (!fStatus.IsOK()) return;
  try {
    fStatus = detail::DocumentParser::Create(fpParser);
  } catch (...) {  // out of memory: the destructor won't run
    xercesc::XMLPlatformUtils::Terminate();
    throw;
  }
  if (fpParser == nullptr) xercesc::XMLPlatformUtils::Terminate();
}

MCPMMLParser::~MCPMMLParser() {
  if (fpParser == nullptr) return;
  fpParser.reset();
  xercesc::XMLPlatformUtils::Terminate();
}

MCStatus MCPMMLParser::ParseToDOM(std::istream& stream) {
  fXercesMessage.clear();
  ForgetDocument();
  if (fpParser == nullptr) return fStatus;
  fStatus = fpParser->Parse(nullptr, &stream, fbStrict, fXercesMessage);
  if (fStatus.IsOK()) fStatus = TakeElements();
  return fStatus;
}

MCStatus MCPMMLParser::TakeElements() {
  xercesc::DOMDocument* document = fpParser->GetDocument();
  const DOMElement* root = document->getDocumentElement();
  if (root == nullptr || !TagNameEquals(*root, Word::kPMML)) {
    return MCStatus(MCCommon::MCS_PMML_NOT_PMML, false);
  }
  const DOMElement* dataDictionary = GetFirstChildElmt(*root, Word::kDataDictionary);
  if (dataDictionary == nullptr) return MCStatus(MCCommon::MCS_PMML_NO_DICTIONARY, false);
  const DOMElement* transDictionary = GetFirstChildElmt(*root, Word::kTransformationDictionary);
  // First, as memory may run out: no document is held then.
  fpBins = std::make_unique<const detail::MCBinIndex>(transDictionary);
  fpDocument = document;
  fpRoot = root;
  fpDataDictionary = dataDictionary;
  fpTransDictionary = transDictionary;
  return MCStatus();
}

void MCPMMLParser::ForgetDocument() {
  fpDocument = nullptr;
  fpRoot = nullptr;
  fpDataDictionary = nullptr;
  fpTransDictionary = nullptr;
  fpBins.reset();
  fpModel = nullptr;
}

bool MCPMMLParser::SetModelElmt(const DOMElement& model) {
  if (!GetDocumentStatus().IsOK()) return false;
  fpModel = &model;
  return true;
}

MCStatus MCPMMLParser::GetDocumentStatus() const {
  if (fStatus.IsOK() && fpDocument == nullptr) {
    return MCStatus(MCCommon::MCS_DOC_NOT_PARSED, false);
  }
  return fStatus;
}

MCStatus MCPMMLParser::FillVarList(MCVarList& list, const std::vector<std::string>& names,
                                   bool bins) const {
  const MCStatus status = GetDocumentStatus();
  if (!status.IsOK()) return status;
  detail::MCFieldReader reader({Word::kDataField, &PMMLTypes(), detail::RangePlace::kNowhere},
                               list);
  reader.Select(names);
  if (bins) reader.TakeBins(*fpBins);
  return reader.ReadFields(*fpDataDictionary);
}

bool MCPMMLParser::SetBinsFrTransDict(const std::string& field, std::vector<double>& cuts,
                                      std::vector<std::string>& labels) const {
  if (fpBins != nullptr) return fpBins->ReadBins(field, cuts, labels);
  cuts.clear();
  labels.clear();
  return false;
}

}  // namespace MCComXPrsUtil
