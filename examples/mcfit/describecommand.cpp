// SPDX-License-Identifier: Apache-2.0
#include "describecommand.h"

#include "csvreader.h"
#include "effectparser.h"
#include "errors.h"
#include "note.h"
#include "outputfile.h"
#include "progressline.h"
#include "tablescan.h"
#include "text.h"
#include "variablestats.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <utility>

namespace mcfit {

namespace {

constexpr int kMostBins = 10000;

// What stands before and behind the first "=".
std::pair<std::string, std::string> Assignment(const std::string& text, const char* option) {
  const std::size_t equal = text.find('=');
  if (equal == 0 || equal == std::string::npos) {
    throw InputError(fmt::format("{} {}: write column=value", option, Quoted(text)));
  }
  return {text.substr(0, equal), text.substr(equal + 1)};
}

int BinCount(const std::string& text) {
  int bins = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bins);
  if (error != std::errc() || end != text.data() + text.size() || bins < 2 || bins > kMostBins) {
    throw InputError(
        fmt::format("--bins: {} is no whole number from 2 to {}", Quoted(text), kMostBins));
  }
  return bins;
}

}  // namespace

DescribeCommand::DescribeCommand(CLI::App& app)
    : fpApp(app.add_subcommand("describe", "Describe the columns of a CSV file")) {
  fpApp->add_option("data", fData, "CSV file with a header line; - for the standard input");
  fpApp->add_option("--pmml", fPmml, "File that gets dictionary and statistics as PMML 3.2");
  fpApp->add_option("--save", fSave, "File that gets the list of variables");
  CLI::Option* load = fpApp->add_option(
      "--load", fLoad, "List of variables, as --save wrote it, in place of all decisions");
  CLI::Option* decisions[] = {
      fpApp->add_option("--categorical", fCategorical, "Columns with categories: a,b"),
      fpApp->add_option("--continuous", fContinuous, "Columns with numbers: x1,x2"),
      fpApp->add_option("--weight", fWeight, "Column that tells how many cases a row stands for"),
      fpApp->add_option("--bins", fBins, "Bins of equal width for a column: x=10; once for each")};
  for (CLI::Option* decision : decisions) load->excludes(decision);
  fpApp->add_option("--missing", fMissing,
                    "A value that is missing, beside the empty cell: x=-99; once for each");
}

void DescribeCommand::CheckOptions() const {
  if (!fData && !fLoad) throw InputError("describe needs a CSV file, or --load a list");
  if (!fData && fPmml) throw InputError("--pmml needs a CSV file to describe");
  OutputPaths paths;
  if (fData) paths.AddInput(*fData);
  if (fLoad) paths.AddInput(*fLoad);
  if (fPmml) paths.AddOutput("--pmml", *fPmml);
  if (fSave) paths.AddOutput("--save", *fSave);
}

ColumnChoices DescribeCommand::Choices() const {
  ColumnChoices choices;
  for (const std::string& name : ParseNames(fCategorical, "--categorical")) {
    choices.categorical.insert(name);
  }
  for (const std::string& name : ParseNames(fContinuous, "--continuous")) {
    choices.continuous.insert(name);
  }
  choices.weight = fWeight;
  for (const std::string& text : fMissing) {
    auto [name, value] = Assignment(text, "--missing");
    choices.missing[name].push_back(value);
  }
  for (const std::string& text : fBins) {
    auto [name, value] = Assignment(text, "--bins");
    choices.bins[name] = BinCount(value);
  }
  return choices;
}

void DescribeCommand::Run() {
  CheckOptions();
  std::optional<MCCommonMetadata::MCVarList> variables;
  if (fLoad) variables = LoadVariables(*fLoad);
  if (fData) return DescribeData(std::move(variables));
  PrintResults(ListText(*variables, *fLoad));
  Save(*variables);
}

void DescribeCommand::DescribeData(std::optional<MCCommonMetadata::MCVarList> variables) {
  const ColumnChoices choices = Choices();
  CsvReader reader(*fData);
  ProgressLine progress(stderr);
  TableScan table(reader,
                  variables ? ColumnsToScan(*variables, choices) : ColumnsToScan(reader, choices),
                  progress);
  if (!variables) variables = MakeVariables(table, choices);
  const TableDescription description(table, *variables, progress);
  if (fPmml) {
    OutputFile out(*fPmml);
    description.WritePmml(*fData, out);
    out.Commit();
  }
  Save(*variables);
  PrintResults(description.Text(*fData));
}

void DescribeCommand::Save(const MCCommonMetadata::MCVarList& variables) {
  if (!fSave) return;
  OutputFile out(*fSave);
  if (!SaveVariables(variables, out)) {
    Note("note: the save format escapes some of the texts and reads them back so");
  }
  out.Commit();
}

}  // namespace mcfit
