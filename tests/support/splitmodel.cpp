// SPDX-License-Identifier: Apache-2.0
#include "support/splitmodel.h"

namespace mctest {

namespace {

// An element of that tag and attributes around the content.
std::string Element(const std::string& start, const std::string& content) {
  return "<" + start + ">" + content + "</" + start.substr(0, start.find(' ')) + ">";
}

}  // namespace

std::string SplitModel::Text() const {
  const std::string dictionary = Element("DataDictionary", fields);
  const std::string miningSchema = Element("MiningSchema", schema);
  return Element(root,
                 header + dictionary + transformations + Element(model, miningSchema + content));
}

std::string Nested(int levels, const std::string& text) {
  std::string nested;
  for (int i = 0; i < levels; ++i) nested += "<Extension>";
  nested += text;
  for (int i = 0; i < levels; ++i) nested += "</Extension>";
  return nested;
}

}  // namespace mctest
