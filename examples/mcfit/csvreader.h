// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csv.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace mcfit {

/// Reads a CSV file with a header line, row by row, in memory that doesn't grow with the file.
/// Cells may be quoted, lines may end in LF, CRLF or CR, blank lines are skipped, and a UTF-8 byte
/// order mark is dropped. Each failure throws InputError with file and line.
class CsvReader {
public:
  /// Opens the file, "-" for the standard input, and reads its header.
  explicit CsvReader(const std::string& path);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /// The names in the header line.
  const std::vector<std::string>& Header() const { return fHeader; }

  /// Index of the column with that name. Throws if there is none, or more than one.
  std::size_t ColumnIndex(const std::string& name) const;

  /// Reads the next row; false at the end of the file. Throws for a row that has not as many
  /// cells as the header, and for malformed quotes.
  bool NextRow();

  /// Cell of the current row, valid until the next one is read.
  std::string_view Cell(std::size_t column) const { return fCells[column]; }

  /// The file as messages name it.
  const std::string& Name() const { return fName; }

  /// Throws InputError with file, line and column of a cell in the current row.
  [[noreturn]] void FailAtCell(std::size_t column, const std::string& message) const;

private:
  bool ReadRow();
  bool Refill();
  void SkipByteOrderMark();
  std::size_t LineLength() const;
  void Feed(std::size_t length);
  void FinishFile();
  void CheckParser(bool succeeded);
  void AddCell(const char* text, std::size_t length);
  void ReadHeader();
  [[noreturn]] void FailAtLine(const std::string& message) const;

  static void OnCell(void* text, std::size_t length, void* reader);
  static void OnRow(int terminator, void* reader);

  std::string fName;
  int fDescriptor = -1;
  bool fbOwnsDescriptor = false;
  csv_parser fParser{};
  std::vector<char> fBuffer;
  std::size_t fBegin = 0;  // of what the parser has not seen, in the buffer
  std::size_t fEnd = 0;
  bool fbAtEnd = false;
  std::vector<std::string> fHeader;
  std::vector<std::string> fCells;
  std::size_t fNCells = 0;   // of the row being read
  std::size_t fLine = 1;     // being read, from 1
  std::size_t fRowLine = 1;  // on which the row being read begins
  bool fbRowOpen = false;    // the row being read has begun
  bool fbRowComplete = false;
  bool fbAfterReturn = false;   // the last character was a CR that ended a line
  std::exception_ptr fFailure;  // thrown in a callback, which must not throw through C
};

}  // namespace mcfit
