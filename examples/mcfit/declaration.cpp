// SPDX-License-Identifier: Apache-2.0
#include "declaration.h"

#include "metadata/mccontvar.h"
#include "text.h"

#include <fmt/format.h>

#include <limits>
#include <utility>

namespace mcfit {

using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::IMCVariable;

namespace {

// As the dictionary of a document has them or, where its digits don't tell a number, exactly.
std::vector<std::string> CategoryLabels(const IMCEncoder& encoder) {
  const bool areNumbers = encoder.GetEncoderType() == MCCommonMetadata::MC_ENC_CAT_NUM;
  std::vector<std::string> labels;
  std::vector<std::string> exact;
  bool isExact = true;
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    labels.push_back(encoder.Decode(code));
    if (!areNumbers) continue;
    exact.push_back(fmt::format("{}", encoder.DecodeNum(code)));
    isExact = isExact && ParseNumber(labels.back()) == encoder.DecodeNum(code);
  }
  return isExact ? labels : exact;
}

}  // namespace

std::vector<std::string> BinLabels(const std::vector<double>& edges) {
  if (edges.empty()) return {"all"};
  std::vector<std::string> labels = {fmt::format("<= {}", edges.front())};
  for (std::size_t i = 1; i < edges.size(); ++i) {
    labels.push_back(fmt::format("({}, {}]", edges[i - 1], edges[i]));
  }
  labels.push_back(fmt::format("> {}", edges.back()));
  return labels;
}

Declaration::Declaration(const IMCVariable& variable, std::optional<DeclaredBins> bins)
    : fVariable(variable),
      fEncoder(*variable.GetEncoder()),
      fBins(std::move(bins)),
      fbHasStrings(fEncoder.GetEncoderType() == MCCommonMetadata::MC_ENC_STRING),
      fbHasNumericCategories(fEncoder.GetEncoderType() == MCCommonMetadata::MC_ENC_CAT_NUM),
      fLow(std::numeric_limits<double>::lowest()),
      fHigh(std::numeric_limits<double>::max()) {
  if (fBins) {
    fBinning.SetBinningCutpoints(fBins->edges);
    fLabels = fBins->labels;
  } else if (fbHasStrings || fbHasNumericCategories) {
    fLabels = CategoryLabels(fEncoder);
  } else if (const auto* range = dynamic_cast<const MCCommonMetadata::MCContVar*>(&variable)) {
    fLow = range->GetMin();
    fHigh = range->GetMax();
  }
}

Declaration::Finding Declaration::Read(std::string_view cell, double& value) const {
  if (fbHasStrings) return ReadText(std::string(cell), value);
  const std::optional<double> number = ParseNumber(cell);
  return number ? ReadNumber(*number, value) : Finding::kNoNumber;
}

Declaration::Finding Declaration::ReadText(const std::string& cell, double& value) const {
  if (fEncoder.IsMissing(cell)) return Finding::kMissing;
  return CodeOf(fEncoder.EncodeConst(cell), value);
}

Declaration::Finding Declaration::ReadNumber(double number, double& value) const {
  if (fEncoder.IsMissing(number)) return Finding::kMissing;
  if (fbHasNumericCategories) return CodeOf(fEncoder.EncodeConst(number), value);
  if (number < fLow || number > fHigh) return Finding::kUndeclared;
  value = fEncoder.EncodeConst(number);
  if (fBins) value = fBinning.Encode(value);
  return Finding::kValue;
}

Declaration::Finding Declaration::CodeOf(double code, double& value) const {
  if (fLabels.empty()) return Finding::kOpenLabel;
  if (code < 0.0) return Finding::kUndeclared;
  value = code;
  return Finding::kValue;
}

std::string Declaration::Label(std::string_view cell) const {
  return fbHasStrings ? std::string(cell)
                      : fmt::format("{}", ParseNumber(cell).value_or(0.0) + 0.0);
}

Declarations::Declarations(MCCommonMetadata::MCVarList variables,
                           const std::map<std::string, DeclaredBins>& bins)
    : fVariables(std::move(variables)) {
  for (int i = 0; i < fVariables.Size(); ++i) {
    const IMCVariable& variable = *std::as_const(fVariables).GetVarAt(i);
    const std::string name = variable.GetVariableName();
    const auto found = bins.find(name);
    fDeclarations.emplace(
        name, found == bins.end() ? Declaration(variable) : Declaration(variable, found->second));
  }
}

const Declaration* Declarations::Find(const std::string& name) const {
  const auto found = fDeclarations.find(name);
  return found == fDeclarations.end() ? nullptr : &found->second;
}

}  // namespace mcfit
