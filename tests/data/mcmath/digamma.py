#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes digamma.csv and trigamma.csv."""
import mpmath as mp

from reference import log_uniform, uniform, write

ROOT = 1.4616321449683622
COUNT = 80

regions = {
    "below 1e-3": log_uniform(-150, -3, COUNT) + [7.512343757651778e-155],
    "1e-3 to 1": uniform(1e-3, 1.0, COUNT) + [0.5],
    "1 to 2": uniform(1.0, 2.0, COUNT) + [1.0, 1.5, 2.0],
    "near 1.4616": [ROOT * (1.0 + sign * d) for d in log_uniform(-15.6, -3, COUNT // 2)
                    for sign in (1.0, -1.0)] + [ROOT],
    "2 to 10": uniform(2.0, 10.0, COUNT) + [3.0, 9.999999999999998,
                                            2.012085410736737, 2.021147443502536],
    "10 to 100": uniform(10.0, 100.0, COUNT) + [10.0],
    "above 100": log_uniform(2, 300, COUNT),
}
rows = [(region, x) for region, values in regions.items() for x in values]
write("digamma.csv", "digamma(x)", mp.digamma, rows)
write("trigamma.csv", "trigamma(x)", lambda x: mp.psi(1, x), rows)
