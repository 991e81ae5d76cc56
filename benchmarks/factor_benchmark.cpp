// SPDX-License-Identifier: Apache-2.0
// Sweep and Cholesky of cross-product matrices, against LAPACK. Each run works on a fresh copy; the
// peers copy as well.
#include "mcmath/detail/mcsweeprows.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/matrices.h"
#include "support/randomcrossproducts.h"

#include <Eigen/Dense>
#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <cstddef>
#include <vector>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::DiagonalOf;

constexpr double kTolerance = 1e-12;

MCSymMatrix CrossProducts(int n) {
  return mctest::RandomCrossProducts(n, 2 * n, 1U);
}

std::vector<double> Square(const MCSymMatrix& matrix) {
  std::vector<double> square;
  for (int i = 0; i < matrix.GetNRows(); ++i) {
    for (int j = 0; j < matrix.GetNRows(); ++j) square.push_back(matrix.GetElem(i, j));
  }
  return square;
}

template <class Matrix, class Work>
void WorkOnCopies(benchmark::State& state, const Matrix& start, const Work& work) {
  Matrix copy = start;
  for (auto _ : state) {
    copy = start;
    work(copy);
    benchmark::DoNotOptimize(copy);
  }
}

void SweepAllRows(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const MCSymMatrix start = CrossProducts(n);
  const std::vector<double> scale = DiagonalOf(start);
  WorkOnCopies(state, start, [&](MCSymMatrix& matrix) {
    MCBitSet pivots(n);
    MCCommonMath::detail::SweepRows(matrix, n, kTolerance, scale, pivots, [] { return false; });
  });
}

void SweepOneByOne(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const MCSymMatrix start = CrossProducts(n);
  const std::vector<double> scale = DiagonalOf(start);
  WorkOnCopies(state, start, [&](MCSymMatrix& matrix) {
    MCBitSet pivots(n);
    for (int k = 0; k < n; ++k) matrix.Sweep(k, kTolerance, scale, pivots, false);
  });
}

void SweepPeerPotrfPotri(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  WorkOnCopies(state, Square(CrossProducts(n)), [&](std::vector<double>& square) {
    LAPACKE_dpotrf(LAPACK_COL_MAJOR, 'L', n, square.data(), n);
    LAPACKE_dpotri(LAPACK_COL_MAJOR, 'L', n, square.data(), n);
  });
}

void CholeskyLTChol(benchmark::State& state) {
  const MCSymMatrix start = CrossProducts(static_cast<int>(state.range(0)));
  const std::vector<double> scale = DiagonalOf(start);
  WorkOnCopies(state, start, [&](MCSymMatrix& matrix) { matrix.LTChol(scale, kTolerance, false); });
}

/// Row by row, each element an inner product, as a textbook has it.
void FactorPlainly(std::vector<double>& factor, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    double* row = factor.data() + i * (i + 1) / 2;
    for (std::size_t j = 0; j <= i; ++j) {
      const double* above = factor.data() + j * (j + 1) / 2;
      double sum = row[j];
      for (std::size_t k = 0; k < j; ++k) sum -= row[k] * above[k];
      row[j] = j < i ? sum / above[j] : __builtin_sqrt(sum);
    }
  }
}

void CholeskyPlainLoop(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  WorkOnCopies(state, CrossProducts(n).AsVectorConst(), [&](std::vector<double>& triangle) {
    FactorPlainly(triangle, static_cast<std::size_t>(n));
  });
}

void CholeskyPeerPotrf(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  WorkOnCopies(state, Square(CrossProducts(n)), [&](std::vector<double>& square) {
    LAPACKE_dpotrf(LAPACK_COL_MAJOR, 'L', n, square.data(), n);
  });
}

void CholeskyPeerEigen(benchmark::State& state) {
  const Eigen::Index n = state.range(0);
  const std::vector<double> data = Square(CrossProducts(static_cast<int>(n)));
  const Eigen::MatrixXd start = Eigen::Map<const Eigen::MatrixXd>(data.data(), n, n);
  Eigen::LLT<Eigen::MatrixXd> factor(n);
  for (auto _ : state) {
    factor.compute(start);
    benchmark::DoNotOptimize(factor.matrixLLT().data());
  }
}

#define MCSTAT_ORDERS Arg(50)->Arg(254)->Arg(1000)->Unit(benchmark::kMicrosecond)
BENCHMARK(SweepAllRows)->MCSTAT_ORDERS;
BENCHMARK(SweepOneByOne)->MCSTAT_ORDERS;
BENCHMARK(SweepPeerPotrfPotri)->MCSTAT_ORDERS;
BENCHMARK(CholeskyLTChol)->MCSTAT_ORDERS;
BENCHMARK(CholeskyPlainLoop)->MCSTAT_ORDERS;
BENCHMARK(CholeskyPeerPotrf)->MCSTAT_ORDERS;
BENCHMARK(CholeskyPeerEigen)->MCSTAT_ORDERS;

}  // namespace
