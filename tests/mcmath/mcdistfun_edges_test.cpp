// SPDX-License-Identifier: Apache-2.0
// Ends of the ranges, and the places where a plain formula would lose its digits. Values
// by python3-mpmath at 50 digits unless another source is named.
#include "mcmath/mcdistfun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {
using D = MCCommonMath::MCDistFun;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kDigits = 2e-15;  // relative, nine units of 2^-52

long gError = 0;

double Lower(double x, double a) {
  return D::gammad(x, a, false, gError);
}
double Upper(double x, double a) {
  return D::gammad(x, a, true, gError);
}
double Beta(double x, double a, double b) {
  return D::cdfbet(x, a, b, gError);
}
double Choose(double n, double k) {
  return D::dnlbnc(n, k, gError);
}
double Bin(double k, double n, double p) {
  return D::CdfBin(k, n, p, gError);
}
double BinTerm(double k, double n, double p) {
  return D::PdfBin(k, n, p, gError);
}
double BinQuantile(double q, double n, double p) {
  return D::IdfBin(q, n, p, gError);
}
double Hyper(double x, double N, double K, double n) {
  int error = 0;
  return D::CDFHyper(x, N, K, n, error);
}

struct Case {
  const char* fWhat;
  double fActual;
  double fExpected;
};

void ExpectClose(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_NEAR(c.fActual, c.fExpected, kDigits * std::fabs(c.fExpected)) << c.fWhat;
  }
}

void ExpectExact(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(c.fActual, c.fExpected) << c.fWhat;
}

TEST(MCDistFun, KeepsItsDigitsWherePlainFormulasLoseThem) {
  ExpectClose({
      {"upper gamma tail of a small parameter", Upper(0.5, 1e-3), 0.0005600666564707498},
      {"of a tiny one", Upper(0.3, 1e-10), 9.056766516920478e-11},
      {"lower tail at 1e-60", Lower(1e-60, 5.0), 8.333333333333332e-303},
      {"upper tail at 700", Upper(700.0, 5.0), 9.920391479800145e-295},
      {"exponential at 1e-17", Lower(1e-17, 1.0), 1e-17},
      {"exponential at 1e-12", Lower(1e-12, 1.0), 9.999999999995e-13},
      {"t with 1 degree", D::CdfT(-1e16, 1.0), 3.183098861837907e-17},
      {"t whose square overflows", D::CdfT(-1e160, 1e-3), 0.344484077303285},
      {"t far out", D::CdfT(-1e60, 5.0), 9.490167245562363e-300},
      {"t next to 0", D::CdfT(-1e-5, 3.0), 0.4999963244740306},
      {"t, many degrees", D::CdfT(-2.0, 1e6), 0.022750266925659603},
      {"t, far tail", D::CdfT(-37.0, 1000.0), 8.650394404956531e-190},
      {"t, two-sided", D::SigT(2.5, 7.0), 2.0 * 0.020496109292876447},
      {"F, upper tail", D::SigF(1e10, 4.0, 60.0), 5.944282560097888e-264},
      {"F, small though f >= 1", D::CdfF(1.5, 4.0, 0.01), 0.026652104405945152},
      {"F next to 0", D::CdfF(1e-40, 4.0, 6.0), 2.6666666666666664e-80},
      {"F whose products overflow", D::SigF(1e300, 3.0, 0.5), 7.310401366290018e-76},
      {"F", D::CdfF(3.0, 4.0, 10.0), 0.9276767777118597},
      {"F, upper", D::SigF(3.0, 4.0, 10.0), 0.07232322228814023},
      {"beta", Beta(0.3, 2.0, 3.0), 0.3483},
      {"normal at -8", D::prbnrm(-8.0), 6.220960574271784e-16},
      {"normal at -37", D::prbnrm(-37.0), 5.725571222524577e-300},
      {"normal at 1.96", D::CdfNorm(11.96, 10.0, 1.0), 0.9750021048517792},
      {"quantile", D::probit(0.975), 1.9599639845400538},
      {"far quantile", D::probit(1e-300), -37.0470962993612},
      {"quantile of another normal", D::IdfNorm(0.975, 10.0, 2.0), 10.0 + 2.0 * 1.9599639845400538},
      {"ln gamma(0.5)", D::dnlgam(0.5), 0.5723649429247001},
      {"ln gamma(100)", D::dnlgam(100.0), 359.1342053695754},
      {"ln gamma next to 1", D::dnlgam(1.0 + 1e-10), -5.772157125783244e-11},
      {"ln gamma next to overflow", D::veskdnlgam(2.55e305), 1.7906725941420033e+308},
      {"a large binomial coefficient", Choose(1e9, 1.0), 20.72326583694641},
      {"100 over 50", Choose(100.0, 50.0), 66.78384165201743},
      {"52 over 5", Choose(52.0, 5.0), 14.77062192297037},
      {"2.5 over 0.5", Choose(2.5, 0.5), 0.6286086594223741},
      {"remainder at 1", D::cbtaux(1.0), 0.08106146679532726},
      {"remainder at 0.1", D::cbtaux(0.1), 0.512740081331915},
      {"binomial, p = 1/2", Bin(3.0, 10.0, 0.5), 0.171875},
      {"binomial", Bin(3.7, 10.0, 0.2), 0.8791261184},
      {"binomial, many trials", Bin(500.0, 1000.0, 0.5), 0.5126125090891804},
      {"binomial, no success", Bin(0.0, 1e4, 1e-3), 4.5173345977048635e-05},
      {"binomial term", BinTerm(3.0, 10.0, 0.2), 0.20132659200000003},
      {"binomial term of a tiny p", BinTerm(1.0, 2.0, 1e-300), 2e-300},
      {"binomial term of many trials", BinTerm(5e8, 1e9, 0.5), 2.5231325213893768e-05},
      {"hypergeometric", Hyper(2.5, 20.0, 8.0, 5.0), 0.7038183694530443},
      {"hypergeometric, lower", Hyper(30.0, 1000.0, 200.0, 200.0), 0.02791288635204287},
      {"hypergeometric, upper", Hyper(60.0, 1000.0, 200.0, 200.0), 0.9999537736189374},
      {"hypergeometric, none", Hyper(0.0, 1000.0, 20.0, 5.0), 0.9037357811477568},
  });
  // The series of the remainder has its leading constant 3e-15 below 1/12.
  EXPECT_NEAR(D::cbtaux(10.0), 0.00833056343336287, 1e-14 * 0.0083);
}

TEST(MCDistFun, AnswersTheEndsExactly) {
  ExpectExact({
      {"erf", D::derf(0.0), 0.0},
      {"erf", D::derf(-kInf), -1.0},
      {"erfc", D::derfc(kInf), 0.0},
      {"erfc", D::derfc(-kInf), 2.0},
      {"erfc", D::derfc(-7.0), 2.0},
      {"normal", D::prbnrm(0.0), 0.5},
      {"normal", D::CdfStdNorm(-kInf), 0.0},
      {"normal", D::CdfStdNorm(kInf), 1.0},
      {"normal, below exp(-708)", D::prbnrm(-38.0), 0.0},
      {"quantile", D::IdfStdNorm(0.5), 0.0},
      {"another normal", D::CdfNorm(-kInf, 3.0, 2.0), 0.0},
      {"another normal", D::CdfNorm(kInf, 3.0, 2.0), 1.0},
      {"ln gamma", D::dnlgam(1.0), 0.0},
      {"ln gamma", D::dnlgam(2.0), 0.0},
      {"ln gamma", D::dnlgam(1e306), kInf},
      {"ln gamma", D::dnlgam(kInf), kInf},
      {"remainder", D::cbtaux(kInf), 0.0},
      {"coefficient", Choose(7.0, 0.0), 0.0},
      {"coefficient", Choose(7.0, 7.0), 0.0},
      {"lower gamma", Lower(0.0, 2.0), 0.0},
      {"lower gamma", Lower(-1.0, 2.0), 0.0},
      {"upper gamma", Upper(0.0, 2.0), 1.0},
      {"upper gamma", Upper(-kInf, 2.0), 1.0},
      {"lower gamma", Lower(kInf, 2.0), 1.0},
      {"upper gamma", Upper(kInf, kInf), 0.0},
      {"lower gamma", Lower(3.0, kInf), 0.0},
      {"upper gamma", Upper(3.0, kInf), 1.0},
      {"exponential", Lower(0.7, 1.0), -std::expm1(-0.7)},
      {"exponential", Upper(0.7, 1.0), std::exp(-0.7)},
      {"exponential, below exp(-708)", Upper(708.5, 1.0), 0.0},
      {"below exp(-708)", Lower(1e-100, 5.0), 0.0},
      {"beta", Beta(0.0, 2.0, 3.0), 0.0},
      {"beta", Beta(1.0, 2.0, 3.0), 1.0},
      {"t", D::CdfT(0.0, 0.3), 0.5},
      {"t", D::CdfT(0.0, 1e9), 0.5},
      {"t", D::CdfT(-kInf, 3.0), 0.0},
      {"t", D::CdfT(kInf, 3.0), 1.0},
      {"t", D::SigT(0.0, 3.0), 1.0},
      {"t", D::SigT(kInf, 3.0), 0.0},
      {"t", D::SigT(-kInf, 3.0), 0.0},
      {"t of infinite df", D::CdfT(-2.0, kInf), D::prbnrm(-2.0)},
      {"t quantile of infinite df", D::IdfT(0.1, kInf), D::probit(0.1)},
      {"F", D::CdfF(0.0, 3.0, 4.0), 0.0},
      {"F", D::CdfF(-5.0, 3.0, 4.0), 0.0},
      {"F", D::SigF(0.0, 3.0, 4.0), 1.0},
      {"F", D::CdfF(-kInf, 3.0, 4.0), 0.0},
      {"F", D::SigF(-5.0, 3.0, 4.0), 1.0},
      {"F", D::CdfF(kInf, 3.0, 4.0), 1.0},
      {"F", D::SigF(kInf, 3.0, 4.0), 0.0},
      {"chi-square", D::CdfChi(0.0, 4.0), 0.0},
      {"chi-square", D::SigChi(-1.0, 4.0), 1.0},
      {"chi-square of infinite df", D::CdfChi(5.0, kInf), 0.0},
      {"chi-square of infinite df", D::SigChi(5.0, kInf), 1.0},
      {"inverse chi-square", D::IdfChi(0.0, 4.0), 0.0},
      {"inverse F", D::IdfF(0.0, 4.0, 5.0), 0.0},
      {"inverse beta", D::IdfBeta(0.0, 4.0, 5.0), 0.0},
      {"inverse beta", D::IdfBeta(1.0, 4.0, 5.0), 1.0},
      {"inverse t", D::IdfT(0.5, 4.0), 0.0},
      {"binomial, p = 0", Bin(0.0, 5.0, 0.0), 1.0},
      {"binomial, p = 0", Bin(-1.0, 5.0, 0.0), 0.0},
      {"binomial, p = 1", Bin(4.0, 5.0, 1.0), 0.0},
      {"binomial, p = 1", Bin(5.0, 5.0, 1.0), 1.0},
      {"binomial, k < 0", Bin(-0.5, 5.0, 0.3), 0.0},
      {"binomial, k >= n", Bin(5.0, 5.0, 0.3), 1.0},
      {"binomial, infinite k", Bin(kInf, 5.0, 0.3), 1.0},
      {"binomial, infinite k", Bin(-kInf, 5.0, 0.3), 0.0},
      {"binomial, huge k and n", Bin(1e308, 1e307, 0.3), 1.0},
      {"binomial, below exp(-708)", Bin(0.0, 1e6, 0.5), 0.0},
      {"binomial term", BinTerm(-1.0, 5.0, 0.3), 0.0},
      {"binomial term", BinTerm(6.0, 5.0, 0.3), 0.0},
      {"binomial term", BinTerm(-kInf, 5.0, 0.3), 0.0},
      {"binomial term", BinTerm(kInf, 5.0, 0.3), 0.0},
      {"binomial term, p = 0", BinTerm(0.0, 5.0, 0.0), 1.0},
      {"binomial term, p = 0", BinTerm(1.0, 5.0, 0.0), 0.0},
      {"binomial term, p = 1", BinTerm(5.0, 5.0, 1.0), 1.0},
      {"binomial term, p = 1", BinTerm(4.0, 5.0, 1.0), 0.0},
      {"binomial quantile", BinQuantile(0.0, 5.0, 0.3), 0.0},
      {"binomial quantile, p = 0", BinQuantile(0.9, 5.0, 0.0), 0.0},
      {"binomial quantile, p = 1", BinQuantile(0.9, 5.0, 1.0), 5.0},
      {"hypergeometric, below", Hyper(1.0, 10.0, 8.0, 4.0), 0.0},
      {"hypergeometric, top", Hyper(4.0, 10.0, 8.0, 4.0), 1.0},
      {"hypergeometric, nothing drawn", Hyper(0.0, 10.0, 8.0, 0.0), 1.0},
      {"hypergeometric, nothing there", Hyper(0.0, 0.0, 0.0, 0.0), 1.0},
      {"hypergeometric", Hyper(-kInf, 10.0, 8.0, 4.0), 0.0},
      {"hypergeometric", Hyper(kInf, 10.0, 8.0, 4.0), 1.0},
  });
}

TEST(MCDistFun, UsesNormalApproximationsOfTheIncompleteGammaForTheRightTails) {
  // The lower tail rises with x and the upper one falls: x / (a + 1) rounds to 1.
  const double a = 0x1p54;
  const double sd = std::sqrt(a);
  EXPECT_NEAR(Lower(a, a), 0.5, 1e-8);
  EXPECT_NEAR(Upper(a, a), 0.5, 1e-8);
  EXPECT_NEAR(Lower(1e80, 1e80), 0.5, 1e-12);
  EXPECT_NEAR(Upper(1e80, 1e80), 0.5, 1e-12);
  // 4 ln x >= 709.
  EXPECT_EQ(Lower(1e80, 2.0), 1.0);
  EXPECT_EQ(Upper(1e80, 2.0), 0.0);
  EXPECT_EQ(Lower(1e80, 0.1), 1.0);
  EXPECT_EQ(Upper(2e80, 1e80), 0.0);
  EXPECT_EQ(Lower(2e80, 1e80), 1.0);
  // ln gamma(a) overflows.
  EXPECT_EQ(Lower(1e300, 1e306), 0.0);
  EXPECT_EQ(Upper(1e300, 1e306), 1.0);
  // x = 1 beside an a that 1 swallows.
  EXPECT_EQ(Lower(1.0, 1e-17), 1.0);
  EXPECT_EQ(Upper(1.0, 1e-17), 0.0);
  // Continuous where the approximation begins.
  for (const double z : {-3.0, -0.5, 0.5, 3.0}) {
    EXPECT_NEAR(Lower(a + z * sd, a), D::prbnrm(z), 1e-8);
    EXPECT_NEAR(Upper(a + z * sd, a), D::prbnrm(-z), 1e-8);
  }
}

TEST(MCDistFun, StaysQuickAndRightForHugeParameters) {
  // Each of these would take more than 1e9 terms of a plain series.
  EXPECT_EQ(Lower(1e20 * (1.0 - 1e-8), 1e20), 0.0);
  EXPECT_EQ(Upper(1e20 * (1.0 - 1e-8), 1e20), 1.0);
  EXPECT_NEAR(Beta(0.5, 1e15, 1e15), 0.5, 1e-15);
  EXPECT_NEAR(Bin(5e14, 1e15, 0.5), 0.5, 1e-7);
  EXPECT_NEAR(Bin(5e299, 1e300, 0.5), 0.5, 1e-7);
  EXPECT_NEAR(D::CdfT(-2.0, 1e24), D::prbnrm(-2.0), 1e-17);
  EXPECT_NEAR(D::CdfF(1.0, 1e15, 1e15), 0.5, 1e-12);
  EXPECT_GE(D::CdfF(1.0, 1e300, 1e300), 0.0);
  EXPECT_GE(D::CdfF(1e-300, 1e-300, 1e-300), 0.0);
  EXPECT_GE(BinQuantile(0.3, 1e300, 0.5), 4e299);
  // Of 2^53 objects half are marked and half are drawn: symmetric about 2^51.
  const double below = Hyper(0x1p51 - 1.0, 0x1p53, 0x1p52, 0x1p52);
  const double upTo = Hyper(0x1p51, 0x1p53, 0x1p52, 0x1p52);
  EXPECT_NEAR(below + upTo, 1.0, 1e-6);
  const double sd = 0x1p53 / 4.0 / std::sqrt(0x1p53);
  EXPECT_NEAR(Hyper(0x1p51 - 3.0 * sd, 0x1p53, 0x1p52, 0x1p52) / D::prbnrm(-3.0), 1.0, 1e-6);
}

TEST(MCDistFun, SumsManyHypergeometricTermsAsItSumsFew) {
  // 1.9e9 objects have a deviation of 10897, where the integral serves. The oracle sums all terms
  // in long double from the ratios, about the mean where their sum is 1.
  const double all = 1.9e9;
  const double marked = 9.5e8;
  const double drawn = 9.5e8;
  const auto ratio = [](long double k) {
    const long double rest = 9.5e8L - k;
    return (rest / (k + 1.0L)) * (rest / (k + 1.0L));
  };
  long double term = 1.0L;
  long double half = 0.0L;  // terms below the middle, relative to it
  for (long double k = 4.75e8L - 1.0L; term > 1e-25L; k -= 1.0L) {
    term /= ratio(k);
    half += term;
  }
  const long double whole = 1.0L + 2.0L * half;
  for (const double distance : {1.0, 5000.0, 30000.0}) {
    long double tail = 0.0L;
    long double t = 1.0L;
    const long double last = 4.75e8L - distance;
    for (long double k = 4.75e8L - 1.0L; t > 1e-40L; k -= 1.0L) {
      t /= ratio(k);
      if (k <= last) tail += t;
    }
    const double expected = static_cast<double>(tail / whole);
    EXPECT_NEAR(Hyper(4.75e8 - distance, all, marked, drawn) / expected, 1.0, 1e-10) << distance;
    EXPECT_NEAR(Hyper(4.75e8 + distance - 1.0, all, marked, drawn), 1.0 - expected, 1e-11);
  }
}
}  // namespace
