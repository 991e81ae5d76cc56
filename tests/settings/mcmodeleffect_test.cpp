// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mcmodeleffect.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>
#include <vector>

namespace {
using Bits = std::vector<bool>;
using Ints = std::vector<int>;

// Factors at record positions 10, 20, 30; covariates at 40 and 50.
const Ints kVars = {10, 20, 30, 40, 50};

struct Factor {
  int var;
  bool nest;
};

MCModelEffect MakeEffect(const std::vector<Factor>& factors, const Ints& covariates = {}) {
  MCModelEffect effect(3, 2, &kVars);
  for (const Factor& factor : factors) effect.AddNewFactor(factor.var, factor.nest);
  for (const int covariate : covariates) effect.AddCovariate(covariate);
  return effect;
}

void ExpectIntercept(const MCModelEffect& effect) {
  EXPECT_TRUE(effect.IsIntercept());
  EXPECT_EQ(effect.GetNFactors(), 0);
  EXPECT_EQ(effect.GetNCovariates(), 0);
  EXPECT_EQ(effect.GetNLevels(), 0);
  EXPECT_EQ(effect.GetNCovariateMult(), 0);
  EXPECT_FALSE(effect.GetFactorsInParens());
  EXPECT_EQ(effect.GetFactors(), Ints());
  EXPECT_EQ(effect.GetFactorLevels(), Ints());
  EXPECT_EQ(effect.GetCovariates(), Ints());
  EXPECT_EQ(effect.GetCovMultiplicities(), Ints());
}

TEST(MCModelEffect, MadeByDefaultHasNoVariables) {
  MCModelEffect effect;
  ExpectIntercept(effect);
  EXPECT_EQ(effect.GetNModelFactors(), 0);
  EXPECT_EQ(effect.GetNModelCovariates(), 0);
  EXPECT_EQ(effect.GetVarIndices(), nullptr);
  EXPECT_EQ(effect.GetModelEffect(), Ints());
}

TEST(MCModelEffect, StartsAsTheInterceptOfItsModel) {
  const MCModelEffect effect(3, 2, &kVars);
  ExpectIntercept(effect);
  EXPECT_EQ(effect.GetNModelFactors(), 3);
  EXPECT_EQ(effect.GetNModelCovariates(), 2);
  EXPECT_EQ(effect.GetVarIndices(), &kVars);
  EXPECT_EQ(effect.GetModelEffect(), (Ints{-1, -1, -1, 0, 0}));
}

TEST(MCModelEffect, NegativeCountsCountAsZero) {
  EXPECT_EQ(MCModelEffect(-3, 2, &kVars).GetModelEffect(), (Ints{0, 0}));
  EXPECT_EQ(MCModelEffect(1, -2, &kVars).GetModelEffect(), Ints{-1});
  const MCModelEffect effect(-1, -1, &kVars);
  EXPECT_EQ(effect.GetNModelFactors(), 0);
  EXPECT_EQ(effect.GetNModelCovariates(), 0);
}

TEST(MCModelEffectSetup, SetsEntriesAnewAndLeavesTheEffectsOwnCountersAlone) {
  MCModelEffect effect = MakeEffect({{10, false}, {20, true}}, {40});
  effect.SetFactorsInParens();
  const Ints others = {1, 2};
  effect.Setup(1, 1, &others);
  EXPECT_EQ(effect.GetModelEffect(), (Ints{-1, 0}));
  EXPECT_EQ(effect.GetNModelFactors(), 1);
  EXPECT_EQ(effect.GetNModelCovariates(), 1);
  EXPECT_EQ(effect.GetVarIndices(), &others);
  EXPECT_EQ(effect.GetNFactors(), 2);
  EXPECT_EQ(effect.GetNCovariates(), 1);
  EXPECT_EQ(effect.GetNLevels(), 2);
  EXPECT_TRUE(effect.GetFactorsInParens());
}

TEST(MCModelEffectSetup, LeavesTheEffectAloneWhereMemoryRunsOut) {
  MCModelEffect effect = MakeEffect({{10, false}});
  const MCModelEffect before = effect;
  {
    const mctest::FailAllocation failure(1);
    EXPECT_THROW(effect.Setup(9, 9, nullptr), std::bad_alloc);
  }
  EXPECT_TRUE(effect == before);
}

TEST(MCModelEffectReset, GoesBackToTheInterceptOfTheSameModel) {
  MCModelEffect effect = MakeEffect({{10, false}, {20, true}}, {40, 40});
  effect.SetFactorsInParens();
  effect.Reset();
  EXPECT_TRUE(effect == MCModelEffect(3, 2, &kVars));
  ExpectIntercept(effect);
  MCModelEffect empty;
  empty.Reset();
  ExpectIntercept(empty);
}

TEST(MCModelEffectAddNewFactor, GivesLevelsByTheOrderOfNesting) {
  const struct {
    const char* text;
    std::vector<Factor> factors;
    Ints entries;  // of the factors
    int nLevels;
  } kCases[] = {
      {"one", {{20, false}}, {-1, 0, -1}, 1},
      {"the first one nested makes one level", {{20, true}}, {-1, 0, -1}, 1},
      {"crossed", {{10, false}, {20, false}}, {0, 0, -1}, 1},
      {"second nested", {{10, false}, {20, true}}, {1, 0, -1}, 2},
      {"all nested", {{10, true}, {20, true}, {30, true}}, {2, 1, 0}, 3},
      {"two crossed, third nested", {{10, false}, {20, false}, {30, true}}, {1, 1, 0}, 2},
      {"nested, then crossed", {{30, false}, {10, true}, {20, false}}, {0, 0, 1}, 2},
  };
  for (const auto& row : kCases) {
    const MCModelEffect effect = MakeEffect(row.factors);
    EXPECT_EQ(Ints(effect.GetModelEffect().begin(), effect.GetModelEffect().begin() + 3),
              row.entries)
        << row.text;
    EXPECT_EQ(effect.GetNLevels(), row.nLevels) << row.text;
    EXPECT_EQ(effect.GetNFactors(), static_cast<int>(row.factors.size())) << row.text;
    EXPECT_FALSE(effect.IsIntercept()) << row.text;
  }
}

TEST(MCModelEffectAddNewFactor, RefusesUnknownAndPresentFactors) {
  MCModelEffect effect = MakeEffect({{10, false}, {20, true}});
  const MCModelEffect before = effect;
  for (const bool nest : {false, true}) {
    EXPECT_FALSE(effect.AddNewFactor(10, nest));
    EXPECT_FALSE(effect.AddNewFactor(20, nest));
    EXPECT_FALSE(effect.AddNewFactor(99, nest));
    EXPECT_FALSE(effect.AddNewFactor(40, nest)) << "a covariate";
    EXPECT_FALSE(effect.AddNewFactor(-1, nest));
    EXPECT_TRUE(effect == before);
  }
}

TEST(MCModelEffectAddNewFactor, AnswersTrueWhenItAdds) {
  MCModelEffect effect(3, 2, &kVars);
  EXPECT_TRUE(effect.AddNewFactor(10, false));
  EXPECT_TRUE(effect.AddNewFactor(30, true));
}

TEST(MCModelEffectAddCovariate, RaisesThePowerAndCountsTheCovariateOnce) {
  MCModelEffect effect(3, 2, &kVars);
  EXPECT_EQ(effect.AddCovariate(40), 1);
  EXPECT_EQ(effect.AddCovariate(40), 2);
  EXPECT_EQ(effect.GetNCovariates(), 1);
  EXPECT_EQ(effect.GetNCovariateMult(), 2);
  EXPECT_EQ(effect.AddCovariate(50), 1);
  EXPECT_EQ(effect.GetNCovariates(), 2);
  EXPECT_EQ(effect.GetNCovariateMult(), 3);
  EXPECT_EQ(effect.GetModelEffect(), (Ints{-1, -1, -1, 2, 1}));
  EXPECT_FALSE(effect.IsIntercept());
}

TEST(MCModelEffectAddCovariate, RefusesWhatIsNoCovariateOfTheModel) {
  MCModelEffect effect = MakeEffect({}, {40});
  const MCModelEffect before = effect;
  for (const int var : {10, 99, -1}) EXPECT_EQ(effect.AddCovariate(var), -1) << var;
  EXPECT_TRUE(effect == before);
}

TEST(MCModelEffect, LookupsTellLevelsAndPowers) {
  const MCModelEffect effect = MakeEffect({{10, false}, {20, true}}, {50, 50, 50});
  EXPECT_EQ(effect.ContainsFactor(10), 1);
  EXPECT_EQ(effect.ContainsFactor(20), 0);
  EXPECT_EQ(effect.ContainsFactor(30), -1);
  EXPECT_EQ(effect.ContainsFactor(40), -1);
  EXPECT_EQ(effect.ContainsFactor(99), -1);
  EXPECT_EQ(effect.GetCovariateMult(40), 0);
  EXPECT_EQ(effect.GetCovariateMult(50), 3);
  EXPECT_EQ(effect.GetCovariateMult(10), -1);
  EXPECT_EQ(effect.GetCovariateMult(99), -1);
}

TEST(MCModelEffect, ListsStandInTheOrderOfTheModel) {
  const MCModelEffect effect = MakeEffect({{30, false}, {10, true}}, {50, 40, 50});
  EXPECT_EQ(effect.GetFactors(), (Ints{10, 30}));
  EXPECT_EQ(effect.GetFactorLevels(), (Ints{0, 1}));
  EXPECT_EQ(effect.GetCovariates(), (Ints{40, 50}));
  EXPECT_EQ(effect.GetCovMultiplicities(), (Ints{1, 2}));
}

TEST(MCModelEffect, WithoutAListFindsNothing) {
  MCModelEffect effect(3, 2, nullptr);
  EXPECT_FALSE(effect.AddNewFactor(10, false));
  EXPECT_EQ(effect.AddCovariate(40), -1);
  EXPECT_EQ(effect.ContainsFactor(10), -1);
  EXPECT_EQ(effect.GetCovariateMult(40), -1);
  ExpectIntercept(effect);

  MCModelEffect used = MakeEffect({{10, false}}, {40});
  used.SetVarIndices(nullptr);
  EXPECT_EQ(used.GetFactors(), Ints());
  EXPECT_EQ(used.GetFactorLevels(), Ints());
  EXPECT_EQ(used.GetCovariates(), Ints());
  EXPECT_EQ(used.GetCovMultiplicities(), Ints());
  EXPECT_EQ(used.GetNCovariateMult(), 1);
}

TEST(MCModelEffect, PositionsPastTheEndOfAShorterListAreSkipped) {
  MCModelEffect effect = MakeEffect({{10, false}, {30, false}}, {40, 50});
  const Ints two = {10, 20};
  effect.SetVarIndices(&two);
  EXPECT_EQ(effect.GetVarIndices(), &two);
  EXPECT_EQ(effect.GetFactors(), Ints{10});
  EXPECT_EQ(effect.GetFactorLevels(), Ints{0});
  EXPECT_EQ(effect.GetCovariates(), Ints());
  EXPECT_EQ(effect.GetCovMultiplicities(), Ints());
  EXPECT_EQ(effect.GetCovariateMult(40), -1);
  EXPECT_EQ(effect.ContainsFactor(30), -1);
  EXPECT_FALSE(effect.AddNewFactor(30, false));

  const Ints four = {10, 20, 30, 40};
  effect.SetVarIndices(&four);
  EXPECT_EQ(effect.GetFactors(), (Ints{10, 30}));
  EXPECT_EQ(effect.GetCovariates(), Ints{40});
  EXPECT_EQ(effect.GetCovMultiplicities(), Ints{1});
}

TEST(MCModelEffect, TheFlagOfParenthesesCanOnlyBeSet) {
  MCModelEffect effect(3, 2, &kVars);
  effect.SetFactorsInParens();
  EXPECT_TRUE(effect.GetFactorsInParens());
  effect.SetFactorsInParens();
  EXPECT_TRUE(effect.GetFactorsInParens());
}

TEST(MCModelEffect, ACopySharesTheListAndNothingElse) {
  MCModelEffect effect = MakeEffect({{10, false}});
  const MCModelEffect copy = effect;
  effect.AddCovariate(40);
  EXPECT_EQ(copy.GetVarIndices(), &kVars);
  EXPECT_EQ(copy.GetNCovariates(), 0);
  EXPECT_EQ(copy.GetModelEffect(), (Ints{0, -1, -1, 0, 0}));
}

TEST(MCModelEffect, AMoveLeavesTheEffectOfBeforeBehind) {
  MCModelEffect effect = MakeEffect({{10, false}, {20, true}}, {40, 40});
  const MCModelEffect before = effect;
  const MCModelEffect moved = std::move(effect);
  EXPECT_TRUE(moved == before);
  EXPECT_TRUE(effect == before);  // NOLINT(bugprone-use-after-move)
  MCModelEffect assigned;
  assigned = std::move(effect);
  EXPECT_TRUE(assigned == before);
  EXPECT_TRUE(effect == before);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(effect.AddCovariate(50), 1);
  effect.Reset();
  ExpectIntercept(effect);
}

TEST(MCModelEffectEquality, EachMemberTakesPart) {
  const MCModelEffect effect = MakeEffect({{10, false}}, {40});
  EXPECT_TRUE(effect == MakeEffect({{10, false}}, {40}));
  EXPECT_FALSE(effect == MakeEffect({{20, false}}, {40})) << "entries";
  EXPECT_FALSE(effect == MakeEffect({{10, false}}, {40, 40})) << "powers";
  EXPECT_FALSE(effect == MakeEffect({{10, false}, {20, false}}, {40})) << "factors";
  EXPECT_FALSE(effect == MakeEffect({{10, false}}, {40, 50})) << "covariates";

  MCModelEffect parens = effect;
  parens.SetFactorsInParens();
  EXPECT_FALSE(effect == parens);

  const Ints equalList = kVars;
  MCModelEffect other = effect;
  other.SetVarIndices(&equalList);
  EXPECT_FALSE(effect == other) << "an equal list is not the same list";

  EXPECT_FALSE(MCModelEffect(3, 2, &kVars) == MCModelEffect(3, 1, &kVars));
  EXPECT_FALSE(MCModelEffect(3, 2, &kVars) == MCModelEffect(2, 2, &kVars));
}

// Setup() leaves the counters, so effects with the same entries can differ in each of them.
MCModelEffect SetUpAgain(MCModelEffect effect) {
  effect.Setup(3, 2, &kVars);
  return effect;
}

TEST(MCModelEffectEquality, CountersTakePartApartFromTheEntries) {
  const MCModelEffect fresh(3, 2, &kVars);
  const MCModelEffect crossed = SetUpAgain(MakeEffect({{10, false}, {20, false}}));
  const MCModelEffect nested = SetUpAgain(MakeEffect({{10, false}, {20, true}}));
  const MCModelEffect oneFactor = SetUpAgain(MakeEffect({{10, false}}));
  const MCModelEffect covariate = SetUpAgain(MakeEffect({}, {40}));
  EXPECT_FALSE(crossed == nested) << "levels";
  EXPECT_FALSE(crossed == oneFactor) << "factors";
  EXPECT_FALSE(covariate == fresh) << "covariates";
  EXPECT_TRUE(SetUpAgain(fresh) == fresh);
}

TEST(MCModelEffectIsContainedIn, ComparesTheCountersToo) {
  const MCModelEffect covariate = SetUpAgain(MakeEffect({}, {40}));
  EXPECT_FALSE(covariate.IsContainedIn(MakeEffect({{10, false}})));
}

TEST(MCModelEffectIsContainedIn, NeedsMoreFactorsAndTheSameCovariates) {
  const MCModelEffect a = MakeEffect({{10, false}});
  const MCModelEffect b = MakeEffect({{20, false}});
  const MCModelEffect ab = MakeEffect({{10, false}, {20, false}});
  const MCModelEffect bInA = MakeEffect({{10, false}, {20, true}});
  const MCModelEffect bc = MakeEffect({{20, false}, {30, false}});
  const MCModelEffect ax = MakeEffect({{10, false}}, {40});
  const MCModelEffect abx = MakeEffect({{10, false}, {20, false}}, {40});
  const MCModelEffect abx2 = MakeEffect({{10, false}, {20, false}}, {40, 40});
  const MCModelEffect aby = MakeEffect({{10, false}, {20, false}}, {50});
  const MCModelEffect intercept(3, 2, &kVars);

  EXPECT_TRUE(a.IsContainedIn(ab));
  EXPECT_TRUE(b.IsContainedIn(ab));
  EXPECT_TRUE(a.IsContainedIn(bInA)) << "whatever the level";
  EXPECT_TRUE(ax.IsContainedIn(abx));
  EXPECT_TRUE(intercept.IsContainedIn(a));
  EXPECT_FALSE(a.IsContainedIn(a));
  EXPECT_FALSE(ab.IsContainedIn(a));
  EXPECT_FALSE(ab.IsContainedIn(bInA)) << "the same number of factors";
  EXPECT_FALSE(a.IsContainedIn(bc)) << "another factor";
  EXPECT_FALSE(a.IsContainedIn(abx)) << "fewer covariates";
  EXPECT_FALSE(ax.IsContainedIn(ab)) << "more covariates";
  EXPECT_FALSE(ax.IsContainedIn(abx2)) << "another power";
  EXPECT_FALSE(ax.IsContainedIn(aby)) << "another covariate";
}

TEST(MCModelEffectIsContainedIn, NeedsTheSameModel) {
  const MCModelEffect a = MakeEffect({{10, false}});
  MCModelEffect ab = MakeEffect({{10, false}, {20, false}});
  const Ints equalList = kVars;
  ab.SetVarIndices(&equalList);
  EXPECT_FALSE(a.IsContainedIn(ab));
  ab.SetVarIndices(&kVars);
  EXPECT_TRUE(a.IsContainedIn(ab));

  MCModelEffect fewerFactors(2, 2, &kVars);
  fewerFactors.AddNewFactor(10, false);
  fewerFactors.AddNewFactor(20, false);
  EXPECT_FALSE(a.IsContainedIn(fewerFactors));
  MCModelEffect fewerCovariates(3, 1, &kVars);
  fewerCovariates.AddNewFactor(10, false);
  fewerCovariates.AddNewFactor(20, false);
  EXPECT_FALSE(a.IsContainedIn(fewerCovariates));
}

TEST(MCModelEffectApplyMask, DropsVariablesAndTellsWhetherTheyWereUnused) {
  const struct {
    const char* text;
    Bits mask;
    bool expected;
    Ints entries;
    int nModelFactors;
    int nModelCovariates;
  } kCases[] = {
      {"all kept", {true, true, true, true, true}, true, {0, -1, -1, 0, 2}, 3, 2},
      {"unused factor", {true, false, true, true, true}, true, {0, -1, 0, 2}, 2, 2},
      {"used factor", {false, true, true, true, true}, false, {-1, -1, 0, 2}, 2, 2},
      {"unused covariate", {true, true, true, false, true}, true, {0, -1, -1, 2}, 3, 1},
      {"used covariate", {true, true, true, true, false}, false, {0, -1, -1, 0}, 3, 1},
      {"all", {false, false, false, false, false}, false, {}, 0, 0},
      {"the answer doesn't recover", {true, false, false, false, false}, false, {0}, 1, 0},
      {"an empty mask keeps all", {}, true, {0, -1, -1, 0, 2}, 3, 2},
      {"a short mask keeps the rest", {true, false}, true, {0, -1, 0, 2}, 2, 2},
      {"a long mask", {true, true, true, true, true, false}, true, {0, -1, -1, 0, 2}, 3, 2},
  };
  for (const auto& row : kCases) {
    MCModelEffect effect = MakeEffect({{10, false}}, {50, 50});
    EXPECT_EQ(effect.ApplyMask(row.mask), row.expected) << row.text;
    EXPECT_EQ(effect.GetModelEffect(), row.entries) << row.text;
    EXPECT_EQ(effect.GetNModelFactors(), row.nModelFactors) << row.text;
    EXPECT_EQ(effect.GetNModelCovariates(), row.nModelCovariates) << row.text;
    EXPECT_EQ(effect.GetNFactors(), 1) << row.text;
    EXPECT_EQ(effect.GetNCovariates(), 1) << row.text;
    EXPECT_EQ(effect.GetVarIndices(), &kVars) << row.text;
  }
}

TEST(MCModelEffectApplyMask, AnEffectWithoutEntriesAnswersTrue) {
  MCModelEffect effect;
  EXPECT_TRUE(effect.ApplyMask({false, true}));
}

TEST(MCModelEffectFindInVector, SearchesTheEntriesFromStart) {
  const MCModelEffect effect;
  const Ints v = {7, 8, 7, 9};
  constexpr int kMaxInt = 2147483647;
  const struct {
    int start, count, value, expected;
  } kCases[] = {
      {0, 4, 7, 0},
      {1, 3, 7, 2},
      {0, 2, 9, -1},
      {3, 1, 9, 3},
      {3, 10, 9, 3},
      {3, kMaxInt, 9, 3},
      {kMaxInt, kMaxInt, 9, -1},
      {4, 1, 7, -1},
      {9, 1, 7, -1},
      {-1, 4, 7, -1},
      {0, -1, 7, -1},
      {0, 0, 7, -1},
      {0, 4, 5, -1},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(effect.FindInVector(v, row.start, row.count, row.value), row.expected)
        << row.start << ' ' << row.count << ' ' << row.value;
  }
  EXPECT_EQ(effect.FindInVector({}, 0, 1, 7), -1);
}

TEST(MCModelEffectCheckVariableUse, MarksEachVariableThatAnyEffectUses) {
  EXPECT_EQ(MCModelEffect::CheckVariableUse(
                {MakeEffect({}), MakeEffect({{10, false}}), MakeEffect({{30, false}}, {50, 50})}),
            (Bits{true, false, true, false, true}));
  EXPECT_EQ(MCModelEffect::CheckVariableUse({MakeEffect({})}), Bits(5, false));
}

TEST(MCModelEffectCheckVariableUse, WithoutEffectsIsEmpty) {
  EXPECT_EQ(MCModelEffect::CheckVariableUse({}), Bits());
}

TEST(MCModelEffectCheckVariableUse, IgnoresEntriesBeyondTheFirstEffectsModel) {
  MCModelEffect shorter(2, 0, &kVars);
  shorter.AddNewFactor(20, false);
  const MCModelEffect longer = MakeEffect({{10, false}}, {50});
  EXPECT_EQ(MCModelEffect::CheckVariableUse({shorter, longer}), (Bits{true, true}));
  EXPECT_EQ(MCModelEffect::CheckVariableUse({longer, shorter}),
            (Bits{true, true, false, false, true}));
}

struct Used {
  Ints factors;
  Ints covariates;
};

Used GetUsed(const std::vector<MCModelEffect>& effects) {
  Used used{{-7}, {-8}};
  MCModelEffect::GetUsedVariables(effects, used.factors, used.covariates);
  return used;
}

TEST(MCModelEffectGetUsedVariables, LeavesTheOutputsAloneWithoutEffects) {
  const Used used = GetUsed({});
  EXPECT_EQ(used.factors, Ints{-7});
  EXPECT_EQ(used.covariates, Ints{-8});
}

TEST(MCModelEffectGetUsedVariables, KeepsTheDuplicatesThatCallersExpect) {
  const Used used = GetUsed({
      MakeEffect({{10, false}}),               // 10
      MakeEffect({{20, false}}),               // 10 20
      MakeEffect({{10, false}, {20, false}}),  // 10 is known; 20 is last: 10 20 20
      MakeEffect({{30, false}}),               // 10 20 20 30
      MakeEffect({}, {40}),                    // covariates aren't looked up among covariates
      MakeEffect({}, {40, 40}),
      MakeEffect({{10, false}}, {40, 50}),
  });
  EXPECT_EQ(used.factors, (Ints{10, 20, 20, 30}));
  EXPECT_EQ(used.covariates, (Ints{40, 40, 40, 50}));
}

TEST(MCModelEffectGetUsedVariables, OneFactorInManyEffectsStandsTwice) {
  const MCModelEffect a = MakeEffect({{10, false}});
  EXPECT_EQ(GetUsed({a}).factors, Ints{10});
  EXPECT_EQ(GetUsed({a, a}).factors, (Ints{10, 10}));
  EXPECT_EQ(GetUsed({a, a, a}).factors, (Ints{10, 10}));
}

TEST(MCModelEffectGetUsedVariables, CovariatesAreLookedUpAmongTheFactors) {
  const Ints vars = {1, 2, 1, 2};  // covariates at the positions of the factors
  MCModelEffect effect(2, 2, &vars);
  effect.AddNewFactor(1, false);
  effect.AddNewFactor(2, false);
  effect.AddCovariate(1);
  effect.AddCovariate(2);
  const Used used = GetUsed({effect});
  EXPECT_EQ(used.factors, (Ints{1, 2}));
  EXPECT_EQ(used.covariates, Ints{2}) << "1 stands among the factors, 2 is their last";
}

TEST(MCModelEffectGetUsedVariables, TakesListAndCountsFromTheFirstEffect) {
  MCModelEffect first(1, 1, &kVars);
  first.AddNewFactor(10, false);
  const Used used = GetUsed({first, MakeEffect({{20, false}}, {50})});
  EXPECT_EQ(used.factors, Ints{10});
  EXPECT_EQ(used.covariates, Ints()) << "level 0 of factor 20 is power 0 in the first model";

  MCModelEffect shorter(1, 0, &kVars);
  shorter.AddNewFactor(10, false);
  EXPECT_EQ(GetUsed({MakeEffect({{20, false}}), shorter}).factors, (Ints{20, 10}));
}

TEST(MCModelEffectGetUsedVariables, WithoutAListFindsNothing) {
  MCModelEffect effect = MakeEffect({{10, false}}, {40});
  effect.SetVarIndices(nullptr);
  EXPECT_EQ(GetUsed({effect}).factors, Ints());
  EXPECT_EQ(GetUsed({effect}).covariates, Ints());
  const Ints two = {10, 20};
  effect.SetVarIndices(&two);
  EXPECT_EQ(GetUsed({effect}).factors, Ints{10});
  EXPECT_EQ(GetUsed({effect}).covariates, Ints());
}

TEST(MCModelEffect, DisplaysItsCountersAndEntries) {
  MCModelEffect effect = MakeEffect({{10, false}, {20, true}}, {50, 50});
  effect.SetFactorsInParens();
  EXPECT_EQ(mctest::Displayed([&] { effect.Display(); }),
            "\nBegin MCModelEffect object display."
            "\nFactors in model = 3"
            "\nFactors in effect = 2"
            "\nNesting levels = 2"
            "\nCovariates in model = 2"
            "\nFactor after Covariates in ()? = true"
            "\nCovariates in effect = 1"
            "\nThe main vector (size = 5)\n 1 0 -1 0 2"
            "\nEnd MCModelEffect object display.");
}

}  // namespace
