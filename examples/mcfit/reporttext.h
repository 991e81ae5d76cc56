// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"
#include "regression/design/mcregrparameter.h"

#include <optional>
#include <string>

namespace mcfit {

/// Writes numbers to a given number of significant digits, and what isn't defined as a dot.
class NumberText {
public:
  explicit NumberText(int digits) : fDigits(digits) {}

  std::string operator()(std::optional<double> value) const;

private:
  int fDigits;
};

/// The statistic, no value if it is the library's missing value.
std::optional<double> Defined(double statistic);

/// First lines of a report: what kind of regression of which dependent, the rows read, used and
/// dropped, and why.
std::string HeadText(const char* kind, const Dataset& data);

/// A parameter of the model as tables name it.
std::string ParameterName(const MCRegrParameter& parameter, const FittedModel& model);

/// A line below a table of parameters that says what a redundant one is.
extern const char* const kRedundantNote;

}  // namespace mcfit
