// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrandomtwister.h"
#include "mcmath/random/mcrngenerator.h"
#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// Uniform numbers of the Mersenne Twister (MCRandomTwister). A fresh one has the seed 0.
class MC_EXPORT MCRNGUTwister : public MCRNGenerator {
public:
  MCRNGUTwister() { SeedFrom(0.0); }

  /// Seeds by InitByArray() from three words, so that all bits of a double count and no two seeds
  /// share a key: its exponent of frexp(), modulo 2^32 and with the uppermost bit turned over if
  /// the seed is negative, then the upper and the lower 32 of the first 64 bits of its significand.
  /// Any finite seed goes; equal ones, such as 0 and -0, begin the same sequence.
  bool SetSeed(double seed) override;

  /// In (0, 1): GetRealOpen() of the twister.
  double GetNext() override { return fTwister.GetRealOpen(); }

private:
  void SeedFrom(double seed);

  MCRandomTwister fTwister;
};

}  // namespace MCCommonMath
