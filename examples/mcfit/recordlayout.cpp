// SPDX-License-Identifier: Apache-2.0
#include "recordlayout.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

namespace mcfit {

namespace {

const char* OptionOf(Role role) {
  switch (role) {
    case Role::kDependent:
      return "--dependent";
    case Role::kFactor:
      return "--factors";
    case Role::kCovariate:
      return "--covariates";
    case Role::kFrequency:
      return "--freq";
    case Role::kWeight:
      return "--weight";
  }
  return "";
}

}  // namespace

RecordLayout::RecordLayout(const ModelColumns& columns)
    : fDeclarations(columns.declarations), fbDependentHasLabels(columns.dependentHasLabels) {
  Add(columns.dependent, Role::kDependent);
  for (const std::string& name : columns.factors) Add(name, Role::kFactor);
  for (const std::string& name : columns.covariates) Add(name, Role::kCovariate);
  if (columns.frequency) Add(*columns.frequency, Role::kFrequency);
  if (columns.weight) Add(*columns.weight, Role::kWeight);
}

void RecordLayout::Add(const std::string& name, Role role) {
  for (const Column& column : fColumns) {
    if (column.name != name) continue;
    const char* first = OptionOf(column.role);
    const char* second = OptionOf(role);
    if (column.role == role) {
      throw InputError(fmt::format("column {} stands twice in {}", Quoted(name), first));
    }
    throw InputError(fmt::format("column {} stands in {} and in {}; a column takes one role",
                                 Quoted(name), first, second));
  }
  fColumns.push_back({name, role, fDeclarations ? fDeclarations->Find(name) : nullptr});
}

std::vector<int> RecordLayout::Positions(Role role) const {
  std::vector<int> positions;
  for (int i = 0; i < Width(); ++i) {
    if (At(i).role == role) positions.push_back(i);
  }
  return positions;
}

int RecordLayout::Position(Role role) const {
  const std::vector<int> positions = Positions(role);
  return positions.empty() ? -1 : positions.front();
}

bool RecordLayout::IsLabelled(int position) const {
  const Role role = At(position).role;
  return role == Role::kFactor || (role == Role::kDependent && fbDependentHasLabels);
}

std::vector<int> RecordLayout::LabelledPositions() const {
  std::vector<int> positions;
  for (int i = 0; i < Width(); ++i) {
    if (IsLabelled(i)) positions.push_back(i);
  }
  return positions;
}

int RecordLayout::LabelledNumber(int position) const {
  // Labelled columns stand side by side at the front.
  if (!IsLabelled(position)) return -1;
  return fbDependentHasLabels ? position : position - Position(Role::kFactor);
}

int RecordLayout::PositionOfPredictor(const std::string& name) const {
  for (int i = 0; i < Width(); ++i) {
    const bool isPredictor = At(i).role == Role::kFactor || At(i).role == Role::kCovariate;
    if (isPredictor && At(i).name == name) return i;
  }
  return -1;
}

}  // namespace mcfit
