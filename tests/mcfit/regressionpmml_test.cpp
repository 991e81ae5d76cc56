// SPDX-License-Identifier: Apache-2.0
//
// Models that mcfit exports, scored again from the document alone.
#include "csvreader.h"
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/goldentext.h"
#include "mcfit/support/pmmlscorer.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/temporaryfolder.h"
#include "pmmldocument.h"
#include "support/numbers.h"
#include "support/pmmlcheck.h"
#include "text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

namespace {
using testing::HasSubstr;

/// What a run of scoring found.
struct Comparison {
  int scored = 0;
  int unscored = 0;  ///< by the document and by the program alike
  int seenApart = 0;
};

/// Fits with these arguments and scores `rows` with the program and from the exported document.
/// The document holds every coefficient to its last bit, so that scores differ by the rounding of
/// their own sums alone: a few times 1e-16 of the largest term. 1e-12 of the score leaves room for
/// terms a thousand times as large as their sum, as Longley's data have them.
Comparison CompareScores(const Arguments& fit, const std::string& rows) {
  const TemporaryFolder folder;
  const ProgramResult run =
      RunMcfit(fit + Arguments{"--predict", rows, "--out", folder.Path("scores.csv"), "--pmml",
                               folder.Path("model.xml")});
  EXPECT_EQ(run.status, 0) << run.err;
  const std::string document = folder.Read("model.xml");
  EXPECT_EQ(mctest::PmmlFaults(document), "");
  const PmmlScorer scorer(document);

  Comparison found;
  mcfit::CsvReader reader(folder.Path("scores.csv"));
  while (reader.NextRow()) {
    PmmlScorer::Row row;
    for (std::size_t i = 0; i < reader.Header().size(); ++i) {
      row[reader.Header()[i]] = reader.Cell(i);
    }
    const std::optional<std::vector<double>> scores = scorer.Score(row);
    if (row["predicted"].empty()) {
      ++(scores ? found.seenApart : found.unscored);
      continue;
    }
    if (!scores) {
      ADD_FAILURE() << "a row that the document can't score";
      continue;
    }
    ++found.scored;
    if (scorer.Categories().empty()) {
      const double expected = mctest::ToNumber(row["predicted"]);
      EXPECT_NEAR(scores->at(0), expected, 1e-12 * std::abs(expected));
      continue;
    }
    for (std::size_t i = 0; i < scores->size(); ++i) {
      EXPECT_NEAR((*scores)[i], mctest::ToNumber(row.at("p(" + scorer.Categories()[i] + ")")),
                  1e-12);
    }
  }
  return found;
}

void ExpectAllScored(const Arguments& fit, const std::string& rows, int count) {
  const Comparison found = CompareScores(fit, rows);
  EXPECT_EQ(found.scored, count);
  EXPECT_EQ(found.unscored + found.seenApart, 0);
}

TEST(RegressionPmml, ScoresPublishedDataAsTheComponentDoes) {
  ExpectAllScored({"linear", kData + "longley.csv", "--dependent", "employed", "--covariates",
                   "deflator,gnp,unemployed,forces,population,year"},
                  kData + "longley.csv", 16);
  ExpectAllScored({"linear", kData + "peas.csv", "--dependent", "progeny", "--covariates", "parent",
                   "--weight", "weight", "--no-intercept"},
                  kData + "peas.csv", 7);
  ExpectAllScored({"logistic", kData + "birthwt.csv", "--dependent", "birthweight", "--factors",
                   "race,smoke,hypertension,irritability", "--covariates", "age,lwt"},
                  kData + "birthwt.csv", 189);
  ExpectAllScored({"logistic", kData + "haireyecolor.csv", "--dependent", "hair", "--reference",
                   "Brown", "--factors", "eye,sex", "--freq", "people"},
                  kData + "haireyecolor.csv", 32);
  ExpectAllScored({"logistic", kData + "iris.csv", "--dependent", "species", "--covariates",
                   "petal_length,petal_width"},
                  kData + "iris.csv", 150);
}

/// Rows with nested factors, powers and interactions, some with missing cells, and the names and
/// labels that a document must escape.
std::string RandomRows(int n) {
  std::mt19937_64 engine(4);
  std::normal_distribution<double> normal;
  const char* const regions[] = {"A & B", "<north>", "\"\"deep\"\"  south", "Käse"};
  const char* const sites[] = {"1", "1.0", "two", ""};
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(17);
  text << "y,kind,\"the  region\",site,x<1>,z\n";
  for (int i = 0; i < n; ++i) {
    const auto region = engine() % 4;
    const auto site = engine() % 16;
    const double x = 3.0 + normal(engine);
    const double z = 100.0 * normal(engine);
    const double y = static_cast<double>(region) + x * x - 0.03 * z + normal(engine);
    text << y << ','
         << (y > 10.0  ? "high"
             : y > 7.0 ? "mid"
                       : "low")
         << ",\"" << regions[region] << "\","
         << sites[std::min<std::size_t>(site / 4, site == 15 ? 3 : 2)] << ',' << x << ',';
    if (i % 17 == 0) {
      text << (i % 2 == 0 ? "NA" : "-99") << '\n';
    } else {
      text << z << '\n';
    }
  }
  return text.str();
}

TEST(RegressionPmml, ScoresNestedEffectsPowersAndMissingCellsAsTheComponentDoes) {
  const TemporaryFolder folder;
  const std::string rows = folder.Write("rows.csv", RandomRows(400));
  const Arguments design = {"--factors",
                            "\"the  region\",site",
                            "--covariates",
                            "x<1>,z",
                            "--missing",
                            "NA,-99",
                            "--effects",
                            "\"the  region\", site(\"the  region\"), x<1>, x<1>^2, "
                            "z, x<1>*z, x<1>^3(site)"};
  for (const char* kind : {"linear", "logistic"}) {
    const Comparison found = CompareScores(
        Arguments{kind, rows, "--dependent", std::string(kind) == "linear" ? "y" : "kind"} + design,
        rows);
    EXPECT_GT(found.scored, 340) << kind;
    EXPECT_GT(found.unscored, 20) << kind;
    EXPECT_EQ(found.seenApart, 0) << kind;
  }
}

// The one difference: where labels were never seen together, the component answers nothing, but
// the standard sums what there is.
TEST(RegressionPmml, ScoresCombinationsThatTheFitHasNotSeen) {
  const TemporaryFolder folder;
  const std::string rows =
      folder.Write("rows.csv", "variety,water\nBright,20\nBright,5\nOther,5\n");
  const Comparison found =
      CompareScores({"linear", kData + "yields.csv", "--dependent", "yield", "--factors",
                     "variety,water", "--effects", "variety, water, variety*water"},
                    rows);
  EXPECT_EQ(found.scored, 1);
  EXPECT_EQ(found.seenApart, 1);
  EXPECT_EQ(found.unscored, 1);
}

TEST(RegressionPmml, LabelsOfDroppedRowsAloneAreNoCategories) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "data.csv", "y,a,k\n1,p,u\n2,q,v\n4,p,v\n3,q,u\n5,p,u\n,r,u\n6,p,\n3,r,\n,s,w\n");
  const Comparison linear =
      CompareScores({"linear", data, "--dependent", "y", "--factors", "a,k"}, data);
  EXPECT_EQ(linear.scored, 5);
  EXPECT_EQ(linear.unscored, 4);
  const Comparison logistic = CompareScores(
      {"logistic", data, "--dependent", "k", "--factors", "a", "--covariates", "y"}, data);
  EXPECT_EQ(logistic.scored + logistic.unscored, 9);
  EXPECT_EQ(logistic.seenApart, 0);
}

TEST(RegressionPmml, AModelIsWrittenAsAWhole) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", "y,x,g\n0,-1,a\n2,-1,a\n4,1,a\n6,1,a\n,1,b\n");
  const ProgramResult run =
      RunMcfit({"linear", data, "--dependent", "y", "--covariates", "x", "--factors", "g",
                "--effects", "x,g*x^2", "--missing", "-9,NA", "--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  // Mean 3, slope 2, residual sum of squares 4 on two degrees of freedom.
  EXPECT_EQ(WithoutTimestamp(folder.Read("m.xml")), Golden("linear.xml"));
}

TEST(RegressionPmml, CovariancesAreThoseOfTheReport) {
  const TemporaryFolder folder;
  const ProgramResult run =
      RunMcfit({"logistic", kData + "birthwt.csv", "--dependent", "birthweight", "--covariates",
                "age,lwt", "--digits", "15", "--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto numbers = Numbers(run.out);
  const mctest::XmlNode root = mctest::ReadXml(folder.Read("m.xml"));
  const mctest::XmlNode& model = root.Only("GeneralRegressionModel");
  const std::map<std::string, std::string> names = {
      {"p0", "(Intercept)"}, {"p1", "age"}, {"p2", "lwt"}};
  int diagonals = 0;
  const auto cells = model.Only("PCovMatrix").All("PCovCell");
  EXPECT_EQ(cells.size(), 6u);
  for (const mctest::XmlNode* cell : cells) {
    EXPECT_EQ((*cell)["tRow"], "low");
    EXPECT_EQ((*cell)["tCol"], "low");
    if ((*cell)["pRow"] != (*cell)["pCol"]) continue;
    ++diagonals;
    const double error = numbers.at(names.at((*cell)["pRow"]))[1];
    EXPECT_NEAR(std::sqrt(mctest::ToNumber((*cell)["value"])), error, 1e-13 * error);
  }
  EXPECT_EQ(diagonals, 3);
}

// Four rows and four parameters: no residual variance is known.
TEST(RegressionPmml, CovariancesThatAreNotKnownAreLeftOut) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", "y,a\n1,p\n2,q\n");
  const ProgramResult run = RunMcfit(
      {"linear", data, "--dependent", "y", "--factors", "a", "--pmml", folder.Path("m.xml")});
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string document = folder.Read("m.xml");
  EXPECT_EQ(mctest::PmmlFaults(document), "");
  EXPECT_EQ(document.find("PCovMatrix"), std::string::npos);
}

TEST(RegressionPmml, WhatCantBeWrittenIsRefused) {
  const TemporaryFolder folder;
  const std::string data = folder.Write("data.csv", "y,a,x\n1,p,1\n2,q,3\n4,p,2\n");
  const std::string latin = folder.Write("latin.csv", "y,a\n1,K\xE4se\n2,q\n4,q\n");
  const std::string bell = folder.Write("bell.csv", "y,a\a\n1,p\n2,q\n4,q\n");
  const std::string out = folder.Path("out.xml");
  const Arguments fit = {"linear", data, "--dependent", "y", "--factors", "a"};
  const auto with = [&fit](const Arguments& more) { return fit + more; };
  ExpectFailures(2, {{{"linear", data, "--dependent", "y", "--effects", "", "--pmml", out},
                      "PMML 3.2 can't tell a model of the intercept alone"},
                     {with({"--pmml", data}), "would overwrite an input file"},
                     {with({"--predict", data, "--out", out, "--pmml", out}),
                      "would overwrite another result"},
                     {with({"--pmml", folder.Path("none/out.xml")}), "cannot write"}});
  for (const std::string& file : {latin, bell}) {
    const ProgramResult run = RunMcfit({"linear", file, "--dependent", "y", "--factors",
                                        file == bell ? "a\a" : "a", "--pmml", out});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("XML can't hold the text"));
  }
  EXPECT_FALSE(folder.Has("out.xml"));
  EXPECT_FALSE(folder.Has("out.xml.part"));
}

TEST(PmmlDocument, NumbersReadBackAsTheyWere) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(mcfit::ExactNumber(0.1), "0.1");
  EXPECT_EQ(mcfit::ExactNumber(-3.0), "-3");
  EXPECT_EQ(mcfit::ExactNumber(-0.0), "0");
  for (const double value : {1.0 / 3.0, 1e-300 / 7.0, 2e300 / 3.0, 123456789.123456789}) {
    EXPECT_EQ(mctest::ToNumber(mcfit::ExactNumber(value)), value);
  }
  EXPECT_EQ(mcfit::ExactNumber(infinity), "INF");
  EXPECT_EQ(mcfit::ExactNumber(-infinity), "-INF");
  EXPECT_EQ(mcfit::ExactNumber(std::numeric_limits<double>::quiet_NaN()), "NaN");
}

TEST(Text, XmlHoldsUTF8WithoutControlCharacters) {
  for (const char* text : {"", "plain", "a\tb\nc\r", "K\xC3\xA4se", "\xE2\x82\xAC", "\xED\x9F\xBF",
                           "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF",
                           "\xC2\x80", "\xE0\xA0\x80", "\xF0\x90\x80\x80"}) {
    EXPECT_TRUE(mcfit::IsXmlText(text)) << text;
  }
  for (const char* text :
       {"\x01", "\a", "\x1F", "K\xE4se", "\x80", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE2\x82",
        "\xE2\x28\xAC", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF",
        "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    EXPECT_FALSE(mcfit::IsXmlText(text)) << text;
  }
  EXPECT_FALSE(mcfit::IsXmlText(std::string_view("a\0b", 3)));
}

}  // namespace
