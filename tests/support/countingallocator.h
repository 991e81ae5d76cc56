// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// The test programs replace the global operator new by one that counts and, on demand, fails.
/// Both belong to the calling thread.
namespace mctest {

/// Number of allocations made since the program began.
std::size_t AllocationCount();

/// Bytes of the largest allocation since the last reset.
std::size_t LargestAllocation();
void ResetLargestAllocation();

/// While it lives, the k-th allocation from its construction on (k = 1 for the first) throws
/// std::bad_alloc, or answers null in the nothrow form; those before and after it succeed.
/// k = 0 never fails.
class FailAllocation {
public:
  explicit FailAllocation(std::size_t k);
  ~FailAllocation();
  FailAllocation(const FailAllocation&) = delete;
  FailAllocation& operator=(const FailAllocation&) = delete;

  /// Whether the failure has been delivered.
  bool HasFired() const;
};

}  // namespace mctest
