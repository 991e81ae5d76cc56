// SPDX-License-Identifier: Apache-2.0
#include "support/logisticoracle.h"

#include <algorithm>
#include <cmath>

namespace mctest {

namespace {

constexpr int kMaxIterations = 100;

// The rows that take part, with the non-redundant columns alone.
struct Sample {
  Matrix design;
  Vector weights;
  std::vector<std::size_t> observed;  // by row, place of its category
  Vector counts;                      // by category, sum of the frequency weights
  std::size_t equations = 0;

  std::size_t Columns() const { return design.front().size(); }
};

// Likelihood and its derivatives at some estimates.
struct Point {
  long double logLikelihood = 0.0L;
  Vector score;
  Matrix information;
};

// Fills `p` with the probabilities of a row, the reference last; the log of the observed one.
long double Probabilities(const Sample& sample, std::size_t r, const Vector& beta, Vector& p) {
  const std::size_t columns = sample.Columns();
  p.assign(sample.equations + 1, 0.0L);
  for (std::size_t t = 0; t < sample.equations; ++t) {
    for (std::size_t j = 0; j < columns; ++j) {
      p[t] += sample.design[r][j] * beta[t * columns + j];
    }
  }
  const long double top = *std::max_element(p.begin(), p.end());
  const long double observed = p[sample.observed[r]] - top;
  long double sum = 0.0L;
  for (long double& q : p) sum += (q = std::exp(q - top));
  for (long double& q : p) q /= sum;
  return observed - std::log(sum);
}

long double LogLikelihood(const Sample& sample, const Vector& beta) {
  Vector p;
  long double sum = 0.0L;
  for (std::size_t r = 0; r < sample.design.size(); ++r) {
    sum += sample.weights[r] * Probabilities(sample, r, beta, p);
  }
  return sum;
}

Point Evaluate(const Sample& sample, const Vector& beta) {
  const std::size_t columns = sample.Columns();
  const std::size_t n = beta.size();
  Point point{0.0L, Vector(n, 0.0L), Matrix(n, Vector(n, 0.0L))};
  Vector p;
  for (std::size_t r = 0; r < sample.design.size(); ++r) {
    const Vector& x = sample.design[r];
    const long double w = sample.weights[r];
    point.logLikelihood += w * Probabilities(sample, r, beta, p);
    for (std::size_t a = 0; a < n; ++a) {
      const long double xa = x[a % columns];
      if (xa == 0.0L) continue;
      const std::size_t s = a / columns;
      point.score[a] += w * xa * ((sample.observed[r] == s ? 1.0L : 0.0L) - p[s]);
      for (std::size_t b = 0; b <= a; ++b) {
        const std::size_t t = b / columns;
        point.information[a][b] += w * xa * x[b % columns] * ((s == t ? p[s] : 0.0L) - p[s] * p[t]);
      }
    }
  }
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = 0; b < a; ++b) point.information[b][a] = point.information[a][b];
  }
  return point;
}

// The Cholesky factor of a positive definite matrix whose diagonal was scaled to 1.
class ScaledFactor {
public:
  explicit ScaledFactor(const Matrix& a) : fScale(a.size()), fFactor(Scaled(a)) {
    for (std::size_t i = 0; i < a.size(); ++i) fScale[i] = 1.0L / std::sqrt(a[i][i]);
    for (std::size_t i = 0; i < a.size(); ++i) {
      for (std::size_t j = 0; j <= i; ++j) {
        for (std::size_t k = 0; k < j; ++k) fFactor[i][j] -= fFactor[i][k] * fFactor[j][k];
        fFactor[i][j] = i == j ? std::sqrt(fFactor[i][i]) : fFactor[i][j] / fFactor[j][j];
      }
    }
  }

  // The scaled system.
  Vector SolveScaled(Vector b) const {
    const std::size_t n = b.size();
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t k = 0; k < i; ++k) b[i] -= fFactor[i][k] * b[k];
      b[i] /= fFactor[i][i];
    }
    for (std::size_t i = n; i-- > 0;) {
      for (std::size_t k = i + 1; k < n; ++k) b[i] -= fFactor[k][i] * b[k];
      b[i] /= fFactor[i][i];
    }
    return b;
  }

  Vector Solve(Vector b) const {
    for (std::size_t i = 0; i < b.size(); ++i) b[i] *= fScale[i];
    b = SolveScaled(std::move(b));
    for (std::size_t i = 0; i < b.size(); ++i) b[i] *= fScale[i];
    return b;
  }

  Matrix ScaledInverse() const {
    Matrix inverse;
    for (std::size_t i = 0; i < fScale.size(); ++i) {
      Vector unit(fScale.size(), 0.0L);
      unit[i] = 1.0L;
      inverse.push_back(SolveScaled(std::move(unit)));
    }
    return inverse;
  }

  long double Scale(std::size_t i) const { return fScale[i]; }

private:
  Vector fScale;
  Matrix fFactor;
};

Vector Moved(const Vector& from, const Vector& step, long double factor) {
  Vector to = from;
  for (std::size_t i = 0; i < to.size(); ++i) to[i] += factor * step[i];
  return to;
}

// Newton steps, halved while the likelihood falls by more than rounding; true once a step is so
// small, in units of the scale of the information, that its square is below rounding.
bool Climb(const Sample& sample, Vector& beta) {
  constexpr long double kRounding = 1e-16L;
  for (int iteration = 0; iteration < kMaxIterations; ++iteration) {
    const Point point = Evaluate(sample, beta);
    const ScaledFactor factorized(point.information);
    const Vector step = factorized.Solve(point.score);
    const long double floor = point.logLikelihood - kRounding * std::fabs(point.logLikelihood);
    long double factor = 1.0L;
    while (factor > 1e-12L && !(LogLikelihood(sample, Moved(beta, step, factor)) >= floor)) {
      factor /= 2.0L;
    }
    beta = Moved(beta, step, factor);
    long double change = 0.0L;
    for (std::size_t i = 0; i < beta.size(); ++i) {
      change = std::max(change, std::fabs(step[i]) / factorized.Scale(i));
    }
    if (change < 1e-11L) return true;
    if (!std::isfinite(change)) return false;
  }
  return false;
}

bool IsCategory(const LogisticProblem& problem, double code) {
  return code >= 0.0 && code < problem.categories;
}

std::vector<int> OrderedCategories(const LogisticProblem& problem, const std::vector<Row>& rows) {
  std::vector<int> seen;
  for (int c = 0; c < problem.categories; ++c) {
    const bool occurs = std::any_of(
        rows.begin(), rows.end(), [&](const Row& row) { return At(row, problem.dependent) == c; });
    if (occurs) seen.push_back(c);
  }
  auto reference = std::find(seen.begin(), seen.end(), problem.reference);
  if (problem.reference == -2) reference = seen.begin();
  if (reference == seen.end()) --reference;
  std::rotate(reference, reference + 1, seen.end());
  return seen;
}

// The sample, and in `oracle` the categories, the rows and the redundancy.
Sample MakeSample(const LogisticProblem& problem, LogisticOracle& oracle) {
  std::vector<Row> rows;
  for (std::size_t r = 0; r < problem.rows.size(); ++r) {
    const Row& row = problem.rows[r];
    if (!IsUsable(problem, row) || !IsCategory(problem, At(row, problem.dependent))) continue;
    rows.push_back(row);
    oracle.rows.push_back(r);
  }
  oracle.categories = OrderedCategories(problem, rows);
  Sample sample;
  sample.equations = oracle.categories.size() - 1;
  sample.counts.assign(oracle.categories.size(), 0.0L);
  for (const Row& row : rows) {
    const auto place = std::find(oracle.categories.begin(), oracle.categories.end(),
                                 static_cast<int>(At(row, problem.dependent)));
    sample.observed.push_back(static_cast<std::size_t>(place - oracle.categories.begin()));
    const long double freq = problem.freqWeight >= 0 ? At(row, problem.freqWeight) : 1.0;
    const long double regr = problem.regrWeight >= 0 ? At(row, problem.regrWeight) : 1.0;
    sample.counts[sample.observed.back()] += freq;
    sample.weights.push_back(freq * regr);
    oracle.totalFrequency += freq;
  }
  const Matrix design = BuildDesign(problem, rows);
  const std::vector<std::size_t> kept = IndependentColumns(design, sample.weights);
  oracle.redundant.assign(design.front().size(), true);
  for (const std::size_t k : kept) oracle.redundant[k] = false;
  for (const Vector& line : design) {
    Vector& part = sample.design.emplace_back();
    for (const std::size_t k : kept) part.push_back(line[k]);
  }
  return sample;
}

Vector InitialEstimates(const LogisticProblem& problem, const Sample& sample) {
  Vector beta(sample.equations * sample.Columns(), 0.0L);
  if (!problem.intercept) return beta;
  for (std::size_t t = 0; t < sample.equations; ++t) {
    beta[t * sample.Columns()] = std::log(sample.counts[t] / sample.counts.back());
  }
  return beta;
}

// Estimates and covariance over all columns.
void Spread(const Sample& sample, const Vector& beta, const Matrix& information,
            LogisticOracle& oracle) {
  const std::size_t all = sample.equations * oracle.redundant.size();
  oracle.estimates.assign(all, 0.0L);
  oracle.covariance.assign(all, Vector(all, 0.0L));
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < all; ++i) {
    if (!oracle.redundant[i % oracle.redundant.size()]) places.push_back(i);
  }
  const ScaledFactor factor(information);
  const Matrix inverse = factor.ScaledInverse();
  oracle.condition = static_cast<double>(Norm(Scaled(information)) * Norm(inverse));
  for (std::size_t a = 0; a < places.size(); ++a) {
    oracle.estimates[places[a]] = beta[a];
    for (std::size_t b = 0; b < places.size(); ++b) {
      oracle.covariance[places[a]][places[b]] = factor.Scale(a) * inverse[a][b] * factor.Scale(b);
    }
  }
}

void ComputeRSquares(const Sample& sample, LogisticOracle& oracle) {
  long double total = 0.0L;
  for (const long double w : sample.weights) total += w;
  oracle.coxSnell = 1.0L - std::exp(2.0L * (oracle.initialLL - oracle.finalLL) / total);
  oracle.nagelkerke = oracle.coxSnell / (1.0L - std::exp(2.0L * oracle.initialLL / total));
  oracle.mcFadden = 1.0L - oracle.finalLL / oracle.initialLL;
}

}  // namespace

LogisticOracle FitLogistic(const LogisticProblem& problem) {
  LogisticOracle oracle;
  const Sample sample = MakeSample(problem, oracle);
  Vector beta = InitialEstimates(problem, sample);
  oracle.initialLL = LogLikelihood(sample, beta);
  oracle.converged = Climb(sample, beta);
  const Point point = Evaluate(sample, beta);
  oracle.finalLL = point.logLikelihood;
  Spread(sample, beta, point.information, oracle);
  ComputeRSquares(sample, oracle);
  for (std::size_t r = 0; r < sample.design.size(); ++r) {
    Probabilities(sample, r, beta, oracle.probabilities.emplace_back());
  }
  return oracle;
}

}  // namespace mctest
