// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

namespace MCCommonXML {

/// The state of layout while a tree is printed, passed from node to node by reference: whether the
/// next element begins a line, whether it is indented, and how deep. Made fresh for each print.
class MC_EXPORT ExportFormat {
public:
  /// Whether elements and attributes are indented: only while formatting is on at all.
  bool HasIndentation() const { return fbFormat && fbIndentation; }

  /// Whether the next element or attribute begins a line: only while formatting is on at all.
  bool IsNewParagraph() const { return fbFormat && fbNewParagraph; }

  /// Switches formatting on or off, over both flags below. On at the start, as are those.
  void SetFormat(bool on) { fbFormat = on; }
  void SetIndentation(bool on) { fbIndentation = on; }
  void SetIsNewParagraph(bool on) { fbNewParagraph = on; }

  /// Levels of indentation, 0 for the root.
  int GetDepth() const { return fDepth; }

  /// Moves one level in or out.
  void Enter() { ++fDepth; }
  void Leave() { --fDepth; }

private:
  bool fbNewParagraph = true;
  bool fbIndentation = true;
  bool fbFormat = true;
  int fDepth = 0;
};

}  // namespace MCCommonXML
