// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/mccomxprsutil.h"
#include "mcparsexml/mcpmmlparser.h"
#include "mcparsexml/mcsettingsparser.h"
#include "mcparsexml/mcxinputsource.h"
#include "mcparsexml/mcxmlreadwrite.h"
#include "mcparsexml/mcxsplitpmmlcombiner.h"
#include "mcparsexml/mcxtranscoder.h"
#include "mcparsexml/xercestypes.h"
