// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// Settings documents for `mcfit build`, piece by piece.

inline std::string Field(const std::string& name, const std::string& opType,
                         const std::string& dataType, const std::string& content = "") {
  return "<DataField name=\"" + name + "\" optype=\"" + opType + "\" dataType=\"" + dataType +
         "\">" + content + "</DataField>";
}

inline std::string Continuous(const std::string& name, const std::string& content = "") {
  return Field(name, "continuous", "double", content);
}

inline std::string Categories(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += "<Value value=\"" + value + "\"/>";
  return text;
}

inline std::string Categorical(const std::string& name, const std::vector<std::string>& values) {
  return Field(name, "categorical", "string", Categories(values));
}

inline std::string Missing(const std::string& value) {
  return "<Value value=\"" + value + "\" property=\"missing\"/>";
}

inline std::string Parameter(const std::string& name, const std::string& value) {
  return "<Parameter name=\"" + name + "\" value=\"" + value + "\"/>";
}

inline std::string ListParameter(const std::string& name, const std::vector<std::string>& values) {
  return "<Parameter name=\"" + name + "\" isList=\"true\"><ListValue>" + Categories(values) +
         "</ListValue></Parameter>";
}

/// The document, `dictionary` being the content of the data dictionary and `transformations` all of
/// the transformation dictionary.
inline std::string Settings(const std::string& dictionary, const std::string& parameters,
                            const std::string& transformations = "") {
  return "<PMML><DataDictionary>" + dictionary + "</DataDictionary>" + transformations +
         "<MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask></PMML>";
}

/// Bins of a field that end at these edges, each named by its number from 0.
inline std::string BinsOf(const std::string& field, const std::vector<std::string>& edges) {
  std::string bins;
  for (std::size_t i = 0; i <= edges.size(); ++i) {
    bins +=
        "<DiscretizeBin binValue=\"" + std::to_string(i) + "\"><Interval closure=\"openClosed\"";
    if (i > 0) bins += " leftMargin=\"" + edges[i - 1] + "\"";
    if (i < edges.size()) bins += " rightMargin=\"" + edges[i] + "\"";
    bins += "/></DiscretizeBin>";
  }
  return "<TransformationDictionary><DerivedField name=\"" + field +
         " in bins\" optype=\"categorical\" dataType=\"string\"><Discretize field=\"" + field +
         "\">" + bins + "</Discretize></DerivedField></TransformationDictionary>";
}

/// ASCII text as UTF-16 in this byte order, with a byte order mark.
inline std::string InUtf16(const std::string& text, bool isBigEndian) {
  std::string wide = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) {
    wide += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  }
  return wide;
}
