// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mccancelinfo.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

namespace {

// Answers as scripted, then no for ever, and counts how often it is asked what.
class ScriptedQuery : public MCQueryCancel {
public:
  explicit ScriptedQuery(std::vector<bool> answers) : fAnswers(std::move(answers)) {}

  bool IsCancel() override {
    ++fIsCancelCalls;
    return NextAnswer();
  }
  bool WillCancel() override {
    ++fWillCancelCalls;
    return NextAnswer();
  }

  int fIsCancelCalls = 0;
  int fWillCancelCalls = 0;

private:
  bool NextAnswer() { return fNext < fAnswers.size() && fAnswers[fNext++]; }

  std::vector<bool> fAnswers;
  std::size_t fNext = 0;
};

TEST(MCCancelInfo, StartsClearWithoutAQuery) {
  MCCancelInfo info(nullptr);
  EXPECT_EQ(info.GetCancelPtr(), nullptr);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_FALSE(info.WillCancel());
}

TEST(MCCancelInfo, SetCancelIsForGood) {
  MCCancelInfo info(nullptr);
  info.SetCancel();
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(info.WillCancel());
    EXPECT_TRUE(info.IsCancel());
  }
}

TEST(MCCancelInfo, AYesOfWillCancelIsNotRemembered) {
  ScriptedQuery query({true});
  const MCCancelInfo info(&query);
  EXPECT_TRUE(info.WillCancel());
  EXPECT_FALSE(info.WillCancel());
  EXPECT_EQ(query.fWillCancelCalls, 2);
  EXPECT_EQ(query.fIsCancelCalls, 0);
}

TEST(MCCancelInfo, AYesOfIsCancelSticksAndIsNotAskedForAgain) {
  ScriptedQuery query({false, true});
  MCCancelInfo info(&query);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.WillCancel());
  EXPECT_EQ(query.fIsCancelCalls, 2);
  EXPECT_EQ(query.fWillCancelCalls, 0);
}

TEST(MCCancelInfo, ASetFlagIsAnsweredWithoutAskingTheQuery) {
  ScriptedQuery query({});
  MCCancelInfo info(&query);
  info.SetCancel();
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.WillCancel());
  EXPECT_EQ(query.fIsCancelCalls + query.fWillCancelCalls, 0);
}

TEST(MCCancelInfo, TheQueryMayBeExchanged) {
  ScriptedQuery query({true});
  MCCancelInfo info(nullptr);
  info.SetCancelPtr(&query);
  EXPECT_EQ(info.GetCancelPtr(), &query);
  EXPECT_TRUE(info.WillCancel());
  info.SetCancelPtr(nullptr);
  EXPECT_EQ(info.GetCancelPtr(), nullptr);
  EXPECT_FALSE(info.WillCancel());
}

TEST(MCCancelInfo, ExchangingTheQueryDoesNotClearTheFlag) {
  ScriptedQuery query({true});
  MCCancelInfo info(&query);
  EXPECT_TRUE(info.IsCancel());
  info.SetCancelPtr(nullptr);
  EXPECT_TRUE(info.WillCancel());
}

TEST(MCCancelInfo, AnotherThreadMayCancelWhileThisOnePolls) {
  MCCancelInfo info(nullptr);
  std::thread other([&info] { info.SetCancel(); });
  while (!info.WillCancel()) std::this_thread::yield();
  other.join();
  EXPECT_TRUE(info.IsCancel());
}

}  // namespace
