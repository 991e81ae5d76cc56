// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcfactortables.h"

#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/makerecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCHashKey;
using MCCommonMath::MCHashtable;
using mctest::MakeRecord;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Effects = std::vector<std::vector<int>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

// Tables of factors at positions 0, 1, ... with the given sizes, their rows read as records are.
std::unique_ptr<MCFactorTables> MakeTables(const std::vector<int>& sizes, const Effects& effects,
                                           int weightVar = -1, int lowest = 0) {
  std::vector<int> factors;
  for (std::size_t i = 0; i < sizes.size(); ++i) factors.push_back(static_cast<int>(i));
  auto tables = std::make_unique<MCFactorTables>(factors, sizes, weightVar, -1, 0, lowest, -1, 0.0,
                                                 MCConst::MC_OFFSET_NONE);
  tables->SetModelEffectFactors(effects, factors);
  return tables;
}

void Update(MCFactorTables& tables, const std::vector<std::vector<double>>& rows) {
  for (const auto& row : rows) tables.UpdateAll(MakeRecord(row));
}

std::vector<int> CodesOf(const MCFactorTables& tables, int effect, int localParam) {
  std::vector<int> codes;
  EXPECT_TRUE(tables.GetParameterFactorValues(codes, effect, localParam));
  return codes;
}

// What a row activates in each effect.
std::vector<int> Row(const MCFactorTables& tables, const std::vector<double>& row) {
  bool allFound = false;
  const std::vector<int> indices = tables.GetRowParameterIndices(row.data(), allFound);
  bool expected = true;
  for (const int index : indices) expected = expected && index >= 0;
  EXPECT_EQ(allFound, expected);
  return indices;
}

TEST(MCFactorTables, AnInterceptAloneIsOneParameter) {
  const auto tables = MakeTables({}, {{}});
  EXPECT_TRUE(tables->UpdateAll(MCCommon::Record(0)));
  EXPECT_EQ(tables->CreateParameterIndices(), 1);
  EXPECT_EQ(tables->GetNEffectParameters(0), 1);
  EXPECT_THAT(tables->GetModelEffectIndices(), IsEmpty());
  EXPECT_THAT(tables->GetLocalEffectIndices(), ElementsAre(-1));
  EXPECT_THAT(tables->GetParameterOffsets(), ElementsAre(0));
  EXPECT_THAT(Row(*tables, {}), ElementsAre(0));
  bool allFound = false;
  EXPECT_THAT(tables->GetRowLocalParamIndices(nullptr, allFound), IsEmpty());
  EXPECT_TRUE(allFound);
  EXPECT_THAT(CodesOf(*tables, 0, 0), IsEmpty());
  EXPECT_EQ(tables->GetIncompleteEffectIndex(), -1);
}

TEST(MCFactorTables, FreshTablesHaveNoEffectAndNoParameter) {
  MCFactorTables tables({0}, {2}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  EXPECT_EQ(tables.GetNModelEffects(), 0);
  EXPECT_EQ(tables.GetNCovariates(), 0);
  EXPECT_EQ(tables.GetTotalWeight(), 0.0);
  EXPECT_EQ(tables.GetTotalRegrWeight(), 0.0);
  EXPECT_EQ(tables.GetSampleSize(), 0.0);
  EXPECT_TRUE(tables.UpdateAll(MakeRecord({1})));
  EXPECT_EQ(tables.CreateParameterIndices(), 0);
  EXPECT_THAT(Row(tables, {1}), IsEmpty());
  EXPECT_THAT(tables.GetCovariateMeans(), IsEmpty());
}

TEST(MCFactorTables, AnEffectThatNoRowFilledHasNoParameter) {
  const auto tables = MakeTables({2}, {{}, {0}, {}});
  EXPECT_EQ(tables->CreateParameterIndices(), 2);
  EXPECT_EQ(tables->GetNEffectParameters(1), 0);
  EXPECT_THAT(tables->GetParameterOffsets(), ElementsAre(0, 1, 1));
  EXPECT_THAT(Row(*tables, {0}), ElementsAre(0, -1, 1));
}

TEST(MCFactorTables, GapsInTheLevelsGetNoParameter) {
  const auto tables = MakeTables({4}, {{0}});
  Update(*tables, {{3}, {1}, {3}});
  EXPECT_EQ(tables->CreateParameterIndices(), 2);
  EXPECT_THAT(CodesOf(*tables, 0, 0), ElementsAre(1));
  EXPECT_THAT(CodesOf(*tables, 0, 1), ElementsAre(3));
  bool allFound = false;
  const double three[] = {3.0};
  EXPECT_THAT(tables->GetRowLocalParamIndices(three, allFound), ElementsAre(1));
  EXPECT_TRUE(allFound);
  const double two[] = {2.0};
  tables->GetRowLocalParamIndices(two, allFound);
  EXPECT_FALSE(allFound);
}

TEST(MCFactorTables, AnInteractionHasTheCellsThatOccurredWithTheLastFactorFastest) {
  const auto tables = MakeTables({2, 2}, {{0, 1}});
  Update(*tables, {{0, 1}, {1, 0}, {0, 0}});
  EXPECT_EQ(tables->CreateParameterIndices(), 3);
  EXPECT_THAT(CodesOf(*tables, 0, 0), ElementsAre(0, 0));
  EXPECT_THAT(CodesOf(*tables, 0, 1), ElementsAre(0, 1));
  EXPECT_THAT(CodesOf(*tables, 0, 2), ElementsAre(1, 0));
  EXPECT_THAT(Row(*tables, {1, 1}), ElementsAre(-1));
}

TEST(MCFactorTables, OppositeOrdersOfFactorsNumberTheSameCellsDifferently) {
  const auto tables = MakeTables({2, 2}, {{0, 1}, {1, 0}});
  Update(*tables, {{0, 1}, {1, 0}});
  EXPECT_EQ(tables->CreateParameterIndices(), 4);
  EXPECT_THAT(Row(*tables, {0, 1}), ElementsAre(0, 3));
  EXPECT_THAT(Row(*tables, {1, 0}), ElementsAre(1, 2));
  EXPECT_THAT(CodesOf(*tables, 1, 0), ElementsAre(0, 1));
}

TEST(MCFactorTables, EffectsFollowEachOtherWithoutGaps) {
  const auto tables = MakeTables({3, 2}, {{}, {1}, {}, {0}, {0, 1}});
  Update(*tables, {{2, 0}, {0, 1}, {2, 1}});
  EXPECT_EQ(tables->CreateParameterIndices(), 1 + 2 + 1 + 2 + 3);
  EXPECT_THAT(tables->GetParameterOffsets(), ElementsAre(0, 1, 3, 4, 6));
  EXPECT_THAT(tables->GetModelEffectIndices(), ElementsAre(1, 3, 4));
  EXPECT_THAT(tables->GetLocalEffectIndices(), ElementsAre(-1, 0, -1, 1, 2));
  EXPECT_EQ(tables->GetModelEffectFactors(), (Effects{{}, {1}, {}, {0}, {0, 1}}));
  EXPECT_EQ(tables->GetNModelEffects(), 5);
  EXPECT_THAT(Row(*tables, {2, 1}), ElementsAre(0, 2, 3, 5, 8));
  bool allFound = false;
  const double row[] = {2.0, 1.0};
  EXPECT_THAT(tables->GetRowLocalParamIndices(row, allFound), ElementsAre(1, 1, 2));
}

TEST(MCFactorTables, AMissInOneEffectDoesNotStopTheOthers) {
  const auto tables = MakeTables({2, 2}, {{0}, {}, {1}});
  Update(*tables, {{0, 0}, {0, 1}});
  tables->CreateParameterIndices();
  EXPECT_THAT(Row(*tables, {1, 1}), ElementsAre(-1, 1, 3));
}

TEST(MCFactorTables, FactorFreeEffectsKeepTheirIndexThroughLookups) {
  const auto tables = MakeTables({2}, {{0}, {}});
  Update(*tables, {{0}, {1}});
  tables->CreateParameterIndices();
  for (const double code : {0.0, 5.0, 1.0}) EXPECT_EQ(Row(*tables, {code})[1], 2);
}

TEST(MCFactorTables, AMissLeavesTheLocalIndicesAsTheyWere) {
  const auto tables = MakeTables({3, 2}, {{0}, {1}});
  Update(*tables, {{0, 0}, {2, 1}});
  tables->CreateParameterIndices();
  bool allFound = false;
  const double seen[] = {2.0, 1.0};
  tables->GetRowLocalParamIndices(seen, allFound);
  const double unseen[] = {1.0, 0.0};
  EXPECT_THAT(tables->GetRowLocalParamIndices(unseen, allFound), ElementsAre(1, 1));
  EXPECT_FALSE(allFound);
}

TEST(MCFactorTables, LookupsBeforeNumberingAnswerZeroForWhatWasSeen) {
  const auto tables = MakeTables({2}, {{}, {0}});
  Update(*tables, {{1}});
  EXPECT_THAT(Row(*tables, {1}), ElementsAre(0, 0));
  EXPECT_THAT(Row(*tables, {0}), ElementsAre(0, -1));
  EXPECT_EQ(tables->GetNEffectParameters(0), 1);
  EXPECT_EQ(tables->GetNEffectParameters(1), 0);
}

TEST(MCFactorTables, NumberingAgainTakesInLaterRows) {
  const auto tables = MakeTables({3}, {{0}});
  Update(*tables, {{2}});
  EXPECT_EQ(tables->CreateParameterIndices(), 1);
  Update(*tables, {{0}});
  EXPECT_EQ(tables->CreateParameterIndices(), 2);
  EXPECT_THAT(Row(*tables, {2}), ElementsAre(1));
  EXPECT_THAT(Row(*tables, {0}), ElementsAre(0));
}

TEST(MCFactorTables, LookupsRoundCodesAsCountingDoes) {
  const auto tables = MakeTables({3}, {{0}});
  Update(*tables, {{0}, {1}, {2}});
  tables->CreateParameterIndices();
  const struct {
    double code;
    int index;
  } cases[] = {{1.4999, 1},        {1.5, 2},
               {-0.4, 0},          {-0.6, 0},
               {-1.5, -1},         {3.0, -1},
               {kNaN, -1},         {kInfinity, -1},
               {-kInfinity, -1},   {1e300, -1},
               {-1e300, -1},       {4294967296.0, -1},
               {2147483647.0, -1}, {MCMV::gMissingValue, -1}};
  for (const auto& c : cases) EXPECT_EQ(Row(*tables, {c.code})[0], c.index) << c.code;
}

TEST(MCFactorTables, LevelsBeyondAnIntAreNeverFound) {
  const auto tables = MakeTables({3}, {{0}}, -1, kMinInt);
  EXPECT_TRUE(tables->UpdateAll(MakeRecord({-2147483648.0})));  // level 1
  EXPECT_FALSE(tables->UpdateAll(MakeRecord({0.0})));           // level 2^31
  EXPECT_EQ(tables->CreateParameterIndices(), 1);
  EXPECT_THAT(Row(*tables, {-2147483648.0}), ElementsAre(0));
  EXPECT_THAT(Row(*tables, {0.0}), ElementsAre(-1));
  EXPECT_THAT(Row(*tables, {2147483647.0}), ElementsAre(-1));
  EXPECT_THAT(CodesOf(*tables, 0, 0), ElementsAre(kMinInt + 1));
}

TEST(MCFactorTables, CodesCountFromTheLowestCategory) {
  const auto tables = MakeTables({3, 2}, {{1, 0}}, -1, 5);
  Update(*tables, {{7, 5}, {5, 6}});
  EXPECT_EQ(tables->CreateParameterIndices(), 2);
  EXPECT_THAT(CodesOf(*tables, 0, 0), ElementsAre(5, 7));
  EXPECT_THAT(CodesOf(*tables, 0, 1), ElementsAre(6, 5));
  EXPECT_THAT(Row(*tables, {5, 6}), ElementsAre(1));
  bool allFound = false;
  EXPECT_THAT(tables->GetParameterIndices({0, 1}, allFound), ElementsAre(1));  // levels
}

TEST(MCFactorTables, CodesOfAParameterThatIsNoneAreRefused) {
  const auto tables = MakeTables({2}, {{0}, {}});
  Update(*tables, {{1}});
  tables->CreateParameterIndices();
  std::vector<int> codes = {9, 9};
  const struct {
    int effect;
    int param;
  } cases[] = {{-1, 0}, {2, 0}, {kMaxInt, 0}, {kMinInt, 0}, {0, -1}, {0, 1}, {0, kMaxInt}};
  for (const auto& c : cases) {
    EXPECT_FALSE(tables->GetParameterFactorValues(codes, c.effect, c.param));
    EXPECT_THAT(codes, ElementsAre(9, 9));
  }
  EXPECT_TRUE(tables->GetParameterFactorValues(codes, 1, 77)) << "no factors, nothing to choose";
  EXPECT_THAT(codes, IsEmpty());
}

TEST(MCFactorTables, EffectsOutOfRangeHaveNoParameterAndNoIndex) {
  const auto tables = MakeTables({2}, {{0}});
  Update(*tables, {{0}});
  tables->CreateParameterIndices();
  for (const int effect : {-1, 1, kMaxInt, kMinInt}) {
    EXPECT_EQ(tables->GetNEffectParameters(effect), 0);
    EXPECT_EQ(tables->GetEffectParameterIndex(effect, {0}), -1);
  }
}

TEST(MCFactorTables, OneEffectIsLookedUpLikeAll) {
  const auto tables = MakeTables({2, 3}, {{}, {0, 1}, {1}});
  Update(*tables, {{0, 2}, {1, 1}});
  tables->CreateParameterIndices();
  EXPECT_EQ(tables->GetEffectParameterIndex(0, {}), 0);
  EXPECT_EQ(tables->GetEffectParameterIndex(1, {0, 2}), 1);
  EXPECT_EQ(tables->GetEffectParameterIndex(1, {1, 1}), 2);
  EXPECT_EQ(tables->GetEffectParameterIndex(1, {1, 2}), -1);
  EXPECT_EQ(tables->GetEffectParameterIndex(2, {0, 2}), 4);
}

TEST(MCFactorTables, AListOfLevelsThatIsShortFindsOnlyTheEffectsThatItCovers) {
  const auto tables = MakeTables({2, 2}, {{0}, {1}, {}});
  Update(*tables, {{0, 0}});
  tables->CreateParameterIndices();
  bool allFound = true;
  EXPECT_THAT(tables->GetParameterIndices({0}, allFound), ElementsAre(0, -1, 2));
  EXPECT_FALSE(allFound);
  EXPECT_THAT(tables->GetParameterIndices({}, allFound), ElementsAre(-1, -1, 2));
  EXPECT_FALSE(allFound);
  EXPECT_EQ(tables->GetEffectParameterIndex(1, {0}), -1);
  EXPECT_THAT(tables->GetParameterIndices({0, 0, 7}, allFound), ElementsAre(0, 1, 2));
  EXPECT_TRUE(allFound) << "surplus levels are ignored";
}

TEST(MCFactorTables, NegativeAndHugeLevelsAreNeverFound) {
  // The second interaction has too many cells for a grid.
  const auto tables = MakeTables({3, 3, 20000}, {{0, 1}, {0, 2}});
  Update(*tables, {{0, 0, 0}, {2, 2, 19999}});
  tables->CreateParameterIndices();
  bool allFound = true;
  for (const int level : {-1, kMinInt, kMaxInt, 3, 9377658}) {
    EXPECT_THAT(tables->GetParameterIndices({0, level, level}, allFound), ElementsAre(-1, -1));
    EXPECT_FALSE(allFound);
  }
}

TEST(MCFactorTables, ReadRowsAtTheirOwnPositions) {
  // Records hold the factors at 3 and 1, the rows of lookups at 0 and 2.
  MCFactorTables tables({3, 1}, {2, 3}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetModelEffectFactors({{1}, {3}}, {0, 2});
  Update(tables, {{9, 2, 9, 1}, {9, 0, 9, 0}});
  EXPECT_EQ(tables.CreateParameterIndices(), 4);
  EXPECT_THAT(Row(tables, {1, 9, 2}), ElementsAre(1, 3));
}

TEST(MCFactorTables, AFactorWithoutAPlaceInTheRowIsNeverFoundThere) {
  for (const std::vector<int>& places : {std::vector<int>{0}, {0, -1}, {0, -7, 3}}) {
    MCFactorTables tables({0, 1}, {2, 2}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
    tables.SetModelEffectFactors({{0}, {1}}, places);
    Update(tables, {{0, 0}});
    tables.CreateParameterIndices();
    EXPECT_THAT(Row(tables, {0, 0}), ElementsAre(0, -1));
  }
}

TEST(MCFactorTables, ANullRowFindsNoEffectWithFactors) {
  const auto tables = MakeTables({2}, {{}, {0}});
  Update(*tables, {{0}});
  tables->CreateParameterIndices();
  bool allFound = true;
  EXPECT_THAT(tables->GetRowParameterIndices(nullptr, allFound), ElementsAre(0, -1));
  EXPECT_FALSE(allFound);
}

TEST(MCFactorTables, AnEffectOfAnUnknownFactorIsNeverFound) {
  // Position 1 has a zero in the map of positions, as the first factor has; 7 is beyond it.
  for (const int unknown : {1, 7, -1, kMaxInt, kMinInt}) {
    MCFactorTables tables({0, 2}, {2, 2}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
    tables.SetModelEffectFactors({{}, {unknown}, {0, unknown}, {2}}, {0, 2});
    EXPECT_FALSE(tables.UpdateAll(MakeRecord({1, 0, 1})));
    EXPECT_EQ(tables.GetTotalWeight(), 1.0) << "the row counts";
    EXPECT_EQ(tables.GetSampleSize(), 1.0);
    EXPECT_EQ(tables.CreateParameterIndices(), 2);
    EXPECT_EQ(tables.GetNEffectParameters(1), 0);
    EXPECT_EQ(tables.GetNEffectParameters(2), 0);
    EXPECT_THAT(Row(tables, {1, 0, 1}), ElementsAre(0, -1, -1, 1));
    EXPECT_EQ(tables.GetEffectParameterIndex(1, {1, 1}), -1);
    EXPECT_EQ(tables.GetIncompleteEffectIndex(), -1) << "no cell of it could be";
  }
}

TEST(MCFactorTables, TheLastOfTwoFactorsAtOnePositionServesEffects) {
  MCFactorTables tables({0, 0}, {2, 5}, -1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetModelEffectFactors({{0}}, {0, 1});
  Update(tables, {{1}});
  EXPECT_EQ(tables.CreateParameterIndices(), 1);
  EXPECT_THAT(Row(tables, {0, 1}), ElementsAre(0));
}

TEST(MCFactorTables, ANewSetOfEffectsReplacesTheOldOne) {
  const auto tables = MakeTables({2, 2}, {{0}, {0, 1}});
  tables->SetCovariates({0});
  Update(*tables, {{0, 0}, {1, 1}});
  tables->CreateParameterIndices();
  tables->SetModelEffectFactors({{1}}, {0, 1});
  EXPECT_EQ(tables->GetNModelEffects(), 1);
  EXPECT_THAT(tables->GetModelEffectIndices(), ElementsAre(0));
  EXPECT_EQ(tables->GetNEffectParameters(0), 0);
  EXPECT_EQ(tables->GetSampleSize(), 2.0) << "counts and totals stay";
  EXPECT_EQ(tables->GetCovariateMeans()[0], 0.5);
  Update(*tables, {{0, 1}});
  EXPECT_EQ(tables->CreateParameterIndices(), 1);
  EXPECT_THAT(Row(*tables, {0, 1}), ElementsAre(0));
  tables->SetFactorTables();
  EXPECT_EQ(tables->CreateParameterIndices(), 0) << "the same effects, empty";
}

TEST(MCFactorTables, ARowWithABadFactorCountsItsOtherFactorsOnly) {
  const auto tables = MakeTables({2, 2, 2}, {{0}});
  tables->SetCovariates({0});
  EXPECT_FALSE(tables->UpdateAll(MakeRecord({1, 2, 1})));
  EXPECT_THAT(*tables->GetCountsPtr(0), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_THAT(*tables->GetCountsPtr(1), ElementsAre(Pair(0.0, 0.0), Pair(0.0, 0.0)));
  EXPECT_THAT(*tables->GetCountsPtr(2), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_EQ(tables->GetTotalWeight(), 0.0);
  EXPECT_EQ(tables->GetTotalRegrWeight(), 0.0);
  EXPECT_EQ(tables->GetSampleSize(), 0.0);
  EXPECT_EQ(tables->CreateParameterIndices(), 0);
}

TEST(MCFactorTables, ARowWithABadDependentCountsItsFactorsOnly) {
  MCFactorTables tables({0}, {2}, -1, 1, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetModelEffectFactors({{0}}, {0});
  EXPECT_FALSE(tables.UpdateAll(MakeRecord({1, 2})));
  EXPECT_THAT(*tables.GetCountsPtr(0), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
  EXPECT_EQ(tables.GetTotalWeight(), 0.0);
  EXPECT_EQ(tables.CreateParameterIndices(), 0);
  EXPECT_TRUE(tables.UpdateAll(MakeRecord({1, 1})));
  EXPECT_THAT(*tables.GetDependCountsPtr(), ElementsAre(Pair(0.0, 0.0), Pair(1.0, 1.0)));
}

TEST(MCFactorTables, RefuseAShortRecordAndCountNothingOfIt) {
  const struct {
    int factor;
    int weight;
    int dependent;
    int regrWeight;
    int covariate;
  } cases[] = {{2, 0, 0, 0, 0},       {0, 2, 0, 0, 0},       {0, 0, 2, 0, 0},
               {0, 0, 0, 2, 0},       {0, 0, 0, 0, 2},       {1000000, 0, 0, 0, 0},
               {0, 0, 0, kMaxInt, 0}, {0, 0, 0, 0, kMaxInt}, {0, 0, 0, 0, -1},
               {-1, 0, 0, 0, 0}};
  for (const auto& c : cases) {
    MCFactorTables tables({c.factor, 1}, {2, 2}, c.weight, c.dependent, 2, 0, -1, 0.0,
                          MCConst::MC_OFFSET_NONE);
    tables.SetRegrWeightVar(c.regrWeight);
    tables.SetModelEffectFactors({{1}}, {0, 1});
    tables.SetCovariates({c.covariate});
    EXPECT_FALSE(tables.UpdateAll(MakeRecord({1, 1})));
    EXPECT_THAT(*tables.GetCountsPtr(1), ElementsAre(Pair(0.0, 0.0), Pair(0.0, 0.0)));
    EXPECT_EQ(tables.GetSampleSize(), 0.0);
    EXPECT_EQ(tables.CreateParameterIndices(), 0);
  }
}

TEST(MCFactorTables, NeedTheOffsetOnlyInUpdate) {
  MCFactorTables tables({0}, {2}, -1, -1, 0, 0, 5, 0.0, MCConst::MC_OFFSET_VARIABLE);
  EXPECT_FALSE(tables.Update(MakeRecord({1})));
  EXPECT_TRUE(tables.UpdateAll(MakeRecord({1})));
}

TEST(MCFactorTables, TotalsAreWeightedByOneWeightAndMeansByBoth) {
  const auto tables = MakeTables({}, {{}}, 0);
  tables->SetRegrWeightVar(1);
  tables->SetCovariates({2});
  Update(*tables, {{2, 0.5, 10}, {3, 2, 24}});
  EXPECT_EQ(tables->GetTotalWeight(), 5.0);
  EXPECT_EQ(tables->GetTotalRegrWeight(), 7.0);
  EXPECT_EQ(tables->GetSampleSize(), 2.0);
  EXPECT_EQ(tables->GetNCovariates(), 1);
  EXPECT_EQ(tables->GetCovariateMeans()[0], 22.0);  // (1 * 10 + 6 * 24) / 7, exact in binary
  tables->SetRegrWeightVar(-1);
  Update(*tables, {{1, 99, 22}});
  EXPECT_EQ(tables->GetTotalRegrWeight(), 8.0) << "no regression weight any more";
}

// The told order of operations on plain doubles.
double Moved(double mean, double x, double total, double w) {
  const double difference = x - mean;
  const double share = difference / total;
  const double step = share * w;
  const double moved = step + mean;
  return std::fabs(moved) < 2.0 * std::fabs(mean) * 2.220446049250313e-16 ? 0.0 : moved;
}

TEST(MCFactorTables, MeansMoveByTheToldOrderOfOperations) {
  // Widths around the widths of vectors; values of mixed magnitude and sign, so that the order
  // of operations shows in the last bits.
  for (const std::size_t n : {1U, 2U, 3U, 4U, 7U, 8U, 9U, 17U, 50U}) {
    std::vector<int> covariates;
    for (std::size_t i = 0; i < n; ++i) covariates.push_back(static_cast<int>(n - i));
    const auto tables = MakeTables({}, {}, 0);
    tables->SetCovariates(covariates);
    std::vector<double> expected(n, 0.0);
    double total = 0.0;
    unsigned seed = 12345;
    for (int r = 0; r < 200; ++r) {
      std::vector<double> row;
      for (std::size_t i = 0; i <= n; ++i) {
        seed = seed * 1664525U + 1013904223U;
        row.push_back(
            std::ldexp(static_cast<double>(seed) - 2e9, static_cast<int>(seed % 40) - 50));
      }
      row[0] = std::fabs(row[0]) + 0.1;
      total += row[0];
      for (std::size_t i = 0; i < n; ++i)
        expected[i] = Moved(expected[i], row[n - i], total, row[0]);
      tables->UpdateAll(MakeRecord(row));
    }
    EXPECT_EQ(tables->GetCovariateMeans(), expected) << n;
  }
}

TEST(MCFactorTables, AMeanOfWhichOnlyTheLastBitsAreLeftBecomesZero) {
  const double moved = (-0.2 - 1.0) / 6.0 * 5.0 + 1.0;
  ASSERT_EQ(moved, 0x1p-53) << "something is left of 1 + 5 * -0.2";
  const auto tables = MakeTables({}, {}, 0);
  tables->SetCovariates({1, 2});
  Update(*tables, {{1, 1, 1}, {5, -0.2, -0.25}});
  EXPECT_EQ(tables->GetCovariateMeans()[0], 0.0);
  EXPECT_NEAR(tables->GetCovariateMeans()[1], -0.25 / 6.0, 1e-15);
}

TEST(MCFactorTables, AMeanAtTheBoundOfTheSnapStays) {
  // (b - 1) / 2 + 1 is -2^-51 exactly, which is 2 * 1 * 2^-52.
  const auto tables = MakeTables({}, {});
  tables->SetCovariates({0});
  Update(*tables, {{1}, {-1.0 - 0x1p-50}});
  EXPECT_EQ(tables->GetCovariateMeans()[0], -0x1p-51);
}

TEST(MCFactorTables, MeansWaitUntilTheTotalIsAboveZero) {
  const auto tables = MakeTables({}, {}, 0);
  tables->SetCovariates({1});
  Update(*tables, {{0, 5}, {-1, 6}, {1, 7}});  // totals 0, -1, 0
  EXPECT_EQ(tables->GetTotalWeight(), 0.0);
  Update(*tables, {{2, 8}});
  EXPECT_EQ(tables->GetCovariateMeans()[0], 8.0);
}

TEST(MCFactorTables, MeansOfNoWeightAreMissing) {
  const auto tables = MakeTables({}, {}, 0);
  tables->SetCovariates({1, 2});
  Update(*tables, {{0, 5, 6}});
  EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(MCMV::gMissingValue, MCMV::gMissingValue));
  EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(MCMV::gMissingValue, MCMV::gMissingValue));
}

TEST(MCFactorTables, MeansAreMissingByTheFrequencyWeightAlone) {
  // Regression weights that sum to 0 leave the zeros of the start.
  const auto tables = MakeTables({}, {});
  tables->SetRegrWeightVar(0);
  tables->SetCovariates({1});
  Update(*tables, {{0, 5}});
  EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(0.0));
}

TEST(MCFactorTables, ATotalWeightThatIsNaNGivesMissingMeans) {
  const auto tables = MakeTables({}, {}, 0);
  tables->SetCovariates({1});
  Update(*tables, {{kNaN, 5}});
  EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(MCMV::gMissingValue));
}

TEST(MCFactorTables, TheFirstCallFinishesTheMeans) {
  const auto tables = MakeTables({}, {}, 0);
  tables->SetCovariates({1});
  EXPECT_EQ(tables->GetCovariateMeans()[0], MCMV::gMissingValue);
  tables->SetCovariates({1});
  EXPECT_EQ(tables->GetNCovariates(), 1);
  Update(*tables, {{1, 5}});
  EXPECT_EQ(tables->GetCovariateMeans()[0], 5.0) << "SetCovariates() began anew";
  Update(*tables, {{-1, 5}});
  EXPECT_EQ(tables->GetTotalWeight(), 0.0);
  EXPECT_EQ(tables->GetCovariateMeans()[0], 5.0) << "finished, so not looked at again";
}

TEST(MCFactorTables, InfiniteAndNaNCovariatesEnterAsTheyAre) {
  const auto tables = MakeTables({2}, {{0}});
  tables->SetCovariates({1, 2, 3});
  Update(*tables, {{0, kInfinity, kNaN, MCMV::gMissingValue}, {1, 1, 1, 1}});
  const std::vector<double>& means = tables->GetCovariateMeans();
  EXPECT_TRUE(std::isnan(means[0])) << "infinity less infinity";
  EXPECT_TRUE(std::isnan(means[1]));
  EXPECT_EQ(means[2], 0.5 * MCMV::gMissingValue) << "1 is nothing beside it";
  EXPECT_EQ(tables->CreateParameterIndices(), 2);
}

TEST(MCFactorTables, AHugeMeanIsNotTakenForWhatRoundingLeftOfZero) {
  const auto tables = MakeTables({}, {}, -1);
  tables->SetCovariates({0, 1, 2});
  Update(*tables, {{1.7e308, 9e307, -9e307}, {1.7e308, 9e307, 9e307}});
  // The last one moves by its double, which no double holds.
  EXPECT_THAT(tables->GetCovariateMeans(), ElementsAre(1.7e308, 9e307, kInfinity));
}

TEST(MCFactorTables, TheEmptiestEffectIsTheIncompleteOne) {
  const auto tables = MakeTables({3, 2, 2}, {{}, {0, 1}, {1, 2}, {0}});
  Update(*tables, {{0, 0, 0}, {1, 1, 1}, {0, 1, 1}});
  tables->CreateParameterIndices();
  // A has 2 active categories: A*B 3 of 4 cells, B*C 2 of 4.
  EXPECT_EQ(tables->GetIncompleteEffectIndex(), 2);
  Update(*tables, {{0, 0, 1}});
  tables->CreateParameterIndices();
  EXPECT_EQ(tables->GetIncompleteEffectIndex(), 1) << "3 of 4 both: the first of equals";
  Update(*tables, {{1, 0, 0}, {1, 1, 0}});
  tables->CreateParameterIndices();
  EXPECT_EQ(tables->GetIncompleteEffectIndex(), -1) << "all cells occurred";
}

TEST(MCFactorTables, RecordOneCombinationInAnyTable) {
  MCHashtable<int> table;
  MCFactorTables::HashPairs pairs;
  MCHashKey key(2);
  EXPECT_FALSE(MCFactorTables::UpdateHashtable(nullptr, &pairs, key));
  EXPECT_FALSE(MCFactorTables::UpdateHashtable(&table, nullptr, key));
  EXPECT_EQ(table.fCount, 0);
  const int combinations[][2] = {{3, 4}, {-1, kMinInt}, {kMaxInt, kMaxInt}, {3, 4}, {4, 3}};
  for (const auto& levels : combinations) {
    key.fData[0] = levels[0];
    key.fData[1] = levels[1];
    key.fHash = 77;  // stale, to be refreshed
    EXPECT_TRUE(MCFactorTables::UpdateHashtable(&table, &pairs, key));
    EXPECT_EQ(key.fHash, static_cast<int>(static_cast<unsigned>(levels[0]) * 3U ^
                                          static_cast<unsigned>(levels[1]) * 5U));
  }
  ASSERT_EQ(pairs.size(), 4U);
  EXPECT_EQ(table.fCount, 4);
  EXPECT_EQ(pairs[1]->fKey->fData[1], kMinInt) << "in order of first occurrence";
  EXPECT_EQ(*pairs[3]->fValue, 0);
  EXPECT_NE(pairs[3]->fKey, &key) << "a copy";
}

TEST(MCFactorTables, ReadTheValueUnderAKey) {
  MCHashtable<int> table;
  MCFactorTables::HashPairs pairs;
  MCHashKey key(1);
  EXPECT_EQ(MCFactorTables::GetParameterIndex(nullptr, key), -1);
  EXPECT_EQ(MCFactorTables::GetParameterIndex(&table, key), -1);
  key.fData[0] = -5;
  MCFactorTables::UpdateHashtable(&table, &pairs, key);
  *pairs[0]->fValue = 42;
  key.fHash = 0;
  EXPECT_EQ(MCFactorTables::GetParameterIndex(&table, key), 42);
}

TEST(MCFactorTables, AllocateNothingForRowsOfKnownCombinations) {
  // With grids and, for the last effect, without.
  MCFactorTables tables({0, 1, 2}, {3, 4, 20000}, 3, 4, 2, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetRegrWeightVar(5);
  tables.SetModelEffectFactors({{}, {0}, {1, 0}, {0, 1, 2}}, {0, 1, 2});
  tables.SetCovariates({3, 4, 5});
  const MCCommon::Record records[] = {MakeRecord({0, 3, 17, 2, 1, 1}),
                                      MakeRecord({2, 1, 19999, 1, 0, 2})};
  const MCCommon::Record bad = MakeRecord({9, 1, 1, 1, 1, 1});
  for (const auto& record : records) tables.UpdateAll(record);
  const std::vector<int> levels = {0, 3, 17};
  const std::size_t before = mctest::AllocationCount();
  bool allFound = false;
  for (const auto& record : records) {
    EXPECT_TRUE(tables.UpdateAll(record));
    tables.GetRowParameterIndices(record.GetAll(), allFound);
    EXPECT_TRUE(allFound);
    tables.GetRowLocalParamIndices(record.GetAll(), allFound);
  }
  EXPECT_FALSE(tables.UpdateAll(bad));
  tables.GetRowLocalParamIndices(bad.GetAll(), allFound);
  tables.GetParameterIndices(levels, allFound);
  tables.GetEffectParameterIndex(3, levels);
  tables.CreateParameterIndices();
  tables.GetCovariateMeans();
  EXPECT_EQ(mctest::AllocationCount(), before);
}

}  // namespace
