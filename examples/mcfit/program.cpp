// SPDX-License-Identifier: Apache-2.0
#include "program.h"

#include "describecommand.h"
#include "errors.h"
#include "generate/generatecommand.h"
#include "interrupt.h"
#include "linearcommand.h"
#include "logisticcommand.h"
#ifdef MCFIT_WITH_XERCES
#include "documents/buildcommand.h"
#include "documents/dictionarycommand.h"
#include "documents/mergecommand.h"
#include "documents/splitcommand.h"
#endif

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <memory>
#include <new>
#include <vector>

namespace mcfit {

namespace {

int RunCommands(int argc, char** argv) {
  CLI::App app("Describes and makes CSV files and fits regressions to them with the mcstat library",
               "mcfit");
  app.set_version_flag("--version", "mcfit " MCFIT_VERSION);
  // Not "exactly one": the parser would then hide which word it didn't know.
  app.require_subcommand(0, 1);
  std::vector<std::unique_ptr<Command>> commands;
  commands.push_back(std::make_unique<LinearCommand>(app));
  commands.push_back(std::make_unique<LogisticCommand>(app));
  commands.push_back(std::make_unique<DescribeCommand>(app));
  commands.push_back(std::make_unique<GenerateCommand>(app));
#ifdef MCFIT_WITH_XERCES
  commands.push_back(std::make_unique<BuildCommand>(app));
  commands.push_back(std::make_unique<DictionaryCommand>(app));
  commands.push_back(std::make_unique<SplitCommand>(app));
  commands.push_back(std::make_unique<MergeCommand>(app));
#endif
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kSuccess : kBadInput;
  }
  if (app.get_subcommands().empty()) {
    throw InputError("a subcommand is required; see mcfit --help");
  }
  for (const std::unique_ptr<Command>& command : commands) {
    if (command->IsChosen()) command->Run();
  }
  return kSuccess;
}

int Fail(ExitStatus status, const char* message) {
  std::fprintf(stderr, "mcfit: %s\n", message);
  return status;
}

}  // namespace

int RunProgram(int argc, char** argv) {
  try {
    CatchInterrupts();
    // Where nobody reads the results any more, writing them fails, and nothing is left unfinished.
    std::signal(SIGPIPE, SIG_IGN);
    return RunCommands(argc, argv);
  } catch (const Interrupted& stop) {
    return Fail(kInterrupted, stop.what());
  } catch (const InputError& error) {
    return Fail(kBadInput, error.what());
  } catch (const ModelError& error) {
    return Fail(kModelFailure, error.what());
  } catch (const std::bad_alloc&) {
    return Fail(kModelFailure, "out of memory");
  } catch (const std::exception& error) {
    return Fail(kModelFailure, error.what());
  }
}

}  // namespace mcfit
