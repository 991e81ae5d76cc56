// SPDX-License-Identifier: Apache-2.0
#include "labeltable.h"

#include "text.h"

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

  std::vector<std::size_t> order(fLabels.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&keys](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });

  std::deque<std::string> sorted;
  std::vector<int> newCodes(fLabels.size());
  for (const std::size_t oldCode : order) {
    newCodes[oldCode] = static_cast<int>(sorted.size());
    sorted.push_back(fLabels[oldCode]);
  }
  fLabels = std::move(sorted);
  Index();
  return newCodes;
}

void LabelTable::Index() {
  fCodes.clear();
  int code = 0;
  for (const std::string& label : fLabels) fCodes.emplace(label, code++);
}

}  // namespace mcfit
