// SPDX-License-Identifier: Apache-2.0
#include "pmmldocument.h"

#include "errors.h"
#include "mcxml/writetree.h"
#include "metadata/mcpmmlexporter.h"
#include "text.h"

#include <fmt/format.h>

#include <cmath>
#include <ostream>
#include <streambuf>

namespace mcfit {

using MCCommonMetadata::MCVarList;
using MCCommonXML::XMLElement;

namespace {

/// Hands what is put on a stream to an output file.
class OutputBuffer : public std::streambuf {
public:
  explicit OutputBuffer(OutputFile& out) : fOut(out) {}

protected:
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    fOut.Write({text, static_cast<std::size_t>(length)});
    return length;
  }
  int_type overflow(int_type c) override {
    const char text = traits_type::to_char_type(c);
    fOut.Write({&text, 1});
    return c;
  }

private:
  OutputFile& fOut;
};

const char* UsageOf(MCCommonMetadata::VariableRole role) {
  if (role == MCCommonMetadata::MC_ROLE_TARGET) return "predicted";
  return role == MCCommonMetadata::MC_ROLE_WEIGHT ? "supplementary" : "active";
}

void RequireXmlText(const std::string& text, const std::string& name) {
  if (IsXmlText(text)) return;
  throw InputError(
      fmt::format("column {}: XML can't hold the text {}, which isn't UTF-8 or has "
                  "control characters",
                  Quoted(name), Quoted(text)));
}

void RequireXmlTexts(const MCVarList& variables) {
  for (int i = 0; i < variables.Size(); ++i) {
    const std::string name = variables.GetVarAt(i)->GetVariableName();
    RequireXmlText(name, name);
    const MCCommonMetadata::IMCEncoder* encoder = variables.GetEncoderAt(i);
    if (encoder == nullptr) continue;
    for (int code = 0; code < encoder->GetNumberOfCategories(); ++code) {
      RequireXmlText(encoder->Decode(code), name);
    }
    const std::vector<std::string>* missing = encoder->GetDiscreteMissValuesStr();
    if (missing == nullptr) continue;
    for (const std::string& text : *missing) RequireXmlText(text, name);
  }
}

}  // namespace

XMLElement& AddChild(XMLElement& parent, const char* name) {
  XMLElement* child = XMLElement::Create(name);
  parent.AddElement(child);
  return *child;
}

void Require(const MCCommon::MCStatus& status) {
  if (status.IsError()) {
    throw ModelError(fmt::format("PMML export ended with status {}", status.GetErrorCode()));
  }
}

std::string ExactNumber(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0.0 ? "INF" : "-INF";
  return fmt::format("{}", value + 0.0);  // which takes the sign off a zero
}

PmmlDocument::PmmlDocument(const std::string& description, const MCVarList& variables)
    : fVariables(variables) {
  RequireXmlTexts(variables);
  MCCommonMetadata::MCPMMLExporter exporter(nullptr);
  fRoot.reset(exporter.ExportPMMLElement());
  const MCCommonMetadata::MCApplicInfo4XML program("mcfit", MCFIT_VERSION);
  XMLElement* piece = nullptr;
  Require(exporter.ExportHeader(&program, description, true, piece));
  fRoot->AddElement(piece);
  Require(exporter.ExportDataDictionary(variables, {}, piece));
  fRoot->AddElement(piece);
}

XMLElement& PmmlDocument::AddModel(const char* name, const char* functionName) {
  XMLElement& model = AddChild(*fRoot, name);
  model.AddAttribute("functionName", functionName);
  XMLElement& schema = AddChild(model, "MiningSchema");
  for (int i = 0; i < fVariables.Size(); ++i) {
    const MCCommonMetadata::IMCVariable& variable = *fVariables.GetVarAt(i);
    if (variable.GetVariableRole() == MCCommonMetadata::MC_ROLE_UNUSED) continue;
    XMLElement& field = AddChild(schema, "MiningField");
    field.AddAttribute("name", variable.GetVariableName());
    field.AddAttribute("usageType", UsageOf(variable.GetVariableRole()));
  }
  return model;
}

void PmmlDocument::Write(OutputFile& out) const {
  OutputBuffer buffer(out);
  std::ostream stream(&buffer);
  stream.exceptions(std::ios::badbit);  // what the file throws passes on
  MCCommonXML::WriteTree(stream, nullptr, fRoot.get(), true);
  stream.put('\n');
}

}  // namespace mcfit
