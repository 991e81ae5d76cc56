// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "metadata/detail/pmmlwords.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <string>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

using MCCommon::MCStatus;
using MCCommonMetadata::MCUniStats;
using xercesc::DOMElement;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

MCStatus Error(long code) {
  return MCStatus(code, false);
}

bool IsPresent(double value) {
  return value != MCMV::gMissingValue;
}

// A number that may be absent, which makes it the missing value. False if it is something else.
bool ReadOptional(const DOMElement& element, const char* name, double& value) {
  value = MCMV::gMissingValue;
  return GetDoubleAttribute(element, name, value) <= 0;
}

MCStatus ReadFrequencies(const DOMElement& parent, std::vector<double>& freqs) {
  const DOMElement* array = GetFirstChildElmt(parent, Word::kArray);
  if (array == nullptr) return Error(MCCommon::MCS_PMML_NO_STATS);
  const XMLCh* type = GetAttribute(*array, Word::kType);
  if (type == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  if (!XStrEqualsUTF8Str(type, Word::kReal) && !XStrEqualsUTF8Str(type, Word::kInt)) {
    return Error(MCCommon::MCS_DOC_BAD_VALUE);
  }
  const bool areCounts =
      AssembleDoublesList(*array, freqs) &&
      std::all_of(freqs.begin(), freqs.end(), [](double frequency) { return frequency >= 0.0; });
  return areCounts ? MCStatus() : Error(MCCommon::MCS_PMML_NEGATIVE_COUNT);
}

MCStatus ReadSummary(const DOMElement& info, MCUniStats::SummStats& summary) {
  const bool areNumbers = ReadOptional(info, Word::kMinimum, summary.fMinimum) &&
                          ReadOptional(info, Word::kMaximum, summary.fMaximum) &&
                          ReadOptional(info, Word::kMean, summary.fMean) &&
                          ReadOptional(info, Word::kStandardDeviation, summary.fStdDev);
  if (!areNumbers) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  const bool isNegative = IsPresent(summary.fStdDev) && summary.fStdDev < 0.0;
  return isNegative ? Error(MCCommon::MCS_PMML_BAD_STATS) : MCStatus();
}

// Two intervals that meet share a cut; a gap between them makes one of its own, for which the
// frequencies are then too few.
bool AddInterval(double left, double right, std::vector<double>& cuts) {
  const bool isFirst = cuts.empty();
  if (!isFirst && (!IsPresent(left) || left < cuts.back())) return false;
  if (isFirst || left > cuts.back()) cuts.push_back(left);
  cuts.push_back(right);
  return true;
}

// The intervals in their order, all of one closure. One without right margin is the last.
MCStatus ReadIntervals(const DOMElement& contStats, std::vector<double>& cuts, bool& openLeft) {
  const DOMElement* element = GetFirstChildElmt(contStats, Word::kInterval);
  for (; element != nullptr; element = GetNextSiblingElmt(*element, Word::kInterval)) {
    const bool isFirst = cuts.empty();
    if (!isFirst && !IsPresent(cuts.back())) return Error(MCCommon::MCS_PMML_BAD_INTERVALS);
    double left = 0.0;
    double right = 0.0;
    bool open = false;
    const MCStatus status = MCPMMLParser::ExtractInterval(left, right, open, *element);
    if (!status.IsOK()) return status;
    if (isFirst) openLeft = open;
    if (open != openLeft || !AddInterval(left, right, cuts)) {
      return Error(MCCommon::MCS_PMML_BAD_INTERVALS);
    }
  }
  return MCStatus();
}

// Where an element of statistics begins: its variable and number of cases.
MCStatus ReadCases(const DOMElement& element, std::string& name, double& nCases) {
  const XMLCh* field = GetAttribute(element, Word::kField);
  if (field == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  name = ToUTF8(field);
  const DOMElement* counts = GetFirstChildElmt(element, Word::kCounts);
  if (counts == nullptr) return Error(MCCommon::MCS_PMML_NO_STATS);
  const int answer = GetDoubleAttribute(*counts, Word::kTotalFreq, nCases);
  if (answer < 0) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  return answer == 0 && nCases >= 0.0 ? MCStatus() : Error(MCCommon::MCS_DOC_BAD_VALUE);
}

MCStatus ReadStats(const DOMElement& element, MCUniStats& stats) {
  std::string name;
  double nCases = 0.0;
  MCStatus status = ReadCases(element, name, nCases);
  if (!status.IsOK()) return status;
  status = GetFirstChildElmt(element, Word::kNumericInfo) != nullptr
               ? MCPMMLParser::FillUniStatsCont(stats, name, nCases, element)
               : MCPMMLParser::FillUniStatsCat(stats, name, nCases, element);
  if (!status.IsOK()) return status;
  return stats.IsValid() ? MCStatus() : Error(MCCommon::MCS_PMML_BAD_STATS);
}

const DOMElement* FirstStats(const DOMElement& model) {
  const DOMElement* all = GetFirstChildElmt(model, Word::kModelStats);
  return all == nullptr ? nullptr : GetFirstChildElmt(*all, Word::kUnivariateStats);
}

}  // namespace

MCStatus MCPMMLParser::FillUniStats(MCUniStats& stats, const DOMElement*& cursor) const {
  const DOMElement* last = cursor;
  cursor = nullptr;
  MCStatus status = GetDocumentStatus();
  if (!status.IsOK()) return status;
  if (fpModel == nullptr) return Error(MCCommon::MCS_PMML_NO_MODEL);
  const DOMElement* element =
      last == nullptr ? FirstStats(*fpModel) : GetNextSiblingElmt(*last, Word::kUnivariateStats);
  if (element == nullptr) return MCStatus();
  status = ReadStats(*element, stats);
  if (status.IsOK()) cursor = element;
  return status;
}

MCStatus MCPMMLParser::FillUniStatsCat(MCUniStats& stats, const std::string& name, double nCases,
                                       const DOMElement& element) {
  const DOMElement* discrete = GetFirstChildElmt(element, Word::kDiscrStats);
  if (discrete == nullptr) return Error(MCCommon::MCS_PMML_NO_STATS);
  std::vector<double> freqs;
  const MCStatus status = ReadFrequencies(*discrete, freqs);
  if (status.IsOK()) stats = MCUniStats(name, nCases, freqs);
  return status;
}

MCStatus MCPMMLParser::FillUniStatsCont(MCUniStats& stats, const std::string& name, double nCases,
                                        const DOMElement& element) {
  const DOMElement* info = GetFirstChildElmt(element, Word::kNumericInfo);
  if (info == nullptr) return Error(MCCommon::MCS_PMML_NO_STATS);
  MCUniStats::SummStats summary;
  MCStatus status = ReadSummary(*info, summary);
  const DOMElement* contStats = GetFirstChildElmt(element, Word::kContStats);
  if (!status.IsOK() || contStats == nullptr) return status;

  std::vector<double> cuts;
  std::vector<double> freqs;
  bool openLeft = true;
  status = FillCutPointsFreqs(cuts, freqs, openLeft, *contStats);
  if (!status.IsOK()) return status;
  stats = MCUniStats(name, nCases, summary, freqs, cuts);
  stats.SetIntervalsOpenLeft(openLeft);
  return status;
}

MCStatus MCPMMLParser::FillCutPointsFreqs(std::vector<double>& cuts, std::vector<double>& freqs,
                                          bool& openLeft, const DOMElement& contStats) {
  cuts.clear();
  freqs.clear();
  openLeft = true;
  MCStatus status = ReadIntervals(contStats, cuts, openLeft);
  if (!status.IsOK() || cuts.empty()) return status;
  status = ReadFrequencies(contStats, freqs);
  if (!status.IsOK()) return status;
  return freqs.size() + 1 == cuts.size() ? status : Error(MCCommon::MCS_PMML_BAD_INTERVALS);
}

MCStatus MCPMMLParser::ExtractInterval(double& left, double& right, bool& open,
                                       const DOMElement& element) {
  double low = MCMV::gMissingValue;
  if (GetDoubleAttribute(element, Word::kLeftMargin, low) > 0) {
    return Error(MCCommon::MCS_DOC_BAD_VALUE);
  }
  double high = MCMV::gMissingValue;
  const int answer = GetDoubleAttribute(element, Word::kRightMargin, high);
  if (answer > 0) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  if (answer < 0 && !IsPresent(low)) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  if (answer == 0 && IsPresent(low) && low >= high) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  const XMLCh* closure = GetAttribute(element, Word::kClosure);
  if (closure == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  left = low;
  right = high;
  open =
      XStrEqualsUTF8Str(closure, Word::kOpenOpen) || XStrEqualsUTF8Str(closure, Word::kOpenClosed);
  return MCStatus();
}

}  // namespace MCComXPrsUtil
