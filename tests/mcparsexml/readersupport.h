// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/mccatvar.h"
#include "metadata/mccontencoder.h"
#include "metadata/mccontvar.h"
#include "metadata/mcvarlist.h"
#include "regression/frame/mcmv.h"

#include <gtest/gtest.h>

#include <istream>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

namespace mctest {

/// A number as the tests below spell it: "missing" for the missing value, "max" for the largest
/// double and "tiny" for the smallest positive normal one.
inline std::string NumberText(double value) {
  if (value == MCMV::gMissingValue) return "missing";
  if (value == std::numeric_limits<double>::max()) return "max";
  if (value == std::numeric_limits<double>::min()) return "tiny";
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(17);
  text << value;
  return text.str();
}

template <class Values, class Text>
std::string ListText(const Values& values, Text text) {
  std::string list;
  for (const auto& value : values) list += (list.empty() ? "" : " ") + text(value);
  return list;
}

inline std::string NumbersText(const std::vector<double>& values) {
  return ListText(values, NumberText);
}

inline std::string TextsText(const std::vector<std::string>& values) {
  return ListText(values, [](const std::string& value) { return value; });
}

/// Codes and missing values of an encoder: "{a=A b ''} missing {?} [low, high]".
inline std::string EncoderText(const MCCommonMetadata::IMCEncoder& encoder) {
  std::string text;
  const auto add = [&text](const std::string& value, const std::vector<std::string>* labels,
                           std::size_t i) {
    if (text.back() != '{') text += " ";
    text += value.empty() ? "''" : value;
    if (labels != nullptr && i < labels->size() && !(*labels)[i].empty()) {
      text += "=" + (*labels)[i];
    }
  };
  if (encoder.GetEncoderType() != MCCommonMetadata::MC_ENC_BINNING) {
    text += " {";
    for (int i = 0; i < encoder.GetNumberOfCategories(); ++i) {
      add(encoder.Decode(i), encoder.GetValueLabels(), static_cast<std::size_t>(i));
    }
    text += "}";
  }
  text += " missing {";
  const std::vector<std::string>* labels = encoder.GetMissValueLabels();
  if (const std::vector<std::string>* texts = encoder.GetDiscreteMissValuesStr()) {
    for (std::size_t i = 0; i < texts->size(); ++i) add((*texts)[i], labels, i);
  }
  if (const std::vector<double>* numbers = encoder.GetDiscreteMissValues()) {
    for (std::size_t i = 0; i < numbers->size(); ++i) add(NumberText((*numbers)[i]), labels, i);
  }
  text += "}";
  double low = 0.0;
  double high = 0.0;
  if (encoder.GetMissingInterval(low, high)) {
    text += " [" + NumberText(low) + ", " + NumberText(high) + "]";
  }
  const auto* continuous = dynamic_cast<const MCCommonMetadata::MCContEncoder*>(&encoder);
  if (continuous != nullptr && continuous->GetBinningEncoder() != nullptr) {
    text += " cuts " + NumbersText(continuous->GetBinningEncoder()->GetBinningCutpoints());
  }
  return text;
}

/// All that a reader can tell of a variable: "name|label level role storage range or categories".
inline std::string VariableText(const MCCommonMetadata::IMCVariable& variable) {
  using namespace MCCommonMetadata;
  std::string text = variable.GetVariableName() + "|" + variable.GetVariableLabel();
  const MeasureLevel level = variable.GetMeasureLevel();
  text += level == MC_LEVEL_CONTINUOUS ? " cont" : level == MC_LEVEL_CAT_NUM ? " num" : " string";
  if (variable.GetVariableRole() != MC_ROLE_INPUT) {
    text += " role " + std::to_string(variable.GetVariableRole());
  }
  if (variable.GetVariableStorage() != MC_STORAGE_UNDEFINED) {
    text += " storage " + std::to_string(variable.GetVariableStorage());
  }
  if (const auto* categorical = dynamic_cast<const MCCatVar*>(&variable)) {
    if (categorical->GetOrdinalFlag()) text += " ordinal";
  }
  if (const auto* continuous = dynamic_cast<const MCContVar*>(&variable)) {
    text += " (" + NumberText(continuous->GetMin()) + ", " + NumberText(continuous->GetMax()) + ")";
  }
  return text + EncoderText(*variable.GetEncoder());
}

/// A line for each variable.
inline std::string ListText(const MCCommonMetadata::MCVarList& list) {
  std::string text;
  for (int i = 0; i < list.Size(); ++i) {
    text += (i == 0 ? "" : "\n") + VariableText(*list.GetVarAt(i));
  }
  return text;
}

/// A document with what stands inside its root.
inline std::string PmmlText(const std::string& inside) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"3.2\">" + inside +
         "</PMML>\n";
}

inline std::string DictionaryText(const std::string& fields, const std::string& behind = "") {
  return PmmlText("<DataDictionary>" + fields + "</DataDictionary>" + behind);
}

/// The code that a parser answers for a document.
template <class Parser>
long ParseText(Parser& parser, const std::string& document) {
  std::istringstream stream(document);
  return parser.ParseToDOM(stream).GetErrorCode();
}

/// `document` without one attribute, which must stand in it once.
inline std::string Without(std::string document, const std::string& attribute) {
  const std::size_t place = document.find(" " + attribute + "=\"");
  const std::size_t value = document.find('"', place) + 1;
  EXPECT_NE(place, std::string::npos) << attribute;
  if (place != std::string::npos) document.erase(place, document.find('"', value) + 1 - place);
  return document;
}

/// `text` with `from`, which must stand in it, replaced by `to` where it stands first.
inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  if (place != std::string::npos) text.replace(place, from.size(), to);
  return text;
}

}  // namespace mctest
