// SPDX-License-Identifier: Apache-2.0
// Eigenproblems have the same bits with every vector width.
#include "mcmath/mceigenvalues.h"
#include "support/extendedmatrix.h"
#include "support/vectorpaths.h"

#include <gtest/gtest.h>

namespace {

using MCCommonMath::MCEigenValues;
using MCCommonMath::MCRectMatrix;

struct Solution {
  std::vector<double> values;
  MCRectMatrix vectors;
};

Solution Solve(int n, bool isPair) {
  MCEigenValues problem(mctest::NoisySymmetric(n, 51), 1e-12, 30);
  if (isPair) problem.SetEMatrix(mctest::NoisyDefinite(n, 52));
  Solution solution;
  EXPECT_EQ(problem.Compute(solution.values, solution.vectors), n);
  return solution;
}

TEST(EigenKernels, EveryVectorWidthGivesTheSameBits) {
  using MCCommonMath::detail::VectorPath;
  for (const int n : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 40, 65, 130}) {
    for (const bool isPair : {false, true}) {
      const mctest::NarrowedVectorPath narrowest(VectorPath::kSse2);
      const Solution expected = Solve(n, isPair);
      for (const VectorPath path : mctest::SupportedPaths()) {
        const mctest::NarrowedVectorPath narrowed(path);
        const Solution solution = Solve(n, isPair);
        EXPECT_EQ(solution.values, expected.values) << n;
        EXPECT_EQ(solution.vectors.AsVectorConst(), expected.vectors.AsVectorConst()) << n;
      }
    }
  }
}

}  // namespace
