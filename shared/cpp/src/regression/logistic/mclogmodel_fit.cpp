// SPDX-License-Identifier: Apache-2.0
#include "mcmath/detail/mccrossproduct.h"
#include "mcmath/detail/mcexplog.h"
#include "mcmath/detail/mcsweeprows.h"
#include "mcmath/mcmathfun.h"
#include "regression/design/detail/mcdesigncolumns.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mcmv.h"
#include "regression/logistic/mclogmodel.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>

using MCCommon::MCStatus;
using MCCommonMath::MCBitSet;
using MCCommonMath::MCMathFun;
using MCCommonMath::MCSymMatrix;

namespace {

// Two predictors that are no further apart tie.
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

}  // namespace

MCStatus MCLogModel::IdentifyRedundancy() {
  if (fRecordsAdded == 0) return Fail(MCCommon::MCS_NOT_PROCESSED);
  if (fModelBuilt) return Fail(MCCommon::MCS_ALREADY_BUILT);
  if (fXPrimeX == nullptr) return Fail(MCCommon::MCS_NOT_PROCESSED);
  // Room first: where memory runs out the matrix isn't consumed yet.
  std::vector<int> nonRedIndices(fBasicParams.size(), -1);
  MCBitSet redundancy(GetNParameters());
  const bool isSwept = !fCancelInfo->WillCancel() && SweepColumns();
  fBasicNonRedIndices.swap(nonRedIndices);
  fRedundancy = std::move(redundancy);
  NumberColumns();
  // What was skipped stays skipped, even if the query changes its mind.
  if (!isSwept || fCancelInfo->WillCancel()) return Fail(MCCommon::MCS_CANCELLED);
  return fStatus;
}

// False if a cancel stopped the sweep.
bool MCLogModel::SweepColumns() {
  fpPendingRows->Flush();
  std::vector<double> scale;
  fXPrimeX->GetDiagonal(scale);
  MCBitSet pivots(fNBasic);
  const int nSwept =
      MCCommonMath::detail::SweepRows(*fXPrimeX, fNBasic, fSettings->GetTolerance(), scale, pivots,
                                      [this] { return fCancelInfo->WillCancel(); });
  fBasicRedundancy = std::move(pivots);
  return nSwept == fNBasic;
}

// Numbers the columns that aren't redundant, in the first block and in all.
void MCLogModel::NumberColumns() {
  fNNonRed = 0;
  fNBasicNonRed = 0;
  for (int j = 0; j < fNBasic; ++j) {
    if (fBasicRedundancy.IsIn(j)) {
      fBasicNonRedIndices[static_cast<std::size_t>(j)] = fNBasicNonRed++;
    }
  }
  for (int i = 0; i < GetNParameters(); ++i) {
    if (!fBasicRedundancy.IsIn(i % fNBasic)) continue;
    fRedundancy.Set(i, true);
    ++fNNonRed;
  }
}

MCStatus MCLogModel::SetInitialEstimates(std::vector<double>& estimates) const {
  if (fStatus.IsError()) return fStatus;
  if (!fParamsCreated) return MCStatus(MCCommon::MCS_BAD_STATE, false);
  if (fModelBuilt) return MCStatus(MCCommon::MCS_ALREADY_BUILT, false);
  if (fCancelInfo->WillCancel()) return fStatus;
  estimates.assign(static_cast<std::size_t>(fNNonRed), 0.0);
  const bool haveWeight = std::all_of(fDependCatCounts.begin(), fDependCatCounts.end(),
                                      [](double count) { return count > 0.0; });
  if (!haveWeight) return MCStatus(MCCommon::MCS_BAD_STATE, false);
  if (fNBasicNonRed < 1 || !fSettings->GetInterceptUse()) return fStatus;
  for (std::size_t t = 0; t + 1 < fDependCatCounts.size(); ++t) {
    estimates[t * static_cast<std::size_t>(fNBasicNonRed)] =
        MCCommonMath::detail::Log(fDependCatCounts[t] / fDependCatCounts.back());
  }
  return fStatus;
}

MCStatus MCLogModel::UncompressEstimates(const std::vector<double>& estimates,
                                         const MCSymMatrix& hessian) {
  if (fCancelInfo->WillCancel()) return Fail(MCCommon::MCS_CANCELLED);
  if (static_cast<std::int64_t>(estimates.size()) < fNNonRed) {
    return MCStatus(MCCommon::MCS_BAD_STATE, false);
  }
  std::vector<double> all(fParameters.size(), 0.0);
  std::size_t next = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (fRedundancy.IsIn(static_cast<int>(i))) all[i] = estimates[next++];
  }
  auto inverse = std::make_unique<MCSymMatrix>();
  hessian.Expand(fRedundancy, *inverse);
  if (!inverse->IsValidMatrix()) return FailForSize(GetNParameters(), 0);
  fParamEstimates.swap(all);
  fHessianGI = std::move(inverse);
  return fStatus;
}

double MCLogModel::Predictor(std::size_t block) const {
  const int offset = static_cast<int>(block) * fNBasic;  // a place in fParamEstimates
  return MCMathFun::DDot(fNBasic, fBasicDesignRow, 0, 1, fParamEstimates, offset, 1);
}

// The first of the categories that are in the lead, gone through from the reference on.
std::size_t MCLogModel::FindLeader(const std::vector<double>& predictors) const {
  std::size_t leader = predictors.size() - 1;
  for (std::size_t t = 0; t + 1 < predictors.size(); ++t) {
    if (predictors[t] > predictors[leader] + kEpsilon) leader = t;
  }
  return leader;
}

// The leader, or one that came after it and ties with it. The bound is rounded to a double on
// purpose, see Score().
int MCLogModel::ChooseCategory(const std::vector<double>& predictors, std::size_t leader) const {
  const auto rank = [this](std::size_t t) {
    return std::make_tuple(fDependCatCounts[t], fDependCatNCases[t], -fDependCategories[t]);
  };
  const double bound = predictors[leader] - kEpsilon;
  const std::size_t last = predictors.size() - 1;
  std::size_t chosen = leader;
  for (std::size_t t = leader == last ? 0 : leader + 1; t < last; ++t) {
    if (predictors[t] > bound && rank(t) > rank(chosen)) chosen = t;
  }
  return fDependCategories[chosen];
}

MCStatus MCLogModel::Score(const double* row, std::vector<double>& probabilities,
                           int& predicted) const {
  const std::size_t nCategories = fDependCategories.size();
  if (!HasDesign() || !ExpandRow(fBasicDesignRow, row)) {
    predicted = -1;
    probabilities.assign(nCategories, MCMV::gMissingValue);
    return MCStatus();
  }
  probabilities.resize(nCategories);
  probabilities.back() = 0.0;
  for (std::size_t t = 0; t + 1 < nCategories; ++t) probabilities[t] = Predictor(t);
  const std::size_t leader = FindLeader(probabilities);
  predicted = ChooseCategory(probabilities, leader);
  const double best = probabilities[leader];
  double sum = 0.0;
  for (double& value : probabilities) {
    value = MCCommonMath::detail::Exp(value - best);
    sum += value;
  }
  for (double& value : probabilities) value /= sum;
  return MCStatus();
}

void MCLogModel::GetDResiduals(std::vector<double>& out, const double* row) {
  if (fCancelInfo->WillCancel() || !fParamsCreated || fDependentOffset < 0) return;
  int predicted = -1;
  static_cast<void>(Score(row, fPredProbs, predicted));
  if (predicted < 0) return;
  const double weight = fFreqWeightOffset >= 0 ? row[fFreqWeightOffset] : 1.0;
  const int observed = MCCommon::detail::TruncateToInt(0.5 + row[fDependentOffset]);
  out.resize(fParameters.size());
  auto next = out.begin();
  for (std::size_t t = 0; t + 1 < fDependCategories.size(); ++t) {
    const double indicator = fDependCategories[t] == observed ? 1.0 : 0.0;
    const double residual = indicator - fPredProbs[t];
    for (const double column : fBasicDesignRow) *next++ = residual * column * weight;
  }
  if (weight != 0.0) MCCommon::detail::CountUp(fNonZeroWeightRows);
  CountObserved(observed, predicted, weight);
}

void MCLogModel::CountObserved(int observed, int predicted, double weight) {
  const auto code = static_cast<std::size_t>(observed);  // a negative one is beyond any size
  const int row = code < fDepCatLocalInds.size() ? fDepCatLocalInds[code] : -1;
  if (row < 0) return;
  const int column = fDepCatLocalInds[static_cast<std::size_t>(predicted)];
  const double sum = fClassificationTable->GetElem(row, column);
  fClassificationTable->SetElem(row, column, sum + weight);
}

MCStatus MCLogModel::FinishErrors() {
  if (fNonZeroWeightRows == 0 || fSampleSize == 0.0 || !(fTotalWeight > 0.0)) {
    return Fail(MCCommon::MCS_NO_WEIGHT);
  }
  if (!fStatus.IsError()) fModelBuilt = true;
  return fStatus;
}
