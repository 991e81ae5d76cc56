// SPDX-License-Identifier: Apache-2.0
#pragma once

// The interfaces that a host implements, as version 0 of the ABI has them: written down a second
// time on purpose, so that a plugin compiled against this copy stops working with the library
// when the order of virtual operations changes there.

#include "mcmath/mcbitset.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcregrparameter.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/record.h"

#include <string>
#include <vector>

class MCFactorTables;

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

class IMCRegModel {
public:
  virtual ~IMCRegModel() = default;
  virtual const MCFactorTables* GetFactorTables() const = 0;
  virtual MCCommon::MCStatus CreateParameters() = 0;
  virtual bool AreParamsCreated() const = 0;
  virtual bool UpdateXPrimeX(const double* row, const std::vector<int>& indices) = 0;
  virtual bool UpdateXPrimeX(const double* row) = 0;
  virtual MCCommon::MCStatus IdentifyRedundancy() = 0;
  virtual bool IsModelBuilt() const = 0;
  virtual void GetDResiduals(std::vector<double>& out, const double* row) = 0;
  virtual MCCommon::MCStatus FinishErrors() = 0;
  virtual const MCCommonMath::MCSymMatrix* GetXPrimeX() const = 0;
  virtual const MCCommonMath::MCSymMatrix* GetHessianGI() const = 0;
  virtual const std::vector<MCRegrParameter>& GetParameters() const = 0;
  virtual const std::vector<MCRegrParameter>& GetBasicParams() const = 0;
  virtual int GetNParameters() const = 0;
  virtual int GetNNonRedParams() const = 0;
  virtual int GetNBasicParameters() const = 0;
  virtual int GetNBasicNonRed() const = 0;
  virtual const std::vector<double>& GetParamEstimates() const = 0;
  virtual const MCCommonMath::MCBitSet& GetBasicRedundInfo() const = 0;
  virtual const MCCommonMath::MCBitSet& GetRedundancyInfo() const = 0;
  virtual int GetDependentNCategs() const = 0;
  virtual const std::vector<int>& GetDependCategories() const = 0;
  virtual const std::vector<int>& GetDepCatLocalInds() const = 0;
  virtual void ClearXPrimeXMatrix() = 0;
  virtual void ClearHessianGIMatrix() = 0;
  virtual bool GetParamsForEffect(int effect, int& first, int& count) const = 0;
  virtual MCCommon::MCStatus Score(const double* row, std::vector<double>& probabilities,
                                   int& predicted) const = 0;
  virtual MCCommon::MCStatus UncompressEstimates(const std::vector<double>& estimates,
                                                 const MCCommonMath::MCSymMatrix& hessian) = 0;
  virtual bool ExpandRow(std::vector<double>& designRow, const double* row) const = 0;
  virtual bool ExpandRow(const double* row, std::vector<int>& indices,
                         std::vector<double>& values) const = 0;
  virtual bool ExpandAndCompressRow(const double* row, const std::vector<int>& indices, int& n,
                                    std::vector<int>& outIndices,
                                    std::vector<double>& outValues) const = 0;
  virtual bool ExpandAndCompressRow(const double* row, int& n, std::vector<int>& outIndices,
                                    std::vector<double>& outValues) const = 0;
  virtual MCCommon::MCStatus GetStatus() const = 0;
  virtual void Display() const = 0;
};

class IMCAccumStats {
public:
  virtual ~IMCAccumStats() = default;
  virtual void Reset(MCConst::MCEstimationMethod method, bool checkSeparation) = 0;
  virtual bool CheckConstraints() = 0;
  virtual int UpdateForRow(const std::vector<int>& indices, const std::vector<double>& values,
                           int category, double weight, bool likelihoodOnly) = 0;
  virtual double GetLL() const = 0;
  virtual const std::vector<double>& GetScores() const = 0;
  virtual void GetHessian(MCCommonMath::MCSymMatrix& hessian) const = 0;
  virtual void GetCounts(int& valid, int& invalid, double& weight) const = 0;
  virtual void GetMinMaxProbabilities(double& minObserved, double& maxObserved,
                                      double& minComputed) const = 0;
  virtual double GetStepAdjustmentFactor() const = 0;
  virtual void Display(bool brief) const = 0;
};

class IMCDataHandler {
public:
  virtual ~IMCDataHandler() = default;
  virtual void SetStatsModel(IMCAccumStats* accumStats, const IMCRegModel* model) = 0;
  virtual void ResetAccumStats(MCConst::MCEstimationMethod method, bool checkSeparation) = 0;
  virtual void CleanStatsModel() = 0;
  virtual MCCommon::MCStatus ComputeStatsForOptimizer(bool likelihoodOnly) = 0;
  virtual const std::vector<MCCommon::MCStatus>& GetWarnings() const = 0;
  virtual void Display() const = 0;
};
