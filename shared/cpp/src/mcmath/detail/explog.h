// SPDX-License-Identifier: Apache-2.0
#pragma once

// Exponential and natural logarithm of W doubles, made of additions, multiplications, divisions and
// operations on bits alone: the same bits for every W, on every processor and with every C library.
// Errors below 0.8 units of the last place (exp) and 0.9 (log), docs/accuracy.md.
// Numerical method: argument reduction and series after P. T. P. Tang, ACM TOMS 15 (1989) and 16
// (1990), without tables.

#include "mcmath/detail/lanes.h"

#include <cstring>

namespace {

// ln 2 as a number of 33 bits, whose product with a whole number below 2^20 is exact, and the rest.
constexpr double kLn2High = 0x1.62e42feep-1;
constexpr double kLn2Low = 0x1.a39ef35793c76p-33;

template <std::size_t W>
[[gnu::always_inline]] inline void BitsOfLanes(typename Lanes<W>::Bits& to,
                                               const typename Lanes<W>::Vec& from) {
  std::memcpy(&to, &from, sizeof to);
}

template <std::size_t W>
[[gnu::always_inline]] inline void LanesOfBits(typename Lanes<W>::Vec& to,
                                               const typename Lanes<W>::Bits& from) {
  std::memcpy(&to, &from, sizeof to);
}

/// y = exp(x) for -708.39 <= x <= 709, where every result is a normal double; y may be x. Other
/// arguments, NaN included, give any number.
///
/// With x = k ln 2 + r, |r| <= ln(2)/2 to rounding, exp(x) = 2^k (1 + r + r^2 q(r)), q a polynomial
/// (tests/data/mcmath/expseries.py) that leaves out 2e-17 at most. r is kept as high + low, and
/// 1 + high with its rounding error, so that the last addition alone rounds by half a unit.
template <std::size_t W>
[[gnu::always_inline]] inline void ExpLanes(typename Lanes<W>::Vec& y,
                                            const typename Lanes<W>::Vec& x) {
  using Vec = typename Lanes<W>::Vec;
  using Bits = typename Lanes<W>::Bits;
  // Rounds to a whole number, and leaves it in the lowest bits.
  constexpr double kRounder = 0x1.8p52;
  const Vec shifted = x * 0x1.71547652b82fep0 + kRounder;
  const Vec k = shifted - kRounder;
  const Vec high = x - k * kLn2High;
  const Vec low = k * kLn2Low;
  const Vec r = high - low;
  const Vec r2 = r * r;
  const Vec q01 = 0x1.0000000000001p-1 + r * 0x1.5555555555556p-3;
  const Vec q23 = 0x1.5555555553d68p-5 + r * 0x1.11111111109b5p-7;
  const Vec q45 = 0x1.6c16c17889ef9p-10 + r * 0x1.a01a01a7c2f03p-13;
  const Vec q67 = 0x1.a019b914985a9p-16 + r * 0x1.71de0db2f585ep-19;
  const Vec q89 = 0x1.28917c8be7ad6p-22 + r * 0x1.af389ed28db09p-26;
  const Vec q = q01 + r2 * (q23 + r2 * (q45 + r2 * (q67 + r2 * q89)));
  const Vec sum = 1.0 + high;
  const Vec rounding = high - (sum - 1.0);
  const Vec fraction = sum + (rounding + (r2 * q - low));
  // k is added to the exponent. In the range above, k = 1023 comes with a fraction below 1 and
  // k = -1022 with one above, so the exponent stays that of a normal number.
  Bits bits;
  Bits exponent;
  BitsOfLanes<W>(exponent, shifted);
  BitsOfLanes<W>(bits, fraction);
  bits += exponent << 52;
  LanesOfBits<W>(y, bits);
}

/// y = ln(x) for positive normal x, +0.0 for 1; y may be x. Other arguments give any number.
///
/// x = 2^k (1 + f) with 1 + f from sqrt(1/2) to sqrt(2). With s = f/(2 + f) and z = s^2,
/// ln(1 + f) = f - f^2/2 + s (f^2/2 + 2z/3 + 2z^2/5 + ... + 2z^10/21); what the series leaves out
/// is below 1e-18 of the result. k ln 2 + f is kept with its rounding error.
template <std::size_t W>
[[gnu::always_inline]] inline void LogLanes(typename Lanes<W>::Vec& y,
                                            const typename Lanes<W>::Vec& x) {
  using Vec = typename Lanes<W>::Vec;
  using Bits = typename Lanes<W>::Bits;
  constexpr std::uint64_t kTwoThirds = 0x3fe5555555555555;
  constexpr std::uint64_t kOne = 0x3ff0000000000000;
  constexpr std::uint64_t kTwoTo52 = 0x4330000000000000;
  Bits bits;
  BitsOfLanes<W>(bits, x);
  const Bits biased = (bits + (kOne - kTwoThirds)) >> 52;  // k + 1023
  const Bits mantissa = bits - (biased << 52) + kOne;
  Vec k;
  Vec f;
  LanesOfBits<W>(k, biased | kTwoTo52);
  LanesOfBits<W>(f, mantissa);
  k -= 0x1p52 + 1023.0;
  f -= 1.0;
  const Vec s = f / (2.0 + f);
  const Vec z = s * s;
  const Vec z2 = z * z;
  const Vec z4 = z2 * z2;
  const Vec even = 2.0 / 3 + z * (2.0 / 5) + z2 * (2.0 / 7 + z * (2.0 / 9));
  const Vec odd = 2.0 / 11 + z * (2.0 / 13) + z2 * (2.0 / 15 + z * (2.0 / 17));
  const Vec last = 2.0 / 19 + z * (2.0 / 21) + z2 * (2.0 / 23);
  const Vec halfSquare = 0.5 * (f * f);
  const Vec series = s * (halfSquare + z * (even + z4 * (odd + z4 * last)));
  const Vec multiple = k * kLn2High;
  const Vec sum = multiple + f;
  const Vec rounding = f - (sum - multiple);
  y = sum + (rounding + ((series - halfSquare) + k * kLn2Low));
}

}  // namespace
