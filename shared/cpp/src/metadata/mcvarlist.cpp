// SPDX-License-Identifier: Apache-2.0
#include "metadata/mcvarlist.h"

#include "mcxml/detail/objectxml.h"
#include "regression/frame/detail/mcnumericcast.h"
#include "regression/frame/mccomponentdisplay.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace MCCommonMetadata {

namespace {

constexpr char kName[] = "MCVarList";

// A counter that was read from a file may be any int.
void CountDown(int& counter) {
  if (counter > std::numeric_limits<int>::min()) --counter;
}

std::unique_ptr<MCVariable> MakeVariable(MeasureLevel level) {
  switch (level) {
    case MC_LEVEL_CONTINUOUS:
      return std::make_unique<MCContVar>("", "", MC_ROLE_INPUT);
    case MC_LEVEL_CAT_NUM:
    case MC_LEVEL_CAT_STRING:
      return std::make_unique<MCCatVar>("", "", 0, level, MC_ROLE_INPUT, false);
    case MC_LEVEL_WEIGHT:
      return std::make_unique<MCWeightVar>("", "", MC_ROUND_AS_IS);
    default:
      MCCommonXML::detail::ObjectReader::Fail();
  }
}

}  // namespace

MCVarList::MCVarList(const MCVarList& other) {
  CopyFrom(other);
}

MCVarList& MCVarList::operator=(const MCVarList& other) {
  if (this != &other) CopyFrom(other);
  return *this;
}

MCVarList::~MCVarList() = default;

void MCVarList::CopyFrom(const MCVarList& other) {
  std::vector<std::unique_ptr<MCVariable>> copies;
  copies.reserve(other.fVars.size());
  for (const auto& variable : other.fVars) {
    copies.emplace_back(static_cast<MCVariable*>(variable->Clone()));
    copies.back()->CountNameChanges(fNameChanges);
  }
  fVars.swap(copies);
  ++fNameChanges;
  fNCont = other.fNCont;
  fNCat = other.fNCat;
  fTarget = other.fTarget;
  fTargetResponse = other.fTargetResponse;
  fWeight = other.fWeight;
  fbListwiseDeletion = other.fbListwiseDeletion;
}

void MCVarList::Clear() {
  fVars.clear();
  fNCont = 0;
  fNCat = 0;
  fTarget = -1;
  fTargetResponse = -1;
  fWeight = -1;
  ++fNameChanges;
}

const IMCVariable* MCVarList::GetVarAt(int i) const {
  return IsPlace(i) ? &At(i) : nullptr;
}

IMCVariable* MCVarList::GetVarAt(int i) {
  return IsPlace(i) ? &At(i) : nullptr;
}

const IMCEncoder* MCVarList::GetEncoderAt(int i) const {
  return IsPlace(i) ? std::as_const(At(i)).GetEncoder() : nullptr;
}

IMCEncoder* MCVarList::GetEncoderAt(int i) {
  return IsPlace(i) ? At(i).GetEncoder() : nullptr;
}

int MCVarList::CountRole(VariableRole role) const {
  return static_cast<int>(std::count_if(
      fVars.begin(), fVars.end(),
      [role](const std::unique_ptr<MCVariable>& v) { return v->GetVariableRole() == role; }));
}

int MCVarList::GetNumInputVars() const {
  return CountRole(MC_ROLE_INPUT);
}

int MCVarList::GetNumPossibleInputVars() const {
  return CountRole(MC_ROLE_POSSIBLE_INPUT);
}

VariableRole MCVarList::GetVariableRole(int i) const {
  return IsPlace(i) ? At(i).GetVariableRole() : MC_ROLE_UNDEFINED;
}

// Variables are appended one by one, so the index grows with the list; all else makes it anew.
void MCVarList::IndexNames() const {
  if (fIndexedChanges != fNameChanges) {
    fPlaces.clear();
    fNIndexed = 0;
  }
  for (; fNIndexed < fVars.size(); ++fNIndexed) {
    fPlaces.try_emplace(fVars[fNIndexed]->Name(), static_cast<int>(fNIndexed));
  }
  fIndexedChanges = fNameChanges;
}

int MCVarList::FindVariable(const std::string& name) const {
  IndexNames();
  const auto place = fPlaces.find(name);
  return place == fPlaces.end() ? -1 : place->second;
}

void MCVarList::GetVarNames(std::vector<std::string>& names, std::string& weightName) const {
  names.clear();
  for (int i = 0; i < Size(); ++i) {
    if (i == fWeight) {
      weightName = At(i).Name();
    } else {
      names.push_back(At(i).Name());
    }
  }
}

std::vector<int> MCVarList::GetNInputCats() const {
  std::vector<int> counts;
  for (const auto& variable : fVars) {
    if (variable->GetVariableRole() == MC_ROLE_INPUT) {
      counts.push_back(variable->GetNumberOfCategories());
    }
  }
  return counts;
}

bool MCVarList::IsFreeName(const std::string& name) const {
  return !name.empty() && FindVariable(name) < 0;
}

int MCVarList::Append(std::unique_ptr<MCVariable> variable) {
  variable->CountNameChanges(fNameChanges);
  fVars.push_back(std::move(variable));
  return Size() - 1;
}

int MCVarList::Add(std::unique_ptr<MCVariable> variable, int& counter) {
  const VariableRole role = variable->GetVariableRole();
  const int place = Append(std::move(variable));
  MCCommon::detail::CountUp(counter);
  if (role == MC_ROLE_TARGET) fTarget = place;
  if (role == MC_ROLE_TARGET_RESPONSE) fTargetResponse = place;
  return place;
}

template <class Value>
int MCVarList::AddCategories(const std::string& name, const std::string& label,
                             const std::vector<Value>& values,
                             const std::vector<std::string>* labels, MeasureLevel level,
                             VariableRole role) {
  if (!IsFreeName(name)) return -1;
  const int nCategories = static_cast<int>(values.size());
  auto variable = std::make_unique<MCCatVar>(name, label, nCategories, level, role, false);
  IMCEncoder& encoder = *variable->GetEncoder();
  for (const Value& value : values) encoder.Encode(value);
  if (labels != nullptr) encoder.SetValueLabels(*labels);
  return Add(std::move(variable), fNCat);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values, VariableRole role) {
  return AddCategories(name, label, values, nullptr, MC_LEVEL_CAT_STRING, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values,
                         const std::vector<std::string>& labels, VariableRole role) {
  return AddCategories(name, label, values, &labels, MC_LEVEL_CAT_STRING, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values, VariableRole role) {
  return AddCategories(name, label, values, nullptr, MC_LEVEL_CAT_NUM, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values, const std::vector<std::string>& labels,
                         VariableRole role) {
  return AddCategories(name, label, values, &labels, MC_LEVEL_CAT_NUM, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label, int nCategories,
                         MeasureLevel level, VariableRole role) {
  if (!IsFreeName(name)) return -1;
  return Add(std::make_unique<MCCatVar>(name, label, nCategories, level, role, false), fNCat);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label, VariableRole role) {
  if (!IsFreeName(name)) return -1;
  return Add(std::make_unique<MCContVar>(name, label, role), fNCont);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label, double min, double max,
                          VariableRole role, bool binned, int nBins) {
  if (!IsFreeName(name)) return -1;
  return Add(std::make_unique<MCContVar>(name, label, min, max, role, binned, nBins), fNCont);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label,
                          const std::vector<double>& cutpoints, bool binned, VariableRole role) {
  if (!IsFreeName(name)) return -1;
  return Add(std::make_unique<MCContVar>(name, label, cutpoints, binned, role), fNCont);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label, double min, double max,
                          const std::vector<double>& cutpoints, bool binned, VariableRole role) {
  if (!IsFreeName(name)) return -1;
  return Add(std::make_unique<MCContVar>(name, label, min, max, cutpoints, binned, role), fNCont);
}

int MCVarList::SetWeightVar(const std::string& name, const std::string& label,
                            WRoundingOption option) {
  auto weight = std::make_unique<MCWeightVar>(name, label, option);
  if (!IsPlace(fWeight)) {
    fWeight = Append(std::move(weight));
  } else {
    weight->CountNameChanges(fNameChanges);
    fVars[static_cast<std::size_t>(fWeight)] = std::move(weight);
    ++fNameChanges;
  }
  return fWeight;
}

bool MCVarList::SetVariableRole(int i, VariableRole role) {
  if (!IsPlace(i)) return false;
  MCVariable& variable = At(i);
  if (role == MC_ROLE_TARGET) {
    if (fTarget < 0) fTarget = i;
  } else if (role == MC_ROLE_TARGET_RESPONSE) {
    if (fTargetResponse < 0) fTargetResponse = i;
  } else {
    if (variable.GetVariableRole() == MC_ROLE_TARGET) fTarget = -1;
    if (variable.GetVariableRole() == MC_ROLE_TARGET_RESPONSE) fTargetResponse = -1;
  }
  variable.SetVariableRole(role);
  return true;
}

bool MCVarList::SetMissingValueReplacement(int i, const std::string& value) {
  if (!IsPlace(i)) return false;
  At(i).SetMissingValueReplacement(value);
  return true;
}

bool MCVarList::RemoveVar(int i) {
  if (!IsPlace(i)) return false;
  const MeasureLevel level = At(i).GetMeasureLevel();
  const bool isTarget = At(i).GetVariableRole() == MC_ROLE_TARGET;
  const bool isResponse = i == fTargetResponse;
  const bool isWeight = i == fWeight;
  fVars.erase(fVars.begin() + i);
  ++fNameChanges;
  if (level == MC_LEVEL_CONTINUOUS) {
    CountDown(fNCont);
  } else if (!isWeight && !isResponse && !isTarget) {
    CountDown(fNCat);
  }
  if (isTarget) fTarget = -1;
  if (isResponse) fTargetResponse = -1;
  if (isWeight) fWeight = -1;
  for (int* place : {&fTarget, &fTargetResponse, &fWeight}) {
    if (*place > i) --*place;
  }
  return true;
}

bool MCVarList::RemoveVar(const std::string& name) {
  return RemoveVar(FindVariable(name));
}

bool MCVarList::ChangeTargetEncoder(IMCEncoder* encoder) {
  auto* target = IsPlace(fTarget) ? dynamic_cast<MCCatVar*>(&At(fTarget)) : nullptr;
  if (target == nullptr) return false;
  const EncoderType type = encoder == nullptr ? MC_ENC_UNKNOWN : encoder->GetEncoderType();
  const int nCategories = target->ChangeEncoder(encoder);
  return (type == MC_ENC_CAT_NUM || type == MC_ENC_STRING) && nCategories > 0;
}

int MCVarList::UpdateNumbersOfCategories() {
  std::int64_t sum = 0;
  for (const auto& variable : fVars) sum += variable->UpdateNumberOfCategories();
  constexpr std::int64_t kLargest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(sum, -kLargest - 1, kLargest));
}

int MCVarList::WriteObjectXML(std::ostream& out, int nTabs) const {
  MCCommonXML::detail::ObjectWriter writer(out, kName, nTabs);
  writer.Write(Size());
  for (const auto& variable : fVars) {
    writer.Write(static_cast<int>(variable->GetMeasureLevel()));
    writer.WriteObject(*variable);
  }
  for (const int value : {fNCont, fNCat, fTarget, fTargetResponse}) writer.Write(value);
  return writer.Finish();
}

int MCVarList::ReadObjectXML(std::ifstream& in) {
  try {
    return MCCommonXML::detail::ReadObject(
        in, kName, [this](MCCommonXML::detail::ObjectReader& reader) {
          Clear();
          const int nVars = reader.ReadCount();
          for (int i = 0; i < nVars; ++i) {
            const auto level = reader.ReadEnumeration<MeasureLevel>();
            std::unique_ptr<MCVariable> variable = MakeVariable(level);
            reader.ReadObject(*variable);
            const int place = Append(std::move(variable));
            if (level == MC_LEVEL_WEIGHT) fWeight = place;
          }
          for (int* value : {&fNCont, &fNCat, &fTarget, &fTargetResponse})
            *value = reader.Read<int>();
        });
  } catch (...) {
    Clear();
    throw;
  }
}

void MCVarList::Display() const {
  using namespace MCComponentDisplay;
  DisplayText(1, "Begin display of MCVarList object.");
  DisplayI("Total variables", Size());
  DisplayI("Number of Continuous Variables", fNCont);
  DisplayI("Number of Categorical Variables", fNCat);
  for (int i = 0; i < Size(); ++i) {
    DisplayI("Variable", i);
    At(i).Display();
  }
  DisplayText(1, "End of display for MCVarList object.");
}

}  // namespace MCCommonMetadata
