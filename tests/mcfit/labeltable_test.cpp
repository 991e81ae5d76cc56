// SPDX-License-Identifier: Apache-2.0
#include "labeltable.h"

#include <gtest/gtest.h>

namespace {
using mcfit::LabelTable;

std::vector<std::string> Sorted(const std::vector<std::string>& labels) {
  LabelTable table;
  for (const std::string& label : labels) table.Add(label);
  (void)table.Sort();
  std::vector<std::string> sorted;
  for (int code = 0; code < table.Size(); ++code) sorted.push_back(table.Label(code));
  return sorted;
}

TEST(McfitLabelTable, LabelsGetCodesInTheOrderOfTheirFirstAppearance) {
  LabelTable table;
  EXPECT_EQ(table.Add("b"), 0);
  EXPECT_EQ(table.Add("a"), 1);
  EXPECT_EQ(table.Add("b"), 0);
  EXPECT_EQ(table.Size(), 2);
  EXPECT_EQ(table.Find("a"), 1);
  EXPECT_EQ(table.Find("c"), -1);
  EXPECT_EQ(table.Label(0), "b");
}

TEST(McfitLabelTable, SortingTellsTheNewCodeOfEachOldOne) {
  LabelTable table;
  for (const char* label : {"pear", "apple", "quince"}) table.Add(label);
  EXPECT_EQ(table.Sort(), (std::vector<int>{1, 0, 2}));
  EXPECT_EQ(table.Find("apple"), 0);
  EXPECT_EQ(table.Find("pear"), 1);
  EXPECT_EQ(table.Label(2), "quince");
}

TEST(McfitLabelTable, ArrangingPutsLabelsInAGivenOrder) {
  LabelTable table;
  for (const char* label : {"pear", "apple", "quince"}) table.Add(label);
  EXPECT_EQ(table.Arrange({1, 2, 0}), (std::vector<int>{2, 0, 1}));
  EXPECT_EQ(table.Label(0), "apple");
  EXPECT_EQ(table.Find("quince"), 1);
  EXPECT_EQ(table.Find("pear"), 2);
}

TEST(McfitLabelTable, LabelsThatAreNumbersSortByValue) {
  EXPECT_EQ(Sorted({"10", "9", "-1", "1e1", "2.5", "+3"}),
            (std::vector<std::string>{"-1", "2.5", "+3", "9", "10", "1e1"}));
}

TEST(McfitLabelTable, NumbersComeBeforeWordsAndWordsSortByBytes) {
  EXPECT_EQ(Sorted({"b", "nan", "10", "B", "a", "2", "Ä"}),
            (std::vector<std::string>{"2", "10", "B", "a", "b", "nan", "Ä"}));
}

TEST(McfitLabelTable, TextsThatDifferAreDifferentLabelsEvenIfTheirNumbersAreEqual) {
  EXPECT_EQ(Sorted({"1.0", "1", "01"}), (std::vector<std::string>{"01", "1", "1.0"}));
}

TEST(McfitLabelTable, AnEmptyTableSorts) {
  LabelTable table;
  EXPECT_TRUE(table.Sort().empty());
}

TEST(McfitLabelTable, OneLabelTooManyIsRefused) {
  LabelTable table;
  for (int i = 0; i < LabelTable::kMostLabels; ++i) ASSERT_EQ(table.Add(std::to_string(i)), i);
  EXPECT_EQ(table.Add("one more"), -1);
  EXPECT_EQ(table.Add("7"), 7);
  EXPECT_EQ(table.Size(), LabelTable::kMostLabels);
}

}  // namespace
