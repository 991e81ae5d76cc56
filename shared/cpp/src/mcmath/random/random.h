// SPDX-License-Identifier: Apache-2.0
//
// All random generators. For hosts alone: sources of the library include what they use.
#pragma once

#include "mcmath/random/mcrandom.h"
#include "mcmath/random/mcrandomtwister.h"
#include "mcmath/random/mcrandomvalues.h"
#include "mcmath/random/mcrngbeta.h"
#include "mcmath/random/mcrngbinomial.h"
#include "mcmath/random/mcrngenerator.h"
#include "mcmath/random/mcrngnormal.h"
#include "mcmath/random/mcrngucongruential.h"
#include "mcmath/random/mcrngutwister.h"
#include "mcmath/random/mcurandom.h"
