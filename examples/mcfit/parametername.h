// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "labeltable.h"
#include "recordlayout.h"
#include "regression/design/mcregrparameter.h"

#include <string>
#include <vector>

namespace mcfit {

/// A parameter as tables name it, with column names and labels: "(Intercept)", "a=low * b=2",
/// "x1^2 * x2 * a=low", and with what it is nested in behind it: "b=2 (a=low)".
/// `labels`: those of each labelled position of the layout, by the codes that the parameter uses.
/// `factorsInParens`: the factors are written behind the covariates, in parentheses: "x1 (a=low)".
std::string ParameterName(const MCRegrParameter& parameter, const RecordLayout& layout,
                          const std::vector<LabelTable>& labels, bool factorsInParens);

/// The effect that a parameter belongs to, named as its parameters are, without labels:
/// "(Intercept)", "a * b", "x1^2 * x2 * a", "b (a)".
std::string EffectLabel(const MCRegrParameter& parameter, const RecordLayout& layout,
                        bool factorsInParens);

}  // namespace mcfit
