// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymmatrixdata.h"
#include "regression/frame/mcexport.h"

#include <vector>

namespace MCCommonMath {

class MCBitSet;
class MCRectMatrix;

/// Real symmetric matrix in a packed lower triangle, with everything that regression fitting
/// does with one: the cross-product matrix of a linear fit is accumulated and swept here, the
/// information matrix of a logistic fit is accumulated, factored and inverted here.
///
///     MCSymMatrix crossProducts(3);
///     for (const auto& row : rows) crossProducts.UpdateXX(row, weight);
///     crossProducts.Sweep(0, 1e-12, scale, pivots, true);
///
/// In the formulas below S is this matrix, n its number of rows, V and W are vectors and R is a
/// rectangular matrix. An operation that can't be done answers false, or the missing value for a
/// number, and leaves all operands as they were. An output may be an operand as well, unless it
/// is the triangle of this matrix (AsVector()), whose length is not to change. Where an output
/// matrix can't be allocated it becomes invalid and the answer is false. Vectors that can't be
/// allocated, scratch included, let std::bad_alloc pass.
///
/// Sums over rows, and those of products and forms, run by ascending index, from 0.0; the dot
/// products of ComputeRByRTrans and of what factors or transforms the matrix are added in lanes. A
/// form V'SW adds up V[i] times (row i of S times W), and every operation that is told as a form
/// gives the bits of that sum.
class MC_EXPORT MCSymMatrix : public MCSymMatrixData {
public:
  /// \name Construction and shape
  /// @{

  MCSymMatrix() = default;
  explicit MCSymMatrix(int n) : MCSymMatrixData(n) {}
  MCSymMatrix(int nBlocks, int blockSize) : MCSymMatrixData(nBlocks, blockSize) {}
  MCSymMatrix(const MCSymMatrix& other) = default;
  MCSymMatrix& operator=(const MCSymMatrix& other) = default;
  ~MCSymMatrix() = default;

  /// The packed triangle, n(n+1)/2 entries, for writing. Borrowed until the matrix is resized,
  /// assigned to or destroyed; its size must stay as it is.
  std::vector<double>& AsVector() { return fVec; }

  /// Becomes n rows of zeros in 1 block; a negative n gives 0 rows in 0 blocks.
  void SetNRows(int n);

  /// Becomes n rows in 1 block, a negative n counting as 0. Entries keep their packed positions,
  /// so the top-left triangle survives growth and shrinkage.
  void Resize(int n);

  /// Takes the rows as `b` blocks. False if b < 1, if there is no row or if b doesn't divide n.
  bool SetNBlocks(int b);

  /// Takes shape and contents of `data`.
  void SetData(const MCSymMatrixData& data);

  /// Zeroes all elements.
  void Clear();

  /// @}
  /// \name Element access
  /// @{

  /// Writes (i, j), which is (j, i) too. False if an index is out of range.
  bool SetElem(int i, int j, double x);

  /// Writes the packed entry `k`. False unless 0 <= k < n(n+1)/2.
  bool SetElem(int k, double x);

  /// Writes row i and column i from the first n entries of `row`. False if i is out of range or
  /// row is shorter.
  bool PutRow(int i, const std::vector<double>& row);

  /// Copies columns from..to of row i into `out`: column j goes to (j - from) * step, or, with a
  /// negative step, to (to - j) * |step|. Entries between stay. `out` is grown with zeros if it is
  /// too short. False, with out untouched, if an index is out of range, from > to or step is 0.
  bool GetPCol(int i, int from, int to, std::vector<double>& out, int step) const;

  /// Copies the first entries of row i into column `col` of R: as many as nRows, n and the rows
  /// of R allow. A negative nRows means all rows of R. False if i or col is out of range.
  bool CopyRowToRColumn(int i, MCRectMatrix& R, int col, int nRows) const;

  /// @}
  /// \name Elementwise operations, in place
  /// @{

  /// Adds `a` to each diagonal element.
  void AddToDiagonal(double a);

  /// Negates every element, zeros included.
  void ChangeSign();

  /// Multiplies every element by `a`.
  void MultiplyByNumber(double a);

  /// S += a X. False if row counts differ.
  bool ComputeAXpY(double a, const MCSymMatrix& X);

  /// Sets all of row and column i, the diagonal included, to `a`. False if i is out of range.
  bool SetRowColToConst(int i, double a);

  /// Sets row and column i to 0. False if i is out of range.
  bool ZeroOut(int i);

  /// Zeroes every element, the diagonal included, for which |x| <= tol * (the largest absolute
  /// diagonal element). Does nothing unless tol > 0 and that bound is above 0. NaN elements stay,
  /// and a NaN on the diagonal doesn't count for the bound.
  void ZeroOutAllSmall(double tol);

  /// Zeroes row and column i, i ascending, when |d_i| / m < tol, or when m = 0, where m is the
  /// largest absolute diagonal element of rows 0 to i: a row is judged against itself and those
  /// before it, not against the whole diagonal. A row with a NaN diagonal stays. Does nothing
  /// unless tol > 0.
  void ZeroOutRowsForSmallDiag(double tol);

  /// Zeroes S(i, j), i != j, when tol * sqrt(|S(j, j)| * |S(i, i)|) >= |S(i, j)|. Does nothing
  /// unless tol > 0.
  void ZeroOutNonDiag(double tol);

  /// Brings the off-diagonal elements of a correlation matrix inside (-1, 1): from 1 on they become
  /// 1 - delta, from -1 down -(1 - delta). False unless 0 <= delta < 1, true otherwise, also
  /// without rows.
  bool AdjustOffDiagCorr(double delta);

  /// For each i with a diagonal element <= 0 in this or the other matrix, zeroes row and column i
  /// in both. False if row counts differ.
  bool SetCovarZeros(MCSymMatrix& other);

  /// Becomes v v' in 1 block, with as many rows as v has entries.
  void SetToVV(const std::vector<double>& v);

  /// Copies the first k rows of the triangle of X over those of this. False if k < 1 or k exceeds
  /// either row count.
  bool ReplaceFirstRows(const MCSymMatrix& X, int k);

  /// `out` gets the leading n - 1 rows in 1 block; 0 rows if n < 2.
  void ExtractFirstNRows(MCSymMatrix& out) const;

  /// @}
  /// \name Reductions
  /// @{

  /// Sum of the diagonal, 0 if there is no row.
  double Trace() const;

  /// The largest and smallest diagonal element. NaN is passed over: where nothing compares, max
  /// stays at the most negative finite double and min at the largest. With no row both arguments
  /// are left alone.
  void MaxMinDiag(double& max, double& min) const;

  /// The same, and the extremes of the elements below the diagonal, which stay at those start
  /// values when n = 1. With no row all four are left alone.
  void MaxMinDiagOffDiag(double& maxD, double& minD, double& maxO, double& minO) const;

  /// Whether row i is exactly 0 at the columns in `mask`, over the first min(n, mask size) columns.
  /// A NaN is not 0. False if i is out of range or there is nothing to compare.
  bool IsZeroRow(int i, const MCBitSet& mask) const;

  /// Sizes `d` to n; d[i] is the diagonal element, or `replacement` where that is below tol. This
  /// makes the scales against which Sweep and Cholesky hold their tolerances.
  void GetNCheckDiagonal(std::vector<double>& d, double tol, double replacement) const;

  /// @}
  /// \name Rank-one and cross-product updates
  /// A whole row i is skipped where its multiplier x[i] is 0: design rows of factors are mostly
  /// zeros. So there a zero doesn't meet an infinity; a NaN is not skipped. UpdateXXSparse, whose
  /// rows come without their zeros, and ComputeRByRTrans skip nothing.
  /// @{

  /// S += w x x', each element (i, j), j <= i, as t = w * x[i], then t * x[j]. False unless x has n
  /// entries and w > 0.
  bool UpdateXX(const std::vector<double>& x, double w);

  /// As UpdateXX, but w may have any sign; false unless x has n entries.
  bool UpdateXXPosNegW(const std::vector<double>& x, double w);

  /// As UpdateXXPosNegW, touching only (i, j) with both i and j in `mask`. A position beyond the
  /// size of the mask isn't in it.
  bool UpdateXXNonRedun(const std::vector<double>& x, const MCBitSet& mask, double w);

  /// As UpdateXX for a sparse x: the value val[a] stands at idx[a], a < m. Indices outside 0..n-1
  /// are passed over. `idx` must ascend, as an element (i, j) is formed by walking idx from its
  /// begin to the first index above i; other orders lose elements. False if m exceeds the size of
  /// idx or val, or unless w > 0. A negative m adds nothing.
  bool UpdateXXSparse(int m, const std::vector<int>& idx, const std::vector<double>& val, double w);

  /// Adds the cross-products of the joined columns [A B], row by row as UpdateXX with weight 1:
  /// A'A in the top-left triangle, below it B'A and B'B. False unless A and B have equal row
  /// counts, n columns together, and w > 0; `w` is tested only, it doesn't weigh the products.
  bool UpdateXXMat2(const MCRectMatrix& A, const MCRectMatrix& B, double w);

  /// Becomes R'R in 1 block, with as many rows as R has columns. False if R is invalid.
  bool ComputeRTransByR(const MCRectMatrix& R);

  /// Becomes R R' in 1 block, with as many rows as R; each element is a DotProductRows of R. False
  /// if R is invalid.
  bool ComputeRByRTrans(const MCRectMatrix& R);

  /// @}
  /// \name Products with rows and vectors. None of these allocates but to size its output.
  /// @{

  /// Dot product of the full rows i and j.
  double ComputeDotProduct2Rows(int i, int j) const;

  /// Dot product of row i of S with row j of the packed matrix T of n(n+1)/2 entries. Missing for
  /// another size of T or an index out of range.
  double ComputeRowDotProductS(int i, const std::vector<double>& T, int j) const;
  double ComputeRowDotProductS(int i, const MCSymMatrix& T, int j) const;

  /// Sum over j of S(i, j) d[j * stride]. Missing if i is out of range. The array must reach that
  /// far; the stride may have any sign.
  double ComputeRVD(int i, const double* d, int stride) const;

  /// The same; missing also if stride < 1 or if d holds fewer than stride * n entries.
  double ComputeRVD(int i, const std::vector<double>& d, int stride) const;

  /// v[pos + j] += a S(i, j) for j < m. With `check`: false, with v untouched, unless 0 <= i < n,
  /// 1 <= m <= n, pos >= 0 and pos + m <= size of v. Without it the caller answers for all that.
  bool IncrVecByRow(int i, std::vector<double>& v, int pos, int m, double a, bool check) const;

  /// out = S v, sized to n. False unless v has n entries.
  bool ComputeSV(const std::vector<double>& v, std::vector<double>& out) const;

  /// The first m entries of out = the leading m-by-m part times the first m entries of v. `out` is
  /// grown only if it is shorter. False unless 0 <= m <= n and m <= size of v.
  bool ComputeSV(int m, const std::vector<double>& v, std::vector<double>& out) const;

  /// out = L v, with L the lower triangle of this; out is sized to n. False unless v has n entries.
  bool ComputeLV(const std::vector<double>& v, std::vector<double>& out) const;

  /// out = L' v, likewise.
  bool ComputeLTransV(const std::vector<double>& v, std::vector<double>& out) const;

  /// @}
  /// \name Quadratic and bilinear forms. Missing where one can't be computed; none allocates.
  /// @{

  /// V'SW. Both must have n entries. 0 if n is 0.
  double ComputeVSW(const std::vector<double>& V, const std::vector<double>& W) const;
  double ComputeVSV(const std::vector<double>& V) const;

  /// The form over row `row` of R, which must have n columns.
  double ComputeVSV(const MCRectMatrix& R, int row) const;

  /// The form over the arrays v[i * sv] and w[i * sw], i < n, which must reach that far.
  double ComputeVSW(const double* v, int sv, const double* w, int sw) const;

  /// Sum over r and c of S(i, r) T(r, c) S(c, j), with T a packed matrix. Missing unless n is the
  /// row count of this, T has n(n+1)/2 entries and i and j are rows.
  double ComputeVSW(const std::vector<double>& T, int n, int i, int j) const;

  /// The form with sums that run over the first min(n, nv) and min(n, nw) entries; a negative count
  /// gives no terms. Missing if V or W is shorter than that.
  double ComputeVSWParts(const std::vector<double>& V, int nv, const std::vector<double>& W,
                         int nw) const;
  double ComputeVSWParts(const double* V, int nv, const double* W, int nw) const;

  /// V' S(I, J) W on the pair of blocks (I, J). Missing unless both are blocks and V and W have one
  /// entry for each row of a block.
  double ComputeBlockVSW(int I, int J, const std::vector<double>& V,
                         const std::vector<double>& W) const;
  double ComputeBlockVSV(int I, int J, const std::vector<double>& V) const;

  /// Root of V'SV that survives a form beyond the largest double: V is scaled before and the root
  /// back after. 0 for a form that isn't positive (NaN included), and where it vanishes below the
  /// smallest double. Missing if V hasn't n entries or the root itself is too large.
  double SquareRootVSV(const std::vector<double>& V) const;

  /// @}
  /// \name Matrix products. Those with an expanded or intermediate row allocate n doubles for it,
  /// ComputeGMG and those whose output is an operand a whole matrix.
  /// @{

  /// out = S'S, skipping zeros as UpdateXX with each row of S. An output of n rows keeps its
  /// blocks, another is sized to n rows in 1 block. False for an invalid matrix.
  bool ComputeSTransS(MCSymMatrix& out) const;

  /// out = S T, n by n. False if row counts differ.
  bool ComputeSS(const MCSymMatrix& T, MCRectMatrix& out) const;

  /// out = R S. False unless R has n columns.
  bool ComputeRS(const MCRectMatrix& R, MCRectMatrix& out) const;

  /// out += R S R'. An output of as many rows as R is added onto, not cleared; another is sized and
  /// starts from 0. False unless R has n columns.
  bool ComputeRSRTrans(const MCRectMatrix& R, MCSymMatrix& out) const;

  /// out = R' S R, in 1 block of as many rows as R has columns. False unless R has n rows.
  bool ComputeRTransSR(const MCRectMatrix& R, MCSymMatrix& out) const;

  /// out += S M S for packed M of n(n+1)/2 entries. An output of n rows is added onto, not cleared;
  /// another is sized to n and starts from 0. With any other size of M the missing value is added
  /// to each element instead, and the answer is true for a shorter and false for a longer M. With
  /// no row, out gets 0 rows and the answer is true if M is empty.
  bool ComputeGMG(const std::vector<double>& M, MCSymMatrix& out) const;

  /// out = L S L', with L the lower triangle of the argument, in 1 block; each element is the
  /// ComputeVSWParts of two rows of L. False if row counts differ.
  bool ComputeLSLTrans(const MCSymMatrix& L, MCSymMatrix& out) const;

  /// tr(S T). Missing if row counts differ, 0 if there is no row.
  double TraceOfProduct(const MCSymMatrix& T) const;

  /// tr(S T U), likewise.
  double TraceOfProductOfThree(const MCSymMatrix& T, const MCSymMatrix& U) const;

  /// @}
  /// \name Bordering and submatrices
  /// @{

  /// out = S with the rows of R appended beneath, the new square corner 0, in 1 block of
  /// n + rows(R) rows. False unless R has n columns.
  bool ExpandSym(const MCRectMatrix& R, MCSymMatrix& out) const;

  /// The same as a full square matrix, with R below S and R' to its right.
  bool ExpandSymToRect(const MCRectMatrix& R, MCRectMatrix& out) const;

  /// out(a, b) = S(idx[a], idx[b]), in 1 block; 0 rows for an empty idx. False unless idx ascends
  /// strictly within 0..n-1.
  bool ExtractSubmatrix(const std::vector<int>& idx, MCSymMatrix& out) const;

  /// @}
  /// \name Sweep
  /// The pivot set has one bit for each row, set while the row is swept; a row that was refused as
  /// redundant (aliased) is one whose bit stays clear. The scale vector is usually the diagonal
  /// before any sweep; tolerances are relative to its entries.
  /// @{

  /// Sweeps row k, or takes the sweep back where its bit in `pivots` is set, and flips the bit:
  /// true. Sweeping twice restores the matrix up to rounding. With d = S(k, k), a row not yet swept
  /// is refused, with matrix and bit as they were, when tol * scale[k] >= d, and unless
  /// (S(j, j) - S(j, k)^2 / d) * tol * scale[j] > -1 for each swept row j: no pivot may blow up a
  /// diagonal that is swept already. Taking back tests nothing. O(n^2), in place. Numerical method:
  /// the sweep operator (Beaton 1964).
  /// `scale`: n entries; `pivots`: n bits. With `check`, false also for k out of range, tol <= 0,
  /// too few entries or bits, or any negative entry of scale. Without, the caller answers for that.
  bool Sweep(int k, double tol, const std::vector<double>& scale, MCBitSet& pivots, bool check);

  /// Coefficients from a swept cross-product matrix with the response last: b is sized to n - 1 and
  /// takes the first n - 1 entries of the last row, and 0 where the bit is clear; with a single row
  /// or none it is emptied. False, with b untouched, if n - 1 exceeds the bits.
  bool GetRegCoeffs(std::vector<double>& b, const MCBitSet& pivots) const;

  /// Zeroes the rows and columns whose bit in `keep` is clear. False if n exceeds the bits.
  bool ZeroOutRedundant(const MCBitSet& keep);

  /// Scatters this compact matrix to the set positions of `keep` in order: out has one row for each
  /// bit, in 1 block, and zeros at clear bits and at set bits that remain when all n rows are
  /// placed. Rows that find no set bit are left out.
  void Expand(const MCBitSet& keep, MCSymMatrix& out) const;

  /// @}
  /// \name Cholesky
  /// The factor L, with S = L L', replaces the lower triangle row by row. A row is redundant when
  /// what the rows before it leave of its diagonal doesn't exceed tol times its entry in the scale.
  /// Then L(i, i) = 0 and the row contributes nothing to later rows and to solutions, so that
  /// inverses are generalised inverses over the rows kept.
  /// @{

  /// Factors in place, O(n^3 / 6), and answers the number of redundant rows. Row i is kept if
  /// s > tol * scale[i], strictly, where s = S(i, i) less the squares of L(i, j), j < i; entries
  /// off the diagonal of a redundant row are kept as they come out. 0 where there is no row, as in
  /// an invalid matrix.
  /// `scale`: n entries, usually the diagonal. -1, with the matrix unchanged, for a shorter scale
  /// and, with `check`, for tol < 0 or a negative one among the n entries. Without, a negative
  /// bound lets s = 0 pass, and a negative s, whose root is NaN.
  int LTChol(const std::vector<double>& scale, double tol, bool check);

  /// The same, setting the bits of the rows kept. `nonRedundant` is first resized to n bits if it
  /// is smaller, and cleared, also where the answer is -1 then.
  int LTChol(const std::vector<double>& scale, double tol, MCBitSet& nonRedundant, bool check);

  /// The same with the scale of GetNCheckDiagonal(scale, tol, 1.0), so that a diagonal below tol is
  /// judged against 1. `minDiag` is the smallest L(i, i), which is 0 if any row is redundant; it is
  /// the missing value where the answer is -1 and where there is no row.
  int LTChol(double tol, double& minDiag, bool check);

  /// Sets `indices` to the first rows, in ascending order, that a factorisation with the diagonal
  /// as scale keeps, at most maxCount of them, or all if maxCount < 1, and answers their number.
  /// The matrix stays. 0 and none for a negative tol. Allocates one triangle.
  int CholIndNonRed(int maxCount, double tol, std::vector<int>& indices);

  /// Of a factor L in the triangle, answers the number of zero diagonal elements, and, as `job`
  /// asks, puts the determinant of L (not of L L') in det[0] * 10^det[1] if job % 10 != 0, and
  /// replaces L by its inverse if |job| >= 10. The determinant has 1 <= |det[0]| < 10, or is 0
  /// and 0 with a zero diagonal; an infinite or NaN product stays as it is. The inverse has zeros
  /// in row and column of a zero diagonal. `det`: two doubles, which may be null if none is asked
  /// for. Numerical method: LINPACK's determinant and inverse of a positive definite factor
  /// (Dongarra, Moler, Bunch, Stewart 1979), for factors of deficient rank too.
  int LTDetInverse(double* det, int job);

  /// L becomes (L L')^-1, with zeros in row and column of each zero diagonal of L.
  void LTInverse();
  /// L becomes L'L.
  void LTLTransL();
  /// L becomes L L': the product of which it is the factor.
  void LTLLTrans();

  /// Solves L L' x = b for a factor L in the triangle: x is sized to n, with x[i] = 0 where
  /// L(i, i) = 0. Answers 0, or -1, with x untouched, if b has fewer than n entries. x may be b.
  int LTSubstitute(const std::vector<double>& b, std::vector<double>& x) const;

  /// Factors in place, with the diagonal as scale, and solves. Answers the number of redundant
  /// rows, whose x is 0. -1, with matrix and x unchanged, unless tol > 0, b has n entries and no
  /// diagonal element is negative. x may be b, and b the triangle of this matrix.
  int LTSolve(const std::vector<double>& b, double tol, std::vector<double>& x);

  /// `inv` becomes the inverse of this positive semidefinite matrix, with zero rows and columns for
  /// the redundant rows. The answer is the rank. -1, with `inv` and all others unchanged, if scale
  /// has fewer than n entries; -1 with `inv` invalid where it can't be allocated. Entries of scale
  /// and tol aren't checked. `inv` may be this matrix.
  int CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv) const;
  /// The same; `minDiag` is the smallest L(i, i), or the missing value if there is no row.
  int CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv,
                  double& minDiag) const;
  /// The same, marking the rows that aren't redundant as LTChol does.
  int CholInverse(const std::vector<double>& scale, double tol, MCSymMatrix& inv,
                  MCBitSet& nonRedundant) const;

  /// Determinant of this positive semidefinite matrix as det[0] * 10^det[1], 1 <= |det[0]| < 10, or
  /// 0 and 0 with a redundant row. `det`: two doubles. False, with det untouched, without rows, for
  /// a negative tol, and where the copy that is factored can't be allocated.
  bool ComputeDeterminant(double tol, double* det) const;

  /// Takes the rows in `mask` of a packed m-row matrix, in 1 block, replaces them by their Cholesky
  /// factor with the scale of GetNCheckDiagonal(scale, tol, 1.0), and answers the number of
  /// redundant rows: how many depend on the masked rows before them. 0, with nothing changed, for
  /// m = 0. -1, with nothing changed, if m < 0, if `packed` has fewer than m(m+1)/2 entries or if
  /// `mask` has fewer than m bits. -2, with the matrix invalid, where the rows taken can't be
  /// allocated. `packed` may be the triangle of this matrix.
  int CheckMDependent(int m, const std::vector<double>& packed, const MCBitSet& mask, double tol);

  /// Repairs an indefinite matrix of at least 2 rows. The smallest multiple of the identity that
  /// leaves no redundant row is searched for: by steps of the largest magnitude of an element, but
  /// at least n - 2 and 1, then by bisection until half the width, relative above 1, is within tol.
  /// It is added, then 1 % of the largest diagonal, and the matrix is divided by both additions
  /// together plus the first entry of GetNCheckDiagonal(scale, 1e-6, 1.0). That scale serves all
  /// factorisations, with tol as their tolerance.
  /// Answers the number of factorisations; it is 1, with nothing changed, for a matrix that is
  /// positive definite. `changed` tells whether it was repaired, `added` what was added to the
  /// diagonal before the division, else 0. -1, with nothing changed, for n < 2. -2, with nothing
  /// changed, unless 0 < tol <= 1e6 (the search takes about n + tol steps) and all elements are
  /// finite, and where sums leave the range of doubles or the copy that is factored can't be
  /// allocated.
  int TransformToPositiveDefinite(double tol, bool& changed, double& added);

  /// Solves S x = b for a matrix that need not be definite, through S'S x = S b and LTSolve.
  /// Redundant rows have x[i] = 0. False, with x untouched, unless n > 0, tol > 0 and b has n
  /// entries; false also, with x all 0, if all rows are redundant. The matrix stays. x may be b.
  bool SolveIndefiniteGI(double tol, const std::vector<double>& b, std::vector<double>& x);

  /// Solves S x = b for a matrix that need not be definite, on rows that aren't redundant: those
  /// that CholIndNonRed(n, 2 * tol) finds in S'S. Their submatrix is factored and solved by
  /// Linpack::Dspco and Linpack::Dspsl, and the other rows have x[i] = 0. As S'S has the square of
  /// the condition of S, rows are lost from a condition of about 1e8 on at any tol; with tol = 0
  /// rounding decides about dependent rows. False, with x untouched, unless n > 0, tol >= 0, b has
  /// n entries, a row is kept, and the reciprocal condition that is estimated for the submatrix is
  /// above 0. The matrix stays. x, sized to n, may be b.
  bool SolveIndefinite(double tol, const std::vector<double>& b, std::vector<double>& x) const;

  /// The same on the rows whose bits are set in `keep`, untested. False also if keep has fewer than
  /// n bits; bits beyond don't count.
  bool SolveIndefinite(const MCBitSet& keep, const std::vector<double>& b,
                       std::vector<double>& x) const;

  /// @}
  /// \name Estimable functions and parameter covariances
  /// @{

  /// Of a swept cross-product matrix, builds columns of H that generate the estimable functions of
  /// an effect with the parameters from..to. Each r of them in `keep` gives one column, from `col`
  /// on: row r of this matrix in its first nRows entries (all n if nRows < 0), except in the rows
  /// in `keep`, which hold 1.0 in the row r itself and else 0. Those rows are written wherever H
  /// has them, also beyond nRows. Then rounding noise is cleaned away by ColClean(c, n * 10000.0),
  /// with `col` the column behind the last one written now, on as many columns as stand before
  /// `col`, starting at the first one written and as far as H reaches: columns behind the written
  /// ones are cleaned too. The bits of the rows taken are set in `used`; other bits stay. False,
  /// with nothing changed, unless 0 <= from <= to < n, `keep` and `used` have n bits, nRows isn't
  /// above the rows of H, and all columns from col >= 0 on fit in H.
  bool ExtractH(int from, int to, const MCBitSet& keep, MCRectMatrix& H, int& col, MCBitSet& used,
                int nRows) const;

  /// Screens the covariance matrix G = S M S, of n rows, for variances that can't be: in each row i
  /// of `mask` with M(i, i) < 0, or else with G(i, i) <= 0, zeroes row and column i of G.
  /// `negative` gets n bits, set for the rows of the first kind; `count` is the number of rows
  /// zeroed, and `allGone` tells whether they are all rows of `mask`, and some. A NaN is no bad
  /// variance. False, with nothing changed, unless M has n(n+1)/2 packed entries, `mask` n bits and
  /// G n rows. True, with nothing changed, if n is 0.
  bool CheckGMG(const std::vector<double>& M, const MCBitSet& mask, MCSymMatrix& G,
                MCBitSet& negative, bool& allGone, int& count) const;

  /// Carries a covariance matrix of parameters over a change of scale of the predictors: S becomes
  /// T S T', with T the map that MCMathFun::TransformParameters applies to the parameters
  /// themselves. There are nBlocks blocks of p parameters, p the size of `shift` and of `scale`;
  /// the first nIntercepts of each block are intercepts, the others slopes. With
  ///   A[i] = 1/scale[i], B[i] = shift[i]              if reciprocal,
  ///   A[i] = scale[i],   B[i] = -shift[i]/scale[i]    otherwise, and B negated if negateShift,
  /// a slope t[i] is divided by A[i], and an intercept gains the sum of B[i] t[i] over its block.
  /// False, with the matrix unchanged, unless n = nBlocks * p, shift has p entries, nBlocks >= 1,
  /// 0 <= nIntercepts <= p, and no scale is 0; several intercepts go with a single block only.
  bool TransformParameterMatrix(const std::vector<double>& shift, const std::vector<double>& scale,
                                int nBlocks, int nIntercepts, bool negateShift, bool reciprocal);

  /// The same for a single block in which parameters i outside `mask` don't join in: they are
  /// transformed with the inverse of their scale and no shift. If there are intercepts, shift[i] of
  /// each that has a scale other than 1 or a shift other than 0 is added to element (i, 0) at the
  /// end, as it stands, whether i is a slope or an intercept. Shift and scale need n entries, the
  /// mask n bits.
  bool TransformParameterMatrix(const std::vector<double>& shift, const std::vector<double>& scale,
                                const MCBitSet& mask, int nIntercepts, bool negateShift,
                                bool reciprocal);

  /// @}

  /// Writes the full square matrix to the diagnostic display.
  void DisplayF() const;
};

}  // namespace MCCommonMath
