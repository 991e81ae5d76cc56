// SPDX-License-Identifier: Apache-2.0
#include "outputfile.h"

#include "errors.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace mcfit {

namespace {

namespace fs = std::filesystem;

bool IsSpecial(const std::string& path) {
  std::error_code ignored;
  return fs::exists(path, ignored) && !fs::is_regular_file(path, ignored);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return fs::weakly_canonical(a, ignored) == fs::weakly_canonical(b, ignored) ||
         fs::equivalent(a, b, ignored);
}

bool IsAmong(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(),
                     [&path](const std::string& other) { return IsSameFile(path, other); });
}

// Renaming would replace a symbolic link and not the file that it names.
std::string Target(const std::string& path) {
  std::error_code failed;
  const fs::path target = fs::canonical(path, failed);
  return failed ? path : target.string();
}

}  // namespace

void PrintResults(std::string_view text) {
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (std::fflush(stdout) != 0 || !isWritten) {
    throw InputError(fmt::format("the results could not be written: {}", std::strerror(errno)));
  }
}

void OutputPaths::AddOutput(const char* option, const std::string& path) {
  if (IsAmong(fInputs, path)) {
    throw InputError(fmt::format("{} {} would overwrite an input file", option, Quoted(path)));
  }
  // A terminal, pipe or device may well take several texts in turn.
  if (!IsSpecial(path) && IsAmong(fOutputs, path)) {
    throw InputError(fmt::format("{} {} would overwrite another result", option, Quoted(path)));
  }
  fOutputs.push_back(path);
}

OutputFile::OutputFile(const std::string& path)
    : fPath(IsSpecial(path) ? path : Target(path)),
      fWritten(IsSpecial(path) ? fPath : fPath + ".part"),
      fFile(std::fopen(fWritten.c_str(), "wbe")) {
  if (!fFile) Fail();
}

OutputFile::~OutputFile() {
  if (fFile && !IsDirect()) std::remove(fWritten.c_str());
}

void OutputFile::Write(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), fFile.get()) != text.size()) Fail();
}

void OutputFile::Commit() {
  if (std::fflush(fFile.get()) != 0) Fail();
  if (!IsDirect() && std::rename(fWritten.c_str(), fPath.c_str()) != 0) Fail();
  fFile.reset();
}

void OutputFile::Fail() const {
  throw InputError(fmt::format("cannot write {}: {}", Quoted(fWritten), std::strerror(errno)));
}

}  // namespace mcfit
