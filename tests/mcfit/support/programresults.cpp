// SPDX-License-Identifier: Apache-2.0
#include "mcfit/support/programresults.h"

#include "mcfit/support/childprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>
#include <regex>
#include <sstream>

std::map<std::string, std::vector<double>> Numbers(const std::string& report) {
  std::map<std::string, std::vector<double>> numbers;
  std::istringstream lines(report);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t gap = line.find("  ");
    if (gap == std::string::npos) continue;
    std::istringstream rest(line.substr(gap));
    rest.imbue(std::locale::classic());
    for (double value; rest >> value;) numbers[line.substr(0, gap)].push_back(value);
  }
  return numbers;
}

std::string WithoutTimes(const std::string& report) {
  return std::regex_replace(report, std::regex("( +)[0-9]+\\.[0-9][0-9]\n"), "$1T\n");
}

void ExpectFailures(int status, const std::vector<Failure>& failures) {
  for (const Failure& failure : failures) {
    const ProgramResult run = RunMcfit(failure.arguments);
    EXPECT_EQ(run.status, status) << failure.message;
    EXPECT_THAT(run.err, testing::HasSubstr(failure.message));
    EXPECT_EQ(run.out, "") << failure.message;
  }
}
