// SPDX-License-Identifier: Apache-2.0
#include "dataset.h"

#include "errors.h"
#include "mcfit/support/refusal.h"
#include "mcfit/support/temporaryfolder.h"
#include "recordsources.h"
#include "regression/frame/binaryrecorditerator.h"
#include "regression/frame/mcmv.h"
#include "statustext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {
using mcfit::Dataset;
using mcfit::InputError;
using mcfit::MissingCells;
using mcfit::RecordLayout;
using testing::HasSubstr;
using Rows = std::vector<std::vector<double>>;

constexpr double kMissing = MCMV::gMissingValue;

RecordLayout FullLayout() {
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.factors = {"a"};
  columns.covariates = {"x"};
  columns.frequency = "n";
  columns.weight = "w";
  return RecordLayout(columns);
}

/// A CSV file read into a data set.
struct Reading {
  explicit Reading(const std::string& text, const MissingCells& missing = {})
      : reader(folder.Write("data.csv", text)),
        progress(stderr),
        data(reader, layout, missing, progress) {}

  // The records in their file, passed on with their final codes.
  Rows FinalRows() {
    MCCommon::BinaryRecordIterator file(data.Rows().Rewind(), layout.Width());
    mcfit::RecodedRows rows(file, layout.Positions(mcfit::Role::kFactor), data.FinalCodes());
    Rows result;
    while (rows.HasMore()) {
      const MCCommon::Record& record = *rows.Next();
      result.emplace_back(record.GetAll(), record.GetAll() + record.Size());
    }
    return result;
  }

  TemporaryFolder folder;
  RecordLayout layout = FullLayout();
  mcfit::CsvReader reader;
  mcfit::ProgressLine progress;
  Dataset data;
};

TEST(McfitDataset, RowsBecomeRecordsInTheOrderOfTheRoles) {
  Reading reading(
      "w,unused,x,a,y,n\n"
      "0.5,word,3,red,1,2\n"
      "1,,4,blue,2,1\n"
      "1,,,\"10\",,1\n"
      "1,,5,,3,1\n"
      "1,,6,9,4,1\n");
  EXPECT_EQ(reading.FinalRows(), (Rows{{1, 3, 3, 2, 0.5},
                                       {2, 2, 4, 1, 1},
                                       {kMissing, 1, kMissing, 1, 1},
                                       {3, kMissing, 5, 1, 1},
                                       {4, 0, 6, 1, 1}}));
  ASSERT_EQ(reading.data.Labels().size(), 1u);
  EXPECT_EQ(reading.data.Labels()[0].Label(0), "9");
  EXPECT_EQ(reading.data.Labels()[0].Label(3), "red");
}

TEST(McfitDataset, DroppedRowsAreCountedAtTheFirstColumnThatDropsThem) {
  const Reading reading(
      "y,a,x,n,w\n"
      "1,p,1,1,1\n"
      ",,1,1,1\n"
      "1,,1,1,1\n"
      "1,p,,0,1\n"
      "1,p,1,,1\n"
      "1,p,1,0,1\n"
      "1,p,1,-1,-1\n"
      "1,p,1,1,-0.5\n");
  const mcfit::RowCounts& counts = reading.data.Counts();
  EXPECT_EQ(counts.read, 8);
  EXPECT_EQ(counts.used, 1);
  EXPECT_EQ(counts.Dropped(), 7);
  EXPECT_EQ(counts.missing, (std::vector<std::int64_t>{1, 1, 1, 1, 0}));
  EXPECT_EQ(counts.notPositive, (std::vector<std::int64_t>{0, 0, 0, 2, 1}));
  EXPECT_EQ(mcfit::DroppedRowsText(counts, reading.layout),
            "           1  dependent 'y' is missing\n"
            "           1  factor 'a' is missing\n"
            "           1  covariate 'x' is missing\n"
            "           1  frequency weight 'n' is missing\n"
            "           2  frequency weight 'n' is not above 0\n"
            "           1  weight 'w' is not above 0\n");
}

TEST(McfitDataset, TextsCanStandForMissingValues) {
  const std::string text = "y,a,x,n,w\nNA,p,.,1,1\n1,NA,1,1,1\n1,.,1,1,1\n";
  Reading reading(text, MissingCells{{"NA", "."}});
  EXPECT_EQ(reading.FinalRows(),
            (Rows{{kMissing, 0, kMissing, 1, 1}, {1, kMissing, 1, 1, 1}, {1, kMissing, 1, 1, 1}}));
  EXPECT_THROW(Reading("y,a,x,n,w\nNA,p,1,1,1\n"), InputError);
}

TEST(McfitDataset, AWordWhereANumberIsNeededIsRefusedWithItsPlace) {
  const struct {
    const char* row;
    const char* message;
  } cases[] = {
      {"1,p,big,1,1", "line 3, column 'x': 'big' is not a finite number"},
      {"one,p,1,1,1", "line 3, column 'y': 'one' is not a finite number"},
      {"1,p,1,few,1", "line 3, column 'n': 'few' is not a finite number"},
      {"1,p,1,1,1e999", "line 3, column 'w': '1e999' is not a finite number"},
      {"1,p,nan,1,1", "line 3, column 'x': 'nan' is not a finite number"},
      {"1,p,\" \",1,1", "line 3, column 'x': ' ' is not a finite number"},
  };
  for (const auto& c : cases) {
    const std::string text = std::string("y,a,x,n,w\n1,p,1,1,1\n") + c.row + "\n";
    EXPECT_THAT(RefusalOf([&] { const Reading reading(text); }), HasSubstr(c.message)) << c.row;
  }
}

TEST(McfitDataset, NothingIsLeftInTheTemporaryFolder) {
  const TemporaryFolder folder;
  setenv("TMPDIR", folder.Path("").c_str(), 1);
  {
    mcfit::RowFile file;
    file.Append({1.0, 2.0});
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path("")));
  }
  unsetenv("TMPDIR");
}

TEST(McfitDataset, AFolderThatCannotHoldTheRowFileIsNamed) {
  setenv("TMPDIR", "/nonexistent", 1);
  EXPECT_THAT(RefusalOf([] { const mcfit::RowFile file; }),
              HasSubstr("the temporary row file in '/nonexistent': No such file"));
  unsetenv("TMPDIR");
}

TEST(McfitRecodedRows, EveryPassAndEveryEndIsThatOfTheSource) {
  mcfit::RowFile file;
  file.Append({7.0, 1.0});
  file.Append({8.0, kMissing});
  MCCommon::BinaryRecordIterator source(file.Rewind(), 2);
  mcfit::RecodedRows recoded(source, {1}, {{5, 3}});
  mcfit::ProgressLine progress(stderr);
  mcfit::WatchedRows rows(recoded, progress, 2, 3);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(rows.NewPass(), 0);
    EXPECT_EQ((*rows.Next())[1], 3.0);
    EXPECT_TRUE(rows.HasMore());
    EXPECT_EQ((*rows.Next())[1], kMissing);
    EXPECT_FALSE(rows.HasMore());
    EXPECT_EQ(rows.Next(), nullptr);
    EXPECT_EQ(rows.GetFailReason(), 1);
  }
}

}  // namespace
