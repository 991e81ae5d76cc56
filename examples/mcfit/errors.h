// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

namespace mcfit {

/// Exit statuses of the program.
enum ExitStatus {
  kSuccess = 0,
  kModelFailure = 1,  ///< the library could not fit the model, or memory ran out
  kBadInput = 2,      ///< options or files that can't be used
  kInterrupted = 130  ///< Ctrl-C, as shells report it
};

/// Options or files that can't be used. The text is complete: it names what is wrong and where.
class InputError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The library answered an error; the text explains it.
class ModelError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The user asked to stop.
class Interrupted : public std::exception {
public:
  const char* what() const noexcept override { return "interrupted"; }
};

}  // namespace mcfit
