// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace mctest {

/// What is wrong with a PMML 3.2 document, "" if nothing is: children and attributes by a table of
/// those that the standard allows and, where the build knows the folder of the published schemas
/// (MCSTAT_PMML_SCHEMAS), everything that xmllint finds against pmml-3-2.xsd.
std::string PmmlFaults(const std::string& document);

/// What xmllint finds against the published schema of a version, such as "4-1"; "" where the build
/// doesn't know the folder of the schemas.
std::string PmmlSchemaFaults(const std::string& document, const std::string& version);

}  // namespace mctest
