// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactorcounts.h"

#include "regression/design/detail/mcfactorcounts_rows.h"
#include "regression/design/detail/recordsize.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <tuple>

namespace {

using CategoryCounts = MCFactorCounts::CategoryCounts;

CategoryCounts MakeCounts(int nCategories) {
  return CategoryCounts(static_cast<std::size_t>(std::max(nCategories, 0)), {0.0, 0.0});
}

// One size for each factor, 0 where the caller gave none that counts.
std::vector<int> SizesOf(std::size_t nFactors, std::vector<int> sizes) {
  sizes.resize(nFactors, 0);
  for (int& size : sizes) size = std::max(size, 0);
  return sizes;
}

void DisplayCounts(const std::string& which, const CategoryCounts& counts) {
  std::vector<double> weighted;
  std::vector<double> unweighted;
  for (const auto& [weightedCount, count] : counts) {
    weighted.push_back(weightedCount);
    unweighted.push_back(count);
  }
  MCComponentDisplay::DisplayDV("Vector of weighted case counts for categories of " + which,
                                weighted, false);
  MCComponentDisplay::DisplayDV("Vector of unweighted case counts for categories of " + which,
                                unweighted, false);
}

}  // namespace

MCFactorCounts::MCFactorCounts(const std::vector<int>& factors, const std::vector<int>& factorSizes,
                               int weightVar, int dependentVar, int nDepCategories,
                               int lowestCategory, int offsetVar, double offsetValue,
                               MCConst::MCOffsetType offsetType)
    : fFactorIndices(factors),
      fFactorSizes(SizesOf(factors.size(), factorSizes)),
      fNFactors(static_cast<int>(factors.size())),
      fWeightVar(weightVar),
      fDependentVar(dependentVar),
      fNDepCategories(nDepCategories),
      fLowestCategory(lowestCategory),
      fOffsetVar(offsetVar),
      fOffsetValue(offsetValue),
      fOffsetType(offsetType),
      fSizeToCount(std::max(fWeightVar, -1) + std::int64_t{1}) {
  fCounts.reserve(fFactorSizes.size());
  for (const int size : fFactorSizes) fCounts.push_back(MakeCounts(size));
  for (const int position : fFactorIndices) {
    fSizeToCount = std::max(fSizeToCount, SizeToRead(position));
  }
  if (fDependentVar < 0 || fNDepCategories <= 0) return;
  fDepCounts = MakeCounts(fNDepCategories);
  fSizeToCount = std::max(fSizeToCount, SizeToRead(fDependentVar));
}

MCFactorCounts& MCFactorCounts::operator=(const MCFactorCounts& other) {
  const auto fields = [](MCFactorCounts& counts) {
    return std::tie(counts.fFactorIndices, counts.fFactorSizes, counts.fNFactors, counts.fWeightVar,
                    counts.fDependentVar, counts.fNDepCategories, counts.fLowestCategory,
                    counts.fCounts, counts.fDepCounts, counts.fDepCountsWithOffset,
                    counts.fOffsetVar, counts.fOffsetValue, counts.fOffsetType,
                    counts.fSizeToCount);
  };
  // All or nothing: fields of two objects would not fit each other.
  MCFactorCounts copy(other);
  auto mine = fields(*this);
  auto theirs = fields(copy);
  mine.swap(theirs);
  return *this;
}

std::int64_t MCFactorCounts::SizeToRead(int position) {
  return MCCommon::detail::SizeToRead(position);
}

int MCFactorCounts::GetNCategories(int factor) const {
  return IsFactor(factor) ? fFactorSizes[static_cast<std::size_t>(factor)] : -1;
}

const CategoryCounts* MCFactorCounts::GetCountsPtr(int factor) const {
  return IsFactor(factor) ? &fCounts[static_cast<std::size_t>(factor)] : nullptr;
}

const CategoryCounts* MCFactorCounts::GetDependCountsPtr() const {
  return fDepCounts ? &*fDepCounts : nullptr;
}

const CategoryCounts* MCFactorCounts::GetDepCountsWithOffsetPtr() const {
  return fDepCountsWithOffset ? &*fDepCountsWithOffset : nullptr;
}

int MCFactorCounts::GetNActiveCategories(int factor) const {
  const CategoryCounts* counts = GetCountsPtr(factor);
  if (counts == nullptr) return -1;
  return static_cast<int>(std::count_if(counts->begin(), counts->end(),
                                        [](const auto& count) { return count.first > 0.0; }));
}

void MCFactorCounts::KeepOffsetSums() {
  if (fDepCounts) fDepCountsWithOffset = MakeCounts(fNDepCategories);
}

bool MCFactorCounts::ReadsOffset() const {
  return fOffsetType == MCConst::MC_OFFSET_VARIABLE && fOffsetVar >= 0;
}

double MCFactorCounts::GetOffset(const double* row) const {
  if (ReadsOffset()) return row[fOffsetVar];
  return fOffsetType == MCConst::MC_OFFSET_FIXED ? fOffsetValue : 0.0;
}

bool MCFactorCounts::Update(const MCCommon::Record& record) {
  const std::int64_t needed =
      ReadsOffset() ? std::max(fSizeToCount, SizeToRead(fOffsetVar)) : fSizeToCount;
  if (record.Size() < needed) return false;
  const double* row = record.GetAll();
  const double weight = GetFrequencyWeight(row);
  const double offset = GetOffset(row);
  bool inRange = true;
  for (int i = 0; i < fNFactors; ++i) {
    if (CountFactor(i, row, weight) == kOutOfRange) inRange = false;
  }
  if (!inRange) return false;
  const int level = CountDependent(row, weight);
  if (level == kOutOfRange) return false;
  if (fDepCountsWithOffset) {
    std::pair<double, double>& sums = (*fDepCountsWithOffset)[static_cast<std::size_t>(level)];
    sums.first += weight * offset;
    sums.second += weight;
  }
  return true;
}

void MCFactorCounts::DisplayFields(const char* weightLabel) const {
  using namespace MCComponentDisplay;
  DisplayIV("Vector of factor indices", fFactorIndices);
  DisplayIV("Vector of factor numbers of categories", fFactorSizes);
  DisplayI("The number of factors", fNFactors);
  DisplayI(weightLabel, fWeightVar);
  DisplayI("Index of the dependent categorical variable", fDependentVar);
  DisplayI("Number of categories for dependent variable", fNDepCategories);
  DisplayI("fLowestCategory", fLowestCategory);
  for (int i = 0; i < fNFactors; ++i) {
    DisplayI("Factor number (starting from 0)", i);
    DisplayCounts("this factor", fCounts[static_cast<std::size_t>(i)]);
  }
  if (fDepCounts) {
    DisplayCounts("the dependent variable", *fDepCounts);
  } else {
    DisplayText(1, "Vector of case counts for categories of the dependent variable undefined");
  }
  if (fDepCountsWithOffset) DisplayVPD("fDepCountsWithOffset", *fDepCountsWithOffset);
  DisplayI("fOffsetVar", fOffsetVar);
  DisplayD("fOffsetValue", fOffsetValue);
  DisplayI("fOffsetType", fOffsetType);
}

void MCFactorCounts::Display() const {
  MCComponentDisplay::DisplayText(1, "MCFactorCounts display start");
  DisplayFields("Index of the weight variable");
  MCComponentDisplay::DisplayText(1, "MCFactorCounts display end");
}
