// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "support/displaycapture.h"

#include <gtest/gtest.h>

namespace {

using MCCommonMath::MCSymMatrix;

MCSymMatrix Example() {
  MCSymMatrix matrix(2);
  matrix.AsVector() = {1.0, 2.5, -3.0};
  return matrix;
}

TEST(MCSymMatrixDisplay, ShowsShapeAndTriangle) {
  EXPECT_EQ(mctest::DisplayOf(Example()),
            "\nMCSymMatrixData display start"
            "\nThe number of rows = 2"
            "\nThe number of blocks = 1"
            "\nThe block size = 2"
            "\n\nLower triangular (number of elements = 3)"
            "\n(0,0) 1 "
            "\n(1,0) 2.5 (1,1) -3 "
            "\nMCSymMatrixData display end");
}

TEST(MCSymMatrixDisplay, ShowsTheFullSquare) {
  EXPECT_EQ(mctest::Displayed([] { Example().DisplayF(); }),
            "\nMCSymMatrix full matrix display start"
            "\nNumber of rows = 2"
            "\nrow 0 (size = 2)"
            "\n 1 2.5"
            "\nrow 1 (size = 2)"
            "\n 2.5 -3"
            "\nMCSymMatrix display end");
}

TEST(MCSymMatrixDisplay, AnInvalidMatrixShowsItsRowCount) {
  const MCSymMatrix invalid(65536);
  EXPECT_NE(mctest::DisplayOf(invalid).find("The number of rows = -1"), std::string::npos);
  EXPECT_NE(mctest::Displayed([&] { invalid.DisplayF(); }).find("Number of rows = -1"),
            std::string::npos);
}

}  // namespace
