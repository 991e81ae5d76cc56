// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mcfit {

/// A column of categories, each as likely as the others.
struct FactorColumn {
  std::string name;
  std::vector<std::string> labels;
};

/// A column of numbers: evenly spread from `first` to `second`, or normal with mean `first` and
/// standard deviation `second`.
struct NumberColumn {
  std::string name;
  bool isNormal = false;
  double first = 0.0;
  double second = 0.0;
};

/// A column of a design: the product of powers of numbers, and 0 in rows with other labels than
/// these. Without any it is the intercept.
struct DesignProduct {
  std::vector<std::pair<std::size_t, std::size_t>> labels;  // rising factors, and their labels
  std::vector<std::pair<std::size_t, int>> powers;          // rising numbers, and their powers
};

struct DesignCoefficient {
  DesignProduct product;
  double value = 0.0;
};

/// What the rows of a data set are drawn from.
struct DataDesign {
  std::string dependent;
  std::vector<FactorColumn> factors;
  std::vector<NumberColumn> numbers;
  std::optional<NumberColumn> frequency;  ///< evenly spread over whole numbers from 1
  std::vector<DesignProduct> empty;       ///< combinations of labels that no row has

  /// Of a categorical dependent, the reference first; none for a dependent of numbers.
  std::vector<std::string> categories;
  /// One for a dependent of numbers, else one for each category behind the reference.
  std::vector<std::vector<DesignCoefficient>> predictors;
  double deviation = 1.0;  ///< of what is added to the predictor of a dependent of numbers

  std::vector<double> missing;  ///< probability for each column
  int decimals = 4;             ///< behind the point of numbers

  /// In the order of the file: dependent, factors, numbers, frequency.
  std::vector<std::string> ColumnNames() const;
};

/// A design as it stands on the command line; docs/mcfit.md tells the forms.
struct DesignTexts {
  std::string kind;  ///< "linear" or "logistic"
  std::string dependent;
  std::string factors;
  std::string covariates;
  std::string normal;
  std::string frequency;
  std::string empty;
  std::string categories;
  std::vector<std::string> coefficients;
  std::optional<double> deviation;
  std::string missing;
  int decimals = 4;
};

/// Throws InputError for what isn't a design, with the option that is to blame.
DataDesign MakeDesign(const DesignTexts& texts);

}  // namespace mcfit
