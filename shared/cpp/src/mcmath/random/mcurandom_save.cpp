// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcurandom.h"
#include "mcxml/detail/objectxml.h"
#include "mcxml/ioexception.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

namespace MCCommonMath {

namespace detail {

/// What is saved. Without a twister its position and words are 0.
struct URandomState {
  unsigned long seed = 0;
  bool usePortable = false;
  bool useTwister = false;
  std::uint32_t position = 0;
  std::array<std::uint32_t, MCRandomTwister::kWords> words = {};
};

}  // namespace detail

namespace {

using detail::URandomState;
using MCCommonXML::detail::ObjectReader;

constexpr char kName[] = "MCURandom";
constexpr char kTag[] = "MCUR";
constexpr std::uint32_t kVersion = 1;
constexpr std::uint32_t kPortableBit = 1;
constexpr std::uint32_t kTwisterBit = 2;

// Byte counts of a word, of what stands before the twister, and of the twister.
constexpr std::size_t kWord = 4;
constexpr std::size_t kHead = 5 * kWord;
constexpr std::size_t kTwister = (1 + MCRandomTwister::kWords) * kWord;

std::uint32_t LowWord(unsigned long seed) {
  return static_cast<std::uint32_t>(seed);
}
std::uint32_t HighWord(unsigned long seed) {
  return static_cast<std::uint32_t>(seed >> 32);
}
unsigned long JoinWords(std::uint32_t low, std::uint32_t high) {
  return static_cast<unsigned long>(high) << 32 | low;
}

void AppendWord(std::string& bytes, std::uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift & 0xffU);
}

std::uint32_t WordAt(const std::string& bytes, std::size_t place) {
  std::uint32_t word = 0;
  for (std::size_t i = kWord; i-- > 0;) {
    word = word << 8 | static_cast<unsigned char>(bytes[place + i]);
  }
  return word;
}

// The cyclic redundancy check CRC-32 of Ethernet and zip archives (ISO 3309), which finds every
// damage of up to 32 bits in a row.
std::uint32_t CheckWord(const std::string& bytes) {
  std::uint32_t rest = 0xffffffffU;
  for (const char byte : bytes) {
    rest ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) rest = rest >> 1 ^ ((0U - (rest & 1U)) & 0xedb88320U);
  }
  return ~rest;
}

// The binary form, without the check word at its end.
std::string Bytes(const URandomState& state) {
  std::string bytes = kTag;
  AppendWord(bytes, kVersion);
  AppendWord(bytes, LowWord(state.seed));
  AppendWord(bytes, HighWord(state.seed));
  AppendWord(bytes,
             (state.usePortable ? kPortableBit : 0U) | (state.useTwister ? kTwisterBit : 0U));
  if (state.useTwister) {
    AppendWord(bytes, state.position);
    for (const std::uint32_t word : state.words) AppendWord(bytes, word);
  }
  return bytes;
}

// Takes `count` more bytes of a stream, if it has them.
bool Take(std::istream& in, std::size_t count, std::string& bytes) {
  const std::size_t place = bytes.size();
  bytes.resize(place + count);
  in.read(bytes.data() + place, static_cast<std::streamsize>(count));
  return in.good();
}

bool TakeTwister(std::istream& in, std::string& bytes, URandomState& state) {
  if (!Take(in, kTwister, bytes)) return false;
  state.position = WordAt(bytes, kHead);
  for (std::size_t i = 0; i < state.words.size(); ++i) {
    state.words[i] = WordAt(bytes, kHead + (1 + i) * kWord);
  }
  return true;
}

// A state from a binary stream. What is read must be what would be written: that leaves neither
// another tag or version nor a flag that has no meaning.
bool TakeState(std::istream& in, URandomState& state) {
  std::string bytes;
  if (!Take(in, kHead, bytes)) return false;
  state.seed = JoinWords(WordAt(bytes, 2 * kWord), WordAt(bytes, 3 * kWord));
  const std::uint32_t flags = WordAt(bytes, 4 * kWord);
  state.usePortable = (flags & kPortableBit) != 0;
  state.useTwister = (flags & kTwisterBit) != 0;
  if (state.useTwister && !TakeTwister(in, bytes, state)) return false;
  std::string check;
  return bytes == Bytes(state) && Take(in, kWord, check) && WordAt(check, 0) == CheckWord(bytes);
}

// A state from the save format, its check word read and compared.
URandomState ReadState(ObjectReader& reader) {
  URandomState state;
  reader.Start(kName);
  const auto low = reader.Read<std::uint32_t>();
  state.seed = JoinWords(low, reader.Read<std::uint32_t>());
  state.usePortable = reader.Read<bool>();
  state.useTwister = reader.Read<bool>();
  if (state.useTwister) {
    state.position = reader.Read<std::uint32_t>();
    for (std::uint32_t& word : state.words) word = reader.Read<std::uint32_t>();
  }
  if (reader.Read<std::uint32_t>() != CheckWord(Bytes(state))) ObjectReader::Fail();
  reader.End();
  return state;
}

void TellFailure() {
  std::cerr << "Failure reading " << kName << "!\n";
}

}  // namespace

detail::URandomState MCURandom::GetState() const {
  URandomState state;
  state.seed = fSeed;
  state.usePortable = fUsePortable;
  state.useTwister = fUseTwister;
  if (fUseTwister) {
    state.position = static_cast<std::uint32_t>(fTwister->GetPosition());
    state.words = fTwister->GetWords();
  }
  return state;
}

// False, with nothing changed, for a state that no generator has.
bool MCURandom::SetState(const URandomState& state) {
  if (state.useTwister && !state.usePortable) return false;
  std::unique_ptr<MCRandomTwister> twister;
  if (state.useTwister) {
    twister = std::make_unique<MCRandomTwister>();
    if (!twister->SetState(state.words, state.position)) return false;
  }
  fTwister = std::move(twister);
  fSeed = state.seed;
  fUsePortable = state.usePortable;
  fUseTwister = state.useTwister;
  return true;
}

bool MCURandom::WriteObject(std::fstream& out) const {
  std::string bytes = Bytes(GetState());
  AppendWord(bytes, CheckWord(bytes));
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return out.good();
}

bool MCURandom::ReadObject(std::fstream& in) {
  URandomState state;
  if (TakeState(in, state) && SetState(state)) return true;
  TellFailure();
  return false;
}

int MCURandom::WriteObjectXML(std::ostream& out, int nTabs) const {
  const URandomState state = GetState();
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(LowWord(state.seed));
  writer.Write(HighWord(state.seed));
  writer.Write(state.usePortable);
  writer.Write(state.useTwister);
  if (state.useTwister) {
    writer.Write(state.position);
    for (const std::uint32_t word : state.words) writer.Write(word);
  }
  writer.Write(CheckWord(Bytes(state)));
  return writer.Finish();
}

int MCURandom::ReadObjectXML(std::ifstream& in) {
  ObjectReader reader(in);
  try {
    if (SetState(ReadState(reader))) return reader.GetNLines();
  } catch (const MCCommonMetadata::IOException&) {
  }
  TellFailure();
  return -1;
}

}  // namespace MCCommonMath
