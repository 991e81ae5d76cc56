// SPDX-License-Identifier: Apache-2.0
#include "statustext.h"

#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace mcfit {

namespace {

struct StatusEntry {
  long code;
  const char* name;
  const char* text;
};

constexpr StatusEntry kStatusEntries[] = {
#define MC_STATUS_CODE(code, name, severity, text) {code, #name, text},
#include "regression/frame/mcstatuscodes.inc"
};

// What the data of the status add to its text.
std::string DataText(const MCCommon::MCStatus& status, const RecordLayout& layout) {
  switch (status.GetErrorCode()) {
    case MCCommon::MCS_TOO_LARGE:
      return fmt::format("; the model has {} parameters", status.GetDiscreteDatum(0));
    case MCCommon::MCS_RECORD_BAD_VALUE: {
      const long position = status.GetDiscreteDatum(1);
      if (position < 0 || position >= layout.Width()) return {};
      return fmt::format("; column {}, code {}", Quoted(layout.At(static_cast<int>(position)).name),
                         status.GetScaleDatum(1));
    }
    default:
      return {};
  }
}

const char* RoleText(Role role) {
  switch (role) {
    case Role::kDependent:
      return "dependent";
    case Role::kFactor:
      return "factor";
    case Role::kCovariate:
      return "covariate";
    case Role::kFrequency:
      return "frequency weight";
    case Role::kWeight:
      return "weight";
  }
  return "";
}

}  // namespace

std::string StatusText(const MCCommon::MCStatus& status) {
  const long code = status.GetErrorCode();
  const auto entry = std::find_if(std::begin(kStatusEntries), std::end(kStatusEntries),
                                  [code](const StatusEntry& e) { return e.code == code; });
  const char* severity = status.IsWarning() ? "warning" : "error";
  if (entry == std::end(kStatusEntries)) return fmt::format("{} {}: unknown code", severity, code);
  return fmt::format("{} {} ({}): {}", severity, code, entry->name, entry->text);
}

std::string StatusText(const MCCommon::MCStatus& status, const RecordLayout& layout) {
  return StatusText(status) + DataText(status, layout);
}

std::string DroppedRowsText(const RowCounts& counts, const RecordLayout& layout) {
  std::string text;
  for (std::size_t i = 0; i < layout.Columns().size(); ++i) {
    const RecordLayout::Column& column = layout.Columns()[i];
    const std::string name = fmt::format("{} {}", RoleText(column.role), Quoted(column.name));
    if (counts.missing[i] > 0)
      text += fmt::format("  {:>10}  {} is missing\n", counts.missing[i], name);
    if (counts.notPositive[i] > 0) {
      text += fmt::format("  {:>10}  {} is not above 0\n", counts.notPositive[i], name);
    }
  }
  return text;
}

}  // namespace mcfit
