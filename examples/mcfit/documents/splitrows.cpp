// SPDX-License-Identifier: Apache-2.0
#include "documents/splitrows.h"

#include "csvtext.h"
#include "errors.h"
#include "interrupt.h"
#include "temporaryfolder.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

namespace mcfit {

namespace {

// Files are opened, appended to and closed, as there may be more than a process may hold open.
constexpr std::size_t kMostPending = std::size_t{16} << 20U;

std::string MakeFolder() {
  std::string path = TemporaryFolder() + "/mcfit-split-XXXXXX";
  if (mkdtemp(path.data()) == nullptr) FailInTemporaryFolder("make a folder for the parts");
  return path;
}

void AddCell(std::string& lines, std::string_view cell) {
  if (!lines.empty() && lines.back() != '\n') lines += ',';
  AppendQuotedCell(lines, cell);
}

}  // namespace

WorkFolder::WorkFolder() : fPath(MakeFolder()) {}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(fPath, ignored);
}

SplitRows::SplitRows(CsvReader& reader, const std::vector<std::string>& by,
                     const RecordLayout& layout, const MissingCells& missing,
                     ProgressLine& progress)
    : fLabels(by.size()), fCodes(by.size()), fMissing(by.size(), 0) {
  for (const std::string& name : by) fSplitColumns.push_back(reader.ColumnIndex(name));
  for (const RecordLayout::Column& column : layout.Columns()) {
    fUsedColumns.push_back(reader.ColumnIndex(column.name));
    AddCell(fHeader, column.name);
  }
  fHeader += '\n';
  // Finds cells that can't be used here, where file and line are known.
  RowEncoder encoder(
      reader, layout,
      {Role::kDependent, Role::kFactor, Role::kCovariate, Role::kFrequency, Role::kWeight},
      missing);
  std::vector<double> record;
  std::vector<LabelTable> labels(layout.LabelledPositions().size());
  while (reader.NextRow()) {
    StopIfInterrupted();
    encoder.Encode(record, labels);
    AddRow(reader, missing);
    if (progress.IsDue()) {
      progress.Show(fmt::format("splitting {}: {} rows", reader.Name(), fNRows));
    }
  }
  progress.Erase();
  Flush();
  SortParts();
}

void SplitRows::AddRow(const CsvReader& reader, const MissingCells& missing) {
  ++fNRows;
  if (!ReadCodes(reader, missing)) return;
  const std::size_t part = FindPart(reader);
  ++fParts[part].rows;
  std::string& text = fPending[part];
  const std::size_t before = text.size();
  for (const std::size_t column : fUsedColumns) AddCell(text, reader.Cell(column));
  text += '\n';
  fNPending += text.size() - before;
  if (fNPending > kMostPending) Flush();
}

bool SplitRows::ReadCodes(const CsvReader& reader, const MissingCells& missing) {
  for (std::size_t i = 0; i < fSplitColumns.size(); ++i) {
    const std::string_view cell = reader.Cell(fSplitColumns[i]);
    if (missing.Contain(cell)) {
      ++fMissing[i];
      return false;
    }
    fCodes[i] = fLabels[i].Add(cell);
  }
  return true;
}

std::size_t SplitRows::FindPart(const CsvReader& reader) {
  const auto [place, isNew] = fPlaces.try_emplace(fCodes, fParts.size());
  if (!isNew) return place->second;
  if (fParts.size() == kMostParts) {
    throw InputError(fmt::format("{}: the split columns have more than {} combinations of values",
                                 reader.Name(), kMostParts));
  }
  SplitPart part;
  for (std::size_t i = 0; i < fCodes.size(); ++i) {
    part.values.push_back(fLabels[i].Label(fCodes[i]));
  }
  part.path = fmt::format("{}/{}.csv", fFolder.Path(), fParts.size());
  fParts.push_back(std::move(part));
  fPending.push_back(fHeader);
  return place->second;
}

void SplitRows::Flush() {
  for (std::size_t i = 0; i < fParts.size(); ++i) {
    if (fPending[i].empty()) continue;
    std::ofstream file(fParts[i].path, std::ios::binary | std::ios::app);
    file << fPending[i];
    if (!file.flush()) FailInTemporaryFolder("write the rows of a part");
    fPending[i].clear();
  }
  fNPending = 0;
}

void SplitRows::SortParts() {
  std::vector<std::vector<int>> newCodes;
  for (LabelTable& labels : fLabels) newCodes.push_back(labels.Sort());
  std::map<Codes, std::size_t> places;
  for (const auto& [codes, place] : fPlaces) {
    Codes sorted;
    for (std::size_t i = 0; i < codes.size(); ++i) {
      sorted.push_back(newCodes[i][static_cast<std::size_t>(codes[i])]);
    }
    places.emplace(std::move(sorted), place);
  }
  std::vector<SplitPart> parts;
  parts.reserve(places.size());
  for (const auto& [codes, place] : places) parts.push_back(std::move(fParts[place]));
  fParts = std::move(parts);
}

}  // namespace mcfit
