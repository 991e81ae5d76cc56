// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mcfit {

/// Writes the text to the standard output at once. Throws InputError if it can't be written.
void PrintResults(std::string_view text);

/// The files of one run: none may be written that is read or written as another.
class OutputPaths {
public:
  /// "-", the standard input, is no file.
  void AddInput(const std::string& path) {
    if (path != "-") fInputs.push_back(path);
  }

  /// `option` is what messages name it by. Throws InputError for a file that is there already.
  void AddOutput(const char* option, const std::string& path);

private:
  std::vector<std::string> fInputs;
  std::vector<std::string> fOutputs;
};

/// A result file that appears under its name only when it is complete: it is written as NAME.part
/// beside it and renamed at the end. What is no regular file, such as a pipe, is written directly.
/// Failures throw InputError.
class OutputFile {
public:
  explicit OutputFile(const std::string& path);

  /// Removes the unfinished file.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view text);

  /// The file as it is until Commit(), for what writes to files by their names.
  const std::string& Unfinished() const { return fWritten; }

  /// Ends the writing and puts the file in its place.
  void Commit();

private:
  [[noreturn]] void Fail() const;
  bool IsDirect() const { return fWritten == fPath; }

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::string fPath;
  std::string fWritten;
  std::unique_ptr<std::FILE, Closer> fFile;
};

}  // namespace mcfit
