// SPDX-License-Identifier: Apache-2.0
#include "regression/settings/mcregsettings.h"

#include "support/countingallocator.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {
using namespace MCConst;
using mctest::FailAllocation;
using Ints = std::vector<int>;
using Roles = std::vector<MCVariableType>;

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Listener : public ProgressListener {
public:
  bool ReportProgress(ProgressReport* /*report*/) override { return true; }
};

class Query : public MCQueryCancel {
public:
  bool IsCancel() override { return false; }
  bool WillCancel() override { return false; }
};

TEST(MCRegSettings, FreshSettingsHoldTheDocumentedDefaults) {
  const MCRegSettings settings;
  EXPECT_EQ(settings.GetModelType(), MC_MODEL_LINEAR);
  EXPECT_EQ(settings.GetDependent(), -1);
  EXPECT_EQ(settings.GetFactors(), Ints());
  EXPECT_EQ(settings.GetFactorSizes(), Ints());
  EXPECT_EQ(settings.GetCovariates(), Ints());
  EXPECT_EQ(settings.GetFrequencyWeightVar(), -1);
  EXPECT_EQ(settings.GetRegrWeightVar(), -1);
  EXPECT_TRUE(settings.GetInterceptUse());
  EXPECT_EQ(settings.GetTolerance(), 1e-12);
  EXPECT_TRUE(settings.GetModelEffects().empty());
  EXPECT_EQ(settings.GetNModelEffects(), 0);
  EXPECT_EQ(settings.GetConfidenceLevel(), 0.95);
  EXPECT_EQ(settings.GetDF(), -1.0);
  EXPECT_EQ(settings.GetTestType(), 0);
  EXPECT_EQ(settings.GetPAdjustment(), 0);
  EXPECT_EQ(settings.GetProgressListener(), nullptr);
  EXPECT_EQ(settings.GetCancelPointer(), nullptr);
  EXPECT_EQ(settings.GetVariableTypes(), Roles());
  EXPECT_EQ(settings.GetCovbType(), 0);
}

TEST(MCRegSettingsValidity, NeedsADependentAndATerm) {
  MCRegSettings settings;
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus(301, false));
  settings.SetInterceptUse(false);
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus(301, false)) << "tested first";
  settings.SetDependent(0);
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus(302, false));
  settings.AddModelEffect(MCModelEffect());
  EXPECT_TRUE(settings.IsValidSettings() == MCCommon::MCStatus()) << "an empty effect is enough";
}

TEST(MCRegSettingsValidity, ADependentAndTheInterceptAreEnough) {
  MCRegSettings settings;
  settings.SetDependent(0);
  EXPECT_TRUE(settings.IsValidSettings().IsOK());
}

TEST(MCRegSettings, StoresWhatItDoesNotCheck) {
  MCRegSettings settings;
  Listener listener;
  Query query;
  settings.SetInterceptUse(false);
  settings.SetTolerance(-3.0);
  settings.SetTestType(MC_TEST_SCORE);
  settings.SetPAdjustment(MC_PADJ_SIDAK);
  settings.SetCovbType(MC_COVB_ROBUST);
  settings.SetProgressListener(&listener);
  settings.SetCancelPointer(&query);
  EXPECT_FALSE(settings.GetInterceptUse());
  EXPECT_EQ(settings.GetTolerance(), -3.0);
  EXPECT_EQ(settings.GetTestType(), MC_TEST_SCORE);
  EXPECT_EQ(settings.GetPAdjustment(), MC_PADJ_SIDAK);
  EXPECT_EQ(settings.GetCovbType(), MC_COVB_ROBUST);
  EXPECT_EQ(settings.GetProgressListener(), &listener);
  EXPECT_EQ(settings.GetCancelPointer(), &query);
}

TEST(MCRegSettings, AConfidenceLevelOutsideItsRangeIsDropped) {
  MCRegSettings settings;
  for (const double level : {1.0, -0.1, 1.5, kNaN, kInfinity, -kInfinity}) {
    settings.SetConfidenceLevel(level);
    EXPECT_EQ(settings.GetConfidenceLevel(), 0.95) << level;
  }
  for (const double level : {0.0, 0.5, 0.9999}) {
    settings.SetConfidenceLevel(level);
    EXPECT_EQ(settings.GetConfidenceLevel(), level);
  }
}

TEST(MCRegSettings, DegreesOfFreedomNotAboveZeroAreDropped) {
  MCRegSettings settings;
  for (const double df : {0.0, -0.0, -1.5, kNaN, -kInfinity}) {
    settings.SetDF(df);
    EXPECT_EQ(settings.GetDF(), -1.0) << df;
  }
  for (const double df : {12.5, 1e-300, kInfinity}) {
    settings.SetDF(df);
    EXPECT_EQ(settings.GetDF(), df);
  }
}

TEST(MCRegSettingsRoles, EachSetterMarksItsRole) {
  MCRegSettings settings;
  EXPECT_TRUE(settings.SetDependent(3));
  EXPECT_EQ(settings.AddFactor(0, 4), 1);
  EXPECT_EQ(settings.AddFactor(6, 2), 2);
  EXPECT_EQ(settings.AddCovariate(2), 1);
  EXPECT_EQ(settings.AddCovariate(1), 2);
  EXPECT_TRUE(settings.SetFrequencyWeightVar(5));
  EXPECT_TRUE(settings.SetRegrWeightVar(4));
  EXPECT_EQ(settings.GetDependent(), 3);
  EXPECT_EQ(settings.GetFactors(), (Ints{0, 6}));
  EXPECT_EQ(settings.GetFactorSizes(), (Ints{4, 2}));
  EXPECT_EQ(settings.GetCovariates(), (Ints{2, 1}));
  EXPECT_EQ(settings.GetFrequencyWeightVar(), 5);
  EXPECT_EQ(settings.GetRegrWeightVar(), 4);
  EXPECT_EQ(settings.GetVariableTypes(),
            (Roles{MC_VAR_FACTOR, MC_VAR_COVARIATE, MC_VAR_COVARIATE, MC_VAR_DEPENDENT,
                   MC_VAR_REGR_WEIGHT, MC_VAR_FREQ_WEIGHT, MC_VAR_FACTOR}));
}

TEST(MCRegSettingsRoles, TheTableGrowsToCoverThePosition) {
  MCRegSettings settings;
  EXPECT_EQ(settings.AddCovariate(7), 1);
  Roles expected(8, MC_VAR_UNSPECIFIED);
  expected[7] = MC_VAR_COVARIATE;
  EXPECT_EQ(settings.GetVariableTypes(), expected);
  EXPECT_EQ(settings.AddFactor(0, 1), 1) << "unspecified positions are free";
}

TEST(MCRegSettingsRoles, TheDependentIsSetOnce) {
  MCRegSettings settings;
  EXPECT_TRUE(settings.SetDependent(3));
  EXPECT_FALSE(settings.SetDependent(4));
  EXPECT_FALSE(settings.SetDependent(3));
  EXPECT_EQ(settings.GetDependent(), 3);
  EXPECT_EQ(settings.GetVariableTypes().size(), 4U);
}

// Position 3 has each role in turn, and no setter gets it or a negative position.
TEST(MCRegSettingsRoles, APositionTakesOneRoleOnly) {
  for (int role = 0; role < 5; ++role) {
    MCRegSettings settings;
    switch (role) {
      case 0:
        settings.SetDependent(3);
        break;
      case 1:
        settings.AddFactor(3, 4);
        break;
      case 2:
        settings.AddCovariate(3);
        break;
      case 3:
        settings.SetFrequencyWeightVar(3);
        break;
      default:
        settings.SetRegrWeightVar(3);
        break;
    }
    const Roles roles = settings.GetVariableTypes();
    const MCRegSettings before = settings;
    for (const int var : {3, -1, -kMaxInt - 1}) {
      EXPECT_FALSE(settings.SetDependent(var)) << role;
      EXPECT_EQ(settings.AddFactor(var, 4), -1) << role;
      EXPECT_EQ(settings.AddCovariate(var), -1) << role;
      EXPECT_FALSE(settings.SetFrequencyWeightVar(var)) << role;
      EXPECT_FALSE(settings.SetRegrWeightVar(var)) << role;
    }
    EXPECT_EQ(settings.GetVariableTypes(), roles);
    EXPECT_EQ(settings.GetDependent(), before.GetDependent());
    EXPECT_EQ(settings.GetFactors(), before.GetFactors());
    EXPECT_EQ(settings.GetFactorSizes(), before.GetFactorSizes());
    EXPECT_EQ(settings.GetCovariates(), before.GetCovariates());
    EXPECT_EQ(settings.GetFrequencyWeightVar(), before.GetFrequencyWeightVar());
    EXPECT_EQ(settings.GetRegrWeightVar(), before.GetRegrWeightVar());
  }
}

TEST(MCRegSettingsRoles, AFactorNeedsACategory) {
  MCRegSettings settings;
  for (const int size : {0, -1, -kMaxInt - 1}) EXPECT_EQ(settings.AddFactor(2, size), -1) << size;
  EXPECT_EQ(settings.GetFactors(), Ints());
  EXPECT_EQ(settings.GetVariableTypes(), Roles());
  EXPECT_EQ(settings.AddFactor(2, 1), 1);
}

TEST(MCRegSettingsRoles, ASecondWeightReplacesTheFirstWhosePositionStaysBarred) {
  MCRegSettings settings;
  EXPECT_TRUE(settings.SetFrequencyWeightVar(0));
  EXPECT_TRUE(settings.SetFrequencyWeightVar(1));
  EXPECT_TRUE(settings.SetRegrWeightVar(2));
  EXPECT_TRUE(settings.SetRegrWeightVar(3));
  EXPECT_EQ(settings.GetFrequencyWeightVar(), 1);
  EXPECT_EQ(settings.GetRegrWeightVar(), 3);
  EXPECT_EQ(settings.GetVariableTypes(), (Roles{MC_VAR_FREQ_WEIGHT, MC_VAR_FREQ_WEIGHT,
                                                MC_VAR_REGR_WEIGHT, MC_VAR_REGR_WEIGHT}));
  EXPECT_EQ(settings.AddCovariate(0), -1);
  EXPECT_EQ(settings.AddCovariate(2), -1);
}

// A setter of one member for the cases of memory exhaustion.
struct Setter {
  const char* name;
  bool (*set)(MCRegSettings&, int);
  int (*get)(const MCRegSettings&);
};

const Setter kSetters[] = {
    {"dependent", [](MCRegSettings& s, int var) { return s.SetDependent(var); },
     [](const MCRegSettings& s) { return s.GetDependent(); }},
    {"frequency weight", [](MCRegSettings& s, int var) { return s.SetFrequencyWeightVar(var); },
     [](const MCRegSettings& s) { return s.GetFrequencyWeightVar(); }},
    {"regression weight", [](MCRegSettings& s, int var) { return s.SetRegrWeightVar(var); },
     [](const MCRegSettings& s) { return s.GetRegrWeightVar(); }},
};

TEST(MCRegSettingsMemory, AFailedGrowthLeavesTheMemberSetAndTheTableEmpty) {
  for (const Setter& setter : kSetters) {
    for (const int var : {50, kMaxInt}) {
      MCRegSettings settings;
      settings.AddFactor(0, 2);
      {
        const FailAllocation failure(1);
        EXPECT_FALSE(setter.set(settings, var)) << setter.name;
        EXPECT_TRUE(failure.HasFired());
      }
      EXPECT_EQ(setter.get(settings), var) << setter.name;
      EXPECT_EQ(settings.GetVariableTypes(), Roles()) << setter.name;
      EXPECT_EQ(settings.GetFactors(), Ints{0}) << setter.name;
      EXPECT_EQ(settings.AddCovariate(0), 1) << setter.name;
    }
  }
}

TEST(MCRegSettingsMemory, TheseSettersAllocateOnlyTheTable) {
  for (const Setter& setter : kSetters) {
    MCRegSettings settings;
    const FailAllocation failure(2);
    EXPECT_TRUE(setter.set(settings, 50)) << setter.name;
    EXPECT_FALSE(failure.HasFired()) << setter.name;
  }
}

// Lets the k-th allocation of `act` fail for each k, until none does. `check` sees the settings
// after each failure. Answers the number of allocations.
template <class Act, class Check>
int ExhaustMemory(Act act, Check check) {
  for (std::size_t k = 1;; ++k) {
    MCRegSettings settings;
    settings.AddFactor(2, 3);
    bool hasFired = false;
    {
      const FailAllocation failure(k);
      act(settings);
      hasFired = failure.HasFired();
    }
    if (!hasFired) return static_cast<int>(k) - 1;
    check(settings);
  }
}

void ExpectOnlyTheFactor(const MCRegSettings& settings) {
  EXPECT_EQ(settings.GetFactors(), Ints{2});
  EXPECT_EQ(settings.GetFactorSizes(), Ints{3});
  EXPECT_EQ(settings.GetCovariates(), Ints());
  EXPECT_EQ(settings.GetModelEffects().size(), 0U);
  EXPECT_EQ(settings.GetVariableTypes(),
            (Roles{MC_VAR_UNSPECIFIED, MC_VAR_UNSPECIFIED, MC_VAR_FACTOR}));
}

TEST(MCRegSettingsMemory, AddCovariateRefusesAtEachAllocationAndChangesNothing) {
  int answer = 0;
  const int n = ExhaustMemory([&](MCRegSettings& s) { answer = s.AddCovariate(9); },
                              [&](const MCRegSettings& s) {
                                EXPECT_EQ(answer, -1);
                                ExpectOnlyTheFactor(s);
                              });
  EXPECT_EQ(n, 2);
  EXPECT_EQ(answer, 1);
}

TEST(MCRegSettingsMemory, AddFactorRefusesAtEachAllocationAndChangesNothing) {
  int answer = 0;
  const int n = ExhaustMemory([&](MCRegSettings& s) { answer = s.AddFactor(9, 5); },
                              [&](const MCRegSettings& s) {
                                EXPECT_EQ(answer, -1);
                                ExpectOnlyTheFactor(s);
                              });
  EXPECT_EQ(n, 3);
  EXPECT_EQ(answer, 2);
}

TEST(MCRegSettingsMemory, ARoleAtTheLargestPositionIsRefusedWithoutOverflow) {
  MCRegSettings settings;
  settings.AddFactor(2, 3);
  {
    const FailAllocation failure(2);  // the list grows, the table doesn't
    EXPECT_EQ(settings.AddCovariate(kMaxInt), -1);
    EXPECT_TRUE(failure.HasFired());
  }
  {
    const FailAllocation failure(3);
    EXPECT_EQ(settings.AddFactor(kMaxInt, 2), -1);
    EXPECT_TRUE(failure.HasFired());
  }
  ExpectOnlyTheFactor(settings);
}

TEST(MCRegSettingsMemory, AddModelEffectRefusesAtEachAllocation) {
  const Ints vars = {2};
  const MCModelEffect effect(1, 0, &vars);
  bool answer = true;
  const int n = ExhaustMemory([&](MCRegSettings& s) { answer = s.AddModelEffect(effect); },
                              [&](const MCRegSettings& s) {
                                EXPECT_FALSE(answer);
                                ExpectOnlyTheFactor(s);
                              });
  EXPECT_EQ(n, 2);
  EXPECT_TRUE(answer);
}

TEST(MCRegSettings, EffectsAreCopiedInTheOrderAdded) {
  const Ints vars = {1, 2};
  MCModelEffect first(2, 0, &vars);
  first.AddNewFactor(1, false);
  MCModelEffect second(2, 0, &vars);
  second.AddNewFactor(2, false);
  MCRegSettings settings;
  EXPECT_TRUE(settings.AddModelEffect(first));
  EXPECT_TRUE(settings.AddModelEffect(second));
  first.AddNewFactor(2, false);
  EXPECT_EQ(settings.GetNModelEffects(), 2);
  EXPECT_EQ(settings.GetModelEffects()[0].GetFactors(), Ints{1});
  EXPECT_EQ(settings.GetModelEffects()[1].GetFactors(), Ints{2});
}

TEST(MCRegSettingsCopy, IsDeepButForWhatTheHostOwns) {
  const Ints vars = {1};
  Listener listener;
  Query query;
  MCRegSettings settings;
  settings.SetDependent(0);
  settings.AddFactor(1, 2);
  settings.AddCovariate(2);
  settings.SetFrequencyWeightVar(3);
  settings.SetRegrWeightVar(4);
  settings.SetInterceptUse(false);
  settings.SetTolerance(1e-9);
  settings.SetConfidenceLevel(0.9);
  settings.SetDF(7.0);
  settings.SetTestType(MC_TEST_F);
  settings.SetPAdjustment(MC_PADJ_BONFERRONI);
  settings.SetCovbType(MC_COVB_ROBUST);
  settings.SetProgressListener(&listener);
  settings.SetCancelPointer(&query);
  settings.AddModelEffect(MCModelEffect(1, 0, &vars));
  const MCRegSettings copy(settings);
  settings.AddFactor(9, 9);
  settings.AddModelEffect(MCModelEffect());

  EXPECT_EQ(copy.GetDependent(), 0);
  EXPECT_EQ(copy.GetFactors(), Ints{1});
  EXPECT_EQ(copy.GetFactorSizes(), Ints{2});
  EXPECT_EQ(copy.GetCovariates(), Ints{2});
  EXPECT_EQ(copy.GetFrequencyWeightVar(), 3);
  EXPECT_EQ(copy.GetRegrWeightVar(), 4);
  EXPECT_FALSE(copy.GetInterceptUse());
  EXPECT_EQ(copy.GetTolerance(), 1e-9);
  EXPECT_EQ(copy.GetConfidenceLevel(), 0.9);
  EXPECT_EQ(copy.GetDF(), 7.0);
  EXPECT_EQ(copy.GetTestType(), MC_TEST_F);
  EXPECT_EQ(copy.GetPAdjustment(), MC_PADJ_BONFERRONI);
  EXPECT_EQ(copy.GetCovbType(), MC_COVB_ROBUST);
  EXPECT_EQ(copy.GetProgressListener(), &listener);
  EXPECT_EQ(copy.GetCancelPointer(), &query);
  ASSERT_EQ(copy.GetNModelEffects(), 1);
  EXPECT_EQ(copy.GetModelEffects()[0].GetVarIndices(), &vars);
  EXPECT_EQ(copy.GetVariableTypes().size(), 5U);
}

TEST(MCRegSettings, DisplaysItsMembersAndEffects) {
  const Ints vars = {1};
  MCRegSettings settings;
  settings.SetDependent(0);
  settings.AddFactor(1, 4);
  settings.AddCovariate(2);
  settings.SetFrequencyWeightVar(3);
  settings.AddModelEffect(MCModelEffect(1, 0, &vars));
  EXPECT_EQ(mctest::Displayed([&] { settings.Display(); }),
            "\nMCRegSettings display start"
            "\nfFreqWeightVar = 3"
            "\nfRegrWeightVar = -1"
            "\nDependent Var = 0"
            "\nFactors  (size = 1)\n 1"
            "\nFactor Sizes  (size = 1)\n 4"
            "\nCovariates  (size = 1)\n 2"
            "\nTolerance = 1e-12"
            "\nIntercept use = true"
            "\nConfidence = 0.95"
            "\nDegrees of freedom = -1"
            "\n\nModel Effects:"
            "\nBegin MCModelEffect object display."
            "\nFactors in model = 1"
            "\nFactors in effect = 0"
            "\nNesting levels = 0"
            "\nCovariates in model = 0"
            "\nFactor after Covariates in ()? = false"
            "\nCovariates in effect = 0"
            "\nThe main vector (size = 1)\n -1"
            "\nEnd MCModelEffect object display."
            "\nMCRegSettings display end");
}

}  // namespace
