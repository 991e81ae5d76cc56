// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/mcstatus.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace {
using MCCommon::MCStatus;

void ExpectZeroData(const MCStatus& status) {
  for (unsigned i = 0; i < 3; ++i) {
    EXPECT_EQ(status.GetDiscreteDatum(i), 0) << i;
    EXPECT_EQ(status.GetScaleDatum(i), 0.0) << i;
  }
}

TEST(MCStatus, AFreshStatusIsOkWithZeroMembers) {
  const MCStatus fresh;
  EXPECT_TRUE(fresh.IsOK());
  EXPECT_FALSE(fresh.IsError());
  EXPECT_FALSE(fresh.IsWarning());
  EXPECT_EQ(fresh.GetErrorCode(), 0);
  ExpectZeroData(fresh);
}

TEST(MCStatus, AFreshStatusDiffersFromAWarningOfCodeZero) {
  const MCStatus warning(0, true);
  EXPECT_FALSE(warning.IsOK());
  EXPECT_TRUE(warning.IsWarning());
  EXPECT_FALSE(MCStatus() == warning);
}

TEST(MCStatus, TheFlagSaysThatTheStatusIsOnlyAWarning) {
  const MCStatus warning(319, true);
  EXPECT_EQ(warning.GetErrorCode(), 319);
  EXPECT_TRUE(warning.IsWarning());
  EXPECT_FALSE(warning.IsError());
  EXPECT_FALSE(warning.IsOK());
  ExpectZeroData(warning);

  const MCStatus error(316, false);
  EXPECT_EQ(error.GetErrorCode(), 316);
  EXPECT_FALSE(error.IsWarning());
  EXPECT_TRUE(error.IsError());
  EXPECT_FALSE(error.IsOK());
  ExpectZeroData(error);
}

TEST(MCStatus, CancellingIsAnError) {
  EXPECT_TRUE(MCStatus(MCCommon::MCS_CANCELLED, false).IsError());
  EXPECT_EQ(MCStatus(1, false).GetErrorCode(), 1);
}

TEST(MCStatus, CodesAndDataHold64Bits) {
  constexpr long kLarge = std::numeric_limits<long>::max();
  MCStatus status(kLarge, false);
  EXPECT_EQ(status.GetErrorCode(), kLarge);
  status.SetDiscreteDatum(2, std::numeric_limits<long>::min());
  EXPECT_EQ(status.GetDiscreteDatum(2), std::numeric_limits<long>::min());
}

TEST(MCStatus, EachDatumIsKeptApart) {
  MCStatus status(316, false);
  for (unsigned i = 0; i < 3; ++i) {
    status.SetDiscreteDatum(i, 10 + static_cast<long>(i));
    status.SetScaleDatum(i, 0.5 + i);
  }
  for (unsigned i = 0; i < 3; ++i) {
    EXPECT_EQ(status.GetDiscreteDatum(i), 10 + static_cast<long>(i));
    EXPECT_EQ(status.GetScaleDatum(i), 0.5 + i);
  }
  EXPECT_EQ(status.GetErrorCode(), 316);
}

TEST(MCStatus, EveryMemberTakesPartInEquality) {
  MCStatus base(316, false);
  for (unsigned i = 0; i < 3; ++i) {
    base.SetDiscreteDatum(i, 1);
    base.SetScaleDatum(i, 1.0);
  }
  const MCStatus same = base;
  EXPECT_TRUE(base == same);
  for (unsigned i = 0; i < 3; ++i) {
    MCStatus discrete = base;
    discrete.SetDiscreteDatum(i, 2);
    EXPECT_FALSE(base == discrete) << i;
    MCStatus scale = base;
    scale.SetScaleDatum(i, 2.0);
    EXPECT_FALSE(base == scale) << i;
  }
  EXPECT_FALSE(MCStatus(316, false) == MCStatus(315, false));
  EXPECT_FALSE(MCStatus(316, false) == MCStatus(316, true));
}

TEST(MCStatus, ANaNDatumDiffersFromItself) {
  for (unsigned i = 0; i < 3; ++i) {
    MCStatus status;
    status.SetScaleDatum(i, std::numeric_limits<double>::quiet_NaN());
    const MCStatus copy = status;
    EXPECT_FALSE(status == copy) << i;
  }
}

TEST(MCStatus, NegativeZeroDataEqualZero) {
  MCStatus status;
  status.SetScaleDatum(1, -0.0);
  EXPECT_TRUE(status == MCStatus());
}

TEST(MCStatus, IsAPlainValue) {
  static_assert(std::is_trivially_copyable_v<MCStatus>);
  static_assert(std::is_nothrow_copy_constructible_v<MCStatus>);
}

struct CodeRow {
  long code;
  std::string name;
  std::string severity;

  bool operator==(const CodeRow& other) const {
    return code == other.code && name == other.name && severity == other.severity;
  }
};

void PrintTo(const CodeRow& row, std::ostream* out) {
  *out << row.code << ' ' << row.name << ' ' << row.severity;
}

std::vector<CodeRow> CodesOfTheLibrary() {
  return {
#define MC_STATUS_CODE(code, name, severity, text) {(code), #name, #severity},
#include "regression/frame/mcstatuscodes.inc"
  };
}

// The contract with hosts, kept apart from the library's table on purpose: a number, once given,
// never changes its meaning.
const std::vector<CodeRow> kContract = {
    {1, "MCS_CANCELLED", "ERROR"},
    {101, "MCS_PMML_BAD_INDEX", "ERROR"},
    {102, "MCS_PMML_NO_VARIABLE", "ERROR"},
    {103, "MCS_XML_INIT", "ERROR"},
    {104, "MCS_XML_PARSE", "ERROR"},
    {105, "MCS_PMML_NOT_PMML", "ERROR"},
    {106, "MCS_PMML_NO_DICTIONARY", "ERROR"},
    {107, "MCS_DOC_NOT_PARSED", "ERROR"},
    {108, "MCS_DOC_MISSING_ITEM", "ERROR"},
    {109, "MCS_DOC_BAD_VALUE", "ERROR"},
    {110, "MCS_DOC_NO_BINS", "ERROR"},
    {111, "MCS_DOC_VAR_REFUSED", "ERROR"},
    {112, "MCS_PMML_NO_MODEL", "ERROR"},
    {113, "MCS_PMML_NO_STATS", "ERROR"},
    {114, "MCS_PMML_NEGATIVE_COUNT", "ERROR"},
    {115, "MCS_PMML_BAD_INTERVALS", "ERROR"},
    {116, "MCS_PMML_BAD_STATS", "ERROR"},
    {117, "MCS_PMML_STATS_INVALID", "ERROR"},
    {118, "MCS_XML_WRITE", "ERROR"},
    {119, "MCS_SET_NO_PARAMETERS", "ERROR"},
    {120, "MCS_SET_NOT_FOUND", "WARNING"},
    {121, "MCS_SET_IS_LIST", "ERROR"},
    {122, "MCS_SET_NO_LIST", "ERROR"},
    {123, "MCS_SET_NO_VALUE", "WARNING"},
    {124, "MCS_SPLIT_FUNCTION", "ERROR"},
    {125, "MCS_SPLIT_MINING_MODEL", "ERROR"},
    {126, "MCS_SPLIT_VALUES", "ERROR"},
    {301, "MCS_NO_DEPENDENT", "ERROR"},
    {302, "MCS_EMPTY_MODEL", "ERROR"},
    {303, "MCS_BAD_STATE", "ERROR"},
    {304, "MCS_NULL_RECORD", "ERROR"},
    {305, "MCS_TOO_LARGE", "ERROR"},
    {306, "MCS_ALREADY_PROCESSED", "ERROR"},
    {307, "MCS_NO_DATA", "ERROR"},
    {308, "MCS_NO_WEIGHT", "ERROR"},
    {309, "MCS_NOT_PROCESSED", "ERROR"},
    {310, "MCS_ALREADY_BUILT", "ERROR"},
    {311, "MCS_NOT_BUILT", "ERROR"},
    {312, "MCS_RECORD_NULL", "ERROR"},
    {313, "MCS_NOT_READY", "ERROR"},
    {314, "MCS_RECORD_EMPTY", "ERROR"},
    {315, "MCS_RECORD_SHORT", "ERROR"},
    {316, "MCS_RECORD_BAD_VALUE", "ERROR"},
    {318, "MCS_FEW_CATEGORIES", "ERROR"},
    {319, "MCS_REFCAT_REPLACED", "WARNING"},
};

TEST(StatusCodes, TheTableHoldsTheContractRowByRow) {
  EXPECT_EQ(CodesOfTheLibrary(), kContract);
}

TEST(StatusCodes, TheConstantsComeFromTheTable) {
  EXPECT_EQ(MCCommon::MCS_CANCELLED, 1);
  EXPECT_EQ(MCCommon::MCS_SPLIT_VALUES, 126);
  EXPECT_EQ(MCCommon::MCS_RECORD_BAD_VALUE, 316);
  EXPECT_EQ(MCCommon::MCS_FEW_CATEGORIES, 318);
  EXPECT_EQ(MCCommon::MCS_REFCAT_REPLACED, 319);
  static_assert(std::is_same_v<std::underlying_type_t<decltype(MCCommon::MCS_CANCELLED)>, long>);
}

TEST(StatusCodes, EveryCodeHasAText) {
#define MC_STATUS_CODE(code, name, severity, text) EXPECT_FALSE(std::string(text).empty()) << #name;
#include "regression/frame/mcstatuscodes.inc"
}
}  // namespace
