// SPDX-License-Identifier: Apache-2.0
#include "linearreport.h"

#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcregrparameterstats.h"
#include "regression/frame/mcconst.h"
#include "reporttext.h"
#include "texttable.h"

#include <fmt/format.h>

#include <cmath>

namespace mcfit {

namespace {

std::vector<std::string> ParameterRow(const LinearModel& model, const LinearFit& fit,
                                      const NumberText& number, std::size_t i) {
  const IMCRegOutputStats& results = model.Results();
  const MCRegrParameter& parameter = (*results.GetParameters())[i];
  const MCRegrParameterStats& stats = results.GetParamStats()[i];
  const std::string name = ParameterName(parameter, model);
  if (stats.fRedundant) return {name, number(stats.fEstimate), ".", ".", "redundant"};
  const std::optional<double> error = fit.StandardError(results, stats.fIndex);
  std::optional<double> t;
  if (error && *error > 0.0) t = stats.fEstimate / *error;
  return {name, number(stats.fEstimate), number(error), number(t)};
}

std::string ParametersText(const LinearModel& model, const LinearFit& fit,
                           const NumberText& number) {
  TextTable table(3);
  table.Add({"Parameter", "Estimate", "Std. error", "t"});
  table.AddRule();
  const std::size_t count = model.Results().GetParameters()->size();
  for (std::size_t i = 0; i < count; ++i) table.Add(ParameterRow(model, fit, number, i));
  table.AddRule();
  std::string text = table.Text();
  if (fit.rank < static_cast<int>(count)) text += kRedundantNote;
  return text;
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
  return table.Text();
}

}  // namespace

LinearFit::LinearFit(const IMCRegOutputStats& results)
    : frequency(results.GetTotalFreqWeight()),
      rmse(Defined(results.GetModelFitStat(MCConst::MC_FIT_RMSE))),
      rSquare(Defined(results.GetModelFitStat(MCConst::MC_FIT_MULTIPLE_R2))) {
  for (const MCRegrParameterStats& stats : results.GetParamStats())
    rank += stats.fRedundant ? 0 : 1;
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

std::string LinearReport(const LinearModel& model, int digits) {
  const NumberText number(digits);
  const LinearFit fit(model.Results());
  return fmt::format("{}{}\n{}", HeadText("Linear", model.Data()),
                     ParametersText(model, fit, number), FitText(model, fit, number));
}

}  // namespace mcfit
