// SPDX-License-Identifier: Apache-2.0
#include "dataset.h"

#include "errors.h"
#include "interrupt.h"
#include "regression/frame/mcmv.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace mcfit {

namespace {

const std::vector<Role> kAllRoles = {Role::kDependent, Role::kFactor, Role::kCovariate,
                                     Role::kFrequency, Role::kWeight};

bool IsWeight(Role role) {
  return role == Role::kFrequency || role == Role::kWeight;
}

// The elements moved to their new places.
template <typename T>
std::vector<T> Rearranged(const std::vector<T>& elements, const std::vector<int>& newPlaces) {
  std::vector<T> moved(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    moved[static_cast<std::size_t>(newPlaces[i])] = elements[i];
  }
  return moved;
}

}  // namespace

bool RowCounts::Add(const RecordLayout& layout, const std::vector<double>& record) {
  ++read;
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (record[i] == MCMV::gMissingValue) {
      ++missing[i];
      return false;
    }
    if (IsWeight(layout.Columns()[i].role) && record[i] <= 0.0) {
      ++notPositive[i];
      return false;
    }
  }
  ++used;
  return true;
}

Dataset::Dataset(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing,
                 ProgressLine& progress)
    : fLayout(&layout),
      fCounts(layout.Columns().size()),
      fLabels(layout.LabelledPositions().size()) {
  AddDeclaredLabels();
  RowEncoder encoder(reader, layout, kAllRoles, missing);
  std::vector<double> record;
  while (reader.NextRow()) {
    StopIfInterrupted();
    encoder.Encode(record, fLabels);
    const bool isUsed = fCounts.Add(layout, record);
    if (isUsed && layout.DependentHasLabels()) CountCategory(record);
    fRows.Append(record);
    if (progress.IsDue()) {
      progress.Show(fmt::format("reading {}: {} rows", reader.Name(), fCounts.read));
    }
  }
  fUndeclared = encoder.Undeclared();
  SortLabels();
}

bool Dataset::HasDeclaredLabels(std::size_t table) const {
  const Declaration* declaration = fLayout->At(fLayout->LabelledPositions()[table]).declaration;
  return declaration != nullptr && !declaration->Labels().empty();
}

void Dataset::AddDeclaredLabels() {
  for (std::size_t i = 0; i < fLabels.size(); ++i) {
    if (!HasDeclaredLabels(i)) continue;
    const int position = fLayout->LabelledPositions()[i];
    for (const std::string& label : fLayout->At(position).declaration->Labels()) {
      fLabels[i].Add(label);
    }
  }
}

void Dataset::CountCategory(const std::vector<double>& record) {
  const auto at = [&](Role role) {
    return record[static_cast<std::size_t>(fLayout->Position(role))];
  };
  const auto code = static_cast<std::size_t>(at(Role::kDependent));
  if (code >= fCategoryCounts.size()) fCategoryCounts.resize(code + 1);
  ++fCategoryCounts[code].rows;
  const bool hasFrequency = fLayout->Position(Role::kFrequency) >= 0;
  fCategoryCounts[code].cases += hasFrequency ? at(Role::kFrequency) : 1.0;
}

void Dataset::SortLabels() {
  for (std::size_t i = 0; i < fLabels.size(); ++i) {
    if (!HasDeclaredLabels(i)) {
      fFinalCodes.push_back(fLabels[i].Sort());
    } else {
      fFinalCodes.emplace_back(static_cast<std::size_t>(fLabels[i].Size()));
      std::iota(fFinalCodes.back().begin(), fFinalCodes.back().end(), 0);
    }
  }
  if (!fLayout->DependentHasLabels()) return;
  fCategoryCounts.resize(fFinalCodes[0].size());
  fCategoryCounts = Rearranged(fCategoryCounts, fFinalCodes[0]);
}

int Dataset::UsedCategories() const {
  const auto used = std::count_if(fCategoryCounts.begin(), fCategoryCounts.end(),
                                  [](const CategoryCount& count) { return count.rows > 0; });
  return static_cast<int>(used);
}

int Dataset::OrderCategories(const std::string& reference, const std::string& option) {
  std::vector<int> order;
  std::vector<int> unused;
  for (std::size_t code = 0; code < fCategoryCounts.size(); ++code) {
    (fCategoryCounts[code].rows > 0 ? order : unused).push_back(static_cast<int>(code));
  }
  if (order.empty()) return -1;
  const int sortedCode = ReferenceCode(reference, option, order);
  const auto place = std::find(order.begin(), order.end(), sortedCode);
  if (place != order.end()) std::rotate(place, place + 1, order.end());
  order.insert(order.end(), unused.begin(), unused.end());

  const std::vector<int> newCodes = fLabels[0].Arrange(order);
  fCategoryCounts = Rearranged(fCategoryCounts, newCodes);
  for (int& code : fFinalCodes[0]) code = newCodes[static_cast<std::size_t>(code)];
  return newCodes[static_cast<std::size_t>(sortedCode)];
}

int Dataset::ReferenceCode(const std::string& reference, const std::string& option,
                           const std::vector<int>& used) const {
  const int code = fLabels[0].Find(reference);
  if (code >= 0) return code;
  if (reference == "first") return used.front();
  if (reference == "last") return used.back();
  constexpr std::size_t kMostListed = 10;
  std::vector<std::string> labels;
  for (std::size_t i = 0; i < std::min(used.size(), kMostListed); ++i) {
    labels.push_back(fLabels[0].Label(used[i]));
  }
  throw InputError(fmt::format("{}: no row has {} in column {}; the categories are {}{}", option,
                               Quoted(reference),
                               Quoted(fLayout->At(fLayout->Position(Role::kDependent)).name),
                               QuotedList(labels), used.size() > kMostListed ? ", ..." : ""));
}

}  // namespace mcfit
