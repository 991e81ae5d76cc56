// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcpatterntabulator.h"

#include "regression/frame/mcmv.h"
#include "support/makerecord.h"
#include "support/tabulation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using mctest::MakeRecord;
using mctest::PackingSwitch;
using mctest::Rows;
using mctest::RowSource;
using mctest::TabulatedDesign;
using mctest::Tabulation;
using testing::ElementsAre;
using testing::IsEmpty;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Records are (x, dependent, A, weight, B): extracts are (dependent, A, B, x, weight).
TabulatedDesign TwoFactors() {
  TabulatedDesign design;
  design.dependent = 1;
  design.factors = {{2, 3}, {4, 2}};
  design.covariates = {0};
  design.freqWeight = 3;
  design.effects = {{}, {2}, {4}};
  return design;
}

const Rows kFourRows = {{0.5, 0, 2, 1, 1}, {1.5, 1, 0, 2, 0}, {2.5, 2, 2, 3, 1}, {3.5, 0, 1, 4, 0}};

// One factor at 1 beside the dependent at 0.
TabulatedDesign OneFactor() {
  TabulatedDesign design;
  design.factors = {{1, 3}};
  design.effects = {{}, {1}};
  return design;
}

long CodeOf(const MCCommon::MCStatus& status) {
  return status.GetErrorCode();
}

TEST(MCPatternTabulatorFirstPass, FillsTheTablesFromTheValidRows) {
  Tabulation tabulation(TwoFactors());
  RowSource source({{0.5, 0, 2, 1, 1},
                    {kMissing, 0, 2, 1, 1},
                    {1.0, 0, 2, 0.0, 1},
                    {1.0, kMissing, 2, 1, 1},
                    {1.5, 2, 0, 3, 0}});
  EXPECT_TRUE(tabulation.FirstPass(source).IsOK());
  EXPECT_EQ(tabulation.fTables.GetSampleSize(), 2.0);
  EXPECT_EQ(tabulation.fTables.GetTotalWeight(), 4.0);
  EXPECT_EQ(tabulation.fTables.GetParameterOffsets(), (Ints{0, 1, 3}));
  EXPECT_EQ(source.fNextCalls, 5);
  EXPECT_THAT(tabulation.fTabulator.GetWarnings(), IsEmpty());
}

struct PassFailure {
  const char* name;
  Rows rows;
  long code;
};

void PrintTo(const PassFailure& failure, std::ostream* out) {
  *out << failure.name;
}

class FailingPass : public testing::TestWithParam<PassFailure> {};

TEST_P(FailingPass, IsAnsweredByTheFirstPassAndForGood) {
  Tabulation tabulation(OneFactor());
  RowSource source(GetParam().rows);
  EXPECT_EQ(CodeOf(tabulation.FirstPass(source)), GetParam().code);
  if (GetParam().code == 0) return;
  RowSource good({{0, 1}, {1, 2}});
  const MCCommon::MCStatus again = tabulation.FirstPass(good);
  EXPECT_TRUE(again.IsError());
  EXPECT_EQ(again.GetErrorCode(), GetParam().code);
  EXPECT_EQ(good.fNextCalls, 0);
}

INSTANTIATE_TEST_SUITE_P(
    MCPatternTabulatorFirstPass, FailingPass,
    testing::Values(
        PassFailure{"no row", {}, 307}, PassFailure{"no valid row", {{kMissing, 1}}, 307},
        PassFailure{"only rows that the tables drop", {{3, 1}, {0, 3}}, 308},
        PassFailure{"one row that the tables keep", {{3, 1}, {0, 3}, {0, 0}}, 0},
        PassFailure{"short record", {{0, 1}, {0}}, 315}, PassFailure{"empty record", {{}}, 315},
        PassFailure{"longer record", {{0, 1, 7}}, 0}, PassFailure{"half a code", {{0, 1.5}}, 316},
        PassFailure{"code beyond the bound", {{4, 1}}, 316}));

TEST(MCPatternTabulatorFirstPass, TellsWhereAValueIsMalformed) {
  Tabulation tabulation(OneFactor());
  RowSource source({{0, 1}, {0, 2.5}});
  const MCCommon::MCStatus status = tabulation.FirstPass(source);
  EXPECT_EQ(status.GetDiscreteDatum(1), 1);
  EXPECT_EQ(status.GetScaleDatum(1), 2.5);
}

TEST(MCPatternTabulatorFirstPass, LetsATotalWeightPassThatIsNoNumber) {
  Tabulation tabulation(TwoFactors());
  RowSource source({{0.5, 0, 2, kNaN, 1}});
  EXPECT_TRUE(tabulation.FirstPass(source).IsOK());
}

TEST(MCPatternTabulatorFirstPass, MayBeRepeatedForFurtherRows) {
  Tabulation tabulation(OneFactor());
  RowSource source({{0, 1}});
  EXPECT_TRUE(tabulation.FirstPass(source).IsOK());
  EXPECT_TRUE(tabulation.FirstPass(source).IsOK());
  EXPECT_EQ(tabulation.fTables.GetSampleSize(), 2.0);
}

TEST(MCPatternTabulatorFirstPass, StopsAtANullRecordWhereverItIs) {
  for (int row = 0; row < 4; ++row) {
    Tabulation tabulation(TwoFactors());
    RowSource source(kFourRows);
    source.NullAt(1, row);
    EXPECT_EQ(CodeOf(tabulation.FirstPass(source)), 312);
    EXPECT_EQ(source.fNextCalls, row + 1);
    EXPECT_EQ(tabulation.fTables.GetSampleSize(), row);
  }
}

TEST(MCPatternTabulatorFirstPass, EndsWhereTheSourceEnds) {
  for (int row = 0; row < 4; ++row) {
    Tabulation tabulation(TwoFactors());
    RowSource source(kFourRows);
    source.EndAt(1, row);
    EXPECT_EQ(CodeOf(tabulation.FirstPass(source)), row == 0 ? 307 : 0);
    EXPECT_EQ(tabulation.fTables.GetSampleSize(), row);
  }
}

TEST(MCPatternTabulatorFirstPass, OneRowMayBeGivenByHand) {
  Tabulation tabulation(OneFactor());
  EXPECT_TRUE(
      tabulation.fTabulator.UpdateFactorTable(MakeRecord({0, 1}), tabulation.fTables).IsOK());
  // The tables drop both of these, which nobody hears of.
  EXPECT_TRUE(
      tabulation.fTabulator.UpdateFactorTable(MakeRecord({0, 3}), tabulation.fTables).IsOK());
  EXPECT_TRUE(tabulation.fTabulator.UpdateFactorTable(MakeRecord({0}), tabulation.fTables).IsOK());
  EXPECT_EQ(tabulation.fTables.GetSampleSize(), 1.0);
  EXPECT_EQ(CodeOf(tabulation.fTabulator.UpdateFactorTable(MakeRecord({}), tabulation.fTables)),
            314);
}

TEST(MCPatternTabulatorSecondPass, StoresTheExtractedRowsByPattern) {
  Tabulation tabulation(TwoFactors());
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  const MCRowPatterns* pattern = tabulation.fTabulator.GetRowPatternsPtr({2, 1});
  ASSERT_NE(pattern, nullptr);
  EXPECT_THAT(pattern->GetAllRecords(), ElementsAre(0, 2, 1, 0.5, 1, 2, 2, 1, 2.5, 3));
  pattern = tabulation.fTabulator.GetRowPatternsPtr({0, 0});
  ASSERT_NE(pattern, nullptr);
  EXPECT_THAT(pattern->GetAllRecords(), ElementsAre(1, 0, 0, 1.5, 2));
  pattern = tabulation.fTabulator.GetRowPatternsPtr({1, 0});
  ASSERT_NE(pattern, nullptr);
  EXPECT_THAT(pattern->GetAllRecords(), ElementsAre(0, 1, 0, 3.5, 4));
}

TEST(MCPatternTabulatorSecondPass, FindsNoPatternForIndicesThatNoRowHas) {
  Tabulation tabulation(TwoFactors());
  EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({2, 1}), nullptr);
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  for (const Ints& indices :
       {Ints{0, 1}, Ints{}, Ints{2}, Ints{2, 1, 0}, Ints{-1, 1}, Ints{5, 0}, Ints{2, 2}}) {
    EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr(indices), nullptr);
  }
}

TEST(MCPatternTabulatorSecondPass, StoresTheLocalIndexOfTheDependent) {
  Tabulation tabulation(OneFactor());
  tabulation.fModel.fDepCatLocalInds = {2, 0, 1};
  ASSERT_TRUE(tabulation.BothPasses({{0, 1}, {1, 1}, {2, 1}}).IsOK());
  EXPECT_THAT(tabulation.fTabulator.GetRowPatternsPtr({0})->GetAllRecords(),
              ElementsAre(2, 1, 0, 1, 1, 1));
}

TEST(MCPatternTabulatorSecondPass, AnInterceptAloneMakesOnePattern) {
  for (const bool packing : {true, false}) {
    const PackingSwitch packed(packing);
    TabulatedDesign design = TwoFactors();
    design.effects = {{}};
    Tabulation tabulation(design);
    ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
    const MCRowPatterns* pattern = tabulation.fTabulator.GetRowPatternsPtr({});
    ASSERT_NE(pattern, nullptr);
    EXPECT_EQ(pattern->GetAllRecords().size(), 4U * 5);
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
    ASSERT_EQ(tabulation.fAccumulator.fRows.size(), 4U);
    for (std::size_t r = 0; r < 4; ++r) {
      EXPECT_EQ(tabulation.fAccumulator.fRows[r].fIndices, Ints{0});
      EXPECT_EQ(tabulation.fAccumulator.fRows[r].fWeight, static_cast<double>(r + 1));
    }
  }
}

TEST(MCPatternTabulatorSecondPass, DropsSilentlyWhatTheFirstPassHasNotSeen) {
  struct Case {
    const char* name;
    Doubles row;
  };
  for (const Case& dropped :
       {Case{"a level", {9, 0, 1, 1, 1}}, Case{"a level that isn't one", {9, 0, 3, 1, 1}},
        Case{"a code with no local index", {9, 2, 2, 1, 1}},
        Case{"a code that isn't one", {9, 3, 2, 1, 1}}}) {
    SCOPED_TRACE(dropped.name);
    Tabulation tabulation(TwoFactors());
    RowSource first({{0.5, 0, 2, 1, 1}, {1.5, 1, 0, 2, 1}});
    ASSERT_TRUE(tabulation.FirstPass(first).IsOK());
    tabulation.fModel.fDepCatLocalInds = {0, 1, -1};
    // Dropped rows are valid ones all the same: a pass of nothing else is good, and empty.
    RowSource second({dropped.row});
    EXPECT_TRUE(tabulation.SecondPass(second).IsOK());
    EXPECT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
    EXPECT_THAT(tabulation.fAccumulator.fRows, IsEmpty());
    EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({1, 0}), nullptr);
  }
}

TEST(MCPatternTabulatorSecondPass, AnEffectWithoutParametersHasTheBoundOne) {
  TabulatedDesign design = OneFactor();
  design.effects = {{}, {1}, {7}};  // nobody knows a factor at 7
  Tabulation tabulation(design);
  ASSERT_TRUE(tabulation.BothPasses({{0, 1}, {1, 2}}).IsOK());
  EXPECT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
  EXPECT_THAT(tabulation.fAccumulator.fRows, IsEmpty());
  EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({0, 0}), nullptr);
}

class FailingSecondPass : public testing::TestWithParam<PassFailure> {};

TEST_P(FailingSecondPass, IsAnsweredForGood) {
  Tabulation tabulation(OneFactor());
  RowSource first({{0, 1}, {1, 2}});
  ASSERT_TRUE(tabulation.FirstPass(first).IsOK());
  RowSource source(GetParam().rows);
  EXPECT_EQ(CodeOf(tabulation.SecondPass(source)), GetParam().code);
  const bool failed = GetParam().code != 0;
  EXPECT_EQ(CodeOf(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel)), failed ? 303 : 0);
  EXPECT_EQ(CodeOf(tabulation.fTabulator.ComputeStatsForOptimizer(false)), failed ? 313 : 0);
  EXPECT_EQ(tabulation.fAccumulator.fRows.empty(), failed);
}

INSTANTIATE_TEST_SUITE_P(MCPatternTabulatorSecondPass, FailingSecondPass,
                         testing::Values(PassFailure{"no row", {}, 307},
                                         PassFailure{"no valid row", {{kMissing, 1}, {0, -1}}, 307},
                                         PassFailure{"short record", {{0, 1}, {0}}, 315},
                                         PassFailure{"half a code", {{0, 1}, {0, 1.5}}, 316},
                                         PassFailure{"further rows", {{0, 1}, {0, 1}, {1, 2}}, 0}));

TEST(MCPatternTabulatorSecondPass, StopsAtANullRecordWhereverItIs) {
  for (int row = 0; row < 4; ++row) {
    Tabulation tabulation(TwoFactors());
    RowSource source(kFourRows);
    source.NullAt(2, row);
    ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
    EXPECT_EQ(CodeOf(tabulation.SecondPass(source)), 312);
    EXPECT_EQ(source.fNextCalls, 4 + row + 1);
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ComputeStatsForOptimizer(false)), 313);
  }
}

TEST(MCPatternTabulatorSecondPass, EndsWhereTheSourceEnds) {
  for (int row = 0; row < 4; ++row) {
    Tabulation tabulation(TwoFactors());
    RowSource source(kFourRows);
    source.EndAt(2, row);
    ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
    EXPECT_EQ(CodeOf(tabulation.SecondPass(source)), row == 0 ? 307 : 0);
    tabulation.fTabulator.ComputeStatsForOptimizer(false);
    EXPECT_EQ(static_cast<int>(tabulation.fAccumulator.fRows.size()), row);
  }
}

TEST(MCPatternTabulatorSecondPass, ASecondOneIsRefusedAndLeavesThePatterns) {
  Tabulation tabulation(TwoFactors());
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  const PackingSwitch unpacked(false);
  RowSource source({{0.5, 0, 2, 1, 1}});
  EXPECT_EQ(CodeOf(tabulation.SecondPass(source)), 313);
  EXPECT_EQ(source.fNextCalls, 0);
  EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({2, 1})->GetAllRecords().size(), 10U);
}

TEST(MCPatternTabulatorSecondPass, OneRowMayBeGivenByHand) {
  Tabulation tabulation(TwoFactors());
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  MCPatternTabulator& tabulator = tabulation.fTabulator;
  EXPECT_TRUE(tabulator.ProcessRowPattern(MakeRecord({7, 1, 2, 8, 1}), tabulation.fTables).IsOK());
  EXPECT_TRUE(tabulator.ProcessRowPattern(MakeRecord({6, 1, 0, 8, 1}), tabulation.fTables).IsOK());
  EXPECT_THAT(tabulator.GetRowPatternsPtr({2, 1})->GetAllRecords(),
              ElementsAre(0, 2, 1, 0.5, 1, 2, 2, 1, 2.5, 3, 1, 2, 1, 7, 8));
  EXPECT_THAT(tabulator.GetRowPatternsPtr({0, 1})->GetAllRecords(), ElementsAre(1, 0, 1, 6, 8));
}

TEST(MCPatternTabulatorSecondPass, ARowGivenByHandIsRefused) {
  const MCCommon::Record row = MakeRecord({7, 1, 2, 8, 1});
  {
    Tabulation tabulation(TwoFactors());
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ProcessRowPattern(row, tabulation.fTables)), 313);
  }
  {
    Tabulation tabulation(TwoFactors());
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ProcessRowPattern(MakeRecord({}), tabulation.fTables)),
              314);
  }
  {
    Tabulation tabulation(TwoFactors());
    ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
    const MCCommon::Record shorter = MakeRecord({7, 1, 2, 8});
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ProcessRowPattern(shorter, tabulation.fTables)), 315);
  }
}

TEST(MCPatternTabulatorSecondPass, ARowByOtherTablesIsRefused) {
  // Of another number of effects, and of more parameters in one.
  for (const TabulatedDesign& other : {OneFactor(), TwoFactors()}) {
    Tabulation tabulation(TwoFactors());
    ASSERT_TRUE(tabulation.BothPasses({{0.5, 0, 1, 1, 1}, {0.5, 0, 2, 1, 1}}).IsOK());
    Tabulation others(other);
    RowSource source({{0, 0, 0, 1, 1}, {0, 1, 1, 1, 1}, {0, 1, 2, 1, 1}});
    ASSERT_TRUE(others.FirstPass(source).IsOK());
    const MCCommon::Record row = MakeRecord({0, 1, 2, 1, 1});
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ProcessRowPattern(row, others.fTables)), 313);
    EXPECT_EQ(tabulation.fTabulator.GetRowPatternsPtr({1, 0})->GetAllRecords().size(), 5U);
  }
}

// A tabulator that fails at a row of its own accord.
class OwnTabulator : public MCPatternTabulator {
public:
  using MCPatternTabulator::MCPatternTabulator;
  MCCommon::MCStatus ProcessRowPattern(const MCCommon::Record& record,
                                       const MCFactorTables& tables) override {
    if (++fCalls == 3) return MCCommon::MCStatus(314, false);
    return MCPatternTabulator::ProcessRowPattern(record, tables);
  }
  int fCalls = 0;
};

TEST(MCPatternTabulatorSecondPass, CallsWhatASubclassMakesOfARow) {
  Tabulation tabulation(TwoFactors());
  RowSource source(kFourRows);
  ASSERT_TRUE(tabulation.FirstPass(source).IsOK());
  OwnTabulator own(tabulation.fSettings, tabulation.fExtractor, tabulation.fCancel, true);
  source.NewPass();
  EXPECT_EQ(CodeOf(own.CreateRowPatterns(source, tabulation.fTables, tabulation.fModel)), 314);
  EXPECT_EQ(own.fCalls, 3);
}

TEST(MCPatternTabulatorSecondPass, RefusesEveryRecordWithoutPositionsToExtract) {
  Tabulation tabulation(OneFactor());
  for (const MCRecordExtractor& extractor :
       {MCRecordExtractor(), MCRecordExtractor(-1, {1}, {}, -1, -1),
        MCRecordExtractor(0, {1}, {2147483647}, -1, -1)}) {
    MCPatternTabulator tabulator(tabulation.fSettings, extractor, tabulation.fCancel, true);
    RowSource source({{0, 1}});
    EXPECT_EQ(CodeOf(tabulator.FillFactorTable(source, tabulation.fTables)), 315);
  }
}

TEST(MCPatternTabulatorSecondPass, ReadsNothingBeyondARecordIfRolesAreUnknown) {
  // Settings without a dependent know no role for it, and no record has one.
  MCLogRegSettings settings;
  settings.AddFactor(1, 3);
  Tabulation tabulation(OneFactor());
  const MCRecordExtractor extractor(0, {1}, {}, -1, -1);
  MCPatternTabulator tabulator(settings, extractor, tabulation.fCancel, true);
  RowSource source({{0, 1}});
  EXPECT_EQ(CodeOf(tabulator.FillFactorTable(source, tabulation.fTables)), 315);
}

TEST(MCPatternTabulatorWalk, NeedsPatterns) {
  {
    Tabulation tabulation(TwoFactors());
    EXPECT_EQ(CodeOf(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel)), 303);
  }
  {
    Tabulation tabulation(TwoFactors());
    EXPECT_EQ(CodeOf(tabulation.fTabulator.ComputeStatsForOptimizer(true)), 313);
  }
}

TEST(MCPatternTabulatorWalk, NeedsModelAndAccumulator) {
  for (int missing = 0; missing < 3; ++missing) {
    Tabulation tabulation(TwoFactors());
    ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
    MCPatternTabulator& tabulator = tabulation.fTabulator;
    if (missing == 0) tabulator.SetStatsModel(nullptr, &tabulation.fModel);
    if (missing == 1) tabulator.SetStatsModel(&tabulation.fAccumulator, nullptr);
    if (missing == 2) tabulator.CleanStatsModel();
    EXPECT_EQ(CodeOf(tabulator.ComputeStatsForOptimizer(false)), 313);
    EXPECT_THAT(tabulation.fAccumulator.fRows, IsEmpty());
  }
}

TEST(MCPatternTabulatorWalk, ForwardsAResetIfThereIsAnAccumulator) {
  Tabulation tabulation(TwoFactors());
  tabulation.fTabulator.ResetAccumStats(MCConst::MC_EST_NEWTON, true);
  tabulation.fTabulator.ResetAccumStats(MCConst::MC_EST_FISHER, false);
  tabulation.fTabulator.CleanStatsModel();
  tabulation.fTabulator.ResetAccumStats(MCConst::MC_EST_FISHER, false);
  EXPECT_THAT(tabulation.fAccumulator.fResets,
              ElementsAre(std::pair(MCConst::MC_EST_NEWTON, true),
                          std::pair(MCConst::MC_EST_FISHER, false)));
}

TEST(MCPatternTabulatorWalk, GivesEachRowWithItsParametersToTheModel) {
  TabulatedDesign design = TwoFactors();
  design.effects = {{2}, {}, {4, 2}, {}};
  Tabulation tabulation(design);
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  EXPECT_TRUE(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel).IsOK());
  // A has levels 0 1 2; B*A has (0,0) (0,1) (1,2): indices 0-2, 3, 4-6, 7. Keys are packed with A
  // varying fastest, so that patterns come as (0,0) 0, (1,1) 4, (2,2) 8, times 3, in buckets.
  using Row = mctest::FakeRegModel::Row;
  EXPECT_THAT(
      tabulation.fModel.fDesignRows,
      ElementsAre(Row{{1, 0, 0, 1.5, 2}, {0, 3, 4, 7}}, Row{{0, 1, 0, 3.5, 4}, {1, 3, 5, 7}},
                  Row{{0, 2, 1, 0.5, 1}, {2, 3, 6, 7}}, Row{{2, 2, 1, 2.5, 3}, {2, 3, 6, 7}}));
}

TEST(MCPatternTabulatorWalk, GivesEachSparseRowToTheAccumulator) {
  Tabulation tabulation(TwoFactors());
  tabulation.fModel.fDepCatLocalInds = {2, 0, 1};
  tabulation.fModel.fValueAt = 3;
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  using Row = mctest::RowRecorder::Row;
  for (const bool likelihoodOnly : {true, false}) {
    tabulation.fAccumulator.fRows.clear();
    EXPECT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(likelihoodOnly).IsOK());
    EXPECT_THAT(tabulation.fAccumulator.fRows,
                ElementsAre(Row{{0, 1, 4}, {1.5, 1, 1}, 0, 2, likelihoodOnly},
                            Row{{0, 2, 4}, {3.5, 1, 1}, 2, 4, likelihoodOnly},
                            Row{{0, 3, 5}, {0.5, 1, 1}, 2, 1, likelihoodOnly},
                            Row{{0, 3, 5}, {2.5, 1, 1}, 1, 3, likelihoodOnly}));
  }
}

TEST(MCPatternTabulatorWalk, WeighsARowByTheWeightsThatThereAre) {
  struct Case {
    int freqWeight;
    int regrWeight;
    double weight;
  };
  for (const Case& c : {Case{-1, -1, 1.0}, Case{2, -1, 3.0}, Case{-1, 3, 0.5}, Case{2, 3, 1.5}}) {
    TabulatedDesign design = OneFactor();
    design.freqWeight = c.freqWeight;
    design.regrWeight = c.regrWeight;
    Tabulation tabulation(design);
    ASSERT_TRUE(tabulation.BothPasses({{0, 1, 3.0, 0.5}}).IsOK());
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
    ASSERT_EQ(tabulation.fAccumulator.fRows.size(), 1U);
    EXPECT_EQ(tabulation.fAccumulator.fRows[0].fWeight, c.weight);
  }
}

TEST(MCPatternTabulatorWalk, EndsAtARowThatIsRefused) {
  for (int row = 1; row <= 4; ++row) {
    for (const int refusal : {-1, -2}) {
      Tabulation tabulation(TwoFactors());
      ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
      tabulation.fAccumulator.fRefuseAt = row;
      tabulation.fAccumulator.fRefusal = refusal;
      EXPECT_EQ(CodeOf(tabulation.fTabulator.ComputeStatsForOptimizer(false)), 313);
      EXPECT_EQ(static_cast<int>(tabulation.fAccumulator.fRows.size()), row);
      // The error stands: no further walk.
      EXPECT_EQ(CodeOf(tabulation.fTabulator.ComputeStatsForOptimizer(false)), 313);
      EXPECT_EQ(static_cast<int>(tabulation.fAccumulator.fRows.size()), row);
    }
    Tabulation tabulation(TwoFactors());
    ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
    tabulation.fModel.fRefuseAt = row;
    EXPECT_EQ(CodeOf(tabulation.fTabulator.FillDesignMatrix(tabulation.fModel)), 313);
    EXPECT_EQ(static_cast<int>(tabulation.fModel.fDesignRows.size()), row);
  }
}

TEST(MCPatternTabulatorWalk, AnAnswerAboveZeroIsNoRefusal) {
  Tabulation tabulation(TwoFactors());
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  tabulation.fAccumulator.fRefuseAt = 2;
  tabulation.fAccumulator.fRefusal = 1;
  EXPECT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
}

TEST(MCPatternTabulatorWalk, KeysAreReadAsTheyWereMade) {
  for (const bool packing : {true, false}) {
    Tabulation tabulation(TwoFactors());
    {
      const PackingSwitch atCreation(packing);
      ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
    }
    const PackingSwitch atWalk(!packing);
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
    std::vector<Ints> indices;
    for (const auto& row : tabulation.fAccumulator.fRows) indices.push_back(row.fIndices);
    EXPECT_THAT(indices, testing::UnorderedElementsAre(Ints{0, 1, 4}, Ints{0, 2, 4}, Ints{0, 3, 5},
                                                       Ints{0, 3, 5}));
    EXPECT_NE(tabulation.fTabulator.GetRowPatternsPtr({2, 1}), nullptr);
  }
}

TEST(MCPatternTabulatorWalk, MayBeRepeated) {
  Tabulation tabulation(TwoFactors());
  ASSERT_TRUE(tabulation.BothPasses(kFourRows).IsOK());
  ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
  const auto first = tabulation.fAccumulator.fRows;
  tabulation.fAccumulator.fRows.clear();
  ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
  EXPECT_TRUE(first == tabulation.fAccumulator.fRows);
}

}  // namespace
