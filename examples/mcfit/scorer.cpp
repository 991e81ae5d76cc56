// SPDX-License-Identifier: Apache-2.0
#include "scorer.h"

#include "csvtext.h"
#include "errors.h"
#include "interrupt.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace mcfit {

namespace {

// Appends the cells and ends the line.
void FinishLine(std::string& line, const std::vector<std::string>& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += ',';
    AppendCell(line, cells[i]);
  }
  line += '\n';
}

}  // namespace

Scorer::Scorer(CsvReader& reader, const RecordLayout& layout, const MissingCells& missing)
    : fReader(reader),
      fEncoder(reader, layout, {Role::kFactor, Role::kCovariate}, missing),
      fRecord(layout.Width()) {}

void Scorer::SetColumns(const std::vector<std::string>& columns) {
  const std::vector<std::string>& header = fReader.Header();
  for (const std::string& column : columns) {
    if (std::find(header.begin(), header.end(), column) != header.end()) {
      throw InputError(
          fmt::format("{}: there is a column {} already", fReader.Name(), Quoted(column)));
    }
  }
  fColumns = columns;
}

ScoreCounts Scorer::Run(const FittedModel& model, OutputFile& out, ProgressLine& progress) {
  std::string line;
  for (const std::string& name : fReader.Header()) {
    AppendCell(line, name);
    line += ',';
  }
  FinishLine(line, fColumns);
  out.Write(line);

  ScoreCounts counts;
  while (fReader.NextRow()) {
    StopIfInterrupted();
    if (!ScoreRow(model, counts)) fScores.assign(fColumns.size(), {});
    line.clear();
    for (std::size_t i = 0; i < fReader.Header().size(); ++i) {
      AppendCell(line, fReader.Cell(i));
      line += ',';
    }
    FinishLine(line, fScores);
    out.Write(line);
    if (progress.IsDue()) progress.Show(fmt::format("scoring: {} rows", counts.read));
  }
  progress.Erase();
  return counts;
}

bool Scorer::ScoreRow(const FittedModel& model, ScoreCounts& counts) {
  ++counts.read;
  if (fEncoder.EncodeKnown(fValues, model.Data().Labels()) >= 0) {
    ++counts.unknownLabel;
    return false;
  }
  std::copy(fValues.begin(), fValues.end(), fRecord.GetAll());
  MCCommon::MCStatus status;
  if (!model.Results().GetRecordValidator().IsValid4Scoring(fRecord, status)) {
    ++counts.missing;
    return false;
  }
  const bool isScored = model.Score(fRecord, fScores);
  ++(isScored ? counts.scored : counts.unknownCombination);
  return isScored;
}

std::string ScoreText(const ScoreCounts& counts, const std::string& path) {
  std::string text = fmt::format("Scored {} of {} rows, written to {}\n", counts.scored,
                                 counts.read, Printable(path));
  const auto add = [&text](std::int64_t count, const char* reason) {
    if (count > 0) text += fmt::format("  {:>10}  {}\n", count, reason);
  };
  add(counts.missing, "a factor or covariate is missing");
  add(counts.unknownLabel, "a factor has a label that the fit has not seen");
  add(counts.unknownCombination, "the factors have a combination that the fit has not seen");
  return text;
}

}  // namespace mcfit
