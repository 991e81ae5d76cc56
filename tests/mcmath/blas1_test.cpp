// SPDX-License-Identifier: Apache-2.0
// Level-1 vector operations against sums in long double, with increments of both signs.
#include "mcmath/blas1.h"

#include "support/columns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace {

using MCCommonMath::Blas1;
using mctest::RandomColumns;
using mctest::Vector;

constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();

const int kIncrements[] = {1, 2, 3, -1, -2, 0};
const int kLengths[] = {1, 2, 3, 7, 8, 9, 31};

/// An array of exactly the entries that a vector of n with this increment spans.
Vector ArrayFor(RandomColumns& source, int n, int inc) {
  return source.Entries(1 + (n - 1) * std::abs(inc));
}

/// Where element i lies.
std::size_t Place(int i, int n, int inc) {
  return static_cast<std::size_t>(inc < 0 ? (i + 1 - n) * inc : i * inc);
}

/// Calls visit(x, y, n, incx, incy) with arrays of each length and pair of increments.
template <class Visit>
void ForEachShape(const Visit& visit) {
  RandomColumns source(51);
  for (const int n : kLengths) {
    for (const int incx : kIncrements) {
      for (const int incy : kIncrements) {
        SCOPED_TRACE(testing::Message() << n << ": " << incx << ", " << incy);
        visit(ArrayFor(source, n, incx), ArrayFor(source, n, incy), n, incx, incy);
      }
    }
  }
}

TEST(Blas1, HelpersOfSigns) {
  EXPECT_EQ(Blas1::D_Abs(-2.5), 2.5);
  EXPECT_FALSE(std::signbit(Blas1::D_Abs(-0.0)));
  EXPECT_EQ(Blas1::D_Max(1.0, 2.0), 2.0);
  EXPECT_EQ(Blas1::D_Max(2.0, 1.0), 2.0);
  EXPECT_EQ(Blas1::D_Max(std::nan(""), 1.0), 1.0);
  EXPECT_EQ(Blas1::D_Sign(3.0, -1.0), -3.0);
  EXPECT_EQ(Blas1::D_Sign(-3.0, 0.0), 3.0);
  EXPECT_EQ(Blas1::D_Sign(3.0, -0.0), -3.0);
  EXPECT_EQ(Blas1::I_Max(-4, 3), 3);
  EXPECT_EQ(Blas1::I_Min(-4, 3), -4);
}

TEST(Blas1, LettersAreTheSameInEitherCase) {
  EXPECT_TRUE(Blas1::LSame('u', 'U'));
  EXPECT_TRUE(Blas1::LSame('Z', 'z'));
  EXPECT_TRUE(Blas1::LSame('N', 'N'));
  EXPECT_TRUE(Blas1::LSame('1', '1'));
  EXPECT_FALSE(Blas1::LSame('U', 'L'));
  // 32 apart, as letters and their capitals are, but no letters.
  EXPECT_FALSE(Blas1::LSame('@', '`'));
  EXPECT_FALSE(Blas1::LSame('{', '['));
}

TEST(Blas1, DaxpyAddsAMultiple) {
  ForEachShape([](const Vector& x, Vector y, int n, int incx, int incy) {
    Vector expected = y;
    for (int i = 0; i < n; ++i) expected[Place(i, n, incy)] += 0.75 * x[Place(i, n, incx)];
    Blas1::Daxpy(n, 0.75, x.data(), incx, y.data(), incy);
    EXPECT_EQ(y, expected);
  });
}

TEST(Blas1, DaxpyOfZeroReadsNothing) {
  double y = 3.0;
  const double x = std::nan("");
  Blas1::Daxpy(1, 0.0, &x, 1, &y, 1);
  EXPECT_EQ(y, 3.0);
}

TEST(Blas1, DaxpyDoublesAVectorInPlace) {
  Vector x = {1.0, 2.0, 3.0, 4.0, 5.0};
  Blas1::Daxpy(5, 1.0, x.data(), 1, x.data(), 1);
  EXPECT_EQ(x, (Vector{2.0, 4.0, 6.0, 8.0, 10.0}));
}

TEST(Blas1, DCopyCopies) {
  ForEachShape([](const Vector& x, Vector y, int n, int incx, int incy) {
    Vector expected = y;
    for (int i = 0; i < n; ++i) expected[Place(i, n, incy)] = x[Place(i, n, incx)];
    Blas1::DCopy(n, x.data(), incx, y.data(), incy);
    EXPECT_EQ(y, expected);
  });
}

TEST(Blas1, DSwapExchanges) {
  ForEachShape([](Vector x, Vector y, int n, int incx, int incy) {
    Vector expectedX = x;
    Vector expectedY = y;
    for (int i = 0; i < n; ++i) {
      std::swap(expectedX[Place(i, n, incx)], expectedY[Place(i, n, incy)]);
    }
    Blas1::DSwap(n, x.data(), incx, y.data(), incy);
    EXPECT_EQ(x, expectedX);
    EXPECT_EQ(y, expectedY);
  });
}

TEST(Blas1, DRotTurnsEachPair) {
  ForEachShape([](Vector x, Vector y, int n, int incx, int incy) {
    Vector expectedX = x;
    Vector expectedY = y;
    for (int i = 0; i < n; ++i) {
      double& a = expectedX[Place(i, n, incx)];
      double& b = expectedY[Place(i, n, incy)];
      const double turned = 0.6 * a + 0.8 * b;
      b = 0.6 * b - 0.8 * a;
      a = turned;
    }
    Blas1::DRot(n, x.data(), incx, y.data(), incy, 0.6, 0.8);
    EXPECT_EQ(x, expectedX);
    EXPECT_EQ(y, expectedY);
  });
}

TEST(Blas1, DDotIsTheSumOfProducts) {
  ForEachShape([](const Vector& x, const Vector& y, int n, int incx, int incy) {
    long double expected = 0.0L;
    long double magnitude = 0.0L;
    for (int i = 0; i < n; ++i) {
      const long double term =
          static_cast<long double>(x[Place(i, n, incx)]) * y[Place(i, n, incy)];
      expected += term;
      magnitude += std::fabs(term);
    }
    const double dot = Blas1::DDot(n, x.data(), incx, y.data(), incy);
    EXPECT_NEAR(dot, static_cast<double>(expected), n * kEps * static_cast<double>(magnitude));
  });
}

TEST(Blas1, SumsDoNotDependOnTheIncrement) {
  RandomColumns source(52);
  const Vector x = source.Entries(29);
  Vector spread(3 * 28 + 1, 1e99);
  Vector backwards(29);
  for (std::size_t i = 0; i < 29; ++i) spread[3 * i] = backwards[28 - i] = x[i];
  EXPECT_EQ(Blas1::DASum(29, spread.data(), 3), Blas1::DASum(29, x.data(), 1));
  EXPECT_EQ(Blas1::DNrm2(29, spread.data(), 3), Blas1::DNrm2(29, x.data(), 1));
  const double dot = Blas1::DDot(29, x.data(), 1, x.data(), 1);
  EXPECT_EQ(Blas1::DDot(29, spread.data(), 3, x.data(), 1), dot);
  EXPECT_EQ(Blas1::DDot(29, spread.data(), 3, backwards.data(), -1), dot);
}

TEST(Blas1, DASumAndDScalTakePositiveIncrements) {
  RandomColumns source(53);
  for (const int n : kLengths) {
    for (const int inc : {1, 2, 5}) {
      Vector x = ArrayFor(source, n, inc);
      Vector expected = x;
      long double sum = 0.0L;
      for (int i = 0; i < n; ++i) {
        sum += std::fabs(x[Place(i, n, inc)]);
        expected[Place(i, n, inc)] *= -0.3;
      }
      EXPECT_NEAR(Blas1::DASum(n, x.data(), inc), static_cast<double>(sum), n * kEps * n);
      Blas1::DScal(n, -0.3, x.data(), inc);
      EXPECT_EQ(x, expected);
    }
  }
}

TEST(Blas1, IDAMaxCountsFromOne) {
  const Vector x = {1.0, -3.0, 2.0, 3.0, -4.0, 0.0, 1.0};
  EXPECT_EQ(Blas1::IDAMax(1, x.data(), 1), 1);
  EXPECT_EQ(Blas1::IDAMax(4, x.data(), 1), 2) << "the first of equals";
  EXPECT_EQ(Blas1::IDAMax(7, x.data(), 1), 5);
  EXPECT_EQ(Blas1::IDAMax(4, x.data(), 2), 3);
  EXPECT_EQ(Blas1::IDAMax(3, x.data(), 3), 2);
  const double nan = std::nan("");
  const Vector withNaN = {nan, 1.0, 2.0};
  EXPECT_EQ(Blas1::IDAMax(3, withNaN.data(), 1), 1);
  EXPECT_EQ(Blas1::IDAMax(2, withNaN.data() + 1, 1), 2);
}

TEST(Blas1, OneVectorAnswersZeroWithoutElementsOrIncrement) {
  for (const auto& [n, inc] : {std::pair{0, 1}, {-1, 1}, {2, 0}, {2, -1}}) {
    EXPECT_EQ(Blas1::DASum(n, nullptr, inc), 0.0);
    EXPECT_EQ(Blas1::DNrm2(n, nullptr, inc), 0.0);
    EXPECT_EQ(Blas1::IDAMax(n, nullptr, inc), 0);
    Blas1::DScal(n, 2.0, nullptr, inc);
  }
}

TEST(Blas1, TwoVectorsWithoutElementsAreLeftAlone) {
  for (const int n : {0, -1}) {
    for (const int inc : {1, -2}) {
      Blas1::Daxpy(n, 2.0, nullptr, inc, nullptr, 1);
      Blas1::DCopy(n, nullptr, inc, nullptr, 1);
      Blas1::DSwap(n, nullptr, inc, nullptr, 1);
      Blas1::DRot(n, nullptr, inc, nullptr, 1, 0.6, 0.8);
      EXPECT_EQ(Blas1::DDot(n, nullptr, inc, nullptr, 1), 0.0);
    }
  }
}

TEST(Blas1, DNrm2IsRightOverTheWholeRange) {
  RandomColumns source(54);
  const Vector x = source.Entries(17);
  long double squares = 0.0L;
  for (const double value : x) squares += static_cast<long double>(value) * value;
  const double expected = static_cast<double>(std::sqrt(squares));
  for (const int exponent : {0, -1000, -540, -500, -100, 100, 480, 511, 1000}) {
    SCOPED_TRACE(exponent);
    Vector scaled = x;
    for (double& value : scaled) value = std::ldexp(value, exponent);
    const double norm = std::ldexp(Blas1::DNrm2(17, scaled.data(), 1), -exponent);
    EXPECT_NEAR(norm, expected, 4.0 * kEps * expected);
    Vector spread(2 * 16 + 1);
    for (std::size_t i = 0; i < 17; ++i) spread[2 * i] = scaled[i];
    EXPECT_EQ(Blas1::DNrm2(17, spread.data(), 2), Blas1::DNrm2(17, scaled.data(), 1));
  }
}

TEST(Blas1, DNrm2AtTheEndsOfTheRange) {
  const struct {
    Vector x;
    double norm;
  } cases[] = {
      {{3e307, 4e307}, 5e307},
      {{kMax, 0.0}, kMax},
      {{kMax, kMax}, HUGE_VAL},
      {{3 * kLeast, 4 * kLeast}, 5 * kLeast},
      {{kLeast}, kLeast},
      {{1e300, 1e-300}, 1e300},
      {{3e-170, 4e-170, 0}, 5e-170},
      {{0.0, -0.0}, 0.0},
      {{1.0, HUGE_VAL}, HUGE_VAL},
      {{-HUGE_VAL, 1e-320}, HUGE_VAL},
  };
  for (const auto& item : cases) {
    const double norm = Blas1::DNrm2(static_cast<int>(item.x.size()), item.x.data(), 1);
    EXPECT_DOUBLE_EQ(norm, item.norm) << testing::PrintToString(item.x);
  }
  const Vector withNaN = {1e-320, std::nan(""), 1e308};
  EXPECT_TRUE(std::isnan(Blas1::DNrm2(3, withNaN.data(), 1)));
}

struct Rotation {
  double r;
  double z;
  double c = -9.0;
  double s = -9.0;

  Rotation(double a, double b) : r(a), z(b) { Blas1::DRotG(&r, &z, &c, &s); }
};

TEST(Blas1, DRotGTakesTheSecondElementAway) {
  const std::pair<double, double> pairs[] = {
      {3.0, 4.0},     {4.0, 3.0},        {-3.0, 4.0},    {4.0, -3.0}, {-3.0, -4.0},
      {1.0, 1.0},     {0.0, 2.0},        {2.0, 0.0},     {0.0, -2.0}, {1e-200, 1e-201},
      {1e300, 1e300}, {kLeast, -kLeast}, {1e200, 1e-200}};
  for (const auto& [a, b] : pairs) {
    SCOPED_TRACE(testing::Message() << a << ", " << b);
    const Rotation turn(a, b);
    EXPECT_NEAR(turn.c * turn.c + turn.s * turn.s, 1.0, 4 * kEps);
    EXPECT_NEAR(turn.c * a + turn.s * b, turn.r, 4 * kEps * std::fabs(turn.r) + kLeast);
    EXPECT_NEAR(turn.c * b, turn.s * a, 4 * kEps * std::fabs(turn.r) + kLeast);
    EXPECT_EQ(std::signbit(turn.r), std::signbit(std::fabs(a) > std::fabs(b) ? a : b));
  }
}

TEST(Blas1, DRotGLeavesTheNumberThatHoldsBoth) {
  EXPECT_DOUBLE_EQ(Rotation(4.0, 3.0).z, 0.6);
  EXPECT_DOUBLE_EQ(Rotation(3.0, 4.0).z, 1.0 / 0.6);
  EXPECT_EQ(Rotation(0.0, 4.0).z, 1.0);
  EXPECT_EQ(Rotation(4.0, 0.0).z, 0.0);
  const Rotation none(0.0, 0.0);
  EXPECT_EQ(none.c, 1.0);
  EXPECT_EQ(none.s, 0.0);
  EXPECT_EQ(none.r, 0.0);
  EXPECT_EQ(none.z, 0.0);
}

TEST(Blas1, DRotGKeepsANaN) {
  EXPECT_TRUE(std::isnan(Rotation(std::nan(""), 0.0).r));
  EXPECT_TRUE(std::isnan(Rotation(0.0, std::nan("")).r));
}

TEST(Blas1, DMachAnswersTheConstantsOfTheArithmetic) {
  EXPECT_EQ(Blas1::DMach(1), 0x1p-52);
  // 16^-268 is the smallest power above 0.
  EXPECT_EQ(Blas1::DMach(2), 0x1p-1072 / 0x1p-52 * 100.0);
  EXPECT_EQ(Blas1::DMach(3), 1.0 / (0x1p-1020 * 100.0));
}

/// What a statement writes to standard output before it ends the process with status 1.
class Blas1DeathTest : public testing::Test {
protected:
  /// Standard output goes where the death test listens.
  static void Redirect() { std::freopen("/dev/stderr", "w", stdout); }
};

TEST_F(Blas1DeathTest, XErBlaSaysWhatIsWrongAndEndsTheProcess) {
  EXPECT_EXIT((Redirect(), Blas1::XErBla("DGEMM", 8)), testing::ExitedWithCode(1),
              testing::Eq("XERBLA - Fatal error!\n  On entry to routine DGEMM\n  input parameter "
                          "number 8 had an illegal value.\n"));
}

TEST_F(Blas1DeathTest, DMachEndsTheProcessForAnyOtherJob) {
  for (const int job : {0, 4, -1}) {
    EXPECT_EXIT((Redirect(), Blas1::DMach(job)), testing::ExitedWithCode(1),
                testing::Eq("XERBLA - Fatal error!\n  On entry to routine DMACH\n  input parameter "
                            "number 1 had an illegal value.\n"));
  }
}

}  // namespace
