// SPDX-License-Identifier: Apache-2.0
#include "support/densedesign.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>

namespace mctest {

namespace {

using Codes = std::vector<int>;

constexpr double kMissing = std::numeric_limits<double>::lowest();

int CodeAt(const Row& row, int position) {
  return static_cast<int>(At(row, position) + 0.5);
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

}  // namespace

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

std::vector<std::size_t> IndependentColumns(const Matrix& design, const Vector& weights) {
  constexpr long double kTolerance = 1e-10L;
  std::vector<std::size_t> all(design.empty() ? 0 : design.front().size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  const Matrix products = CrossProducts(design, weights, all);
  std::vector<std::size_t> kept;
  for (const std::size_t k : all) {
    if (products[k][k] == 0.0L) continue;
    kept.push_back(k);
    Matrix part;
    for (const std::size_t i : kept) {
      Vector& line = part.emplace_back();
      for (const std::size_t j : kept) line.push_back(products[i][j]);
    }
    Matrix inverse;
    if (Eliminate(Scaled(part), kTolerance, inverse) < kept.size()) kept.pop_back();
  }
  return kept;
}

}  // namespace mctest
