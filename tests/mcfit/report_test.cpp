// SPDX-License-Identifier: Apache-2.0
#include "errors.h"
#include "mcfit/support/temporaryfolder.h"
#include "outputfile.h"
#include "parametername.h"
#include "statustext.h"
#include "texttable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using mcfit::InputError;
using mcfit::RecordLayout;
using testing::HasSubstr;

// Positions: y 0, a 1, b 2, x 3, z 4.
RecordLayout Layout() {
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.factors = {"a", "b"};
  columns.covariates = {"x", "z"};
  return RecordLayout(columns);
}

std::vector<mcfit::LabelTable> Labels() {
  std::vector<mcfit::LabelTable> labels(2);
  labels[0].Add("low");
  labels[0].Add("high\n");
  labels[1].Add("1");
  return labels;
}

MCRegrParameter Parameter(const std::vector<std::array<int, 3>>& factors,
                          const std::vector<std::array<int, 2>>& covariates) {
  MCRegrParameter parameter;
  for (const auto& [factor, category, level] : factors) {
    parameter.AddFactor(factor, category, level);
  }
  for (const auto& [covariate, power] : covariates) parameter.AddCovariate(covariate, power);
  return parameter;
}

TEST(McfitParameterName, NamesShowColumnsLabelsPowersAndNesting) {
  const struct {
    MCRegrParameter parameter;
    bool inParens;
    const char* name;
  } cases[] = {
      {Parameter({}, {}), false, "(Intercept)"},
      {Parameter({{1, 0, 0}}, {}), false, "a=low"},
      {Parameter({{1, 1, 0}, {2, 0, 0}}, {}), false, "a=high\\x0A * b=1"},
      {Parameter({{2, 0, 0}, {1, 0, 1}}, {}), false, "b=1 (a=low)"},
      {Parameter({}, {{3, 1}}), false, "x"},
      {Parameter({}, {{3, 2}, {4, 1}}), false, "x^2 * z"},
      {Parameter({{1, 0, 0}}, {{3, 1}}), false, "x * a=low"},
      {Parameter({{1, 0, 0}}, {{3, 1}}), true, "x (a=low)"},
      {Parameter({{2, 0, 0}, {1, 0, 1}}, {{3, 1}}), true, "x (b=1 (a=low))"},
      {Parameter({{2, 0, 0}, {1, 0, 1}}, {{3, 1}}), false, "x * b=1 (a=low)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(mcfit::ParameterName(c.parameter, Layout(), Labels(), c.inParens), c.name);
  }
}

TEST(McfitTextTable, ColumnsAreAsWideAsTheirWidestCell) {
  mcfit::TextTable table(2);
  table.Add({"Name", "One", "Two"});
  table.AddRule();
  table.Add({"Größe", "1", "-22.5", "a note"});
  table.Add({"", "1000"});
  EXPECT_EQ(table.Text(),
            "Name    One    Two\n"
            "------------------\n"
            "Größe     1  -22.5  a note\n"
            "       1000\n");
}

TEST(McfitStatusText, EveryStatusIsPutInWords) {
  const long codes[] = {
#define MC_STATUS_CODE(code, name, severity, text) code,
#include "regression/frame/mcstatuscodes.inc"
  };
  const RecordLayout layout = Layout();
  for (const long code : codes) {
    const std::string text = mcfit::StatusText(MCCommon::MCStatus(code, false), layout);
    EXPECT_THAT(text, HasSubstr("error " + std::to_string(code) + " (MCS_")) << code;
  }
  EXPECT_EQ(mcfit::StatusText(MCCommon::MCStatus(307, false), layout),
            "error 307 (MCS_NO_DATA): the source has no usable row, or a new pass could not be "
            "begun");
  EXPECT_EQ(mcfit::StatusText(MCCommon::MCStatus(317, false), layout), "error 317: unknown code");
  EXPECT_THAT(mcfit::StatusText(MCCommon::MCStatus(319, true), layout),
              HasSubstr("warning 319 (MCS_REFCAT_REPLACED): "));
}

TEST(McfitStatusText, DataOfAStatusAreShown) {
  MCCommon::MCStatus tooLarge(305, false);
  tooLarge.SetDiscreteDatum(0, 50000);
  EXPECT_THAT(mcfit::StatusText(tooLarge, Layout()), HasSubstr("; the model has 50000 parameters"));
  MCCommon::MCStatus badValue(316, false);
  badValue.SetDiscreteDatum(1, 2);
  badValue.SetScaleDatum(1, 3.5);
  EXPECT_THAT(mcfit::StatusText(badValue, Layout()), HasSubstr("; column 'b', code 3.5"));
  badValue.SetDiscreteDatum(1, 99);
  EXPECT_THAT(mcfit::StatusText(badValue, Layout()), testing::Not(HasSubstr("column")));
}

TEST(McfitOutputFile, TheFileAppearsWhenItIsComplete) {
  const TemporaryFolder folder;
  folder.Write("out.csv", "old");
  {
    mcfit::OutputFile file(folder.Path("out.csv"));
    file.Write("new");
    EXPECT_EQ(folder.Read("out.csv"), "old");
    file.Commit();
  }
  EXPECT_EQ(folder.Read("out.csv"), "new");
  EXPECT_FALSE(folder.Has("out.csv.part"));
}

TEST(McfitOutputFile, AnUnfinishedFileIsRemoved) {
  const TemporaryFolder folder;
  {
    mcfit::OutputFile file(folder.Path("out.csv"));
    file.Write("new");
  }
  EXPECT_FALSE(folder.Has("out.csv"));
  EXPECT_FALSE(folder.Has("out.csv.part"));
}

TEST(McfitOutputFile, WhatCannotBeWrittenIsNamed) {
  EXPECT_THROW(mcfit::OutputFile("/nonexistent/out.csv"), InputError);
  mcfit::OutputFile full("/dev/full");
  full.Write("text");
  EXPECT_THROW(full.Commit(), InputError);
}

}  // namespace
