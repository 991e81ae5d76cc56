// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace MCComXPrsUtil {
namespace detail {

/// The bins of a "TransformationDictionary" by the field that they divide, so that a dictionary of
/// n fields is read in time of order n. The element is borrowed.
class MCBinIndex {
public:
  /// Null: no dictionary, and no bins.
  explicit MCBinIndex(const xercesc::DOMElement* transDictionary);

  /// Sets `cuts` to the ends of the bins and `labels` to their values. False, with both empty, if
  /// the field has none.
  bool ReadBins(const std::string& field, std::vector<double>& cuts,
                std::vector<std::string>& labels) const;

private:
  // The first "Discretize" of each field.
  std::unordered_map<std::string, const xercesc::DOMElement*> fDiscretize;
};

}  // namespace detail
}  // namespace MCComXPrsUtil
