// SPDX-License-Identifier: Apache-2.0
#include "documents/splitcommand.h"

#include "csvreader.h"
#include "effectparser.h"
#include "errors.h"
#include "fitrun.h"
#include "logisticcommand.h"
#include "note.h"
#include "outputfile.h"
#include "progressline.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace mcfit {

namespace {

// A name that every file system takes: all but letters, digits, a few marks and what isn't ASCII
// stands as %XX.
std::string FileNamePart(const std::string& text) {
  constexpr std::string_view kMarks = "-_+.";
  std::string name;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = byte >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                         (c >= 'A' && c <= 'Z') || kMarks.find(c) != std::string_view::npos;
    name += isPlain ? std::string(1, c) : fmt::format("%{:02X}", byte);
  }
  return name;
}

std::string FileName(const std::vector<std::string>& names,
                     const std::vector<std::string>& values) {
  const auto parts = [](std::vector<std::string> texts) {
    for (std::string& text : texts) text = FileNamePart(text);
    return texts;
  };
  return CombinationText(parts(names), parts(values)) + ".xml";
}

bool IsUsed(const ModelColumns& columns, const std::string& name) {
  const auto has = [&name](const std::vector<std::string>& list) {
    return std::find(list.begin(), list.end(), name) != list.end();
  };
  return columns.dependent == name || columns.frequency == name || columns.weight == name ||
         has(columns.factors) || has(columns.covariates);
}

void MakeFolder(const std::string& path) {
  std::error_code failed;
  std::filesystem::create_directories(path, failed);
  if (!std::filesystem::is_directory(path)) {
    throw InputError(fmt::format("--out-dir: cannot make {}: {}", Quoted(path), failed.message()));
  }
}

std::string HeadText(const std::string& data, const std::vector<std::string>& names,
                     const SplitRows& rows) {
  TextTable table(1);
  table.Add({"Rows read", fmt::format("{}", rows.Rows())});
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (rows.Missing()[i] == 0) continue;
    table.Add({fmt::format("Rows without {}", Printable(names[i])),
               fmt::format("{}", rows.Missing()[i]), "left out"});
  }
  table.Add({"Combinations", fmt::format("{}", rows.Parts().size())});
  return fmt::format("Split of {} by {}\n\n{}", Printable(data), QuotedList(names), table.Text());
}

}  // namespace

SplitCommand::SplitCommand(CLI::App& app)
    : fpApp(app.add_subcommand("split",
                               "Fit one regression for each combination of values of some "
                               "columns, and merge the models")),
      fOptions(*fpApp) {
  fpApp->add_option("--by", fBy, "Columns whose values split the rows: a,b")->required();
  fpApp->add_option("--kind", fKind, "Kind of regression: linear, the default, or logistic")
      ->check(CLI::IsMember({"linear", "logistic"}));
  fpApp->add_option("--out-dir", fOutDir, "Folder that gets the models as PMML 3.2")->required();
  fpApp->add_option("--merged", fMerged,
                    "File that gets the merged document; merged.xml in that folder by default");
  fvLogisticOptions = DeclareLogisticOptions(*fpApp, fLogistic);
}

std::unique_ptr<RegressionKind> SplitCommand::Kind() const {
  if (fKind == "linear") return std::make_unique<LinearKind>();
  return std::make_unique<LogisticKind>(fLogistic);
}

std::string SplitCommand::MergedPath() const {
  return fMerged.value_or(fOutDir + "/merged.xml");
}

void SplitCommand::CheckOptions(const FitRequest& request,
                                const std::vector<std::string>& names) const {
  if (names.empty()) throw InputError("--by names no column");
  OutputPaths paths;
  paths.AddInput(request.data);
  paths.AddOutput("--merged", MergedPath());
  for (const std::string& name : names) {
    if (std::count(names.begin(), names.end(), name) > 1) {
      throw InputError(fmt::format("--by names column {} more than once", Quoted(name)));
    }
    if (IsUsed(request.columns, name)) {
      throw InputError(
          fmt::format("--by: column {} has a role in the model already", Quoted(name)));
    }
  }
  for (const CLI::Option* option : fvLogisticOptions) {
    if (fKind == "linear" && option->count() > 0) {
      throw InputError(option->get_name() + " needs --kind logistic");
    }
  }
  CheckFit(request, *Kind());
}

void SplitCommand::Run() {
  FitRequest request = fOptions.Request();
  request.pmml = MergedPath();
  const std::vector<std::string> names = ParseNames(fBy, "--by");
  CheckOptions(request, names);
  ModelColumns columns = request.columns;
  columns.dependentHasLabels = Kind()->DependentHasLabels();
  const RecordLayout layout(columns);
  CsvReader reader(request.data);
  MakeFolder(fOutDir);
  OutputFile merged(MergedPath());
  ProgressLine progress(stderr);
  const SplitRows rows(reader, names, layout, request.missing, progress);
  PrintResults(HeadText(request.data, names, rows));
  if (rows.Parts().empty()) throw ModelError("no row has a value in every column of --by");
  for (const SplitPart& part : rows.Parts()) CheckPart(request, names, part);

  const std::vector<SplitModel> models = FitParts(request, names, rows);
  if (!models.empty()) {
    MergeModels(names, models, merged);
    PrintResults("\n" + MergedText(models.size(), MergedPath()));
  }
  const std::size_t nFailed = rows.Parts().size() - models.size();
  if (nFailed > 0) {
    throw ModelError(
        fmt::format("{} of {} models could not be built", nFailed, rows.Parts().size()));
  }
}

std::string SplitCommand::PartPath(const std::vector<std::string>& names,
                                   const SplitPart& part) const {
  return fOutDir + "/" + FileName(names, part.values);
}

// What would come up only when the fits are done.
void SplitCommand::CheckPart(const FitRequest& request, const std::vector<std::string>& names,
                             const SplitPart& part) const {
  RequireXmlTexts(names, part.values);
  OutputPaths paths;
  paths.AddInput(request.data);
  paths.AddOutput("--merged", MergedPath());
  paths.AddOutput("--out-dir", PartPath(names, part));
}

std::vector<SplitModel> SplitCommand::FitParts(const FitRequest& request,
                                               const std::vector<std::string>& names,
                                               const SplitRows& rows) const {
  std::vector<SplitModel> models;
  for (const SplitPart& part : rows.Parts()) {
    const std::string combination = CombinationText(names, part.values);
    FitRequest partRequest = request;
    partRequest.pmml = PartPath(names, part);
    if (FitPart(partRequest, combination, part)) models.push_back({part.values, *partRequest.pmml});
  }
  return models;
}

bool SplitCommand::FitPart(FitRequest request, const std::string& combination,
                           const SplitPart& part) const {
  request.data = part.path;
  PrintResults(fmt::format("\n== {}: {} rows\n\n", Printable(combination), part.rows));
  try {
    RunFit(request, *Kind());
    return true;
  } catch (const InputError& error) {
    Note(fmt::format("{}: {}", Printable(combination), error.what()));
  } catch (const ModelError& error) {
    Note(fmt::format("{}: {}", Printable(combination), error.what()));
  }
  return false;
}

}  // namespace mcfit
