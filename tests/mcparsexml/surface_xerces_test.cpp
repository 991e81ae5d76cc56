// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcparsexml.h"
#include "support/exacttype.h"

#include <istream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
#include <xercesc/util/BinInputStream.hpp>

// Every operation of the base of the readers by its name and exact type: one that is missing or
// changed doesn't compile.

namespace {

using namespace MCComXPrsUtil;
using MCCommon::MCStatus;
using mctest::Is;
using std::string;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using Doubles = std::vector<double>;
using Texts = std::vector<string>;
using Table = const std::pair<unsigned int, const char*>*;
using Units = std::vector<unsigned short>;
using Old = const unsigned short*;
using New = const XMLCh*;

#define MC_HAS(Class, Name, ...) \
  static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Class::Name)))
#define MC_FREE(Name, ...) static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Name)))

using R = MCXMLReadWrite;
static_assert(std::is_default_constructible_v<R> && !std::is_polymorphic_v<R>);
static_assert(!std::is_copy_constructible_v<R> && !std::is_copy_assignable_v<R>);
MC_HAS(R, GetInitStatus, MCStatus (R::*)() const);
MC_HAS(R, GetDocument, DOMDocument* (R::*)());
MC_HAS(R, GetDocument, const DOMDocument* (R::*)() const);
MC_HAS(R, GetXercesMessage, string (R::*)() const);
MC_HAS(R, ParseToDOM, MCStatus (R::*)(const string&));
MC_HAS(R, ParseToDOM, MCStatus (R::*)(std::istream&));
MC_HAS(R, WriteFromDOM, MCStatus (R::*)(const string&, const DOMDocument*) const);
MC_HAS(R, SetStrict, void (R::*)(bool));
MC_HAS(R, IsStrict, bool (R::*)() const);

using T = MCXTranscoder;
static_assert(std::is_constructible_v<T, const char*> && !std::is_copy_constructible_v<T>);
static_assert(!std::is_polymorphic_v<T>);
MC_HAS(T, isValid, bool (T::*)() const);
MC_HAS(T, TranscodeTo, string (T::*)(Old) const);
MC_HAS(T, TranscodeTo, string (T::*)(New) const);
MC_HAS(T, TranscodeFrom, Units (T::*)(const char*) const);

using I = MCXInputSource;
static_assert(std::is_constructible_v<I, std::istream&>);
static_assert(std::is_base_of_v<xercesc::InputSource, I> && !std::is_copy_constructible_v<I>);
MC_HAS(I, makeStream, xercesc::BinInputStream* (I::*)() const);

MC_FREE(ToUTF16, Units (*)(const char*));
MC_FREE(ToUTF8, string (*)(Old));
MC_FREE(ToUTF8, string (*)(New));
MC_FREE(XStrEqualsUTF8Str, bool (*)(Old, const char*));
MC_FREE(XStrEqualsUTF8Str, bool (*)(New, const char*));
MC_FREE(FindXStrInList, int (*)(Old, const Texts&));
MC_FREE(FindXStrInList, int (*)(New, const Texts&));
MC_FREE(FindXStrInList, int (*)(Old, Table));
MC_FREE(FindXStrInList, int (*)(New, Table));
MC_FREE(TagNameEquals, bool (*)(const DOMElement&, const char*));
MC_FREE(AsElement, const DOMElement* (*)(const DOMNode&, const char*));
MC_FREE(AsElement, DOMElement* (*)(DOMNode&, const char*));
MC_FREE(GetFirstChildElmt, DOMElement* (*)(const DOMNode&, const char*));
MC_FREE(GetNextSiblingElmt, DOMElement* (*)(const DOMNode&, const char*));
MC_FREE(GetFirstChildElmt, DOMElement* (*)(const DOMNode&, Table, unsigned long&));
MC_FREE(GetFirstChildExtension, DOMElement* (*)(const DOMNode&, const char*));
MC_FREE(GetNextSiblingExtension, DOMElement* (*)(const DOMNode&, const char*));
MC_FREE(GetAttribute, New (*)(const DOMElement&, const char*));
MC_FREE(GetAttribute, New (*)(const DOMNode&, const char*));
MC_FREE(GetDoubleAttribute, int (*)(const DOMElement&, const char*, double&));
MC_FREE(GetIntAttribute, int (*)(const DOMElement&, const char*, int, int&));
MC_FREE(AssembleDoublesList, bool (*)(const DOMElement&, Doubles&));
MC_FREE(SetAttribute, bool (*)(DOMElement&, const char*, const char*));
MC_FREE(SetAttribute, bool (*)(DOMElement&, const char*, double));
MC_FREE(CreateElement, DOMElement* (*)(DOMDocument&, const char*));
MC_FREE(CreateExtension, DOMElement* (*)(DOMDocument&, const char*));
MC_FREE(InsertElement, bool (*)(DOMElement&, DOMElement*, DOMElement*));
MC_FREE(ReplaceElement, bool (*)(DOMElement&, DOMElement*, DOMElement*));

}  // namespace
