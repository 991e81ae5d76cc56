// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngenerator.h"
#include "regression/frame/mcexport.h"

#include <memory>

namespace MCCommonMath {

/// Beta numbers, of density proportional to x^(a-1) (1-x)^(b-1) on (0, 1). Numerical method: the
/// share of one gamma in two (Devroye 1986), in logarithms for parameters below 1, so that the
/// smallest serve too; the gammas as by Marsaglia and Tsang (2000).
class MC_EXPORT MCRNGBeta : public MCRNGenerator {
public:
  /// a = b = 1, the uniform distribution, with uniform numbers of a fresh MCRNGUTwister.
  MCRNGBeta();
  /// With the parameters of SetParameters(), or as a fresh one if that refuses them.
  MCRNGBeta(double a, double b);
  ~MCRNGBeta() override;
  MCRNGBeta(const MCRNGBeta&) = delete;
  MCRNGBeta& operator=(const MCRNGBeta&) = delete;

  /// False, with nothing changed, unless both are finite and 1e-300 or above.
  bool SetParameters(double a, double b);

  /// Draws uniform numbers from `generator`, which must outlive its use here and may be shared; its
  /// numbers outside (0, 1) are passed over. It must not draw from this one: false, with nothing
  /// changed, if it is this one. Until then they come from a twister of the object's own.
  bool SetURNGenerator(MCRNGenerator& generator);

  /// Seeds the generator that uniform numbers come from.
  bool SetSeed(double seed) override;

  /// The next number, rounded to 0 or 1 where it is that close. The missing value if the uniform
  /// generator gives no numbers that serve.
  double GetNext() override;
  /// The same for other parameters, this once. The missing value also if SetParameters() would
  /// refuse them.
  double GetNext(double a, double b);

private:
  class Impl;
  double GetNextImpl(double a, double b);

  std::unique_ptr<Impl> fImpl;
};

}  // namespace MCCommonMath
