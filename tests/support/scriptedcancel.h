// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcquerycancel.h"

namespace mctest {

/// Counts the polls and says yes at one of them, or from it on.
class ScriptedCancel : public MCQueryCancel {
public:
  enum Duration { kOnce, kForGood };

  /// Polls count from 1; 0 never says yes.
  explicit ScriptedCancel(int yesAt = 0, Duration duration = kForGood)
      : fYesAt(yesAt), fDuration(duration) {}

  bool IsCancel() override {
    ++fIsCancelCalls;
    return false;
  }

  bool WillCancel() override {
    ++fPolls;
    return fYesAt != 0 && (fDuration == kOnce ? fPolls == fYesAt : fPolls >= fYesAt);
  }

  int fPolls = 0;
  int fIsCancelCalls = 0;

private:
  int fYesAt;
  Duration fDuration;
};

}  // namespace mctest
