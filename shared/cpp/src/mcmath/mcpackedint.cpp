// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcpackedint.h"

#include "mcmath/mchashkey.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace MCCommonMath {

namespace {

std::size_t Index(int position) {
  return static_cast<std::size_t>(position);
}

// Values that were never packed may wrap around, which is defined for unsigned ints only.
int AddWrapping(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

}  // namespace

MCPackedInt::MCPackedInt(int seqSize, int lowerBound, const std::vector<int>& nDiffVal)
    : fSeqSize(seqSize), fLowerBound(lowerBound), fNDiffVal(nDiffVal) {
  Setup();
}

bool MCPackedInt::SetForSequence(int seqSize, int lowerBound, const std::vector<int>& nDiffVal) {
  // Made aside: running out of memory halfway must not leave a length without its layout.
  *this = MCPackedInt(seqSize, lowerBound, nDiffVal);
  return fSeqSize > 0;
}

bool MCPackedInt::IsConsistent() const {
  return fSeqSize >= 1 && fNDiffVal.size() >= Index(fSeqSize) &&
         std::all_of(fNDiffVal.begin(), fNDiffVal.begin() + fSeqSize,
                     [](int count) { return count >= 1; });
}

bool MCPackedInt::Setup() {
  fNUnits = 0;
  fUnitIndex.clear();
  fProducts.clear();
  if (!IsConsistent()) {
    fSeqSize = 0;
    fNDiffVal.clear();
    return false;
  }
  // Logarithms, as the product itself could overflow.
  const double limit = std::log(static_cast<double>(MCHashKey::GetElementUpperBound()));
  double sum = 0.0;
  int product = 1;
  int unit = 0;
  for (std::size_t i = 0; i < Index(fSeqSize); ++i) {
    const double size = std::log(static_cast<double>(fNDiffVal[i]));
    // A bound below 0 makes the limit a NaN: then each position has a unit of its own.
    if (sum + size <= limit) {
      product *= fNDiffVal[i];
      sum += size;
    } else {
      ++unit;
      product = fNDiffVal[i];
      sum = size;
    }
    fProducts.push_back(product);
    fUnitIndex.push_back(unit);
  }
  fNUnits = unit + 1;
  return true;
}

bool MCPackedInt::IsWithinBounds(const std::vector<int>& seq) const {
  for (std::size_t i = 0; i < Index(fSeqSize); ++i) {
    const std::int64_t value = std::int64_t{seq[i]} - fLowerBound;
    if (value < 0 || value >= fNDiffVal[i]) return false;
  }
  return true;
}

bool MCPackedInt::SharesUnit(std::size_t position) const {
  return position > 0 && fUnitIndex[position] == fUnitIndex[position - 1];
}

bool MCPackedInt::Pack(const std::vector<int>& seq, std::vector<int>& packed, bool check) const {
  if (seq.size() < Index(fSeqSize) || (check && !IsWithinBounds(seq))) return false;
  packed.assign(Index(fNUnits), 0);
  for (std::size_t i = 0; i < Index(fSeqSize); ++i) {
    const auto multiplier = static_cast<unsigned>(SharesUnit(i) ? fProducts[i - 1] : 1);
    const unsigned value = static_cast<unsigned>(seq[i]) - static_cast<unsigned>(fLowerBound);
    int& unit = packed[Index(fUnitIndex[i])];
    unit = AddWrapping(unit, static_cast<int>(value * multiplier));
  }
  return true;
}

bool MCPackedInt::Unpack(std::vector<int>& seq, const std::vector<int>& packed) const {
  if (packed.size() < Index(fNUnits)) return false;
  if (seq.size() < Index(fSeqSize)) seq.resize(Index(fSeqSize));
  int rest = 0;
  for (std::size_t i = Index(fSeqSize); i-- > 0;) {
    const bool opensUnit = i + 1 == Index(fSeqSize) || !SharesUnit(i + 1);
    if (opensUnit) rest = packed[Index(fUnitIndex[i])];
    const int divisor = SharesUnit(i) ? fProducts[i - 1] : 1;
    seq[i] = AddWrapping(rest / divisor, fLowerBound);
    rest %= divisor;
  }
  return true;
}

int MCPackedInt::GetNDiffVal(int i) const {
  return i >= 0 && Index(i) < fNDiffVal.size() ? fNDiffVal[Index(i)] : -1;
}

void MCPackedInt::Display() const {
  MCComponentDisplay::DisplayText(1, "MCPackedInt display start");
  MCComponentDisplay::DisplayI("The sequence size", fSeqSize);
  MCComponentDisplay::DisplayI("The lower bound", fLowerBound);
  MCComponentDisplay::DisplayIV("The vector of numbers of different values", fNDiffVal);
  MCComponentDisplay::DisplayI("The number of packed storage units", fNUnits);
  MCComponentDisplay::DisplayIV("The vector of packed storage unit indices", fUnitIndex);
  MCComponentDisplay::DisplayIV("The vector of products", fProducts);
  MCComponentDisplay::DisplayText(1, "MCPackedInt display end");
}

}  // namespace MCCommonMath
