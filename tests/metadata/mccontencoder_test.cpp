// SPDX-License-Identifier: Apache-2.0
#include "metadata/mccontencoder.h"

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
using Values = std::vector<double>;
using Texts = std::vector<std::string>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(MCContEncoder, EncodesNumbersByThemselves) {
  MCContEncoder encoder;
  for (const double value : {0.0, -1.5, 1e300, HUGE_VAL}) {
    EXPECT_EQ(encoder.Encode(value), value);
    EXPECT_EQ(encoder.EncodeConst(value), value);
    EXPECT_FALSE(encoder.IsMissing(value));
  }
  EXPECT_TRUE(std::isnan(encoder.Encode(kNaN)));
  EXPECT_TRUE(std::isnan(encoder.EncodeConst(kNaN)));
  EXPECT_FALSE(encoder.IsMissing(kNaN));
  EXPECT_EQ(encoder.GetEncoderType(), 1);
}

TEST(MCContEncoder, EncodesMissingValuesByTheMissingValue) {
  MCContEncoder encoder;
  EXPECT_TRUE(encoder.AddDiscreteUserMissing(99.0, "refused"));
  EXPECT_TRUE(encoder.SetMissingInterval(-3.0, -1.0));
  EXPECT_FALSE(encoder.SetMissingInterval(-9.0, -8.0));
  for (const double value : {MCMV::gMissingValue, 99.0, -3.0, -2.0, -1.0}) {
    EXPECT_TRUE(encoder.IsMissing(value)) << value;
    EXPECT_EQ(encoder.Encode(value), MCMV::gMissingValue) << value;
    EXPECT_EQ(encoder.EncodeConst(value), MCMV::gMissingValue) << value;
  }
  EXPECT_EQ(encoder.EncodeConst(-0.5), -0.5);
  EXPECT_EQ(*encoder.GetDiscreteMissValues(), Values{99.0});
  EXPECT_EQ(*encoder.GetMissValueLabels(), Texts{"refused"});
  double low = 0.0;
  double high = 0.0;
  EXPECT_TRUE(encoder.GetMissingInterval(low, high));
  EXPECT_EQ(low, -3.0);
  EXPECT_EQ(high, -1.0);
}

TEST(MCContEncoder, KnowsNeitherStringsNorCodesNorLabels) {
  MCContEncoder encoder(0.0, 4.0, 4);
  EXPECT_EQ(encoder.Encode(std::string("1")), MCMV::gMissingValue);
  EXPECT_EQ(encoder.EncodeConst(std::string("1")), MCMV::gMissingValue);
  EXPECT_TRUE(encoder.IsMissing(std::string("1")));
  EXPECT_FALSE(encoder.AddDiscreteUserMissing(std::string("1"), ""));
  for (const int code : {-1, 0, 1}) {
    EXPECT_EQ(encoder.Decode(code), "");
    EXPECT_EQ(encoder.DecodeNum(code), MCMV::gMissingValue);
  }
  encoder.SetValueLabels({"a", "b"});
  encoder.SetValueLabel(0, "a");
  EXPECT_EQ(encoder.GetValueLabels(), nullptr);
  EXPECT_EQ(encoder.GetDiscreteMissValuesStr(), nullptr);
}

TEST(MCContEncoder, CountsTheBinsThatItWasGiven) {
  EXPECT_EQ(MCContEncoder().GetNumberOfCategories(), 0);
  EXPECT_EQ(MCContEncoder().GetBinningEncoder(), nullptr);
  const MCContEncoder equal(0.0, 4.0, 4);
  EXPECT_EQ(equal.GetNumberOfCategories(), 4);
  EXPECT_EQ(equal.GetBinningEncoder()->GetBinningCutpoints(), (Values{1.0, 2.0, 3.0}));
  EXPECT_EQ(MCContEncoder(0.0, 4.0, 1).GetNumberOfCategories(), 0);
  const MCContEncoder cut(Values{1.0, 2.5});
  EXPECT_EQ(cut.GetNumberOfCategories(), 3);
  EXPECT_EQ(cut.GetBinningEncoder()->Encode(2.0), 1.0);
  EXPECT_EQ(MCContEncoder(Values{}).GetNumberOfCategories(), 1);
}

TEST(MCContEncoder, CountsTheBinsOfItsBinningAsTheyAreNow) {
  MCContEncoder encoder(Values{1.0, 2.5});
  encoder.GetBinningEncoder()->SetBinningCutpoints({1.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
}

TEST(MCContEncoder, CopiesItsBinning) {
  MCContEncoder encoder(Values{1.0, 2.0});
  encoder.AddDiscreteUserMissing(9.0, "nine");
  const std::unique_ptr<MCContEncoder> clone(encoder.Clone());
  MCContEncoder assigned;
  assigned = encoder;
  assigned = *&assigned;
  encoder.GetBinningEncoder()->SetBinningCutpoints({});
  for (const MCContEncoder* each : {clone.get(), &assigned}) {
    EXPECT_EQ(each->GetBinningEncoder()->GetBinningCutpoints(), (Values{1.0, 2.0}));
    EXPECT_TRUE(each->IsMissing(9.0));
  }
  assigned = MCContEncoder();
  EXPECT_EQ(assigned.GetBinningEncoder(), nullptr);
  EXPECT_FALSE(assigned.IsMissing(9.0));
}

TEST(MCContEncoder, ComesBackFromAFileWithTheNumberOfItsBinsAlone) {
  MCContEncoder encoder;
  encoder.SetMissingInterval(1.0, 2.0);
  const MCContEncoder binned(0.0, 1.0, 5);
  mctest::ReadWhatIsSaved(encoder, binned);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 5);
  EXPECT_EQ(encoder.GetBinningEncoder(), nullptr);
  EXPECT_FALSE(encoder.IsMissing(1.5));
}

TEST(MCContEncoder, ShowsWhatItHolds) {
  MCContEncoder encoder(0.0, 1.0, 2);
  EXPECT_EQ(mctest::DisplayOf(encoder),
            "\n\tMCContEncoder: "
            "\nnumber of bins = 2"
            "\nDiscrete user missing values (size = 0)"
            "\n\t\tMissing Value Labels:");
  encoder.AddDiscreteUserMissing(0.25, "quarter");
  encoder.SetMissingInterval(-1e300, 0.0);
  EXPECT_EQ(mctest::DisplayOf(encoder),
            "\n\tMCContEncoder: "
            "\nnumber of bins = 2"
            "\nDiscrete user missing values (size = 1)\n = 0.25"
            "\n\t\tUser-missing interval for this encoder: "
            "\n\t\t[ -1e+300, 0 ]"
            "\n\t\tMissing Value Labels:"
            "\n\t\tquarter");
}

}  // namespace
