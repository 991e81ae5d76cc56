// SPDX-License-Identifier: Apache-2.0
//
// The linear regressions of the NIST Statistical Reference Datasets, whose values are certified to
// 15 digits (tests/data/nist). Raw powers are formed by the model effects, as a host would do it
// without a second thought, so the table that this prints shows what cross-products in double cost
// with ill-conditioned columns.
#include "mcmath/mcbitset.h"
#include "support/libraryfit.h"
#include "support/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

using mctest::LibraryFit;
using mctest::LinearProblem;

struct CertifiedSet {
  const char* name;
  int powers;  // powers of x as effects; 0: every covariate once
  bool intercept;
  double digits;  // a coefficient keeps at least as many digits, see below
};

// Digits that a plain sweep of the raw cross-products in double gives, in column order with
// tolerance 1e-12 (computed apart from this library): Norris 11.6, NoInt 14.7, Longley 8.5,
// Wampler1 6.3, Wampler2 9.9, Wampler3 and 4 6.9, Wampler5 5.9. One digit below each is held: the
// order of additions may differ, the loss may not.
const CertifiedSet kSets[] = {
    {"norris", 0, true, 10.6},  {"noint1", 0, false, 13.7}, {"noint2", 0, false, 13.7},
    {"longley", 0, true, 7.5},  {"wampler1", 5, true, 5.3}, {"wampler2", 5, true, 8.9},
    {"wampler3", 5, true, 5.9}, {"wampler4", 5, true, 5.9}, {"wampler5", 5, true, 4.9},
};

std::string DataFile(const std::string& name) {
  return std::string(MCSTAT_TEST_DATA) + "/nist/" + name + ".csv";
}

std::vector<std::vector<double>> ReadRows(const std::string& name) {
  std::ifstream file(DataFile(name));
  std::string line;
  std::getline(file, line);
  std::vector<std::vector<double>> rows;
  while (std::getline(file, line)) {
    std::istringstream cells(line);
    std::string cell;
    rows.emplace_back();
    while (std::getline(cells, cell, ',')) rows.back().push_back(mctest::ToNumber(cell));
  }
  return rows;
}

// quantity -> certified value, of one set.
std::map<std::string, double> ReadCertified(const std::string& name) {
  std::ifstream file(DataFile("certified"));
  std::string line;
  std::map<std::string, double> values;
  while (std::getline(file, line)) {
    std::istringstream cells(line);
    std::string set;
    std::string quantity;
    std::string value;
    std::getline(cells, set, ',');
    std::getline(cells, quantity, ',');
    std::getline(cells, value, ',');
    if (set == name) values[quantity] = mctest::ToNumber(value);
  }
  return values;
}

LinearProblem MakeProblem(const CertifiedSet& set) {
  LinearProblem problem;
  problem.rows = ReadRows(set.name);
  problem.intercept = set.intercept;
  const int columns = static_cast<int>(problem.rows.front().size());
  for (int x = 1; x < columns; ++x) problem.covariates.push_back(x);
  if (set.powers == 0) {
    for (const int x : problem.covariates) problem.effects.push_back({{}, {x}});
  }
  for (int k = 1; k <= set.powers; ++k) {
    problem.effects.push_back({{}, std::vector<int>(static_cast<std::size_t>(k), 1)});
  }
  return problem;
}

// Correct digits: the negative decimal logarithm of the relative error, or of the absolute one
// where the true value is 0. 15 certified digits can't show more than 15.
double Digits(double value, double certified) {
  const double scale = certified == 0.0 ? 1.0 : std::fabs(certified);
  const double error = std::fabs(value - certified) / scale;
  return error < 1e-15 ? 15.0 : -std::log10(error);
}

double CoefficientDigits(const std::vector<double>& estimates, bool intercept,
                         std::map<std::string, double>& certified) {
  double digits = 15.0;
  for (std::size_t i = 0; i < estimates.size(); ++i) {
    const std::string name = "b" + std::to_string(i + (intercept ? 0 : 1));
    digits = std::min(digits, Digits(estimates[i], certified.at(name)));
  }
  return digits;
}

TEST(CertifiedData, CoefficientsKeepTheDigitsOfAPlainSweep) {
  std::printf("%-10s %12s %10s %10s %16s\n", "set", "coefficients", "R square", "resid. sd",
              "at least (coef.)");
  for (const CertifiedSet& set : kSets) {
    SCOPED_TRACE(set.name);
    const LinearProblem problem = MakeProblem(set);
    LibraryFit fit(problem);
    ASSERT_TRUE(fit.Build().IsOK());
    const IMCRegOutputStats& results = fit.Results();
    auto certified = ReadCertified(set.name);
    const double digits = CoefficientDigits(*results.GetParamEstimates(), set.intercept, certified);
    EXPECT_GE(digits, set.digits);
    for (const MCRegrParameterStats& stats : results.GetParamStats()) {
      EXPECT_FALSE(stats.fRedundant);
    }
    // The library's error divides by the total weight, the certified one by the degrees of freedom.
    const double n = static_cast<double>(problem.rows.size());
    const double sd =
        results.GetModelFitStat(MCConst::MC_FIT_RMSE) * std::sqrt(n / certified.at("residual_df"));
    const double rSquare = results.GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2);
    std::printf("%-10s %12.1f %10.1f %10.1f %16.1f\n", set.name, digits,
                Digits(rSquare, certified.at("r_squared")), Digits(sd, certified.at("residual_sd")),
                set.digits);
    EXPECT_GE(Digits(rSquare, certified.at("r_squared")), set.digits);
  }
}

// A polynomial of degree 10 on raw powers has cross-products of condition 3e30, beyond what
// doubles hold, and the tolerance sees it.
TEST(CertifiedData, FilipKeepsEightOfElevenColumns) {
  const LinearProblem problem = MakeProblem({"filip", 10, true, 0.0});
  LibraryFit fit(problem);
  ASSERT_TRUE(fit.Build().IsOK());
  std::string pattern;
  for (const MCRegrParameterStats& stats : fit.Results().GetParamStats()) {
    pattern += stats.fRedundant ? 'x' : '.';
    if (stats.fRedundant) {
      EXPECT_EQ(stats.fEstimate, 0.0);
    }
  }
  // The pattern of a plain sweep with tolerance 1e-12, computed apart from this library.
  EXPECT_EQ(pattern, ".......x.xx");
}

// The host's remedy: the covariate centred and scaled before powers are formed. Fit and residuals
// don't depend on that, so they can be held against the certified ones.
TEST(CertifiedData, CentringAndScalingBeforePowersAreFormedSavesTheDigits) {
  constexpr double kAtLeast = 13.0;
  for (const auto& [name, powers] : {std::pair{"filip", 10}, std::pair{"wampler1", 5},
                                     std::pair{"wampler4", 5}, std::pair{"wampler5", 5}}) {
    SCOPED_TRACE(name);
    LinearProblem problem = MakeProblem({name, powers, true, 0.0});
    double low = problem.rows[0][1];
    double high = low;
    for (const auto& row : problem.rows) {
      low = std::min(low, row[1]);
      high = std::max(high, row[1]);
    }
    for (auto& row : problem.rows) row[1] = (row[1] - (low + high) / 2) / ((high - low) / 2);
    LibraryFit fit(problem);
    ASSERT_TRUE(fit.Build().IsOK());
    auto certified = ReadCertified(name);
    const double n = static_cast<double>(problem.rows.size());
    const double sd =
        fit.Results().GetModelFitStat(MCConst::MC_FIT_RMSE) * std::sqrt(n / (n - powers - 1));
    const double digits =
        certified.at("residual_sd") == 0.0
            ? Digits(fit.Results().GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2), 1.0)
            : Digits(sd, certified.at("residual_sd"));
    std::printf("%-10s centred and scaled: %.1f digits\n", name, digits);
    EXPECT_GE(digits, kAtLeast);
    EXPECT_EQ(fit.Results().GetRedundancyIndicators().InSet(), powers + 1);
  }
}

}  // namespace
