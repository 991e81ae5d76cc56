// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace mctest {

/// Random bits that are the same on every machine (Steele, Lea and Flood 2014).
class SplitMix64 {
public:
  explicit SplitMix64(std::uint64_t seed) : fState(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (fState += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }

private:
  std::uint64_t fState;
};

}  // namespace mctest
