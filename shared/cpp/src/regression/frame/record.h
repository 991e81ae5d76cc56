// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <memory>

namespace MCCommon {

/// One row of doubles. It owns its values and copies them deeply.
class MC_EXPORT Record {
public:
  /// `n` values of 0.0. A negative n counts as 1. Where memory runs out the record is empty:
  /// Size() is 0 and GetAll() null.
  explicit Record(int n);

  /// A deep copy. Memory exhaustion is thrown here and in the assignment.
  Record(const Record& other);
  Record& operator=(const Record& other);
  ~Record() = default;

  /// Makes room for max(n, 0) values, which are not those of before. True on success, and when
  /// the size was n already and nothing changes; false, with the record as it was, where memory
  /// runs out.
  bool Resize(int n);

  /// Number of values.
  int Size() const { return fSize; }

  /// Value `i`, 0 to Size() - 1, unchecked.
  double operator[](int i) const { return fData[static_cast<std::size_t>(i)]; }
  double& operator[](int i) { return fData[static_cast<std::size_t>(i)]; }

  /// All values: Size() doubles owned by the record, valid until it is resized, assigned to or
  /// destroyed; null when Size() is 0.
  const double* GetAll() const { return fData.get(); }
  double* GetAll() { return fData.get(); }

private:
  std::unique_ptr<double[]> fData;
  int fSize = 0;
};

}  // namespace MCCommon
