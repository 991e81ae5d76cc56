// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// The LINPACK routines for linear systems and least squares (Dongarra, Bunch, Moler and Stewart,
/// LINPACK Users' Guide, SIAM 1979) in double precision, with the published arguments in the
/// published order. They work in place on the caller's arrays, allocate nothing and keep nothing
/// between calls; MCRectMatrix and MCSymMatrix solve general and indefinite systems by them.
///
///     Linpack::Dgeco(a.data(), n, n, pivots.data(), &rcond, work.data());
///     if (rcond > tolerance) Linpack::Dgesl(a.data(), n, n, pivots.data(), b.data(), 0);
///
/// Letters behind D name the matrix: ge general, gb banded, gt tridiagonal, po positive definite,
/// pp the same packed, pb banded, pt tridiagonal, si symmetric indefinite, sp the same packed, tr
/// triangular; those at the end the work: fa factor, co factor and estimate the condition, sl
/// solve, di determinant and inverse.
///
/// Storage is by columns. Rows and columns are counted from 1 below, as are the entries of pivot
/// arrays and what `info` says; arrays are those of C++, so element (1, 1) is a[0].
/// - full: element (i, j) at a[(i - 1) + (j - 1) * lda], lda >= rows; lda * (columns - 1) + rows
///   entries. Of symmetric matrices only the upper triangle, i <= j, is read or written.
/// - packed: the upper triangle by columns, (i, j) at ap[(i - 1) + j(j - 1)/2]; n(n + 1)/2 entries.
///   The packed lower triangle by rows of MCSymMatrix is the same array.
/// - band, of ml diagonals below and mu above the main one: (i, j) at
///   abd[(i - j + ml + mu) + (j - 1) * lda], lda >= 2 ml + mu + 1; the first ml rows are for
///   elements that the elimination fills in and need no values. n * lda entries.
/// - symmetric band, of m diagonals above the main one: (i, j), i <= j, at
///   abd[(i - j + m) + (j - 1) * lda], lda >= m + 1; n * lda entries.
///
/// Arguments are not checked: with n < 1 (p < 1) a routine only sets `info` to 0 and `rcond` to 0,
/// a determinant to 1; all else is the caller's to get right. Arrays belong to the caller and must
/// not overlap but where it is said. NaN and infinities run through, and no routine loops on them.
///
/// `rcond` estimates the reciprocal of the condition in the 1-norm, 1 / (|A| |inv(A)|), by the
/// solution of a system that is made to grow (Cline, Moler, Stewart and Wilkinson 1979). Up to
/// rounding the estimate is never below the true value, and seldom above ten times it; A is
/// singular to working precision if 1 + rcond == 1.
///
/// `det` holds a determinant as det[0] * 10^det[1] with 1 <= |det[0]| < 10, or det[0] = 0.
class MC_EXPORT Linpack {
public:
  // General matrices: A = L U by elimination with partial pivoting.

  /// Factors. `a`: n by n, becomes U and, below the diagonal, the multipliers of L. `ipvt`: n
  /// entries; row ipvt[k - 1] was exchanged with row k at step k. `info`: 0, or k if U(k, k) is 0
  /// (the last such k): the factors exist, but Dgesl and Dgedi would divide by it.
  static void Dgefa(double* a, int lda, int n, int* ipvt, int* info);

  /// Factors as Dgefa and estimates the condition; 0 if a pivot is exactly 0 or nearly so. `z`: n
  /// entries of work; it becomes nearly a null vector where A is nearly singular.
  static void Dgeco(double* a, int lda, int n, int* ipvt, double* rcond, double* z);

  /// Solves A x = b (job 0) or A'x = b (any other job) by the factors from Dgeco or Dgefa. `b`: n
  /// entries, becomes x.
  static void Dgesl(const double* a, int lda, int n, const int* ipvt, double* b, int job);

  /// Determinant (job 10), inverse (job 1) or both (job 11) from the factors. `a` becomes the
  /// inverse if that is asked for. `det`: 2 entries and `work`: n entries, untouched if not needed.
  static void Dgedi(double* a, int lda, int n, const int* ipvt, double* det, double* work, int job);

  // General band matrices.

  /// Factors, as Dgefa. `abd`: band storage, n columns, becomes the factors.
  static void Dgbfa(double* abd, int lda, int n, int ml, int mu, int* ipvt, int* info);

  /// Factors and estimates the condition, as Dgeco.
  static void Dgbco(double* abd, int lda, int n, int ml, int mu, int* ipvt, double* rcond,
                    double* z);

  /// Solves, as Dgesl.
  static void Dgbsl(const double* abd, int lda, int n, int ml, int mu, const int* ipvt, double* b,
                    int job);

  /// Determinant from the factors. For the inverse, solve for unit vectors. `det`: 2 entries.
  static void Dgbdi(const double* abd, int lda, int n, int ml, int mu, const int* ipvt,
                    double* det);

  // Tridiagonal matrices.

  /// Solves a general tridiagonal system. `c`, `d`, `e`: n entries each, the subdiagonal in c[1]
  /// to c[n - 1], the diagonal, the superdiagonal in e[0] to e[n - 2]; all are overwritten. `b`: n
  /// entries, becomes x. `info`: 0, or k if the k-th pivot is exactly 0; `b` is then of no use.
  static void Dgtsl(int n, double* c, double* d, double* e, double* b, int* info);

  /// Solves a positive definite tridiagonal system, from both ends at once. `d`: n entries, the
  /// diagonal, overwritten; `e`: the n - 1 entries beside it, read only; `b`: n entries, becomes x.
  static void Dptsl(int n, double* d, const double* e, double* b);

  // Positive definite matrices: A = R'R, R upper triangular.

  /// Factors. `a`: n by n, its upper triangle becomes R. `info`: 0, or k if the leading block of
  /// order k isn't positive definite; the first k - 1 columns of R are then complete.
  static void Dpofa(double* a, int lda, int n, int* info);

  /// Factors as Dpofa and estimates the condition. `z`: n entries of work. With info not 0 `rcond`
  /// is left alone.
  static void Dpoco(double* a, int lda, int n, double* rcond, double* z, int* info);

  /// Solves A x = b by the factor from Dpoco or Dpofa. `b`: n entries, becomes x.
  static void Dposl(const double* a, int lda, int n, double* b);

  /// Determinant (job 10), inverse (job 1) or both (job 11) from the factor of Dpoco or Dpofa, or,
  /// of X'X, from that of Dqrdc. The upper triangle of `a` becomes that of the inverse. `det`: 2
  /// entries, untouched if not asked for.
  static void Dpodi(double* a, int lda, int n, double* det, int job);

  /// The same for packed storage; `ap`: n(n + 1)/2 entries.
  static void Dppfa(double* ap, int n, int* info);
  static void Dppco(double* ap, int n, double* rcond, double* z, int* info);
  static void Dppsl(const double* ap, int n, double* b);
  static void Dppdi(double* ap, int n, double* det, int job);

  /// The same for symmetric band storage of m diagonals beside the main one; Dpbdi gives the
  /// determinant alone.
  static void Dpbfa(double* abd, int lda, int n, int m, int* info);
  static void Dpbco(double* abd, int lda, int n, int m, double* rcond, double* z, int* info);
  static void Dpbsl(const double* abd, int lda, int n, int m, double* b);
  static void Dpbdi(const double* abd, int lda, int n, int m, double* det);

  // Symmetric indefinite matrices: A = U D U', D of blocks of order 1 and 2, by diagonal pivoting
  // (Bunch and Kaufman 1977), from the last column to the first.

  /// Factors. `a`: n by n, its upper triangle becomes D and the multipliers of U. `kpvt`: n
  /// entries. kpvt[k - 1] = l > 0: D(k, k) is a block, and rows and columns k and l were exchanged.
  /// kpvt[k - 1] = kpvt[k - 2] = -l < 0: D(k-1..k, k-1..k) is a block, and k - 1 and l were
  /// exchanged. `info`: 0, or k if the block at k is exactly singular (the last one met, so the
  /// least such k): the factors exist, but Dsisl and Dsidi would divide by 0.
  static void Dsifa(double* a, int lda, int n, int* kpvt, int* info);

  /// Factors as Dsifa and estimates the condition. `z`: n entries of work.
  static void Dsico(double* a, int lda, int n, int* kpvt, double* rcond, double* z);

  /// Solves A x = b by the factors from Dsico or Dsifa. `b`: n entries, becomes x.
  static void Dsisl(const double* a, int lda, int n, const int* kpvt, double* b);

  /// Inverse (last digit of job not 0), determinant (last but one), inertia (last but two) from the
  /// factors; job 111 is all. The upper triangle of `a` becomes that of the inverse. `det`: 2
  /// entries; `inert`: 3 entries, the numbers of positive, negative and zero eigenvalues; `work`: n
  /// entries for the inverse; each is untouched if not needed.
  static void Dsidi(double* a, int lda, int n, const int* kpvt, double* det, int* inert,
                    double* work, int job);

  /// The same for packed storage; `ap`: n(n + 1)/2 entries.
  static void Dspfa(double* ap, int n, int* kpvt, int* info);
  static void Dspco(double* ap, int n, int* kpvt, double* rcond, double* z);
  static void Dspsl(const double* ap, int n, const int* kpvt, double* b);
  static void Dspdi(double* ap, int n, const int* kpvt, double* det, int* inert, double* work,
                    int job);

  // Triangular matrices; the other triangle isn't looked at.

  /// Estimates the condition of T, lower (job 0) or upper (any other job) triangular. `t`: n by n,
  /// read only; `z`: n entries of work.
  static void Dtrco(const double* t, int ldt, int n, double* rcond, double* z, int job);

  /// Solves T x = b: job 0 T lower, 1 T upper; T'x = b: job 10 T lower, 11 T upper. `b`: n entries,
  /// becomes x. `info`: 0, or the first k with T(k, k) = 0, `b` being left alone.
  static void Dtrsl(const double* t, int ldt, int n, double* b, int job, int* info);

  /// Determinant (third digit of job from the right not 0), inverse (second digit), T being upper
  /// triangular if the last digit isn't 0: job 100, 110, 111, 10, 11. `t` becomes the inverse.
  /// `det`: 2 entries, untouched if not asked for. `info`: 0, or, for the inverse, a k with
  /// T(k, k) = 0, `t` being left alone; the first k of an upper triangle, the last of a lower one.
  static void Dtrdi(double* t, int ldt, int n, double* det, int job, int* info);

  // Orthogonal decompositions of rectangular matrices.

  /// X = Q R by Householder reflections, with exchanges of columns if job isn't 0. `x`: n by p; its
  /// upper triangle becomes R, and what is below, with `qraux` of p entries, holds Q. `jpvt`: p
  /// entries: > 0 an initial column, moved to the front, < 0 a final one, moved to the end, 0 a
  /// free one; free columns are taken by largest remaining norm. Becomes the order: column k of X P
  /// is column jpvt[k - 1] of X. `jpvt` and `work`, p entries, are not looked at with job 0.
  static void Dqrdc(double* x, int ldx, int n, int p, double* qraux, int* jpvt, double* work,
                    int job);

  /// Applies the decomposition of the first k columns, k <= min(n, p), to y. Digits of job from the
  /// left, ABCDE, ask for: A `qy` = Q y; B `qty` = Q'y; C `b`, the coefficients of the least
  /// squares fit of y by these columns; D `rsd`, the residuals y - X b; E `xb` = X b. C, D and E
  /// need and make `qty` too. `y`, `qy`, `qty`, `rsd`, `xb`: n entries, `b`: k; those not asked
  /// for may be null. `info`: 0, or the first j from the end with R(j, j) = 0 where b was wanted;
  /// b is then incomplete.
  ///
  /// Outputs may share one array with y where y and what comes before isn't needed later: y and
  /// qty with one of b, rsd or xb; or y with qy, and qty with one of b, rsd or xb. The array then
  /// holds the last of them in the order above.
  ///
  /// `x` is as it was when the call ends, but not meanwhile: diagonal elements are exchanged with
  /// those of `qraux` and back. So it isn't const, and two threads can't share a decomposition.
  static void Dqrsl(double* x, int ldx, int n, int k, double* qraux, const double* y, double* qy,
                    double* qty, double* b, double* rsd, double* xb, int job, int* info);

  /// Singular values, X = U diag(s) V', by reduction to bidiagonal form and implicit QR steps.
  /// `x`: n by p, destroyed. `s`: min(n + 1, p) entries, the values in descending order. `e`: p
  /// entries, the first min(n + 1, p) zero in the end but where info isn't 0. `work`: n entries.
  /// job AB: A = 0 no left vectors, 1 all n in `u` (n by n), 2 or more the first min(n, p) (n by
  /// min(n, p)); B = 0 no right vectors, else all p in `v` (p by p). `u` may be `x` if n <= p or A
  /// >= 2, `v` may be `x` if p <= n and it isn't `u`; those not asked for may be null. `info`: 0,
  /// or m if 30 steps didn't settle value m: values s(m + 1), s(m + 2), ... and their vectors are
  /// right, and U'X V is the bidiagonal matrix with diagonal s and superdiagonal e.
  static void Dsvdc(double* x, int ldx, int n, int p, double* s, double* e, double* u, int ldu,
                    double* v, int ldv, double* work, int job, int* info);

  // Cholesky factors under permutation and change.

  /// P'A P = R'R for positive semidefinite A, with exchanges by largest diagonal element if job
  /// isn't 0. `a`: p by p, its upper triangle becomes R. `work`: p entries. `jpvt`: as for Dqrdc.
  /// `info`: the number of rows of R that could be made, p if A is positive definite; less is the
  /// rank with pivoting of free columns, and the rows behind it hold what was left over.
  static void Dchdc(double* a, int lda, int p, double* work, int* jpvt, int job, int* info);

  /// Updates the factor R of a least squares problem by a row: R'R + xx' = S'S, S replacing R.
  /// `r`: p by p upper; `x`: p entries; `z`: p by nz, the rotated right-hand sides, updated by the
  /// new responses `y`, nz entries; `rho`: nz norms of residuals, updated where not negative. `c`,
  /// `s`: p entries, the cosines and sines used. With nz = 0 `z`, `y`, `rho` aren't looked at.
  static void Dchud(double* r, int ldr, int p, const double* x, double* z, int ldz, int nz,
                    const double* y, double* rho, double* c, double* s);

  /// Takes a row out again: R'R - xx' = S'S. Arguments as for Dchud. `info`: 0; -1 if what remains
  /// isn't positive definite, R, z and rho being left alone; 1 if a norm of residuals came out
  /// imaginary, that entry of rho being set to -1.
  static void Dchdd(double* r, int ldr, int p, const double* x, double* z, int ldz, int nz,
                    const double* y, double* rho, double* c, double* s, int* info);

  /// Factor of P'R'R P from R, where P moves columns k to l, 1 <= k < l <= p: job 1 a right shift,
  /// columns l, k, ..., l - 1; job 2 a left shift, columns k + 1, ..., l, k. `r`: p by p upper;
  /// `z`: p by nz, takes the same rotations; `c`, `s`: p entries, the l - k cosines and sines. Any
  /// other k or l changes nothing.
  static void Dchex(double* r, int ldr, int p, int k, int l, double* z, int ldz, int nz, double* c,
                    double* s, int job);
};

}  // namespace MCCommonMath
