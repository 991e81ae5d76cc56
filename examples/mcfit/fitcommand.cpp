// SPDX-License-Identifier: Apache-2.0
#include "fitcommand.h"

#include "csvreader.h"
#include "dataset.h"
#include "effectbuilder.h"
#include "effectparser.h"
#include "errors.h"
#include "outputfile.h"
#include "progressline.h"
#include "regressionpmml.h"
#include "scorer.h"
#include "text.h"

#include <fmt/format.h>

#include <cstdio>

namespace mcfit {

namespace {

constexpr int kMostDigits = 17;

void Note(const std::string& text) {
  fmt::print(stderr, "mcfit: {}\n", text);
}

/// The second file and where its scores go; everything about them that can fail before the fit
/// fails in the constructor and in SetColumns().
class Prediction {
public:
  Prediction(const std::string& file, const std::string& out, const RecordLayout& layout,
             const MissingCells& missing)
      : fReader(file), fScorer(fReader, layout, missing), fPath(out), fOut(out) {}

  void SetColumns(const std::vector<std::string>& columns) { fScorer.SetColumns(columns); }

  void Run(const FittedModel& model, ProgressLine& progress) {
    const ScoreCounts counts = fScorer.Run(model, fOut, progress);
    fOut.Commit();
    PrintResults("\n" + ScoreText(counts, fPath));
  }

private:
  CsvReader fReader;
  Scorer fScorer;
  std::string fPath;
  OutputFile fOut;
};

}  // namespace

FitCommand::FitCommand(CLI::App& app, const char* name, const char* description)
    : fpApp(app.add_subcommand(name, description)) {
  fpApp->add_option("data", fData, "CSV file with a header line; - for the standard input")
      ->required();
  DeclareModelOptions();
  DeclareOtherOptions();
}

void FitCommand::DeclareModelOptions() {
  fpApp->add_option("--dependent", fDependent, "Column of the dependent variable")->required();
  fpApp->add_option("--factors", fFactors, "Columns with categories: a,b");
  fpApp->add_option("--covariates", fCovariates, "Columns with numbers: x1,x2");
  fpApp->add_option("--effects", fEffects,
                    "Terms of the model: 'a, b, a*b, x1, x1^2, b(a)'; all main effects by default");
  fpApp->add_option("--freq", fFrequency, "Column that tells how many cases a row stands for");
  fpApp->add_option("--weight", fWeight, "Column of regression weights");
  fpApp->add_flag("--no-intercept", fbNoIntercept, "Leave out the intercept");
  fpApp->add_option("--tolerance", fTolerance,
                    "A column is redundant if less than this share of it is left after the columns "
                    "before it; 1e-12 by default");
}

void FitCommand::DeclareOtherOptions() {
  fpApp->add_option("--missing", fMissing,
                    "Texts that mean a missing value beside the empty cell: NA,.");
  fpApp->add_option("--digits", fDigits, "Significant digits in tables, 1 to 17; 7 by default");
  CLI::Option* predict = fpApp->add_option("--predict", fPredict, "CSV file to be scored");
  CLI::Option* out = fpApp->add_option("--out", fOut, "File that gets the scored rows");
  fpApp->add_option("--pmml", fPmml, "File that gets the model as PMML 3.2");
  predict->needs(out);
  out->needs(predict);
}

void FitCommand::CheckOptions() const {
  // Written so that NaN is refused.
  if (!(fTolerance > 0.0 && fTolerance < 1.0)) {
    throw InputError("--tolerance must lie between 0 and 1");
  }
  if (fDigits < 1 || fDigits > kMostDigits) {
    throw InputError(fmt::format("--digits must lie between 1 and {}", kMostDigits));
  }
  CheckFiles();
}

void FitCommand::CheckFiles() const {
  if (fPredict && fData == "-" && *fPredict == "-") {
    throw InputError("the data and --predict can't both be the standard input");
  }
  OutputPaths paths;
  paths.AddInput(fData);
  if (fPredict) paths.AddInput(*fPredict);
  if (fOut) paths.AddOutput("--out", *fOut);
  if (fPmml) paths.AddOutput("--pmml", *fPmml);
}

ModelColumns FitCommand::Columns() const {
  ModelColumns columns;
  columns.dependent = fDependent;
  columns.factors = ParseNames(fFactors, "--factors");
  columns.covariates = ParseNames(fCovariates, "--covariates");
  columns.frequency = fFrequency;
  columns.weight = fWeight;
  return columns;
}

ModelDesign FitCommand::Design(const EffectBuilder& builder) const {
  ModelDesign design;
  design.effects = fEffects ? builder.BuildAll(ParseEffects(*fEffects)) : builder.MainEffects();
  design.hasIntercept = !fbNoIntercept;
  design.tolerance = fTolerance;
  const std::vector<std::string> unused = builder.Unused(design.effects);
  if (!unused.empty()) {
    Note(fmt::format("note: no effect uses {}; rows where it is missing are dropped all the same",
                     QuotedList(unused)));
  }
  return design;
}

void FitCommand::Prepare(Dataset& /*data*/) {}

void FitCommand::Run() {
  CheckOptions();
  const RecordLayout layout(Columns());
  const EffectBuilder builder(layout);
  const ModelDesign design = Design(builder);
  const MissingCells missing{ParseNames(fMissing, "--missing")};

  if (fPmml) CheckPmmlDesign(design);

  CsvReader reader(fData);
  std::optional<Prediction> prediction;
  if (fPredict) prediction.emplace(*fPredict, *fOut, layout, missing);
  std::optional<OutputFile> pmml;
  if (fPmml) pmml.emplace(*fPmml);

  ProgressLine progress(stderr);
  Dataset data(reader, layout, missing, progress);
  Prepare(data);
  if (prediction) prediction->SetColumns(ScoreColumns(data));
  const std::unique_ptr<FittedModel> model = Fit(data, design, progress);
  for (const std::string& warning : model->Warnings()) Note(warning);
  PrintResults(model->Report(fDigits));
  if (pmml) {
    WriteRegressionPmml(*model, missing, *pmml);
    pmml->Commit();
  }
  if (prediction) prediction->Run(*model, progress);
}

}  // namespace mcfit
