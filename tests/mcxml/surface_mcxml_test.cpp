// SPDX-License-Identifier: Apache-2.0
#include "mcxml/mcxml.h"
#include "support/exacttype.h"

#include <exception>
#include <fstream>
#include <ostream>
#include <string>
#include <type_traits>

// Every operation by its name and exact type: one that is missing or changed doesn't compile.

namespace {

using namespace MCCommonXML;
using mctest::Is;
using std::ifstream;
using std::ostream;
using std::string;

static_assert(Is<bool (ExportFormat::*)() const>(&ExportFormat::HasIndentation));
static_assert(Is<bool (ExportFormat::*)() const>(&ExportFormat::IsNewParagraph));
static_assert(Is<void (ExportFormat::*)(bool)>(&ExportFormat::SetFormat));
static_assert(Is<void (ExportFormat::*)(bool)>(&ExportFormat::SetIndentation));
static_assert(Is<void (ExportFormat::*)(bool)>(&ExportFormat::SetIsNewParagraph));
static_assert(Is<int (ExportFormat::*)() const>(&ExportFormat::GetDepth));

using ToString = int (XMLInterface::*)(string&, ExportFormat&) const;
using ToStream = int (XMLInterface::*)(ostream&, ExportFormat&, bool) const;
static_assert(Is<ToString>(&XMLInterface::ToString));
static_assert(Is<ToStream>(&XMLInterface::ToStream));
static_assert(std::is_abstract_v<XMLInterface> && std::has_virtual_destructor_v<XMLInterface>);
static_assert(std::is_base_of_v<XMLInterface, XMLAttribute>);
static_assert(std::is_base_of_v<XMLInterface, XMLString>);
static_assert(std::is_base_of_v<XMLInterface, XMLElement>);
static_assert(std::is_base_of_v<XMLInterface, XMLDocType>);

static_assert(Is<XMLAttribute* (*)(const string&, const string&)>(
    static_cast<XMLAttribute* (*)(const string&, const string&)>(&XMLAttribute::Create)));
static_assert(Is<XMLAttribute* (*)(const string&, double)>(
    static_cast<XMLAttribute* (*)(const string&, double)>(&XMLAttribute::Create)));
static_assert(Is<XMLString* (*)(const string&)>(&XMLString::Create));
static_assert(Is<XMLElement* (*)(const string&)>(&XMLElement::Create));
static_assert(Is<XMLDocType* (*)(const string&, const string&, long)>(&XMLDocType::Create));
static_assert(Is<int (XMLDocType::*)(const string&)>(&XMLDocType::AddExtension));
static_assert(Is<int (XMLElement::*)(XMLElement*)>(
    static_cast<int (XMLElement::*)(XMLElement*)>(&XMLElement::AddElement)));
static_assert(Is<int (XMLElement::*)(XMLString*)>(
    static_cast<int (XMLElement::*)(XMLString*)>(&XMLElement::AddElement)));
static_assert(Is<void (XMLElement::*)(const string&, const string&)>(
    static_cast<void (XMLElement::*)(const string&, const string&)>(&XMLElement::AddAttribute)));
static_assert(Is<void (XMLElement::*)(const string&, double)>(
    static_cast<void (XMLElement::*)(const string&, double)>(&XMLElement::AddAttribute)));
static_assert(Is<void (XMLElement::*)(XMLAttribute*)>(
    static_cast<void (XMLElement::*)(XMLAttribute*)>(&XMLElement::AddAttribute)));

static_assert(Is<string (*)(int)>(&XMLUtil::GetTabs));
static_assert(Is<string (*)(int)>(&XMLUtil::toString));
static_assert(Is<int (*)(string&, const char*, const string&, int&)>(&XMLUtil::ReplaceAtPos));

static_assert(Is<string (*)()>(&GetDefaultNumericFormat));
static_assert(Is<string (*)()>(&GetListSeparator));
static_assert(Is<string (*)()>(&GetDecimalCharacter));
static_assert(Is<string (*)(double, bool, const char*)>(
    static_cast<string (*)(double, bool, const char*)>(&Format)));
static_assert(Is<string (*)(long)>(static_cast<string (*)(long)>(&Format)));
static_assert(Is<string (*)(double, const char*)>(&ReplaceSep));
static_assert(Is<int (*)(ostream&, const string&)>(&Write));
static_assert(Is<int (*)(ostream&, const string&)>(&WriteUTF));
using WriteDocument = int (*)(ostream&, const XMLDocType*, const XMLElement*, bool);
static_assert(Is<WriteDocument>(&WriteTree));
static_assert(Is<WriteDocument>(&WriteTreeUTF8));

static_assert(std::is_constructible_v<XMLObj, string, int>);
static_assert(std::is_convertible_v<decltype(std::declval<XMLObj>().GetName()), string>);
static_assert(Is<int (XMLObj::*)() const>(&XMLObj::GetNTabs));
static_assert(Is<int (XMLObj::*)(ostream&) const>(&XMLObj::StartObj));
static_assert(Is<int (XMLObj::*)(ostream&) const>(&XMLObj::EndObj));
template <class Value>
constexpr bool HasSubElement = Is<int (XMLObj::*)(ostream&, Value) const>(
    static_cast<int (XMLObj::*)(ostream&, Value) const>(&XMLObj::WriteSubElement));
static_assert(HasSubElement<unsigned int> && HasSubElement<int> && HasSubElement<long>);
static_assert(HasSubElement<bool> && HasSubElement<double> && HasSubElement<const string&>);
static_assert(HasSubElement<const char*>);

static_assert(Is<int (*)(ostream&, const string&)>(&StartRoot));
static_assert(Is<int (*)(ostream&, const string&)>(&WriteHeader));
static_assert(Is<int (*)(ostream&)>(&EndRoot));
static_assert(Is<int (*)(ostream&)>(&EndHeader));
static_assert(Is<bool (*)(ifstream&)>(&ParseStartXML));
static_assert(Is<bool (*)(ifstream&, const string&)>(&ParseStartObj));
static_assert(Is<bool (*)(ifstream&)>(&ParseEndObj));
template <class Value>
constexpr bool IsParsed =
    Is<bool (*)(ifstream&, Value&)>(static_cast<bool (*)(ifstream&, Value&)>(&ParseValue));
static_assert(IsParsed<bool> && IsParsed<int> && IsParsed<unsigned int> && IsParsed<long>);
static_assert(IsParsed<double> && IsParsed<string>);

static_assert(std::is_base_of_v<std::exception, MCCommonMetadata::IOException>);

// The order of virtual operations, which hosts that make nodes of their own build upon, is held by
// a check of the compiled classes.

}  // namespace
