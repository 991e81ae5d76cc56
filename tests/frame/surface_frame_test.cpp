// SPDX-License-Identifier: Apache-2.0
//
// Every public operation of the folder with its exact type: one that is missing or misnamed, or
// whose type has changed, doesn't compile.
#include "regression/frame/binaryrecorditerator.h"
#include "regression/frame/mccancelinfo.h"
#include "regression/frame/mccomponentdisplay.h"
#include "regression/frame/mcconst.h"
#include "regression/frame/mcmv.h"
#include "regression/frame/mcquerycancel.h"
#include "regression/frame/mcstatus.h"
#include "regression/frame/multipassrecorditer.h"
#include "regression/frame/progresslistener.h"
#include "regression/frame/progressreport.h"
#include "regression/frame/progressreportvect.h"
#include "regression/frame/record.h"
#include "regression/frame/recorditerator.h"
#include "support/exacttype.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using MCCommon::BinaryRecordIterator;
using MCCommon::MCStatus;
using MCCommon::MultiPassRecordIter;
using MCCommon::Record;
using MCCommon::RecordIterator;
using mctest::Is;

static_assert(std::is_default_constructible_v<MCStatus>);
static_assert(std::is_constructible_v<MCStatus, long, bool>);
static_assert(Is<long (MCStatus::*)() const>(&MCStatus::GetErrorCode));
static_assert(Is<bool (MCStatus::*)() const>(&MCStatus::IsOK));
static_assert(Is<bool (MCStatus::*)() const>(&MCStatus::IsError));
static_assert(Is<bool (MCStatus::*)() const>(&MCStatus::IsWarning));
static_assert(Is<long (MCStatus::*)(unsigned) const>(&MCStatus::GetDiscreteDatum));
static_assert(Is<void (MCStatus::*)(unsigned, long)>(&MCStatus::SetDiscreteDatum));
static_assert(Is<double (MCStatus::*)(unsigned) const>(&MCStatus::GetScaleDatum));
static_assert(Is<void (MCStatus::*)(unsigned, double)>(&MCStatus::SetScaleDatum));
static_assert(Is<bool (MCStatus::*)(const MCStatus&) const>(&MCStatus::operator==));

static_assert(std::is_constructible_v<Record, int>);
static_assert(!std::is_convertible_v<int, Record>);
static_assert(std::is_copy_constructible_v<Record>);
static_assert(Is<Record& (Record::*)(const Record&)>(&Record::operator=));
static_assert(Is<bool (Record::*)(int)>(&Record::Resize));
static_assert(Is<int (Record::*)() const>(&Record::Size));
static_assert(std::is_same_v<decltype(std::declval<const Record&>()[0]), double>);
static_assert(std::is_same_v<decltype(std::declval<Record&>()[0]), double&>);
static_assert(std::is_same_v<decltype(std::declval<const Record&>().GetAll()), const double*>);
static_assert(std::is_same_v<decltype(std::declval<Record&>().GetAll()), double*>);

static_assert(std::is_abstract_v<RecordIterator>);
static_assert(std::has_virtual_destructor_v<RecordIterator>);
static_assert(Is<bool (RecordIterator::*)() const>(&RecordIterator::HasMore));
static_assert(Is<Record* (RecordIterator::*)()>(&RecordIterator::Next));
static_assert(Is<int (RecordIterator::*)() const>(&RecordIterator::GetFailReason));

static_assert(std::is_abstract_v<MultiPassRecordIter>);
static_assert(std::is_base_of_v<RecordIterator, MultiPassRecordIter>);
static_assert(Is<int (MultiPassRecordIter::*)()>(&MultiPassRecordIter::NewPass));

static_assert(std::is_base_of_v<MultiPassRecordIter, BinaryRecordIterator>);
static_assert(std::is_constructible_v<BinaryRecordIterator, FILE*, int>);
static_assert(!std::is_abstract_v<BinaryRecordIterator>);

static_assert(std::is_constructible_v<MCCancelInfo, MCQueryCancel*>);
static_assert(Is<void (MCCancelInfo::*)()>(&MCCancelInfo::SetCancel));
static_assert(Is<bool (MCCancelInfo::*)()>(&MCCancelInfo::IsCancel));
static_assert(Is<bool (MCCancelInfo::*)() const>(&MCCancelInfo::WillCancel));
static_assert(Is<MCQueryCancel* (MCCancelInfo::*)() const>(&MCCancelInfo::GetCancelPtr));
static_assert(Is<void (MCCancelInfo::*)(MCQueryCancel*)>(&MCCancelInfo::SetCancelPtr));

static_assert(std::is_abstract_v<MCQueryCancel>);
static_assert(std::has_virtual_destructor_v<MCQueryCancel>);
static_assert(Is<bool (MCQueryCancel::*)()>(&MCQueryCancel::IsCancel));
static_assert(Is<bool (MCQueryCancel::*)()>(&MCQueryCancel::WillCancel));

static_assert(std::is_abstract_v<ProgressListener>);
static_assert(std::has_virtual_destructor_v<ProgressListener>);
static_assert(Is<bool (ProgressListener::*)(ProgressReport*)>(&ProgressListener::ReportProgress));

static_assert(std::is_abstract_v<ProgressReport>);
static_assert(std::has_virtual_destructor_v<ProgressReport>);
static_assert(Is<int (ProgressReport::*)(const std::string&)>(&ProgressReport::DiscreteMeasure));
static_assert(Is<double (ProgressReport::*)(const std::string&)>(&ProgressReport::ScaleMeasure));

static_assert(std::is_base_of_v<ProgressReport, ProgressReportVect>);
static_assert(Is<const std::vector<double>* (ProgressReportVect::*)(const std::string&)>(
    &ProgressReportVect::VectorMeasure));

static_assert(std::is_same_v<decltype(MCMV::gMissingValue), const double>);
static_assert(std::is_same_v<decltype(MCConst::MC_MODEL_LINEAR), const int>);

// Exported functions, which must also link.
namespace display {
using namespace MCComponentDisplay;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

void (*const kSetOutStream)(std::ostream&) = SetOutStream;
std::ostream& (*const kGetOutStream)() = GetOutStream;
void (*const kText)(const long&, const char*) = DisplayText;
void (*const kString)(const long&, const std::string&) = DisplayText;
void (*const kI)(std::string, int) = DisplayI;
void (*const kD)(std::string, double) = DisplayD;
void (*const kDF)(std::string, double) = DisplayDF;
void (*const kB)(std::string, bool) = DisplayB;
void (*const kS)(std::string, const std::string&) = DisplayS;
void (*const kDV)(std::string, const Doubles&, bool) = DisplayDV;
void (*const kBV)(std::string, const std::vector<bool>&) = DisplayBV;
void (*const kIV)(std::string, const Ints&) = DisplayIV;
void (*const kUV)(std::string, const std::vector<unsigned>&) = DisplayUV;
void (*const kSV)(std::string, const std::vector<std::string>&) = DisplaySV;
void (*const kVPD)(std::string, const std::vector<std::pair<double, double>>&) = DisplayVPD;
void (*const kVPDI)(std::string, const std::vector<std::pair<double, int>>&) = DisplayVPDI;
void (*const kVPII)(std::string, const std::vector<std::pair<int, int>>&) = DisplayVPII;
void (*const kIIM)(std::string, const std::map<int, int>&) = DisplayIIM;
void (*const kIntVecIntMap)(std::string, const std::map<Ints, int>&) = DisplayIntVecIntMap;
void (*const kIntVecDVecMap)(std::string, const std::map<Ints, Doubles>&) = DisplayIntVecDVecMap;
void (*const kVIM)(std::string, const std::vector<std::map<int, int>>&) = DisplayVIM;
void (*const kSVV)(std::string, const std::vector<std::vector<std::string>>&) = DisplaySVV;
void (*const kBVV)(std::string, const std::vector<std::vector<bool>>&) = DisplayBVV;
void (*const kDVV)(std::string, const std::vector<Doubles>&) = DisplayDVV;
void (*const kDA)(std::string, const double*, int) = DisplayDA;
void (*const kDVTR)(std::string, const Doubles&, int) = DisplayDVTR;
void (*const kSLDM)(std::string, const std::map<std::list<std::string>, double>&) = DisplaySLDM;
void (*const kTimeStamp)(std::string) = DisplayTimeStamp;
}  // namespace display

TEST(FrameSurface, DisplayFunctionsLink) {
  const void* const all[] = {reinterpret_cast<const void*>(display::kSetOutStream),
                             reinterpret_cast<const void*>(display::kGetOutStream),
                             reinterpret_cast<const void*>(display::kText),
                             reinterpret_cast<const void*>(display::kString),
                             reinterpret_cast<const void*>(display::kI),
                             reinterpret_cast<const void*>(display::kD),
                             reinterpret_cast<const void*>(display::kDF),
                             reinterpret_cast<const void*>(display::kB),
                             reinterpret_cast<const void*>(display::kS),
                             reinterpret_cast<const void*>(display::kDV),
                             reinterpret_cast<const void*>(display::kBV),
                             reinterpret_cast<const void*>(display::kIV),
                             reinterpret_cast<const void*>(display::kUV),
                             reinterpret_cast<const void*>(display::kSV),
                             reinterpret_cast<const void*>(display::kVPD),
                             reinterpret_cast<const void*>(display::kVPDI),
                             reinterpret_cast<const void*>(display::kVPII),
                             reinterpret_cast<const void*>(display::kIIM),
                             reinterpret_cast<const void*>(display::kIntVecIntMap),
                             reinterpret_cast<const void*>(display::kIntVecDVecMap),
                             reinterpret_cast<const void*>(display::kVIM),
                             reinterpret_cast<const void*>(display::kSVV),
                             reinterpret_cast<const void*>(display::kBVV),
                             reinterpret_cast<const void*>(display::kDVV),
                             reinterpret_cast<const void*>(display::kDA),
                             reinterpret_cast<const void*>(display::kDVTR),
                             reinterpret_cast<const void*>(display::kSLDM),
                             reinterpret_cast<const void*>(display::kTimeStamp)};
  for (const void* function : all) EXPECT_NE(function, nullptr);
}

}  // namespace
