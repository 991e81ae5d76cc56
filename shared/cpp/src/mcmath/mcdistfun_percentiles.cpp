// SPDX-License-Identifier: Apache-2.0
// Percentiles of weighted lists and confidence intervals for the median.
#include "mcmath/mcdistfun.h"
#include "mcmath/mcpower.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace MCCommonMath {

namespace {

using Doubles = std::vector<double>;

bool IsSorted(const Doubles& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::isnan(values[i]) || (i > 0 && values[i] < values[i - 1])) return false;
  }
  return !values.empty();
}

// Sum of the weights, or 0.0 if one of them is none.
double TotalWeight(const Doubles& values, const Doubles& weights) {
  if (weights.empty()) return static_cast<double>(values.size());
  if (weights.size() != values.size()) return 0.0;
  double total = 0.0;
  for (const double weight : weights) {
    if (!(weight >= 0.0)) return 0.0;
    total += weight;
  }
  return std::isfinite(total) ? total : 0.0;
}

// The value of rank `rank` in a list that repeats each value by its weight; ranks below the first
// and beyond the last weight count as these.
double ValueOfRank(double rank, const Doubles& values, const Doubles& weights) {
  if (weights.empty()) {
    const double last = static_cast<double>(values.size());
    return values[static_cast<std::size_t>(std::min(last, std::max(1.0, std::ceil(rank)))) - 1];
  }
  double cumulative = 0.0;
  std::size_t last = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (weights[i] == 0.0) continue;
    last = i;
    cumulative += weights[i];
    if (cumulative >= rank) break;
  }
  return values[last];
}

// Between neighbours. Nothing tells what lies between both infinities.
double Between(double lower, double upper, double share) {
  if (share == 0.0 || lower == upper) return lower;
  if (std::isinf(lower) && std::isinf(upper)) return MCMV::gMissingValue;
  return lower * (1.0 - share) + upper * share;
}

// An end of an interval between that of a wider one and that of a narrower one. Next to infinity it
// is the wider one: anywhere between them the confidence might be that of the narrower interval.
double EndBetween(double wide, double narrow, double share) {
  return std::isfinite(wide) && std::isfinite(narrow) ? Between(wide, narrow, share) : wide;
}

// Whether x is within rounding of a whole number.
bool IsNearlyWhole(double x) {
  constexpr double kRounding = 4.0 * MCPower::gMachineEpsilon;
  return std::fabs(x - std::round(x)) <= kRounding * std::max(1.0, std::fabs(x));
}

// Definitions 1 to 3 of Hyndman and Fan.
double Discontinuous(long method, double p, double n, const Doubles& values,
                     const Doubles& weights) {
  const double position = method == 3 ? n * p - 0.5 : n * p;
  if (!IsNearlyWhole(position)) {
    return ValueOfRank(position, values, weights);
  }
  const double rank = std::round(position);
  if (method == 1) return ValueOfRank(rank, values, weights);
  if (method == 3) {
    const bool isEven = std::fmod(rank, 2.0) == 0.0;
    return ValueOfRank(isEven ? rank : rank + 1.0, values, weights);
  }
  return Between(ValueOfRank(rank, values, weights), ValueOfRank(rank + 1.0, values, weights), 0.5);
}

// Definitions 4 to 9: rank a + p (n + 1 - a - b), with a = b but for the fourth.
double Continuous(long method, double p, double n, const Doubles& values, const Doubles& weights) {
  struct Positions {
    double fA;
    double fB;
  };
  constexpr Positions kPositions[] = {
      {0.0, 1.0}, {0.5, 0.5}, {0.0, 0.0}, {1.0, 1.0}, {1.0 / 3.0, 1.0 / 3.0}, {0.375, 0.375}};
  const Positions& ends = kPositions[method - 4];
  const double position = ends.fA + p * (n + 1.0 - ends.fA - ends.fB);
  const double rank = IsNearlyWhole(position) ? std::round(position) : std::floor(position);
  const double share = std::max(0.0, IsNearlyWhole(position) ? 0.0 : position - rank);
  return Between(ValueOfRank(rank, values, weights), ValueOfRank(rank + 1.0, values, weights),
                 share);
}

// Confidence of the interval between the order statistics r and n + 1 - r.
double Coverage(double r, double n) {
  long error = 0;
  return 1.0 - 2.0 * MCDistFun::CdfBin(r - 1.0, n, 0.5, error);
}

// The largest r with Coverage(r) >= level, where there is one.
double MostNarrow(double level, double n) {
  long error = 0;
  double r = std::max(1.0, MCDistFun::IdfBin((1.0 - level) / 2.0, n, 0.5, error));
  while (r > 1.0 && Coverage(r, n) < level) r -= 1.0;
  while (Coverage(r + 1.0, n) >= level) r += 1.0;
  return r;
}

}  // namespace

double MCDistFun::GPTile(long method, double p, const std::vector<double>& values,
                         const std::vector<double>& weights) {
  if (method < 1 || method > 9 || !(p >= 0.0 && p <= 1.0) || !IsSorted(values)) {
    return MCMV::gMissingValue;
  }
  const double n = TotalWeight(values, weights);
  if (!(n > 0.0)) return MCMV::gMissingValue;
  return method <= 3 ? Discontinuous(method, p, n, values, weights)
                     : Continuous(method, p, n, values, weights);
}

double MCDistFun::Mednci(long method, double level, const std::vector<double>& values,
                         double& lower, double& upper) {
  if (method < 1 || method > 2 || !(level > 0.0 && level < 1.0) || !IsSorted(values)) {
    return MCMV::gMissingValue;
  }
  const double n = static_cast<double>(values.size());
  if (Coverage(1.0, n) < level) return MCMV::gMissingValue;
  const double r = MostNarrow(level, n);
  const std::size_t first = static_cast<std::size_t>(r) - 1;
  const std::size_t last = values.size() - 1 - first;
  const double reached = Coverage(r, n);
  if (method == 1 || last <= first + 1) {
    lower = values[first];
    upper = values[last];
    return reached;
  }
  const double narrower = Coverage(r + 1.0, n);
  const double share = (reached - level) / (reached - narrower);
  const double weight = (n - r) * share / (r + (n - 2.0 * r) * share);
  lower = EndBetween(values[first], values[first + 1], weight);
  upper = EndBetween(values[last], values[last - 1], weight);
  return level;
}

}  // namespace MCCommonMath
