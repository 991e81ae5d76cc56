#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Condition numbers of the designs of the certified data sets, for docs/accuracy.md.

The 2-norm condition of the design matrix (intercept and raw powers included), as it stands and
with its columns scaled to length 1; that of the cross-products is its square. Debian's
python3-mpmath, 60 digits.
"""

import csv
import pathlib

import mpmath

mpmath.mp.dps = 60
POWERS = {"wampler1": 5, "wampler2": 5, "wampler3": 5, "wampler4": 5, "wampler5": 5, "filip": 10}
SETS = ["norris", "noint1", "noint2", "longley", *POWERS]


def design(name):
    folder = pathlib.Path(__file__).parent
    with open(folder / f"{name}.csv", newline="") as file:
        rows = [[mpmath.mpf(cell) for cell in row] for row in list(csv.reader(file))[1:]]
    intercept = [] if name.startswith("noint") else [mpmath.mpf(1)]
    if name in POWERS:
        return [intercept + [row[1] ** k for k in range(1, POWERS[name] + 1)] for row in rows]
    return [intercept + row[1:] for row in rows]


def condition(rows):
    x = mpmath.matrix(rows)
    eigenvalues = mpmath.eigsy(x.T * x, eigvals_only=True)
    return mpmath.sqrt(max(eigenvalues) / min(eigenvalues))


def scaled(rows):
    norms = [mpmath.sqrt(sum(v * v for v in column)) for column in zip(*rows)]
    return [[v / n for v, n in zip(row, norms)] for row in rows]


for name in SETS:
    rows = design(name)
    print(f"{name:10} {mpmath.nstr(condition(rows), 3):>10} {mpmath.nstr(condition(scaled(rows)), 3):>10}")
