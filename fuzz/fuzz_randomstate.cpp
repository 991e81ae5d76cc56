// SPDX-License-Identifier: Apache-2.0
// A saved random generator of any bytes, read in both forms: what is read is saved alike and goes
// on alike, and what is refused leaves a generator as it was.
#include "mcmath/random/mcurandom.h"
#include "memoryfile.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

namespace {

using MCCommonMath::MCURandom;

std::string Saved(const MCURandom& uniform) {
  std::ostringstream out;
  uniform.WriteObjectXML(out, 0);
  return out.str() + "\n";
}

bool ReadBinary(MCURandom& uniform, const std::string& name) {
  std::fstream file(name, std::ios::in | std::ios::binary);
  return uniform.ReadObject(file);
}

bool ReadXML(MCURandom& uniform, const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return uniform.ReadObjectXML(file) > 0;
}

MCURandom InTheMiddle() {
  MCURandom uniform(7);
  uniform.GetRandom();
  return uniform;
}

// The bytes with the check word (CRC-32) behind them that makes a stream of them, so that what the
// word would keep out is met too.
std::string WithCheckWord(std::string_view bytes) {
  std::string stream(bytes);
  std::uint32_t rest = 0xffffffffU;
  for (const char byte : bytes) {
    rest ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) rest = (rest & 1U) != 0 ? rest >> 1 ^ 0xedb88320U : rest >> 1;
  }
  for (int shift = 0; shift < 32; shift += 8) stream += static_cast<char>(~rest >> shift & 0xffU);
  return stream;
}

void Use(const MCURandom& read) {
  static MemoryFile again;
  const std::string saved = Saved(read);
  MCURandom copy;
  Require(ReadXML(copy, again.Fill(saved)));
  Require(Saved(copy) == saved);
  if (!read.GetUsePortable()) return;
  MCURandom original(read);
  for (int i = 0; i < 700; ++i) Require(copy.GetRandom() == original.GetRandom());
}

// A read that fails must leave the generator as it was.
template <class ReadForm>
void Try(ReadForm read, const std::string& name) {
  static const std::string before = Saved(InTheMiddle());
  MCURandom uniform = InTheMiddle();
  if (read(uniform, name)) {
    Use(uniform);
  } else {
    Require(Saved(uniform) == before);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static MemoryFile file;
  // The library says on standard error that it fails, which is every other run.
  std::cerr.setstate(std::ios::failbit);
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const std::string name = file.Fill(input);
  Try(ReadBinary, name);
  Try(ReadXML, name);
  Try(ReadBinary, file.Fill(WithCheckWord(input)));
  return 0;
}
