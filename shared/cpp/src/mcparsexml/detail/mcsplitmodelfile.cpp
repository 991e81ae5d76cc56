// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcsplitmodelfile.h"

#include "mcparsexml/detail/documentdepth.h"
#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOM.hpp>

namespace MCComXPrsUtil {
namespace detail {

using MCCommon::MCStatus;
using xercesc::DOMDocument;
using xercesc::DOMElement;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

// Elements of a merged document that stand above a piece.
constexpr int kAbovePiece = 1;            // PMML
constexpr int kAboveModel = 4;            // PMML, MiningModel, Segmentation, Segment
constexpr int kAboveTransformations = 5;  // and the model

MCStatus MissingItem() {
  return MCStatus(MCCommon::MCS_DOC_MISSING_ITEM, false);
}

const DOMElement* FindStandardModel(const DOMElement& root,
                                    const std::vector<std::string>& standardModels) {
  for (const std::string& name : standardModels) {
    const DOMElement* model = GetFirstChildElmt(root, name.c_str());
    if (model != nullptr) return model;
  }
  return nullptr;
}

MCStatus GetFunctionNameAtt(const DOMElement& model, std::string& functionName) {
  if (TagNameEquals(model, Word::kMiningModel)) {
    return MCStatus(MCCommon::MCS_SPLIT_MINING_MODEL, false);
  }
  if (GetAttribute(model, Word::kFunctionName) == nullptr) return MissingItem();
  functionName = AttributeText(model, Word::kFunctionName);
  return MCStatus();
}

bool Fits(const DOMElement* piece, int nAbove) {
  return piece == nullptr || !IsDeeperThan(*piece, kMaxDepth - nAbove);
}

bool CanBeWrittenAgain(const MCSplitModelFile& file) {
  return Fits(file.fpHeader, kAbovePiece) && Fits(file.fpDictionary, kAbovePiece) &&
         Fits(file.fpModel, kAboveModel) && Fits(file.fpTransformations, kAboveTransformations);
}

}  // namespace

std::string AttributeText(const DOMElement& element, const char* name) {
  return ToUTF8(GetAttribute(element, name));
}

MCStatus FindSplitModel(const DOMDocument& document, const std::vector<std::string>& standardModels,
                        MCSplitModelFile& file) {
  file.fpRoot = GetFirstChildElmt(document, Word::kPMML);
  if (file.fpRoot == nullptr) return MissingItem();
  file.fpModel = FindStandardModel(*file.fpRoot, standardModels);
  if (file.fpModel == nullptr) return MissingItem();
  return GetFunctionNameAtt(*file.fpModel, file.fFunctionName);
}

MCStatus FindOtherPieces(MCSplitModelFile& file) {
  file.fpHeader = GetFirstChildElmt(*file.fpRoot, Word::kHeader);
  file.fpDictionary = GetFirstChildElmt(*file.fpRoot, Word::kDataDictionary);
  file.fpTransformations = GetFirstChildElmt(*file.fpRoot, Word::kTransformationDictionary);
  file.fpMiningSchema = GetFirstChildElmt(*file.fpModel, Word::kMiningSchema);
  if (file.fpDictionary == nullptr || file.fpMiningSchema == nullptr) return MissingItem();
  return CanBeWrittenAgain(file) ? MCStatus() : MCStatus(MCCommon::MCS_XML_PARSE, false);
}

}  // namespace detail
}  // namespace MCComXPrsUtil
