// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/logistic/detail/mcpatterncolumns.h"
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/logistic/mclogmodel.h"
#include "regression/logistic/mcpatterntabulator.h"

#include <typeinfo>

using MCCommon::MCStatus;
using MCCommonMath::MCHashKey;

void MCPatternTabulator::SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) {
  fAccumStats = accumStats;
  fModel = model;
  fPatternAccum = nullptr;
  fPatternModel = nullptr;
  if (accumStats == nullptr || model == nullptr) return;
  // Not a derived class, which may have an answer of its own to each row.
  if (typeid(*accumStats) != typeid(MCAccumStatsLogistic)) return;
  if (typeid(*model) != typeid(MCLogModel)) return;
  fPatternAccum = static_cast<MCAccumStatsLogistic*>(accumStats);
  fPatternModel = static_cast<const MCLogModel*>(model);
}

void MCPatternTabulator::ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) {
  if (fAccumStats != nullptr) fAccumStats->Reset(method, checkSeparation);
}

void MCPatternTabulator::CleanStatsModel() {
  SetStatsModel(nullptr, nullptr);
}

void MCPatternTabulator::ReadKey(const MCHashKey& key, std::vector<int>& elements,
                                 std::vector<int>& localIndices) const {
  elements.assign(key.fData.get(), key.fData.get() + key.fSize);
  if (fbPacked) {
    fPacker.Unpack(localIndices, elements);
  } else {
    localIndices = elements;
  }
}

// Gives each pattern to usePattern(pattern, indices), with the parameter of each model effect,
// until an error stands. What the rows of a pattern share is worked out once.
template <class UsePattern>
void MCPatternTabulator::WalkPatterns(UsePattern usePattern) {
  if (fStatus.IsError()) return;
  std::vector<int> elements;
  std::vector<int> localIndices;
  std::vector<int> indices;
  fpRowPatternTable->ForEachEntry([&](const auto* pair) {
    if (fStatus.IsError()) return;
    ReadKey(*pair->fKey, elements, localIndices);
    indices = *fParameterOffsets;
    for (std::size_t l = 0; l < fBounds.size(); ++l) {
      indices[static_cast<std::size_t>((*fModelEffectIndices)[l])] += localIndices[l];
    }
    usePattern(*pair->fValue, indices);
  });
}

// Gives each stored row to useRow(row, indices), until an error stands or a cancel is pending.
template <class UseRow>
void MCPatternTabulator::WalkRows(UseRow useRow) {
  const auto stride = static_cast<std::size_t>(fNAnalysVars);
  WalkPatterns([&](const MCRowPatterns& pattern, const std::vector<int>& indices) {
    const std::vector<double>& rows = pattern.GetAllRecords();
    for (std::size_t begin = 0; begin < rows.size() && !fStatus.IsError(); begin += stride) {
      FailIfCancelled(false);
      if (!fStatus.IsError()) useRow(rows.data() + begin, indices);
    }
  });
}

MCStatus MCPatternTabulator::FillDesignMatrix(IMCRegModel& model) {
  if (!fbRowPatternsCreated) fStatus.Fail(MCCommon::MCS_BAD_STATE);
  WalkRows([this, &model](const double* row, const std::vector<int>& indices) {
    if (model.UpdateXPrimeX(row, indices)) return;
    // A cancel that comes after the poll is a reason of the model to refuse.
    FailIfCancelled(false);
    if (!fStatus.IsError()) fStatus.Fail(MCCommon::MCS_NOT_READY);
  });
  FailIfCancelled(false);
  return fStatus.Get();
}

MCStatus MCPatternTabulator::ComputeStatsForOptimizer(bool likelihoodOnly) {
  const bool isReady = fbRowPatternsCreated && fAccumStats != nullptr && fModel != nullptr;
  if (!isReady) fStatus.Fail(MCCommon::MCS_NOT_READY);
  if (fPatternAccum != nullptr) {
    AddPatterns(likelihoodOnly);
  } else {
    AddRows(likelihoodOnly);
  }
  FailIfCancelled(false);
  return fStatus.Get();
}

void MCPatternTabulator::AddRows(bool likelihoodOnly) {
  std::vector<int> columns;
  std::vector<double> values;
  const int dependent = fExtractor->GetDependentOffset();
  WalkRows([&](const double* row, const std::vector<int>& indices) {
    int nColumns = 0;
    fModel->ExpandAndCompressRow(row, indices, nColumns, columns, values);
    const int category = MCCommon::detail::TruncateToInt(row[dependent] + 0.5);
    const int answer =
        fAccumStats->UpdateForRow(columns, values, category, GetStoredWeight(row), likelihoodOnly);
    if (answer < 0) fStatus.Fail(MCCommon::MCS_NOT_READY);
  });
}

// The same sums, to the bit, with the same polls and refusals.
void MCPatternTabulator::AddPatterns(bool likelihoodOnly) {
  MCCommon::detail::MCPatternColumns columns;
  const MCCommon::detail::MCPatternLayout layout{static_cast<std::size_t>(fNAnalysVars),
                                                 fExtractor->GetDependentOffset(),
                                                 fFreqWeightOffset, fRegrWeightOffset};
  WalkPatterns([&](const MCRowPatterns& pattern, const std::vector<int>& indices) {
    fPatternModel->DescribePattern(indices, columns);
    const std::vector<double>& rows = pattern.GetAllRecords();
    const int answer = fPatternAccum->UpdateForPattern(
        columns, layout, rows.data(), rows.size() / layout.fStride, *fCancelInfo, likelihoodOnly);
    if (answer < 0) fStatus.Fail(MCCommon::MCS_NOT_READY);
    if (answer > 0) fStatus.Fail(MCCommon::MCS_CANCELLED);
  });
}

double MCPatternTabulator::GetStoredWeight(const double* row) const {
  double weight = fFreqWeightOffset >= 0 ? row[fFreqWeightOffset] : 1.0;
  if (fRegrWeightOffset >= 0) weight *= row[fRegrWeightOffset];
  return weight;
}
