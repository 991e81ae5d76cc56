// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace mcfit {

/// One subcommand of the program.
class Command {
public:
  virtual ~Command() = default;

  /// Whether the command line names this one.
  virtual bool IsChosen() const = 0;

  /// Does the work and writes the results to the standard output. Throws what errors.h declares.
  virtual void Run() = 0;
};

}  // namespace mcfit
