// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fittedmodel.h"
#include "inference.h"
#include "regression/design/mcregrparameter.h"
#include "reportstyle.h"

#include <algorithm>
#include <array>
#include <functional>
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

/// The effect of a parameter as tables name it.
std::string EffectLabel(const MCRegrParameter& parameter, const FittedModel& model);

/// Writes probabilities, of which nobody reads more than four digits.
class PValueText : public NumberText {
public:
  explicit PValueText(const ReportStyle& style) : NumberText(std::min(style.digits, 4)) {}
};

/// What a table shows of a test.
struct TestFigures {
  std::optional<double> statistic;
  std::optional<double> p;
};

/// The table of the tests of effects; nothing for a model without any. `statistic` heads the column
/// of what `figures` makes of a test, and `withAll` adds the test of all effects together.
std::string TestsText(const FittedModel& model, const ReportStyle& style, const char* statistic,
                      const std::function<TestFigures(const WaldTest&)>& figures, bool withAll);

/// Heads of the columns of confidence limits.
std::array<std::string, 2> LimitHeads(const ReportStyle& style);

/// What the condition index says, to stand behind it.
std::string ConditionNote(std::optional<double> index);

/// A line below a table of parameters that says what a redundant one is.
extern const char* const kRedundantNote;

}  // namespace mcfit
