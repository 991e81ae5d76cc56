// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandomvalues.h"

#include "mcmath/mcsymmatrix.h"
#include "mcmath/random/mcrandom.h"
#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/goodnessoffit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMath;
using MCMV::gMissingValue;
using Numbers = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

MCSymMatrix Packed(int n, const Numbers& triangle) {
  MCSymMatrix matrix(n);
  matrix.AsVector() = triangle;
  return matrix;
}

MCSymMatrix Identity(int n) {
  MCSymMatrix matrix(n);
  matrix.AddToDiagonal(1.0);
  return matrix;
}

const MCSymMatrix kScale = Packed(3, {4.0, 1.0, 2.0, -1.5, 0.5, 3.0});

// Rank 2: the third row is the sum of the others, the fourth is 0.
const MCSymMatrix kSingular = Packed(4, {2.0, 0.5, 1.0, 2.5, 1.5, 4.0, 0.0, 0.0, 0.0, 0.0});

// A source that gives one number for ever.
class Constant : public MCCommon::MCRandom {
public:
  explicit Constant(double number) : fNumber(number) {}
  double GetRandom() override { return fNumber; }

private:
  double fNumber;
};

TEST(MCRandomValues, IsUniformOnTheUnitIntervalWhenFresh) {
  MCRandomValues values;
  MCURandom uniform;
  for (int i = 0; i < 100; ++i) EXPECT_EQ(values.GetRandom(), uniform.GetRandom());
  EXPECT_EQ(values.GetTolerance(), 1e-12);
}

TEST(MCRandomValues, DrawsFromTheDistributionChosen) {
  MCRandomValues values;
  MCRandomValues single;
  const auto expectSame = [&](auto variate) {
    values.SetSeed(5);
    single.SetSeed(5);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(values.GetRandom(), variate());
  };
  EXPECT_TRUE(values.SetParamUniform(2.0, 3.0));
  expectSame([&] { return single.RVUni(2.0, 3.0); });
  EXPECT_TRUE(values.SetParamNormal(-1.0, 4.0));
  expectSame([&] { return single.RVNor(-1.0, 4.0); });
  EXPECT_TRUE(values.SetParamChi(6.5));
  expectSame([&] { return single.RVChi(6.5); });
}

TEST(MCRandomValues, RefusesParametersAndKeepsItsDistribution) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamNormal(7.0, 0.0));
  const std::vector<std::pair<double, double>> ranges = {
      {1, 1}, {2, 1}, {kNaN, 1}, {0, kNaN}, {0, kInfinity}, {-kInfinity, 0}};
  for (const auto& [low, high] : ranges) {
    EXPECT_FALSE(values.SetParamUniform(low, high));
    EXPECT_EQ(values.RVUni(low, high), gMissingValue);
  }
  const std::vector<std::pair<double, double>> normals = {
      {0, -1}, {0, kNaN}, {kNaN, 1}, {kInfinity, 1}, {0, kInfinity}};
  for (const auto& [mean, deviation] : normals) {
    EXPECT_FALSE(values.SetParamNormal(mean, deviation));
    EXPECT_EQ(values.RVNor(mean, deviation), gMissingValue);
  }
  for (const double shape : {0.0, -1.0, 9e-301, kNaN, kInfinity}) {
    EXPECT_FALSE(values.SetParamChi(shape));
    EXPECT_FALSE(values.SetParamWishart(shape, kScale));
    EXPECT_EQ(values.RVChi(shape), gMissingValue);
    EXPECT_EQ(values.RVExp(shape), gMissingValue);
    for (const auto& [a, b] : {std::pair(shape, 1.0), std::pair(1.0, shape)}) {
      EXPECT_EQ(values.RVGam(a, b), gMissingValue);
      EXPECT_EQ(values.RVAuxF(a, b), gMissingValue);
    }
  }
  EXPECT_EQ(values.GetRandom(), 7.0);
}

TEST(MCRandomValues, RefusesMatricesThatAreNoCovariances) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamNormal(7.0, 0.0));
  const std::vector<MCSymMatrix> refused = {
      MCSymMatrix(),
      Packed(2, {1.0, 2.0, 1.0}),     // indefinite
      Packed(2, {1.0, 0.0, -1e-3}),   // negative
      Packed(2, {0.0, 1e-3, 1.0}),    // beside a zero
      Packed(2, {1.0, 1.0, 0.9999}),  // indefinite by little
      Packed(3, {1, 1, 1, 1, 1 + 1e-5, 1}),
      Packed(2, {1.0, kNaN, 1.0}),
      Packed(1, {kNaN}),
      Packed(1, {kInfinity}),
  };
  for (const MCSymMatrix& matrix : refused) {
    const Numbers mean(static_cast<std::size_t>(matrix.GetNRows()));
    EXPECT_FALSE(values.SetParamWishart(5.0, matrix));
    EXPECT_FALSE(values.SetParamNormal(mean, matrix));
  }
  EXPECT_FALSE(values.SetParamNormal(Numbers(2), kScale));
  EXPECT_FALSE(values.SetParamNormal(Numbers(4), kScale));
  EXPECT_FALSE(values.SetParamNormal(Numbers{0.0, kNaN, 0.0}, kScale));
  EXPECT_FALSE(values.SetParamNormal(Numbers{0.0, 0.0, kInfinity}, kScale));
  EXPECT_EQ(values.GetRandom(), 7.0);
}

TEST(MCRandomValues, RefusesMatricesThatCouldNotBeAllocated) {
  MCSymMatrix invalid(3);
  {
    const mctest::FailAllocation failure(1);
    invalid.SetNRows(3000);
  }
  ASSERT_FALSE(invalid.IsValidMatrix());
  MCRandomValues values;
  EXPECT_FALSE(values.SetParamWishart(5.0, invalid));
  EXPECT_FALSE(values.SetParamNormal(Numbers(), invalid));
}

// Sums of k squares of n rows, k < n, have rank k though their elements are rounded: degrees of
// freedom just above k - 1 serve, those below don't.
TEST(MCRandomValues, TakesSingularMatricesThatAreRounded) {
  MCRandomValues numbers;
  numbers.SetSeed(50);
  MCRandomValues values;
  for (int i = 0; i < 600; ++i) {
    const int n = 3 + i % 30;
    const int k = 1 + i % 7 % (n - 1);
    MCSymMatrix scale(n);
    for (int q = 0; q < k; ++q) {
      Numbers row;
      for (int j = 0; j < n; ++j) row.push_back(numbers.RVSNor());
      scale.UpdateXX(row, 1.0);
    }
    for (const double tol : {0.0, 1e-12, 1e-8}) {
      ASSERT_TRUE(values.SetTolerance(tol));
      EXPECT_TRUE(values.SetParamWishart(k - 0.5, scale)) << n << ' ' << k << ' ' << tol;
      EXPECT_FALSE(values.SetParamWishart(k - 1.5, scale)) << n << ' ' << k << ' ' << tol;
    }
  }
}

TEST(MCRandomValues, JudgesDegreesOfFreedomByTheRankOfTheScale) {
  MCRandomValues values;
  EXPECT_FALSE(values.SetParamWishart(2.0 - 1e-9, kScale));
  EXPECT_FALSE(values.SetParamWishart(0.5, kScale));
  EXPECT_TRUE(values.SetParamWishart(2.0 + 1e-9, kScale));
  EXPECT_TRUE(values.SetParamWishart(1.0, kScale));
  EXPECT_TRUE(values.SetParamWishart(2.0, kScale));
  EXPECT_FALSE(values.SetParamWishart(0.5, kSingular));
  EXPECT_TRUE(values.SetParamWishart(1.5, kSingular));
  EXPECT_TRUE(values.SetParamWishart(1e-300, MCSymMatrix(3)));
}

TEST(MCRandomValues, JudgesRanksByItsTolerance) {
  // What is left of the second row is 1e-4 of its diagonal.
  const MCSymMatrix nearly = Packed(2, {1.0, std::sqrt(0.9999), 1.0});
  MCRandomValues values;
  EXPECT_FALSE(values.SetParamWishart(0.5, nearly));
  for (const double tol : {-1e-9, 1.0, kNaN, kInfinity}) EXPECT_FALSE(values.SetTolerance(tol));
  EXPECT_EQ(values.GetTolerance(), 1e-12);
  EXPECT_TRUE(values.SetTolerance(1e-3));
  EXPECT_EQ(values.GetTolerance(), 1e-3);
  EXPECT_TRUE(values.SetParamWishart(0.5, nearly));
  EXPECT_TRUE(values.SetTolerance(0.0));
  EXPECT_FALSE(values.SetParamWishart(0.5, nearly));
}

TEST(MCRandomValues, AnswersOnlyInTheShapeOfItsDistribution) {
  MCRandomValues values;
  Numbers vector = {1.0, 2.0};
  MCSymMatrix matrix = kScale;
  const auto expectUntouched = [&] {
    EXPECT_EQ(vector, (Numbers{1.0, 2.0}));
    EXPECT_EQ(matrix.AsVector(), MCSymMatrix(kScale).AsVector());
  };
  EXPECT_FALSE(values.GetRandom(vector));
  EXPECT_FALSE(values.GetRandom(matrix));
  ASSERT_TRUE(values.SetParamNormal(Numbers(3), kScale));
  EXPECT_EQ(values.GetRandom(), gMissingValue);
  EXPECT_FALSE(values.GetRandom(matrix));
  ASSERT_TRUE(values.SetParamWishart(4.0, kScale));
  EXPECT_EQ(values.GetRandom(), gMissingValue);
  EXPECT_FALSE(values.GetRandom(vector));
  expectUntouched();
  ASSERT_TRUE(values.SetParamChi(3.0));
  EXPECT_FALSE(values.GetRandom(vector));
  EXPECT_FALSE(values.GetRandom(matrix));
  expectUntouched();
}

// Means of elements and of products of two elements about their means, against those of the law,
// as standard normals. Limit 4.42: one in 1e5 tests fails for nothing, so one in 1500 for the
// 66 of a matrix of four rows.
constexpr double kElementLimit = 4.42;

void ExpectMoments(const std::vector<Numbers>& draws, const Numbers& mean,
                   const std::vector<Numbers>& covariance) {
  for (std::size_t a = 0; a < mean.size(); ++a) {
    Numbers values;
    for (const Numbers& draw : draws) values.push_back(draw[a]);
    if (covariance[a][a] == 0.0) {
      for (const double x : values) ASSERT_NEAR(x, mean[a], 1e-12);
      continue;
    }
    EXPECT_LT(std::fabs(mctest::StandardisedMean(values, mean[a])), kElementLimit) << a;
    for (std::size_t b = 0; b <= a; ++b) {
      if (covariance[b][b] == 0.0) continue;
      Numbers products;
      for (const Numbers& draw : draws)
        products.push_back((draw[a] - mean[a]) * (draw[b] - mean[b]));
      EXPECT_LT(std::fabs(mctest::StandardisedMean(products, covariance[a][b])), kElementLimit)
          << a << ' ' << b;
    }
  }
}

constexpr int kDraws = 20000;

// Mean df S, and covariance df (S_ik S_jl + S_il S_jk) of elements (i, j) and (k, l).
void ExpectWishart(double df, const MCSymMatrix& S, unsigned long seed) {
  MCRandomValues values;
  values.SetSeed(seed);
  ASSERT_TRUE(values.SetParamWishart(df, S));
  std::vector<Numbers> draws;
  MCSymMatrix draw;
  for (int i = 0; i < kDraws; ++i) {
    ASSERT_TRUE(values.GetRandom(draw));
    draws.push_back(draw.AsVector());
  }
  Numbers mean;
  std::vector<std::pair<int, int>> places;
  for (int i = 0; i < S.GetNRows(); ++i) {
    for (int j = 0; j <= i; ++j) {
      places.emplace_back(i, j);
      mean.push_back(df * S.GetElem(i, j));
    }
  }
  std::vector<Numbers> covariance;
  for (const auto& [i, j] : places) {
    covariance.emplace_back();
    for (const auto& [k, l] : places) {
      covariance.back().push_back(
          df * (S.GetElem(i, k) * S.GetElem(j, l) + S.GetElem(i, l) * S.GetElem(j, k)));
    }
  }
  ExpectMoments(draws, mean, covariance);
}

TEST(MCRandomValues, DrawsWishartMatricesWithTheirMeansAndCovariances) {
  ExpectWishart(7.5, kScale, 41);
  ExpectWishart(2.1, kScale, 42);
  ExpectWishart(30.0, Identity(2), 43);
}

TEST(MCRandomValues, DrawsWishartMatricesOfFewDegreesOfFreedom) {
  ExpectWishart(1.0, kScale, 44);
  ExpectWishart(2.0, kScale, 45);
}

TEST(MCRandomValues, DrawsWishartMatricesOfSingularScales) {
  ExpectWishart(6.0, kSingular, 46);
  ExpectWishart(1.5, kSingular, 47);
  ExpectWishart(1.0, kSingular, 48);
}

TEST(MCRandomValues, DrawsWishartMatricesOfOneRowAsChiSquares) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamWishart(3.5, Packed(1, {2.0})));
  MCSymMatrix draw;
  Numbers numbers;
  for (int i = 0; i < kDraws; ++i) {
    ASSERT_TRUE(values.GetRandom(draw));
    numbers.push_back(draw.GetElem(0, 0));
  }
  const auto cdf = [](long double x) { return mctest::GammaCdf(1.75L, x / 4.0L); };
  EXPECT_LT(mctest::KolmogorovSmirnov(numbers, cdf), mctest::kKolmogorovLimit);
}

TEST(MCRandomValues, DrawsMatricesThatKeepTheRelationsOfASingularScale) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamWishart(9.0, kSingular));
  MCSymMatrix draw;
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(values.GetRandom(draw));
    ASSERT_EQ(draw.GetNRows(), 4);
    for (int j = 0; j < 4; ++j) {
      EXPECT_NEAR(draw.GetElem(2, j), draw.GetElem(0, j) + draw.GetElem(1, j), 1e-11);
      EXPECT_EQ(draw.GetElem(3, j), 0.0);
    }
  }
}

TEST(MCRandomValues, DrawsMatricesOfZerosForAScaleOfZeros) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamWishart(3.0, MCSymMatrix(3)));
  MCSymMatrix draw = Identity(2);
  EXPECT_TRUE(values.GetRandom(draw));
  EXPECT_EQ(draw.GetNRows(), 3);
  EXPECT_EQ(draw.AsVector(), Numbers(6));
  ASSERT_TRUE(values.SetParamNormal(Numbers{1.0, 2.0, 3.0}, MCSymMatrix(3)));
  Numbers vector;
  EXPECT_TRUE(values.GetRandom(vector));
  EXPECT_EQ(vector, (Numbers{1.0, 2.0, 3.0}));
}

TEST(MCRandomValues, DrawsMatricesOfManyRows) {
  constexpr int n = 60;
  MCSymMatrix scale = Identity(n);
  Numbers ones(n, 1.0);
  scale.UpdateXX(ones, 0.5);
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamWishart(1000.0, scale));
  MCSymMatrix draw;
  ASSERT_TRUE(values.GetRandom(draw));
  // The trace of W S^-1 is chi-square with 60000 degrees of freedom: 4 deviations are 1386.
  MCSymMatrix inverse;
  Numbers diagonal;
  scale.GetNCheckDiagonal(diagonal, 1e-12, 1.0);
  ASSERT_EQ(scale.CholInverse(diagonal, 1e-12, inverse), n);
  EXPECT_NEAR(draw.TraceOfProduct(inverse), 60000.0, 1386.0);
}

TEST(MCRandomValues, DrawsNormalVectorsWithTheirMeansAndCovariances) {
  for (const MCSymMatrix& S : {kScale, kSingular}) {
    const auto n = static_cast<std::size_t>(S.GetNRows());
    Numbers mean(n);
    std::iota(mean.begin(), mean.end(), -1.0);
    MCRandomValues values;
    values.SetSeed(49);
    ASSERT_TRUE(values.SetParamNormal(mean, S));
    std::vector<Numbers> draws(kDraws);
    for (Numbers& draw : draws) {
      ASSERT_TRUE(values.GetRandom(draw));
      ASSERT_EQ(draw.size(), n);
    }
    std::vector<Numbers> covariance(n, Numbers(n));
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        covariance[i][j] = S.GetElem(static_cast<int>(i), static_cast<int>(j));
      }
    }
    ExpectMoments(draws, mean, covariance);
  }
}

TEST(MCRandomValues, DrawsFromABorrowedSourceAndSeedsIt) {
  MCURandom source(1);
  MCRandomValues values;
  values.SetURNGPtr(&source);
  values.SetSeed(77);
  EXPECT_EQ(source.GetSeed(), 77U);
  MCURandom copy(source);
  EXPECT_EQ(values.GetRandom(), copy.GetRandom());
  EXPECT_EQ(source.GetRandom(), copy.GetRandom());
  values.SetURNGPtr(nullptr);
  MCURandom fresh;
  EXPECT_EQ(values.GetRandom(), fresh.GetRandom());
}

TEST(MCRandomValues, GoesOnFromASavedStateOfItsSource) {
  MCURandom source(3);
  MCRandomValues values;
  values.SetURNGPtr(&source);
  ASSERT_TRUE(values.SetParamNormal(0.0, 1.0));
  for (int i = 0; i < 33; ++i) values.GetRandom();
  const MCURandom saved(source);
  const double expected = values.GetRandom();
  values.GetRandom();
  source = saved;
  EXPECT_EQ(values.GetRandom(), expected);
}

TEST(MCRandomValues, IsCopiedWithItsOwnSourceAndDistribution) {
  MCRandomValues values;
  values.SetSeed(8);
  ASSERT_TRUE(values.SetParamNormal(Numbers{1.0, 2.0, 3.0}, kScale));
  MCRandomValues copy(values);
  ASSERT_TRUE(values.SetParamNormal(Numbers{0.0, 0.0, 0.0}, kScale));
  Numbers expected;
  Numbers actual;
  ASSERT_TRUE(values.GetRandom(expected));
  ASSERT_TRUE(copy.GetRandom(actual));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(actual[i] - expected[i], static_cast<double>(i) + 1.0, 1e-14);
  }
}

TEST(MCRandomValues, HasNoVariateWhereItsSourceHasNoNumber) {
  for (const double constant : {0.0, 1.0, -3.0, kNaN}) {
    Constant host(constant);
    MCURandom source;
    source.SetUserRNG(&host);
    MCRandomValues values;
    values.SetURNGPtr(&source);
    for (const double x :
         {values.RVUni(0, 1), values.RVExp(1), values.RVGam(0.5, 1), values.RVGam(2, 1),
          values.RVChi(3), values.RVAuxF(3, 4), values.RVSNor(), values.RVNor(1, 0)}) {
      EXPECT_EQ(x, gMissingValue) << constant;
    }
    Numbers vector = {1.0};
    ASSERT_TRUE(values.SetParamNormal(Numbers(3), kScale));
    EXPECT_FALSE(values.GetRandom(vector));
    EXPECT_EQ(vector, Numbers{1.0});
    MCSymMatrix matrix = Identity(2);
    ASSERT_TRUE(values.SetParamWishart(5.0, kScale));
    EXPECT_FALSE(values.GetRandom(matrix));
    EXPECT_EQ(matrix.AsVector(), (Numbers{1.0, 0.0, 1.0}));
  }
}

TEST(MCRandomValues, EndsWhateverConstantItsSourceGives) {
  for (const double constant : {1e-320, 1e-9, 0.3, 0.5, 0.97, 1.0 - 0x1p-53}) {
    Constant host(constant);
    MCURandom source;
    source.SetUserRNG(&host);
    MCRandomValues values;
    values.SetURNGPtr(&source);
    for (const double x : {values.RVExp(1), values.RVGam(0.5, 1), values.RVAuxF(3, 4),
                           values.RVSNor(), values.RVUni(0, 1)}) {
      EXPECT_FALSE(std::isnan(x)) << constant;
    }
  }
}

TEST(MCRandomValues, IsUniformBetweenLimitsWhoseDifferenceIsNoDouble) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamUniform(-kLargest, kLargest));
  Numbers scaled;
  for (int i = 0; i < kDraws; ++i) scaled.push_back(values.GetRandom() / kLargest);
  const auto cdf = [](long double x) { return (x + 1.0L) / 2.0L; };
  EXPECT_LT(mctest::KolmogorovSmirnov(scaled, cdf), mctest::kKolmogorovLimit);
}

TEST(MCRandomValues, StaysAsItWasWhereMemoryRunsOut) {
  for (std::size_t k = 1, nFailures = 1; nFailures > 0; ++k) {
    MCRandomValues values;
    values.SetParamNormal(7.0, 0.0);
    nFailures = 0;
    for (const bool isWishart : {true, false}) {
      bool isDone = false;
      bool isFired = false;
      {
        const mctest::FailAllocation failure(k);
        try {
          isDone = isWishart ? values.SetParamWishart(5.0, kScale)
                             : values.SetParamNormal(Numbers(3), kScale);
        } catch (const std::bad_alloc&) {
        }
        isFired = failure.HasFired();
      }
      EXPECT_NE(isDone, isFired) << k;
      if (isFired) {
        ++nFailures;
        EXPECT_EQ(values.GetRandom(), 7.0) << k;
      }
      values.SetParamNormal(7.0, 0.0);
    }
    ASSERT_LT(k, 100U);
  }
}

TEST(MCRandomValues, DrawsAllOrNothingWhereMemoryRunsOut) {
  MCRandomValues values;
  ASSERT_TRUE(values.SetParamWishart(5.0, kScale));
  bool isDone = false;
  for (std::size_t k = 1; !isDone; ++k) {
    ASSERT_LT(k, 100U);
    MCSymMatrix matrix = Identity(2);
    bool isDrawn = false;
    bool isThrown = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        isDrawn = values.GetRandom(matrix);
      } catch (const std::bad_alloc&) {
        isThrown = true;
      }
      isDone = !failure.HasFired();
    }
    EXPECT_EQ(isDrawn, isDone) << k;
    // Only the output itself becomes invalid.
    const bool isUntouched = matrix.AsVector() == Identity(2).AsVector();
    EXPECT_TRUE(isDone || isUntouched || !matrix.IsValidMatrix()) << k;
    EXPECT_TRUE(!isThrown || isUntouched) << k;
  }
}

TEST(MCRandomValues, ShowsItsDistribution) {
  MCRandomValues values;
  values.SetSeed(4294967296UL);
  const std::string head =
      "\nMCRandomValues display start"
      "\nCurrent seed = 4294967296"
      "\nComputational tolerance = 1e-12";
  const std::string end = "\nMCRandomValues display end";
  const std::string single = "\nDistribution is univariate";
  const std::string several = "\nDistribution is multivariate";
  const std::string standard = "\nDistribution is standard";
  const std::string other = "\nDistribution is not standard";
  const auto shown = [&] { return mctest::DisplayOf(values); };

  EXPECT_EQ(shown(), head + "\nDistribution type: Uniform" + single + standard +
                         "\nLower limit = 0\nUpper limit = 1" + end);
  values.SetParamUniform(-0.5, 1.0);
  EXPECT_EQ(shown(), head + "\nDistribution type: Uniform" + single + other +
                         "\nLower limit = -0.5\nUpper limit = 1" + end);
  values.SetParamNormal(0.0, 1.0);
  EXPECT_EQ(shown(), head + "\nDistribution type: Normal" + single + standard +
                         "\nMean = 0\nStandard deviation = 1" + end);
  values.SetParamNormal(0.0, 2.0);
  EXPECT_EQ(shown(), head + "\nDistribution type: Normal" + single + other +
                         "\nMean = 0\nStandard deviation = 2" + end);
  values.SetParamChi(4.5);
  EXPECT_EQ(shown(), head + "\nDistribution type: Chi-square" + single + standard +
                         "\nDegrees of freedom = 4.5" + end);
  const auto matrix = [](const MCSymMatrix& S) { return mctest::DisplayOf(S); };
  values.SetParamNormal(Numbers(2), Identity(2));
  EXPECT_EQ(shown(), head + "\nDistribution type: Normal" + several + standard +
                         "\nMean (size = 2)\n 0 0\nCovariance matrix:" + matrix(Identity(2)) + end);
  values.SetParamNormal(Numbers{0.0, 1.0}, Identity(2));
  EXPECT_EQ(shown(), head + "\nDistribution type: Normal" + several + other +
                         "\nMean (size = 2)\n 0 1\nCovariance matrix:" + matrix(Identity(2)) + end);
  values.SetParamWishart(5.0, Identity(3));
  EXPECT_EQ(shown(), head + "\nDistribution type: Wishart" + several + standard +
                         "\nDegrees of freedom = 5\nScale matrix:" + matrix(Identity(3)) + end);
  values.SetParamWishart(5.0, kScale);
  EXPECT_EQ(shown(), head + "\nDistribution type: Wishart" + several + other +
                         "\nDegrees of freedom = 5\nScale matrix:" + matrix(kScale) + end);
}

TEST(MCRandomValues, ShowsTheSeedOfTheSourceInUse) {
  MCURandom source(12);
  MCRandomValues values;
  values.SetURNGPtr(&source);
  EXPECT_NE(mctest::DisplayOf(values).find("\nCurrent seed = 12\n"), std::string::npos);
}

}  // namespace
