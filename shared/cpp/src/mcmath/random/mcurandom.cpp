// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcurandom.h"

#include "mcmath/random/detail/lehmer.h"
#include "mcmath/random/mcrandom.h"
#include "regression/frame/mccomponentdisplay.h"

#include <cstdlib>
#include <string>

namespace MCCommonMath {

MCURandom::MCURandom() : fTwister(std::make_unique<MCRandomTwister>()) {}

MCURandom::MCURandom(unsigned long seed) : MCURandom() {
  SetSeed(seed);
}

MCURandom::MCURandom(const MCURandom& other)
    : fSeed(other.fSeed),
      fUsePortable(other.fUsePortable),
      fUseTwister(other.fUseTwister),
      fTwister(other.fUseTwister ? std::make_unique<MCRandomTwister>(*other.fTwister) : nullptr),
      fUserRNG(other.fUserRNG) {}

MCURandom& MCURandom::operator=(const MCURandom& other) {
  if (this != &other) {
    fTwister = MCURandom(other).fTwister;
    fSeed = other.fSeed;
    fUsePortable = other.fUsePortable;
    fUseTwister = other.fUseTwister;
    fUserRNG = other.fUserRNG;
  }
  return *this;
}

MCURandom::~MCURandom() = default;

double MCURandom::GetOtherRandom() {
  if (fUserRNG != nullptr) return fUserRNG->GetRandom();
  if (!fUsePortable) return std::rand() / 2147483647.0;
  const double state = detail::NextLehmer(detail::LehmerState(fSeed));
  fSeed = static_cast<unsigned long>(state);
  return detail::LehmerReal(state);
}

void MCURandom::SetSeed(unsigned long seed) {
  fSeed = seed;
  if (!fUsePortable) {
    std::srand(static_cast<unsigned int>(seed));
  } else if (fUseTwister) {
    fTwister->Initialize(seed);
  }
}

void MCURandom::SetUsePortable(bool usePortable) {
  fUsePortable = usePortable;
  if (!usePortable) SetUseTwister(false);
}

bool MCURandom::SetUseTwister(bool useTwister) {
  if (useTwister && !fUsePortable) return false;
  if (useTwister && !fUseTwister) {
    fTwister = std::make_unique<MCRandomTwister>();
    fTwister->Initialize(fSeed);
  }
  if (!useTwister) fTwister.reset();
  fUseTwister = useTwister;
  return true;
}

void MCURandom::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "MCURandom display start");
  DisplayS("The seed", std::to_string(fSeed));
  DisplayB("Portable RNG indicator", fUsePortable);
  DisplayB("Mersenne Twister RNG indicator", fUseTwister);
  DisplayText(1, "MCURandom display end");
}

}  // namespace MCCommonMath
