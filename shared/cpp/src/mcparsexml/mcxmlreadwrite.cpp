// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxmlreadwrite.h"

#include "mcparsexml/detail/documentdepth.h"
#include "mcparsexml/detail/documentparser.h"
#include "mcparsexml/detail/guarded.h"

#include <utility>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/IOException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace MCComXPrsUtil {

namespace {

struct Releases {
  template <class Released>
  void operator()(Released* released) const {
    released->release();
  }
};

template <class Released>
using ReleasedPtr = std::unique_ptr<Released, Releases>;

/// A file through Xerces's own functions and with its texts. Its class for this says nothing of
/// what only fails when the file is closed, as on a disk that is full.
class FileTarget : public xercesc::XMLFormatTarget {
public:
  explicit FileTarget(const char* name) : fFile(Platform::openFileToWrite(name)) {
    if (fFile == nullptr) {
      ThrowXML1(xercesc::IOException, xercesc::XMLExcepts::File_CouldNotOpenFile, name);
    }
  }
  FileTarget(const FileTarget&) = delete;
  FileTarget& operator=(const FileTarget&) = delete;
  ~FileTarget() override {
    if (fFile != nullptr) detail::IsDone([this] { Close(); });
  }

  void Close() { Platform::closeFile(std::exchange(fFile, nullptr)); }

  void writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter*) override {
    if (count > 0) Platform::writeBufferToFile(fFile, count, bytes);
  }

private:
  using Platform = xercesc::XMLPlatformUtils;

  xercesc::FileHandle fFile;
};

/// False if the serialiser gave up; throws what Xerces throws.
bool Serialize(const xercesc::DOMDocument& document, const char* fileName) {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const ReleasedPtr<xercesc::DOMLSSerializer> serializer(implementation->createLSSerializer());
  xercesc::DOMConfiguration* configuration = serializer->getDomConfig();
  const XMLCh* prettyPrint = xercesc::XMLUni::fgDOMWRTFormatPrettyPrint;
  if (configuration->canSetParameter(prettyPrint, false)) {
    configuration->setParameter(prettyPrint, false);
  }
  FileTarget target(fileName);
  const ReleasedPtr<xercesc::DOMLSOutput> output(implementation->createLSOutput());
  output->setByteStream(&target);
  const bool isWritten = serializer->write(&document, output.get());
  target.Close();
  return isWritten;
}

/// False, perhaps with a message, if the document can't be written. Throws nothing: a host that is
/// short of memory may still have to hear that its file isn't whole.
bool TryToWrite(const xercesc::DOMDocument& document, const char* fileName, std::string& message) {
  bool isWritten = false;
  try {
    if (detail::IsDeeperThan(document, detail::kMaxDepth)) {
      message = "elements stand more than " + std::to_string(detail::kMaxDepth) + " deep";
    } else {
      detail::IsDone([&] { isWritten = Serialize(document, fileName); }, &message);
    }
  } catch (...) {
    isWritten = false;
  }
  return isWritten;
}

}  // namespace

MCXMLReadWrite::MCXMLReadWrite() : fInitStatus(detail::StartXerces()) {}

MCXMLReadWrite::~MCXMLReadWrite() {
  fpParser.reset();
  if (fInitStatus.IsOK()) xercesc::XMLPlatformUtils::Terminate();
}

xercesc::DOMDocument* MCXMLReadWrite::GetDocument() {
  return fpDocument;
}

const xercesc::DOMDocument* MCXMLReadWrite::GetDocument() const {
  return fpDocument;
}

MCCommon::MCStatus MCXMLReadWrite::ParseToDOM(const std::string& fileName) {
  return ParseToDOM(fileName.c_str(), nullptr);
}

MCCommon::MCStatus MCXMLReadWrite::ParseToDOM(std::istream& stream) {
  return ParseToDOM(nullptr, &stream);
}

MCCommon::MCStatus MCXMLReadWrite::ParseToDOM(const char* fileName, std::istream* stream) {
  MCCommon::MCStatus status = fInitStatus;
  if (!status.IsOK()) return status;
  fXercesMessage.clear();
  fpDocument = nullptr;
  status = detail::DocumentParser::Create(fpParser);
  if (status.IsOK()) status = fpParser->Parse(fileName, stream, fbStrict, fXercesMessage);
  if (status.IsOK()) {
    fpDocument = fpParser->GetDocument();
  } else {
    fpParser.reset();
  }
  return status;
}

MCCommon::MCStatus MCXMLReadWrite::WriteFromDOM(const std::string& fileName,
                                                const xercesc::DOMDocument* document) const {
  if (document == nullptr) document = fpDocument;
  if (!fInitStatus.IsOK() || document == nullptr) return fInitStatus;
  fXercesMessage.clear();
  if (TryToWrite(*document, fileName.c_str(), fXercesMessage)) return {};
  return {MCCommon::MCS_XML_WRITE, false};
}

}  // namespace MCComXPrsUtil
