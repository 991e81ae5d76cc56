// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace mctest {

/// While it lives, the k-th allocation of the thread from its construction on (k = 1 for the first)
/// and all after it fail, as where memory has run out and stays so. Not beside a FailAllocation.
class MemoryExhaustion {
public:
  explicit MemoryExhaustion(std::size_t k);
  ~MemoryExhaustion();
  MemoryExhaustion(const MemoryExhaustion&) = delete;
  MemoryExhaustion& operator=(const MemoryExhaustion&) = delete;

  /// Whether an allocation has failed.
  bool HasFired() const;
};

}  // namespace mctest
