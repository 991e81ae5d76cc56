// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/detail/mcnamelist.h"
#include "mcparsexml/detail/mcsplitmodelfile.h"
#include "mcparsexml/detail/mcsplitvariable.h"
#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcstatus.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace MCComXPrsUtil {
namespace detail {

/// The document that a combiner makes: filled from a first file, to which others are merged. What a
/// file adds is copied into the document first and takes its place in the tree only when all of it
/// could be copied. Xerces must be up while the document lives.
class MCSegmentedDocument {
public:
  /// `splitVars` is borrowed for the life of the document.
  explicit MCSegmentedDocument(const std::vector<MCSplitVariable>& splitVars);
  MCSegmentedDocument(const MCSegmentedDocument&) = delete;
  MCSegmentedDocument& operator=(const MCSegmentedDocument&) = delete;
  ~MCSegmentedDocument();

  const xercesc::DOMDocument& Document() const { return *fpDocument; }

  /// Takes over what is common to all files, and the first segment. To be called first and once.
  /// Code 104 for a file or a split that the document can't hold; it is then good for nothing but
  /// deletion.
  MCCommon::MCStatus FillCommonToMiningModel(const MCSplitModelFile& file,
                                             const std::vector<std::string>& splitValues);

  /// Code 124 for a model of another function than that of the first file.
  MCCommon::MCStatus IsConsistentFunctionName(const MCSplitModelFile& file) const;

  /// Takes over what a further file, of the same function, has that is new, and its segment. Code
  /// 104 for a file or split values that the document can't hold, without any change.
  MCCommon::MCStatus MergeModelToMiningModel(const MCSplitModelFile& file,
                                             const std::vector<std::string>& splitValues);

private:
  struct Releaser {
    void operator()(xercesc::DOMDocument* document) const;
  };

  /// A piece that waits for its place at the end of its parent.
  struct Addition {
    xercesc::DOMElement* fpParent;
    xercesc::DOMElement* fpPiece;
  };

  /// A field of the dictionary, with its name in fDataFieldNames, and its values.
  struct DataField {
    xercesc::DOMElement* fpElement;
    MCNameList fValues;
  };

  static xercesc::DOMDocument* CreateEmptyMiningModel();

  // The first file.
  void FillRoot(xercesc::DOMElement& root, const MCSplitModelFile& file);
  xercesc::DOMElement* CreateMiningModel(xercesc::DOMElement& root);
  void InsertSplitVarsToMiningModel(xercesc::DOMElement& dataDictionary,
                                    xercesc::DOMElement& miningSchema);
  void InsertDataFieldElem(xercesc::DOMElement& dataDictionary, const MCSplitVariable& variable);
  void InsertMiningFieldElem(xercesc::DOMElement& miningSchema, const MCSplitVariable& variable);
  xercesc::DOMElement* CreateSegmentation(xercesc::DOMElement& miningModel);

  // Further files.
  void UpdateDataDict(const xercesc::DOMElement& fileDictionary,
                      xercesc::DOMElement& commonDictionary);
  void UpdateDataField(const xercesc::DOMElement& fileField, std::size_t place);
  void InsertDataField(const xercesc::DOMElement& fileField, const std::string& name,
                       xercesc::DOMElement& commonDictionary);
  void UpdateMiningSchema(const xercesc::DOMElement& fileSchema, xercesc::DOMElement& commonSchema);
  void InsertMiningField(const xercesc::DOMElement& fileField, const std::string& name,
                         xercesc::DOMElement& commonSchema);
  void UpdateNumOfDataFields();

  // A file's segment.
  void InsertSegment(xercesc::DOMElement* segmentation, const xercesc::DOMElement* model,
                     const xercesc::DOMElement* transDictionary,
                     const std::vector<std::string>& splitValues);
  void InsertPredicate(xercesc::DOMElement* segment, const std::vector<std::string>& splitValues);
  void InsertSimplePredicate(xercesc::DOMElement* parent, std::size_t index,
                             const std::string& value);
  void CopyTransDictToLocal(const xercesc::DOMElement& transDictionary, xercesc::DOMElement& model);

  // Null for what can't be made, and for the child of null.
  using Attributes = std::vector<std::pair<const char*, std::string>>;
  xercesc::DOMElement* Create(const char* name, const Attributes& attributes);
  xercesc::DOMElement* AddElement(xercesc::DOMElement* parent, const char* name,
                                  const Attributes& attributes);
  xercesc::DOMElement* ImportPiece(const xercesc::DOMElement& source);
  xercesc::DOMElement* ImportInto(xercesc::DOMElement& parent, const xercesc::DOMElement& source);
  void AppendDataField(const std::string& name, xercesc::DOMElement& element);

  // Pieces that wait for their place.
  xercesc::DOMElement* Stage(xercesc::DOMElement& parent, const xercesc::DOMElement& source);
  void Commit();
  void Discard(std::size_t nDataFields, std::size_t nMiningFields);

  const std::vector<MCSplitVariable>& fvSplitVars;
  std::unique_ptr<xercesc::DOMDocument, Releaser> fpDocument;
  std::string fFunctionName;
  xercesc::DOMElement* fpDataDictionary = nullptr;
  xercesc::DOMElement* fpMiningSchema = nullptr;
  xercesc::DOMElement* fpSegmentation = nullptr;
  MCNameList fMiningFieldNames;
  MCNameList fDataFieldNames;
  std::vector<DataField> fvDataFields;

  // Of the file that is being merged.
  std::vector<Addition> fvAdditions;
  std::vector<std::size_t> fvNewValues;  // the field of each
  bool fbFailed = false;                 // something could not be made
};

}  // namespace detail
}  // namespace MCComXPrsUtil
