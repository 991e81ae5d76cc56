#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes probabilities.csv: of a multinomial logit with linear predictors eta_0 .. eta_(m-1) and a
reference of predictor 0. Arguments are a category (m is the reference, -1 the logarithm of the
reference's probability) and the predictors. The predictors lie far apart, so the sums carry 2000
digits."""
import mpmath as mp

from reference import uniform, write

mp.mp.dps = 2000


def value(category, *eta):
    predictors = [*eta, mp.mpf(0)]
    # Divided by the largest term: exp(1e9) is in the range of mpmath, but a slow one.
    top = max(predictors)
    total = mp.fsum(mp.exp(x - top) for x in predictors)
    if category == -1:
        return -top - mp.log(total)
    return mp.exp(predictors[int(category)] - top) / total


cases = {
    "ordinary": [uniform(-3.0, 3.0, m) for m in (1, 2, 3, 5, 9) for _ in range(8)],
    "wide": [uniform(-40.0, 40.0, m) for m in (1, 2, 3, 5) for _ in range(8)],
    "ties": [[0.0], [0.0, 0.0], [0.5, 0.5, 0.5], [-2.0] * 4, [3.0, 1.0, 3.0]],
    "700": [[700.0], [-700.0], [699.5, -700.25], [-650.0, -700.0], [708.5], [708.5, 708.25],
            [-708.0], [-708.0, -708.25], [300.0, 299.0], [301.0, -301.0]],
    "1e3": [[1000.0], [-1000.0], [1000.0, 1000.0], [1000.0, 999.5], [-1000.0, -1000.5],
            [1000.0, -1000.0], [1000.25, 998.0, 0.5], [-1000.0, -3.0, 2.5], [-1e3, -720.0, -3.0]],
    "1e9": [[1e9], [-1e9], [1e9, 1e9], [1e9, 1e9 - 1.5], [-1e9, -1e9 - 1.5], [1e9, -1e9],
            [1e9, 1e9 - 700.0, 3.0], [-1e9, 0.25, 0.5], [-1e9, 1e9, 1e3, 1e9 - 0.75], [-1e9, 708.5]],
}
write("probabilities.csv", "probabilities of a multinomial logit", value,
      [(region, k, *eta) for region, rows in cases.items() for eta in rows
       for k in range(-1, len(eta) + 1)])
