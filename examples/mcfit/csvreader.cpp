// SPDX-License-Identifier: Apache-2.0
#include "csvreader.h"

#include "errors.h"
#include "interrupt.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace mcfit {

namespace {

constexpr std::size_t kReadSize = std::size_t{256} << 10U;
// The parser's cell grows by this much, which a very long cell would copy too often were it small.
constexpr std::size_t kParserBlock = std::size_t{64} << 10U;

// A quote that is never closed would otherwise take the rest of the file into one cell.
constexpr std::size_t kLongestCell = std::size_t{16} << 20U;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

CsvReader::CsvReader(const std::string& path) : fName(path), fBuffer(kReadSize) {
  if (path == "-") {
    fName = "standard input";
    fDescriptor = STDIN_FILENO;
  } else {
    fDescriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    fbOwnsDescriptor = true;
  }
  if (fDescriptor < 0) {
    StopIfInterrupted();  // a named pipe may have kept us waiting for its other end
    throw InputError(fmt::format("cannot open {}: {}", Quoted(path), std::strerror(errno)));
  }
  if (csv_init(&fParser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_blk_size(&fParser, kParserBlock);
  try {
    ReadHeader();
  } catch (...) {
    csv_free(&fParser);
    if (fbOwnsDescriptor) close(fDescriptor);
    throw;
  }
}

CsvReader::~CsvReader() {
  csv_free(&fParser);
  if (fbOwnsDescriptor) close(fDescriptor);
}

void CsvReader::ReadHeader() {
  SkipByteOrderMark();
  if (!ReadRow()) throw InputError(fName + ": the file is empty; a header line is needed");
  fHeader.assign(fCells.begin(), fCells.begin() + static_cast<std::ptrdiff_t>(fNCells));
  fCells.resize(fHeader.size());
}

void CsvReader::SkipByteOrderMark() {
  // A pipe may hand out the first bytes one by one.
  while (fEnd < kUtf8Mark.size() && Refill()) {
  }
  const std::string_view start(fBuffer.data(), fEnd);
  for (const std::string_view mark : kUtf16Marks) {
    if (StartsWith(start, mark)) throw InputError(fName + ": the file is UTF-16; UTF-8 is needed");
  }
  if (StartsWith(start, kUtf8Mark)) fBegin = kUtf8Mark.size();
}

std::size_t CsvReader::ColumnIndex(const std::string& name) const {
  const auto found = std::find(fHeader.begin(), fHeader.end(), name);
  if (found == fHeader.end()) {
    throw InputError(fmt::format("{}: there is no column {}; the columns are {}", fName,
                                 Quoted(name), QuotedList(fHeader)));
  }
  if (std::find(found + 1, fHeader.end(), name) != fHeader.end()) {
    throw InputError(
        fmt::format("{}: column {} stands more than once in the header", fName, Quoted(name)));
  }
  return static_cast<std::size_t>(found - fHeader.begin());
}

bool CsvReader::NextRow() {
  if (!ReadRow()) return false;
  if (fNCells != fHeader.size()) {
    FailAtLine(fmt::format("the row has {} {}, the header has {}", fNCells,
                           fNCells == 1 ? "cell" : "cells", fHeader.size()));
  }
  return true;
}

bool CsvReader::ReadRow() {
  fNCells = 0;
  fbRowComplete = false;
  while (!fbRowComplete) {
    if (fBegin < fEnd || Refill()) {
      Feed(LineLength());
    } else if (!fbAtEnd) {
      FinishFile();
    } else {
      return false;
    }
  }
  return true;
}

// Appends to what is left over while a byte order mark is looked for, else starts the buffer anew.
bool CsvReader::Refill() {
  if (fBegin == fEnd) fBegin = fEnd = 0;
  for (;;) {
    WaitForInput(fDescriptor);
    const ssize_t got = read(fDescriptor, fBuffer.data() + fEnd, fBuffer.size() - fEnd);
    if (got >= 0) {
      fEnd += static_cast<std::size_t>(got);
      return got > 0;
    }
    if (errno != EINTR) {
      throw InputError(fmt::format("cannot read {}: {}", Quoted(fName), std::strerror(errno)));
    }
  }
}

// Up to and with the next line end. The parser is fed no further than one line, so that at most
// one row completes per call and the line of each cell is known.
std::size_t CsvReader::LineLength() const {
  const char* begin = fBuffer.data() + fBegin;
  const char* end = fBuffer.data() + fEnd;
  const char* stop = std::find_if(begin, end, IsLineEnd);
  return static_cast<std::size_t>(stop - begin) + (stop == end ? 0 : 1);
}

void CsvReader::Feed(std::size_t length) {
  const std::string_view text(fBuffer.data() + fBegin, length);
  // The LF of a CRLF belongs to the line before.
  const bool isSecondHalf = fbAfterReturn && text == "\n";
  if (!fbRowOpen && !IsBlank(text)) {
    fbRowOpen = true;
    fRowLine = fLine;
  }
  const std::size_t done =
      csv_parse(&fParser, text.data(), text.size(), &CsvReader::OnCell, &CsvReader::OnRow, this);
  CheckParser(done == length);
  fbAfterReturn = text.back() == '\r';
  if (IsLineEnd(text.back()) && !isSecondHalf) ++fLine;
  fBegin += length;
}

void CsvReader::FinishFile() {
  fbAtEnd = true;
  CheckParser(csv_fini(&fParser, &CsvReader::OnCell, &CsvReader::OnRow, this) == 0);
}

void CsvReader::CheckParser(bool succeeded) {
  if (fFailure) std::rethrow_exception(fFailure);
  if (!succeeded) {
    if (csv_error(&fParser) != CSV_EPARSE) throw std::bad_alloc();
    FailAtLine(fbAtEnd ? "a quoted cell is never closed"
                       : "malformed quotes: a cell that holds a quote must be quoted itself, with "
                         "the quote doubled, and nothing may follow the closing quote");
  }
  if (csv_get_buffer_size(&fParser) > kLongestCell) {
    FailAtLine("a cell is longer than 16 MiB; is a quote never closed?");
  }
}

void CsvReader::OnCell(void* text, std::size_t length, void* reader) {
  auto* self = static_cast<CsvReader*>(reader);
  try {
    self->AddCell(static_cast<const char*>(text), length);
  } catch (...) {
    self->fFailure = std::current_exception();
  }
}

void CsvReader::OnRow(int /*terminator*/, void* reader) {
  auto* self = static_cast<CsvReader*>(reader);
  self->fbRowComplete = true;
  self->fbRowOpen = false;
}

// Cells beyond those of the header are only counted: such a row is refused.
void CsvReader::AddCell(const char* text, std::size_t length) {
  if (fHeader.empty() && fNCells == fCells.size()) fCells.emplace_back();
  if (fNCells < fCells.size()) fCells[fNCells].assign(text, length);
  ++fNCells;
}

void CsvReader::FailAtLine(const std::string& message) const {
  throw InputError(fmt::format("{}, line {}: {}", fName, fRowLine, message));
}

void CsvReader::FailAtCell(std::size_t column, const std::string& message) const {
  throw InputError(
      fmt::format("{}, line {}, column {}: {}", fName, fRowLine, Quoted(fHeader[column]), message));
}

}  // namespace mcfit
