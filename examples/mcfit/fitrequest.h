// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "effectparser.h"
#include "optionnames.h"
#include "recordlayout.h"
#include "reportstyle.h"
#include "rowencoder.h"

#include <optional>
#include <string>
#include <vector>

namespace mcfit {

/// What a fit is to do, whoever asks for it.
struct FitRequest {
  OptionNames names;
  std::string data;  // "-" for the standard input, as in `predict`
  ModelColumns columns;
  MissingCells missing;
  std::optional<std::vector<EffectExpression>> effects;  // all main effects if there is no value
  bool hasIntercept = true;
  double tolerance = 1e-12;
  ReportStyle style;
  std::optional<std::string> settings;  // the document that asks, if it is one
  std::optional<std::string> predict;   // with `out` or neither
  std::optional<std::string> out;
  std::optional<std::string> pmml;
};

}  // namespace mcfit
