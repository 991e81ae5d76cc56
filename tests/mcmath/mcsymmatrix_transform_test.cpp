// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "support/extendedmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using MCCommonMath::MCBitSet;
using MCCommonMath::MCSymMatrix;
using mctest::ExtendedMatrix;
using mctest::Noise;
using mctest::NoisySymmetric;
using mctest::Packed;

struct Map {
  std::vector<double> shift, scale;
  int nBlocks, nIntercepts;
  bool negateShift, reciprocal;
};

// T of the map t'[i] = t[i] / A[i] and t'[l] = t[l] + sum of B[i] t[i], as a full matrix.
ExtendedMatrix FullMap(const Map& map) {
  const std::size_t p = map.scale.size();
  const std::size_t k = static_cast<std::size_t>(map.nIntercepts);
  const std::size_t m = static_cast<std::size_t>(map.nBlocks);
  ExtendedMatrix T(m * p, m * p);
  for (std::size_t start = 0; start < m * p; start += p) {
    for (std::size_t l = 0; l < k; ++l) T(start + l, start + l) = 1;
    for (std::size_t i = k; i < p; ++i) {
      const long double scale = map.scale[i];
      const long double shift = map.negateShift ? -map.shift[i] : map.shift[i];
      T(start + i, start + i) = map.reciprocal ? scale : 1 / scale;
      for (std::size_t l = 0; l < k; ++l) {
        T(start + l, start + i) = map.reciprocal ? shift : -shift / scale;
      }
    }
  }
  return T;
}

// Up to 3 p products of numbers up to 4, each with a few roundings.
void ExpectNear(const MCSymMatrix& actual, const ExtendedMatrix& expected) {
  const long double n = static_cast<long double>(actual.GetNRows());
  EXPECT_LE(ExtendedMatrix(actual).Difference(expected),
            4 * n * n * 0x1p-52L * (1 + expected.Largest()));
}

Map NoisyMap(int p, unsigned seed) {
  Noise noise(seed);
  Map map;
  for (int i = 0; i < p; ++i) {
    map.shift.push_back(2 * noise.Next());
    map.scale.push_back((noise.Next() < 0 ? -1 : 1) * (1.25 + noise.Next()));
  }
  return map;
}

TEST(MCSymMatrixTransformParameterMatrix, IsTheProductWithTheFullMap) {
  unsigned seed = 1000;
  for (const int m : {1, 2, 3}) {
    for (const int p : {1, 2, 3, 5, 8}) {
      for (int k = 0; k <= (m == 1 ? p : 1); ++k) {
        for (const bool negateShift : {false, true}) {
          for (const bool reciprocal : {false, true}) {
            SCOPED_TRACE(testing::Message() << "m " << m << " p " << p << " k " << k << " negate "
                                            << negateShift << " reciprocal " << reciprocal);
            Map map = NoisyMap(p, ++seed);
            map.nBlocks = m;
            map.nIntercepts = k;
            map.negateShift = negateShift;
            map.reciprocal = reciprocal;
            const MCSymMatrix original = NoisySymmetric(m * p, ++seed);
            MCSymMatrix matrix = original;
            ASSERT_TRUE(matrix.TransformParameterMatrix(map.shift, map.scale, m, k, negateShift,
                                                        reciprocal));
            const ExtendedMatrix T = FullMap(map);
            ExpectNear(matrix, T * ExtendedMatrix(original) * T.Transposed());
          }
        }
      }
    }
  }
}

TEST(MCSymMatrixTransformParameterMatrix, GoesThereAndBack) {
  const MCSymMatrix original = NoisySymmetric(6, 4);
  MCSymMatrix matrix = original;
  Map map = NoisyMap(3, 5);
  ASSERT_TRUE(matrix.TransformParameterMatrix(map.shift, map.scale, 2, 1, false, false));
  ASSERT_TRUE(matrix.TransformParameterMatrix(map.shift, map.scale, 2, 1, false, true));
  ExpectNear(matrix, ExtendedMatrix(original));
}

TEST(MCSymMatrixTransformParameterMatrix, MisuseIsRefusedWithTheMatrixUnchanged) {
  const struct {
    const char* why;
    int n;
    std::vector<double> shift, scale;
    int nBlocks, nIntercepts;
  } cases[] = {
      {"several intercepts in two blocks", 6, {0, 0, 0}, {1, 1, 1}, 2, 2},
      {"zero scale", 3, {0, 0, 0}, {1, 0, 1}, 1, 1},
      {"zero scale of an intercept", 3, {0, 0, 0}, {0, 1, 1}, 1, 1},
      {"negative zero scale", 3, {0, 0, 0}, {1, 1, -0.0}, 1, 1},
      {"rows aren't blocks times parameters", 5, {0, 0, 0}, {1, 1, 1}, 2, 1},
      {"short shift", 3, {0, 0}, {1, 1, 1}, 1, 1},
      {"no block", 3, {0, 0, 0}, {1, 1, 1}, 0, 1},
      {"negative blocks", 3, {0, 0, 0}, {1, 1, 1}, -1, 1},
      {"negative intercepts", 3, {0, 0, 0}, {1, 1, 1}, 1, -1},
      {"more intercepts than parameters", 3, {0, 0, 0}, {1, 1, 1}, 1, 4},
      {"an intercept without parameters", 0, {}, {}, 1, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    const MCSymMatrix original = NoisySymmetric(c.n, 9);
    MCSymMatrix matrix = original;
    EXPECT_FALSE(
        matrix.TransformParameterMatrix(c.shift, c.scale, c.nBlocks, c.nIntercepts, false, false));
    EXPECT_EQ(matrix.AsVectorConst(), original.AsVectorConst());
  }
  EXPECT_FALSE(MCSymMatrix(70000).TransformParameterMatrix({}, {}, 1, 0, false, false));
  EXPECT_TRUE(MCSymMatrix().TransformParameterMatrix({}, {}, 1, 0, false, false));
}

// ---- parameters outside a mask ----

TEST(MCSymMatrixTransformParameterMatrixMasked, ParametersOutsideTheMaskStandApart) {
  unsigned seed = 2000;
  for (const int k : {0, 1, 2}) {
    for (const bool negateShift : {false, true}) {
      for (const bool reciprocal : {false, true}) {
        for (const unsigned maskBits : {0U, 0x0AU, 0x15U, 0x1FU, 0x3FU}) {
          SCOPED_TRACE(testing::Message() << "k " << k << " negate " << negateShift
                                          << " reciprocal " << reciprocal << " mask " << maskBits);
          constexpr int n = 6;
          Map map = NoisyMap(n, ++seed);
          map.scale[2] = 1;  // outside some masks with a shift alone
          map.scale[4] = 1;  // outside some masks with neither
          map.shift[4] = 0;
          map.nBlocks = 1;
          map.nIntercepts = k;
          map.negateShift = negateShift;
          map.reciprocal = reciprocal;
          MCBitSet mask(n + 2);
          for (int i = 0; i < n; ++i) mask.Set(i, (maskBits >> i & 1U) != 0);

          const MCSymMatrix original = NoisySymmetric(n, ++seed);
          MCSymMatrix matrix = original;
          ASSERT_TRUE(matrix.TransformParameterMatrix(map.shift, map.scale, mask, k, negateShift,
                                                      reciprocal));

          Map inner = map;
          for (std::size_t i = 0; i < n; ++i) {
            if (mask.IsIn(static_cast<int>(i))) continue;
            inner.scale[i] = 1 / map.scale[i];
            inner.shift[i] = 0;
          }
          const ExtendedMatrix T = FullMap(inner);
          ExtendedMatrix expected = T * ExtendedMatrix(original) * T.Transposed();
          for (std::size_t i = 0; i < n && k > 0; ++i) {
            if (mask.IsIn(static_cast<int>(i))) continue;
            expected(i, 0) += map.shift[i];
            if (i > 0) expected(0, i) += map.shift[i];
          }
          ExpectNear(matrix, expected);
        }
      }
    }
  }
}

TEST(MCSymMatrixTransformParameterMatrixMasked, TheShiftOfAnInterceptOutsideTheMaskIsAddedToo) {
  MCSymMatrix matrix = Packed({4, 0, 9});
  MCBitSet mask(2);
  mask.Set(1, true);
  EXPECT_TRUE(matrix.TransformParameterMatrix({5, 0}, {1, 3}, mask, 1, false, false));
  EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{9, 0, 1}));
}

TEST(MCSymMatrixTransformParameterMatrixMasked, MisuseIsRefusedWithTheMatrixUnchanged) {
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    const char* why;
    std::vector<double> shift, scale;
    int bits, nIntercepts;
  } cases[] = {
      {"short shift", {0}, {1, 1}, 2, 1},
      {"short scale", {0, 0}, {1}, 2, 1},
      {"long vectors", {0, 0, 0}, {1, 1, 1}, 3, 1},
      {"short mask", {0, 0}, {1, 1}, 1, 1},
      {"zero scale", {0, 0}, {1, 0}, 2, 1},
      {"zero scale in the mask's place", {0, 0}, {0, 1}, 2, 1},
      {"a scale whose inverse is zero", {0, 0}, {1, infinity}, 2, 1},
      {"negative intercepts", {0, 0}, {1, 1}, 2, -1},
      {"more intercepts than parameters", {0, 0}, {1, 1}, 2, 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    MCSymMatrix matrix = Packed({4, 2, 9});
    EXPECT_FALSE(matrix.TransformParameterMatrix(c.shift, c.scale, MCBitSet(c.bits), c.nIntercepts,
                                                 false, false));
    EXPECT_EQ(matrix.AsVectorConst(), (std::vector<double>{4, 2, 9}));
  }
  EXPECT_FALSE(MCSymMatrix(70000).TransformParameterMatrix({}, {}, MCBitSet(), 0, false, false));
}

}  // namespace
