# SPDX-License-Identifier: Apache-2.0
"""Writes tables of reference values as tests/support/accuracytable.h reads them.

Arguments are doubles, written in hexadecimal, so exact; values are computed by python3-mpmath
from those very doubles with 60 digits and written to 30.
"""
import os
import random
import sys

import mpmath as mp

mp.mp.dps = 60
random.seed(20240517)


def uniform(low, high, count):
    """`count` doubles between both ends."""
    return [random.uniform(low, high) for _ in range(count)]


def log_uniform(low, high, count):
    """`count` doubles between both powers of ten, evenly in their logarithms."""
    return [10.0 ** random.uniform(low, high) for _ in range(count)]


def write(name, title, function, rows):
    """rows: (region, argument, ...), `function` takes the arguments as mpf."""
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), name)
    with open(path, "w", encoding="ascii") as file:
        file.write(f"# {title}; written by {os.path.basename(sys.argv[0])}\n")
        file.write("# python3-mpmath, 60 digits; region,argument,...,value\n")
        for region, *arguments in rows:
            value = function(*[mp.mpf(x) for x in arguments])
            text = mp.nstr(value, 30, strip_zeros=False)
            file.write(",".join([region, *[float(x).hex() for x in arguments], text]) + "\n")
