// SPDX-License-Identifier: Apache-2.0
#include "regression/design/detail/mcdesigncolumns.h"

#include <algorithm>

namespace MCCommon {
namespace detail {

std::vector<int> MakeCovariateLookup(const std::vector<int>& variables,
                                     const std::vector<int>& positions, std::size_t leastSize) {
  std::size_t size = leastSize;
  for (const int variable : variables)
    size = std::max(size, static_cast<std::size_t>(variable) + 1);
  std::vector<int> lookup(size, -1);
  for (std::size_t i = 0; i < variables.size() && i < positions.size(); ++i) {
    lookup[static_cast<std::size_t>(variables[i])] = positions[i];
  }
  return lookup;
}

int CovariatePosition(const std::vector<int>& lookup, int covariate) {
  const auto i = static_cast<std::size_t>(covariate);  // a negative one is beyond any size
  return i < lookup.size() ? lookup[i] : -1;
}

double ParameterValue(const double* row, const MCRegrParameter& parameter,
                      const std::vector<int>& lookup) {
  const std::vector<int>& covariates = parameter.GetCovariates();
  double value = 1.0;
  for (std::size_t i = 0; i < covariates.size(); ++i) {
    const int position = CovariatePosition(lookup, covariates[i]);
    if (position < 0) return 0.0;
    value = TimesPower(value, row[position], parameter.GetCovariateMultiplicities()[i]);
  }
  return value;
}

MCDesignColumns::MCDesignColumns(const std::vector<MCRegrParameter>& parameters,
                                 const std::vector<int>& lookup) {
  fTermBegin.reserve(parameters.size() + 1);
  fTermBegin.push_back(0);
  for (const MCRegrParameter& parameter : parameters) {
    const std::vector<int>& covariates = parameter.GetCovariates();
    for (std::size_t i = 0; i < covariates.size(); ++i) {
      fTerms.push_back(
          {CovariatePosition(lookup, covariates[i]), parameter.GetCovariateMultiplicities()[i]});
    }
    fTermBegin.push_back(fTerms.size());
  }
}

bool MCDesignColumns::IsPlainCopy(std::size_t column) const {
  const MCColumnTerm* const term = Begin(column);
  return End(column) - term == 1 && term->fPosition >= 0 && term->fPower == 1;
}

}  // namespace detail
}  // namespace MCCommon
