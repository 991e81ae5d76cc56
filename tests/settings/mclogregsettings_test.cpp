// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mclogregsettings.h"

#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr int kMinInt = std::numeric_limits<int>::min();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(MCLogRegSettings, FreshSettingsHoldTheDocumentedDefaults) {
  const MCLogRegSettings settings;
  EXPECT_EQ(settings.GetModelType(), MCConst::MC_MODEL_LOGISTIC);
  EXPECT_EQ(settings.GetDependentNCategs(), 2);
  EXPECT_EQ(settings.GetDependentRefCateg(), -1);
  EXPECT_EQ(settings.GetLLConCriterion(), 0.0);
  EXPECT_EQ(settings.GetParamEstConCriterion(), 1e-6);
  EXPECT_EQ(settings.GetMaxIterations(), 100);
  EXPECT_EQ(settings.GetMaxStepHalvingValue(), 5);
  EXPECT_EQ(settings.GetStartingIteration(), 20);
  EXPECT_FALSE(settings.GetLLFuncChange());
  EXPECT_FALSE(settings.GetParamEstChange());
  EXPECT_TRUE(settings.GetUsePatternTabulator());
  EXPECT_EQ(settings.GetIterationFrequency(), 1);
  EXPECT_EQ(settings.GetTolerance(), 1e-12) << "of the base";
}

TEST(MCLogRegSettings, ValidityIsThatOfTheBase) {
  MCLogRegSettings settings;
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus(301, false));
  settings.SetDependent(0);
  EXPECT_TRUE(settings.IsValidSettings().IsOK());
  settings.SetInterceptUse(false);
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus(302, false));
}

TEST(MCLogRegSettings, ActsThroughItsBase) {
  MCLogRegSettings settings;
  MCRegSettings& base = settings;
  EXPECT_EQ(base.GetModelType(), MCConst::MC_MODEL_LOGISTIC);
  EXPECT_TRUE(base.SetDependent(2));
  EXPECT_EQ(settings.GetDependent(), 2);
}

TEST(MCLogRegSettingsReferenceCategory, MustBeOneOfTheCategoriesOrAChoice) {
  const struct {
    int ref, nCategs;
    bool accepted;
  } kCases[] = {
      {-2, 2, true},       {-1, 2, true}, {0, 2, true},   {1, 2, true},   {2, 3, true},
      {-2, kMaxInt, true}, {2, 2, false}, {3, 2, false},  {-3, 2, false}, {kMinInt, 2, false},
      {kMaxInt, 2, false}, {0, 1, false}, {-1, 1, false}, {-1, 0, false}, {-1, kMinInt, false},
  };
  for (const auto& row : kCases) {
    MCLogRegSettings settings;
    settings.SetDependentRefCat(3, 5);
    EXPECT_EQ(settings.SetDependentRefCat(row.ref, row.nCategs), row.accepted)
        << row.ref << ' ' << row.nCategs;
    EXPECT_EQ(settings.GetDependentRefCateg(), row.accepted ? row.ref : 3);
    EXPECT_EQ(settings.GetDependentNCategs(), row.accepted ? row.nCategs : 5);
  }
}

TEST(MCLogRegSettings, IntegerControlsRefuseValuesBelowTheirLeast) {
  const struct {
    const char* name;
    bool (MCLogRegSettings::*set)(int);
    int (MCLogRegSettings::*get)() const;
    int least;
  } kCases[] = {
      {"iteration frequency", &MCLogRegSettings::SetIterationFrequency,
       &MCLogRegSettings::GetIterationFrequency, 1},
      {"iterations", &MCLogRegSettings::SetMaxIterations, &MCLogRegSettings::GetMaxIterations, 0},
      {"step halvings", &MCLogRegSettings::SetMaxStepHalvingValue,
       &MCLogRegSettings::GetMaxStepHalvingValue, 1},
      {"starting iteration", &MCLogRegSettings::SetStartingIteration,
       &MCLogRegSettings::GetStartingIteration, 0},
  };
  for (const auto& row : kCases) {
    MCLogRegSettings settings;
    const int before = (settings.*row.get)();
    for (const int bad : {row.least - 1, kMinInt}) {
      EXPECT_FALSE((settings.*row.set)(bad)) << row.name;
      EXPECT_EQ((settings.*row.get)(), before) << row.name;
    }
    for (const int good : {row.least, 37, kMaxInt}) {
      EXPECT_TRUE((settings.*row.set)(good)) << row.name;
      EXPECT_EQ((settings.*row.get)(), good) << row.name;
    }
  }
}

TEST(MCLogRegSettings, CriteriaRefuseNegativeValuesAndNaN) {
  const struct {
    const char* name;
    bool (MCLogRegSettings::*set)(double);
    double (MCLogRegSettings::*get)() const;
  } kCases[] = {
      {"log-likelihood", &MCLogRegSettings::SetLLConCriterion,
       &MCLogRegSettings::GetLLConCriterion},
      {"parameters", &MCLogRegSettings::SetParamEstConCriterion,
       &MCLogRegSettings::GetParamEstConCriterion},
  };
  for (const auto& row : kCases) {
    MCLogRegSettings settings;
    EXPECT_TRUE((settings.*row.set)(0.125)) << row.name;
    for (const double bad : {-1e-300, -1.0, kNaN, -kInfinity}) {
      EXPECT_FALSE((settings.*row.set)(bad)) << row.name << bad;
      EXPECT_EQ((settings.*row.get)(), 0.125) << row.name;
    }
    for (const double good : {0.0, -0.0, 1e-300, kInfinity}) {
      EXPECT_TRUE((settings.*row.set)(good)) << row.name << good;
      EXPECT_EQ((settings.*row.get)(), good) << row.name;
    }
  }
}

TEST(MCLogRegSettings, FlagsAreStored) {
  MCLogRegSettings settings;
  settings.SetLLFuncChange(true);
  EXPECT_TRUE(settings.GetLLFuncChange());
  EXPECT_FALSE(settings.GetParamEstChange());
  settings.SetParamEstChange(true);
  EXPECT_TRUE(settings.GetParamEstChange());
  settings.SetUsePatternTabulator(false);
  EXPECT_FALSE(settings.GetUsePatternTabulator());
}

TEST(MCLogRegSettingsCopy, TakesEveryMember) {
  MCLogRegSettings settings;
  settings.SetDependent(4);
  settings.SetDependentRefCat(1, 3);
  settings.SetLLConCriterion(0.5);
  settings.SetParamEstConCriterion(0.25);
  settings.SetMaxIterations(7);
  settings.SetMaxStepHalvingValue(8);
  settings.SetStartingIteration(9);
  settings.SetLLFuncChange(true);
  settings.SetParamEstChange(true);
  settings.SetUsePatternTabulator(false);
  settings.SetIterationFrequency(10);
  const MCLogRegSettings copy(settings);
  EXPECT_EQ(copy.GetDependent(), 4);
  EXPECT_EQ(copy.GetDependentRefCateg(), 1);
  EXPECT_EQ(copy.GetDependentNCategs(), 3);
  EXPECT_EQ(copy.GetLLConCriterion(), 0.5);
  EXPECT_EQ(copy.GetParamEstConCriterion(), 0.25);
  EXPECT_EQ(copy.GetMaxIterations(), 7);
  EXPECT_EQ(copy.GetMaxStepHalvingValue(), 8);
  EXPECT_EQ(copy.GetStartingIteration(), 9);
  EXPECT_TRUE(copy.GetLLFuncChange());
  EXPECT_TRUE(copy.GetParamEstChange());
  EXPECT_FALSE(copy.GetUsePatternTabulator());
  EXPECT_EQ(copy.GetIterationFrequency(), 10);
}

TEST(MCLogRegSettings, DisplaysTheBaseAndThenItsOwnMembers) {
  MCLogRegSettings settings;
  settings.SetDependent(1);
  settings.SetDependentRefCat(-2, 3);
  settings.SetLLFuncChange(true);
  EXPECT_EQ(mctest::Displayed([&] { settings.Display(); }),
            "\nMCLogRegSettings display start"
            "\nMCRegSettings display start"
            "\nfFreqWeightVar = -1"
            "\nfRegrWeightVar = -1"
            "\nDependent Var = 1"
            "\nFactors  (size = 0)\n"
            "\nFactor Sizes  (size = 0)\n"
            "\nCovariates  (size = 0)\n"
            "\nTolerance = 1e-12"
            "\nIntercept use = true"
            "\nConfidence = 0.95"
            "\nDegrees of freedom = -1"
            "\n\nModel Effects:"
            "\nMCRegSettings display end"
            "\nN of Dependent Categories = 3"
            "\nDependent Var reference Category = -2"
            "\nLog-Likelihood Function Convergence Criterion = 0"
            "\nParameter Estimates Convergence Criterion = 1e-06"
            "\nMaximum number of Iteration = 100"
            "\nMaximum Step-Halving Allowed = 5"
            "\nStaring Iteration = 20"
            "\nLog-Likelihood Function absolute change = true"
            "\nParameter Estimates absolute change = false"
            "\nShow Iteration history frequency = 1"
            "\nMCLogRegSettings display end");
}

}  // namespace
