// SPDX-License-Identifier: Apache-2.0
#include "regressioninput.h"

#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcmv.h"
#include "require.h"
#include "support/makerecord.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <streambuf>

using mctest::Rows;

namespace {

constexpr int kLastPosition = 7;  // of the values that a row usually has
constexpr std::size_t kMaxRows = 40;

// Mostly a code or a measure as people have them.
double TakeValue(FuzzedDataProvider& data) {
  const double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity(),
                        std::numeric_limits<double>::max(),
                        std::numeric_limits<double>::denorm_min(),
                        MCMV::gMissingValue,
                        -0.0,
                        2147483647.0,
                        2147483647.5,
                        -2147483648.0,
                        1e300};
  const int kind = data.ConsumeIntegralInRange(0, 63);
  if (kind == 0) return data.PickValueInArray(odd);
  if (kind == 1) return TakeAnyDouble(data);
  if (kind < 8) return 0.25 * data.ConsumeIntegral<std::int8_t>();
  return data.ConsumeIntegralInRange(0, 5);
}

MCModelEffect TakeEffect(FuzzedDataProvider& data, const MCRegSettings& settings,
                         const std::vector<int>& variables) {
  auto nFactors = static_cast<int>(settings.GetFactors().size());
  auto nCovariates = static_cast<int>(settings.GetCovariates().size());
  const bool usual = data.ConsumeIntegralInRange(0, 15) != 0;
  if (!usual) {
    nFactors = data.ConsumeIntegralInRange(-1, 9);
    nCovariates = data.ConsumeIntegralInRange(-1, 9);
  }
  MCModelEffect effect(nFactors, nCovariates, usual || data.ConsumeBool() ? &variables : nullptr);
  for (int n = data.ConsumeIntegralInRange(0, 4); n > 0; --n) {
    const int position = TakePosition(data);
    const bool nest = data.ConsumeBool();
    if (!effect.AddNewFactor(position, nest)) effect.AddCovariate(position);
  }
  return effect;
}

// Swallows what was formatted; a stream without a buffer would format nothing.
class NullBuffer : public std::streambuf {
protected:
  int_type overflow(int_type c) override { return traits_type::not_eof(c); }
  std::streamsize xsputn(const char_type* /*text*/, std::streamsize n) override { return n; }
};

}  // namespace

int TakePosition(FuzzedDataProvider& data) {
  return data.ConsumeIntegralInRange(-1, kLastPosition + 1);
}

double TakeAnyDouble(FuzzedDataProvider& data) {
  const auto bits = data.ConsumeIntegral<std::uint64_t>();
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

Rows TakeRows(FuzzedDataProvider& data) {
  Rows rows;
  while (data.remaining_bytes() > 0 && rows.size() < kMaxRows) {
    const bool usual = data.ConsumeIntegralInRange(0, 31) != 0;
    rows.emplace_back(usual ? kLastPosition + 1U : data.ConsumeIntegralInRange(0U, 12U));
    for (double& value : rows.back()) value = TakeValue(data);
  }
  return rows;
}

void FillSettings(FuzzedDataProvider& data, MCRegSettings& settings, std::vector<int>& variables) {
  if (data.ConsumeBool()) settings.SetFrequencyWeightVar(TakePosition(data));
  if (data.ConsumeBool()) settings.SetRegrWeightVar(TakePosition(data));
  settings.SetDependent(TakePosition(data));
  for (int n = data.ConsumeIntegralInRange(0, 4); n > 0; --n) {
    const int position = TakePosition(data);
    const int nCategories = data.ConsumeIntegralInRange(-1, 7);
    settings.AddFactor(position, nCategories == 7 ? 20000 : nCategories);
  }
  for (int n = data.ConsumeIntegralInRange(0, 4); n > 0; --n) {
    settings.AddCovariate(TakePosition(data));
  }
  settings.SetInterceptUse(data.ConsumeBool());
  if (data.ConsumeIntegralInRange(0, 7) == 0) settings.SetTolerance(TakeAnyDouble(data));
  variables = settings.GetFactors();
  variables.insert(variables.end(), settings.GetCovariates().begin(),
                   settings.GetCovariates().end());
  if (data.ConsumeIntegralInRange(0, 15) == 0) variables.push_back(TakePosition(data));
  for (int n = data.ConsumeIntegralInRange(0, 5); n > 0; --n) {
    settings.AddModelEffect(TakeEffect(data, settings, variables));
  }
}

mctest::ScriptedCancel TakeCancel(FuzzedDataProvider& data) {
  const int poll = data.ConsumeBool() ? data.ConsumeIntegralInRange(1, 150) : 0;
  return mctest::ScriptedCancel(
      poll, data.ConsumeBool() ? mctest::ScriptedCancel::kOnce : mctest::ScriptedCancel::kForGood);
}

Failure::Failure(FuzzedDataProvider& data, int lastPass)
    : fKind(data.ConsumeIntegralInRange(0, 15)),
      fPass(data.ConsumeIntegralInRange(1, lastPass)),
      fRow(data.ConsumeIntegralInRange(0, 20)),
      fbForGood(data.ConsumeBool()) {}

void Failure::Apply(mctest::RowSource& source) const {
  if (fKind == 1) source.FailNewPass(fPass);
  if (fKind == 2) source.NullAt(fPass, fRow, fbForGood);
  if (fKind == 3) source.EndAt(fPass, fRow);
}

void DisplayNowhere() {
  static NullBuffer buffer;
  static std::ostream nowhere(&buffer);
  MCComponentDisplay::SetOutStream(nowhere);
}

void UseResults(const IMCRegOutputStats& results, const Rows& rows) {
  const std::size_t nParameters = results.GetParameters()->size();
  const std::vector<double>& estimates = *results.GetParamEstimates();
  Require(estimates.size() == nParameters);
  Require(results.GetParamStats().size() == nParameters);
  const MCCommonMath::MCBitSet& kept = results.GetRedundancyIndicators();
  for (std::size_t i = 0; i < nParameters; ++i) {
    Require(kept.IsIn(static_cast<int>(i)) || estimates[i] == 0.0);
  }
  for (int stat = 0; stat <= MCConst::MC_FIT_MCFADDEN; ++stat) {
    results.GetModelFitStat(static_cast<MCConst::MCModelFitStat>(stat));
  }
  std::vector<double> expanded;
  for (const auto& row : rows) {
    if (results.ExpandRow(mctest::MakeRecord(row), expanded)) {
      Require(expanded.size() == nParameters);
    }
  }
  results.Display();
}
