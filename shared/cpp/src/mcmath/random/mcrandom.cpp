// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrandom.h"

namespace MCCommon {

MCRandom::~MCRandom() = default;

}  // namespace MCCommon
