// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/random/mcrandomtwister.h"
#include "regression/frame/mcexport.h"

#include <fstream>
#include <memory>
#include <ostream>

namespace MCCommon {
class MCRandom;
}

namespace MCCommonMath {

namespace detail {
struct URandomState;
}

/// The uniform source of the random variates. It has three modes: the Mersenne Twister, a
/// multiplicative congruential generator of period 2^31 - 2 (portable, without twister), and rand()
/// of the C library (not portable). A fresh one is portable with the twister, seeded with 5489.
/// Over all of them stands a generator of the host's own, if there is one. The first two give the
/// same numbers everywhere, and what was saved continues with the number that would have come next.
///
///     MCURandom uniform;
///     uniform.SetSeed(20020126);
///     const double u = uniform.GetRandom();
class MC_EXPORT MCURandom {
public:
  MCURandom();
  explicit MCURandom(unsigned long seed);
  /// A copy continues on its own with the same numbers; it draws from the same generator of the
  /// host, though, if there is one.
  MCURandom(const MCURandom& other);
  MCURandom& operator=(const MCURandom& other);
  ~MCURandom();

  /// The next number: of the host's generator as it comes; in (0, 1) of the twister (its
  /// GetRealOpen()) and of the congruential generator; rand() / 2147483647.0, which may be 0 and 1,
  /// of the C library.
  double GetRandom() {
    return fUserRNG == nullptr && fUseTwister ? fTwister->GetRealOpen() : GetOtherRandom();
  }

  /// Begins the sequence of a seed. The twister takes its lower 32 bits, srand() an unsigned int of
  /// it, and the congruential generator its rest modulo 2147483647, or 1 if that is 0. A generator
  /// of the host isn't touched.
  void SetSeed(unsigned long seed);

  /// The seed as it was set. The congruential generator keeps its state in it, 1 to 2147483646
  /// after each number; the others leave it alone.
  unsigned long GetSeed() const { return fSeed; }

  /// Chooses between the portable modes and the C library, which ends a twister and is not seeded
  /// by this.
  void SetUsePortable(bool usePortable);
  bool GetUsePortable() const { return fUsePortable; }

  /// Begins or ends the twister; a new one is seeded with GetSeed(). False, with nothing changed,
  /// if one is wanted and the mode isn't portable.
  bool SetUseTwister(bool useTwister);
  bool GetUseTwister() const { return fUseTwister; }

  /// Draws from the host's generator from now on, which must outlive its use, or from the own one
  /// again for null.
  void SetUserRNG(MCCommon::MCRandom* generator) { fUserRNG = generator; }
  MCCommon::MCRandom* GetUserRNG() const { return fUserRNG; }

  /// Writes seed, modes and state of the twister at the place of a binary stream
  /// (docs/formats.md). Neither the host's generator nor the state of the C library is saved. False
  /// if the stream failed.
  bool WriteObject(std::fstream& out) const;

  /// Becomes what WriteObject() wrote; a generator of the host stays. False, with nothing changed
  /// and a line on standard error, if the stream doesn't hold that, undamaged. rand() isn't seeded.
  bool ReadObject(std::fstream& in);

  /// The same in the save format, indented by `nTabs` tabs. Number of lines.
  int WriteObjectXML(std::ostream& out, int nTabs) const;

  /// As ReadObject(), with the number of lines read, or -1.
  int ReadObjectXML(std::ifstream& in);

  /// Writes seed and modes to the display stream.
  void Display() const;

private:
  double GetOtherRandom();
  detail::URandomState GetState() const;
  bool SetState(const detail::URandomState& state);

  unsigned long fSeed = MCRandomTwister::kDefaultSeed;
  bool fUsePortable = true;
  bool fUseTwister = true;
  std::unique_ptr<MCRandomTwister> fTwister;
  MCCommon::MCRandom* fUserRNG = nullptr;
};

}  // namespace MCCommonMath
