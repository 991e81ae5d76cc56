// SPDX-License-Identifier: Apache-2.0
#include "effectbuilder.h"

#include "mcfit/support/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using mcfit::EffectBuilder;
using mcfit::ParseEffects;
using mcfit::RecordLayout;
using testing::HasSubstr;

// Positions: y 0, a 1, b 2, c 3, x 4, z 5.
class McfitEffectBuilder : public testing::Test {
protected:
  static mcfit::ModelColumns Columns() {
    mcfit::ModelColumns columns;
    columns.dependent = "y";
    columns.factors = {"a", "b", "c"};
    columns.covariates = {"x", "z"};
    return columns;
  }

  MCModelEffect Build(const std::string& text) const {
    return fBuilder.Build(ParseEffects(text).front());
  }

  std::string Refusal(const std::string& text) const {
    return RefusalOf([&] { fBuilder.BuildAll(ParseEffects(text)); });
  }

  RecordLayout fLayout{Columns()};
  EffectBuilder fBuilder{fLayout};
};

TEST_F(McfitEffectBuilder, EffectsHoldLevelsOfFactorsAndPowersOfCovariates) {
  const struct {
    const char* text;
    std::vector<int> entries;  // levels of a, b, c, powers of x, z
    int levels;
    bool inParens;
  } cases[] = {
      {"a", {0, -1, -1, 0, 0}, 1, false},       {"a*b", {0, 0, -1, 0, 0}, 1, false},
      {"x", {-1, -1, -1, 1, 0}, 0, false},      {"x^2*z", {-1, -1, -1, 2, 1}, 0, false},
      {"x*x", {-1, -1, -1, 2, 0}, 0, false},    {"x*a", {0, -1, -1, 1, 0}, 1, false},
      {"b(a)", {1, 0, -1, 0, 0}, 2, false},     {"c(b(a))", {2, 1, 0, 0, 0}, 3, false},
      {"c(a*b)", {1, 1, 0, 0, 0}, 2, false},    {"b*c(a)", {1, 0, 0, 0, 0}, 2, false},
      {"x*b(a)", {1, 0, -1, 1, 0}, 2, false},   {"x(a)", {0, -1, -1, 1, 0}, 1, true},
      {"x*z(b(a))", {1, 0, -1, 1, 1}, 2, true},
  };
  for (const auto& c : cases) {
    const MCModelEffect effect = Build(c.text);
    EXPECT_EQ(effect.GetModelEffect(), c.entries) << c.text;
    EXPECT_EQ(effect.GetNLevels(), c.levels) << c.text;
    EXPECT_EQ(effect.GetFactorsInParens(), c.inParens) << c.text;
  }
}

TEST_F(McfitEffectBuilder, EffectsThatMeanNothingAreRefused) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"a, q", "effect 'q': 'q' is neither a factor nor a covariate"},
      {"y", "'y' is neither a factor nor a covariate"},
      {"a*a", "effect 'a*a': factor 'a' occurs twice"},
      {"a(a)", "factor 'a' occurs twice"},
      {"a^2", "effect 'a^2': 'a' is a factor, which has no powers"},
      {"a(x)", "effect 'a(x)': 'x' is a covariate; only factors can stand in parentheses"},
      {"a*b, b*a", "effect 'b*a': the effect occurs twice"},
  };
  for (const auto& c : cases) EXPECT_THAT(Refusal(c.text), HasSubstr(c.message)) << c.text;
}

TEST_F(McfitEffectBuilder, MainEffectsAreTheFactorsThenTheCovariates) {
  const auto effects = fBuilder.MainEffects();
  ASSERT_EQ(effects.size(), 5u);
  EXPECT_EQ(effects[1].GetFactors(), std::vector<int>{2});
  EXPECT_EQ(effects[3].GetCovariates(), std::vector<int>{4});
  EXPECT_TRUE(fBuilder.Unused(effects).empty());
}

TEST_F(McfitEffectBuilder, VariablesInNoEffectAreTold) {
  EXPECT_EQ(fBuilder.Unused(fBuilder.BuildAll(ParseEffects("a*c, z"))),
            (std::vector<std::string>{"b", "x"}));
  EXPECT_EQ(fBuilder.Unused({}), (std::vector<std::string>{"a", "b", "c", "x", "z"}));
}

TEST(McfitRecordLayout, RecordsHoldTheColumnsByRole) {
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.factors = {"a"};
  columns.covariates = {"x", "z"};
  columns.frequency = "n";
  columns.weight = "w";
  const RecordLayout layout(columns);
  EXPECT_EQ(layout.Width(), 6);
  EXPECT_EQ(layout.Position(mcfit::Role::kFrequency), 4);
  EXPECT_EQ(layout.Position(mcfit::Role::kWeight), 5);
  EXPECT_EQ(layout.Positions(mcfit::Role::kCovariate), (std::vector<int>{2, 3}));
  EXPECT_EQ(layout.PositionOfPredictor("z"), 3);
  EXPECT_EQ(layout.PositionOfPredictor("y"), -1);
  EXPECT_EQ(layout.LabelledPositions(), (std::vector<int>{1}));
  EXPECT_EQ(layout.LabelledNumber(0), -1);
  EXPECT_EQ(layout.LabelledNumber(1), 0);
  EXPECT_EQ(layout.LabelledNumber(2), -1);
}

TEST(McfitRecordLayout, ADependentMayHoldLabelsToo) {
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.dependentHasLabels = true;
  columns.factors = {"a", "b"};
  columns.covariates = {"x"};
  const RecordLayout layout(columns);
  EXPECT_TRUE(layout.DependentHasLabels());
  EXPECT_EQ(layout.LabelledPositions(), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(layout.LabelledNumber(0), 0);
  EXPECT_EQ(layout.LabelledNumber(2), 2);
  EXPECT_EQ(layout.LabelledNumber(3), -1);
  EXPECT_EQ(layout.Positions(mcfit::Role::kFactor), (std::vector<int>{1, 2}));
}

TEST(McfitRecordLayout, AColumnTakesOneRole) {
  const auto refusal = [](const mcfit::ModelColumns& columns) {
    return RefusalOf([&] { const RecordLayout layout(columns); });
  };
  mcfit::ModelColumns columns;
  columns.dependent = "y";
  columns.factors = {"a", "a"};
  EXPECT_EQ(refusal(columns), "column 'a' stands twice in --factors");
  columns.factors = {"a"};
  columns.covariates = {"a"};
  EXPECT_EQ(refusal(columns),
            "column 'a' stands in --factors and in --covariates; a column takes "
            "one role");
  columns.covariates = {};
  columns.frequency = "y";
  EXPECT_THAT(refusal(columns), HasSubstr("in --dependent and in --freq"));
  columns.frequency = "n";
  columns.weight = "n";
  EXPECT_THAT(refusal(columns), HasSubstr("in --freq and in --weight"));
}

}  // namespace
