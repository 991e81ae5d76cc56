// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcpmmlexporter.h"

#include "mcxml/xmltext.h"
#include "metadata/detail/pmmlwords.h"
#include "metadata/mccatvar.h"
#include "regression/frame/mcmv.h"

#include <cstddef>
#include <ctime>
#include <limits>
#include <numeric>

namespace MCCommonMetadata {

using MCCommon::MCStatus;
using MCCommonXML::XMLElement;
using MCCommonXML::XMLString;
namespace Word = detail::PMMLWord;

namespace {

// Adds a child and answers it, so that its attributes can follow.
XMLElement& AddChild(XMLElement& parent, const char* name) {
  XMLElement* child = XMLElement::Create(name);
  parent.AddElement(child);
  return *child;
}

void AddNonEmpty(XMLElement& element, const char* name, const std::string& value) {
  if (!value.empty()) element.AddAttribute(name, value);
}

void AddPresent(XMLElement& element, const char* name, double value) {
  if (value != MCMV::gMissingValue) element.AddAttribute(name, value);
}

std::string LocalTime() {
  const std::time_t now = std::time(nullptr);
  char text[64] = "";
  std::string line = ctime_r(&now, text) == nullptr ? "\n" : text;
  line.pop_back();  // the line end
  return line;
}

template <class Value>
std::unique_ptr<XMLElement> MakeExtension(const std::string& name, const Value* value) {
  std::unique_ptr<XMLElement> extension(XMLElement::Create(Word::kExtension));
  AddNonEmpty(*extension, Word::kName, name);
  if (value != nullptr) extension->AddAttribute(Word::kValueAttribute, *value);
  extension->AddAttribute(Word::kExtender, Word::kVendorDomain);
  return extension;
}

void AddArray(XMLElement& parent, const std::vector<double>& values) {
  XMLElement& array = AddChild(parent, Word::kArray);
  array.AddAttribute(Word::kType, Word::kReal);
  if (values.empty()) return;
  std::string text;
  for (const double value : values) {
    if (!text.empty()) text += ' ';
    text += value == MCMV::gMissingValue ? "NaN" : MCCommonXML::Format(value, false, nullptr);
  }
  array.AddElement(XMLString::Create(text));
}

bool IsCategorical(MeasureLevel level) {
  return level == MC_LEVEL_CAT_NUM || level == MC_LEVEL_CAT_STRING;
}

// Null for a level that isn't known.
const char* OpTypeOf(const IMCVariable& variable) {
  const MeasureLevel level = variable.GetMeasureLevel();
  if (level == MC_LEVEL_CONTINUOUS || level == MC_LEVEL_WEIGHT) return Word::kContinuous;
  if (!IsCategorical(level)) return nullptr;
  const auto* categorical = dynamic_cast<const MCCatVar*>(&variable);
  const bool isOrdinal = categorical != nullptr && categorical->GetOrdinalFlag();
  return isOrdinal ? Word::kOrdinal : Word::kCategorical;
}

template <class Value>
void AddValue(XMLElement& field, const Value& value, const std::vector<std::string>* labels,
              std::size_t i, const char* property) {
  XMLElement& element = AddChild(field, Word::kValue);
  element.AddAttribute(Word::kValueAttribute, value);
  if (labels != nullptr && i < labels->size()) {
    AddNonEmpty(element, Word::kDisplayValue, (*labels)[i]);
  }
  element.AddAttribute(Word::kProperty, property);
}

void AddValidValues(XMLElement& field, const IMCVariable& variable, const IMCEncoder& encoder) {
  const int n = encoder.GetNumberOfCategories();
  const bool areLabelled = n == variable.GetNumberOfCategories();
  const std::vector<std::string>* labels = areLabelled ? encoder.GetValueLabels() : nullptr;
  for (int i = 0; i < n; ++i) {
    AddValue(field, encoder.Decode(i), labels, static_cast<std::size_t>(i), Word::kValid);
  }
}

template <class Value>
bool AddMissingValues(XMLElement& field, const std::vector<Value>* values,
                      const std::vector<std::string>* labels) {
  if (values == nullptr || values->empty()) return false;
  for (std::size_t i = 0; i < values->size(); ++i) {
    AddValue(field, (*values)[i], labels, i, Word::kMissing);
  }
  return true;
}

void AddMissingInterval(XMLElement& field, const IMCEncoder& encoder) {
  double low = 0.0;
  double high = 0.0;
  if (!encoder.GetMissingInterval(low, high)) return;
  if (low != std::numeric_limits<double>::lowest()) {
    field.AddElement(MakeExtension(Word::kInvalidRangeLower, &low).release());
  }
  if (high != std::numeric_limits<double>::max()) {
    field.AddElement(MakeExtension(Word::kInvalidRangeUpper, &high).release());
  }
}

MCStatus FailAt(long code, int index) {
  MCStatus status(code, false);
  status.SetDiscreteDatum(0, index);
  return status;
}

void AddContinuousStats(XMLElement& element, const MCUniStats& stats) {
  const MCUniStats::SummStats& summary = stats.GetSummStats();
  XMLElement& info = AddChild(element, Word::kNumericInfo);
  AddPresent(info, Word::kMinimum, summary.fMinimum);
  AddPresent(info, Word::kMaximum, summary.fMaximum);
  AddPresent(info, Word::kMean, summary.fMean);
  AddPresent(info, Word::kStandardDeviation, summary.fStdDev);

  XMLElement& histogram = AddChild(element, Word::kContStats);
  const std::vector<double>& cuts = stats.GetCutPoints();
  if (cuts.empty()) return;
  const char* closure = stats.AreIntervalsOpenLeft() ? Word::kOpenClosed : Word::kClosedOpen;
  for (std::size_t i = 1; i < cuts.size(); ++i) {
    XMLElement& interval = AddChild(histogram, Word::kInterval);
    AddPresent(interval, Word::kLeftMargin, cuts[i - 1]);
    AddPresent(interval, Word::kRightMargin, cuts[i]);
    interval.AddAttribute(Word::kClosure, closure);
  }
  AddArray(histogram, stats.GetFrequencies());
}

}  // namespace

MCPMMLExporter::MCPMMLExporter(MCQueryCancel* cancel) : fpCancel(cancel) {}

MCPMMLExporter::~MCPMMLExporter() = default;

XMLElement* MCPMMLExporter::ExportPMMLElement() const {
  std::unique_ptr<XMLElement> root(XMLElement::Create(Word::kPMML));
  root->AddAttribute(Word::kVersion, Word::kVersion32);
  root->AddAttribute(Word::kXmlns, Word::kNamespace32);
  root->AddAttribute(Word::kXmlnsXsi, Word::kXsi);
  root->AddAttribute(Word::kSchemaLocation, Word::kSchemaLocation32);
  return root.release();
}

MCStatus MCPMMLExporter::ExportHeader(const MCApplicInfo4XML* info, const std::string& description,
                                      bool timestamp, XMLElement*& out) {
  const MCApplicInfo4XML application = info == nullptr ? MCApplicInfo4XML() : *info;
  const std::string& copyright = application.fCopyright;
  fpElement.reset(XMLElement::Create(Word::kHeader));
  fpElement->AddAttribute(Word::kCopyright, copyright.empty() ? Word::kCopyrightLine : copyright);
  AddNonEmpty(*fpElement, Word::kDescription, description);
  if (!application.fName.empty() || !application.fVersion.empty()) {
    XMLElement& element = AddChild(*fpElement, Word::kApplication);
    AddNonEmpty(element, Word::kName, application.fName);
    AddNonEmpty(element, Word::kVersion, application.fVersion);
  }
  if (timestamp) {
    AddChild(*fpElement, Word::kTimestamp).AddElement(XMLString::Create(LocalTime()));
  }
  out = fpElement.release();
  return MCStatus();
}

MCStatus MCPMMLExporter::ExportDataDictionary(const MCVarList& list,
                                              const std::vector<int>& indices, XMLElement*& out) {
  fpElement.reset(XMLElement::Create(Word::kDataDictionary));
  std::vector<int> fields = indices;
  for (int i = 0; indices.empty() && i < list.Size(); ++i) {
    if (list.GetVariableRole(i) != MC_ROLE_UNUSED) fields.push_back(i);
  }
  int nFields = 0;
  MCStatus status = AddFields(list, fields, nFields);
  fpElement->AddAttribute(Word::kNumberOfFields, static_cast<double>(nFields));
  if (IsCancelled()) {
    fpElement.reset();
    status = MCStatus(MCCommon::MCS_CANCELLED, false);
  }
  out = fpElement.release();
  return status;
}

MCStatus MCPMMLExporter::AddFields(const MCVarList& list, const std::vector<int>& indices,
                                   int& nFields) {
  for (const int index : indices) {
    if (IsCancelled()) break;
    if (index < 0 || index >= list.Size()) return FailAt(MCCommon::MCS_PMML_BAD_INDEX, index);
    const IMCVariable* variable = list.GetVarAt(index);
    if (variable == nullptr) return FailAt(MCCommon::MCS_PMML_NO_VARIABLE, index);
    AddField(*variable);
    ++nFields;
  }
  return MCStatus();
}

void MCPMMLExporter::AddField(const IMCVariable& variable) {
  const MeasureLevel level = variable.GetMeasureLevel();
  XMLElement& field = AddChild(*fpElement, Word::kDataField);
  field.AddAttribute(Word::kName, variable.GetVariableName());
  AddNonEmpty(field, Word::kDisplayName, variable.GetVariableLabel());
  if (const char* opType = OpTypeOf(variable)) field.AddAttribute(Word::kOptype, opType);
  field.AddAttribute(Word::kDataType, level == MC_LEVEL_CAT_STRING ? Word::kString : Word::kFloat);

  const IMCEncoder* encoder = variable.GetEncoder();
  if (encoder == nullptr) return;
  if (IsCategorical(level)) AddValidValues(field, variable, *encoder);
  const std::vector<std::string>* labels = encoder->GetMissValueLabels();
  if (!AddMissingValues(field, encoder->GetDiscreteMissValuesStr(), labels)) {
    AddMissingValues(field, encoder->GetDiscreteMissValues(), labels);
  }
  AddMissingInterval(field, *encoder);
}

MCStatus MCPMMLExporter::ExportUniStats(const MCUniStats& stats, XMLElement*& out) {
  out = nullptr;
  if (!stats.IsValid()) return MCStatus(MCCommon::MCS_PMML_STATS_INVALID, false);
  std::unique_ptr<XMLElement> element(XMLElement::Create(Word::kUnivariateStats));
  element->AddAttribute(Word::kField, stats.GetVarName());
  AddChild(*element, Word::kCounts).AddAttribute(Word::kTotalFreq, stats.GetNumberOfCases());
  if (stats.IsCategorical()) {
    AddArray(AddChild(*element, Word::kDiscrStats), stats.GetFrequencies());
  } else {
    AddContinuousStats(*element, stats);
  }
  out = element.release();
  return MCStatus();
}

void MCPMMLExporter::ExportExtension(const std::string& name, const std::string& value,
                                     XMLElement*& out) {
  out = nullptr;
  out = MakeExtension(name, value.empty() ? nullptr : &value).release();
}

void MCPMMLExporter::ExportExtension(const std::string& name, double value, XMLElement*& out) {
  out = nullptr;
  out = MakeExtension(name, &value).release();
}

}  // namespace MCCommonMetadata
