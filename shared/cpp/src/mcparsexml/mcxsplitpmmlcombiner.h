// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/xercestypes.h"
#include "metadata/imcvariable.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace MCComXPrsUtil {

namespace detail {
class MCNameList;
class MCSegmentedDocument;
struct MCSplitVariable;
}  // namespace detail

/// Merges PMML files of models, each built on the rows with one combination of values of the split
/// variables, into one document: a "MiningModel" whose "Segmentation" has one "Segment" for each
/// file, guarded by a predicate on the split variables. Models are taken over as they are.
///
///     MCXSplitPMMLCombiner combiner(splitVars);                  // of region and year
///     MCCommon::MCStatus status = combiner.AddModel("north2025.xml", {"north", "2025"});
///     if (!status.IsError()) status = combiner.AddModel("south2025.xml", {"south", "2025"});
///     if (!status.IsError()) status = combiner.ExportMiningModel("all.xml");
///
/// The first file sets what is common: root with version and namespaces, header, function of the
/// models and dictionary, to which the split variables are added. Later files add the fields,
/// categories and mining fields that are new; two files that tell one field differently are merged
/// without complaint, and the first stands. A file is merged as a whole or not at all: one that is
/// refused leaves no trace. The time of a file follows its own size, not the files before it.
///
/// Nothing of Xerces is thrown; memory exhaustion is, and the combiner is then good for nothing but
/// deletion.
class MC_EXPORT MCXSplitPMMLCombiner {
public:
  /// The list is read here and not kept. Each variable becomes a "DataField": numeric categories
  /// are of the type "double", text ones "string", both with their categories, continuous ones
  /// "double" without; stored integers are "integer". Keeps Xerces up for as long as the combiner
  /// lives.
  explicit MCXSplitPMMLCombiner(const MCCommonMetadata::MCVarList& splitVars);
  MCXSplitPMMLCombiner(const MCXSplitPMMLCombiner&) = delete;
  MCXSplitPMMLCombiner& operator=(const MCXSplitPMMLCombiner&) = delete;
  ~MCXSplitPMMLCombiner();

  /// That of the last AddModel() or ExportMiningModel() that did anything; OK before.
  MCCommon::MCStatus GetStatus() const { return fStatus; }

  /// Models merged since the construction, exported or not.
  int GetNModels() const { return fNModels; }

  /// Writes nothing: a combiner has nothing to show that its documents don't.
  void Display(std::ostream& out) const;

  /// Whether files are read strictly from now on, as MCXMLReadWrite does; off at the start.
  void SetStrict(bool isStrict) { fXerces.SetStrict(isStrict); }
  bool IsStrict() const { return fXerces.IsStrict(); }

  /// Why the last file could not be read, merged or written (103, 104, 118), in UTF-8 and mostly in
  /// Xerces's words; empty without such a failure, or where there are no words for it.
  std::string GetXercesMessage() const { return fXercesMessage; }

  /// Merges the model of a file, for the rows in which the split variables have these values, in
  /// their order. An empty value guards nothing. A file whose name is empty, or without any value,
  /// is passed over: the answer is the status as it stands.
  ///
  /// Every refusal is an error and leaves the common document as it was; further files may follow.
  /// 126: not one value for each split variable; 103, 104: the file can't be read, see
  /// GetXercesMessage(); 108: there is no root "PMML", no model of the standard, or no
  /// "DataDictionary", "MiningSchema" or "functionName" of that model; 125: the model is a
  /// "MiningModel" itself; 124: its function isn't that of the first file; 104 also for what a
  /// document in XML 1.0 can't hold, in the file, in the split values or in what the list tells of
  /// the variables, and for what would stand in it deeper than 10,000 elements, which is the
  /// deepest that can be written.
  ///
  /// A file that isn't well-formed is read up to the error, unless it is read strictly.
  MCCommon::MCStatus AddModel(const std::string& fileName,
                              const std::vector<std::string>& splitValues);

  /// Writes the merged document and lets go of it, written or not: the next file starts a new one.
  /// 118: it could not be written. An empty name writes nothing, and is OK. Without a document
  /// nothing is done, and the answer is the status as it stands.
  MCCommon::MCStatus ExportMiningModel(const std::string& fileName);

  /// Whether each value is a category of some split variable; else 126. A help for hosts that no
  /// other operation asks. The status of the combiner stays.
  MCCommon::MCStatus IsEqualValues(const std::vector<std::string>& values) const;

private:
  void InitStandardPMMLModels();
  void InitSplitVarMetadata(const MCCommonMetadata::MCVarList& list);
  static detail::MCSplitVariable GetSplitVariableInfo(
      const MCCommonMetadata::IMCVariable& variable);
  MCCommon::MCStatus ParseSplitModelXML(const xercesc::DOMDocument& document,
                                        const std::vector<std::string>& splitValues);

  MCXMLReadWrite fXerces;  // outlives the common document
  MCCommon::MCStatus fStatus;
  std::string fXercesMessage;
  std::vector<detail::MCSplitVariable> fvSplitVars;
  std::unique_ptr<detail::MCNameList> fpSplitValues;  // categories of all of them
  std::vector<std::string> fvStandardModels;
  int fNModels = 0;
  std::unique_ptr<detail::MCSegmentedDocument> fpCommon;  // null until the first model
};

}  // namespace MCComXPrsUtil
