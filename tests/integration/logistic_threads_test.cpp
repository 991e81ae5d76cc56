// SPDX-License-Identifier: Apache-2.0
//
// A cancel from another thread at any moment of a whole logistic build. The thread sanitizer sees
// whether anything but the flag is shared.
#include "regression/component/mcregfactory.h"
#include "support/libraryfit.h"
#include "support/logisticfile.h"
#include "support/makerecord.h"
#include "support/rowsource.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace {

using mctest::LibraryFit;
using mctest::LogisticProblem;

using Clock = std::chrono::steady_clock;

// A build beside which another thread cancels so much time after its start.
class CancelledBuild {
public:
  CancelledBuild(LibraryFit& fit, const LogisticProblem& problem)
      : fComponent(MCRegFactory().CreateRegAlgorithm(fit.Settings())), fSource(problem.rows) {}

  void Run(Clock::duration delay) {
    std::atomic<bool> hasStarted{false};
    std::thread canceller([this, delay, &hasStarted] {
      while (!hasStarted.load()) std::this_thread::yield();
      const Clock::time_point due = Clock::now() + delay;
      while (Clock::now() < due) std::this_thread::yield();
      fComponent->Cancel();
    });
    hasStarted.store(true);
    fStatus = fComponent->BuildModel(fSource);
    canceller.join();
  }

  const IMCRegComponent& Component() const { return *fComponent; }
  const MCCommon::MCStatus& Status() const { return fStatus; }

private:
  std::unique_ptr<IMCRegComponent> fComponent;
  mctest::RowSource fSource;
  MCCommon::MCStatus fStatus;
};

// Before the first row of a pass, there are no data or no design as yet. Between two steps the
// cancel goes unnoticed.
bool IsAnAnswerToACancel(const MCCommon::MCStatus& status) {
  if (status.IsOK()) return true;
  switch (status.GetErrorCode()) {
    case MCCommon::MCS_CANCELLED:
    case MCCommon::MCS_NO_DATA:
    case MCCommon::MCS_NO_WEIGHT:
    case MCCommon::MCS_NOT_PROCESSED:
      return true;
    default:
      return false;
  }
}

void ExpectCancelled(const CancelledBuild& build, const std::vector<double>& row) {
  EXPECT_TRUE(IsAnAnswerToACancel(build.Status())) << build.Status().GetErrorCode();
  const IMCRegComponent& component = build.Component();
  EXPECT_FALSE(build.Status().IsError() && component.IsModelBuilt());
  if (!component.IsModelBuilt()) return;
  // The cancel stands, also if it came when all was done.
  double category = 0.0;
  std::vector<double> probabilities;
  EXPECT_EQ(component.Score(mctest::MakeRecord(row), category, probabilities).GetErrorCode(),
            MCCommon::MCS_CANCELLED);
}

TEST(CancelFromAnotherThread, EndsALogisticBuildOrLeavesItFinished) {
  constexpr int kMoments = 40;
  const LogisticProblem problem = mctest::ReadLogisticData("births");
  for (const bool patterns : {true, false}) {
    SCOPED_TRACE(patterns ? "patterns" : "reread");
    LibraryFit fit(problem);
    fit.LogisticSettings().SetUsePatternTabulator(patterns);
    const Clock::time_point start = Clock::now();
    ASSERT_TRUE(fit.Build().IsOK());
    const Clock::duration whole = Clock::now() - start;
    for (int moment = 0; moment < kMoments; ++moment) {
      CancelledBuild build(fit, problem);
      build.Run(whole * moment / (kMoments - 5));
      ExpectCancelled(build, problem.rows[0]);
    }
  }
}

}  // namespace
