// SPDX-License-Identifier: Apache-2.0
#include "documents/splitmerge.h"

#include "errors.h"
#include "interrupt.h"
#include "labeltable.h"
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "metadata/mcvarlist.h"
#include "statustext.h"
#include "text.h"

#include <fmt/format.h>

namespace mcfit {

using MCComXPrsUtil::MCXSplitPMMLCombiner;

namespace {

void RequireXmlText(const std::string& text) {
  if (IsXmlText(text)) return;
  throw InputError(
      fmt::format("XML can't hold the split value {}, which isn't UTF-8 or has control characters",
                  Quoted(text)));
}

std::vector<std::string> ValuesOf(std::size_t variable, const std::vector<SplitModel>& models) {
  LabelTable labels;
  for (const SplitModel& model : models) labels.Add(model.values[variable]);
  labels.Sort();
  std::vector<std::string> values;
  for (int code = 0; code < labels.Size(); ++code) values.push_back(labels.Label(code));
  return values;
}

MCCommonMetadata::MCVarList SplitVariables(const std::vector<std::string>& names,
                                           const std::vector<SplitModel>& models) {
  MCCommonMetadata::MCVarList variables;
  for (std::size_t i = 0; i < names.size(); ++i) {
    variables.AddCatVar(names[i], "", ValuesOf(i, models), MCCommonMetadata::MC_ROLE_INPUT);
  }
  return variables;
}

void Require(const MCCommon::MCStatus& status, const std::string& file,
             const MCXSplitPMMLCombiner& combiner) {
  if (!status.IsError()) return;
  const std::string message = combiner.GetXercesMessage();
  throw InputError(fmt::format("{}: {}", Printable(file),
                               message.empty() ? StatusText(status) : Printable(message)));
}

}  // namespace

std::string CombinationText(const std::vector<std::string>& names,
                            const std::vector<std::string>& values) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += fmt::format("{}{}={}", i == 0 ? "" : ",", names[i], values[i]);
  }
  return text;
}

void RequireXmlTexts(const std::vector<std::string>& names,
                     const std::vector<std::string>& values) {
  for (const std::string& name : names) RequireXmlText(name);
  for (const std::string& value : values) RequireXmlText(value);
}

void MergeModels(const std::vector<std::string>& names, const std::vector<SplitModel>& models,
                 OutputFile& out) {
  MCXSplitPMMLCombiner combiner(SplitVariables(names, models));
  combiner.SetStrict(true);
  for (const SplitModel& model : models) {
    StopIfInterrupted();
    Require(combiner.AddModel(model.path, model.values), model.path, combiner);
  }
  Require(combiner.ExportMiningModel(out.Unfinished()), out.Unfinished(), combiner);
  out.Commit();
}

std::string MergedText(std::size_t models, const std::string& path) {
  return fmt::format("{} {} merged in {}\n", models, models == 1 ? "model" : "models",
                     Printable(path));
}

}  // namespace mcfit
