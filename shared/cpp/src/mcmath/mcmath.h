// SPDX-License-Identifier: Apache-2.0
//
// The whole numerics toolkit. For hosts alone: sources of the library include what they use.
#pragma once

#include "mcmath/blas1.h"
#include "mcmath/linpack.h"
#include "mcmath/mcbitset.h"
#include "mcmath/mccontstats.h"
#include "mcmath/mcdistfun.h"
#include "mcmath/mceigenvalues.h"
#include "mcmath/mcextremenum.h"
#include "mcmath/mchashkey.h"
#include "mcmath/mchashpair.h"
#include "mcmath/mchashtable.h"
#include "mcmath/mcmathfun.h"
#include "mcmath/mcpackedint.h"
#include "mcmath/mcpower.h"
#include "mcmath/mcrectmatrix.h"
#include "mcmath/mcrectmatrixdata.h"
#include "mcmath/mcsparsevector.h"
#include "mcmath/mcsymblockmatrix.h"
#include "mcmath/mcsymmatrix.h"
#include "mcmath/mcsymmatrixdata.h"
