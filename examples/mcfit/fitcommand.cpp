// SPDX-License-Identifier: Apache-2.0
#include "fitcommand.h"

#include "effectparser.h"
#include "fitrun.h"

namespace mcfit {

void DeclareResultOptions(CLI::App& command, FitRequest& request) {
  CLI::Option* predict = command.add_option("--predict", request.predict, "CSV file to be scored");
  CLI::Option* out = command.add_option("--out", request.out, "File that gets the scored rows");
  command.add_option("--pmml", request.pmml, "File that gets the model as PMML 3.2");
  predict->needs(out);
  out->needs(predict);
}

FitCommand::FitCommand(CLI::App& app, const char* name, const char* description)
    : fpApp(app.add_subcommand(name, description)) {
  fpApp->add_option("data", fRequest.data, "CSV file with a header line; - for the standard input")
      ->required();
  DeclareModelOptions();
  DeclareOtherOptions();
}

void FitCommand::DeclareModelOptions() {
  ModelColumns& columns = fRequest.columns;
  fpApp->add_option("--dependent", columns.dependent, "Column of the dependent variable")
      ->required();
  fpApp->add_option("--factors", fFactors, "Columns with categories: a,b");
  fpApp->add_option("--covariates", fCovariates, "Columns with numbers: x1,x2");
  fpApp->add_option("--effects", fEffects,
                    "Terms of the model: 'a, b, a*b, x1, x1^2, b(a)'; all main effects by default");
  fpApp->add_option("--freq", columns.frequency,
                    "Column that tells how many cases a row stands for");
  fpApp->add_option("--weight", columns.weight, "Column of regression weights");
  fpApp->add_flag("--no-intercept", fbNoIntercept, "Leave out the intercept");
  fpApp->add_option("--tolerance", fRequest.tolerance,
                    "A column is redundant if less than this share of it is left after the columns "
                    "before it; 1e-12 by default");
}

void FitCommand::DeclareOtherOptions() {
  fpApp->add_option("--missing", fMissing,
                    "Texts that mean a missing value beside the empty cell: NA,.");
  fpApp->add_option("--digits", fRequest.digits,
                    "Significant digits in tables, 1 to 17; 7 by default");
  DeclareResultOptions(*fpApp, fRequest);
}

FitRequest FitCommand::Request() const {
  FitRequest request = fRequest;
  request.columns.factors = ParseNames(fFactors, "--factors");
  request.columns.covariates = ParseNames(fCovariates, "--covariates");
  if (fEffects) request.effects = ParseEffects(*fEffects);
  request.hasIntercept = !fbNoIntercept;
  request.missing.texts = ParseNames(fMissing, "--missing");
  return request;
}

void FitCommand::Run() {
  const std::unique_ptr<RegressionKind> kind = Kind();
  RunFit(Request(), *kind);
}

}  // namespace mcfit
