// SPDX-License-Identifier: Apache-2.0
//
// Memory that runs out at each allocation of an operation in turn: it throws and leaves its object
// as it was, until it has memory enough and does its work.
#include "metadata/mccatnumencoder.h"
#include "metadata/mcroundencoder.h"
#include "metadata/mcstringencoder.h"
#include "metadata/mcvarlist.h"
#include "support/countingallocator.h"
#include "support/savefile.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

const std::string kLong(100, 'x');

// `operate(object)` is tried with ever more memory, each time on a fresh object of `make()`.
template <class Make, class Operate>
void ExpectAllOrNothing(Make make, Operate operate) {
  const auto untouched = make();
  const std::string before = mctest::Saved(*untouched);
  bool isDone = false;
  for (std::size_t k = 1; !isDone; ++k) {
    ASSERT_LT(k, 1000U);
    const auto object = make();
    bool isThrown = false;
    {
      const mctest::FailAllocation failure(k);
      try {
        operate(*object);
      } catch (const std::bad_alloc&) {
        isThrown = true;
      }
      isDone = !failure.HasFired();
    }
    EXPECT_NE(isThrown, isDone) << k;
    if (isThrown) {
      EXPECT_EQ(mctest::Saved(*object), before) << k;
    } else {
      EXPECT_NE(mctest::Saved(*object), before) << k;
    }
    // What is left does the work when memory is back.
    operate(*object);
  }
}

// A copy that can't be made throws and leaks nothing.
template <class Object>
void ExpectCopyOrNothing(const Object& object) {
  const std::string saved = mctest::Saved(object);
  bool isDone = false;
  for (std::size_t k = 1; !isDone; ++k) {
    ASSERT_LT(k, 1000U);
    std::unique_ptr<Object> copy;
    {
      const mctest::FailAllocation failure(k);
      try {
        copy = std::make_unique<Object>(object);
      } catch (const std::bad_alloc&) {
      }
      isDone = !failure.HasFired();
    }
    ASSERT_EQ(copy != nullptr, isDone) << k;
    if (isDone) {
      EXPECT_EQ(mctest::Saved(*copy), saved);
    }
  }
}

std::unique_ptr<MCCatNumEncoder> MakeNumeric() {
  auto encoder = std::make_unique<MCCatNumEncoder>(Numbers{1.0, 2.0});
  encoder->SetValueLabels({kLong, "two"});
  encoder->AddDiscreteUserMissing(9.0, kLong);
  return encoder;
}

std::unique_ptr<MCStringEncoder> MakeStrings() {
  auto encoder = std::make_unique<MCStringEncoder>(Texts{"a", kLong});
  encoder->SetValueLabels({kLong, "two"});
  encoder->AddDiscreteUserMissing(kLong + "missing", kLong);
  return encoder;
}

std::unique_ptr<MCContEncoder> MakeScale() {
  auto encoder = std::make_unique<MCContEncoder>(Numbers{1.0, 2.0});
  encoder->AddDiscreteUserMissing(9.0, kLong);
  return encoder;
}

std::unique_ptr<MCRoundEncoder> MakeRounding() {
  auto encoder = std::make_unique<MCRoundEncoder>(MC_ROUND_TRUNCATE);
  encoder->AddDiscreteUserMissing(9.0, kLong);
  return encoder;
}

std::unique_ptr<MCVarList> MakeList() {
  auto list = std::make_unique<MCVarList>();
  list->AddCatVar(kLong + "c", kLong, Texts{"a", kLong}, Texts{kLong}, MC_ROLE_TARGET);
  list->AddContVar(kLong + "x", kLong, Numbers{1.0}, true, MC_ROLE_INPUT);
  list->SetWeightVar(kLong + "w", kLong, MC_ROUND_AS_IS);
  return list;
}

TEST(MetadataExhaustion, SpendsNoCodeOnACategoryThatItCannotHold) {
  ExpectAllOrNothing(MakeNumeric, [](MCCatNumEncoder& encoder) { encoder.Encode(3.0); });
  ExpectAllOrNothing(MakeStrings, [](MCStringEncoder& encoder) { encoder.Encode(kLong + "c"); });
}

TEST(MetadataExhaustion, KeepsValuesAndLabelsOfMissingValuesTogether) {
  const std::string label = kLong + "label";
  ExpectAllOrNothing(MakeNumeric,
                     [&](MCCatNumEncoder& e) { e.AddDiscreteUserMissing(8.0, label); });
  ExpectAllOrNothing(MakeStrings,
                     [&](MCStringEncoder& e) { e.AddDiscreteUserMissing(kLong + "NA", label); });
  ExpectAllOrNothing(MakeScale, [&](MCContEncoder& e) { e.AddDiscreteUserMissing(8.0, label); });
  ExpectAllOrNothing(MakeRounding,
                     [&](MCRoundEncoder& e) { e.AddDiscreteUserMissing(8.0, label); });
}

TEST(MetadataExhaustion, AssignsAllOfAnEncoderOrNothing) {
  MCCatNumEncoder numeric(Numbers{5.0, 6.0, 7.0, 8.0});
  numeric.SetValueLabels({kLong + "5"});
  numeric.AddDiscreteUserMissing(1.0, kLong + "1");
  ExpectAllOrNothing(MakeNumeric, [&](MCCatNumEncoder& encoder) { encoder = numeric; });
  MCStringEncoder strings(Texts{kLong + "5", kLong + "6", kLong + "7"});
  strings.AddDiscreteUserMissing(kLong + "1", kLong + "1");
  ExpectAllOrNothing(MakeStrings, [&](MCStringEncoder& encoder) { encoder = strings; });
  MCContEncoder scale(Numbers{5.0, 6.0, 7.0});
  scale.AddDiscreteUserMissing(1.0, kLong + "1");
  ExpectAllOrNothing(MakeScale, [&](MCContEncoder& encoder) { encoder = scale; });
  MCRoundEncoder rounding(MC_ROUND_NEAREST);
  rounding.AddDiscreteUserMissing(1.0, kLong + "1");
  ExpectAllOrNothing(MakeRounding, [&](MCRoundEncoder& encoder) { encoder = rounding; });
}

TEST(MetadataExhaustion, AssignsAllOfAVariableOrNothing) {
  MCCatVar cat(kLong + "new", kLong, 3, MC_LEVEL_CAT_NUM, MC_ROLE_UNUSED, true);
  cat.GetEncoder()->Encode(1.0);
  cat.SetMissingValueReplacement(kLong);
  ExpectAllOrNothing(
      [] {
        return std::make_unique<MCCatVar>(kLong, "", 2, MC_LEVEL_CAT_STRING, MC_ROLE_INPUT, false);
      },
      [&](MCCatVar& variable) { variable = cat; });
  MCContVar cont(kLong + "new", kLong, Numbers{1.0, 2.0}, true, MC_ROLE_UNUSED);
  cont.SetMissingValueReplacement(kLong);
  ExpectAllOrNothing([] { return std::make_unique<MCContVar>(kLong, "", MC_ROLE_INPUT); },
                     [&](MCContVar& variable) { variable = cont; });
  MCWeightVar weight(kLong + "new", kLong, MC_ROUND_TRUNCATE);
  weight.GetEncoder()->AddDiscreteUserMissing(5.0, kLong);
  ExpectAllOrNothing([] { return std::make_unique<MCWeightVar>(kLong, "", MC_ROUND_AS_IS); },
                     [&](MCWeightVar& variable) { variable = weight; });
}

TEST(MetadataExhaustion, CopiesOrThrows) {
  ExpectCopyOrNothing(*MakeNumeric());
  ExpectCopyOrNothing(*MakeStrings());
  ExpectCopyOrNothing(*MakeScale());
  ExpectCopyOrNothing(*MakeRounding());
  ExpectCopyOrNothing(*MakeList());
}

TEST(MetadataExhaustion, AddsAVariableOrNothing) {
  const Texts texts{kLong + "1", kLong + "2"};
  const std::string name = kLong + "new";
  ExpectAllOrNothing(MakeList, [&](MCVarList& list) {
    list.AddCatVar(name, kLong, texts, texts, MC_ROLE_TARGET);
  });
  ExpectAllOrNothing(MakeList, [&](MCVarList& list) {
    list.AddCatVar(name, kLong, Numbers{1.0, 2.0}, texts, MC_ROLE_TARGET);
  });
  ExpectAllOrNothing(MakeList, [&](MCVarList& list) {
    list.AddContVar(name, kLong, 0.0, 1.0, Numbers{0.5}, true, MC_ROLE_TARGET);
  });
}

TEST(MetadataExhaustion, SetsAWeightOrNothing) {
  ExpectAllOrNothing(MakeList,
                     [](MCVarList& list) { list.SetWeightVar(kLong, kLong, MC_ROUND_TRUNCATE); });
  ExpectAllOrNothing([] { return std::make_unique<MCVarList>(); },
                     [](MCVarList& list) { list.SetWeightVar(kLong, kLong, MC_ROUND_TRUNCATE); });
}

TEST(MetadataExhaustion, AssignsAllOfAListOrNothing) {
  MCVarList other;
  other.AddCatVar(kLong + "o", kLong, Numbers{1.0}, MC_ROLE_TARGET);
  other.AddContVar(kLong + "p", kLong, MC_ROLE_INPUT);
  ExpectAllOrNothing(MakeList, [&](MCVarList& list) { list = other; });
}

// A read that runs out of memory leaves an object that is whole, whatever it holds.
template <class Object>
void ExpectWholeAfterRead(const Object& object) {
  const std::string text = mctest::Saved(object);
  bool isDone = false;
  for (std::size_t k = 1; !isDone; ++k) {
    ASSERT_LT(k, 2000U);
    Object read(object);
    mctest::TextFile file(text);
    {
      const mctest::FailAllocation failure(k);
      try {
        read.ReadObjectXML(file.Stream());
      } catch (const std::bad_alloc&) {
      } catch (const IOException&) {
        ADD_FAILURE() << k;
      }
      isDone = !failure.HasFired();
    }
    mctest::Saved(Object(read));
    mctest::ReadSaved(read, text);
    EXPECT_EQ(mctest::Saved(read), text) << k;
  }
}

TEST(MetadataExhaustion, LeavesAWholeObjectAfterARead) {
  ExpectWholeAfterRead(*MakeNumeric());
  ExpectWholeAfterRead(*MakeStrings());
  ExpectWholeAfterRead(MCContEncoder());
  ExpectWholeAfterRead(*MakeRounding());
  ExpectWholeAfterRead(*MakeList());
}

}  // namespace
