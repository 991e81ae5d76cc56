// SPDX-License-Identifier: Apache-2.0
#include "documents/modelstats.h"

#include "documents/textattribute.h"
#include "mcparsexml/mccomxprsutil.h"
#include "metadata/mcunistats.h"
#include "note.h"
#include "regression/frame/mcmv.h"
#include "reporttext.h"
#include "statustext.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace mcfit {

using MCCommon::MCStatus;
using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::MCPMMLParser;
using xercesc::DOMElement;

namespace {

constexpr int kDigits = 7;

// The element behind this one in the order of the document: a walk down, on, or up and on, that
// needs no stack however deep the document is. Null behind the last one below `root`.
const DOMElement* NextInDocument(const DOMElement& element, const DOMElement& root) {
  if (const DOMElement* child = GetFirstChildElmt(element, nullptr)) return child;
  const xercesc::DOMNode* node = &element;
  while (node != nullptr && node != &root) {
    if (const DOMElement* next = MCComXPrsUtil::GetNextSiblingElmt(*node, nullptr)) return next;
    node = node->getParentNode();
  }
  return nullptr;
}

// Models stand under the root, or in segments of one that does.
std::vector<const DOMElement*> ModelsWithStats(const DOMElement& root) {
  std::vector<const DOMElement*> models;
  for (const DOMElement* element = NextInDocument(root, root); element != nullptr;
       element = NextInDocument(*element, root)) {
    if (GetFirstChildElmt(*element, "ModelStats") != nullptr) models.push_back(element);
  }
  return models;
}

std::string ModelName(const DOMElement& model) {
  std::string text = Printable(MCComXPrsUtil::ToUTF8(model.getTagName()));
  const std::string name = TextAttribute(model, "modelName");
  if (!name.empty()) text += " " + Quoted(name);
  const xercesc::DOMNode* parent = model.getParentNode();
  const DOMElement* segment =
      parent == nullptr ? nullptr : MCComXPrsUtil::AsElement(*parent, "Segment");
  if (segment != nullptr) text += " of segment " + Quoted(TextAttribute(*segment, "id"));
  return text;
}

// Of a continuous variable without histogram the parser keeps nothing where a producer leaves
// ContStats out; its summary stands there all the same.
MCUniStats SummaryAlone(const DOMElement& element) {
  MCUniStats::SummStats summary;
  double nCases = 0.0;
  const auto read = [](const DOMElement* holder, const char* name, double& value) {
    if (holder != nullptr) MCComXPrsUtil::GetDoubleAttribute(*holder, name, value);
  };
  read(GetFirstChildElmt(element, "Counts"), "totalFreq", nCases);
  const DOMElement* numbers = GetFirstChildElmt(element, "NumericInfo");
  read(numbers, "minimum", summary.fMinimum);
  read(numbers, "maximum", summary.fMaximum);
  read(numbers, "mean", summary.fMean);
  read(numbers, "standardDeviation", summary.fStdDev);
  return MCUniStats(TextAttribute(element, "field"), nCases, summary, {}, {});
}

/// The statistics of one model as they are read.
class StatsTables {
public:
  StatsTables(const MCVarList& variables, const std::string& model)
      : fVariables(variables), fModel(model) {
    fSummaries.Add({"Variable", "Cases", "Mean", "Deviation", "Minimum", "Maximum"});
    fSummaries.AddRule();
    fFrequencies.Add({"Variable", "Value", "Cases"});
    fFrequencies.AddRule();
  }

  void Add(const MCUniStats& stats) {
    const MCUniStats::SummStats& summary = stats.GetSummStats();
    fName = Printable(stats.GetVarName());
    fSummaries.Add({fName, fNumber(stats.GetNumberOfCases()), fNumber(Defined(summary.fMean)),
                    fNumber(Defined(summary.fStdDev)), fNumber(Defined(summary.fMinimum)),
                    fNumber(Defined(summary.fMaximum))});
    for (std::size_t i = 0; i < stats.GetFrequencies().size(); ++i) {
      const std::string value = stats.IsCategorical() ? Category(stats, i) : Interval(stats, i);
      fFrequencies.Add({fName, value, fNumber(stats.GetFrequencies()[i])});
      fName.clear();
      fbHasFrequencies = true;
    }
  }

  std::string Text() {
    fSummaries.AddRule();
    fFrequencies.AddRule();
    return fmt::format("\nStatistics of {}\n\n{}{}", fModel, fSummaries.Text(),
                       fbHasFrequencies ? "\n" + fFrequencies.Text() : "");
  }

private:
  // Frequencies go by the place of a category in the dictionary.
  std::string Category(const MCUniStats& stats, std::size_t code) const {
    const int place = fVariables.FindVariable(stats.GetVarName());
    const MCCommonMetadata::IMCEncoder* encoder =
        place < 0 ? nullptr : fVariables.GetEncoderAt(place);
    const bool isKnown =
        encoder != nullptr &&
        static_cast<std::size_t>(encoder->GetNumberOfCategories()) == stats.GetFrequencies().size();
    return isKnown ? Printable(encoder->Decode(static_cast<int>(code)))
                   : fmt::format("category {}", code + 1);
  }

  static std::string Interval(const MCUniStats& stats, std::size_t i) {
    const double low = stats.GetCutPoints()[i];
    const double high = stats.GetCutPoints()[i + 1];
    const bool isOpenLeft = stats.AreIntervalsOpenLeft();
    if (low == MCMV::gMissingValue) return fmt::format("{} {}", isOpenLeft ? "<=" : "<", high);
    if (high == MCMV::gMissingValue) return fmt::format("{} {}", isOpenLeft ? ">" : ">=", low);
    return fmt::format("{}{}, {}{}", isOpenLeft ? '(' : '[', low, high, isOpenLeft ? ']' : ')');
  }

  const MCVarList& fVariables;
  std::string fModel;
  NumberText fNumber{kDigits};
  TextTable fSummaries{5};
  TextTable fFrequencies{2};
  std::string fName;
  bool fbHasFrequencies = false;
};

void ReadModel(MCPMMLParser& parser, const std::string& path, const std::string& model,
               StatsTables& tables) {
  const DOMElement* cursor = nullptr;
  std::string last;
  for (;;) {
    // Valid, and of no field: so it stays where the parser keeps nothing.
    MCUniStats stats(" ", 0.0, {});
    const MCStatus status = parser.FillUniStats(stats, cursor);
    if (status.IsError()) {
      Note(fmt::format("note: {}: the statistics of {}{} can't be read: {}", Printable(path), model,
                       last.empty() ? "" : " behind those of " + Quoted(last), StatusText(status)));
      return;
    }
    if (cursor == nullptr) return;
    const std::string field = TextAttribute(*cursor, "field");
    if (stats.GetVarName() != field) stats = SummaryAlone(*cursor);
    tables.Add(stats);
    last = field;
  }
}

}  // namespace

std::string ModelStatsText(MCPMMLParser& parser, const std::string& path,
                           const MCVarList& variables) {
  std::string text;
  for (const DOMElement* model : ModelsWithStats(*parser.GetRootElement())) {
    const std::string name = ModelName(*model);
    StatsTables tables(variables, name);
    if (parser.SetModelElmt(*model)) ReadModel(parser, path, name, tables);
    text += tables.Text();
  }
  return text;
}

}  // namespace mcfit
