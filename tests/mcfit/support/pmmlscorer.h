// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/xmldocument.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Scores rows by a "GeneralRegressionModel" as the standard explains that element, from nothing
/// but the document:
///
/// - a parameter's value for a row is the product over its cells in the PPMatrix: of a factor 1 if
///   the row has the cell's category and else 0, of a covariate its value to the cell's power; a
///   parameter without cells is the intercept and has the value 1;
/// - the predictor of a target category is the sum of its betas in the ParamMatrix times those
///   values, and 0 for the category of the dictionary without betas, the reference;
/// - a general linear model answers its one predictor, a multinomial logistic one the share of
///   each exp(predictor) in their sum.
class PmmlScorer {
public:
  /// A row by column names.
  using Row = std::map<std::string, std::string>;

  explicit PmmlScorer(const std::string& document);

  /// One number, or one probability for each category of the target in the dictionary's order.
  /// Nothing for a row in which an active field is missing or invalid.
  std::optional<std::vector<double>> Score(const Row& row) const;

  /// The target's categories.
  const std::vector<std::string>& Categories() const { return fCategories; }

private:
  struct Cell {
    std::string predictor;
    std::string value;
    bool isFactor = false;
  };

  bool IsScorable(const Row& row) const;
  double Value(const std::string& parameter, const Row& row) const;

  struct Field {
    bool isCategorical = false;
    std::vector<std::string> valid;
    std::vector<std::string> missing;
  };

  std::map<std::string, Field> fActive;
  std::map<std::string, std::vector<Cell>> fCells;  // by parameter
  // Parameter and beta in the document's order, by target category.
  std::map<std::string, std::vector<std::pair<std::string, double>>> fBetas;
  std::vector<std::string> fCategories;
  bool fbIsLinear = false;
};
