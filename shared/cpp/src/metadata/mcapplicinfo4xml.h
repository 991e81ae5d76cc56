// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <string>

namespace MCCommonMetadata {

/// How an application describes itself in the header of a document; what is empty is left out.
class MC_EXPORT MCApplicInfo4XML {
public:
  explicit MCApplicInfo4XML(const std::string& name = "", const std::string& version = "",
                            const std::string& copyright = "")
      : fName(name), fVersion(version), fCopyright(copyright) {}

  std::string fName;
  std::string fVersion;
  std::string fCopyright;
};

}  // namespace MCCommonMetadata
