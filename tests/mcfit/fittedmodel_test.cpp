// SPDX-License-Identifier: Apache-2.0
#include "fittedmodel.h"

#include "effectbuilder.h"
#include "errors.h"
#include "linearmodel.h"
#include "logisticmodel.h"
#include "mcfit/support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>

namespace {
using mcfit::Dataset;
using mcfit::ProgressLine;

/// Four rows of a dependent y and a covariate x, ready for a fit.
class Fit {
public:
  explicit Fit(bool dependentHasLabels)
      : fLayout(Columns(dependentHasLabels)),
        fBuilder(fLayout),
        fReader(fFolder.Write("d.csv", "y,x\n0,1\n1,2\n0,3\n1,2.5\n")),
        fProgress(stderr),
        fData(fReader, fLayout, fMissing, fProgress) {
    fDesign.effects = fBuilder.MainEffects();
  }

  void Linear() { const mcfit::LinearModel model(fData, fDesign, fProgress); }

  void Logistic(bool reread) {
    mcfit::LogisticControl control;
    control.reread = reread;
    const int reference = fData.OrderCategories("last", "--reference");
    auto history = std::make_unique<mcfit::IterationHistory>("", 7, fProgress, false);
    const mcfit::LogisticModel model(fData, reference, fDesign, control, std::move(history),
                                     fProgress);
  }

private:
  static mcfit::ModelColumns Columns(bool dependentHasLabels) {
    mcfit::ModelColumns columns;
    columns.dependent = "y";
    columns.dependentHasLabels = dependentHasLabels;
    columns.covariates = {"x"};
    return columns;
  }

  TemporaryFolder fFolder;
  mcfit::RecordLayout fLayout;
  mcfit::EffectBuilder fBuilder;
  mcfit::CsvReader fReader;
  mcfit::MissingCells fMissing;
  ProgressLine fProgress;
  Dataset fData;
  mcfit::ModelDesign fDesign;
};

// Presses Ctrl-C, runs the fit and ends the process: 130 for Interrupted, 1 for all else.
[[noreturn]] void FitAfterAnInterrupt(const std::function<void()>& fit) {
  mcfit::CatchInterrupts();
  std::raise(SIGINT);
  try {
    fit();
  } catch (const mcfit::Interrupted&) {
    std::_Exit(130);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  std::_Exit(1);
}

// The library then finds that no row was read and says so; the user knows better.
TEST(McfitFittedModel, ACancelBeforeTheFirstRowIsNotTakenForALackOfRows) {
  Fit numbers(false);
  Fit labels(true);
  const testing::ExitedWithCode interrupted(130);
  EXPECT_EXIT(FitAfterAnInterrupt([&] { numbers.Linear(); }), interrupted, "");
  EXPECT_EXIT(FitAfterAnInterrupt([&] { labels.Logistic(false); }), interrupted, "");
  EXPECT_EXIT(FitAfterAnInterrupt([&] { labels.Logistic(true); }), interrupted, "");
}

TEST(McfitFittedModel, WithoutACancelTheSameFitsEnd) {
  testing::internal::CaptureStdout();  // the iterations
  EXPECT_NO_THROW(Fit(false).Linear());
  EXPECT_NO_THROW(Fit(true).Logistic(false));
  EXPECT_NO_THROW(Fit(true).Logistic(true));
  testing::internal::GetCapturedStdout();
}

}  // namespace
