// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcfit/support/arguments.h"

#include <map>
#include <string>
#include <vector>

/// Lines of a report by the text in front of their first two blanks; the numbers behind it, of all
/// lines of that name.
std::map<std::string, std::vector<double>> Numbers(const std::string& report);

/// The report with the processor times, which differ at each run, put as "T".
std::string WithoutTimes(const std::string& report);

/// Arguments of mcfit and a part of the message that they lead to.
struct Failure {
  Arguments arguments;
  std::string message;
};

/// Expects that each ends with the status, tells the message and writes no results.
void ExpectFailures(int status, const std::vector<Failure>& failures);
