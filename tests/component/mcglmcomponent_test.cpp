// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mcglmcomponent.h"

#include "regression/component/mcregfactory.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/regressiondesign.h"
#include "support/rowsource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {
using MCCommon::MCStatus;
using MCCommon::Record;
using mctest::RegressionDesign;
using mctest::Rows;
using mctest::RowSource;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr double kTolerance = 1e-12;  // small well-conditioned designs

// y at 0 and x at 1: the line through them is y = 2.2 + 0.6 x.
const Rows kRows = {{2, 1}, {4, 2}, {5, 3}, {4, 4}, {5, 5}};

RegressionDesign Line() {
  return RegressionDesign(0, {}, {1}).Effect({}, {1});
}

// A component as a host gets it, and a source of rows.
struct Held {
  explicit Held(RegressionDesign design, const Rows& rows = kRows)
      : fDesign(std::move(design)), fSource(rows) {
    MCRegFactory factory;
    fComponent.reset(factory.CreateRegAlgorithm(fDesign.Settings()));
  }

  IMCRegComponent* operator->() { return fComponent.get(); }

  MCStatus CreateParameters() { return fComponent->CreateParameters(fSource, fParameters); }
  MCStatus Build() { return fComponent->BuildModel(fSource); }

  MCStatus Score(double x) {
    Record record(2);
    record[1] = x;
    return fComponent->Score(record, fValue, fProbabilities);
  }

  RegressionDesign fDesign;
  RowSource fSource;
  std::unique_ptr<IMCRegComponent> fComponent;
  std::vector<MCRegrParameter> fParameters = std::vector<MCRegrParameter>(3);
  double fValue = 99.0;
  std::vector<double> fProbabilities = {0.25};
};

TEST(MCGLMComponent, IsFreshAfterItsConstruction) {
  Held held(Line());
  EXPECT_EQ(held->GetModelType(), MCConst::MC_MODEL_LINEAR);
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_THAT(held->GetWarnings(), IsEmpty());
}

TEST(MCGLMComponent, BuildsInOneCallWithThreePasses) {
  Held held(Line());
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held->IsModelBuilt());
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_EQ(held.fSource.fNewPassCalls, 3);
  EXPECT_EQ(held.fSource.fNextCalls, 15);
  EXPECT_EQ(held.fSource.fHasMoreCalls, 19);
}

TEST(MCGLMComponent, ParametersMadeFirstSaveThePassAndLeaveTheVectorAlone) {
  Held held(Line());
  EXPECT_TRUE(held.CreateParameters().IsOK());
  EXPECT_EQ(held.fParameters.size(), 3u);
  EXPECT_EQ(held.fSource.fNewPassCalls, 1);
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held.fSource.fNewPassCalls, 3);
}

TEST(MCGLMComponent, GivesItsResultsAndAlwaysTheSameObject) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  EXPECT_TRUE(held->GetOutputStats(stats).IsOK());
  ASSERT_NE(stats, nullptr);
  ASSERT_EQ(stats->GetParamEstimates()->size(), 2u);
  EXPECT_NEAR((*stats->GetParamEstimates())[0], 2.2, kTolerance);
  EXPECT_NEAR((*stats->GetParamEstimates())[1], 0.6, kTolerance);
  IMCRegOutputStats* again = nullptr;
  EXPECT_TRUE(held->GetOutputStats(again).IsOK());
  EXPECT_EQ(again, stats);
}

TEST(MCGLMComponent, ScoresRecordsAndLeavesProbabilitiesAlone) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held.Score(10).IsOK());
  EXPECT_NEAR(held.fValue, 8.2, kTolerance);
  EXPECT_THAT(held.fProbabilities, ElementsAre(0.25));
}

TEST(MCGLMComponent, ARecordTooShortToScoreIsNoEndOfTheComponent) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held->Score(Record(1), held.fValue, held.fProbabilities), MCStatus(315, false));
  EXPECT_EQ(held.fValue, MCMV::gMissingValue);
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_TRUE(held.Score(1).IsOK());
}

TEST(MCGLMComponent, BeforeTheBuildScoringDoesNothingAndIsOk) {
  Held held(Line());
  EXPECT_TRUE(held.Score(1).IsOK());
  ASSERT_TRUE(held.CreateParameters().IsOK());
  EXPECT_TRUE(held.Score(1).IsOK());
  EXPECT_EQ(held.fValue, 99.0);
  EXPECT_THAT(held.fProbabilities, ElementsAre(0.25));
}

TEST(MCGLMComponent, BeforeTheBuildThereAreNoResultsAndThePointerStays) {
  Held held(Line());
  IMCRegOutputStats* const untouched = reinterpret_cast<IMCRegOutputStats*>(&held);
  IMCRegOutputStats* stats = untouched;
  EXPECT_EQ(held->GetOutputStats(stats), MCStatus(311, false));
  EXPECT_EQ(stats, untouched);
  EXPECT_TRUE(held->GetStatus().IsOK()) << "not stored";
  EXPECT_TRUE(held.Build().IsOK());
  EXPECT_TRUE(held->GetOutputStats(stats).IsOK());
  EXPECT_NE(stats, untouched);
}

TEST(MCGLMComponent, ASecondBuildKillsIt) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  const MCStatus dead(310, false);
  EXPECT_EQ(held.Build(), dead);
  EXPECT_EQ(held.fSource.fNewPassCalls, 3) << "the source was not asked";
  EXPECT_EQ(held->GetStatus(), dead);
  EXPECT_FALSE(held->IsModelBuilt());
  EXPECT_EQ(held.Build(), dead);
  EXPECT_EQ(held.CreateParameters(), dead);
  EXPECT_EQ(held.Score(1), dead);
  EXPECT_EQ(held.fValue, 99.0);
  IMCRegOutputStats* again = stats;
  EXPECT_EQ(held->GetOutputStats(again), dead);
  EXPECT_EQ(again, stats);
}

TEST(MCGLMComponent, ParametersAreCreatedOnce) {
  Held held(Line());
  ASSERT_TRUE(held.CreateParameters().IsOK());
  EXPECT_EQ(held.CreateParameters(), MCStatus(306, false));
  EXPECT_EQ(held.Build(), MCStatus(306, false)) << "the error is stored";
  EXPECT_FALSE(held->IsModelBuilt());
}

TEST(MCGLMComponent, ParametersAfterTheBuildKillIt) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  EXPECT_EQ(held.CreateParameters(), MCStatus(306, false));
  EXPECT_FALSE(held->IsModelBuilt());
}

TEST(MCGLMComponent, FailuresOfTheFirstPassStopTheBuild) {
  Held empty(Line(), {});
  EXPECT_EQ(empty.Build(), MCStatus(307, false));
  EXPECT_EQ(empty.fSource.fNewPassCalls, 1);
  Held nullRow(Line());
  nullRow.fSource.NullAt(1, 2);
  EXPECT_EQ(nullRow.CreateParameters(), MCStatus(312, false));
  EXPECT_EQ(nullRow.Build(), MCStatus(312, false));
}

TEST(MCGLMComponent, FailuresOfLaterPassesAreStored) {
  for (int pass = 2; pass <= 3; ++pass) {
    Held held(Line());
    held.fSource.NullAt(pass, 1);
    EXPECT_EQ(held.Build(), MCStatus(313, false));
    EXPECT_EQ(held->GetStatus(), MCStatus(313, false));
    EXPECT_FALSE(held->IsModelBuilt());
    EXPECT_EQ(held.Score(1), MCStatus(313, false));
  }
}

TEST(MCGLMComponent, OfInvalidSettingsHoldsTheErrorAndNothingElse) {
  const MCRegSettings settings;
  MCGLMComponent component(settings);
  const MCStatus expected(301, false);
  RowSource source(kRows);
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
  component.Cancel();
  EXPECT_EQ(source.fNewPassCalls + source.fHasMoreCalls + source.fNextCalls, 0);
  EXPECT_EQ(value, 99.0);
}

TEST(MCGLMComponent, ACancelIsForGood) {
  Held held(Line());
  ASSERT_TRUE(held.CreateParameters().IsOK());
  held->Cancel();
  EXPECT_EQ(held.Build(), MCStatus(1, false));
  EXPECT_EQ(held->GetStatus(), MCStatus(1, false));
}

TEST(MCGLMComponent, ACancelAfterTheBuildIsAnsweredByScoreAndNotStored) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  held->Cancel();
  EXPECT_EQ(held.Score(1), MCStatus(1, false));
  EXPECT_EQ(held.fValue, 99.0);
  EXPECT_TRUE(held->GetStatus().IsOK());
  EXPECT_TRUE(held->IsModelBuilt());
}

TEST(MCGLMComponent, ItsResultsCancelItToo) {
  Held held(Line());
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  stats->Cancel();
  EXPECT_EQ(held.Score(1), MCStatus(1, false));
}

TEST(MCGLMComponent, ACancelBeforeTheFirstRowLeavesNoValidRow) {
  Held held(Line());
  held->Cancel();
  EXPECT_EQ(held.Build(), MCStatus(307, false));
}

// A source that never ends, and tells when its first row has been read.
class EndlessSource : public MCCommon::MultiPassRecordIter {
public:
  bool HasMore() const override { return true; }
  Record* Next() override {
    fHasStarted.store(true);
    return &fRecord;
  }
  int GetFailReason() const override { return 0; }
  int NewPass() override { return 0; }

  Record fRecord{2};
  std::atomic<bool> fHasStarted{false};
};

TEST(MCGLMComponent, AnotherThreadCancelsARunningBuild) {
  Held held(Line());
  EndlessSource source;
  MCStatus status;
  std::thread build([&held, &source, &status] { status = held->BuildModel(source); });
  while (!source.fHasStarted.load()) std::this_thread::yield();
  held->Cancel();
  build.join();
  EXPECT_EQ(status, MCStatus(1, false));
}

// CreateParameters() of a component derived from ours is what BuildModel() calls.
class CountingComponent : public MCGLMComponent {
public:
  using MCGLMComponent::MCGLMComponent;
  MCStatus CreateParameters(MCCommon::MultiPassRecordIter& source,
                            std::vector<MCRegrParameter>& parameters) override {
    ++fCalls;
    EXPECT_THAT(parameters, IsEmpty());
    return MCGLMComponent::CreateParameters(source, parameters);
  }
  int fCalls = 0;
};

TEST(MCGLMComponent, BuildCallsTheVirtualCreateParametersOnceWithAnEmptyVector) {
  RegressionDesign design = Line();
  CountingComponent component(design.Settings());
  RowSource source(kRows);
  EXPECT_TRUE(component.BuildModel(source).IsOK());
  EXPECT_EQ(component.fCalls, 1);
}

// Builds and asks for the results while the k-th allocation fails. Answers whether one failed.
bool FailsInBuild(std::size_t k, RegressionDesign design, RowSource source, MCStatus& status,
                  bool& hasResults, bool& isThrown) {
  const mctest::FailAllocation failure(k);
  try {
    MCRegFactory factory;
    const std::unique_ptr<IMCRegComponent> made(factory.CreateRegAlgorithm(design.Settings()));
    IMCRegOutputStats* stats = nullptr;
    status = made->BuildModel(source);
    if (!status.IsError()) status = made->GetOutputStats(stats);
    hasResults = stats != nullptr;
  } catch (const std::bad_alloc&) {
    isThrown = true;
  }
  return failure.HasFired();
}

TEST(MCGLMComponent, ExhaustionAnywhereInABuildIsThrownOrAnError) {
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    MCStatus status;
    bool hasResults = false;
    bool isThrown = false;
    fired =
        FailsInBuild(k, RegressionDesign(0, {{2, 2}}, {1}).Effect({}, {1}).Effect({2}),
                     RowSource({{2, 1, 0}, {4, 2, 1}, {5, 3, 0}}), status, hasResults, isThrown);
    EXPECT_TRUE(fired || !isThrown) << k;
    EXPECT_EQ(hasResults, !isThrown && !status.IsError()) << k;
    // The matrix; or the source's record, which is then too short.
    EXPECT_THAT(status.GetErrorCode(), testing::AnyOf(0, 305, 315)) << k;
  }
}

// --- Display ------------------------------------------------------------------------------------

TEST(MCGLMComponentDisplay, ShowsSettingsAloneWithoutADriver) {
  const MCRegSettings settings;
  const MCGLMComponent component(settings);
  EXPECT_EQ(mctest::DisplayOf(component), "\nMCGLMComponent display start\nfCompSettings" +
                                              mctest::DisplayOf(component.GetCompSettings()) +
                                              "\nMCGLMComponent display end");
}

TEST(MCGLMComponentDisplay, ShowsDriverAndResultsOnceTheyAreThere) {
  Held held(Line());
  EXPECT_THAT(mctest::DisplayOf(*held.fComponent), HasSubstr("\nfpAlgorithm\nMCGLMAlgorithm"));
  EXPECT_THAT(mctest::DisplayOf(*held.fComponent), Not(HasSubstr("fpOutputStats")));
  ASSERT_TRUE(held.Build().IsOK());
  IMCRegOutputStats* stats = nullptr;
  ASSERT_TRUE(held->GetOutputStats(stats).IsOK());
  const std::string text = mctest::DisplayOf(*held.fComponent);
  const std::string results = "\nfpOutputStats" + mctest::DisplayOf(*stats);
  EXPECT_THAT(text, testing::EndsWith(results + "\nMCGLMComponent display end"));
  EXPECT_THAT(text, testing::StartsWith("\nMCGLMComponent display start\nfCompSettings" +
                                        mctest::DisplayOf(held->GetCompSettings()) +
                                        "\nfpAlgorithm\nMCGLMAlgorithm display start"));
}

}  // namespace
