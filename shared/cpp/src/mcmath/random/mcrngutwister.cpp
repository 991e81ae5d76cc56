// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngutwister.h"

#include "regression/frame/detail/mcassert.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace MCCommonMath {

namespace {

// Cuts the next 32 bits off a fraction in [0, 1).
unsigned long CutWord(double& fraction) {
  fraction *= 4294967296.0;
  const double word = std::floor(fraction);
  fraction -= word;
  return static_cast<unsigned long>(word);
}

}  // namespace

bool MCRNGUTwister::SetSeed(double seed) {
  if (!std::isfinite(seed)) return false;
  SeedFrom(seed);
  return true;
}

void MCRNGUTwister::SeedFrom(double seed) {
  int exponent = 0;
  double z = std::frexp(std::fabs(seed), &exponent);
  const auto scale = static_cast<std::uint32_t>(exponent);
  const unsigned long high = CutWord(z);
  const unsigned long low = CutWord(z);
  // A significand has 53 bits.
  MCCommon::detail::Assert(z == 0.0, "z==0.0", "mcmath/random/mcrngutwister");
  // The exponents of doubles, of 12 bits, leave the uppermost one to the sign.
  const std::uint32_t sign = seed < 0.0 ? 0x80000000U : 0U;
  const std::array<unsigned long, 3> key = {scale ^ sign, high, low};
  fTwister.InitByArray(key.data(), key.size());
}

}  // namespace MCCommonMath
