// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandom.h"
#include "mcmath/random/mcurandom.h"
#include "support/localeguard.h"
#include "support/savefile.h"
#include "support/textfile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace {

using MCCommonMath::MCURandom;
using mctest::Saved;
using mctest::StreamCapture;

const char kFailure[] = "Failure reading MCURandom!\n";

// A binary file that is written, or filled with bytes, and read.
class BinaryFile {
public:
  explicit BinaryFile(const std::string& bytes = "")
      : fName(testing::TempDir() + "mcstat_random_" +
              testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::ofstream(fName, std::ios::binary) << bytes;
    fStream.open(fName, std::ios::in | std::ios::out | std::ios::binary);
  }
  ~BinaryFile() { std::remove(fName.c_str()); }
  BinaryFile(const BinaryFile&) = delete;
  BinaryFile& operator=(const BinaryFile&) = delete;

  std::fstream& Stream() { return fStream; }
  std::string Bytes() {
    fStream.flush();
    std::ifstream in(fName, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

private:
  std::string fName;
  std::fstream fStream;
};

std::string Written(const MCURandom& uniform) {
  BinaryFile file;
  EXPECT_TRUE(uniform.WriteObject(file.Stream()));
  return file.Bytes();
}

bool ReadBytes(MCURandom& uniform, const std::string& bytes) {
  BinaryFile file(bytes);
  return uniform.ReadObject(file.Stream());
}

MCURandom InTheMiddle() {
  MCURandom uniform(20020126);
  for (int i = 0; i < 1000; ++i) uniform.GetRandom();
  return uniform;
}

MCURandom Congruential(unsigned long seed) {
  MCURandom uniform(seed);
  uniform.SetUseTwister(false);
  return uniform;
}

// In all modes, in the middle of a block of the twister and at both ends.
std::vector<MCURandom> Generators() {
  std::vector<MCURandom> generators = {MCURandom(1), InTheMiddle(), Congruential(0),
                                       Congruential(std::numeric_limits<unsigned long>::max())};
  generators.push_back(MCURandom(std::numeric_limits<unsigned long>::max()));
  for (int i = 0; i < 624; ++i) generators.back().GetRandom();
  generators.push_back(generators.back());
  generators.back().GetRandom();
  generators.push_back(Congruential(3));
  generators.back().GetRandom();
  generators.push_back(MCURandom(8));
  generators.back().SetUsePortable(false);
  return generators;
}

void ExpectSame(MCURandom& a, MCURandom& b) {
  EXPECT_EQ(a.GetSeed(), b.GetSeed());
  EXPECT_EQ(a.GetUsePortable(), b.GetUsePortable());
  EXPECT_EQ(a.GetUseTwister(), b.GetUseTwister());
  if (!a.GetUsePortable()) return;
  for (int i = 0; i < 1300; ++i) ASSERT_EQ(a.GetRandom(), b.GetRandom()) << i;
}

TEST(MCURandomStream, GoesOnWhereItWasSaved) {
  for (const MCURandom& generator : Generators()) {
    BinaryFile file;
    ASSERT_TRUE(generator.WriteObject(file.Stream()));
    file.Stream().seekg(0);
    MCURandom read(99);
    EXPECT_TRUE(read.ReadObject(file.Stream()));
    MCURandom original(generator);
    ExpectSame(read, original);
  }
}

TEST(MCURandomStream, TakesItsOwnBytesAlone) {
  const MCURandom first = InTheMiddle();
  const MCURandom second = Congruential(17);
  BinaryFile file;
  file.Stream() << "before";
  first.WriteObject(file.Stream());
  second.WriteObject(file.Stream());
  file.Stream() << "behind";
  file.Stream().seekg(6);
  MCURandom read;
  EXPECT_TRUE(read.ReadObject(file.Stream()));
  MCURandom original(first);
  ExpectSame(read, original);
  EXPECT_TRUE(read.ReadObject(file.Stream()));
  EXPECT_EQ(read.GetSeed(), 17U);
  std::string rest;
  file.Stream() >> rest;
  EXPECT_EQ(rest, "behind");
}

TEST(MCURandomStream, IsLaidOutAsDocumented) {
  MCURandom uniform = Congruential(0x1122334455667788UL);
  // zlib's crc32 of the first 20 bytes is the word behind them.
  const std::string bytes("MCUR\1\0\0\0\x88\x77\x66\x55\x44\x33\x22\x11\1\0\0\0\x25\xc7\x5f\xec",
                          24);
  EXPECT_EQ(Written(uniform), bytes);
  uniform.SetUsePortable(false);
  EXPECT_EQ(Written(uniform)[16], '\0');

  MCURandom twister(0);
  const std::string fresh = Written(twister);
  ASSERT_EQ(fresh.size(), 20U + 625U * 4U + 4U);
  EXPECT_EQ(fresh[16], '\3');
  // Position 624; the second word of the seed 0 is 1.
  EXPECT_EQ(fresh.substr(20, 12), std::string("\x70\2\0\0\0\0\0\0\1\0\0\0", 12));
  twister.GetRandom();
  EXPECT_EQ(Written(twister).substr(20, 4), std::string("\1\0\0\0", 4));
}

TEST(MCURandomStream, TellsThatItCouldNotBeWritten) {
  BinaryFile file;
  file.Stream().close();
  EXPECT_FALSE(MCURandom().WriteObject(file.Stream()));
}

// A generator that refuses stays as it was.
template <class Read>
void ExpectRefused(const std::string& damaged, Read read, const std::string& what) {
  static const std::string before = Written(InTheMiddle());
  MCURandom uniform = InTheMiddle();
  const StreamCapture errors(std::cerr);
  EXPECT_FALSE(read(uniform, damaged)) << what;
  EXPECT_EQ(errors.Text(), kFailure) << what;
  EXPECT_EQ(Written(uniform), before) << what;
}

TEST(MCURandomStream, IsRefusedWithAnyByteDamaged) {
  for (const MCURandom& generator : {InTheMiddle(), Congruential(5)}) {
    const std::string whole = Written(generator);
    for (std::size_t place = 0; place < whole.size(); ++place) {
      std::string damaged = whole;
      damaged[place] = static_cast<char>(damaged[place] ^ (1 << place % 8));
      ExpectRefused(damaged, ReadBytes, "byte " + std::to_string(place));
    }
  }
}

TEST(MCURandomStream, IsRefusedCutOffAnywhere) {
  for (const MCURandom& generator : {InTheMiddle(), Congruential(5)}) {
    const std::string whole = Written(generator);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      ExpectRefused(whole.substr(0, size), ReadBytes, "size " + std::to_string(size));
    }
  }
}

// The check word of ISO 3309, a bit at a time.
void AppendCheckWord(std::string& bytes) {
  unsigned long rest = 0xffffffffUL;
  for (const char byte : bytes) {
    rest ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) rest = (rest & 1) != 0 ? rest >> 1 ^ 0xedb88320UL : rest >> 1;
  }
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(~rest >> shift);
}

TEST(MCURandomStream, IsRefusedForStatesThatNoGeneratorHas) {
  const auto changed = [](std::size_t place, char value) {
    std::string bytes = Written(InTheMiddle());
    bytes.resize(bytes.size() - 4);
    bytes[place] = value;
    AppendCheckWord(bytes);
    return bytes;
  };
  MCURandom uniform;
  EXPECT_TRUE(ReadBytes(uniform, changed(8, '\5')));  // any seed goes
  ExpectRefused(changed(0, 'm'), ReadBytes, "tag");
  ExpectRefused(changed(4, '\2'), ReadBytes, "version");
  ExpectRefused(changed(16, '\7'), ReadBytes, "unknown flag");
  ExpectRefused(changed(16, '\2'), ReadBytes, "twister that is not portable");
  std::string bytes = Written(InTheMiddle()).substr(0, 20) + std::string("\x71\2\0\0", 4) +
                      std::string(624 * 4, '\1');
  AppendCheckWord(bytes);
  ExpectRefused(bytes, ReadBytes, "position 625");
  bytes = Written(InTheMiddle()).substr(0, 20) + std::string(625 * 4, '\0');
  AppendCheckWord(bytes);
  ExpectRefused(bytes, ReadBytes, "words of zeros");
}

class HostsOwn : public MCCommon::MCRandom {
public:
  double GetRandom() override { return 0.5; }
};

TEST(MCURandomStream, KeepsTheHostsGeneratorWhichIsNotSaved) {
  HostsOwn host;
  MCURandom uniform = InTheMiddle();
  uniform.SetUserRNG(&host);
  EXPECT_EQ(Written(uniform), Written(InTheMiddle()));
  EXPECT_EQ(Saved(uniform), Saved(InTheMiddle()));
  EXPECT_TRUE(ReadBytes(uniform, Written(Congruential(2))));
  EXPECT_EQ(uniform.GetUserRNG(), &host);
  EXPECT_GT(mctest::ReadSaved(uniform, Saved(Congruential(2))), 0);
  EXPECT_EQ(uniform.GetUserRNG(), &host);
}

TEST(MCURandomXML, GoesOnWhereItWasSaved) {
  for (const MCURandom& generator : Generators()) {
    MCURandom read(99);
    mctest::ReadWhatIsSaved(read, generator);
    MCURandom original(generator);
    ExpectSame(read, original);
  }
}

TEST(MCURandomXML, IsWrittenAsDocumented) {
  // The last is the check word of the stream of the same generator.
  EXPECT_EQ(Saved(Congruential(0x1122334455667788UL), 1),
            "\n\t<Obj name=\"MCURandom\">"
            "\n\t\t<Int value=\"1432778632\"/>"
            "\n\t\t<Int value=\"287454020\"/>"
            "\n\t\t<Int value=\"1\"/>"
            "\n\t\t<Int value=\"0\"/>"
            "\n\t\t<Int value=\"3965699877\"/>"
            "\n\t</Obj>\n");
  const std::string twister = Saved(MCURandom(0));
  const std::string head =
      "\n<Obj name=\"MCURandom\">"
      "\n\t<Int value=\"0\"/>\n\t<Int value=\"0\"/>\n\t<Int value=\"1\"/>\n\t<Int value=\"1\"/>"
      "\n\t<Int value=\"624\"/>\n\t<Int value=\"0\"/>\n\t<Int value=\"1\"/>\n";
  EXPECT_EQ(twister.substr(0, head.size()), head);
  MCURandom read;
  EXPECT_EQ(mctest::ReadSaved(read, twister), 632);
}

TEST(MCURandomXML, HasADecimalPointInEveryLocale) {
  const std::string saved = Saved(InTheMiddle());
  const mctest::LocaleGuard comma("de_DE.UTF-8");
  EXPECT_EQ(Saved(InTheMiddle()), saved);
  MCURandom read;
  EXPECT_EQ(mctest::ReadSaved(read, saved), 632);
  MCURandom original = InTheMiddle();
  ExpectSame(read, original);
}

TEST(MCURandomXML, StandsBetweenOtherThingsOfAFile) {
  mctest::TextFile file("first\n" + Saved(Congruential(6)) + "<rest/>\n");
  std::string line;
  std::getline(file.Stream(), line);
  MCURandom uniform;
  EXPECT_EQ(uniform.ReadObjectXML(file.Stream()), 7);
  EXPECT_EQ(uniform.GetSeed(), 6U);
  EXPECT_EQ(file.Rest(), "<rest/>\n");
}

// Of the text form some damage doesn't matter, such as another blank: then what is read is what was
// written.
void ExpectRefusedOrSame(const std::string& damaged, const std::string& whole, std::size_t place) {
  static const std::string before = Written(InTheMiddle());
  MCURandom uniform = InTheMiddle();
  const StreamCapture errors(std::cerr);
  const int nLines = mctest::ReadSaved(uniform, damaged);
  EXPECT_EQ(errors.Text(), nLines < 0 ? kFailure : "") << place;
  EXPECT_TRUE(nLines < 0 ? Written(uniform) == before : Saved(uniform) == whole) << place;
  EXPECT_TRUE(nLines == -1 || nLines > 6) << place;
}

TEST(MCURandomXML, IsRefusedWithItsValuesDamaged) {
  for (const std::string& whole : {Saved(MCURandom(4)), Saved(Congruential(5))}) {
    // Everything of the short form, heads, ends and samples of the long one.
    for (std::size_t place = 0; place < whole.size(); ++place) {
      if (place > 300 && place + 200 < whole.size() && place % 97 != 0) continue;
      for (const int bits : {1, 8}) {
        std::string damaged = whole;
        damaged[place] = static_cast<char>(damaged[place] ^ bits);
        ExpectRefusedOrSame(damaged, whole, place);
      }
    }
  }
}

TEST(MCURandomXML, ReadsNumbersUpToWhatIsNoDigit) {
  const std::string whole = Saved(Congruential(5));
  std::string damaged = whole;
  damaged.insert(damaged.find("\"5\"") + 2, "x");
  MCURandom uniform;
  EXPECT_EQ(mctest::ReadSaved(uniform, damaged), 7);
  EXPECT_EQ(Saved(uniform), whole);
}

TEST(MCURandomXML, IsRefusedCutOffAnywhere) {
  const auto read = [](MCURandom& uniform, const std::string& text) {
    return mctest::ReadSaved(uniform, text) != -1;
  };
  for (const std::string& whole : {Saved(MCURandom(4)), Saved(Congruential(5))}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      if (size > 200 && size + 100 < whole.size() && size % 97 != 0) continue;
      ExpectRefused(whole.substr(0, size), read, "size " + std::to_string(size));
    }
  }
}

TEST(MCURandomXML, IsRefusedForAnotherObject) {
  const auto read = [](MCURandom& uniform, const std::string& text) {
    return mctest::ReadSaved(uniform, text) != -1;
  };
  std::string other = Saved(Congruential(5));
  other.replace(other.find("MCURandom"), 9, "MCVarList");
  ExpectRefused(other, read, "name");
}

}  // namespace
