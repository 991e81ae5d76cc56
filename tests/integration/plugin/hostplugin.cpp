// SPDX-License-Identifier: Apache-2.0
//
// A host's classes in a shared object of their own, loaded at run time. Compiled twice: against
// the library's headers, and against the interfaces as they were frozen.
#ifdef MCSTAT_FROZEN_INTERFACES
#include "integration/plugin/frozeninterfaces.h"
#else
#include "regression/frame/mcquerycancel.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/frame/progresslistener.h"
#include "regression/frame/progressreportvect.h"
#endif
#include "integration/plugin/pluginexport.h"

namespace {

// The rows (x, 3 - x) for x from 0 to 4.
class PluginSource : public MCCommon::MultiPassRecordIter {
public:
  bool HasMore() const override { return fNext < 5; }
  MCCommon::Record* Next() override {
    fRow[0] = fNext++;
    fRow[1] = 3.0 - fRow[0];
    return &fRow;
  }
  int GetFailReason() const override { return HasMore() ? 0 : 1; }
  int NewPass() override {
    fNext = 0;
    return 0;
  }

private:
  MCCommon::Record fRow{2};
  int fNext = 0;
};

// Says yes from the given poll on.
class PluginCancel : public MCQueryCancel {
public:
  explicit PluginCancel(int yesFrom) : fYesFrom(yesFrom) {}
  bool IsCancel() override { return false; }
  bool WillCancel() override { return fYesFrom > 0 && ++fPolls >= fYesFrom; }

private:
  int fYesFrom;
  int fPolls = 0;
};

// Answers whether the report holds what the test put there.
class PluginListener : public ProgressListener {
public:
  bool ReportProgress(ProgressReport* report) override {
    auto* vectors = static_cast<ProgressReportVect*>(report);
    return report->DiscreteMeasure("seven") == 7 && report->ScaleMeasure("half") == 0.5 &&
           vectors->VectorMeasure("three")->size() == 3;
  }
};

}  // namespace

PLUGIN_EXPORT void* MakeSource() {
  return static_cast<MCCommon::MultiPassRecordIter*>(new PluginSource);
}
PLUGIN_EXPORT void* MakeCancel(int yesFrom) {
  return static_cast<MCQueryCancel*>(new PluginCancel(yesFrom));
}
PLUGIN_EXPORT void* MakeListener() {
  return static_cast<ProgressListener*>(new PluginListener);
}
