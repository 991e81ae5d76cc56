// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "regression/frame/mccomponentdisplay.h"

#include <string>

namespace MCCommonMath {

void MCSymMatrix::DisplayF() const {
  MCComponentDisplay::DisplayText(1, "MCSymMatrix full matrix display start");
  MCComponentDisplay::DisplayI("Number of rows", fNRows);
  std::vector<double> row;
  for (int i = 0; i < fNRows; ++i) {
    GetRow(i, row);
    MCComponentDisplay::DisplayDV("row " + std::to_string(i), row, false);
  }
  MCComponentDisplay::DisplayText(1, "MCSymMatrix display end");
}

}  // namespace MCCommonMath
