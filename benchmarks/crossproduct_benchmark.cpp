// SPDX-License-Identifier: Apache-2.0
// Cross-products of 4096 dense rows, and of as many rows with few non-zeros, in a packed triangle.
#include "mcmath/detail/mccrossproduct.h"

#include <Eigen/Dense>
#include <benchmark/benchmark.h>
#include <cblas.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

using MCCommonMath::detail::AddRankOne;
using MCCommonMath::detail::MCCrossProduct;
using MCCommonMath::detail::VectorPath;

constexpr std::size_t kRows = 4096;
constexpr double kWeight = 1.0 / 4096.0;

std::vector<double> DenseRows(std::size_t n) {
  std::mt19937_64 engine(1);
  std::normal_distribution<double> normal;
  std::vector<double> rows(kRows * n);
  for (double& x : rows) x = normal(engine);
  return rows;
}

std::vector<double> Triangle(std::size_t n) {
  return std::vector<double>(n * (n + 1) / 2, 0.0);
}

/// One multiplication and one addition for each element of the triangle.
void CountWork(benchmark::State& state, double rowFlops) {
  const double rows = static_cast<double>(state.iterations()) * kRows;
  state.counters["rows/s"] = benchmark::Counter(rows, benchmark::Counter::kIsRate);
  state.counters["flop/s"] = benchmark::Counter(rows * rowFlops, benchmark::Counter::kIsRate);
}

double DenseFlops(std::size_t n) {
  return static_cast<double>(n) * static_cast<double>(n + 1);
}

void DensePlainLoop(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const std::vector<double> rows = DenseRows(n);
  std::vector<double> triangle = Triangle(n);
  for (auto _ : state) {
    for (std::size_t k = 0; k < kRows; ++k) {
      AddRankOne(triangle.data(), n, rows.data() + k * n, kWeight);
    }
    benchmark::ClobberMemory();
  }
  CountWork(state, DenseFlops(n));
}

void DenseBlocked(benchmark::State& state, VectorPath path) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const std::vector<double> rows = DenseRows(n);
  std::vector<double> triangle = Triangle(n);
  MCCrossProduct accumulator(static_cast<int>(n), triangle, path);
  for (auto _ : state) {
    for (std::size_t k = 0; k < kRows; ++k) accumulator.AddRow(rows.data() + k * n, kWeight);
    accumulator.Flush();
    benchmark::ClobberMemory();
  }
  CountWork(state, DenseFlops(n));
}

/// The whole of the rows in one call: the peer's best case.
void DenseDsyrk(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const int order = static_cast<int>(n);
  const std::vector<double> rows = DenseRows(n);
  std::vector<double> square(n * n, 0.0);
  for (auto _ : state) {
    cblas_dsyrk(CblasRowMajor, CblasLower, CblasTrans, order, static_cast<int>(kRows), kWeight,
                rows.data(), order, 1.0, square.data(), order);
    benchmark::ClobberMemory();
  }
  CountWork(state, DenseFlops(n));
}

void DenseEigen(benchmark::State& state) {
  using Matrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const Eigen::Index order = static_cast<Eigen::Index>(n);
  const std::vector<double> data = DenseRows(n);
  const Eigen::Map<const Matrix> rows(data.data(), static_cast<Eigen::Index>(kRows), order);
  Matrix square = Matrix::Zero(order, order);
  for (auto _ : state) {
    square.selfadjointView<Eigen::Lower>().rankUpdate(rows.transpose(), kWeight);
    benchmark::ClobberMemory();
  }
  CountWork(state, DenseFlops(n));
}

/// Rows of `kNonZeros` entries at ascending places, as factors make them.
struct SparseRows {
  static constexpr std::size_t kNonZeros = 10;
  std::vector<int> positions;
  std::vector<double> values;

  explicit SparseRows(std::size_t n) {
    std::mt19937_64 engine(2);
    std::normal_distribution<double> normal;
    for (std::size_t k = 0; k < kRows; ++k) {
      for (std::size_t a = 0; a < kNonZeros; ++a) {
        const std::size_t from = a * n / kNonZeros;
        const std::size_t to = (a + 1) * n / kNonZeros;
        positions.push_back(static_cast<int>(from + engine() % (to - from)));
        values.push_back(normal(engine));
      }
    }
  }
};

double SparseFlops() {
  return DenseFlops(SparseRows::kNonZeros);
}

void SparseScatter(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const SparseRows rows(n);
  std::vector<double> triangle = Triangle(n);
  MCCrossProduct accumulator(static_cast<int>(n), triangle);
  constexpr std::size_t kNonZeros = SparseRows::kNonZeros;
  for (auto _ : state) {
    for (std::size_t k = 0; k < kRows * kNonZeros; k += kNonZeros) {
      accumulator.AddSparseRow(kNonZeros, rows.positions.data() + k, rows.values.data() + k,
                               kWeight);
    }
    accumulator.Flush();
    benchmark::ClobberMemory();
  }
  CountWork(state, SparseFlops());
}

/// The same rows written out, zeros included.
void SparsePlainLoop(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  const SparseRows rows(n);
  constexpr std::size_t kNonZeros = SparseRows::kNonZeros;
  std::vector<double> triangle = Triangle(n);
  std::vector<double> written(kRows * n, 0.0);
  for (std::size_t k = 0; k < kRows * kNonZeros; ++k) {
    written[k / kNonZeros * n + static_cast<std::size_t>(rows.positions[k])] = rows.values[k];
  }
  for (auto _ : state) {
    for (std::size_t k = 0; k < kRows; ++k) {
      AddRankOne(triangle.data(), n, written.data() + k * n, kWeight);
    }
    benchmark::ClobberMemory();
  }
  CountWork(state, SparseFlops());
}

#define MCSTAT_ORDERS Arg(11)->Arg(50)->Arg(200)->Arg(1000)->Unit(benchmark::kMicrosecond)
BENCHMARK_CAPTURE(DenseBlocked, Sse2, VectorPath::kSse2)->MCSTAT_ORDERS;
BENCHMARK_CAPTURE(DenseBlocked, Widest, MCCommonMath::detail::WidestVectorPath())->MCSTAT_ORDERS;
BENCHMARK(DensePlainLoop)->MCSTAT_ORDERS;
BENCHMARK(DenseDsyrk)->MCSTAT_ORDERS;
BENCHMARK(DenseEigen)->MCSTAT_ORDERS;
BENCHMARK(SparseScatter)->MCSTAT_ORDERS;
BENCHMARK(SparsePlainLoop)->MCSTAT_ORDERS;

}  // namespace
