#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes rsquares.csv and oneparameterlogit.csv with python3-mpmath at 50 digits."""
import mpmath as mp

mp.mp.dps = 50
DIGITS = 30


def text(x):
    return mp.nstr(x, DIGITS, min_fixed=1, max_fixed=0)


# R squares of log-likelihoods L0, L1 and total weight W, all exact in binary.
cases = [(-20.5, -12.25, 40), (-1000, -999.75, 1442.5), (-0.125, -0.0625, 3), (-5, -7, 10),
         (-4096, -0.0078125, 8192), (-600, -590, 1), (-1e-3, -5e-4, 1e6), (-3, 0, 4)]
with open("rsquares.csv", "w") as out:
    out.write("# R squares; written by optimizer.py\n# L0,L1,W,Cox and Snell,Nagelkerke,McFadden\n")
    for case in cases:
        l0, l1, w = map(mp.mpf, case)
        cox_snell = 1 - mp.exp(2 * (l0 - l1) / w)
        nagelkerke = cox_snell / (1 - mp.exp(2 * l0 / w))
        mc_fadden = 1 - l1 / l0
        exact = [float(x).hex() for x in case]
        out.write(",".join(exact + [text(x) for x in (cox_snell, nagelkerke, mc_fadden)]) + "\n")

# P(y = 1) = 1 / (1 + exp(-b x)), one row of x and y after the other.
rows = [(0.5, 1), (1, 0), (-1.5, 0), (2, 1), (3, 1), (-0.25, 1), (1.75, 0), (2.5, 1)]


def score(b):
    return mp.fsum(x * (y - 1 / (1 + mp.exp(-b * x))) for x, y in rows)


b = mp.findroot(score, 0.5)
p = [1 / (1 + mp.exp(-b * x)) for x, y in rows]
information = mp.fsum(x * x * q * (1 - q) for (x, y), q in zip(rows, p))
log_likelihood = mp.fsum(mp.log(q if y else 1 - q) for (x, y), q in zip(rows, p))
with open("oneparameterlogit.csv", "w") as out:
    out.write("# Logit without intercept of " + " ".join("(%g,%d)" % row for row in rows) +
              "; written by optimizer.py\n# estimate,variance,log-likelihood\n")
    out.write(",".join(text(x) for x in (b, 1 / information, log_likelihood)) + "\n")
