#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes exponent.csv, power.csv, multiply.csv and sumsqroot.csv.

Regions of the first three go by the magnitude of the exponent that is passed to exp, on which
the relative error of exp(t) depends.
"""
import math
import random

import mpmath as mp

from reference import log_uniform, uniform, write

COUNT = 60
LADDER = [0.0, 1.0, 10.0, 100.0, 708.0]


def region(low, high):
    return f"exponent {low:g} to {high:g}"


def signed(values):
    return [x * random.choice((1.0, -1.0)) for x in values]


exponents, powers, products = [], [], []
for low, high in zip(LADDER, LADDER[1:]):
    name = region(low, high)
    for t in signed(uniform(low, high, COUNT)):
        exponents.append((name, t))
        x = random.uniform(1.5, 50.0) ** random.choice((1.0, -1.0))
        powers.append((name, x, t / math.log(x)))
        # Two factors between 1 and exp(t), whose product is about exp(t).
        a = math.exp(random.uniform(0.0, t))
        products.append((name, a * random.choice((1.0, -1.0)), math.exp(t) / a))
for n in range(-9, 10, 2):  # odd powers and odd roots of negative numbers
    powers.append(("odd of a negative", -1.75, float(n)))
    powers.append(("odd of a negative", -1.75, 1.0 / n))


def power(x, y):
    if x > 0:
        return mp.power(x, y)
    # Here y is odd, or the double next to 1 over an odd number: its own power, with a sign.
    return -mp.power(-x, y)


write("exponent.csv", "exp(x)", mp.exp, exponents)
write("power.csv", "x to the power y", power, powers)
write("multiply.csv", "a * b", lambda a, b: a * b, products)

roots = []
for scale in (-200, -100, 0, 100, 150):
    for _ in range(COUNT // 2):
        a, c = (random.uniform(0.1, 10.0) * 10.0 ** scale for _ in range(2))
        b, d = log_uniform(-2, 2, 2)
        roots.append((f"sum at 1e{scale}", a, b, c, d))
        # The smaller term at most half of the larger one.
        smaller = 0.5 * random.random() * (a * math.sqrt(b)) / math.sqrt(d)
        roots.append((f"difference at 1e{scale}", a, b, smaller, -d))
        roots.append((f"difference at 1e{scale}", smaller, -d, a, b))
write("sumsqroot.csv", "sqrt(a^2 b + c^2 d)", lambda a, b, c, d: mp.sqrt(a * a * b + c * c * d),
      roots)
