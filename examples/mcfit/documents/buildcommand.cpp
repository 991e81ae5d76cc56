// SPDX-License-Identifier: Apache-2.0
#include "documents/buildcommand.h"

#include "documents/buildsettings.h"
#include "fitoptions.h"
#include "fitrun.h"

namespace mcfit {

BuildCommand::BuildCommand(CLI::App& app)
    : fpApp(app.add_subcommand("build", "Fit the regression that a settings document asks for")) {
  fpApp->add_option("settings", fSettings, "Settings document: PMML with a MiningBuildTask")
      ->required();
  fpApp->add_option("data", fFiles.data, "CSV file with a header line; - for the standard input")
      ->required();
  DeclareResultOptions(*fpApp, fFiles);
}

void BuildCommand::Run() {
  SettingsDocument document(fSettings);
  Build build = ReadBuild(document);
  FitRequest& request = build.request;
  request.data = fFiles.data;
  request.predict = fFiles.predict;
  request.out = fFiles.out;
  request.pmml = fFiles.pmml;
  RunFit(request, *build.kind);
}

}  // namespace mcfit
