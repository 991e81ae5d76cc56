// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcfieldreader.h"

#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

namespace MCComXPrsUtil {
namespace detail {

using MCCommon::MCStatus;
using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::MCVarList;
using xercesc::DOMElement;
namespace Word = MCCommonMetadata::detail::PMMLWord;

struct MCFieldReader::Head {
  std::string fName;
  std::string fLabel;
  const DataType* fpType = nullptr;
  bool fbContinuous = false;
};

namespace {

// Ends that nothing was told of are those of all doubles.
struct Interval {
  double fLow = std::numeric_limits<double>::lowest();
  double fHigh = std::numeric_limits<double>::max();

  bool IsTold() const { return fLow != Interval().fLow || fHigh != Interval().fHigh; }
};

// Labels are gathered beside the values, and may be more or fewer.
template <class Value>
struct Values {
  std::vector<Value> fValues;
  std::vector<std::string> fLabels;
};

// What stands inside a field whose values are numbers or strings.
template <class Value>
struct Body {
  Values<Value> fValid;
  Values<Value> fMissing;
  Interval fMissingRange;
  Interval fRange;
};

MCStatus Error(long code) {
  return MCStatus(code, false);
}

bool IsWord(const XMLCh* text, const char* word) {
  return XStrEqualsUTF8Str(text, word);
}

bool GetValue(const DOMElement& element, double& value) {
  return GetDoubleAttribute(element, Word::kValueAttribute, value) == 0;
}

bool GetValue(const DOMElement& element, std::string& value) {
  const XMLCh* text = GetAttribute(element, Word::kValueAttribute);
  if (text != nullptr) value = ToUTF8(text);
  return text != nullptr;
}

template <class Value>
void ReadValue(const DOMElement& element, Body<Value>& body) {
  const XMLCh* property = GetAttribute(element, Word::kProperty);
  const bool isValid = property == nullptr || IsWord(property, Word::kValid);
  Values<Value>& values = isValid ? body.fValid : body.fMissing;
  Value value{};
  if (GetValue(element, value)) values.fValues.push_back(std::move(value));
  const XMLCh* label = GetAttribute(element, Word::kDisplayValue);
  if (label != nullptr) values.fLabels.push_back(ToUTF8(label));
}

// An extension of any vendor may tell an end of the missing interval.
void ReadMissingEnd(const DOMElement& extension, Interval& range) {
  double end = 0.0;
  if (!GetValue(extension, end)) return;
  const XMLCh* name = GetAttribute(extension, Word::kName);
  if (IsWord(name, Word::kInvalidRangeLower)) range.fLow = end;
  if (IsWord(name, Word::kInvalidRangeUpper)) range.fHigh = end;
}

// A left margin that is absent is the smallest positive number, as hosts of this format expect.
MCStatus ReadRange(const DOMElement& interval, Interval& range) {
  Interval read;
  read.fLow = std::numeric_limits<double>::min();
  const bool areNumbers = GetDoubleAttribute(interval, Word::kLeftMargin, read.fLow) <= 0 &&
                          GetDoubleAttribute(interval, Word::kRightMargin, read.fHigh) <= 0;
  if (!areNumbers || read.fHigh < read.fLow) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  range = read;
  return MCStatus();
}

// Only a numeric field has more to tell than its values.
MCStatus ReadNumericChild(const DOMElement& child, RangePlace place, Body<double>& body) {
  const DOMElement* interval = nullptr;
  if (TagNameEquals(child, Word::kExtension)) {
    ReadMissingEnd(child, body.fMissingRange);
    if (place == RangePlace::kFieldOrExtension) {
      interval = GetFirstChildElmt(child, Word::kInterval);
    }
  } else if (place != RangePlace::kNowhere && TagNameEquals(child, Word::kInterval)) {
    interval = &child;
  }
  return interval == nullptr ? MCStatus() : ReadRange(*interval, body.fRange);
}

MCStatus ReadNumericChild(const DOMElement& /*child*/, RangePlace /*place*/,
                          Body<std::string>& /*body*/) {
  return MCStatus();
}

template <class Value>
MCStatus ReadBody(const DOMElement& field, RangePlace place, Body<Value>& body) {
  MCStatus status;
  const DOMElement* child = GetFirstChildElmt(field, nullptr);
  for (; child != nullptr && status.IsOK(); child = GetNextSiblingElmt(*child, nullptr)) {
    if (!TagNameEquals(*child, Word::kValue)) {
      status = ReadNumericChild(*child, place, body);
    } else if (child->hasAttributes()) {
      ReadValue(*child, body);
    }
  }
  return status;
}

template <class Value>
int AddCategorical(MCVarList& list, const std::string& name, const std::string& label,
                   const Values<Value>& valid) {
  constexpr auto kRole = MCCommonMetadata::MC_ROLE_INPUT;
  if (valid.fLabels.size() != valid.fValues.size()) {
    return list.AddCatVar(name, label, valid.fValues, kRole);
  }
  return list.AddCatVar(name, label, valid.fValues, valid.fLabels, kRole);
}

template <class Value>
void DeclareMissing(const Body<Value>& body, IMCEncoder& encoder) {
  const std::vector<std::string>& labels = body.fMissing.fLabels;
  const std::string none;
  for (std::size_t i = 0; i < body.fMissing.fValues.size(); ++i) {
    encoder.AddDiscreteUserMissing(body.fMissing.fValues[i], i < labels.size() ? labels[i] : none);
  }
  const Interval& range = body.fMissingRange;
  if (range.IsTold()) encoder.SetMissingInterval(range.fLow, range.fHigh);
}

}  // namespace

MCStatus MCFieldReader::ReadFields(const DOMElement& dictionary) const {
  MCStatus status;
  const DOMElement* field = GetFirstChildElmt(dictionary, fFormat.fTag);
  for (; field != nullptr && status.IsOK(); field = GetNextSiblingElmt(*field, fFormat.fTag)) {
    status = ReadField(*field);
  }
  return status;
}

MCStatus MCFieldReader::ReadField(const DOMElement& field) const {
  const XMLCh* name = GetAttribute(field, Word::kName);
  if (name == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  Head head;
  head.fName = ToUTF8(name);
  if (!IsSelected(head.fName)) return MCStatus();
  head.fLabel = ToUTF8(GetAttribute(field, Word::kDisplayName));
  const MCStatus status = ReadTypes(field, head);
  if (!status.IsOK()) return status;
  return head.fpType->fbString ? ReadAndAdd<std::string>(field, head)
                               : ReadAndAdd<double>(field, head);
}

MCStatus MCFieldReader::ReadTypes(const DOMElement& field, Head& head) const {
  const XMLCh* dataType = GetAttribute(field, Word::kDataType);
  if (dataType == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  const std::vector<DataType>& types = *fFormat.fpTypes;
  const auto type = std::find_if(types.begin(), types.end(), [dataType](const DataType& known) {
    return IsWord(dataType, known.fWord);
  });
  if (type == types.end()) return Error(MCCommon::MCS_DOC_BAD_VALUE);
  head.fpType = &*type;

  const XMLCh* opType = GetAttribute(field, Word::kOptype);
  if (opType == nullptr) return Error(MCCommon::MCS_DOC_MISSING_ITEM);
  head.fbContinuous = IsWord(opType, Word::kContinuous);
  return MCStatus();
}

template <class Value>
MCStatus MCFieldReader::ReadAndAdd(const DOMElement& field, const Head& head) const {
  Body<Value> body;
  MCStatus status = ReadBody(field, fFormat.fRangePlace, body);
  if (!status.IsOK()) return status;
  int place = -1;
  if (head.fbContinuous) {
    status = AddContinuous(head, body.fRange.fLow, body.fRange.fHigh, place);
    if (!status.IsOK()) return status;
  } else {
    place = AddCategorical(fList, head.fName, head.fLabel, body.fValid);
  }
  if (place < 0) return Error(MCCommon::MCS_DOC_VAR_REFUSED);
  DeclareMissing(body, *fList.GetEncoderAt(place));
  fList.GetVarAt(place)->SetVariableStorage(head.fpType->fStorage);
  return MCStatus();
}

MCStatus MCFieldReader::AddContinuous(const Head& head, double low, double high, int& place) const {
  constexpr auto kRole = MCCommonMetadata::MC_ROLE_INPUT;
  std::vector<double> cuts;
  std::vector<std::string> labels;
  if (fpBins != nullptr && !fpBins->ReadBins(head.fName, cuts, labels)) {
    return Error(MCCommon::MCS_DOC_NO_BINS);
  }
  if (cuts.size() < 3) {
    place = fList.AddContVar(head.fName, head.fLabel, low, high, kRole, false, -1);
    return MCStatus();
  }
  const std::vector<double> edges(cuts.begin() + 1, cuts.end() - 1);
  place = fList.AddContVar(head.fName, head.fLabel, cuts.front(), cuts.back(), edges, true, kRole);
  if (place >= 0 && labels.size() == edges.size() + 1 && labels.front() != "0") {
    fList.GetEncoderAt(place)->SetValueLabels(labels);
  }
  return MCStatus();
}

}  // namespace detail
}  // namespace MCComXPrsUtil
