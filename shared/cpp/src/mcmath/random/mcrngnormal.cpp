// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngnormal.h"

#include "mcmath/random/detail/uniformchoice.h"
#include "mcmath/random/detail/variates.h"

namespace MCCommonMath {

class MCRNGNormal::Impl : public detail::UniformChoice {
public:
  double mean = 0.0;
  double deviation = 1.0;
};

MCRNGNormal::MCRNGNormal() : fImpl(std::make_unique<Impl>()) {}

MCRNGNormal::MCRNGNormal(double mean, double deviation) : MCRNGNormal() {
  SetParameters(mean, deviation);
}

MCRNGNormal::~MCRNGNormal() = default;

bool MCRNGNormal::SetParameters(double mean, double deviation) {
  if (!detail::AreNormal(mean, deviation)) return false;
  fImpl->mean = mean;
  fImpl->deviation = deviation;
  return true;
}

bool MCRNGNormal::SetURNGenerator(MCRNGenerator& generator) {
  if (&generator == this) return false;
  fImpl->Choose(generator);
  return true;
}

bool MCRNGNormal::SetSeed(double seed) {
  return fImpl->Chosen().SetSeed(seed);
}

double MCRNGNormal::GetNext() {
  return GetNextImpl(fImpl->mean, fImpl->deviation);
}

double MCRNGNormal::GetNext(double mean, double deviation) {
  return detail::AreNormal(mean, deviation) ? GetNextImpl(mean, deviation) : MCMV::gMissingValue;
}

double MCRNGNormal::GetNextImpl(double mean, double deviation) {
  detail::OpenUniform<MCRNGenerator> uniform(fImpl->Chosen());
  return detail::Answer(detail::Normal(mean, deviation, uniform));
}

}  // namespace MCCommonMath
