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
    std::streamoff position = -1;
    IgnoringFailures([&] { position = fpStream->tellg(); });
    return static_cast<XMLFilePos>(position);
  }

  XMLSize_t readBytes(XMLByte* buffer, XMLSize_t count) override {
    char* bytes = reinterpret_cast<char*>(buffer);
    IgnoringFailures([&] { fpStream->read(bytes, static_cast<std::streamsize>(count)); });
    return static_cast<XMLSize_t>(fpStream->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

private:
  /// A stream that throws where it ends ends there like any other.
  template <class Step>
  static void IgnoringFailures(const Step& step) {
    try {
      step();
    } catch (const std::ios_base::failure&) {
    }
  }

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
