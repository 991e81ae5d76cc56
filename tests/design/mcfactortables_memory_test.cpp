// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactortables.h"
#include "support/countingallocator.h"
#include "support/makerecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <vector>

namespace {

using mctest::FailAllocation;
using mctest::MakeRecord;
using testing::ElementsAre;
using Effects = std::vector<std::vector<int>>;

// A grid for the first two effects, none for the third.
const std::vector<int> kFactors = {0, 1, 2};
const std::vector<int> kSizes = {3, 3, 20000};
const Effects kEffects = {{}, {0}, {1, 0}, {2, 1}};

std::unique_ptr<MCFactorTables> MakeTables() {
  return std::make_unique<MCFactorTables>(kFactors, kSizes, -1, -1, 0, 0, -1, 0.0,
                                          MCConst::MC_OFFSET_NONE);
}

// Whether `act` succeeds with its k-th allocation failing; else the exception has passed.
bool SucceedsWithoutAllocation(std::size_t k, const std::function<void()>& act) {
  const FailAllocation failure(k);
  try {
    act();
  } catch (const std::bad_alloc&) {
    EXPECT_TRUE(failure.HasFired());
    return false;
  }
  EXPECT_FALSE(failure.HasFired()) << "an allocation failed and nobody told";
  return true;
}

TEST(MCFactorTablesMemory, ConstructionPassesTheException) {
  std::size_t k = 1;
  while (!SucceedsWithoutAllocation(k, [] { MakeTables(); })) ++k;
  EXPECT_GT(k, 5U);
}

TEST(MCFactorTablesMemory, EffectsThatCannotBeInstalledLeaveATableWithOldOnesOrNone) {
  for (std::size_t k = 1;; ++k) {
    const auto tables = MakeTables();
    tables->SetModelEffectFactors({{0}}, kFactors);
    if (SucceedsWithoutAllocation(k, [&] { tables->SetModelEffectFactors(kEffects, kFactors); })) {
      EXPECT_EQ(tables->GetNModelEffects(), 4);
      break;
    }
    const int nEffects = tables->GetNModelEffects();
    EXPECT_EQ(tables->GetModelEffectFactors(), nEffects == 0 ? Effects{} : Effects{{0}});
    // Whatever is left works.
    EXPECT_TRUE(tables->UpdateAll(MakeRecord({1, 1, 1})));
    EXPECT_EQ(tables->CreateParameterIndices(), nEffects);
    bool allFound = false;
    EXPECT_EQ(tables->GetParameterIndices({1, 1, 1}, allFound),
              std::vector<int>(nEffects == 0 ? 0U : 1U, 0));
    EXPECT_TRUE(allFound);
    tables->SetModelEffectFactors(kEffects, kFactors);
    EXPECT_EQ(tables->GetNModelEffects(), 4);
  }
}

TEST(MCFactorTablesMemory, CovariatesThatCannotBeInstalledLeaveTheOldOnes) {
  for (std::size_t k = 1;; ++k) {
    const auto tables = MakeTables();
    tables->SetCovariates({2});
    tables->UpdateAll(MakeRecord({1, 1, 1}));
    if (SucceedsWithoutAllocation(k, [&] { tables->SetCovariates({0, 1}); })) break;
    EXPECT_EQ(tables->GetNCovariates(), 1);
    EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(1.0));
  }
}

TEST(MCFactorTablesMemory, ARowThatCouldNotBeRecordedCanBeGivenAgain) {
  // 70 new cells in each of two effects: the hash tables grow on the way.
  const auto row = [](int r) {
    return MakeRecord(
        {static_cast<double>(r % 3), static_cast<double>(r / 3 % 3), static_cast<double>(r)});
  };
  std::size_t failures = 0;
  const auto tables = MakeTables();
  tables->SetModelEffectFactors(kEffects, kFactors);
  for (int r = 0; r < 70; ++r) {
    const MCCommon::Record record = row(r);
    for (std::size_t k = 1; !SucceedsWithoutAllocation(k, [&] { tables->UpdateAll(record); });
         ++k) {
      ++failures;
    }
  }
  EXPECT_GT(failures, 70U * 3);
  EXPECT_EQ(tables->CreateParameterIndices(), 1 + 3 + 9 + 70);
  for (int r = 0; r < 70; ++r) {
    bool allFound = false;
    const MCCommon::Record record = row(r);
    EXPECT_THAT(tables->GetRowParameterIndices(record.GetAll(), allFound),
                ElementsAre(0, 1 + r % 3, 4 + r / 3 % 3 * 3 + r % 3, 13 + r));
  }
}

}  // namespace
