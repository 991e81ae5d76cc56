// SPDX-License-Identifier: Apache-2.0
#include "documents/dictionarytext.h"

#include "declaration.h"
#include "documents/fieldbins.h"
#include "documents/textattribute.h"
#include "mcparsexml/mccomxprsutil.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

#include <map>
#include <xercesc/dom/DOMElement.hpp>

namespace mcfit {

using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::IMCVariable;
using MCCommonMetadata::MCVarList;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::GetNextSiblingElmt;
using MCComXPrsUtil::MCPMMLParser;

namespace {

// How the document has the values of each field, which the variables of the list don't tell.
std::map<std::string, std::string> StorageWords(const MCPMMLParser& parser) {
  std::map<std::string, std::string> words;
  const xercesc::DOMElement* field = GetFirstChildElmt(*parser.GetRootElement(), "DataDictionary");
  field = GetFirstChildElmt(*field, "DataField");
  for (; field != nullptr; field = GetNextSiblingElmt(*field, "DataField")) {
    words.emplace(TextAttribute(*field, "name"), TextAttribute(*field, "dataType"));
  }
  return words;
}

bool IsCategorical(const IMCVariable& variable) {
  return variable.GetMeasureLevel() != MCCommonMetadata::MC_LEVEL_CONTINUOUS;
}

std::string LabelAt(const std::vector<std::string>* labels, std::size_t place) {
  return labels == nullptr || place >= labels->size() ? "" : Printable((*labels)[place]);
}

std::string Value(double number) {
  return fmt::format("{}", number);
}

std::string Value(const std::string& text) {
  return Printable(text);
}

/// The lines below those of the variables.
class DetailTable {
public:
  DetailTable() {
    fTable.Add({"Variable", "What", "Value", "Label"});
    fTable.AddRule();
  }

  void Add(const MCPMMLParser& parser, const IMCVariable& variable) {
    fName = Printable(variable.GetVariableName());
    const IMCEncoder& encoder = *variable.GetEncoder();
    if (IsCategorical(variable)) AddCategories(encoder);
    AddMissing(encoder, encoder.GetDiscreteMissValues());
    AddMissing(encoder, encoder.GetDiscreteMissValuesStr());
    double low = 0.0;
    double high = 0.0;
    if (encoder.GetMissingInterval(low, high)) {
      AddLine("missing", fmt::format("{} to {}", low, high), "");
    }
    if (!IsCategorical(variable)) AddBins(parser, variable);
  }

  std::string Text() {
    if (!fbHasLines) return {};
    fTable.AddRule();
    return "\n" + fTable.Text();
  }

private:
  // The name of a variable stands on its first line alone.
  void AddLine(const char* what, const std::string& value, const std::string& label) {
    fTable.Add({fName, what, value, label});
    fName.clear();
    fbHasLines = true;
  }

  void AddCategories(const IMCEncoder& encoder) {
    for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
      AddLine("category", Printable(encoder.Decode(code)),
              LabelAt(encoder.GetValueLabels(), static_cast<std::size_t>(code)));
    }
  }

  template <class List>
  void AddMissing(const IMCEncoder& encoder, const List* values) {
    for (std::size_t i = 0; values != nullptr && i < values->size(); ++i) {
      AddLine("missing", Value((*values)[i]), LabelAt(encoder.GetMissValueLabels(), i));
    }
  }

  void AddBins(const MCPMMLParser& parser, const IMCVariable& variable) {
    const FieldBins bins(parser, variable.GetVariableName());
    const std::vector<std::string> intervals = BinLabels(bins.edges);
    for (std::size_t i = 0; bins.exist && i < intervals.size(); ++i) {
      AddLine("bin", intervals[i], LabelAt(bins.HasNames() ? &bins.names : nullptr, i));
    }
  }

  TextTable fTable{2};
  std::string fName;
  bool fbHasLines = false;
};

}  // namespace

std::string DictionaryText(const MCPMMLParser& parser, const MCVarList& variables) {
  const std::map<std::string, std::string> storage = StorageWords(parser);
  TextTable table(3);
  table.Add({"Variable", "Storage", "Level", "Categories", "Label"});
  table.AddRule();
  DetailTable details;
  for (int i = 0; i < variables.Size(); ++i) {
    const IMCVariable& variable = *variables.GetVarAt(i);
    const std::string name = variable.GetVariableName();
    const bool isCategorical = IsCategorical(variable);
    table.Add(
        {Printable(name), Printable(storage.at(name)), isCategorical ? "categorical" : "continuous",
         isCategorical ? fmt::format("{}", variable.GetEncoder()->GetNumberOfCategories()) : ".",
         Printable(variable.GetVariableLabel())});
    details.Add(parser, variable);
  }
  table.AddRule();
  return table.Text() + details.Text();
}

}  // namespace mcfit
