// SPDX-License-Identifier: Apache-2.0
//
// A cancel at every call of a run that has an iteration with one trial, one with two and a last
// one, by Cancel(), by a query that keeps saying yes and by one that says it once.
#include "regression/logistic/mcregoptimizer.h"
#include "support/scriptedrun.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {
using MCCommon::MCStatus;
using mctest::ScriptedRun;

// Polls are named by where they stand: at the top of an iteration, before a trial, before the full
// pass, and at the end.
std::vector<std::string> NamedWords() {
  std::istringstream text(
      "Set ResetF Full LL Report LL Hessian Scores "
      "?top ?trial ResetF Trial LL ?full ResetF Full LL Hessian Scores Report "
      "?top ?trial ResetF Trial LL Factor ?trial ResetF Trial LL ?full ResetF Full LL Hessian "
      "Scores Report "
      "?top ?trial ResetF Trial LL ?full ResetF Full LL Hessian Report "
      "?end Clean Counts");
  std::vector<std::string> words;
  for (std::string word; text >> word;) words.push_back(word);
  return words;
}

bool IsPoll(const std::string& word) {
  return word[0] == '?';
}

struct CancelledRun : ScriptedRun {
  CancelledRun() {
    Script().fTrialLL = {-1.0, -2.0, -1.0};
    Script().fScores = {{4.0}, {4.0}, {0.0}};
    Script().fHessians = {{4.0}};
  }

  // Lets `interfere` happen at the word of that index.
  template <class Interfere>
  void At(std::size_t index, Interfere interfere) {
    fLog.fOnCall = [this, index, interfere] {
      if (fLog.fWords.size() == index + 1) interfere();
    };
  }
};

std::string FirstWords(const std::vector<std::string>& words, std::size_t n) {
  std::string text;
  for (std::size_t i = 0; i < n; ++i) {
    text += (i > 0 ? " " : "") + (IsPoll(words[i]) ? "?" : words[i]);
  }
  return text;
}

// The run ended of itself: with its reason and the inverse.
void ExpectWhole(CancelledRun& run) {
  EXPECT_EQ(run.fLog.Text(), FirstWords(NamedWords(), NamedWords().size()));
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_PARAM);
  EXPECT_EQ(run.Optimizer().GetHessianGI()->GetElem(0, 0), 0.25);
  EXPECT_EQ(run.fEstimates, std::vector<double>{1.5});
}

// The run was cut short: the matrix is a Cholesky factor still, and the estimates are those of the
// last accepted step.
void ExpectUnfinished(CancelledRun& run, double estimate) {
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE);
  EXPECT_EQ(run.Optimizer().GetHessianGI()->GetElem(0, 0), 2.0);
  EXPECT_EQ(run.fEstimates, std::vector<double>{estimate});
  EXPECT_EQ(run.fLog.Count("Clean"), 1u);
  EXPECT_EQ(run.fLog.Count("Counts"), 0u);
}

// Estimates after the full passes that stand before the word of that index.
double EstimateAt(std::size_t index) {
  const std::vector<std::string> words = NamedWords();
  int nFull = 0;
  for (std::size_t i = 0; i < index; ++i) nFull += words[i] == "?full" ? 1 : 0;
  return nFull == 0 ? 0.0 : nFull == 1 ? 1.0 : 1.5;
}

TEST(MCRegOptimizerCancel, TheRunThatIsCancelledIsWholeOtherwise) {
  CancelledRun run;
  EXPECT_TRUE(run.Estimate().IsOK());
  ExpectWhole(run);
}

TEST(MCRegOptimizerCancel, CancelFromInsideAnyCallStopsBeforeTheNextIterationOrTrial) {
  const std::vector<std::string> words = NamedWords();
  for (std::size_t k = 0; k < words.size(); ++k) {
    SCOPED_TRACE(k);
    CancelledRun run;
    run.At(k, [&run] { run.Optimizer().Cancel(); });
    EXPECT_TRUE(run.Estimate().IsOK());
    std::size_t stop = k + 1;
    while (stop < words.size() && words[stop] != "?top" && words[stop] != "?trial") ++stop;
    if (stop == words.size()) {
      ExpectWhole(run);
      continue;
    }
    // The flag spares the poll; those before the full pass, if it is on the way, and at the end
    // are asked.
    const std::string ending = words[stop] == "?trial" ? " ? ? Clean" : " ? Clean";
    EXPECT_EQ(run.fLog.Text(), FirstWords(words, stop) + ending);
    ExpectUnfinished(run, EstimateAt(stop));
  }
}

TEST(MCRegOptimizerCancel, AQueryThatKeepsSayingYesGivesStatus1) {
  const std::vector<std::string> words = NamedWords();
  for (std::size_t k = 0; k < words.size(); ++k) {
    SCOPED_TRACE(k);
    CancelledRun run;
    run.At(k, [&run] { run.fCancel.fbYes = true; });
    const MCStatus status = run.Estimate();
    std::size_t poll = k;
    while (poll < words.size() && !IsPoll(words[poll])) ++poll;
    if (poll == words.size()) {
      EXPECT_TRUE(status.IsOK());
      ExpectWhole(run);
      continue;
    }
    EXPECT_TRUE(status == MCStatus(1, false));
    // One poll more tells the cancel where the first one only left a loop.
    const bool onlyLeaves = words[poll] == "?top" || words[poll] == "?trial";
    EXPECT_EQ(run.fLog.Text(), FirstWords(words, poll + 1) + (onlyLeaves ? " ? Clean" : " Clean"));
    EXPECT_EQ(run.fLog.Count("Counts"), 0u);
  }
}

TEST(MCRegOptimizerCancel, AQueryThatSaysYesOnceLeavesTheRunUnfinishedOrGivesStatus1) {
  const std::vector<std::string> words = NamedWords();
  int poll = 0;
  for (std::size_t k = 0; k < words.size(); ++k) {
    if (!IsPoll(words[k])) continue;
    SCOPED_TRACE(k);
    CancelledRun run;
    run.fCancel.fYesAt = ++poll;
    run.fCancel.fbOnce = true;
    const MCStatus status = run.Estimate();
    if (words[k] == "?full" || words[k] == "?end") {
      EXPECT_TRUE(status == MCStatus(1, false));
      EXPECT_EQ(run.fLog.Text(), FirstWords(words, k + 1) + " Clean");
      continue;
    }
    EXPECT_TRUE(status.IsOK());
    const std::string ending = words[k] == "?trial" ? " ? ? Clean" : " ? Clean";
    EXPECT_EQ(run.fLog.Text(), FirstWords(words, k + 1) + ending);
    ExpectUnfinished(run, EstimateAt(k));
  }
  EXPECT_EQ(poll, 11);
}

TEST(MCRegOptimizerCancel, ACancelBeforeARunWithNothingToIterateChangesNothing) {
  ScriptedRun run;
  run.fSettings.SetMaxIterations(0);
  run.Optimizer().Cancel();
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NOT_RUN);
  EXPECT_EQ(run.fLog.Count("Counts"), 1u);
}

TEST(MCRegOptimizerCancel, ACancelBeforeEstimateLeavesTheFirstPassAlone) {
  ScriptedRun run;
  run.Optimizer().Cancel();
  EXPECT_TRUE(run.Estimate().IsOK());
  EXPECT_EQ(run.fLog.Text(), "Set ResetF Full LL Report LL Hessian Scores ? Clean");
}

// A report is due only every other iteration, and the one that was cut short had none.
TEST(MCRegOptimizerCancel, AnUnfinishedRunReportsTheIterationThatItWasIn) {
  ScriptedRun run;
  run.fReportFrequency = 2;
  run.Script().fTrialLL = {-1.0, -2.0};
  run.fHandler.fOnPass = [&run](bool likelihoodOnly) {
    if (likelihoodOnly && run.fLog.Count("Trial") == 3) run.Optimizer().Cancel();
  };
  EXPECT_TRUE(run.Estimate().IsOK());
  ASSERT_EQ(run.fListener.Iterations(), (std::vector<int>{0, 2}));
  EXPECT_EQ(run.fListener.fEntries.back().fHalvings, 2);
  EXPECT_EQ(run.fListener.fEntries.back().fLogLik, -1.0);
  EXPECT_EQ(run.fListener.fEntries.back().fEstimates, std::vector<double>{1.0});
}

TEST(MCRegOptimizerCancel, AnotherThreadMayCancel) {
  ScriptedRun run;
  run.fbListens = false;
  run.fSettings.SetMaxIterations(2000000000);
  run.fSettings.SetStartingIteration(0);
  std::thread other;
  run.fHandler.fOnPass = [&run, &other](bool /*likelihoodOnly*/) {
    run.fLog.fWords.clear();
    if (!other.joinable()) other = std::thread([&run] { run.Optimizer().Cancel(); });
  };
  EXPECT_TRUE(run.Estimate().IsOK());
  other.join();
  EXPECT_EQ(run.Optimizer().GetConverCrit(), MCConst::MC_CONV_NONE);
}

}  // namespace
