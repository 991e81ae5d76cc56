// SPDX-License-Identifier: Apache-2.0
#include "regression/component/mcregfactory.h"

#include "regression/component/mclogcomponent.h"
#include "regression/settings/mclogregsettings.h"
#include "support/countingallocator.h"
#include "support/regressiondesign.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>

namespace {
using MCCommon::MCStatus;
using mctest::LogisticDesign;
using mctest::RegressionDesign;

// Settings of a host that describe some other kind of model.
class OtherSettings : public MCRegSettings {
public:
  explicit OtherSettings(int modelType) : fModelType(modelType) { SetDependent(0); }
  int GetModelType() const override { return fModelType; }

private:
  int fModelType;
};

// Settings of a host with a check of their own.
class WarningSettings : public MCRegSettings {
public:
  WarningSettings() { SetDependent(0); }
  MCStatus IsValidSettings() const override { return MCStatus(999, true); }
};

TEST(MCRegFactory, StartsWithAnOkStatus) {
  EXPECT_TRUE(MCRegFactory().GetStatus().IsOK());
}

TEST(MCRegFactory, MakesALinearComponentWithItsOwnSettings) {
  RegressionDesign design = RegressionDesign(0, {}, {1}).Effect({}, {1});
  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(design.Settings()));
  ASSERT_NE(component, nullptr);
  EXPECT_TRUE(factory.GetStatus().IsOK());
  EXPECT_EQ(component->GetModelType(), MCConst::MC_MODEL_LINEAR);
  design.Settings().AddCovariate(7);
  EXPECT_EQ(component->GetCompSettings().GetCovariates().size(), 1u)
      << "later changes are not seen";
  EXPECT_NE(&component->GetCompSettings(), &design.Settings());
}

TEST(MCRegFactory, RefusesInvalidSettingsWithTheReason) {
  MCRegFactory factory;
  MCRegSettings settings;
  EXPECT_EQ(factory.CreateRegAlgorithm(settings), nullptr);
  EXPECT_EQ(factory.GetStatus(), MCStatus(301, false));
  settings.SetDependent(0);
  settings.SetInterceptUse(false);
  EXPECT_EQ(factory.CreateRegAlgorithm(settings), nullptr);
  EXPECT_EQ(factory.GetStatus(), MCStatus(302, false));
  settings.SetInterceptUse(true);
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  EXPECT_NE(component, nullptr);
  EXPECT_TRUE(factory.GetStatus().IsOK()) << "the status is that of the last creation";
}

TEST(MCRegFactory, MakesALogisticComponentWithItsOwnSettings) {
  LogisticDesign design = LogisticDesign(0, {}, {1}).Categories(4, 2).Rereading().Effect({}, {1});
  design.Settings().SetMaxIterations(7);
  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(design.Settings()));
  ASSERT_NE(component, nullptr);
  EXPECT_TRUE(factory.GetStatus().IsOK());
  EXPECT_EQ(component->GetModelType(), MCConst::MC_MODEL_LOGISTIC);
  ASSERT_NE(dynamic_cast<const MCLogComponent*>(component.get()), nullptr);
  design.Settings().SetMaxIterations(8);
  design.Settings().AddCovariate(7);
  const auto& copy = dynamic_cast<const MCLogRegSettings&>(component->GetCompSettings());
  EXPECT_NE(&copy, &design.Settings());
  EXPECT_EQ(copy.GetMaxIterations(), 7) << "later changes are not seen";
  EXPECT_EQ(copy.GetCovariates().size(), 1u);
  EXPECT_EQ(copy.GetDependentNCategs(), 4);
  EXPECT_EQ(copy.GetDependentRefCateg(), 2);
  EXPECT_FALSE(copy.GetUsePatternTabulator());
}

TEST(MCRegFactory, HasNothingForOtherKindsOfModelAndSaysOk) {
  for (const int type : {2, -1}) {
    OtherSettings settings(type);
    MCRegFactory factory;
    EXPECT_EQ(factory.CreateRegAlgorithm(settings), nullptr) << type;
    EXPECT_TRUE(factory.GetStatus().IsOK()) << type;
  }
}

TEST(MCRegFactory, SettingsThatOnlyCallThemselvesLogisticAreNoneOfItsKinds) {
  OtherSettings settings(MCConst::MC_MODEL_LOGISTIC);
  MCRegFactory factory;
  EXPECT_EQ(factory.CreateRegAlgorithm(settings), nullptr);
  EXPECT_TRUE(factory.GetStatus().IsOK());
}

TEST(MCRegFactory, RefusesInvalidLogisticSettings) {
  MCLogRegSettings logistic;
  MCRegFactory factory;
  EXPECT_EQ(factory.CreateRegAlgorithm(logistic), nullptr);
  EXPECT_EQ(factory.GetStatus(), MCStatus(301, false));
}

TEST(MCRegFactory, AsksTheHostsOwnCheckAndTakesAWarning) {
  WarningSettings settings;
  MCRegFactory factory;
  const std::unique_ptr<IMCRegComponent> component(factory.CreateRegAlgorithm(settings));
  EXPECT_NE(component, nullptr);
  EXPECT_EQ(factory.GetStatus(), MCStatus(999, true));
  EXPECT_TRUE(component->GetStatus().IsOK()) << "the component's copy is of the base";
}

// Makes a component at each allocation that fails in turn; either that or it is thrown.
void ExpectThrownExhaustion(MCRegSettings& settings) {
  bool fired = true;
  for (std::size_t k = 1; fired; ++k) {
    MCRegFactory factory;
    const mctest::FailAllocation failure(k);
    try {
      const std::unique_ptr<IMCRegComponent> made(factory.CreateRegAlgorithm(settings));
      EXPECT_NE(made, nullptr);
      EXPECT_FALSE(failure.HasFired());
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFired());
    }
    fired = failure.HasFired();
  }
}

TEST(MCRegFactory, ExhaustionAnywhereIsThrown) {
  ExpectThrownExhaustion(RegressionDesign(0, {{1, 3}}, {2}).Effect({1}).Effect({}, {2}).Settings());
  ExpectThrownExhaustion(LogisticDesign(0, {{1, 3}}, {2}).Effect({1}).Effect({}, {2}).Settings());
}

}  // namespace
