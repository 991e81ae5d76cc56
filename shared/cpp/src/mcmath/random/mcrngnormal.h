// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngenerator.h"
#include "regression/frame/mcexport.h"

#include <memory>

namespace MCCommonMath {

/// Normal numbers. Numerical method: ratio of uniforms with quadratic bounds (Leva 1992), which
/// keeps nothing between numbers.
class MC_EXPORT MCRNGNormal : public MCRNGenerator {
public:
  /// Mean 0, standard deviation 1, uniform numbers of a fresh MCRNGUTwister.
  MCRNGNormal();
  /// With the parameters of SetParameters(), or as a fresh one if that refuses them.
  MCRNGNormal(double mean, double deviation);
  ~MCRNGNormal() override;
  MCRNGNormal(const MCRNGNormal&) = delete;
  MCRNGNormal& operator=(const MCRNGNormal&) = delete;

  /// False, with nothing changed, unless both are finite and the standard deviation is 0 or above.
  bool SetParameters(double mean, double deviation);

  /// Draws uniform numbers from `generator`, which must outlive its use here and may be shared; its
  /// numbers outside (0, 1) are passed over. It must not draw from this one: false, with nothing
  /// changed, if it is this one. Until then they come from a twister of the object's own.
  bool SetURNGenerator(MCRNGenerator& generator);

  /// Seeds the generator that uniform numbers come from.
  bool SetSeed(double seed) override;

  /// The next number. The missing value if the uniform generator gives no numbers that serve.
  double GetNext() override;
  /// The same for other parameters, this once. The missing value also if SetParameters() would
  /// refuse them.
  double GetNext(double mean, double deviation);

private:
  class Impl;
  double GetNextImpl(double mean, double deviation);

  std::unique_ptr<Impl> fImpl;
};

}  // namespace MCCommonMath
