// SPDX-License-Identifier: Apache-2.0
#pragma once

// The interfaces that a host implements, as version 0 of the ABI has them: written down a second
// time on purpose, so that a plugin compiled against this copy stops working with the library
// when the order of virtual operations changes there.

#include "regression/frame/record.h"

#include <string>
#include <vector>

namespace MCCommon {

class RecordIterator {
public:
  virtual ~RecordIterator() = default;
  virtual bool HasMore() const = 0;
  virtual Record* Next() = 0;
  virtual int GetFailReason() const = 0;
};

class MultiPassRecordIter : public RecordIterator {
public:
  virtual int NewPass() = 0;
};

}  // namespace MCCommon

class MCQueryCancel {
public:
  virtual ~MCQueryCancel() = default;
  virtual bool IsCancel() = 0;
  virtual bool WillCancel() = 0;
};

class ProgressReport {
public:
  virtual ~ProgressReport() = default;
  virtual int DiscreteMeasure(const std::string& name) = 0;
  virtual double ScaleMeasure(const std::string& name) = 0;
};

class ProgressReportVect : public ProgressReport {
public:
  virtual const std::vector<double>* VectorMeasure(const std::string& name) = 0;
};

class ProgressListener {
public:
  virtual ~ProgressListener() = default;
  virtual bool ReportProgress(ProgressReport* report) = 0;
};
