// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mcexport.h"

#include <utility>
#include <vector>

namespace MCCommonMath {

/// Eigenvalues and eigenvectors of a real symmetric matrix H, H x = lambda x, or of a pair, the
/// generalised problem H x = lambda E x with a positive semidefinite E.
///
///     MCEigenValues problem(H, 1e-12, 30);
///     std::vector<double> values;
///     if (problem.GetSorted(values, true) < 0) return;  // NaN in H, or no convergence
///
/// The generalised problem is reduced to the first by V, the generalised inverse of the Cholesky
/// factor of E over the rows that aren't redundant: H x = lambda E x becomes V H V' y = lambda y
/// with x = V'y, on as many rows as E has rank. Where E is singular this means a restriction of
/// both matrices to the rows kept, x being 0 in the others: it solves the problem itself only if
/// the range of H lies within that of E. H = [2 1; 1 3] with E = diag(1, 0) gives 2, while
/// det(H - lambda E) = 0 has the root 5/3.
///
/// Vectors have length 1, or x'Ex = 1 for a pair, and are orthogonal in the same sense, each up to
/// its sign. Values and residuals are good to a small multiple of n eps times the norm of H. That
/// holds for elements at either end of the range of doubles too: such a matrix is worked on, and
/// displayed, multiplied by a power of two; with such an E, rows and columns by one for each.
///
/// A matrix or tolerance that is set withdraws what has been computed. Scratch that can't be
/// allocated lets std::bad_alloc pass, with nothing computed then.
///
/// Numerical methods: Householder reduction of a packed triangle (Martin, Reinsch and Wilkinson
/// 1968) and implicit QL (Dubrulle, Martin and Wilkinson 1968; Dubrulle 1970), O(n^3).
class MC_EXPORT MCEigenValues {
public:
  /// No H: a problem of 0 rows. Tolerance 1e-12 and 30 iterations.
  MCEigenValues() = default;

  /// As the setters; a tolerance or limit that they refuse leaves the default, and with an invalid
  /// matrix nothing can be computed.
  MCEigenValues(double tol, int maxIter);
  MCEigenValues(const MCSymMatrix& H, double tol, int maxIter);
  MCEigenValues(const MCSymMatrix& H, const MCSymMatrix& E, double tol, int maxIter);

  /// Tolerance of the Cholesky factorisation of E: row k of E is redundant, and counts as dependent
  /// on the rows before, unless what they leave of its diagonal is above tol * E(k, k). Plays no
  /// part without E. From about 1e-13 down rounding decides about the rows of a singular E, and
  /// whether what it leaves looks valid. False, with nothing changed, unless 0 <= tol < infinity.
  /// Default 1e-12.
  bool SetTolerance(double tol);
  double GetTolerance() const { return fTol; }

  /// Largest number of QL iterations for one eigenvalue; two are usual. With 0 only diagonal
  /// matrices are solved. False, with nothing changed, for a negative limit. Default 30.
  bool SetMaxIter(int maxIter);
  int GetMaxIter() const { return fMaxIter; }

  /// Takes a copy of H, or of E, which is the identity until one is set. False, with nothing
  /// changed, for an invalid matrix; false also where the copy can't be allocated, after which
  /// nothing can be computed until another is set.
  bool SetHMatrix(const MCSymMatrix& H);
  bool SetEMatrix(const MCSymMatrix& E);

  /// Whether Compute() accepts E: it has as many rows as H, all of its elements are finite, and it
  /// is positive semidefinite, that is, what its Cholesky factorisation leaves of redundant rows is
  /// no more than the tolerance, or rounding, explains. True without E. O(n^3 / 6).
  bool IsValidEMatrix() const;

  /// Computes all eigenvalues, as many as H has rows or E has rank, in no special order, and
  /// answers their number. `vectors` gets one column for each, of as many rows as H. -1, with both
  /// emptied, if an eigenvalue takes more than GetMaxIter() iterations, for an H with an element
  /// that isn't finite, for a value or vector beyond the range of doubles, unless
  /// IsValidEMatrix(), and where a matrix can't be allocated.
  int Compute(std::vector<double>& values);
  int Compute(std::vector<double>& values, MCRectMatrix& vectors);

  /// The same, sorted: in descending order if `descending`, else ascending; equal values keep their
  /// order. Computes first unless that has been done, with vectors if they are asked for.
  int GetSorted(std::vector<double>& values, bool descending);
  int GetSorted(std::vector<double>& values, MCRectMatrix& vectors, bool descending);

  /// Whether `a` stands before `b` in descending (D) and ascending (A) order, of values and of
  /// pairs of a value and its index, which the value alone decides.
  static bool CompareD(double a, double b) { return a > b; }
  static bool CompareA(double a, double b) { return a < b; }
  static bool PCompareD(const std::pair<double, int>& a, const std::pair<double, int>& b) {
    return a.first > b.first;
  }
  static bool PCompareA(const std::pair<double, int>& a, const std::pair<double, int>& b) {
    return a.first < b.first;
  }

  /// Shows problem, steps and results on the diagnostic stream.
  void Display() const;

private:
  // Forgets what has been computed.
  void Withdraw();

  // Computes all. False, with nothing computed, as told at Compute().
  bool Run(bool withVectors);
  bool Solve();

  // The steps. Each fills the members of its name; false where the problem can't be solved.
  bool FactorE();
  bool ReduceByE();
  bool TriDiag();
  void Tred3();
  bool EigenValuesTQLI();
  bool BackTransVectors();

  MCSymMatrix fmH;
  MCSymMatrix fmE;
  double fTol = 1e-12;
  int fMaxIter = 30;
  bool fbEMatrix = false;
  bool fbVectors = false;
  bool fbComputed = false;

  // Values computed stand to be multiplied by 2^fExponent. Row and column i of what was kept of E
  // were divided by 2^fvExponentsE[i], or by none if that is empty.
  int fExponent = 0;
  std::vector<int> fvExponentsE;

  std::vector<double> fvEDiag;
  MCSymMatrix fmCholGI;         // n rows, zeros in the redundant ones
  std::vector<int> fvKeptRows;  // the others, ascending
  int fRankE = 0;
  MCSymMatrix fmVHV;       // of the rows kept
  MCSymMatrix fmOrthInfo;  // in row i the vector u, u'u = 2, of the reflection I - u u'
  std::vector<double> fvDiag3;
  std::vector<double> fvSubdiag3;  // entry i couples rows i - 1 and i
  int fNEigenVal = 0;
  std::vector<double> fvEigenVal;
  MCRectMatrix fmEigenVectors;
  std::vector<std::pair<double, int>> fvEigPairs;  // value and column, as last sorted
};

}  // namespace MCCommonMath
