// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcexport.h"

#include <string>
#include <utility>
#include <vector>

// Short ways through a DOM. Texts of ours are UTF-8, those of Xerces are UTF-16 units up to a 0, in
// either of two types. A text that isn't well-formed converts to an empty one. None of these throws
// what Xerces throws.

namespace MCComXPrsUtil {

/// `text` in UTF-16, ended by a 0; that 0 alone if it is null.
MC_EXPORT std::vector<unsigned short> ToUTF16(const char* text);

/// `text` in UTF-8; empty if it is null.
MC_EXPORT std::string ToUTF8(const unsigned short* text);
MC_EXPORT std::string ToUTF8(const XMLCh* text);

/// Whether both are the same text. Null and empty are.
MC_EXPORT bool XStrEqualsUTF8Str(const unsigned short* x, const char* s);
MC_EXPORT bool XStrEqualsUTF8Str(const XMLCh* x, const char* s);

/// Index of the first entry of `list` that equals `x`, or -1.
MC_EXPORT int FindXStrInList(const unsigned short* x, const std::vector<std::string>& list);
MC_EXPORT int FindXStrInList(const XMLCh* x, const std::vector<std::string>& list);

/// Index in `table` (not the number that the entry holds) of the first name that equals `x`, or -1.
/// The table ends with an entry whose name is null.
MC_EXPORT int FindXStrInList(const unsigned short* x,
                             const std::pair<unsigned int, const char*>* table);
MC_EXPORT int FindXStrInList(const XMLCh* x, const std::pair<unsigned int, const char*>* table);

/// Whether the element's tag, its prefix included, is `name`.
MC_EXPORT bool TagNameEquals(const xercesc::DOMElement& element, const char* name);

/// `node` if it is an element of that tag, or of any if `name` is null; otherwise null.
MC_EXPORT const xercesc::DOMElement* AsElement(const xercesc::DOMNode& node, const char* name);
MC_EXPORT xercesc::DOMElement* AsElement(xercesc::DOMNode& node, const char* name);

/// The first child that is an element of that tag, or of any if `name` is null; null if there is
/// none.
MC_EXPORT xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node, const char* name);

/// The same among the siblings that follow `node`.
MC_EXPORT xercesc::DOMElement* GetNextSiblingElmt(const xercesc::DOMNode& node, const char* name);

/// The first child of the first tag of `table` that any child has: the order of the table decides,
/// not that of the document. `index` is the tag's place in the table, 0 if the answer is null.
MC_EXPORT xercesc::DOMElement* GetFirstChildElmt(const xercesc::DOMNode& node,
                                                 const std::pair<unsigned int, const char*>* table,
                                                 unsigned long& index);

/// The first child "Extension" of our own extender and of that `name` (of any, if it is null).
/// Those of other extenders are passed over. Null if there is none.
MC_EXPORT xercesc::DOMElement* GetFirstChildExtension(const xercesc::DOMNode& node,
                                                      const char* name);

/// The same among the siblings that follow `node`.
MC_EXPORT xercesc::DOMElement* GetNextSiblingExtension(const xercesc::DOMNode& node,
                                                       const char* name);

/// The attribute's value, owned by the document and valid until the attribute changes. Null if
/// there is no such attribute or, in the second form, if `node` is no element. An element takes the
/// first form.
MC_EXPORT const XMLCh* GetAttribute(const xercesc::DOMElement& element, const char* name);
MC_EXPORT const XMLCh* GetAttribute(const xercesc::DOMNode& node, const char* name);

/// Reads a number in every locale with a decimal point. 0 if `value` was set, to the missing value
/// if the attribute is "NaN"; -1 if there is no such attribute; 1 if it is anything else, an
/// infinity included. `value` is unchanged but for an answer of 0.
MC_EXPORT int GetDoubleAttribute(const xercesc::DOMElement& element, const char* name,
                                 double& value);

/// Reads a whole number. -1 if there is no such attribute and 1 if it isn't a whole number that an
/// int holds, both with `value` unchanged. Otherwise `value` is set, and the answer is 0 if its
/// sign is as wanted: positive for a `sign` above 0, not negative for a `sign` of 0, any for a
/// `sign` below 0; otherwise 1.
MC_EXPORT int GetIntAttribute(const xercesc::DOMElement& element, const char* name, int sign,
                              int& value);

/// Reads the element's text as numbers between XML white space, "NaN" as the missing value. An
/// element without children gives an empty list and true. False with `list` unchanged if its only
/// child isn't a text node or it has several, such as a text and a comment; false with an empty
/// list if a word isn't a number. In time linear in the text.
MC_EXPORT bool AssembleDoublesList(const xercesc::DOMElement& element, std::vector<double>& list);

/// Sets an attribute, in place of one of the same name. False, with the element unchanged, if
/// `name` is no name in XML or the element can't be changed. A number has 15 significant digits and
/// a decimal point in every locale. Null values are empty ones.
MC_EXPORT bool SetAttribute(xercesc::DOMElement& element, const char* name, const char* value);
MC_EXPORT bool SetAttribute(xercesc::DOMElement& element, const char* name, double value);

/// A new element without a parent, which the document owns. Null if `name` is no name in XML.
MC_EXPORT xercesc::DOMElement* CreateElement(xercesc::DOMDocument& document, const char* name);

/// A new "Extension" with our own extender and then `name` as its attributes. Null if it can't be
/// made.
MC_EXPORT xercesc::DOMElement* CreateExtension(xercesc::DOMDocument& document, const char* name);

/// Puts `child` among the children of `parent`, before `before` or, if that is null, at the end;
/// where it stood before, it leaves. False with all unchanged if `child` is null, is or
/// holds `parent` or is of another document, or if `before` is no child of `parent`.
MC_EXPORT bool InsertElement(xercesc::DOMElement& parent, xercesc::DOMElement* child,
                             xercesc::DOMElement* before);

/// Puts `newChild` in the place of `oldChild`, which stays with the document. False with all
/// unchanged as above, or if `oldChild` is null or no child of `parent`.
MC_EXPORT bool ReplaceElement(xercesc::DOMElement& parent, xercesc::DOMElement* newChild,
                              xercesc::DOMElement* oldChild);

}  // namespace MCComXPrsUtil
