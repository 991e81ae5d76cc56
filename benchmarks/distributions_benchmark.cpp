// SPDX-License-Identifier: Apache-2.0
// Distribution functions, a call, beside Boost.Math in plain double. Arguments all over the middle
// of the distributions, 512 of them, parameters from 0.5 to 5,000.
#include "mcmath/mcdistfun.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/math/distributions.hpp>
#include <boost/math/special_functions.hpp>
#include <cmath>
#include <random>
#include <vector>

namespace {

namespace bm = boost::math;
using D = MCCommonMath::MCDistFun;
using Plain = bm::policies::policy<bm::policies::promote_double<false>>;

struct Point {
  double fA;
  double fB;
  double fP;      // from 0 to 1
  double fZ;      // from -4 to 4
  double fGamma;  // a point of the gamma distribution of fA
  double fRatio;  // one of the beta distribution of fA and fB
};

std::vector<Point> Points() {
  std::mt19937_64 generator(3);
  std::uniform_real_distribution<double> uniform;
  std::vector<Point> points(512);
  for (Point& p : points) {
    p.fA = std::pow(10.0, -0.3 + 4.0 * uniform(generator));
    p.fB = std::pow(10.0, -0.3 + 4.0 * uniform(generator));
    p.fP = uniform(generator);
    p.fZ = 8.0 * uniform(generator) - 4.0;
    const double root = 1.0 - 1.0 / (9.0 * p.fA) + p.fZ / (3.0 * std::sqrt(p.fA));
    p.fGamma = p.fA * std::pow(std::max(0.05, root), 3);
    p.fRatio = 1.0 / (1.0 + p.fB / p.fA * std::exp(p.fZ * std::sqrt(1.0 / p.fA + 1.0 / p.fB)));
  }
  return points;
}

template <class Function>
void Measure(benchmark::State& state, Function function) {
  static const std::vector<Point> points = Points();
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(function(points[next]));
    next = (next + 1) % points.size();
  }
}

long gError = 0;

#define MCSTAT_COMPARE(name, ours, peer)                    \
  void Distribution##name(benchmark::State& state) {        \
    Measure(state, [](const Point& p) { return ours; });    \
  }                                                         \
  BENCHMARK(Distribution##name);                            \
  void Distribution##name##Boost(benchmark::State& state) { \
    Measure(state, [](const Point& p) { return peer; });    \
  }                                                         \
  BENCHMARK(Distribution##name##Boost)

double Trials(const Point& p) {
  return std::ceil(p.fA);
}
double Chance(const Point& p) {
  return 0.02 + 0.9 * p.fP;
}
double Count(const Point& p) {
  return std::floor(Trials(p) * p.fP);
}

MCSTAT_COMPARE(Erfc, D::derfc(p.fZ), bm::erfc(p.fZ, Plain()));
MCSTAT_COMPARE(Normal, D::prbnrm(p.fZ), bm::cdf(bm::normal_distribution<double, Plain>(), p.fZ));
MCSTAT_COMPARE(NormalQuantile, D::probit(p.fP),
               bm::quantile(bm::normal_distribution<double, Plain>(), p.fP));
MCSTAT_COMPARE(LogGamma, D::dnlgam(p.fGamma), bm::lgamma(p.fGamma, Plain()));
MCSTAT_COMPARE(Gamma, D::gammad(p.fGamma, p.fA, true, gError),
               bm::gamma_q(p.fA, p.fGamma, Plain()));
MCSTAT_COMPARE(Beta, D::cdfbet(p.fRatio, p.fA, p.fB, gError),
               bm::ibeta(p.fA, p.fB, p.fRatio, Plain()));
MCSTAT_COMPARE(T, D::CdfT(p.fZ, p.fA),
               bm::cdf(bm::students_t_distribution<double, Plain>(p.fA), p.fZ));
MCSTAT_COMPARE(F, D::SigF(std::exp(0.3 * p.fZ), p.fA, p.fB),
               bm::cdf(bm::complement(bm::fisher_f_distribution<double, Plain>(p.fA, p.fB),
                                      std::exp(0.3 * p.fZ))));
MCSTAT_COMPARE(Binomial, D::CdfBin(Count(p), Trials(p), Chance(p), gError),
               bm::cdf(bm::binomial_distribution<double, Plain>(Trials(p), Chance(p)), Count(p)));
MCSTAT_COMPARE(BinomialTerm, D::PdfBin(Count(p), Trials(p), Chance(p), gError),
               bm::pdf(bm::binomial_distribution<double, Plain>(Trials(p), Chance(p)), Count(p)));
MCSTAT_COMPARE(ChiSquareQuantile, D::IdfChi(p.fP, p.fA),
               bm::quantile(bm::chi_squared_distribution<double, Plain>(p.fA), p.fP));
MCSTAT_COMPARE(BetaQuantile, D::IdfBeta(p.fP, p.fA, p.fB),
               bm::ibeta_inv(p.fA, p.fB, p.fP, Plain()));
MCSTAT_COMPARE(TQuantile, D::IdfT(p.fP, p.fA),
               bm::quantile(bm::students_t_distribution<double, Plain>(p.fA), p.fP));
MCSTAT_COMPARE(FQuantile, D::IdfF(p.fP, p.fA, p.fB),
               bm::quantile(bm::fisher_f_distribution<double, Plain>(p.fA, p.fB), p.fP));

}  // namespace
