// SPDX-License-Identifier: Apache-2.0
#include "regression/logistic/mcrowpatterns.h"

#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>

void MCRowPatterns::Reserve(std::size_t nValues) {
  fRecordData.reserve(nValues);
}

// Grows by a sixteenth, at least by the one row: doubling, as a vector does by itself, would leave
// up to half of the memory of a build unused, for as long as the build lasts. In return a value is
// moved up to 17 times, so this is for the patterns whose number of rows isn't known beforehand.
void MCRowPatterns::AddRow(const std::vector<double>& values) {
  constexpr std::size_t kSpareShare = 16;
  const std::size_t size = fRecordData.size();
  if (size + values.size() > fRecordData.capacity()) {
    fRecordData.reserve(size + std::max(values.size(), size / kSpareShare));
  }
  fRecordData.insert(fRecordData.end(), values.begin(), values.end());
  // Rows of many patterns come by turns: the place where the next one of this pattern will end is
  // fetched now, so that its stores don't wait for memory then.
  const std::size_t next = fRecordData.size() + values.size() - 1;
  if (next < fRecordData.capacity()) __builtin_prefetch(fRecordData.data() + next, 1);
}

void MCRowPatterns::Display() const {
  MCComponentDisplay::DisplayText(1, "MCRowPatterns display start");
  MCComponentDisplay::DisplayDV("fRecordData", fRecordData, false);
  MCComponentDisplay::DisplayText(1, "MCRowPatterns display end");
}
