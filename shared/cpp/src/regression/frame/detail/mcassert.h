// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <cstdlib>

namespace MCCommon {
namespace detail {

/// Writes "Assertion failed: text, source" to standard error and ends the process.
[[noreturn]] inline void FailAssertion(const char* text, const char* source) {
  std::fprintf(stderr, "Assertion failed: %s, %s\n", text, source);
  std::abort();
}

/// Ends the process unless `holds`, in release builds too: for the few places whose contract says
/// that an error of the programmer ends it.
inline void Assert(bool holds, const char* text, const char* source) {
  if (!holds) FailAssertion(text, source);
}

}  // namespace detail
}  // namespace MCCommon
