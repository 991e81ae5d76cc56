// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcxml/xmlattribute.h"
#include "mcxml/xmlinterface.h"
#include "mcxml/xmlstring.h"

#include <memory>
#include <string>
#include <vector>

namespace MCCommonXML {

/// An element: a name, attributes and children, in the order in which they were added. It owns
/// them; nobody else may delete them, nor add one to two elements. Neither printing nor deletion
/// goes deeper into the stack the deeper the elements are nested.
///
///     XMLElement* field = XMLElement::Create("DataField");
///     field->AddAttribute("name", "age");
///     dictionary->AddElement(field);
///
/// Printed with formatting, each element begins a line, indented by its depth, and each attribute
/// has a line of its own, one level deeper. An element that holds only text stands on one line.
class MC_EXPORT XMLElement : public XMLInterface {
public:
  /// A new element without attributes and children, which the caller owns.
  static XMLElement* Create(const std::string& name);
  ~XMLElement() override;

  int ToString(std::string& out, ExportFormat& format) const override;
  int ToStream(std::ostream& out, ExportFormat& format, bool utf8) const override;

  /// Adds a child, owned from the call on. The number of children. A null element ends the
  /// process, a null text does so when it is printed.
  virtual int AddElement(XMLElement* element);
  virtual int AddElement(XMLString* text);

  /// Adds an attribute, owned from the call on. Nobody looks whether there is one of that name. A
  /// null one ends the process when it is printed.
  void AddAttribute(const std::string& name, const std::string& value);
  void AddAttribute(const std::string& name, double value);
  void AddAttribute(XMLAttribute* attribute);

protected:
  explicit XMLElement(const std::string& name) : fName(name) {}

private:
  template <class Sink>
  bool PrintStart(Sink& sink, ExportFormat& format) const;
  template <class Sink>
  void PrintEnd(Sink& sink, ExportFormat& format) const;
  template <class Sink>
  void Print(Sink& sink, ExportFormat& format) const;

  std::vector<std::unique_ptr<XMLAttribute>> fAttributes;
  std::string fName;
  std::vector<std::unique_ptr<XMLInterface>> fChildren;
  XMLElement* fpAbove = nullptr;  // the way back up, while a tree is deleted
};

}  // namespace MCCommonXML
