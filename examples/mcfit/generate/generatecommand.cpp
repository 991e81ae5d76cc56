// SPDX-License-Identifier: Apache-2.0
#include "generate/generatecommand.h"

#include "errors.h"
#include "generate/rowgenerator.h"
#include "interrupt.h"
#include "outputfile.h"
#include "progressline.h"

#include <fmt/format.h>

#include <cstdio>
#include <string_view>

namespace mcfit {

namespace {

// Doubles tell all seeds up to here apart.
constexpr std::int64_t kHighestSeed = std::int64_t{1} << 53U;

// Bytes that are written at once.
constexpr std::size_t kBlock = std::size_t{1} << 16U;

}  // namespace

GenerateCommand::GenerateCommand(CLI::App& app)
    : fpApp(app.add_subcommand("generate", "Make a data set from known coefficients")) {
  fpApp->add_option("kind", fTexts.kind, "Of the regression: linear or logistic")
      ->required()
      ->check(CLI::IsMember({"linear", "logistic"}));
  fpApp->add_option("out", fOut, "CSV file to make; - for the standard output")->required();
  fpApp->add_option("--rows", fRows, "How many rows")->required();
  fpApp->add_option("--seed", fSeed, "Another seed gives other rows; 1 by default");
  DeclareColumns();
  DeclareModel();
}

void GenerateCommand::DeclareColumns() {
  fpApp->add_option("--dependent", fTexts.dependent, "Name of the dependent column")->required();
  fpApp->add_option("--factors", fTexts.factors,
                    "Columns of equally likely labels: 'a(low, high), b(1, 2, 3)'");
  fpApp->add_option("--covariates", fTexts.covariates,
                    "Columns of evenly spread numbers: 'x1(0:10), x2(-1:1)'");
  fpApp->add_option("--normal", fTexts.normal,
                    "Columns of normal numbers, with mean and standard deviation: 'x3(100, 15)'");
  fpApp->add_option("--freq", fTexts.frequency,
                    "Column of evenly spread whole numbers, the cases of a row: 'n(1:4)'");
  fpApp->add_option("--empty", fTexts.empty,
                    "Combinations of labels that no row has: 'a=low * b=2'");
  fpApp->add_option("--missing", fTexts.missing, "Shares of empty cells: 'x1=0.01, a=0.005'");
  fpApp->add_option("--decimals", fTexts.decimals,
                    "Digits behind the point of numbers, 0 to 15; 4 by default");
}

void GenerateCommand::DeclareModel() {
  fpApp
      ->add_option("--coefficients", fTexts.coefficients,
                   "Parameters as tables name them: '(Intercept)=2, x1=0.5, a=low * b=2=-1'; for "
                   "logistic once for each category but the reference: 'late: x1=0.5'")
      ->required()
      ->allow_extra_args(false);
  fpApp->add_option("--deviation", fTexts.deviation,
                    "Standard deviation of the errors of linear; 1 by default");
  fpApp->add_option("--categories", fTexts.categories,
                    "Of the dependent of logistic, the reference first: 'on time, early, late'");
}

void GenerateCommand::CheckSize() const {
  if (fRows < 0) throw InputError("--rows must not be negative");
  if (fSeed < 0 || fSeed > kHighestSeed) throw InputError("--seed must be from 0 to 2^53");
}

void GenerateCommand::Run() {
  CheckSize();
  const DataDesign design = MakeDesign(fTexts);
  if (fOut == "-") return WriteRows(design, PrintResults);
  OutputFile out(fOut);
  WriteRows(design, [&out](std::string_view text) { out.Write(text); });
  out.Commit();
}

template <typename Write>
void GenerateCommand::WriteRows(const DataDesign& design, Write write) const {
  RowGenerator generator(design, static_cast<std::uint64_t>(fSeed));
  ProgressLine progress(stderr);
  std::string text;
  generator.AppendHeader(text);
  for (std::int64_t row = 0; row < fRows; ++row) {
    StopIfInterrupted();
    generator.AppendRow(text);
    if (text.size() >= kBlock) {
      write(text);
      text.clear();
    }
    if (progress.IsDue()) progress.Show(fmt::format("generating: {} of {} rows", row, fRows));
  }
  write(text);
  progress.Erase();
}

}  // namespace mcfit
