// SPDX-License-Identifier: Apache-2.0
#include "documents/dictionarycommand.h"

#include "documents/dictionarytext.h"
#include "documents/modelstats.h"
#include "documents/pmmlfile.h"
#include "outputfile.h"
#include "text.h"

#include <fmt/format.h>

namespace mcfit {

DictionaryCommand::DictionaryCommand(CLI::App& app)
    : fpApp(app.add_subcommand("dictionary", "Print the variables and statistics of a PMML file")) {
  fpApp->add_option("file", fPath, "PMML file of any version")->required();
}

void DictionaryCommand::Run() {
  MCComXPrsUtil::MCPMMLParser parser;
  ReadDocument(parser, fPath);
  MCCommonMetadata::MCVarList variables;
  const MCCommon::MCStatus status = parser.FillVarList(variables, {}, false);
  CheckFields(status, fPath, "DataDictionary", variables.Size());
  PrintResults(fmt::format("Dictionary of {}\n\n{}{}", Printable(fPath),
                           DictionaryText(parser, variables),
                           ModelStatsText(parser, fPath, variables)));
}

}  // namespace mcfit
