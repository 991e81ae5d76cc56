// SPDX-License-Identifier: Apache-2.0
#include "logisticreport.h"

#include "convergencetext.h"
#include "inference.h"
#include "mcmath/mcdistfun.h"
#include "mcmath/mcsymmatrix.h"
#include "regression/design/mcregrparameter.h"
#include "regression/design/mcregrparameterstats.h"
#include "reporttext.h"
#include "text.h"
#include "texttable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace mcfit {

namespace {

using MCCommonMath::MCDistFun;

// A table of more categories than this against each other is wider than any terminal.
constexpr int kWidestTable = 10;

// Frequencies may add up to infinity, which has no parts.
std::string PercentText(double part, double whole) {
  return std::isfinite(whole) ? fmt::format("{:.1f} %", 100.0 * (part / whole)) : ".";
}

std::optional<double> StandardError(const LogisticModel& model, int parameter) {
  const MCCommonMath::MCSymMatrix* covariance = model.Results().GetCovarianceMatrix();
  if (covariance == nullptr) return {};
  const double variance = covariance->GetElem(parameter, parameter);
  // The generalised inverse of a singular Hessian is 0 where nothing is known.
  if (!(variance > 0.0)) return {};
  return std::sqrt(variance);
}

// Half the width of a confidence interval in standard errors.
double HalfWidth(const ReportStyle& style) {
  return MCDistFun::IdfStdNorm(0.5 + style.confidence / 200.0);
}

std::vector<std::string> ParameterRow(const LogisticModel& model, const ReportStyle& style,
                                      double halfWidth, const MCRegrParameterStats& stats) {
  const NumberText number(style.digits);
  const auto index = static_cast<std::size_t>(stats.fIndex);
  const std::string name = ParameterName((*model.Results().GetParameters())[index], model);
  if (stats.fRedundant)
    return {name, number(stats.fEstimate), ".", ".", ".", ".", ".", ".", "redundant"};
  const std::optional<double> error = StandardError(model, stats.fIndex);
  std::optional<double> wald;
  std::optional<double> p;
  std::optional<double> lower;
  std::optional<double> upper;
  if (error) {
    const double z = stats.fEstimate / *error;
    wald = z * z;
    p = Defined(MCDistFun::SigChi(*wald, 1.0));
    lower = std::exp(stats.fEstimate - halfWidth * *error);
    upper = std::exp(stats.fEstimate + halfWidth * *error);
  }
  return {name,
          number(stats.fEstimate),
          number(error),
          number(wald),
          PValueText(style)(p),
          number(std::exp(stats.fEstimate)),
          number(lower),
          number(upper)};
}

// The parameters of one category, from `begin` to before `end`.
std::string BlockText(const LogisticModel& model, const ReportStyle& style, std::size_t begin,
                      std::size_t end) {
  TextTable table(7);
  const auto [lower, upper] = LimitHeads(style);
  table.Add({"Parameter", "Estimate", "Std. error", "Wald", "p", "exp(Estimate)", lower, upper});
  table.AddRule();
  const double halfWidth = HalfWidth(style);
  for (std::size_t i = begin; i < end; ++i) {
    table.Add(ParameterRow(model, style, halfWidth, model.Results().GetParamStats()[i]));
  }
  table.AddRule();
  const int category = (*model.Results().GetParameters())[begin].GetTargetCategory();
  const int reference = model.Data().UsedCategories() - 1;
  return fmt::format("{} against {}\n\n{}\n", Printable(model.Category(category)),
                     Printable(model.Category(reference)), table.Text());
}

std::string ParametersText(const LogisticModel& model, const ReportStyle& style) {
  const std::vector<MCRegrParameter>& parameters = *model.Results().GetParameters();
  std::string text;
  std::size_t begin = 0;
  for (std::size_t end = 1; end <= parameters.size(); ++end) {
    const bool isSameBlock = end < parameters.size() && parameters[end].GetTargetCategory() ==
                                                            parameters[begin].GetTargetCategory();
    if (isSameBlock) continue;
    text += BlockText(model, style, begin, end);
    begin = end;
  }
  const std::size_t estimated = EstimatedParameters(model.Results(), true).size();
  if (estimated < parameters.size()) text += std::string(kRedundantNote) + "\n";
  return text;
}

std::string WaldTestsText(const LogisticModel& model, const ReportStyle& style) {
  const auto figures = [](const WaldTest& test) {
    return TestFigures{test.statistic, Defined(MCDistFun::SigChi(test.statistic, test.freedom))};
  };
  return TestsText(model, style, "Wald", figures, false);
}

// The likelihood ratio test against a model of the intercepts alone, or of no parameter at all.
void AddOverallTest(const LogisticModel& model, const ReportStyle& style, TextTable& table) {
  const bool hasIntercept = model.Design().hasIntercept;
  const std::size_t freedom = EstimatedParameters(model.Results(), !hasIntercept).size();
  const std::optional<double> first = Defined(model.Convergence().fInitialLL);
  const std::optional<double> last = Defined(model.Convergence().fFinalLL);
  if (freedom == 0 || !first || !last) return;
  // Rounding can leave the last one a little below the first.
  const double chiSquare = std::max(0.0, 2.0 * (*last - *first));
  const auto df = static_cast<double>(freedom);
  table.Add({"Likelihood ratio chi square", NumberText(style.digits)(chiSquare),
             hasIntercept ? "all effects against the intercepts alone"
                          : "all effects against equally likely categories"});
  table.Add({"Degrees of freedom", fmt::format("{}", freedom)});
  table.Add({"p", PValueText(style)(Defined(MCDistFun::SigChi(chiSquare, df)))});
}

std::string FitText(const LogisticModel& model, const ReportStyle& style) {
  const NumberText number(style.digits);
  const IMCRegOutputStats& results = model.Results();
  const MCConvergence& convergence = model.Convergence();
  const auto statistic = [&](MCConst::MCModelFitStat which) {
    return number(Defined(results.GetModelFitStat(which)));
  };
  TextTable table(1);
  table.Add({"First log-likelihood", number(Defined(convergence.fInitialLL)),
             model.Design().hasIntercept ? "each category as likely as it is frequent"
                                         : "all categories equally likely"});
  table.Add({"Final log-likelihood", number(Defined(convergence.fFinalLL))});
  AddOverallTest(model, style, table);
  table.Add({"Cox-Snell R square", statistic(MCConst::MC_FIT_COX_SNELL)});
  table.Add({"Nagelkerke R square", statistic(MCConst::MC_FIT_NAGELKERKE)});
  table.Add({"McFadden R square", statistic(MCConst::MC_FIT_MCFADDEN)});
  table.Add({"Parameters estimated", fmt::format("{}", EstimatedParameters(results, true).size())});
  table.Add({"Sum of frequencies", number(results.GetTotalFreqWeight())});
  table.Add({"Condition index", number(model.Condition()), ConditionNote(model.Condition())});
  return table.Text() + "\n";
}

std::vector<std::string> ClassificationRow(const LogisticModel& model, const NumberText& number,
                                           int observed) {
  const Classification& cases = model.Classified();
  std::vector<std::string> cells = {Printable(model.Category(observed))};
  if (cases.Categories() <= kWidestTable) {
    for (int predicted = 0; predicted < cases.Categories(); ++predicted) {
      cells.push_back(number(cases.Cases(observed, predicted)));
    }
  } else {
    cells.push_back(number(cases.Cases(observed)));
    cells.push_back(number(cases.Cases(observed, observed)));
  }
  cells.push_back(PercentText(cases.Cases(observed, observed), cases.Cases(observed)));
  return cells;
}

std::string ClassificationText(const LogisticModel& model, const NumberText& number) {
  const Classification& cases = model.Classified();
  const int categories = cases.Categories();
  std::vector<std::string> head = {"Observed"};
  if (categories <= kWidestTable) {
    for (int code = 0; code < categories; ++code) head.push_back(Printable(model.Category(code)));
  } else {
    head.insert(head.end(), {"Cases", "Correct"});
  }
  head.emplace_back("Correct");
  TextTable table(head.size() - 1);
  table.Add(head);
  table.AddRule();
  for (int code = 0; code < categories; ++code) {
    table.Add(ClassificationRow(model, number, code));
  }
  table.AddRule();
  std::vector<std::string> all(head.size(), "");
  all.front() = "All";
  all.back() = PercentText(cases.Correct(), cases.Cases());
  table.Add(all);
  return "Cases by observed and predicted category\n\n" + table.Text();
}

}  // namespace

std::string LogisticHead(const Dataset& data, int digits) {
  const NumberText number(digits);
  const LabelTable& labels = data.LabelsAt(data.Layout().Position(Role::kDependent));
  const bool hasFrequency = data.Layout().Position(Role::kFrequency) >= 0;
  TextTable table(hasFrequency ? 2 : 1);
  std::vector<std::string> head = {"Category", "Rows"};
  if (hasFrequency) head.emplace_back("Cases");
  table.Add(head);
  table.AddRule();
  for (int code = 0; code < data.UsedCategories(); ++code) {
    const CategoryCount& count = data.CategoryCounts()[static_cast<std::size_t>(code)];
    std::vector<std::string> row = {Printable(labels.Label(code)), fmt::format("{}", count.rows)};
    if (hasFrequency) row.push_back(number(count.cases));
    if (code == data.UsedCategories() - 1) row.emplace_back("reference");
    table.Add(row);
  }
  return HeadText("Logistic", data) + table.Text();
}

std::string LogisticReport(const LogisticModel& model, const ReportStyle& style) {
  return fmt::format("\n{}\n\n{}{}{}{}", StoppingText(model.Convergence()),
                     ParametersText(model, style), WaldTestsText(model, style),
                     FitText(model, style), ClassificationText(model, NumberText(style.digits)));
}

}  // namespace mcfit
