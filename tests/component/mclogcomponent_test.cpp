// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mclogcomponent.h"

#include "regression/component/mcregfactory.h"
#include "regression/logistic/mclogoutputstats.h"
#include "support/contingencytable.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommon::Record;
using mctest::ContingencyTable;
using mctest::LogisticDesign;
using mctest::MakeRecord;
using mctest::Rows;
using mctest::RowSource;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr double kTolerance = 1e-12;  // closed forms, a well-conditioned design

LogisticDesign Table() {
  return ContingencyTable::Design();
}

// A component as a host gets it, and a source of rows.
struct Held {
  explicit Held(LogisticDesign design, const Rows& rows = ContingencyTable::WeightedRows())
      : fDesign(std::move(design)), fSource(rows) {
    MCRegFactory factory;
    fComponent.reset(factory.CreateRegAlgorithm(fDesign.Settings()));
  }

  IMCRegComponent* operator->() { return fComponent.get(); }

  MCStatus CreateParameters() { return fComponent->CreateParameters(fSource, fParameters); }
  MCStatus Build() { return fComponent->BuildModel(fSource); }

  MCStatus Score(double group) {
    return fComponent->Score(MakeRecord({9, group, 9}), fValue, fProbabilities);
  }

  MCConvergence Convergence() const {
    return static_cast<const MCLogComponent&>(*fComponent).GetConvergence();
  }

  LogisticDesign fDesign;
  RowSource fSource;
  std::unique_ptr<IMCRegComponent> fComponent;
  std::vector<MCRegrParameter> fParameters;
  double fValue = 99.0;
  std::vector<double> fProbabilities = {0.25};
};

TEST(MCLogComponent, IsFreshAfterItsConstruction) {
  Held held(Table());
  EXPECT_EQ(held->GetModelType(), MCConst::MC_MODEL_LOGISTIC);
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_THAT(held->GetWarnings(), IsEmpty());
  EXPECT_EQ(held.Convergence().fReason, MCConst::MC_CONV_NOT_RUN);
}

TEST(MCLogComponent, BuildsInOneCallWithBothPasses) {
  Held held(Table());
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held->IsModelBuilt());
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_EQ(held.fSource.fNextCalls, 12);
  EXPECT_EQ(held.Convergence().fReason, MCConst::MC_CONV_PARAM);
  EXPECT_TRUE(held.Convergence().IsConverged());
}

TEST(MCLogComponent, ParametersMadeFirstSaveThePassAndAreHandedOut) {
  Held held(Table());
  EXPECT_TRUE(held.CreateParameters().IsOK());
  EXPECT_EQ(held.fParameters.size(), 6u);
  EXPECT_EQ(held.fSource.fNextCalls, 6);
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held.fSource.fNextCalls, 12);
}

TEST(MCLogComponent, GivesItsResultsAndAlwaysTheSameObject) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  EXPECT_TRUE(held->GetOutputStats(stats).IsOK());
  ASSERT_NE(stats, nullptr);
  const std::vector<double> expected = ContingencyTable::Estimates();
  ASSERT_EQ(stats->GetParamEstimates()->size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR((*stats->GetParamEstimates())[i], expected[i], kTolerance);
  }
  IMCRegOutputStats* again = nullptr;
  EXPECT_TRUE(held->GetOutputStats(again).IsOK());
  EXPECT_EQ(again, stats);
}

TEST(MCLogComponent, ScoresRecords) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held.Score(1).IsOK());
  EXPECT_EQ(held.fValue, 1.0);
  ASSERT_EQ(held.fProbabilities.size(), 3u);
  for (int t = 0; t < 3; ++t) {
    EXPECT_NEAR(held.fProbabilities[static_cast<std::size_t>(t)],
                ContingencyTable::Probability(1, t), kTolerance);
  }
}

TEST(MCLogComponent, ARecordThatFailsValidationHasNoCategory) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held.Score(0.5).GetErrorCode(), 316);
  EXPECT_EQ(held.fValue, -1.0);
  EXPECT_THAT(held.fProbabilities, ElementsAre(0.25));
  EXPECT_TRUE(held->GetStatus().IsOK()) << "it is no end of the component";

  held.fValue = 99.0;
  EXPECT_EQ(held->Score(Record(1), held.fValue, held.fProbabilities), MCStatus(315, false));
  EXPECT_EQ(held.fValue, -1.0);

  held.fValue = 99.0;
  EXPECT_TRUE(held.Score(MCMV::gMissingValue).IsOK()) << "turned down silently";
  EXPECT_EQ(held.fValue, -1.0);
  EXPECT_THAT(held.fProbabilities, ElementsAre(0.25));
}

TEST(MCLogComponent, ALevelThatWasNotSeenHasNoCategoryAndMissingProbabilities) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held.Score(2).IsOK());
  EXPECT_EQ(held.fValue, -1.0);
  EXPECT_THAT(held.fProbabilities, Each(MCMV::gMissingValue));
}

TEST(MCLogComponent, BeforeTheBuildScoringDoesNothingAndIsOk) {
  Held held(Table());
  EXPECT_TRUE(held.Score(1).IsOK());
  ASSERT_TRUE(held.CreateParameters().IsOK());
  EXPECT_TRUE(held.Score(1).IsOK());
  EXPECT_EQ(held.fValue, 99.0);
  EXPECT_THAT(held.fProbabilities, ElementsAre(0.25));
}

TEST(MCLogComponent, BeforeTheBuildThereAreNoResultsAndThePointerIsNull) {
  Held held(Table());
  IMCRegOutputStats* stats = reinterpret_cast<IMCRegOutputStats*>(&held);
  EXPECT_EQ(held->GetOutputStats(stats), MCStatus(310, false));
  EXPECT_EQ(stats, nullptr);
  EXPECT_TRUE(held->GetStatus().IsOK()) << "not stored";
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held->GetOutputStats(stats).IsOK());
  EXPECT_NE(stats, nullptr);
}

TEST(MCLogComponent, ASecondBuildIsRefusedAndDoesNoHarm) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  const int nCalls = held.fSource.fHasMoreCalls;
  EXPECT_EQ(held.Build(), MCStatus(310, false));
  EXPECT_EQ(held.fSource.fHasMoreCalls, nCalls) << "the source was not asked";
  EXPECT_TRUE(held->GetStatus().IsOK()) << "not stored";
  EXPECT_TRUE(held->IsModelBuilt());
  EXPECT_TRUE(held.Score(1).IsOK());
  IMCRegOutputStats* stats = nullptr;
  EXPECT_TRUE(held->GetOutputStats(stats).IsOK());
  EXPECT_NE(stats, nullptr);
}

TEST(MCLogComponent, ParametersAreCreatedOnceAndASecondTimeKillsIt) {
  for (const bool isBuilt : {false, true}) {
    Held held(Table());
    ASSERT_TRUE(held.CreateParameters().IsOK());
    if (isBuilt) {
      ASSERT_TRUE(held.Build().IsOK());
    }
    held.fSource.NewPass();
    const MCStatus dead(306, false);
    EXPECT_EQ(held.CreateParameters(), dead);
    EXPECT_EQ(held->GetStatus(), dead);
    EXPECT_FALSE(held->IsModelBuilt());
    EXPECT_EQ(held.Build(), dead);
    EXPECT_EQ(held.Score(1), dead);
    EXPECT_EQ(held.fValue, 99.0);
    IMCRegOutputStats* stats = reinterpret_cast<IMCRegOutputStats*>(&held);
    EXPECT_EQ(held->GetOutputStats(stats), dead);
    EXPECT_EQ(stats, nullptr);
  }
}

TEST(MCLogComponent, FailuresOfTheFirstPassSurfaceInTheBuild) {
  Held empty(Table(), {});
  EXPECT_EQ(empty.Build(), MCStatus(307, false));
  EXPECT_EQ(empty->GetStatus(), MCStatus(307, false));
  Held nullRow(Table());
  nullRow.fSource.NullAt(0, 2);
  EXPECT_EQ(nullRow.CreateParameters(), MCStatus(312, false));
  EXPECT_EQ(nullRow.Build(), MCStatus(312, false));
}

TEST(MCLogComponent, FailuresOfLaterPassesAreStored) {
  Held held(Table());
  held.fSource.NullAt(1, 1);
  EXPECT_EQ(held.Build(), MCStatus(312, false));
  EXPECT_EQ(held->GetStatus(), MCStatus(312, false));
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_EQ(held.Score(1), MCStatus(312, false));
}

TEST(MCLogComponent, AWarningIsTheAnswerAndAllAreKept) {
  Rows rows;
  for (const std::vector<double>& row : ContingencyTable::WeightedRows()) {
    if (row[0] < 2) rows.push_back(row);
  }
  const MCStatus warning(319, true);
  Held held(Table().Categories(3, 2), rows);
  EXPECT_EQ(held.CreateParameters(), warning);
  EXPECT_EQ(held->GetStatus(), warning);
  EXPECT_EQ(held.Build(), warning);
  EXPECT_EQ(held->GetStatus(), warning);
  EXPECT_THAT(held->GetWarnings(), ElementsAre(warning));
  EXPECT_TRUE(held->IsModelBuilt());
  IMCRegOutputStats* stats = nullptr;
  EXPECT_EQ(held->GetOutputStats(stats), warning);
  EXPECT_NE(stats, nullptr);
  EXPECT_TRUE(held.Score(1).IsOK()) << "the scoring's own";
}

TEST(MCLogComponent, ABuildThatDidNotConvergeIsNoError) {
  LogisticDesign design = LogisticDesign(0, {}, {1}).Effect({}, {1});
  design.Settings().SetMaxIterations(3);
  Held held(std::move(design), {{0, 1}, {0, 2}, {1, 3}, {1, 4}});
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held.Convergence().fReason, MCConst::MC_CONV_MAX_ITER);
  EXPECT_FALSE(held.Convergence().IsConverged());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  EXPECT_EQ(dynamic_cast<MCLogOutputStats&>(*stats).GetConvergence().fReason,
            MCConst::MC_CONV_MAX_ITER);
}

TEST(MCLogComponent, OfInvalidSettingsHoldsTheErrorAndNothingElse) {
  const MCLogRegSettings settings;
  MCLogComponent component(settings);
  const MCStatus expected(301, false);
  RowSource source(ContingencyTable::WeightedRows());
  std::vector<MCRegrParameter> parameters;
  std::vector<double> probabilities;
  double value = 99.0;
  IMCRegOutputStats* stats = nullptr;
  EXPECT_EQ(component.GetStatus(), expected);
  EXPECT_EQ(component.CreateParameters(source, parameters), expected);
  EXPECT_EQ(component.BuildModel(source), expected);
  EXPECT_EQ(component.GetOutputStats(stats), expected);
  EXPECT_EQ(component.Score(Record(2), value, probabilities), expected);
  EXPECT_FALSE(component.IsModelBuilt());
  EXPECT_THAT(component.GetWarnings(), IsEmpty());
  EXPECT_EQ(component.GetConvergence().fReason, MCConst::MC_CONV_NOT_RUN);
  component.Cancel();
  EXPECT_EQ(source.fNewPassCalls + source.fHasMoreCalls + source.fNextCalls, 0);
  EXPECT_EQ(value, 99.0);
}

// CreateParameters() of a component derived from ours is what BuildModel() calls.
class CountingComponent : public MCLogComponent {
public:
  using MCLogComponent::MCLogComponent;
  MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                            std::vector<MCRegrParameter>& parameters) override {
    ++fCalls;
    EXPECT_THAT(parameters, IsEmpty());
    return MCLogComponent::CreateParameters(source, parameters);
  }
  int fCalls = 0;
};

TEST(MCLogComponent, BuildCallsTheVirtualCreateParametersOnceWithAnEmptyVector) {
  LogisticDesign design = Table();
  CountingComponent component(design.Settings());
  RowSource source(ContingencyTable::WeightedRows());
  EXPECT_TRUE(component.BuildModel(source).IsOK());
  EXPECT_EQ(component.fCalls, 1);
  EXPECT_EQ(component.BuildModel(source), MCStatus(310, false));
  EXPECT_EQ(component.fCalls, 1);
}

// --- Cancel, threads ----------------------------------------------------------------------------

TEST(MCLogComponent, ACancelBeforeTheBuildLeavesNothingBuilt) {
  Held held(Table());
  held->Cancel();
  EXPECT_TRUE(held.Build().IsOK()) << "nothing is raised between the steps";
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_EQ(held.fSource.fHasMoreCalls, 0);
}

TEST(MCLogComponent, ACancelAfterTheBuildIsAnsweredByScoreAndNotStored) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  held->Cancel();
  EXPECT_EQ(held.Score(1), MCStatus(1, false));
  EXPECT_EQ(held.fValue, -1.0);
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_TRUE(held->IsModelBuilt());
}

TEST(MCLogComponent, ItsResultsCancelItToo) {
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  stats->Cancel();
  EXPECT_EQ(held.Score(1), MCStatus(1, false));
}

// A source that never ends, from the given pass on, and tells when that has begun.
class EndlessSource : public MCCommon::MultiPassRecordIter {
public:
  EndlessSource(Rows rows, int endlessFrom) : fSource(std::move(rows)), fEndlessFrom(endlessFrom) {}

  bool HasMore() const override { return IsEndless() || fSource.HasMore(); }
  Record* Next() override {
    if (IsEndless()) {
      if (!fSource.HasMore()) fSource.NewPass();
      fHasStarted.store(true);
    }
    return fSource.Next();
  }
  int GetFailReason() const override { return 0; }
  int NewPass() override {
    ++fPasses;
    return fSource.NewPass();
  }

  std::atomic<bool> fHasStarted{false};

private:
  bool IsEndless() const { return fPasses >= fEndlessFrom; }

  RowSource fSource;
  int fEndlessFrom;
  int fPasses = 0;
};

TEST(MCLogComponentThreads, AnotherThreadCancelsARunningBuild) {
  // In the first pass, in that of the design and in the first of the estimator.
  for (const int pass : {0, 1, 3}) {
    Held held(Table().Rereading());
    EndlessSource source(ContingencyTable::WeightedRows(), pass);
    MCStatus status;
    std::thread build([&held, &source, &status] { status = held->BuildModel(source); });
    while (!source.fHasStarted.load()) std::this_thread::yield();
    held->Cancel();
    build.join();
    EXPECT_EQ(status, MCStatus(1, false)) << pass;
    EXPECT_FALSE(held->IsModelBuilt());
  }
}

// A listener that waits, in the iterations of the pattern road, until the other thread cancelled.
class WaitingListener : public ProgressListener {
public:
  bool ReportProgress(ProgressReport* /*report*/) override {
    fHasStarted.store(true);
    while (!fIsCancelled.load()) std::this_thread::yield();
    return true;
  }
  std::atomic<bool> fHasStarted{false};
  std::atomic<bool> fIsCancelled{false};
};

TEST(MCLogComponentThreads, AnotherThreadCancelsTheIterationsOverStoredPatterns) {
  WaitingListener listener;
  LogisticDesign design = Table();
  design.Settings().SetProgressListener(&listener);
  Held held(std::move(design));
  MCStatus status;
  std::thread build([&held, &status] { status = held.Build(); });
  while (!listener.fHasStarted.load()) std::this_thread::yield();
  held->Cancel();
  listener.fIsCancelled.store(true);
  build.join();
  EXPECT_EQ(status, MCStatus(1, false));
  EXPECT_EQ(held.Convergence().fReason, MCConst::MC_CONV_NONE);
}

// What a host gives to be called back: notes the thread of each call.
class NotingThreads : public ProgressListener, public MCQueryCancel {
public:
  bool ReportProgress(ProgressReport* /*report*/) override {
    ++fReports;
    return Note();
  }
  bool IsCancel() override { return !Note(); }
  bool WillCancel() override {
    ++fPolls;
    return !Note();
  }

  int fReports = 0;
  int fPolls = 0;
  bool fbOnlyHere = true;

private:
  bool Note() {
    fbOnlyHere = fbOnlyHere && std::this_thread::get_id() == fHere;
    return true;
  }

  std::thread::id fHere = std::this_thread::get_id();
};

TEST(MCLogComponentThreads, ListenerAndQueryAreCalledOnTheBuildingThreadAlone) {
  for (const bool rereading : {false, true}) {
    NotingThreads host;
    LogisticDesign design = Table().Rereading(rereading).CancelledBy(host);
    design.Settings().SetProgressListener(&host);
    Held held(std::move(design));
    ASSERT_TRUE(held.Build().IsOK());
    EXPECT_EQ(host.fReports, 1 + held.Convergence().fIterations);
    EXPECT_GT(host.fPolls, 50);
    EXPECT_TRUE(host.fbOnlyHere);
  }
}

// --- Memory, display ----------------------------------------------------------------------------

TEST(MCLogComponent, ItsResultsMayOutliveNothingButAreDeletedAfterTheDriver) {
  // The sanitizers see that nothing of the driver is looked at when the results go.
  Held held(Table());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  held.fComponent.reset();
}

TEST(MCLogComponentDisplay, ShowsSettingsAloneWithoutADriver) {
  const MCLogRegSettings settings;
  const MCLogComponent component(settings);
  EXPECT_EQ(mctest::DisplayOf(component), "\nMCLogComponent display start\nfCompSettings" +
                                              mctest::DisplayOf(component.GetCompSettings()) +
                                              "\nMCLogComponent display end");
}

TEST(MCLogComponentDisplay, ShowsDriverAndResultsOnceTheyAreThere) {
  Held held(Table());
  EXPECT_THAT(mctest::DisplayOf(*held.fComponent), HasSubstr("\nfpAlgorithm\nMCLogAlgorithm"));
  EXPECT_THAT(mctest::DisplayOf(*held.fComponent), Not(HasSubstr("fpOutputStats")));
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  const std::string text = mctest::DisplayOf(*held.fComponent);
  EXPECT_THAT(text, testing::EndsWith("\nfpOutputStats" + mctest::DisplayOf(*stats) +
                                      "\nMCLogComponent display end"));
  EXPECT_THAT(text, testing::StartsWith("\nMCLogComponent display start\nfCompSettings" +
                                        mctest::DisplayOf(held->GetCompSettings()) +
                                        "\nfpAlgorithm\nMCLogAlgorithm display start"));
}

}  // namespace
