// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regression/interface/imcregcomponent.h"
#include "regression/interface/imcregoutputstats.h"
#include "regression/settings/mcregsettings.h"
#include "support/rowsource.h"
#include "support/scriptedcancel.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

/// What the targets that build a whole regression make of their bytes.

/// A position that a row usually has, one just past its end, or -1.
int TakePosition(FuzzedDataProvider& data);

/// Any bits.
double TakeAnyDouble(FuzzedDataProvider& data);

/// Up to 40 rows, mostly of codes and measures as people have them; a few hold any double or are
/// short.
mctest::Rows TakeRows(FuzzedDataProvider& data);

/// Roles in any order, refused ones among them. The effects point to `variables`.
void FillSettings(FuzzedDataProvider& data, MCRegSettings& settings, std::vector<int>& variables);

/// Says yes at one poll, from one on, or never.
mctest::ScriptedCancel TakeCancel(FuzzedDataProvider& data);

/// How a source fails, if at all.
class Failure {
public:
  /// In one of the passes up to `lastPass`.
  Failure(FuzzedDataProvider& data, int lastPass);

  void Apply(mctest::RowSource& source) const;

private:
  int fKind;
  int fPass;
  int fRow;
  bool fbForGood;
};

/// Formats whatever is displayed from now on, and throws it away.
void DisplayNowhere();

/// Reads, expands and displays the results.
void UseResults(const IMCRegOutputStats& results, const mctest::Rows& rows);
