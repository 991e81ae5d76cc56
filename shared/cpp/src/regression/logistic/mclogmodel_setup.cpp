// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/design/detail/mcparameterlist.h"
#include "regression/logistic/mclogmodel.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

using MCCommon::MCStatus;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCRectMatrix;
using MCCommonMath::MCSymMatrix;
using MCCommonMath::detail::MCCrossProduct;

namespace {

constexpr int kFirstSeen = -2;

std::vector<int> SeenCategories(const MCFactorCounts::CategoryCounts& counts) {
  std::vector<int> seen;
  for (std::size_t code = 0; code < counts.size(); ++code) {
    if (counts[code].first > 0.0) seen.push_back(static_cast<int>(code));
  }
  return seen;
}

}  // namespace

MCStatus MCLogModel::SetDepCatInfo(MCFactorTables* factorTables) {
  if (fStatus.IsError()) return fStatus;
  fStatus = MCStatus();
  ClearParameters();
  ClearCategories();
  fFactorTables = factorTables;
  const MCFactorCounts::CategoryCounts* counts =
      factorTables == nullptr ? nullptr : factorTables->GetDependCountsPtr();
  if (counts == nullptr) return Fail(MCCommon::MCS_FEW_CATEGORIES);
  const std::vector<int> seen = SeenCategories(*counts);
  if (seen.size() < 2) return Fail(MCCommon::MCS_FEW_CATEGORIES);

  ListCategories(seen, ChooseReference(seen), *counts);
  return fStatus;
}

void MCLogModel::ClearCategories() {
  fDependCategories.clear();
  fDepCatLocalInds.clear();
  fDependCatCounts.clear();
  fDependCatNCases.clear();
  fPredProbs.clear();
}

// Stores the warning where the settings' category can't be taken.
int MCLogModel::ChooseReference(const std::vector<int>& seen) {
  const int wanted = fSettings->GetDependentRefCateg();
  if (std::binary_search(seen.begin(), seen.end(), wanted)) return wanted;
  if (wanted == kFirstSeen) return seen.front();
  if (wanted >= 0) fStatus = MCStatus(MCCommon::MCS_REFCAT_REPLACED, true);
  return seen.back();
}

// Made aside: where memory runs out there are no categories, and not some of them.
void MCLogModel::ListCategories(std::vector<int> categories, int reference,
                                const MCFactorCounts::CategoryCounts& counts) {
  const auto place = std::find(categories.begin(), categories.end(), reference);
  std::rotate(place, place + 1, categories.end());
  std::vector<int> localInds(counts.size(), -1);
  std::vector<double> weighted;
  std::vector<double> nCases;
  for (std::size_t t = 0; t < categories.size(); ++t) {
    const auto code = static_cast<std::size_t>(categories[t]);
    localInds[code] = static_cast<int>(t);
    weighted.push_back(counts[code].first);
    nCases.push_back(counts[code].second);
  }
  fPredProbs.assign(categories.size(), 0.0);
  fDependCategories.swap(categories);
  fDepCatLocalInds.swap(localInds);
  fDependCatCounts.swap(weighted);
  fDependCatNCases.swap(nCases);
}

MCStatus MCLogModel::CreateParameters() {
  if (fStatus.IsError()) return fStatus;
  if (fDependCategories.empty()) return Fail(MCCommon::MCS_FEW_CATEGORIES);
  ClearParameters();
  const std::int64_t nBlocks = GetDependentNCategs() - 1;
  const std::int64_t nParameters = fFactorTables->CreateParameterIndices() * nBlocks;
  if (nParameters > kMaxNMatrixRows) return FailForSize(nParameters, kMaxNMatrixRows);
  if (!ListParameters()) {
    ClearParameters();
    return Fail(MCCommon::MCS_CANCELLED);
  }
  return PrepareRows();
}

// Back to where no parameters are: all that rests on them goes too.
void MCLogModel::ClearParameters() {
  ClearXPrimeXMatrix();
  ClearHessianGIMatrix();
  fClassificationTable.reset();
  fpRecordColumns.reset();
  fpPatternColumns.reset();
  fParameters.clear();
  fBasicParams.clear();
  fFirstParamIndices.clear();
  fNEffectParams.clear();
  fParamEstimates.clear();
  fBasicNonRedIndices.clear();
  fBasicRedundancy = MCBitSet();
  fRedundancy = MCBitSet();
  fNBasic = fNBasicNonRed = fNNonRed = 0;
  fRecordsAdded = fNonZeroWeightRows = 0;
  fParamsCreated = fModelBuilt = false;
}

// False if a cancel cut the list short.
bool MCLogModel::ListParameters() {
  MCCommon::detail::MCParameterList list;
  const bool isComplete =
      MCCommon::detail::ListParameters(fSettings->GetInterceptUse(), *fModelEffects, *fFactorTables,
                                       *fCancelInfo, fDependCategories.front(), list);
  std::vector<MCRegrParameter> parameters(list.fParameters);
  for (std::size_t t = 1; t + 1 < fDependCategories.size(); ++t) {
    for (const MCRegrParameter& basic : list.fParameters) {
      parameters.push_back(basic);
      parameters.back().SetTargetCategory(fDependCategories[t]);
    }
  }
  fParameters.swap(parameters);
  fBasicParams.swap(list.fParameters);
  fFirstParamIndices.swap(list.fFirstParamIndices);
  fNEffectParams.swap(list.fNEffectParams);
  fNBasic = static_cast<int>(fBasicParams.size());
  fNModelEffects = CountModelEffects();
  return isComplete;
}

MCStatus MCLogModel::PrepareRows() {
  std::unique_ptr<MCSymMatrix> matrix(new (std::nothrow) MCSymMatrix(fNBasic));
  const int nCategories = GetDependentNCategs();
  std::unique_ptr<MCRectMatrix> table(new (std::nothrow) MCRectMatrix(nCategories, nCategories));
  if (matrix == nullptr || !matrix->IsValidMatrix() || table == nullptr ||
      !table->IsValidMatrix()) {
    return FailForSize(GetNParameters(), 0);
  }
  fBasicDesignRow.assign(fBasicParams.size(), 0.0);
  fParamEstimates.assign(fParameters.size(), 0.0);
  fEffectValues.assign(NModelEffects(), 0.0);
  fbSparseRows = MCCrossProduct::IsSparse(fNBasic, std::min(fNModelEffects, fNBasic));
  fFullRow.assign(fbSparseRows ? 0 : fBasicParams.size(), 0.0);
  auto pendingRows = std::make_unique<MCCrossProduct>(fNBasic, matrix->AsVector());
  CompileColumns();
  fpPendingRows = std::move(pendingRows);
  fXPrimeX = std::move(matrix);
  fClassificationTable = std::move(table);
  fParamsCreated = true;
  return fStatus;
}
