// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace mcfit {

/// Lays out rows of cells in columns as wide as their widest cell: the first flush left, those
/// after it flush right, a column of notes at the end flush left.
class TextTable {
public:
  /// `numbers`: how many columns stand between the first and the notes.
  explicit TextTable(std::size_t numbers) : fNumbers(numbers) {}

  /// Adds a row: a label, the numbers, and a note that may be left out.
  void Add(std::vector<std::string> cells);

  /// Adds a line as wide as the table without its notes.
  void AddRule() { fRows.emplace_back(); }

  /// The whole table, each line with its line end and without trailing blanks.
  std::string Text() const;

private:
  std::vector<std::size_t> Widths() const;
  std::string RowText(const std::vector<std::string>& cells,
                      const std::vector<std::size_t>& widths) const;

  std::size_t fNumbers;
  std::vector<std::vector<std::string>> fRows;  // an empty one is a rule
};

}  // namespace mcfit
