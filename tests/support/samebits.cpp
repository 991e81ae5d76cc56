// SPDX-License-Identifier: Apache-2.0
#include "support/samebits.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mctest {

using MCCommonMath::MCSymMatrix;

namespace {

std::uint64_t BitsOf(double x) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

bool HaveSameBits(double a, double b) {
  return BitsOf(a) == BitsOf(b);
}

bool HaveSameBitsOrAreNaN(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || HaveSameBits(a, b);
}

testing::AssertionResult Compare(const std::vector<double>& expected,
                                 const std::vector<double>& actual,
                                 bool (*areSame)(double, double)) {
  if (expected.size() != actual.size()) {
    return testing::AssertionFailure()
           << actual.size() << " entries in place of " << expected.size();
  }
  for (std::size_t k = 0; k < expected.size(); ++k) {
    if (areSame(expected[k], actual[k])) continue;
    return testing::AssertionFailure()
           << "entry " << k << ": " << actual[k] << " in place of " << expected[k];
  }
  return testing::AssertionSuccess();
}

}  // namespace

testing::AssertionResult SameBits(const std::vector<double>& expected,
                                  const std::vector<double>& actual) {
  return Compare(expected, actual, &HaveSameBits);
}

testing::AssertionResult SameBitsOrNaN(const std::vector<double>& expected,
                                       const std::vector<double>& actual) {
  return Compare(expected, actual, &HaveSameBitsOrAreNaN);
}

testing::AssertionResult SameBits(const MCSymMatrix& expected, const MCSymMatrix& actual) {
  return SameBits(expected.AsVectorConst(), actual.AsVectorConst());
}

testing::AssertionResult SameBitsOrNaN(const MCSymMatrix& expected, const MCSymMatrix& actual) {
  return SameBitsOrNaN(expected.AsVectorConst(), actual.AsVectorConst());
}

}  // namespace mctest
