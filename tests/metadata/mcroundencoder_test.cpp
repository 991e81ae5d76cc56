// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcroundencoder.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"
#include "support/savefile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMissing = MCMV::gMissingValue;

struct Rounding {
  int option;
  double weight;
  double expected;
};

TEST(MCRoundEncoder, RoundsAsItIsTold) {
  const Rounding cases[] = {{0, 2.9, 2.0},           {0, 2.0, 2.0},           {0, 1.0, 1.0},
                            {0, 0.9, kMissing},      {0, 1e300, 1e300},       {0, 0.0, kMissing},
                            {0, -1.5, kMissing},     {0, HUGE_VAL, HUGE_VAL}, {1, 2.4, 2.0},
                            {1, 2.5, 3.0},           {1, 0.5, 1.0},           {1, 0.4, kMissing},
                            {1, 0.0, kMissing},      {1, -3.0, kMissing},     {2, 0.4, 0.4},
                            {2, 2.9, 2.9},           {2, 0.0, kMissing},      {2, -0.0, kMissing},
                            {2, -1e-9, kMissing},    {2, kMissing, kMissing}, {-1, 2.9, 2.9},
                            {3, 2.9, 2.9},           {12345, 0.4, 0.4},       {3, 0.0, kMissing},
                            {0, kMissing, kMissing}, {1, kMissing, kMissing}};
  for (const Rounding& c : cases) {
    MCRoundEncoder encoder(static_cast<WRoundingOption>(c.option));
    EXPECT_EQ(encoder.EncodeConst(c.weight), c.expected) << c.option << " " << c.weight;
    EXPECT_EQ(encoder.Encode(c.weight), c.expected) << c.option << " " << c.weight;
  }
}

TEST(MCRoundEncoder, LetsNaNPass) {
  for (const int option : {0, 1, 2}) {
    MCRoundEncoder encoder(static_cast<WRoundingOption>(option));
    encoder.AddDiscreteUserMissing(kNaN, "");
    EXPECT_FALSE(encoder.IsMissing(kNaN));
    EXPECT_TRUE(std::isnan(encoder.EncodeConst(kNaN)));
  }
}

TEST(MCRoundEncoder, TakesWeightsThatAreNotPositiveAndDeclaredOnesAsMissing) {
  MCRoundEncoder encoder;
  EXPECT_TRUE(encoder.AddDiscreteUserMissing(7.0, "seven"));
  EXPECT_TRUE(encoder.SetMissingInterval(100.0, 200.0));
  EXPECT_FALSE(encoder.SetMissingInterval(1.0, 2.0));
  for (const double value : {kMissing, -HUGE_VAL, -1.0, -0.0, 0.0, 7.0, 100.0, 200.0}) {
    EXPECT_TRUE(encoder.IsMissing(value)) << value;
    EXPECT_EQ(encoder.EncodeConst(value), kMissing) << value;
  }
  for (const double value : {1e-300, 6.0, 201.0, HUGE_VAL}) EXPECT_FALSE(encoder.IsMissing(value));
  EXPECT_EQ(*encoder.GetDiscreteMissValues(), std::vector<double>{7.0});
  EXPECT_EQ(*encoder.GetMissValueLabels(), std::vector<std::string>{"seven"});
}

TEST(MCRoundEncoder, KnowsNeitherStringsNorCodesNorLabels) {
  MCRoundEncoder encoder(MC_ROUND_NEAREST);
  EXPECT_EQ(encoder.GetEncoderType(), 4);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 0);
  EXPECT_EQ(encoder.Encode(std::string("1")), kMissing);
  EXPECT_EQ(encoder.EncodeConst(std::string("1")), kMissing);
  EXPECT_TRUE(encoder.IsMissing(std::string("1")));
  EXPECT_FALSE(encoder.AddDiscreteUserMissing(std::string("1"), ""));
  EXPECT_EQ(encoder.Decode(0), "");
  EXPECT_EQ(encoder.Decode(-1), "");
  EXPECT_EQ(encoder.DecodeNum(0), kMissing);
  encoder.SetValueLabels({"a"});
  encoder.SetValueLabel(0, "a");
  EXPECT_EQ(encoder.GetValueLabels(), nullptr);
  EXPECT_EQ(encoder.GetDiscreteMissValuesStr(), nullptr);
}

TEST(MCRoundEncoder, IsCopiedWhole) {
  MCRoundEncoder encoder(MC_ROUND_TRUNCATE);
  encoder.AddDiscreteUserMissing(7.0, "seven");
  const std::unique_ptr<IMCEncoder> clone(encoder.Clone());
  MCRoundEncoder assigned;
  assigned = encoder;
  EXPECT_EQ(mctest::Saved(*clone), mctest::Saved(encoder));
  EXPECT_EQ(mctest::Saved(assigned), mctest::Saved(encoder));
}

TEST(MCRoundEncoder, KeepsAnOptionWithoutNameThatAFileTells) {
  MCRoundEncoder encoder;
  const MCRoundEncoder odd(static_cast<WRoundingOption>(-77));
  mctest::ReadWhatIsSaved(encoder, odd);
  EXPECT_EQ(mctest::Saved(encoder), mctest::Saved(odd));
  EXPECT_EQ(encoder.EncodeConst(2.9), 2.9);
}

TEST(MCRoundEncoder, ShowsItsOption) {
  EXPECT_EQ(mctest::DisplayOf(MCRoundEncoder()), "\nMCRoundEncoder: option = As is - no change");
  EXPECT_EQ(mctest::DisplayOf(MCRoundEncoder(MC_ROUND_TRUNCATE)),
            "\nMCRoundEncoder: option = Truncate to smaller int");
}

}  // namespace
