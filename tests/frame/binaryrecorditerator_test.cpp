// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/binaryrecorditerator.h"

#include "support/countingallocator.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <numeric>
#include <unistd.h>
#include <vector>

namespace {
using MCCommon::BinaryRecordIterator;
using MCCommon::Record;
using Rows = std::vector<std::vector<double>>;

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// A temporary file of the doubles 1, 2, ..., nValues and a tail of further bytes.
File MakeFile(int nValues, int nTailBytes = 0) {
  File file(std::tmpfile());
  std::vector<double> values(static_cast<std::size_t>(nValues));
  std::iota(values.begin(), values.end(), 1.0);
  for (const double value : values) std::fwrite(&value, sizeof value, 1, file.get());
  for (int i = 0; i < nTailBytes; ++i) std::fputc(1, file.get());
  std::rewind(file.get());
  return file;
}

std::vector<double> Values(const Record& record) {
  return std::vector<double>(record.GetAll(), record.GetAll() + record.Size());
}

Rows ReadAll(BinaryRecordIterator& source) {
  Rows rows;
  while (source.HasMore()) {
    const Record* record = source.Next();
    if (record == nullptr) break;
    rows.push_back(Values(*record));
  }
  return rows;
}

const Rows kThreeRows = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
const Rows kTwoRows = {{1, 2, 3, 4}, {5, 6, 7, 8}};

TEST(BinaryRecordIterator, DeliversTheRowsOfTheFileInEachPass) {
  const File file = MakeFile(12);
  BinaryRecordIterator source(file.get(), 4);
  for (int pass = 0; pass < 3; ++pass) {
    EXPECT_TRUE(source.HasMore());
    EXPECT_EQ(source.GetFailReason(), 0);
    EXPECT_EQ(ReadAll(source), kThreeRows) << pass;
    EXPECT_EQ(source.GetFailReason(), 1);
    EXPECT_EQ(source.NewPass(), 0);
  }
}

TEST(BinaryRecordIterator, KnowsTheLastRowWhileItHandsItOut) {
  const File file = MakeFile(12);
  BinaryRecordIterator source(file.get(), 4);
  source.Next();
  source.Next();
  EXPECT_TRUE(source.HasMore());
  const Record* last = source.Next();
  ASSERT_NE(last, nullptr);
  EXPECT_FALSE(source.HasMore());
  EXPECT_EQ(source.GetFailReason(), 1);
  EXPECT_EQ(Values(*last), kThreeRows[2]);
  EXPECT_EQ(source.Next(), nullptr);
  EXPECT_EQ(Values(*last), kThreeRows[2]);
}

TEST(BinaryRecordIterator, NewPassInTheMiddleGoesBackToTheFirstRow) {
  const File file = MakeFile(12);
  BinaryRecordIterator source(file.get(), 4);
  source.Next();
  EXPECT_EQ(source.NewPass(), 0);
  EXPECT_EQ(ReadAll(source), kThreeRows);
}

TEST(BinaryRecordIterator, ReadsOnAfterTheCallerHasResizedTheRow) {
  const File file = MakeFile(12);
  BinaryRecordIterator source(file.get(), 4);
  for (const int size : {0, 2, 9}) {
    ASSERT_TRUE(source.Next()->Resize(size));
    const Record* second = source.Next();
    ASSERT_NE(second, nullptr) << size;
    EXPECT_EQ(Values(*second), kThreeRows[1]) << size;
    ASSERT_TRUE(source.Next()->Resize(size));
    EXPECT_EQ(source.NewPass(), 0) << size;
  }
  EXPECT_EQ(ReadAll(source), kThreeRows);
}

TEST(BinaryRecordIterator, TheFirstPassBeginsWhereTheStreamStands) {
  const File file = MakeFile(12);
  std::fseek(file.get(), 4 * sizeof(double), SEEK_SET);
  BinaryRecordIterator source(file.get(), 4);
  EXPECT_EQ(ReadAll(source), Rows(kThreeRows.begin() + 1, kThreeRows.end()));
  EXPECT_EQ(source.NewPass(), 0);
  EXPECT_EQ(ReadAll(source), kThreeRows);
}

TEST(BinaryRecordIterator, AnEmptyFileAnswersOne) {
  const File file = MakeFile(0);
  BinaryRecordIterator source(file.get(), 4);
  EXPECT_FALSE(source.HasMore());
  EXPECT_EQ(source.GetFailReason(), 1);
  EXPECT_EQ(source.Next(), nullptr);
  EXPECT_EQ(source.NewPass(), 1);
}

// Every length of a torn last row of 4 doubles: less than one item is the end of the file, any
// item makes it a failed row.
TEST(BinaryRecordIterator, ATornLastRowIsNotDelivered) {
  for (int tail = 0; tail < 32; ++tail) {
    const File file = MakeFile(8, tail);
    BinaryRecordIterator source(file.get(), 4);
    const int expected = tail < 8 ? 1 : 3;
    for (int pass = 0; pass < 2; ++pass) {
      EXPECT_EQ(ReadAll(source), kTwoRows) << tail;
      EXPECT_EQ(source.GetFailReason(), expected) << tail;
      EXPECT_EQ(source.Next(), nullptr) << tail;
      EXPECT_EQ(source.NewPass(), 0) << tail;
    }
  }
}

TEST(BinaryRecordIterator, AFileOfATornRowAloneGivesNoRow) {
  const File shortTail = MakeFile(0, 7);
  EXPECT_EQ(BinaryRecordIterator(shortTail.get(), 4).GetFailReason(), 1);
  const File longTail = MakeFile(3);
  BinaryRecordIterator source(longTail.get(), 4);
  EXPECT_EQ(source.GetFailReason(), 3);
  EXPECT_EQ(source.NewPass(), 3);
}

TEST(BinaryRecordIterator, AReadErrorIsReasonThree) {
  const File writeOnly(std::fopen("/dev/null", "wb"));
  ASSERT_NE(writeOnly, nullptr);
  BinaryRecordIterator source(writeOnly.get(), 1);
  EXPECT_FALSE(source.HasMore());
  EXPECT_EQ(source.GetFailReason(), 3);
}

TEST(BinaryRecordIterator, ANullFilePrintsALineAndFails) {
  testing::internal::CaptureStdout();
  BinaryRecordIterator source(nullptr, 4);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Error: file handle is NULL in BinaryRecordIterator constructor");
  EXPECT_FALSE(source.HasMore());
  EXPECT_EQ(source.GetFailReason(), 3);
  EXPECT_EQ(source.Next(), nullptr);
  EXPECT_EQ(source.NewPass(), 3);
  EXPECT_EQ(source.GetFailReason(), 3);
}

TEST(BinaryRecordIterator, OfNoVariablesNeverEnds) {
  const File file = MakeFile(1);
  BinaryRecordIterator source(file.get(), 0);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(source.HasMore());
    const Record* record = source.Next();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->Size(), 0);
  }
  EXPECT_EQ(source.NewPass(), 0);
  EXPECT_TRUE(source.HasMore());
}

TEST(BinaryRecordIterator, OfANegativeNumberOfVariablesReadsNothing) {
  for (const int numVars : {-1, -2, -2147483647 - 1}) {
    const File file = MakeFile(12);
    testing::internal::CaptureStdout();
    BinaryRecordIterator source(file.get(), numVars);
    EXPECT_FALSE(source.HasMore());
    EXPECT_EQ(source.GetFailReason(), 3);
    EXPECT_EQ(source.Next(), nullptr);
    EXPECT_EQ(source.NewPass(), 3);
    EXPECT_EQ(std::ftell(file.get()), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  }
}

TEST(BinaryRecordIterator, FailsWhereMemoryCannotHoldEitherRow) {
  for (const std::size_t k : {1U, 2U}) {
    const File file = MakeFile(12);
    const mctest::FailAllocation failure(k);
    BinaryRecordIterator source(file.get(), 4);
    EXPECT_TRUE(failure.HasFired());
    EXPECT_EQ(source.GetFailReason(), 3) << k;
    EXPECT_EQ(source.Next(), nullptr) << k;
    EXPECT_EQ(source.NewPass(), 3) << k;
    EXPECT_EQ(std::ftell(file.get()), 0) << k;
  }
}

TEST(BinaryRecordIterator, AStreamThatCannotSeekHasOnePass) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const File writer(fdopen(ends[1], "wb"));
  const File reader(fdopen(ends[0], "rb"));
  const double values[] = {1, 2, 3, 4};
  std::fwrite(values, sizeof(double), 4, writer.get());
  std::fflush(writer.get());
  BinaryRecordIterator source(reader.get(), 2);
  EXPECT_TRUE(source.HasMore());
  EXPECT_EQ(source.NewPass(), 3);
  EXPECT_FALSE(source.HasMore());
  EXPECT_EQ(source.GetFailReason(), 3);
  EXPECT_EQ(source.Next(), nullptr);
}

TEST(BinaryRecordIterator, MissingValuesAndNaNComeThroughBitByBit) {
  const double written[] = {-1.7976931348623157e308, 0.0, -0.0};
  const File file(std::tmpfile());
  std::fwrite(written, sizeof(double), 3, file.get());
  std::rewind(file.get());
  BinaryRecordIterator source(file.get(), 3);
  const Record* record = source.Next();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(std::memcmp(record->GetAll(), written, sizeof written), 0);
}

TEST(BinaryRecordIterator, ReadsWithoutAllocating) {
  const File file = MakeFile(12);
  BinaryRecordIterator source(file.get(), 4);
  source.Next();
  const std::size_t before = mctest::AllocationCount();
  source.Next();
  source.NewPass();
  source.Next();
  EXPECT_EQ(mctest::AllocationCount(), before);
}

TEST(BinaryRecordIterator, NeitherOpensNorClosesTheStream) {
  const File file = MakeFile(12);
  { const BinaryRecordIterator source(file.get(), 4); }
  std::rewind(file.get());
  double first = 0.0;
  EXPECT_EQ(std::fread(&first, sizeof first, 1, file.get()), 1U);
  EXPECT_EQ(first, 1.0);
}

}  // namespace
