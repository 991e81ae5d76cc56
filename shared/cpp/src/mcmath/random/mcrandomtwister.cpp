// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandomtwister.h"

#include <algorithm>

namespace MCCommonMath {

namespace {

constexpr std::size_t kN = MCRandomTwister::kWords;
constexpr std::size_t kM = 397;
constexpr std::uint32_t kUpperBit = 0x80000000U;

// One word of the recurrence, from those at distance 0, 1 and kM. Without a branch, so that the
// loops below become vector code.
std::uint32_t Recurrence(std::uint32_t word, std::uint32_t next, std::uint32_t distant) {
  const std::uint32_t joined = (word & kUpperBit) | (next & ~kUpperBit);
  return distant ^ (joined >> 1) ^ ((0U - (joined & 1U)) & 0x9908b0dfU);
}

// How a word of the seeding follows from the one before it.
std::uint32_t Mix(std::uint32_t before, std::uint32_t multiplier) {
  return (before ^ (before >> 30)) * multiplier;
}

// The words of a key are taken round and round, and so are those of the state but the first, which
// is a copy of the last one at the turn.
class StateWalk {
public:
  explicit StateWalk(std::array<std::uint32_t, kN>& words) : fWords(&words) {}

  std::uint32_t& Word() { return (*fWords)[fPlace]; }
  std::uint32_t Before() const { return (*fWords)[fPlace - 1]; }
  std::uint32_t Place() const { return static_cast<std::uint32_t>(fPlace); }
  void Step() {
    if (++fPlace < kN) return;
    fWords->front() = fWords->back();
    fPlace = 1;
  }

private:
  std::array<std::uint32_t, kN>* fWords;
  std::size_t fPlace = 1;
};

}  // namespace

void MCRandomTwister::Initialize(unsigned long seed) {
  fWords[0] = static_cast<std::uint32_t>(seed);
  for (std::uint32_t i = 1; i < kN; ++i) fWords[i] = Mix(fWords[i - 1], 1812433253U) + i;
  fPosition = kN;
}

void MCRandomTwister::InitByArray(const unsigned long* key, unsigned long length) {
  if (key == nullptr || length == 0) {
    Initialize(kDefaultSeed);
    return;
  }
  Initialize(19650218);
  StateWalk walk(fWords);
  unsigned long place = 0;
  for (unsigned long n = std::max<unsigned long>(kN, length); n > 0; --n) {
    walk.Word() = (walk.Word() ^ Mix(walk.Before(), 1664525U)) +
                  static_cast<std::uint32_t>(key[place]) + static_cast<std::uint32_t>(place);
    walk.Step();
    if (++place == length) place = 0;
  }
  for (std::size_t n = kN - 1; n > 0; --n) {
    walk.Word() = (walk.Word() ^ Mix(walk.Before(), 1566083941U)) - walk.Place();
    walk.Step();
  }
  // So the state isn't one of zeros, whatever the key.
  fWords[0] = kUpperBit;
}

void MCRandomTwister::MakeBlock() {
  for (std::size_t i = 0; i < kN - kM; ++i) {
    fWords[i] = Recurrence(fWords[i], fWords[i + 1], fWords[i + kM]);
  }
  for (std::size_t i = kN - kM; i < kN - 1; ++i) {
    fWords[i] = Recurrence(fWords[i], fWords[i + 1], fWords[i + kM - kN]);
  }
  fWords[kN - 1] = Recurrence(fWords[kN - 1], fWords[0], fWords[kM - 1]);
  Temper();
  fPosition = 0;
}

void MCRandomTwister::Temper() {
  for (std::size_t i = 0; i < kN; ++i) {
    std::uint32_t word = fWords[i];
    word ^= word >> 11;
    word ^= (word << 7) & 0x9d2c5680U;
    word ^= (word << 15) & 0xefc60000U;
    fTempered[i] = word ^ (word >> 18);
  }
}

bool MCRandomTwister::SetState(const std::array<std::uint32_t, kWords>& words,
                               std::size_t position) {
  const auto isNonZero = [](std::uint32_t word) { return word != 0; };
  const bool isAlive =
      (words[0] & kUpperBit) != 0 || std::any_of(words.begin() + 1, words.end(), isNonZero);
  if (position > kWords || !isAlive) return false;
  fWords = words;
  Temper();
  fPosition = position;
  return true;
}

}  // namespace MCCommonMath
