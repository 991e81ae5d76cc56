// SPDX-License-Identifier: Apache-2.0
#include "interrupt.h"

#include "errors.h"

#include <csignal>
#include <poll.h>

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

void WaitForInput(int descriptor) {
  // The signal is let in by the waiting alone, so that none comes between the test and the wait.
  sigset_t interrupts;
  sigset_t before;
  sigemptyset(&interrupts);
  sigaddset(&interrupts, SIGINT);
  sigprocmask(SIG_BLOCK, &interrupts, &before);
  if (!IsInterrupted()) {
    pollfd input = {descriptor, POLLIN, 0};
    ppoll(&input, 1, nullptr, &before);
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
  StopIfInterrupted();
}

}  // namespace mcfit
