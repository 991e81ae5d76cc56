// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonMath {

/// A source of random numbers of one distribution. The uniform ones, MCRNGUCongruential and
/// MCRNGUTwister, serve those of other distributions: MCRNGNormal, MCRNGBeta, MCRNGBinomial. A host
/// may add its own.
class MC_EXPORT MCRNGenerator {
public:
  virtual ~MCRNGenerator();

  /// Begins the sequence of a seed. False, with nothing changed, for a NaN or an infinity.
  virtual bool SetSeed(double seed) = 0;

  /// The next number.
  virtual double GetNext() = 0;

protected:
  MCRNGenerator() = default;
  MCRNGenerator(const MCRNGenerator&) = default;
  MCRNGenerator& operator=(const MCRNGenerator&) = default;
};

}  // namespace MCCommonMath
