// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dataset.h"
#include "recordlayout.h"
#include "regression/frame/mcstatus.h"

#include <string>

namespace mcfit {

/// The status in words, with its severity, number and name: "error 106 (MCS_PMML_NO_DICTIONARY):
/// ...".
std::string StatusText(const MCCommon::MCStatus& status);

/// The same with the data of the status where they tell the user more of a build.
std::string StatusText(const MCCommon::MCStatus& status, const RecordLayout& layout);

/// One line per reason for which rows were dropped, each with its number; empty if none was.
std::string DroppedRowsText(const RowCounts& counts, const RecordLayout& layout);

}  // namespace mcfit
