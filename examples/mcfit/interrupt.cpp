// SPDX-License-Identifier: Apache-2.0
#include "interrupt.h"

#include "errors.h"

#include <csignal>

namespace mcfit {

namespace {

volatile std::sig_atomic_t gInterrupted = 0;

extern "C" void OnInterrupt(int /*signal*/) {
  gInterrupted = 1;
}

}  // namespace

void CatchInterrupts() {
  struct sigaction action = {};
  if (sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = OnInterrupt;
  // Without SA_RESTART a read that waits for a pipe returns, so the flag is seen at once.
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

bool IsInterrupted() {
  return gInterrupted != 0;
}

void StopIfInterrupted() {
  if (IsInterrupted()) throw Interrupted();
}

}  // namespace mcfit
