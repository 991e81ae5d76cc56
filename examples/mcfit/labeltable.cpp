// SPDX-License-Identifier: Apache-2.0
#include "labeltable.h"

#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <tuple>

namespace mcfit {

namespace {

// Orders a label: a number before all words, numbers by value, equal ones and words by bytes.
struct SortKey {
  bool isWord;
  double value;
  std::string_view text;

  explicit SortKey(std::string_view label) : text(label) {
    const std::optional<double> number = ParseNumber(label);
    isWord = !number;
    value = number.value_or(0.0);
  }

  bool operator<(const SortKey& other) const {
    return std::tie(isWord, value, text) < std::tie(other.isWord, other.value, other.text);
  }
};

}  // namespace

int LabelTable::Add(std::string_view label) {
  const int known = Find(label);
  if (known >= 0) return known;
  const int code = Size();
  if (code == kMostLabels) return -1;
  fLabels.emplace_back(label);
  fCodes.emplace(fLabels.back(), code);
  return code;
}

int LabelTable::Find(std::string_view label) const {
  const auto found = fCodes.find(label);
  return found == fCodes.end() ? -1 : found->second;
}

std::vector<int> LabelTable::Sort() {
  std::vector<SortKey> keys;
  keys.reserve(fLabels.size());
  for (const std::string& label : fLabels) keys.emplace_back(label);

  std::vector<int> order(fLabels.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&keys](int a, int b) {
    return keys[static_cast<std::size_t>(a)] < keys[static_cast<std::size_t>(b)];
  });
  return Arrange(order);
}

std::vector<int> LabelTable::Arrange(const std::vector<int>& order) {
  std::deque<std::string> arranged;
  std::vector<int> newCodes(fLabels.size());
  for (const int oldCode : order) {
    newCodes[static_cast<std::size_t>(oldCode)] = static_cast<int>(arranged.size());
    arranged.push_back(Label(oldCode));
  }
  fLabels = std::move(arranged);
  Index();
  return newCodes;
}

void LabelTable::Index() {
  fCodes.clear();
  int code = 0;
  for (const std::string& label : fLabels) fCodes.emplace(label, code++);
}

std::string TooManyLabelsText() {
  return fmt::format("more than {} different labels; is this really a column of categories?",
                     LabelTable::kMostLabels);
}

}  // namespace mcfit
