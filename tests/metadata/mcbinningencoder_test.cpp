// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcbinningencoder.h"

#include "regression/frame/mcmv.h"
#include "support/displaycapture.h"

#include <climits>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

using MCCommonMetadata::MCBinningEncoder;
using Values = std::vector<double>;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(MCBinningEncoder, SortsAValueOnACutIntoTheBinBelow) {
  const MCBinningEncoder encoder(Values{1.0, 2.0});
  EXPECT_EQ(encoder.Encode(0.5), 0.0);
  EXPECT_EQ(encoder.Encode(1.0), 0.0);
  EXPECT_EQ(encoder.Encode(1.5), 1.0);
  EXPECT_EQ(encoder.Encode(2.0), 1.0);
  EXPECT_EQ(encoder.Encode(3.0), 2.0);
  EXPECT_EQ(encoder.Encode(HUGE_VAL), 2.0);
  EXPECT_EQ(encoder.Encode(-HUGE_VAL), 0.0);
  EXPECT_EQ(encoder.Encode(MCMV::gMissingValue), -1.0);
  EXPECT_EQ(encoder.Encode(kNaN), 0.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
}

TEST(MCBinningEncoder, SortsBySignWithoutCuts) {
  const MCBinningEncoder cases[] = {MCBinningEncoder(),
                                    MCBinningEncoder(Values{}),
                                    MCBinningEncoder(0.0, 1.0, 1),
                                    MCBinningEncoder(0.0, 1.0, 0),
                                    MCBinningEncoder(0.0, 1.0, -5),
                                    MCBinningEncoder(0.0, 1.0, INT_MIN)};
  for (const MCBinningEncoder& encoder : cases) {
    EXPECT_EQ(encoder.Encode(-1.0), 0.0);
    EXPECT_EQ(encoder.Encode(0.0), 1.0);
    EXPECT_EQ(encoder.Encode(5.0), 1.0);
    EXPECT_EQ(encoder.Encode(kNaN), 1.0);
    EXPECT_EQ(encoder.Encode(MCMV::gMissingValue), -1.0);
    EXPECT_TRUE(encoder.GetBinningCutpoints().empty());
  }
}

TEST(MCBinningEncoder, CountsBins) {
  EXPECT_EQ(MCBinningEncoder().GetNumberOfCategories(), 0);
  EXPECT_EQ(MCBinningEncoder(0.0, 1.0, 1).GetNumberOfCategories(), 0);
  EXPECT_EQ(MCBinningEncoder(Values{}).GetNumberOfCategories(), 1);
  EXPECT_EQ(MCBinningEncoder(0.0, 1.0, 7).GetNumberOfCategories(), 7);
  MCBinningEncoder encoder;
  encoder.SetBinningCutpoints({1.0, 2.0, 3.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 4);
  EXPECT_EQ(encoder.GetBinningCutpoints(), (Values{1.0, 2.0, 3.0}));
}

TEST(MCBinningEncoder, CutsEqualWidths) {
  const MCBinningEncoder encoder(-1.0, 1.0, 4);
  EXPECT_EQ(encoder.GetBinningCutpoints(), (Values{-0.5, 0.0, 0.5}));
  EXPECT_EQ(MCBinningEncoder(0.0, 1.0, 3).GetBinningCutpoints(),
            (Values{1.0 / 3.0, 2.0 * (1.0 / 3.0)}));
  EXPECT_EQ(MCBinningEncoder(2.0, 0.0, 2).GetBinningCutpoints(), Values{1.0});
}

TEST(MCBinningEncoder, CutsAtInfinityWhereTheWidthIsInfinite) {
  const MCBinningEncoder encoder(-DBL_MAX, DBL_MAX, 3);
  EXPECT_EQ(encoder.GetBinningCutpoints(), (Values{HUGE_VAL, HUGE_VAL}));
  EXPECT_EQ(encoder.Encode(5.0), 0.0);
}

struct Merge {
  const char* name;
  Values counts;
  Values expected;  // of ComputeCutpoints
  Values adjusted;  // of AdjustBinning
};

// The cutpoints are 1 to 5, so there are six bins.
const Merge kMerges[] = {
    {"a leading run", {0, 0, 1, 1, 1, 1}, {-DBL_MAX, -DBL_MAX, 3, 4, 5}, {3, 4, 5}},
    {"a trailing run", {1, 1, 1, 1, 0, 0}, {1, 2, 3, DBL_MAX, DBL_MAX}, {1, 2, 3}},
    {"an empty last bin", {1, 1, 1, 1, 1, 0}, {1, 2, 3, 4, DBL_MAX}, {1, 2, 3, 4}},
    {"an empty first bin", {0, 1, 1, 1, 1, 1}, {-DBL_MAX, 2, 3, 4, 5}, {2, 3, 4, 5}},
    {"an inner bin", {1, 1, 0, 1, 1, 1}, {1, 2.5, 2.5, 4, 5}, {1, 2.5, 4, 5}},
    {"an inner run", {1, 0, 0, 0, 1, 1}, {2.5, 2.5, 2.5, 2.5, 5}, {2.5, 5}},
    {"two inner runs", {1, 0, 1, 0, 0, 1}, {1.5, 1.5, 4, 4, 4}, {1.5, 4}},
    {"all but the ends", {1, 0, 0, 0, 0, 1}, {3, 3, 3, 3, 3}, {3}},
    {"all but two in the middle",
     {0, 0, 1, 1, 0, 0},
     {-DBL_MAX, -DBL_MAX, 3, DBL_MAX, DBL_MAX},
     {3}},
    {"runs of all kinds", {0, 1, 0, 1, 0, 0}, {-DBL_MAX, 2.5, 2.5, DBL_MAX, DBL_MAX}, {2.5}},
    {"counts that aren't above 0", {1, 1, -2, 1, kNaN, 1}, {1, 2.5, 2.5, 4.5, 4.5}, {1, 2.5, 4.5}}};

TEST(MCBinningEncoder, MergesEmptyBins) {
  for (const Merge& c : kMerges) {
    MCBinningEncoder encoder(Values{1, 2, 3, 4, 5});
    Values cuts{77.0};
    EXPECT_TRUE(encoder.ComputeCutpoints(c.counts, cuts)) << c.name;
    EXPECT_EQ(cuts, c.expected) << c.name;
    EXPECT_EQ(encoder.GetBinningCutpoints(), (Values{1, 2, 3, 4, 5})) << c.name;
    Values shared = c.counts;
    EXPECT_TRUE(encoder.ComputeCutpoints(shared, shared)) << c.name;
    EXPECT_EQ(shared, c.expected) << c.name;
    const std::unique_ptr<MCBinningEncoder> rebinned(encoder.CreateRebinned(c.counts));
    EXPECT_EQ(rebinned->GetBinningCutpoints(), c.expected) << c.name;
    EXPECT_EQ(rebinned->GetNumberOfCategories(), 6) << c.name;
    encoder.AdjustBinning(c.counts);
    EXPECT_EQ(encoder.GetBinningCutpoints(), c.adjusted) << c.name;
    EXPECT_EQ(encoder.GetNumberOfCategories(), static_cast<int>(c.adjusted.size()) + 1) << c.name;
  }
}

TEST(MCBinningEncoder, MergesNothingWithoutReason) {
  const Values refused[] = {{},     {1, 1, 1},    {0, 0, 0},      {0, 1, 0},
                            {1, 0}, {1, 0, 1, 1}, {kNaN, kNaN, 1}};
  for (const Values& counts : refused) {
    MCBinningEncoder encoder(Values{1.0, 2.0});
    Values cuts{77.0};
    EXPECT_FALSE(encoder.ComputeCutpoints(counts, cuts));
    EXPECT_EQ(cuts, (Values{1.0, 2.0}));
    encoder.AdjustBinning(counts);
    EXPECT_EQ(encoder.GetBinningCutpoints(), (Values{1.0, 2.0}));
    const std::unique_ptr<MCBinningEncoder> rebinned(encoder.CreateRebinned(counts));
    EXPECT_EQ(rebinned->GetBinningCutpoints(), (Values{1.0, 2.0}));
    EXPECT_NE(rebinned.get(), &encoder);
  }
}

TEST(MCBinningEncoder, MergesNothingWithoutCuts) {
  const MCBinningEncoder encoder;
  Values cuts{77.0};
  EXPECT_FALSE(encoder.ComputeCutpoints({1.0, 0.0}, cuts));
  EXPECT_TRUE(cuts.empty());
  const std::unique_ptr<MCBinningEncoder> rebinned(encoder.CreateRebinned({}));
  EXPECT_EQ(rebinned->GetNumberOfCategories(), 0);
}

TEST(MCBinningEncoder, LetsMidpointsOverflow) {
  const MCBinningEncoder encoder(Values{1e308, 1.5e308});
  Values cuts;
  EXPECT_TRUE(encoder.ComputeCutpoints({1.0, 0.0, 1.0}, cuts));
  EXPECT_EQ(cuts, (Values{HUGE_VAL, HUGE_VAL}));
}

TEST(MCBinningEncoder, DropsRepeatedCutsThatItHadWhenItMerges) {
  MCBinningEncoder encoder(Values{1.0, 1.0, 0.5, 3.0});
  encoder.AdjustBinning({1.0, 1.0, 1.0, 1.0, 0.0});
  EXPECT_EQ(encoder.GetBinningCutpoints(), Values{1.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
}

TEST(MCBinningEncoder, IsCopiedAndShown) {
  MCBinningEncoder encoder(Values{0.5});
  const std::unique_ptr<MCBinningEncoder> clone(encoder.Clone());
  encoder.SetBinningCutpoints({});
  EXPECT_EQ(clone->GetBinningCutpoints(), Values{0.5});
  EXPECT_EQ(mctest::DisplayOf(*clone), "\n\t\tCutpoints (size = 1)\n = 0.5");
}

}  // namespace
