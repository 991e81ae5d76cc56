// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "regression/regression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <dlfcn.h>
#include <memory>
#include <string>

namespace {

using testing::ElementsAre;

// One of the two shared objects that the sources of plugin/ become, named by its path.
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

// The names that the plugin's operations note, in order.
using Names = std::vector<std::string>;

TEST_P(HostPlugin, HasTheOperationsOfAModelInTheirOrder) {
  Names names;
  {
    auto model = Make<IMCRegModel>("MakeModel", &names);
    std::vector<double> values;
    std::vector<int> indices;
    int a = 0;
    int b = 0;
    EXPECT_EQ(model->GetFactorTables(), nullptr);
    EXPECT_TRUE(model->CreateParameters().IsOK());
    EXPECT_TRUE(model->AreParamsCreated());
    EXPECT_TRUE(model->UpdateXPrimeX(nullptr, indices));
    EXPECT_TRUE(model->UpdateXPrimeX(nullptr));
    EXPECT_TRUE(model->IdentifyRedundancy().IsOK());
    EXPECT_TRUE(model->IsModelBuilt());
    model->GetDResiduals(values, nullptr);
    EXPECT_TRUE(model->FinishErrors().IsOK());
    EXPECT_EQ(model->GetXPrimeX(), nullptr);
    EXPECT_EQ(model->GetHessianGI(), nullptr);
    EXPECT_TRUE(model->GetParameters().empty());
    EXPECT_TRUE(model->GetBasicParams().empty());
    EXPECT_EQ(model->GetNParameters(), 1);
    EXPECT_EQ(model->GetNNonRedParams(), 1);
    EXPECT_EQ(model->GetNBasicParameters(), 1);
    EXPECT_EQ(model->GetNBasicNonRed(), 1);
    EXPECT_TRUE(model->GetParamEstimates().empty());
    EXPECT_EQ(model->GetBasicRedundInfo().Size(), 0);
    EXPECT_EQ(model->GetRedundancyInfo().Size(), 0);
    EXPECT_EQ(model->GetDependentNCategs(), 2);
    EXPECT_TRUE(model->GetDependCategories().empty());
    EXPECT_TRUE(model->GetDepCatLocalInds().empty());
    model->ClearXPrimeXMatrix();
    model->ClearHessianGIMatrix();
    EXPECT_TRUE(model->GetParamsForEffect(0, a, b));
    EXPECT_TRUE(model->Score(nullptr, values, a).IsOK());
    EXPECT_TRUE(model->UncompressEstimates(values, MCCommonMath::MCSymMatrix()).IsOK());
    EXPECT_TRUE(model->ExpandRow(values, nullptr));
    EXPECT_TRUE(model->ExpandRow(nullptr, indices, values));
    EXPECT_TRUE(model->ExpandAndCompressRow(nullptr, indices, a, indices, values));
    EXPECT_TRUE(model->ExpandAndCompressRow(nullptr, a, indices, values));
    EXPECT_TRUE(model->GetStatus().IsOK());
    model->Display();
  }
  EXPECT_EQ(names, (Names{"GetFactorTables",
                          "CreateParameters",
                          "AreParamsCreated",
                          "UpdateXPrimeX(indices)",
                          "UpdateXPrimeX",
                          "IdentifyRedundancy",
                          "IsModelBuilt",
                          "GetDResiduals",
                          "FinishErrors",
                          "GetXPrimeX",
                          "GetHessianGI",
                          "GetParameters",
                          "GetBasicParams",
                          "GetNParameters",
                          "GetNNonRedParams",
                          "GetNBasicParameters",
                          "GetNBasicNonRed",
                          "GetParamEstimates",
                          "GetBasicRedundInfo",
                          "GetRedundancyInfo",
                          "GetDependentNCategs",
                          "GetDependCategories",
                          "GetDepCatLocalInds",
                          "ClearXPrimeXMatrix",
                          "ClearHessianGIMatrix",
                          "GetParamsForEffect",
                          "Score",
                          "UncompressEstimates",
                          "ExpandRow",
                          "ExpandRow(sparse)",
                          "ExpandAndCompressRow(indices)",
                          "ExpandAndCompressRow",
                          "GetStatus",
                          "Display",
                          "~"}));
}

TEST_P(HostPlugin, HasTheOperationsOfAnAccumulatorInTheirOrder) {
  Names names;
  const std::vector<double> estimates{0.0};
  {
    auto stats = Make<IMCAccumStats>("MakeAccumStats", &names, &estimates);
    stats->Reset(MCConst::MC_EST_FISHER, false);
    EXPECT_TRUE(stats->CheckConstraints());
    EXPECT_EQ(stats->UpdateForRow({0}, {1.0}, 1, 2.0, false), 0);
    EXPECT_DOUBLE_EQ(stats->GetLL(), -2.0 * std::log(2.0));
    EXPECT_EQ(stats->GetScores(), std::vector<double>{-1.0});
    MCCommonMath::MCSymMatrix hessian(1);
    stats->GetHessian(hessian);
    EXPECT_EQ(hessian.GetElem(0, 0), 0.5);
    int valid = 0;
    int invalid = -1;
    double weight = 0.0;
    stats->GetCounts(valid, invalid, weight);
    EXPECT_EQ(valid, 1);
    double extremes[3] = {};
    stats->GetMinMaxProbabilities(extremes[0], extremes[1], extremes[2]);
    EXPECT_THAT(extremes, ElementsAre(0.5, 0.5, 0.5));
    EXPECT_EQ(stats->GetStepAdjustmentFactor(), 1.0);
    stats->Display(false);
  }
  EXPECT_EQ(names, (Names{"Reset", "CheckConstraints", "UpdateForRow", "GetLL", "GetScores",
                          "GetHessian", "GetCounts", "GetMinMaxProbabilities",
                          "GetStepAdjustmentFactor", "Display", "~"}));
}

TEST_P(HostPlugin, HasTheOperationsOfADataHandlerInTheirOrder) {
  Names names;
  {
    auto handler = Make<IMCDataHandler>("MakeDataHandler", &names);
    handler->SetStatsModel(nullptr, nullptr);
    handler->ResetAccumStats(MCConst::MC_EST_FISHER, false);
    handler->CleanStatsModel();
    EXPECT_EQ(handler->ComputeStatsForOptimizer(false).GetErrorCode(), 303);
    EXPECT_TRUE(handler->GetWarnings().empty());
    handler->Display();
  }
  EXPECT_EQ(names, (Names{"SetStatsModel", "ResetAccumStats", "CleanStatsModel",
                          "ComputeStatsForOptimizer", "GetWarnings", "Display", "~"}));
}

// The estimator iterates with the plugin's model and handler. With the library's accumulator in
// place of the plugin's, it is the plugin that calls the library by that order.
TEST_P(HostPlugin, IsEstimated) {
  Names names;
  MCLogRegSettings settings;
  settings.SetInterceptUse(false);
  auto model = Make<IMCRegModel>("MakeModel", &names);
  auto handler = Make<IMCDataHandler>("MakeDataHandler", &names);
  for (const bool ownStats : {true, false}) {
    std::vector<double> estimates{0.0};
    std::unique_ptr<IMCAccumStats> stats;
    if (ownStats) {
      stats = Make<IMCAccumStats>("MakeAccumStats", &names, &estimates);
    } else {
      stats = std::make_unique<MCAccumStatsLogistic>(settings, 1, 2, estimates);
    }
    MCRegOptimizer optimizer(settings, *model, handler.get(), stats.get(), estimates, nullptr, 1,
                             MCConst::MC_EST_FISHER, 0);
    ASSERT_TRUE(optimizer.Estimate().IsOK());
    EXPECT_TRUE(MCConvergence::IsConverged(optimizer.GetConverCrit()));
    // Three of four, and 1 / (n p q).
    EXPECT_NEAR(estimates[0], std::log(3.0), 1e-12);
    EXPECT_NEAR(optimizer.GetHessianGI()->GetElem(0, 0), 1.0 / (4.0 * 0.75 * 0.25), 1e-12);
  }
}

INSTANTIATE_TEST_SUITE_P(Headers, HostPlugin,
                         testing::Values(MCSTAT_PLUGIN_LIVE, MCSTAT_PLUGIN_FROZEN),
                         [](const auto& param) { return param.index == 0 ? "Live" : "Frozen"; });

}  // namespace
