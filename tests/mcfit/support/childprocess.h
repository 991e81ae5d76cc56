// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

/// How a program ended and what it wrote.
struct ProgramResult {
  int status = -1;  ///< exit status; 128 + the signal that killed it
  std::string out;
  std::string err;
};

/// A run of the mcfit program under the control of a test.
class ChildProcess {
public:
  struct Options {
    std::string input;            ///< comes in on the standard input
    bool keepInputOpen = false;   ///< the input goes on until EndInput()
    bool errOnTerminal = false;   ///< the standard error is a terminal
    std::size_t memoryLimit = 0;  ///< bytes of memory for data, 0 for no limit
    std::string temporaryFolder;  ///< TMPDIR, if not empty
    std::string outPath;          ///< the standard output goes there, if not empty
    bool outInPieces = false;  ///< holds the program at each piece of output, see WaitForOutput()
  };

  ChildProcess(const std::vector<std::string>& arguments, const Options& options);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Reads the standard error until it has the text. False if the program ends before.
  bool WaitForError(const std::string& text);

  /// Reads the standard output until it has the text. False if the program ends before. With
  /// `outInPieces` the pipe takes one piece, which is what the program writes at once: behind the
  /// piece that has the text it gets no further than to the end of the one after the next.
  bool WaitForOutput(const std::string& text);

  /// Whether the program writes to the standard error within this time.
  bool HasErrorWithin(int milliseconds) const;

  /// Writes more to the standard input.
  void Give(const std::string& input) const;

  void EndInput();

  /// Stops reading the standard output, as a reader does that has seen enough.
  void CloseOutput();

  /// Waits until the program has read all of its input so far.
  void WaitUntilInputIsTaken() const;

  void Send(int signal) const;

  /// Waits for the end of the program.
  ProgramResult Finish();

private:
  [[noreturn]] void RunChild(const std::vector<std::string>& arguments, const Options& options);

  pid_t fProcess = -1;
  int fInput = -1;
  int fOut = -1;
  int fErr = -1;
  int fChildEnds[3] = {-1, -1, -1};
  ProgramResult fResult;
};

/// Runs mcfit with these arguments to its end.
ProgramResult RunMcfit(const std::vector<std::string>& arguments,
                       const ChildProcess::Options& options = {});
