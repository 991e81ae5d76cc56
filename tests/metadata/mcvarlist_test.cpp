// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcvarlist.h"

#include "metadata/mccatnumencoder.h"
#include "metadata/mcstringencoder.h"
#include "support/displaycapture.h"
#include "support/savefile.h"

#include <climits>
#include <gtest/gtest.h>

#include <cfloat>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// Names of all variables, in order.
Texts NamesOf(const MCVarList& list) {
  Texts names;
  for (int i = 0; i < list.Size(); ++i) names.push_back(list.GetVarAt(i)->GetVariableName());
  return names;
}

// The saved counters and places, as text: continuous, categorical, target, target response.
std::string CountersOf(const MCVarList& list) {
  const std::string saved = mctest::Saved(list);
  std::string counters;
  std::size_t at = saved.size();
  for (int i = 0; i < 6; ++i) at = saved.rfind('\n', at - 1);
  for (int i = 0; i < 4; ++i) {
    at = saved.find("value=\"", at) + 7;
    counters += (i == 0 ? "" : " ") + saved.substr(at, saved.find('"', at) - at);
  }
  return counters;
}

// A string category, a target, a numeric category, a target response and a weight.
MCVarList MakeList() {
  MCVarList list;
  EXPECT_EQ(list.AddCatVar("s", "", Texts{"a", "b"}, MC_ROLE_INPUT), 0);
  EXPECT_EQ(list.AddContVar("t", "", MC_ROLE_TARGET), 1);
  EXPECT_EQ(list.AddCatVar("n", "", Numbers{1.0, 2.0, 3.0}, MC_ROLE_INPUT), 2);
  EXPECT_EQ(list.AddCatVar("r", "", Texts{"yes"}, MC_ROLE_TARGET_RESPONSE), 3);
  EXPECT_EQ(list.SetWeightVar("w", "", MC_ROUND_AS_IS), 4);
  return list;
}

TEST(MCVarList, BeginsEmpty) {
  MCVarList list;
  EXPECT_EQ(list.Size(), 0);
  EXPECT_EQ(list.GetNumContVar(), 0);
  EXPECT_EQ(list.GetNumCatVar(), 0);
  EXPECT_EQ(list.GetNumInputVars(), 0);
  EXPECT_EQ(list.GetNumPossibleInputVars(), 0);
  EXPECT_EQ(list.FindVariable(""), -1);
  EXPECT_TRUE(list.GetNInputCats().empty());
  EXPECT_FALSE(list.GetListwiseDeletion());
  EXPECT_EQ(list.UpdateNumbersOfCategories(), 0);
  EXPECT_EQ(CountersOf(list), "0 0 -1 -1");
}

TEST(MCVarList, AnswersNothingOutOfRange) {
  MCVarList list = MakeList();
  const MCVarList& constant = list;
  for (const int i : {INT_MIN, -1, list.Size(), INT_MAX}) {
    EXPECT_EQ(list.GetVarAt(i), nullptr);
    EXPECT_EQ(constant.GetVarAt(i), nullptr);
    EXPECT_EQ(list.GetEncoderAt(i), nullptr);
    EXPECT_EQ(constant.GetEncoderAt(i), nullptr);
    EXPECT_EQ(list.GetVariableRole(i), MC_ROLE_UNDEFINED);
    EXPECT_FALSE(list.SetVariableRole(i, MC_ROLE_INPUT));
    EXPECT_FALSE(list.SetMissingValueReplacement(i, "x"));
    EXPECT_FALSE(list.RemoveVar(i));
  }
  EXPECT_FALSE(list.RemoveVar("nobody"));
  EXPECT_EQ(mctest::Saved(list), mctest::Saved(MakeList()));
}

TEST(MCVarList, AnswersVariablesAndTheirEncoders) {
  MCVarList list = MakeList();
  const MCVarList& constant = list;
  EXPECT_EQ(list.GetVarAt(2)->GetVariableName(), "n");
  EXPECT_EQ(constant.GetVarAt(2), list.GetVarAt(2));
  EXPECT_EQ(list.GetEncoderAt(2), list.GetVarAt(2)->GetEncoder());
  EXPECT_EQ(constant.GetEncoderAt(2), list.GetEncoderAt(2));
  EXPECT_EQ(list.GetVariableRole(4), MC_ROLE_WEIGHT);
  EXPECT_EQ(list.GetNInputCats(), (std::vector<int>{2, 3}));
}

TEST(MCVarList, CountsRoles) {
  MCVarList list;
  const int roles[] = {4, 5, 0, 4, 6, 4, 5, 7, -1};
  for (const int role : roles) {
    list.AddContVar("v" + std::to_string(list.Size()), "", static_cast<VariableRole>(role));
  }
  EXPECT_EQ(list.GetNumInputVars(), 3);
  EXPECT_EQ(list.GetNumPossibleInputVars(), 2);
  EXPECT_EQ(list.GetNumContVar(), 9);
  EXPECT_EQ(list.GetNInputCats(), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(list.GetVariableRole(7), 7);
}

TEST(MCVarList, AddsCategoriesWithTheirCodesAndLabels) {
  MCVarList list;
  const Texts labels{"A", "B"};
  EXPECT_EQ(list.AddCatVar("s", "strings", Texts{"b", "a", "b"}, MC_ROLE_INPUT), 0);
  EXPECT_EQ(list.AddCatVar("S", "", Texts{"x", "y"}, labels, MC_ROLE_INPUT), 1);
  EXPECT_EQ(list.AddCatVar("n", "", Numbers{5.0, 3.0, 5.0}, MC_ROLE_INPUT), 2);
  EXPECT_EQ(list.AddCatVar("N", "", Numbers{1.0}, labels, MC_ROLE_INPUT), 3);
  EXPECT_EQ(list.AddCatVar("late", "", 7, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT), 4);
  EXPECT_EQ(list.GetNumCatVar(), 5);
  EXPECT_EQ(list.GetNumContVar(), 0);
  EXPECT_EQ(list.GetVarAt(0)->GetVariableLabel(), "strings");
  EXPECT_EQ(list.GetVarAt(0)->GetMeasureLevel(), MC_LEVEL_CAT_STRING);
  EXPECT_EQ(list.GetVarAt(2)->GetMeasureLevel(), MC_LEVEL_CAT_NUM);
  // The variable counts what was in the list, the encoder what it has codes for.
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 3);
  EXPECT_EQ(list.GetEncoderAt(0)->GetNumberOfCategories(), 2);
  EXPECT_EQ(list.GetVarAt(2)->GetNumberOfCategories(), 3);
  EXPECT_EQ(list.GetEncoderAt(2)->GetNumberOfCategories(), 2);
  EXPECT_EQ(list.GetEncoderAt(0)->EncodeConst(std::string("b")), 0.0);
  EXPECT_EQ(list.GetEncoderAt(2)->EncodeConst(3.0), 1.0);
  EXPECT_EQ(*list.GetEncoderAt(1)->GetValueLabels(), labels);
  EXPECT_EQ(*list.GetEncoderAt(3)->GetValueLabels(), labels);
  EXPECT_TRUE(list.GetEncoderAt(0)->GetValueLabels()->empty());
  EXPECT_EQ(list.GetVarAt(4)->GetNumberOfCategories(), 7);
  EXPECT_FALSE(static_cast<const MCCatVar*>(list.GetVarAt(0))->GetOrdinalFlag());
  EXPECT_EQ(list.GetNInputCats(), (std::vector<int>{3, 2, 3, 1, 7}));
}

TEST(MCVarList, AddsContinuousVariablesInFourForms) {
  MCVarList list;
  EXPECT_EQ(list.AddContVar("a", "", MC_ROLE_INPUT), 0);
  EXPECT_EQ(list.AddContVar("b", "", 0.0, 1.0, MC_ROLE_INPUT, true, 4), 1);
  EXPECT_EQ(list.AddContVar("c", "", Numbers{1.0, 2.0}, true, MC_ROLE_INPUT), 2);
  EXPECT_EQ(list.AddContVar("d", "", 0.0, 9.0, Numbers{1.0}, true, MC_ROLE_INPUT), 3);
  EXPECT_EQ(list.GetNumContVar(), 4);
  EXPECT_EQ(list.GetNumCatVar(), 0);
  EXPECT_EQ(list.GetNInputCats(), (std::vector<int>{0, 4, 3, 2}));
  EXPECT_EQ(static_cast<const MCContVar*>(list.GetVarAt(3))->GetMax(), 9.0);
  EXPECT_EQ(static_cast<const MCContVar*>(list.GetVarAt(2))->GetMax(), DBL_MAX);
}

TEST(MCVarList, AddsNothingWithoutANameOfItsOwn) {
  MCVarList list = MakeList();
  const std::string before = mctest::Saved(list);
  for (const char* name : {"", "t", "w"}) {
    EXPECT_EQ(list.AddCatVar(name, "", Texts{"a"}, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddCatVar(name, "", Texts{"a"}, Texts{"A"}, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddCatVar(name, "", Numbers{1.0}, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddCatVar(name, "", Numbers{1.0}, Texts{"A"}, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddCatVar(name, "", 2, MC_LEVEL_CAT_NUM, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddContVar(name, "", MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddContVar(name, "", 0.0, 1.0, MC_ROLE_TARGET, true, 2), -1);
    EXPECT_EQ(list.AddContVar(name, "", Numbers{1.0}, true, MC_ROLE_TARGET), -1);
    EXPECT_EQ(list.AddContVar(name, "", 0.0, 1.0, Numbers{0.5}, true, MC_ROLE_TARGET), -1);
  }
  EXPECT_EQ(mctest::Saved(list), before);
  EXPECT_EQ(list.AddContVar("T", "", MC_ROLE_INPUT), 5);
}

TEST(MCVarList, LetsANewTargetTakeThePlaceOfTheOld) {
  MCVarList list = MakeList();
  EXPECT_EQ(CountersOf(list), "1 3 1 3");
  EXPECT_EQ(list.AddContVar("t2", "", MC_ROLE_TARGET), 5);
  EXPECT_EQ(list.AddContVar("r2", "", MC_ROLE_TARGET_RESPONSE), 6);
  EXPECT_EQ(CountersOf(list), "3 3 5 6");
  EXPECT_EQ(list.GetVariableRole(1), MC_ROLE_TARGET);
  EXPECT_EQ(list.GetVariableRole(3), MC_ROLE_TARGET_RESPONSE);
}

TEST(MCVarList, FindsNamesAsTheyAreNow) {
  MCVarList list = MakeList();
  EXPECT_EQ(list.FindVariable("n"), 2);
  EXPECT_EQ(list.FindVariable("w"), 4);
  EXPECT_EQ(list.FindVariable("N"), -1);
  list.RemoveVar("s");
  EXPECT_EQ(list.FindVariable("s"), -1);
  EXPECT_EQ(list.FindVariable("n"), 1);
  list.SetWeightVar("heavy", "", MC_ROUND_AS_IS);
  EXPECT_EQ(list.FindVariable("w"), -1);
  EXPECT_EQ(list.FindVariable("heavy"), 3);
  *static_cast<MCContVar*>(list.GetVarAt(0)) = MCContVar("renamed", "", MC_ROLE_TARGET);
  EXPECT_EQ(list.FindVariable("t"), -1);
  EXPECT_EQ(list.FindVariable("renamed"), 0);
  mctest::ReadSaved(*list.GetVarAt(0), mctest::Saved(MCContVar("read", "", MC_ROLE_INPUT)));
  EXPECT_EQ(list.FindVariable("renamed"), -1);
  EXPECT_EQ(list.FindVariable("read"), 0);
  MCVarList copy(list);
  EXPECT_EQ(copy.FindVariable("read"), 0);
  *static_cast<MCContVar*>(copy.GetVarAt(0)) = MCContVar("copied", "", MC_ROLE_TARGET);
  EXPECT_EQ(copy.FindVariable("copied"), 0);
  EXPECT_EQ(list.FindVariable("read"), 0);
}

TEST(MCVarList, FindsTheFirstOfARepeatedName) {
  MCVarList list = MakeList();
  list.SetWeightVar("n", "", MC_ROUND_AS_IS);
  EXPECT_EQ(list.FindVariable("n"), 2);
  list.RemoveVar(2);
  EXPECT_EQ(list.FindVariable("n"), 3);
}

TEST(MCVarList, NamesTheWeightApart) {
  MCVarList list = MakeList();
  Texts names{"old"};
  std::string weight = "none";
  list.GetVarNames(names, weight);
  EXPECT_EQ(names, (Texts{"s", "t", "n", "r"}));
  EXPECT_EQ(weight, "w");
  list.RemoveVar("w");
  weight = "none";
  list.GetVarNames(names, weight);
  EXPECT_EQ(names, (Texts{"s", "t", "n", "r"}));
  EXPECT_EQ(weight, "none");
}

TEST(MCVarList, KeepsOneWeightInItsPlace) {
  MCVarList list;
  EXPECT_EQ(list.SetWeightVar("w", "", MC_ROUND_AS_IS), 0);
  list.AddContVar("x", "", MC_ROLE_INPUT);
  EXPECT_EQ(list.SetWeightVar("w2", "label", MC_ROUND_TRUNCATE), 0);
  EXPECT_EQ(NamesOf(list), (Texts{"w2", "x"}));
  EXPECT_EQ(list.GetEncoderAt(0)->EncodeConst(2.9), 2.0);
  EXPECT_EQ(list.GetNumCatVar(), 0);
  EXPECT_EQ(list.GetNumContVar(), 1);
}

TEST(MCVarList, LooksAtNoNameOfAWeightButCountsItAmongTheNames) {
  MCVarList list;
  list.AddContVar("x", "", MC_ROLE_INPUT);
  EXPECT_EQ(list.SetWeightVar("x", "", MC_ROUND_AS_IS), 1);
  EXPECT_EQ(list.SetWeightVar("", "", MC_ROUND_AS_IS), 1);
  EXPECT_EQ(list.SetWeightVar("w", "", MC_ROUND_AS_IS), 1);
  EXPECT_EQ(list.AddContVar("w", "", MC_ROLE_INPUT), -1);
}

TEST(MCVarList, GivesThePlaceOfTheTargetOnlyWhereNobodyHasIt) {
  MCVarList list = MakeList();
  EXPECT_TRUE(list.SetVariableRole(0, MC_ROLE_TARGET));
  EXPECT_TRUE(list.SetVariableRole(2, MC_ROLE_TARGET_RESPONSE));
  EXPECT_EQ(list.GetVariableRole(0), MC_ROLE_TARGET);
  EXPECT_EQ(CountersOf(list), "1 3 1 3");
  MCVarList fresh;
  fresh.AddContVar("x", "", MC_ROLE_INPUT);
  fresh.AddContVar("y", "", MC_ROLE_INPUT);
  fresh.SetVariableRole(1, MC_ROLE_TARGET);
  fresh.SetVariableRole(0, MC_ROLE_TARGET_RESPONSE);
  EXPECT_EQ(CountersOf(fresh), "2 0 1 0");
}

TEST(MCVarList, ClearsThePlaceOfTheTargetWhoeverOfThatRoleLeavesIt) {
  MCVarList list = MakeList();
  list.SetVariableRole(0, MC_ROLE_TARGET);
  list.SetVariableRole(0, MC_ROLE_INPUT);
  EXPECT_EQ(CountersOf(list), "1 3 -1 3");
  EXPECT_EQ(list.GetVariableRole(1), MC_ROLE_TARGET);
  list.SetVariableRole(3, MC_ROLE_UNUSED);
  EXPECT_EQ(CountersOf(list), "1 3 -1 -1");
  list.SetVariableRole(2, static_cast<VariableRole>(-9));
  EXPECT_EQ(list.GetVariableRole(2), -9);
}

TEST(MCVarList, ClearsNoPlaceBetweenTargetAndTargetResponse) {
  MCVarList list = MakeList();
  list.SetVariableRole(1, MC_ROLE_TARGET_RESPONSE);
  EXPECT_EQ(CountersOf(list), "1 3 1 3");
  list.SetVariableRole(3, MC_ROLE_TARGET);
  EXPECT_EQ(CountersOf(list), "1 3 1 3");
  EXPECT_EQ(list.GetVariableRole(1), MC_ROLE_TARGET_RESPONSE);
  EXPECT_EQ(list.GetVariableRole(3), MC_ROLE_TARGET);
}

TEST(MCVarList, LetsAWeightBeTheTargetThoughItKeepsItsRole) {
  MCVarList list;
  list.SetWeightVar("w", "", MC_ROUND_AS_IS);
  EXPECT_TRUE(list.SetVariableRole(0, MC_ROLE_TARGET));
  EXPECT_EQ(CountersOf(list), "0 0 0 -1");
  EXPECT_EQ(list.GetVariableRole(0), MC_ROLE_WEIGHT);
  MCStringEncoder encoder(Texts{"a"});
  EXPECT_FALSE(list.ChangeTargetEncoder(&encoder));
}

TEST(MCVarList, ForwardsTheReplacementOfMissingValues) {
  MCVarList list = MakeList();
  EXPECT_TRUE(list.SetMissingValueReplacement(0, "a"));
  EXPECT_EQ(*list.GetVarAt(0)->GetMissingValueReplacement(), "a");
  EXPECT_TRUE(list.SetMissingValueReplacement(4, "1"));
  EXPECT_EQ(list.GetVarAt(4)->GetMissingValueReplacement(), nullptr);
}

struct Removal {
  const char* name;
  const char* counters;
};

TEST(MCVarList, MovesPlacesUpBehindAVariableThatIsRemoved) {
  const Removal cases[] = {
      {"s", "1 2 0 2"}, {"t", "0 3 -1 2"}, {"n", "1 2 1 2"}, {"r", "1 3 1 -1"}, {"w", "1 3 1 3"}};
  for (const Removal& c : cases) {
    MCVarList list = MakeList();
    EXPECT_TRUE(list.RemoveVar(c.name));
    EXPECT_EQ(list.Size(), 4);
    EXPECT_EQ(list.FindVariable(c.name), -1);
    EXPECT_EQ(CountersOf(list), c.counters) << c.name;
    Texts names;
    std::string weight = "none";
    list.GetVarNames(names, weight);
    EXPECT_EQ(weight, *c.name == 'w' ? "none" : "w") << c.name;
  }
}

TEST(MCVarList, LeavesTheCategoricalCountWhereATargetIsRemoved) {
  MCVarList list;
  list.AddCatVar("first", "", Texts{"a"}, MC_ROLE_TARGET);
  list.AddCatVar("second", "", Texts{"a"}, MC_ROLE_TARGET);
  EXPECT_EQ(CountersOf(list), "0 2 1 -1");
  list.RemoveVar("first");
  EXPECT_EQ(CountersOf(list), "0 2 -1 -1");
}

TEST(MCVarList, UncountsAContinuousVariableAlsoWhereItIsTargetOrResponse) {
  MCVarList list;
  list.AddContVar("r", "", MC_ROLE_TARGET_RESPONSE);
  list.AddContVar("t", "", MC_ROLE_TARGET);
  list.RemoveVar(0);
  EXPECT_EQ(CountersOf(list), "1 0 0 -1");
  list.RemoveVar(0);
  EXPECT_EQ(CountersOf(list), "0 0 -1 -1");
}

TEST(MCVarList, CountsACategoricalVariableOfAnotherLevelByThatLevelWhenItGoes) {
  MCVarList list;
  list.AddCatVar("odd", "", 2, MC_LEVEL_CONTINUOUS, MC_ROLE_INPUT);
  EXPECT_EQ(CountersOf(list), "0 1 -1 -1");
  list.RemoveVar(0);
  EXPECT_EQ(CountersOf(list), "-1 1 -1 -1");
}

TEST(MCVarList, ChangesTheEncoderOfACategoricalTarget) {
  MCVarList list;
  list.AddCatVar("t", "", Texts{"a"}, MC_ROLE_TARGET);
  auto* strings = new MCStringEncoder(Texts{"x", "y"});
  EXPECT_TRUE(list.ChangeTargetEncoder(strings));
  EXPECT_EQ(list.GetEncoderAt(0), strings);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 2);
  EXPECT_TRUE(list.ChangeTargetEncoder(new MCCatNumEncoder(Numbers{1.0, 2.0, 3.0})));
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 3);
}

TEST(MCVarList, TakesAnEncoderThatItDoesNotLikeAllTheSame) {
  MCVarList list;
  list.AddCatVar("t", "", Texts{"a"}, MC_ROLE_TARGET);
  auto* empty = new MCStringEncoder(0);
  EXPECT_FALSE(list.ChangeTargetEncoder(empty));
  EXPECT_EQ(list.GetEncoderAt(0), empty);
  auto* bins = new MCContEncoder(Numbers{1.0});
  EXPECT_FALSE(list.ChangeTargetEncoder(bins));
  EXPECT_EQ(list.GetEncoderAt(0), bins);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 2);
  EXPECT_FALSE(list.ChangeTargetEncoder(nullptr));
  EXPECT_EQ(list.GetEncoderAt(0), nullptr);
  EXPECT_EQ(std::as_const(list).GetEncoderAt(0), nullptr);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 0);
}

TEST(MCVarList, LeavesAnEncoderToTheCallerWithoutACategoricalTarget) {
  MCStringEncoder encoder(Texts{"a"});
  MCVarList none;
  EXPECT_FALSE(none.ChangeTargetEncoder(&encoder));
  EXPECT_FALSE(none.ChangeTargetEncoder(nullptr));
  MCVarList continuous = MakeList();
  EXPECT_FALSE(continuous.ChangeTargetEncoder(&encoder));
  EXPECT_EQ(mctest::Saved(continuous), mctest::Saved(MakeList()));
}

TEST(MCVarList, UpdatesAllNumbersOfCategories) {
  MCVarList list = MakeList();
  list.GetEncoderAt(0)->Encode(std::string("c"));
  list.AddContVar("x", "", 0.0, 1.0, MC_ROLE_INPUT, true, 5);
  EXPECT_EQ(list.UpdateNumbersOfCategories(), 3 + 0 + 3 + 1 + 0 + 5);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 3);
}

TEST(MCVarList, HoldsASumOfCategoriesThatAnIntCannot) {
  MCVarList list;
  for (const char* name : {"a", "b", "c"}) {
    list.AddCatVar(name, "", INT_MAX, MC_LEVEL_CAT_NUM, MC_ROLE_INPUT);
  }
  EXPECT_EQ(list.UpdateNumbersOfCategories(), INT_MAX);
}

TEST(MCVarList, CopiesEveryVariable) {
  MCVarList list = MakeList();
  list.SetListwiseDeletion(true);
  const std::string saved = mctest::Saved(list);
  const MCVarList copy(list);
  MCVarList assigned;
  assigned.AddContVar("gone", "", MC_ROLE_TARGET);
  assigned = list;
  assigned = *&assigned;
  list.GetEncoderAt(0)->Encode(std::string("c"));
  list.RemoveVar("t");
  for (const MCVarList* each : {&copy, &std::as_const(assigned)}) {
    EXPECT_EQ(mctest::Saved(*each), saved);
    EXPECT_TRUE(each->GetListwiseDeletion());
    EXPECT_EQ(each->FindVariable("gone"), -1);
    Texts names;
    std::string weight;
    each->GetVarNames(names, weight);
    EXPECT_EQ(weight, "w");
  }
}

TEST(MCVarList, ShowsItsVariables) {
  MCVarList list;
  list.AddContVar("x", "", MC_ROLE_INPUT);
  list.SetWeightVar("w", "", MC_ROUND_AS_IS);
  EXPECT_EQ(mctest::DisplayOf(list),
            "\nBegin display of MCVarList object."
            "\nTotal variables = 2"
            "\nNumber of Continuous Variables = 1"
            "\nNumber of Categorical Variables = 0"
            "\nVariable = 0" +
                mctest::DisplayOf(*list.GetVarAt(0)) + "\nVariable = 1" +
                mctest::DisplayOf(*list.GetVarAt(1)) + "\nEnd of display for MCVarList object.");
}

// A list of one continuous variable as a file might tell it.
std::string FileOf(const std::string& counters) {
  std::string text = "\n<Obj name=\"MCVarList\">\n\t<Int value=\"1\"/>\n\t<Int value=\"1\"/>";
  text += mctest::Saved(MCContVar("x", "", MC_ROLE_INPUT), 1);
  return text + counters + "</Obj>\n";
}

TEST(MCVarList, ReadsPlacesAndCountersAsTheyStand) {
  const std::string text = FileOf(
      "<Int value=\"-2147483648\"/>\n<Int value=\"2147483647\"/>\n"
      "<Int value=\"-2147483648\"/>\n<Int value=\"2147483647\"/>\n");
  MCVarList list;
  mctest::ReadSaved(list, text);
  EXPECT_EQ(CountersOf(list), "-2147483648 2147483647 -2147483648 2147483647");
  EXPECT_FALSE(list.ChangeTargetEncoder(nullptr));
  MCVarList copy(list);
  EXPECT_EQ(copy.AddCatVar("c", "", Texts{"a"}, MC_ROLE_INPUT), 1);
  EXPECT_EQ(copy.GetNumCatVar(), INT_MAX);
  EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ(CountersOf(list), "-2147483648 2147483647 -2147483648 2147483646");
  EXPECT_FALSE(list.SetVariableRole(0, MC_ROLE_TARGET));
}

TEST(MCVarList, KeepsListwiseDeletionWhenItIsRead) {
  MCVarList list;
  list.SetListwiseDeletion(true);
  mctest::ReadWhatIsSaved(list, MakeList());
  EXPECT_TRUE(list.GetListwiseDeletion());
  EXPECT_EQ(NamesOf(list), (Texts{"s", "t", "n", "r", "w"}));
}

TEST(MCVarList, ReadsATargetThatIsContinuousAsAnInputInThePlaceOfTheTarget) {
  MCVarList list;
  mctest::ReadWhatIsSaved(list, MakeList());
  EXPECT_EQ(list.GetVariableRole(1), MC_ROLE_INPUT);
  EXPECT_EQ(list.GetVariableRole(3), MC_ROLE_TARGET_RESPONSE);
  EXPECT_EQ(CountersOf(list), "1 3 1 3");
}

TEST(MCVarList, FindsTheLastWeightOfAFileThatHasTwo) {
  MCVarList list;
  list.SetWeightVar("w", "", MC_ROUND_AS_IS);
  std::string text = mctest::Saved(list);
  const std::size_t at = text.find("\n\t<Int value=\"4\"/>");
  const std::size_t end = text.find("\n\t</Obj>") + 8;
  text.insert(end, text.substr(at, end - at));
  text.replace(text.find("<Int value=\"1\"/>"), 16, "<Int value=\"2\"/>");
  MCVarList two;
  mctest::ReadSaved(two, text);
  ASSERT_EQ(two.Size(), 2);
  EXPECT_EQ(two.SetWeightVar("new", "", MC_ROUND_AS_IS), 1);
  EXPECT_EQ(NamesOf(two), (Texts{"w", "new"}));
}

TEST(MCVarList, CannotReadVariablesOfNoLevelOrAnother) {
  for (const int level : {-1, 0, 4, 5}) {
    MCVarList list;
    list.AddCatVar("odd", "", 2, static_cast<MeasureLevel>(level), MC_ROLE_INPUT);
    const std::string inner = level == 4 ? "Failure reading MCWeightVar!\n" : "";
    MCVarList read = MakeList();
    EXPECT_EQ(mctest::FailureOfReading(read, mctest::Saved(list)),
              inner + "Failure reading MCVarList!\n");
    EXPECT_EQ(read.Size(), 0);
    EXPECT_EQ(CountersOf(read), "0 0 -1 -1");
    EXPECT_EQ(read.AddContVar("s", "", MC_ROLE_INPUT), 0);
  }
}

}  // namespace
