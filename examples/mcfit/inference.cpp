// SPDX-License-Identifier: Apache-2.0
#include "inference.h"

#include "mcmath/mceigenvalues.h"
#include "mcmath/mcsymmatrix.h"
#include "parametername.h"
#include "reporttext.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace mcfit {

namespace {

using MCCommonMath::MCSymMatrix;

// Correlations closer than this to a linear combination of others carry no digit of their own.
constexpr double kTolerance = 1e-13;

// Eigenvalues take time cubic in the columns.
constexpr int kMostColumns = 1000;

constexpr int kMostIterations = 60;

constexpr double kUnknownlyHigh = std::numeric_limits<double>::infinity();

// Scales a matrix so that its diagonal is 1; `scale` gets the square roots of what it was. False
// if an element of the diagonal isn't above 0.
bool ScaleToUnitDiagonal(MCSymMatrix& matrix, std::vector<double>& scale) {
  const int n = matrix.GetNRows();
  scale.clear();
  for (int i = 0; i < n; ++i) {
    const double variance = matrix.GetElem(i, i);
    if (!(variance > 0.0 && std::isfinite(variance))) return false;
    scale.push_back(std::sqrt(variance));
  }
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      const auto row = static_cast<std::size_t>(i);
      const auto column = static_cast<std::size_t>(j);
      matrix.SetElem(i, j, matrix.GetElem(i, j) / scale[row] / scale[column]);
    }
  }
  return true;
}

// The correlations of some estimates, and their standard deviations. False if they aren't known.
bool Correlations(const IMCRegOutputStats& results, const std::vector<int>& parameters,
                  MCSymMatrix& correlations, std::vector<double>& deviations) {
  const MCSymMatrix* covariance = results.GetCovarianceMatrix();
  return covariance != nullptr && !parameters.empty() &&
         covariance->ExtractSubmatrix(parameters, correlations) &&
         ScaleToUnitDiagonal(correlations, deviations);
}

}  // namespace

std::vector<int> EstimatedParameters(const IMCRegOutputStats& results, bool withIntercepts) {
  std::vector<int> parameters;
  for (const MCRegrParameterStats& stats : results.GetParamStats()) {
    if (stats.fRedundant) continue;
    if (withIntercepts || stats.fEffectIndex >= 0) parameters.push_back(stats.fIndex);
  }
  return parameters;
}

std::optional<WaldTest> TestParameters(const IMCRegOutputStats& results,
                                       const std::vector<int>& parameters) {
  MCSymMatrix correlations;
  std::vector<double> deviations;
  if (!Correlations(results, parameters, correlations, deviations)) return {};
  std::vector<double> z;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const auto index = static_cast<std::size_t>(parameters[i]);
    z.push_back((*results.GetParamEstimates())[index] / deviations[i]);
  }
  std::vector<double> solution;
  const int dependent = correlations.LTSolve(z, kTolerance, solution);
  if (dependent < 0) return {};
  WaldTest test;
  test.freedom = static_cast<int>(parameters.size()) - dependent;
  for (std::size_t i = 0; i < z.size(); ++i) test.statistic += z[i] * solution[i];
  // Rounding alone makes it negative, and estimates that aren't finite NaN.
  if (!(test.statistic >= 0.0)) return {};
  return test;
}

std::vector<EffectTest> TestEffects(const FittedModel& model) {
  const IMCRegOutputStats& results = model.Results();
  std::vector<std::vector<int>> members(model.Design().effects.size());
  std::vector<std::string> names(members.size());
  for (const MCRegrParameterStats& stats : results.GetParamStats()) {
    if (stats.fEffectIndex < 0) continue;
    const auto effect = static_cast<std::size_t>(stats.fEffectIndex);
    if (names[effect].empty()) {
      names[effect] =
          EffectLabel((*results.GetParameters())[static_cast<std::size_t>(stats.fIndex)], model);
    }
    if (!stats.fRedundant) members[effect].push_back(stats.fIndex);
  }
  std::vector<EffectTest> tests;
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (!names[i].empty()) tests.push_back({names[i], TestParameters(results, members[i])});
  }
  return tests;
}

std::optional<double> ConditionIndex(const IMCRegOutputStats& results) {
  const std::vector<int> parameters = EstimatedParameters(results, true);
  if (parameters.size() > kMostColumns) return {};
  MCSymMatrix products;
  std::vector<double> scale;
  if (!Correlations(results, parameters, products, scale)) return {};
  // Cross-products up to the scale of columns, which is made the same for all.
  const int n = products.GetNRows();
  const std::vector<double> ones(parameters.size(), 1.0);
  const bool isRegular = products.CholInverse(ones, kTolerance, products) == n;
  if (!isRegular || !ScaleToUnitDiagonal(products, scale)) return kUnknownlyHigh;
  MCCommonMath::MCEigenValues problem(products, kTolerance, kMostIterations);
  std::vector<double> values;
  if (problem.Compute(values) != n) return {};
  const auto [smallest, largest] = std::minmax_element(values.begin(), values.end());
  return *smallest > 0.0 ? std::sqrt(*largest / *smallest) : kUnknownlyHigh;
}

}  // namespace mcfit
