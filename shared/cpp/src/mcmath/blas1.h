// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// The level-1 basic linear algebra subprograms (Lawson, Hanson, Kincaid and Krogh 1979) in double
/// precision, with the published arguments in the published order. Linpack is made of the same
/// operations on contiguous vectors.
///
/// A vector is an array and an increment: element i, counted from 0, of n lies at x[i * inc], or,
/// if inc < 0, at x[(i + 1 - n) * inc], so that the vector runs backwards through an array that
/// begins at x. The array has 1 + (n - 1) |inc| entries. With n < 1 nothing is read or written.
/// Arrays belong to the caller; those of two arguments must not overlap, unless they are the same
/// vector.
///
/// Sums are added in eight lanes like those of MCMathFun, whatever the increments, so that they
/// are the same to the bit on every machine.
class MC_EXPORT Blas1 {
public:
  /// |x|.
  static double D_Abs(double x);
  /// The larger of a and b; b if either is a NaN.
  static double D_Max(double a, double b);
  /// |a| with the sign of b; the sign of 0.0 is that of its bit.
  static double D_Sign(double a, double b);
  /// The larger and the smaller of a and b.
  static int I_Max(int a, int b);
  static int I_Min(int a, int b);
  /// Whether a and b are the same letter of ASCII, whatever their case, or the same character.
  static bool LSame(char a, char b);

  /// |x[0]| + ... + |x[n - 1]|. Answers 0 if n < 1 or incx < 1.
  static double DASum(int n, const double* dx, int incx);

  /// y = da x + y. Nothing happens if da is 0.
  static void Daxpy(int n, double da, const double* dx, int incx, double* dy, int incy);

  /// y = x.
  static void DCopy(int n, const double* dx, int incx, double* dy, int incy);

  /// x'y; 0 if n < 1.
  static double DDot(int n, const double* dx, int incx, const double* dy, int incy);

  /// Turns the plane of each pair (x, y): x = c x + s y and y = c y - s x.
  static void DRot(int n, double* dx, int incx, double* dy, int incy, double c, double s);

  /// Makes the rotation that takes (da, db) to (r, 0), r having the sign of the larger of both.
  /// `da` becomes r, `db` the one number z from which c and s can be had again: s if |da| > |db|,
  /// else 1/c, or 1 if c is 0. Both zero: c is 1, all others 0. No intermediate overflows.
  static void DRotG(double* da, double* db, double* c, double* s);

  /// The Euclidean norm of x, whose squares neither overflow nor underflow: where they would, the
  /// elements are scaled by a power of two (after Blue 1978). Only a norm beyond the largest double
  /// is infinite. Answers 0 if n < 1 or incx < 1.
  static double DNrm2(int n, const double* dx, int incx);

  /// x = da x. Nothing happens if incx < 1.
  static void DScal(int n, double da, double* dx, int incx);

  /// Exchanges x and y.
  static void DSwap(int n, double* dx, int incx, double* dy, int incy);

  /// Position, counted from 1, of the first element of the largest magnitude; 0 if n < 1 or
  /// incx < 1. A NaN is never larger, and what stands behind a leading NaN isn't either.
  static int IDAMax(int n, const double* dx, int incx);

  /// Ends the process with exit status 1, after writing to standard output that argument number
  /// `parameter` of `routine` is wrong, and flushing it. Only DMach() comes to this.
  [[noreturn]] static void XErBla(const char* routine, int parameter);

  /// Constants of the arithmetic, found by trying: job 1 the distance from 1 to the next double,
  /// 2^-52; job 2 a small number, 100 times the smallest power of 16 above 0 over that distance;
  /// job 3 the reciprocal of the latter. Any other job ends the process by XErBla("DMACH", 1).
  /// Where the processor flushes denormal numbers to 0, job 2 is as much larger.
  static double DMach(int job);
};

}  // namespace MCCommonMath
