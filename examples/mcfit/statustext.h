// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dataset.h"
#include "recordlayout.h"
#include "regression/frame/mcstatus.h"

#include <string>

namespace mcfit {

/// The status in words, with its severity, number and name, and with its data where it has some
/// that tell the user more: "error 307 (MCS_NO_DATA): ...".
std::string StatusText(const MCCommon::MCStatus& status, const RecordLayout& layout);

/// One line per reason for which rows were dropped, each with its number; empty if none was.
std::string DroppedRowsText(const RowCounts& counts, const RecordLayout& layout);

}  // namespace mcfit
