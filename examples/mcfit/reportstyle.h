// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace mcfit {

/// How a report shows figures.
struct ReportStyle {
  int digits = 7;            ///< significant digits, 1 to 17
  double confidence = 95.0;  ///< of the confidence limits, in percent
};

}  // namespace mcfit
