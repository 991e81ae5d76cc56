// SPDX-License-Identifier: Apache-2.0
#include "regression/design/mcregrecordvalidator.h"

#include "regression/frame/mcmv.h"
#include "support/countingallocator.h"
#include "support/displaycapture.h"
#include "support/makerecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {
using namespace MCConst;
using MCCommon::MCStatus;
using MCCommon::Record;
using mctest::MakeRecord;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Roles = std::vector<MCVariableType>;

constexpr double kMissing = MCMV::gMissingValue;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

// What a test answers: accepted, rejected silently, or a code. With code 316 the position and the
// value, by its text as NaN has no equal.
std::string Outcome(bool isValid, const MCStatus& status, const MCStatus& before) {
  if (status == before) return isValid ? "valid" : "silent";
  std::string text = (isValid ? "valid with " : "") + std::to_string(status.GetErrorCode());
  if (!status.IsError()) text += " without an error";
  if (status.GetErrorCode() == MCCommon::MCS_RECORD_BAD_VALUE) {
    text += " at " + std::to_string(status.GetDiscreteDatum(1)) + " value " +
            std::to_string(status.GetScaleDatum(1));
  }
  if (status.GetDiscreteDatum(0) != 0 || status.GetDiscreteDatum(2) != 0 ||
      status.GetScaleDatum(0) != 0.0 || status.GetScaleDatum(2) != 0.0) {
    text += " with further data";
  }
  return text;
}

// A status of before, which silent answers must leave alone.
MCStatus Marked() {
  MCStatus status(319, true);
  status.SetDiscreteDatum(0, 77);
  return status;
}

std::string Validate(const MCRegRecordValidator& validator, const Doubles& values) {
  MCStatus status = Marked();
  const bool isValid = validator.IsValidRecord(MakeRecord(values), status);
  return Outcome(isValid, status, Marked());
}

std::string Validate4Scoring(const MCRegRecordValidator& validator, const Doubles& values) {
  MCStatus status = Marked();
  const bool isValid = validator.IsValid4Scoring(MakeRecord(values), status);
  return Outcome(isValid, status, Marked());
}

std::string BadValue(int position, double value) {
  return "316 at " + std::to_string(position) + " value " + std::to_string(value);
}

// One position of the given role; factors and categorical dependents have 3 categories.
MCRegRecordValidator OfOneRole(MCVariableType role, int nDepCategories = 0) {
  const Ints factors = role == MC_VAR_FACTOR ? Ints{0} : Ints();
  const Ints sizes = role == MC_VAR_FACTOR ? Ints{3} : Ints();
  return MCRegRecordValidator({role}, factors, sizes, nDepCategories);
}

TEST(MCRegRecordValidator, MadeByDefaultAcceptsEveryRecord) {
  const MCRegRecordValidator validator;
  EXPECT_EQ(Validate(validator, {}), "valid");
  EXPECT_EQ(Validate(validator, {kMissing, kNaN}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {}), "valid");
}

TEST(MCRegRecordValidator, WeightsMustBeAboveZero) {
  const struct {
    double weight;
    const char* expected;
  } kCases[] = {
      {1.0, "valid"},         {1e-300, "valid"}, {kInfinity, "valid"}, {kNaN, "valid"},
      {0.0, "silent"},        {-0.0, "silent"},  {-1.0, "silent"},     {kMissing, "silent"},
      {-kInfinity, "silent"}, {5e-324, "valid"},
  };
  for (const MCVariableType role : {MC_VAR_FREQ_WEIGHT, MC_VAR_REGR_WEIGHT}) {
    for (const auto& row : kCases) {
      EXPECT_EQ(Validate(OfOneRole(role), {row.weight}), row.expected) << row.weight;
      EXPECT_EQ(Validate4Scoring(OfOneRole(role), {row.weight}), "valid") << row.weight;
    }
  }
}

TEST(MCRegRecordValidator, ScaleValuesMustNotBeMissing) {
  const struct {
    double value;
    const char* expected;
  } kCases[] = {
      {0.0, "valid"},        {-7.25, "valid"},
      {1e300, "valid"},      {kInfinity, "valid"},
      {-kInfinity, "valid"}, {kNaN, "valid"},
      {kMissing, "silent"},  {std::nextafter(kMissing, 0.0), "valid"},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(Validate(OfOneRole(MC_VAR_COVARIATE), {row.value}), row.expected) << row.value;
    EXPECT_EQ(Validate4Scoring(OfOneRole(MC_VAR_COVARIATE), {row.value}), row.expected)
        << row.value;
    for (const int nDepCategories : {0, -1, kMinInt}) {
      EXPECT_EQ(Validate(OfOneRole(MC_VAR_DEPENDENT, nDepCategories), {row.value}), row.expected)
          << row.value;
    }
    EXPECT_EQ(Validate4Scoring(OfOneRole(MC_VAR_DEPENDENT), {row.value}), "valid") << row.value;
  }
}

// Covariates are compared several at a time: every length, and every place of the missing value.
TEST(MCRegRecordValidator, AMissingValueIsFoundAtEachPlaceOfManyCovariates) {
  for (std::size_t nCovariates = 1; nCovariates <= 13; ++nCovariates) {
    Roles roles(nCovariates, MC_VAR_COVARIATE);
    roles.insert(roles.begin(), MC_VAR_UNSPECIFIED);
    const MCRegRecordValidator validator(roles, {}, {}, 0);
    Doubles values(nCovariates, kInfinity);
    values.insert(values.begin(), kMissing);
    values.push_back(kMissing);
    EXPECT_EQ(Validate(validator, values), "valid") << nCovariates;
    EXPECT_EQ(Validate4Scoring(validator, values), "valid") << nCovariates;
    for (std::size_t i = 1; i <= nCovariates; ++i) {
      for (const double other : {1.0, kNaN, -kInfinity}) {
        std::fill(values.begin() + 1, values.end(), other);
        values[i] = kMissing;
        EXPECT_EQ(Validate(validator, values), "silent") << i << " of " << nCovariates;
        EXPECT_EQ(Validate4Scoring(validator, values), "silent") << i << " of " << nCovariates;
        values[i] = other;
        EXPECT_EQ(Validate(validator, values), "valid") << nCovariates;
      }
      values.back() = kMissing;
      EXPECT_EQ(Validate(validator, values), "valid") << nCovariates;
    }
  }
}

TEST(MCRegRecordValidator, CategoryCodesAreTestedInTheirOrder) {
  const struct {
    double code;
    std::string expected;
  } kCases[] = {
      {0.0, "valid"},
      {-0.0, "valid"},
      {2.0, "valid"},
      {3.0, "valid"},  // one looser than the levels that exist
      {3.5, BadValue(0, 3.5)},
      {4.0, BadValue(0, 4.0)},
      {1.5, BadValue(0, 1.5)},
      {-0.5, BadValue(0, -0.5)},
      {-0.25, BadValue(0, -0.25)},
      {-5e-324, BadValue(0, -5e-324)},
      {std::nextafter(-0.5, -1.0), "silent"},
      {-1.0, "silent"},
      {-1.5, "silent"},
      {kMissing, "silent"},
      {-kInfinity, "silent"},
      {kInfinity, BadValue(0, kInfinity)},
      {kNaN, BadValue(0, kNaN)},
      {2147483647.0, BadValue(0, 2147483647.0)},
      {2147483648.0, BadValue(0, 2147483648.0)},
      {1e300, BadValue(0, 1e300)},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(Validate(OfOneRole(MC_VAR_FACTOR), {row.code}), row.expected) << row.code;
    EXPECT_EQ(Validate4Scoring(OfOneRole(MC_VAR_FACTOR), {row.code}), row.expected) << row.code;
    EXPECT_EQ(Validate(OfOneRole(MC_VAR_DEPENDENT, 3), {row.code}), row.expected) << row.code;
    EXPECT_EQ(Validate4Scoring(OfOneRole(MC_VAR_DEPENDENT, 3), {row.code}), "valid") << row.code;
  }
}

TEST(MCRegRecordValidator, AFactorAsLargeAsAnIntTakesItsLargestCode) {
  const MCRegRecordValidator validator({MC_VAR_FACTOR}, {0}, {kMaxInt}, 0);
  EXPECT_EQ(Validate(validator, {2147483647.0}), "valid");
  EXPECT_EQ(Validate(validator, {2147483648.0}), BadValue(0, 2147483648.0));
}

TEST(MCRegRecordValidator, TheDataOfABadValueAreItsPositionAndTheValue) {
  const MCRegRecordValidator validator({MC_VAR_COVARIATE, MC_VAR_UNSPECIFIED, MC_VAR_FACTOR}, {2},
                                       {3}, 0);
  MCStatus expected(MCCommon::MCS_RECORD_BAD_VALUE, false);
  expected.SetDiscreteDatum(1, 2);
  expected.SetScaleDatum(1, 9.0);
  MCStatus status = Marked();
  EXPECT_FALSE(validator.IsValidRecord(MakeRecord({1.0, 1.0, 9.0}), status));
  EXPECT_TRUE(status == expected);
  status = Marked();
  EXPECT_FALSE(validator.IsValid4Scoring(MakeRecord({1.0, 1.0, 9.0}), status));
  EXPECT_TRUE(status == expected);
}

TEST(MCRegRecordValidator, UnspecifiedAndUnknownRolesAreNotTested) {
  for (const MCVariableType role : {MC_VAR_UNSPECIFIED, static_cast<MCVariableType>(7)}) {
    for (const double value : {0.5, -1.0, kMissing, kNaN}) {
      EXPECT_EQ(Validate(OfOneRole(role), {value}), "valid") << role << ' ' << value;
      EXPECT_EQ(Validate4Scoring(OfOneRole(role), {value}), "valid") << role << ' ' << value;
    }
  }
}

// Factor, covariate, weight, dependent, factor, covariate; a bad value in each.
const Roles kMixed = {MC_VAR_FACTOR,    MC_VAR_COVARIATE, MC_VAR_FREQ_WEIGHT,
                      MC_VAR_DEPENDENT, MC_VAR_FACTOR,    MC_VAR_COVARIATE};

TEST(MCRegRecordValidator, TheFirstFailureInTheOrderOfPositionsDecides) {
  const MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 0);
  EXPECT_EQ(Validate(validator, {0, 1, 1, 1, 0, 1}), "valid");
  EXPECT_EQ(Validate(validator, {9, kMissing, 0, kMissing, 8, 1}), BadValue(0, 9));
  EXPECT_EQ(Validate(validator, {0, kMissing, 0, 1, 8, 1}), "silent");
  EXPECT_EQ(Validate(validator, {0, 1, 0, 1, 8, 1}), "silent");
  EXPECT_EQ(Validate(validator, {0, 1, 1, kMissing, 8, 1}), "silent");
  EXPECT_EQ(Validate(validator, {0, 1, 1, 1, 8, kMissing}), BadValue(4, 8));
  EXPECT_EQ(Validate(validator, {-1, 1, 1, 1, 8, 1}), "silent");
}

TEST(MCRegRecordValidator, TheFirstOfAdjoiningCodesDecides) {
  const MCRegRecordValidator validator({MC_VAR_FACTOR, MC_VAR_FACTOR, MC_VAR_FACTOR}, {0, 1, 2},
                                       {2, 3, 4}, 0);
  EXPECT_EQ(Validate(validator, {2, 3, 4}), "valid");
  EXPECT_EQ(Validate(validator, {3, 4, 5}), BadValue(0, 3));
  EXPECT_EQ(Validate(validator, {2, 4, 5}), BadValue(1, 4));
  EXPECT_EQ(Validate(validator, {2, 3, 5}), BadValue(2, 5));
  EXPECT_EQ(Validate(validator, {2, kMissing, 5}), "silent");
  EXPECT_EQ(Validate(validator, {2, 0.5, kMissing}), BadValue(1, 0.5));
}

TEST(MCRegRecordValidator, AShortRecordIsRefusedBeforeAnyValueIsRead) {
  const MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 0);
  for (std::size_t size = 0; size < kMixed.size(); ++size) {
    EXPECT_EQ(Validate(validator, Doubles(size, kMissing)), "315") << size;
    MCStatus status = Marked();
    EXPECT_FALSE(validator.IsValidRecord(MakeRecord(Doubles(size, 1.0)), status));
    EXPECT_TRUE(status == MCStatus(MCCommon::MCS_RECORD_SHORT, false)) << size;
  }
}

TEST(MCRegRecordValidator, AShortRecordIsRefusedForTrailingUnspecifiedRolesToo) {
  const MCRegRecordValidator validator({MC_VAR_COVARIATE, MC_VAR_UNSPECIFIED}, {}, {}, 0);
  EXPECT_EQ(Validate(validator, {1.0}), "315");
  EXPECT_EQ(Validate4Scoring(validator, {1.0}), "valid");
}

TEST(MCRegRecordValidator, ValuesBeyondTheRolesAreIgnored) {
  const MCRegRecordValidator validator({MC_VAR_COVARIATE}, {}, {}, 0);
  EXPECT_EQ(Validate(validator, {1.0, kMissing, kNaN}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {1.0, kMissing, kNaN}), "valid");
}

TEST(MCRegRecordValidatorScoring, LooksAtFactorsAndCovariatesOnly) {
  const MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 3);
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, 0, kMissing, 1, 1}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, -1, 0.5, 1, 1}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {0, kMissing, 1, 1, 8, 1}), "silent");
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, 1, 1, 8, kMissing}), BadValue(4, 8));
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, 1, 1, 1, kMissing}), "silent");
}

TEST(MCRegRecordValidatorScoring, AShortRecordFailsWhereItEnds) {
  const MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 0);
  EXPECT_EQ(Validate4Scoring(validator, {}), "315");
  EXPECT_EQ(Validate4Scoring(validator, {0}), "315");
  for (const int size : {2, 3, 4}) {
    EXPECT_EQ(Validate4Scoring(validator, Doubles(static_cast<std::size_t>(size), 1.0)), "315");
  }
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, 1, 1, 1}), "315");
  EXPECT_EQ(Validate4Scoring(validator, {0, 1, 1, 1, 1, 1}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {kMissing}), "silent") << "the earlier position decides";
  EXPECT_EQ(Validate4Scoring(validator, {9}), BadValue(0, 9));

  const MCRegRecordValidator run({MC_VAR_FACTOR, MC_VAR_FACTOR}, {0, 1}, {2, 2}, 0);
  EXPECT_EQ(Validate4Scoring(run, {1}), "315");
  EXPECT_EQ(Validate4Scoring(run, {0.5}), BadValue(0, 0.5));
}

TEST(MCRegRecordValidatorScoring, PositionsThatAreNotLookedAtMayBeAbsent) {
  const MCRegRecordValidator validator(
      {MC_VAR_COVARIATE, MC_VAR_DEPENDENT, MC_VAR_FREQ_WEIGHT, MC_VAR_UNSPECIFIED}, {}, {}, 0);
  EXPECT_EQ(Validate4Scoring(validator, {1.0}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {}), "315");
  const MCRegRecordValidator weightsOnly({MC_VAR_DEPENDENT, MC_VAR_REGR_WEIGHT}, {}, {}, 0);
  EXPECT_EQ(Validate4Scoring(weightsOnly, {}), "valid");
}

TEST(MCRegRecordValidatorSetup, OnlyTheFirstCategoricalDependentGetsItsBound) {
  const MCRegRecordValidator validator({MC_VAR_DEPENDENT, MC_VAR_DEPENDENT}, {}, {}, 3);
  EXPECT_EQ(Validate(validator, {3.0, 0.0}), "valid");
  EXPECT_EQ(Validate(validator, {3.0, 1.0}), BadValue(1, 1.0));
}

TEST(MCRegRecordValidatorSetup, ADependentThatIsAbsentTakesNoBound) {
  EXPECT_EQ(Validate(MCRegRecordValidator({MC_VAR_COVARIATE}, {}, {}, 3), {1.0}), "valid");
  EXPECT_EQ(Validate(MCRegRecordValidator({}, {}, {}, 3), {1.0}), "valid");
}

TEST(MCRegRecordValidatorSetup, FactorsPastTheRolesAndWithoutASizeAreSkipped) {
  const MCRegRecordValidator validator({MC_VAR_FACTOR, MC_VAR_FACTOR}, {5, -1, kMaxInt, 0, 1},
                                       {9, 9, 9, 2}, 0);
  EXPECT_EQ(Validate(validator, {2.0, 0.0}), "valid");
  EXPECT_EQ(Validate(validator, {2.0, 1.0}), BadValue(1, 1.0)) << "no size: bound 0";
  const MCRegRecordValidator moreSizes({MC_VAR_FACTOR}, {0}, {2, 9}, 0);
  EXPECT_EQ(Validate(moreSizes, {3.0}), BadValue(0, 3.0));
}

TEST(MCRegRecordValidatorSetup, ReplacesTheRulesOfBefore) {
  MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 3);
  validator.SetRecordInfo({MC_VAR_DEPENDENT}, {}, {}, 0);
  EXPECT_EQ(Validate(validator, {-7.25}), "valid");
  EXPECT_EQ(Validate4Scoring(validator, {}), "valid");
  validator.SetRecordInfo({MC_VAR_FACTOR}, {}, {}, 0);
  EXPECT_EQ(Validate(validator, {1.0}), BadValue(0, 1.0)) << "no bound is left over";
}

TEST(MCRegRecordValidatorSetup, KeepsTheRulesWhereMemoryRunsOut) {
  const Roles other = {MC_VAR_COVARIATE, MC_VAR_COVARIATE, MC_VAR_FACTOR};
  std::size_t k = 1;
  for (bool hasFired = true; hasFired; ++k) {
    MCRegRecordValidator validator = OfOneRole(MC_VAR_FACTOR);
    try {
      const mctest::FailAllocation failure(k);
      validator.SetRecordInfo(other, {}, {}, 0);
      hasFired = failure.HasFired();
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(Validate(validator, {3.0}), "valid") << k;
      EXPECT_EQ(Validate(validator, {4.0}), BadValue(0, 4.0)) << k;
      continue;
    }
    EXPECT_FALSE(hasFired) << k;
  }
  EXPECT_GT(k, 3U);
}

TEST(MCRegRecordValidator, TestsWithoutAllocating) {
  const MCRegRecordValidator validator(kMixed, {0, 4}, {2, 2}, 0);
  const Record records[] = {MakeRecord({0, 1, 1, 1, 0, 1}), MakeRecord({9, 1, 1, 1, 0, 1}),
                            MakeRecord({0, kMissing, 1, 1, 0, 1}), MakeRecord({0})};
  MCStatus status;
  const std::size_t before = mctest::AllocationCount();
  int nValid = 0;
  for (const Record& record : records) {
    if (validator.IsValidRecord(record, status)) ++nValid;
    if (validator.IsValid4Scoring(record, status)) ++nValid;
  }
  EXPECT_EQ(mctest::AllocationCount(), before);
  EXPECT_EQ(nValid, 2);
}

// The rules told position by position, the plain way.
class PlainValidator {
public:
  PlainValidator(Roles roles, Ints bounds, int nDepCategories)
      : fRoles(std::move(roles)), fBounds(std::move(bounds)), fNDepCategories(nDepCategories) {}

  std::string Validate(const Doubles& values) const {
    if (values.size() < fRoles.size()) return "315";
    for (std::size_t i = 0; i < fRoles.size(); ++i) {
      const std::string outcome = TestPosition(i, values[i]);
      if (outcome != "valid") return outcome;
    }
    return "valid";
  }

  std::string Validate4Scoring(const Doubles& values) const {
    for (std::size_t i = 0; i < fRoles.size(); ++i) {
      if (fRoles[i] != MC_VAR_FACTOR && fRoles[i] != MC_VAR_COVARIATE) continue;
      if (i >= values.size()) return "315";
      const std::string outcome = TestPosition(i, values[i]);
      if (outcome != "valid") return outcome;
    }
    return "valid";
  }

private:
  std::string TestPosition(std::size_t i, double value) const {
    const MCVariableType role = fRoles[i];
    if (role == MC_VAR_FREQ_WEIGHT || role == MC_VAR_REGR_WEIGHT) {
      return value <= 0.0 ? "silent" : "valid";
    }
    const bool isScaleDependent = role == MC_VAR_DEPENDENT && fNDepCategories <= 0;
    if (role == MC_VAR_COVARIATE || isScaleDependent) {
      return value == kMissing ? "silent" : "valid";
    }
    if (role == MC_VAR_FACTOR || role == MC_VAR_DEPENDENT) {
      if (value < -0.5) return "silent";
      if (!(std::trunc(value) == value) || value > fBounds[i]) {
        return BadValue(static_cast<int>(i), value);
      }
    }
    return "valid";
  }

  Roles fRoles;
  Ints fBounds;
  int fNDepCategories;
};

TEST(MCRegRecordValidator, AgreesWithThePlainRulesOnRandomRecords) {
  std::mt19937 random(20240917);
  const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  // Mostly usable values, so that later positions are reached.
  const Doubles kValues = {1, 1, 1, 1, 2, 2, 2,  2,   1,     1,        2,    2,
                           1, 1, 2, 3, 4, 0, -1, 0.5, -0.25, kMissing, kNaN, kInfinity};
  int nValid = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    const int nPositions = pick(9);
    const int nDepCategories = pick(4) - 1;
    Roles roles;
    Ints bounds, factors, sizes;
    bool hasDependent = false;
    for (int i = 0; i < nPositions; ++i) {
      roles.push_back(static_cast<MCVariableType>(pick(6)));
      bounds.push_back(0);
      if (roles.back() == MC_VAR_FACTOR) {
        factors.push_back(i);
        sizes.push_back(bounds.back() = 1 + pick(3));
      }
      if (roles.back() == MC_VAR_DEPENDENT && !hasDependent) {
        bounds.back() = std::max(nDepCategories, 0);
        hasDependent = true;
      }
    }
    Doubles values(static_cast<std::size_t>(std::max(0, nPositions + 1 - pick(3))));
    for (double& value : values) {
      value = kValues[static_cast<std::size_t>(pick(static_cast<int>(kValues.size())))];
    }
    const MCRegRecordValidator validator(roles, factors, sizes, nDepCategories);
    const PlainValidator plain(roles, bounds, nDepCategories);
    const std::string expected = plain.Validate(values);
    if (expected == "valid") ++nValid;
    ASSERT_EQ(Validate(validator, values), expected) << trial;
    ASSERT_EQ(Validate4Scoring(validator, values), plain.Validate4Scoring(values)) << trial;
  }
  EXPECT_GT(nValid, 1000);
}

TEST(MCRegRecordValidator, DisplaysTheRolesAndBounds) {
  const MCRegRecordValidator validator({MC_VAR_UNSPECIFIED, MC_VAR_FREQ_WEIGHT, MC_VAR_REGR_WEIGHT,
                                        MC_VAR_FACTOR, MC_VAR_COVARIATE, MC_VAR_DEPENDENT},
                                       {3}, {4}, 2);
  EXPECT_EQ(mctest::Displayed([&] { validator.Display(); }),
            "\nMCRegRecordValidator display start"
            "\nVariable roles in MCRegRecordValidator"
            "\n  Variable index = 0"
            "\n    Type = Unspecified"
            "\n  Variable index = 1"
            "\n    Type = Frequency weight"
            "\n  Variable index = 2"
            "\n    Type = Regression Weight"
            "\n  Variable index = 3"
            "\n    Type = Factor"
            "\n  Variable index = 4"
            "\n    Type = Covariate"
            "\n  Variable index = 5"
            "\n    Type = Dependent"
            "\nNumber of target categories = 2"
            "\nNumbers of factor categories (size = 6)\n 0 0 0 4 0 2"
            "\nMCRegRecordValidator display end");
}

}  // namespace
