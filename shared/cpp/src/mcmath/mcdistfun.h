// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <vector>

namespace MCCommonMath {

/// Distribution functions and their inverses, as static functions without state: what the results
/// of a model and its p-values are computed from.
///
/// Two conventions stand side by side. Functions that take `const double&` and `long& error` set
/// error to 0 first; arguments out of range give error 1 and the missing value. Functions that
/// take doubles by value answer the missing value instead. NaN is out of range everywhere. An
/// infinite argument gives the limit unless its function says otherwise.
///
/// Each tail is computed directly, never as one minus the other where that would cost digits: an
/// upper tail of 1e-300 has the same relative accuracy as a lower one. Results below exp(-708) =
/// 3.3e-308 are 0.0; positive parameters of gamma and beta below 1e-300 count as that. The errors
/// are measured in docs/accuracy.md: some units of 2^-52 over the whole range of tails and for
/// parameters up to 1e15. The inverses solve for the smaller of both tails to 1e-13 of the result.
///
///   double p = MCDistFun::SigT(estimate / standardError, df);      // two-sided
///   double h = MCDistFun::IdfT(0.975, df) * standardError;         // half a 95% interval
class MC_EXPORT MCDistFun {
public:
  /// Error function 2/sqrt(pi) * integral of exp(-t^2) from 0 to x, and 1 - derf(x) without its
  /// cancellation. The missing value for NaN. Approximations by intervals as in W. J. Cody (1969),
  /// but polynomials; the exponential by an exact square.
  static double derf(double x);
  static double derfc(double x);

  /// Standard normal distribution P(Z <= x), 1 - erfc(x / sqrt 2)/2 for x > 0 and
  /// erfc(-x / sqrt 2)/2 otherwise. The missing value for NaN.
  static double prbnrm(double x);

  /// Inverse of prbnrm for 0 < p < 1, otherwise the missing value. M. J. Wichura, AS 241 (1988),
  /// and one step of Halley's method.
  static double probit(double p);

  /// As prbnrm; the second for a mean and a standard deviation > 0, the missing value unless sd
  /// is positive and mean and sd are finite.
  static double CdfStdNorm(double x);
  static double CdfNorm(double x, double mean, double sd);

  /// As probit; the second answers mean + sd * probit(p) for finite mean and finite sd > 0.
  static double IdfStdNorm(double p);
  static double IdfNorm(double p, double mean, double sd);

  /// Logarithm of the gamma function for x > 0, infinite where it lies above all doubles; the
  /// missing value otherwise. Stirling's series from 8 on, below it the recurrence and series
  /// around the zeros 1 and 2, so that the relative accuracy holds there too. Both functions are
  /// one.
  static double dnlgam(double x);
  static double veskdnlgam(double x);

  /// Logarithm of the binomial coefficient "n over k". Error 1 unless 0 <= k <= n and n is finite;
  /// neither need be whole. By deviances (C. Loader 2000), so that no digits go into a difference
  /// of large logarithms.
  static double dnlbnc(const double& n, const double& k, long& error);

  /// Remainder of Stirling's formula, ln gamma(x) - ((x - 1/2) ln x - x + ln(2 pi)/2), about
  /// 1/(12 x), so 0 for infinity: the auxiliary of the incomplete ratios. The missing value unless
  /// x > 0.
  static double cbtaux(double x);

  /// Incomplete gamma ratio: P(a, x) with upper false, Q(a, x) = 1 - P(a, x) with upper true. For
  /// x <= 0 these are 0 and 1. Error 1 unless a > 0.
  ///
  /// Power series and continued fraction, as in W. Gautschi (1979), with a common factor of twice
  /// the precision; from a = 12 on, near x = a, the uniform expansion of N. M. Temme (1979) in
  /// the form of A. Gil, J. Segura and N. M. Temme (2012). Three normal approximations serve
  /// beyond: where x / (a + 1) rounds to 1, so a >= 2^53; where a < x and 4 ln x >= 709; and where
  /// ln gamma(a) isn't finite. There P is that of D. B. Peizer and J. W. Pratt (1968) for a >=
  /// 0.5, everything else that of E. B. Wilson and M. M. Hilferty (1931).
  static double gammad(const double& x, const double& a, bool upper, long& error);

  /// Incomplete beta ratio I_x(a, b). Error 1 unless 0 <= x <= 1, a > 0 and b > 0, a and b
  /// finite. Power series and continued fraction (A. R. DiDonato and A. H. Morris, TOMS 708,
  /// 1992) and, for large a and b near the mean, a uniform expansion after N. M. Temme (1982).
  static double cdfbet(const double& x, const double& a, const double& b, long& error);

  /// The x with I_x(a, b) = p: 0 for p = 0, 1 for p = 1. The missing value unless 0 <= p <= 1,
  /// a > 0 and b > 0, a and b finite. Both functions are one.
  static double betinv(double p, double a, double b);
  static double IdfBeta(double p, double a, double b);

  /// Student's t with df > 0 degrees of freedom, not necessarily whole: P(T <= t). Error 1 unless
  /// df > 0. Infinite df is the normal distribution.
  static double veskcdft(const double& t, const double& df, long& error);
  static double CdfT(double t, double df);

  /// Two-sided significance P(|T| >= |t|), twice the lower tail of -|t|. The missing value where
  /// CdfT answers it.
  static double SigT(double t, double df);

  /// The t with CdfT(t, df) = p. Error 1 unless 0 < p < 1 and df > 0.
  static double veskidft(const double& p, const double& df, long& error);
  static double IdfT(double p, double df);

  /// F with d1 and d2 > 0 degrees of freedom: P(F <= f), 0 for f <= 0. Error 1 unless both are
  /// positive and finite.
  static double veskcdff(const double& f, const double& d1, const double& d2, long& error);
  static double CdfF(double f, double d1, double d2);

  /// P(F > f), 1 for f <= 0: the incomplete beta ratio of the complementary arguments. The missing
  /// value where CdfF answers it.
  static double SigF(double f, double d1, double d2);

  /// The f with CdfF(f, d1, d2) = p, 0 for p = 0. Error 1 unless 0 <= p < 1, d1 > 0 and d2 > 0,
  /// d1 and d2 finite.
  static double veskidff(const double& p, const double& d1, const double& d2, long& error);
  static double IdfF(double p, double d1, double d2);

  /// Chi-square with df > 0 degrees of freedom: P(X <= x) and P(X > x), gammad with a = df/2 at
  /// x/2. The missing value unless df > 0.
  static double CdfChi(double x, double df);
  static double SigChi(double x, double df);

  /// The x with CdfChi(x, df) = p, 0 for p = 0. Error 1 unless 0 <= p < 1 and df > 0, df finite.
  /// Starts at the approximation of Wilson and Hilferty, or at the first term of the series, and
  /// refines it by idfchb.
  static double veskidfchi(const double& p, const double& df, long& error);
  static double IdfChi(double p, double df);

  /// The same from a start of the caller: steps of Halley's method in ln x on the logarithm of the
  /// smaller tail, which is concave, inside a bracket, so that any start > 0 converges; a start
  /// that is not positive and finite is replaced by that of veskidfchi, NaN is error 1. When a
  /// step leaves at most 1e-8 of x to go, one more is taken: the result is good to the last digits.
  static double idfchb(const double& p, const double& df, const double& start, long& error);

  /// Binomial distribution of n trials of probability p: P(K <= k), where k counts as floor(k).
  /// Error 1 unless n is a whole number >= 1, 0 <= p <= 1 and k isn't NaN. The sum of
  /// the terms on k's side of the mode, the first by the saddle-point form of C. Loader (2000);
  /// where it would be long, the incomplete beta ratio.
  static double CdfBin(const double& k, const double& n, const double& p, long& error);

  /// P(K = k): 0 for k < 0 and k > n, without error; error 1 for a k that is not whole and for the
  /// arguments that CdfBin refuses.
  static double PdfBin(const double& k, const double& n, const double& p, long& error);

  /// The least k with CdfBin(k, n, p) >= q, for 0 <= q <= 1: 0 for q = 0. Error 1 for other q and
  /// for the arguments that CdfBin refuses.
  static double IdfBin(const double& q, const double& n, const double& p, long& error);

  /// Hypergeometric distribution: the probability that of n objects, drawn without replacement
  /// from N of which K are marked, at most x are marked; x counts as floor(x). Error 1 unless N, K
  /// and n are whole, 0 <= K <= N, 0 <= n <= N and N <= 2^53, and x isn't NaN. Terms as in C.
  /// Loader (2000), summed on x's side of the mode; beyond a standard deviation of 10,000, so N
  /// above 1.6e9, their integral, to 1e-10 of the tail.
  static double CDFHyper(double x, double N, double K, double n, int& error);

  /// Quantile of level p, 0 <= p <= 1, of `values`, sorted ascending, which count `weights` times
  /// each; an empty `weights` counts each once. `method` 1 to 9 is the definition of that number
  /// in R. J. Hyndman and Y. Fan, Sample quantiles in statistical packages, The American
  /// Statistician 50 (1996), 361-365: 1 to 3 without interpolation (3 takes the nearest rank, the
  /// even one of two), 6 is p (n + 1), 7 is p (n - 1) + 1, 8 is nearly median-unbiased. Weights
  /// are frequencies: n is their sum and the value of rank r, 0 < r <= n, is the first one whose
  /// cumulative weight is at least r. So whole weights give what a list with repeated values
  /// gives; zero weights count for nothing. Between a number and an infinity the quantile is that
  /// infinity.
  /// The missing value between both infinities, where nothing tells what lies there, and for
  /// another method or p, an empty or unsorted list, a NaN in it, weights of another length,
  /// negative or infinite ones, or a sum that is not positive and finite.
  static double GPTile(long method, double p, const std::vector<double>& values,
                       const std::vector<double>& weights);

  /// Distribution-free confidence interval for the median from `values`, sorted ascending, at
  /// confidence `level`, 0 < level < 1; answers the confidence reached and sets `lower` and
  /// `upper`.
  /// Method 1: the order statistics r and n + 1 - r, counted from 1, with the largest r whose
  /// confidence 1 - 2 P(K < r), K binomial (n, 1/2), is at least level (H. A. David, H. N.
  /// Nagaraja, Order Statistics, 3rd ed., 2003, section 7.1). Method 2: interpolated between that
  /// interval and the next narrower one, so that the confidence is about level, which is the answer
  /// (T. P. Hettmansperger, S. J. Sheather, Statistics and Probability Letters 4 (1986), 75-79); as
  /// method 1 where there is no narrower one. An end between a number and an infinity, or between
  /// both infinities, is that of the wider interval.
  /// The missing value, lower and upper unchanged, for another method or level, an unsorted list
  /// or a NaN in it, and where even the whole range has less confidence than level.
  static double Mednci(long method, double level, const std::vector<double>& values, double& lower,
                       double& upper);
};

}  // namespace MCCommonMath
