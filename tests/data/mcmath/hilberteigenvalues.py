#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes hilberteigenvalues.csv: the k-th eigenvalue, ascending and from 0, of Hilbert matrices of
n rows, whose elements 1 / (i + j + 1) are rounded to doubles first, and of the pair of one with the
matrix E of min(i, j) + 1, i and j from 0. By Jacobi's method; the last eigenvalues of n = 20 lie at
1e-29."""
import functools

import mpmath as mp

from reference import write

mp.mp.dps = 80


@functools.lru_cache(None)
def eigenvalues(n, is_pair):
    h = mp.matrix(n, n)
    e = mp.matrix(n, n)
    for i in range(n):
        for j in range(n):
            h[i, j] = mp.mpf(1.0 / (i + j + 1))
            e[i, j] = mp.mpf(min(i, j) + 1)
    if is_pair:
        inverse = mp.cholesky(e) ** -1
        h = inverse * h * inverse.T
        h = (h + h.T) / 2
    return sorted(mp.eigsy(h, eigvals_only=True))


rows = [(region, n, k)
        for n in (2, 3, 5, 8, 12, 20) for region in ("alone", "pair") for k in range(n)]
regions = iter(rows)
write("hilberteigenvalues.csv", "eigenvalues of Hilbert matrices",
      lambda n, k: eigenvalues(int(n), next(regions)[0] == "pair")[int(k)], rows)
