// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcregrparameter.h"

#include "regression/design/mcregrparameterstats.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace {
using Ints = std::vector<int>;

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Factor 7 at category 1, level 0; covariate 9 squared; effect 2, target category 4.
MCRegrParameter MakeParameter() {
  MCRegrParameter parameter;
  parameter.AddFactor(7, 1, 0);
  parameter.AddCovariate(9, 2);
  parameter.SetEffectIndex(2);
  parameter.SetTargetCategory(4);
  return parameter;
}

TEST(MCRegrParameter, StartsAsTheInterceptOfNoEffect) {
  const MCRegrParameter parameter;
  EXPECT_TRUE(parameter.IsIntercept());
  EXPECT_EQ(parameter.GetNFactors(), 0);
  EXPECT_EQ(parameter.GetNCovariates(), 0);
  EXPECT_EQ(parameter.GetNCovariateMult(), 0);
  EXPECT_EQ(parameter.GetEffectIndex(), -1);
  EXPECT_EQ(parameter.GetTargetCategory(), -1);
  EXPECT_EQ(parameter.GetFactors(), Ints());
  EXPECT_EQ(parameter.GetCategories(), Ints());
  EXPECT_EQ(parameter.GetFactorNestLevels(), Ints());
  EXPECT_EQ(parameter.GetCovariates(), Ints());
  EXPECT_EQ(parameter.GetCovariateMultiplicities(), Ints());
}

TEST(MCRegrParameterAddFactor, SortsByLevelAndKeepsTheOrderWithinALevel) {
  const struct {
    const char* text;
    Ints levels;  // of factors 0, 1, 2, ... in the order added
    Ints factors;
    Ints sortedLevels;
  } kCases[] = {
      {"1, 0, 1", {1, 0, 1}, {1, 0, 2}, {0, 1, 1}},
      {"ascending", {0, 1, 2}, {0, 1, 2}, {0, 1, 2}},
      {"descending", {2, 1, 0}, {2, 1, 0}, {0, 1, 2}},
      {"equal", {5, 5, 5}, {0, 1, 2}, {5, 5, 5}},
      {"between", {0, 2, 1, 0}, {0, 3, 2, 1}, {0, 0, 1, 2}},
  };
  for (const auto& row : kCases) {
    MCRegrParameter parameter;
    Ints categories;
    for (std::size_t i = 0; i < row.levels.size(); ++i) {
      const int factor = static_cast<int>(i);
      EXPECT_TRUE(parameter.AddFactor(factor, 10 + factor, row.levels[i])) << row.text;
    }
    for (const int factor : row.factors) categories.push_back(10 + factor);
    EXPECT_EQ(parameter.GetFactors(), row.factors) << row.text;
    EXPECT_EQ(parameter.GetCategories(), categories) << row.text;
    EXPECT_EQ(parameter.GetFactorNestLevels(), row.sortedLevels) << row.text;
    EXPECT_EQ(parameter.GetNFactors(), static_cast<int>(row.levels.size())) << row.text;
  }
}

TEST(MCRegrParameterAddFactor, RefusesNegativeAndPresentFactors) {
  MCRegrParameter parameter = MakeParameter();
  EXPECT_FALSE(parameter.AddFactor(-1, 0, 0));
  EXPECT_FALSE(parameter.AddFactor(3, 0, -1));
  EXPECT_FALSE(parameter.AddFactor(7, 1, 0));
  EXPECT_FALSE(parameter.AddFactor(7, 5, 1)) << "even with another category and level";
  EXPECT_TRUE(parameter == MakeParameter());
  EXPECT_TRUE(parameter.AddFactor(0, -3, 0)) << "any category is taken";
  EXPECT_EQ(parameter.ContainsFactor(0, 99), -3);
}

TEST(MCRegrParameterAddFactor, LeavesTheParameterAloneWhereMemoryRunsOut) {
  for (std::size_t k = 1; k <= 3; ++k) {
    MCRegrParameter parameter = MakeParameter();
    {
      const mctest::FailAllocation failure(k);
      EXPECT_THROW(parameter.AddFactor(3, 0, 0), std::bad_alloc) << k;
    }
    EXPECT_TRUE(parameter == MakeParameter()) << k;
    EXPECT_TRUE(parameter.AddFactor(3, 0, 0)) << k;
  }
}

TEST(MCRegrParameterAddCovariate, AddsUpThePowers) {
  MCRegrParameter parameter;
  EXPECT_EQ(parameter.AddCovariate(5, 1), 1);
  EXPECT_EQ(parameter.AddCovariate(5, 2), 3);
  EXPECT_EQ(parameter.AddCovariate(0, 4), 4);
  EXPECT_EQ(parameter.GetCovariates(), (Ints{5, 0}));
  EXPECT_EQ(parameter.GetCovariateMultiplicities(), (Ints{3, 4}));
  EXPECT_EQ(parameter.GetNCovariates(), 2);
  EXPECT_EQ(parameter.GetNCovariateMult(), 7);
  EXPECT_EQ(parameter.GetCovariateMult(5), 3);
  EXPECT_EQ(parameter.GetCovariateMult(6), 0);
  EXPECT_FALSE(parameter.IsIntercept());
}

TEST(MCRegrParameterAddCovariate, RefusesNegativeCovariatesAndPowersBelowOne) {
  MCRegrParameter parameter = MakeParameter();
  EXPECT_EQ(parameter.AddCovariate(-1, 1), 0);
  EXPECT_EQ(parameter.AddCovariate(5, 0), 0);
  EXPECT_EQ(parameter.AddCovariate(9, -1), 0);
  EXPECT_EQ(parameter.AddCovariate(9, kMinInt), 0);
  EXPECT_TRUE(parameter == MakeParameter());
}

TEST(MCRegrParameterAddCovariate, RefusesAPowerThatNoIntHolds) {
  MCRegrParameter parameter = MakeParameter();
  EXPECT_EQ(parameter.AddCovariate(9, kMaxInt - 1), 0);
  EXPECT_TRUE(parameter == MakeParameter());
  EXPECT_EQ(parameter.AddCovariate(9, kMaxInt - 2), kMaxInt);
  EXPECT_EQ(parameter.AddCovariate(5, kMaxInt), kMaxInt);
  EXPECT_EQ(parameter.GetNCovariateMult(), kMaxInt) << "the sum stops there";
}

TEST(MCRegrParameterAddCovariate, LeavesTheParameterAloneWhereMemoryRunsOut) {
  for (std::size_t k = 1; k <= 2; ++k) {
    MCRegrParameter parameter = MakeParameter();
    {
      const mctest::FailAllocation failure(k);
      EXPECT_THROW(parameter.AddCovariate(5, 1), std::bad_alloc) << k;
    }
    EXPECT_TRUE(parameter == MakeParameter()) << k;
  }
}

TEST(MCRegrParameter, ContainsFactorTellsAbsenceFromAnyCategory) {
  const MCRegrParameter parameter = MakeParameter();
  EXPECT_EQ(parameter.ContainsFactor(7, -99), 1);
  EXPECT_EQ(parameter.ContainsFactor(8, -99), -99);
  EXPECT_EQ(parameter.ContainsFactor(9, 1), 1) << "a covariate";
  EXPECT_EQ(MCRegrParameter().ContainsFactor(7, 42), 42);
}

TEST(MCRegrParameter, CategoriesMayBeWritten) {
  MCRegrParameter parameter = MakeParameter();
  parameter.GetCategories()[0] = 6;
  EXPECT_EQ(parameter.ContainsFactor(7, -1), 6);
}

TEST(MCRegrParameter, ANegativeEffectIndexIsIgnoredAndAnyTargetCategoryIsTaken) {
  MCRegrParameter parameter = MakeParameter();
  parameter.SetEffectIndex(-1);
  parameter.SetEffectIndex(kMinInt);
  EXPECT_EQ(parameter.GetEffectIndex(), 2);
  parameter.SetEffectIndex(0);
  EXPECT_EQ(parameter.GetEffectIndex(), 0);
  parameter.SetTargetCategory(-1);
  EXPECT_EQ(parameter.GetTargetCategory(), -1);
}

TEST(MCRegrParameter, IsNoInterceptWithAFactorOrACovariate) {
  MCRegrParameter factor;
  factor.AddFactor(0, 0, 0);
  EXPECT_FALSE(factor.IsIntercept());
  MCRegrParameter covariate;
  covariate.AddCovariate(0, 1);
  EXPECT_FALSE(covariate.IsIntercept());
}

TEST(MCRegrParameterEquality, EachMemberTakesPart) {
  const MCRegrParameter parameter = MakeParameter();
  EXPECT_TRUE(parameter == MakeParameter());
  const struct {
    const char* text;
    void (*change)(MCRegrParameter&);
  } kChanges[] = {
      {"effect", [](MCRegrParameter& p) { p.SetEffectIndex(3); }},
      {"factors", [](MCRegrParameter& p) { p.AddFactor(8, 1, 0); }},
      {"categories", [](MCRegrParameter& p) { p.GetCategories()[0] = 2; }},
      {"covariates", [](MCRegrParameter& p) { p.AddCovariate(8, 1); }},
      {"powers", [](MCRegrParameter& p) { p.AddCovariate(9, 1); }},
      {"target", [](MCRegrParameter& p) { p.SetTargetCategory(5); }},
      {"levels",
       [](MCRegrParameter& p) {
         p = MCRegrParameter();
         p.AddFactor(7, 1, 1);
         p.AddCovariate(9, 2);
         p.SetEffectIndex(2);
         p.SetTargetCategory(4);
       }},
  };
  for (const auto& row : kChanges) {
    MCRegrParameter other = MakeParameter();
    row.change(other);
    EXPECT_FALSE(parameter == other) << row.text;
    EXPECT_FALSE(other == parameter) << row.text;
  }
}

// Factors 10, 20, 30 and covariates 40, 50; 30 is nested in 20, which is nested in 10.
const Ints kVars = {10, 20, 30, 40, 50};

MCModelEffect MakeEffect() {
  MCModelEffect effect(3, 2, &kVars);
  effect.AddNewFactor(10, false);
  effect.AddNewFactor(20, true);
  effect.AddNewFactor(30, true);
  effect.AddCovariate(50);
  effect.AddCovariate(40);
  effect.AddCovariate(40);
  return effect;
}

TEST(MCRegrParameterSetupFromEffect, TakesTheFactorsInAscendingNestingLevel) {
  MCRegrParameter parameter;
  EXPECT_TRUE(parameter.SetupFromEffect(MakeEffect(), 3, 8));
  EXPECT_EQ(parameter.GetFactors(), (Ints{30, 20, 10}));
  EXPECT_EQ(parameter.GetFactorNestLevels(), (Ints{0, 1, 2}));
  EXPECT_EQ(parameter.GetCategories(), (Ints{8, 8, 8}));
  EXPECT_EQ(parameter.GetCovariates(), (Ints{40, 50}));
  EXPECT_EQ(parameter.GetCovariateMultiplicities(), (Ints{2, 1}));
  EXPECT_EQ(parameter.GetEffectIndex(), 3);
  EXPECT_EQ(parameter.GetTargetCategory(), -1);
}

TEST(MCRegrParameterSetupFromEffect, ReplacesFactorsAndCovariatesAndKeepsTheTarget) {
  MCRegrParameter parameter = MakeParameter();
  MCModelEffect effect(3, 2, &kVars);
  effect.AddNewFactor(20, false);
  EXPECT_TRUE(parameter.SetupFromEffect(effect, 0, 0));
  EXPECT_EQ(parameter.GetFactors(), Ints{20});
  EXPECT_EQ(parameter.GetCategories(), Ints{0});
  EXPECT_EQ(parameter.GetCovariates(), Ints());
  EXPECT_EQ(parameter.GetCovariateMultiplicities(), Ints());
  EXPECT_EQ(parameter.GetEffectIndex(), 0);
  EXPECT_EQ(parameter.GetTargetCategory(), 4);
}

TEST(MCRegrParameterSetupFromEffect, RefusesAnInterceptAndANegativeIndex) {
  MCRegrParameter parameter = MakeParameter();
  EXPECT_FALSE(parameter.SetupFromEffect(MCModelEffect(3, 2, &kVars), 0, 0));
  EXPECT_FALSE(parameter.SetupFromEffect(MCModelEffect(), 0, 0));
  EXPECT_FALSE(parameter.SetupFromEffect(MakeEffect(), -1, 0));
  EXPECT_TRUE(parameter == MakeParameter());
}

TEST(MCRegrParameterSetupFromEffect, FindsNothingWhereTheEffectHasNoList) {
  MCModelEffect effect = MakeEffect();
  effect.SetVarIndices(nullptr);
  MCRegrParameter parameter = MakeParameter();
  EXPECT_TRUE(parameter.SetupFromEffect(effect, 1, 0));
  EXPECT_TRUE(parameter.IsIntercept());
  EXPECT_EQ(parameter.GetEffectIndex(), 1);
}

TEST(MCRegrParameterSetupFromEffect, LeavesTheParameterAloneWhereMemoryRunsOut) {
  const MCModelEffect effect = MakeEffect();
  std::size_t k = 1;
  for (bool hasFired = true; hasFired; ++k) {
    MCRegrParameter parameter = MakeParameter();
    try {
      const mctest::FailAllocation failure(k);
      parameter.SetupFromEffect(effect, 3, 8);
      hasFired = failure.HasFired();
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(parameter == MakeParameter()) << k;
      continue;
    }
    EXPECT_FALSE(hasFired) << k;
    EXPECT_EQ(parameter.GetNFactors(), 3);
  }
  EXPECT_GT(k, 5U);
}

TEST(MCRegrParameter, DisplaysItsFactorsAndCovariates) {
  MCRegrParameter parameter = MakeParameter();
  parameter.AddFactor(8, 3, 1);
  EXPECT_EQ(mctest::Displayed([&] { parameter.Display(); }),
            "\nBegin MCRegrParameter object display."
            "\nThe factors: (size = 2)\n 7 8"
            "\nCategories: (size = 2)\n 1 3"
            "\nFactor nesting levels: (size = 2)\n 0 1"
            "\nCovariates: (size = 1)\n 9"
            "\nCovariate multiplicities: (size = 1)\n 2"
            "\nIndex of the effect = 2"
            "\nTarget category = 4"
            "\nEnd MCRegrParameter object display.\n");
}

TEST(MCRegrParameter, DisplaysThatThereAreNoFactorsAndCovariates) {
  EXPECT_EQ(mctest::Displayed([] { MCRegrParameter().Display(); }),
            "\nBegin MCRegrParameter object display."
            "\nNo factors are present."
            "\nNo covariates are present."
            "\nIndex of the effect = -1"
            "\nTarget category = -1"
            "\nEnd MCRegrParameter object display.\n");
}

TEST(MCRegrParameterStats, AFreshRecordHoldsTheDocumentedDefaults) {
  const MCRegrParameterStats stats;
  EXPECT_EQ(stats.fIndex, -1);
  EXPECT_EQ(stats.fEstimate, MCMV::gMissingValue);
  EXPECT_TRUE(stats.fRedundant);
  EXPECT_EQ(stats.fStat1, MCMV::gMissingValue);
  EXPECT_EQ(stats.fStat2, MCMV::gMissingValue);
  EXPECT_EQ(stats.fStat3, MCMV::gMissingValue);
  EXPECT_EQ(stats.fStat4, MCMV::gMissingValue);
  EXPECT_EQ(stats.fStat5, 0.0);
  EXPECT_EQ(stats.fStat6, MCMV::gMissingValue);
  EXPECT_EQ(stats.fDeff, MCMV::gMissingValue);
  EXPECT_EQ(stats.fEffectIndex, -1);
  EXPECT_EQ(stats.fStat7, MCMV::gMissingValue);
}

TEST(MCRegrParameterStats, FieldsStandInTheOrderThatCallersKnow) {
  const MCRegrParameterStats stats;
  const void* const fields[] = {&stats.fIndex, &stats.fEstimate,    &stats.fRedundant,
                                &stats.fStat1, &stats.fStat2,       &stats.fStat3,
                                &stats.fStat4, &stats.fStat5,       &stats.fStat6,
                                &stats.fDeff,  &stats.fEffectIndex, &stats.fStat7};
  EXPECT_EQ(fields[0], &stats);
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
}

TEST(MCRegrParameterStats, TheRootOfTheDesignEffectIsMissingUnlessItExists) {
  const struct {
    double deff, expected;
  } kCases[] = {
      {MCMV::gMissingValue, MCMV::gMissingValue},
      {-1.0, MCMV::gMissingValue},
      {-1e-300, MCMV::gMissingValue},
      {-kInfinity, MCMV::gMissingValue},
      {kNaN, MCMV::gMissingValue},
      {0.0, 0.0},
      {-0.0, 0.0},
      {2.25, 1.5},
      {kInfinity, kInfinity},
  };
  for (const auto& row : kCases) {
    MCRegrParameterStats stats;
    stats.fDeff = row.deff;
    EXPECT_EQ(stats.GetSqrtDeff(), row.expected) << row.deff;
  }
}

}  // namespace
