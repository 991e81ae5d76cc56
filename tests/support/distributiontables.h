// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcdistfun.h"

#include <cstddef>
#include <vector>

/// The tables of the distribution functions (tests/data/mcmath/distributions.py), each with the
/// function that is measured against it: by the tests, and beside peers by benchmarks/accuracy.
namespace mctest {

using Arguments = std::vector<double>;

struct MeasuredFunction {
  const char* fName;
  const char* fTable;  // the file without its ending
  std::size_t fNValues;
  std::size_t fValue;  // which of the values is meant
  double (*fFunction)(const Arguments&);
};

inline long& AnyError() {
  static long error = 0;
  return error;
}

inline const std::vector<MeasuredFunction>& MeasuredDistributions() {
  using D = MCCommonMath::MCDistFun;
  using A = const Arguments&;
  static const std::vector<MeasuredFunction> functions = {
      {"derf", "derf", 1, 0, [](A x) { return D::derf(x[0]); }},
      {"derfc", "derfc", 1, 0, [](A x) { return D::derfc(x[0]); }},
      {"prbnrm", "prbnrm", 1, 0, [](A x) { return D::prbnrm(x[0]); }},
      {"probit", "probit", 1, 0, [](A x) { return D::probit(x[0]); }},
      {"dnlgam", "dnlgam", 1, 0, [](A x) { return D::dnlgam(x[0]); }},
      {"cbtaux", "cbtaux", 1, 0, [](A x) { return D::cbtaux(x[0]); }},
      {"dnlbnc", "dnlbnc", 1, 0, [](A x) { return D::dnlbnc(x[0], x[1], AnyError()); }},
      {"gammad lower", "gammad", 2, 0,
       [](A x) { return D::gammad(x[0], x[1], false, AnyError()); }},
      {"gammad upper", "gammad", 2, 1, [](A x) { return D::gammad(x[0], x[1], true, AnyError()); }},
      {"cdfbet", "cdfbet", 2, 0, [](A x) { return D::cdfbet(x[0], x[1], x[2], AnyError()); }},
      {"CdfT", "cdft", 2, 0, [](A x) { return D::CdfT(x[0], x[1]); }},
      {"CdfT of -t", "cdft", 2, 1, [](A x) { return D::CdfT(-x[0], x[1]); }},
      {"CdfF", "cdff", 2, 0, [](A x) { return D::CdfF(x[0], x[1], x[2]); }},
      {"SigF", "cdff", 2, 1, [](A x) { return D::SigF(x[0], x[1], x[2]); }},
      {"CdfBin", "cdfbin", 1, 0, [](A x) { return D::CdfBin(x[0], x[1], x[2], AnyError()); }},
      {"PdfBin", "pdfbin", 1, 0, [](A x) { return D::PdfBin(x[0], x[1], x[2], AnyError()); }},
      {"CDFHyper", "cdfhyper", 1, 0,
       [](A x) {
         int error = 0;
         return D::CDFHyper(x[0], x[1], x[2], x[3], error);
       }},
      {"IdfChi", "idfchi", 1, 0, [](A x) { return D::IdfChi(x[0], x[1]); }},
      {"IdfBeta", "idfbeta", 1, 0, [](A x) { return D::IdfBeta(x[0], x[1], x[2]); }},
      {"IdfT", "idft", 1, 0, [](A x) { return D::IdfT(x[0], x[1]); }},
      {"IdfF", "idff", 1, 0, [](A x) { return D::IdfF(x[0], x[1], x[2]); }},
  };
  return functions;
}

}  // namespace mctest
