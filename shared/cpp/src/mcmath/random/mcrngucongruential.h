// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngenerator.h"
#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// Uniform numbers of the multiplicative congruential generator x -> 397204094 x mod (2^31 - 1), as
/// MCURandom gives them without its twister: period 2^31 - 2, steps of 2^-31. For small or
/// historical simulations; the twister is better. A fresh one has the seed 1.
class MC_EXPORT MCRNGUCongruential : public MCRNGenerator {
public:
  MCRNGUCongruential() = default;

  /// The state becomes the whole part of `seed` modulo 2147483647, or 1 if that is 0.
  bool SetSeed(double seed) override;

  /// In (0, 1): the state behind the present one, times 2^-31.
  double GetNext() override;

private:
  double fState = 1.0;
};

}  // namespace MCCommonMath
