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
#include <cerrno>
#include <cstdlib>
#include <cstring>
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
  explicit Reading(const std::string& text, const MissingCells& missing = {},
                   const RecordLayout& columns = FullLayout())
      : layout(columns),
        reader(folder.Write("data.csv", text)),
        progress(stderr),
        data(reader, layout, missing, progress) {}

  // The records in their file, passed on with their final codes.
  Rows FinalRows() {
    MCCommon::BinaryRecordIterator file(data.Rows().Rewind(), layout.Width());
    mcfit::RecodedRows rows(file, layout.LabelledPositions(), data.FinalCodes());
    Rows result;
    while (rows.HasMore()) {
      const MCCommon::Record& record = *rows.Next();
      result.emplace_back(record.GetAll(), record.GetAll() + record.Size());
    }
    return result;
  }

  TemporaryFolder folder;
  RecordLayout layout;
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

// The category of the dependent y, a factor a, the frequency n.
RecordLayout CategoryLayout() {
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.dependentHasLabels = true;
  columns.factors = {"a"};
  columns.frequency = "n";
  return RecordLayout(columns);
}

// Rows in use have the categories low, mid, 10 and top; dropped ones beside these none, and all.
const char* const kCategories =
    "y,a,n\n"
    "top,p,2\nnone,,1\nlow,q,1\nmid,p,3\nall,p,0\nlow,p,0.5\n10,q,1\ntop,,5\n,p,1\nmid,q,4\n";

struct CategoryReading : Reading {
  CategoryReading() : Reading(kCategories, {}, CategoryLayout()) {}

  std::vector<std::string> Categories() const {
    const mcfit::LabelTable& table = data.LabelsAt(0);
    std::vector<std::string> labels;
    for (int code = 0; code < table.Size(); ++code) labels.push_back(table.Label(code));
    return labels;
  }
};

TEST(McfitDataset, CategoriesInUseComeFirstWithTheReferenceAsTheirLast) {
  const struct {
    const char* reference;
    int code;
    std::vector<std::string> order;
  } cases[] = {
      {"last", 3, {"10", "low", "mid", "top", "all", "none"}},
      {"first", 3, {"low", "mid", "top", "10", "all", "none"}},
      {"low", 3, {"10", "mid", "top", "low", "all", "none"}},
      {"top", 3, {"10", "low", "mid", "top", "all", "none"}},
      // Only dropped rows have it, so another one is left to be the last in use.
      {"none", 5, {"10", "low", "mid", "top", "all", "none"}},
  };
  for (const auto& c : cases) {
    CategoryReading reading;
    EXPECT_EQ(reading.data.OrderCategories(c.reference, "--reference"), c.code) << c.reference;
    EXPECT_EQ(reading.Categories(), c.order) << c.reference;
    EXPECT_EQ(reading.data.UsedCategories(), 4);
  }
}

TEST(McfitDataset, RecordsAndCountsFollowTheOrderOfTheCategories) {
  CategoryReading reading;
  reading.data.OrderCategories("low", "--reference");
  EXPECT_EQ(reading.FinalRows(), (Rows{{2, 0, 2},
                                       {5, kMissing, 1},
                                       {3, 1, 1},
                                       {1, 0, 3},
                                       {4, 0, 0},
                                       {3, 0, 0.5},
                                       {0, 1, 1},
                                       {2, kMissing, 5},
                                       {kMissing, 0, 1},
                                       {1, 1, 4}}));
  std::vector<std::int64_t> rows;
  std::vector<double> cases;
  for (const mcfit::CategoryCount& count : reading.data.CategoryCounts()) {
    rows.push_back(count.rows);
    cases.push_back(count.cases);
  }
  EXPECT_EQ(rows, (std::vector<std::int64_t>{1, 2, 1, 2, 0, 0}));
  EXPECT_EQ(cases, (std::vector<double>{1, 7, 2, 1.5, 0, 0}));
}

TEST(McfitDataset, ALabelComesBeforeTheWordsFirstAndLast) {
  Reading reading("y,a,n\nlast,p,1\nbest,p,1\nworst,p,1\n", {}, CategoryLayout());
  EXPECT_EQ(reading.data.OrderCategories("last", "--reference"), 2);
  EXPECT_EQ(reading.data.LabelsAt(0).Label(2), "last");
}

TEST(McfitDataset, AReferenceThatNoRowHasIsRefused) {
  EXPECT_EQ(RefusalOf([] { CategoryReading().data.OrderCategories("medium", "--reference"); }),
            "--reference: no row has 'medium' in column 'y'; the categories are '10', 'low', "
            "'mid', 'top'");
  std::string text = "y,a,n\n";
  for (char category = 'a'; category < 'm'; ++category) text += std::string(1, category) + ",p,1\n";
  EXPECT_THAT(RefusalOf([&] {
                Reading(text, {}, CategoryLayout()).data.OrderCategories("z", "--reference");
              }),
              testing::EndsWith("'i', 'j', ..."));
}

TEST(McfitDataset, WithoutRowsInUseThereIsNoReference) {
  for (const char* text : {"y,a,n\n", "y,a,n\nbest,,1\n,p,1\n"}) {
    Reading reading(text, {}, CategoryLayout());
    EXPECT_EQ(reading.data.OrderCategories("best", "--reference"), -1);
    EXPECT_EQ(reading.data.UsedCategories(), 0);
  }
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
  EXPECT_THAT(
      RefusalOf([] { const mcfit::RowFile file; }),
      HasSubstr(std::string("the temporary row file in '/nonexistent': ") + std::strerror(ENOENT)));
  unsetenv("TMPDIR");
}

TEST(McfitRecodedRows, EveryPassAndEveryEndIsThatOfTheSource) {
  mcfit::RowFile file;
  file.Append({7.0, 1.0});
  file.Append({8.0, kMissing});
  MCCommon::BinaryRecordIterator source(file.Rewind(), 2);
  mcfit::RecodedRows recoded(source, {1}, {{5, 3}});
  mcfit::ProgressLine progress(stderr);
  mcfit::WatchedRows rows(recoded, progress, "fitting", 2, 3);
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
