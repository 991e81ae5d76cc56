// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "progressline.h"
#include "recordlayout.h"
#include "rowencoder.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace mcfit {

/// The rows with one combination of values of the split columns.
struct SplitPart {
  std::vector<std::string> values;
  std::string path;  ///< CSV file of these rows, with the columns that the model uses
  std::int64_t rows = 0;
};

/// A folder in the TemporaryFolder() that goes with this object and all that is in it.
class WorkFolder {
public:
  WorkFolder();
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::string& Path() const { return fPath; }

private:
  std::string fPath;
};

/// The rows of a CSV file, sorted by the values of some columns into a file for each combination
/// that occurs. The files stand in a temporary folder, which goes with this object.
class SplitRows {
public:
  /// More combinations than this are taken for a mistake.
  static constexpr std::size_t kMostParts = 10000;

  /// Reads the file through. Throws InputError for a column that isn't there, a cell that the model
  /// can't use, and too many combinations. Arguments are borrowed for the call.
  SplitRows(CsvReader& reader, const std::vector<std::string>& by, const RecordLayout& layout,
            const MissingCells& missing, ProgressLine& progress);

  /// In the order of their values: of each column numbers first, by value, then words.
  const std::vector<SplitPart>& Parts() const { return fParts; }

  std::int64_t Rows() const { return fNRows; }

  /// Rows without a value of the split columns: each counts for the first that it lacks.
  const std::vector<std::int64_t>& Missing() const { return fMissing; }

private:
  using Codes = std::vector<int>;

  void AddRow(const CsvReader& reader, const MissingCells& missing);
  bool ReadCodes(const CsvReader& reader, const MissingCells& missing);
  std::size_t FindPart(const CsvReader& reader);
  void Flush();
  void SortParts();

  WorkFolder fFolder;
  std::vector<std::size_t> fSplitColumns;  // in the file
  std::vector<std::size_t> fUsedColumns;
  std::string fHeader;
  std::vector<LabelTable> fLabels;  // of the split columns
  Codes fCodes;                     // of the row being read
  std::map<Codes, std::size_t> fPlaces;
  std::vector<SplitPart> fParts;
  std::vector<std::string> fPending;  // of each part, not yet in its file
  std::size_t fNPending = 0;          // bytes
  std::vector<std::int64_t> fMissing;
  std::int64_t fNRows = 0;
};

}  // namespace mcfit
