// SPDX-License-Identifier: Apache-2.0
#include "support/densefit.h"

#include <algorithm>
#include <cmath>

namespace mctest {

namespace {

Vector WeightsOf(const LinearProblem& problem, const std::vector<Row>& rows, DenseFit& fit) {
  Vector weights;
  for (const Row& row : rows) {
    const long double freq = problem.freqWeight >= 0 ? At(row, problem.freqWeight) : 1.0;
    const long double regr = problem.regrWeight >= 0 ? At(row, problem.regrWeight) : 1.0;
    fit.totalWeight += freq;
    fit.totalRegrWeight += freq * regr;
    weights.push_back(freq * regr);
  }
  return weights;
}

void Solve(const Matrix& design, const Vector& weights, const Vector& y,
           const std::vector<std::size_t>& kept, DenseFit& fit) {
  Matrix inverse;
  const Matrix a = CrossProducts(design, weights, kept);
  Eliminate(a, 0.0L, inverse);
  Matrix scaledInverse;
  Eliminate(Scaled(a), 0.0L, scaledInverse);
  fit.condition = static_cast<double>(Norm(Scaled(a)) * Norm(scaledInverse));
  for (std::size_t i = 0; i < kept.size(); ++i) {
    fit.redundant[kept[i]] = false;
    for (std::size_t j = 0; j < kept.size(); ++j) {
      long double xy = 0.0L;
      for (std::size_t r = 0; r < y.size(); ++r) xy += weights[r] * design[r][kept[j]] * y[r];
      fit.estimates[kept[i]] += inverse[i][j] * xy;
      fit.inverse[kept[i]][kept[j]] = inverse[i][j];
    }
  }
}

void SumUp(const LinearProblem& problem, const Matrix& design, const Vector& weights,
           const Vector& y, DenseFit& fit) {
  long double mean = 0.0L;
  for (std::size_t r = 0; r < y.size(); ++r) mean += weights[r] * y[r] / fit.totalRegrWeight;
  if (!problem.intercept) mean = 0.0L;
  long double residual = 0.0L;
  long double total = 0.0L;
  for (std::size_t r = 0; r < y.size(); ++r) {
    long double e = y[r];
    for (std::size_t k = 0; k < fit.estimates.size(); ++k) e -= design[r][k] * fit.estimates[k];
    residual += weights[r] * e * e;
    total += weights[r] * (y[r] - mean) * (y[r] - mean);
  }
  fit.rmse = std::sqrt(residual / fit.totalWeight);
  fit.rSquare = std::max(0.0L, 1.0L - residual / total);
}

}  // namespace

DenseFit FitDense(const LinearProblem& problem) {
  std::vector<Row> rows;
  for (const Row& row : problem.rows) {
    if (IsUsable(problem, row)) rows.push_back(row);
  }
  DenseFit fit;
  const Vector weights = WeightsOf(problem, rows, fit);
  const Matrix design = BuildDesign(problem, rows);
  Vector y;
  for (const Row& row : rows) y.push_back(At(row, problem.dependent));
  const std::size_t p = design.front().size();
  fit.estimates.assign(p, 0.0L);
  fit.redundant.assign(p, true);
  fit.inverse.assign(p, Vector(p, 0.0L));
  Solve(design, weights, y, IndependentColumns(design, weights), fit);
  SumUp(problem, design, weights, y, fit);
  return fit;
}

}  // namespace mctest
