// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "support/extendedmatrix.h"

#include <cstdint>
#include <random>
#include <vector>

namespace mctest {

/// The start plus the product of a chain of matrices, and how far a computation in double may be
/// from it.
///
/// A sum of m rounded products is off by at most about (m + 1) eps times the sum of their
/// magnitudes. Along a chain the inner lengths add up, and two more roundings come from an addition
/// onto the start; so each element has the bound (sum of inner lengths + chain length + 2) * eps *
/// (the same chain over magnitudes).
struct Reference {
  ExtendedMatrix value;
  ExtendedMatrix bound;
};
Reference Chain(const std::vector<ExtendedMatrix>& factors);
Reference Chain(const ExtendedMatrix& start, const std::vector<ExtendedMatrix>& factors);

/// Compare shape and each element.
void ExpectWithin(const MCCommonMath::MCSymMatrix& got, const Reference& want);
void ExpectWithin(const MCCommonMath::MCRectMatrix& got, const Reference& want);
void ExpectWithin(const std::vector<double>& got, const Reference& want);
void ExpectWithin(double got, const Reference& want);

/// Equal shape, and elements equal bit by bit.
void ExpectSameBits(const std::vector<double>& got, const std::vector<double>& want);
void ExpectSameBits(double got, double want);

/// Numbers between -1 and 1 that depend on nothing but the seed; about one in eight is 0.
class Numbers {
public:
  explicit Numbers(std::uint64_t seed) : fGenerator(seed) {}
  double Next();
  std::vector<double> Vector(int n);
  MCCommonMath::MCSymMatrix Sym(int n);
  MCCommonMath::MCRectMatrix Rect(int nRows, int nCols);

private:
  std::mt19937_64 fGenerator;
};

}  // namespace mctest
