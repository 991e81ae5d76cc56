// SPDX-License-Identifier: Apache-2.0
#pragma once

// Of the leak detector, where a test runs under it.
extern "C" {
[[gnu::weak]] void __lsan_disable();
[[gnu::weak]] void __lsan_enable();
}

namespace mctest {

/// While it lives, what is allocated may leak. For code of others that loses memory: Xerces 3.2.4
/// some 200 bytes where reading fails below it or a document type is fetched, and the parts of a
/// parser that it can't finish where memory runs out. Nothing in a stack tells those from ours.
class LeaksAllowed {
public:
  LeaksAllowed() {
    if (__lsan_disable != nullptr) __lsan_disable();
  }
  ~LeaksAllowed() {
    if (__lsan_enable != nullptr) __lsan_enable();
  }
  LeaksAllowed(const LeaksAllowed&) = delete;
  LeaksAllowed& operator=(const LeaksAllowed&) = delete;
};

}  // namespace mctest
