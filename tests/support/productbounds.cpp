// SPDX-License-Identifier: Apache-2.0
#include "support/productbounds.h"

#include "support/samebits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

namespace mctest {

using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;

Reference Chain(const std::vector<ExtendedMatrix>& factors) {
  return Chain(ExtendedMatrix(factors.front().Rows(), factors.back().Cols()), factors);
}

Reference Chain(const ExtendedMatrix& start, const std::vector<ExtendedMatrix>& factors) {
  ExtendedMatrix value = factors.front();
  ExtendedMatrix magnitude = factors.front().Magnitudes();
  long double roundings = static_cast<long double>(factors.size()) + 2.0L;
  for (std::size_t k = 1; k < factors.size(); ++k) {
    roundings += static_cast<long double>(factors[k].Rows());
    value = value * factors[k];
    magnitude = magnitude * factors[k].Magnitudes();
  }
  ExtendedMatrix unit(start.Rows(), start.Rows());
  for (std::size_t i = 0; i < start.Rows(); ++i) {
    unit(i, i) = roundings * std::numeric_limits<double>::epsilon();
  }
  return {start + value, unit * (start.Magnitudes() + magnitude)};
}

namespace {

// `got` has `nCols` columns, row by row.
void ExpectElements(const std::vector<double>& got, const Reference& want) {
  ASSERT_EQ(got.size(), want.value.Rows() * want.value.Cols());
  std::size_t k = 0;
  for (std::size_t i = 0; i < want.value.Rows(); ++i) {
    for (std::size_t j = 0; j < want.value.Cols(); ++j, ++k) {
      EXPECT_LE(std::fabs(got[k] - want.value(i, j)), want.bound(i, j))
          << "element (" << i << ", " << j << ") is " << got[k];
    }
  }
}

}  // namespace

void ExpectWithin(const MCSymMatrix& got, const Reference& want) {
  ASSERT_EQ(static_cast<std::size_t>(got.GetNRows()), want.value.Rows());
  std::vector<double> full;
  for (int i = 0; i < got.GetNRows(); ++i) {
    for (int j = 0; j < got.GetNRows(); ++j) full.push_back(got.GetElem(i, j));
  }
  ExpectElements(full, want);
}

void ExpectWithin(const MCRectMatrix& got, const Reference& want) {
  ASSERT_EQ(static_cast<std::size_t>(got.GetNRows()), want.value.Rows());
  ASSERT_EQ(static_cast<std::size_t>(got.GetNCols()), want.value.Cols());
  ExpectElements(got.AsVectorConst(), want);
}

void ExpectWithin(const std::vector<double>& got, const Reference& want) {
  ExpectElements(got, want);
}

void ExpectWithin(double got, const Reference& want) {
  ExpectElements({got}, want);
}

void ExpectSameBits(const std::vector<double>& got, const std::vector<double>& want) {
  EXPECT_TRUE(SameBits(want, got));
}

void ExpectSameBits(double got, double want) {
  ExpectSameBits(std::vector<double>{got}, std::vector<double>{want});
}

double Numbers::Next() {
  const std::uint64_t bits = fGenerator();
  if (bits % 8 == 0) return 0.0;
  return static_cast<double>(bits >> 11) * 0x1p-52 - 1.0;
}

std::vector<double> Numbers::Vector(int n) {
  std::vector<double> values(static_cast<std::size_t>(n));
  for (double& x : values) x = Next();
  return values;
}

MCSymMatrix Numbers::Sym(int n) {
  MCSymMatrix matrix(n);
  for (double& x : matrix.AsVector()) x = Next();
  return matrix;
}

MCRectMatrix Numbers::Rect(int nRows, int nCols) {
  MCRectMatrix matrix(nRows, nCols);
  for (double& x : matrix.AsVector()) x = Next();
  return matrix;
}

}  // namespace mctest
