// SPDX-License-Identifier: Apache-2.0
//
// Describes variables by name, codes a value of each, saves the list and reads it back, and writes
// a PMML document of it.
#include "mcxml/mcxml.h"
#include "metadata/metadata.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace MCCommonMetadata;
using MCCommonXML::XMLElement;

MCVarList MakeList() {
  MCVarList list;
  const std::vector<std::string> regions = {"north", "south"};
  const int region = list.AddCatVar("region", "Where it grew", regions, MC_ROLE_INPUT);
  list.GetEncoderAt(region)->AddDiscreteUserMissing(std::string("?"), "not noted");
  list.AddContVar("yield", "t/ha", MC_ROLE_TARGET);
  list.SetWeightVar("plots", "", MC_ROUND_NEAREST);
  return list;
}

// A list is saved inside a root, with a line end behind its last line.
void Save(const MCVarList& list, const std::string& name) {
  std::ofstream out(name);
  out << "<?xml version=\"1.0\"?>\n<!DOCTYPE MCXMLRoot SYSTEM \"savexml.dtd\">\n";
  MCCommonXML::StartRoot(out, "");
  list.WriteObjectXML(out, 0);
  MCCommonXML::EndRoot(out);
  out << "\n";
}

// Throws IOException, after a message, if the file holds no list.
MCVarList Load(const std::string& name) {
  std::ifstream in(name);
  MCVarList list;
  if (MCCommonXML::ParseStartXML(in)) list.ReadObjectXML(in);
  return list;
}

int WritePMML(const MCVarList& list) {
  MCPMMLExporter exporter(nullptr);
  const std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
  XMLElement* header = nullptr;
  XMLElement* dictionary = nullptr;
  if (exporter.ExportHeader(nullptr, "", false, header).IsError()) return 1;
  root->AddElement(header);
  if (exporter.ExportDataDictionary(list, {}, dictionary).IsError()) return 1;
  root->AddElement(dictionary);
  // The model goes here: a host composes it of elements, too.
  MCCommonXML::WriteTree(std::cout, nullptr, root.get(), true);
  std::cout << "\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;  // the file to save to
  Save(MakeList(), argv[1]);
  MCVarList list = Load(argv[1]);
  // Encode() gives a new category the next code; EncodeConst(), as for scoring, does not.
  std::printf("south %g, east %g, missing %g\n", list.GetEncoderAt(0)->EncodeConst("south"),
              list.GetEncoderAt(0)->EncodeConst("east"), list.GetEncoderAt(0)->Encode("?"));
  std::printf("2.6 plots count as %g\n", list.GetEncoderAt(2)->Encode(2.6));
  std::fflush(stdout);
  return WritePMML(list);
}
