// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/mcxtranscoder.h"

#include "mcparsexml/detail/guarded.h"
#include "regression/frame/detail/mcassert.h"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>

namespace MCComXPrsUtil {

namespace {

constexpr char kSource[] = "mcparsexml/mcxtranscoder";
constexpr XMLSize_t kBlockSize = 4000;
constexpr std::size_t kBufferSize = 1000;

xercesc::XMLTranscoder* MakeTranscoder(const char* encoding) {
  xercesc::XMLTransService* service = xercesc::XMLPlatformUtils::fgTransService;
  if (service == nullptr) return nullptr;
  auto result = xercesc::XMLTransService::InternalFailure;
  xercesc::XMLTranscoder* transcoder = nullptr;
  detail::IsDone([&] {
    transcoder =
        service->makeNewTranscoderFor(encoding != nullptr ? encoding : "UTF-8", result, kBlockSize);
  });
  return result == xercesc::XMLTransService::Ok ? transcoder : nullptr;
}

/// Takes what a step consumed off the text. False if it consumed nothing, as at half a character.
template <class View>
bool Consume(View& text, XMLSize_t count) {
  text.remove_prefix(count);
  return count > 0;
}

std::string Encode(xercesc::XMLTranscoder* transcoder, std::u16string_view text) {
  std::string out;
  bool isWhole = transcoder != nullptr;
  const auto encode = [&] {
    XMLByte buffer[kBufferSize];
    while (isWhole && !text.empty()) {
      XMLSize_t consumed = 0;
      const XMLSize_t written =
          transcoder->transcodeTo(text.data(), text.size(), buffer, sizeof buffer, consumed,
                                  xercesc::XMLTranscoder::UnRep_Throw);
      out.append(buffer, buffer + written);
      isWhole = Consume(text, consumed);
    }
  };
  if (!detail::IsDone(encode) || !isWhole) out.clear();
  return out;
}

}  // namespace

MCXTranscoder::MCXTranscoder(const char* encoding) : fpTranscoder(MakeTranscoder(encoding)) {}

MCXTranscoder::~MCXTranscoder() = default;

std::string MCXTranscoder::TranscodeTo(const unsigned short* text) const {
  MCCommon::detail::Assert(text != nullptr, "sourceStr", kSource);
  const unsigned short* end = text;
  while (*end != 0) ++end;
  return TranscodeTo(std::u16string(text, end).c_str());
}

std::string MCXTranscoder::TranscodeTo(const XMLCh* text) const {
  MCCommon::detail::Assert(text != nullptr, "sourceStr", kSource);
  // Xerces makes something of half a pair, too.
  if (!detail::IsUTF16(text)) return {};
  return Encode(fpTranscoder.get(), text);
}

std::vector<unsigned short> MCXTranscoder::TranscodeFrom(const char* text) const {
  MCCommon::detail::Assert(text != nullptr, "sourceStr", kSource);
  std::vector<unsigned short> out;
  std::basic_string<XMLByte> bytes(text, text + std::strlen(text));
  std::basic_string_view<XMLByte> left = bytes;
  bool isWhole = fpTranscoder != nullptr;
  const auto decode = [&] {
    XMLCh buffer[kBufferSize];
    unsigned char sizes[kBufferSize];
    while (isWhole && !left.empty()) {
      XMLSize_t consumed = 0;
      const XMLSize_t written = fpTranscoder->transcodeFrom(left.data(), left.size(), buffer,
                                                            kBufferSize, consumed, sizes);
      out.insert(out.end(), buffer, buffer + written);
      isWhole = Consume(left, consumed);
    }
  };
  if (!detail::IsDone(decode) || !isWhole) out.clear();
  out.push_back(0);
  return out;
}

}  // namespace MCComXPrsUtil
