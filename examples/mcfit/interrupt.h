// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcquerycancel.h"

namespace mcfit {

/// From here on Ctrl-C asks the program to stop instead of killing it; a second Ctrl-C kills. A
/// program started with Ctrl-C ignored, as in the background of a script, goes on ignoring it.
void CatchInterrupts();

/// Whether Ctrl-C has been pressed.
bool IsInterrupted();

/// Throws Interrupted if Ctrl-C has been pressed.
void StopIfInterrupted();

/// Waits until reading from the descriptor would not wait. Throws Interrupted for Ctrl-C, however
/// close before the waiting it comes.
void WaitForInput(int descriptor);

/// Tells a running build of the library about Ctrl-C.
class InterruptQuery : public MCQueryCancel {
public:
  bool IsCancel() override { return IsInterrupted(); }
  bool WillCancel() override { return IsInterrupted(); }
};

}  // namespace mcfit
