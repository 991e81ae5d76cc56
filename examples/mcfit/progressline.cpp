// SPDX-License-Identifier: Apache-2.0
#include "progressline.h"

#include <unistd.h>

namespace mcfit {

namespace {

// Work shorter than this shows nothing.
constexpr std::chrono::milliseconds kPatience{300};
constexpr std::chrono::milliseconds kInterval{100};

// The clock is looked at once per so many questions.
constexpr unsigned kQuestionsPerLook = 256;

}  // namespace

ProgressLine::ProgressLine(std::FILE* stream)
    : fStream(stream),
      fbOnTerminal(isatty(fileno(stream)) != 0),
      fNextTime(Clock::now() + kPatience) {}

ProgressLine::~ProgressLine() {
  Erase();
}

bool ProgressLine::IsDue() {
  return fbOnTerminal && ++fAsked % kQuestionsPerLook == 0 && Clock::now() >= fNextTime;
}

void ProgressLine::Show(const std::string& text) {
  if (!fbOnTerminal) return;
  // Back to the start of the line, the text, and whatever stood behind it is cleared.
  std::fprintf(fStream, "\r%s\033[K", text.c_str());
  std::fflush(fStream);
  fbShown = true;
  fNextTime = Clock::now() + kInterval;
}

void ProgressLine::Erase() {
  if (!fbShown) return;
  std::fputs("\r\033[K", fStream);
  std::fflush(fStream);
  fbShown = false;
}

}  // namespace mcfit
