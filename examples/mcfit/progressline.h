// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdio>
#include <string>

namespace mcfit {

/// One line on a terminal that tells how far long work has come. It appears only after a while,
/// is rewritten a few times a second and erased at the end. On anything but a terminal it is
/// silent.
class ProgressLine {
public:
  /// The stream is borrowed.
  explicit ProgressLine(std::FILE* stream);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Whether it is time to show a new text. Cheap enough to be asked for each row.
  bool IsDue();

  void Show(const std::string& text);

  /// Removes the line from the terminal.
  void Erase();

private:
  using Clock = std::chrono::steady_clock;

  std::FILE* fStream;
  bool fbOnTerminal;
  bool fbShown = false;
  unsigned fAsked = 0;
  Clock::time_point fNextTime;
};

}  // namespace mcfit
