// SPDX-License-Identifier: Apache-2.0
// Exponential, logarithm and multinomial probabilities: accuracy against tables of 30 digits, and
// the same bits at every vector width.
#include "mcmath/detail/explog.h"
#include "mcmath/detail/mcmultinomial.h"
#include "mcmath/detail/multinomiallanes.h"
#include "mcmath/detail/vectorkernels.h"
#include "mcmath/detail/vectorpath.h"
#include "support/accuracytable.h"
#include "support/samebits.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using MCCommonMath::detail::KernelsOf;
using MCCommonMath::detail::MultinomialProbabilities;

const std::string kFolder = MCSTAT_TEST_DATA "/mcmath/";
const std::string kBounds = kFolder + "accuracybounds.csv";
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

struct Exp {
  template <std::size_t W>
  static void Lane(typename Lanes<W>::Vec& y, const typename Lanes<W>::Vec& x) {
    ExpLanes<W>(y, x);
  }
};

struct Log {
  template <std::size_t W>
  static void Lane(typename Lanes<W>::Vec& y, const typename Lanes<W>::Vec& x) {
    LogLanes<W>(y, x);
  }
};

template <class Function>
double One(double x) {
  double y = 0.0;
  Function::template Lane<1>(y, x);
  return y;
}

/// The values of a whole vector, W at a time; its size is a multiple of 8.
template <class Function, std::size_t W>
std::vector<double> All(const std::vector<double>& x) {
  std::vector<double> y(x.size());
  for (std::size_t i = 0; i < x.size(); i += W) {
    typename Lanes<W>::Vec lanes;
    LoadLanes<W>(lanes, x.data() + i);
    Function::template Lane<W>(lanes, lanes);
    StoreLanes<W>(y.data() + i, lanes);
  }
  return y;
}

template <class Function>
void ExpectSameBitsAtEveryWidth(const std::vector<double>& x) {
  const std::vector<double> y = All<Function, 1>(x);
  EXPECT_TRUE(mctest::SameBits(y, All<Function, 2>(x)));
  EXPECT_TRUE(mctest::SameBits(y, All<Function, 4>(x)));
  EXPECT_TRUE(mctest::SameBits(y, All<Function, 8>(x)));
}

template <class Function>
void MeasureAndCheck(const std::string& name, const std::string& file) {
  mctest::AccuracyTable table;
  std::vector<double> arguments;
  for (const mctest::ReferenceRow& row : mctest::ReadReference(kFolder + file)) {
    table.Add(name, row.fRegion, One<Function>(row.fArguments[0]), row.fValues[0]);
    arguments.push_back(row.fArguments[0]);
  }
  std::cout << table.Text(kBounds);
  EXPECT_EQ(table.Complaints(kBounds), "");
  arguments.resize(arguments.size() / 8 * 8);
  ExpectSameBitsAtEveryWidth<Function>(arguments);
}

TEST(ExpLog, ExpIsWithinOneUnitOfTheLastPlace) {
  MeasureAndCheck<Exp>("kernel exp", "exp.csv");
}

TEST(ExpLog, LogIsWithinOneUnitOfTheLastPlace) {
  MeasureAndCheck<Log>("kernel ln", "log.csv");
}

TEST(ExpLog, IsExactWhereAResultIsANumberThatOthersRelyOn) {
  EXPECT_EQ(One<Exp>(0.0), 1.0);
  EXPECT_EQ(One<Exp>(-0.0), 1.0);
  EXPECT_EQ(One<Log>(1.0), 0.0);
  EXPECT_FALSE(std::signbit(One<Log>(1.0)));
}

TEST(ExpLog, GivesNormalNumbersUpToBothGuards) {
  EXPECT_TRUE(std::isnormal(One<Exp>(-708.39)));
  EXPECT_TRUE(std::isnormal(One<Exp>(709.0)));
  for (double x = -708.39; x < -707.0; x += 1e-3) {
    EXPECT_LT(mctest::UlpError(One<Exp>(x), std::exp(static_cast<long double>(x))), 1.0) << x;
  }
  for (double x = 709.0; x > 707.5; x -= 1e-3) {
    EXPECT_LT(mctest::UlpError(One<Exp>(x), std::exp(static_cast<long double>(x))), 1.0) << x;
  }
}

TEST(ExpLog, HasTheSameBitsAtEveryWidth) {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> exponent(-708.39, 709.0);
  std::vector<double> x(16000);
  for (double& value : x) value = exponent(engine);
  ExpectSameBitsAtEveryWidth<Exp>(x);
  for (double& value : x) value = std::exp(exponent(engine) * 0.99);
  ExpectSameBitsAtEveryWidth<Log>(x);
}

// ---- Multinomial probabilities

constexpr std::size_t kRows = MCCommonMath::detail::kProbabilityRows;

/// Probabilities by category and row, behind them the logarithms by row.
std::vector<double> RowByRow(const std::vector<double>& eta, std::size_t m) {
  std::vector<double> out((m + 2) * kRows, -1.0);
  for (std::size_t r = 0; r < kRows; ++r) {
    out[(m + 1) * kRows + r] = MultinomialProbabilities(eta.data() + r, m, kRows, out.data() + r);
  }
  return out;
}

using Kernel = void (*)(const double*, std::size_t, double*, double*);

/// The kernel compiled here for the plain processor at three widths, and those in use.
std::vector<Kernel> Kernels() {
  std::vector<Kernel> kernels = {MultinomialRows<2>, MultinomialRows<4>, MultinomialRows<8>};
  for (const auto path : mctest::SupportedPaths()) kernels.push_back(KernelsOf(path).multinomial);
  return kernels;
}

void ExpectBitsOfTheSingleRow(const std::vector<double>& eta, std::size_t m) {
  const std::vector<double> expected = RowByRow(eta, m);
  for (const Kernel kernel : Kernels()) {
    std::vector<double> out((m + 2) * kRows, -2.0);
    kernel(eta.data(), m, out.data(), out.data() + (m + 1) * kRows);
    EXPECT_TRUE(mctest::SameBitsOrNaN(expected, out)) << "m " << m;
    // The predictors may lie where the probabilities go.
    std::vector<double> inPlace = eta;
    inPlace.resize((m + 2) * kRows);
    kernel(inPlace.data(), m, inPlace.data(), inPlace.data() + (m + 1) * kRows);
    EXPECT_TRUE(mctest::SameBitsOrNaN(expected, inPlace)) << "m " << m;
  }
}

TEST(MultinomialRows, HasTheBitsOfTheSingleRowForOrdinaryRows) {
  std::mt19937_64 engine(2);
  for (const double spread : {1.0, 30.0, 290.0}) {
    std::uniform_real_distribution<double> uniform(-spread, spread);
    for (std::size_t m = 0; m <= 7; ++m) {
      for (int repeat = 0; repeat < 50; ++repeat) {
        std::vector<double> eta(m * kRows);
        for (double& x : eta) x = uniform(engine);
        ExpectBitsOfTheSingleRow(eta, m);
      }
    }
  }
}

TEST(MultinomialRows, HasTheBitsOfTheSingleRowForEqualPredictors) {
  for (std::size_t m = 1; m <= 4; ++m) {
    for (const double x :
         {0.0, -0.0, 1.5, -20.0, 300.0, -300.0, 708.0, 709.0, -708.39, 1e3, -1e3}) {
      ExpectBitsOfTheSingleRow(std::vector<double>(m * kRows, x), m);
    }
  }
}

TEST(MultinomialRows, HasTheBitsOfTheSingleRowWhateverStandsInALane) {
  const std::vector<double> values = {
      0.0,     -0.0,   1.0,    -1.0,     300.0,     -300.0,    300.5,      -300.5, 708.39,
      -708.39, -708.4, 709.0,  709.1,    -709.0,    -709.1,    1e3,        -1e3,   1e9,
      -1e9,    1e300,  -1e300, kLargest, -kLargest, kInfinity, -kInfinity, kNaN,   5e-324};
  std::mt19937_64 engine(3);
  for (std::size_t m = 1; m <= 4; ++m) {
    for (int repeat = 0; repeat < 400; ++repeat) {
      std::vector<double> eta(m * kRows);
      for (double& x : eta) x = values[engine() % values.size()];
      ExpectBitsOfTheSingleRow(eta, m);
    }
    // One odd lane among ordinary ones.
    for (const double odd : values) {
      for (std::size_t oddOne = 0; oddOne < m; ++oddOne) {
        std::vector<double> eta(m * kRows);
        for (std::size_t k = 0; k < eta.size(); ++k) eta[k] = 0.25 + static_cast<double>(k / kRows);
        eta[oddOne * kRows + 5] = odd;
        ExpectBitsOfTheSingleRow(eta, m);
      }
    }
  }
}

TEST(MultinomialRows, LeavesOtherRowsOfALongerStrideAlone) {
  std::vector<double> probs = {0.5, 7.0, -0.5, 7.0, 0.0, 7.0};
  const double logLast = MultinomialProbabilities(probs.data(), 2, 2, probs.data());
  EXPECT_NEAR(probs[0] + probs[2] + probs[4], 1.0, 1e-15);
  EXPECT_NEAR(std::log(probs[4]), logLast, 1e-15);
  for (std::size_t i = 1; i < probs.size(); i += 2) EXPECT_EQ(probs[i], 7.0);
}

/// The formulas as they stand, in long double.
long double LogOfReference(const std::vector<double>& eta) {
  const double hi = std::max(0.0, *std::max_element(eta.begin(), eta.end()));
  long double sum = std::exp(-static_cast<long double>(hi));
  for (const double x : eta) sum += std::exp(static_cast<long double>(x) - hi);
  return -hi - std::log(sum);
}

TEST(MultinomialRows, SumsToOneAndAgreesWithExtendedPrecision) {
  std::mt19937_64 engine(4);
  std::uniform_real_distribution<double> uniform(-30.0, 30.0);
  for (std::size_t m = 1; m <= 6; ++m) {
    for (int repeat = 0; repeat < 200; ++repeat) {
      std::vector<double> eta(m);
      for (double& x : eta) x = uniform(engine);
      std::vector<double> probs(m + 1);
      const double logLast = MultinomialProbabilities(eta.data(), m, 1, probs.data());
      const long double expected = LogOfReference(eta);
      // Exponents up to 60 carry roundings of 2^-53 of themselves, at most four of them.
      const double tolerance = 240.0 * 0x1p-53;
      EXPECT_NEAR(logLast, static_cast<double>(expected), tolerance);
      double sum = probs[m];
      for (std::size_t j = 0; j < m; ++j) {
        sum += probs[j];
        const long double p = std::exp(static_cast<long double>(eta[j]) + expected);
        EXPECT_NEAR(probs[j] / static_cast<double>(p), 1.0, tolerance);
      }
      EXPECT_NEAR(sum, 1.0, tolerance);
    }
  }
}

}  // namespace
