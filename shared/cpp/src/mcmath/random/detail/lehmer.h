// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <cstdint>

// The multiplicative congruential generator x -> 397204094 x mod (2^31 - 1) of Lehmer's kind, in
// doubles. Its states are 1 to 2^31 - 2, all of which it runs through.

namespace MCCommonMath {
namespace detail {

inline constexpr unsigned long kLehmerModulus = 2147483647;

/// The number between 0 and 1 of a state.
inline double LehmerReal(double state) {
  return state * 4.656612873077393e-10;
}

/// The whole part of a number from 0 to 2^53.
inline double WholePart(double x) {
  return static_cast<double>(static_cast<std::int64_t>(x));
}

/// The state behind a state. The product, of 60 bits, is never formed: it is built of parts below
/// 2^45, which doubles hold exactly, with its bits from 2^31 on added to those below, as 2^31 is 1
/// modulo 2^31 - 1 (Schrage 1979).
inline double NextLehmer(double state) {
  constexpr double kMultiplier = 397204094.0;
  constexpr double kModulus = kLehmerModulus;
  const double high = WholePart(state * 1.52587890625e-5);
  const double lowProduct = (state - high * 65536.0) * kMultiplier;
  const double carry = WholePart(lowProduct * 1.52587890625e-5);
  const double highProduct = high * kMultiplier + carry;
  const double overflow = WholePart(highProduct * 3.0517578125e-5);
  const double next = ((lowProduct - carry * 65536.0) - kModulus) +
                      (highProduct - overflow * 32768.0) * 65536.0 + overflow;
  return next < 0.0 ? next + kModulus : next;
}

/// The state that any whole number stands for: its rest modulo 2^31 - 1, and 1 instead of 0, which
/// would stay 0 for ever.
inline double LehmerState(unsigned long seed) {
  const unsigned long rest = seed < kLehmerModulus ? seed : seed % kLehmerModulus;
  return rest == 0 ? 1.0 : static_cast<double>(rest);
}
inline double LehmerState(double seed) {
  const double rest = std::fmod(std::trunc(seed), kLehmerModulus);
  if (rest == 0.0) return 1.0;
  return rest < 0.0 ? rest + kLehmerModulus : rest;
}

}  // namespace detail
}  // namespace MCCommonMath
