// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/temporaryfolder.h"

using mctest::TemporaryFolder;
