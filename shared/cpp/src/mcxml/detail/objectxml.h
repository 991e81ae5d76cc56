// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/ioexception.h"
#include "mcxml/parseobj.h"
#include "mcxml/xmlobj.h"

#include <fstream>
#include <iostream>
#include <ostream>
#include <string>
#include <vector>

namespace MCCommonXML {
namespace detail {

/// Writes one object of the save format and counts its lines, those of objects inside it included.
class ObjectWriter {
public:
  ObjectWriter(std::ostream& out, const char* name, int nTabs) : fOut(&out), fObject(name, nTabs) {
    fObject.StartObj(out);
  }

  template <class Value>
  void Write(const Value& value) {
    fObject.WriteSubElement(*fOut, value);
    ++fNLines;
  }

  /// The number of values, then the values.
  template <class Value>
  void WriteList(const std::vector<Value>& values) {
    Write(static_cast<int>(values.size()));
    WriteValues(values);
  }
  template <class Value>
  void WriteValues(const std::vector<Value>& values) {
    for (const Value& value : values) Write(value);
  }

  /// An object inside this one, one tab deeper.
  template <class Object>
  void WriteObject(const Object& object) {
    fNLines += object.WriteObjectXML(*fOut, fObject.GetNTabs() + 1);
  }

  /// Closes the object. Number of its lines.
  int Finish() {
    fObject.EndObj(*fOut);
    return fNLines + 1;
  }

private:
  std::ostream* fOut;
  XMLObj fObject;
  int fNLines = 1;
};

/// Reads one object of the save format and counts its lines in the same way. What can't be read is
/// thrown as IOException, before memory is taken for it: a count is no reason to believe that so
/// many values follow.
class ObjectReader {
public:
  explicit ObjectReader(std::ifstream& in) : fIn(&in) {}

  void Start(const char* name) { Take(ParseStartObj(*fIn, name)); }
  void End() { Take(ParseEndObj(*fIn)); }

  template <class Value>
  Value Read() {
    Value value = Value();
    Take(ParseValue(*fIn, value));
    return value;
  }

  /// A value of an enumeration, whatever the number.
  template <class Enumeration>
  Enumeration ReadEnumeration() {
    return static_cast<Enumeration>(Read<int>());
  }

  /// A number of values that follow, 0 or above.
  int ReadCount() {
    const int count = Read<int>();
    if (count < 0) Fail();
    return count;
  }

  /// Appends values to a list.
  template <class Value>
  void ReadValues(int count, std::vector<Value>& values) {
    for (int i = 0; i < count; ++i) values.push_back(Read<Value>());
  }
  template <class Value>
  void ReadList(std::vector<Value>& values) {
    ReadValues(ReadCount(), values);
  }

  template <class Object>
  void ReadObject(Object& object) {
    fNLines += object.ReadObjectXML(*fIn);
  }

  [[noreturn]] static void Fail() {
    throw MCCommonMetadata::IOException("the save file doesn't hold this object");
  }

  int GetNLines() const { return fNLines; }

private:
  void Take(bool isRead) {
    if (!isRead) Fail();
    ++fNLines;
  }

  std::ifstream* fIn;
  int fNLines = 0;
};

/// Reads an object of the class `name`, of which `readContents(reader)` reads what is between its
/// first and last line. Number of lines. Where it can't be read, that is said on standard error
/// and the exception passes on.
template <class ReadContents>
int ReadObject(std::ifstream& in, const char* name, ReadContents readContents) {
  ObjectReader reader(in);
  try {
    reader.Start(name);
    readContents(reader);
    reader.End();
  } catch (const MCCommonMetadata::IOException&) {
    std::cerr << "Failure reading " << name << "!\n";
    throw;
  }
  return reader.GetNLines();
}

}  // namespace detail
}  // namespace MCCommonXML
