// SPDX-License-Identifier: Apache-2.0
#include "mcmath/random/mcrngenerator.h"

namespace MCCommonMath {

MCRNGenerator::~MCRNGenerator() = default;

}  // namespace MCCommonMath
