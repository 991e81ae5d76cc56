// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcbitset.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/interface/imcregmodel.h"
#include "regression/settings/mclogregsettings.h"

#include <cstddef>
#include <cstdint>
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
struct MCPatternColumns;
}  // namespace detail
}  // namespace MCCommon

/// The design of a multinomial logistic regression, and its result. Of the K categories of the
/// dependent that were seen one is the reference; the model is log(p_t / p_ref) = x'b_t for each
/// other category t, where x is the design row of B columns. The B *basic* parameters are those
/// columns; *all* parameters are K - 1 copies of them, block after block, in the order of
/// GetDependCategories(), which has the reference last.
///
/// Rank deficiency isn't an error. It is decided once, on X'WX of the basic parameters, which is
/// swept in column order (Goodnight 1979): column k is redundant where tolerance * S0(k,k) >=
/// S(k,k), S0 being the matrix before any sweep, or where sweeping it would blow up a column swept
/// before. So of collinear columns the earlier ones are kept, in every block alike, and the
/// estimates of the others are 0.
///
/// Calls come in this order: constructor, SetDepCatInfo(), SetOffsets(), SetPatternOffsets(),
/// CreateParameters(), UpdateXPrimeX() for each row, IdentifyRedundancy(), ClearXPrimeXMatrix(),
/// SetInitialEstimates(), SetTotalWeight(), estimation, UncompressEstimates(), GetDResiduals() for
/// each row, FinishErrors(). A *record row* has its values where SetOffsets() was told, a *pattern
/// row* where SetPatternOffsets() was told; each reaches to every position told. Row operations
/// allocate nothing, provided that the caller's vectors have room, and use scratch of this object
/// and of the factor tables, also where they are const: a model serves one thread.
class MC_EXPORT MCLogModel : public IMCRegModel {
public:
  /// Both are borrowed for the life of the model.
  MCLogModel(const MCLogRegSettings& settings, MCCancelInfo& cancelInfo);

  /// A copy that can score, with the other's design, estimates and status, and borrowing what it
  /// borrows. It isn't a second fit: it has no matrix of its own, and neither AreParamsCreated()
  /// nor IsModelBuilt().
  MCLogModel(const MCLogModel& other);
  MCLogModel& operator=(const MCLogModel&) = delete;
  ~MCLogModel() override;

  const MCFactorTables* GetFactorTables() const override { return fFactorTables; }

  /// Makes the lists of parameters, from tables that have seen all rows, and the matrix. If the
  /// settings have an intercept it comes first, with effect index -1. The basic parameters are
  /// listed with the target category of block 0. A second call makes all anew, without any row.
  ///
  /// The stored error, or code 318 where there is none, without categories. Code 305 with discrete
  /// datum 0 the number of all parameters: more than GetMaxNMatrixRows(), which is then discrete
  /// datum 1, or no memory for the matrix, with that datum 0. Code 1 if a cancel cut the list
  /// short. After an error AreParamsCreated() is false and there is no matrix. Otherwise the stored
  /// status, which is the warning of SetDepCatInfo() if there was one.
  MCCommon::MCStatus CreateParameters() override;

  bool AreParamsCreated() const override { return fParamsCreated; }

  /// Adds a pattern row to X'WX with its frequency weight times its regression weight, either 1 if
  /// its position is negative. `indices`: one basic parameter per model effect, ascending; a
  /// negative one stands for a value of 0.0. A weight that isn't above 0 (as is NaN) adds nothing,
  /// but the row counts. False, and nothing done, unless parameters are created, the matrix is
  /// there, the model isn't built, the row isn't null, no cancel is pending and there are as many
  /// indices as effects.
  bool UpdateXPrimeX(const double* row, const std::vector<int>& indices) override;

  /// The same with the indices found by the row's factors, at the positions that the factor tables
  /// were told. False, and nothing added, too, if a combination of levels was never seen.
  bool UpdateXPrimeX(const double* row) override;

  /// Sweeps X'WX and takes redundancy from it. Code 309 if no row was added or there is no matrix,
  /// 310 if the model is built already: both at once, with nothing changed. Code 1 if a cancel is
  /// pending, or stopped the sweep; the columns that weren't swept count as redundant then. All of
  /// these are stored; otherwise the stored status. Where memory runs out the exception leaves the
  /// model as it was.
  MCCommon::MCStatus IdentifyRedundancy() override;

  bool IsModelBuilt() const override { return fModelBuilt; }

  /// Sizes `out` to one entry per parameter and sets the entry of block t and column j to
  /// (1 if the row's category is t's, else 0, less its probability) times column j times frequency
  /// weight; the regression weight plays no part. Adds that weight to the cell of the observed and
  /// the predicted category; not for a row whose category was never seen. Takes a record row.
  /// Does nothing at all while a cancel is pending, before parameters are created, without the
  /// position of a dependent, for a null row and for one that Score() can't predict.
  void GetDResiduals(std::vector<double>& out, const double* row) override;

  /// Closes the fit: the model counts as built unless an error is stored. Stores and answers code
  /// 308 if no row of GetDResiduals() had a weight other than 0, if the sample size is 0, or the
  /// total weight isn't above 0; otherwise the stored status.
  MCCommon::MCStatus FinishErrors() override;

  /// X'WX over the rows so far, GetNBasicParameters() rows; swept by IdentifyRedundancy(). Null
  /// before CreateParameters() and after ClearXPrimeXMatrix().
  const MCCommonMath::MCSymMatrix* GetXPrimeX() const override;

  /// One row per parameter, zero for redundant ones. Null before UncompressEstimates() and after
  /// ClearHessianGIMatrix().
  const MCCommonMath::MCSymMatrix* GetHessianGI() const override { return fHessianGI.get(); }

  const std::vector<MCRegrParameter>& GetParameters() const override { return fParameters; }
  const std::vector<MCRegrParameter>& GetBasicParams() const override { return fBasicParams; }
  int GetNParameters() const override { return static_cast<int>(fParameters.size()); }
  int GetNNonRedParams() const override { return fNNonRed; }
  int GetNBasicParameters() const override { return fNBasic; }
  int GetNBasicNonRed() const override { return fNBasicNonRed; }

  /// 0.0 from CreateParameters() on, the estimates from UncompressEstimates() on.
  const std::vector<double>& GetParamEstimates() const override { return fParamEstimates; }

  /// Without bits before IdentifyRedundancy().
  const MCCommonMath::MCBitSet& GetBasicRedundInfo() const override { return fBasicRedundancy; }
  const MCCommonMath::MCBitSet& GetRedundancyInfo() const override { return fRedundancy; }

  /// Categories with a weighted count above 0; not what the settings say.
  int GetDependentNCategs() const override { return static_cast<int>(fDependCategories.size()); }
  const std::vector<int>& GetDependCategories() const override { return fDependCategories; }
  const std::vector<int>& GetDepCatLocalInds() const override { return fDepCatLocalInds; }

  /// Destroy the matrix; null is harmless.
  void ClearXPrimeXMatrix() override;
  void ClearHessianGIMatrix() override;

  bool GetParamsForEffect(int effect, int& first, int& count) const override;

  /// Probabilities of the categories, in the order of GetDependCategories() (the vector is sized to
  /// K), and the code of the predicted one. Takes a record row without its dependent. `predicted`
  /// is -1 and every probability the missing value if a combination of levels was never seen, for
  /// a null row, while a cancel is pending and before parameters are made. The answer is OK always.
  ///
  /// Predicted is the category with the greatest linear predictor, the reference having 0.0. The
  /// others are gone through in order with the best so far: one above best + e, e the machine
  /// epsilon, is the new best, else one above best - e ties with it. Both bounds are rounded to
  /// doubles: from 4.0 on, and for every other double between 2.0 and 4.0, best - e is best itself,
  /// and equal predictors do not tie but the first is predicted. Of a tie the greatest weighted
  /// count decides, then the greatest unweighted count, then the smallest code.
  MCCommon::MCStatus Score(const double* row, std::vector<double>& probabilities,
                           int& predicted) const override;

  /// Spreads `estimates`, one per non-redundant parameter, over all, and `hessian` over a new
  /// matrix; redundant ones get 0.0. Code 1, stored, if a cancel is pending. Code 303, not stored
  /// and nothing changed, for fewer estimates than non-redundant parameters; further ones are left
  /// out. Code 305 with discrete datum 0 the number of parameters, stored and nothing else changed,
  /// if there is no memory for the matrix. Otherwise the stored status.
  MCCommon::MCStatus UncompressEstimates(const std::vector<double>& estimates,
                                         const MCCommonMath::MCSymMatrix& hessian) override;

  /// Writes the design row of the basic parameters, from a record row, and 0.0 behind it. The
  /// vector keeps its size. False, and nothing written, if it has fewer than GetNBasicParameters()
  /// entries, while a cancel is pending, for a null row, before parameters are made, and if a
  /// combination of levels was never seen.
  bool ExpandRow(std::vector<double>& designRow, const double* row) const override;

  /// The same as one basic parameter and one value per model effect, to which both vectors are
  /// sized.
  bool ExpandRow(const double* row, std::vector<int>& indices,
                 std::vector<double>& values) const override;

  /// The non-zero values of the non-redundant columns among `indices`, from a pattern row, in
  /// place of what the vectors held. Columns out of range, and all of them before
  /// IdentifyRedundancy(), are left out, as are all of a null row. True always. A value that is NaN
  /// isn't zero. `outIndices` must not be `indices`.
  bool ExpandAndCompressRow(const double* row, const std::vector<int>& indices, int& n,
                            std::vector<int>& outIndices,
                            std::vector<double>& outValues) const override;
  bool ExpandAndCompressRow(const double* row, int& n, std::vector<int>& outIndices,
                            std::vector<double>& outValues) const override;

  MCCommon::MCStatus GetStatus() const override { return fStatus; }
  void Display() const override;

  /// Borrows the tables for the life of the model and takes the categories of the dependent from
  /// them: those with a weighted count above 0, ascending, and last the reference, which is the
  /// settings' category if that was seen, the first one seen for -2, and otherwise the last one
  /// seen, with warning 319 if the settings name a category. Code 318, stored, for null tables or
  /// such that don't count the dependent, and for fewer than 2 categories. A stored error is
  /// answered at once. A second call takes the categories anew; the parameters made before are
  /// dropped.
  virtual MCCommon::MCStatus SetDepCatInfo(MCFactorTables* factorTables);

  /// Sizes `estimates` to GetNNonRedParams() and sets each intercept to the observed log odds of
  /// its category against the reference, log(weighted count / that of the reference), all else to
  /// 0.0. The stored error if there is one, else code 303 before parameters are created, 310 if
  /// the model is built, the stored status if a cancel is pending: `estimates` stay as they were.
  /// Code 303, all 0.0, if a category has no weight. None of these is stored.
  virtual MCCommon::MCStatus SetInitialEstimates(std::vector<double>& estimates) const;

  /// Most parameters in all that one model can have.
  static int GetMaxNMatrixRows() { return kMaxNMatrixRows; }

  const std::vector<int>& GetFactorOffsets() const { return fFactorOffsets; }

  /// Of pattern rows or of record rows.
  const std::vector<int>& GetCovariateOffsets(bool pattern) const {
    return pattern ? fPatternCovariateOffsets : fCovariateOffsets;
  }

  /// Code of the reference category; 0 with fewer than 2 categories.
  int GetDependentRefCateg() const;

  /// Weighted and unweighted counts in the order of GetDependCategories().
  const std::vector<double>& GetDependCatCounts() const { return fDependCatCounts; }
  const std::vector<double>& GetDependCatNCases() const { return fDependCatNCases; }

  /// Sums of frequency weights, K x K: rows by observed, columns by predicted category, in the
  /// order of GetDependCategories(). Null before CreateParameters().
  const MCCommonMath::MCRectMatrix* GetClassificationTable() const {
    return fClassificationTable.get();
  }

  /// Number of rows of the fit and sum of their frequency weights.
  void SetTotalWeight(double sampleSize, double totalWeight);

  /// Tells where in a record row the settings' factors and covariates stand, in the settings'
  /// order, and weights and dependent; a negative weight position means that there is no such
  /// weight. A covariate without a position, or with a negative one, is unknown. Called again it
  /// holds for the rows from then on. Where a row's factors are is what the factor tables were
  /// told: the factor positions serve GetFactorOffsets() alone.
  void SetOffsets(const std::vector<int>& factors, const std::vector<int>& covariates,
                  int freqWeight, int regrWeight, int dependent);

  /// The same for a pattern row.
  void SetPatternOffsets(const std::vector<int>& covariates, int freqWeight, int regrWeight,
                         int dependent);

  /// Value of a parameter's column for a row whose factor levels select it: the product of its
  /// covariates, each repeated as often as its power says, 1.0 without covariates. 0.0 if a
  /// covariate isn't one of the settings'. `pattern` tells which kind of row it is.
  double ComputeDesignRowValue2(const double* row, const MCRegrParameter& parameter,
                                bool pattern) const;

  /// Sets `columns` to the non-redundant ones among `indices` (ascending basic parameters, one per
  /// model effect), with positions in a pattern row. Those out of range are left out, and all of
  /// them before IdentifyRedundancy(). With these columns a pattern row gives what
  /// ExpandAndCompressRow() gives, but for values of 0.0. For the data handlers of the library.
  void DescribePattern(const std::vector<int>& indices,
                       MCCommon::detail::MCPatternColumns& columns) const;

private:
  /// The packed indices of a matrix of that many rows fit an int.
  static constexpr int kMaxNMatrixRows = 46340;

  MCCommon::MCStatus Fail(long code);
  MCCommon::MCStatus FailForSize(std::int64_t nParameters, long limit);
  int CountModelEffects() const;
  std::vector<int> MakeLookup(const std::vector<int>& positions) const;
  void CompileColumns();
  bool HasDesign() const { return fpRecordColumns != nullptr; }
  std::size_t NModelEffects() const { return static_cast<std::size_t>(fNModelEffects); }

  void ClearCategories();
  int ChooseReference(const std::vector<int>& seen);
  void ListCategories(std::vector<int> categories, int reference,
                      const MCFactorCounts::CategoryCounts& counts);
  void ClearParameters();
  bool ListParameters();
  MCCommon::MCStatus PrepareRows();

  bool IsTakingRows(const double* row) const;
  const std::vector<int>* FindIndices(const double* row) const;
  double PatternWeight(const double* row) const;
  bool FillEffectValues(const double* row, const std::vector<int>& indices, double weight);
  void AddEffectValues(const std::vector<int>& indices, double weight);
  int CompressedIndex(int basic) const;

  bool SweepColumns();
  void NumberColumns();

  double Predictor(std::size_t block) const;
  std::size_t FindLeader(const std::vector<double>& predictors) const;
  int ChooseCategory(const std::vector<double>& predictors, std::size_t leader) const;
  void CountObserved(int observed, int predicted, double weight);

  void DisplayLayouts() const;
  void DisplayCategories() const;
  void DisplayDesign() const;
  void DisplayResults() const;

  const MCLogRegSettings* fSettings;
  std::vector<int> fPatternCovariateOffsets;
  std::vector<int> fPatternCovariateLookup;
  int fPatternFreqOffset = -1;
  int fPatternRegrOffset = -1;
  int fPatternDepOffset = -1;
  int fPatternRowSize = 0;
  int fRowSize = 0;
  std::vector<int> fFactorOffsets;
  std::vector<int> fCovariateOffsets;
  std::vector<int> fCovariateLookup;
  int fFreqWeightOffset = -1;
  int fRegrWeightOffset = -1;
  int fDependentOffset = -1;
  std::vector<int> fDependCategories;
  std::vector<int> fDepCatLocalInds;
  std::vector<double> fDependCatCounts;
  std::vector<double> fDependCatNCases;
  const std::vector<MCModelEffect>* fModelEffects;
  int fNModelEffects = 0;
  MCFactorTables* fFactorTables = nullptr;
  std::unique_ptr<MCCommonMath::MCSymMatrix> fXPrimeX;
  int fRecordsAdded = 0;
  MCCommonMath::MCBitSet fBasicRedundancy;
  MCCommonMath::MCBitSet fRedundancy;
  std::unique_ptr<MCCommonMath::MCSymMatrix> fHessianGI;
  std::vector<MCRegrParameter> fParameters;
  std::vector<MCRegrParameter> fBasicParams;
  int fNBasic = 0;
  int fNBasicNonRed = 0;
  int fNNonRed = 0;
  std::vector<int> fBasicNonRedIndices;
  bool fParamsCreated = false;
  bool fModelBuilt = false;
  std::vector<double> fParamEstimates;
  mutable std::vector<double> fBasicDesignRow;  // the last record row expanded
  std::vector<double> fPredProbs;
  double fTotalWeight = 0.0;
  double fSampleSize = 0.0;
  int fNonZeroWeightRows = 0;
  std::vector<int> fFirstParamIndices;
  std::vector<int> fNEffectParams;
  std::unique_ptr<MCCommonMath::MCRectMatrix> fClassificationTable;
  MCCancelInfo* fCancelInfo;
  MCCommon::MCStatus fStatus;

  // Rows held back from fXPrimeX; it must go before the matrix that it borrows.
  std::unique_ptr<MCCommonMath::detail::MCCrossProduct> fpPendingRows;

  // The columns of the basic parameters in either layout; null while there are none.
  std::unique_ptr<MCCommon::detail::MCDesignColumns> fpRecordColumns;
  std::unique_ptr<MCCommon::detail::MCDesignColumns> fpPatternColumns;

  // Scratch of UpdateXPrimeX(): the row by model effects and, unless rows are sparse, in full.
  std::vector<double> fEffectValues;
  std::vector<double> fFullRow;
  bool fbSparseRows = false;
};
