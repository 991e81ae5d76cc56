// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"
#include "regression/frame/mcmv.h"

#include <ostream>
#include <string>
#include <string_view>

namespace MCCommonXML {

/// The missing value as documents know it: the same number as everywhere.
namespace MV {
inline constexpr double gMissingValue = MCMV::gMissingValue;
}

/// Writes one object in the save format: a line that opens it, one line for each value, the objects
/// that it holds, and a line that closes it. An object writes itself through one of these, which
/// lives for the length of the call:
///
///     XMLObj object("MCWeightVar", nTabs);
///     object.StartObj(out);
///     object.WriteSubElement(out, fName);
///     object.EndObj(out);
///
/// Each line begins with its line end, so the last line of a file has none: whoever writes a whole
/// file adds one, or its last line can't be read back. docs/formats.md has the whole format.
class MC_EXPORT XMLObj {
public:
  // The words of the format.
  static constexpr std::string_view ROOT = "MCXMLRoot";
  static constexpr std::string_view COPYRIGHT = "copyright";
  static constexpr std::string_view OBJECT = "Obj";
  static constexpr std::string_view NAME = "name";
  static constexpr std::string_view INT = "Int";
  static constexpr std::string_view LONG = "Long";
  static constexpr std::string_view DOUBLE = "Double";
  static constexpr std::string_view STRING = "String";
  static constexpr std::string_view VALUE = "value";
  static constexpr std::string_view MISSING = "Missing";

  /// System identifier for a host that gives its files a document type; used by nothing here.
  static constexpr std::string_view SYSTEM_ID = "savexml.dtd";

  /// An object of the class `name`, indented by `nTabs` tabs.
  XMLObj(const std::string& name, int nTabs) : fName(name), fNTabs(nTabs) {}

  const std::string& GetName() const { return fName; }
  int GetNTabs() const { return fNTabs; }

  /// Write the line that opens the object, with its name as it stands, and the one that closes it.
  /// Each writes one line. 0.
  int StartObj(std::ostream& out) const;
  int EndObj(std::ostream& out) const;

  /// Write one value, one tab deeper: an "Int", "Long", "Double" or "String". Numbers have 15
  /// significant digits, so a long beyond them is rounded, and a number that isn't finite is
  /// written as a word that reads back as 0. A string is escaped, which reading doesn't undo. Each
  /// writes one line. 0.
  int WriteSubElement(std::ostream& out, unsigned int value) const;
  int WriteSubElement(std::ostream& out, int value) const;
  int WriteSubElement(std::ostream& out, long value) const;
  int WriteSubElement(std::ostream& out, bool value) const;
  int WriteSubElement(std::ostream& out, double value) const;
  int WriteSubElement(std::ostream& out, const std::string& value) const;

  /// The same for a literal, which would else be taken for a bool.
  int WriteSubElement(std::ostream& out, const char* value) const;

private:
  template <class Value>
  int WriteValue(std::ostream& out, std::string_view element, const Value& value) const;

  std::string fName;
  int fNTabs;
};

/// Open the root of a save file, with a copyright; the host writes declaration and document type
/// before it, one line each. 0.
MC_EXPORT int StartRoot(std::ostream& out, const std::string& copyright);
MC_EXPORT int WriteHeader(std::ostream& out, const std::string& copyright);

/// Close it, on a line of its own. 0.
MC_EXPORT int EndRoot(std::ostream& out);
MC_EXPORT int EndHeader(std::ostream& out);

}  // namespace MCCommonXML
