// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"
#include "regression/frame/mcstatus.h"
#include "regression/settings/mcregsettings.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace MCCommonMath {
namespace detail {
class MCCrossProduct;
}
}  // namespace MCCommonMath

namespace MCCommon {
namespace detail {
class MCDesignColumns;
}
}  // namespace MCCommon

/// The design of a linear regression and its fit in closed form. The model is y = x'b + e, where x
/// is the design row of p columns and the errors e are independent with mean 0 and variances
/// inversely proportional to the regression weights. With Z = (X y) and W the weights over their
/// total, Z'WZ is accumulated row by row in a packed matrix and its first p rows are swept in
/// column order (Goodnight 1979). The last row then holds the weighted least squares estimates
/// (X'WX)^- X'Wy, the leading block minus the generalised inverse.
///
/// Rank deficiency isn't an error. Column k is aliased where tolerance * S0(k,k) >= S(k,k), S0
/// being the matrix before any sweep, or where sweeping it would blow up a column swept before. It
/// is then left out and its estimate is 0, so of collinear columns the earlier ones are kept: with
/// an intercept the last level of each factor is the one left out.
///
/// Calls come in this order: constructor, SetOffsets(), CreateParameters(), SetDepMeanAndTotalW(),
/// UpdateZPrimeZ() for each valid row, BuildModel(), GetDResiduals() for each valid row,
/// FinishErrors(). A row is an array that reaches to every position the offsets name. A step that
/// fails stores its error, which CreateParameters() and BuildModel() answer from then on. Row
/// operations allocate nothing and use scratch of this object and of the factor tables, also where
/// they are const: a model serves one thread.
class MC_EXPORT MCGLMModel {
public:
  /// Most parameters of one model: the packed indices of a matrix of one more row fit an int.
  static constexpr int kMaxParameters = 46339;

  /// Both are borrowed for the life of the model.
  MCGLMModel(const MCRegSettings& settings, MCCancelInfo& cancelInfo);
  MCGLMModel(const MCGLMModel&) = delete;
  MCGLMModel& operator=(const MCGLMModel&) = delete;
  ~MCGLMModel();

  /// Tells where in a row the settings' factors and covariates stand, in the settings' order, and
  /// the weights and the dependent; a negative weight position means that there is no such weight.
  /// A factor or covariate without a position, or with a negative one, is unknown. Called again it
  /// holds for the rows from then on. The factor positions are those of ComputeDesignRowValue()
  /// alone: where the other operations find a row's factors is what the factor tables were told.
  void SetOffsets(const std::vector<int>& factors, const std::vector<int>& covariates,
                  int freqWeight, int regrWeight, int dependent);

  /// Makes the list of parameters and the matrix, from tables whose parameters are numbered; they
  /// are borrowed for the life of the model. If the settings have an intercept it comes first,
  /// with effect index -1, and effect e of the settings is effect e + 1 of the tables.
  ///
  /// Code 305 with discrete datum 0 the number of parameters: more than kMaxParameters, which is
  /// then discrete datum 1, or no memory for the matrix, with that datum 0. Code 1 if a cancel cut
  /// the list short. Code 309 without tables. On all of these AreParamsCreated() stays false and
  /// there is no matrix. A second call changes nothing.
  MCCommon::MCStatus CreateParameters(MCFactorTables* factorTables);

  /// Mean of the dependent and sum of the frequency weights, both over the rows of the fit.
  void SetDepMeanAndTotalW(double mean, double totalW);

  /// Adds a row to Z'WZ with the weight 1 / total weight times its own weights. A weight that
  /// isn't above 0 (as is NaN, and every one before SetDepMeanAndTotalW()) adds nothing, but the
  /// row counts. False, and nothing done, unless parameters are created, the matrix is there, the
  /// model isn't built and `row` isn't null. Costs O(k^2) for k non-zero columns.
  bool UpdateZPrimeZ(const double* row);

  /// Writes the design row: for each model effect the value of the one column that the row
  /// selects, 0.0 in all others, and the dependent in entry GetNParameters() if the vector has
  /// one; otherwise the dependent isn't read. `row` must not lie in the vector, whose size stays.
  /// Its last entry is written only where a column or the dependent falls on it, so a vector of
  /// GetNParameters() entries comes with 0.0 there. False if a combination of factor levels was not
  /// seen in the fit, with the columns of the other effects written. False, and nothing written,
  /// for a null row that would have to be read, and before CreateParameters().
  bool ExpandRow(std::vector<double>& designRow, const double* row) const;

  /// Value of a parameter's column for a row whose factor levels select it: the product of its
  /// covariates, each repeated as often as its power says, 1.0 without covariates. 0.0 if a
  /// covariate isn't one of the settings'.
  double ComputeDesignRowValue2(const double* row, const MCRegrParameter& parameter) const;

  /// The same for any row: 0.0 unless the row has the parameter's category in each of its factors,
  /// a factor that isn't one of the settings' included. Needs no factor tables.
  double ComputeDesignRowValue(const double* row, const MCRegrParameter& parameter) const;

  /// Sweeps the matrix and takes estimates and redundancy from it. Code 309 if no row was added,
  /// 310 if the model is built already, 1 if a cancel stands at the start. A cancel during the
  /// sweep leaves the remaining columns redundant; the model then counts as built and, if the
  /// cancel still stands at the end, the answer is code 1.
  /// Where memory runs out the exception leaves the model as it was.
  MCCommon::MCStatus BuildModel();

  /// Adds the residual of a row to the sums of squares, and sets out[j] to residual times column j
  /// times weight for j below GetNParameters() (entries that `out` lacks are left out). Does
  /// nothing while a cancel is pending, before the build, or for a null row.
  void GetDResiduals(std::vector<double>& out, const double* row);

  /// The same without the products, at the cost of the non-zero columns.
  void AddResidual(const double* row);

  /// Closes the sums: the root mean square error (the mean over the total weight, not over degrees
  /// of freedom) if the total weight is above 0, and R square if the total sum of squares is, 0.0
  /// for a fit that is worse than the mean; else they stay missing. Code 308 if no row had a
  /// weight other than 0 or the total weight isn't above 0; otherwise the stored status.
  MCCommon::MCStatus FinishErrors();

  /// Predicted dependent of a row, which needs no dependent; the missing value if a combination of
  /// factor levels was not seen in the fit, and before the build.
  double Score(const double* row) const;

  /// First parameter and number of parameters of an effect, where the intercept, if there is one,
  /// is effect 0. False, with both unchanged, for an effect out of range.
  bool GetParamsForEffect(int effect, int& first, int& count) const;

  /// Destroys the matrix, with the rows added so far if the model isn't built.
  void ClearZPrimeZMatrix();

  const MCFactorTables* GetFactorTables() const { return fFactorTables; }
  bool AreParamsCreated() const { return fParamsCreated; }
  bool IsModelBuilt() const { return fModelBuilt; }

  /// Z'WZ over the rows so far, GetNParameters() + 1 rows with the dependent last; after the build
  /// the swept matrix, whose leading block is minus the inverse of the weighted cross-products,
  /// zero for aliased parameters. Null before CreateParameters() and after ClearZPrimeZMatrix().
  /// Borrowed until the next call of this or of an operation that changes the model. Before the
  /// build it is a copy.
  const MCCommonMath::MCSymMatrix* GetZPrimeZ() const;

  const std::vector<int>& GetFactorOffsets() const { return fFactorOffsets; }
  const std::vector<int>& GetCovariateOffsets() const { return fCovariateOffsets; }
  const std::vector<MCRegrParameter>& GetParameters() const { return fParameters; }
  int GetNParameters() const { return static_cast<int>(fParameters.size()); }

  /// One estimate per parameter, 0.0 for an aliased one; empty before the build.
  const std::vector<double>& GetParamEstimates() const { return fParamEstimates; }

  /// GetNParameters() + 1 bits after the build: bit k is set if column k was swept, so it is clear
  /// for an aliased parameter and for the dependent, the last. One clear bit before.
  const MCCommonMath::MCBitSet& GetRedundancyInfo() const { return fRedundancy; }

  /// The missing value until FinishErrors().
  double GetMultipleRSquare() const { return fMultipleRSquare; }
  double GetRootMeanSquareError() const { return fRootMeanSquareError; }

  const std::vector<MCCommon::MCStatus>& GetWarnings() const { return fWarnings; }

  /// Writes design, matrix and results to the display stream.
  void Display() const;

private:
  /// Adjoining columns that are plain copies of adjoining values of the row.
  struct Run {
    std::size_t fColumn;
    std::size_t fPosition;
    std::size_t fCount;
  };

  MCCommon::MCStatus Fail(long code);
  MCCommon::MCStatus FailForSize(long limit);
  void ClearParameters();
  bool ListParameters();
  MCCommon::MCStatus PrepareRows();
  void CompileColumns();
  void CompileFixedRow();
  bool IsReadable(const double* row) const { return row != nullptr || !fbReadsRow; }

  bool HasCategories(const double* row, const MCRegrParameter& parameter) const;
  double Dependent(const double* row) const;
  double RowWeight(const double* row, double weightOfOne) const;
  double MatrixFactor() const;

  template <class Take>
  bool SelectColumns(const double* row, Take take) const;
  void FillFixedRow(const double* row) const;
  bool ExpandScratch(const double* row) const;
  double PredictScratch() const;
  double TakeResidual(const double* row, double& weight);
  void TakePrediction(double prediction, double dependent, double weight);
  void HoldRow(const double* row);
  void TakeHeldRows();
  void PredictHeldRows(double* predictions) const;
  void SweepColumns();

  const MCRegSettings* fSettings;
  MCCancelInfo* fCancelInfo;
  std::vector<int> fFactorOffsets;
  std::vector<int> fCovariateOffsets;
  std::vector<int> fCovariateLookup;
  int fFreqWeightOffset = -1;
  int fRegrWeightOffset = -1;
  int fDependentOffset = -1;
  const std::vector<MCModelEffect>* fModelEffects;
  MCFactorTables* fFactorTables = nullptr;
  std::unique_ptr<MCCommonMath::MCSymMatrix> fZPrimeZ;
  int fRecordsAdded = 0;
  MCCommonMath::MCBitSet fRedundancy{1};
  std::vector<MCRegrParameter> fParameters;
  bool fParamsCreated = false;
  bool fModelBuilt = false;
  std::vector<double> fParamEstimates;
  double fMultipleRSquare = MCMV::gMissingValue;
  double fRootMeanSquareError = MCMV::gMissingValue;
  mutable std::vector<double> fDesignRow;  // the last row expanded, if rows are dense
  double fSumSquaredResiduals = 0.0;
  double fSumSquaredTotal = 0.0;
  double fDepMean = MCMV::gMissingValue;
  double fTotalWeight = MCMV::gMissingValue;

  // What a row of weight 1 adds to fZPrimeZ: 1 / fTotalWeight rounded down to a power of two, so
  // that sums of whole numbers are exact. Adding 1 / n over and over rounds the same way each time,
  // and after some 100,000 rows that hides that the last level of a factor is redundant.
  double fUnitWeight = 0.0;
  mutable std::unique_ptr<MCCommonMath::MCSymMatrix> fpShownMatrix;  // with the weights told
  int fNonZeroWeightRows = 0;
  std::vector<int> fFirstParamIndices;
  std::vector<int> fNEffectParams;
  MCCommon::MCStatus fStatus;
  std::vector<MCCommon::MCStatus> fWarnings;

  // Rows held back from fZPrimeZ; it must go before the matrix that it borrows.
  std::unique_ptr<MCCommonMath::detail::MCCrossProduct> fpPendingRows;

  std::unique_ptr<MCCommon::detail::MCDesignColumns> fpColumns;

  // Where no effect has factors every row has the same columns: some are copied, the rest formed.
  std::vector<Run> fRuns;
  std::vector<std::size_t> fFormedColumns;

  // The last row expanded, if rows are sparse: its non-zero columns, ascending, and their values.
  mutable std::vector<int> fRowColumns;
  mutable std::vector<double> fRowValues;
  mutable std::size_t fNRowColumns = 0;

  bool fbReadsRow = false;
  bool fbFixedColumns = false;
  bool fbSparseRows = false;
  bool fbFiniteEstimates = false;

  // Dense design rows whose residuals wait: one sum of a row's products waits for each addition,
  // the sums of several rows run side by side.
  static constexpr std::size_t kMostHeld = 8;
  std::vector<double> fHeldRows;
  std::vector<double> fHeldWeights;
  std::size_t fNHeld = 0;
};
