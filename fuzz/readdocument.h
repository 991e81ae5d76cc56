// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mcvarlist.h"
#include "regression/frame/mcstatus.h"
#include "require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

/// The first byte says whether the rest, a document, is read strictly. One with a document type
/// always is: by default it might fetch files, or expand entities for hours.
template <class Parser>
void ReadDocument(Parser& parser, const std::uint8_t* bytes, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(bytes), size);
  const bool isStrict = input.substr(0, 1) == "1";
  std::string ascii = input;  // where it is in UTF-16, too
  ascii.erase(std::remove(ascii.begin(), ascii.end(), '\0'), ascii.end());
  parser.SetStrict(isStrict || ascii.find("<!DOCTYPE") != std::string::npos);
  std::istringstream stream(input.empty() ? input : input.substr(1));
  const MCCommon::MCStatus status = parser.ParseToDOM(stream);
  Require(status == parser.GetStatus());
  Require(!status.IsOK() || parser.GetRootElement() != nullptr);
}

/// A list that was filled can be used and copied.
inline void UseList(MCCommonMetadata::MCVarList& list, const MCCommon::MCStatus& status) {
  Require(status.IsOK() == (status.GetErrorCode() == 0));
  list.UpdateNumbersOfCategories();
  const MCCommonMetadata::MCVarList copy(list);
  Require(copy.Size() == list.Size());
  for (int i = 0; i < list.Size(); ++i) {
    Require(list.GetEncoderAt(i) != nullptr);
    Require(list.GetVariableRole(i) == MCCommonMetadata::MC_ROLE_INPUT);
    Require(list.FindVariable(list.GetVarAt(i)->GetVariableName()) == i);
    list.GetEncoderAt(i)->EncodeConst(list.GetEncoderAt(i)->Decode(0));
    list.GetEncoderAt(i)->EncodeConst(0.5);
  }
}
