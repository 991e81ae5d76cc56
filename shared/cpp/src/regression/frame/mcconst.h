// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Plain enumerations of the regression core, and the two model types. Each enumeration holds any
/// int, so that a value without a name can be asked about too.
namespace MCConst {

/// Role of one position of a record. A position holds at most one role.
enum MCVariableType : int {
  MC_VAR_UNSPECIFIED = 0,  ///< no role
  MC_VAR_FREQ_WEIGHT = 1,  ///< frequency weight: how many cases the record stands for
  MC_VAR_REGR_WEIGHT = 2,  ///< regression weight: precision of the record's dependent value
  MC_VAR_FACTOR = 3,       ///< categorical predictor, coded from 0
  MC_VAR_COVARIATE = 4,    ///< scale predictor
  MC_VAR_DEPENDENT = 5     ///< dependent variable
};

/// How the iterative estimator chooses its matrix of second derivatives.
enum MCEstimationMethod : int {
  MC_EST_FISHER = 0,  ///< Fisher scoring: the expected information
  MC_EST_NEWTON = 1,  ///< Newton-Raphson: the observed information
  MC_EST_HYBRID = 2   ///< Fisher scoring for some iterations, then Newton-Raphson
};

/// Fit statistics. A model answers the missing value for a statistic of another kind of model.
enum MCModelFitStat : int {
  MC_FIT_RMSE = 0,         ///< root mean square error (linear)
  MC_FIT_MULTIPLE_R2 = 1,  ///< multiple R square (linear)
  MC_FIT_COX_SNELL = 2,    ///< Cox and Snell R square (logistic)
  MC_FIT_NAGELKERKE = 3,   ///< Nagelkerke R square (logistic)
  MC_FIT_MCFADDEN = 4      ///< McFadden R square (logistic)
};

/// Why an iterative estimation stopped. Only the first three ways to stop are convergence.
enum MCConvergenceCriterion : int {
  MC_CONV_NONE = 0,          ///< still iterating, or stopped by an error or a cancel
  MC_CONV_LL = 1,            ///< the log-likelihood no longer changes
  MC_CONV_PARAM = 2,         ///< the estimates no longer change
  MC_CONV_BOTH = 3,          ///< neither changes any more
  MC_CONV_SINGULAR = 4,      ///< the Hessian is singular
  MC_CONV_HALVING = 5,       ///< no part of the last step that was tried raised the log-likelihood
  MC_CONV_MAX_ITER = 6,      ///< iteration limit reached
  MC_CONV_COMPLETE_SEP = 7,  ///< complete separation of the data
  MC_CONV_QUASI_SEP = 8,     ///< quasi-complete separation
  MC_CONV_NOT_RUN = 9        ///< no iteration was needed or possible
};

/// Where the offset of a record comes from.
enum MCOffsetType : int {
  MC_OFFSET_NONE = 0,      ///< no offset, that is 0.0
  MC_OFFSET_VARIABLE = 1,  ///< read from the record
  MC_OFFSET_FIXED = 2      ///< one value for all records
};

/// Test of an effect that the host means to print. Stored and handed back, never acted upon.
enum MCTestType : int {
  MC_TEST_WALD = 0,              ///< Wald chi-square
  MC_TEST_F = 1,                 ///< F
  MC_TEST_LIKELIHOOD_RATIO = 2,  ///< likelihood ratio chi-square
  MC_TEST_SCORE = 3              ///< score chi-square
};

/// Adjustment for multiple tests. Stored and handed back, never acted upon.
enum MCPAdjustMethod : int {
  MC_PADJ_NONE = 0,            ///< least significant difference: no adjustment
  MC_PADJ_BONFERRONI = 1,      ///< Bonferroni
  MC_PADJ_SIDAK = 2,           ///< Sidak
  MC_PADJ_SEQ_BONFERRONI = 3,  ///< sequential Bonferroni (Holm)
  MC_PADJ_SEQ_SIDAK = 4        ///< sequential Sidak
};

/// Estimator of the covariance of the coefficients. Stored and handed back, never acted upon.
enum MCCovbType : int {
  MC_COVB_MODEL = 0,  ///< from the model: the inverse information
  MC_COVB_ROBUST = 1  ///< sandwich estimator
};

/// Answers of GetModelType() of settings, components and output statistics.
inline constexpr int MC_MODEL_LINEAR = 0;
inline constexpr int MC_MODEL_LOGISTIC = 1;

}  // namespace MCConst
