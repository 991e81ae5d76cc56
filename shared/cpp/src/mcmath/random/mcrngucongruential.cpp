// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngucongruential.h"

#include "mcmath/random/detail/lehmer.h"

#include <cmath>

namespace MCCommonMath {

bool MCRNGUCongruential::SetSeed(double seed) {
  if (!std::isfinite(seed)) return false;
  fState = detail::LehmerState(seed);
  return true;
}

double MCRNGUCongruential::GetNext() {
  fState = detail::NextLehmer(fState);
  return detail::LehmerReal(fState);
}

}  // namespace MCCommonMath
