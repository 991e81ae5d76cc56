// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace mcfit {

/// The whole program: parses the command line, runs the subcommand, turns every failure into a
/// message on the standard error and an exit status.
int RunProgram(int argc, char** argv);

}  // namespace mcfit
