// SPDX-License-Identifier: Apache-2.0
#include "documents/settingsdocument.h"

#include "documents/fieldbins.h"
#include "documents/pmmlfile.h"
#include "documents/textattribute.h"
#include "errors.h"
#include "mcparsexml/mccomxprsutil.h"
#include "note.h"
#include "statustext.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <xercesc/dom/DOMElement.hpp>

namespace mcfit {

using MCCommon::MCStatus;
using MCComXPrsUtil::GetFirstChildElmt;
using MCComXPrsUtil::GetNextSiblingElmt;

namespace {

constexpr char kParameter[] = "Parameter";
constexpr char kMatrix[] = "MatrixParmeter";  // so spelled in the format

}  // namespace

SettingsDocument::SettingsDocument(const std::string& path) : fPath(path), fNames(path) {
  ReadDocument(fParser, path);
}

MCCommonMetadata::MCVarList SettingsDocument::Variables() const {
  MCCommonMetadata::MCVarList variables;
  const MCStatus fields = fParser.FillVarList(variables, false);
  CheckFields(fields, fPath, "DataDictionary", variables.Size());
  const int nFields = variables.Size();
  const MCStatus derived = fParser.FillTransDict(variables);
  CheckFields(derived, fPath, "TransformationDictionary", variables.Size() - nFields);
  return variables;
}

std::optional<DeclaredBins> SettingsDocument::Bins(const std::string& field) const {
  const FieldBins found(fParser, field);
  if (!found.exist) return {};
  if (!found.DoRise()) {
    throw InputError(fmt::format("{}: the ends of the bins of field {} don't rise",
                                 Printable(fPath), Quoted(field)));
  }
  return DeclaredBins{found.edges, found.HasNames() ? found.names : BinLabels(found.edges)};
}

bool SettingsDocument::Has(const char* name, const MCStatus& status) const {
  if (status.IsError()) {
    throw InputError(fmt::format("{}: {}", fNames(name), StatusText(status)));
  }
  if (status.GetErrorCode() == MCCommon::MCS_SET_NO_VALUE) {
    Note(fmt::format("note: {} has a place without a value; the default stands", fNames(name)));
  }
  return status.IsOK();
}

template <class Value>
std::optional<Value> SettingsDocument::One(const char* name) {
  fAsked.insert({kParameter, name});
  Value value{};
  if (!Has(name, fParser.GetParameter(name, value, nullptr))) return {};
  return value;
}

template std::optional<bool> SettingsDocument::One(const char*);
template std::optional<double> SettingsDocument::One(const char*);
template std::optional<int> SettingsDocument::One(const char*);
template std::optional<std::string> SettingsDocument::One(const char*);

std::optional<std::vector<std::string>> SettingsDocument::All(const char* name) {
  fAsked.insert({kParameter, name});
  std::vector<std::string> values;
  if (!Has(name, fParser.GetArray(name, values, nullptr))) return {};
  return values;
}

std::optional<std::vector<std::vector<std::string>>> SettingsDocument::Rows(const char* name) {
  fAsked.insert({kMatrix, name});
  std::vector<std::vector<std::string>> rows;
  if (!Has(name, fParser.GetMatrix(name, rows, nullptr))) return {};
  const auto isEmpty = [](const std::vector<std::string>& row) { return row.empty(); };
  rows.erase(std::remove_if(rows.begin(), rows.end(), isEmpty), rows.end());
  return rows;
}

std::vector<std::string> SettingsDocument::VariableNames(const char* name, NamesQuestion question) {
  fAsked.insert({kParameter, name});
  std::vector<std::string> names;
  if (!Has(name, (fParser.*question)(names))) return {};
  return names;
}

std::optional<std::string> SettingsDocument::FrequencyWeight() {
  fAsked.insert({kParameter, kFrequencyWeight});
  std::string name;
  if (!Has(kFrequencyWeight, fParser.GetFrequencyWeight(name))) return {};
  return name;
}

std::optional<std::string> SettingsDocument::VariableName(const char* name) {
  fAsked.insert({kParameter, name});
  std::string variable;
  if (!Has(name, fParser.GetVariables(name, variable))) return {};
  return variable;
}

void SettingsDocument::NoteTheRest() const {
  const xercesc::DOMElement* element = fParser.GetRootElement();
  for (const char* step : {"MiningBuildTask", "Extension", "Parameters"}) {
    if (element != nullptr) element = GetFirstChildElmt(*element, step);
  }
  std::set<Asked> met;
  element = element == nullptr ? nullptr : GetFirstChildElmt(*element, nullptr);
  for (; element != nullptr; element = GetNextSiblingElmt(*element, nullptr)) {
    const Asked found = {MCComXPrsUtil::ToUTF8(element->getTagName()),
                         TextAttribute(*element, "name")};
    if (fAsked.count(found) == 0) {
      Note(fmt::format("note: {}: {} {} means nothing to this build and is passed over",
                       Printable(fPath), Printable(found.first), Quoted(found.second)));
    } else if (!met.insert(found).second) {
      Note(fmt::format("note: {}: {} {} is there more than once; the first one stands",
                       Printable(fPath), Printable(found.first), Quoted(found.second)));
    }
  }
}

}  // namespace mcfit
