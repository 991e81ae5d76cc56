// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngutwister.h"

namespace MCCommonMath {
namespace detail {

/// Where a generator of variates has its uniform numbers from: a twister of its own until it is
/// given a generator, which is borrowed.
class UniformChoice {
public:
  UniformChoice() = default;
  UniformChoice(const UniformChoice&) = delete;
  UniformChoice& operator=(const UniformChoice&) = delete;

  void Choose(MCRNGenerator& generator) { fpChosen = &generator; }
  MCRNGenerator& Chosen() { return *fpChosen; }

private:
  MCRNGUTwister fOwn;
  MCRNGenerator* fpChosen = &fOwn;
};

}  // namespace detail
}  // namespace MCCommonMath
