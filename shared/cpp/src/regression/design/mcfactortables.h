// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mchashkey.h"
#include "mcmath/mchashtable.h"
#include "regression/design/mcfactorcounts.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace MCCommon {
namespace detail {
class MCParameterGrid;
}
}  // namespace MCCommon

/// Numbers the parameters of a design from the data, and finds those of a row. In one pass over
/// the valid rows it records which combinations of factor levels occur in each model effect;
/// afterwards each combination that was seen becomes one parameter. A model effect without factors
/// (an intercept, a product of covariates) always has one. Beside that it keeps the weighted means
/// of covariates and the total weights.
///
/// Within an effect parameters ascend by the level of its first factor, then of its second, and so
/// on; effects follow each other without gaps. A *global* parameter index counts over all model
/// effects, a *local* one within its effect; a *local effect* is a model effect with factors. All
/// indices count from 0.
///
/// Calls come in this order: constructor, SetRegrWeightVar(), SetModelEffectFactors(),
/// SetCovariates(), UpdateAll() for each row, CreateParameterIndices() once, then lookups:
///
///     tables.SetModelEffectFactors({{}, {0}, {0, 1}}, {0, 1});  // intercept, A, A*B
///     while (source.HasMore()) tables.UpdateAll(*source.Next());
///     const int nParameters = tables.CreateParameterIndices();
///
/// Lookups are const but write scratch of the object, to which their results refer: a result is
/// valid until the next lookup, and an object serves one thread. Lookups allocate nothing;
/// UpdateAll() allocates only for a combination that it meets first.
class MC_EXPORT MCFactorTables : public MCFactorCounts {
public:
  /// List of the entries of one effect's table, borrowed from it.
  using HashPairs = std::vector<const MCCommonMath::MCHashPair<int>*>;

  /// Arguments as for MCFactorCounts. There are no effects and no covariates at first.
  MCFactorTables(const std::vector<int>& factors, const std::vector<int>& factorSizes,
                 int weightVar, int dependentVar, int nDepCategories, int lowestCategory,
                 int offsetVar, double offsetValue, MCConst::MCOffsetType offsetType);
  MCFactorTables(const MCFactorTables&) = delete;
  MCFactorTables& operator=(const MCFactorTables&) = delete;
  virtual ~MCFactorTables();

  /// Record position of the regression weight, negative for none (as at first).
  void SetRegrWeightVar(int regrWeightVar);

  int GetNModelEffects() const { return fNModelEffects; }

  /// Per model effect the record positions of its factors, as they were installed.
  const std::vector<std::vector<int>>& GetModelEffectFactors() const { return fModelEffectFactors; }

  /// Per model effect the global index of its first parameter.
  const std::vector<int>& GetParameterOffsets() const { return fParameterOffsets; }

  /// Per local effect its model effect.
  const std::vector<int>& GetModelEffectIndices() const { return fModelEffectIndices; }

  /// Per model effect its local effect, -1 if it has no factors.
  const std::vector<int>& GetLocalEffectIndices() const { return fLocalEffectIndices; }

  int GetNCovariates() const { return fNCovariates; }

  /// Sum of the frequency weights of the counted rows.
  double GetTotalWeight() const { return fTotalWeight; }

  /// Sum of frequency weight times regression weight of the counted rows.
  double GetTotalRegrWeight() const { return fTotalRegrWeight; }

  /// Number of counted rows, unweighted.
  double GetSampleSize() const { return fSampleSize; }

  /// Installs the model effects in place of earlier ones: `modelEffectFactors` holds for each the
  /// record positions of its factors in the effect's own order, none for an intercept or an effect
  /// of covariates alone. `rowFactorIndices` tells for each factor of the constructor where the
  /// rows given to the row lookups hold it; a factor without an entry, or with a negative one, is
  /// never found there.
  ///
  /// An effect that names a position which is none of the factors' can't be tabulated: it gets no
  /// parameter, its combination is never found, and UpdateAll() answers false.
  /// Counts, totals and means stay. Memory exhaustion is thrown; the object is left with the
  /// effects of before or without any.
  void SetModelEffectFactors(const std::vector<std::vector<int>>& modelEffectFactors,
                             const std::vector<int>& rowFactorIndices);

  /// Builds the empty tables of the installed effects; SetModelEffectFactors() calls it.
  void SetFactorTables();

  /// Record positions whose weighted means are kept. The means begin anew with 0.0.
  void SetCovariates(const std::vector<int>& covariateIndices);

  /// Tabulates one row. False if a factor's level is out of range, with the row's other factors
  /// counted and nothing else, or the dependent's, with the factors counted and nothing else.
  /// False, too, if the combination of an effect could not be recorded; the row counts otherwise.
  /// False with nothing changed if the record has no value at a position that is to be read.
  /// Memory exhaustion is thrown; the row is then counted in part.
  virtual bool UpdateAll(const MCCommon::Record& record);

  /// Records one combination: refreshes the hash of `key` and, if `table` doesn't hold it yet,
  /// puts a copy there with the value 0 and appends the new entry to `pairs`. False if `table` or
  /// `pairs` is null. Memory exhaustion is thrown with both unchanged.
  static bool UpdateHashtable(MCCommonMath::MCHashtable<int>* table, HashPairs* pairs,
                              MCCommonMath::MCHashKey& key);

  /// Numbers the parameters and answers how many there are. Lookups before this answer 0 for a
  /// combination that was seen.
  virtual int CreateParameterIndices();

  /// Number of parameters of a model effect: 1 without factors, 0 out of range and before
  /// CreateParameterIndices().
  int GetNEffectParameters(int effect) const;

  /// The value stored under `key`, whose hash is refreshed; -1 if there is none or `table` is null.
  static int GetParameterIndex(const MCCommonMath::MCHashtable<int>* table,
                               MCCommonMath::MCHashKey& key);

  /// Global parameter index of each model effect for the levels `factorValues`, in the order of
  /// the constructor's factors; -1 for a combination that was never seen, and `allFound` is then
  /// false. An effect whose levels a short list lacks isn't found.
  const std::vector<int>& GetParameterIndices(const std::vector<int>& factorValues,
                                              bool& allFound) const;

  /// The same for one model effect; -1 out of range.
  int GetEffectParameterIndex(int effect, const std::vector<int>& factorValues) const;

  /// The same for a row of values, at the positions that SetModelEffectFactors() was told. `row`
  /// must reach to the last of them; null finds no effect with factors.
  const std::vector<int>& GetRowParameterIndices(const double* row, bool& allFound) const;

  /// Local parameter index of each local effect for a row. Meaningless if `allFound` is false.
  const std::vector<int>& GetRowLocalParamIndices(const double* row, bool& allFound) const;

  /// Sets `out` to the category codes of one parameter, in the order of the effect's factors, and
  /// to nothing for an effect without factors. False, with `out` unchanged, if `effect` or
  /// `localParam` is out of range.
  bool GetParameterFactorValues(std::vector<int>& out, int effect, int localParam) const;

  /// The means of the covariates, weighted by frequency weight times regression weight; missing
  /// values if the total weight isn't above 0.0. To be called when all rows are tabulated: the
  /// first call finishes the means.
  const std::vector<double>& GetCovariateMeans();

  /// The model effect whose parameters fill the smallest part of the cells that its factors'
  /// active categories could make, the first of equals; -1 if no cell of any effect is empty.
  int GetIncompleteEffectIndex() const;

  void Display() const;

private:
  void ClearTables();
  void MakeTables();
  void AddLocalEffect(int effect);
  int GetLocalFactor(int position) const;
  void ComputeSizeToUpdate();

  bool CountLevels(const double* row, double weight);
  bool UpdateLocalEffects();
  void UpdateCovariateMeans(const double* row, double weight);

  bool IsModelEffect(int effect) const { return effect >= 0 && effect < fNModelEffects; }
  bool FillKey(std::size_t localEffect, const std::vector<int>& factorValues) const;
  int FindLocalEffect(std::size_t localEffect, const std::vector<int>& factorValues) const;
  void ReadFactorValues(const double* row) const;

  void DisplayLocalEffects() const;

  std::vector<std::vector<int>> fModelEffectFactors;
  int fNModelEffects = 0;
  int fNEffects = 0;
  std::vector<int> fEffectFactors;
  std::vector<int> fEffectNFactors;
  std::vector<int> fEffectCumFactors;
  mutable std::vector<MCCommonMath::MCHashKey> fHashKeys;
  std::vector<std::unique_ptr<MCCommonMath::MCHashtable<int>>> fHashtables;
  std::vector<HashPairs> fHashPairs;
  std::vector<int> fLocalFactorIndices;
  mutable std::vector<int> fFactorValues;
  mutable std::vector<int> fParameterIndices;
  mutable std::vector<int> fLocalParamIndices;
  std::vector<int> fLocalEffectIndices;
  std::vector<int> fModelEffectIndices;
  std::vector<int> fNParameters;
  std::vector<int> fParameterOffsets;
  std::vector<int> fRowFactorIndices;
  std::vector<int> fCovariateIndices;
  int fRegrWeightVar = -1;
  int fNCovariates = 0;
  std::vector<double> fCovariateMeans;
  bool fMeansComputed = false;
  double fTotalWeight = 0.0;
  double fTotalRegrWeight = 0.0;
  double fSampleSize = 0.0;

  std::vector<MCCommon::detail::MCParameterGrid> fCells;  // per local effect
  std::vector<double> fCovariateValues;                   // of the current row, side by side
  std::int64_t fSizeToUpdate;  // values that a record must have for UpdateAll()
};
