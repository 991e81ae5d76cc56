// SPDX-License-Identifier: Apache-2.0
#include "effectparser.h"

#include "mcfit/support/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using mcfit::EffectExpression;
using mcfit::ParseEffects;
using mcfit::ParseNames;
using testing::HasSubstr;

// The parsed effects written in one fixed way: "x^2*a/b" for levels behind slashes.
std::string Plain(const std::string& text) {
  std::string plain;
  for (const EffectExpression& effect : ParseEffects(text)) {
    plain += plain.empty() ? "" : ", ";
    for (std::size_t level = 0; level < effect.levels.size(); ++level) {
      plain += level == 0 ? "" : "/";
      for (std::size_t i = 0; i < effect.levels[level].size(); ++i) {
        const mcfit::EffectTerm& term = effect.levels[level][i];
        plain += (i == 0 ? "" : "*") + term.name + "^" + std::to_string(term.power);
      }
    }
  }
  return plain;
}

std::string Refusal(const std::string& text) {
  return RefusalOf([&] { ParseEffects(text); });
}

TEST(McfitEffectParser, EffectsAreRead) {
  const struct {
    const char* text;
    const char* plain;
  } cases[] = {
      {"", ""},
      {"  ", ""},
      {"a", "a^1"},
      {"a, b, a*b, x1, x1^2, b(a)", "a^1, b^1, a^1*b^1, x1^1, x1^2, b^1/a^1"},
      {" a * b ( c * d ( e ) ) ", "a^1*b^1/c^1*d^1/e^1"},
      {"x^2*y^3*a", "x^2*y^3*a^1"},
      {"x ^ 100", "x^100"},
      {"x^2(a)", "x^2/a^1"},
      {"\"my column\"*\"say \"\"hi\"\"\"", "my column^1*say \"hi\"^1"},
      {"\"a,b(c)\"", "a,b(c)^1"},
      {"größe*x.1*x-2*3", "größe^1*x.1^1*x-2^1*3^1"},
      {"a,\n b", "a^1, b^1"},
  };
  for (const auto& c : cases) EXPECT_EQ(Plain(c.text), c.plain) << c.text;
}

TEST(McfitEffectParser, EachEffectKeepsItsText) {
  const auto effects = ParseEffects(" a * b , x^2 (a)");
  ASSERT_EQ(effects.size(), 2u);
  EXPECT_EQ(effects[0].text, "a * b");
  EXPECT_EQ(effects[1].text, "x^2 (a)");
}

TEST(McfitEffectParser, WhatIsNoEffectIsRefusedWithItsPlace) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"a,", "at its end: a column name is expected"},
      {",a", "at ',a': a column name is expected"},
      {"a**b", "at '*b': a column name is expected"},
      {"a*", "at its end: a column name is expected"},
      {"a b", "at 'b': a comma is expected"},
      {"a(b", "at its end: ')' is expected"},
      {"a(b,c)", "at ',c)': ')' is expected"},
      {"a(b))", "at ')': a comma is expected"},
      {"a()", "at ')': a column name is expected"},
      {"(a)", "at '(a)': a column name is expected"},
      {"a(b)*c", "at '*c': a comma is expected"},
      {"x^", "at its end: a power must be a whole number from 1 to 100"},
      {"x^0", "at '0': a power must be a whole number from 1 to 100"},
      {"x^-1", "at '-1': a power must be a whole number from 1 to 100"},
      {"x^101", "at '101': a power must be"},
      {"x^99999999999", "at '99999999999': a power must be"},
      {"x^y", "at 'y': a power must be"},
      {"x^1.5", "at '.5': a comma is expected"},
      {"\"a", "at '\"a': a quoted name is never closed"},
      {"\"\"", "at its end: a column name is expected"},
      {"a\"b\"", "at '\"b\"': a comma is expected"},
  };
  for (const auto& c : cases) EXPECT_THAT(Refusal(c.text), HasSubstr(c.message)) << c.text;
}

TEST(McfitEffectParser, NestingIsBounded) {
  std::string deep = "a";
  for (int i = 0; i < 100000; ++i) deep += "(a";
  EXPECT_THAT(Refusal(deep), HasSubstr("too many levels of nesting"));
}

TEST(McfitNameList, NamesStandBetweenCommas) {
  EXPECT_EQ(ParseNames("", "--factors"), std::vector<std::string>{});
  EXPECT_EQ(ParseNames(" a , \"b, c\",NA,.", "--factors"),
            (std::vector<std::string>{"a", "b, c", "NA", "."}));
}

TEST(McfitNameList, AMistakeNamesTheOption) {
  EXPECT_EQ(RefusalOf([] { ParseNames("a,,b", "--factors"); }),
            "--factors 'a,,b', at ',b': a column name is expected");
}

TEST(McfitNameList, NamesAreQuotedOnlyWhereTheyMustBe) {
  EXPECT_EQ(mcfit::EffectName("x1"), "x1");
  EXPECT_EQ(mcfit::EffectName("x 1"), "\"x 1\"");
  EXPECT_EQ(mcfit::EffectName("say \"x\""), "\"say \"\"x\"\"\"");
  EXPECT_EQ(mcfit::EffectName(""), "\"\"");
}

}  // namespace
