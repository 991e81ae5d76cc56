// SPDX-License-Identifier: Apache-2.0
#include "linearreport.h"

#include "inference.h"
#include "mcmath/mcdistfun.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcregrparameterstats.h"
#include "regression/frame/mcconst.h"
#include "reporttext.h"
#include "texttable.h"

#include <fmt/format.h>

#include <cmath>

namespace mcfit {

namespace {

using MCCommonMath::MCDistFun;

// Half the width of a confidence interval in standard errors.
std::optional<double> HalfWidth(const LinearFit& fit, const ReportStyle& style) {
  return Defined(MCDistFun::IdfT(0.5 + style.confidence / 200.0, fit.freedom));
}

std::vector<std::string> ParameterRow(const LinearModel& model, const LinearFit& fit,
                                      const ReportStyle& style, std::optional<double> halfWidth,
                                      std::size_t i) {
  const NumberText number(style.digits);
  const IMCRegOutputStats& results = model.Results();
  const MCRegrParameter& parameter = (*results.GetParameters())[i];
  const MCRegrParameterStats& stats = results.GetParamStats()[i];
  const std::string name = ParameterName(parameter, model);
  if (stats.fRedundant)
    return {name, number(stats.fEstimate), ".", ".", ".", ".", ".", "redundant"};
  const std::optional<double> error = fit.StandardError(results, stats.fIndex);
  std::optional<double> t;
  std::optional<double> p;
  if (error && *error > 0.0) {
    t = stats.fEstimate / *error;
    p = Defined(MCDistFun::SigT(*t, fit.freedom));
  }
  std::optional<double> lower;
  std::optional<double> upper;
  if (halfWidth && error) {
    lower = stats.fEstimate - *halfWidth * *error;
    upper = stats.fEstimate + *halfWidth * *error;
  }
  return {name,         number(stats.fEstimate), number(error),
          number(t),    PValueText(style)(p),    number(lower),
          number(upper)};
}

std::string ParametersText(const LinearModel& model, const LinearFit& fit,
                           const ReportStyle& style) {
  TextTable table(6);
  const auto [lower, upper] = LimitHeads(style);
  table.Add({"Parameter", "Estimate", "Std. error", "t", "p", lower, upper});
  table.AddRule();
  const std::optional<double> halfWidth = HalfWidth(fit, style);
  const std::size_t count = model.Results().GetParameters()->size();
  for (std::size_t i = 0; i < count; ++i) table.Add(ParameterRow(model, fit, style, halfWidth, i));
  table.AddRule();
  std::string text = table.Text();
  if (fit.rank < static_cast<int>(count)) text += kRedundantNote;
  return text;
}

std::string FTestsText(const LinearModel& model, const LinearFit& fit, const ReportStyle& style) {
  const auto figures = [&fit](const WaldTest& test) {
    TestFigures found;
    if (fit.residualVariance && *fit.residualVariance > 0.0) {
      found.statistic = test.statistic / test.freedom / *fit.residualVariance;
      found.p = Defined(MCDistFun::SigF(*found.statistic, test.freedom, fit.freedom));
    }
    return found;
  };
  return TestsText(model, style, "F", figures, true);
}

std::string FitText(const LinearModel& model, const LinearFit& fit, const NumberText& number) {
  std::optional<double> deviation;
  if (fit.residualVariance) deviation = std::sqrt(*fit.residualVariance);
  TextTable table(1);
  table.Add({"R square", number(fit.rSquare),
             model.Design().hasIntercept ? "" : "about 0, as there is no intercept"});
  table.Add({"Root mean square error", number(fit.rmse),
             "squared residuals divided by the sum of frequencies"});
  table.Add({"Residual standard deviation", number(deviation),
             "squared residuals divided by the degrees of freedom"});
  table.Add({"Residual sum of squares", number(fit.squaredSum)});
  table.Add({"Degrees of freedom", number(fit.freedom),
             fmt::format("sum of frequencies less the rank of the design, {}", fit.rank)});
  table.Add({"Sum of frequencies", number(fit.frequency)});
  if (model.Layout().Position(Role::kWeight) >= 0) {
    table.Add({"Sum of weights", number(model.Results().GetTotalRegrWeight())});
  }
  table.Add({"Condition index", number(model.Condition()), ConditionNote(model.Condition())});
  return table.Text();
}

}  // namespace

LinearFit::LinearFit(const IMCRegOutputStats& results)
    : frequency(results.GetTotalFreqWeight()),
      rmse(Defined(results.GetModelFitStat(MCConst::MC_FIT_RMSE))),
      rSquare(Defined(results.GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2))) {
  rank = static_cast<int>(EstimatedParameters(results, true).size());
  squaredSum = rmse ? *rmse * *rmse * frequency : 0.0;
  freedom = frequency - rank;
  if (rmse && freedom > 0.0) residualVariance = squaredSum / freedom;
}

std::optional<double> LinearFit::StandardError(const IMCRegOutputStats& results,
                                               int parameter) const {
  const MCCommonMath::MCSymMatrix* covariance = results.GetCovarianceMatrix();
  if (covariance == nullptr || !residualVariance) return {};
  const double variance = covariance->GetElem(parameter, parameter) * *residualVariance;
  // Rounding can leave a tiny negative diagonal where columns are almost collinear.
  if (!(variance >= 0.0)) return {};
  return std::sqrt(variance);
}

std::string LinearReport(const LinearModel& model, const ReportStyle& style) {
  const LinearFit fit(model.Results());
  return fmt::format("{}{}\n{}{}", HeadText("Linear", model.Data()),
                     ParametersText(model, fit, style), FTestsText(model, fit, style),
                     FitText(model, fit, NumberText(style.digits)));
}

}  // namespace mcfit
