// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "progressline.h"
#include "regression/frame/record.h"
#include "rowfile.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace mcfit {

/// How a column is to be read.
enum class Reading {
  kDecide,   ///< numbers if all of its cells are, else texts
  kNumbers,  ///< numbers, and any other cell is a mistake
  kTexts     ///< all cells are kept as texts, too, however many
};

/// One column of a file that is read without knowing what it holds: how it is to be read, and what
/// was found.
struct ScannedColumn {
  bool IsMissingText(std::string_view cell) const;

  std::string name;
  Reading reading = Reading::kDecide;
  std::vector<std::string> missing;  ///< texts that mean a missing value, beside the empty cell

  // What the cells that aren't missing are.
  bool hasValues = false;
  bool isNumeric = true;
  bool isWhole = true;  ///< if numeric: whole numbers, exactly held
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();
  LabelTable texts;  ///< all different cells, missing ones included
  bool hasTexts = true;
};

/// What one cell holds.
struct ScannedCell {
  double number;            ///< the missing value if it isn't a number
  const std::string* text;  ///< null for an empty cell, or where no texts were kept
};

/// The rows of a CSV file, read before it is known what their columns mean. Each cell is kept in a
/// temporary file as a number and as the code of its text, so that what the columns turn out to be
/// can be looked at a second time.
class TableScan {
public:
  /// A column of numbers that has more different ones than this keeps no texts: a cell behind them
  /// that isn't a number is then a mistake.
  static constexpr int kMostNumberTexts = 100000;

  /// Reads these columns of the file through. Throws InputError for one that the file doesn't have,
  /// and for a cell that can't be what its column is. Arguments are borrowed for the call.
  TableScan(CsvReader& reader, std::vector<ScannedColumn> columns, ProgressLine& progress);

  const std::vector<ScannedColumn>& Columns() const { return fColumns; }
  std::int64_t Rows() const { return fNRows; }

  /// Hands out the rows, one cell for each column. To be called once.
  void Visit(ProgressLine& progress,
             const std::function<void(const std::vector<ScannedCell>&)>& visit);

private:
  void ScanCell(const CsvReader& reader, std::size_t source, ScannedColumn& column);
  ScannedCell CellOf(const MCCommon::Record& record, std::size_t column) const;

  std::vector<ScannedColumn> fColumns;
  std::vector<double> fRow;  // for each column the number, then the code of the text or -1
  RowFile fFile;
  std::int64_t fNRows = 0;
};

}  // namespace mcfit
