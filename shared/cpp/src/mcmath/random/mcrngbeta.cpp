// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngbeta.h"

#include "mcmath/random/detail/uniformchoice.h"
#include "mcmath/random/detail/variates.h"

namespace MCCommonMath {

namespace {

bool AreParameters(double a, double b) {
  return detail::IsShape(a) && detail::IsShape(b);
}

}  // namespace

class MCRNGBeta::Impl : public detail::UniformChoice {
public:
  double a = 1.0;
  double b = 1.0;
};

MCRNGBeta::MCRNGBeta() : fImpl(std::make_unique<Impl>()) {}

MCRNGBeta::MCRNGBeta(double a, double b) : MCRNGBeta() {
  SetParameters(a, b);
}

MCRNGBeta::~MCRNGBeta() = default;

bool MCRNGBeta::SetParameters(double a, double b) {
  if (!AreParameters(a, b)) return false;
  fImpl->a = a;
  fImpl->b = b;
  return true;
}

bool MCRNGBeta::SetURNGenerator(MCRNGenerator& generator) {
  if (&generator == this) return false;
  fImpl->Choose(generator);
  return true;
}

bool MCRNGBeta::SetSeed(double seed) {
  return fImpl->Chosen().SetSeed(seed);
}

double MCRNGBeta::GetNext() {
  return GetNextImpl(fImpl->a, fImpl->b);
}

double MCRNGBeta::GetNext(double a, double b) {
  return AreParameters(a, b) ? GetNextImpl(a, b) : MCMV::gMissingValue;
}

double MCRNGBeta::GetNextImpl(double a, double b) {
  detail::OpenUniform<MCRNGenerator> uniform(fImpl->Chosen());
  return detail::Answer(detail::Beta(a, b, uniform));
}

}  // namespace MCCommonMath
