// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcsettingsparser.h"

#include "mcparsexml/detail/mcbinindex.h"
#include "mcparsexml/detail/mcfieldreader.h"
#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {

using MCCommon::MCStatus;
using MCCommonMetadata::MCVarList;
using xercesc::DOMElement;
using xercesc::DOMNode;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

// What settings add to the words of PMML, the spelling of a matrix included.
constexpr char kMiningBuildTask[] = "MiningBuildTask";
constexpr char kParameters[] = "Parameters";
constexpr char kComplexParameter[] = "ComplexParameter";
constexpr char kMatrixParameter[] = "MatrixParmeter";
constexpr char kArrayParameter[] = "ArrayParameter";
constexpr char kListValue[] = "ListValue";
constexpr char kIsList[] = "isList";
constexpr char kTrue[] = "true";
constexpr char kFalse[] = "false";

// By their codes.
constexpr std::array<const char*, 6> kParameterTypes = {
    Word::kString, Word::kDouble, Word::kInteger, "boolean", "enum", "fieldName"};

const std::vector<detail::DataType>& SettingsTypes() {
  static const std::vector<detail::DataType> types = {
      {Word::kString, true, MCCommonMetadata::MC_STORAGE_STRING},
      {Word::kDate, false, MCCommonMetadata::MC_STORAGE_DATE},
      {Word::kTime, false, MCCommonMetadata::MC_STORAGE_TIME},
      {Word::kDateTime, false, MCCommonMetadata::MC_STORAGE_TIMESTAMP},
      {Word::kDouble, false, MCCommonMetadata::MC_STORAGE_REAL},
      {Word::kFloat, false, MCCommonMetadata::MC_STORAGE_REAL},
      {Word::kInteger, false, MCCommonMetadata::MC_STORAGE_INTEGER}};
  return types;
}

MCStatus Error(long code) {
  return MCStatus(code, false);
}

MCStatus Warning(long code) {
  return MCStatus(code, true);
}

// Of the document, or null.
const DOMElement* FindParameters(const DOMElement& root) {
  const DOMElement* element = &root;
  for (const char* tag : {kMiningBuildTask, Word::kExtension, kParameters}) {
    element = GetFirstChildElmt(*element, tag);
    if (element == nullptr) return nullptr;
  }
  return element;
}

const DOMElement* FindNamed(const DOMElement& scope, const char* tag, const char* name) {
  const DOMElement* element = GetFirstChildElmt(scope, tag);
  while (element != nullptr && !XStrEqualsUTF8Str(GetAttribute(*element, Word::kName), name)) {
    element = GetNextSiblingElmt(*element, tag);
  }
  return element;
}

bool IsList(const DOMElement& parameter) {
  return XStrEqualsUTF8Str(GetAttribute(parameter, kIsList), kTrue);
}

// The attribute "value": 0 if it was read, -1 if it is absent, 1 if it isn't such a value.
int ReadValue(const DOMElement& element, double& value) {
  return GetDoubleAttribute(element, Word::kValueAttribute, value);
}

int ReadValue(const DOMElement& element, int& value) {
  return GetIntAttribute(element, Word::kValueAttribute, 0, value);
}

int ReadValue(const DOMElement& element, std::string& value) {
  const XMLCh* text = GetAttribute(element, Word::kValueAttribute);
  if (text == nullptr) return -1;
  value = ToUTF8(text);
  return 0;
}

int ReadValue(const DOMElement& element, bool& value) {
  const XMLCh* text = GetAttribute(element, Word::kValueAttribute);
  if (text == nullptr) return -1;
  value = XStrEqualsUTF8Str(text, kTrue);
  return value || XStrEqualsUTF8Str(text, kFalse) ? 0 : 1;
}

template <class Value>
MCStatus AppendValue(const DOMElement& element, std::vector<Value>& values) {
  Value value{};
  const int answer = ReadValue(element, value);
  if (answer < 0) return Warning(MCCommon::MCS_SET_NO_VALUE);
  if (answer > 0) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  values.push_back(std::move(value));
  return MCStatus();
}

// A value that can't be read is left out of its row.
template <class Value>
std::vector<Value> ReadRow(const DOMElement& array) {
  std::vector<Value> row;
  const DOMElement* element = GetFirstChildElmt(array, Word::kValue);
  for (; element != nullptr; element = GetNextSiblingElmt(*element, Word::kValue)) {
    Value value{};
    if (ReadValue(*element, value) == 0) row.push_back(std::move(value));
  }
  return row;
}

std::size_t CountChildNodes(const DOMElement& element) {
  std::size_t n = 0;
  for (const DOMNode* node = element.getFirstChild(); node != nullptr;
       node = node->getNextSibling()) {
    ++n;
  }
  return n;
}

MCStatus AppendName(const DOMElement& element, std::vector<std::string>& names) {
  std::string name;
  if (ReadValue(element, name) != 0) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  if (!name.empty()) names.push_back(std::move(name));
  return MCStatus();
}

}  // namespace

MCSettingsParser::MCSettingsParser() = default;

MCSettingsParser::~MCSettingsParser() = default;

MCStatus MCSettingsParser::ParseToDOM(std::istream& stream) {
  const MCStatus status = MCPMMLParser::ParseToDOM(stream);
  if (status.IsOK() && FindParameters(*GetRootElement()) == nullptr) {
    SetStatus(Error(MCCommon::MCS_SET_NO_PARAMETERS));
  }
  return GetStatus();
}

const DOMElement* MCSettingsParser::Find(const char* tag, const char* name, const void* scope,
                                         MCStatus& status) const {
  status = GetDocumentStatus();
  if (!status.IsOK()) return nullptr;
  // Found anew each time: a host may have had the base alone read a document.
  const DOMElement* parameters = FindParameters(*GetRootElement());
  if (parameters == nullptr) {
    status = Error(MCCommon::MCS_SET_NO_PARAMETERS);
    return nullptr;
  }
  const auto& place = scope == nullptr ? *parameters : *static_cast<const DOMElement*>(scope);
  const DOMElement* element = FindNamed(place, tag, name);
  if (element == nullptr) status = Warning(MCCommon::MCS_SET_NOT_FOUND);
  return element;
}

int MCSettingsParser::GetParameterType(const char* name, void* scope) {
  MCStatus status;
  const DOMElement* parameter = Find(Word::kParameter, name, scope, status);
  if (parameter == nullptr) return static_cast<int>(kParameterTypes.size());
  const XMLCh* word = GetAttribute(*parameter, Word::kType);
  const auto type =
      std::find_if(kParameterTypes.begin(), kParameterTypes.end(),
                   [word](const char* known) { return XStrEqualsUTF8Str(word, known); });
  return static_cast<int>(type - kParameterTypes.begin());
}

void* MCSettingsParser::GetComplexParameter(const char* name, void* scope) {
  MCStatus status;
  // A host can do nothing with it but hand it back.
  return const_cast<DOMElement*>(Find(kComplexParameter, name, scope, status));
}

template <class Value>
MCStatus MCSettingsParser::GetOne(const char* name, Value& value, const void* scope) const {
  MCStatus status;
  const DOMElement* parameter = Find(Word::kParameter, name, scope, status);
  if (parameter == nullptr) return status;
  Value read{};
  const int answer = ReadValue(*parameter, read);
  if (answer > 0) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  if (answer < 0) {
    const bool isList = GetFirstChildElmt(*parameter, kListValue) != nullptr;
    return isList ? Error(MCCommon::MCS_SET_IS_LIST) : Warning(MCCommon::MCS_SET_NO_VALUE);
  }
  value = std::move(read);
  return status;
}

MCStatus MCSettingsParser::GetParameter(const char* name, bool& value, void* scope) const {
  return GetOne(name, value, scope);
}

MCStatus MCSettingsParser::GetParameter(const char* name, double& value, void* scope) const {
  return GetOne(name, value, scope);
}

MCStatus MCSettingsParser::GetParameter(const char* name, int& value, void* scope) const {
  return GetOne(name, value, scope);
}

MCStatus MCSettingsParser::GetParameter(const char* name, std::string& value, void* scope) const {
  return GetOne(name, value, scope);
}

template <class Value>
MCStatus MCSettingsParser::GetAll(const char* name, std::vector<Value>& values,
                                  const void* scope) const {
  MCStatus status;
  const DOMElement* parameter = Find(Word::kParameter, name, scope, status);
  if (parameter == nullptr) return status;
  values.clear();
  const DOMElement* list = GetFirstChildElmt(*parameter, kListValue);
  if (list == nullptr) return AppendValue(*parameter, values);

  const DOMElement* element = GetFirstChildElmt(*list, Word::kValue);
  if (element == nullptr) return Warning(MCCommon::MCS_SET_NO_VALUE);
  for (; element != nullptr && status.IsOK();
       element = GetNextSiblingElmt(*element, Word::kValue)) {
    status = AppendValue(*element, values);
  }
  return status;
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<int>& values, void* scope) const {
  return GetAll(name, values, scope);
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<double>& values,
                                    void* scope) const {
  return GetAll(name, values, scope);
}

MCStatus MCSettingsParser::GetArray(const char* name, std::vector<std::string>& values,
                                    void* scope) const {
  return GetAll(name, values, scope);
}

template <class Value>
MCStatus MCSettingsParser::GetRows(const char* name, std::vector<std::vector<Value>>& rows,
                                   const void* scope) const {
  MCStatus status;
  const DOMElement* matrix = Find(kMatrixParameter, name, scope, status);
  if (matrix == nullptr) return status;
  rows.assign(CountChildNodes(*matrix), {});
  const DOMElement* array = GetFirstChildElmt(*matrix, kArrayParameter);
  for (; array != nullptr; array = GetNextSiblingElmt(*array, kArrayParameter)) {
    rows.push_back(ReadRow<Value>(*array));
  }
  return status;
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<int>>& rows,
                                     void* scope) const {
  return GetRows(name, rows, scope);
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<double>>& rows,
                                     void* scope) const {
  return GetRows(name, rows, scope);
}

MCStatus MCSettingsParser::GetMatrix(const char* name, std::vector<std::vector<std::string>>& rows,
                                     void* scope) const {
  return GetRows(name, rows, scope);
}

MCStatus MCSettingsParser::GetVariables(const char* name, std::vector<std::string>& names) const {
  MCStatus status;
  const DOMElement* parameter = Find(Word::kParameter, name, nullptr, status);
  if (parameter == nullptr) return status;
  names.clear();
  if (!IsList(*parameter)) return AppendName(*parameter, names);

  const DOMElement* list = GetFirstChildElmt(*parameter, kListValue);
  if (list == nullptr) return Error(MCCommon::MCS_SET_NO_LIST);
  const DOMElement* element = GetFirstChildElmt(*list, Word::kValue);
  for (; element != nullptr && status.IsOK();
       element = GetNextSiblingElmt(*element, Word::kValue)) {
    status = AppendName(*element, names);
  }
  return status;
}

MCStatus MCSettingsParser::GetVariables(const char* name, std::string& value) const {
  MCStatus status;
  const DOMElement* parameter = Find(Word::kParameter, name, nullptr, status);
  if (parameter == nullptr || ReadValue(*parameter, value) == 0) return status;
  return Error(IsList(*parameter) ? MCCommon::MCS_SET_IS_LIST : MCCommon::MCS_DOC_MISSING_ITEM);
}

MCStatus MCSettingsParser::GetPredictors(std::vector<std::string>& names) const {
  return GetArray("inputs", names, nullptr);
}

MCStatus MCSettingsParser::GetTargetVars(std::vector<std::string>& names) const {
  return GetArray("target", names, nullptr);
}

MCStatus MCSettingsParser::GetContPredictors(std::vector<std::string>& names) const {
  return GetVariables("ContPredictors", names);
}

MCStatus MCSettingsParser::GetCatPredictors(std::vector<std::string>& names) const {
  return GetVariables("CatPredictors", names);
}

MCStatus MCSettingsParser::GetContResponseVars(std::vector<std::string>& names) const {
  return GetVariables("ContResponses", names);
}

MCStatus MCSettingsParser::GetCatResponseVars(std::vector<std::string>& names) const {
  return GetVariables("CatResponses", names);
}

MCStatus MCSettingsParser::GetFrequencyWeight(std::string& value) const {
  return GetVariables("FrequencyWeightVar", value);
}

MCStatus MCSettingsParser::FillVarList(MCVarList& list, bool bins) const {
  const MCStatus status = GetDocumentStatus();
  if (!status.IsOK()) return status;
  detail::MCFieldReader reader({Word::kDataField, &SettingsTypes(), detail::RangePlace::kField},
                               list);
  if (bins) reader.TakeBins(*GetBins());
  return reader.ReadFields(*GetDataDictionary());
}

MCStatus MCSettingsParser::FillTransDict(MCVarList& list) const {
  const MCStatus status = GetDocumentStatus();
  if (!status.IsOK() || GetTransDictionary() == nullptr) return status;
  const detail::MCFieldReader reader(
      {Word::kDerivedField, &SettingsTypes(), detail::RangePlace::kFieldOrExtension}, list);
  return reader.ReadFields(*GetTransDictionary());
}

}  // namespace MCComXPrsUtil
