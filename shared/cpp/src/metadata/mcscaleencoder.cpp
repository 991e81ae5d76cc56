// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcscaleencoder.h"

namespace MCCommonMetadata {

bool MCScaleEncoder::AddDiscreteUserMissing(double value, const std::string& label) {
  fMissing.Add(value, label);
  return true;
}

bool MCScaleEncoder::SetMissingInterval(double low, double high) {
  return fMissing.SetInterval(low, high);
}

const std::vector<double>* MCScaleEncoder::GetDiscreteMissValues() const {
  return &fMissing.GetValues();
}

const std::vector<std::string>* MCScaleEncoder::GetMissValueLabels() const {
  return &fMissing.GetLabels();
}

bool MCScaleEncoder::GetMissingInterval(double& low, double& high) const {
  return fMissing.GetInterval(low, high);
}

}  // namespace MCCommonMetadata
