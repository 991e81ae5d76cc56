// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

/// Do numbers come from the distribution that they should? Each statistic here is held against the
/// limit that it exceeds with probability 1e-4 where they do: with other seeds one test in 10,000
/// would fail for nothing, with the fixed ones of the tests none does.
namespace mctest {

/// Limit of KolmogorovSmirnov(): 2 exp(-2 x^2) = 1e-4.
constexpr double kKolmogorovLimit = 2.2253;
/// Limit of statistics that are standard normal, taken absolutely.
constexpr double kNormalLimit = 3.8906;
/// The same where only large values tell.
constexpr double kUpperNormalLimit = 3.7190;

/// Root of n times the largest distance between the distribution function of n numbers and `cdf`.
template <class Cdf>
double KolmogorovSmirnov(std::vector<double> numbers, Cdf cdf) {
  std::sort(numbers.begin(), numbers.end());
  const auto n = static_cast<double>(numbers.size());
  double distance = 0.0;
  double before = 0.0;
  for (const double x : numbers) {
    const auto p = static_cast<double>(cdf(x));
    distance = std::max({distance, p - before / n, (before + 1.0) / n - p});
    before += 1.0;
  }
  return std::sqrt(n) * distance;
}

/// Pearson's chi-square of counts, as a standard normal (Wilson and Hilferty 1931). Cells of less
/// than 5 expected are pooled with those behind them.
inline double ChiSquareOfCounts(const std::vector<double>& counts,
                                const std::vector<double>& expected) {
  double sum = 0.0;
  double nCells = 0.0;
  double count = 0.0;
  double expectation = 0.0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    count += counts[i];
    expectation += expected[i];
    if (expectation < 5.0) continue;
    sum += (count - expectation) * (count - expectation) / expectation;
    nCells += 1.0;
    count = expectation = 0.0;
  }
  const double spread = 2.0 / (9.0 * (nCells - 1.0));
  return (std::cbrt(sum / (nCells - 1.0)) - (1.0 - spread)) / std::sqrt(spread);
}

/// The mean of numbers whose mean should be `mean`, as a standard normal.
inline double StandardisedMean(const std::vector<double>& numbers, double mean) {
  const auto n = static_cast<double>(numbers.size());
  double sum = 0.0;
  double squares = 0.0;
  for (const double x : numbers) {
    sum += x - mean;
    squares += (x - mean) * (x - mean);
  }
  const double variance = squares / n - sum / n * (sum / n);
  return sum / n / std::sqrt(variance / n);
}

// Distribution functions, in extended precision and by other ways than the library.

inline long double NormalCdf(long double x) {
  return 0.5L * std::erfc(-x / std::sqrt(2.0L));
}

/// Gamma of a shape, scale 1: the power series, all of whose terms are positive.
inline long double GammaCdf(long double shape, long double x) {
  if (x <= 0.0L) return 0.0L;
  long double term = std::exp(shape * std::log(x) - x - std::lgamma(shape + 1.0L));
  long double sum = 0.0L;
  for (long double n = 1.0L; term > sum * 1e-20L || n < x; n += 1.0L) {
    sum += term;
    term *= x / (shape + n);
  }
  return std::min(sum, 1.0L);
}

/// Beta with parameters up to 60: the continued fraction 26.5.8 of Abramowitz and Stegun (1964),
/// from the bottom up.
inline long double BetaCdf(long double a, long double b, long double x) {
  if (x <= 0.0L || x >= 1.0L) return x <= 0.0L ? 0.0L : 1.0L;
  if (x > a / (a + b)) return 1.0L - BetaCdf(b, a, 1.0L - x);
  long double fraction = 1.0L;
  for (long double m = 50.0L; m >= 0.0L; m -= 1.0L) {
    const long double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
    const long double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
    fraction = 1.0L + odd / fraction;
    if (m > 0.0L) fraction = 1.0L + even / fraction;
  }
  const long double front = a * std::log(x) + b * std::log1p(-x) + std::lgamma(a + b) -
                            std::lgamma(a + 1.0L) - std::lgamma(b);
  return std::exp(front) / fraction;
}

inline long double BinomialProbability(long double n, long double p, long double k) {
  return std::exp(std::lgamma(n + 1) - std::lgamma(k + 1) - std::lgamma(n - k + 1) +
                  k * std::log(p) + (n - k) * std::log1p(-p));
}

}  // namespace mctest
