// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit split` as a user does.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "support/numbers.h"
#include "support/pmmlcheck.h"
#include "support/xmldocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {
using mctest::XmlNode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// Sales by price, exactly: north -2, south -1, in 2024 from 10 and in 2025 from 20.
const char kSales[] =
    "region,year,price,sales,kind\n"
    "south,2025,1,19,a\n"
    "north,2024,1,8,a\n"
    "north,2024,2,6,b\n"
    "north,2024,3,4,a\n"
    "south,2025,2,18,b\n"
    ",2025,2,7,a\n"
    "south,2025,4,16,a\n"
    "north,,2,7,b\n"
    "north,?,2,7,b\n"
    "north,2025,1,18,b\n"
    "north,2025,2,16,b\n"
    "north,2025,5,10,b\n";

const Arguments kSalesModel = {"--dependent", "sales", "--covariates", "price", "--missing", "?"};

/// What the files of a run are.
std::vector<std::string> Files(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> Betas(const XmlNode& model) {
  std::vector<std::string> betas;
  for (const XmlNode* cell : model.Only("ParamMatrix").All("PCell")) {
    betas.push_back((*cell)["parameterName"] + " " + (*cell)["beta"] + (*cell)["targetCategory"]);
  }
  return betas;
}

std::vector<const XmlNode*> Segments(const XmlNode& merged) {
  return merged.Only("MiningModel").Only("Segmentation").All("Segment");
}

TEST(Split, FitsEachCombinationAndMergesTheModels) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("sales.csv", kSales);
  const ProgramResult run =
      RunMcfit(Arguments{"split", data, "--by", "region,year", "--out-dir", folder.Path("models")} +
               kSalesModel);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, StartsWith("Split of " + data + R"( by 'region', 'year'

Rows read            12
Rows without region   1  left out
Rows without year     2  left out
Combinations          3

== region=north,year=2024: 3 rows

Linear regression of sales
)"));
  EXPECT_THAT(run.out, HasSubstr("\n== region=north,year=2025: 3 rows\n"));
  EXPECT_THAT(run.out, HasSubstr("\n== region=south,year=2025: 3 rows\n"));
  EXPECT_THAT(run.out,
              testing::EndsWith("\n3 models merged in " + folder.Path("models/merged.xml") + "\n"));
  EXPECT_THAT(Files(folder.Path("models")),
              ElementsAre("merged.xml", "region=north,year=2024.xml", "region=north,year=2025.xml",
                          "region=south,year=2025.xml"));

  const XmlNode merged = mctest::ReadXml(folder.Read("models/merged.xml"));
  const auto segments = Segments(merged);
  ASSERT_EQ(segments.size(), 3U);
  const char* const expected[][3] = {
      {"north", "2024", "-2"}, {"north", "2025", "-2"}, {"south", "2025", "-1"}};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto predicates = segments[i]->Only("CompoundPredicate").All("SimplePredicate");
    EXPECT_EQ((*predicates.at(0))["value"], expected[i][0]);
    EXPECT_EQ((*predicates.at(1))["value"], expected[i][1]);
    const std::string name =
        std::string("models/region=") + expected[i][0] + ",year=" + expected[i][1] + ".xml";
    const std::string part = folder.Read(name);
    EXPECT_EQ(mctest::PmmlFaults(part), "") << name;
    const XmlNode partRoot = mctest::ReadXml(part);
    const XmlNode& model = segments[i]->Only("GeneralRegressionModel");
    EXPECT_EQ(Betas(model), Betas(partRoot.Only("GeneralRegressionModel")));
    // Exact but for rounding: the data lie on lines.
    EXPECT_NEAR(mctest::ToNumber((*model.Only("ParamMatrix").All("PCell").at(1))["beta"]),
                mctest::ToNumber(expected[i][2]), 1e-12);
  }
}

TEST(Split, ReportsEachPartAsAFitOfItsRowsAlone) {
  const TemporaryFolder folder;
  const ProgramResult split = RunMcfit({"split",        kData + "birthwt.csv",
                                        "--by",         "smoke",
                                        "--kind",       "logistic",
                                        "--dependent",  "birthweight",
                                        "--factors",    "race",
                                        "--covariates", "age,lwt",
                                        "--reference",  "normal",
                                        "--digits",     "12",
                                        "--out-dir",    folder.Path("models"),
                                        "--merged",     folder.Path("all.xml")});
  EXPECT_EQ(split.status, 0) << split.err;
  for (const char* smoke : {"no", "yes"}) {
    std::ifstream data(kData + "birthwt.csv");
    std::string text;
    for (std::string line; std::getline(data, line);) {
      std::size_t cell = 0;  // the fifth
      for (int i = 0; i < 4; ++i) cell = line.find(',', cell) + 1;
      const std::string value = line.substr(cell, line.find(',', cell) - cell);
      if (text.empty() || value == smoke) text += line + "\n";
    }
    const ProgramResult alone =
        RunMcfit({"logistic", folder.Write("part.csv", text), "--dependent", "birthweight",
                  "--factors", "race", "--covariates", "age,lwt", "--reference", "normal",
                  "--digits", "12", "--pmml", folder.Path("part.xml")});
    EXPECT_EQ(alone.status, 0) << alone.err;
    // But for the times of iterations, from the tables on.
    EXPECT_THAT(split.out, HasSubstr(alone.out.substr(alone.out.find("Converged"))));
    const XmlNode part = mctest::ReadXml(folder.Read("part.xml"));
    const XmlNode same =
        mctest::ReadXml(folder.Read("models/smoke=" + std::string(smoke) + ".xml"));
    EXPECT_EQ(Betas(part.Only("GeneralRegressionModel")),
              Betas(same.Only("GeneralRegressionModel")));
  }
  EXPECT_FALSE(folder.Has("models/merged.xml"));
  EXPECT_EQ(Segments(mctest::ReadXml(folder.Read("all.xml"))).size(), 2U);
}

TEST(Split, TellsAPartThatFailsAndGoesOn) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv",
                                        "group,y,x\n"
                                        "1,yes,1\n1,no,2\n1,yes,2\n1,no,1\n"
                                        "10,yes,1\n10,yes,2\n"
                                        "2,no,1\n2,yes,1\n2,yes,2\n2,no,3\n");
  const ProgramResult run =
      RunMcfit({"split", data, "--by", "group", "--kind", "logistic", "--dependent", "y",
                "--covariates", "x", "--out-dir", folder.Path("models")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("mcfit: group=10: error 318 (MCS_FEW_CATEGORIES)"));
  EXPECT_THAT(run.err, testing::EndsWith("mcfit: 1 of 3 models could not be built\n"));
  EXPECT_THAT(run.out, HasSubstr("2 models merged in"));
  // Numbers by value, not as texts.
  EXPECT_LT(run.out.find("== group=2:"), run.out.find("== group=10:"));
  EXPECT_THAT(Files(folder.Path("models")),
              ElementsAre("group=1.xml", "group=2.xml", "merged.xml"));
}

TEST(Split, WritesNoMergedDocumentWithoutAnyModel) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", "group,y,x\na,1,\nb,1,\n");
  const Arguments model = {"--dependent", "y", "--covariates", "x"};
  const ProgramResult failed = RunMcfit(
      Arguments{"split", data, "--by", "group", "--out-dir", folder.Path("models")} + model);
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.err, HasSubstr("2 of 2 models could not be built"));
  const std::string unsplit = folder.Write("unsplit.csv", "group,y,x\n,1,1\n");
  const ProgramResult empty = RunMcfit(
      Arguments{"split", unsplit, "--by", "group", "--out-dir", folder.Path("models")} + model);
  EXPECT_EQ(empty.status, 1);
  EXPECT_THAT(empty.err, HasSubstr("no row has a value in every column of --by"));
  EXPECT_THAT(Files(folder.Path("models")), testing::IsEmpty());
}

TEST(Split, NamesFilesOfAnyValues) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv",
                                        "\"a=b,\",y,x\n"
                                        "../etc/a b,1,1\n../etc/a b,2,2\n"
                                        "\"<\"\"%>\",1,1\n\"<\"\"%>\",2,2\n"
                                        "K\u00e4se,1,1\nK\u00e4se,2,2\n");
  const ProgramResult run = RunMcfit({"split", data, "--by", "\"a=b,\"", "--dependent", "y",
                                      "--covariates", "x", "--out-dir", folder.Path("models")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(Files(folder.Path("models")),
              ElementsAre("a%3Db%2C=%3C%22%25%3E.xml", "a%3Db%2C=..%2Fetc%2Fa%20b.xml",
                          "a%3Db%2C=K\u00e4se.xml", "merged.xml"));
  const XmlNode merged = mctest::ReadXml(folder.Read("models/merged.xml"));
  std::vector<std::string> values;
  for (const XmlNode* segment : Segments(merged)) {
    EXPECT_EQ(segment->Only("SimplePredicate")["field"], "a=b,");
    values.push_back(segment->Only("SimplePredicate")["value"]);
  }
  EXPECT_THAT(values, ElementsAre("../etc/a b", "<\"%>", "K\u00e4se"));
}

TEST(Split, ReadsTheStandardInputAndLeavesNothingBehind) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("tmp"));
  ChildProcess::Options options;
  options.input = kSales;
  options.temporaryFolder = folder.Path("tmp");
  const ProgramResult run = RunMcfit(
      Arguments{"split", "-", "--by", "region", "--out-dir", folder.Path("models")} + kSalesModel,
      options);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(Files(folder.Path("tmp")), testing::IsEmpty());
  EXPECT_EQ(Segments(mctest::ReadXml(folder.Read("models/merged.xml"))).size(), 2U);

  options.input = "region,price,sales\nnorth,1,2\nnorth,x,2\n";
  const ProgramResult refused = RunMcfit(
      Arguments{"split", "-", "--by", "region", "--out-dir", folder.Path("refused")} + kSalesModel,
      options);
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(Files(folder.Path("tmp")), testing::IsEmpty());
  EXPECT_THAT(Files(folder.Path("refused")), testing::IsEmpty());
}

TEST(Split, LeavesNothingBehindWhereNobodyReadsTheResults) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("tmp"));
  ChildProcess::Options options;
  options.keepInputOpen = true;
  options.temporaryFolder = folder.Path("tmp");
  ChildProcess run(
      Arguments{"split", "-", "--by", "region", "--out-dir", folder.Path("models")} + kSalesModel,
      options);
  run.CloseOutput();
  run.Give(kSales);
  run.EndInput();
  const ProgramResult result = run.Finish();
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "mcfit: the results could not be written: Broken pipe\n");
  EXPECT_THAT(Files(folder.Path("tmp")), testing::IsEmpty());
  EXPECT_THAT(Files(folder.Path("models")), testing::IsEmpty());
}

TEST(Split, AFolderThatCannotHoldThePartsIsNamed) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("sales.csv", kSales);
  ChildProcess::Options options;
  for (const auto& [temporary, reason] : {std::pair("/nonexistent", "No such file or directory"),
                                          std::pair("/dev/null", "Not a directory")}) {
    options.temporaryFolder = temporary;
    const ProgramResult run =
        RunMcfit(Arguments{"split", data, "--by", "region", "--out-dir", folder.Path("models")} +
                     kSalesModel,
                 options);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "mcfit: cannot make a folder for the parts in '" + options.temporaryFolder +
                           "': " + reason + " (TMPDIR names another folder)\n");
  }
}

TEST(Split, FindsWhatWouldEndTheMergeBeforeTheFirstFit) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("sales.csv", kSales);
  const std::string control =
      folder.Write("control.csv", "region,price,sales\n\x01,1,2\n\x01,2,3\n");
  std::filesystem::create_directory(folder.Path("here"));
  const struct {
    std::string data;
    std::string merged;
    std::string message;
  } cases[] = {{control, "m.xml", "XML can't hold the split value '\\x01'"},
               {data, "here", "cannot write"},
               {data, "none/m.xml", "cannot write"},
               {data, "models/region=north.xml", "--out-dir"},
               {data, "sales.csv", "--merged '" + data + "' would overwrite an input file"}};
  for (const auto& test : cases) {
    const ProgramResult run =
        RunMcfit(Arguments{"split", test.data, "--by", "region", "--out-dir", folder.Path("models"),
                           "--merged", folder.Path(test.merged)} +
                 kSalesModel);
    EXPECT_EQ(run.status, 2) << test.merged;
    EXPECT_THAT(run.err, HasSubstr(test.message));
    EXPECT_THAT(run.out, testing::Not(HasSubstr("\n== "))) << test.merged;
    EXPECT_FALSE(folder.Has("m.xml"));
  }
}

TEST(Split, AppendsToMoreFilesThanAProcessMayHoldOpen) {
  const TemporaryFolder folder;
  std::string text = "group,y,x\n";
  const std::string pad(600, '0');  // beyond what is kept back in memory
  for (int x = 0; x < 20; ++x) {
    for (int group = 0; group < 1500; ++group) {
      text += std::to_string(group) + "," + std::to_string(x * group % 7) + ",1" + "." + pad +
              std::to_string(x) + "\n";
    }
  }
  const ProgramResult run =
      RunMcfit({"split", folder.Write("data.csv", text), "--by", "group", "--dependent", "y",
                "--covariates", "x", "--out-dir", folder.Path("models")});
  EXPECT_EQ(run.status, 0) << run.err.substr(0, 500);
  EXPECT_THAT(run.out, HasSubstr("== group=1499: 20 rows"));
  EXPECT_EQ(Segments(mctest::ReadXml(folder.Read("models/merged.xml"))).size(), 1500U);
}

TEST(Split, RefusesWhatItCannotDo) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("sales.csv", kSales);
  const std::string text = folder.Write("text.csv", "region,price,sales\nnorth,1,2\nnorth,x,2\n");
  const auto split = [&](const std::string& file, const Arguments& more) {
    return Arguments{"split",        file,    "--dependent", "sales",
                     "--covariates", "price", "--out-dir",   folder.Path("models")} +
           more;
  };
  ExpectFailures(
      2,
      {{split(data, {}), "--by is required"},
       {{"split", data, "--by", "region", "--dependent", "sales"}, "--out-dir is required"},
       {split(data, {"--by", ""}), "--by names no column"},
       {split(data, {"--by", "region,region"}), "--by names column 'region' more than once"},
       {split(data, {"--by", "price"}), "--by: column 'price' has a role in the model already"},
       {split(data, {"--by", "sales"}), "--by: column 'sales' has a role in the model already"},
       {split(data, {"--by", "city"}), data + ": there is no column 'city'"},
       {{"split", data, "--by", "region", "--dependent", "cost", "--out-dir", folder.Path("m"),
         "--covariates", "price"},
        "there is no column 'cost'"},
       {split(data, {"--by", "region", "--kind", "probit"}), "--kind"},
       {split(data, {"--by", "region", "--reference", "a"}), "--reference needs --kind logistic"},
       {split(data, {"--by", "region", "--reread"}), "--reread needs --kind logistic"},
       {split(data, {"--by", "region", "--tolerance", "2"}),
        "--tolerance must lie between 0 and 1"},
       {split(data, {"--by", "region", "--effects", ""}), "the intercept alone"},
       {split(data, {"--by", "region", "--effects", "city"}), "city"},
       {split(data, {"--by", "region", "--kind", "logistic", "--max-iterations", "-1"}),
        "--max-iterations must not be negative"},
       {split(data, {"--by", "region", "--merged", data}), "would overwrite an input file"},
       {{"split", data, "--by", "region", "--dependent", "sales", "--covariates", "price",
         "--out-dir", data + "/x"},
        "--out-dir: cannot make"},
       {split(folder.Path("none.csv"), {"--by", "region"}), "cannot open"},
       {split(text, {"--by", "region"}),
        text + ", line 3, column 'price': 'x' is not a finite number"}});
  EXPECT_FALSE(folder.Has("models/merged.xml"));
}

}  // namespace
