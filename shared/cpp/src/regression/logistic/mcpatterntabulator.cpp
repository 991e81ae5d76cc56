// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcpatterntabulator.h"

#include "regression/design/detail/readrecords.h"
#include "regression/design/detail/recordsize.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/logistic/detail/mcpatternplaces.h"
#include "regression/logistic/mclogisticflags.h"

#include <algorithm>
#include <limits>

using MCCommon::MCStatus;
using MCCommon::Record;
using MCCommon::RecordIterator;
using MCCommonMath::MCHashKey;

namespace {

// Without any position there is no place for the dependent, so no record is long enough.
std::int64_t SizeToExtract(const MCRecordExtractor& extractor) {
  const std::vector<int>& positions = extractor.GetAllRecordIndices();
  return MCCommon::detail::SizeToRead(positions.empty() ? std::vector<int>{-1} : positions);
}

// The validator goes by the roles of positions, which settings forget where memory runs out.
std::int64_t SizeToProcess(const MCLogRegSettings& settings, const MCRecordExtractor& extractor) {
  return std::max({static_cast<std::int64_t>(settings.GetVariableTypes().size()),
                   MCCommon::detail::SizeToRead(settings.GetDependent()),
                   MCCommon::detail::SizeToRead(settings.GetFactors()), SizeToExtract(extractor)});
}

}  // namespace

MCPatternTabulator::MCPatternTabulator(const MCLogRegSettings& settings,
                                       const MCRecordExtractor& extractor, MCCancelInfo& cancelInfo,
                                       bool /*keepsRows*/)
    : fDependVar(settings.GetDependent()),
      fVariableType(&settings.GetVariableTypes()),
      fFreqWeightVar(settings.GetFrequencyWeightVar()),
      fRegrWeightVar(settings.GetRegrWeightVar()),
      fFreqWeightOffset(extractor.GetFreqWeightOffset()),
      fRegrWeightOffset(extractor.GetRegrWeightOffset()),
      fNAnalysVars(static_cast<int>(extractor.GetAllRecordIndices().size())),
      fExtractor(&extractor),
      fCancelInfo(&cancelInfo),
      fValidator(settings.GetVariableTypes(), settings.GetFactors(), settings.GetFactorSizes(),
                 settings.GetDependentNCategs()),
      fRecordSize(SizeToProcess(settings, extractor)),
      fExtract(extractor.GetAllRecordIndices().size()),
      fpPlaces(std::make_unique<MCCommon::detail::MCPatternPlaces>(settings.GetFactors(),
                                                                   settings.GetFactorSizes())) {}

MCPatternTabulator::~MCPatternTabulator() = default;

const std::vector<MCStatus>& MCPatternTabulator::GetWarnings() const {
  return fStatus.GetWarnings();
}

// Gives the valid rows to useRow and counts them. Whether a cancel ended the pass.
template <class UseRow>
bool MCPatternTabulator::ReadValidRows(RecordIterator& source, UseRow useRow) {
  const auto processRecord = [this, &useRow](const Record& record) {
    if (record.Size() < fRecordSize) return fStatus.Fail(MCCommon::MCS_RECORD_SHORT);
    MCCommon::detail::CountUp(fRecordCount);
    if (!fValidator.IsValidRecord(record, fStatus.Get())) return;
    const MCStatus answer = useRow(record);
    if (!answer.IsOK()) fStatus.Take(answer);
    if (!fStatus.IsError()) MCCommon::detail::CountUp(fValidCount);
  };
  return MCCommon::detail::ReadRecords(source, *fCancelInfo, MCCommon::MCS_RECORD_NULL,
                                       fStatus.Get(), processRecord);
}

// A cancel that ended a loop counts, whatever a query would say now.
void MCPatternTabulator::FailIfCancelled(bool wasCancelled) {
  if (fStatus.IsError()) return;
  if (wasCancelled || fCancelInfo->WillCancel()) fStatus.Fail(MCCommon::MCS_CANCELLED);
}

MCStatus MCPatternTabulator::FillFactorTable(RecordIterator& source, MCFactorTables& tables) {
  if (!source.HasMore()) fStatus.Fail(MCCommon::MCS_NO_DATA);
  if (fbFactorTableFilled) fStatus.Fail(MCCommon::MCS_BAD_STATE);
  fpPlaces->BeginCounting(tables);
  const bool wasCancelled = ReadValidRows(
      source, [this, &tables](const Record& record) { return UpdateFactorTable(record, tables); });
  if (!fStatus.IsError() && fValidCount == 0) fStatus.Fail(MCCommon::MCS_NO_DATA);
  if (!fStatus.IsError() && tables.GetTotalWeight() <= 0.0) fStatus.Fail(MCCommon::MCS_NO_WEIGHT);
  FailIfCancelled(wasCancelled);
  return fStatus.Get();
}

MCStatus MCPatternTabulator::UpdateFactorTable(const Record& record, MCFactorTables& tables) {
  if (record.GetAll() == nullptr) {
    fStatus.Fail(MCCommon::MCS_RECORD_EMPTY);
  } else if (tables.UpdateAll(record) && record.Size() >= fRecordSize) {
    fpPlaces->Count(record.GetAll());
  }
  return fStatus.Get();
}

MCStatus MCPatternTabulator::CreateRowPatterns(RecordIterator& source, const MCFactorTables& tables,
                                               const IMCRegModel& model) {
  if (fbRowPatternsCreated) {
    fStatus.Fail(MCCommon::MCS_NOT_READY);
    return fStatus.Get();
  }
  fRecordCount = 0;
  fValidCount = 0;
  fStoredRows = 0;
  BeginPatterns(tables, model);
  if (!source.HasMore()) fStatus.Fail(MCCommon::MCS_NO_DATA);
  const bool wasCancelled = ReadValidRows(
      source, [this, &tables](const Record& record) { return ProcessRowPattern(record, tables); });
  if (!fStatus.IsError() && fValidCount == 0) fStatus.Fail(MCCommon::MCS_NO_DATA);
  FailIfCancelled(wasCancelled);
  fbRowPatternsCreated = !fStatus.IsError();
  fpPlaces->Clear();
  return fStatus.Get();
}

// The key comes last: without it no row is stored, should memory run out on the way.
void MCPatternTabulator::BeginPatterns(const MCFactorTables& tables, const IMCRegModel& model) {
  fpKey.reset();
  fpRowPatternTable.reset();
  TakeTables(tables, model);
  SetPacking();
  fpPlaces->BeginPatterns(tables, fBounds);
  fpRowPatternTable = std::make_unique<MCCommonMath::MCHashtable<MCRowPatterns>>();
  fpKey = std::make_unique<MCHashKey>(fNPackedKey);
}

void MCPatternTabulator::TakeTables(const MCFactorTables& tables, const IMCRegModel& model) {
  fDependCategories = model.GetDependCategories();
  fDepCatLocalInds = model.GetDepCatLocalInds();
  fModelEffectIndices = &tables.GetModelEffectIndices();
  fLocalEffectIndices = &tables.GetLocalEffectIndices();
  fParameterOffsets = &tables.GetParameterOffsets();
  fNFactorEffects = static_cast<int>(fModelEffectIndices->size());
  fNAllEffects = static_cast<int>(fLocalEffectIndices->size());
  fBounds.clear();
  for (const int effect : *fModelEffectIndices) {
    // An effect without parameters takes part in no row, but a position of a key has some value.
    fBounds.push_back(std::max(tables.GetNEffectParameters(effect), 1));
  }
}

// The switch is read here alone: keys are to be read as they were made.
void MCPatternTabulator::SetPacking() {
  fbPacked = usePacking && !fBounds.empty();
  if (fbPacked) {
    fPacker.SetForSequence(fNFactorEffects, 0, fBounds);
    // The bounds lie just outside the ranges that they are the bounds of, hence no check.
    fPacker.Pack(fBounds, fPackedBounds, false);
  } else {
    fPackedBounds = fBounds;
  }
  fNPackedKey = static_cast<int>(fPackedBounds.size());
}

MCStatus MCPatternTabulator::ProcessRowPattern(const Record& record, const MCFactorTables& tables) {
  const double* row = record.GetAll();
  if (row == nullptr) {
    fStatus.Fail(MCCommon::MCS_RECORD_EMPTY);
  } else if (!fpKey) {
    fStatus.Fail(MCCommon::MCS_NOT_READY);
  } else if (record.Size() < fRecordSize) {
    fStatus.Fail(MCCommon::MCS_RECORD_SHORT);
  }
  if (fStatus.IsError()) return fStatus.Get();
  bool allFound = false;
  const std::vector<int>& localIndices = tables.GetRowLocalParamIndices(row, allFound);
  const int localCategory = allFound ? GetLocalCategory(row) : -1;
  if (localCategory < 0) return fStatus.Get();
  MCRowPatterns* pattern = FindOrAddPattern(localIndices, row);
  if (pattern == nullptr) {
    fStatus.Fail(MCCommon::MCS_NOT_READY);
  } else {
    StoreRow(*pattern, row, localCategory);
  }
  return fStatus.Get();
}

// Place of the dependent's category, -1 if it was never seen. The number of categories is a code
// that passes the validation, and has none.
int MCPatternTabulator::GetLocalCategory(const double* row) const {
  const int category = MCCommon::detail::TruncateToInt(row[fDependVar] + 0.5);
  if (category < 0 || static_cast<std::size_t>(category) >= fDepCatLocalInds.size()) return -1;
  return fDepCatLocalInds[static_cast<std::size_t>(category)];
}

// Indices of other tables could not be told apart once they are packed.
bool MCPatternTabulator::HasLocalIndices(const std::vector<int>& localIndices) const {
  return std::equal(localIndices.begin(), localIndices.end(), fBounds.begin(), fBounds.end(),
                    [](int index, int bound) { return index >= 0 && index < bound; });
}

void MCPatternTabulator::FillKey(const std::vector<int>& localIndices, std::vector<int>& elements,
                                 MCHashKey& key) const {
  if (fbPacked) {
    fPacker.Pack(localIndices, elements, false);
  } else {
    elements = localIndices;
  }
  std::copy(elements.begin(), elements.end(), key.fData.get());
  key.ComputeHash();
}

// Null if the indices are not those of the tables that the patterns are made for.
MCRowPatterns* MCPatternTabulator::FindOrAddPattern(const std::vector<int>& localIndices,
                                                    const double* row) {
  MCRowPatterns* pattern = fpPlaces->Find(row, localIndices);
  if (pattern != nullptr) return pattern;
  if (!HasLocalIndices(localIndices)) return nullptr;
  FillKey(localIndices, fKeyElements, *fpKey);
  const auto* pair = fpRowPatternTable->Get(fpKey.get());
  pattern = pair == nullptr ? PutPattern(row) : pair->fValue;
  fpPlaces->Set(row, localIndices, pattern);
  return pattern;
}

// Puts a pattern under the present key, with room for as many rows as the first pass has counted
// in the cell of this one. Most builds have few patterns of many rows: with the room known the
// values lie in memory once, and never move.
MCRowPatterns* MCPatternTabulator::PutPattern(const double* row) {
  const std::size_t nRows = std::max<std::size_t>(fpPlaces->CountOf(row), 1);
  std::unique_ptr<MCRowPatterns> pattern = fpPlaces->TakeNewPattern();
  pattern->Reserve(nRows * static_cast<std::size_t>(fNAnalysVars));
  auto key = std::make_unique<MCHashKey>(*fpKey);
  fpRowPatternTable->Put(key.get(), pattern.get());
  static_cast<void>(key.release());
  return pattern.release();
}

// The row is put together aside: the place where a pattern's rows end is in no cache.
void MCPatternTabulator::StoreRow(MCRowPatterns& pattern, const double* row, int localCategory) {
  const std::vector<int>& positions = fExtractor->GetAllRecordIndices();
  for (std::size_t i = 0; i < fExtract.size(); ++i) fExtract[i] = row[positions[i]];
  fExtract[static_cast<std::size_t>(fExtractor->GetDependentOffset())] = localCategory;
  pattern.AddRow(fExtract);
  MCCommon::detail::CountUp(fStoredRows);
}

const MCRowPatterns* MCPatternTabulator::GetRowPatternsPtr(
    const std::vector<int>& localIndices) const {
  if (!fpRowPatternTable || !HasLocalIndices(localIndices)) return nullptr;
  MCHashKey key(fNPackedKey);
  std::vector<int> elements;
  FillKey(localIndices, elements, key);
  const auto* pair = fpRowPatternTable->Get(&key);
  return pair == nullptr ? nullptr : pair->fValue;
}
