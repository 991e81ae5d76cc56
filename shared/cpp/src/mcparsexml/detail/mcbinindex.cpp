// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/mcbinindex.h"

#include "mcparsexml/mccomxprsutil.h"
#include "metadata/detail/pmmlwords.h"

#include <limits>

namespace MCComXPrsUtil {
namespace detail {

using xercesc::DOMElement;
namespace Word = MCCommonMetadata::detail::PMMLWord;

namespace {

// A margin that is absent or isn't a number lies beyond all numbers.
double ReadMargin(const DOMElement& interval, const char* name, double beyond) {
  double margin = beyond;
  return GetDoubleAttribute(interval, name, margin) == 0 ? margin : beyond;
}

}  // namespace

MCBinIndex::MCBinIndex(const DOMElement* transDictionary) {
  if (transDictionary == nullptr) return;
  const DOMElement* field = GetFirstChildElmt(*transDictionary, Word::kDerivedField);
  for (; field != nullptr; field = GetNextSiblingElmt(*field, Word::kDerivedField)) {
    const DOMElement* discretize = GetFirstChildElmt(*field, Word::kDiscretize);
    for (; discretize != nullptr; discretize = GetNextSiblingElmt(*discretize, Word::kDiscretize)) {
      fDiscretize.try_emplace(ToUTF8(GetAttribute(*discretize, Word::kField)), discretize);
    }
  }
}

bool MCBinIndex::ReadBins(const std::string& field, std::vector<double>& cuts,
                          std::vector<std::string>& labels) const {
  cuts.clear();
  labels.clear();
  const auto entry = fDiscretize.find(field);
  if (entry == fDiscretize.end()) return false;

  constexpr double kLargest = std::numeric_limits<double>::max();
  cuts.push_back(0.0);
  const DOMElement* bin = GetFirstChildElmt(*entry->second, Word::kDiscretizeBin);
  for (; bin != nullptr; bin = GetNextSiblingElmt(*bin, Word::kDiscretizeBin)) {
    if (const XMLCh* label = GetAttribute(*bin, Word::kBinValue)) labels.push_back(ToUTF8(label));
    const DOMElement* interval = GetFirstChildElmt(*bin, Word::kInterval);
    for (; interval != nullptr; interval = GetNextSiblingElmt(*interval, Word::kInterval)) {
      if (cuts.size() == 1) cuts.front() = ReadMargin(*interval, Word::kLeftMargin, -kLargest);
      cuts.push_back(ReadMargin(*interval, Word::kRightMargin, kLargest));
    }
  }
  return true;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
