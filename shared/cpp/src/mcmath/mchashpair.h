// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcmath/mchashkey.h"

namespace MCCommonMath {

/// One entry of an MCHashtable. Entry, key and value belong to the table: pointers to an entry
/// stay valid, also while the table grows, until the table is destroyed. The value may be changed
/// through the entry, the key must not be.
template <class T>
class MCHashPair {
public:
  MCHashKey* fKey = nullptr;
  T* fValue = nullptr;
  MCHashPair<T>* fNext = nullptr;  ///< next entry of the same bucket
};

/// Orders entries by their keys.
template <class T>
class MCHashPairPointerLess {
public:
  bool operator()(const MCHashPair<T>* a, const MCHashPair<T>* b) const {
    return *a->fKey < *b->fKey;
  }
};

}  // namespace MCCommonMath
