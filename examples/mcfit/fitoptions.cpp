// SPDX-License-Identifier: Apache-2.0
#include "fitoptions.h"

#include "effectparser.h"

namespace mcfit {

void DeclareResultOptions(CLI::App& command, FitRequest& request) {
  CLI::Option* predict = command.add_option("--predict", request.predict, "CSV file to be scored");
  CLI::Option* out = command.add_option("--out", request.out, "File that gets the scored rows");
  command.add_option("--pmml", request.pmml, "File that gets the model as PMML 3.2");
  predict->needs(out);
  out->needs(predict);
}

FitOptions::FitOptions(CLI::App& command) {
  command
      .add_option("data", fRequest.data, "CSV file with a header line; - for the standard input")
      ->required();
  DeclareModel(command);
  DeclareOther(command);
}

void FitOptions::DeclareModel(CLI::App& command) {
  ModelColumns& columns = fRequest.columns;
  command.add_option("--dependent", columns.dependent, "Column of the dependent variable")
      ->required();
  command.add_option("--factors", fFactors, "Columns with categories: a,b");
  command.add_option("--covariates", fCovariates, "Columns with numbers: x1,x2");
  command.add_option(
      "--effects", fEffects,
      "Terms of the model: 'a, b, a*b, x1, x1^2, b(a)'; all main effects by default");
  command.add_option("--freq", columns.frequency,
                     "Column that tells how many cases a row stands for");
  command.add_option("--weight", columns.weight, "Column of regression weights");
  command.add_flag("--no-intercept", fbNoIntercept, "Leave out the intercept");
  command.add_option("--tolerance", fRequest.tolerance,
                     "A column is redundant if less than this share of it is left after the "
                     "columns before it; 1e-12 by default");
}

void FitOptions::DeclareOther(CLI::App& command) {
  command.add_option("--missing", fMissing,
                     "Texts that mean a missing value beside the empty cell: NA,.");
  command.add_option("--confidence", fRequest.style.confidence,
                     "Confidence of the limits of estimates in percent; 95 by default");
  command.add_option("--digits", fRequest.style.digits,
                     "Significant digits in tables, 1 to 17; 7 by default");
}

FitRequest FitOptions::Request() const {
  FitRequest request = fRequest;
  request.columns.factors = ParseNames(fFactors, "--factors");
  request.columns.covariates = ParseNames(fCovariates, "--covariates");
  if (fEffects) request.effects = ParseEffects(*fEffects);
  request.hasIntercept = !fbNoIntercept;
  request.missing.texts = ParseNames(fMissing, "--missing");
  return request;
}

}  // namespace mcfit
