// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <cstdint>
#include <vector>

namespace MCCommonMath {

class MCSymMatrix;

/// View of a design row that is mostly zeros: ascending positions, counted from 0, and the values
/// there. A logistic fit takes from it the row's part in linear predictors, gradient and Hessian
/// and its category probabilities, without ever writing the row out.
///
///     const MCSparseVector x(indices, values);
///     x.ComputeProbabilities(beta, nCategories, blockSize, probabilities, logLast);
///
/// The view borrows both vectors: they must outlive it, keep their sizes and contents, and not be
/// an output of one of its operations. It is made anew for each row and allocates nothing.
///
/// Below, x_e is the value at position i_e of element e. A view is valid if both vectors have the
/// same non-zero size, no position is negative and positions rise strictly. An invalid view refuses
/// every operation but the field reads, Display, and what is told of a view without elements. A
/// refusal leaves all operands as they were.
///
/// Each sum starts from 0.0 and takes its elements in ascending order, each product rounded before
/// it is added. That order is a contract: whoever sums several rows at a time gives the same bits.
class MC_EXPORT MCSparseVector {
public:
  /// Takes the number of elements from `idx`. Costs one walk over the positions.
  MCSparseVector(const std::vector<int>& idx, const std::vector<double>& val);

  /// The result of the test on construction.
  bool IsValid() const { return fValid; }
  /// Number of positions, also of an invalid view.
  int GetNElements() const { return fNElements; }
  /// The vectors given, owned by the caller.
  const std::vector<int>& GetIndices() const { return *fIndices; }
  const std::vector<double>& GetValues() const { return *fValues; }

  /// Last position + 1: the length of the shortest vector that the row fits in, 0 without elements.
  /// Beyond the range of an int, the largest int.
  int GetMinVecSize() const;

  /// Position of element i, 0 <= i < GetNElements(); -1 if i is out of range.
  int GetIndex(int i) const;
  /// Value of element i; the missing value if i is out of range.
  double GetValue(int i) const;

  /// v[offset + i_e] += a * x_e for each element. False if offset < 0 or the last of these
  /// positions isn't in v.
  bool IncrementPart(std::vector<double>& v, int offset, double a) const;

  /// Sum of x_e * v[offset + i_e]. Missing if offset < 0 or offset + GetMinVecSize() exceeds the
  /// size of v; else 0 without elements.
  double InnerProductWithPart(const std::vector<double>& v, int offset) const;

  /// Sum of v1 * v2 over the positions that both sparse vectors have; n1 and n2 entries are read,
  /// positions ascending. Missing if a pointer is null, whatever the counts, or a count is
  /// negative; else 0 if a count is 0.
  static double InnerProduct(const int* i1, const double* v1, int n1, const int* i2,
                             const double* v2, int n2);

  /// S(row, offset + i_e) += a * x_e for each element, in the one packed place of (i, j) and (j,
  /// i). False unless `row` and all those positions are rows of S, and offset >= 0.
  bool IncrementRowPart(MCSymMatrix& S, int row, int offset, double a) const;

  /// S becomes x x'. It keeps its size if the row fits in, and else becomes as large as
  /// GetMinVecSize(); one that can't be allocated is invalid.
  void QuadraticOuterProduct(MCSymMatrix& S) const;

  /// S(i_d, i_e) += (w * x_d) * x_e for each pair of elements e <= d. If S is too small for the
  /// row, what it held is lost and it becomes as large as GetMinVecSize() first; one that can't be
  /// allocated is invalid.
  void QuadraticOuterProductIncr(MCSymMatrix& S, double w) const;

  /// S(offset + i_d, offset + i_e) += (w * x_d) * x_e likewise. False if offset < 0 or S has fewer
  /// than offset + last position + 1 rows.
  bool QuadraticOuterProductPartIncr(MCSymMatrix& S, int offset, double w) const;

  /// Writes the row out: v is grown to GetMinVecSize() if shorter, a longer one keeps its size; all
  /// of it is zeroed, then the values are put in place. Answers the size of v, -1 if the view is
  /// invalid.
  int ConvertToRegularVector(std::vector<double>& v) const;

  /// Probabilities of the nCat categories of a multinomial logit for this row. The coefficients of
  /// category j stand at beta[j * blockSize ...], j < nCat - 1, and its linear predictor eta_j is
  /// the InnerProductWithPart from there. The last category is the reference: its predictor is 0.
  /// `probs` is grown to nCat entries if shorter; entries beyond them stay. `logLast` is the log
  /// probability of the reference, good also where that probability itself has become 0.
  ///
  /// With finite predictors, however large, all results are finite; what would leave the range of
  /// exp, MCPower::gMachineMinExp to gMachineMaxExp, counts as 0. If all predictors are so low that
  /// exp(-eta) would overflow, the reference has probability 1 and logLast is 0. If the largest is
  /// above that range and all are equal, each has 1/(nCat - 1). A NaN predictor is left out of the
  /// comparisons; if nothing else is left, the first category has probability 1 and logLast is 0.
  /// An infinite one may make logLast NaN. exp and log are the library's own, so that the results
  /// don't depend on processor or C library; docs/accuracy.md has their errors.
  ///
  /// False if nCat or blockSize is below 1, if beta has fewer than (nCat - 1) * blockSize entries
  /// or if GetMinVecSize() exceeds blockSize. `probs` must not be beta. Allocates nothing but to
  /// grow probs.
  bool ComputeProbabilities(const std::vector<double>& beta, int nCat, int blockSize,
                            std::vector<double>& probs, double& logLast) const;

  /// Writes the view to the diagnostic display.
  void Display() const;

private:
  /// Last position + 1, 0 without elements.
  std::int64_t MinSize() const;
  /// Whether the row fits into `size` places from `offset` on.
  bool FitsAt(std::int64_t offset, std::int64_t size) const;

  int fNElements;
  const std::vector<int>* fIndices;
  const std::vector<double>* fValues;
  bool fValid;
};

}  // namespace MCCommonMath
