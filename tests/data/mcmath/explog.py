#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes exp.csv and log.csv: the exponential and logarithm of the likelihood kernels."""
import math

import mpmath as mp

from reference import log_uniform, uniform, write

COUNT = 120

# Halfway between multiples of ln 2, where the reduced argument is largest and k changes.
halves = [(k + 0.5) * math.log(2.0) for k in (-1021, -700, -33, -2, -1, 0, 1, 2, 33, 700, 1021)]
regions = {
    "-1 to 1": uniform(-1.0, 1.0, COUNT) + [0.0, -0.0, 1.0, -1.0],
    "near 0": [s * x for x in log_uniform(-300, -3, COUNT // 2) for s in (1.0, -1.0)],
    "-40 to 40": uniform(-40.0, 40.0, 2 * COUNT),
    "lower guard to -40": uniform(-708.39, -40.0, 2 * COUNT) + [-708.39, -708.3899999999999, -708.0],
    "40 to upper guard": uniform(40.0, 709.0, 2 * COUNT) + [709.0, 708.9999999999999, 708.5],
    # Where random search found the largest errors.
    "hard": [float.fromhex(x) for x in ("-0x1.b715ea90ee39cp+8", "0x1.5ff24e7e95819p+9")],
    "between powers of 2": [math.nextafter(h, side) for h in halves for side in (-1e9, 1e9)] + halves,
}
write("exp.csv", "exp(x)", mp.exp, [(r, x) for r, values in regions.items() for x in values])

TINY, HUGE = 2.2250738585072014e-308, 1.7976931348623157e308
steps = [2.0 / 3, 4.0 / 3]
regions = {
    "near 1": [1.0 + s * d for d in log_uniform(-15.6, -3, COUNT) for s in (1.0, -1.0)]
              + [1.0, 1.0 + 2.0**-52, 1.0 - 2.0**-53],
    "2/3 to 4/3": uniform(2.0 / 3, 4.0 / 3, 2 * COUNT),
    "1/2 to 2": uniform(0.5, 2.0, 2 * COUNT),
    "2 to 1e6": log_uniform(0.31, 6, 2 * COUNT) + [2.0, 3.0, 4.0, 5.0],
    "normal doubles": log_uniform(-307, 308, 2 * COUNT) + [TINY, math.nextafter(TINY, 1.0), HUGE],
    "hard": [float.fromhex(x) for x in ("0x1.57f1a2e9d4e53p+0",)],
    "where k changes": [math.ldexp(t, k) for t in (math.nextafter(s, d) for s in steps for d in (0, 9))
                        for k in (-1000, -1, 0, 1, 1000)],
}
write("log.csv", "ln(x)", mp.log, [(r, x) for r, values in regions.items() for x in values])
