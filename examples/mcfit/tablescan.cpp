// SPDX-License-Identifier: Apache-2.0
#include "tablescan.h"

#include "errors.h"
#include "interrupt.h"
#include "regression/frame/binaryrecorditerator.h"
#include "regression/frame/mcmv.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace mcfit {

namespace {

// Beyond it, a double doesn't tell a whole number from its neighbours.
constexpr double kMostWhole = 9007199254740992.0;

bool IsWhole(double number) {
  return std::floor(number) == number && std::abs(number) <= kMostWhole;
}

}  // namespace

bool ScannedColumn::IsMissingText(std::string_view cell) const {
  return std::find(missing.begin(), missing.end(), cell) != missing.end();
}

TableScan::TableScan(CsvReader& reader, std::vector<ScannedColumn> columns, ProgressLine& progress)
    : fColumns(std::move(columns)) {
  std::vector<std::size_t> sources;
  for (ScannedColumn& column : fColumns) {
    sources.push_back(reader.ColumnIndex(column.name));
    column.hasTexts = column.reading != Reading::kNumbers;
  }
  while (reader.NextRow()) {
    StopIfInterrupted();
    fRow.clear();
    for (std::size_t i = 0; i < sources.size(); ++i) ScanCell(reader, sources[i], fColumns[i]);
    fFile.Append(fRow);
    ++fNRows;
    if (progress.IsDue()) {
      progress.Show(fmt::format("reading {}: {} rows", reader.Name(), fNRows));
    }
  }
}

void TableScan::ScanCell(const CsvReader& reader, std::size_t source, ScannedColumn& column) {
  const std::string_view cell = reader.Cell(source);
  const std::optional<double> number = ParseNumber(cell);
  const bool isValue = !cell.empty() && !column.IsMissingText(cell);
  if (isValue && !number && !column.hasTexts) {
    reader.FailAtCell(source, column.reading == Reading::kNumbers
                                  ? Quoted(cell) + " is not a finite number"
                                  : fmt::format("{} is not a number, as more than {} different "
                                                "cells before it are",
                                                Quoted(cell), kMostNumberTexts));
  }
  if (isValue) {
    column.hasValues = true;
    column.isNumeric = column.isNumeric && number;
    column.isWhole = column.isWhole && number && IsWhole(*number);
    column.low = std::min(column.low, number.value_or(column.low));
    column.high = std::max(column.high, number.value_or(column.high));
  }
  int code = -1;
  if (column.hasTexts && !cell.empty()) {
    code = column.texts.Add(cell);
    if (code < 0) reader.FailAtCell(source, TooManyLabelsText());
    if (column.reading == Reading::kDecide && column.isNumeric &&
        column.texts.Size() > kMostNumberTexts) {
      column.texts = LabelTable();
      column.hasTexts = false;
    }
  }
  fRow.push_back(number.value_or(MCMV::gMissingValue));
  fRow.push_back(code);
}

ScannedCell TableScan::CellOf(const MCCommon::Record& record, std::size_t column) const {
  const int position = 2 * static_cast<int>(column);
  const int code = static_cast<int>(record[position + 1]);
  const bool hasText = fColumns[column].hasTexts && code >= 0;
  return {record[position], hasText ? &fColumns[column].texts.Label(code) : nullptr};
}

void TableScan::Visit(ProgressLine& progress,
                      const std::function<void(const std::vector<ScannedCell>&)>& visit) {
  const int width = 2 * static_cast<int>(fColumns.size());
  MCCommon::BinaryRecordIterator rows(fFile.Rewind(), width);
  std::vector<ScannedCell> cells(fColumns.size());
  std::int64_t row = 0;
  while (rows.HasMore()) {
    StopIfInterrupted();
    const MCCommon::Record* record = rows.Next();
    if (record == nullptr) break;
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = CellOf(*record, i);
    visit(cells);
    ++row;
    if (progress.IsDue()) progress.Show(fmt::format("describing: row {} of {}", row, fNRows));
  }
  progress.Erase();
  if (row != fNRows) throw InputError("the temporary row file could not be read back");
}

}  // namespace mcfit
