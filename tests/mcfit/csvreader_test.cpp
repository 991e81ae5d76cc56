// SPDX-License-Identifier: Apache-2.0
#include "csvreader.h"

#include "mcfit/support/refusal.h"
#include "mcfit/support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

namespace {
using mcfit::CsvReader;
using testing::HasSubstr;
using Rows = std::vector<std::vector<std::string>>;

// Header and rows of a file with that text.
Rows Read(const std::string& text) {
  const TemporaryFolder folder;
  CsvReader reader(folder.Write("data.csv", text));
  Rows rows = {reader.Header()};
  while (reader.NextRow()) {
    std::vector<std::string> row;
    for (std::size_t i = 0; i < reader.Header().size(); ++i) row.emplace_back(reader.Cell(i));
    rows.push_back(row);
  }
  return rows;
}

std::string Refusal(const std::string& text) {
  const std::string message = RefusalOf([&] { Read(text); });
  return message.substr(message.rfind('/') + 1);
}

TEST(McfitCsvReader, CellsAreReadWhateverEndsTheirLines) {
  const Rows expected = {{"a", "b"}, {"1", "2"}, {"", "x y"}};
  EXPECT_EQ(Read("a,b\n1,2\n,x y\n"), expected);
  EXPECT_EQ(Read("a,b\n1,2\n,x y"), expected);
  EXPECT_EQ(Read("a,b\r\n1,2\r\n,x y\r\n"), expected);
  EXPECT_EQ(Read("a,b\r1,2\r,x y\r"), expected);
  EXPECT_EQ(Read("\n\na,b\n\n1,2\n   \n,x y\n\n\n"), expected);
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "a,b\n1,2\n,x y\n"),
            expected);
  EXPECT_EQ(Read(" a ,\tb\n1 , 2\n , x y \n"), expected);
}

TEST(McfitCsvReader, QuotedCellsMayHoldAnything) {
  EXPECT_EQ(Read("\"a\",\"b, c\"\n\"say \"\"hi\"\"\",\"two\r\nlines\"\n\" kept \",\"\"\n"),
            (Rows{{"a", "b, c"}, {"say \"hi\"", "two\r\nlines"}, {" kept ", ""}}));
}

TEST(McfitCsvReader, BytesOfZeroAreKept) {
  EXPECT_EQ(Read(std::string("a\nx\0y\n", 6)), (Rows{{"a"}, {std::string("x\0y", 3)}}));
}

TEST(McfitCsvReader, ACellMayBeLongerThanTheReadBuffer) {
  const std::string longCell(3000000, 'x');
  EXPECT_EQ(Read("a,b\n" + longCell + ",1\n"), (Rows{{"a", "b"}, {longCell, "1"}}));
}

TEST(McfitCsvReader, AHeaderAloneHasNoRows) {
  EXPECT_EQ(Read("a,b\n"), (Rows{{"a", "b"}}));
  EXPECT_EQ(Read("a,b"), (Rows{{"a", "b"}}));
}

TEST(McfitCsvReader, BadFilesAreRefusedWithTheirLine) {
  const struct {
    std::string text;
    const char* message;
  } cases[] = {
      {"", "data.csv: the file is empty; a header line is needed"},
      {"\n \n", "data.csv: the file is empty; a header line is needed"},
      {"\xEF\xBB\xBF", "data.csv: the file is empty; a header line is needed"},
      {std::string("\xFF\xFE"
                   "a\0",
                   4),
       "data.csv: the file is UTF-16; UTF-8 is needed"},
      {"a,b\n1,2\n3\n", "data.csv, line 3: the row has 1 cell, the header has 2"},
      {"a,b\r\n1,2\r\n3\r\n", "data.csv, line 3: the row has 1 cell, the header has 2"},
      {"a,b\r1,2\r3\r", "data.csv, line 3: the row has 1 cell, the header has 2"},
      {"a,b\n\n\n1,2,3", "data.csv, line 4: the row has 3 cells, the header has 2"},
      {"a,b\n\"1\n1\",2\n3\n", "data.csv, line 4: the row has 1 cell, the header has 2"},
      {"a,b\n\"1\n1\",2,3\n", "data.csv, line 2: the row has 3 cells, the header has 2"},
      {"a,b\n1,2\n1,x\"y\n", "data.csv, line 3: malformed quotes"},
      {"a,b\n\"x\"y,2\n", "data.csv, line 2: malformed quotes"},
      {"a,b\n1,2\n\"x,2\n3,4\n", "data.csv, line 3: a quoted cell is never closed"},
      {"\"a,b\n1,2\n", "data.csv, line 1: a quoted cell is never closed"},
      {"a\n\"" + std::string(17U << 20U, 'x'), "data.csv, line 2: a cell is longer than 16 MiB"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(Refusal(c.text), HasSubstr(c.message)) << c.text.substr(0, 40);
  }
}

TEST(McfitCsvReader, AFileThatCannotBeReadIsNamed) {
  EXPECT_EQ(RefusalOf([] { const CsvReader reader("/nonexistent/data.csv"); }),
            std::string("cannot open '/nonexistent/data.csv': ") + std::strerror(ENOENT));
  EXPECT_EQ(RefusalOf([] { const CsvReader reader("/tmp"); }),
            std::string("cannot read '/tmp': ") + std::strerror(EISDIR));
}

TEST(McfitCsvReader, ColumnsAreFoundByNameIfThatIsPlain) {
  const TemporaryFolder folder;
  const CsvReader reader(folder.Write("data.csv", "a,b,c,b\n"));
  EXPECT_EQ(reader.ColumnIndex("c"), 2u);
  const auto refusal = [&reader](const char* name) {
    return RefusalOf([&] { static_cast<void>(reader.ColumnIndex(name)); });
  };
  EXPECT_THAT(refusal("d"),
              HasSubstr("there is no column 'd'; the columns are 'a', 'b', 'c', 'b'"));
  EXPECT_THAT(refusal("b"), HasSubstr("column 'b' stands more than once in the header"));
}

TEST(McfitCsvReader, LinesAreCountedAcrossReadBuffers) {
  std::string text = "a,b\r\n";
  for (int i = 0; i < 200000; ++i) text += "1,2\r\n";
  EXPECT_THAT(Refusal(text + "1\r\n"), HasSubstr("data.csv, line 200002: the row has 1 cell"));
}

}  // namespace
