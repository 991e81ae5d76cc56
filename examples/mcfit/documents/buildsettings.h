// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "documents/settingsdocument.h"
#include "fitrequest.h"
#include "regressionkind.h"

#include <memory>

namespace mcfit {

/// A build as a settings document has it.
struct Build {
  FitRequest request;
  std::unique_ptr<RegressionKind> kind;
};

/// Reads all that a build needs to know from the document: the columns and what they are, the
/// effects and the options. Tells parameters that it doesn't know. Throws InputError for a document
/// that asks for what can't be.
Build ReadBuild(SettingsDocument& document);

}  // namespace mcfit
