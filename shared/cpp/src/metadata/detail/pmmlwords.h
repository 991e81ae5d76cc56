// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "metadata/detail/deployment.h"

namespace MCCommonMetadata {
namespace detail {

/// The words of PMML: one vocabulary for all that write or read it, in the order in which
/// documents come to them.
namespace PMMLWord {

inline constexpr char kPMML[] = "PMML";
inline constexpr char kVersion[] = "version";
inline constexpr char kVersion32[] = "3.2";
inline constexpr char kVersion40[] = "4.0";
inline constexpr char kVersion41[] = "4.1";
inline constexpr char kVersion43[] = "4.3";
inline constexpr char kXmlns[] = "xmlns";
inline constexpr char kNamespace32[] = "http://www.dmg.org/PMML-3_2";
inline constexpr char kNamespace40[] = "http://www.dmg.org/PMML-4_0";
inline constexpr char kNamespace41[] = "http://www.dmg.org/PMML-4_1";
inline constexpr char kNamespace43[] = "http://www.dmg.org/PMML-4_3";
inline constexpr char kXmlnsXsi[] = "xmlns:xsi";
inline constexpr char kXsi[] = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr char kSchemaLocation[] = "xsi:schemaLocation";
inline constexpr char kSchemaLocation32[] = "http://www.dmg.org/PMML-3_2 pmml-3-2.xsd";
inline constexpr char kSchemaLocation40[] = "http://www.dmg.org/PMML-4_0 pmml-4-0.xsd";
inline constexpr char kSchemaLocation41[] = "http://www.dmg.org/PMML-4_1 pmml-4-1.xsd";
inline constexpr char kSchemaLocation43[] = "http://www.dmg.org/PMML-4_3 pmml-4-3.xsd";
inline constexpr char kHeader[] = "Header";
inline constexpr char kCopyright[] = "copyright";
inline constexpr char kCopyrightLine[] = MCSTAT_COPYRIGHT_LINE;
inline constexpr char kDescription[] = "description";
inline constexpr char kApplication[] = "Application";
inline constexpr char kAnnotation[] = "Annotation";
inline constexpr char kName[] = "name";
inline constexpr char kTimestamp[] = "Timestamp";
inline constexpr char kDataDictionary[] = "DataDictionary";
inline constexpr char kNumberOfFields[] = "numberOfFields";
inline constexpr char kDataField[] = "DataField";
inline constexpr char kDisplayName[] = "displayName";
inline constexpr char kOptype[] = "optype";
inline constexpr char kCategorical[] = "categorical";
inline constexpr char kContinuous[] = "continuous";
inline constexpr char kOrdinal[] = "ordinal";
inline constexpr char kValue[] = "Value";
inline constexpr char kValueAttribute[] = "value";
inline constexpr char kDisplayValue[] = "displayValue";
inline constexpr char kDataType[] = "dataType";
inline constexpr char kString[] = "string";
inline constexpr char kFloat[] = "float";
inline constexpr char kDouble[] = "double";
inline constexpr char kInteger[] = "integer";
inline constexpr char kDate[] = "date";
inline constexpr char kTime[] = "time";
inline constexpr char kDateTime[] = "dateTime";
inline constexpr char kProperty[] = "property";
inline constexpr char kMissing[] = "missing";
inline constexpr char kValid[] = "valid";
inline constexpr char kInvalid[] = "invalid";
inline constexpr char kExtension[] = "Extension";
inline constexpr char kExtender[] = "extender";
inline constexpr char kVendorDomain[] = MCSTAT_VENDOR_DOMAIN;
inline constexpr char kMissingInterval[] = "missingInterval";
inline constexpr char kInvalidRangeLower[] = "invalidRangeLower";
inline constexpr char kInvalidRangeUpper[] = "invalidRangeUpper";
inline constexpr char kTransformationDictionary[] = "TransformationDictionary";
inline constexpr char kDerivedField[] = "DerivedField";
inline constexpr char kFieldRef[] = "FieldRef";
inline constexpr char kField[] = "field";
inline constexpr char kDiscretize[] = "Discretize";
inline constexpr char kDiscretizeBin[] = "DiscretizeBin";
inline constexpr char kBinValue[] = "binValue";
inline constexpr char kInterval[] = "Interval";
inline constexpr char kClosure[] = "closure";
inline constexpr char kOpenOpen[] = "openOpen";
inline constexpr char kOpenClosed[] = "openClosed";
inline constexpr char kClosedOpen[] = "closedOpen";
inline constexpr char kClosedClosed[] = "closedClosed";
inline constexpr char kLeftMargin[] = "leftMargin";
inline constexpr char kRightMargin[] = "rightMargin";
inline constexpr char kFunctionName[] = "functionName";
inline constexpr char kClassification[] = "classification";
inline constexpr char kRegression[] = "regression";
inline constexpr char kModelName[] = "modelName";
inline constexpr char kAlgorithmName[] = "algorithmName";
inline constexpr char kFieldName[] = "fieldName";
inline constexpr char kMiningSchema[] = "MiningSchema";
inline constexpr char kMiningField[] = "MiningField";
inline constexpr char kUsageType[] = "usageType";
inline constexpr char kActive[] = "active";
inline constexpr char kPredicted[] = "predicted";
inline constexpr char kMissingValueReplacement[] = "missingValueReplacement";
inline constexpr char kMissingValueTreatment[] = "missingValueTreatment";
inline constexpr char kAsIs[] = "asIs";
inline constexpr char kAsValue[] = "asValue";
inline constexpr char kAsMean[] = "asMean";
inline constexpr char kAsMode[] = "asMode";
inline constexpr char kOutput[] = "Output";
inline constexpr char kOutputField[] = "OutputField";
inline constexpr char kFeature[] = "feature";
inline constexpr char kEntityId[] = "entityId";
inline constexpr char kPredictedValue[] = "predictedValue";
inline constexpr char kProbability[] = "probability";
inline constexpr char kResidual[] = "residual";
inline constexpr char kStandardError[] = "standardError";
inline constexpr char kModelStats[] = "ModelStats";
inline constexpr char kUnivariateStats[] = "UnivariateStats";
inline constexpr char kArray[] = "Array";
inline constexpr char kNAttribute[] = "n";
inline constexpr char kType[] = "type";
inline constexpr char kReal[] = "real";
inline constexpr char kInt[] = "int";
inline constexpr char kMatrix[] = "Matrix";
inline constexpr char kKind[] = "kind";
inline constexpr char kDiagonal[] = "diagonal";
inline constexpr char kCovariances[] = "Covariances";
inline constexpr char kPartition[] = "Partition";
inline constexpr char kPartitionFieldStats[] = "PartitionFieldStats";
inline constexpr char kN[] = "N";
inline constexpr char kCounts[] = "Counts";
inline constexpr char kTotalFreq[] = "totalFreq";
inline constexpr char kInvalidFreq[] = "invalidFreq";
inline constexpr char kMissingFreq[] = "missingFreq";
inline constexpr char kDiscrStats[] = "DiscrStats";
inline constexpr char kNumericInfo[] = "NumericInfo";
inline constexpr char kMinimum[] = "minimum";
inline constexpr char kMaximum[] = "maximum";
inline constexpr char kMean[] = "mean";
inline constexpr char kStandardDeviation[] = "standardDeviation";
inline constexpr char kMedian[] = "median";
inline constexpr char kContStats[] = "ContStats";
inline constexpr char kContainerModel[] = "containerModel";
inline constexpr char kGeneralRegressionModel[] = "GeneralRegressionModel";
inline constexpr char kModelType[] = "modelType";
inline constexpr char kTargetVariableName[] = "targetVariableName";
inline constexpr char kParameterList[] = "ParameterList";
inline constexpr char kParameter[] = "Parameter";
inline constexpr char kLabel[] = "label";
inline constexpr char kFactorList[] = "FactorList";
inline constexpr char kPredictor[] = "Predictor";
inline constexpr char kCovariateList[] = "CovariateList";
inline constexpr char kPPMatrix[] = "PPMatrix";
inline constexpr char kPPCell[] = "PPCell";
inline constexpr char kPredictorName[] = "predictorName";
inline constexpr char kParameterName[] = "parameterName";
inline constexpr char kTargetCategory[] = "targetCategory";
inline constexpr char kPCovMatrix[] = "PCovMatrix";
inline constexpr char kModel[] = "model";
inline constexpr char kRobust[] = "robust";
inline constexpr char kModelDF[] = "modelDF";
inline constexpr char kTargetReferenceCategory[] = "targetReferenceCategory";
inline constexpr char kPCovCell[] = "PCovCell";
inline constexpr char kTRow[] = "tRow";
inline constexpr char kTCol[] = "tCol";
inline constexpr char kPRow[] = "pRow";
inline constexpr char kPCol[] = "pCol";
inline constexpr char kParamMatrix[] = "ParamMatrix";
inline constexpr char kPCell[] = "PCell";
inline constexpr char kBeta[] = "beta";
inline constexpr char kDf[] = "df";

}  // namespace PMMLWord
}  // namespace detail
}  // namespace MCCommonMetadata
