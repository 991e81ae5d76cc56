// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace mcfit {

/// The labels of one column and their category codes, 0 to Size() - 1. While a file is read,
/// labels get codes in the order in which they are first seen; Sort() then gives them new codes in
/// the order in which tables show them.
class LabelTable {
public:
  /// More labels than this are taken for a mistake.
  static constexpr int kMostLabels = 1000000;

  LabelTable() = default;
  LabelTable(LabelTable&&) = default;
  LabelTable& operator=(LabelTable&&) = default;
  // The index points into the labels.
  LabelTable(const LabelTable&) = delete;
  LabelTable& operator=(const LabelTable&) = delete;

  /// Code of the label, which becomes a new one if it isn't known. -1 if it would be one too many.
  int Add(std::string_view label);

  /// Code of the label, -1 if it isn't known.
  int Find(std::string_view label) const;

  /// The label of a code.
  const std::string& Label(int code) const { return fLabels[static_cast<std::size_t>(code)]; }

  int Size() const { return static_cast<int>(fLabels.size()); }

  /// Sorts the labels: numbers by value, then words by their bytes. Answers the new code of each
  /// old one.
  std::vector<int> Sort();

  /// Puts the labels in another order: `order` names the code of each in turn, all of them once.
  /// Answers the new code of each old one.
  std::vector<int> Arrange(const std::vector<int>& order);

private:
  void Index();

  std::deque<std::string> fLabels;  // never moves a label, so that the index may point to it
  std::unordered_map<std::string_view, int> fCodes;
};

/// What to say of a column whose labels are too many.
std::string TooManyLabelsText();

}  // namespace mcfit
