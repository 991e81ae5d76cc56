// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mcdot.h"
#include "mcmath/detail/packedtriangle.h"
#include "mcmath/detail/rowkernels.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using MCCommonMath::detail::Dot;
using MCCommonMath::detail::KernelsOf;
using MCCommonMath::detail::RowStart;
using MCCommonMath::detail::VectorKernels;
using MCCommonMath::detail::VectorPath;

std::vector<double> RandomValues(std::size_t count, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> normal(0.1, 3.0);
  std::vector<double> values(count);
  for (double& x : values) x = normal(engine);
  return values;
}

using DotRowsKernel = void (*)(const double* const*, const double*, std::size_t, double*);
using AddOuterKernel = void (*)(double*, std::size_t, const double*, const double*, std::size_t);

/// Kernels compiled here for the plain processor, and those in use.
template <class Kernel>
std::vector<Kernel> WithThoseInUse(std::vector<Kernel> kernels, Kernel VectorKernels::*kernel) {
  for (VectorPath path : mctest::SupportedPaths()) kernels.push_back(KernelsOf(path).*kernel);
  return kernels;
}

std::vector<DotRowsKernel> DotKernels() {
  return WithThoseInUse<DotRowsKernel>({DotRows<2>, DotRows<4>, DotRows<8>},
                                       &VectorKernels::dotRows);
}

std::vector<AddOuterKernel> OuterKernels() {
  return WithThoseInUse<AddOuterKernel>({AddOuter<2>, AddOuter<4>, AddOuter<8>},
                                        &VectorKernels::addOuter);
}

TEST(RowKernels, DotRowsHasTheBitsOfDotAtEveryLengthAndWidth) {
  for (std::size_t n = 0; n <= 50; ++n) {
    const std::vector<double> other = RandomValues(n, 1U);
    const std::vector<double> data = RandomValues(kDotRows * n, 2U);
    const double* rows[kDotRows];
    for (std::size_t r = 0; r < kDotRows; ++r) rows[r] = data.data() + r * n;
    for (DotRowsKernel kernel : DotKernels()) {
      double dots[kDotRows];
      kernel(rows, other.data(), n, dots);
      for (std::size_t r = 0; r < kDotRows; ++r) {
        EXPECT_EQ(dots[r], Dot(rows[r], other.data(), n)) << "n " << n;
        EXPECT_EQ(std::signbit(dots[r]), std::signbit(Dot(rows[r], other.data(), n)));
      }
    }
  }
}

TEST(RowKernels, AddOuterAddsEachRoundedProduct) {
  constexpr std::size_t kWidth = 16;
  constexpr std::size_t kRows = 7;
  const std::vector<double> start = RandomValues(kRows * kWidth, 3U);
  const std::vector<double> factors = RandomValues(kRows, 4U);
  const std::vector<double> x = RandomValues(kWidth, 5U);
  for (AddOuterKernel kernel : OuterKernels()) {
    std::vector<double> rows = start;
    kernel(rows.data(), kRows, factors.data(), x.data(), kWidth);
    for (std::size_t k = 0; k < rows.size(); ++k) {
      const double product = factors[k / kWidth] * x[k % kWidth];
      EXPECT_EQ(rows[k], start[k] + product);
    }
  }
}

/// The factorisation as it is defined, one dot product after the other.
int FactorPlainly(std::vector<double>& triangle, std::size_t n, const std::vector<double>& scale,
                  double tol, MCBitSet& kept) {
  int nRedundant = 0;
  for (std::size_t i = 0; i < n; ++i) {
    double* row = triangle.data() + RowStart(i);
    for (std::size_t j = 0; j < i; ++j) {
      const double* above = triangle.data() + RowStart(j);
      const double left = row[j] - Dot(row, above, j);
      row[j] = above[j] != 0.0 ? left / above[j] : 0.0;
    }
    const double left = row[i] - Dot(row, row, i);
    const bool isKept = left > tol * scale[i];
    row[i] = isKept ? std::sqrt(left) : 0.0;
    kept.Set(static_cast<int>(i), isKept);
    if (!isKept) ++nRedundant;
  }
  return nRedundant;
}

TEST(RowKernels, LTCholHasTheBitsOfItsDefinitionWithRedundantRowsToo) {
  for (int n = 1; n <= 70; ++n) {
    for (int aliased : {-1, 0, n / 2, n - 1}) {
      MCSymMatrix matrix(n);
      for (int k = 0; k < n + 3; ++k) {
        std::vector<double> row =
            RandomValues(static_cast<std::size_t>(n), static_cast<unsigned>(100 * n + k));
        if (aliased >= 0) {
          row[static_cast<std::size_t>(aliased)] =
              aliased > 0 ? row[static_cast<std::size_t>(aliased) - 1] : 0.0;
        }
        matrix.UpdateXX(row, 1.0);
      }
      std::vector<double> scale;
      matrix.GetDiagonal(scale);
      std::vector<double> expected = matrix.AsVectorConst();
      MCBitSet expectedKept(n);
      MCBitSet kept(n);
      const int nRedundant =
          FactorPlainly(expected, static_cast<std::size_t>(n), scale, 1e-10, expectedKept);
      EXPECT_EQ(matrix.LTChol(scale, 1e-10, kept, true), nRedundant);
      EXPECT_EQ(matrix.AsVectorConst(), expected) << "n " << n << ", aliased " << aliased;
      EXPECT_TRUE(kept == expectedKept);
      EXPECT_EQ(nRedundant, aliased >= 0 && (aliased > 0 || n > 0) ? 1 : 0);
    }
  }
}

}  // namespace
