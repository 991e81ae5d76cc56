#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the coefficients of exp in mcmath/detail/explog.h: q(r), such that exp(r) is almost
1 + r + r^2 q(r), as the Chebyshev interpolation of that function for |r| up to ln(2)/2, and the
largest error of q that they leave as doubles."""
import mpmath as mp

mp.mp.dps = 60
LIMIT = mp.log(2) / 2 * mp.mpf("1.0000001")
COUNT = 10


def q(r):
    return sum(r**i / mp.factorial(i + 2) for i in range(40))


coefficients = [float(c) for c in reversed(mp.chebyfit(q, [-LIMIT, LIMIT], COUNT))]
for c in coefficients:
    print(c.hex())
grid = [LIMIT * i / 2000 for i in range(-2000, 2001)]
print("largest error", mp.nstr(max(abs(q(r) - mp.polyval(coefficients[::-1], r)) for r in grid), 3))
print("in exp", mp.nstr(max(r * r * abs(q(r) - mp.polyval(coefficients[::-1], r)) / mp.exp(r)
                            for r in grid), 3))
