// SPDX-License-Identifier: Apache-2.0
// A row file of any bytes, read in two passes through the validator into factor tables.
#include "regression/design/mcfactortables.h"
#include "regression/design/mcregrecordvalidator.h"
#include "regression/frame/binaryrecorditerator.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Dependent, weights, factors and covariate; rows shorter than this are refused.
const std::vector<MCConst::MCVariableType> kRoles = {
    MCConst::MC_VAR_DEPENDENT, MCConst::MC_VAR_FREQ_WEIGHT, MCConst::MC_VAR_REGR_WEIGHT,
    MCConst::MC_VAR_FACTOR,    MCConst::MC_VAR_FACTOR,      MCConst::MC_VAR_COVARIATE};
const std::vector<int> kFactors = {3, 4};
const std::vector<int> kSizes = {3, 250};

void Tabulate(MCCommon::BinaryRecordIterator& source, const MCRegRecordValidator& validator,
              MCFactorTables& tables) {
  MCCommon::MCStatus status;
  while (source.HasMore() && !status.IsError()) {
    const MCCommon::Record* record = source.Next();
    if (record == nullptr) std::abort();
    if (validator.IsValidRecord(*record, status)) tables.UpdateAll(*record);
  }
}

void Score(MCCommon::BinaryRecordIterator& source, const MCRegRecordValidator& validator,
           const MCFactorTables& tables) {
  while (source.HasMore()) {
    const MCCommon::Record* record = source.Next();
    MCCommon::MCStatus status;
    if (!validator.IsValid4Scoring(*record, status)) continue;
    // The validator promises only the positions that it looks at: factors and covariates.
    bool allFound = false;
    tables.GetRowLocalParamIndices(record->GetAll(), allFound);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 2) return 0;
  // 0 values a row never end, by contract; the host must not ask for it.
  const int nValues = bytes[0] % 9 == 0 ? -1 : bytes[0] % 9;
  std::vector<std::uint8_t> content(bytes + 1, bytes + size);
  const File file(fmemopen(content.data(), content.size(), "rb"), &std::fclose);
  MCCommon::BinaryRecordIterator source(file.get(), nValues);
  const MCRegRecordValidator validator(kRoles, kFactors, kSizes, 0);
  MCFactorTables tables(kFactors, kSizes, 1, -1, 0, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
  tables.SetRegrWeightVar(2);
  tables.SetModelEffectFactors({{}, {3}, {4, 3}}, kFactors);
  tables.SetCovariates({5, 0});
  Tabulate(source, validator, tables);
  tables.CreateParameterIndices();
  source.NewPass();
  Score(source, validator, tables);
  return 0;
}
