// SPDX-License-Identifier: Apache-2.0
// Eigenvalues of a dense symmetric matrix of normal deviates, alone and with the vectors, beside
// the drivers of LAPACK for full and for packed storage.
#include "mcmath/mceigenvalues.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/eigenproblem.h"

#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;

MCSymMatrix Dense(int n) {
  std::mt19937_64 engine(3);
  std::normal_distribution<double> normal;
  MCSymMatrix result(n);
  for (double& x : result.AsVector()) x = normal(engine);
  return result;
}

void EigenValues(benchmark::State& state) {
  MCEigenValues problem(Dense(static_cast<int>(state.range(0))), 1e-12, 30);
  std::vector<double> values;
  for (auto _ : state) benchmark::DoNotOptimize(problem.Compute(values));
}

void EigenVectors(benchmark::State& state) {
  MCEigenValues problem(Dense(static_cast<int>(state.range(0))), 1e-12, 30);
  std::vector<double> values;
  MCRectMatrix vectors;
  for (auto _ : state) benchmark::DoNotOptimize(problem.Compute(values, vectors));
}

/// H H + I, the E of a pair.
MCSymMatrix DefiniteFrom(const MCSymMatrix& H) {
  MCSymMatrix E;
  H.ComputeSTransS(E);
  E.AddToDiagonal(1.0);
  return E;
}

void EigenPair(benchmark::State& state) {
  const MCSymMatrix H = Dense(static_cast<int>(state.range(0)));
  MCEigenValues problem(H, DefiniteFrom(H), 1e-12, 30);
  std::vector<double> values;
  MCRectMatrix vectors;
  for (auto _ : state) benchmark::DoNotOptimize(problem.Compute(values, vectors));
}

/// The copy that the driver overwrites is part of the work, as it is on the other side.
void EigenDsyev(benchmark::State& state, char job) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<double> square = mctest::FullSquare(Dense(n));
  std::vector<double> values(static_cast<std::size_t>(n));
  for (auto _ : state) {
    std::vector<double> work(square);
    LAPACKE_dsyev(LAPACK_COL_MAJOR, job, 'L', n, work.data(), n, values.data());
    benchmark::ClobberMemory();
  }
}

void EigenDspev(benchmark::State& state, char job) {
  const int n = static_cast<int>(state.range(0));
  const MCSymMatrix H = Dense(n);
  std::vector<double> values(static_cast<std::size_t>(n));
  std::vector<double> vectors(values.size() * values.size());
  for (auto _ : state) {
    std::vector<double> work(H.AsVectorConst());
    LAPACKE_dspev(LAPACK_COL_MAJOR, job, 'U', n, work.data(), values.data(), vectors.data(), n);
    benchmark::ClobberMemory();
  }
}

void EigenDsygv(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const MCSymMatrix H = Dense(n);
  const std::vector<double> square = mctest::FullSquare(H);
  const std::vector<double> other = mctest::FullSquare(DefiniteFrom(H));
  std::vector<double> values(static_cast<std::size_t>(n));
  for (auto _ : state) {
    std::vector<double> work(square);
    std::vector<double> otherWork(other);
    LAPACKE_dsygv(LAPACK_COL_MAJOR, 1, 'V', 'L', n, work.data(), n, otherWork.data(), n,
                  values.data());
    benchmark::ClobberMemory();
  }
}

#define MCSTAT_ORDERS Arg(50)->Arg(200)->Arg(500)->Unit(benchmark::kMicrosecond)
BENCHMARK(EigenValues)->MCSTAT_ORDERS;
BENCHMARK_CAPTURE(EigenDsyev, Values, 'N')->MCSTAT_ORDERS;
BENCHMARK_CAPTURE(EigenDspev, Values, 'N')->MCSTAT_ORDERS;
BENCHMARK(EigenVectors)->MCSTAT_ORDERS;
BENCHMARK_CAPTURE(EigenDsyev, Vectors, 'V')->MCSTAT_ORDERS;
BENCHMARK_CAPTURE(EigenDspev, Vectors, 'V')->MCSTAT_ORDERS;
BENCHMARK(EigenPair)->MCSTAT_ORDERS;
BENCHMARK(EigenDsygv)->MCSTAT_ORDERS;

}  // namespace
