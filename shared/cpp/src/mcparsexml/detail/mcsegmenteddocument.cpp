// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcsegmenteddocument.h"

#include "mcparsexml/detail/guarded.h"
#include "mcparsexml/detail/mcimport.h"
#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <xercesc/dom/DOM.hpp>

namespace MCComXPrsUtil {
namespace detail {

using MCCommon::MCStatus;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMImplementationRegistry;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

// Hands each child of that name to `visit`, sibling by sibling.
template <class Visit>
void ForEachChild(const DOMElement& parent, const char* name, const Visit& visit) {
  DOMElement* child = GetFirstChildElmt(parent, name);
  for (; child != nullptr; child = GetNextSiblingElmt(*child, name)) visit(*child);
}

MCStatus ImportFailure() {
  return MCStatus(MCCommon::MCS_XML_PARSE, false);
}

}  // namespace

void MCSegmentedDocument::Releaser::operator()(DOMDocument* document) const {
  document->release();
}

MCSegmentedDocument::MCSegmentedDocument(const std::vector<MCSplitVariable>& splitVars)
    : fvSplitVars(splitVars), fpDocument(CreateEmptyMiningModel()) {}

MCSegmentedDocument::~MCSegmentedDocument() = default;

DOMDocument* MCSegmentedDocument::CreateEmptyMiningModel() {
  DOMDocument* document = nullptr;
  IsDone([&document] {
    document = DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument();
  });
  return document;
}

MCStatus MCSegmentedDocument::FillCommonToMiningModel(const MCSplitModelFile& file,
                                                      const std::vector<std::string>& splitValues) {
  if (fpDocument == nullptr) return ImportFailure();
  DOMElement* root = ImportElement(*fpDocument, *file.fpRoot);
  if (root == nullptr) return ImportFailure();
  fpDocument->appendChild(root);
  FillRoot(*root, file);
  if (fbFailed) return ImportFailure();
  InsertSplitVarsToMiningModel(*fpDataDictionary, *fpMiningSchema);
  InsertSegment(fpSegmentation, file.fpModel, file.fpTransformations, splitValues);
  if (fbFailed) return ImportFailure();
  Commit();
  return MCStatus();
}

void MCSegmentedDocument::FillRoot(DOMElement& root, const MCSplitModelFile& file) {
  fFunctionName = file.fFunctionName;
  if (file.fpHeader != nullptr) ImportInto(root, *file.fpHeader);
  fpDataDictionary = ImportInto(root, *file.fpDictionary);
  DOMElement* miningModel = CreateMiningModel(root);
  if (miningModel == nullptr) return;
  fpMiningSchema = ImportInto(*miningModel, *file.fpMiningSchema);
  fpSegmentation = CreateSegmentation(*miningModel);
}

MCStatus MCSegmentedDocument::MergeModelToMiningModel(const MCSplitModelFile& file,
                                                      const std::vector<std::string>& splitValues) {
  const std::size_t nDataFields = fDataFieldNames.Size();
  const std::size_t nMiningFields = fMiningFieldNames.Size();
  UpdateDataDict(*file.fpDictionary, *fpDataDictionary);
  UpdateMiningSchema(*file.fpMiningSchema, *fpMiningSchema);
  InsertSegment(fpSegmentation, file.fpModel, file.fpTransformations, splitValues);
  if (fbFailed) {
    Discard(nDataFields, nMiningFields);
    return ImportFailure();
  }
  Commit();
  UpdateNumOfDataFields();
  return MCStatus();
}

MCStatus MCSegmentedDocument::IsConsistentFunctionName(const MCSplitModelFile& file) const {
  if (file.fFunctionName == fFunctionName) return MCStatus();
  return MCStatus(MCCommon::MCS_SPLIT_FUNCTION, false);
}

DOMElement* MCSegmentedDocument::CreateMiningModel(DOMElement& root) {
  return AddElement(&root, Word::kMiningModel, {{Word::kFunctionName, fFunctionName}});
}

void MCSegmentedDocument::InsertSplitVarsToMiningModel(DOMElement& dataDictionary,
                                                       DOMElement& miningSchema) {
  for (const MCSplitVariable& variable : fvSplitVars) {
    InsertDataFieldElem(dataDictionary, variable);
    InsertMiningFieldElem(miningSchema, variable);
  }
  ForEachChild(dataDictionary, Word::kDataField, [this](DOMElement& field) {
    AppendDataField(AttributeText(field, Word::kName), field);
  });
  UpdateNumOfDataFields();
  ForEachChild(miningSchema, Word::kMiningField, [this](const DOMElement& field) {
    fMiningFieldNames.Append(AttributeText(field, Word::kName));
  });
}

void MCSegmentedDocument::InsertDataFieldElem(DOMElement& dataDictionary,
                                              const MCSplitVariable& variable) {
  DOMElement* field = AddElement(&dataDictionary, Word::kDataField,
                                 {{Word::kName, variable.fName},
                                  {Word::kDisplayName, variable.fLabel},
                                  {Word::kOptype, variable.fOpType},
                                  {Word::kDataType, variable.fDataType}});
  for (const std::string& value : variable.fvValues) {
    AddElement(field, Word::kValue, {{Word::kValueAttribute, value}});
  }
}

void MCSegmentedDocument::InsertMiningFieldElem(DOMElement& miningSchema,
                                                const MCSplitVariable& variable) {
  AddElement(&miningSchema, Word::kMiningField,
             {{Word::kName, variable.fName}, {Word::kUsageType, Word::kActive}});
}

DOMElement* MCSegmentedDocument::CreateSegmentation(DOMElement& miningModel) {
  return AddElement(&miningModel, Word::kSegmentation,
                    {{Word::kMultipleModelMethod, Word::kSelectFirst}});
}

void MCSegmentedDocument::UpdateDataDict(const DOMElement& fileDictionary,
                                         DOMElement& commonDictionary) {
  ForEachChild(fileDictionary, Word::kDataField, [&](const DOMElement& fileField) {
    const std::string name = AttributeText(fileField, Word::kName);
    const std::size_t place = fDataFieldNames.Find(name);
    if (place < fDataFieldNames.Size()) {
      UpdateDataField(fileField, place);
    } else {
      InsertDataField(fileField, name, commonDictionary);
    }
  });
}

void MCSegmentedDocument::UpdateDataField(const DOMElement& fileField, std::size_t place) {
  DataField& common = fvDataFields[place];
  ForEachChild(fileField, Word::kValue, [&](const DOMElement& fileValue) {
    const std::string value = AttributeText(fileValue, Word::kValueAttribute);
    if (common.fValues.Contains(value) || Stage(*common.fpElement, fileValue) == nullptr) return;
    common.fValues.Append(value);
    fvNewValues.push_back(place);
  });
}

void MCSegmentedDocument::InsertDataField(const DOMElement& fileField, const std::string& name,
                                          DOMElement& commonDictionary) {
  DOMElement* field = Stage(commonDictionary, fileField);
  if (field != nullptr) AppendDataField(name, *field);
}

// A file whose names stand among the common ones in their order adds none, as does any other
// whose names all do.
void MCSegmentedDocument::UpdateMiningSchema(const DOMElement& fileSchema,
                                             DOMElement& commonSchema) {
  ForEachChild(fileSchema, Word::kMiningField, [&](const DOMElement& fileField) {
    const std::string name = AttributeText(fileField, Word::kName);
    if (!fMiningFieldNames.Contains(name)) InsertMiningField(fileField, name, commonSchema);
  });
}

void MCSegmentedDocument::InsertMiningField(const DOMElement& fileField, const std::string& name,
                                            DOMElement& commonSchema) {
  if (Stage(commonSchema, fileField) != nullptr) fMiningFieldNames.Append(name);
}

void MCSegmentedDocument::UpdateNumOfDataFields() {
  SetAttribute(*fpDataDictionary, Word::kNumberOfFields,
               static_cast<double>(fDataFieldNames.Size()));
}

void MCSegmentedDocument::InsertSegment(DOMElement* segmentation, const DOMElement* model,
                                        const DOMElement* transDictionary,
                                        const std::vector<std::string>& splitValues) {
  if (segmentation == nullptr || model == nullptr || splitValues.empty()) return;
  DOMElement* segment = Create(Word::kSegment, {});
  if (segment == nullptr) return;
  fvAdditions.push_back({segmentation, segment});
  InsertPredicate(segment, splitValues);
  DOMElement* copy = ImportInto(*segment, *model);
  if (copy != nullptr && transDictionary != nullptr) CopyTransDictToLocal(*transDictionary, *copy);
}

void MCSegmentedDocument::InsertPredicate(DOMElement* segment,
                                          const std::vector<std::string>& splitValues) {
  if (splitValues.size() > 1) {
    segment = AddElement(segment, Word::kCompoundPredicate, {{Word::kBooleanOperator, Word::kAnd}});
  }
  for (std::size_t i = 0; i < splitValues.size(); ++i) {
    InsertSimplePredicate(segment, i, splitValues[i]);
  }
}

void MCSegmentedDocument::InsertSimplePredicate(DOMElement* parent, std::size_t index,
                                                const std::string& value) {
  const std::string& name = fvSplitVars[index].fName;
  if (value.empty() || name.empty()) return;
  AddElement(
      parent, Word::kSimplePredicate,
      {{Word::kField, name}, {Word::kOperator, Word::kEqual}, {Word::kValueAttribute, value}});
}

void MCSegmentedDocument::CopyTransDictToLocal(const DOMElement& transDictionary,
                                               DOMElement& model) {
  DOMElement* local = AddElement(&model, Word::kLocalTransformations, {});
  if (local == nullptr) return;
  ForEachChild(transDictionary, Word::kDerivedField,
               [&](const DOMElement& field) { ImportInto(*local, field); });
}

DOMElement* MCSegmentedDocument::Create(const char* name, const Attributes& attributes) {
  DOMElement* element = CreateElement(*fpDocument, name);
  bool isMade = element != nullptr;
  for (const auto& [attribute, value] : attributes) {
    isMade = isMade && IsWritableText(value) && SetAttribute(*element, attribute, value.c_str());
  }
  fbFailed = fbFailed || !isMade;
  return isMade ? element : nullptr;
}

DOMElement* MCSegmentedDocument::AddElement(DOMElement* parent, const char* name,
                                            const Attributes& attributes) {
  if (parent == nullptr) return nullptr;
  DOMElement* element = Create(name, attributes);
  InsertElement(*parent, element, nullptr);
  return element;
}

DOMElement* MCSegmentedDocument::ImportPiece(const DOMElement& source) {
  DOMElement* piece = ImportTree(*fpDocument, source);
  fbFailed = fbFailed || piece == nullptr;
  return piece;
}

DOMElement* MCSegmentedDocument::ImportInto(DOMElement& parent, const DOMElement& source) {
  DOMElement* piece = ImportPiece(source);
  if (piece != nullptr) InsertElement(parent, piece, nullptr);
  return piece;
}

void MCSegmentedDocument::AppendDataField(const std::string& name, DOMElement& element) {
  DataField field{&element, {}};
  ForEachChild(element, Word::kValue, [&field](const DOMElement& value) {
    field.fValues.Append(AttributeText(value, Word::kValueAttribute));
  });
  fvDataFields.push_back(std::move(field));
  fDataFieldNames.Append(name);
}

DOMElement* MCSegmentedDocument::Stage(DOMElement& parent, const DOMElement& source) {
  DOMElement* piece = ImportPiece(source);
  if (piece != nullptr) fvAdditions.push_back({&parent, piece});
  return piece;
}

void MCSegmentedDocument::Commit() {
  for (const Addition& addition : fvAdditions) {
    InsertElement(*addition.fpParent, addition.fpPiece, nullptr);
  }
  fvAdditions.clear();
  fvNewValues.clear();
}

void MCSegmentedDocument::Discard(std::size_t nDataFields, std::size_t nMiningFields) {
  for (const std::size_t place : fvNewValues) {
    MCNameList& values = fvDataFields[place].fValues;
    values.Truncate(values.Size() - 1);
  }
  fvDataFields.resize(nDataFields);
  fDataFieldNames.Truncate(nDataFields);
  fMiningFieldNames.Truncate(nMiningFields);
  for (const Addition& addition : fvAdditions) ReleasePiece(*addition.fpPiece);
  fvAdditions.clear();
  fvNewValues.clear();
  fbFailed = false;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
