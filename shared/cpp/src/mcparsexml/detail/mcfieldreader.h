// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/detail/mcbinindex.h"
#include "metadata/imcvariable.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcstatus.h"

#include <string>
#include <unordered_set>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {
namespace detail {

/// A word for a type of data, and how a variable of that type is stored.
struct DataType {
  const char* fWord;
  bool fbString;
  MCCommonMetadata::VariableStorage fStorage;
};

/// Where a numeric field tells its range.
enum class RangePlace { kNowhere, kField, kFieldOrExtension };

/// What sets one kind of dictionary apart from another: the tag of its fields, the types that it
/// knows, and where ranges stand.
struct FieldFormat {
  const char* fTag;
  const std::vector<DataType>* fpTypes;
  RangePlace fRangePlace;
};

/// Adds the fields of a dictionary to a list of variables. A field costs the same however many
/// there are. All arguments are borrowed.
class MCFieldReader {
public:
  MCFieldReader(const FieldFormat& format, MCCommonMetadata::MCVarList& list)
      : fFormat(format), fList(list) {}

  /// From now on only fields of these names are read; all if there are none.
  void Select(const std::vector<std::string>& names) {
    fNames = std::unordered_set<std::string>(names.begin(), names.end());
  }

  /// From now on a continuous field takes its bins from there, and is refused without.
  void TakeBins(const MCBinIndex& bins) { fpBins = &bins; }

  /// Adds each field in its order, up to the first that can't be read, whose status it answers.
  MCCommon::MCStatus ReadFields(const xercesc::DOMElement& dictionary) const;

private:
  struct Head;

  bool IsSelected(const std::string& name) const {
    return fNames.empty() || fNames.count(name) > 0;
  }
  MCCommon::MCStatus ReadField(const xercesc::DOMElement& field) const;
  MCCommon::MCStatus ReadTypes(const xercesc::DOMElement& field, Head& head) const;
  template <class Value>
  MCCommon::MCStatus ReadAndAdd(const xercesc::DOMElement& field, const Head& head) const;
  MCCommon::MCStatus AddContinuous(const Head& head, double low, double high, int& place) const;

  FieldFormat fFormat;
  MCCommonMetadata::MCVarList& fList;
  std::unordered_set<std::string> fNames;
  const MCBinIndex* fpBins = nullptr;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
