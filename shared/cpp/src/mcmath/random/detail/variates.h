// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngenerator.h"
#include "mcmath/random/mcurandom.h"
#include "regression/frame/mcmv.h"

#include <algorithm>
#include <cmath>
#include <limits>

// Variates from uniform numbers. All are rejection methods without a memory of their own, so that a
// sequence depends on the state of the uniform source alone. A source may give any numbers, even
// none that serve, such as a constant: each loop gives up after so many rounds as chance never
// needs, and then answers NaN, which every method hands on.

namespace MCCommonMath {
namespace detail {

inline constexpr int kMaxRounds = 1000;
inline constexpr double kSmallestShape = 1e-300;
inline constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

inline double DrawFrom(MCURandom& source) {
  return source.GetRandom();
}
inline double DrawFrom(MCRNGenerator& source) {
  return source.GetNext();
}

/// The numbers of a source that lie strictly between 0 and 1; others are drawn again.
template <class Source>
class OpenUniform {
public:
  explicit OpenUniform(Source& source) : fSource(&source) {}

  double operator()() {
    for (int round = 0; round < kMaxRounds; ++round) {
      const double u = DrawFrom(*fSource);
      if (u > 0.0 && u < 1.0) return u;
    }
    return kNoNumber;
  }

private:
  Source* fSource;
};

/// A result as hosts know it: a variate that couldn't be drawn is missing, one beyond doubles the
/// largest of them.
inline double Answer(double variate) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  return std::isnan(variate) ? MCMV::gMissingValue : std::clamp(variate, -kLargest, kLargest);
}

/// What may be a shape or a number of degrees of freedom: numbers so small that even the logarithm
/// of a gamma leaves the range of doubles may not.
inline bool IsShape(double x) {
  return x >= kSmallestShape && std::isfinite(x);
}

/// Standard normal. Ratio of uniforms with quadratic bounds (Leva 1992), which needs 2.74 numbers
/// and 0.012 logarithms on average.
template <class Uniform>
double StandardNormal(Uniform& uniform) {
  for (int round = 0; round < kMaxRounds; ++round) {
    const double u = uniform();
    const double v = 1.7156 * (uniform() - 0.5);
    const double x = u - 0.449871;
    const double y = std::fabs(v) + 0.386595;
    const double q = x * x + y * (0.19600 * y - 0.25472 * x);
    if (q < 0.27597) return v / u;
    if (q <= 0.27846 && v * v <= -4.0 * std::log(u) * u * u) return v / u;
    if (std::isnan(q)) break;
  }
  return kNoNumber;
}

/// What may be the mean and the standard deviation of a normal distribution.
inline bool AreNormal(double mean, double deviation) {
  return std::isfinite(mean) && std::isfinite(deviation) && deviation >= 0.0;
}

template <class Uniform>
double Normal(double mean, double deviation, Uniform& uniform) {
  return mean + deviation * StandardNormal(uniform);
}

/// Exponential with mean 1, by inversion.
template <class Uniform>
double StandardExponential(Uniform& uniform) {
  return -std::log(uniform());
}

/// Gamma of a shape from 1 up, scale 1, by the transformed normal of Marsaglia and Tsang (2000).
/// The logarithm of its test is taken by log1p, which holds for large shapes too.
template <class Uniform>
double GammaFromOneUp(double shape, Uniform& uniform) {
  const double d = shape - 1.0 / 3.0;
  const double c = 1.0 / (3.0 * std::sqrt(d));
  for (int round = 0; round < kMaxRounds; ++round) {
    const double x = StandardNormal(uniform);
    if (std::isnan(x)) break;
    const double t = c * x;
    if (t <= -1.0) continue;
    const double u = uniform();
    const double square = x * x;
    const double variate = d * (1.0 + t) * (1.0 + t) * (1.0 + t);
    if (u < 1.0 - 0.0331 * square * square) return variate;
    const double logRatio = d * (3.0 * (std::log1p(t) - t) - t * t * (3.0 + t));
    if (std::log(u) < 0.5 * square + logRatio) return variate;
  }
  return kNoNumber;
}

/// Logarithm of a gamma of any shape above 0, scale 1. A small shape is raised by 1 and the variate
/// multiplied by u^(1/shape), which may underflow where its logarithm doesn't.
template <class Uniform>
double LogGamma(double shape, Uniform& uniform) {
  if (shape >= 1.0) return std::log(GammaFromOneUp(shape, uniform));
  const double raised = std::log(GammaFromOneUp(shape + 1.0, uniform));
  return raised + std::log(uniform()) / shape;
}

/// Gamma of any shape above 0, scale 1.
template <class Uniform>
double StandardGamma(double shape, Uniform& uniform) {
  return shape >= 1.0 ? GammaFromOneUp(shape, uniform) : std::exp(LogGamma(shape, uniform));
}

/// Chi-square with degrees of freedom above 0.
template <class Uniform>
double ChiSquare(double degreesOfFreedom, Uniform& uniform) {
  return 2.0 * StandardGamma(0.5 * degreesOfFreedom, uniform);
}

/// Beta with parameters above 0: X / (X + Y) of two gammas (Devroye 1986, ch. IX.3). In logarithms
/// where one of them may underflow: those of large gammas would be too coarse.
template <class Uniform>
double Beta(double a, double b, Uniform& uniform) {
  if (std::min(a, b) >= 1.0) {
    const double x = GammaFromOneUp(a, uniform);
    return 1.0 / (1.0 + GammaFromOneUp(b, uniform) / x);
  }
  const double logX = LogGamma(a, uniform);
  const double logY = LogGamma(b, uniform);
  return 1.0 / (1.0 + std::exp(logY - logX));
}

/// F with degrees of freedom above 0: the ratio of two chi-squares, each over its degrees of
/// freedom. In logarithms where Beta() is.
template <class Uniform>
double FRatio(double numerator, double denominator, Uniform& uniform) {
  if (std::min(numerator, denominator) >= 2.0) {
    const double x = GammaFromOneUp(0.5 * numerator, uniform) / numerator;
    return x / (GammaFromOneUp(0.5 * denominator, uniform) / denominator);
  }
  const double logX = LogGamma(0.5 * numerator, uniform) - std::log(numerator);
  const double logY = LogGamma(0.5 * denominator, uniform) - std::log(denominator);
  return std::exp(logX - logY);
}

/// Binomial of n trials with probability p <= 1/2, n p < 10, by inversion: the cumulated
/// probabilities are run through from 0 up (Kachitvichyanukul and Schmeiser 1988, their BINV).
template <class Uniform>
double BinomialByInversion(double n, double p, Uniform& uniform) {
  constexpr double kFarthest = 110.0;
  const double first = std::exp(n * std::log1p(-p));
  const double odds = p / (1.0 - p);
  const int last = static_cast<int>(std::min(n, kFarthest));
  for (int round = 0; round < kMaxRounds; ++round) {
    double u = uniform();
    if (std::isnan(u)) break;
    double probability = first;
    for (int k = 0; k <= last; ++k) {
      if (u <= probability) return k;
      u -= probability;
      probability *= (n - k) / (k + 1.0) * odds;
    }
  }
  return kNoNumber;
}

/// ln k! less ln(sqrt(2 pi)) + (k + 1/2) ln(k + 1) - (k + 1): a table, then the Stirling series.
double FactorialCorrection(double k);

/// ln(f(k) / f(m)) for the probabilities f of a binomial, p <= 1/2, with every logarithm taken of a
/// ratio near 1, where k and m are near the mean: so it is good to 1e-6 also for n = 2^53.
double LogBinomialRatio(double n, double p, double k, double m);

/// Binomial of n trials with probability p <= 1/2, n p >= 10, by transformed rejection with a
/// squeeze (Hormann 1993, his BTRS).
template <class Uniform>
double BinomialByRejection(double n, double p, Uniform& uniform) {
  const double deviation = std::sqrt(n * p * (1.0 - p));
  const double b = 1.15 + 2.53 * deviation;
  const double a = -0.0873 + 0.0248 * b + 0.01 * p;
  const double centre = n * p + 0.5;
  const double squeeze = 0.92 - 4.2 / b;
  const double alpha = (2.83 + 5.1 / b) * deviation;
  const double mode = std::floor((n + 1.0) * p);
  for (int round = 0; round < kMaxRounds; ++round) {
    const double u = uniform() - 0.5;
    if (std::isnan(u)) break;
    const double v = uniform();
    const double s = 0.5 - std::fabs(u);
    const double k = std::floor((2.0 * a / s + b) * u + centre);
    if (s >= 0.07 && v <= squeeze) return k;
    if (!(k >= 0.0 && k <= n)) continue;
    const double logHat = std::log(v * alpha / (a / (s * s) + b));
    if (logHat <= LogBinomialRatio(n, p, k, mode)) return k;
  }
  return kNoNumber;
}

/// Binomial of whole n >= 0 trials with probability p in [0, 1].
template <class Uniform>
double Binomial(double n, double p, Uniform& uniform) {
  if (p > 0.5) return n - Binomial(n, 1.0 - p, uniform);
  return n * p < 10.0 ? BinomialByInversion(n, p, uniform) : BinomialByRejection(n, p, uniform);
}

}  // namespace detail
}  // namespace MCCommonMath
