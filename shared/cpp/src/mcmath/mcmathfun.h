// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <vector>

namespace MCCommonMath {

/// Static functions on vectors and on packed lower triangles, the floor under the matrices.
///
/// Strided functions take n elements of x at positions pos, pos + inc, pos + 2 inc, ..., counted
/// from 0; inc may be any int. Positions are not checked: all n of them must lie within the
/// vector. With n < 1 nothing is read or written and sums are 0.0. A packed lower triangle of n
/// rows has n(n+1)/2 entries, element (i, j), i >= j, at i(i+1)/2 + j.
///
/// Sums (DASum, DDot, DSum, DNrm2) run in eight lanes: term i is added to lane i % 8 in ascending
/// order, then the lanes are added as ((0+4)+(2+6)) + ((1+5)+(3+7)). So a result is the same to
/// the bit on every machine, whatever the width of its vectors, and does not depend on strides.
class MC_EXPORT MCMathFun {
public:
  /// Sum of absolute values.
  static double DASum(int n, const std::vector<double>& x, int pos, int inc);

  /// y += a x, element by element in ascending order; x and y may be one vector.
  static void Daxpy(int n, double a, const std::vector<double>& x, int xPos, int xInc,
                    std::vector<double>& y, int yPos, int yInc);

  /// Dot product.
  static double DDot(int n, const std::vector<double>& x, int xPos, int xInc,
                     const std::vector<double>& y, int yPos, int yInc);

  /// Fills with `a`.
  static void DLoad(int n, double a, std::vector<double>& x, int pos, int inc);

  /// Multiplies by `a`.
  static void DScal(int n, double a, std::vector<double>& x, int pos, int inc);

  /// Sum of n contiguous elements.
  static double DSum(int n, const std::vector<double>& x, int pos);

  /// Euclidean norm. Squares that would overflow or underflow do no harm: elements of 1e200 and
  /// of 1e-200 keep their accuracy. An infinite element gives infinity, unless there is a NaN.
  static double DNrm2(int n, const std::vector<double>& x, int pos, int inc);

  /// The II family walks down a column of a packed triangle: after element i, counted from 0, the
  /// position rises by i + inc. So column j below row r, both from 0, starts at r(r+1)/2 + j with
  /// inc = r + 1.

  /// y += a x, element by element in ascending order; x and y may be one vector.
  static void IIAxpy(int n, double a, const std::vector<double>& x, int xPos, int xInc,
                     std::vector<double>& y, int yPos, int yInc);

  /// Dot product, added up in ascending order from 0.0.
  static double IIDot(int n, const std::vector<double>& x, int xPos, int xInc,
                      const std::vector<double>& y, int yPos, int yInc);

  /// Fills with `a`.
  static void IIInit(int n, double a, std::vector<double>& x, int pos, int inc);

  /// Multiplies by `a`.
  static void IIScal(int n, double a, std::vector<double>& x, int pos, int inc);

  /// Sets n contiguous elements to 0.0.
  static void LRZero(std::vector<double>& x, int pos, int n);

  /// Replaces the triangle L, n(n+1)/2 packed entries in x, by the lower triangle of L'L. Each
  /// element is the IIDot of two columns of L. O(n^3 / 3), in place.
  static void LTGltl(int n, std::vector<double>& x);

  /// Whether x is negligible beside y > 0: y * 2.220446049250313e-16 > |x|. False unless y > 0.
  static bool QLReps(double x, double y);

  /// Row `row` of the packed symmetric S of n rows times v, of which elements 0, stride,
  /// 2 stride, ..., (n-1) stride count. The missing value unless n >= 1 and 0 <= row < n; the
  /// sizes of S and v are the caller's duty.
  static double RVD(const std::vector<double>& S, int n, int row, const std::vector<double>& v,
                    int stride);

  /// v'Sv for the packed symmetric S of n rows: 0.0 for n = 0, the missing value for n < 0, for S
  /// shorter than n(n+1)/2 and for v shorter than n.
  static double VSV(const std::vector<double>& S, int n, const std::vector<double>& v);

  /// Largest |a[i] - b[i]| / (|b[i]| + c) over the shorter of both lengths, 0.0 if there is none.
  /// c is d, but 1e-06 unless d > 0. A NaN among the quotients is passed over.
  static double VMaxRelDiff(const std::vector<double>& a, const std::vector<double>& b, double d);

  /// Largest |a[i] - b[i]| over the shorter of both lengths, 0.0 if there is none. A NaN among
  /// the differences is passed over.
  static double VNrm1Diff(const std::vector<double>& a, const std::vector<double>& b);

  /// Position of x in the ascending stretch v[lo..hi] of cutpoints, both ends included: the first
  /// position whose value exceeds x, where a value equal to x counts as exceeding unless `right`.
  /// Among equal neighbours any may be the one that is found.
  /// -2 for a bad range (lo < 0, hi >= size or hi < lo). -1 if x belongs beyond the stretch: x is
  /// above v[hi], or equal to it with `right`; or lo > 0 and x is below v[lo-1], or equal to it
  /// without `right`. A NaN gives some position of the stretch.
  static int BinSearch(const std::vector<double>& v, int lo, int hi, double x, bool right);
  static int BinSearch(const std::vector<int>& v, int lo, int hi, int x, bool right);

  /// Logarithmic derivative of the gamma function, within 5 ulp for all x > 0, also near its root
  /// 1.4616...; negative infinity where it would lie below all doubles. Infinity for infinite x.
  /// The missing value unless x > 0, so for NaN too.
  static double Digamma(double x);

  /// Derivative of Digamma, within 3 ulp for all x > 0; infinity where it would lie above all
  /// doubles (x below 7.5e-155). 0.0 for infinite x. The missing value unless x > 0, so for NaN
  /// too.
  static double Trigamma(double x);

  /// True for every finite double, the missing value included; false for NaN and infinities.
  static bool IsValidDouble(double x);

  /// Carries a parameter vector over a change of scale of its predictors, as
  /// MCSymMatrix::TransformParameterMatrix does with its covariance matrix. `beta` holds nBlocks
  /// blocks of p entries, p the size of `shift` and of `scale`; the first nIntercepts entries of
  /// each block are intercepts, the others slopes. With
  ///   A[i] = 1/scale[i], B[i] = shift[i]              if reciprocal,
  ///   A[i] = scale[i],   B[i] = -shift[i]/scale[i]    otherwise, and B negated if negateShift,
  /// each intercept of a block gains the sum of B[i] t[i] over the slopes t of the block, and each
  /// slope is divided by its A[i].
  /// False, with beta unchanged, unless beta has nBlocks * p entries, shift has p, nBlocks >= 1,
  /// 0 <= nIntercepts <= p, and no scale is 0; several intercepts go with a single block only.
  static bool TransformParameters(std::vector<double>& beta, const std::vector<double>& shift,
                                  const std::vector<double>& scale, int nBlocks, int nIntercepts,
                                  bool negateShift, bool reciprocal);
};

}  // namespace MCCommonMath
