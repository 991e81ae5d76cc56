// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcrecorditerhandler.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/fakeregmodel.h"
#include "support/rowrecorder.h"
#include "support/rowsource.h"
#include "support/scriptedcancel.h"
#include "support/tabulation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

using mctest::Rows;
using mctest::RowSource;
using mctest::ScriptedCancel;
using testing::ElementsAre;
using testing::IsEmpty;
using Ints = std::vector<int>;
using Row = mctest::RowRecorder::Row;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Records are (dependent of 3 categories, covariate, frequency weight, regression weight).
const std::vector<MCConst::MCVariableType> kRoles = {
    MCConst::MC_VAR_DEPENDENT, MCConst::MC_VAR_COVARIATE, MCConst::MC_VAR_FREQ_WEIGHT,
    MCConst::MC_VAR_REGR_WEIGHT};
const Rows kRows = {{0, 1.5, 2, 0.5}, {2, 2.5, 3, 1}, {1, 3.5, 4, 2}, {0, 4.5, 5, 1}};

struct Iteration {
  explicit Iteration(const Rows& rows, const ScriptedCancel& query = ScriptedCancel(),
                     int freqWeight = 2, int regrWeight = 3)
      : fSource(rows),
        fQuery(query),
        fCancel(&fQuery),
        fValidator(kRoles, {}, {}, 3),
        fHandler(fSource, fCancel, fValidator, 0, freqWeight, regrWeight) {
    fModel.fFoundIndices = {0, 1};
    fModel.fRowSize = 4;
    fModel.fValueAt = 1;
    fHandler.SetStatsModel(&fAccumulator, &fModel);
  }
  long Compute(bool likelihoodOnly = false) {
    return fHandler.ComputeStatsForOptimizer(likelihoodOnly).GetErrorCode();
  }

  RowSource fSource;
  ScriptedCancel fQuery;
  MCCancelInfo fCancel;
  MCRegRecordValidator fValidator;
  mctest::FakeRegModel fModel;
  mctest::RowRecorder fAccumulator;
  MCRecordIterHandler fHandler;
};

TEST(MCRecordIterHandler, GivesEachRowOfTheSourceToTheAccumulator) {
  Iteration iteration(kRows);
  for (const bool likelihoodOnly : {false, true}) {
    iteration.fAccumulator.fRows.clear();
    EXPECT_EQ(iteration.Compute(likelihoodOnly), 0);
    EXPECT_THAT(iteration.fAccumulator.fRows,
                ElementsAre(Row{{0, 1}, {1.5, 1}, 0, 1.0, likelihoodOnly},
                            Row{{0, 1}, {2.5, 1}, 2, 3.0, likelihoodOnly},
                            Row{{0, 1}, {3.5, 1}, 1, 8.0, likelihoodOnly},
                            Row{{0, 1}, {4.5, 1}, 0, 5.0, likelihoodOnly}));
  }
  EXPECT_EQ(iteration.fSource.fNewPassCalls, 2);
  EXPECT_THAT(iteration.fHandler.GetWarnings(), IsEmpty());
}

TEST(MCRecordIterHandler, WeighsARowByTheWeightsThatThereAre) {
  struct Case {
    int freqWeight;
    int regrWeight;
    double weight;
  };
  for (const Case& c : {Case{-1, -1, 1.0}, Case{2, -1, 3.0}, Case{-1, 3, 0.5}, Case{2, 3, 1.5}}) {
    Iteration iteration({{0, 1, 3.0, 0.5}}, ScriptedCancel(), c.freqWeight, c.regrWeight);
    EXPECT_EQ(iteration.Compute(), 0);
    EXPECT_EQ(iteration.fAccumulator.fRows.at(0).fWeight, c.weight);
  }
}

TEST(MCRecordIterHandler, SkipsRowsThatAreNotValid) {
  Iteration iteration(
      {{0, kMissing, 1, 1}, {kMissing, 1, 1, 1}, {0, 1, 0, 1}, {0, 1, 1, -1}, {2, 7, 1, 1}});
  EXPECT_EQ(iteration.Compute(), 0);
  EXPECT_THAT(iteration.fAccumulator.fRows, ElementsAre(Row{{0, 1}, {7, 1}, 2, 1.0, false}));
}

TEST(MCRecordIterHandler, ACategoryIsTheCodeWhateverItsLocalIndex) {
  Iteration iteration(kRows);
  iteration.fModel.fDependCategories = {1, 2, 0};
  iteration.fModel.fDepCatLocalInds = {2, 0, 1};
  EXPECT_EQ(iteration.Compute(), 0);
  Ints categories;
  for (const Row& row : iteration.fAccumulator.fRows) categories.push_back(row.fCategory);
  EXPECT_THAT(categories, ElementsAre(0, 2, 1, 0));
}

TEST(MCRecordIterHandler, ACodeIsTruncatedWithoutAHalf) {
  // Only a host's own rules let such values pass.
  Iteration iteration({{1.75, 1, 1, 1}, {-0.75, 1, 1, 1}, {1e99, 1, 1, 1}, {kNaN, 1, 1, 1}});
  iteration.fValidator = MCRegRecordValidator();
  EXPECT_EQ(iteration.Compute(), 0);
  Ints categories;
  for (const Row& row : iteration.fAccumulator.fRows) categories.push_back(row.fCategory);
  constexpr int kMin = std::numeric_limits<int>::min();
  EXPECT_THAT(categories, ElementsAre(1, 0, kMin, kMin));
}

TEST(MCRecordIterHandler, ARowOfAnUnknownCellIsAnEmptyOne) {
  Iteration iteration({{2, 7, 1, 1}});
  iteration.fModel.fFoundIndices.clear();
  EXPECT_EQ(iteration.Compute(), 0);
  EXPECT_THAT(iteration.fAccumulator.fRows, ElementsAre(Row{{}, {}, 2, 1.0, false}));
}

TEST(MCRecordIterHandler, AnEmptySourceIsNoError) {
  Iteration iteration({});
  EXPECT_EQ(iteration.Compute(), 0);
  EXPECT_EQ(iteration.fSource.fNewPassCalls, 1);
}

TEST(MCRecordIterHandler, APassThatCannotBeginIsAnErrorForGood) {
  for (int pass = 1; pass <= 2; ++pass) {
    Iteration iteration(kRows);
    iteration.fSource.FailNewPass(pass);
    for (int good = 1; good < pass; ++good) EXPECT_EQ(iteration.Compute(), 0);
    EXPECT_EQ(iteration.Compute(), 307);
    iteration.fAccumulator.fRows.clear();
    EXPECT_EQ(iteration.Compute(), 307);
    EXPECT_THAT(iteration.fAccumulator.fRows, IsEmpty());
  }
}

TEST(MCRecordIterHandler, ANullRecordEndsThePassWhereverItIs) {
  for (int row = 0; row < 4; ++row) {
    Iteration iteration(kRows);
    iteration.fSource.NullAt(1, row);
    EXPECT_EQ(iteration.Compute(), 304);
    EXPECT_EQ(static_cast<int>(iteration.fAccumulator.fRows.size()), row);
    EXPECT_EQ(iteration.fSource.fNextCalls, row + 1);
    EXPECT_EQ(iteration.Compute(), 304);
    EXPECT_EQ(iteration.fSource.fNextCalls, row + 1);
  }
}

TEST(MCRecordIterHandler, ARowThatTheAccumulatorRefusesEndsThePass) {
  for (int row = 1; row <= 4; ++row) {
    Iteration iteration(kRows);
    iteration.fAccumulator.fRefuseAt = row;
    EXPECT_EQ(iteration.Compute(), 303);
    EXPECT_EQ(static_cast<int>(iteration.fAccumulator.fRows.size()), row);
  }
}

TEST(MCRecordIterHandler, OnlyTheAnswerMinusOneIsARefusal) {
  Iteration iteration(kRows);
  iteration.fAccumulator.fRefuseAt = 2;
  iteration.fAccumulator.fRefusal = -2;
  EXPECT_EQ(iteration.Compute(), 0);
  EXPECT_EQ(iteration.fAccumulator.fRows.size(), 4U);
}

TEST(MCRecordIterHandler, AnswersWhatTheValidationAnswers) {
  struct Case {
    std::vector<double> row;
    long code;
  };
  for (const Case& c :
       {Case{{0, 1, 1}, 315}, Case{{}, 315}, Case{{0.5, 1, 1, 1}, 316}, Case{{4, 1, 1, 1}, 316}}) {
    Iteration iteration({kRows[0], c.row, kRows[1]});
    EXPECT_EQ(iteration.Compute(), c.code);
    EXPECT_EQ(iteration.fAccumulator.fRows.size(), 1U);
    EXPECT_EQ(iteration.fSource.fNextCalls, 2);
  }
}

TEST(MCRecordIterHandler, ReadsNothingBeyondARecordIfTheRulesAskForNothing) {
  struct Case {
    int dependent;
    int freqWeight;
    int regrWeight;
    int factor;
    int covariate;
  };
  constexpr int kMaxInt = std::numeric_limits<int>::max();
  for (const Case& c : {Case{2, -1, -1, 0, 0}, Case{-1, -1, -1, 0, 0}, Case{0, 2, -1, 0, 0},
                        Case{0, -1, 2, 0, 0}, Case{0, -1, -1, 2, 0}, Case{0, -1, -1, 0, kMaxInt}}) {
    RowSource source({{0, 1}});
    MCCancelInfo cancel(nullptr);
    const MCRegRecordValidator validator;
    MCRecordIterHandler handler(source, cancel, validator, c.dependent, c.freqWeight, c.regrWeight);
    mctest::FakeRegModel model;
    model.fParameters.resize(1);
    model.fParameters[0].AddFactor(c.factor, 0, 0);
    model.fParameters[0].AddCovariate(c.covariate, 1);
    mctest::RowRecorder accumulator;
    handler.SetStatsModel(&accumulator, &model);
    EXPECT_EQ(handler.ComputeStatsForOptimizer(false).GetErrorCode(), 315);
    EXPECT_THAT(accumulator.fRows, IsEmpty());
  }
}

TEST(MCRecordIterHandler, NeedsModelAndAccumulator) {
  for (int missing = 0; missing < 3; ++missing) {
    Iteration iteration(kRows);
    if (missing == 0) iteration.fHandler.SetStatsModel(nullptr, &iteration.fModel);
    if (missing == 1) iteration.fHandler.SetStatsModel(&iteration.fAccumulator, nullptr);
    if (missing == 2) iteration.fHandler.CleanStatsModel();
    EXPECT_EQ(iteration.Compute(), 303);
    EXPECT_EQ(iteration.fSource.fNextCalls, 0);
  }
}

TEST(MCRecordIterHandler, ForwardsAResetIfThereIsAnAccumulator) {
  Iteration iteration(kRows);
  iteration.fHandler.ResetAccumStats(MCConst::MC_EST_NEWTON, true);
  iteration.fHandler.ResetAccumStats(MCConst::MC_EST_FISHER, false);
  iteration.fHandler.CleanStatsModel();
  iteration.fHandler.ResetAccumStats(MCConst::MC_EST_FISHER, false);
  EXPECT_THAT(iteration.fAccumulator.fResets,
              ElementsAre(std::pair(MCConst::MC_EST_NEWTON, true),
                          std::pair(MCConst::MC_EST_FISHER, false)));
}

TEST(MCRecordIterHandler, ACancelEndsThePassWithTheStandingStatus) {
  for (const auto duration : {ScriptedCancel::kOnce, ScriptedCancel::kForGood}) {
    // One poll before each row, none at the end.
    for (int poll = 1; poll <= 5; ++poll) {
      Iteration iteration(kRows, ScriptedCancel(poll, duration));
      EXPECT_EQ(iteration.Compute(), 0);
      EXPECT_EQ(static_cast<int>(iteration.fAccumulator.fRows.size()), std::min(poll - 1, 4));
      EXPECT_EQ(iteration.fQuery.fPolls, std::min(poll, 4));
      EXPECT_EQ(iteration.fHandler.WasCancelled(), poll <= 4);
    }
  }
}

TEST(MCRecordIterHandler, DisplaysNothing) {
  const Iteration iteration(kRows);
  EXPECT_EQ(mctest::DisplayOf(iteration.fHandler), "");
}

// Both handlers over the same rows of one pattern: the same rows in the same order where codes and
// local indices are the same, and as told where not.
TEST(LogisticHandlers, AgreeWhereCodesAndLocalIndicesDo) {
  mctest::TabulatedDesign design;
  design.covariates = {1};
  design.freqWeight = 2;
  design.regrWeight = 3;
  for (const Ints& localIndices : {Ints{0, 1, 2}, Ints{2, 0, 1}}) {
    mctest::Tabulation tabulation(design);
    tabulation.fModel.fDepCatLocalInds = localIndices;
    tabulation.fModel.fValueAt = 1;
    ASSERT_TRUE(tabulation.BothPasses(kRows).IsOK());
    ASSERT_TRUE(tabulation.fTabulator.ComputeStatsForOptimizer(false).IsOK());
    Iteration iteration(kRows);
    iteration.fModel.fFoundIndices = {0};
    EXPECT_EQ(iteration.Compute(), 0);
    for (Row& row : iteration.fAccumulator.fRows) {
      row.fCategory = localIndices[static_cast<std::size_t>(row.fCategory)];
    }
    EXPECT_TRUE(iteration.fAccumulator.fRows == tabulation.fAccumulator.fRows);
  }
}

}  // namespace
