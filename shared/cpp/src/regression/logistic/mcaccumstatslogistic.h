// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcsymblockmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcexport.h"
#include "regression/interface/imcaccumstats.h"
#include "regression/settings/mcregsettings.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace MCCommonMath {
class MCSparseVector;
}

namespace MCCommon {
namespace detail {
class MCPatternTile;
struct MCPatternColumns;
struct MCPatternLayout;
}  // namespace detail
}  // namespace MCCommon

/// Sums of a multinomial logistic regression over the rows of one pass. With P columns, K
/// categories, the last of them the reference, and b_c the coefficients of category c, a row x of
/// weight w and category y has p_c = exp(x'b_c) / (1 + sum over j < K - 1 of exp(x'b_j)) and adds
///
///     log-likelihood  w x'b_y + w log p_(K-1), the first term 0 for y = K - 1
///     scores          w ([c = y] - p_c) x            to the part of category c < K - 1
///     Hessian         w p_c ([c = d] - p_d) x x'     to the block of categories d <= c < K - 1
///
/// (McCullagh and Nelder 1989, section 5.4). The observed and the expected information of this
/// model are the same matrix, so one formula serves every method, and with the signs above it is
/// positive definite at a regular point. No logarithm of a probability is ever taken: one that
/// underflows to 0 does the log-likelihood no harm.
///
/// Rows are summed in the order in which they come, which fixes the rounding. All sums are up to
/// date after each call. One object serves one thread.
class MC_EXPORT MCAccumStatsLogistic : public IMCAccumStats {
public:
  /// `nParams`: P, at least 0. `nCategs`: K, at least 2. `estimates` is borrowed for the life of
  /// this object: coefficient i of category c at c * P + i. It is read afresh at every row, so
  /// that an accumulator follows an estimator's steps by itself. `settings` is borrowed and kept.
  ///
  /// Not IsValid() if P or K is out of range, if (K - 1) * P exceeds the number of estimates, or
  /// if memory for the Hessian runs out; every row is then refused. Memory exhaustion elsewhere
  /// throws.
  MCAccumStatsLogistic(const MCRegSettings& settings, int nParams, int nCategs,
                       const std::vector<double>& estimates);
  MCAccumStatsLogistic(const MCAccumStatsLogistic&) = delete;
  MCAccumStatsLogistic& operator=(const MCAccumStatsLogistic&) = delete;
  ~MCAccumStatsLogistic() override;

  bool IsValid() const { return fbValid; }

  /// Zeroes all sums and counts and puts the extremes of the probabilities back to their starting
  /// values. `method` is stored and changes nothing.
  void Reset(MCConst::MCEstimationMethod method, bool checkSeparation) override;

  /// True: all estimates are admissible.
  bool CheckConstraints() override;

  /// Adds a row of as many `values` as `indices`, which rise strictly from 0 on and stay below P;
  /// zeros are best left out. `category`: 0 to K - 1, the reference being K - 1. `weight`: above
  /// 0.0, or NaN. -1, with all sums unchanged, for anything else; so for a row without entries
  /// unless P is 0, for which indices and values aren't looked at. A row whose probabilities can't
  /// be formed, as an index reaches P or the vector of estimates has become too short, is -1 too
  /// and counts as invalid. With `likelihoodOnly` scores and Hessian stay as they are, at a cost
  /// of about K m for m entries; the full row costs K^2 m^2 / 4 multiply-adds. Allocates nothing.
  int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values, int category,
                   double weight, bool likelihoodOnly) override;

  /// Adds stored rows of one pattern, several times faster but to the bit as a loop would that
  /// polls `cancel` before each row, ends if a cancel is pending, and else gives the row's columns
  /// that aren't 0.0 to UpdateForRow(). `rows`: nRows times `layout.fStride` values, to which the
  /// positions in `layout` and `columns` refer. A row's category is its dependent + 0.5, truncated,
  /// its weight the product of the weights that it has.
  ///
  /// 0 if all rows were added, -1 at the first row that is refused, 1 if a cancel ended the loop;
  /// the rows before it stay added. Allocates only for a pattern wider than any before; if that
  /// fails nothing is added. For the library's own data handlers: the structures are hidden.
  int UpdateForPattern(const MCCommon::detail::MCPatternColumns& columns,
                       const MCCommon::detail::MCPatternLayout& layout, const double* rows,
                       std::size_t nRows, const MCCancelInfo& cancel, bool likelihoodOnly);

  double GetLL() const override { return fLL; }

  /// (K - 1) * P entries, that of coefficient i of category c at c * P + i; empty if not valid.
  const std::vector<double>& GetScores() const override { return fScores; }

  /// Sets `hessian` to (K - 1) * P rows in the order of the scores. It becomes a matrix of 0 rows
  /// if it can't be allocated.
  void GetHessian(MCCommonMath::MCSymMatrix& hessian) const override;

  /// Rows added (at most the largest int is counted), rows whose probabilities couldn't be
  /// formed, and sum of the weights of the rows added. Rows that are refused for other reasons
  /// count nowhere.
  void GetCounts(int& valid, int& invalid, double& weight) const override;

  /// Without the separation check, and before the first row, the minima are the largest and the
  /// maximum is the most negative finite double.
  void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                              double& minComputed) const override;

  /// 1.0: a refused step is halved.
  double GetStepAdjustmentFactor() const override;

  /// Only the log-likelihood if `brief`.
  void Display(bool brief) const override;

private:
  /// Whether there are estimates for all columns and categories.
  bool HasEstimates() const;
  bool ComputeProbabilities(const MCCommonMath::MCSparseVector& x, double& logLast);
  /// Probability c of a row stands at probabilities[c * stride].
  void TrackProbabilities(const double* probabilities, std::size_t stride, int category);
  void AddLogLikelihood(const MCCommonMath::MCSparseVector& x, int category, double weight,
                        double logLast);
  void AddScores(const MCCommonMath::MCSparseVector& x, int category, double weight);
  void AddOuterProducts(const MCCommonMath::MCSparseVector& x, double weight);

  struct StoredRows;
  /// Sets fIndices and fValues to the entries of a stored row that aren't 0.0.
  void ExpandRow(const StoredRows& stored, std::size_t row);
  /// The two ways of adding stored rows; both answer as UpdateForPattern() does.
  int UpdateTogether(const StoredRows& rows, const MCCancelInfo& cancel, bool likelihoodOnly);
  int UpdateOneByOne(const StoredRows& rows, const MCCancelInfo& cancel, bool likelihoodOnly);
  /// Adds rows as long as they are ordinary, and answers how many; `answer` becomes 1 for a cancel.
  std::size_t AddTiles(const StoredRows& stored, const MCCancelInfo& cancel, bool likelihoodOnly,
                       int& answer);
  /// Adds rows of the tile to all sums but scores and Hessian.
  void AddTile(std::size_t count);
  void DisplaySums() const;

  const MCRegSettings& fpSettings;
  int fNParams;
  int fNCategs;
  const std::vector<double>* fpBeta;
  double fLL = 0.0;
  std::vector<double> fScores;
  MCCommonMath::MCSymBlockMatrix fHessian;
  int fNValid = 0;
  int fNInvalid = 0;
  double fTotalWeight = 0.0;
  MCConst::MCEstimationMethod fMethod = MCConst::MC_EST_FISHER;
  bool fbCheckSeparation = false;
  double fMinObserved;
  double fMaxObserved;
  double fMinComputed;
  bool fbValid = true;

  // Of the row or the pattern at hand.
  std::vector<double> fProbabilities;
  std::vector<int> fIndices;
  std::vector<double> fValues;
  std::unique_ptr<MCCommon::detail::MCPatternTile> fpTile;
};
