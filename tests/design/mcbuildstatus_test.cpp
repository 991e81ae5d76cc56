// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcbuildstatus.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <vector>

namespace {
using MCCommon::MCStatus;

MCStatus Warning(long datum) {
  MCStatus status(319, true);
  status.SetDiscreteDatum(0, datum);
  return status;
}

TEST(MCBuildStatus, StartsWithNothingToReport) {
  const MCBuildStatus status;
  EXPECT_TRUE(status.Get().IsOK());
  EXPECT_FALSE(status.IsError());
  EXPECT_TRUE(status.GetWarnings().empty());
}

TEST(MCBuildStatus, StandsAtTheLastAnswerTaken) {
  MCBuildStatus status;
  status.Take(Warning(1));
  EXPECT_EQ(status.Get(), Warning(1));
  status.Take(MCStatus());
  EXPECT_TRUE(status.Get().IsOK());
  EXPECT_EQ(status.GetWarnings(), std::vector<MCStatus>{Warning(1)}) << "the warning is kept";
  status.Take(MCStatus(307, false));
  EXPECT_EQ(status.Get(), MCStatus(307, false));
  EXPECT_EQ(status.GetWarnings().size(), 1u) << "an error is no warning";
}

TEST(MCBuildStatus, KeepsEachDistinctWarningOnceInOrder) {
  MCBuildStatus status;
  for (const long datum : {1, 2, 1, 3, 2}) status.Take(Warning(datum));
  EXPECT_EQ(status.GetWarnings(), (std::vector<MCStatus>{Warning(1), Warning(2), Warning(3)}));
}

TEST(MCBuildStatus, AWarningWithANaNDatumIsAlwaysAnother) {
  MCBuildStatus status;
  MCStatus warning = Warning(1);
  warning.SetScaleDatum(0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(status.AddNewWarning(warning, false));
  EXPECT_TRUE(status.AddNewWarning(warning, false));
  EXPECT_EQ(status.GetWarnings().size(), 2u);
}

TEST(MCBuildStatus, TellsWhetherAWarningWasNew) {
  MCBuildStatus status;
  EXPECT_FALSE(status.AddNewWarning(MCStatus(), false));
  EXPECT_TRUE(status.AddNewWarning(Warning(1), false));
  EXPECT_FALSE(status.AddNewWarning(Warning(1), false));
  EXPECT_TRUE(status.Get().IsOK()) << "recording alone doesn't change what stands";
}

TEST(MCBuildStatus, AnErrorStandsAndIsRecordedOnlyOnRequest) {
  MCBuildStatus status;
  EXPECT_TRUE(status.AddNewWarning(MCStatus(312, false), false));
  EXPECT_EQ(status.Get(), MCStatus(312, false));
  EXPECT_TRUE(status.GetWarnings().empty());
  EXPECT_TRUE(status.AddNewWarning(MCStatus(313, false), true));
  EXPECT_EQ(status.Get(), MCStatus(313, false));
  EXPECT_EQ(status.GetWarnings(), std::vector<MCStatus>{MCStatus(313, false)});
  EXPECT_FALSE(status.AddNewWarning(MCStatus(313, false), true)) << "it is there";
}

TEST(MCBuildStatus, AddsAListAndTellsWhetherAllOfItWasNew) {
  MCBuildStatus status;
  EXPECT_TRUE(status.AddNewWarnings({}, false));
  EXPECT_TRUE(status.AddNewWarnings({Warning(1), Warning(2)}, false));
  EXPECT_FALSE(status.AddNewWarnings({Warning(2), Warning(3)}, false));
  EXPECT_FALSE(status.AddNewWarnings({MCStatus(), Warning(4)}, false));
  EXPECT_EQ(status.GetWarnings(),
            (std::vector<MCStatus>{Warning(1), Warning(2), Warning(3), Warning(4)}))
      << "one that isn't new keeps none of the others out";
}

TEST(MCBuildStatus, ItsOwnListAddsNothingButWhatIsAlwaysNew) {
  MCBuildStatus status;
  status.Take(Warning(1));
  EXPECT_FALSE(status.AddNewWarnings(status.GetWarnings(), false));
  MCStatus warning = Warning(2);
  warning.SetScaleDatum(0, std::numeric_limits<double>::quiet_NaN());
  status.Take(warning);
  EXPECT_FALSE(status.AddNewWarnings(status.GetWarnings(), false));
  EXPECT_EQ(status.GetWarnings().size(), 3u);
}

TEST(MCBuildStatus, AListOfErrorsStandsAtTheLast) {
  MCBuildStatus status;
  const std::vector<MCStatus> errors = {MCStatus(312, false), MCStatus(313, false)};
  EXPECT_TRUE(status.AddNewWarnings(errors, false));
  EXPECT_EQ(status.Get(), errors.back());
  EXPECT_TRUE(status.GetWarnings().empty());
  EXPECT_TRUE(status.AddNewWarnings(errors, true));
  EXPECT_EQ(status.GetWarnings(), errors);
}

TEST(MCBuildStatus, TheLastWarningWinsUnlessAnErrorStands) {
  MCBuildStatus quiet;
  quiet.LetLastWarningWin();
  EXPECT_TRUE(quiet.Get().IsOK());

  MCBuildStatus warned;
  warned.Take(Warning(1));
  warned.Take(Warning(2));
  warned.Take(MCStatus());
  warned.LetLastWarningWin();
  EXPECT_EQ(warned.Get(), Warning(2));

  MCBuildStatus failed;
  failed.Take(Warning(1));
  failed.Fail(MCCommon::MCS_NO_DATA);
  failed.LetLastWarningWin();
  EXPECT_EQ(failed.Get(), MCStatus(307, false));
}

TEST(MCBuildStatus, AStepMayWriteTheStandingStatusItself) {
  MCBuildStatus status;
  status.Get() = MCStatus(315, false);
  EXPECT_TRUE(status.IsError());
}

template <class F, class G>
constexpr bool Is(G /*operation*/) {
  return std::is_same_v<F, G>;
}

static_assert(Is<bool (MCBuildStatus::*)() const>(&MCBuildStatus::IsError));
static_assert(Is<void (MCBuildStatus::*)(long)>(&MCBuildStatus::Fail));
static_assert(Is<void (MCBuildStatus::*)(const MCStatus&)>(&MCBuildStatus::Take));
static_assert(Is<bool (MCBuildStatus::*)(const MCStatus&, bool)>(&MCBuildStatus::AddNewWarning));
static_assert(Is<bool (MCBuildStatus::*)(const std::vector<MCStatus>&, bool)>(
    &MCBuildStatus::AddNewWarnings));
static_assert(Is<void (MCBuildStatus::*)()>(&MCBuildStatus::LetLastWarningWin));
static_assert(
    Is<const std::vector<MCStatus>& (MCBuildStatus::*)() const>(&MCBuildStatus::GetWarnings));

}  // namespace
