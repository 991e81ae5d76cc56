// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/logistic/mclogisticflags.h"
#include "regression/logistic/mcpatterntabulator.h"
#include "support/fakeregmodel.h"
#include "support/rowrecorder.h"
#include "support/rowsource.h"
#include "support/scriptedcancel.h"

#include <memory>
#include <utility>
#include <vector>

namespace mctest {

/// A logistic design as a tabulator is told it. Positions are positions in a record.
struct TabulatedDesign {
  int dependent = 0;
  int nCategories = 3;
  std::vector<std::pair<int, int>> factors;  ///< position and number of categories
  std::vector<int> covariates;
  std::vector<std::vector<int>> effects = {{}};  ///< factors of each model effect
  int freqWeight = -1;
  int regrWeight = -1;
};

/// A tabulator with all that it needs: settings, tables, a fake model that has seen each category
/// of the dependent (codes and local indices the same), a recording accumulator, a cancel.
class Tabulation {
public:
  explicit Tabulation(const TabulatedDesign& design, const ScriptedCancel& query = ScriptedCancel())
      : fQuery(query),
        fCancel(&fQuery),
        fSettings(SettingsOf(design)),
        fExtractor(design.dependent, fSettings.GetFactors(), design.covariates, design.freqWeight,
                   design.regrWeight),
        fTables(fSettings.GetFactors(), fSettings.GetFactorSizes(), design.freqWeight,
                design.dependent, design.nCategories, 0, -1, 0.0, MCConst::MC_OFFSET_NONE),
        fTabulator(fSettings, fExtractor, fCancel, true) {
    fTables.SetModelEffectFactors(design.effects, fSettings.GetFactors());
    for (int category = 0; category < design.nCategories; ++category) {
      fModel.fDependCategories.push_back(category);
      fModel.fDepCatLocalInds.push_back(category);
    }
    fModel.fRowSize = static_cast<int>(fExtractor.GetAllRecordIndices().size());
    fTabulator.SetStatsModel(&fAccumulator, &fModel);
  }

  static MCLogRegSettings SettingsOf(const TabulatedDesign& design) {
    MCLogRegSettings settings;
    settings.SetDependent(design.dependent);
    settings.SetDependentRefCat(-1, design.nCategories);
    for (const auto& [position, size] : design.factors) settings.AddFactor(position, size);
    for (const int covariate : design.covariates) settings.AddCovariate(covariate);
    if (design.freqWeight >= 0) settings.SetFrequencyWeightVar(design.freqWeight);
    if (design.regrWeight >= 0) settings.SetRegrWeightVar(design.regrWeight);
    return settings;
  }

  MCCommon::MCStatus FirstPass(RowSource& source) {
    source.NewPass();
    const MCCommon::MCStatus status = fTabulator.FillFactorTable(source, fTables);
    fTables.CreateParameterIndices();
    return status;
  }
  MCCommon::MCStatus SecondPass(RowSource& source) {
    source.NewPass();
    return fTabulator.CreateRowPatterns(source, fTables, fModel);
  }
  MCCommon::MCStatus BothPasses(const Rows& rows) {
    RowSource source(rows);
    const MCCommon::MCStatus first = FirstPass(source);
    return first.IsError() ? first : SecondPass(source);
  }

  ScriptedCancel fQuery;
  MCCancelInfo fCancel;
  MCLogRegSettings fSettings;
  MCRecordExtractor fExtractor;
  MCFactorTables fTables;
  FakeRegModel fModel;
  RowRecorder fAccumulator;
  MCPatternTabulator fTabulator;
};

/// While it lives, keys of patterns are packed or not.
class PackingSwitch {
public:
  explicit PackingSwitch(bool packing) : fBefore(usePacking) { usePacking = packing; }
  ~PackingSwitch() { usePacking = fBefore; }
  PackingSwitch(const PackingSwitch&) = delete;
  PackingSwitch& operator=(const PackingSwitch&) = delete;

private:
  bool fBefore;
};

}  // namespace mctest
