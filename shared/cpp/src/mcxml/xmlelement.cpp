// SPDX-License-Identifier: Apache-2.0
#include "mcxml/xmlelement.h"

#include "mcxml/xmltext.h"
#include "mcxml/xmlutil.h"
#include "regression/frame/detail/mcassert.h"

#include <cstddef>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace MCCommonXML {

namespace {

constexpr char kSource[] = "mcxml/xmlelement";

void AssertThere(const XMLInterface* node, const char* text) {
  MCCommon::detail::Assert(node != nullptr, text, kSource);
}

/// Collects what is printed in a text.
class StringSink {
public:
  explicit StringSink(std::string& out) : fOut(&out) {}

  void Add(std::string_view text) { *fOut += text; }
  void AddNode(const XMLInterface& node, ExportFormat& format) { node.ToString(*fOut, format); }
  void Flush() {}

private:
  std::string* fOut;
};

/// Hands what is printed on to a stream, so that no document is held in memory: tag by tag where it
/// is converted, in blocks otherwise, as a stream takes its time for each piece.
class StreamSink {
public:
  StreamSink(std::ostream& out, bool utf8) : fOut(&out), fbUTF8(utf8) {}

  void Add(std::string_view text) { fText += text; }
  void AddNode(const XMLInterface& node, ExportFormat& format) {
    if (!fbUTF8 && typeid(node) == typeid(XMLAttribute)) {
      node.ToString(fText, format);
      return;
    }
    Write();
    node.ToStream(*fOut, format, fbUTF8);
  }
  void Flush() {
    if (fbUTF8 || fText.size() >= kBlock) Write();
  }
  void Write() {
    if (fText.empty()) return;
    WriteText(*fOut, fText, fbUTF8);
    fText.clear();
  }

private:
  static constexpr std::size_t kBlock = 4096;

  std::ostream* fOut;
  bool fbUTF8;
  std::string fText;
};

template <class Sink>
void BeginLine(Sink& sink, const ExportFormat& format, std::string_view otherwise) {
  sink.Add(format.IsNewParagraph() ? XMLUtil::ROWSEP : otherwise);
  if (!format.HasIndentation()) return;
  for (int i = 0; i < format.GetDepth(); ++i) sink.Add(XMLUtil::ITEMINDENT);
}

}  // namespace

XMLElement* XMLElement::Create(const std::string& name) {
  return new XMLElement(name);
}

// Deletes the children from the last up, going down into those that have some and, by the links
// that it leaves, up again.
XMLElement::~XMLElement() {
  XMLElement* parent = this;
  for (;;) {
    if (parent->fChildren.empty()) {
      if (parent == this) return;
      parent = parent->fpAbove;
      parent->fChildren.pop_back();
      continue;
    }
    auto* child = dynamic_cast<XMLElement*>(parent->fChildren.back().get());
    if (child == nullptr || child->fChildren.empty()) {
      parent->fChildren.pop_back();
    } else {
      child->fpAbove = parent;
      parent = child;
    }
  }
}

int XMLElement::AddElement(XMLElement* element) {
  AssertThere(element, "element");
  fChildren.emplace_back(std::unique_ptr<XMLInterface>(element));
  return static_cast<int>(fChildren.size());
}

int XMLElement::AddElement(XMLString* text) {
  fChildren.emplace_back(std::unique_ptr<XMLInterface>(text));
  return static_cast<int>(fChildren.size());
}

void XMLElement::AddAttribute(const std::string& name, const std::string& value) {
  AddAttribute(XMLAttribute::Create(name, value));
}

void XMLElement::AddAttribute(const std::string& name, double value) {
  AddAttribute(XMLAttribute::Create(name, value));
}

void XMLElement::AddAttribute(XMLAttribute* attribute) {
  fAttributes.emplace_back(std::unique_ptr<XMLAttribute>(attribute));
}

// Whether the element stays open for its children.
template <class Sink>
bool XMLElement::PrintStart(Sink& sink, ExportFormat& format) const {
  BeginLine(sink, format, "");
  sink.Add(XMLUtil::BEGIN_ELEMENT);
  sink.Add(fName);
  format.Enter();
  for (const auto& attribute : fAttributes) {
    BeginLine(sink, format, XMLUtil::SPACE);
    AssertThere(attribute.get(), "attribute");
    sink.AddNode(*attribute, format);
  }
  if (!fChildren.empty()) {
    sink.Add(XMLUtil::END_ELEMENT);
    sink.Flush();
    return true;
  }
  format.Leave();
  sink.Add(XMLUtil::BEGIN_END_ELEMENT);
  sink.Add(XMLUtil::END_ELEMENT);
  sink.Flush();
  format.SetIsNewParagraph(true);
  format.SetIndentation(true);
  return false;
}

template <class Sink>
void XMLElement::PrintEnd(Sink& sink, ExportFormat& format) const {
  format.Leave();
  BeginLine(sink, format, "");
  sink.Add(XMLUtil::BEGIN_ELEMENT);
  sink.Add(XMLUtil::BEGIN_END_ELEMENT);
  sink.Add(fName);
  sink.Add(XMLUtil::END_ELEMENT);
  sink.Flush();
  format.SetIsNewParagraph(true);
  format.SetIndentation(true);
}

template <class Sink>
void XMLElement::Print(Sink& sink, ExportFormat& format) const {
  struct OpenElement {
    const XMLElement* element;
    std::size_t next;
  };
  std::vector<OpenElement> open;
  if (PrintStart(sink, format)) open.push_back({this, 0});
  while (!open.empty()) {
    const XMLElement& parent = *open.back().element;
    if (open.back().next == parent.fChildren.size()) {
      parent.PrintEnd(sink, format);
      open.pop_back();
      continue;
    }
    const XMLInterface* child = parent.fChildren[open.back().next++].get();
    AssertThere(child, "element");
    if (typeid(*child) != typeid(XMLElement)) {
      sink.AddNode(*child, format);
    } else if (const auto* element = static_cast<const XMLElement*>(child);
               element->PrintStart(sink, format)) {
      open.push_back({element, 0});
    }
  }
}

int XMLElement::ToString(std::string& out, ExportFormat& format) const {
  std::string text;
  StringSink sink(text);
  Print(sink, format);
  out += text;
  return 0;
}

int XMLElement::ToStream(std::ostream& out, ExportFormat& format, bool utf8) const {
  StreamSink sink(out, utf8);
  Print(sink, format);
  sink.Write();
  return 0;
}

}  // namespace MCCommonXML
