// SPDX-License-Identifier: Apache-2.0
#include "variablelist.h"

#include "errors.h"
#include "inputfile.h"
#include "mcxml/ioexception.h"
#include "mcxml/parseobj.h"
#include "mcxml/xmldoctype.h"
#include "mcxml/xmlobj.h"
#include "metadata/mcbinningencoder.h"
#include "metadata/mccontencoder.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>

namespace mcfit {

using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::MCVarList;

namespace {

constexpr std::size_t kLineTooLong = 256;  // for the readers of the save format

void RequireColumn(const CsvReader& reader, const std::string& name) {
  static_cast<void>(reader.ColumnIndex(name));
}

void RequireNamedColumns(const CsvReader& reader, const ColumnChoices& choices) {
  for (const std::string& name : reader.Header()) {
    if (name.empty()) throw InputError(fmt::format("{}: a column has no name", reader.Name()));
    RequireColumn(reader, name);
  }
  for (const std::string& name : choices.categorical) RequireColumn(reader, name);
  for (const std::string& name : choices.continuous) RequireColumn(reader, name);
  if (choices.weight) RequireColumn(reader, *choices.weight);
  for (const auto& [name, texts] : choices.missing) RequireColumn(reader, name);
  for (const auto& [name, bins] : choices.bins) RequireColumn(reader, name);
}

Reading ReadingOf(const std::string& name, const ColumnChoices& choices) {
  const bool isCategorical = choices.categorical.count(name) > 0;
  const bool isContinuous = choices.continuous.count(name) > 0 || choices.bins.count(name) > 0;
  const bool isWeight = choices.weight == name;
  if (isCategorical + isContinuous + isWeight > 1) {
    throw InputError(
        fmt::format("column {} can be one of categorical, continuous and weight", Quoted(name)));
  }
  if (isCategorical) return Reading::kTexts;
  return isContinuous || isWeight ? Reading::kNumbers : Reading::kDecide;
}

ScannedColumn ColumnToScan(const std::string& name, Reading reading, const ColumnChoices& choices) {
  ScannedColumn column;
  column.name = name;
  column.reading = reading;
  const auto missing = choices.missing.find(name);
  if (missing != choices.missing.end()) column.missing = missing->second;
  return column;
}

// The texts that aren't missing, as tables show them.
std::vector<std::string> SortedLabels(const ScannedColumn& column) {
  LabelTable sorted;
  for (int code = 0; code < column.texts.Size(); ++code) {
    const std::string& text = column.texts.Label(code);
    if (!column.IsMissingText(text)) sorted.Add(text);
  }
  sorted.Sort();
  std::vector<std::string> labels;
  for (int code = 0; code < sorted.Size(); ++code) labels.push_back(sorted.Label(code));
  return labels;
}

// Each number once: "1" and "1.0" are one.
std::vector<double> SortedNumbers(const ScannedColumn& column) {
  std::vector<double> numbers;
  for (const std::string& label : SortedLabels(column)) numbers.push_back(*ParseNumber(label));
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

bool HasCategories(const ScannedColumn& column) {
  if (!column.hasTexts) return false;
  if (column.reading == Reading::kTexts || !column.isNumeric) return true;
  return column.hasValues && column.isWhole && SortedNumbers(column).size() <= kMostWholeCategories;
}

// Bins need bounds between which as many different numbers lie.
void RequireBins(const IMCEncoder& encoder, const std::string& name) {
  const auto* bins =
      static_cast<const MCCommonMetadata::MCContEncoder&>(encoder).GetBinningEncoder();
  if (bins == nullptr) return;
  const std::vector<double>& cuts = bins->GetBinningCutpoints();
  const bool isRising = std::adjacent_find(cuts.begin(), cuts.end(), [](double a, double b) {
                          return !(a < b);
                        }) == cuts.end();
  if (isRising && std::isfinite(cuts.front()) && std::isfinite(cuts.back())) return;
  throw InputError(fmt::format("--bins: column {} has no room for {} bins of equal width",
                               Quoted(name), bins->GetNumberOfCategories()));
}

void AddContinuous(MCVarList& variables, const ScannedColumn& column, int bins) {
  if (!column.hasValues) {
    variables.AddContVar(column.name, "", MCCommonMetadata::MC_ROLE_INPUT);
  } else {
    variables.AddContVar(column.name, "", column.low, column.high, MCCommonMetadata::MC_ROLE_INPUT,
                         bins > 0, bins);
    RequireBins(*variables.GetEncoderAt(variables.Size() - 1), column.name);
  }
}

void AddVariable(MCVarList& variables, const ScannedColumn& column, const ColumnChoices& choices) {
  const auto role = MCCommonMetadata::MC_ROLE_INPUT;
  if (choices.weight == column.name) {
    variables.SetWeightVar(column.name, "", MCCommonMetadata::MC_ROUND_NEAREST);
  } else if (!HasCategories(column)) {
    const auto bins = choices.bins.find(column.name);
    AddContinuous(variables, column, bins == choices.bins.end() ? 0 : bins->second);
  } else if (column.isNumeric && column.hasValues) {
    variables.AddCatVar(column.name, "", SortedNumbers(column), role);
  } else {
    variables.AddCatVar(column.name, "", SortedLabels(column), role);
  }
}

MCCommonMetadata::VariableStorage StorageOf(const ScannedColumn& column) {
  if (!column.hasValues) return MCCommonMetadata::MC_STORAGE_UNDEFINED;
  if (!column.isNumeric) return MCCommonMetadata::MC_STORAGE_STRING;
  return column.isWhole ? MCCommonMetadata::MC_STORAGE_INTEGER : MCCommonMetadata::MC_STORAGE_REAL;
}

// A text that isn't a number is missing in a column of numbers without the encoder.
void AddMissing(IMCEncoder& encoder, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    if (encoder.GetEncoderType() == MCCommonMetadata::MC_ENC_STRING) {
      if (!encoder.IsMissing(text)) encoder.AddDiscreteUserMissing(text, "");
    } else if (const std::optional<double> number = ParseNumber(text)) {
      if (!encoder.IsMissing(*number)) encoder.AddDiscreteUserMissing(*number, "");
    }
  }
}

void RequireReadableLines(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.size() < kLineTooLong) continue;
    throw InputError(
        fmt::format("--save: the save format has no room for the name or category in {}",
                    Quoted(Trimmed(line))));
  }
}

}  // namespace

std::vector<ScannedColumn> ColumnsToScan(const CsvReader& reader, const ColumnChoices& choices) {
  RequireNamedColumns(reader, choices);
  std::vector<ScannedColumn> columns;
  for (const std::string& name : reader.Header()) {
    columns.push_back(ColumnToScan(name, ReadingOf(name, choices), choices));
  }
  return columns;
}

std::vector<ScannedColumn> ColumnsToScan(MCVarList& variables, const ColumnChoices& choices) {
  for (const auto& [name, texts] : choices.missing) {
    if (variables.FindVariable(name) < 0) {
      throw InputError(fmt::format("--missing: the list has no variable {}", Quoted(name)));
    }
  }
  std::vector<ScannedColumn> columns;
  for (int i = 0; i < variables.Size(); ++i) {
    IMCEncoder* encoder = variables.GetEncoderAt(i);
    const bool hasStrings =
        encoder != nullptr && encoder->GetEncoderType() == MCCommonMetadata::MC_ENC_STRING;
    columns.push_back(ColumnToScan(variables.GetVarAt(i)->GetVariableName(),
                                   hasStrings ? Reading::kTexts : Reading::kNumbers, choices));
    if (encoder != nullptr) AddMissing(*encoder, columns.back().missing);
  }
  return columns;
}

MCVarList MakeVariables(const TableScan& table, const ColumnChoices& choices) {
  MCVarList variables;
  for (const ScannedColumn& column : table.Columns()) {
    AddVariable(variables, column, choices);
    const int place = variables.Size() - 1;
    variables.GetVarAt(place)->SetVariableStorage(StorageOf(column));
    AddMissing(*variables.GetEncoderAt(place), column.missing);
  }
  return variables;
}

bool SaveVariables(const MCVarList& variables, OutputFile& out) {
  std::ostringstream body;
  MCCommonXML::StartRoot(body, "");
  variables.WriteObjectXML(body, 0);
  MCCommonXML::EndRoot(body);
  const std::string text = body.str();
  RequireReadableLines(text);

  const std::unique_ptr<MCCommonXML::XMLDocType> docType(MCCommonXML::XMLDocType::Create(
      std::string(MCCommonXML::XMLObj::ROOT), std::string(MCCommonXML::XMLObj::SYSTEM_ID), 0));
  std::string head;
  MCCommonXML::ExportFormat format;
  docType->ToString(head, format);
  out.Write(head);
  out.Write(text);
  out.Write("\n");
  return text.find('&') == std::string::npos;
}

MCVarList LoadVariables(const std::string& path) {
  std::ifstream file = OpenInput(path);
  MCVarList variables;
  bool isList = MCCommonXML::ParseStartXML(file);
  try {
    if (isList) variables.ReadObjectXML(file);
  } catch (const MCCommonMetadata::IOException&) {
    isList = false;
  }
  if (!isList) {
    throw InputError(
        fmt::format("{} holds no list of variables as --save writes it", Quoted(path)));
  }
  return variables;
}

}  // namespace mcfit
