// SPDX-License-Identifier: Apache-2.0
#include "regression/frame/record.h"

#include <algorithm>
#include <new>

namespace MCCommon {

Record::Record(int n) {
  // A negative size is 1 here and 0 in Resize: hosts rely on both.
  const int size = n < 0 ? 1 : n;
  if (size == 0) return;
  fData.reset(new (std::nothrow) double[static_cast<std::size_t>(size)]());
  if (fData) fSize = size;
}

Record::Record(const Record& other) {
  if (other.fSize <= 0) return;
  fData.reset(new double[static_cast<std::size_t>(other.fSize)]);
  fSize = other.fSize;
  std::copy_n(other.fData.get(), fSize, fData.get());
}

Record& Record::operator=(const Record& other) {
  if (this == &other) return *this;
  if (fSize != other.fSize) {
    fData.reset(other.fSize > 0 ? new double[static_cast<std::size_t>(other.fSize)] : nullptr);
    fSize = other.fSize;
  }
  std::copy_n(other.fData.get(), fSize, fData.get());
  return *this;
}

bool Record::Resize(int n) {
  if (n == fSize) return true;
  const int size = std::max(n, 0);
  std::unique_ptr<double[]> data;
  if (size > 0) {
    data.reset(new (std::nothrow) double[static_cast<std::size_t>(size)]());
    if (!data) return false;
  }
  fData = std::move(data);
  fSize = size;
  return true;
}

}  // namespace MCCommon
