// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngbinomial.h"

#include "mcmath/random/detail/uniformchoice.h"
#include "mcmath/random/detail/variates.h"

#include <cmath>

namespace MCCommonMath {

namespace {

bool AreParameters(double trials, double probability) {
  constexpr double kMostTrials = 9007199254740992.0;
  return trials >= 0.0 && trials <= kMostTrials && std::floor(trials) == trials &&
         probability >= 0.0 && probability <= 1.0;
}

}  // namespace

class MCRNGBinomial::Impl : public detail::UniformChoice {
public:
  double trials = 1.0;
  double probability = 0.5;
};

MCRNGBinomial::MCRNGBinomial() : fImpl(std::make_unique<Impl>()) {}

MCRNGBinomial::MCRNGBinomial(double trials, double probability) : MCRNGBinomial() {
  SetParameters(trials, probability);
}

MCRNGBinomial::~MCRNGBinomial() = default;

bool MCRNGBinomial::SetParameters(double trials, double probability) {
  if (!AreParameters(trials, probability)) return false;
  fImpl->trials = trials;
  fImpl->probability = probability;
  return true;
}

bool MCRNGBinomial::SetURNGenerator(MCRNGenerator& generator) {
  if (&generator == this) return false;
  fImpl->Choose(generator);
  return true;
}

bool MCRNGBinomial::SetSeed(double seed) {
  return fImpl->Chosen().SetSeed(seed);
}

double MCRNGBinomial::GetNext() {
  return GetNextImpl(fImpl->trials, fImpl->probability);
}

double MCRNGBinomial::GetNext(double trials, double probability) {
  return AreParameters(trials, probability) ? GetNextImpl(trials, probability)
                                            : MCMV::gMissingValue;
}

double MCRNGBinomial::GetNextImpl(double trials, double probability) {
  detail::OpenUniform<MCRNGenerator> uniform(fImpl->Chosen());
  return detail::Answer(detail::Binomial(trials, probability, uniform));
}

}  // namespace MCCommonMath
