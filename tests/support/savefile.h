// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/ioexception.h"
#include "support/textfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <sstream>
#include <string>

namespace mctest {

/// While it lives, what is written to a stream goes into a text.
class StreamCapture {
public:
  explicit StreamCapture(std::ostream& stream)
      : fpStream(&stream), fpBefore(stream.rdbuf(fText.rdbuf())) {}
  ~StreamCapture() { fpStream->rdbuf(fpBefore); }
  StreamCapture(const StreamCapture&) = delete;
  StreamCapture& operator=(const StreamCapture&) = delete;

  std::string Text() const { return fText.str(); }

private:
  std::ostringstream fText;
  std::ostream* fpStream;
  std::streambuf* fpBefore;
};

/// What an object writes, with the line end that its last line needs to be read. The number of
/// lines that it tells is checked.
template <class Object>
std::string Saved(const Object& object, int nTabs = 0) {
  std::ostringstream out;
  const int nLines = object.WriteObjectXML(out, nTabs);
  std::string text = out.str();
  EXPECT_EQ(nLines, std::count(text.begin(), text.end(), '\n'));
  return text + "\n";
}

/// Reads an object from a file of the text. Number of lines.
template <class Object>
int ReadSaved(Object& object, const std::string& text) {
  TextFile file(text);
  return object.ReadObjectXML(file.Stream());
}

/// Reads an object from what another one wrote, all of whose lines it takes.
template <class Object>
void ReadWhatIsSaved(Object& object, const Object& other) {
  const std::string text = Saved(other);
  TextFile file(text);
  // The text begins with a line end, which isn't a line of the object.
  EXPECT_EQ(object.ReadObjectXML(file.Stream()), std::count(text.begin(), text.end(), '\n') - 1);
  EXPECT_EQ(file.Rest(), "");
}

/// What a read that fails says on standard error; a failure of the test if it doesn't.
template <class Object>
std::string FailureOfReading(Object& object, const std::string& text) {
  const StreamCapture errors(std::cerr);
  EXPECT_THROW(ReadSaved(object, text), MCCommonMetadata::IOException) << text;
  return errors.Text();
}

}  // namespace mctest
