// SPDX-License-Identifier: Apache-2.0
// compare TABLES R_RESULTS: the errors of the distribution functions against the tables of
// tests/data/mcmath, beside those of Boost.Math in plain double and of R at the same points, as the
// rows of docs/accuracy.md. R_RESULTS is the folder that peers.R has written.
#include "support/accuracytable.h"
#include "support/distributiontables.h"

#include <algorithm>
#include <boost/math/distributions.hpp>
#include <boost/math/special_functions.hpp>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace {

namespace bm = boost::math;
using mctest::Arguments;
using Plain =
    bm::policies::policy<bm::policies::promote_double<false>,
                         bm::policies::discrete_quantile<bm::policies::integer_round_nearest>,
                         bm::policies::domain_error<bm::policies::errno_on_error>,
                         bm::policies::overflow_error<bm::policies::ignore_error>,
                         bm::policies::evaluation_error<bm::policies::errno_on_error>>;
using Normal = bm::normal_distribution<double, Plain>;
using T = bm::students_t_distribution<double, Plain>;
using F = bm::fisher_f_distribution<double, Plain>;
using Chi = bm::chi_squared_distribution<double, Plain>;
using Binomial = bm::binomial_distribution<double, Plain>;
using Hyper = bm::hypergeometric_distribution<double, Plain>;
using Function = double (*)(const Arguments&);

unsigned Whole(double x) {
  return static_cast<unsigned>(x);
}

const std::map<std::string, Function>& BoostFunctions() {
  using A = const Arguments&;
  static const Plain plain;
  static const std::map<std::string, Function> functions = {
      {"derf", [](A x) { return bm::erf(x[0], plain); }},
      {"derfc", [](A x) { return bm::erfc(x[0], plain); }},
      {"prbnrm", [](A x) { return bm::cdf(Normal(), x[0]); }},
      {"probit", [](A x) { return bm::quantile(Normal(), x[0]); }},
      {"dnlgam", [](A x) { return bm::lgamma(x[0], plain); }},
      {"gammad lower", [](A x) { return bm::gamma_p(x[1], x[0], plain); }},
      {"gammad upper", [](A x) { return bm::gamma_q(x[1], x[0], plain); }},
      {"cdfbet", [](A x) { return bm::ibeta(x[1], x[2], x[0], plain); }},
      {"CdfT", [](A x) { return bm::cdf(T(x[1]), x[0]); }},
      {"CdfT of -t", [](A x) { return bm::cdf(T(x[1]), -x[0]); }},
      {"CdfF", [](A x) { return bm::cdf(F(x[1], x[2]), x[0]); }},
      {"SigF", [](A x) { return bm::cdf(bm::complement(F(x[1], x[2]), x[0])); }},
      {"CdfBin", [](A x) { return bm::cdf(Binomial(x[1], x[2]), x[0]); }},
      {"PdfBin", [](A x) { return bm::pdf(Binomial(x[1], x[2]), x[0]); }},
      {"CDFHyper",
       [](A x) { return bm::cdf(Hyper(Whole(x[2]), Whole(x[3]), Whole(x[1])), Whole(x[0])); }},
      {"IdfChi", [](A x) { return bm::quantile(Chi(x[1]), x[0]); }},
      {"IdfBeta", [](A x) { return bm::ibeta_inv(x[1], x[2], x[0], plain); }},
      {"IdfT", [](A x) { return bm::quantile(T(x[1]), x[0]); }},
      {"IdfF", [](A x) { return bm::quantile(F(x[1], x[2]), x[0]); }},
  };
  return functions;
}

std::vector<double> ReadResults(const std::string& path) {
  std::vector<double> results;
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) results.push_back(std::strtod(line.c_str(), nullptr));
  return results;
}

struct Errors {
  void Add(double actual, long double expected) {
    const double error = mctest::UlpError(actual, expected);
    fLargest = std::max(fLargest, std::isnan(error) ? HUGE_VAL : error);
    fSum += error;
    ++fCount;
  }
  std::string Text() const {
    if (fCount == 0) return "| | ";
    char text[64];
    std::snprintf(text, sizeof text, fLargest < 1e4 ? "| %.1f | %.2f " : "| %.1e | %.2g ", fLargest,
                  fSum / fCount);
    return text;
  }

  double fLargest = 0.0;
  double fSum = 0.0;
  int fCount = 0;
};

struct Region {
  int fCount = 0;
  Errors fOurs;
  Errors fBoost;
  Errors fR;
};

double Guarded(Function function, const Arguments& arguments) {
  try {
    return function(arguments);
  } catch (const std::exception&) {
    return std::numeric_limits<double>::quiet_NaN();
  }
}

void Compare(const mctest::MeasuredFunction& measured, const std::string& tables,
             const std::string& results) {
  const auto boost = BoostFunctions().find(measured.fName);
  const std::vector<double> r = ReadResults(results + "/" + measured.fName);
  std::vector<std::string> order;
  std::map<std::string, Region> regions;
  std::size_t line = 0;
  for (const auto& row :
       mctest::ReadReference(tables + "/" + measured.fTable + ".csv", measured.fNValues)) {
    if (regions.count(row.fRegion) == 0) order.push_back(row.fRegion);
    const std::size_t index = line++;
    const long double expected = row.fValues[measured.fValue];
    // Below exp(-708) the library answers 0.
    if (std::fabs(expected) < 3.4e-308L) continue;
    Region& region = regions[row.fRegion];
    ++region.fCount;
    region.fOurs.Add(measured.fFunction(row.fArguments), expected);
    if (boost != BoostFunctions().end()) {
      region.fBoost.Add(Guarded(boost->second, row.fArguments), expected);
    }
    if (index < r.size()) region.fR.Add(r[index], expected);
  }
  for (const std::string& name : order) {
    const Region& region = regions[name];
    std::cout << "| `" << measured.fName << "` | " << name << " | " << region.fCount << ' '
              << region.fOurs.Text() << region.fBoost.Text() << region.fR.Text() << "|\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: compare TABLES R_RESULTS\n";
    return 2;
  }
  std::cout << "| Function | Region | Values | Largest | Mean | Boost, largest | mean | R, largest "
               "| mean |\n|---|---|--:|--:|--:|--:|--:|--:|--:|\n";
  for (const auto& measured : mctest::MeasuredDistributions()) Compare(measured, argv[1], argv[2]);
}
