// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"
#include "regression/frame/mcexport.h"

#include <iosfwd>
#include <xercesc/sax/InputSource.hpp>

namespace MCComXPrsUtil {

/// Lets a parser of Xerces read from a stream, which must outlive the parse. Its system identifier
/// is "istream".
class MC_EXPORT MCXInputSource : public xercesc::InputSource {
public:
  explicit MCXInputSource(std::istream& stream);
  ~MCXInputSource() override;

  /// A new reader of the stream from where it stands; the parser that asks for it owns it.
  xercesc::BinInputStream* makeStream() const override;

private:
  std::istream& fStream;
};

}  // namespace MCComXPrsUtil
