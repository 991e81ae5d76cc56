// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "declaration.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// The columns that a regression uses, by name, and what is declared of them.
struct ModelColumns {
  std::string dependent;
  bool dependentHasLabels = false;  ///< it holds categories and not numbers
  std::vector<std::string> factors;
  std::vector<std::string> covariates;
  std::optional<std::string> frequency;
  std::optional<std::string> weight;
  std::shared_ptr<const Declarations> declarations;  // null: the cells alone tell what they are
};

enum class Role { kDependent, kFactor, kCovariate, kFrequency, kWeight };

/// What each position of a record holds. Records hold the columns that have a role and nothing
/// else: the dependent, the factors, the covariates, the frequency weight, the regression weight.
class RecordLayout {
public:
  struct Column {
    std::string name;
    Role role;
    const Declaration* declaration;  // null if nothing is declared of it
  };

  /// Throws InputError for a column that is named twice.
  explicit RecordLayout(const ModelColumns& columns);

  const std::vector<Column>& Columns() const { return fColumns; }
  const Column& At(int position) const { return fColumns[static_cast<std::size_t>(position)]; }
  int Width() const { return static_cast<int>(fColumns.size()); }

  /// Positions of a role, in order.
  std::vector<int> Positions(Role role) const;

  /// The one position of a role, -1 if no column has it.
  int Position(Role role) const;

  /// Position of the factor or covariate of that name, -1 if there is none.
  int PositionOfPredictor(const std::string& name) const;

  /// Whether the dependent holds categories and not numbers.
  bool DependentHasLabels() const { return fbDependentHasLabels; }

  /// Positions that hold codes of labels, in order: a dependent that has labels, the factors.
  std::vector<int> LabelledPositions() const;

  /// How many-th of these positions this one is, -1 if it is none.
  int LabelledNumber(int position) const;

private:
  void Add(const std::string& name, Role role);
  bool IsLabelled(int position) const;

  std::shared_ptr<const Declarations> fDeclarations;
  std::vector<Column> fColumns;
  bool fbDependentHasLabels;
};

}  // namespace mcfit
