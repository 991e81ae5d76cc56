// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxmlreadwrite.h"

#include "mcparsexml/detail/documentdepth.h"
#include "mcparsexml/detail/documentparser.h"
#include "mcparsexml/detail/guarded.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/util/PlatformUtils.hpp>
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

/// False if the serialiser gave up; throws what Xerces throws.
bool Serialize(const xercesc::DOMDocument& document, const char* fileName) {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const ReleasedPtr<xercesc::DOMLSSerializer> serializer(implementation->createLSSerializer());
  xercesc::DOMConfiguration* configuration = serializer->getDomConfig();
  const XMLCh* prettyPrint = xercesc::XMLUni::fgDOMWRTFormatPrettyPrint;
  if (configuration->canSetParameter(prettyPrint, false)) {
    configuration->setParameter(prettyPrint, false);
  }
  xercesc::LocalFileFormatTarget target(fileName);
  const ReleasedPtr<xercesc::DOMLSOutput> output(implementation->createLSOutput());
  output->setByteStream(&target);
  return serializer->write(&document, output.get());
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
  bool isWritten = false;
  if (detail::IsDeeperThan(*document, detail::kMaxDepth)) {
    fXercesMessage = "elements stand more than " + std::to_string(detail::kMaxDepth) + " deep";
  } else {
    detail::IsDone([&] { isWritten = Serialize(*document, fileName.c_str()); }, &fXercesMessage);
  }
  if (!isWritten) return {MCCommon::MCS_XML_WRITE, false};
  return {};
}

}  // namespace MCComXPrsUtil
