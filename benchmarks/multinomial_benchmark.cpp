// SPDX-License-Identifier: Apache-2.0
// Probabilities of m + 1 categories for 4096 rows of linear predictors, each between -10 and 10.
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using MCCommonMath::detail::KernelsOf;
using MCCommonMath::detail::VectorPath;
using MCCommonMath::detail::WidestVectorPath;

constexpr std::size_t kRows = 4096;
constexpr std::size_t kBlock = MCCommonMath::detail::kProbabilityRows;

std::vector<double> Predictors(std::size_t m) {
  std::mt19937_64 engine(3);
  std::uniform_real_distribution<double> uniform(-10.0, 10.0);
  std::vector<double> eta(kRows * m);
  for (double& x : eta) x = uniform(engine);
  return eta;
}

void CountRows(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}

void MultinomialKernel(benchmark::State& state, VectorPath path) {
  const std::size_t m = static_cast<std::size_t>(state.range(0));
  const std::vector<double> eta = Predictors(m);
  std::vector<double> probs(kRows * (m + 1));
  std::vector<double> logLast(kRows);
  const auto kernel = KernelsOf(path).multinomial;
  for (auto _ : state) {
    for (std::size_t r = 0; r < kRows; r += kBlock) {
      kernel(eta.data() + r * m, m, probs.data() + r * (m + 1), logLast.data() + r);
    }
    benchmark::ClobberMemory();
  }
  CountRows(state);
}

/// The least that a row costs with exp and log of the C library: m exponentials and a logarithm.
void MultinomialPlainLoop(benchmark::State& state) {
  const std::size_t m = static_cast<std::size_t>(state.range(0));
  const std::vector<double> eta = Predictors(m);
  std::vector<double> probs(kRows * (m + 1));
  std::vector<double> logLast(kRows);
  for (auto _ : state) {
    for (std::size_t r = 0; r < kRows; ++r) {
      const double* x = eta.data() + r * m;
      double* p = probs.data() + r * (m + 1);
      const double top = std::max(0.0, *std::max_element(x, x + m));
      double sum = std::exp(-top);
      p[m] = sum;
      for (std::size_t j = 0; j < m; ++j) sum += p[j] = std::exp(x[j] - top);
      for (std::size_t j = 0; j <= m; ++j) p[j] /= sum;
      logLast[r] = -top - std::log(sum);
    }
    benchmark::ClobberMemory();
  }
  CountRows(state);
}

BENCHMARK_CAPTURE(MultinomialKernel, Widest, WidestVectorPath())->DenseRange(1, 3);
BENCHMARK_CAPTURE(MultinomialKernel, Sse2, VectorPath::kSse2)->DenseRange(1, 3);
BENCHMARK(MultinomialPlainLoop)->DenseRange(1, 3);

}  // namespace
