// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/frame/mcexport.h"

#include <fstream>
#include <ostream>
#include <string>
#include <vector>

/// Variables by name, and what turns their values into codes.
namespace MCCommonMetadata {

/// Kinds of encoders, as save files number them. Holds any int: a file may say anything.
enum EncoderType : int {
  MC_ENC_UNKNOWN = 0,
  MC_ENC_BINNING = 1,  ///< scale values, MCContEncoder
  MC_ENC_CAT_NUM = 2,  ///< categories that are numbers, MCCatNumEncoder
  MC_ENC_STRING = 3,   ///< categories that are strings, MCStringEncoder
  MC_ENC_ROUND = 4     ///< frequency weights, MCRoundEncoder
};

/// Turns the raw values of a variable into what models work with: categories into codes from 0
/// up, scale values and weights into themselves; and codes back into values and labels. It knows
/// which values are missing. A string encoder knows strings and all others numbers; a value of the
/// other kind is missing to it.
///
/// Encode() may meet a new category and gives it the next code, as while a model is built;
/// EncodeConst() never does, as when it scores, and is safe on an encoder that several threads
/// share. The lists that are handed out belong to the encoder and are valid until it changes.
class MC_EXPORT IMCEncoder {
public:
  virtual ~IMCEncoder() = default;

  virtual EncoderType GetEncoderType() const = 0;

  /// Number of codes given or, for scale values, of bins; 0 for weights.
  virtual int GetNumberOfCategories() const = 0;

  /// The code of a category; -1.0 if the value is missing. The value of a scale variable or weight
  /// itself; the missing value if it is missing.
  virtual double Encode(double value) = 0;

  /// The same without a code for a new category, for which it answers -1.0.
  virtual double EncodeConst(double value) const = 0;

  virtual double Encode(const std::string& value) = 0;
  virtual double EncodeConst(const std::string& value) const = 0;

  /// Whether a value counts as missing: the missing value itself, and those declared by the user.
  virtual bool IsMissing(double value) const = 0;
  virtual bool IsMissing(const std::string& value) const = 0;

  /// The category of a code as text; "" if there is no such code.
  virtual std::string Decode(int code) const = 0;

  /// The category of a code as a number; the missing value if there is none.
  virtual double DecodeNum(int code) const = 0;

  /// A copy, which the caller owns.
  virtual IMCEncoder* Clone() const = 0;

  /// Set the labels of all codes, in their order, or of one; one without such a code is left out.
  /// Encoders without categories keep none.
  virtual void SetValueLabels(const std::vector<std::string>& labels) = 0;
  virtual void SetValueLabel(int code, const std::string& label) = 0;

  /// Declares one value as missing. False if the encoder doesn't know such values.
  virtual bool AddDiscreteUserMissing(const std::string& value, const std::string& label) = 0;
  virtual bool AddDiscreteUserMissing(double value, const std::string& label) = 0;

  /// Declares all values from `low` to `high` as missing. False, with nothing changed, unless
  /// high > low and there is no interval yet; an encoder of strings knows none.
  virtual bool SetMissingInterval(double low, double high) = 0;

  /// The lists; null where the encoder has no such list. Labels may be fewer than codes.
  virtual const std::vector<std::string>* GetValueLabels() const = 0;
  virtual const std::vector<double>* GetDiscreteMissValues() const = 0;
  virtual const std::vector<std::string>* GetDiscreteMissValuesStr() const = 0;
  virtual const std::vector<std::string>* GetMissValueLabels() const = 0;

  /// Whether there is an interval of missing values, and its ends; the missing value without one.
  virtual bool GetMissingInterval(double& low, double& high) const = 0;

  /// Writes the encoder in the save format (docs/formats.md), indented by `nTabs` tabs. Number of
  /// lines.
  virtual int WriteObjectXML(std::ostream& out, int nTabs) const = 0;

  /// Replaces the encoder by what WriteObjectXML() wrote. Number of lines. Throws IOException,
  /// after a message on standard error, if the file doesn't hold such an encoder; this one is
  /// valid then, with what was read so far.
  virtual int ReadObjectXML(std::ifstream& in) = 0;

  /// Writes the encoder to the display stream.
  virtual void Display() const = 0;
};

}  // namespace MCCommonMetadata
