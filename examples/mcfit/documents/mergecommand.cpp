// SPDX-License-Identifier: Apache-2.0
#include "documents/mergecommand.h"

#include "documents/splitmerge.h"
#include "effectparser.h"
#include "errors.h"
#include "inputfile.h"
#include "outputfile.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace mcfit {

namespace {

/// What one `--split` says.
struct Split {
  std::vector<std::string> names;
  std::vector<std::string> values;
};

[[noreturn]] void Fail(const std::string& split, const std::string& message) {
  throw InputError(fmt::format("--split {}: {}", Quoted(split), message));
}

Split ParseSplit(const std::string& text) {
  Split split;
  for (const std::string& item : ParseNames(text, "--split")) {
    const std::size_t equal = item.find('=');
    if (equal == 0 || equal == std::string::npos || equal + 1 == item.size()) {
      Fail(text, "write column=value, with commas between several");
    }
    const std::string name = item.substr(0, equal);
    if (std::count(split.names.begin(), split.names.end(), name) > 0) {
      Fail(text, fmt::format("column {} stands more than once", Quoted(name)));
    }
    split.names.push_back(name);
    split.values.push_back(item.substr(equal + 1));
  }
  return split;
}

// The values in the order of the names.
std::vector<std::string> ValuesOf(const std::string& text, const std::vector<std::string>& names) {
  const Split split = ParseSplit(text);
  std::vector<std::string> values;
  for (const std::string& name : names) {
    const auto found = std::find(split.names.begin(), split.names.end(), name);
    if (found == split.names.end() || split.names.size() != names.size()) {
      Fail(text, fmt::format("the first --split names {}, and each has to", QuotedList(names)));
    }
    values.push_back(split.values[static_cast<std::size_t>(found - split.names.begin())]);
  }
  return values;
}

}  // namespace

MergeCommand::MergeCommand(CLI::App& app)
    : fpApp(app.add_subcommand("merge",
                               "Merge the PMML files of models built on parts of a split "
                               "into one document")) {
  fpApp->add_option("out", fOut, "File that gets the merged document")->required();
  fpApp
      ->add_option("--split", fSplits,
                   "Split values of the next file: region=north,year=2025; once before each")
      ->required()
      ->type_size(1)
      ->allow_extra_args(false);
  fpApp->add_option("files", fFiles, "PMML files, as many as there are --split")->required();
}

void MergeCommand::Run() {
  if (fSplits.size() != fFiles.size()) {
    throw InputError(fmt::format("there are {} files and {} --split: each file needs one",
                                 fFiles.size(), fSplits.size()));
  }
  OutputPaths paths;
  for (const std::string& file : fFiles) {
    RequireReadable(file);
    paths.AddInput(file);
  }
  paths.AddOutput("out", fOut);
  const std::vector<std::string> names = ParseSplit(fSplits[0]).names;
  if (names.empty()) Fail(fSplits[0], "write column=value, with commas between several");
  std::vector<SplitModel> models;
  std::set<std::vector<std::string>> combinations;
  for (std::size_t i = 0; i < fFiles.size(); ++i) {
    models.push_back({ValuesOf(fSplits[i], names), fFiles[i]});
    RequireXmlTexts(names, models[i].values);
    if (!combinations.insert(models[i].values).second) {
      Fail(fSplits[i], "an earlier file has these values, and no row would come to this one");
    }
  }
  OutputFile out(fOut);
  MergeModels(names, models, out);
  PrintResults(MergedText(models.size(), fOut));
}

}  // namespace mcfit
