#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""The files that `mcfit generate` is to make, drawn with Python's own Mersenne Twister.

random.seed(n) seeds by the array of the 32-bit digits of n, lowest first; the library takes the
exponent of the seed and the first 64 bits of its significand for them. Normal numbers are those of
Leva (1992). The arguments of the program stand in tests/mcfit/generate_test.cpp.
Usage: generate.py FOLDER, which gets generate-linear.csv and generate-logistic.csv
"""

import math
import random
import sys

SEED = 5000000001  # with more than 32 bits: random.seed() drops leading digits that are 0
ROWS = 40
REGIONS = ["North", "East", "far, West"]
SERVICES = ["standard", "express"]


def seed(number):
    fraction, exponent = math.frexp(number)
    significand = int(fraction * 2**64)
    random.seed(exponent + (significand >> 32 << 32) + (significand % 2**32 << 64))


def uniform():
    return (random.getrandbits(32) + 0.5) / 2**32


def below(n):
    return int(uniform() * n)


def normal():
    while True:
        u = uniform()
        v = 1.7156 * (uniform() - 0.5)
        x = u - 0.449871
        y = abs(v) + 0.386595
        q = x * x + y * (0.19600 * y - 0.25472 * x)
        if q < 0.27597 or (q <= 0.27846 and v * v <= -4 * math.log(u) * u * u):
            return v / u


def evenly(low, high):
    share = uniform()
    return float(f"{(1 - share) * low + share * high:.3f}")


def draw_labels():
    """Never service express in the region North."""
    while True:
        region, service = REGIONS[below(3)], SERVICES[below(2)]
        if (region, service) != ("North", "express"):
            return region, service


def cell(value):
    text = f"{value:.3f}" if isinstance(value, float) else str(value)
    return f'"{text}"' if "," in text else text


def print_row(file, cells, shares):
    cells = ["" if share > 0 and uniform() < share else cell(value)
             for value, share in zip(cells, shares)]
    print(",".join(cells), file=file)


def linear_row():
    region, service = draw_labels()
    distance = evenly(-20, 1000)
    score = float(f"{-2 + 0.5 * normal():.3f}")
    parcels = 2 + below(3)
    hours = 3.25
    hours += -0.7 * (region == "East")
    hours += 0.5 * (region == "far, West") * (service == "express")
    hours += 0.03 * distance
    hours += 0.25 * distance * (score * score) * (region == "East")
    return [hours + 0.9 * normal(), region, service, distance, score, parcels]


def logistic_row():
    region, service = draw_labels()
    distance = evenly(-20, 1000)
    early = -0.5
    early += -0.002 * distance
    late = 0.8 * (region == "East")
    late += 0.001 * distance
    weights = [math.exp(x - max(0.0, early, late)) for x in (0.0, early, late)]
    place = uniform() * sum(weights)
    outcome = 0
    while outcome < 2 and place >= weights[outcome]:
        place -= weights[outcome]
        outcome += 1
    return [["on time", "early", "late"][outcome], region, service, distance]


def write(path, names, row, shares):
    seed(SEED)
    with open(path, "w", encoding="utf-8", newline="\n") as file:
        print(names, file=file)
        for _ in range(ROWS):
            print_row(file, row(), shares)


folder = sys.argv[1]
write(f"{folder}/generate-linear.csv", "hours,region,service,distance,score,parcels", linear_row,
      [0.1, 0, 0.2, 0.3, 0, 0.05])
write(f"{folder}/generate-logistic.csv", "outcome,region,service,distance", logistic_row,
      [0, 0, 0, 0])
