// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrngenerator.h"
#include "regression/frame/mcexport.h"

#include <memory>

namespace MCCommonMath {

/// Binomial numbers: successes in independent trials. Numerical method, with p counted from the
/// rarer outcome: inversion for np < 10 (Kachitvichyanukul and Schmeiser 1988), else transformed
/// rejection (Hormann 1993). The time of a number is bounded whatever the number of trials.
class MC_EXPORT MCRNGBinomial : public MCRNGenerator {
public:
  /// One trial of probability 1/2, with uniform numbers of a fresh MCRNGUTwister.
  MCRNGBinomial();
  /// With the parameters of SetParameters(), or as a fresh one if that refuses them.
  MCRNGBinomial(double trials, double probability);
  ~MCRNGBinomial() override;
  MCRNGBinomial(const MCRNGBinomial&) = delete;
  MCRNGBinomial& operator=(const MCRNGBinomial&) = delete;

  /// False, with nothing changed, unless the trials are a whole number from 0 to 2^53 and the
  /// probability is in [0, 1].
  bool SetParameters(double trials, double probability);

  /// Draws uniform numbers from `generator`, which must outlive its use here and may be shared; its
  /// numbers outside (0, 1) are passed over. It must not draw from this one: false, with nothing
  /// changed, if it is this one. Until then they come from a twister of the object's own.
  bool SetURNGenerator(MCRNGenerator& generator);

  /// Seeds the generator that uniform numbers come from.
  bool SetSeed(double seed) override;

  /// The next number, whole. The missing value if the uniform generator gives no numbers that
  /// serve.
  double GetNext() override;
  /// The same for other parameters, this once. The missing value also if SetParameters() would
  /// refuse them.
  double GetNext(double trials, double probability);

private:
  class Impl;
  double GetNextImpl(double trials, double probability);

  std::unique_ptr<Impl> fImpl;
};

}  // namespace MCCommonMath
