// SPDX-License-Identifier: Apache-2.0
// A save file of any bytes, read as a list of variables; then the list is used.
#include "mcxml/ioexception.h"
#include "memoryfile.h"
#include "metadata/mcvarlist.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using MCCommonMetadata::IMCEncoder;
using MCCommonMetadata::MCVarList;

// The library says on the standard streams that it fails, which is every other run.
void Mute() {
  std::cerr.setstate(std::ios::failbit);
  std::cout.setstate(std::ios::failbit);
}

bool Read(MCVarList& list, const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  try {
    list.ReadObjectXML(file);
  } catch (const MCCommonMetadata::IOException&) {
    return false;
  }
  return true;
}

std::string Saved(const MCVarList& list) {
  std::ostringstream out;
  list.WriteObjectXML(out, 0);
  return out.str();
}

void UseEncoder(IMCEncoder& encoder) {
  const int nCategories = encoder.GetNumberOfCategories();
  for (const int code : {-1, 0, nCategories - 1, nCategories}) {
    const std::string category = encoder.Decode(code);
    encoder.EncodeConst(category);
    encoder.EncodeConst(encoder.DecodeNum(code));
  }
  encoder.SetValueLabel(nCategories - 1, "label");
  encoder.Encode(0.5);
  encoder.Encode(std::string("new"));
}

void Use(MCVarList& list) {
  list.UpdateNumbersOfCategories();
  for (int i = 0; i < list.Size(); ++i) {
    if (IMCEncoder* encoder = list.GetEncoderAt(i)) UseEncoder(*encoder);
    list.GetVarAt(i)->GetVarStatus();
    Require(list.FindVariable(list.GetVarAt(i)->GetVariableName()) <= i);
  }
  list.ChangeTargetEncoder(nullptr);
  list.SetWeightVar("weight", "", MCCommonMetadata::MC_ROUND_AS_IS);
  list.SetVariableRole(0, MCCommonMetadata::MC_ROLE_TARGET);
  while (list.Size() > 0) Require(list.RemoveVar(list.Size() / 2));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static MemoryFile file;
  Mute();
  MCVarList list;
  if (Read(list, file.Fill({reinterpret_cast<const char*>(bytes), size}))) {
    const MCVarList copy(list);
    Require(Saved(copy) == Saved(list));
  } else {
    Require(list.Size() == 0);
  }
  Use(list);
  return 0;
}
