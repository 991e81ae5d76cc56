// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxinputsource.h"

#include <istream>
#include <xercesc/util/BinInputStream.hpp>

namespace MCComXPrsUtil {

namespace {

/// A stream as Xerces reads it.
class MCXBinInputStream : public xercesc::BinInputStream {
public:
  explicit MCXBinInputStream(std::istream* stream) : fpStream(stream) {}

  XMLFilePos curPos() const override {
    return static_cast<XMLFilePos>(static_cast<std::streamoff>(fpStream->tellg()));
  }

  XMLSize_t readBytes(XMLByte* buffer, XMLSize_t count) override {
    // Bytes are bytes. NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    fpStream->read(reinterpret_cast<char*>(buffer), static_cast<std::streamsize>(count));
    return static_cast<XMLSize_t>(fpStream->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

private:
  std::istream* fpStream;
};

constexpr XMLCh kIdentifier[] = u"istream";

}  // namespace

MCXInputSource::MCXInputSource(std::istream& stream)
    : xercesc::InputSource(kIdentifier), fStream(stream) {}

MCXInputSource::~MCXInputSource() = default;

xercesc::BinInputStream* MCXInputSource::makeStream() const {
  return new MCXBinInputStream(&fStream);
}

}  // namespace MCComXPrsUtil
