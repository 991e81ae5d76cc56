// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mchashkey.h"
#include "mcmath/mchashtable.h"
#include "mcmath/mcpackedint.h"
#include "regression/design/mcbuildstatus.h"
#include "regression/design/mcfactortables.h"
#include "regression/design/mcrecordextractor.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mcexport.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/record.h"
#include "regression/frame/recorditerator.h"
#include "regression/interface/imcdatahandler.h"
#include "regression/logistic/mcrowpatterns.h"
#include "regression/settings/mclogregsettings.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class MCAccumStatsLogistic;
class MCLogModel;

namespace MCCommon {
namespace detail {
class MCPatternPlaces;
}
}  // namespace MCCommon

/// The data handler that reads the source twice and serves every iteration from memory. The first
/// pass fills the factor tables; the second groups the valid rows into *patterns*, by the local
/// parameter index of each local effect (see MCFactorTables), and keeps the extracted values of
/// every row. At the place of the dependent a stored row has, as a double, the local index of its
/// category instead of the code.
///
///     tabulator.FillFactorTable(source, tables);
///     tables.CreateParameterIndices();  // then the model's parameters and categories
///     source.NewPass();
///     tabulator.CreateRowPatterns(source, tables, model);
///     tabulator.FillDesignMatrix(model);
///     tabulator.SetStatsModel(&accumulator, &model);
///     tabulator.ResetAccumStats(method, checkSeparation);  // these two for each iteration
///     tabulator.ComputeStatsForOptimizer(false);
///
/// One standing status is answered by all operations; a pass or walk that finds it an error goes
/// over no row. Before each row a pass asks, in this order, for an error, for HasMore() and for a
/// cancel, and a walk for a cancel; both ask for a cancel once more at the end, unless a cancel has
/// ended them: that cancel is answered, code 1, though the query may have changed its mind.
///
/// Rows reach model and accumulator pattern by pattern: buckets of the pattern table in ascending
/// order, each from its head, and rows of one pattern as they were read. Sums are formed in this
/// order, which `usePacking` may change, and nothing else does.
///
/// Memory: the extracted values of the rows and some 120 bytes for each pattern, 150 if its key has
/// more than two elements. Where this object has made the first pass and the factors have up to
/// some thousand cells, each pattern takes just the room that its rows need.
class MC_EXPORT MCPatternTabulator : public IMCDataHandler {
public:
  /// Settings, extractor and cancel info are borrowed for the life of the tabulator and not to
  /// change. Where rows are extracted from a negative position, or none, every row is refused.
  /// `keepsRows` is not looked at: rows are always kept.
  MCPatternTabulator(const MCLogRegSettings& settings, const MCRecordExtractor& extractor,
                     MCCancelInfo& cancelInfo, bool keepsRows);
  MCPatternTabulator(const MCPatternTabulator&) = delete;
  MCPatternTabulator& operator=(const MCPatternTabulator&) = delete;
  ~MCPatternTabulator() override;

  void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) override;
  void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) override;
  void CleanStatsModel() override;

  /// Walks the stored rows and gives each to the accumulator: the sparse row that the model makes
  /// of it, the local index of its category, and the product of its weights. Code 313 without
  /// patterns, model or accumulator, and if the accumulator refuses a row, which ends the walk; 1
  /// for a cancel.
  MCCommon::MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) override;

  /// Empty: a tabulator raises no warning.
  const std::vector<MCCommon::MCStatus>& GetWarnings() const override;

  void Display() const override;

  /// The first pass, over the rows that `source` still has: each valid one goes to
  /// UpdateFactorTable() and counts as valid, also if the tables drop it. Code 307 for a source
  /// without rows, or if no row was valid (also when a cancel came first); 308 unless the total
  /// weight is above 0.0, which a NaN passes; 312 for a null record; 315 for a record that ends
  /// before a position of the settings or the extractor; 316 from the validation; 1 for a cancel.
  /// A further call tabulates further rows.
  virtual MCCommon::MCStatus FillFactorTable(MCCommon::RecordIterator& source,
                                             MCFactorTables& tables);

  /// The second pass: gives each valid row to ProcessRowPattern(). The tables' parameters must
  /// have been numbered; they are borrowed as long as patterns are walked or displayed, and not to
  /// change in that time. The model is asked for the categories of the dependent, not kept. Whether
  /// keys are packed is decided here by `usePacking`. Codes 307, 312, 315, 316 and 1 as in the
  /// first pass; 313, with the patterns as they are, if there are patterns already.
  virtual MCCommon::MCStatus CreateRowPatterns(MCCommon::RecordIterator& source,
                                               const MCFactorTables& tables,
                                               const IMCRegModel& model);

  /// Walks the stored rows and gives each to the model's UpdateXPrimeX(). Code 303 without
  /// patterns; 313 if the model refuses a row while no cancel is pending; 1 for a cancel.
  virtual MCCommon::MCStatus FillDesignMatrix(IMCRegModel& model);

  /// Stores one row, which isn't validated again. It is dropped, without a status, if the tables
  /// don't know a combination of its factor levels or if its dependent's code has no local index.
  /// `tables` must be those of CreateRowPatterns(). Code 314 for a record without values; 313
  /// before CreateRowPatterns() or if the tables are others; 315 as in the first pass. Memory
  /// exhaustion is thrown with no row added.
  virtual MCCommon::MCStatus ProcessRowPattern(const MCCommon::Record& record,
                                               const MCFactorTables& tables);

  /// Gives one row to UpdateAll() of the tables, whose answer isn't looked at. Code 314 for a
  /// record without values.
  MCCommon::MCStatus UpdateFactorTable(const MCCommon::Record& record, MCFactorTables& tables);

  /// The pattern of the local parameter indices `localIndices`, one for each local effect; null if
  /// there is none, also for a list of other length and before CreateRowPatterns(). It lives as
  /// long as the tabulator, or until CreateRowPatterns() begins anew after a failure.
  const MCRowPatterns* GetRowPatternsPtr(const std::vector<int>& localIndices) const;

private:
  template <class UseRow>
  bool ReadValidRows(MCCommon::RecordIterator& source, UseRow useRow);
  void FailIfCancelled(bool wasCancelled);

  void BeginPatterns(const MCFactorTables& tables, const IMCRegModel& model);
  void TakeTables(const MCFactorTables& tables, const IMCRegModel& model);
  void SetPacking();
  bool HasLocalIndices(const std::vector<int>& localIndices) const;
  void FillKey(const std::vector<int>& localIndices, std::vector<int>& elements,
               MCCommonMath::MCHashKey& key) const;
  int GetLocalCategory(const double* row) const;
  MCRowPatterns* FindOrAddPattern(const std::vector<int>& localIndices, const double* row);
  MCRowPatterns* PutPattern(const double* row);
  void StoreRow(MCRowPatterns& pattern, const double* row, int localCategory);

  template <class UsePattern>
  void WalkPatterns(UsePattern usePattern);
  template <class UseRow>
  void WalkRows(UseRow useRow);
  void ReadKey(const MCCommonMath::MCHashKey& key, std::vector<int>& elements,
               std::vector<int>& localIndices) const;
  double GetStoredWeight(const double* row) const;
  void AddRows(bool likelihoodOnly);
  void AddPatterns(bool likelihoodOnly);

  void DisplayEffects() const;
  void DisplayVariables() const;

  int fNFactorEffects = 0;
  int fNAllEffects = 0;
  const std::vector<int>* fModelEffectIndices = nullptr;
  const std::vector<int>* fLocalEffectIndices = nullptr;
  const std::vector<int>* fParameterOffsets = nullptr;
  std::vector<int> fBounds;
  std::vector<int> fPackedBounds;
  int fNPackedKey = 0;
  std::vector<int> fDependCategories;
  std::vector<int> fDepCatLocalInds;
  int fDependVar;
  const std::vector<MCConst::MCVariableType>* fVariableType;
  int fFreqWeightVar;
  int fRegrWeightVar;
  int fFreqWeightOffset;
  int fRegrWeightOffset;
  int fNAnalysVars;
  const MCRecordExtractor* fExtractor;
  std::unique_ptr<MCCommonMath::MCHashtable<MCRowPatterns>> fpRowPatternTable;
  std::unique_ptr<MCCommonMath::MCHashKey> fpKey;
  IMCAccumStats* fAccumStats = nullptr;
  int fRecordCount = 0;
  int fValidCount = 0;
  int fStoredRows = 0;
  bool fbFactorTableFilled = false;
  bool fbRowPatternsCreated = false;
  MCCancelInfo* fCancelInfo;
  MCCommonMath::MCPackedInt fPacker;
  const IMCRegModel* fModel = nullptr;
  MCBuildStatus fStatus;
  MCRegRecordValidator fValidator;

  // The accumulator and the model, if they are the library's own: these two take the rows of a
  // pattern together.
  MCAccumStatsLogistic* fPatternAccum = nullptr;
  const MCLogModel* fPatternModel = nullptr;

  bool fbPacked = false;          // whether the keys of the patterns are packed
  std::vector<int> fKeyElements;  // scratch of fpKey
  std::int64_t fRecordSize;       // values that a record must have
  std::vector<double> fExtract;   // scratch: the row to be stored
  std::unique_ptr<MCCommon::detail::MCPatternPlaces> fpPlaces;
};
