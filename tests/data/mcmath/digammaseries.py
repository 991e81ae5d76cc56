#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the constants of shared/cpp/src/mcmath/mcmathfun_digamma.cpp (python3-mpmath, 50 digits).

The root x0 of digamma as the sum of two doubles, and the Taylor coefficients of
  (digamma(x0 + N + h) - digamma(x0 + N)) / h
in h, as many as |h| <= 0.54 needs for a relative error of 1e-18 of the whole.
"""
import mpmath as mp

mp.mp.dps = 50
N = 3
x0 = mp.findroot(mp.digamma, mp.mpf("1.4616"))
high = float(x0)
print("root", repr(high), repr(float(x0 - mp.mpf(high))))
j = 1
while True:
    c = mp.polygamma(j, x0 + N) / mp.factorial(j)
    if abs(c) * mp.mpf("0.54") ** (j - 1) < mp.mpf("5e-19"):
        break
    print(repr(float(c)))
    j += 1
