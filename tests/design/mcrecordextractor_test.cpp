// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcrecordextractor.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

namespace {
using Ints = std::vector<int>;

TEST(MCRecordExtractor, MadeByDefaultIsEmpty) {
  const MCRecordExtractor extractor;
  EXPECT_EQ(extractor.GetDependentOffset(), 0);
  EXPECT_EQ(extractor.GetFactorOffsets(), Ints());
  EXPECT_EQ(extractor.GetCovariateOffsets(), Ints());
  EXPECT_EQ(extractor.GetFreqWeightOffset(), -1);
  EXPECT_EQ(extractor.GetRegrWeightOffset(), -1);
  EXPECT_EQ(extractor.GetAllRecordIndices(), Ints());
}

TEST(MCRecordExtractor, LaysOutDependentFactorsCovariatesAndWeights) {
  const struct {
    const char* text;
    Ints factors, covariates;
    int freqWeight, regrWeight;
    Ints extract, factorOffsets, covariateOffsets;
    int freqOffset, regrOffset;
  } kCases[] = {
      {"all", {8, 2}, {5, 1, 3}, 9, 4, {7, 8, 2, 5, 1, 3, 9, 4}, {1, 2}, {3, 4, 5}, 6, 7},
      {"no weights", {8, 2}, {5}, -1, -1, {7, 8, 2, 5}, {1, 2}, {3}, -1, -1},
      {"frequency weight", {8}, {5}, 9, -1, {7, 8, 5, 9}, {1}, {2}, 3, -1},
      {"weights at position 0", {}, {}, 0, 0, {7, 0, 0}, {}, {}, 1, 2},
      {"regression weight", {8}, {5}, -2, 0, {7, 8, 5, 0}, {1}, {2}, -1, 3},
      {"dependent alone", {}, {}, -1, -1, {7}, {}, {}, -1, -1},
      {"no factors", {}, {5}, 9, 4, {7, 5, 9, 4}, {}, {1}, 2, 3},
      {"no covariates", {8}, {}, 9, 4, {7, 8, 9, 4}, {1}, {}, 2, 3},
  };
  MCRecordExtractor reused;
  for (const auto& row : kCases) {
    const MCRecordExtractor made(7, row.factors, row.covariates, row.freqWeight, row.regrWeight);
    reused.SetRecordIndices(7, row.factors, row.covariates, row.freqWeight, row.regrWeight);
    for (const MCRecordExtractor* extractor :
         {&made, static_cast<const MCRecordExtractor*>(&reused)}) {
      EXPECT_EQ(extractor->GetDependentOffset(), 0) << row.text;
      EXPECT_EQ(extractor->GetAllRecordIndices(), row.extract) << row.text;
      EXPECT_EQ(extractor->GetFactorOffsets(), row.factorOffsets) << row.text;
      EXPECT_EQ(extractor->GetCovariateOffsets(), row.covariateOffsets) << row.text;
      EXPECT_EQ(extractor->GetFreqWeightOffset(), row.freqOffset) << row.text;
      EXPECT_EQ(extractor->GetRegrWeightOffset(), row.regrOffset) << row.text;
    }
  }
}

TEST(MCRecordExtractor, KeepsItsTableWhereMemoryRunsOut) {
  MCRecordExtractor extractor(7, {8}, {5}, -1, -1);
  const Ints factors = {1, 2};
  {
    const mctest::FailAllocation failure(2);
    EXPECT_THROW(extractor.SetRecordIndices(0, factors, factors, 3, 4), std::bad_alloc);
  }
  EXPECT_EQ(extractor.GetAllRecordIndices(), (Ints{7, 8, 5}));
  EXPECT_EQ(extractor.GetFreqWeightOffset(), -1);
}

TEST(MCRecordExtractor, DisplaysItsFields) {
  const MCRecordExtractor extractor(7, {8, 2}, {5}, 9, -1);
  EXPECT_EQ(mctest::Displayed([&] { extractor.Display(); }),
            "\nMCRecordExtractor display start"
            "\nfExtractSize = 5"
            "\nfExtract (size = 5)\n 7 8 2 5 9"
            "\nfDependentOffset = 0"
            "\nfFactorOffsets (size = 2)\n 1 2"
            "\nfCovariateOffsets (size = 1)\n 3"
            "\nfFreqWeightOffset = 4"
            "\nfRegrWeightOffset = -1"
            "\nMCRecordExtractor display end");
}

}  // namespace
