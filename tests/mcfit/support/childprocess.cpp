// SPDX-License-Identifier: Apache-2.0
#include "mcfit/support/childprocess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

void MakePipe(int& reader, int& writer, int flags = 0) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | flags) != 0) throw std::runtime_error("no pipe");
  reader = ends[0];
  writer = ends[1];
}

// A pipe of packets has room for one packet in each of its pages, and this one has one page.
void MakePipeOfOnePiece(int& reader, int& writer) {
  MakePipe(reader, writer, O_DIRECT);
  if (fcntl(writer, F_SETPIPE_SZ, 1) != sysconf(_SC_PAGESIZE)) {
    throw std::runtime_error("no pipe of one page");
  }
}

void MakeTerminal(int& reader, int& writer) {
  termios raw = {};
  cfmakeraw(&raw);
  if (openpty(&reader, &writer, nullptr, &raw, nullptr) != 0) throw std::runtime_error("no pty");
  fcntl(reader, F_SETFD, FD_CLOEXEC);
  fcntl(writer, F_SETFD, FD_CLOEXEC);
}

void Close(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

// Appends what comes next, of a pipe of packets one of them; false at the end. A terminal whose
// other side is closed fails to read.
bool ReadSome(int descriptor, std::string& text) {
  char buffer[4096];
  ssize_t got = -1;
  do {
    got = read(descriptor, buffer, sizeof buffer);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) return false;
  text.append(buffer, static_cast<std::size_t>(got));
  return true;
}

bool ReadUntil(int descriptor, std::string& text, const std::string& wanted) {
  while (text.find(wanted) == std::string::npos) {
    if (!ReadSome(descriptor, text)) return false;
  }
  return true;
}

void WriteAll(int descriptor, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t put = write(descriptor, text.data() + done, text.size() - done);
    if (put <= 0) return;  // the program stopped reading
    done += static_cast<std::size_t>(put);
  }
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const Options& options) {
  std::signal(SIGPIPE, SIG_IGN);
  MakePipe(fChildEnds[0], fInput);
  if (options.outInPieces) {
    MakePipeOfOnePiece(fOut, fChildEnds[1]);
  } else {
    MakePipe(fOut, fChildEnds[1]);
  }
  if (options.errOnTerminal) {
    MakeTerminal(fErr, fChildEnds[2]);
  } else {
    MakePipe(fErr, fChildEnds[2]);
  }
  fProcess = fork();
  if (fProcess < 0) throw std::runtime_error("no process");
  if (fProcess == 0) RunChild(arguments, options);
  for (int& end : fChildEnds) Close(end);
  WriteAll(fInput, options.input);
  if (!options.keepInputOpen) Close(fInput);
}

void ChildProcess::RunChild(const std::vector<std::string>& arguments, const Options& options) {
  for (int i = 0; i < 3; ++i) dup2(fChildEnds[i], i);
  if (!options.outPath.empty()) {
    const int out = open(options.outPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    dup2(out, STDOUT_FILENO);
  }
  if (!options.temporaryFolder.empty()) setenv("TMPDIR", options.temporaryFolder.c_str(), 1);
  if (options.memoryLimit > 0) {
    const rlimit limit = {options.memoryLimit, options.memoryLimit};
    setrlimit(RLIMIT_DATA, &limit);
  }
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGPIPE, SIG_DFL);
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), "mcfit");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  // It holds the locales of the tests; the leak detector minds what the C library makes of it.
  unsetenv("LOCPATH");
  execv(MCFIT_PROGRAM, pointers.data());
  _exit(127);
}

ChildProcess::~ChildProcess() {
  if (fProcess > 0) {
    kill(fProcess, SIGKILL);
    waitpid(fProcess, nullptr, 0);
  }
  Close(fInput);
  Close(fOut);
  Close(fErr);
}

bool ChildProcess::WaitForError(const std::string& text) {
  return ReadUntil(fErr, fResult.err, text);
}

bool ChildProcess::WaitForOutput(const std::string& text) {
  return ReadUntil(fOut, fResult.out, text);
}

bool ChildProcess::HasErrorWithin(int milliseconds) const {
  pollfd stream = {fErr, POLLIN, 0};
  return poll(&stream, 1, milliseconds) > 0;
}

void ChildProcess::Give(const std::string& input) const {
  WriteAll(fInput, input);
}

void ChildProcess::EndInput() {
  Close(fInput);
}

void ChildProcess::CloseOutput() {
  Close(fOut);
}

void ChildProcess::WaitUntilInputIsTaken() const {
  constexpr useconds_t kPause = 10000;
  int left = 1;
  while (left > 0 && ioctl(fInput, FIONREAD, &left) == 0) usleep(kPause);
}

void ChildProcess::Send(int signal) const {
  kill(fProcess, signal);
}

// Reads both streams as they fill, so that the program never waits for a full pipe.
ProgramResult ChildProcess::Finish() {
  pollfd streams[2] = {{fOut, POLLIN, 0}, {fErr, POLLIN, 0}};
  std::string* texts[2] = {&fResult.out, &fResult.err};
  while (streams[0].fd >= 0 || streams[1].fd >= 0) {
    poll(streams, 2, -1);
    for (int i = 0; i < 2; ++i) {
      if (streams[i].revents != 0 && !ReadSome(streams[i].fd, *texts[i])) streams[i].fd = -1;
    }
  }
  Close(fInput);
  int status = 0;
  waitpid(fProcess, &status, 0);
  fProcess = -1;
  fResult.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return fResult;
}

ProgramResult RunMcfit(const std::vector<std::string>& arguments,
                       const ChildProcess::Options& options) {
  return ChildProcess(arguments, options).Finish();
}
