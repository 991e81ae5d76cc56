// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace mctest {

/// While it lives, what is allocated isn't looked for at the end by the leak detector. For code of
/// others that loses memory when memory runs out.
class LeaksAllowed {
public:
#if defined(__SANITIZE_ADDRESS__)
  LeaksAllowed() {
    __lsan_disable();
  }
  ~LeaksAllowed() {
    __lsan_enable();
  }
#else
  LeaksAllowed() = default;
  ~LeaksAllowed() {}
#endif
  LeaksAllowed(const LeaksAllowed&) = delete;
  LeaksAllowed& operator=(const LeaksAllowed&) = delete;
};

}  // namespace mctest
