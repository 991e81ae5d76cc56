// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace MCCommonMath {

/// The Mersenne Twister MT19937, a uniform generator of period 2^19937 - 1 (Matsumoto and Nishimura
/// 1998, in the edition of 2002 with its two ways of seeding): the same numbers as there from the
/// same seed. A fresh one is that of Initialize(5489). The words are made by blocks of 624.
///
///     MCRandomTwister twister;
///     twister.Initialize(20020126);
///     const double u = twister.GetRealOpen();
class MC_EXPORT MCRandomTwister {
public:
  static constexpr std::size_t kWords = 624;

  /// The seed of a generator that nobody seeded.
  static constexpr unsigned long kDefaultSeed = 5489;

  MCRandomTwister() { Initialize(kDefaultSeed); }

  /// Seeds from the lower 32 bits of `seed`.
  void Initialize(unsigned long seed);

  /// Seeds from the lower 32 bits of each of the `length` entries of `key`, all of which count. As
  /// Initialize(5489) without any: for a length of 0 or a null key.
  void InitByArray(const unsigned long* key, unsigned long length);

  /// 0 to 2^32 - 1.
  unsigned long GetInteger32() { return NextWord(); }
  /// 0 to 2^31 - 1: the upper bits.
  long GetInteger31() { return static_cast<long>(NextWord() >> 1); }

  /// Steps of 2^-32, in [0, 1], in [0, 1) and in (0, 1): w/(2^32 - 1), w/2^32 and (w + 0.5)/2^32 of
  /// the next word w.
  double GetRealClosed() { return NextWord() * (1.0 / 4294967295.0); }
  double GetRealClosedOpen() { return NextWord() * kStep; }
  double GetRealOpen() { return (NextWord() + 0.5) * kStep; }

  /// [0, 1) in steps of 2^-53, from two words.
  double GetRealRes53() {
    const std::uint32_t high = NextWord() >> 5;
    const std::uint32_t low = NextWord() >> 6;
    return (high * 67108864.0 + low) * (1.0 / 9007199254740992.0);
  }

  /// The block of words that the recurrence works on, before tempering.
  const std::array<std::uint32_t, kWords>& GetWords() const { return fWords; }
  /// How many words of the block were given out, 0 to 624; at 624 the next one begins a new block.
  std::size_t GetPosition() const { return fPosition; }

  /// Continues where a generator with these words and this position was. False, with nothing
  /// changed, for a position beyond 624 and for words which no seed leads to and from which only
  /// zeros would follow: those whose 19937 bits, all of the words but the lower 31 bits of the
  /// first, are 0.
  bool SetState(const std::array<std::uint32_t, kWords>& words, std::size_t position);

private:
  static constexpr double kStep = 1.0 / 4294967296.0;

  std::uint32_t NextWord() {
    if (fPosition == kWords) MakeBlock();
    return fTempered[fPosition++];
  }
  void MakeBlock();
  void Temper();

  std::array<std::uint32_t, kWords> fWords;
  std::array<std::uint32_t, kWords> fTempered;
  std::size_t fPosition;
};

}  // namespace MCCommonMath
