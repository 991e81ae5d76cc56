// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxsplitpmmlcombiner.h"

#include "mcparsexml/detail/mcnamelist.h"
#include "mcparsexml/detail/mcsegmenteddocument.h"
#include "mcparsexml/detail/mcsplitmodelfile.h"
#include "mcparsexml/detail/mcsplitvariable.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOM.hpp>

namespace MCComXPrsUtil {

using MCCommon::MCStatus;
using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::IMCVariable;
using MCCommonMetadata::MCVarList;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

MCStatus SplitValuesMismatch() {
  return MCStatus(MCCommon::MCS_SPLIT_VALUES, false);
}

}  // namespace

MCXSplitPMMLCombiner::MCXSplitPMMLCombiner(const MCVarList& splitVars)
    : fpSplitValues(std::make_unique<detail::MCNameList>()) {
  InitStandardPMMLModels();
  InitSplitVarMetadata(splitVars);
}

MCXSplitPMMLCombiner::~MCXSplitPMMLCombiner() = default;

void MCXSplitPMMLCombiner::InitStandardPMMLModels() {
  fvStandardModels = {Word::kMiningModel,     Word::kAssociationModel,
                      Word::kClusteringModel, Word::kGeneralRegressionModel,
                      Word::kNaiveBayesModel, Word::kNeuralNetwork,
                      Word::kRegressionModel, Word::kRuleSetModel,
                      Word::kSequenceModel,   Word::kSupportVectorMachineModel,
                      Word::kTextModel,       Word::kTimeSeriesModel,
                      Word::kTreeModel};
}

void MCXSplitPMMLCombiner::InitSplitVarMetadata(const MCVarList& list) {
  for (int i = 0; i < list.Size(); ++i) {
    const IMCVariable* variable = list.GetVarAt(i);
    if (variable == nullptr) continue;
    fvSplitVars.push_back(GetSplitVariableInfo(*variable));
    for (const std::string& value : fvSplitVars.back().fvValues) fpSplitValues->Append(value);
  }
}

detail::MCSplitVariable MCXSplitPMMLCombiner::GetSplitVariableInfo(const IMCVariable& variable) {
  detail::MCSplitVariable info;
  info.fName = variable.GetVariableName();
  info.fLabel = variable.GetVariableLabel();
  const MCCommonMetadata::MeasureLevel level = variable.GetMeasureLevel();
  const bool isCategorical =
      level == MCCommonMetadata::MC_LEVEL_CAT_NUM || level == MCCommonMetadata::MC_LEVEL_CAT_STRING;
  if (isCategorical) info.fOpType = Word::kCategorical;
  if (level == MCCommonMetadata::MC_LEVEL_CONTINUOUS) info.fOpType = Word::kContinuous;
  if (!info.fOpType.empty()) info.fDataType = Word::kDouble;
  if (level == MCCommonMetadata::MC_LEVEL_CAT_STRING) info.fDataType = Word::kString;
  if (variable.GetVariableStorage() == MCCommonMetadata::MC_STORAGE_INTEGER) {
    info.fDataType = Word::kInteger;
  }
  const IMCEncoder* encoder = variable.GetEncoder();
  const int n = isCategorical && encoder != nullptr ? encoder->GetNumberOfCategories() : 0;
  for (int i = 0; i < n; ++i) info.fvValues.push_back(encoder->Decode(i));
  return info;
}

void MCXSplitPMMLCombiner::Display(std::ostream& /*out*/) const {}

MCStatus MCXSplitPMMLCombiner::AddModel(const std::string& fileName,
                                        const std::vector<std::string>& splitValues) {
  if (fileName.empty() || splitValues.empty()) return fStatus;
  fXercesMessage.clear();
  if (splitValues.size() != fvSplitVars.size()) return fStatus = SplitValuesMismatch();
  MCXMLReadWrite reader;  // of its own, so that the file is let go of at the end
  reader.SetStrict(IsStrict());
  fStatus = reader.ParseToDOM(fileName);
  fXercesMessage = reader.GetXercesMessage();
  if (!fStatus.IsOK()) return fStatus;
  fStatus = ParseSplitModelXML(*reader.GetDocument(), splitValues);
  if (fStatus.GetErrorCode() == MCCommon::MCS_XML_PARSE) {
    fXercesMessage =
        "the file or its split values can't be written again: elements too deep, control "
        "characters, or texts that aren't UTF-8";
  }
  return fStatus;
}

MCStatus MCXSplitPMMLCombiner::ParseSplitModelXML(const xercesc::DOMDocument& document,
                                                  const std::vector<std::string>& splitValues) {
  detail::MCSplitModelFile file;
  MCStatus status = detail::FindSplitModel(document, fvStandardModels, file);
  if (status.IsOK() && fpCommon != nullptr) status = fpCommon->IsConsistentFunctionName(file);
  if (status.IsOK()) status = detail::FindOtherPieces(file);
  if (!status.IsOK()) return status;
  if (fpCommon != nullptr) {
    status = fpCommon->MergeModelToMiningModel(file, splitValues);
  } else {
    auto common = std::make_unique<detail::MCSegmentedDocument>(fvSplitVars);
    status = common->FillCommonToMiningModel(file, splitValues);
    if (status.IsOK()) fpCommon = std::move(common);
  }
  if (status.IsOK()) ++fNModels;
  return status;
}

MCStatus MCXSplitPMMLCombiner::ExportMiningModel(const std::string& fileName) {
  if (fpCommon == nullptr) return fStatus;
  const std::unique_ptr<detail::MCSegmentedDocument> common = std::move(fpCommon);
  fXercesMessage.clear();
  fStatus = MCStatus();
  if (fileName.empty()) return fStatus;
  const MCXMLReadWrite writer;
  fStatus = writer.WriteFromDOM(fileName, &common->Document());
  fXercesMessage = writer.GetXercesMessage();
  return fStatus;
}

MCStatus MCXSplitPMMLCombiner::IsEqualValues(const std::vector<std::string>& values) const {
  for (const std::string& value : values) {
    if (!fpSplitValues->Contains(value)) return SplitValuesMismatch();
  }
  return MCStatus();
}

}  // namespace MCComXPrsUtil
