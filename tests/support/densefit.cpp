// SPDX-License-Identifier: Apache-2.0
#include "support/densefit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace mctest {

namespace {

using Row = std::vector<double>;
using Codes = std::vector<int>;

constexpr double kMissing = std::numeric_limits<double>::lowest();

double At(const Row& row, int position) {
  return row[static_cast<std::size_t>(position)];
}
int CodeAt(const Row& row, int position) {
  return static_cast<int>(At(row, position) + 0.5);
}

bool IsUsable(const LinearProblem& problem, const Row& row) {
  if (problem.freqWeight >= 0 && At(row, problem.freqWeight) <= 0.0) return false;
  if (problem.regrWeight >= 0 && At(row, problem.regrWeight) <= 0.0) return false;
  if (At(row, problem.dependent) == kMissing) return false;
  for (const int x : problem.covariates) {
    if (At(row, x) == kMissing) return false;
  }
  for (const int f : problem.factors) {
    if (At(row, f) < 0.0) return false;
  }
  return true;
}

// The factors of an effect in the order in which its parameters vary, slowest first: by nesting
// level, then as the model lists them.
std::vector<int> FactorsInOrder(const LinearProblem& problem, const EffectTerms& effect) {
  std::vector<std::pair<int, int>> levels;  // level, factor
  for (const auto& [factor, nest] : effect.factors) {
    if (nest) {
      for (auto& entry : levels) ++entry.first;
    }
    levels.emplace_back(0, factor);
  }
  auto positionInModel = [&](int factor) {
    return std::find(problem.factors.begin(), problem.factors.end(), factor);
  };
  std::sort(levels.begin(), levels.end(), [&](const auto& a, const auto& b) {
    if (a.first != b.first) return a.first < b.first;
    return positionInModel(a.second) < positionInModel(b.second);
  });
  std::vector<int> factors;
  for (const auto& entry : levels) factors.push_back(entry.second);
  return factors;
}

// The design: usable rows by columns.
Matrix BuildDesign(const LinearProblem& problem, const std::vector<Row>& rows) {
  Matrix design(rows.size());
  if (problem.intercept) {
    for (Vector& line : design) line.push_back(1.0L);
  }
  for (const EffectTerms& effect : problem.effects) {
    const std::vector<int> factors = FactorsInOrder(problem, effect);
    auto codesOf = [&](const Row& row) {
      Codes codes;
      for (const int f : factors) codes.push_back(CodeAt(row, f));
      return codes;
    };
    std::set<Codes> seen;
    for (const Row& row : rows) seen.insert(codesOf(row));
    for (const Codes& cell : seen) {
      for (std::size_t r = 0; r < rows.size(); ++r) {
        long double value = codesOf(rows[r]) == cell ? 1.0L : 0.0L;
        for (const int x : effect.covariates) value *= At(rows[r], x);
        design[r].push_back(value);
      }
    }
  }
  return design;
}

// Gauss-Jordan elimination with full pivoting: the rank at the given relative tolerance, and the
// inverse where the matrix is of full rank.
std::size_t Eliminate(Matrix a, long double tolerance, Matrix& inverse) {
  const std::size_t n = a.size();
  inverse.assign(n, Vector(n, 0.0L));
  for (std::size_t i = 0; i < n; ++i) inverse[i][i] = 1.0L;
  std::vector<std::size_t> columnOf(n);
  std::vector<bool> rowDone(n, false);
  std::vector<bool> columnDone(n, false);
  long double largest = 0.0L;
  for (std::size_t step = 0; step < n; ++step) {
    std::size_t pr = n;
    std::size_t pc = n;
    long double best = 0.0L;
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        if (!rowDone[i] && !columnDone[j] && std::fabs(a[i][j]) > best) {
          best = std::fabs(a[i][j]);
          pr = i;
          pc = j;
        }
      }
    }
    if (step == 0) largest = best;
    if (best <= tolerance * largest) return step;
    rowDone[pr] = columnDone[pc] = true;
    columnOf[pr] = pc;
    const long double pivot = a[pr][pc];
    for (std::size_t j = 0; j < n; ++j) {
      a[pr][j] /= pivot;
      inverse[pr][j] /= pivot;
    }
    for (std::size_t i = 0; i < n; ++i) {
      const long double factor = a[i][pc];
      if (i == pr || factor == 0.0L) continue;
      for (std::size_t j = 0; j < n; ++j) {
        a[i][j] -= factor * a[pr][j];
        inverse[i][j] -= factor * inverse[pr][j];
      }
    }
  }
  Matrix ordered(n);
  for (std::size_t i = 0; i < n; ++i) ordered[columnOf[i]] = inverse[i];
  inverse = std::move(ordered);
  return n;
}

// X'WX over some columns.
Matrix CrossProducts(const Matrix& design, const Vector& weights,
                     const std::vector<std::size_t>& columns) {
  Matrix a(columns.size(), Vector(columns.size(), 0.0L));
  for (std::size_t r = 0; r < design.size(); ++r) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      for (std::size_t j = 0; j < columns.size(); ++j) {
        a[i][j] += weights[r] * design[r][columns[i]] * design[r][columns[j]];
      }
    }
  }
  return a;
}

// The same matrix with its diagonal scaled to 1, so that the rank and the condition don't depend
// on the units of the columns.
Matrix Scaled(const Matrix& a) {
  Matrix b = a;
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < a.size(); ++j) b[i][j] /= std::sqrt(a[i][i] * a[j][j]);
  }
  return b;
}

long double Norm(const Matrix& a) {
  long double norm = 0.0L;
  for (const Vector& row : a) {
    long double sum = 0.0L;
    for (const long double x : row) sum += std::fabs(x);
    norm = std::max(norm, sum);
  }
  return norm;
}

// The columns that don't depend on those before them.
std::vector<std::size_t> IndependentColumns(const Matrix& design, const Vector& weights) {
  constexpr long double kTolerance = 1e-10L;
  std::vector<std::size_t> kept;
  const std::size_t columns = design.empty() ? 0 : design.front().size();
  for (std::size_t k = 0; k < columns; ++k) {
    long double square = 0.0L;
    for (const Vector& line : design) square += line[k] * line[k];
    if (square == 0.0L) continue;
    kept.push_back(k);
    Matrix inverse;
    if (Eliminate(Scaled(CrossProducts(design, weights, kept)), kTolerance, inverse) <
        kept.size()) {
      kept.pop_back();
    }
  }
  return kept;
}

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
