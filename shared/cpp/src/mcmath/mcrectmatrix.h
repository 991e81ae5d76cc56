// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrixdata.h"

namespace MCCommonMath {

class MCBitSet;

/// A dense rectangular matrix with the element, row, column and product operations that the
/// symmetric matrix and the models need. Design blocks, hypothesis matrices and tables that are
/// not symmetric are of this type.
///
/// All indices count from 0 and all ranges from..to include both ends. An index out of range, or
/// lengths that don't fit, answer false, or the missing value where a number is asked for, and
/// change nothing. An `out` argument may be this matrix or another operand. It loses its old
/// shape and contents; where memory runs out while it takes its size, the answer is false and
/// `out` invalid. The few operations that need scratch (Transpose, CopyColToRow, RowNorm,
/// CheckForOnes, ComputeProductMatrixTrans) let std::bad_alloc pass, with nothing changed.
class MC_EXPORT MCRectMatrix : public MCRectMatrixData {
public:
  /// No rows, no columns.
  MCRectMatrix() = default;

  /// `nRows` by `nCols` zeros. If either is negative, both count as 0.
  MCRectMatrix(int nRows, int nCols) : MCRectMatrixData(nRows, nCols) {}

  /// @name Shape
  /// The first four answer false where memory runs out, which leaves the matrix invalid.
  ///@{

  /// Takes the shape with all elements zero. If either count is negative, both count as 0.
  bool SetNRowsCols(int nRows, int nCols);

  /// Takes the shape without clearing: elements keep their places in AsVector(), so that rows
  /// survive while the number of columns stays; new places hold 0. Negative counts as above.
  bool Resize(int nRows, int nCols);

  /// Appends a row of zeros at the bottom, a column of zeros at the right. Also false, with
  /// nothing changed, for an invalid matrix and for one whose count is the largest int.
  bool AddRow();
  bool AddColumn();

  /// Becomes its own transpose.
  void Transpose();

  /// Zeroes all elements; the shape stays.
  void Clear();

  /// All elements, row by row, for writing; the size of the vector is to stay.
  std::vector<double>& AsVector() { return fVec; }
  ///@}

  /// Writes element (i, j).
  bool SetElem(int i, int j, double x);

  /// @name Tests of columns and rows
  /// An entry is zero when it equals 0.0, so a NaN isn't.
  ///@{

  /// True if all entries are zero. False for a column or row without entries.
  bool IsColZero(int col) const;
  bool IsRowZero(int row) const;

  /// True when exactly one entry of the row at a column outside `mask` is not zero; `position` is
  /// that column then and -1 otherwise. Columns beyond the size of `mask` count as outside it.
  bool IsRowZeroButOne(int row, const MCBitSet& mask, int& position) const;

  /// First column of the row whose entry has |x| > tol; -1 if there is none or no such row. A NaN
  /// is never found.
  int FindFirstNonZeroInRow(int row, double tol) const;

  /// Whether row `row` is a multiple of row `other`, both of them not zero: `zeroTol` is the
  /// magnitude up to which an entry counts as zero, and `ratioTol` the relative difference,
  /// |x - factor y| / max(|x|, |factor y|), up to which an entry x agrees with the multiple of its
  /// counterpart y. The factor is the ratio of the first entries that aren't zero. False leaves
  /// `factor` alone; a negative or NaN tolerance is false.
  bool IsERowMultipleOfAnother(int row, int other, double zeroTol, double ratioTol,
                               double& factor) const;

  /// True when each row and each column has exactly one entry x with |x - 1| <= tol, whatever the
  /// others are: a permutation matrix passes, with tol 0 too. False for a matrix without elements.
  bool CheckForOnes(double tol) const;
  ///@}

  /// @name Dot products and norms
  /// The missing value for an index out of range or for unequal lengths; 0 for length 0. Terms are
  /// added in the order of MCMathFun::DDot.
  ///@{

  /// Of two columns, of two rows of this matrix.
  double DotProductCol(int col1, int col2) const;
  double DotProductRows(int row1, int row2) const;

  /// Of a row or column of this matrix, named first, and one of `other`.
  double DotProductRowCol(int row, const MCRectMatrix& other, int col) const;
  double DotProductColCol(int col, const MCRectMatrix& other, int otherCol) const;
  double DotProductRowRow(int row, const MCRectMatrix& other, int otherRow) const;

  /// Euclidean norms, free of intermediate overflow and underflow.
  double RowNorm(int row) const;
  double ColNorm(int col) const;
  ///@}

  /// @name Changes of columns and rows
  ///@{

  /// Multiplies the column by `a`.
  bool ColScale(int col, double a);

  bool ZeroOutCol(int col);

  /// Zeroes columns from..to of the row. False also for from > to.
  bool ZeroOutRowPart(int row, int from, int to);

  /// Adds `a` times column `otherCol` of `other`, which has as many rows and may be this matrix,
  /// to column `col`.
  bool AddToColumn(int col, const MCRectMatrix& other, int otherCol, double a);

  /// Takes the first entry of the row with |x| > tol as pivot, adds to every other column c the
  /// pivot column times entry (row, c), and zeroes the pivot column. The multiplier is the entry
  /// as it stands, neither negated nor divided by the pivot, so the row is cleared only for a
  /// pivot of -1. `pivot` is the pivot column, or -1 with the answer false if the row is out of
  /// range, tol is not above 0 or no entry qualifies.
  bool ZeroOutPivotRow(int row, double tol, int& pivot);

  /// Removes rounding noise. With u = 2.2e-16 and t = thr * 10000 u: a column of norm below t is
  /// zeroed; otherwise entries below t in a column scaled to norm 1 become 0. A threshold not
  /// above 0 removes nothing. A column whose norm has no finite reciprocal above 0 (one of zeros,
  /// or with an infinity or NaN) stays as it is. False only if there is no such column.
  bool ColClean(int col, double thr);
  ///@}

  /// @name Copies
  /// Into this matrix, which is told first, from `from`, which may be this matrix. Lengths have to
  /// be equal; a count of 0 copies nothing, a negative one is false.
  ///@{
  bool CopyRowToRow(int row, const MCRectMatrix& from, int fromRow);
  bool CopyColToRow(int row, const MCRectMatrix& from, int fromCol);
  bool CopyColToCol(int col, const MCRectMatrix& from, int fromCol);

  /// `count` columns or rows, from `fromCol` or `fromRow` on, to those from `col` or `row` on.
  bool CopyColumns(int col, const MCRectMatrix& from, int fromCol, int count);
  bool CopyRows(int row, const MCRectMatrix& from, int fromRow, int count);
  ///@}

  /// @name Matrices made of this one
  ///@{

  /// `out` is this matrix with its rows moved down by `count`, or up for a negative count. Zeros
  /// take their place, and what leaves the matrix is lost.
  bool ShiftRows(int count, MCRectMatrix& out) const;

  /// The same with columns, moved right or, for a negative count, left.
  bool ShiftColumns(int count, MCRectMatrix& out) const;

  /// `out` has this matrix `count` times along its diagonal and zeros elsewhere. False, with `out`
  /// unchanged, for a count below 1 or a result of more rows or columns than an int counts.
  bool CreateBlockDiagonal(int count, MCRectMatrix& out) const;

  /// `out` has this matrix and, below and to the right of it, `A` as diagonal blocks, and zeros
  /// elsewhere. False, with `out` unchanged, for more rows or columns than an int counts.
  bool ExpandSquare(const MCRectMatrix& A, MCRectMatrix& out) const;

  /// Scatters the rows (`byRows`) or columns of this matrix in order to the set positions of
  /// `bits`: `out` has one row or column for each bit, and zeros at clear bits and at set bits
  /// that remain when all are placed. False, with `out` unchanged, for fewer set bits than rows or
  /// columns to place.
  bool Expand(const MCBitSet& bits, bool byRows, MCRectMatrix& out) const;
  ///@}

  /// @name Products
  /// Each element's terms are added in ascending order of the inner index. False, with `out`
  /// unchanged, if the shapes don't fit.
  ///@{

  /// out = this times B; B has as many rows as this matrix has columns.
  bool ComputeMatrixProduct(const MCRectMatrix& B, MCRectMatrix& out) const;

  /// out = this times the transpose of B; B has as many columns as this matrix.
  bool ComputeProductMatrixTrans(const MCRectMatrix& B, MCRectMatrix& out) const;
  ///@}

  /// @name Dependent rows and columns
  /// The tests work on cross-products, so on squared norms, and take tolerances relative to the
  /// norm of the row or column concerned; one below 1e-7 leaves it to rounding what counts as
  /// dependent. What depends on rows or columns before it is redundant.
  /// An invalid matrix is refused, and so is a matrix of more than 65,535 rows or columns to test
  /// or one whose cross-products can't be allocated.
  ///@{

  /// `out` becomes the listed rows or columns in this order; numbers may repeat. False, with `out`
  /// unchanged, for one out of range.
  bool ExtractRows(const std::vector<int>& indices, MCRectMatrix& out) const;
  bool ExtractColumns(const std::vector<int>& indices, MCRectMatrix& out) const;

  /// Number of redundant rows (`byRows`) or columns: those whose part apart from the ones before
  /// has a norm not above tol times their own, so that tol = 0 finds zeros still. Their bits in
  /// `nonRedundant` are clear and those of the others set; it gets one bit for each row or column,
  /// but keeps a larger size, with the further bits clear. -1, with nothing changed, for tol < 0; a
  /// NaN finds all redundant. Numerical method: MCSymMatrix::LTChol of the cross-products.
  int FindRedundancies(double tol, MCBitSet& nonRedundant, bool byRows) const;

  /// Sets `indices` to the rows or columns, in ascending order, that aren't redundant by the same
  /// test, and answers their number. -1, with nothing changed, for tol < 0.
  int FindNonRedunIndices(double tol, std::vector<int>& indices, bool byRows) const;

  /// The same, with these rows or columns copied to `result`, which may be this matrix. -1 also,
  /// with `result` invalid, where that can't be allocated.
  int ExtractFullRank(double tol, MCRectMatrix& result, std::vector<int>& indices,
                      bool byRows) const;

  /// Replaces the columns of this matrix by their residuals after projection on the columns of Z,
  /// which may be this matrix. `zKept` gets one bit for each column of Z, set where it isn't
  /// redundant: columns are swept in order, and refused when what is left of their squared norm
  /// isn't above `tol` times it. `resultKept` gets one for each column of this matrix, set where
  /// the squared norm of the residual is above `tol` times that of the column: tol isn't squared.
  /// False, with nothing changed, unless this matrix and Z have as many rows, both have rows and
  /// columns, and tol > 0.
  bool ResidOfOrthProjection(const MCRectMatrix& Z, double tol, MCBitSet& zKept,
                             MCBitSet& resultKept);

  /// Of the columns of `added`, the number of redundant ones when they are appended to this matrix:
  /// those of a norm not above `zeroTol`, and those whose part apart from the columns of this
  /// matrix and from the columns of `added` before them has a norm not above `tol` times their own.
  /// `nonRedundant` gets one bit for each column of `added`, set for the others. So rows of an
  /// estimable function, kept as columns, are tested against those that are there already. -1, with
  /// nothing changed, unless `added` has as many rows as this matrix and both tolerances are at
  /// least 0. `added` may be this matrix. Numerical method: MCSymMatrix::LTChol of the joint
  /// cross-products.
  int CheckAddColRedundancies(const MCRectMatrix& added, double zeroTol, double tol,
                              MCBitSet& nonRedundant) const;

  /// Whether all linear functions of parameters whose coefficients are the rows of this matrix are
  /// estimable. `L` generates those that are: it has one row for each parameter, and in order one
  /// column for each set bit k of `mask`, with the coefficients of the function that the parameter
  /// k estimates, such as the columns of MCSymMatrix::ExtractH. A row r is estimable when L times
  /// its entries at the set bits gives r again, up to a difference of norm `tol` times that of r.
  /// A row of zeros passes, as does one of NaN or infinite norm, of which nothing can be said. Bits
  /// at or past the columns of this matrix don't count. False also unless this matrix has rows and
  /// columns, tol > 0, mask has a bit for each of the columns, and L a row for each of them and a
  /// column for each set bit.
  bool IsEstimable(const MCRectMatrix& L, const MCBitSet& mask, double tol) const;
  ///@}

  /// @name Linear equations
  /// `x` is sized to the number of unknowns and may be `b`.
  ///@{

  /// Solves this x = b for a square matrix, by Linpack::Dgeco and Linpack::Dgesl. False, with x
  /// untouched, unless the reciprocal condition that the former estimates, in the 1-norm, is above
  /// `tol`; and unless the matrix is square with at least one row, b has an entry for each, and
  /// tol >= 0. O(n^3 / 3).
  bool SolveLinearSquare(const std::vector<double>& b, std::vector<double>& x, double tol) const;

  /// Solves this x = b in the sense of least squares. A square matrix is handed to
  /// SolveLinearSquare(b, x, solveTol) first, and 0 is the answer if that succeeds. Else the normal
  /// equations are solved by MCSymMatrix::LTSolve with `tol`, and the answer is the number of
  /// redundant columns, whose x is 0. -1, with x untouched, unless there are rows and columns, b
  /// has an entry for each row and tol > 0; a NaN tol is refused by the normal equations alone.
  int EstimateLinearGI(const std::vector<double>& b, std::vector<double>& x, double tol,
                       double solveTol) const;
  ///@}

  /// Shows shape and elements on the diagnostic stream, to 6 digits and to 17.
  void Display() const;
  void DisplayF() const;

private:
  // Rows row.. and columns col.. of a matrix, nRows and nCols of them.
  struct Part {
    int row;
    int col;
    int nRows;
    int nCols;
  };

  // Copies the part of `from`, which may be this matrix, to (row, col) and onward. All in range.
  void PutPart(const MCRectMatrix& from, const Part& part, int row, int col);

  double* Row(int i) { return fVec.data() + Index(i, 0); }
  const double* Row(int i) const { return fVec.data() + Index(i, 0); }
};

}  // namespace MCCommonMath
