// SPDX-License-Identifier: Apache-2.0
#include "linearmodel.h"

#include "linearreport.h"
#include "regression/frame/mcmv.h"

#include <fmt/format.h>

namespace mcfit {

namespace {

// The library reads the rows to count categories, to add up cross-products and for residuals.
constexpr int kPassesOfABuild = 3;

}  // namespace

LinearModel::LinearModel(Dataset& data, const ModelDesign& design, ProgressLine& progress)
    : FittedModel(data, design) {
  MCRegSettings settings;
  Describe(settings);
  Build(settings, std::make_unique<InterruptQuery>(), kPassesOfABuild, progress);
}

std::string LinearModel::Report(const ReportStyle& style) const {
  return LinearReport(*this, style);
}

PmmlTerms LinearModel::InPmml() const {
  PmmlTerms terms;
  terms.description = "Linear regression";
  terms.modelType = "generalLinear";
  terms.functionName = "regression";
  terms.covarianceScale = LinearFit(Results()).residualVariance;
  return terms;
}

bool LinearModel::Score(const MCCommon::Record& record, std::vector<std::string>& cells) const {
  double value = MCMV::gMissingValue;
  std::vector<double> unused;
  Check(Component().Score(record, value, unused));
  if (value == MCMV::gMissingValue) return false;
  cells = {fmt::format("{}", value)};
  return true;
}

}  // namespace mcfit
