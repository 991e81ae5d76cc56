// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcexport.h"

#include <memory>
#include <string>
#include <vector>

namespace MCComXPrsUtil {

/// Converts between UTF-16 and an encoding that Xerces knows. Xerces must be up while it lives.
class MC_EXPORT MCXTranscoder {
public:
  /// For `encoding`, such as "ISO-8859-1"; null means "UTF-8". Invalid if Xerces doesn't know it or
  /// isn't up.
  explicit MCXTranscoder(const char* encoding);
  ~MCXTranscoder();
  MCXTranscoder(const MCXTranscoder&) = delete;
  MCXTranscoder& operator=(const MCXTranscoder&) = delete;

  bool isValid() const { return fpTranscoder != nullptr; }

  /// `text`, UTF-16 units up to a 0, in the encoding. Empty if the transcoder is invalid, if the
  /// text isn't well-formed or has a character that the encoding lacks. A null `text` ends the
  /// process.
  std::string TranscodeTo(const unsigned short* text) const;
  std::string TranscodeTo(const XMLCh* text) const;

  /// `text`, up to a 0, as UTF-16 units, always ended by a 0. That 0 alone if the transcoder is
  /// invalid or the text isn't of the encoding. A null `text` ends the process.
  std::vector<unsigned short> TranscodeFrom(const char* text) const;

private:
  std::unique_ptr<xercesc::XMLTranscoder> fpTranscoder;
};

}  // namespace MCComXPrsUtil
