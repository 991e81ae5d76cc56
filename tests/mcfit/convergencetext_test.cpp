// SPDX-License-Identifier: Apache-2.0
#include "convergencetext.h"

#include "regression/frame/mcconst.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using testing::HasSubstr;

MCConvergence Ending(int reason, int iterations, bool scoreIsZero) {
  MCConvergence convergence;
  convergence.fReason = reason;
  convergence.fIterations = iterations;
  convergence.fbScoreIsZero = scoreIsZero;
  return convergence;
}

TEST(McfitConvergenceText, EachReasonIsOneSentenceAndWarnsWhereTheEstimatesAreNoSolution) {
  const struct {
    int reason;
    bool scoreIsZero;
    const char* text;
    const char* warning;  // how it begins; empty for none
  } cases[] = {
      {MCConst::MC_CONV_LL, true,
       "Converged after 7 iterations: the log-likelihood no longer changes", ""},
      {MCConst::MC_CONV_PARAM, true, "Converged after 7 iterations: the estimates no longer change",
       ""},
      {MCConst::MC_CONV_BOTH, false,
       "Converged after 7 iterations: neither log-likelihood nor estimates change any more", ""},
      {MCConst::MC_CONV_SINGULAR, false,
       "Not converged: stopped after 7 iterations: the Hessian is singular",
       "warning: singular Hessian"},
      {MCConst::MC_CONV_HALVING, true,
       "Converged after 7 iterations: no step raises the log-likelihood, as the score is zero to "
       "rounding already",
       ""},
      {MCConst::MC_CONV_HALVING, false,
       "Not converged: stopped after 7 iterations: no step that was tried raises the "
       "log-likelihood, though the score is not zero",
       "warning: step halving is exhausted"},
      {MCConst::MC_CONV_MAX_ITER, false,
       "Not converged: stopped after 7 iterations: that is the limit",
       "warning: not converged; allow more with --max-iterations"},
      {MCConst::MC_CONV_COMPLETE_SEP, true,
       "Not converged: stopped after 7 iterations: the data are completely separated",
       "warning: complete separation"},
      {MCConst::MC_CONV_QUASI_SEP, true,
       "Not converged: stopped after 7 iterations: the data are quasi-completely separated",
       "warning: quasi-complete separation"},
      {MCConst::MC_CONV_NOT_RUN, true, "No iteration was run: the first estimates are the solution",
       ""},
      {MCConst::MC_CONV_NOT_RUN, false,
       "No iteration was run: the first estimates stand, which are not the solution",
       "warning: the estimates are the first ones and not the solution"},
      {MCConst::MC_CONV_NONE, false,
       "Not converged: stopped after 7 iterations: the reason is not known",
       "warning: the estimates are not known to be a solution"},
  };
  for (const auto& c : cases) {
    const MCConvergence convergence = Ending(c.reason, 7, c.scoreIsZero);
    EXPECT_EQ(mcfit::StoppingText(convergence), c.text);
    const std::string warning = mcfit::ConvergenceWarning(convergence);
    EXPECT_THAT(warning, testing::StartsWith(c.warning)) << c.text;
    EXPECT_EQ(warning.empty(), std::string(c.warning).empty()) << c.text;
  }
}

TEST(McfitConvergenceText, OneIterationIsNotSeveral) {
  EXPECT_THAT(mcfit::StoppingText(Ending(MCConst::MC_CONV_PARAM, 1, true)),
              HasSubstr("after 1 iteration:"));
}

}  // namespace
