// SPDX-License-Identifier: Apache-2.0
#include "regression/regression.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <memory>
#include <string>

namespace {

// One of the two shared objects that plugin/hostplugin.cpp becomes, named by its path.
class HostPlugin : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    fHandle = dlopen(GetParam(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(fHandle, nullptr) << dlerror();
  }
  void TearDown() override {
    if (fHandle != nullptr) dlclose(fHandle);
  }

  template <class T, class... Args>
  std::unique_ptr<T> Make(const char* maker, Args... args) {
    auto* function = reinterpret_cast<void* (*)(Args...)>(dlsym(fHandle, maker));
    return std::unique_ptr<T>(static_cast<T*>(function(args...)));
  }

  // Fits y = 3 - x through the plugin's source.
  std::unique_ptr<IMCRegComponent> MakeComponent(MCQueryCancel* cancel) {
    MCRegSettings settings;
    settings.AddCovariate(0);
    settings.SetDependent(1);
    settings.SetCancelPointer(cancel);
    fVariables = settings.GetCovariates();
    MCModelEffect slope(0, 1, &fVariables);
    slope.AddCovariate(0);
    settings.AddModelEffect(slope);
    return std::unique_ptr<IMCRegComponent>(MCRegFactory().CreateRegAlgorithm(settings));
  }

private:
  void* fHandle = nullptr;
  std::vector<int> fVariables;
};

TEST_P(HostPlugin, FeedsABuild) {
  auto source = Make<MCCommon::MultiPassRecordIter>("MakeSource");
  auto component = MakeComponent(nullptr);
  ASSERT_TRUE(component->BuildModel(*source).IsOK());
  IMCRegOutputStats* results = nullptr;
  ASSERT_TRUE(component->GetOutputStats(results).IsOK());
  EXPECT_NEAR((*results->GetParamEstimates())[0], 3.0, 1e-14);
  EXPECT_NEAR((*results->GetParamEstimates())[1], -1.0, 1e-14);
}

TEST_P(HostPlugin, CancelsABuild) {
  auto source = Make<MCCommon::MultiPassRecordIter>("MakeSource");
  auto cancel = Make<MCQueryCancel>("MakeCancel", 3);
  EXPECT_FALSE(cancel->IsCancel());
  auto component = MakeComponent(cancel.get());
  EXPECT_EQ(component->BuildModel(*source).GetErrorCode(), MCCommon::MCS_CANCELLED);
}

// What an iterative build hands to a listener, in small.
class Report : public ProgressReportVect {
public:
  int DiscreteMeasure(const std::string& name) override { return name == "seven" ? 7 : 0; }
  double ScaleMeasure(const std::string& name) override { return name == "half" ? 0.5 : 0.0; }
  const std::vector<double>* VectorMeasure(const std::string& name) override {
    return name == "three" ? &fThree : nullptr;
  }

private:
  std::vector<double> fThree{1.0, 2.0, 3.0};
};

TEST_P(HostPlugin, ReadsAReport) {
  Report report;
  EXPECT_TRUE(Make<ProgressListener>("MakeListener")->ReportProgress(&report));
}

INSTANTIATE_TEST_SUITE_P(Headers, HostPlugin,
                         testing::Values(MCSTAT_PLUGIN_LIVE, MCSTAT_PLUGIN_FROZEN),
                         [](const auto& param) { return param.index == 0 ? "Live" : "Frozen"; });

}  // namespace
