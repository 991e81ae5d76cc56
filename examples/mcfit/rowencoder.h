// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "csvreader.h"
#include "labeltable.h"
#include "recordlayout.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mcfit {

/// Which cells mean that a value is missing: empty ones, and those that hold one of these texts.
struct MissingCells {
  std::vector<std::string> texts;

  bool Contain(std::string_view cell) const;
};

/// Cells of one column that its declaration doesn't know.
struct UndeclaredCells {
  std::int64_t count = 0;
  std::string first;
};

/// Turns rows of one CSV file into records of the layout. A missing cell becomes the library's
/// missing value, as does one that the declaration of its column doesn't know; those are counted.
class RowEncoder {
public:
  /// Finds the columns of these roles in the file; throws InputError if one isn't there. Positions
  /// of other roles get the missing value. All arguments are borrowed.
  RowEncoder(const CsvReader& reader, const RecordLayout& layout, const std::vector<Role>& roles,
             const MissingCells& missing);

  /// Encodes the current row; labels that are new get codes, unless the categories of the column
  /// are declared: its codes are then those of the declaration. `labels`: one table per labelled
  /// position of the layout. Throws InputError for a cell that isn't a number where one is needed,
  /// and for too many labels.
  void Encode(std::vector<double>& record, std::vector<LabelTable>& labels);

  /// Encodes the current row against labels that are settled: a label that they don't have becomes
  /// the missing value. Answers the position of the first such label, or -1.
  int EncodeKnown(std::vector<double>& record, const std::vector<LabelTable>& labels);

  /// Cells so far that aren't declared, by position of the layout.
  const std::vector<UndeclaredCells>& Undeclared() const { return fUndeclared; }

private:
  struct Source {
    int position;                    // in the record
    int labels;                      // which table has its labels, -1 if it holds numbers
    std::size_t column;              // in the file
    const Declaration* declaration;  // null if nothing is declared
  };

  template <typename LabelCode>
  void EncodeCells(std::vector<double>& record, LabelCode labelCode);
  template <typename LabelCode>
  double Declared(const Source& source, LabelCode labelCode);
  void CountUndeclared(const Source& source);
  double Number(std::size_t column) const;
  [[noreturn]] void FailAtNumber(std::size_t column) const;

  const CsvReader& fReader;
  const MissingCells& fMissing;
  std::size_t fWidth;
  std::vector<Source> fSources;
  std::vector<UndeclaredCells> fUndeclared;
};

}  // namespace mcfit
