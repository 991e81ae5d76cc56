#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Logarithms of ratios of binomial probabilities, ln(f(k) / f(m)), with mpmath at 60 digits.

The arguments are exact: p is written as the double that it is. m is the mode.
Usage: binomialratio.py > binomialratio.csv
"""

from mpmath import mp, mpf, floor, loggamma, log, nstr

mp.dps = 60


def log_probability(n, p, k):
    return (loggamma(n + 1) - loggamma(k + 1) - loggamma(n - k + 1) + k * log(p)
            + (n - k) * log(1 - p))


print("n,p,k,m,value")
for n in (20, 25, 100, 1000, 10**6, 10**9, 10**12, 2**53):
    for p in (0.5, 0.4, 0.1, 0.01, 1e-5):
        if n * p < 10:
            continue
        exact = mpf(p)
        mode = int(floor((n + 1) * exact))
        deviation = float((n * exact * (1 - exact)) ** mpf("0.5"))
        for steps in (-4, -2, -1, -0.1, 0.1, 1, 2, 4):
            k = mode + round(steps * deviation)
            if 0 <= k <= n:
                value = log_probability(n, exact, mpf(k)) - log_probability(n, exact, mpf(mode))
                print(f"{n},{p!r},{k},{mode},{nstr(value, 25)}")
