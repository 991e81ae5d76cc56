// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "metadata/mcunistats.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace MCComXPrsUtil {

namespace detail {
class DocumentParser;
class MCBinIndex;
}  // namespace detail

/// Reads what a PMML document tells of the data: variables from its dictionary and statistics from
/// a model. Any version of PMML is read and namespaces aren't looked at; an element is known by its
/// tag, so one with a prefix isn't known.
///
///     MCPMMLParser parser;
///     MCCommonMetadata::MCVarList list;
///     MCCommon::MCStatus status = parser.ParseToDOM(file);
///     if (status.IsOK()) status = parser.FillVarList(list, {}, false);
///
/// The parser holds one document at a time. Pointers into it are valid until the next ParseToDOM()
/// or the end of the parser. Every status but OK is an error; those of an operation are listed with
/// it, and before any of them comes that of the parser itself. Nothing of Xerces is thrown; memory
/// exhaustion is.
class MC_EXPORT MCPMMLParser {
public:
  /// Starts Xerces for as long as the parser lives. If that fails, every operation answers 103.
  MCPMMLParser();
  MCPMMLParser(const MCPMMLParser&) = delete;
  MCPMMLParser& operator=(const MCPMMLParser&) = delete;
  virtual ~MCPMMLParser();

  /// Reads a document to the end of the stream, in any encoding that it declares, and replaces the
  /// one that was held; on an error none is held. 104: it could not be parsed, see
  /// GetXercesMessage(); 105: there is no root "PMML"; 106: it has no "DataDictionary". A document
  /// that isn't well-formed ends at the error, and what is missing then decides.
  virtual MCCommon::MCStatus ParseToDOM(std::istream& stream);

  /// Whether documents are read strictly from now on; off at the start, where Xerces's defaults
  /// stand (docs/security.md). Strictly means what MCXMLReadWrite::SetStrict() tells: for documents
  /// that one doesn't trust.
  void SetStrict(bool isStrict) { fbStrict = isStrict; }
  bool IsStrict() const { return fbStrict; }

  /// The outcome of the constructor or of the last ParseToDOM().
  MCCommon::MCStatus GetStatus() const { return fStatus; }

  /// The element "PMML"; null if no document is held.
  const xercesc::DOMElement* GetRootElement() const { return fpRoot; }

  /// What Xerces said of the last document, in UTF-8; empty if it said nothing. Of one that the
  /// strict setting refuses: "line L, column C: text", both counted from 1.
  std::string GetXercesMessage() const { return fXercesMessage; }

  /// Makes an element of the document the model whose statistics are read. It is borrowed. False,
  /// with the model as it was, if the parser has failed or holds no document.
  bool SetModelElmt(const xercesc::DOMElement& model);

  /// Adds a variable of role MC_ROLE_INPUT for each "DataField", in order; only for those in
  /// `names` unless that is empty. "continuous" fields become continuous, all others, ordinal ones
  /// too, categorical with their valid values; values of any other property are missing ones.
  /// Labels are taken if there are as many as values, counting both as they were met. With `bins`
  /// the bins of a continuous field are read from the "TransformationDictionary".
  ///
  /// The first field that can't be read ends it; variables before it stay in the list. 107: no
  /// document is held; 108: a field lacks "name", "dataType" or "optype"; 109: its "dataType" isn't
  /// known; 110: it has no bins, and they were asked for; 111: the list refused the variable.
  MCCommon::MCStatus FillVarList(MCCommonMetadata::MCVarList& list,
                                 const std::vector<std::string>& names, bool bins) const;

  /// Reads the next statistics of the model. `cursor` is the caller's place: null at the start, an
  /// element of this document between calls, and null again when there are no more, on OK, or after
  /// an error. On OK with a `cursor`, `stats` hold what was read.
  ///
  /// 107: no document is held; 112: no model was set; 108: "field", "totalFreq", the "type" of an
  /// array or an attribute of an interval is absent; 109: one has a value that can't be used; 113:
  /// "Counts", "DiscrStats" or "Array" is absent; 114: frequencies can't be read or one is
  /// negative; 115: intervals don't rise, differ in their closure or aren't as many as frequencies;
  /// 116: a deviation is negative, or `stats` aren't valid in the end. Of continuous statistics
  /// without "ContStats" nothing is kept: `stats` stay as they were, and are judged so.
  MCCommon::MCStatus FillUniStats(MCCommonMetadata::MCUniStats& stats,
                                  const xercesc::DOMElement*& cursor) const;

  // The steps of the above, for hosts that walk a document on their own.

  /// Sets `stats` to those of a categorical variable, told by an element "UnivariateStats". 108,
  /// 109, 113 and 114 as above, with `stats` unchanged.
  static MCCommon::MCStatus FillUniStatsCat(MCCommonMetadata::MCUniStats& stats,
                                            const std::string& name, double nCases,
                                            const xercesc::DOMElement& element);

  /// Sets `stats` to those of a continuous variable, with the closure of their intervals. 108, 109
  /// and 113 to 116 as above, with `stats` unchanged, as they are on OK without "ContStats".
  static MCCommon::MCStatus FillUniStatsCont(MCCommonMetadata::MCUniStats& stats,
                                             const std::string& name, double nCases,
                                             const xercesc::DOMElement& element);

  /// Sets `cuts` and `freqs` to the histogram of an element "ContStats", and `openLeft` to whether
  /// its intervals lack their left end, true without any. 108, 109 and 113 to 115 as above; what
  /// was read until then stands.
  static MCCommon::MCStatus FillCutPointsFreqs(std::vector<double>& cuts,
                                               std::vector<double>& freqs, bool& openLeft,
                                               const xercesc::DOMElement& contStats);

  /// Sets the ends of an element "Interval", the missing value for one that is absent, and whether
  /// it lacks its left end. 108: there is no margin or no closure; 109: a margin isn't a number or
  /// the left isn't below the right. Arguments are unchanged then.
  static MCCommon::MCStatus ExtractInterval(double& left, double& right, bool& open,
                                            const xercesc::DOMElement& element);

  /// Sets `cuts` to the ends of the bins of a field, the first and the last being those of the
  /// whole, and `labels` to their "binValue"s, from the first "Discretize" of that field. Ends that
  /// are absent are the largest doubles; a "Discretize" without intervals gives one cut of 0.0.
  /// False, with both empty, if there is none.
  bool SetBinsFrTransDict(const std::string& field, std::vector<double>& cuts,
                          std::vector<std::string>& labels) const;

protected:
  /// The state of the parser, or 107 if it is good and no document is held.
  MCCommon::MCStatus GetDocumentStatus() const;

  /// Null without document; the second also for a document that has none.
  const xercesc::DOMElement* GetDataDictionary() const { return fpDataDictionary; }
  const xercesc::DOMElement* GetTransDictionary() const { return fpTransDictionary; }

  /// The bins of the second, which are found once; null without document.
  const detail::MCBinIndex* GetBins() const { return fpBins.get(); }

  void SetStatus(const MCCommon::MCStatus& status) { fStatus = status; }

private:
  MCCommon::MCStatus TakeElements();
  void ForgetDocument();

  MCCommon::MCStatus fStatus;
  std::unique_ptr<detail::DocumentParser> fpParser;
  std::string fXercesMessage;
  xercesc::DOMDocument* fpDocument = nullptr;
  const xercesc::DOMElement* fpRoot = nullptr;
  const xercesc::DOMElement* fpDataDictionary = nullptr;
  const xercesc::DOMElement* fpTransDictionary = nullptr;
  std::unique_ptr<const detail::MCBinIndex> fpBins;
  const xercesc::DOMElement* fpModel = nullptr;
  bool fbStrict = false;
};

}  // namespace MCComXPrsUtil
