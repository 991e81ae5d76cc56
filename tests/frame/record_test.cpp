// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/record.h"

#include "support/countingallocator.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

namespace {
using MCCommon::Record;
using mctest::AllocationCount;
using mctest::FailAllocation;

std::vector<double> Values(const Record& record) {
  return std::vector<double>(record.GetAll(), record.GetAll() + record.Size());
}

Record OneTwoThree() {
  Record record(3);
  for (int i = 0; i < 3; ++i) record[i] = i + 1.0;
  return record;
}

TEST(Record, StartsWithZeros) {
  EXPECT_EQ(Values(Record(3)), std::vector<double>(3, 0.0));
}

TEST(Record, ANegativeSizeCountsAsOneWhenMade) {
  EXPECT_EQ(Values(Record(-5)), std::vector<double>{0.0});
}

TEST(Record, OfSizeZeroHasNoArray) {
  Record record(0);
  EXPECT_EQ(record.Size(), 0);
  EXPECT_EQ(record.GetAll(), nullptr);
  EXPECT_EQ(static_cast<const Record&>(record).GetAll(), nullptr);
}

TEST(Record, IsEmptyWhereMemoryRunsOut) {
  const FailAllocation failure(1);
  const Record record(4);
  EXPECT_TRUE(failure.HasFired());
  EXPECT_EQ(record.Size(), 0);
  EXPECT_EQ(record.GetAll(), nullptr);
}

TEST(Record, IndexingReadsAndWritesTheArray) {
  Record record(2);
  record[1] = 7.0;
  record.GetAll()[0] = 6.0;
  const Record& view = record;
  EXPECT_EQ(view[0], 6.0);
  EXPECT_EQ(view[1], 7.0);
  EXPECT_EQ(view.GetAll(), record.GetAll());
}

TEST(RecordResize, ToTheSameSizeChangesNothing) {
  Record record = OneTwoThree();
  const double* array = record.GetAll();
  const std::size_t before = AllocationCount();
  EXPECT_TRUE(record.Resize(3));
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_EQ(record.GetAll(), array);
  EXPECT_EQ(Values(record), (std::vector<double>{1, 2, 3}));
}

TEST(RecordResize, ToAnotherSizeMakesRoom) {
  Record record = OneTwoThree();
  EXPECT_TRUE(record.Resize(5));
  ASSERT_EQ(record.Size(), 5);
  for (int i = 0; i < 5; ++i) record[i] = i;
  EXPECT_EQ(Values(record), (std::vector<double>{0, 1, 2, 3, 4}));
}

TEST(RecordResize, ANegativeSizeCountsAsZero) {
  Record record = OneTwoThree();
  EXPECT_TRUE(record.Resize(-5));
  EXPECT_EQ(record.Size(), 0);
  EXPECT_EQ(record.GetAll(), nullptr);
}

TEST(RecordResize, ToZeroLeavesNoArray) {
  Record record = OneTwoThree();
  EXPECT_TRUE(record.Resize(0));
  EXPECT_EQ(record.Size(), 0);
  EXPECT_EQ(record.GetAll(), nullptr);
}

TEST(RecordResize, RefusesAndKeepsTheRecordWhereMemoryRunsOut) {
  Record record = OneTwoThree();
  {
    const FailAllocation failure(1);
    EXPECT_FALSE(record.Resize(8));
    EXPECT_TRUE(failure.HasFired());
  }
  EXPECT_EQ(Values(record), (std::vector<double>{1, 2, 3}));
}

TEST(RecordCopy, IsDeep) {
  Record record = OneTwoThree();
  const Record copy(record);
  record[0] = 9.0;
  EXPECT_EQ(Values(copy), (std::vector<double>{1, 2, 3}));
  EXPECT_NE(copy.GetAll(), record.GetAll());
}

TEST(RecordCopy, OfAnEmptyRecordHasNoArray) {
  const Record empty(0);
  const Record copy(empty);
  EXPECT_EQ(copy.Size(), 0);
  EXPECT_EQ(copy.GetAll(), nullptr);
}

TEST(RecordCopy, ThrowsWhereMemoryRunsOut) {
  const Record record = OneTwoThree();
  const FailAllocation failure(1);
  EXPECT_THROW(Record copy(record), std::bad_alloc);
}

TEST(RecordAssignment, ToItselfDoesNothing) {
  Record record = OneTwoThree();
  const Record& same = record;
  const double* array = record.GetAll();
  record = same;
  EXPECT_EQ(record.GetAll(), array);
  EXPECT_EQ(Values(record), (std::vector<double>{1, 2, 3}));
}

TEST(RecordAssignment, OfTheSameSizeKeepsTheArray) {
  Record target(3);
  const double* array = target.GetAll();
  const Record source = OneTwoThree();
  const std::size_t before = AllocationCount();
  target = source;
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_EQ(target.GetAll(), array);
  EXPECT_EQ(Values(target), (std::vector<double>{1, 2, 3}));
}

TEST(RecordAssignment, OfAnotherSizeTakesSizeAndValues) {
  for (const int size : {0, 1, 5}) {
    Record target(size);
    target = OneTwoThree();
    EXPECT_EQ(Values(target), (std::vector<double>{1, 2, 3})) << size;
  }
  Record target = OneTwoThree();
  target = Record(0);
  EXPECT_EQ(target.Size(), 0);
  EXPECT_EQ(target.GetAll(), nullptr);
}

TEST(RecordAssignment, ThrowsAndKeepsTheRecordWhereMemoryRunsOut) {
  const Record source(7);
  Record target = OneTwoThree();
  {
    const FailAllocation failure(1);
    EXPECT_THROW(target = source, std::bad_alloc);
  }
  EXPECT_EQ(Values(target), (std::vector<double>{1, 2, 3}));
}

}  // namespace
