// SPDX-License-Identifier: Apache-2.0
#include "fitrun.h"

#include "csvreader.h"
#include "dataset.h"
#include "effectbuilder.h"
#include "errors.h"
#include "note.h"
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

void CheckFiles(const FitRequest& request) {
  if (request.predict && request.data == "-" && *request.predict == "-") {
    throw InputError("the data and --predict can't both be the standard input");
  }
  OutputPaths paths;
  paths.AddInput(request.data);
  if (request.predict) paths.AddInput(*request.predict);
  if (request.settings) paths.AddInput(*request.settings);
  if (request.out) paths.AddOutput("--out", *request.out);
  if (request.pmml) paths.AddOutput("--pmml", *request.pmml);
}

void CheckOptions(const FitRequest& request) {
  // Written so that NaN is refused.
  if (!(request.tolerance > 0.0 && request.tolerance < 1.0)) {
    throw InputError(request.names("tolerance") + " must lie between 0 and 1");
  }
  if (!(request.style.confidence > 0.0 && request.style.confidence < 100.0)) {
    throw InputError(fmt::format("{} must lie between 0 and 100", request.names("confidence")));
  }
  if (request.style.digits < 1 || request.style.digits > kMostDigits) {
    throw InputError(
        fmt::format("{} must lie between 1 and {}", request.names("digits"), kMostDigits));
  }
  CheckFiles(request);
}

ModelDesign Design(const FitRequest& request, const EffectBuilder& builder) {
  ModelDesign design;
  design.effects = request.effects ? builder.BuildAll(*request.effects) : builder.MainEffects();
  design.hasIntercept = request.hasIntercept;
  design.tolerance = request.tolerance;
  if (request.pmml) CheckPmmlDesign(design);
  return design;
}

void NoteUnused(const ModelDesign& design, const EffectBuilder& builder) {
  const std::vector<std::string> unused = builder.Unused(design.effects);
  if (unused.empty()) return;
  Note(fmt::format("note: no effect uses {}; rows where it is missing are dropped all the same",
                   QuotedList(unused)));
}

void NoteUndeclaredCells(const Dataset& data) {
  for (int i = 0; i < data.Layout().Width(); ++i) {
    const UndeclaredCells& cells = data.Undeclared()[static_cast<std::size_t>(i)];
    if (cells.count == 0) continue;
    const bool isOne = cells.count == 1;
    Note(fmt::format("note: column {}: {} {} what isn't declared, such as {}, and {} as missing",
                     Quoted(data.Layout().At(i).name), cells.count,
                     isOne ? "cell holds" : "cells hold", Quoted(cells.first),
                     isOne ? "counts" : "count"));
  }
}

ModelColumns Columns(const FitRequest& request, const RegressionKind& kind) {
  ModelColumns columns = request.columns;
  columns.dependentHasLabels = kind.DependentHasLabels();
  return columns;
}

}  // namespace

void CheckFit(const FitRequest& request, const RegressionKind& kind) {
  CheckOptions(request);
  kind.CheckOptions(request.names);
  const RecordLayout layout(Columns(request, kind));
  Design(request, EffectBuilder(layout));
}

void RunFit(const FitRequest& request, RegressionKind& kind) {
  CheckOptions(request);
  kind.CheckOptions(request.names);
  const RecordLayout layout(Columns(request, kind));
  const EffectBuilder builder(layout);
  const ModelDesign design = Design(request, builder);
  NoteUnused(design, builder);

  CsvReader reader(request.data);
  std::optional<Prediction> prediction;
  if (request.predict) prediction.emplace(*request.predict, *request.out, layout, request.missing);
  std::optional<OutputFile> pmml;
  if (request.pmml) pmml.emplace(*request.pmml);

  ProgressLine progress(stderr);
  Dataset data(reader, layout, request.missing, progress);
  NoteUndeclaredCells(data);
  kind.Prepare(data, request.names);
  if (prediction) prediction->SetColumns(kind.ScoreColumns(data));
  const std::unique_ptr<FittedModel> model = kind.Fit(data, design, request.style.digits, progress);
  for (const std::string& warning : model->Warnings()) Note(warning);
  PrintResults(model->Report(request.style));
  if (pmml) {
    WriteRegressionPmml(*model, request.missing, *pmml);
    pmml->Commit();
  }
  if (prediction) prediction->Run(*model, progress);
}

}  // namespace mcfit
