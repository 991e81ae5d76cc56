// SPDX-License-Identifier: Apache-2.0
//
// The library's own model and accumulator take the rows of a pattern together. A derived class of
// either gets them one by one, by the definition: both must come to the same bits, with the same
// polls and answers.
#include "regression/logistic/mcaccumstatslogistic.h"
#include "regression/logistic/mclogmodel.h"
#include "regression/logistic/mcpatterntabulator.h"
#include "regression/logistic/mcrecorditerhandler.h"
#include "support/rowsource.h"
#include "support/samebits.h"
#include "support/scriptedcancel.h"
#include "support/splitmix64.h"
#include "support/tabulation.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

using mctest::Rows;
using mctest::RowSource;
using mctest::SameBits;
using mctest::ScriptedCancel;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

class DerivedAccumulator : public MCAccumStatsLogistic {
public:
  using MCAccumStatsLogistic::MCAccumStatsLogistic;
};

class DerivedModel : public MCLogModel {
public:
  using MCLogModel::MCLogModel;
};

enum class Road { kTogether, kDerivedAccumulator, kDerivedModel };

// Records are (dependent, A, B, x, z, frequency weight, regression weight).
const Ints kFactors = {1, 2};
const Ints kCovariates = {3, 4};
constexpr int kFreqWeight = 5;
constexpr int kRegrWeight = 6;

// Factors and covariates of each effect behind the intercept. The interaction makes redundant
// columns, as do cells that no row has.
const std::vector<std::pair<Ints, Ints>> kEffects = {{{1}, {}},     {{2}, {}},      {{1, 2}, {}},
                                                     {{}, {3}},     {{}, {4, 3}},   {{1}, {3}},
                                                     {{2, 1}, {4}}, {{}, {3, 3, 3}}};

Rows RandomRows(int nRows, std::uint64_t seed) {
  mctest::SplitMix64 random(seed);
  const auto below = [&random](unsigned n) { return static_cast<int>(random.Next() % n); };
  const auto noise = [&random] {
    return static_cast<double>(random.Next() >> 11U) * 0x1p-52 - 1.0;
  };
  Rows rows;
  for (int r = 0; r < nRows; ++r) {
    const double a = below(4);
    // A covariate is often exactly 0, and z is so in whole levels of A.
    const double x = below(4) == 0 ? 0.0 : noise();
    const double z = a == 2 ? 0.0 : noise();
    rows.push_back({static_cast<double>(below(3)), a, static_cast<double>(below(3)), x, z,
                    1.0 + below(5), 0.5 + 0.25 * below(4)});
  }
  return rows;
}

// One whole build up to the iterations, by the given road.
class Build {
public:
  Build(const Rows& rows, Road road)
      : fCancel(&fQuery),
        fExtractor(0, kFactors, kCovariates, kFreqWeight, kRegrWeight),
        fSource(rows) {
    SetSettings();
    fTables = std::make_unique<MCFactorTables>(kFactors, fSettings.GetFactorSizes(), kFreqWeight, 0,
                                               3, 0, -1, 0.0, MCConst::MC_OFFSET_NONE);
    std::vector<Ints> effects(1);
    for (const auto& effect : kEffects) effects.push_back(effect.first);
    fTables->SetModelEffectFactors(effects, kFactors);
    fTables->SetCovariates(kCovariates);
    fModel = road == Road::kDerivedModel ? std::make_unique<DerivedModel>(fSettings, fCancel)
                                         : std::make_unique<MCLogModel>(fSettings, fCancel);
    fTabulator = std::make_unique<MCPatternTabulator>(fSettings, fExtractor, fCancel, true);
    Prepare();
    mctest::SplitMix64 random(77);
    fEstimates.resize(static_cast<std::size_t>(fModel->GetNNonRedParams()));
    for (double& estimate : fEstimates) {
      estimate = static_cast<double>(random.Next() >> 11U) * 0x1p-53 - 0.5;
    }
    fAccumulator = MakeAccumulator(road);
    fTabulator->SetStatsModel(fAccumulator.get(), fModel.get());
    fTabulator->ResetAccumStats(MCConst::MC_EST_NEWTON, true);
  }

  std::unique_ptr<MCAccumStatsLogistic> MakeAccumulator(Road road) {
    const int nColumns = fModel->GetBasicRedundInfo().InSet();
    if (road == Road::kDerivedAccumulator) {
      return std::make_unique<DerivedAccumulator>(fSettings, nColumns, 3, fEstimates);
    }
    return std::make_unique<MCAccumStatsLogistic>(fSettings, nColumns, 3, fEstimates);
  }

  long Compute(bool likelihoodOnly = false) {
    return fTabulator->ComputeStatsForOptimizer(likelihoodOnly).GetErrorCode();
  }

  // All that a pass leaves in the accumulator.
  Doubles Sums() const {
    Doubles sums = {fAccumulator->GetLL()};
    int valid = 0;
    int invalid = 0;
    double weight = 0.0;
    fAccumulator->GetCounts(valid, invalid, weight);
    double extremes[3] = {};
    fAccumulator->GetMinMaxProbabilities(extremes[0], extremes[1], extremes[2]);
    sums.insert(sums.end(), {static_cast<double>(valid), static_cast<double>(invalid), weight,
                             extremes[0], extremes[1], extremes[2]});
    const Doubles& scores = fAccumulator->GetScores();
    sums.insert(sums.end(), scores.begin(), scores.end());
    return sums;
  }
  MCCommonMath::MCSymMatrix Hessian() const {
    MCCommonMath::MCSymMatrix hessian(0);
    fAccumulator->GetHessian(hessian);
    return hessian;
  }

  ScriptedCancel fQuery;
  MCCancelInfo fCancel;
  MCLogRegSettings fSettings;
  MCRecordExtractor fExtractor;
  RowSource fSource;
  Ints fVariables = {1, 2, 3, 4};
  std::unique_ptr<MCFactorTables> fTables;
  std::unique_ptr<MCLogModel> fModel;
  std::unique_ptr<MCPatternTabulator> fTabulator;
  Doubles fEstimates;
  std::unique_ptr<MCAccumStatsLogistic> fAccumulator;

private:
  void SetSettings() {
    fSettings.SetDependent(0);
    fSettings.SetDependentRefCat(2, 3);
    fSettings.AddFactor(1, 4);
    fSettings.AddFactor(2, 3);
    for (const int covariate : kCovariates) fSettings.AddCovariate(covariate);
    fSettings.SetFrequencyWeightVar(kFreqWeight);
    fSettings.SetRegrWeightVar(kRegrWeight);
    for (const auto& [factors, covariates] : kEffects) {
      MCModelEffect effect(2, 2, &fVariables);
      for (const int factor : factors) effect.AddNewFactor(factor, false);
      for (const int covariate : covariates) effect.AddCovariate(covariate);
      fSettings.AddModelEffect(effect);
    }
  }

  void Prepare() {
    EXPECT_TRUE(fTabulator->FillFactorTable(fSource, *fTables).IsOK());
    fTables->CreateParameterIndices();
    EXPECT_TRUE(fModel->SetDepCatInfo(fTables.get()).IsOK());
    fModel->SetOffsets(kFactors, kCovariates, kFreqWeight, kRegrWeight, 0);
    fModel->SetPatternOffsets(fExtractor.GetCovariateOffsets(), fExtractor.GetFreqWeightOffset(),
                              fExtractor.GetRegrWeightOffset(), fExtractor.GetDependentOffset());
    EXPECT_TRUE(fModel->CreateParameters().IsOK());
    fSource.NewPass();
    EXPECT_TRUE(fTabulator->CreateRowPatterns(fSource, *fTables, *fModel).IsOK());
    EXPECT_TRUE(fTabulator->FillDesignMatrix(*fModel).IsOK());
    EXPECT_TRUE(fModel->IdentifyRedundancy().IsOK());
  }
};

constexpr Road kDerived[] = {Road::kDerivedAccumulator, Road::kDerivedModel};

TEST(MCPatternTabulatorPatterns, RowsTakenTogetherGiveTheBitsOfRowsOneByOne) {
  for (const int nRows : {1, 7, 60, 1500}) {
    const Rows rows = RandomRows(nRows < 7 ? 7 : nRows, static_cast<std::uint64_t>(nRows));
    Build together(rows, Road::kTogether);
    EXPECT_EQ(together.Compute(), 0);
    for (const Road road : kDerived) {
      Build oneByOne(rows, road);
      EXPECT_EQ(oneByOne.Compute(), 0);
      EXPECT_TRUE(SameBits(oneByOne.Sums(), together.Sums()));
      EXPECT_TRUE(SameBits(oneByOne.Hessian(), together.Hessian()));
    }
  }
}

TEST(MCPatternTabulatorPatterns, ALikelihoodPassGivesTheBitsOfAFullOne) {
  const Rows rows = RandomRows(300, 3);
  Build full(rows, Road::kTogether);
  EXPECT_EQ(full.Compute(false), 0);
  Build trial(rows, Road::kTogether);
  EXPECT_EQ(trial.Compute(true), 0);
  EXPECT_EQ(trial.fAccumulator->GetLL(), full.fAccumulator->GetLL());
  EXPECT_EQ(trial.fAccumulator->GetScores(), Doubles(trial.fEstimates.size(), 0.0));
}

TEST(MCPatternTabulatorPatterns, ACancelAtAnyPollLeavesTheSameSums) {
  constexpr int kNRows = 40;
  const Rows rows = RandomRows(kNRows, 11);
  for (const auto duration : {ScriptedCancel::kOnce, ScriptedCancel::kForGood}) {
    for (int poll = 1; poll <= kNRows + 2; ++poll) {
      Build together(rows, Road::kTogether);
      Build oneByOne(rows, Road::kDerivedAccumulator);
      for (Build* build : {&together, &oneByOne}) {
        build->fQuery = ScriptedCancel(poll, duration);
        EXPECT_EQ(build->Compute(), poll <= kNRows + 1 ? 1 : 0);
      }
      EXPECT_EQ(together.fQuery.fPolls, oneByOne.fQuery.fPolls);
      EXPECT_TRUE(SameBits(oneByOne.Sums(), together.Sums()));
    }
  }
}

TEST(MCPatternTabulatorPatterns, ARowThatIsRefusedEndsTheWalkAtTheSamePlace) {
  Rows rows = RandomRows(200, 5);
  for (const double huge : {1e308, 1e200}) {
    rows[100][3] = huge;  // its cube is infinite, its probabilities can't be formed
    Build together(rows, Road::kTogether);
    Build oneByOne(rows, Road::kDerivedAccumulator);
    EXPECT_EQ(together.Compute(), oneByOne.Compute());
    EXPECT_TRUE(mctest::SameBitsOrNaN(oneByOne.Sums(), together.Sums()));
  }
  Build together(RandomRows(200, 5), Road::kTogether);
  Build oneByOne(RandomRows(200, 5), Road::kDerivedAccumulator);
  for (Build* build : {&together, &oneByOne}) {
    build->fEstimates.resize(build->fEstimates.size() - 1);  // too few: every row is refused
    EXPECT_EQ(build->Compute(), 313);
  }
  EXPECT_TRUE(SameBits(oneByOne.Sums(), together.Sums()));
}

TEST(MCPatternTabulatorPatterns, PackedKeysOrNotTheRowsAreTheSame) {
  const Rows rows = RandomRows(500, 9);
  Build packed(rows, Road::kTogether);
  const mctest::PackingSwitch unpacked(false);
  Build plain(rows, Road::kTogether);
  for (Build* build : {&packed, &plain}) {
    EXPECT_EQ(build->Compute(), 0);
  }
  int valid[2] = {};
  int invalid[2] = {};
  double weight[2] = {};
  packed.fAccumulator->GetCounts(valid[0], invalid[0], weight[0]);
  plain.fAccumulator->GetCounts(valid[1], invalid[1], weight[1]);
  EXPECT_EQ(valid[0], valid[1]);
  EXPECT_EQ(weight[0], weight[1]);
  // The order of patterns differs, and with it the rounding: 500 additions of at most 2^-53 each.
  EXPECT_NEAR(packed.fAccumulator->GetLL() / plain.fAccumulator->GetLL(), 1.0, 500 * 0x1p-53);
}

// Both handlers over rows that come in the order of the walk: the same sums to the bit.
TEST(LogisticHandlers, GiveTheSameBitsForTheSameOrderOfRows) {
  Rows rows = RandomRows(400, 21);
  Build patterns(rows, Road::kTogether);
  EXPECT_EQ(patterns.Compute(), 0);
  // The rows as they are walked, back in the layout of a record; codes and local indices agree.
  mctest::FakeRegModel walked;
  walked.fRowSize = 7;
  EXPECT_TRUE(patterns.fTabulator->FillDesignMatrix(walked).IsOK());
  Rows ordered;
  for (const auto& row : walked.fDesignRows) ordered.push_back(row.fValues);
  RowSource source(ordered);
  const MCRegRecordValidator validator(patterns.fSettings.GetVariableTypes(), kFactors,
                                       patterns.fSettings.GetFactorSizes(), 3);
  MCRecordIterHandler handler(source, patterns.fCancel, validator, 0, kFreqWeight, kRegrWeight);
  const auto own = std::move(patterns.fAccumulator);
  patterns.fAccumulator = patterns.MakeAccumulator(Road::kTogether);
  handler.SetStatsModel(patterns.fAccumulator.get(), patterns.fModel.get());
  handler.ResetAccumStats(MCConst::MC_EST_NEWTON, true);
  EXPECT_TRUE(handler.ComputeStatsForOptimizer(false).IsOK());
  EXPECT_EQ(patterns.fAccumulator->GetLL(), own->GetLL());
  EXPECT_TRUE(SameBits(own->GetScores(), patterns.fAccumulator->GetScores()));
  MCCommonMath::MCSymMatrix hessian(0);
  own->GetHessian(hessian);
  EXPECT_TRUE(SameBits(hessian, patterns.Hessian()));
}

}  // namespace
