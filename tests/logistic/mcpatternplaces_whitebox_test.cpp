// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/detail/mcpatternplaces.h"
#include "support/factororacle.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using MCCommon::detail::MCPatternPlaces;
using Ints = std::vector<int>;

// Tables of these effects, with factors of 200 and 3 categories at 0 and 1.
std::unique_ptr<MCFactorTables> TablesOf(const std::vector<Ints>& effects) {
  mctest::FactorDesign design;
  design.factors = {0, 1};
  design.sizes = {200, 3};
  design.effects = effects;
  return mctest::TablesOf(design);
}

const double kRow[] = {7, 2};
const double kOther[] = {8, 2};
const double kOutside[] = {200, 2};

TEST(MCPatternPlaces, CountsTheRowsOfACell) {
  const auto tables = TablesOf({{0}});
  MCPatternPlaces places({0, 1}, {200, 3});
  places.Count(kRow);
  EXPECT_EQ(places.CountOf(kRow), 0U);
  places.BeginCounting(*tables);
  places.Count(kRow);
  places.Count(kRow);
  places.Count(kOutside);
  EXPECT_EQ(places.CountOf(kRow), 2U);
  EXPECT_EQ(places.CountOf(kOther), 0U);
  EXPECT_EQ(places.CountOf(kOutside), 0U);
  // A factor that no effect names doesn't tell cells apart.
  const double sameCell[] = {7, 0};
  EXPECT_EQ(places.CountOf(sameCell), 2U);
  places.BeginPatterns(*tables, {3});
  EXPECT_EQ(places.CountOf(kRow), 2U);
  places.BeginPatterns(*TablesOf({{0}, {1}}), {3, 3});
  EXPECT_EQ(places.CountOf(kRow), 0U);
}

TEST(MCPatternPlaces, KeepsPatternsByIndicesWhereTheseAreFew) {
  const auto tables = TablesOf({{0}, {1}});
  MCPatternPlaces places({0, 1}, {200, 3});
  MCRowPatterns pattern;
  places.BeginPatterns(*tables, {2, 3});
  EXPECT_EQ(places.Find(kRow, {1, 2}), nullptr);
  places.Set(kRow, {1, 2}, &pattern);
  EXPECT_EQ(places.Find(kRow, {1, 2}), &pattern);
  for (const Ints& others : {Ints{0, 2}, Ints{1}, Ints{1, 2, 0}, Ints{2, 2}, Ints{-1, 2}}) {
    EXPECT_EQ(places.Find(kRow, others), nullptr);
  }
  places.Clear();
  EXPECT_EQ(places.Find(kRow, {1, 2}), nullptr);
}

TEST(MCPatternPlaces, KeepsPatternsByCellsWhereIndicesAreMany) {
  const auto tables = TablesOf({{0}, {0, 1}});
  MCPatternPlaces places({0, 1}, {200, 3});
  MCRowPatterns pattern;
  MCRowPatterns another;
  places.BeginPatterns(*tables, {200, 600});
  EXPECT_EQ(places.Find(kRow, {7, 23}), nullptr);
  places.Set(kRow, {7, 23}, &pattern);
  places.Set(kOther, {8, 26}, &another);
  places.Set(kOutside, {9, 9}, &another);
  EXPECT_EQ(places.Find(kRow, {7, 23}), &pattern);
  EXPECT_EQ(places.Find(kOther, {8, 26}), &another);
  EXPECT_EQ(places.Find(kOutside, {9, 9}), nullptr);
  // Looked up in other tables a row of the same cell has other indices.
  for (const Ints& others : {Ints{7, 22}, Ints{7}, Ints{7, 23, 0}}) {
    EXPECT_EQ(places.Find(kRow, others), nullptr);
  }
  places.Set(kRow, {7, 22}, &another);
  EXPECT_EQ(places.Find(kRow, {7, 23}), &pattern);
}

TEST(MCPatternPlaces, DoesWithoutWhereCellsAreManyToo) {
  mctest::FactorDesign design;
  design.factors = {0, 1};
  design.sizes = {20000, 3};
  design.effects = {{0}, {1}};
  const auto tables = mctest::TablesOf(design);
  MCPatternPlaces places({0, 1}, {20000, 3});
  MCRowPatterns pattern;
  places.BeginCounting(*tables);
  places.Count(kRow);
  EXPECT_EQ(places.CountOf(kRow), 0U);
  places.BeginPatterns(*tables, {20000, 3});
  places.Set(kRow, {7, 2}, &pattern);
  EXPECT_EQ(places.Find(kRow, {7, 2}), nullptr);
}

}  // namespace
