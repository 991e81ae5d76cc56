// SPDX-License-Identifier: Apache-2.0
#include "variablestats.h"

#include "errors.h"
#include "metadata/mccontencoder.h"
#include "metadata/mccontvar.h"
#include "metadata/mcpmmlexporter.h"
#include "pmmldocument.h"
#include "regression/frame/mcmv.h"
#include "reporttext.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace mcfit {

using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::IMCVariable;
using MCCommonMetadata::MCUniStats;
using MCCommonMetadata::MCVarList;
using MCCommonXML::XMLElement;

namespace {

constexpr int kDigits = 7;
constexpr double kMostCases = 1e15;  // from here on, a count is written with an exponent
constexpr double kMissing = MCMV::gMissingValue;

// Whether values are codes: the encoder tells, whatever level a list from a file claims.
bool IsCategorical(const IMCVariable& variable) {
  const IMCEncoder* encoder = variable.GetEncoder();
  return encoder != nullptr && (encoder->GetEncoderType() == MCCommonMetadata::MC_ENC_CAT_NUM ||
                                encoder->GetEncoderType() == MCCommonMetadata::MC_ENC_STRING);
}

const MCCommonMetadata::MCBinningEncoder* BinsOf(const IMCVariable& variable) {
  const auto* encoder = dynamic_cast<const MCCommonMetadata::MCContEncoder*>(variable.GetEncoder());
  return encoder == nullptr ? nullptr : encoder->GetBinningEncoder();
}

const char* StorageWord(MCCommonMetadata::VariableStorage storage) {
  switch (storage) {
    case MCCommonMetadata::MC_STORAGE_INTEGER:
      return "whole numbers";
    case MCCommonMetadata::MC_STORAGE_REAL:
      return "numbers";
    case MCCommonMetadata::MC_STORAGE_STRING:
      return "texts";
    default:
      return "no values";
  }
}

const char* LevelWord(const IMCVariable& variable) {
  if (IsCategorical(variable)) return "categories";
  return variable.GetMeasureLevel() == MCCommonMetadata::MC_LEVEL_WEIGHT ? "frequency weight"
                                                                         : "continuous";
}

// What was decided about a variable.
std::string LevelText(IMCVariable& variable) {
  const MCCommonMetadata::MCBinningEncoder* bins = BinsOf(variable);
  return fmt::format(
      "{}, {}{}{}", StorageWord(variable.GetVariableStorage()), LevelWord(variable),
      bins == nullptr ? "" : fmt::format(" in {} bins", bins->GetNumberOfCategories()),
      variable.GetVarStatus() == MCCommonMetadata::MC_VAR_CONSTANT ? ", constant" : "");
}

std::string CategoriesText(const IMCVariable& variable) {
  return IsCategorical(variable) ? fmt::format("{}", variable.GetNumberOfCategories()) : ".";
}

// A number that isn't finite is one that nobody can compute with.
double FiniteOrMissing(double value) {
  return std::isfinite(value) ? value : kMissing;
}

}  // namespace

// Numerical method: West 1979, the running mean and sum of squares with weights.
void VariableStats::Add(bool isCategorical, double value, int bin, double weight) {
  if (value == kMissing || (isCategorical && value < 0.0)) {
    fMissing += weight;
    return;
  }
  const int cell = isCategorical ? static_cast<int>(value) : bin;
  if (cell >= 0) {
    const auto place = static_cast<std::size_t>(cell);
    if (place >= fFrequencies.size()) fFrequencies.resize(place + 1, 0.0);
    fFrequencies[place] += weight;
  }
  fLow = fCases > 0.0 ? std::min(fLow, value) : value;
  fHigh = fCases > 0.0 ? std::max(fHigh, value) : value;
  fCases += weight;
  const double distance = value - fMean;
  fMean += distance * (weight / fCases);
  fSquares += weight * distance * (value - fMean);
}

MCUniStats::SummStats VariableStats::Summary() const {
  MCUniStats::SummStats summary;
  if (!(fCases > 0.0)) return summary;
  summary.fMinimum = fLow;
  summary.fMaximum = fHigh;
  summary.fMean = FiniteOrMissing(fMean);
  if (fCases >= 2.0) summary.fStdDev = FiniteOrMissing(std::sqrt(fSquares / (fCases - 1.0)));
  return summary;
}

MCUniStats VariableStats::InPmml(const IMCVariable& variable) const {
  const std::string name = variable.GetVariableName();
  std::vector<double> frequencies = fFrequencies;
  if (IsCategorical(variable)) {
    frequencies.resize(static_cast<std::size_t>(variable.GetEncoder()->GetNumberOfCategories()));
    return MCUniStats(name, fCases, frequencies);
  }
  const MCCommonMetadata::MCBinningEncoder* bins = BinsOf(variable);
  if (bins == nullptr) return MCUniStats(name, fCases, Summary(), {}, {});
  frequencies.resize(static_cast<std::size_t>(bins->GetNumberOfCategories()));
  // The first bin holds all below it, the last all above.
  std::vector<double> cuts = {kMissing};
  cuts.insert(cuts.end(), bins->GetBinningCutpoints().begin(), bins->GetBinningCutpoints().end());
  cuts.push_back(kMissing);
  return MCUniStats(name, fCases, Summary(), frequencies, cuts);
}

TableDescription::CellReader::CellReader(IMCVariable& variable)
    : fpEncoder(variable.GetEncoder()),
      fpBins(BinsOf(variable)),
      fbHasTexts(fpEncoder != nullptr &&
                 fpEncoder->GetEncoderType() == MCCommonMetadata::MC_ENC_STRING),
      fbIsCategorical(IsCategorical(variable)) {}

double TableDescription::CellReader::Value(const ScannedCell& cell) const {
  if (fpEncoder == nullptr) return cell.number;
  if (!fbHasTexts) return fpEncoder->Encode(cell.number);
  return cell.text == nullptr ? kMissing : fpEncoder->Encode(*cell.text);
}

void TableDescription::CellReader::Add(const ScannedCell& cell, double weight,
                                       VariableStats& stats) const {
  const double value = Value(cell);
  const int bin = fpBins == nullptr ? -1 : static_cast<int>(fpBins->Encode(value));
  stats.Add(fbIsCategorical, value, bin, weight);
}

TableDescription::TableDescription(TableScan& table, MCVarList& variables, ProgressLine& progress)
    : fVariables(variables),
      fNRows(table.Rows()),
      fStats(static_cast<std::size_t>(variables.Size())) {
  for (int i = 0; i < variables.Size(); ++i) {
    fReaders.emplace_back(*variables.GetVarAt(i));
    if (variables.GetVarAt(i)->GetMeasureLevel() == MCCommonMetadata::MC_LEVEL_WEIGHT) fWeight = i;
  }
  table.Visit(progress, [this](const std::vector<ScannedCell>& cells) { AddRow(cells); });
  variables.UpdateNumbersOfCategories();
}

void TableDescription::AddRow(const std::vector<ScannedCell>& cells) {
  double weight = 1.0;
  const auto weightPlace = static_cast<std::size_t>(fWeight);
  if (fWeight >= 0) {
    weight = fReaders[weightPlace].Value(cells[weightPlace]);
    fStats[weightPlace].Add(false, weight, -1, 1.0);
    if (!(weight > 0.0)) {  // the missing value is below all numbers
      ++fNWeightless;
      return;
    }
  }
  for (std::size_t i = 0; i < fReaders.size(); ++i) {
    if (static_cast<int>(i) != fWeight) fReaders[i].Add(cells[i], weight, fStats[i]);
  }
}

std::string TableDescription::Text(const std::string& file) const {
  const NumberText number(kDigits);
  TextTable rows(1);
  rows.Add({"Rows read", fmt::format("{}", fNRows)});
  if (fWeight >= 0) {
    rows.Add({"Rows without weight", fmt::format("{}", fNWeightless), "left out below"});
  }
  TextTable table(7);
  table.Add(
      {"Variable", "Cases", "Missing", "Categories", "Mean", "Deviation", "Minimum", "Maximum"});
  table.AddRule();
  for (int i = 0; i < fVariables.Size(); ++i) {
    const VariableStats& stats = fStats[static_cast<std::size_t>(i)];
    IMCVariable& variable = *fVariables.GetVarAt(i);
    const MCUniStats::SummStats summary =
        IsCategorical(variable) ? MCUniStats::SummStats() : stats.Summary();
    table.Add({Printable(variable.GetVariableName()), number(stats.Cases()),
               number(stats.Missing()), CategoriesText(variable), number(Defined(summary.fMean)),
               number(Defined(summary.fStdDev)), number(Defined(summary.fMinimum)),
               number(Defined(summary.fMaximum)), LevelText(variable)});
  }
  table.AddRule();
  return fmt::format("Variables of {}\n\n{}\n{}", Printable(file), rows.Text(), table.Text());
}

// PMML holds statistics in models alone; a tree that is one leaf says nothing beside them.
void TableDescription::WritePmml(const std::string& file, OutputFile& out) const {
  PmmlDocument document("Variables of " + file, fVariables);
  XMLElement& model = document.AddModel("TreeModel", "classification");
  model.AddAttribute("modelName", "description");
  XMLElement& all = AddChild(model, "ModelStats");
  MCCommonMetadata::MCPMMLExporter exporter(nullptr);
  for (int i = 0; i < fVariables.Size(); ++i) {
    const VariableStats& found = fStats[static_cast<std::size_t>(i)];
    if (!(found.Cases() < kMostCases)) {
      throw InputError("--pmml: the weights add up to more than its counts can tell");
    }
    XMLElement* stats = nullptr;
    Require(exporter.ExportUniStats(found.InPmml(*fVariables.GetVarAt(i)), stats));
    all.AddElement(stats);
  }
  XMLElement& leaf = AddChild(model, "Node");
  leaf.AddAttribute("score", "all");
  leaf.AddAttribute("recordCount", static_cast<double>(fNRows - fNWeightless));
  AddChild(leaf, "True");
  document.Write(out);
}

std::string ListText(MCVarList& variables, const std::string& file) {
  const NumberText number(kDigits);
  TextTable table(3);
  table.Add({"Variable", "Categories", "Minimum", "Maximum"});
  table.AddRule();
  for (int i = 0; i < variables.Size(); ++i) {
    IMCVariable& variable = *variables.GetVarAt(i);
    const auto* continuous = dynamic_cast<const MCCommonMetadata::MCContVar*>(&variable);
    const auto bound = [&](double (MCCommonMetadata::MCContVar::*get)() const) {
      return continuous == nullptr ? "." : number((continuous->*get)());
    };
    table.Add({Printable(variable.GetVariableName()), CategoriesText(variable),
               bound(&MCCommonMetadata::MCContVar::GetMin),
               bound(&MCCommonMetadata::MCContVar::GetMax), LevelText(variable)});
  }
  table.AddRule();
  return fmt::format("Variables in {}\n\n{}", Printable(file), table.Text());
}

}  // namespace mcfit
